#include "tools/zunrtcp/Packet/LibraryPacket.h"

#include <new>

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

LibraryPacket::LibraryPacket(std::string_view datagram) {
  ZunRtcpPacketConstructDefault(&packet_, ZunAllocatorGetSystem());
  LibraryString bytes;
  if (ZunStringAppendCStrLen(bytes.get(), datagram.data(), datagram.size()) == nullptr) throw std::bad_alloc();
  ok_ = ZunRtcpPacketParseNetworkPacket(&packet_, bytes.get()) != 0;
}

LibraryPacket::~LibraryPacket() { ZunRtcpPacketDestruct(&packet_); }

std::optional<std::string> LibraryPacket::Write() const {
  LibraryString written;
  if (!ZunRtcpPacketGetNetworkPacket(&packet_, written.get())) return std::nullopt;
  return std::string(written.bytes());
}

bool LibraryAccepts(std::string_view datagram) { return LibraryPacket(datagram).ok(); }

}  // namespace zunrtcp
