#include "tools/zunrtcp/Stats/ClockRate.h"

#include <gtest/gtest.h>

namespace zunrtcp {

namespace {

constexpr std::uint64_t kSecond = 1ULL << 32;  // of an NTP timestamp
constexpr std::uint64_t kBegin = 100 * kSecond;

// In 2 s the timestamp grows by 180000, and wraps: 180000 / 2 = 90000.
TEST(ClockRate, IsHowFastTheTimestampGrows) {
  ClockRate clock;
  clock.Add(kBegin, 0xFFFFFF00);
  clock.Add(kBegin + 2 * kSecond, 0xFFFFFF00 + 180000U);
  EXPECT_EQ(clock.Rate(), 90000U);
}

// 47000 / 1 s is 2 % from 48000 and 7 % from 44100.
TEST(ClockRate, IsTheNearestOfThoseInUse) {
  ClockRate clock;
  clock.Add(kBegin, 0);
  clock.Add(kBegin + kSecond, 47000);
  EXPECT_EQ(clock.Rate(), 48000U);
}

// 60000 is 25 % from 48000 and 33 % from 90000.
TEST(ClockRate, IsNotGuessedFarFromThese) {
  ClockRate clock;
  clock.Add(kBegin, 0);
  clock.Add(kBegin + kSecond, 60000);
  EXPECT_EQ(clock.Rate(), std::nullopt);
}

TEST(ClockRate, NeedsASecond) {
  ClockRate clock;
  EXPECT_EQ(clock.Rate(), std::nullopt);
  clock.Add(kBegin, 0);
  clock.Add(kBegin + kSecond / 2, 24000);
  EXPECT_EQ(clock.Rate(), std::nullopt);
}

TEST(ClockRate, BeginsAgainWithTheSender) {
  ClockRate clock;
  clock.Add(kBegin, 5);
  clock.Add(kBegin - 10 * kSecond, 1000);
  clock.Add(kBegin - 9 * kSecond, 9000);
  EXPECT_EQ(clock.Rate(), 8000U);
}

}  // namespace

}  // namespace zunrtcp
