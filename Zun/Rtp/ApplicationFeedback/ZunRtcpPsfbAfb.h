/*
 * Application-layer feedback (RFC 4585, section 6.4): one message of packet type 206 with FMT 15, its kind told by
 * what its FCI begins with. Every member begins with `type`, `fmt`, `sender`, `source` and `afbType`, which may be read
 * through any of them.
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

/* A message of one kind is built with that kind's constructors, called on its member. */
typedef union ZunRtcpPsfbAfb ZunRtcpPsfbAfb;
union ZunRtcpPsfbAfb {
  ZunRtcpPsfbAfbUnknown unk;     /* any type but 1..5 and 65537 */
  ZunRtcpPsfbAfbAbafb abafb;     /* 1 */
  ZunRtcpPsfbAfbAlbr albr;       /* 2 */
  ZunRtcpPsfbAfbShow show;       /* 3 */
  ZunRtcpPsfbAfbShowAck showAck; /* 4 */
  ZunRtcpPsfbAfbLir lir;         /* 5 */
  ZunRtcpPsfbAfbRemb remb;       /* 65537 */
};

/* A copy with the allocator of `o`. NULL, `p` owning nothing, when an allocation is refused. */
ZunRtcpPsfbAfb* ZunRtcpPsfbAfbConstructCopy(ZunRtcpPsfbAfb* p, const ZunRtcpPsfbAfb* o);

/*
 * Makes `p` a copy of `o`. Within a kind `p` is assigned in place; across kinds it is destructed and rebuilt with its
 * own allocator (that of `o` when it has none). NULL when an allocation is refused: `p` is then what the kind's
 * assign leaves, or, across kinds, an empty unknown message.
 */
ZunRtcpPsfbAfb* ZunRtcpPsfbAfbAssign(ZunRtcpPsfbAfb* p, const ZunRtcpPsfbAfb* o);

/* Releases what `p` owns and leaves it empty; destructing it once more does nothing. */
void ZunRtcpPsfbAfbDestruct(ZunRtcpPsfbAfb* p);

/* The allocator that `p` was constructed with; NULL for a kind that owns no memory. */
ZunAllocator* ZunRtcpPsfbAfbGetAllocator(ZunRtcpPsfbAfb* p);

/*
 * The row operations, each that of the kind of `p`. ConstructFromBuffer and AssignFromBuffer tell the kind from the
 * body; reading over an object of another kind destructs it and rebuilds it with the allocator of the buffer string,
 * not with the one it had. Whatever is not recognised is read as an unknown message.
 */
ZUN_RTCP_ROW_DECLARE(ZunRtcpPsfbAfb)

/* The kind, which tells the live member. */
ZUN_INLINE ZunRtcpPsfbAfbType ZunRtcpPsfbAfbGetType(const ZunRtcpPsfbAfb* p) { return p->unk.afbType; }

/* The member of that kind. The kind is not checked: look at ZunRtcpPsfbAfbGetType first. */
ZUN_INLINE const ZunRtcpPsfbAfbUnknown* ZunRtcpPsfbAfbGetUnknown(const ZunRtcpPsfbAfb* p) { return &p->unk; }
ZUN_INLINE const ZunRtcpPsfbAfbAbafb* ZunRtcpPsfbAfbGetAbafb(const ZunRtcpPsfbAfb* p) { return &p->abafb; }
ZUN_INLINE const ZunRtcpPsfbAfbAlbr* ZunRtcpPsfbAfbGetAlbr(const ZunRtcpPsfbAfb* p) { return &p->albr; }
ZUN_INLINE const ZunRtcpPsfbAfbShow* ZunRtcpPsfbAfbGetShow(const ZunRtcpPsfbAfb* p) { return &p->show; }
ZUN_INLINE const ZunRtcpPsfbAfbShowAck* ZunRtcpPsfbAfbGetShowAck(const ZunRtcpPsfbAfb* p) { return &p->showAck; }
ZUN_INLINE const ZunRtcpPsfbAfbLir* ZunRtcpPsfbAfbGetLir(const ZunRtcpPsfbAfb* p) { return &p->lir; }
ZUN_INLINE const ZunRtcpPsfbAfbRemb* ZunRtcpPsfbAfbGetRemb(const ZunRtcpPsfbAfb* p) { return &p->remb; }

ZUN_EXTERN_C_END

#endif
