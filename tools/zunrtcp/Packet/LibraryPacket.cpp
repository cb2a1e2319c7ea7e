#include "tools/zunrtcp/Packet/LibraryPacket.h"

#include <algorithm>

namespace zunrtcp {

using zun::rtcp::DecodeOptions;
using zun::rtcp::DecodeRefusal;
using zun::rtcp::Packet;

namespace {

// A peer of the house gets what the packet itself writes, which also writes what cannot be read back, as the ECN of a
// CCFB. Encoding refuses that.
std::optional<std::string> Written(const Packet& packet, Dialect dialect) {
  if (dialect == Dialect::registered) return Encoded(packet, dialect);
  zun::rtcp::String octets;
  if (!ZunRtcpPacketGetNetworkPacket(packet.get(), octets.get())) return std::nullopt;
  return std::string(zun::rtcp::text_of(*octets.get()));
}

}  // namespace

LibraryPacket::LibraryPacket(std::string_view datagram, Dialect dialect, Reading reading) : dialect_(dialect) {
  const DecodeOptions options{.dialect = dialect, .tolerant = reading == Reading::Tolerant};
  (void)packet_.decode(zun::rtcp::octets_of(datagram), options,
                       [&](const DecodeRefusal& refusal) { refusals_.push_back(refusal); });
}

const DecodeRefusal* LibraryPacket::RefusalOf(std::size_t index) const {
  const auto found = std::ranges::lower_bound(refusals_, index, {}, &DecodeRefusal::index);
  return found == refusals_.end() || found->index != index ? nullptr : &*found;
}

std::optional<ObjectView> LibraryPacket::Find(std::size_t index) const {
  const auto next = std::ranges::lower_bound(refusals_, index, {}, &DecodeRefusal::index);
  if (next != refusals_.end() && next->index == index) return std::nullopt;
  const std::size_t object = index - static_cast<std::size_t>(next - refusals_.begin());
  return object < packet_.size() ? std::optional(packet_[object]) : std::nullopt;
}

std::optional<std::string> LibraryPacket::Write() const { return Written(packet_, dialect_); }

std::optional<std::string> LibraryPacket::Write(std::size_t index) const {
  const std::optional<ObjectView> object = Find(index);
  Packet alone;
  if (!object || !alone.append(*object)) return std::nullopt;
  return Written(alone, dialect_);
}

bool LibraryAccepts(std::string_view datagram, Dialect dialect) { return LibraryPacket(datagram, dialect).ok(); }

std::optional<std::string> Encoded(const Packet& packet, Dialect dialect) {
  std::string octets(packet.encoded_length(dialect), '\0');
  if (!packet.encode(std::as_writable_bytes(std::span(octets)), dialect)) return std::nullopt;
  return octets;
}

}  // namespace zunrtcp
