#include "Zun/Os/ZunTime.h"

#include <ctime>

double ZunTimeMachMonotonicTimeClockInterval_ = 1.0;

namespace {

ZunUint64 MonotonicTicks() {
  timespec now = {};
  if (clock_gettime(CLOCK_MONOTONIC, &now) != 0) return 0;  // every POSIX system has this clock
  return static_cast<ZunUint64>(now.tv_sec) * 1000000000U + static_cast<ZunUint64>(now.tv_nsec);
}

}  // namespace

ZunTime ZunTimeGetCurrentMonotonicTime(void) {
  return static_cast<ZunTime>(static_cast<double>(MonotonicTicks()) * ZunTimeMachMonotonicTimeClockInterval_);
}
