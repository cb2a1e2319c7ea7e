// The arguments that say what is read.
#ifndef TOOLS_ZUNRTCP_COMMANDLINE_INPUT_H
#define TOOLS_ZUNRTCP_COMMANDLINE_INPUT_H

#include <CLI/CLI.hpp>

#include "tools/zunrtcp/Capture/OpenSource.h"

namespace zunrtcp {

void DefineInput(InputOptions* options, CLI::App* command);
// Its part that a live source has as well.
CLI::Option* DefinePorts(InputOptions* options, CLI::App* command);

}  // namespace zunrtcp

#endif
