#include "Zun/Rtp/Cpp/Time.h"

#include <gtest/gtest.h>

namespace {

using namespace zun::rtcp;
using namespace std::chrono_literals;

TEST(Time, ZunTimeIsNanoseconds) {
  EXPECT_EQ(from_zun_time(1500000), 1500us);
  EXPECT_EQ(to_zun_time(2s), 2000000000);
}

TEST(Time, TheMonotonicClockGoesOn) {
  const auto before = MonotonicClock::now();
  const auto after = MonotonicClock::now();
  EXPECT_LE(before, after);
  EXPECT_GT(before.time_since_epoch(), 0s);
}

TEST(Time, NtpCountsFrom1900) {
  const std::chrono::system_clock::time_point unix_epoch;
  EXPECT_EQ(to_ntp(unix_epoch), 2208988800ULL << 32);
  EXPECT_EQ(to_ntp(unix_epoch + 500ms), (2208988800ULL << 32) + 0x80000000);
  EXPECT_EQ(from_ntp((2208988800ULL << 32) + 0x80000000).time_since_epoch(), 500ms);
  EXPECT_EQ(from_ntp(0).time_since_epoch(), -2208988800s);
}

TEST(Time, NtpComesBackToTheNanosecond) {
  for (const auto t : {1ns, 999999999ns, 1700000000123456789ns}) {
    const std::chrono::system_clock::time_point time(t);
    EXPECT_EQ(from_ntp(to_ntp(time)).time_since_epoch(), t);
  }
}

TEST(Time, SixteenBitsOfSecondsAndFraction) {
  EXPECT_EQ(from_16_16(0x00018000), 1500ms);
  EXPECT_EQ(to_16_16(1500ms), 0x00018000U);
  EXPECT_EQ(to_16_16(-1ns), 0U);
  EXPECT_EQ(to_16_16(-1s), 0U);
  EXPECT_EQ(to_16_16(65536s), 0xFFFFFFFFU);
  EXPECT_EQ(to_16_16(65535s), 0xFFFF0000U);
}

TEST(Time, TheRoundTripIsWhatIsLeftOfTheTimeSinceTheReport) {
  // The example of RFC 3550, section 6.4.1: 6.125 s.
  EXPECT_EQ(round_trip(0xB7108000, 0xB7052000, 0x00054000), 6125ms);
  EXPECT_EQ(round_trip(0x00008000, 0xFFFF8000, 0x00000000), 1s);  // around the end
  EXPECT_EQ(round_trip(0x00010000, 0x00010000, 0x00010000), -1s);
  EXPECT_EQ(middle_of_ntp(0x1122334455667788), 0x33445566U);
}

}  // namespace
