// The library's compound packet, owned.
#ifndef TOOLS_ZUNRTCP_PACKET_LIBRARYPACKET_H
#define TOOLS_ZUNRTCP_PACKET_LIBRARYPACKET_H

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "Zun/Rtp/ZunRtcpPacket.h"

namespace zunrtcp {

class LibraryPacket {
 public:
  // Parses the bytes of a datagram; ok() tells the outcome.
  explicit LibraryPacket(std::string_view datagram);
  ~LibraryPacket();
  LibraryPacket(const LibraryPacket&) = delete;
  LibraryPacket& operator=(const LibraryPacket&) = delete;

  bool ok() const { return ok_; }
  std::size_t size() const { return ZunRtcpPacketGetSubpacketCount(&packet_); }
  const ZunRtcpSubpacket& operator[](std::size_t n) const { return *ZunRtcpPacketGetSubpacket(&packet_, n); }

  // What the library writes; nothing when it refuses to.
  std::optional<std::string> Write() const;

 private:
  ZunRtcpPacket packet_;
  bool ok_ = false;
};

// True when the library reads these bytes.
bool LibraryAccepts(std::string_view datagram);

}  // namespace zunrtcp

#endif
