/* What congestion control feedback tells of one packet. */
#ifndef ZUN_RTP_TRANSPORTFEEDBACK_ZUNRTCPRTPFBCCFBPACKETMETRIC_H
#define ZUN_RTP_TRANSPORTFEEDBACK_ZUNRTCPRTPFBCCFBPACKETMETRIC_H

#include "Zun/Utils/ZunVector.h"

ZUN_EXTERN_C_BEGIN

typedef struct ZunRtcpRtpfbCcfbPacketMetric ZunRtcpRtpfbCcfbPacketMetric;
struct ZunRtcpRtpfbCcfbPacketMetric {
  ZunBool received;            /* the packet arrived */
  ZunUint8 ecn;                /* ECN codepoint, 0..3 when written; when parsed, four times that */
  ZunUint16 arrivalTimeOffset; /* how long before the report it arrived, in 1/1024 s; 13 bits on the wire */
};

/* Not received, all zero. */
ZUN_INLINE ZunRtcpRtpfbCcfbPacketMetric* ZunRtcpRtpfbCcfbPacketMetricConstructDefault(ZunRtcpRtpfbCcfbPacketMetric* p) {
  p->received = 0;
  p->ecn = 0;
  p->arrivalTimeOffset = 0;
  return p;
}

/* The fields as given; none is checked. */
ZUN_INLINE ZunRtcpRtpfbCcfbPacketMetric* ZunRtcpRtpfbCcfbPacketMetricConstructFull(ZunRtcpRtpfbCcfbPacketMetric* p,
                                                                                   ZunBool received, ZunUint8 ecn,
                                                                                   ZunUint16 arrivalTimeOffset) {
  p->received = received;
  p->ecn = ecn;
  p->arrivalTimeOffset = arrivalTimeOffset;
  return p;
}

/* Lifecycle of a plain value (ZunConventions.h). */
ZunRtcpRtpfbCcfbPacketMetric* ZunRtcpRtpfbCcfbPacketMetricConstructCopy(ZunRtcpRtpfbCcfbPacketMetric* p,
                                                                        const ZunRtcpRtpfbCcfbPacketMetric* o);
ZunRtcpRtpfbCcfbPacketMetric* ZunRtcpRtpfbCcfbPacketMetricAssign(ZunRtcpRtpfbCcfbPacketMetric* p,
                                                                 const ZunRtcpRtpfbCcfbPacketMetric* o);
void ZunRtcpRtpfbCcfbPacketMetricDestruct(ZunRtcpRtpfbCcfbPacketMetric* p);

/* The fields; their units and ranges stand with them above. */
ZUN_INLINE ZunBool ZunRtcpRtpfbCcfbPacketMetricGetReceived(const ZunRtcpRtpfbCcfbPacketMetric* p) {
  return p->received;
}
/* The field as it is: of a parsed metric it is four times the codepoint. */
ZUN_INLINE ZunUint8 ZunRtcpRtpfbCcfbPacketMetricGetEcn(const ZunRtcpRtpfbCcfbPacketMetric* p) { return p->ecn; }
/* In 1/1024 s. */
ZUN_INLINE ZunUint16 ZunRtcpRtpfbCcfbPacketMetricGetArrivalTimeOffset(const ZunRtcpRtpfbCcfbPacketMetric* p) {
  return p->arrivalTimeOffset;
}

ZUN_EXTERN_C_END

ZUN_VECTOR_DECLARE(ZunRtcpRtpfbCcfbPacketMetric)

#endif
