#include "tests/support/Bytes.h"

#include <gtest/gtest.h>

#include <cctype>
#include <cstring>

namespace test {

std::string Hex(const std::string& text) {
  std::string digits;
  bool comment = false;
  for (const char c : text) {
    if (c == '\n') comment = false;
    if (c == '#' || c == '|') comment = true;
    if (!comment && std::isxdigit(static_cast<unsigned char>(c)) != 0) digits += c;
  }
  EXPECT_EQ(digits.size() % 2, 0U) << text;
  std::string bytes;
  for (std::size_t i = 0; i + 1 < digits.size(); i += 2) {
    bytes += static_cast<char>(std::stoi(digits.substr(i, 2), nullptr, 16));
  }
  return bytes;
}

std::string ToHex(const std::string& bytes) {
  static const char* const kDigits = "0123456789ABCDEF";
  std::string text;
  for (const char c : bytes) {
    const auto octet = static_cast<unsigned char>(c);
    text += kDigits[octet >> 4];
    text += kDigits[octet & 15];
  }
  return text;
}

std::string Subpacket(int type, int count, const std::string& body) {
  EXPECT_EQ(body.size() % 4, 0U);
  const std::size_t words = body.size() / 4;
  const std::string header = {static_cast<char>(0x80 | count), static_cast<char>(type), static_cast<char>(words >> 8),
                              static_cast<char>(words & 0xFF)};
  return header + body;
}

std::string Psfb(int fmt, const std::string& fci) { return Subpacket(206, fmt, Hex("01020304 11121314") + fci); }

std::string Afb(const std::string& fci) { return Psfb(15, fci); }

Text::Text(const std::string& bytes, ZunAllocator* a) : Owning(a) {
  EXPECT_NE(ZunStringAppendCStrLen(get(), bytes.data(), bytes.size()), nullptr);
}

Datagram::Datagram(const std::string& bytes, ZunAllocator* a) : bytes_(new char[bytes.size()]) {
  std::memcpy(bytes_.get(), bytes.data(), bytes.size());
  string_ = {a, bytes_.get(), bytes.size(), bytes.size()};
}

std::string Str(const ZunString* s) { return std::string(ZunStringCStr(s), s->size); }

std::string Written(const ZunRtcpSubpacket& sp) {
  Text out;
  zun::rtcp::Packet packet;
  EXPECT_TRUE(ZunRtcpPacketAppendSubpacket(packet.get(), &sp));
  EXPECT_TRUE(ZunRtcpPacketGetNetworkPacket(packet.get(), out));
  return out.str();
}

Parsed::Parsed(const std::string& bytes, ZunAllocator* a) : owned(a), ok(Read(bytes)) {}

bool Parsed::Read(const std::string& bytes) {
  const Datagram datagram(bytes);
  return ZunRtcpPacketParseNetworkPacket(&packet, datagram) != 0;
}

const ZunRtcpSubpacket& Parsed::operator[](ZunSizeT n) const {
  const ZunRtcpSubpacket* const sp = ZunRtcpPacketGetSubpacket(&packet, n);
  EXPECT_NE(sp, nullptr) << "there is no subpacket " << n;
  // So that a test that fails here goes on to the next one.
  static const ZunRtcpSubpacket nothing = {};
  return sp != nullptr ? *sp : nothing;
}

std::string Parsed::bytes() const {
  Text out;
  return ZunRtcpPacketGetNetworkPacket(&packet, out) ? out.str() : std::string();
}

}  // namespace test
