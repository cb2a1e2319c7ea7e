#include "Zun/Rtp/ApplicationFeedback/ZunRtcpPsfbAfbAlbr.h"

#include <gtest/gtest.h>

#include "tests/support/Samples.h"

namespace {

using namespace test;

const Row& kRow = kRowOf<ZunRtcpPsfbAfbAlbr>;

const std::string kWire = Golden("Albr");

void ExpectGolden(const ZunRtcpPsfbAfbAlbr& p) {
  EXPECT_EQ(p.type, 206);
  EXPECT_EQ(p.fmt, 15);
  EXPECT_EQ(p.sender, kSender);
  EXPECT_EQ(p.source, kSource);
  EXPECT_EQ(p.afbType, 2);
  EXPECT_EQ(ZunRtcpPsfbAfbAlbrGetAvailableLinkBitRate(&p), 0x21222324U);
}

TEST(ZunRtcpPsfbAfbAlbr, ConstructDefaultIsZero) {
  ZunRtcpPsfbAfbAlbr p;
  ASSERT_EQ(ZunRtcpPsfbAfbAlbrConstructDefault(&p, nullptr), &p);
  EXPECT_EQ(p.type, 206);
  EXPECT_EQ(p.fmt, 15);
  EXPECT_EQ(p.sender, 0U);
  EXPECT_EQ(p.source, 0U);
  EXPECT_EQ(p.afbType, 2);
  EXPECT_EQ(p.available_bit_rate, 0U);
  EXPECT_EQ(ZunRtcpPsfbAfbAlbrGetAllocator(&p), nullptr);
}

TEST(ZunRtcpPsfbAfbAlbr, WritesAndReadsGoldenBytes) {
  ZunRtcpPsfbAfbAlbr p;
  ASSERT_EQ(ZunRtcpPsfbAfbAlbrConstructFull(&p, kSender, 1, nullptr), &p);
  EXPECT_EQ(p.source, 0U);
  EXPECT_EQ(p.available_bit_rate, 1U);
  p.source = kSource;
  EXPECT_TRUE(ZunRtcpPsfbAfbAlbrSetAvailableLinkBitRate(&p, 0x21222324));
  EXPECT_EQ(ToHex(Bytes(kRow, *AsSubpacket(&p))), ToHex(kWire));

  const Parsed parsed(kWire);
  ASSERT_TRUE(parsed.ok);
  const ZunRtcpPsfbAfb* const afb = ZunRtcpPsfbGetAfb(&parsed[0].psfb);
  ASSERT_EQ(ZunRtcpPsfbAfbGetType(afb), ZUN_RTCPPSFBAFB_TYPE_ALBR);
  ExpectGolden(*ZunRtcpPsfbAfbGetAlbr(afb));
}

TEST(ZunRtcpPsfbAfbAlbr, CopiesAndAssignmentsTakeEveryField) {
  const Received source(kRow, kWire);
  ZunRtcpPsfbAfbAlbr copy;
  EXPECT_EQ(ZunRtcpPsfbAfbAlbrConstructCopy(&copy, &source.sp()->psfb.afb.albr), &copy);
  ExpectGolden(copy);
  ZunRtcpPsfbAfbAlbr assigned;
  ZunRtcpPsfbAfbAlbrConstructDefault(&assigned, nullptr);
  EXPECT_EQ(ZunRtcpPsfbAfbAlbrAssign(&assigned, &copy), &assigned);
  ExpectGolden(assigned);
  ZunRtcpPsfbAfbAlbrDestruct(&assigned);
  TestAllocator allocator;
  ZunRtcpSubpacket sp;
  EXPECT_EQ(kRow.construct_copy_allocator(&sp, source.sp(), allocator), &sp);
  ExpectGolden(sp.psfb.afb.albr);
  EXPECT_EQ(kRow.assign(&sp, source.sp()), &sp);
  EXPECT_EQ(kRow.get_allocator(&sp), nullptr);
  EXPECT_EQ(allocator.calls(), 0U);
}

TEST(ZunRtcpPsfbAfbAlbr, BytesAfterTheBitRateAreIgnored) {
  const Received received(kRow, kWire + Hex("DEADBEEF"));
  EXPECT_TRUE(received.ok);
  ExpectGolden(received.sp()->psfb.afb.albr);
}

TEST(ZunRtcpPsfbAfbAlbr, TheReaderDoesNotCompareTheNumber) {
  std::string wire = kWire;
  wire[15] = 9;
  const Received received(kRow, wire);
  EXPECT_TRUE(received.ok);
  ExpectGolden(received.sp()->psfb.afb.albr);
  wire[12] = 'n';
  EXPECT_FALSE(Received(kRow, wire).ok);
}

TEST(ZunRtcpPsfbAfbAlbr, CutAnywhereKeepsWhatWasRead) {
  ForEveryCut(kRow, kWire, [](const Received& received, ZunSizeT size, bool) {
    const ZunRtcpPsfbAfbAlbr& p = received.sp()->psfb.afb.albr;
    EXPECT_FALSE(received.ok);
    EXPECT_EQ(p.sender, size >= 4 ? kSender : 0U);
    EXPECT_EQ(p.source, size >= 8 ? kSource : 0U);
    EXPECT_EQ(p.available_bit_rate, 0U);
  });
}

}  // namespace
