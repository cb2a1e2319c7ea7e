/*
 * Payload-specific feedback (RFC 4585, section 6.3): one message of packet type 206, its format chosen by the
 * feedback message type (FMT). Every member begins with `type`, `fmt`, `sender` and `source`, which may be read
 * through any of them.
 */
#ifndef ZUN_RTP_PAYLOADFEEDBACK_ZUNRTCPPSFB_H
#define ZUN_RTP_PAYLOADFEEDBACK_ZUNRTCPPSFB_H

#include "Zun/Rtp/ApplicationFeedback/ZunRtcpPsfbAfb.h"
#include "Zun/Rtp/PayloadFeedback/ZunRtcpPsfbFir.h"
#include "Zun/Rtp/PayloadFeedback/ZunRtcpPsfbPli.h"
#include "Zun/Rtp/PayloadFeedback/ZunRtcpPsfbRpsi.h"
#include "Zun/Rtp/PayloadFeedback/ZunRtcpPsfbSli.h"
#include "Zun/Rtp/PayloadFeedback/ZunRtcpPsfbTsta.h"
#include "Zun/Rtp/PayloadFeedback/ZunRtcpPsfbTstr.h"
#include "Zun/Rtp/PayloadFeedback/ZunRtcpPsfbUnknown.h"

ZUN_EXTERN_C_BEGIN

/* A message of one format is built with that format's constructors, called on its member. */
typedef union ZunRtcpPsfb ZunRtcpPsfb;
union ZunRtcpPsfb {
  ZunRtcpPsfbUnknown unk; /* any FMT but 1..6 and 15 */
  ZunRtcpPsfbPli pli;     /* 1 */
  ZunRtcpPsfbSli sli;     /* 2 */
  ZunRtcpPsfbRpsi rpsi;   /* 3 */
  ZunRtcpPsfbFir fir;     /* 4 */
  ZunRtcpPsfbTstr tstr;   /* 5 */
  ZunRtcpPsfbTsta tsta;   /* 6 */
  ZunRtcpPsfbAfb afb;     /* 15 */
};

/* A copy with the allocator of `o`. NULL, `p` owning nothing, when an allocation is refused. */
ZunRtcpPsfb* ZunRtcpPsfbConstructCopy(ZunRtcpPsfb* p, const ZunRtcpPsfb* o);

/*
 * Makes `p` a copy of `o`. Within a format, and among unknown ones, `p` is assigned in place; across formats it is
 * destructed and rebuilt with its own allocator (that of `o` when it has none). NULL when an allocation is refused:
 * `p` is then what the format's assign leaves, or, across formats, an empty unknown message.
 */
ZunRtcpPsfb* ZunRtcpPsfbAssign(ZunRtcpPsfb* p, const ZunRtcpPsfb* o);

/* Releases what `p` owns and leaves it empty; destructing it once more does nothing. */
void ZunRtcpPsfbDestruct(ZunRtcpPsfb* p);

/* The allocator that `p` was constructed with; NULL for a format that owns no memory. */
ZunAllocator* ZunRtcpPsfbGetAllocator(ZunRtcpPsfb* p);

/*
 * The row operations, each that of the format of `p`. ConstructFromBuffer and AssignFromBuffer take the format from
 * `count`; reading over an object of another format destructs it and rebuilds it with the allocator of the buffer
 * string, not with the one it had.
 */
ZUN_RTCP_ROW_DECLARE(ZunRtcpPsfb)

/* The feedback message type, which tells the live member. */
ZUN_INLINE ZunRtcpPsfbType ZunRtcpPsfbGetFeedbackMessageType(const ZunRtcpPsfb* p) { return p->unk.fmt; }
/* The SSRC of the packet sender. */
ZUN_INLINE ZunRtpSourceId ZunRtcpPsfbGetSender(const ZunRtcpPsfb* p) { return p->unk.sender; }
/* Always true. */
ZUN_INLINE ZunBool ZunRtcpPsfbSetSender(ZunRtcpPsfb* p, ZunRtpSourceId sender) {
  p->unk.sender = sender;
  return 1;
}
/* The SSRC of the media source. */
ZUN_INLINE ZunRtpSourceId ZunRtcpPsfbGetMediaSource(const ZunRtcpPsfb* p) { return p->unk.source; }
/* Always true. */
ZUN_INLINE ZunBool ZunRtcpPsfbSetMediaSource(ZunRtcpPsfb* p, ZunRtpSourceId media_source) {
  p->unk.source = media_source;
  return 1;
}

/* The member of that format. The message type is not checked: look at ZunRtcpPsfbGetFeedbackMessageType first. */
ZUN_INLINE const ZunRtcpPsfbUnknown* ZunRtcpPsfbGetUnknown(const ZunRtcpPsfb* p) { return &p->unk; }
ZUN_INLINE const ZunRtcpPsfbPli* ZunRtcpPsfbGetPli(const ZunRtcpPsfb* p) { return &p->pli; }
ZUN_INLINE const ZunRtcpPsfbSli* ZunRtcpPsfbGetSli(const ZunRtcpPsfb* p) { return &p->sli; }
ZUN_INLINE const ZunRtcpPsfbRpsi* ZunRtcpPsfbGetRpsi(const ZunRtcpPsfb* p) { return &p->rpsi; }
ZUN_INLINE const ZunRtcpPsfbFir* ZunRtcpPsfbGetFir(const ZunRtcpPsfb* p) { return &p->fir; }
ZUN_INLINE const ZunRtcpPsfbTstr* ZunRtcpPsfbGetTstr(const ZunRtcpPsfb* p) { return &p->tstr; }
ZUN_INLINE const ZunRtcpPsfbTsta* ZunRtcpPsfbGetTsta(const ZunRtcpPsfb* p) { return &p->tsta; }
ZUN_INLINE const ZunRtcpPsfbAfb* ZunRtcpPsfbGetAfb(const ZunRtcpPsfb* p) { return &p->afb; }

ZUN_EXTERN_C_END

#endif
