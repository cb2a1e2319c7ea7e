// Packets in targets: owned, compared by all that they hold, decoded and encoded.
#ifndef FUZZ_PACKETS_H
#define FUZZ_PACKETS_H

#include <string>

#include "Zun/Rtp/Dialect/ZunRtcpCodec.h"
#include "fuzz/Allocator.h"
#include "fuzz/Check.h"
#include "fuzz/Input.h"

namespace fuzz {

class Packet {
 public:
  explicit Packet(ZunAllocator* a) { ZunRtcpPacketConstructDefault(&packet_, a); }
  ~Packet() {
    ZunRtcpPacketDestruct(&packet_);
    ZunRtcpPacketDestruct(&packet_);  // which must do nothing
  }
  Packet(const Packet&) = delete;
  Packet& operator=(const Packet&) = delete;

  operator ZunRtcpPacket*() { return &packet_; }
  operator const ZunRtcpPacket*() const { return &packet_; }
  ZunSizeT count() const { return ZunRtcpPacketGetSubpacketCount(&packet_); }
  const ZunRtcpSubpacket& operator[](ZunSizeT n) const { return *ZunRtcpPacketGetSubpacket(&packet_, n); }

 private:
  ZunRtcpPacket packet_;
};

class String {
 public:
  explicit String(ZunAllocator* a) { ZunStringConstructDefault(&string_, a); }
  ~String() {
    ZunStringDestruct(&string_);
    ZunStringDestruct(&string_);
  }
  String(const String&) = delete;
  String& operator=(const String&) = delete;

  operator ZunString*() { return &string_; }
  operator const ZunString*() const { return &string_; }
  ZunString* operator->() { return &string_; }
  std::string str() const { return {ZunStringCStr(&string_), string_.size}; }

 private:
  ZunString string_;
};

// Octets as a string that is read and owns nothing.
inline ZunString ViewOf(const Octets& octets) {
  return {nullptr, const_cast<char*>(reinterpret_cast<const char*>(octets.data())), octets.size(), octets.size()};
}
inline ZunString ViewOf(const std::string& bytes) {
  return {nullptr, const_cast<char*>(bytes.data()), bytes.size(), bytes.size()};
}

// All that an object holds, number for number, told as text: equal objects have equal texts.
std::string ContentsOf(const ZunRtcpSubpacket& sp);
std::string ContentsOf(const ZunRtcpPacket* p);
// Of the first `count` subpackets.
std::string ContentsOf(const ZunRtcpPacket* p, ZunSizeT count);

// What became of a datagram that was decoded, and whether the report and the handler agree about it.
struct Decoded {
  bool ok;
  ZunRtcpDecodeReport report;
};
Decoded Decode(ZunRtcpPacket* p, const Octets& octets, ZunRtcpDialect dialect, ZunRtcpDecodeOptions options);
inline Decoded Decode(ZunRtcpPacket* p, const std::string& bytes, ZunRtcpDialect dialect) {
  ZunRtcpDecodeOptions options;
  ZunRtcpDecodeOptionsConstructDefault(&options);
  return Decode(p, Octets(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()), dialect, options);
}
bool operator==(const Decoded& a, const Decoded& b);

// Options of one byte: tolerant, the default limits or small ones.
ZunRtcpDecodeOptions OptionsOf(std::uint8_t byte);
ZunRtcpDialect DialectOf(std::uint8_t byte);

// What is encoded; empty when it cannot be. Length, reasons and capacities are checked against each other.
std::string Encoded(const ZunRtcpPacket* p, ZunRtcpDialect dialect);
// What the first door writes; empty when it cannot be written.
std::string Written(const ZunRtcpPacket* p);

// Whether the packet holds a subpacket of which this is true.
template <class Predicate>
bool Holds(const ZunRtcpPacket* p, Predicate predicate) {
  for (ZunSizeT i = 0; i < ZunRtcpPacketGetSubpacketCount(p); ++i) {
    if (predicate(*ZunRtcpPacketGetSubpacket(p, i))) return true;
  }
  return false;
}
bool IsLir(const ZunRtcpSubpacket& sp);

// A packet is copied, written, encoded and read again: whatever holds for all packets.
void CheckPacket(const ZunRtcpPacket* p);
// Calls every reader and getter that walks over what was read.
void LookAt(const ZunRtcpSubpacket& sp);

}  // namespace fuzz

#endif
