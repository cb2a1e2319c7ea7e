/*
 * House message 1: what a receiver sees of a stream's rate, loss and delay, with a delay that tells the sender
 * how old the reported timestamp was when the message left. The library only carries the rates and differences.
 *
 *    0                   1                   2                   3
 *    0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1
 *   +=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+
 * 12|      'N'      |      'r'      |               1               |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 16|                           timestamp                           |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 20|                     delay in microseconds                     |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 24|                           data rate                           |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 28|                           loss rate                           |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 32|                         ABA data rate                         |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 36|           average delay difference (two's complement)         |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 40|                  average arrival difference                   |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 */
#ifndef ZUN_RTP_APPLICATIONFEEDBACK_ZUNRTCPPSFBAFBABAFB_H
#define ZUN_RTP_APPLICATIONFEEDBACK_ZUNRTCPPSFBAFBABAFB_H

#include "Zun/Rtp/Core/ZunRtcpPsfbAfbType.h"
#include "Zun/Rtp/Core/ZunRtcpPsfbType.h"
#include "Zun/Rtp/Core/ZunRtcpRow.h"
#include "Zun/Rtp/ZunRtpHeader.h"

ZUN_EXTERN_C_BEGIN

typedef struct ZunRtcpPsfbAfbAbafb ZunRtcpPsfbAfbAbafb;
struct ZunRtcpPsfbAfbAbafb {
  ZunRtcpSubpacketType type;  /* 206 */
  ZunRtcpPsfbType fmt;        /* 15 */
  ZunRtpSourceId sender;      /* SSRC of the packet sender */
  ZunRtpSourceId source;      /* SSRC of the media source; 0 as constructed */
  ZunRtcpPsfbAfbType afbType; /* 1 */
  ZunUint32 timestamp;        /* the timestamp that is reported */
  union {
    ZunUint32 delay;        /* while calculate_delay is false: in microseconds */
    ZunTime timestamp_time; /* while it is true: the monotonic time at which `timestamp` was taken */
  } u;
  ZunUint32 data_rate;
  ZunUint32 loss_rate;
  ZunUint32 aba_data_rate;
  ZunInt32 average_delay_difference;
  ZunBool calculate_delay;              /* which half of `u` is live */
  ZunUint32 average_arrival_difference; /* should not be 0 */
};

/*
 * Both SSRCs and every value 0 but average_arrival_difference, which is 1000000; the delay is a fixed one. `a` is not
 * used: the object owns no memory.
 */
ZunRtcpPsfbAfbAbafb* ZunRtcpPsfbAfbAbafbConstructDefault(ZunRtcpPsfbAfbAbafb* p, ZunAllocator* a);

/* All fields but the media source, which is 0, with a fixed delay in microseconds. */
ZunRtcpPsfbAfbAbafb* ZunRtcpPsfbAfbAbafbConstructFull(ZunRtcpPsfbAfbAbafb* p, ZunRtpSourceId sender,
                                                      ZunUint32 timestamp, ZunUint32 delay, ZunUint32 data_rate,
                                                      ZunUint32 loss_rate, ZunUint32 aba_data_rate,
                                                      ZunInt32 average_delay_difference,
                                                      ZunUint32 average_arrival_difference, ZunAllocator* a);

/* The same with a delay that is measured from `timestamp_time`, in nanoseconds of ZunTimeGetCurrentMonotonicTime,
 * whenever it is read or written. */
ZunRtcpPsfbAfbAbafb* ZunRtcpPsfbAfbAbafbConstructWithCalculatedDelay(
    ZunRtcpPsfbAfbAbafb* p, ZunRtpSourceId sender, ZunUint32 timestamp, ZunTime timestamp_time, ZunUint32 data_rate,
    ZunUint32 loss_rate, ZunUint32 aba_data_rate, ZunInt32 average_delay_difference,
    ZunUint32 average_arrival_difference, ZunAllocator* a);

/* Lifecycle of a plain value (ZunConventions.h). Of the union only the half that lives is copied. */
ZunRtcpPsfbAfbAbafb* ZunRtcpPsfbAfbAbafbConstructCopy(ZunRtcpPsfbAfbAbafb* p, const ZunRtcpPsfbAfbAbafb* o);
ZunRtcpPsfbAfbAbafb* ZunRtcpPsfbAfbAbafbAssign(ZunRtcpPsfbAfbAbafb* p, const ZunRtcpPsfbAfbAbafb* o);
void ZunRtcpPsfbAfbAbafbDestruct(ZunRtcpPsfbAfbAbafb* p);

