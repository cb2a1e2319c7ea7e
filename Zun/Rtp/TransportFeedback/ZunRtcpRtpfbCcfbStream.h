/* What congestion control feedback tells of one media stream: a run of its RTP sequence numbers. */
#ifndef ZUN_RTP_TRANSPORTFEEDBACK_ZUNRTCPRTPFBCCFBSTREAM_H
#define ZUN_RTP_TRANSPORTFEEDBACK_ZUNRTCPRTPFBCCFBSTREAM_H

#include "Zun/Rtp/TransportFeedback/ZunRtcpRtpfbCcfbPacketMetric.h"
#include "Zun/Rtp/ZunRtpHeader.h"

ZUN_EXTERN_C_BEGIN

typedef struct ZunRtcpRtpfbCcfbStream ZunRtcpRtpfbCcfbStream;
struct ZunRtcpRtpfbCcfbStream {
  ZunRtpSourceId ssrc;                                  /* of the media stream */
  ZunUint16 beginSeq;                                   /* sequence number of the first metric */
  ZunVector_ZunRtcpRtpfbCcfbPacketMetric packetMetrics; /* number i is of beginSeq + i modulo 65536; owns the
                                                           allocator; at most 65535 can be written */
};

/* No metrics, `beginSeq` 0. */
ZunRtcpRtpfbCcfbStream* ZunRtcpRtpfbCcfbStreamConstructDefault(ZunRtcpRtpfbCcfbStream* p, ZunRtpSourceId ssrc,
                                                               ZunAllocator* a);

/* Lifecycle (ZunConventions.h). */
ZunRtcpRtpfbCcfbStream* ZunRtcpRtpfbCcfbStreamConstructCopy(ZunRtcpRtpfbCcfbStream* p, const ZunRtcpRtpfbCcfbStream* o);
ZunRtcpRtpfbCcfbStream* ZunRtcpRtpfbCcfbStreamAssign(ZunRtcpRtpfbCcfbStream* p, const ZunRtcpRtpfbCcfbStream* o);
void ZunRtcpRtpfbCcfbStreamDestruct(ZunRtcpRtpfbCcfbStream* p);

/*
 * Appends the metric of the next packet. The first sets `beginSeq`; every other must have the sequence number that
 * follows the last one (0 follows 65535), so lost packets are added too, with `received` 0. `ecn` (0..3) and
 * `arrivalTimeOffset` (0..0x1FFF) are not checked: larger ones corrupt their neighbours when written.
 *
 * False, the metrics unchanged, when `seq` is another number or an allocation is refused (a first `seq` is then kept as
 * `beginSeq`, which has no meaning without metrics).
 */
ZunBool ZunRtcpRtpfbCcfbStreamAddPacket(ZunRtcpRtpfbCcfbStream* p, ZunUint16 seq, ZunBool received, ZunUint8 ecn,
                                        ZunUint16 arrivalTimeOffset);

/* The fields; their units and ranges stand with them above. */
ZUN_INLINE ZunRtpSourceId ZunRtcpRtpfbCcfbStreamGetSsrc(const ZunRtcpRtpfbCcfbStream* p) { return p->ssrc; }
ZUN_INLINE ZunUint16 ZunRtcpRtpfbCcfbStreamGetBeginSeq(const ZunRtcpRtpfbCcfbStream* p) { return p->beginSeq; }

ZUN_EXTERN_C_END

/* Elements are copied with the allocators of their sources. */
ZUN_VECTOR_DECLARE(ZunRtcpRtpfbCcfbStream)

#endif
