#include "Zun/Rtp/ApplicationFeedback/ZunRtcpPsfbAfbShowAck.h"

#include <gtest/gtest.h>

#include "tests/support/FeedbackWire.h"
#include "tests/support/RowChecks.h"

namespace {

using namespace test;

const Row kRow = TEST_ROW(ZunRtcpPsfbAfbShowAck);

const std::string kWire = Hex(R"(
    8F CE 0005      | version 2, FMT 15, type 206, 6 words
    01020304        | sender
    00000000        | media source
    4E72 0004       | "Nr", SHOWACK
    21222324        | sender of the SHOW
    9A              | its sequence number
    000000
)");

void ExpectGolden(const ZunRtcpPsfbAfbShowAck& p) {
  EXPECT_EQ(p.type, 206);
  EXPECT_EQ(p.fmt, 15);
  EXPECT_EQ(p.sender, kSender);
  EXPECT_EQ(p.source, 0U);
  EXPECT_EQ(p.afbType, 4);
  EXPECT_EQ(ZunRtcpPsfbAfbShowAckGetSequenceNumber(&p), 0x9A);
  EXPECT_EQ(ZunRtcpPsfbAfbShowAckGetShowSender(&p), 0x21222324U);
}

TEST(AfbShowAckTest, ConstructDefaultIsZero) {
  ZunRtcpPsfbAfbShowAck p;
  ASSERT_EQ(ZunRtcpPsfbAfbShowAckConstructDefault(&p, nullptr), &p);
  EXPECT_EQ(p.type, 206);
  EXPECT_EQ(p.fmt, 15);
  EXPECT_EQ(p.sender, 0U);
  EXPECT_EQ(p.source, 0U);
  EXPECT_EQ(p.afbType, 4);
  EXPECT_EQ(p.seqno, 0);
  EXPECT_EQ(p.showSender, 0U);
  EXPECT_EQ(ZunRtcpPsfbAfbShowAckGetAllocator(&p), nullptr);
}

TEST(AfbShowAckTest, WritesAndReadsGoldenBytes) {
  ZunRtcpPsfbAfbShowAck p;
  ASSERT_EQ(ZunRtcpPsfbAfbShowAckConstructFull(&p, kSender, 0x9A, 0x21222324), &p);
  ExpectGolden(p);
  EXPECT_EQ(ToHex(Bytes(kRow, *Sub(&p))), ToHex(kWire));

  const Parsed parsed(kWire);
  ASSERT_TRUE(parsed.ok);
  const ZunRtcpPsfbAfb* const afb = ZunRtcpPsfbGetAfb(&parsed[0].psfb);
  ASSERT_EQ(ZunRtcpPsfbAfbGetType(afb), ZUN_RTCPPSFBAFB_TYPE_SHOWACK);
  ExpectGolden(*ZunRtcpPsfbAfbGetShowAck(afb));
  ExpectComesBackUnchanged(kWire);
}

TEST(AfbShowAckTest, CopiesAndAssignmentsTakeEveryField) {
  const Slot source(kRow, kWire);
  ZunRtcpPsfbAfbShowAck copy;
  EXPECT_EQ(ZunRtcpPsfbAfbShowAckConstructCopy(&copy, &source.sp.psfb.afb.showAck), &copy);
  ExpectGolden(copy);
  ZunRtcpPsfbAfbShowAck assigned;
  ZunRtcpPsfbAfbShowAckConstructDefault(&assigned, nullptr);
  EXPECT_EQ(ZunRtcpPsfbAfbShowAckAssign(&assigned, &copy), &assigned);
  ExpectGolden(assigned);
  ZunRtcpPsfbAfbShowAckDestruct(&assigned);
  TestAllocator allocator;
  ZunRtcpSubpacket sp;
  EXPECT_EQ(kRow.construct_copy_allocator(&sp, &source.sp, allocator), &sp);
  ExpectGolden(sp.psfb.afb.showAck);
  EXPECT_EQ(kRow.assign(&sp, &source.sp), &sp);
  EXPECT_EQ(kRow.get_allocator(&sp), nullptr);
  EXPECT_EQ(allocator.calls(), 0U);
}

TEST(AfbShowAckTest, WhatFollowsTheSequenceNumberIsNotRead) {
  std::string wire = kWire;
  for (const std::size_t n : std::initializer_list<std::size_t>{21, 22, 23}) wire[n] = '!';
  EXPECT_TRUE(Slot(kRow, wire).ok);
  const Slot cut(kRow, kWire.substr(0, 21));
  EXPECT_TRUE(cut.ok);
  ExpectGolden(cut.sp.psfb.afb.showAck);
}

TEST(AfbShowAckTest, TheReaderDoesNotCompareTheNumber) {
  std::string wire = kWire;
  wire[15] = 9;
  const Slot slot(kRow, wire);
  EXPECT_TRUE(slot.ok);
  ExpectGolden(slot.sp.psfb.afb.showAck);
  wire[12] = 'n';
  EXPECT_FALSE(Slot(kRow, wire).ok);
}

TEST(AfbShowAckTest, CutAnywhereKeepsWhatWasRead) {
  ForEveryCut(kRow, kWire, [](const Slot& slot, ZunSizeT size, bool) {
    const ZunRtcpPsfbAfbShowAck& p = slot.sp.psfb.afb.showAck;
    EXPECT_EQ(slot.ok, size >= 17);
    EXPECT_EQ(p.sender, size >= 4 ? kSender : 0U);
    EXPECT_EQ(p.showSender, size >= 16 ? 0x21222324U : 0U);
    EXPECT_EQ(p.seqno, size >= 17 ? 0x9A : 0);
  });
}

TEST(AfbShowAckTest, ReadsAndWritesInPlace) {
  Slot slot(kRow, Afb(Hex("4E720004 00000000 00000000")));
  EXPECT_TRUE(slot.Again(kWire));
  ExpectGolden(slot.sp.psfb.afb.showAck);
  ExpectFailedWriteLeavesABeginning(kRow, kWire);
  ExpectWritesInPlace(kRow, kWire);
}

}  // namespace
