// std::chrono for the times of RTCP: ZunTime, the 64-bit NTP timestamp, and its middle 32 bits.
#ifndef ZUN_RTP_CPP_TIME_H
#define ZUN_RTP_CPP_TIME_H

#include <chrono>
#include <cstdint>
#include <ratio>

#include "Zun/Os/ZunTime.h"

namespace zun::rtcp {

// ZunTime as a duration, and a duration as a ZunTime.
constexpr std::chrono::nanoseconds from_zun_time(ZunTime t) noexcept { return std::chrono::nanoseconds(t); }
constexpr ZunTime to_zun_time(std::chrono::nanoseconds t) noexcept { return t.count(); }

// The library's monotonic clock, as a clock of std::chrono.
struct MonotonicClock {
  using duration = std::chrono::nanoseconds;
  using rep = duration::rep;
  using period = duration::period;
  using time_point = std::chrono::time_point<MonotonicClock>;
  static constexpr bool is_steady = true;
  static time_point now() noexcept { return time_point(duration(ZunTimeGetCurrentMonotonicTime())); }
};

// A 64-bit NTP timestamp (RFC 3550, section 4): seconds since 1900 with 32 bits of fraction, as an SR carries it.
inline std::uint64_t to_ntp(std::chrono::system_clock::time_point t) noexcept {
  return ZunTimeGetNtp(std::chrono::duration_cast<std::chrono::nanoseconds>(t.time_since_epoch()).count());
}
// The moment that it means, to the nanosecond; in 1900 where it is 0.
inline std::chrono::sys_time<std::chrono::nanoseconds> from_ntp(std::uint64_t ntp) noexcept {
  constexpr std::int64_t kFrom1900To1970 = 2208988800;
  const auto seconds = static_cast<std::int64_t>(ntp >> 32) - kFrom1900To1970;
  const auto fraction = static_cast<std::int64_t>(((ntp & 0xFFFFFFFFU) * 1000000000U + (1U << 31)) >> 32);
  return std::chrono::sys_time<std::chrono::nanoseconds>(std::chrono::seconds(seconds) +
                                                         std::chrono::nanoseconds(fraction));
}

// The middle 32 bits of an NTP timestamp, which report blocks give back as the "last SR".
constexpr std::uint32_t middle_of_ntp(std::uint64_t ntp) noexcept { return static_cast<std::uint32_t>(ntp >> 16); }

// Spans with 16 bits of seconds and 16 of fraction: the delay since the last SR, the time of a CCFB.
using Seconds16_16 = std::chrono::duration<std::int64_t, std::ratio<1, 65536>>;
constexpr std::chrono::nanoseconds from_16_16(std::uint32_t span) noexcept {
  return std::chrono::duration_cast<std::chrono::nanoseconds>(Seconds16_16(span));
}
// What is negative becomes 0, what is 65536 s or more the largest value.
constexpr std::uint32_t to_16_16(std::chrono::nanoseconds span) noexcept {
  const std::int64_t ticks = std::chrono::duration_cast<Seconds16_16>(span).count();
  if (ticks < 0) return 0;
  return ticks > 0xFFFFFFFF ? 0xFFFFFFFFU : static_cast<std::uint32_t>(ticks);
}

// The round trip that a report block tells the sender of the SR, when it arrives at `arrival` (middle_of_ntp); negative
// when the clocks ran apart.
constexpr std::chrono::nanoseconds round_trip(std::uint32_t arrival, std::uint32_t last_sr,
                                              std::uint32_t delay) noexcept {
  const auto span = static_cast<std::int32_t>(arrival - last_sr - delay);
  return std::chrono::duration_cast<std::chrono::nanoseconds>(Seconds16_16(span));
}

}  // namespace zun::rtcp

#endif
