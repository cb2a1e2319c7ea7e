#include "Zun/Rtp/ApplicationFeedback/ZunRtcpPsfbAfbAlbr.h"

#include <gtest/gtest.h>

#include "tests/support/FeedbackWire.h"
#include "tests/support/RowChecks.h"

namespace {

using namespace test;

const Row kRow = TEST_ROW(ZunRtcpPsfbAfbAlbr);

const std::string kWire = Hex(R"(
    8F CE 0004      | version 2, FMT 15, type 206, 5 words
    01020304        | sender
    11121314        | media source
    4E72 0002       | "Nr", ALBR
    21222324        | available bit rate
)");

void ExpectGolden(const ZunRtcpPsfbAfbAlbr& p) {
  EXPECT_EQ(p.type, 206);
  EXPECT_EQ(p.fmt, 15);
  EXPECT_EQ(p.sender, kSender);
  EXPECT_EQ(p.source, kSource);
  EXPECT_EQ(p.afbType, 2);
  EXPECT_EQ(ZunRtcpPsfbAfbAlbrGetAvailableLinkBitRate(&p), 0x21222324U);
}

TEST(AfbAlbrTest, ConstructDefaultIsZero) {
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

TEST(AfbAlbrTest, WritesAndReadsGoldenBytes) {
  ZunRtcpPsfbAfbAlbr p;
  ASSERT_EQ(ZunRtcpPsfbAfbAlbrConstructFull(&p, kSender, 1, nullptr), &p);
  EXPECT_EQ(p.source, 0U);
  EXPECT_EQ(p.available_bit_rate, 1U);
  p.source = kSource;
  EXPECT_TRUE(ZunRtcpPsfbAfbAlbrSetAvailableLinkBitRate(&p, 0x21222324));
  EXPECT_EQ(ToHex(Bytes(kRow, *Sub(&p))), ToHex(kWire));

  const Parsed parsed(kWire);
  ASSERT_TRUE(parsed.ok);
  const ZunRtcpPsfbAfb* const afb = ZunRtcpPsfbGetAfb(&parsed[0].psfb);
  ASSERT_EQ(ZunRtcpPsfbAfbGetType(afb), ZUN_RTCPPSFBAFB_TYPE_ALBR);
  ExpectGolden(*ZunRtcpPsfbAfbGetAlbr(afb));
  ExpectComesBackUnchanged(kWire);
}

TEST(AfbAlbrTest, CopiesAndAssignmentsTakeEveryField) {
  const Slot source(kRow, kWire);
  ZunRtcpPsfbAfbAlbr copy;
  EXPECT_EQ(ZunRtcpPsfbAfbAlbrConstructCopy(&copy, &source.sp.psfb.afb.albr), &copy);
  ExpectGolden(copy);
  ZunRtcpPsfbAfbAlbr assigned;
  ZunRtcpPsfbAfbAlbrConstructDefault(&assigned, nullptr);
  EXPECT_EQ(ZunRtcpPsfbAfbAlbrAssign(&assigned, &copy), &assigned);
  ExpectGolden(assigned);
  ZunRtcpPsfbAfbAlbrDestruct(&assigned);
  TestAllocator allocator;
  ZunRtcpSubpacket sp;
  EXPECT_EQ(kRow.construct_copy_allocator(&sp, &source.sp, allocator), &sp);
  ExpectGolden(sp.psfb.afb.albr);
  EXPECT_EQ(kRow.assign(&sp, &source.sp), &sp);
  EXPECT_EQ(kRow.get_allocator(&sp), nullptr);
  EXPECT_EQ(allocator.calls(), 0U);
}

TEST(AfbAlbrTest, BytesBehindTheBitRateAreIgnored) {
  const Slot slot(kRow, kWire + Hex("DEADBEEF"));
  EXPECT_TRUE(slot.ok);
  ExpectGolden(slot.sp.psfb.afb.albr);
}

TEST(AfbAlbrTest, TheReaderDoesNotCompareTheNumber) {
  std::string wire = kWire;
  wire[15] = 9;
  const Slot slot(kRow, wire);
  EXPECT_TRUE(slot.ok);
  ExpectGolden(slot.sp.psfb.afb.albr);
  wire[12] = 'n';
  EXPECT_FALSE(Slot(kRow, wire).ok);
}

TEST(AfbAlbrTest, CutAnywhereKeepsWhatWasRead) {
  ForEveryCut(kRow, kWire, [](const Slot& slot, ZunSizeT size, bool) {
    const ZunRtcpPsfbAfbAlbr& p = slot.sp.psfb.afb.albr;
    EXPECT_FALSE(slot.ok);
    EXPECT_EQ(p.sender, size >= 4 ? kSender : 0U);
    EXPECT_EQ(p.source, size >= 8 ? kSource : 0U);
    EXPECT_EQ(p.available_bit_rate, 0U);
  });
}

TEST(AfbAlbrTest, ReadsAndWritesInPlace) {
  Slot slot(kRow, Afb(Hex("4E720002 00000000")));
  EXPECT_TRUE(slot.Again(kWire));
  ExpectGolden(slot.sp.psfb.afb.albr);
  ExpectFailedWriteLeavesABeginning(kRow, kWire);
  ExpectWritesInPlace(kRow, kWire);
}

}  // namespace
