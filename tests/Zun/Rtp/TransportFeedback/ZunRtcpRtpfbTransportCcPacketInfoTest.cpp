#include <gtest/gtest.h>

#include "Zun/Rtp/ZunRtcpPacket.h"
#include "tests/support/TestAllocator.h"

namespace {

using namespace test;

using Info = ZunRtcpRtpfbTransportCcPacketInfo;

void ExpectInfo(const Info& info, int received, int have_delta, int delta) {
  EXPECT_EQ(ZunRtcpRtpfbTransportCcPacketInfoGetReceived(&info), received);
  EXPECT_EQ(ZunRtcpRtpfbTransportCcPacketInfoHasDelta(&info), have_delta);
  EXPECT_EQ(ZunRtcpRtpfbTransportCcPacketInfoGetDelta(&info), delta);
}

TEST(ZunRtcpRtpfbTransportCcPacketInfo, TakesFourBytes) { EXPECT_EQ(sizeof(Info), 4U); }

TEST(ZunRtcpRtpfbTransportCcPacketInfo, IsBuiltOfNothingOrOfItsFields) {
  Info info;
  ASSERT_EQ(ZunRtcpRtpfbTransportCcPacketInfoConstructDefault(&info), &info);
  ExpectInfo(info, 0, 0, 0);
  ASSERT_EQ(ZunRtcpRtpfbTransportCcPacketInfoConstructFull(&info, 1, 1, -32768), &info);
  ExpectInfo(info, 1, 1, -32768);
  // Nothing relates the fields.
  ASSERT_EQ(ZunRtcpRtpfbTransportCcPacketInfoConstructFull(&info, 0, 1, 32767), &info);
  ExpectInfo(info, 0, 1, 32767);
}

TEST(ZunRtcpRtpfbTransportCcPacketInfo, IsCopiedAssignedAndSwapped) {
  Info a;
  Info b;
  ZunRtcpRtpfbTransportCcPacketInfoConstructFull(&a, 1, 1, 7);
  ASSERT_EQ(ZunRtcpRtpfbTransportCcPacketInfoConstructCopy(&b, &a), &b);
  ExpectInfo(b, 1, 1, 7);
  ZunRtcpRtpfbTransportCcPacketInfoConstructFull(&a, 1, 0, 0);
  ZunRtcpRtpfbTransportCcPacketInfoSwap(&a, &b);
  ExpectInfo(a, 1, 1, 7);
  ExpectInfo(b, 1, 0, 0);
  ZunRtcpRtpfbTransportCcPacketInfoSwap(&a, &a);
  ExpectInfo(a, 1, 1, 7);
  ASSERT_EQ(ZunRtcpRtpfbTransportCcPacketInfoAssign(&b, &a), &b);
  ExpectInfo(b, 1, 1, 7);
  ZunRtcpRtpfbTransportCcPacketInfoDestruct(&b);
  ExpectInfo(a, 1, 1, 7);
}

TEST(ZunRtcpRtpfbTransportCcPacketInfo, ItsVectorHoldsBlocksOfThem) {
  TestAllocator allocator;
  ZunVector_ZunRtcpRtpfbTransportCcPacketInfo v;
  const Info value = {1, 1, 9};
  ASSERT_NE(ZunVector_ZunRtcpRtpfbTransportCcPacketInfoConstructN(&v, 100, &value, allocator), nullptr);
  EXPECT_EQ(allocator.live_bytes(), 400U);
  for (const Info* info = v.begin; info != v.end; ++info) ExpectInfo(*info, 1, 1, 9);
  ZunVector_ZunRtcpRtpfbTransportCcPacketInfoDestruct(&v);
}

}  // namespace
