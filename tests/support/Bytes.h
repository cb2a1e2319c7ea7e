// Bytes in tests: written as hex, held flush, in owned strings and owned packets.
#ifndef TESTS_SUPPORT_BYTES_H
#define TESTS_SUPPORT_BYTES_H

#include <memory>
#include <string>

#include "Zun/Rtp/Cpp/Packet.h"

namespace test {

// The bytes of hex digits; spaces and line ends between them are skipped, and so is what follows a '#' or '|' up to
// the end of its line, so that each field can stand on a line of its own with its meaning.
std::string Hex(const std::string& text);

// The bytes as hex digits, for messages.
std::string ToHex(const std::string& bytes);

// The wire form of one subpacket: the common header, whose length field is that of `body`, and `body`, which must be
// whole words.
std::string Subpacket(int type, int count, const std::string& body);

// A feedback message of type 206 with this FMT, or with FMT 15, from kSender about kSource.
inline constexpr ZunRtpSourceId kSender = 0x01020304;
inline constexpr ZunRtpSourceId kSource = 0x11121314;
std::string Psfb(int fmt, const std::string& fci);
std::string Afb(const std::string& fci);

// An owned ZunString.
class Text : public zun::rtcp::String {
 public:
  using Owning::Owning;
  Text(const std::string& bytes, ZunAllocator* a = ZunAllocatorGetSystem());

  operator ZunString*() { return get(); }
  ZunString* operator->() { return get(); }
  std::string str() const { return std::string(zun::rtcp::text_of(*get())); }
};

// Received bytes, on a heap block of exactly their size. Read-only.
class Datagram {
 public:
  explicit Datagram(const std::string& bytes, ZunAllocator* a = ZunAllocatorGetSystem());

  const ZunString* get() const { return &string_; }
  operator const ZunString*() const { return &string_; }
  const ZunString* operator->() const { return &string_; }

 private:
  std::unique_ptr<char[]> bytes_;
  ZunString string_;
};

// The bytes of a ZunString.
std::string Str(const ZunString* s);

// What a subpacket writes; empty, with a test failure, when it cannot be written.
std::string Written(const ZunRtcpSubpacket& sp);

// A compound packet parsed from bytes, as a user would.
struct Parsed {
  explicit Parsed(const std::string& bytes, ZunAllocator* a = ZunAllocatorGetSystem());
  Parsed(const Parsed&) = delete;
  Parsed& operator=(const Parsed&) = delete;

  bool Read(const std::string& bytes);  // over what it holds
  const ZunRtcpSubpacket& operator[](ZunSizeT n) const;
  ZunSizeT count() const { return ZunRtcpPacketGetSubpacketCount(&packet); }
  std::string bytes() const;  // what it writes; empty when it cannot be written

  zun::rtcp::Packet owned;
  ZunRtcpPacket& packet = *owned.get();
  bool ok;
};

}  // namespace test

#endif
