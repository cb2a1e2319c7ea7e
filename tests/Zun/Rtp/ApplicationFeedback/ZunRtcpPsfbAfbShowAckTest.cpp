#include "Zun/Rtp/ApplicationFeedback/ZunRtcpPsfbAfbShowAck.h"

#include <gtest/gtest.h>

#include "tests/support/Samples.h"

namespace {

using namespace test;

const Row& kRow = kRowOf<ZunRtcpPsfbAfbShowAck>;

const std::string kWire = Golden("ShowAck");

void ExpectGolden(const ZunRtcpPsfbAfbShowAck& p) {
  EXPECT_EQ(p.type, 206);
  EXPECT_EQ(p.fmt, 15);
  EXPECT_EQ(p.sender, kSender);
  EXPECT_EQ(p.source, 0U);
  EXPECT_EQ(p.afbType, 4);
  EXPECT_EQ(ZunRtcpPsfbAfbShowAckGetSequenceNumber(&p), 0x9A);
  EXPECT_EQ(ZunRtcpPsfbAfbShowAckGetShowSender(&p), 0x21222324U);
}

TEST(ZunRtcpPsfbAfbShowAck, ConstructDefaultIsZero) {
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

TEST(ZunRtcpPsfbAfbShowAck, WritesAndReadsGoldenBytes) {
  ZunRtcpPsfbAfbShowAck p;
  ASSERT_EQ(ZunRtcpPsfbAfbShowAckConstructFull(&p, kSender, 0x9A, 0x21222324), &p);
  ExpectGolden(p);
  EXPECT_EQ(ToHex(Bytes(kRow, *AsSubpacket(&p))), ToHex(kWire));

  const Parsed parsed(kWire);
  ASSERT_TRUE(parsed.ok);
  const ZunRtcpPsfbAfb* const afb = ZunRtcpPsfbGetAfb(&parsed[0].psfb);
  ASSERT_EQ(ZunRtcpPsfbAfbGetType(afb), ZUN_RTCPPSFBAFB_TYPE_SHOWACK);
  ExpectGolden(*ZunRtcpPsfbAfbGetShowAck(afb));
}

TEST(ZunRtcpPsfbAfbShowAck, CopiesAndAssignmentsTakeEveryField) {
  const Received source(kRow, kWire);
  ZunRtcpPsfbAfbShowAck copy;
  EXPECT_EQ(ZunRtcpPsfbAfbShowAckConstructCopy(&copy, &source.sp()->psfb.afb.showAck), &copy);
  ExpectGolden(copy);
  ZunRtcpPsfbAfbShowAck assigned;
  ZunRtcpPsfbAfbShowAckConstructDefault(&assigned, nullptr);
  EXPECT_EQ(ZunRtcpPsfbAfbShowAckAssign(&assigned, &copy), &assigned);
  ExpectGolden(assigned);
  ZunRtcpPsfbAfbShowAckDestruct(&assigned);
  TestAllocator allocator;
  ZunRtcpSubpacket sp;
  EXPECT_EQ(kRow.construct_copy_allocator(&sp, source.sp(), allocator), &sp);
  ExpectGolden(sp.psfb.afb.showAck);
  EXPECT_EQ(kRow.assign(&sp, source.sp()), &sp);
  EXPECT_EQ(kRow.get_allocator(&sp), nullptr);
  EXPECT_EQ(allocator.calls(), 0U);
}

TEST(ZunRtcpPsfbAfbShowAck, WhatFollowsTheSequenceNumberIsNotRead) {
  std::string wire = kWire;
  for (const std::size_t n : std::initializer_list<std::size_t>{21, 22, 23}) wire[n] = '!';
  EXPECT_TRUE(Received(kRow, wire).ok);
  const Received cut(kRow, kWire.substr(0, 21));
  EXPECT_TRUE(cut.ok);
  ExpectGolden(cut.sp()->psfb.afb.showAck);
}

TEST(ZunRtcpPsfbAfbShowAck, TheReaderDoesNotCompareTheNumber) {
  std::string wire = kWire;
  wire[15] = 9;
  const Received received(kRow, wire);
  EXPECT_TRUE(received.ok);
  ExpectGolden(received.sp()->psfb.afb.showAck);
  wire[12] = 'n';
  EXPECT_FALSE(Received(kRow, wire).ok);
}

TEST(ZunRtcpPsfbAfbShowAck, CutAnywhereKeepsWhatWasRead) {
  ForEveryCut(kRow, kWire, [](const Received& received, ZunSizeT size, bool) {
    const ZunRtcpPsfbAfbShowAck& p = received.sp()->psfb.afb.showAck;
    EXPECT_EQ(received.ok, size >= 17);
    EXPECT_EQ(p.sender, size >= 4 ? kSender : 0U);
    EXPECT_EQ(p.showSender, size >= 16 ? 0x21222324U : 0U);
    EXPECT_EQ(p.seqno, size >= 17 ? 0x9A : 0);
  });
}

}  // namespace
