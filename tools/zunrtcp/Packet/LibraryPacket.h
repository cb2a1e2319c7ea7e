// What the library reads of a datagram, and what it refuses.
#ifndef TOOLS_ZUNRTCP_PACKET_LIBRARYPACKET_H
#define TOOLS_ZUNRTCP_PACKET_LIBRARYPACKET_H

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Zun/Rtp/Cpp/Packet.h"
#include "tools/zunrtcp/Dialect.h"

namespace zunrtcp {

// An object of the library, of any kind.
using ObjectView = zun::rtcp::View<zun::rtcp::Subpacket>;

enum class Reading {
  Strict,    // the first subpacket that is refused ends it
  Tolerant,  // what is refused is skipped
};

class LibraryPacket {
 public:
  // Decodes the bytes of a datagram within the library's budget; ok() tells the outcome.
  explicit LibraryPacket(std::string_view datagram, Dialect dialect = Dialect::house,
                         Reading reading = Reading::Strict);

  // The objects, those of what was refused left out.
  const zun::rtcp::Packet& objects() const { return packet_; }

  // Whether nothing was refused.
  bool ok() const { return refusals_.empty(); }
  // In the order of the datagram.
  const std::vector<zun::rtcp::DecodeRefusal>& refusals() const { return refusals_; }
  // The refusal of subpacket `index` of the datagram; null when it was read, or not come to.
  const zun::rtcp::DecodeRefusal* RefusalOf(std::size_t index) const;
  // The object of subpacket `index` of the datagram; nothing when it was refused, or not come to.
  std::optional<ObjectView> Find(std::size_t index) const;

  // What the library writes in the dialect that was read; nothing when it does not.
  std::optional<std::string> Write() const;
  // The same of subpacket `index` of the datagram alone.
  std::optional<std::string> Write(std::size_t index) const;

 private:
  Dialect dialect_;
  zun::rtcp::Packet packet_;
  std::vector<zun::rtcp::DecodeRefusal> refusals_;
};

// True when the library reads these bytes.
bool LibraryAccepts(std::string_view datagram, Dialect dialect = Dialect::house);

// The bytes of a datagram; nothing when the packet cannot be encoded.
std::optional<std::string> Encoded(const zun::rtcp::Packet& packet, Dialect dialect);

}  // namespace zunrtcp

#endif
