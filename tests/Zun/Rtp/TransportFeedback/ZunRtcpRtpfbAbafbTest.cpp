#include <gtest/gtest.h>

#include <limits>

#include "tests/support/LogCapture.h"
#include "tests/support/Samples.h"

namespace {

using namespace test;

using Abafb = TEST_OBJECT(ZunRtcpRtpfbAbafb);

constexpr ZunTime kMillisecond = 1000000;

// Stops the monotonic clock at 0: its ticks are given no length.
class StoppedClock {
 public:
  StoppedClock() : interval_(ZunTimeMachMonotonicTimeClockInterval_) { ZunTimeMachMonotonicTimeClockInterval_ = 0; }
  ~StoppedClock() { ZunTimeMachMonotonicTimeClockInterval_ = interval_; }
  StoppedClock(const StoppedClock&) = delete;
  StoppedClock& operator=(const StoppedClock&) = delete;

 private:
  double interval_;
};

void ExpectFields(const ZunRtcpRtpfbAbafb* p, ZunRtpSourceId sender, ZunRtpSourceId source, ZunUint32 timestamp,
                  ZunUint32 data_rate, ZunUint32 loss_rate, ZunUint32 aba_data_rate) {
  EXPECT_EQ(p->type, ZUN_RTCPSUBPACKET_TYPE_RTPFB);
  EXPECT_EQ(p->fmt, ZUN_RTCPRTPFB_TYPE_ABAFB);
  EXPECT_EQ(p->sender, sender);
  EXPECT_EQ(p->source, source);
  EXPECT_EQ(ZunRtcpRtpfbAbafbGetTimestamp(p), timestamp);
  EXPECT_EQ(ZunRtcpRtpfbAbafbGetDataRate(p), data_rate);
  EXPECT_EQ(ZunRtcpRtpfbAbafbGetLossRate(p), loss_rate);
  EXPECT_EQ(ZunRtcpRtpfbAbafbGetAbaDataRate(p), aba_data_rate);
}

void ExpectStoredDelay(const ZunRtcpRtpfbAbafb* p, ZunUint32 delay) {
  EXPECT_FALSE(p->calculate_delay);
  EXPECT_EQ(p->u.delay, delay);
  EXPECT_EQ(ZunRtcpRtpfbAbafbGetDelay(p), delay);
}

ZunUint32 WrittenDelay(const Abafb& abafb) {
  const std::string written = abafb.bytes();
  return ZunUint32FromOctets(written.data() + 16);
}

TEST(ZunRtcpRtpfbAbafb, IsBuiltWithAStoredDelay) {
  ZunRtcpRtpfbAbafb abafb;
  ASSERT_EQ(ZunRtcpRtpfbAbafbConstructFull(&abafb, 1, 2, 3, 4, 5, 6, nullptr), &abafb);
  ExpectFields(&abafb, 1, 0, 2, 4, 5, 6);
  ExpectStoredDelay(&abafb, 3);
  ASSERT_EQ(ZunRtcpRtpfbAbafbConstructDefault(&abafb, nullptr), &abafb);
  ExpectFields(&abafb, 0, 0, 0, 0, 0, 0);
  ExpectStoredDelay(&abafb, 0);
  EXPECT_EQ(abafb.u.timestamp_time, 0);
}

TEST(ZunRtcpRtpfbAbafb, IsBuiltWithAMeasuredDelay) {
  const StoppedClock at_zero;
  ZunRtcpRtpfbAbafb abafb;
  ASSERT_EQ(ZunRtcpRtpfbAbafbConstructWithCalculatedDelay(&abafb, 1, 2, -3 * kMillisecond, 4, 5, 6, nullptr), &abafb);
  ExpectFields(&abafb, 1, 0, 2, 4, 5, 6);
  EXPECT_TRUE(abafb.calculate_delay);
  EXPECT_EQ(abafb.u.timestamp_time, -3 * kMillisecond);
  EXPECT_EQ(ZunRtcpRtpfbAbafbGetDelay(&abafb), 3000U);
}

TEST(ZunRtcpRtpfbAbafb, EachSetterStoresItsField) {
  Abafb abafb;
  EXPECT_TRUE(ZunRtcpRtpfbAbafbSetTimestamp(abafb, 1));
  EXPECT_TRUE(ZunRtcpRtpfbAbafbSetDataRate(abafb, 2));
  EXPECT_TRUE(ZunRtcpRtpfbAbafbSetLossRate(abafb, 3));
  EXPECT_TRUE(ZunRtcpRtpfbAbafbSetAbaDataRate(abafb, 4));
  EXPECT_TRUE(ZunRtcpRtpfbAbafbSetDelay(abafb, 0xFFFFFFFF));
  ExpectFields(abafb, 0, 0, 1, 2, 3, 4);
  ExpectStoredDelay(abafb, 0xFFFFFFFF);
}

TEST(ZunRtcpRtpfbAbafb, TheDelayIsStoredOrMeasuredAsWasSetLast) {
  const StoppedClock at_zero;
  Abafb abafb;
  EXPECT_TRUE(ZunRtcpRtpfbAbafbSetTimestampTime(abafb, -5 * kMillisecond));
  EXPECT_TRUE(abafb->calculate_delay);
  EXPECT_EQ(ZunRtcpRtpfbAbafbGetDelay(abafb), 5000U);
  EXPECT_TRUE(ZunRtcpRtpfbAbafbSetDelay(abafb, 7));
  ExpectStoredDelay(abafb, 7);
  EXPECT_TRUE(ZunRtcpRtpfbAbafbSetTimestampTime(abafb, -6 * kMillisecond));
  EXPECT_EQ(ZunRtcpRtpfbAbafbGetDelay(abafb), 6000U);
}

TEST(ZunRtcpRtpfbAbafb, TheMeasuredDelayIsTheLow32BitsOfMicrosecondsTruncatedTowardZero) {
  const StoppedClock at_zero;
  const struct {
    ZunTime timestamp_time;
    ZunUint32 delay;
  } cases[] = {
      {0, 0},
      {-999, 0},
      {-1000, 1},
      {-1999, 1},
      {999, 0},  // a time to come
      {1000, 0xFFFFFFFF},
      {1999, 0xFFFFFFFF},
      {-4294967295000, 0xFFFFFFFF},
      {-4294967296000, 0},
      {std::numeric_limits<ZunTime>::max(), static_cast<ZunUint32>(-9223372036854775)},
      {std::numeric_limits<ZunTime>::min() + 1, static_cast<ZunUint32>(9223372036854775)},
      // The difference is taken modulo 2^64.
      {std::numeric_limits<ZunTime>::min(), static_cast<ZunUint32>(-9223372036854775)},
  };
  for (const auto& c : cases) {
    Abafb abafb;
    ZunRtcpRtpfbAbafbSetTimestampTime(abafb, c.timestamp_time);
    EXPECT_EQ(ZunRtcpRtpfbAbafbGetDelay(abafb), c.delay) << c.timestamp_time;
    EXPECT_EQ(WrittenDelay(abafb), c.delay) << c.timestamp_time;
  }
}

TEST(ZunRtcpRtpfbAbafb, TheMeasuredDelayGrowsWithTheClock) {
  Abafb abafb;
  const ZunTime start = ZunTimeGetCurrentMonotonicTime() - 3 * kMillisecond;
  ZunRtcpRtpfbAbafbConstructWithCalculatedDelay(abafb, 1, 2, start, 4, 5, 6, nullptr);
  const ZunUint32 first = ZunRtcpRtpfbAbafbGetDelay(abafb);
  EXPECT_GE(first, 3000U);
  while (ZunTimeGetCurrentMonotonicTime() < start + 4 * kMillisecond) {
  }
  const ZunUint32 second = WrittenDelay(abafb);
  EXPECT_GE(second, 4000U);
  EXPECT_GT(second, first);
  const ZunTime passed = ZunTimeGetCurrentMonotonicTime() - start;
  EXPECT_LE(second, static_cast<ZunUint32>(passed / 1000));
}

TEST(ZunRtcpRtpfbAbafb, OwnsNothingAndIsCopiedWhole) {
  const StoppedClock at_zero;
  TestAllocator allocator;
  Abafb source(allocator);
  ZunRtcpRtpfbAbafbConstructWithCalculatedDelay(source, 1, 2, -8 * kMillisecond, 4, 5, 6, allocator);
  source->source = 9;
  EXPECT_EQ(ZunRtcpRtpfbAbafbGetAllocator(source), nullptr);

  ZunRtcpRtpfbAbafb copy;
  ASSERT_EQ(ZunRtcpRtpfbAbafbConstructCopy(&copy, source), &copy);
  ExpectFields(&copy, 1, 9, 2, 4, 5, 6);
  EXPECT_EQ(ZunRtcpRtpfbAbafbGetDelay(&copy), 8000U);

  Abafb assigned;
  ASSERT_EQ(ZunRtcpRtpfbAbafbAssignWrap(assigned.sp(), source.sp()), assigned.sp());
  ExpectFields(assigned, 1, 9, 2, 4, 5, 6);
  EXPECT_TRUE(assigned->calculate_delay);
  EXPECT_EQ(ZunRtcpRtpfbAbafbGetDelay(assigned), 8000U);
  ZunRtcpRtpfbAbafbSetDelay(source, 3);
  ASSERT_EQ(ZunRtcpRtpfbAbafbAssign(assigned, source), assigned.get());
  ExpectStoredDelay(assigned, 3);

  ZunRtcpSubpacket sp;
  ASSERT_EQ(ZunRtcpRtpfbAbafbConstructCopyAllocator(&sp, source.sp(), allocator), &sp);
  ExpectFields(&sp.rtpfb.abafb, 1, 9, 2, 4, 5, 6);
  ExpectStoredDelay(&sp.rtpfb.abafb, 3);
  EXPECT_EQ(ZunRtcpRtpfbAbafbGetAllocatorWrap(&sp), nullptr);
  ZunRtcpRtpfbAbafbDestructWrap(&sp);
  ZunRtcpRtpfbAbafbDestructWrap(&sp);
  EXPECT_EQ(allocator.calls(), 0U);
}

TEST(ZunRtcpRtpfbAbafb, ReadsAndWritesItsWireForm) {
  LogCapture log;
  Abafb abafb;
  EXPECT_EQ(ZunRtcpRtpfbAbafbGetPacketLength(abafb.sp()), 32U);
  ASSERT_TRUE(abafb.Read(Golden("RtpfbAbafb")));
  ExpectFields(abafb, 0x01020304, 0x05060708, 0x11121314, 0x21222324, 0x31323334, 0x41424344);
  ExpectStoredDelay(abafb, 3000);
  EXPECT_EQ(ZunRtcpRtpfbAbafbGetPacketLength(abafb.sp()), 32U);
  EXPECT_EQ(abafb.bytes(), Golden("RtpfbAbafb"));
  log.ExpectNone();
}

TEST(ZunRtcpRtpfbAbafb, AMeasuredDelayIsWrittenAtItsPlace) {
  const StoppedClock at_zero;
  Abafb abafb;
  ZunRtcpRtpfbAbafbConstructWithCalculatedDelay(abafb, 0x01020304, 0x11121314, -3 * kMillisecond, 0x21222324,
                                                0x31323334, 0x41424344, nullptr);
  abafb->source = 0x05060708;
  EXPECT_EQ(abafb.bytes(), Golden("RtpfbAbafb"));
}

TEST(ZunRtcpRtpfbAbafb, AReadReportCarriesAStoredDelay) {
  Abafb abafb;
  ZunRtcpRtpfbAbafbSetTimestampTime(abafb, 1);
  abafb->type = 0;
  abafb->fmt = 9;
  ASSERT_TRUE(abafb.Read(Golden("RtpfbAbafb")));
  ExpectFields(abafb, 0x01020304, 0x05060708, 0x11121314, 0x21222324, 0x31323334, 0x41424344);
  ExpectStoredDelay(abafb, 3000);
}

TEST(ZunRtcpRtpfbAbafb, KeepsWhatStandsInFrontOfACut) {
  LogCapture log;
  for (ZunSizeT size = 4; size <= Golden("RtpfbAbafb").size(); ++size) {
    for (const ZunSizeT beyond : {ZunSizeT{0}, Golden("RtpfbAbafb").size() - size, SIZE_MAX - size}) {
      SCOPED_TRACE(testing::Message() << size << " bytes, " << beyond << " announced after them");
      Abafb abafb;
      ZunRtcpRtpfbAbafbConstructFull(abafb, 10, 30, 40, 50, 60, 70, nullptr);
      abafb->source = 20;
      EXPECT_EQ(abafb.Read(Golden("RtpfbAbafb").substr(0, size), {.beyond = beyond}), size == 32 && beyond == 0);
      ExpectFields(abafb, size >= 8 ? 0x01020304 : 10, size >= 12 ? 0x05060708 : 20, size >= 16 ? 0x11121314 : 30,
                   size >= 24 ? 0x21222324 : 50, size >= 28 ? 0x31323334 : 60, size >= 32 ? 0x41424344 : 70);
      ExpectStoredDelay(abafb, size >= 20 ? 3000 : 40);
    }
  }
  log.ExpectNone();
}

TEST(ZunRtcpRtpfbAbafb, ACutInFrontOfTheDelayLeavesItMeasured) {
  const StoppedClock at_zero;
  Abafb abafb;
  ZunRtcpRtpfbAbafbSetTimestampTime(abafb, -2 * kMillisecond);
  EXPECT_FALSE(abafb.Read(Golden("RtpfbAbafb").substr(0, 16)));
  EXPECT_TRUE(abafb->calculate_delay);
  EXPECT_EQ(ZunRtcpRtpfbAbafbGetDelay(abafb), 2000U);
}

// What a cut after the delay leaves is the delay that was read, not one computed over its bytes.
TEST(ZunRtcpRtpfbAbafb, ACutAfterTheDelayLeavesItStored) {
  for (const ZunSizeT size : {20U, 24U, 28U}) {
    Abafb abafb;
    ZunRtcpRtpfbAbafbSetTimestampTime(abafb, -2 * kMillisecond);
    EXPECT_FALSE(abafb.Read(Golden("RtpfbAbafb").substr(0, size)));
    ExpectStoredDelay(abafb.get(), 3000);
  }
}

TEST(ZunRtcpRtpfbAbafb, TakesABodyOfExactly28Bytes) {
  Abafb abafb;
  EXPECT_FALSE(abafb.Read(Golden("RtpfbAbafb") + Hex("00000000")));
  EXPECT_FALSE(abafb.Read(Golden("RtpfbAbafb").substr(0, 28)));
  EXPECT_TRUE(Parsed(Golden("RtpfbAbafb")).ok);
}

}  // namespace
