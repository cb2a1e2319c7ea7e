// The commands, each with its arguments.
#ifndef TOOLS_ZUNRTCP_COMMANDLINE_COMMAND_H
#define TOOLS_ZUNRTCP_COMMANDLINE_COMMAND_H

#include <CLI/CLI.hpp>
#include <functional>

#include "tools/zunrtcp/ExitStatus.h"

namespace zunrtcp {

struct Command {
  CLI::App* app;                    // tells whether it was asked for
  std::function<ExitStatus()> run;  // with the arguments that were given
};

Command DefineDecode(CLI::App* tool);
Command DefineCheck(CLI::App* tool);
Command DefineEncode(CLI::App* tool);
Command DefineSplit(CLI::App* tool);
Command DefineStats(CLI::App* tool);
Command DefineLive(CLI::App* tool);

}  // namespace zunrtcp

#endif
