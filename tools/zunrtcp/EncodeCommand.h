// zunrtcp encode: makes bytes of JSON, the form that decode prints.
#ifndef TOOLS_ZUNRTCP_ENCODECOMMAND_H
#define TOOLS_ZUNRTCP_ENCODECOMMAND_H

#include <optional>
#include <ostream>
#include <string>

#include "tools/zunrtcp/Dialect.h"
#include "tools/zunrtcp/ExitStatus.h"

namespace zunrtcp {

struct EncodeOptions {
  std::string path;                // "-" is standard input
  std::optional<Dialect> dialect;  // without it each datagram tells; registered when it does not
  std::string capture;             // to write to, instead of hex
};

// Prints a line of hex digits for each datagram, or writes a capture file. InputError says what cannot be encoded, with
// the path of the field; what comes before it is written.
ExitStatus RunEncode(const EncodeOptions& options, std::ostream* out);

}  // namespace zunrtcp

#endif
