/*
 * House message 2: the bit rate that is available on a link.
 *
 *    0                   1                   2                   3
 *    0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1
 *   +=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+
 * 12|      'N'      |      'r'      |               2               |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 16|                      available bit rate                       |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 */
#ifndef ZUN_RTP_APPLICATIONFEEDBACK_ZUNRTCPPSFBAFBALBR_H
#define ZUN_RTP_APPLICATIONFEEDBACK_ZUNRTCPPSFBAFBALBR_H

#include "Zun/Rtp/Core/ZunRtcpPsfbAfbType.h"
#include "Zun/Rtp/Core/ZunRtcpPsfbType.h"
#include "Zun/Rtp/Core/ZunRtcpRow.h"
#include "Zun/Rtp/ZunRtpHeader.h"

ZUN_EXTERN_C_BEGIN

typedef struct ZunRtcpPsfbAfbAlbr ZunRtcpPsfbAfbAlbr;
struct ZunRtcpPsfbAfbAlbr {
  ZunRtcpSubpacketType type;    /* 206 */
  ZunRtcpPsfbType fmt;          /* 15 */
  ZunRtpSourceId sender;        /* SSRC of the packet sender */
  ZunRtpSourceId source;        /* SSRC of the media source; 0 as constructed */
  ZunRtcpPsfbAfbType afbType;   /* 2 */
  ZunUint32 available_bit_rate; /* carried only; its unit is up to the peers */
};

/* Both SSRCs and every value 0. */
ZunRtcpPsfbAfbAlbr* ZunRtcpPsfbAfbAlbrConstructDefault(ZunRtcpPsfbAfbAlbr* p, ZunAllocator* a);

/* All fields but the media source, which is 0. */
ZunRtcpPsfbAfbAlbr* ZunRtcpPsfbAfbAlbrConstructFull(ZunRtcpPsfbAfbAlbr* p, ZunRtpSourceId sender,
                                                    ZunUint32 available_bit_rate, ZunAllocator* a);

/* Lifecycle of a plain value (ZunConventions.h). */
ZunRtcpPsfbAfbAlbr* ZunRtcpPsfbAfbAlbrConstructCopy(ZunRtcpPsfbAfbAlbr* p, const ZunRtcpPsfbAfbAlbr* o);
ZunRtcpPsfbAfbAlbr* ZunRtcpPsfbAfbAlbrAssign(ZunRtcpPsfbAfbAlbr* p, const ZunRtcpPsfbAfbAlbr* o);
void ZunRtcpPsfbAfbAlbrDestruct(ZunRtcpPsfbAfbAlbr* p);

/* NULL. */
ZunAllocator* ZunRtcpPsfbAfbAlbrGetAllocator(ZunRtcpPsfbAfbAlbr* p);

/* The row operations. Reading ignores what follows the bit rate. */
ZUN_RTCP_ROW_DECLARE(ZunRtcpPsfbAfbAlbr)

/* The field. */
ZUN_INLINE ZunUint32 ZunRtcpPsfbAfbAlbrGetAvailableLinkBitRate(const ZunRtcpPsfbAfbAlbr* p) {
  return p->available_bit_rate;
}
/* Always true. */
ZUN_INLINE ZunBool ZunRtcpPsfbAfbAlbrSetAvailableLinkBitRate(ZunRtcpPsfbAfbAlbr* p, ZunUint32 available_link_bit_rate) {
  p->available_bit_rate = available_link_bit_rate;
  return 1;
}

ZUN_EXTERN_C_END

#endif
