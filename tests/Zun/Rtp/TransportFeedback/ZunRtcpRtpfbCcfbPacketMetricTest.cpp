#include <gtest/gtest.h>

#include "Zun/Rtp/ZunRtcpPacket.h"
#include "tests/support/TestAllocator.h"

namespace {

using namespace test;

using Metric = ZunRtcpRtpfbCcfbPacketMetric;

void ExpectMetric(const Metric& metric, unsigned received, unsigned ecn, unsigned offset) {
  EXPECT_EQ(ZunRtcpRtpfbCcfbPacketMetricGetReceived(&metric), received);
  EXPECT_EQ(ZunRtcpRtpfbCcfbPacketMetricGetEcn(&metric), ecn);
  EXPECT_EQ(ZunRtcpRtpfbCcfbPacketMetricGetArrivalTimeOffset(&metric), offset);
}

TEST(ZunRtcpRtpfbCcfbPacketMetric, IsBuiltOfNothingOrOfUncheckedFields) {
  Metric metric;
  ASSERT_EQ(ZunRtcpRtpfbCcfbPacketMetricConstructDefault(&metric), &metric);
  ExpectMetric(metric, 0, 0, 0);
  ASSERT_EQ(ZunRtcpRtpfbCcfbPacketMetricConstructFull(&metric, 1, 3, 0x1FFF), &metric);
  ExpectMetric(metric, 1, 3, 0x1FFF);
  ASSERT_EQ(ZunRtcpRtpfbCcfbPacketMetricConstructFull(&metric, 0, 255, 0xFFFF), &metric);
  ExpectMetric(metric, 0, 255, 0xFFFF);
}

TEST(ZunRtcpRtpfbCcfbPacketMetric, IsCopiedAndAssigned) {
  Metric a;
  Metric b;
  ZunRtcpRtpfbCcfbPacketMetricConstructFull(&a, 1, 2, 3);
  ASSERT_EQ(ZunRtcpRtpfbCcfbPacketMetricConstructCopy(&b, &a), &b);
  ExpectMetric(b, 1, 2, 3);
  ZunRtcpRtpfbCcfbPacketMetricConstructFull(&a, 1, 0, 9);
  ASSERT_EQ(ZunRtcpRtpfbCcfbPacketMetricAssign(&b, &a), &b);
  ExpectMetric(b, 1, 0, 9);
  ZunRtcpRtpfbCcfbPacketMetricDestruct(&b);
  ExpectMetric(a, 1, 0, 9);
}

TEST(ZunRtcpRtpfbCcfbPacketMetric, ItsVectorHoldsBlocksOfThem) {
  TestAllocator allocator;
  ZunVector_ZunRtcpRtpfbCcfbPacketMetric v;
  const Metric value = {1, 2, 3};
  ASSERT_NE(ZunVector_ZunRtcpRtpfbCcfbPacketMetricConstructN(&v, 50, &value, allocator), nullptr);
  EXPECT_EQ(allocator.live_bytes(), 200U);
  for (const Metric* metric = v.begin; metric != v.end; ++metric) ExpectMetric(*metric, 1, 2, 3);
  ZunVector_ZunRtcpRtpfbCcfbPacketMetricDestruct(&v);
}

}  // namespace
