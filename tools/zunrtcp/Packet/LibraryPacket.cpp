#include "tools/zunrtcp/Packet/LibraryPacket.h"

#include <algorithm>

#include "tools/zunrtcp/Packet/LibraryValues.h"

namespace zunrtcp {

namespace {

class LibraryString {
 public:
  LibraryString() { ZunStringConstructDefault(&string_, ZunAllocatorGetSystem()); }
  ~LibraryString() { ZunStringDestruct(&string_); }
  LibraryString(const LibraryString&) = delete;
  LibraryString& operator=(const LibraryString&) = delete;

  ZunString* get() { return &string_; }
  std::string_view bytes() const { return BytesOf(string_); }

 private:
  ZunString string_;
};

}  // namespace

LibraryPacket::LibraryPacket() { ZunRtcpPacketConstructDefault(&packet_, ZunAllocatorGetSystem()); }

LibraryPacket::LibraryPacket(std::string_view datagram, ZunRtcpDialect dialect, Reading reading) {
  ZunRtcpPacketConstructDefault(&packet_, ZunAllocatorGetSystem());
  ZunRtcpDecodeOptions options;
  ZunRtcpDecodeOptionsConstructDefault(&options);
  options.tolerant = reading == Reading::Tolerant;
  options.userData = &refusals_;
  options.onRefusal = [](ZunVoidPtr refusals, const ZunRtcpDecodeRefusal* refusal) {
    static_cast<std::vector<ZunRtcpDecodeRefusal>*>(refusals)->push_back(*refusal);
  };
  ZunRtcpPacketDecode(&packet_, datagram.data(), datagram.size(), dialect, &options, nullptr);
}

LibraryPacket::~LibraryPacket() { ZunRtcpPacketDestruct(&packet_); }

const ZunRtcpDecodeRefusal* LibraryPacket::RefusalOf(std::size_t index) const {
  const auto found = std::ranges::lower_bound(refusals_, index, {}, &ZunRtcpDecodeRefusal::index);
  return found == refusals_.end() || found->index != index ? nullptr : &*found;
}

const ZunRtcpSubpacket* LibraryPacket::Find(std::size_t index) const {
  const auto next = std::ranges::lower_bound(refusals_, index, {}, &ZunRtcpDecodeRefusal::index);
  if (next != refusals_.end() && next->index == index) return nullptr;
  const std::size_t object = index - static_cast<std::size_t>(next - refusals_.begin());
  return object < ZunRtcpPacketGetSubpacketCount(&packet_) ? ZunRtcpPacketGetSubpacket(&packet_, object) : nullptr;
}

std::optional<std::string> LibraryPacket::Write() const {
  LibraryString written;
  if (!ZunRtcpPacketGetNetworkPacket(&packet_, written.get())) return std::nullopt;
  return std::string(written.bytes());
}

std::optional<std::string> LibraryPacket::Write(std::size_t index) const {
  const ZunRtcpSubpacket* object = Find(index);
  if (object == nullptr) return std::nullopt;
  LibraryPacket alone;
  if (!ZunRtcpPacketAppendSubpacket(&alone.packet_, object)) return std::nullopt;
  return alone.Write();
}

bool LibraryAccepts(std::string_view datagram) { return LibraryPacket(datagram).ok(); }

}  // namespace zunrtcp
