#include <gtest/gtest.h>

#include "Zun/Rtp/ZunRtcpPacket.h"
#include "tests/support/TestAllocator.h"

namespace {

using namespace test;

TEST(ZunRtcpRtpfbTmmbrEntry, IsAPlainRecord) {
  ZunRtcpRtpfbTmmbrEntry entry = {9, 9, 9};
  ASSERT_EQ(ZunRtcpRtpfbTmmbrEntryConstructFull(&entry, 0xFFFFFFFE, 0xFFFFFFFF, nullptr), &entry);
  EXPECT_EQ(ZunRtcpRtpfbTmmbrEntryGetSsrc(&entry), 0xFFFFFFFE);
  EXPECT_EQ(ZunRtcpRtpfbTmmbrEntryGetMaxBitrate(&entry), 0xFFFFFFFF);
  EXPECT_EQ(entry.seqno, 0);

  EXPECT_TRUE(ZunRtcpRtpfbTmmbrEntrySetSsrc(&entry, 1));
  EXPECT_TRUE(ZunRtcpRtpfbTmmbrEntrySetMaxBitrate(&entry, 2));
  entry.seqno = 3;
  ZunRtcpRtpfbTmmbrEntry copy;
  ASSERT_EQ(ZunRtcpRtpfbTmmbrEntryConstructCopy(&copy, &entry), &copy);
  EXPECT_EQ(copy.ssrc, 1U);
  EXPECT_EQ(copy.seqno, 3);
  EXPECT_EQ(copy.max_bitrate, 2U);

  ZunRtcpRtpfbTmmbrEntryConstructFull(&entry, 4, 5, nullptr);
  ASSERT_EQ(ZunRtcpRtpfbTmmbrEntryAssign(&copy, &entry), &copy);
  EXPECT_EQ(copy.ssrc, 4U);
  EXPECT_EQ(copy.seqno, 0);
  EXPECT_EQ(copy.max_bitrate, 5U);
  ZunRtcpRtpfbTmmbrEntryDestruct(&copy);
  EXPECT_EQ(copy.ssrc, 4U);
}

TEST(ZunRtcpRtpfbTmmbrEntry, LivesInVectors) {
  TestAllocator allocator;
  ZunVector_ZunRtcpRtpfbTmmbrEntry v;
  ZunVector_ZunRtcpRtpfbTmmbrEntryConstructDefault(&v, allocator);
  for (ZunUint32 i = 0; i < 5; ++i) {
    const ZunRtcpRtpfbTmmbrEntry entry = {i, 0, i * 1000};
    ASSERT_TRUE(ZunVector_ZunRtcpRtpfbTmmbrEntryPushBack(&v, &entry));
  }
  ASSERT_EQ(ZunVector_ZunRtcpRtpfbTmmbrEntrySize(&v), 5U);
  EXPECT_EQ(ZunVector_ZunRtcpRtpfbTmmbrEntryBackConst(&v)->max_bitrate, 4000U);
  ZunVector_ZunRtcpRtpfbTmmbrEntryDestruct(&v);
}

}  // namespace
