// zunrtcp split: writes a compound packet as datagrams of a limited size, with the library's partial writer.
#ifndef TOOLS_ZUNRTCP_SPLITCOMMAND_H
#define TOOLS_ZUNRTCP_SPLITCOMMAND_H

#include <cstddef>
#include <optional>
#include <ostream>
#include <string>

#include "tools/zunrtcp/Dialect.h"
#include "tools/zunrtcp/ExitStatus.h"

namespace zunrtcp {

struct SplitOptions {
  std::string path;                // "-" is standard input
  bool json = false;               // it is that, and no hex text
  std::optional<Dialect> dialect;  // without it JSON tells; registered when it does not
  std::size_t max_size = 0;        // of a datagram, in bytes
  std::size_t repeated = 0;        // how many packets at the beginning are repeated in every datagram
};

// Prints a line of hex digits for each datagram. InputError says what cannot be read or does not fit; what comes before
// it is printed.
ExitStatus RunSplit(const SplitOptions& options, std::ostream* out);

}  // namespace zunrtcp

#endif
