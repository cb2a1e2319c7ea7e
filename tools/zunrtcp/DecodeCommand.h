// zunrtcp decode: prints the RTCP of a capture. In the house's dialect it also checks that the library writes back what
// it read.
#ifndef TOOLS_ZUNRTCP_DECODECOMMAND_H
#define TOOLS_ZUNRTCP_DECODECOMMAND_H

#include <cstddef>
#include <limits>
#include <ostream>

#include "tools/zunrtcp/Capture/DatagramSource.h"
#include "tools/zunrtcp/Capture/OpenSource.h"
#include "tools/zunrtcp/Dialect.h"
#include "tools/zunrtcp/ExitStatus.h"
#include "tools/zunrtcp/Filter.h"

namespace zunrtcp {

struct DecodeOptions {
  InputOptions input;
  Dialect dialect = Dialect::registered;
  Filter filter;
  bool in_colour = false;
  bool verbose = false;
  bool json = false;
  std::size_t limit = std::numeric_limits<std::size_t>::max();  // datagrams to print; all are counted
};

// Prints to `out`. InputError says what is wrong with the capture; everything that could be read is printed then.
ExitStatus RunDecode(const DecodeOptions& options, std::ostream* out);
// The same of a source that is open; of a live one each datagram is printed at once, and the totals in any case.
ExitStatus RunDecode(DatagramSource* source, const DecodeOptions& options, std::ostream* out);

}  // namespace zunrtcp

#endif
