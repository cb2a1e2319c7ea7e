/*
 * Payload-specific feedback, packet type 206 (RFC 4585, section 6.3): one message of any kind, told by its feedback
 * message type (FMT). Every member begins with `type`, `fmt`, `sender` and `source`, which may be read through any of
 * them.
 *
 *    0                   1                   2                   3
 *    0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 0 |V=2|P|   FMT   |    PT=206     |            length             |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 4 |                    SSRC of packet sender                      |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 8 |                    SSRC of media source                       |
 *   +=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+
 */
#ifndef ZUN_RTP_PAYLOADFEEDBACK_ZUNRTCPPSFB_H
#define ZUN_RTP_PAYLOADFEEDBACK_ZUNRTCPPSFB_H

#include "Zun/Rtp/PayloadFeedback/ZunRtcpPsfbFir.h"
#include "Zun/Rtp/PayloadFeedback/ZunRtcpPsfbPli.h"
#include "Zun/Rtp/PayloadFeedback/ZunRtcpPsfbRpsi.h"
#include "Zun/Rtp/PayloadFeedback/ZunRtcpPsfbSli.h"
#include "Zun/Rtp/PayloadFeedback/ZunRtcpPsfbTsta.h"
#include "Zun/Rtp/PayloadFeedback/ZunRtcpPsfbTstr.h"
#include "Zun/Rtp/PayloadFeedback/ZunRtcpPsfbUnknown.h"
#if ZUN_RTCP_HAS_APPLICATION_FEEDBACK
#include "Zun/Rtp/ApplicationFeedback/ZunRtcpPsfbAfb.h"
#endif

ZUN_EXTERN_C_BEGIN

/* A message of one kind is built with the constructors of that kind, called on its member. */
typedef union ZunRtcpPsfb ZunRtcpPsfb;
union ZunRtcpPsfb {
  ZunRtcpPsfbUnknown unk; /* any other FMT */
  ZunRtcpPsfbPli pli;     /* 1 */
  ZunRtcpPsfbSli sli;     /* 2 */
  ZunRtcpPsfbRpsi rpsi;   /* 3 */
  ZunRtcpPsfbFir fir;     /* 4 */
  ZunRtcpPsfbTstr tstr;   /* 5 */
  ZunRtcpPsfbTsta tsta;   /* 6 */
#if ZUN_RTCP_HAS_APPLICATION_FEEDBACK
  ZunRtcpPsfbAfb afb; /* 15 */
#endif
};

/* Lifecycle of a tagged union (ZunConventions.h). */
ZunRtcpPsfb* ZunRtcpPsfbConstructCopy(ZunRtcpPsfb* p, const ZunRtcpPsfb* o);
ZunRtcpPsfb* ZunRtcpPsfbAssign(ZunRtcpPsfb* p, const ZunRtcpPsfb* o);
void ZunRtcpPsfbDestruct(ZunRtcpPsfb* p);

/* The allocator of the message. */
ZunAllocator* ZunRtcpPsfbGetAllocator(ZunRtcpPsfb* p);

/* The row operations of an envelope (ZunRtcpRow.h). The header's count is the FMT. */
ZUN_RTCP_ROW_DECLARE(ZunRtcpPsfb)

/* The FMT, which tells the member that lives. */
ZUN_INLINE ZunRtcpPsfbType ZunRtcpPsfbGetFeedbackMessageType(const ZunRtcpPsfb* p) { return p->unk.fmt; }
/* The SSRC of the packet sender. */
ZUN_INLINE ZunRtpSourceId ZunRtcpPsfbGetSender(const ZunRtcpPsfb* p) { return p->unk.sender; }
ZUN_INLINE ZunBool ZunRtcpPsfbSetSender(ZunRtcpPsfb* p, ZunRtpSourceId sender) {
  p->unk.sender = sender;
  return 1;
}
/* The SSRC of the media source. */
ZUN_INLINE ZunRtpSourceId ZunRtcpPsfbGetMediaSource(const ZunRtcpPsfb* p) { return p->unk.source; }
ZUN_INLINE ZunBool ZunRtcpPsfbSetMediaSource(ZunRtcpPsfb* p, ZunRtpSourceId media_source) {
  p->unk.source = media_source;
  return 1;
}

/* The members. */
ZUN_INLINE const ZunRtcpPsfbUnknown* ZunRtcpPsfbGetUnknown(const ZunRtcpPsfb* p) { return &p->unk; }
ZUN_INLINE const ZunRtcpPsfbPli* ZunRtcpPsfbGetPli(const ZunRtcpPsfb* p) { return &p->pli; }
ZUN_INLINE const ZunRtcpPsfbSli* ZunRtcpPsfbGetSli(const ZunRtcpPsfb* p) { return &p->sli; }
ZUN_INLINE const ZunRtcpPsfbRpsi* ZunRtcpPsfbGetRpsi(const ZunRtcpPsfb* p) { return &p->rpsi; }
ZUN_INLINE const ZunRtcpPsfbFir* ZunRtcpPsfbGetFir(const ZunRtcpPsfb* p) { return &p->fir; }
ZUN_INLINE const ZunRtcpPsfbTstr* ZunRtcpPsfbGetTstr(const ZunRtcpPsfb* p) { return &p->tstr; }
ZUN_INLINE const ZunRtcpPsfbTsta* ZunRtcpPsfbGetTsta(const ZunRtcpPsfb* p) { return &p->tsta; }
#if ZUN_RTCP_HAS_APPLICATION_FEEDBACK
ZUN_INLINE const ZunRtcpPsfbAfb* ZunRtcpPsfbGetAfb(const ZunRtcpPsfb* p) { return &p->afb; }
#endif

ZUN_EXTERN_C_END

#endif
