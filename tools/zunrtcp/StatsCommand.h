// zunrtcp stats: what the RTCP of a capture tells of each stream over time.
#ifndef TOOLS_ZUNRTCP_STATSCOMMAND_H
#define TOOLS_ZUNRTCP_STATSCOMMAND_H

#include <ostream>
#include <string>

#include "tools/zunrtcp/Capture/OpenSource.h"
#include "tools/zunrtcp/Dialect.h"

namespace zunrtcp {

struct StatsOptions {
  InputOptions input;
  Dialect dialect = Dialect::registered;
  bool json = false;
  bool csv = false;
  std::string html;  // the page to write; empty: none
};

// Prints to `out`. InputError says what is wrong with the capture, after what could be read was told.
void RunStats(const StatsOptions& options, std::ostream* out);

}  // namespace zunrtcp

#endif
