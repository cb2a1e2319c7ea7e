#include "Zun/Rtp/PayloadFeedback/ZunRtcpPsfbRpsi.h"

#include <gtest/gtest.h>

#include "tests/support/RowChecks.h"

namespace {

using namespace test;

const Row kRow = TEST_ROW(ZunRtcpPsfbRpsi);

const std::string kThreeOctets = Hex(R"(
    83 CE 0004    | version 2, FMT 3, type 206, 5 words
    01020304      | sender
    11121314      | media source
    1D            | padding bits: 3 zero octets and 5 unused bits
    60            | payload type 96
    A1 A2 A3      | bit string
    00 00 00      | padding
)");
const std::string kTwoOctets = Hex("83CE0003 00000007 00000008 03 61 B1B2");

class RpsiTest : public ::testing::Test {
 protected:
  RpsiTest() {
    ZunRtcpPsfbRpsiConstructDefault(&rpsi_, allocator_);
    rpsi_.sender = 0x01020304;
    rpsi_.source = 0x11121314;
  }
  ~RpsiTest() override { ZunRtcpPsfbRpsiDestruct(&rpsi_); }
  std::string bytes() const { return Bytes(kRow, *reinterpret_cast<const ZunRtcpSubpacket*>(&rpsi_)); }

  // A message with these octets behind the media source; its length field is not looked at.
  static std::string WithFci(const std::string& fci) { return Hex("83CE0000 01020304 11121314") + fci; }

