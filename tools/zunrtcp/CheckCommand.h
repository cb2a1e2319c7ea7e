// zunrtcp check: reads every packet in a dialect, writes it back in the same, and counts what became of each kind.
#ifndef TOOLS_ZUNRTCP_CHECKCOMMAND_H
#define TOOLS_ZUNRTCP_CHECKCOMMAND_H

#include <cstddef>
#include <ostream>

#include "tools/zunrtcp/Capture/OpenSource.h"
#include "tools/zunrtcp/Dialect.h"
#include "tools/zunrtcp/ExitStatus.h"

namespace zunrtcp {

struct CheckOptions {
  InputOptions input;
  Dialect dialect = Dialect::house;
  bool json = false;
  std::size_t troubles = 20;  // to be told one by one; all are counted
};

// Prints to `out`. InputError as RunDecode.
ExitStatus RunCheck(const CheckOptions& options, std::ostream* out);

}  // namespace zunrtcp

#endif
