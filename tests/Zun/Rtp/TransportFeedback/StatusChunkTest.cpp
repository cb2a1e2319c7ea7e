#include "Zun/Rtp/TransportFeedback/StatusChunk.h"

#include <gtest/gtest.h>

#include <random>

namespace {

using PacketInfo = ZunRtcpRtpfbTransportCcPacketInfo;

// Any byte that is not 0 is true.
PacketInfo AnyInfo(std::mt19937& random) {
  const ZunUint8 truths[] = {0, 0, 1, 2, 0x80, 0xFF};
  const ZunInt16 deltas[] = {0, 1, 0x7F, 0x80, 0xFF, 0x100, 0x7FFF, -1, -0x100, -0x8000};
  return {truths[random() % 6], truths[random() % 6], deltas[random() % 10]};
}

TEST(StatusChunk, StatusIsThatOfThePacket) {
  EXPECT_EQ(zun::StatusOf({0, 0, 0}), zun::kNotReceived);
  EXPECT_EQ(zun::StatusOf({0, 1, 5}), zun::kNotReceived);
  EXPECT_EQ(zun::StatusOf({1, 0, 5}), zun::kNoDelta);
  EXPECT_EQ(zun::StatusOf({1, 1, 0}), zun::kSmallDelta);
  EXPECT_EQ(zun::StatusOf({0x80, 0x80, 255}), zun::kSmallDelta);
  EXPECT_EQ(zun::StatusOf({1, 1, 256}), zun::kLargeDelta);
  EXPECT_EQ(zun::StatusOf({1, 1, -1}), zun::kLargeDelta);
}

TEST(StatusChunk, ManyStatusesAtOnceAreThoseOfEachPacket) {
  std::mt19937 random(1);
  for (int round = 0; round < 5000; ++round) {
    PacketInfo infos[zun::kPacketsAtOnce];
    ZunUint32 pairs = 0;
    for (PacketInfo& info : infos) {
      info = AnyInfo(random);
      pairs = pairs << 2 | zun::StatusOf(info);
    }
    ASSERT_EQ(zun::StatusPairsOf(infos), pairs);
  }
}

}  // namespace
