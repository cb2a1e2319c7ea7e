// The library's compound packet, owned.
#ifndef TOOLS_ZUNRTCP_PACKET_LIBRARYPACKET_H
#define TOOLS_ZUNRTCP_PACKET_LIBRARYPACKET_H

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Zun/Rtp/Dialect/ZunRtcpCodec.h"

namespace zunrtcp {

enum class Reading {
  Strict,    // the first subpacket that is refused ends it
  Tolerant,  // what is refused is skipped
};

class LibraryPacket {
 public:
  // Decodes the bytes of a datagram within the library's budget; ok() tells the outcome.
  explicit LibraryPacket(std::string_view datagram, ZunRtcpDialect dialect = ZUN_RTCP_DIALECT_HOUSE,
                         Reading reading = Reading::Strict);
  ~LibraryPacket();
  LibraryPacket(const LibraryPacket&) = delete;
  LibraryPacket& operator=(const LibraryPacket&) = delete;

  // How many objects there are.
  std::size_t size() const { return ZunRtcpPacketGetSubpacketCount(&packet_); }
  const ZunRtcpPacket* get() const { return &packet_; }

  // Whether nothing was refused.
  bool ok() const { return refusals_.empty(); }
  // In the order of the datagram.
  const std::vector<ZunRtcpDecodeRefusal>& refusals() const { return refusals_; }
  // The refusal of subpacket `index` of the datagram; null when it was read, or not come to.
  const ZunRtcpDecodeRefusal* RefusalOf(std::size_t index) const;
  // The object of subpacket `index` of the datagram; null when it was refused, or not come to.
  const ZunRtcpSubpacket* Find(std::size_t index) const;

  // What the library writes in the house's dialect; nothing when it refuses to.
  std::optional<std::string> Write() const;
  // The same of subpacket `index` of the datagram alone.
  std::optional<std::string> Write(std::size_t index) const;

 private:
  LibraryPacket();

  ZunRtcpPacket packet_;
  std::vector<ZunRtcpDecodeRefusal> refusals_;
};

// True when the library reads these bytes, in the house's dialect.
bool LibraryAccepts(std::string_view datagram);

}  // namespace zunrtcp

#endif
