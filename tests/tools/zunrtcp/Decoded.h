// Decodes bytes as the tool does, in the house's dialect.
#ifndef TESTS_TOOLS_ZUNRTCP_DECODED_H
#define TESTS_TOOLS_ZUNRTCP_DECODED_H

#include <string>

#include "tests/support/Bytes.h"
#include "tools/zunrtcp/DecodedDatagram.h"

namespace test {

inline zunrtcp::RtcpDatagram DatagramOf(const std::string& hex) {
  zunrtcp::RtcpDatagram datagram;
  datagram.payload = Hex(hex);
  return datagram;
}

struct Decoded : zunrtcp::DecodedDatagram {
  explicit Decoded(const std::string& hex, bool verbose = false, const zunrtcp::Kinds& kinds = zunrtcp::AllKinds())
      : DecodedDatagram(DatagramOf(hex), zunrtcp::Dialect::house, verbose, kinds) {}
};

}  // namespace test

#endif
