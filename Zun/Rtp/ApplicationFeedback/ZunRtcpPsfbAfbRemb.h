/*
 * Receiver estimated maximum bitrate: how much the receiver believes it can take of the listed media sources
 * together (draft-alvestrand-rmcat-remb-03, section 2.2). The bitrate on the wire is mantissa * 2^exponent.
 *
 *    0                   1                   2                   3
 *    0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1
 *   +=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+
 * 12|      'R'      |      'E'      |      'M'      |      'B'      |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 16|   Num SSRC    |  exponent |             mantissa              |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 20|   SSRC feedback                                               |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 *   |  ...                                                          |
 */
#ifndef ZUN_RTP_APPLICATIONFEEDBACK_ZUNRTCPPSFBAFBREMB_H
#define ZUN_RTP_APPLICATIONFEEDBACK_ZUNRTCPPSFBAFBREMB_H

#include "Zun/Rtp/Core/ZunRtcpPsfbAfbType.h"
#include "Zun/Rtp/Core/ZunRtcpPsfbType.h"
#include "Zun/Rtp/Core/ZunRtcpRow.h"
#include "Zun/Rtp/ZunRtpHeader.h"

ZUN_EXTERN_C_BEGIN

typedef struct ZunRtcpPsfbAfbRemb ZunRtcpPsfbAfbRemb;
struct ZunRtcpPsfbAfbRemb {
  ZunRtcpSubpacketType type;        /* 206 */
  ZunRtcpPsfbType fmt;              /* 15 */
  ZunRtpSourceId sender;            /* SSRC of the packet sender */
  ZunRtpSourceId source;            /* SSRC of the media source; 0 as constructed */
  ZunRtcpPsfbAfbType afbType;       /* 65537 */
  ZunFloat32 bitrate;               /* in bit/s, from 0; below (2^18 - 1) * 2^63 as set, up to that as read */
  ZunVector_ZunRtpSourceId sources; /* those that the estimate is about: 1 to 255, or none when it was received
                                       or default-constructed so; owns the object's allocator */
};

/* Both SSRCs and the bitrate 0, no sources. */
ZunRtcpPsfbAfbRemb* ZunRtcpPsfbAfbRembConstructDefault(ZunRtcpPsfbAfbRemb* p, ZunAllocator* a);

/*
 * All fields but the media source, which is 0. The copy of the sources takes the allocator of `sources`; `a` is not
 * used. NULL, `p` owning nothing, when `sources` is empty or holds more than 255, or when `bitrate` is one that
 * ZunRtcpPsfbAfbRembSetBitrate refuses.
 */
ZunRtcpPsfbAfbRemb* ZunRtcpPsfbAfbRembConstructFull(ZunRtcpPsfbAfbRemb* p, ZunRtpSourceId sender, ZunFloat32 bitrate,
                                                    const ZunVector_ZunRtpSourceId* sources, ZunAllocator* a);

/* Lifecycle (ZunConventions.h). */
ZunRtcpPsfbAfbRemb* ZunRtcpPsfbAfbRembConstructCopy(ZunRtcpPsfbAfbRemb* p, const ZunRtcpPsfbAfbRemb* o);
ZunRtcpPsfbAfbRemb* ZunRtcpPsfbAfbRembAssign(ZunRtcpPsfbAfbRemb* p, const ZunRtcpPsfbAfbRemb* o);
void ZunRtcpPsfbAfbRembDestruct(ZunRtcpPsfbAfbRemb* p);

/*
 * In bit/s. False, `p` unchanged, when `bitrate` is negative, NaN, infinite or not below (2^18 - 1) * 2^63, the
 * largest value that the wire can carry. -0.0 is not negative; it is written as 0.
 */
ZunBool ZunRtcpPsfbAfbRembSetBitrate(ZunRtcpPsfbAfbRemb* p, ZunFloat32 bitrate);

/*
 * Copies `sources`. False when it is empty or holds more than 255 (`p` unchanged), or when an allocation is refused
 * (`p` without sources).
 */
ZunBool ZunRtcpPsfbAfbRembSetFeedbackSources(ZunRtcpPsfbAfbRemb* p, const ZunVector_ZunRtpSourceId* sources);

/*
 * The row operations. Writing keeps the 18 most significant bits of the bitrate and drops the rest: what a peer reads
 * is never above what was set. Reading requires that the message ends after its last SSRC, accepts one
 * without SSRCs, and takes their number as signed: a message with 128 to 255 is written but not read.
 */
ZUN_RTCP_ROW_DECLARE(ZunRtcpPsfbAfbRemb)

/* The allocator of the sources. */
ZUN_INLINE ZunAllocator* ZunRtcpPsfbAfbRembGetAllocator(ZunRtcpPsfbAfbRemb* p) { return p->sources.allocator; }
/* In bit/s. */
ZUN_INLINE ZunFloat32 ZunRtcpPsfbAfbRembGetBitrate(const ZunRtcpPsfbAfbRemb* p) { return p->bitrate; }
/* The sources themselves. */
ZUN_INLINE const ZunVector_ZunRtpSourceId* ZunRtcpPsfbAfbRembGetFeedbackSources(const ZunRtcpPsfbAfbRemb* p) {
  return &p->sources;
}

ZUN_EXTERN_C_END

#endif
