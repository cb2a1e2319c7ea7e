/* Conversion of times. Included by ZunTime.h. */
#ifndef ZUN_OS_ZUNTIMEINLINE_H
#define ZUN_OS_ZUNTIMEINLINE_H

ZUN_EXTERN_C_BEGIN

/*
 * The 64-bit NTP timestamp (RFC 3550, section 4) of `t` nanoseconds since 1970: whole seconds since 1900
 * in the high half, the fraction of a second in the low half. Division truncates toward zero and the two
 * halves are added modulo 2^64, so the fraction of a time before 1970 borrows from its seconds.
 */
ZUN_INLINE ZunUint64 ZunTimeGetNtp(ZunTime t) {
  const ZunInt64 nanosecondsPerSecond = 1000000000;
  const ZunInt64 secondsFrom1900To1970 = 2208988800;
  const ZunUint64 seconds = (ZunUint64)(t / nanosecondsPerSecond + secondsFrom1900To1970);
  const ZunInt64 fraction = (t % nanosecondsPerSecond) * ((ZunInt64)1 << 32) / nanosecondsPerSecond;
  return (seconds << 32) + (ZunUint64)fraction;
}

ZUN_EXTERN_C_END

#endif