/* NULL: the object owns no memory. */
ZunAllocator* ZunRtcpPsfbAfbAbafbGetAllocator(ZunRtcpPsfbAfbAbafb* p);

/* In microseconds: the fixed delay, or the low 32 bits of the time since `timestamp_time`, truncated toward zero. */
ZunUint32 ZunRtcpPsfbAfbAbafbGetDelay(const ZunRtcpPsfbAfbAbafb* p);
/* Gives `p` a fixed delay in microseconds. */
ZunBool ZunRtcpPsfbAfbAbafbSetDelay(ZunRtcpPsfbAfbAbafb* p, ZunUint32 delay);
/* Gives `p` a delay that is measured from `timestamp_time`, a monotonic time in nanoseconds. */
ZunBool ZunRtcpPsfbAfbAbafbSetTimestampTime(ZunRtcpPsfbAfbAbafb* p, ZunTime timestamp_time);

/*
 * The row operations. Writing logs a warning in category "rtcp-feedback" when average_arrival_difference is 0, and
 * goes on. Reading ignores what follows the last field; a delay that was read is a fixed one.
 */
ZUN_RTCP_ROW_DECLARE(ZunRtcpPsfbAfbAbafb)

/* The other fields. */
ZUN_INLINE ZunUint32 ZunRtcpPsfbAfbAbafbGetTimestamp(const ZunRtcpPsfbAfbAbafb* p) { return p->timestamp; }
ZUN_INLINE ZunBool ZunRtcpPsfbAfbAbafbSetTimestamp(ZunRtcpPsfbAfbAbafb* p, ZunUint32 timestamp) {
  p->timestamp = timestamp;
  return 1;
}
ZUN_INLINE ZunUint32 ZunRtcpPsfbAfbAbafbGetDataRate(const ZunRtcpPsfbAfbAbafb* p) { return p->data_rate; }
ZUN_INLINE ZunBool ZunRtcpPsfbAfbAbafbSetDataRate(ZunRtcpPsfbAfbAbafb* p, ZunUint32 data_rate) {
  p->data_rate = data_rate;
  return 1;
}
ZUN_INLINE ZunUint32 ZunRtcpPsfbAfbAbafbGetLossRate(const ZunRtcpPsfbAfbAbafb* p) { return p->loss_rate; }
ZUN_INLINE ZunBool ZunRtcpPsfbAfbAbafbSetLossRate(ZunRtcpPsfbAfbAbafb* p, ZunUint32 loss_rate) {
  p->loss_rate = loss_rate;
  return 1;
}
ZUN_INLINE ZunUint32 ZunRtcpPsfbAfbAbafbGetAbaDataRate(const ZunRtcpPsfbAfbAbafb* p) { return p->aba_data_rate; }
ZUN_INLINE ZunBool ZunRtcpPsfbAfbAbafbSetAbaDataRate(ZunRtcpPsfbAfbAbafb* p, ZunUint32 aba_data_rate) {
  p->aba_data_rate = aba_data_rate;
  return 1;
}
ZUN_INLINE ZunInt32 ZunRtcpPsfbAfbAbafbGetAverageDelayDifference(const ZunRtcpPsfbAfbAbafb* p) {
  return p->average_delay_difference;
}
ZUN_INLINE ZunBool ZunRtcpPsfbAfbAbafbSetAverageDelayDifference(ZunRtcpPsfbAfbAbafb* p,
                                                                ZunInt32 average_delay_difference) {
  p->average_delay_difference = average_delay_difference;
  return 1;
}
ZUN_INLINE ZunUint32 ZunRtcpPsfbAfbAbafbGetAverageArrivalDifference(const ZunRtcpPsfbAfbAbafb* p) {
  return p->average_arrival_difference;
}
/* 0 is accepted here, and warned of when the message is written. */
ZUN_INLINE ZunBool ZunRtcpPsfbAfbAbafbSetAverageArrivalDifference(ZunRtcpPsfbAfbAbafb* p,
                                                                  ZunUint32 average_arrival_difference) {
  p->average_arrival_difference = average_arrival_difference;
  return 1;
}

ZUN_EXTERN_C_END

#endif
