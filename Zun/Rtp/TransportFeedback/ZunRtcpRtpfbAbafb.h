/*
 * The bandwidth report of this system's receivers, FMT 30: an echoed timestamp with the delay since it was taken,
 * and the rates of the data that arrives. Of one name and purpose with the application-layer ABAFB, but another
 * message.
 *
 *    0                   1                   2                   3
 *    0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1
 *   +=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+
 * 4 |                    SSRC of packet sender                      |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 8 |                    SSRC of media source                       |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 12|                           timestamp                           |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 16|                     delay in microseconds                     |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 20|                           data rate                           |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 24|                           loss rate                           |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 28|                         ABA data rate                         |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 */
#ifndef ZUN_RTP_TRANSPORTFEEDBACK_ZUNRTCPRTPFBABAFB_H
#define ZUN_RTP_TRANSPORTFEEDBACK_ZUNRTCPRTPFBABAFB_H

#include "Zun/Rtp/Core/ZunRtcpRow.h"
#include "Zun/Rtp/Core/ZunRtcpRtpfbType.h"
#include "Zun/Rtp/ZunRtpHeader.h"

ZUN_EXTERN_C_BEGIN

/* Owns no memory, so only reading and writing can fail, and the allocators are not used. */
typedef struct ZunRtcpRtpfbAbafb ZunRtcpRtpfbAbafb;
struct ZunRtcpRtpfbAbafb {
  ZunRtcpSubpacketType type; /* 205 */
  ZunRtcpRtpfbType fmt;      /* 30 */
  ZunRtpSourceId sender;     /* SSRC of the packet sender */
  ZunRtpSourceId source;     /* as it was received; 0 after construction */
  ZunUint32 timestamp;       /* the peer's, echoed to it */
  union {
    ZunUint32 delay;        /* microseconds, where calculate_delay is false */
    ZunTime timestamp_time; /* monotonic time in nanoseconds when `timestamp` was taken, where it is true */
  } u;
  ZunUint32 data_rate;
  ZunUint32 loss_rate;
  ZunUint32 aba_data_rate;
  ZunBool calculate_delay; /* which member of `u` is alive */
};

/* A report with a delay in microseconds. */
ZunRtcpRtpfbAbafb* ZunRtcpRtpfbAbafbConstructFull(ZunRtcpRtpfbAbafb* p, ZunRtpSourceId sender, ZunUint32 timestamp,
                                                  ZunUint32 delay, ZunUint32 data_rate, ZunUint32 loss_rate,
                                                  ZunUint32 aba_data_rate, ZunAllocator* a);
/* A report whose delay is measured from `timestamp_time` on, each time that it is asked for or written. */
ZunRtcpRtpfbAbafb* ZunRtcpRtpfbAbafbConstructWithCalculatedDelay(ZunRtcpRtpfbAbafb* p, ZunRtpSourceId sender,
                                                                 ZunUint32 timestamp, ZunTime timestamp_time,
                                                                 ZunUint32 data_rate, ZunUint32 loss_rate,
                                                                 ZunUint32 aba_data_rate, ZunAllocator* a);
/* All fields 0, a stored delay among them. */
ZunRtcpRtpfbAbafb* ZunRtcpRtpfbAbafbConstructDefault(ZunRtcpRtpfbAbafb* p, ZunAllocator* a);
/* Lifecycle of a plain value (ZunConventions.h). */
ZunRtcpRtpfbAbafb* ZunRtcpRtpfbAbafbConstructCopy(ZunRtcpRtpfbAbafb* p, const ZunRtcpRtpfbAbafb* o);
ZunRtcpRtpfbAbafb* ZunRtcpRtpfbAbafbAssign(ZunRtcpRtpfbAbafb* p, const ZunRtcpRtpfbAbafb* o);
void ZunRtcpRtpfbAbafbDestruct(ZunRtcpRtpfbAbafb* p);
/* NULL: there is none. */
ZunAllocator* ZunRtcpRtpfbAbafbGetAllocator(ZunRtcpRtpfbAbafb* p);

/* The delay in microseconds: the stored one, or the low 32 bits of the time since `timestamp_time`. */
ZunUint32 ZunRtcpRtpfbAbafbGetDelay(const ZunRtcpRtpfbAbafb* p);
/* Stores a delay in microseconds, in place of a measured one. True. */
ZunBool ZunRtcpRtpfbAbafbSetDelay(ZunRtcpRtpfbAbafb* p, ZunUint32 delay);
/* From now on the delay is measured from `timestamp_time` (monotonic, nanoseconds) on. True. */
ZunBool ZunRtcpRtpfbAbafbSetTimestampTime(ZunRtcpRtpfbAbafb* p, ZunTime timestamp_time);

/*
 * The row operations. Reading takes a body of exactly 28 bytes and gives a stored delay. Fields in front of a failure
 * are stored; where the delay is one of them and was measured before, it means nothing then.
 */
ZUN_RTCP_ROW_DECLARE(ZunRtcpRtpfbAbafb)

/* The fields; their units and ranges stand with them above. */
ZUN_INLINE ZunUint32 ZunRtcpRtpfbAbafbGetTimestamp(const ZunRtcpRtpfbAbafb* p) { return p->timestamp; }
ZUN_INLINE ZunBool ZunRtcpRtpfbAbafbSetTimestamp(ZunRtcpRtpfbAbafb* p, ZunUint32 timestamp) {
  p->timestamp = timestamp;
  return 1;
}
ZUN_INLINE ZunUint32 ZunRtcpRtpfbAbafbGetDataRate(const ZunRtcpRtpfbAbafb* p) { return p->data_rate; }
ZUN_INLINE ZunBool ZunRtcpRtpfbAbafbSetDataRate(ZunRtcpRtpfbAbafb* p, ZunUint32 data_rate) {
  p->data_rate = data_rate;
  return 1;
}
ZUN_INLINE ZunUint32 ZunRtcpRtpfbAbafbGetLossRate(const ZunRtcpRtpfbAbafb* p) { return p->loss_rate; }
ZUN_INLINE ZunBool ZunRtcpRtpfbAbafbSetLossRate(ZunRtcpRtpfbAbafb* p, ZunUint32 loss_rate) {
  p->loss_rate = loss_rate;
  return 1;
}
ZUN_INLINE ZunUint32 ZunRtcpRtpfbAbafbGetAbaDataRate(const ZunRtcpRtpfbAbafb* p) { return p->aba_data_rate; }
ZUN_INLINE ZunBool ZunRtcpRtpfbAbafbSetAbaDataRate(ZunRtcpRtpfbAbafb* p, ZunUint32 aba_data_rate) {
  p->aba_data_rate = aba_data_rate;
  return 1;
}

ZUN_EXTERN_C_END

#endif
