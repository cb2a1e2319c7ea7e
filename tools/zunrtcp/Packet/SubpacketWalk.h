// Walks the subpackets of a datagram by their headers alone, without the library.
#ifndef TOOLS_ZUNRTCP_PACKET_SUBPACKETWALK_H
#define TOOLS_ZUNRTCP_PACKET_SUBPACKETWALK_H

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "tools/zunrtcp/Dialect.h"
#include "tools/zunrtcp/Packet/Octets.h"

namespace zunrtcp {

inline constexpr std::size_t kHeaderSize = 4;
inline constexpr std::size_t kSourceSize = 4;  // of an SSRC
inline constexpr unsigned kPaddingBit = 0x20;
inline constexpr unsigned kCountMask = 0x1F;

// One subpacket: a header of 4 bytes and its body (RFC 3550, section 6.1).
struct SubpacketView {
  std::size_t index = 0;             // counted from 0
  std::size_t offset = 0;            // in the datagram
  std::string_view bytes;            // header included
  Dialect dialect = Dialect::house;  // that its sender is taken to speak

  bool padded() const { return (U8At(bytes, 0) & kPaddingBit) != 0; }
  unsigned count() const { return U8At(bytes, 0) & kCountMask; }
  unsigned type() const { return U8At(bytes, 1); }
  std::string_view body() const { return bytes.substr(kHeaderSize); }
  bool registered() const { return dialect == Dialect::registered; }

  // In the registered dialect without the octets that its header calls padding, where these are as many as the last one
  // says.
  SubpacketView WithoutPadding() const;
};

struct SubpacketWalk {
  std::vector<SubpacketView> subpackets;
  std::string fault;             // what ends the walk early; empty when it ends with the datagram
  std::size_t fault_offset = 0;  // where
};

SubpacketWalk WalkSubpackets(std::string_view datagram, Dialect dialect = Dialect::house);

}  // namespace zunrtcp

#endif
