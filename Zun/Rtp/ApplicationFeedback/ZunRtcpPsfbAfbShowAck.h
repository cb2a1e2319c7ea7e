/*
 * House message 4: acknowledges a SHOW, named by the SSRC of its sender and its sequence number.
 *
 *    0                   1                   2                   3
 *    0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1
 *   +=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+
 * 12|      'N'      |      'r'      |               4               |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 16|                    SSRC of the SHOW's sender                  |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 20|     seqno     |                     zero                      |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 */
#ifndef ZUN_RTP_APPLICATIONFEEDBACK_ZUNRTCPPSFBAFBSHOWACK_H
#define ZUN_RTP_APPLICATIONFEEDBACK_ZUNRTCPPSFBAFBSHOWACK_H

#include "Zun/Rtp/Core/ZunRtcpPsfbAfbType.h"
#include "Zun/Rtp/Core/ZunRtcpPsfbType.h"
#include "Zun/Rtp/Core/ZunRtcpRow.h"
#include "Zun/Rtp/ZunRtpHeader.h"

ZUN_EXTERN_C_BEGIN

typedef struct ZunRtcpPsfbAfbShowAck ZunRtcpPsfbAfbShowAck;
struct ZunRtcpPsfbAfbShowAck {
  ZunRtcpSubpacketType type;  /* 206 */
  ZunRtcpPsfbType fmt;        /* 15 */
  ZunRtpSourceId sender;      /* SSRC of the packet sender */
  ZunRtpSourceId source;      /* SSRC of the media source; 0 as constructed */
  ZunRtcpPsfbAfbType afbType; /* 4 */
  ZunUint8 seqno;             /* of the SHOW that is acknowledged */
  ZunRtpSourceId showSender;  /* SSRC of its sender */
};

/* Both SSRCs and every value 0. */
ZunRtcpPsfbAfbShowAck* ZunRtcpPsfbAfbShowAckConstructDefault(ZunRtcpPsfbAfbShowAck* p, ZunAllocator* a);

/* All fields but the media source, which is 0. */
ZunRtcpPsfbAfbShowAck* ZunRtcpPsfbAfbShowAckConstructFull(ZunRtcpPsfbAfbShowAck* p, ZunRtpSourceId sender, ZunUint8 seq,
                                                          ZunRtpSourceId showSender);

/* Lifecycle of a plain value (ZunConventions.h). */
ZunRtcpPsfbAfbShowAck* ZunRtcpPsfbAfbShowAckConstructCopy(ZunRtcpPsfbAfbShowAck* p, const ZunRtcpPsfbAfbShowAck* o);
ZunRtcpPsfbAfbShowAck* ZunRtcpPsfbAfbShowAckAssign(ZunRtcpPsfbAfbShowAck* p, const ZunRtcpPsfbAfbShowAck* o);
void ZunRtcpPsfbAfbShowAckDestruct(ZunRtcpPsfbAfbShowAck* p);

/* NULL. */
ZunAllocator* ZunRtcpPsfbAfbShowAckGetAllocator(ZunRtcpPsfbAfbShowAck* p);

/* The row operations. Reading ignores what follows the sequence number. */
ZUN_RTCP_ROW_DECLARE(ZunRtcpPsfbAfbShowAck)

/* The fields; their units and ranges stand with them above. */
ZUN_INLINE ZunUint8 ZunRtcpPsfbAfbShowAckGetSequenceNumber(const ZunRtcpPsfbAfbShowAck* p) { return p->seqno; }
ZUN_INLINE ZunRtpSourceId ZunRtcpPsfbAfbShowAckGetShowSender(const ZunRtcpPsfbAfbShowAck* p) { return p->showSender; }

ZUN_EXTERN_C_END

#endif
