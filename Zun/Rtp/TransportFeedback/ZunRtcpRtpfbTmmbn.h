/*
 * Temporary maximum media bit rate notification, in a form of this system's own: FMT 3 and one plain bit rate, where
 * RFC 5104, section 4.2.2, has FMT 4 and a list of packed ones. The two do not understand each other.
 *
 *    0                   1                   2                   3
 *    0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1
 *   +=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+
 * 4 |                    SSRC of packet sender                      |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 8 |                    SSRC of media source                       |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 12|                        maximum bit rate                       |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 */
#ifndef ZUN_RTP_TRANSPORTFEEDBACK_ZUNRTCPRTPFBTMMBN_H
#define ZUN_RTP_TRANSPORTFEEDBACK_ZUNRTCPRTPFBTMMBN_H

#include "Zun/Rtp/Core/ZunRtcpRow.h"
#include "Zun/Rtp/Core/ZunRtcpRtpfbType.h"
#include "Zun/Rtp/ZunRtpHeader.h"

ZUN_EXTERN_C_BEGIN

/* Owns no memory, so only reading and writing can fail, and the allocators are not used. */
typedef struct ZunRtcpRtpfbTmmbn ZunRtcpRtpfbTmmbn;
struct ZunRtcpRtpfbTmmbn {
  ZunRtcpSubpacketType type; /* 205 */
  ZunRtcpRtpfbType fmt;      /* 3 */
  ZunRtpSourceId sender;     /* SSRC of the packet sender */
  ZunRtpSourceId source;     /* SSRC of the media source */
  ZunUint32 max_bitrate;     /* bits per second */
};

/* All fields. */
ZunRtcpRtpfbTmmbn* ZunRtcpRtpfbTmmbnConstructFull(ZunRtcpRtpfbTmmbn* p, ZunRtpSourceId sender, ZunRtpSourceId source,
                                                  ZunUint32 max_bitrate, ZunAllocator* a);
/* Both SSRCs and the bit rate 0. */
ZunRtcpRtpfbTmmbn* ZunRtcpRtpfbTmmbnConstructDefault(ZunRtcpRtpfbTmmbn* p, ZunAllocator* a);
/* Lifecycle of a plain value (ZunConventions.h). */
ZunRtcpRtpfbTmmbn* ZunRtcpRtpfbTmmbnConstructCopy(ZunRtcpRtpfbTmmbn* p, const ZunRtcpRtpfbTmmbn* o);
ZunRtcpRtpfbTmmbn* ZunRtcpRtpfbTmmbnAssign(ZunRtcpRtpfbTmmbn* p, const ZunRtcpRtpfbTmmbn* o);
void ZunRtcpRtpfbTmmbnDestruct(ZunRtcpRtpfbTmmbn* p);
/* NULL: there is none. */
ZunAllocator* ZunRtcpRtpfbTmmbnGetAllocator(ZunRtcpRtpfbTmmbn* p);

/* The row operations. Reading takes a body of exactly 12 bytes; fields in front of a failure are stored. */
ZUN_RTCP_ROW_DECLARE(ZunRtcpRtpfbTmmbn)

/* The bit rate. */
ZUN_INLINE ZunUint32 ZunRtcpRtpfbTmmbnGetMaxBitrate(const ZunRtcpRtpfbTmmbn* p) { return p->max_bitrate; }
ZUN_INLINE ZunBool ZunRtcpRtpfbTmmbnSetMaxBitrate(ZunRtcpRtpfbTmmbn* p, ZunUint32 max_bitrate) {
  p->max_bitrate = max_bitrate;
  return 1;
}

ZUN_EXTERN_C_END

#endif
