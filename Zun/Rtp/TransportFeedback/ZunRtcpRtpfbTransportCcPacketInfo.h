/* What transport-wide congestion control feedback tells of one packet. */
#ifndef ZUN_RTP_TRANSPORTFEEDBACK_ZUNRTCPRTPFBTRANSPORTCCPACKETINFO_H
#define ZUN_RTP_TRANSPORTFEEDBACK_ZUNRTCPRTPFBTRANSPORTCCPACKETINFO_H

#include "Zun/Utils/ZunVector.h"

ZUN_EXTERN_C_BEGIN

typedef struct ZunRtcpRtpfbTransportCcPacketInfo ZunRtcpRtpfbTransportCcPacketInfo;
struct ZunRtcpRtpfbTransportCcPacketInfo {
  ZunBool received;  /* the packet arrived */
  ZunBool haveDelta; /* `delta` is known */
  ZunInt16 delta;    /* its arrival minus that of the packet timed before it, in 250 us */
};

/* Not received, no delta. */
ZUN_INLINE ZunRtcpRtpfbTransportCcPacketInfo* ZunRtcpRtpfbTransportCcPacketInfoConstructDefault(
    ZunRtcpRtpfbTransportCcPacketInfo* p) {
  p->received = 0;
  p->haveDelta = 0;
  p->delta = 0;
  return p;
}

/* The fields as given; nothing relates them to one another. */
ZUN_INLINE ZunRtcpRtpfbTransportCcPacketInfo* ZunRtcpRtpfbTransportCcPacketInfoConstructFull(
    ZunRtcpRtpfbTransportCcPacketInfo* p, ZunBool received, ZunBool haveDelta, ZunInt16 delta) {
  p->received = received;
  p->haveDelta = haveDelta;
  p->delta = delta;
  return p;
}

/* Lifecycle of a plain value (ZunConventions.h). */
ZunRtcpRtpfbTransportCcPacketInfo* ZunRtcpRtpfbTransportCcPacketInfoConstructCopy(
    ZunRtcpRtpfbTransportCcPacketInfo* p, const ZunRtcpRtpfbTransportCcPacketInfo* o);
ZunRtcpRtpfbTransportCcPacketInfo* ZunRtcpRtpfbTransportCcPacketInfoAssign(ZunRtcpRtpfbTransportCcPacketInfo* p,
                                                                           const ZunRtcpRtpfbTransportCcPacketInfo* o);
void ZunRtcpRtpfbTransportCcPacketInfoDestruct(ZunRtcpRtpfbTransportCcPacketInfo* p);

ZUN_INLINE void ZunRtcpRtpfbTransportCcPacketInfoSwap(ZunRtcpRtpfbTransportCcPacketInfo* p,
                                                      ZunRtcpRtpfbTransportCcPacketInfo* o) {
  const ZunRtcpRtpfbTransportCcPacketInfo kept = *p;
  *p = *o;
  *o = kept;
}

/* The fields; their units and ranges stand with them above. */
ZUN_INLINE ZunBool ZunRtcpRtpfbTransportCcPacketInfoGetReceived(const ZunRtcpRtpfbTransportCcPacketInfo* p) {
  return p->received;
}
ZUN_INLINE ZunBool ZunRtcpRtpfbTransportCcPacketInfoHasDelta(const ZunRtcpRtpfbTransportCcPacketInfo* p) {
  return p->haveDelta;
}
/* In 250 us; 0 where there is no delta. */
ZUN_INLINE ZunInt16 ZunRtcpRtpfbTransportCcPacketInfoGetDelta(const ZunRtcpRtpfbTransportCcPacketInfo* p) {
  return p->delta;
}

ZUN_EXTERN_C_END

ZUN_VECTOR_DECLARE(ZunRtcpRtpfbTransportCcPacketInfo)

#endif
