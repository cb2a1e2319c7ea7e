/* The monotonic clock, and the NTP form of a time. */
#ifndef ZUN_OS_ZUNTIME_H
#define ZUN_OS_ZUNTIME_H

#include "Zun/Utils/ZunTypes.h"

ZUN_EXTERN_C_BEGIN

/* The length of one tick of the monotonic clock in nanoseconds: 1.0, the clock counts nanoseconds. */
extern double ZunTimeMachMonotonicTimeClockInterval_;

/*
 * The current monotonic time in nanoseconds: the tick counter (CLOCK_MONOTONIC; on Windows the performance counter,
 * turned into nanoseconds) times the length of a tick, in double precision, truncated toward zero. Cannot fail; any
 * thread may call it.
 */
ZunTime ZunTimeGetCurrentMonotonicTime(void);

ZUN_EXTERN_C_END

#include "Zun/Os/ZunTimeInline.h"

#endif
