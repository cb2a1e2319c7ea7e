#include "tools/zunrtcp/Packet/KindName.h"

#include <gtest/gtest.h>

#include "tests/support/Bytes.h"

namespace zunrtcp {

namespace {

std::string NameOf(const std::string& hex) {
  const std::string bytes = test::Hex(hex);
  return KindName({0, 0, bytes});
}

std::string RemarkOn(const std::string& hex) {
  const std::string bytes = test::Hex(hex);
  return RegisteredFormRemark({0, 0, bytes});
}

}  // namespace

TEST(KindName, TellsKindsByTheirNumbers) {
  EXPECT_EQ(NameOf("80c80000"), "SR");
  EXPECT_EQ(NameOf("82cd0000"), "TMMBR");
  EXPECT_EQ(NameOf("83cd0000"), "TMMBN");
  EXPECT_EQ(NameOf("8ecd0000"), "CCFB");
  EXPECT_EQ(NameOf("84cd0000"), "RTPFB FMT 4");
  EXPECT_EQ(NameOf("87ce0000"), "PSFB FMT 7");
  EXPECT_EQ(NameOf("80cf0000"), "XR (type 207)");
  EXPECT_EQ(NameOf("80df0000"), "type 223");
}

TEST(KindName, TellsApplicationFeedbackByItsIdentifier) {
  EXPECT_EQ(NameOf("8fce0003 00000001 00000000 52454d42"), "REMB");
  EXPECT_EQ(NameOf("8fce0003 00000001 00000000 4e720005"), "LIR");
  EXPECT_EQ(NameOf("8fce0003 00000001 00000000 4e720009"), "AFB Nr 9");
  EXPECT_EQ(NameOf("8fce0003 00000001 00000000 4c4e5446"), "AFB");
  EXPECT_EQ(NameOf("8fce0002 00000001 00000000"), "AFB");
}

TEST(KindName, SaysWhatARegisteredFormIsHere) {
  EXPECT_EQ(
      RemarkOn("83cd0004 00000001 00000000 00000002 0a000028"),
      "FMT 3 is TMMBN here, which is exactly 16 bytes; this looks like a registered TMMBR (RFC 5104) of 20 bytes");
  EXPECT_EQ(
      RemarkOn("84cd0002 00000001 00000000"),
      "FMT 4 is unknown here and kept as bytes; it is the registered number of TMMBN (RFC 5104), which here is FMT "
      "3 in a simplified form");
  EXPECT_EQ(
      RemarkOn("8bcd0002 00000001 00000000"),
      "FMT 11 is unknown here and kept as bytes; it is the registered number of CCFB (RFC 8888), which here is FMT "
      "14");
  EXPECT_EQ(RemarkOn("83cd0003 00000001 00000000 000003e8"), "");
  EXPECT_EQ(RemarkOn("84ce0002 00000001 00000000"), "");
}

}  // namespace zunrtcp
