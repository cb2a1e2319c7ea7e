#include <gtest/gtest.h>

#include "Zun/Rtp/ZunRtcpPacket.h"
#include "tests/support/TestAllocator.h"

namespace {

using namespace test;

TEST(ZunRtcpRtpfbNackSeqMap, IsAPlainPairOfNumbers) {
  ZunRtcpRtpfbNackSeqMap map;
  ASSERT_EQ(ZunRtcpRtpfbNackSeqMapConstruct(&map, 65535, 0x8001), &map);
  EXPECT_EQ(map.seqNumber, 65535);
  EXPECT_EQ(map.map, 0x8001);

  ZunRtcpRtpfbNackSeqMap copy;
  ASSERT_EQ(ZunRtcpRtpfbNackSeqMapConstructCopy(&copy, &map), &copy);
  EXPECT_EQ(copy.seqNumber, 65535);
  EXPECT_EQ(copy.map, 0x8001);

  ZunRtcpRtpfbNackSeqMapConstruct(&map, 7, 1);
  ASSERT_EQ(ZunRtcpRtpfbNackSeqMapAssign(&copy, &map), &copy);
  EXPECT_EQ(copy.seqNumber, 7);
  EXPECT_EQ(copy.map, 1);
  ZunRtcpRtpfbNackSeqMapDestruct(&copy);
  EXPECT_EQ(copy.seqNumber, 7);
}

TEST(ZunRtcpRtpfbNackSeqMap, LivesInVectors) {
  TestAllocator allocator;
  ZunVector_ZunRtcpRtpfbNackSeqMap v;
  ZunVector_ZunRtcpRtpfbNackSeqMapConstructDefault(&v, allocator);
  for (ZunUint16 i = 0; i < 5; ++i) {
    const ZunRtcpRtpfbNackSeqMap map = {i, static_cast<ZunUint16>(i * 2)};
    ASSERT_TRUE(ZunVector_ZunRtcpRtpfbNackSeqMapPushBack(&v, &map));
  }
  ASSERT_EQ(ZunVector_ZunRtcpRtpfbNackSeqMapErase(&v, v.begin), v.begin);
  ASSERT_EQ(ZunVector_ZunRtcpRtpfbNackSeqMapSize(&v), 4U);
  EXPECT_EQ(ZunVector_ZunRtcpRtpfbNackSeqMapFrontConst(&v)->seqNumber, 1);
  EXPECT_EQ(ZunVector_ZunRtcpRtpfbNackSeqMapBackConst(&v)->map, 8);
  ZunVector_ZunRtcpRtpfbNackSeqMapDestruct(&v);
}

}  // namespace