  TestAllocator allocator_;
  ZunRtcpPsfbRpsi rpsi_;
};

TEST_F(RpsiTest, ConstructDefaultIsEmpty) {
  ZunRtcpPsfbRpsi rpsi;
  ASSERT_EQ(ZunRtcpPsfbRpsiConstructDefault(&rpsi, allocator_), &rpsi);
  EXPECT_EQ(rpsi.type, 206);
  EXPECT_EQ(rpsi.fmt, 3);
  EXPECT_EQ(rpsi.sender, 0U);
  EXPECT_EQ(rpsi.source, 0U);
  EXPECT_EQ(ZunRtcpPsfbRpsiGetUnusedBits(&rpsi), 0);
  EXPECT_EQ(ZunRtcpPsfbRpsiGetPt(&rpsi), 0);
  EXPECT_EQ(ZunRtcpPsfbRpsiGetRpsi(&rpsi)->size, 0U);
  EXPECT_EQ(ZunRtcpPsfbRpsiGetAllocator(&rpsi), allocator_.get());
  EXPECT_EQ(allocator_.calls(), 0U);
  ZunRtcpPsfbRpsiDestruct(&rpsi);
}

TEST_F(RpsiTest, WritesGoldenBytes) {
  ASSERT_TRUE(ZunRtcpPsfbRpsiSetRpsi(&rpsi_, Text(Hex("A1A2A3"))));
  ASSERT_TRUE(ZunRtcpPsfbRpsiSetUnusedBits(&rpsi_, 5));
  ASSERT_TRUE(ZunRtcpPsfbRpsiSetPt(&rpsi_, 96));
  EXPECT_EQ(ToHex(bytes()), ToHex(kThreeOctets));
}

TEST_F(RpsiTest, ReadsGoldenBytes) {
  const Parsed parsed(kThreeOctets);
  ASSERT_TRUE(parsed.ok);
  ASSERT_EQ(ZunRtcpPsfbGetFeedbackMessageType(&parsed[0].psfb), ZUN_RTCPPSFB_TYPE_RPSI);
  const ZunRtcpPsfbRpsi* const rpsi = ZunRtcpPsfbGetRpsi(&parsed[0].psfb);
  EXPECT_EQ(rpsi->sender, 0x01020304U);
  EXPECT_EQ(rpsi->source, 0x11121314U);
  EXPECT_EQ(ZunRtcpPsfbRpsiGetUnusedBits(rpsi), 5);
  EXPECT_EQ(ZunRtcpPsfbRpsiGetPt(rpsi), 96);
  EXPECT_EQ(Str(ZunRtcpPsfbRpsiGetRpsi(rpsi)), Hex("A1A2A3"));
}

TEST_F(RpsiTest, EverySizeIsPaddedToAWordAndComesBack) {
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
  rpsi_.unbits = 2;
  for (const auto& row : rows) {
    ASSERT_TRUE(ZunRtcpPsfbRpsiSetRpsi(&rpsi_, Text(Hex(row.bit_string))));
    const std::string wire = bytes();
    EXPECT_EQ(ToHex(wire.substr(12)), ToHex(Hex(row.fci)));
    EXPECT_EQ(wire.size() % 4, 0U);
    const Slot slot(kRow, wire);
    ASSERT_TRUE(slot.ok);
    EXPECT_EQ(slot.sp.psfb.rpsi.unbits, 2);
    EXPECT_EQ(Str(&slot.sp.psfb.rpsi.rpsi), Hex(row.bit_string));
  }
}

TEST_F(RpsiTest, PaddingOfAnEmptyBitStringIsNotCountedAndReadsBackAsTwoZeroOctets) {
  const std::string wire = bytes();
  EXPECT_EQ(ToHex(wire), ToHex(Hex("83CE0003 01020304 11121314 00 00 0000")));
  const Slot slot(kRow, wire);
  ASSERT_TRUE(slot.ok);
  EXPECT_EQ(Str(&slot.sp.psfb.rpsi.rpsi), Hex("0000"));
  EXPECT_EQ(slot.sp.psfb.rpsi.unbits, 0);
}

TEST_F(RpsiTest, UnusedBitsOfAnyValueAreAddedToThePaddingBits) {
  ASSERT_TRUE(ZunRtcpPsfbRpsiSetRpsi(&rpsi_, Text(Hex("A1A2A3"))));
  EXPECT_TRUE(ZunRtcpPsfbRpsiSetUnusedBits(&rpsi_, 255));
  EXPECT_EQ(ZunRtcpPsfbRpsiGetUnusedBits(&rpsi_), 255);
  EXPECT_EQ(ToHex(bytes().substr(12)), ToHex(Hex("17 00 A1A2 A3000000"))) << "24 + 255, cut to 8 bits";
}

TEST_F(RpsiTest, PayloadTypeHasSevenBits) {
  EXPECT_TRUE(ZunRtcpPsfbRpsiSetPt(&rpsi_, 127));
  EXPECT_FALSE(ZunRtcpPsfbRpsiSetPt(&rpsi_, 128));
  EXPECT_FALSE(ZunRtcpPsfbRpsiSetPt(&rpsi_, 255));
  EXPECT_EQ(ZunRtcpPsfbRpsiGetPt(&rpsi_), 127);
  rpsi_.pt = 0xE0;
  EXPECT_EQ(ToHex(bytes().substr(12)), ToHex(Hex("00 60 0000"))) << "the reserved bit is written as 0";
  const Slot slot(kRow, WithFci(Hex("00 E0 A1A2")));
  ASSERT_TRUE(slot.ok);
  EXPECT_EQ(slot.sp.psfb.rpsi.pt, 96) << "the reserved bit is not looked at";
}

TEST_F(RpsiTest, WholePaddingOctetsAreDroppedFromTheEnd) {
  const Slot slot(kRow, WithFci(Hex("0F 00 A1A2 A3A4A5A6")));
  ASSERT_TRUE(slot.ok);
  EXPECT_EQ(Str(&slot.sp.psfb.rpsi.rpsi), Hex("A1A2A3A4A5"));
  EXPECT_EQ(slot.sp.psfb.rpsi.unbits, 7);
}

TEST_F(RpsiTest, WithoutABitStringTheWholePaddingCountIsUnusedBits) {
  Slot slot(kRow, kThreeOctets);
  ASSERT_TRUE(slot.Again(WithFci(Hex("35 61 A1A2 A3A4A5A6"))));
  EXPECT_EQ(slot.sp.psfb.rpsi.unbits, 0x35);
  EXPECT_EQ(slot.sp.psfb.rpsi.rpsi.size, 0U);
  ASSERT_TRUE(slot.Again(kThreeOctets));
  ASSERT_TRUE(slot.Again(WithFci(Hex("05 61"))));
  EXPECT_EQ(slot.sp.psfb.rpsi.unbits, 5);
  EXPECT_EQ(slot.sp.psfb.rpsi.rpsi.size, 0U);
}

TEST_F(RpsiTest, MorePaddingThanThereIsFails) {
  Slot slot(kRow, kThreeOctets);
  EXPECT_FALSE(slot.Again(WithFci(Hex("38 61 A1A2 A3A4A5A6"))));
  EXPECT_EQ(slot.sp.psfb.rpsi.pt, 97) << "what stands in front was read";
  EXPECT_EQ(slot.sp.psfb.rpsi.unbits, 5);
  EXPECT_EQ(Str(&slot.sp.psfb.rpsi.rpsi), Hex("A1A2A3"));
}

TEST_F(RpsiTest, RefusedBitStringLeavesTheOldOne) {
  ASSERT_TRUE(ZunRtcpPsfbRpsiSetRpsi(&rpsi_, Text("a")));
  allocator_.RefuseFrom(0);
  const Text longer("0123456789abcdef0123456789abcdef");
  EXPECT_FALSE(ZunRtcpPsfbRpsiSetRpsi(&rpsi_, longer.get()));
  EXPECT_EQ(Str(&rpsi_.rpsi), "a");

  ZunRtcpPsfbRpsi source = rpsi_;
  source.sender = 9;
  source.rpsi = *longer.get();
  EXPECT_EQ(ZunRtcpPsfbRpsiAssign(&rpsi_, &source), nullptr);
  EXPECT_EQ(rpsi_.sender, 0x01020304U);
  EXPECT_EQ(Str(&rpsi_.rpsi), "a");
}

TEST_F(RpsiTest, AssignCopiesEveryField) {
  const Slot source(kRow, kThreeOctets);
  ASSERT_EQ(ZunRtcpPsfbRpsiAssign(&rpsi_, &source.sp.psfb.rpsi), &rpsi_);
  EXPECT_EQ(rpsi_.unbits, 5);
  EXPECT_EQ(rpsi_.pt, 96);
  EXPECT_EQ(Str(&rpsi_.rpsi), Hex("A1A2A3"));
}

TEST_F(RpsiTest, CutAnywhereKeepsWhatWasRead) {
  ForEveryCut(kRow, kThreeOctets, [](const Slot& slot, ZunSizeT size, bool end_is_beyond) {
    const ZunRtcpPsfbRpsi& rpsi = slot.sp.psfb.rpsi;
    // PB counts three padding octets: a body that ends where the bytes end needs as many, and what is more is bit
    // string; one that ends beyond them needs the octets of the bit string alone.
    EXPECT_EQ(slot.ok, size >= 13);
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

TEST_F(RpsiTest, KeepsTheRulesOfEveryRow) {
  ExpectComesBackUnchanged(kThreeOctets);
  ExpectAllocatorRules(kRow, kThreeOctets, kTwoOctets);
  ExpectRefusalsLoseNothing(kRow, kThreeOctets, kTwoOctets);
  ExpectFailedWriteLeavesABeginning(kRow, kThreeOctets, 14, 17);
  ExpectReadsInPlaceAsFresh(kRow, {kThreeOctets, Hex("83CE0004 00000007 00000008 1861 B1B2B3000000"), kTwoOctets});
  ExpectWritesInPlace(kRow, kThreeOctets);
}

}  // namespace
