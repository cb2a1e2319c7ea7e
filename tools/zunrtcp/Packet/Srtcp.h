// Recognises RTCP that is encrypted or authenticated (RFC 3711, section 3.4).
#ifndef TOOLS_ZUNRTCP_PACKET_SRTCP_H
#define TOOLS_ZUNRTCP_PACKET_SRTCP_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace zunrtcp {

// What is told without the key.
struct Srtcp {
  std::uint32_t sender = 0;  // of the first packet
  bool is_encrypted = false;
  std::uint32_t index = 0;  // counts the packets of the sender
  std::size_t trailer = 0;  // bytes of the index and the authentication tag

  // What comes before the trailer can be read when it is not encrypted.
  // "SRTCP of 0x12345678, packet 3, encrypted: nothing more can be told without the key".
  std::string Words() const;
};

// Of a datagram whose packets do not end where it does. Nothing when no usual trailer is there: the index is taken for
// one when it is small, as it is within the first hours of a session.
std::optional<Srtcp> RecogniseSrtcp(std::string_view datagram);

}  // namespace zunrtcp

#endif
