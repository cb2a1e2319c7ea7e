// The delay of the two bandwidth reports: stored as a number, or measured when it is read or written.
#ifndef ZUN_RTP_CORE_CALCULATEDDELAY_H
#define ZUN_RTP_CORE_CALCULATEDDELAY_H

#include "Zun/Os/ZunTime.h"
#include "Zun/Rtp/Core/BodyReader.h"

namespace zun {

inline constexpr ZunInt64 kNanosecondsPerMicrosecond = 1000;

// In microseconds: the stored delay, or the low 32 bits of the time that has passed since `timestamp_time`,
// truncated toward zero. The difference is taken modulo 2^64, so no pair of times is undefined behaviour.
template <class Report>
ZunUint32 CurrentDelay(const Report& p) {
  if (!p.calculate_delay) return p.u.delay;
  const ZunUint64 now = static_cast<ZunUint64>(ZunTimeGetCurrentMonotonicTime());
  const ZunInt64 passed = static_cast<ZunInt64>(now - static_cast<ZunUint64>(p.u.timestamp_time));
  return static_cast<ZunUint32>(passed / kNanosecondsPerMicrosecond);
}

template <class Report>
bool StoreDelay(Report* p, ZunUint32 delay) {
  p->u.delay = delay;
  p->calculate_delay = 0;
  return true;
}

template <class Report>
bool StoreTimestampTime(Report* p, ZunTime timestamp_time) {
  p->u.timestamp_time = timestamp_time;
  p->calculate_delay = 1;
  return true;
}

// What is read is stored over the union, so no delay may be computed from it any more, whatever fails later.
template <class Report>
bool ReadDelay(BodyReader& r, Report* p) {
  ZunUint32 delay;
  return r.U32(&delay) && StoreDelay(p, delay);
}

}  // namespace zun

#endif
