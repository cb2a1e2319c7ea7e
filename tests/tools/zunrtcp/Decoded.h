// Decodes bytes as the tool does.
#ifndef TESTS_TOOLS_ZUNRTCP_DECODED_H
#define TESTS_TOOLS_ZUNRTCP_DECODED_H

#include <string>

#include "tests/support/Bytes.h"
#include "tools/zunrtcp/DecodedDatagram.h"

namespace test {

struct Decoded : zunrtcp::DecodedDatagram {
  explicit Decoded(const std::string& hex, bool verbose = false) {
    datagram.payload = Hex(hex);
    zunrtcp::Decode(verbose, this);
  }
};

}  // namespace test

#endif
