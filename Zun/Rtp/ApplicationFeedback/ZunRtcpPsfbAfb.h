/*
 * Application-layer feedback, packet type 206 with FMT 15 (RFC 4585, section 6.4): one message of any kind, told by
 * what its FCI begins with. Every member begins with `type`, `fmt`, `sender`, `source` and `afbType`, which may be read
 * through any of them.
 *
 *    0                   1                   2                   3
 *    0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 0 |V=2|P| FMT=15  |    PT=206     |            length             |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 4 |                    SSRC of packet sender                      |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 8 |                    SSRC of media source                       |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 12|    "Nr" and the number of a house message, or "REMB", or      |
 *   |    anything else                                              |
 *   +=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+
 */
#ifndef ZUN_RTP_APPLICATIONFEEDBACK_ZUNRTCPPSFBAFB_H
#define ZUN_RTP_APPLICATIONFEEDBACK_ZUNRTCPPSFBAFB_H

#include "Zun/Rtp/ApplicationFeedback/ZunRtcpPsfbAfbAbafb.h"
#include "Zun/Rtp/ApplicationFeedback/ZunRtcpPsfbAfbAlbr.h"
#include "Zun/Rtp/ApplicationFeedback/ZunRtcpPsfbAfbLir.h"
#include "Zun/Rtp/ApplicationFeedback/ZunRtcpPsfbAfbRemb.h"
#include "Zun/Rtp/ApplicationFeedback/ZunRtcpPsfbAfbShow.h"
#include "Zun/Rtp/ApplicationFeedback/ZunRtcpPsfbAfbShowAck.h"
#include "Zun/Rtp/ApplicationFeedback/ZunRtcpPsfbAfbUnknown.h"

ZUN_EXTERN_C_BEGIN

/* A message of one kind is built with the constructors of that kind, called on its member. */
typedef union ZunRtcpPsfbAfb ZunRtcpPsfbAfb;
union ZunRtcpPsfbAfb {
  ZunRtcpPsfbAfbUnknown unk;     /* any other kind */
  ZunRtcpPsfbAfbAbafb abafb;     /* 1 */
  ZunRtcpPsfbAfbAlbr albr;       /* 2 */
  ZunRtcpPsfbAfbShow show;       /* 3 */
  ZunRtcpPsfbAfbShowAck showAck; /* 4 */
  ZunRtcpPsfbAfbLir lir;         /* 5 */
  ZunRtcpPsfbAfbRemb remb;       /* 65537 */
};

/* Lifecycle of a tagged union (ZunConventions.h). */
ZunRtcpPsfbAfb* ZunRtcpPsfbAfbConstructCopy(ZunRtcpPsfbAfb* p, const ZunRtcpPsfbAfb* o);
ZunRtcpPsfbAfb* ZunRtcpPsfbAfbAssign(ZunRtcpPsfbAfb* p, const ZunRtcpPsfbAfb* o);
void ZunRtcpPsfbAfbDestruct(ZunRtcpPsfbAfb* p);

/* The allocator of the message. */
ZunAllocator* ZunRtcpPsfbAfbGetAllocator(ZunRtcpPsfbAfb* p);

/*
 * The row operations of an envelope (ZunRtcpRow.h). The kind is told by the body; whatever is not recognised is read as
 * an unknown message.
 */
ZUN_RTCP_ROW_DECLARE(ZunRtcpPsfbAfb)

/* The kind, which tells the member that lives. */
ZUN_INLINE ZunRtcpPsfbAfbType ZunRtcpPsfbAfbGetType(const ZunRtcpPsfbAfb* p) { return p->unk.afbType; }

/* The members. */
ZUN_INLINE const ZunRtcpPsfbAfbUnknown* ZunRtcpPsfbAfbGetUnknown(const ZunRtcpPsfbAfb* p) { return &p->unk; }
ZUN_INLINE const ZunRtcpPsfbAfbAbafb* ZunRtcpPsfbAfbGetAbafb(const ZunRtcpPsfbAfb* p) { return &p->abafb; }
ZUN_INLINE const ZunRtcpPsfbAfbAlbr* ZunRtcpPsfbAfbGetAlbr(const ZunRtcpPsfbAfb* p) { return &p->albr; }
ZUN_INLINE const ZunRtcpPsfbAfbShow* ZunRtcpPsfbAfbGetShow(const ZunRtcpPsfbAfb* p) { return &p->show; }
ZUN_INLINE const ZunRtcpPsfbAfbShowAck* ZunRtcpPsfbAfbGetShowAck(const ZunRtcpPsfbAfb* p) { return &p->showAck; }
ZUN_INLINE const ZunRtcpPsfbAfbLir* ZunRtcpPsfbAfbGetLir(const ZunRtcpPsfbAfb* p) { return &p->lir; }
ZUN_INLINE const ZunRtcpPsfbAfbRemb* ZunRtcpPsfbAfbGetRemb(const ZunRtcpPsfbAfb* p) { return &p->remb; }

ZUN_EXTERN_C_END

#endif
