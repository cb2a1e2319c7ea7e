#include "Zun/Os/ZunTime.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <ctime>

namespace {

constexpr ZunTime kSecond = 1000000000;
constexpr ZunUint64 kUnixEpoch = ZunUint64{2208988800} << 32;  // 1970-01-01 as an NTP timestamp

ZunTime ClockNow() {
  timespec now = {};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return now.tv_sec * kSecond + now.tv_nsec;
}

TEST(ZunTime, OneTickIsANanosecond) { EXPECT_EQ(ZunTimeMachMonotonicTimeClockInterval_, 1.0); }

TEST(ZunTime, MonotonicTimeNeverGoesBack) {
  ZunTime last = ZunTimeGetCurrentMonotonicTime();
  EXPECT_GT(last, 0);
  for (int i = 0; i < 100000; ++i) {
    const ZunTime now = ZunTimeGetCurrentMonotonicTime();
    ASSERT_GE(now, last);
    last = now;
  }
}

// The product is formed in double precision, which rounds by at most 128 ns within 30 years of uptime.
TEST(ZunTime, MonotonicTimeIsTheMonotonicClock) {
  const ZunTime before = ClockNow();
  const ZunTime now = ZunTimeGetCurrentMonotonicTime();
  const ZunTime after = ClockNow();
  EXPECT_GE(now, before - 128);
  EXPECT_LE(now, after + 128);
}

TEST(ZunTime, TicksAreMultipliedByTheirLength) {
  const double interval = ZunTimeMachMonotonicTimeClockInterval_;
  ZunTimeMachMonotonicTimeClockInterval_ = 0.25;
  const ZunTime before = ClockNow() / 4;
  const ZunTime quarter = ZunTimeGetCurrentMonotonicTime();
  const ZunTime after = ClockNow() / 4;
  ZunTimeMachMonotonicTimeClockInterval_ = interval;
  EXPECT_GE(quarter, before - 128);
  EXPECT_LE(quarter, after + 128);
}

TEST(ZunTime, NtpCountsSecondsSince1900) {
  EXPECT_EQ(ZunTimeGetNtp(0), 0x83AA7E8000000000U);
  EXPECT_EQ(ZunTimeGetNtp(kSecond), 0x83AA7E8100000000U);
  EXPECT_EQ(ZunTimeGetNtp(1700000000 * kSecond), 0xE8FE6F8000000000U);
}

TEST(ZunTime, NtpFractionIsTruncated) {
  EXPECT_EQ(ZunTimeGetNtp(kSecond / 2), kUnixEpoch + 0x80000000U);
  EXPECT_EQ(ZunTimeGetNtp(1), kUnixEpoch + 4U);                   // 4.29 units
  EXPECT_EQ(ZunTimeGetNtp(999999999), kUnixEpoch + 4294967291U);  // 2^32 - 4.29
  EXPECT_EQ(ZunTimeGetNtp(1700000000 * kSecond + 123456789), 0xE8FE6F801F9ADD37U);
}

TEST(ZunTime, NtpSecondsWrapIn2036) {
  constexpr ZunTime last = (ZunTime{0xFFFFFFFF} - 2208988800) * kSecond;
  EXPECT_EQ(ZunTimeGetNtp(last), 0xFFFFFFFF00000000U);
  EXPECT_EQ(ZunTimeGetNtp(last + kSecond), 0U);
  EXPECT_EQ(ZunTimeGetNtp(last + kSecond + kSecond / 2), 0x80000000U);
}

// Division truncates toward zero, so the fraction of an earlier time is negative and borrows from the seconds.
TEST(ZunTime, NtpOfTimesBefore1970) {
  EXPECT_EQ(ZunTimeGetNtp(-1), kUnixEpoch - 4U);
  EXPECT_EQ(ZunTimeGetNtp(-kSecond / 2), kUnixEpoch - 0x80000000U);
  EXPECT_EQ(ZunTimeGetNtp(-kSecond), kUnixEpoch - (ZunUint64{1} << 32));
  EXPECT_EQ(ZunTimeGetNtp(-kSecond - kSecond / 4), kUnixEpoch - (ZunUint64{1} << 32) - 0x40000000U);
  EXPECT_EQ(ZunTimeGetNtp(-2208988800 * kSecond), 0U);
  EXPECT_EQ(ZunTimeGetNtp(-2208988800 * kSecond - 1), 0U - ZunUint64{4});
}

TEST(ZunTime, NtpOfTheExtremes) {
  EXPECT_EQ(ZunTimeGetNtp(INT64_MAX), 0xA96BFB84DAD29658U);
  EXPECT_EQ(ZunTimeGetNtp(INT64_MIN), 0x5DE9017B252D69A4U);
}

}  // namespace
