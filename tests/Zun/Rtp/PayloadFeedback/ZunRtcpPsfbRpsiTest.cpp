#include "Zun/Rtp/PayloadFeedback/ZunRtcpPsfbRpsi.h"

#include <gtest/gtest.h>

#include "tests/support/Samples.h"

namespace {

using namespace test;

using Rpsi = TEST_OBJECT(ZunRtcpPsfbRpsi);

const Row& kRow = kRowOf<ZunRtcpPsfbRpsi>;

// A message with these octets after the media source; its length field is not looked at.
std::string WithFci(const std::string& fci) { return Hex("83CE0000 01020304 11121314") + fci; }

TEST(ZunRtcpPsfbRpsi, ConstructDefaultIsEmpty) {
  TestAllocator allocator;
  ZunRtcpPsfbRpsi rpsi;
  ASSERT_EQ(ZunRtcpPsfbRpsiConstructDefault(&rpsi, allocator), &rpsi);
  EXPECT_EQ(rpsi.type, 206);
  EXPECT_EQ(rpsi.fmt, 3);
  EXPECT_EQ(rpsi.sender, 0U);
  EXPECT_EQ(rpsi.source, 0U);
  EXPECT_EQ(ZunRtcpPsfbRpsiGetUnusedBits(&rpsi), 0);
  EXPECT_EQ(ZunRtcpPsfbRpsiGetPt(&rpsi), 0);
  EXPECT_EQ(ZunRtcpPsfbRpsiGetRpsi(&rpsi)->size, 0U);
  EXPECT_EQ(ZunRtcpPsfbRpsiGetAllocator(&rpsi), allocator.get());
  EXPECT_EQ(allocator.calls(), 0U);
  ZunRtcpPsfbRpsiDestruct(&rpsi);
}

TEST(ZunRtcpPsfbRpsi, WritesGoldenBytes) {
  Rpsi rpsi;
  SetSsrcs(rpsi);
  ASSERT_TRUE(ZunRtcpPsfbRpsiSetRpsi(rpsi, Text(Hex("A1A2A3"))));
  ASSERT_TRUE(ZunRtcpPsfbRpsiSetUnusedBits(rpsi, 5));
  ASSERT_TRUE(ZunRtcpPsfbRpsiSetPt(rpsi, 96));
  EXPECT_EQ(ToHex(rpsi.bytes()), ToHex(Golden("RpsiThreeOctets")));
}

TEST(ZunRtcpPsfbRpsi, ReadsGoldenBytes) {
  const Parsed parsed(Golden("RpsiThreeOctets"));
  ASSERT_TRUE(parsed.ok);
  ASSERT_EQ(ZunRtcpPsfbGetFeedbackMessageType(&parsed[0].psfb), ZUN_RTCPPSFB_TYPE_RPSI);
  const ZunRtcpPsfbRpsi* const rpsi = ZunRtcpPsfbGetRpsi(&parsed[0].psfb);
  EXPECT_EQ(rpsi->sender, 0x01020304U);
  EXPECT_EQ(rpsi->source, 0x11121314U);
  EXPECT_EQ(ZunRtcpPsfbRpsiGetUnusedBits(rpsi), 5);
  EXPECT_EQ(ZunRtcpPsfbRpsiGetPt(rpsi), 96);
  EXPECT_EQ(Str(ZunRtcpPsfbRpsiGetRpsi(rpsi)), Hex("A1A2A3"));
}

TEST(ZunRtcpPsfbRpsi, EverySizeIsPaddedToAWordAndComesBack) {
  Rpsi rpsi;
  SetSsrcs(rpsi);
  const struct {
    std::string bit_string;
    std::string fci;
  } rows[] = {
      {"A1", "0A 00 A1 00"},
      {"A1A2", "02 00 A1A2"},
      {"A1A2A3", "1A 00 A1A2 A3000000"},
      {"A1A2A3A4", "12 00 A1A2 A3A40000"},
      {"A1A2A3A4A5", "0A 00 A1A2 A3A4A500"},
      {"A1A2A3A4A5A6", "02 00 A1A2 A3A4A5A6"},
  };
  rpsi->unbits = 2;
  for (const auto& row : rows) {
    ASSERT_TRUE(ZunRtcpPsfbRpsiSetRpsi(rpsi, Text(Hex(row.bit_string))));
    const std::string wire = rpsi.bytes();
    EXPECT_EQ(ToHex(wire.substr(12)), ToHex(Hex(row.fci)));
    EXPECT_EQ(wire.size() % 4, 0U);
    const Received received(kRow, wire);
    ASSERT_TRUE(received.ok);
    EXPECT_EQ(received.sp()->psfb.rpsi.unbits, 2);
    EXPECT_EQ(Str(&received.sp()->psfb.rpsi.rpsi), Hex(row.bit_string));
  }
}

TEST(ZunRtcpPsfbRpsi, PaddingOfAnEmptyBitStringIsNotCountedAndReadsBackAsTwoZeroOctets) {
  Rpsi rpsi;
  SetSsrcs(rpsi);
  const std::string wire = rpsi.bytes();
  EXPECT_EQ(ToHex(wire), ToHex(Hex("83CE0003 01020304 11121314 00 00 0000")));
  const Received received(kRow, wire);
  ASSERT_TRUE(received.ok);
  EXPECT_EQ(Str(&received.sp()->psfb.rpsi.rpsi), Hex("0000"));
  EXPECT_EQ(received.sp()->psfb.rpsi.unbits, 0);
}

TEST(ZunRtcpPsfbRpsi, UnusedBitsOfAnyValueAreAddedToThePaddingBits) {
  Rpsi rpsi;
  ASSERT_TRUE(ZunRtcpPsfbRpsiSetRpsi(rpsi, Text(Hex("A1A2A3"))));
  EXPECT_TRUE(ZunRtcpPsfbRpsiSetUnusedBits(rpsi, 255));
  EXPECT_EQ(ZunRtcpPsfbRpsiGetUnusedBits(rpsi), 255);
  EXPECT_EQ(ToHex(rpsi.bytes().substr(12)), ToHex(Hex("17 00 A1A2 A3000000"))) << "24 + 255, cut to 8 bits";
}

TEST(ZunRtcpPsfbRpsi, PayloadTypeHasSevenBits) {
  Rpsi rpsi;
  EXPECT_TRUE(ZunRtcpPsfbRpsiSetPt(rpsi, 127));
  EXPECT_FALSE(ZunRtcpPsfbRpsiSetPt(rpsi, 128));
  EXPECT_FALSE(ZunRtcpPsfbRpsiSetPt(rpsi, 255));
  EXPECT_EQ(ZunRtcpPsfbRpsiGetPt(rpsi), 127);
  rpsi->pt = 0xE0;
  EXPECT_EQ(ToHex(rpsi.bytes().substr(12)), ToHex(Hex("00 60 0000"))) << "the reserved bit is written as 0";
  const Received received(kRow, WithFci(Hex("00 E0 A1A2")));
  ASSERT_TRUE(received.ok);
  EXPECT_EQ(received.sp()->psfb.rpsi.pt, 96) << "the reserved bit is not looked at";
}

TEST(ZunRtcpPsfbRpsi, WholePaddingOctetsAreDroppedFromTheEnd) {
  const Received received(kRow, WithFci(Hex("0F 00 A1A2 A3A4A5A6")));
  ASSERT_TRUE(received.ok);
  EXPECT_EQ(Str(&received.sp()->psfb.rpsi.rpsi), Hex("A1A2A3A4A5"));
  EXPECT_EQ(received.sp()->psfb.rpsi.unbits, 7);
}

TEST(ZunRtcpPsfbRpsi, WithoutABitStringTheWholePaddingCountIsUnusedBits) {
  Received received(kRow, Golden("RpsiThreeOctets"));
  ASSERT_TRUE(received.Read(WithFci(Hex("35 61 A1A2 A3A4A5A6"))));
  EXPECT_EQ(received.sp()->psfb.rpsi.unbits, 0x35);
  EXPECT_EQ(received.sp()->psfb.rpsi.rpsi.size, 0U);
  ASSERT_TRUE(received.Read(Golden("RpsiThreeOctets")));
  ASSERT_TRUE(received.Read(WithFci(Hex("05 61"))));
  EXPECT_EQ(received.sp()->psfb.rpsi.unbits, 5);
  EXPECT_EQ(received.sp()->psfb.rpsi.rpsi.size, 0U);
}

TEST(ZunRtcpPsfbRpsi, MorePaddingThanThereIsFails) {
  Received received(kRow, Golden("RpsiThreeOctets"));
  EXPECT_FALSE(received.Read(WithFci(Hex("38 61 A1A2 A3A4A5A6"))));
  EXPECT_EQ(received.sp()->psfb.rpsi.pt, 97) << "what stands in front was read";
  EXPECT_EQ(received.sp()->psfb.rpsi.unbits, 5);
  EXPECT_EQ(Str(&received.sp()->psfb.rpsi.rpsi), Hex("A1A2A3"));
}

TEST(ZunRtcpPsfbRpsi, RefusedBitStringLeavesTheOldOne) {
  TestAllocator allocator;
  Rpsi rpsi(allocator);
  SetSsrcs(rpsi);
  ASSERT_TRUE(ZunRtcpPsfbRpsiSetRpsi(rpsi, Text("a")));
  allocator.RefuseFrom(0);
  const Text longer("0123456789abcdef0123456789abcdef");
  EXPECT_FALSE(ZunRtcpPsfbRpsiSetRpsi(rpsi, longer.get()));
  EXPECT_EQ(Str(&rpsi->rpsi), "a");

  Rpsi source;
  source->sender = 9;
  ASSERT_TRUE(ZunRtcpPsfbRpsiSetRpsi(source, longer.get()));
  EXPECT_EQ(ZunRtcpPsfbRpsiAssign(rpsi, source), nullptr);
  EXPECT_EQ(rpsi->sender, 0x01020304U);
  EXPECT_EQ(Str(&rpsi->rpsi), "a");
}

TEST(ZunRtcpPsfbRpsi, AssignCopiesEveryField) {
  Rpsi rpsi;
  const Received source(kRow, Golden("RpsiThreeOctets"));
  ASSERT_EQ(ZunRtcpPsfbRpsiAssign(rpsi, &source.sp()->psfb.rpsi), rpsi);
  EXPECT_EQ(rpsi->unbits, 5);
  EXPECT_EQ(rpsi->pt, 96);
  EXPECT_EQ(Str(&rpsi->rpsi), Hex("A1A2A3"));
}

TEST(ZunRtcpPsfbRpsi, CutAnywhereKeepsWhatWasRead) {
  ForEveryCut(kRow, Golden("RpsiThreeOctets"), [](const Received& received, ZunSizeT size, bool end_is_beyond) {
    const ZunRtcpPsfbRpsi& rpsi = received.sp()->psfb.rpsi;
    // PB counts three padding octets: a body that ends where the bytes end needs as many, and what is more is bit
    // string; one that ends beyond them needs the octets of the bit string alone.
    EXPECT_EQ(received.ok, size >= 13);
    EXPECT_EQ(rpsi.sender, size >= 4 ? 0x01020304U : 0U);
    EXPECT_EQ(rpsi.source, size >= 8 ? 0x11121314U : 0U);
    EXPECT_EQ(rpsi.pt, size >= 10 ? 96 : 0);
    if (end_is_beyond) {
      EXPECT_EQ(rpsi.unbits, size >= 10 ? 5 : 0);
      EXPECT_EQ(Str(&rpsi.rpsi), size >= 13 ? Hex("A1A2A3") : "");
    } else {
      EXPECT_EQ(rpsi.unbits, size > 13 ? 5 : size == 13 ? 0x1D : 0);
      EXPECT_EQ(Str(&rpsi.rpsi), size > 13 ? Hex("A1A2A3").substr(0, size - 13) : "");
    }
  });
}

}  // namespace
