// Wire forms of payload-specific feedback, built from their FCI.
#ifndef TESTS_SUPPORT_FEEDBACKWIRE_H
#define TESTS_SUPPORT_FEEDBACKWIRE_H

#include <gtest/gtest.h>

#include <string>

#include "tests/support/Bytes.h"

namespace test {

inline constexpr ZunRtpSourceId kSender = 0x01020304;
inline constexpr ZunRtpSourceId kSource = 0x11121314;

// A message of type 206 from kSender about kSource. The FCI must be a multiple of 4.
inline std::string Psfb(ZunUint8 fmt, const std::string& fci) {
  EXPECT_EQ(fci.size() % 4, 0U);
  const std::size_t words = 2 + fci.size() / 4;
  std::string wire = Hex("80CE0000 01020304 11121314");
  wire[0] = static_cast<char>(0x80 | fmt);
  wire[2] = static_cast<char>(words >> 8);
  wire[3] = static_cast<char>(words & 0xFF);
  return wire + fci;
}

// The same with FMT 15.
inline std::string Afb(const std::string& fci) { return Psfb(15, fci); }

// A message seen as the subpacket that the row operations take.
template <class Kind>
ZunRtcpSubpacket* Sub(Kind* p) {
  return reinterpret_cast<ZunRtcpSubpacket*>(p);
}
template <class Kind>
const ZunRtcpSubpacket* Sub(const Kind* p) {
  return reinterpret_cast<const ZunRtcpSubpacket*>(p);
}

}  // namespace test

#endif
