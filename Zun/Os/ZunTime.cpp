#include "Zun/Os/ZunTime.h"

#if defined(_WIN32)
#include <windows.h>
#else
#include <ctime>
#endif

double ZunTimeMachMonotonicTimeClockInterval_ = 1.0;

namespace {

constexpr ZunUint64 kNanosecondsPerSecond = 1000000000U;

#if defined(_WIN32)
ZunUint64 MonotonicTicks() {
  LARGE_INTEGER frequency = {};
  LARGE_INTEGER now = {};
  if (QueryPerformanceFrequency(&frequency) == 0 || QueryPerformanceCounter(&now) == 0) return 0;
  // Whole seconds apart from the rest, as the product of all would pass 64 bits after a few hours.
  const auto per_second = static_cast<ZunUint64>(frequency.QuadPart);
  const auto count = static_cast<ZunUint64>(now.QuadPart);
  return count / per_second * kNanosecondsPerSecond + count % per_second * kNanosecondsPerSecond / per_second;
}
#else
ZunUint64 MonotonicTicks() {
  timespec now = {};
  if (clock_gettime(CLOCK_MONOTONIC, &now) != 0) return 0;  // every POSIX system has this clock
  return static_cast<ZunUint64>(now.tv_sec) * kNanosecondsPerSecond + static_cast<ZunUint64>(now.tv_nsec);
}
#endif

}  // namespace

ZunTime ZunTimeGetCurrentMonotonicTime(void) {
  return static_cast<ZunTime>(static_cast<double>(MonotonicTicks()) * ZunTimeMachMonotonicTimeClockInterval_);
}
