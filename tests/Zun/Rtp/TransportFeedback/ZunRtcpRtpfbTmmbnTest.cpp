#include <gtest/gtest.h>

#include "tests/support/LogCapture.h"
#include "tests/support/Samples.h"

namespace {

using namespace test;

using Tmmbn = TEST_OBJECT(ZunRtcpRtpfbTmmbn);

void ExpectFields(const ZunRtcpRtpfbTmmbn* p, ZunRtpSourceId sender, ZunRtpSourceId source, ZunUint32 max_bitrate) {
  EXPECT_EQ(p->type, ZUN_RTCPSUBPACKET_TYPE_RTPFB);
  EXPECT_EQ(p->fmt, ZUN_RTCPRTPFB_TYPE_TMMBN);
  EXPECT_EQ(p->sender, sender);
  EXPECT_EQ(p->source, source);
  EXPECT_EQ(ZunRtcpRtpfbTmmbnGetMaxBitrate(p), max_bitrate);
}

TEST(ZunRtcpRtpfbTmmbn, IsBuiltFromItsFields) {
  ZunRtcpRtpfbTmmbn tmmbn;
  ASSERT_EQ(ZunRtcpRtpfbTmmbnConstructFull(&tmmbn, 1, 2, 0xFFFFFFFF, nullptr), &tmmbn);
  ExpectFields(&tmmbn, 1, 2, 0xFFFFFFFF);
  EXPECT_TRUE(ZunRtcpRtpfbTmmbnSetMaxBitrate(&tmmbn, 4));
  ExpectFields(&tmmbn, 1, 2, 4);
  ASSERT_EQ(ZunRtcpRtpfbTmmbnConstructDefault(&tmmbn, nullptr), &tmmbn);
  ExpectFields(&tmmbn, 0, 0, 0);
}

TEST(ZunRtcpRtpfbTmmbn, OwnsNothing) {
  TestAllocator allocator;
  ZunRtcpRtpfbTmmbn tmmbn;
  ZunRtcpRtpfbTmmbnConstructFull(&tmmbn, 1, 2, 3, allocator);
  EXPECT_EQ(ZunRtcpRtpfbTmmbnGetAllocator(&tmmbn), nullptr);

  ZunRtcpRtpfbTmmbn copy;
  ASSERT_EQ(ZunRtcpRtpfbTmmbnConstructCopy(&copy, &tmmbn), &copy);
  ExpectFields(&copy, 1, 2, 3);
  ZunRtcpRtpfbTmmbnConstructFull(&tmmbn, 4, 5, 6, allocator);
  ASSERT_EQ(ZunRtcpRtpfbTmmbnAssign(&copy, &tmmbn), &copy);
  ExpectFields(&copy, 4, 5, 6);
  ZunRtcpRtpfbTmmbnDestruct(&copy);
  ZunRtcpRtpfbTmmbnDestruct(&copy);

  Tmmbn source;
  ZunRtcpRtpfbTmmbnConstructFull(source, 1, 2, 3, allocator);
  ZunRtcpSubpacket sp;
  ASSERT_EQ(ZunRtcpRtpfbTmmbnConstructCopyAllocator(&sp, source.sp(), allocator), &sp);
  ExpectFields(&sp.rtpfb.tmmbn, 1, 2, 3);
  EXPECT_EQ(ZunRtcpRtpfbTmmbnGetAllocatorWrap(&sp), nullptr);
  ZunRtcpRtpfbTmmbnSetMaxBitrate(source, 9);
  ASSERT_EQ(ZunRtcpRtpfbTmmbnAssignWrap(&sp, source.sp()), &sp);
  ExpectFields(&sp.rtpfb.tmmbn, 1, 2, 9);
  ZunRtcpRtpfbTmmbnDestructWrap(&sp);
  EXPECT_EQ(allocator.calls(), 0U);
}

TEST(ZunRtcpRtpfbTmmbn, ReadsAndWritesItsWireForm) {
  LogCapture log;
  Tmmbn tmmbn;
  EXPECT_EQ(ZunRtcpRtpfbTmmbnGetPacketLength(tmmbn.sp()), 16U);
  ASSERT_TRUE(tmmbn.Read(Golden("Tmmbn")));
  ExpectFields(tmmbn, 0x01020304, 0x05060708, 0xFFFFFFFE);
  EXPECT_EQ(ZunRtcpRtpfbTmmbnGetPacketLength(tmmbn.sp()), 16U);
  EXPECT_EQ(tmmbn.bytes(), Golden("Tmmbn"));
  log.ExpectNone();
}

TEST(ZunRtcpRtpfbTmmbn, KeepsWhatStandsInFrontOfACut) {
  LogCapture log;
  for (ZunSizeT size = 4; size <= Golden("Tmmbn").size(); ++size) {
    for (const ZunSizeT beyond : {ZunSizeT{0}, Golden("Tmmbn").size() - size, SIZE_MAX - size}) {
      SCOPED_TRACE(testing::Message() << size << " bytes, " << beyond << " announced after them");
      Tmmbn tmmbn;
      ZunRtcpRtpfbTmmbnConstructFull(tmmbn, 10, 20, 30, nullptr);
      EXPECT_EQ(tmmbn.Read(Golden("Tmmbn").substr(0, size), {.beyond = beyond}), size == 16 && beyond == 0);
      ExpectFields(tmmbn, size >= 8 ? 0x01020304 : 10, size >= 12 ? 0x05060708 : 20, size >= 16 ? 0xFFFFFFFE : 30);
    }
  }
  log.ExpectNone();
}

TEST(ZunRtcpRtpfbTmmbn, TakesABodyOfExactlyTwelveBytes) {
  Tmmbn tmmbn;
  EXPECT_FALSE(tmmbn.Read(Golden("Tmmbn") + Hex("00000000")));
  ExpectFields(tmmbn, 0x01020304, 0x05060708, 0xFFFFFFFE);
  EXPECT_TRUE(Parsed(Golden("Tmmbn")).ok);
  EXPECT_FALSE(Parsed(Hex("83CD0004 00000001 00000002 00000003 00000004")).ok);
}

TEST(ZunRtcpRtpfbTmmbn, AReadMakesItANotificationAgain) {
  Tmmbn tmmbn;
  tmmbn->type = 0;
  tmmbn->fmt = 9;
  ASSERT_TRUE(tmmbn.Read(Golden("Tmmbn")));
  ExpectFields(tmmbn, 0x01020304, 0x05060708, 0xFFFFFFFE);
}

}  // namespace
