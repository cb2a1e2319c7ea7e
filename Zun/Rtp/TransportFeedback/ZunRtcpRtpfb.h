/*
 * Transport-layer feedback, packet type 205 (RFC 4585, section 6.1): one message of any type, a tagged value. `fmt`
 * tells which member it is. Every member begins with `type`, `fmt` and `sender`, and every one but `ccfb` has
 * `source` next, so these may be read through any of them.
 *
 *    0                   1                   2                   3
 *    0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 0 |V=2|P|   FMT   |    PT=205     |            length             |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 4 |                    SSRC of packet sender                      |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 8 |           SSRC of media source (not in a CCFB)                |
 *   +=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+
 */
#ifndef ZUN_RTP_TRANSPORTFEEDBACK_ZUNRTCPRTPFB_H
#define ZUN_RTP_TRANSPORTFEEDBACK_ZUNRTCPRTPFB_H

#include "Zun/Rtp/TransportFeedback/ZunRtcpRtpfbAbafb.h"
#include "Zun/Rtp/TransportFeedback/ZunRtcpRtpfbCcfb.h"
#include "Zun/Rtp/TransportFeedback/ZunRtcpRtpfbNack.h"
#include "Zun/Rtp/TransportFeedback/ZunRtcpRtpfbTmmbn.h"
#include "Zun/Rtp/TransportFeedback/ZunRtcpRtpfbTmmbr.h"
#include "Zun/Rtp/TransportFeedback/ZunRtcpRtpfbTransportCc.h"
#include "Zun/Rtp/TransportFeedback/ZunRtcpRtpfbUnknown.h"

ZUN_EXTERN_C_BEGIN

/* A message of one type is built with that type's constructors, called on its member. */
typedef union ZunRtcpRtpfb ZunRtcpRtpfb;
union ZunRtcpRtpfb {
  ZunRtcpRtpfbUnknown unk;             /* any other fmt */
  ZunRtcpRtpfbNack nack;               /* 1 */
  ZunRtcpRtpfbTmmbr tmmbr;             /* 2 */
  ZunRtcpRtpfbTmmbn tmmbn;             /* 3 */
  ZunRtcpRtpfbTransportCc transportCc; /* 15 */
  ZunRtcpRtpfbCcfb ccfb;               /* 14 */
  ZunRtcpRtpfbAbafb abafb;             /* 30 */
};

/*
 * A copy of `o` that takes its storage from the allocator of `o`. NULL, `p` owning nothing, when an allocation
 * is refused.
 */
ZunRtcpRtpfb* ZunRtcpRtpfbConstructCopy(ZunRtcpRtpfb* p, const ZunRtcpRtpfb* o);

/*
 * Makes `p` a copy of `o`. Between messages of one type, and between unknown ones, `p` is assigned in place;
 * otherwise it is destructed and rebuilt with its own allocator (that of `o` when it has none). NULL when an
 * allocation is refused: `p` is then what its kind's assign leaves, or, where it was rebuilt, an empty unknown
 * message of type 0.
 */
ZunRtcpRtpfb* ZunRtcpRtpfbAssign(ZunRtcpRtpfb* p, const ZunRtcpRtpfb* o);

/* Releases what `p` owns and leaves it empty; destructing it once more does nothing. */
void ZunRtcpRtpfbDestruct(ZunRtcpRtpfb* p);

/* The allocator that `p` was constructed with; NULL for a message that owns no memory. */
ZunAllocator* ZunRtcpRtpfbGetAllocator(ZunRtcpRtpfb* p);

/*
 * The row operations, each that of p's message type; reading takes the message type from the header's count. An
 * object of another type that is read in place is rebuilt with the allocator of the buffer string `b`, not with its
 * own; when that read fails it is what the new type's read left, and must be destructed as usual.
 */
ZUN_RTCP_ROW_DECLARE(ZunRtcpRtpfb)

/* The message type, which tells the live member. */
ZUN_INLINE ZunRtcpRtpfbType ZunRtcpRtpfbGetFeedbackMessageType(const ZunRtcpRtpfb* p) { return p->unk.fmt; }
ZUN_INLINE ZunRtpSourceId ZunRtcpRtpfbGetSender(const ZunRtcpRtpfb* p) { return p->unk.sender; }
ZUN_INLINE ZunBool ZunRtcpRtpfbSetSender(ZunRtcpRtpfb* p, ZunRtpSourceId sender) {
  p->unk.sender = sender;
  return 1;
}
/* The SSRC of the media source; 0 for a CCFB, which has none. */
ZUN_INLINE ZunRtpSourceId ZunRtcpRtpfbGetMediaSource(const ZunRtcpRtpfb* p) {
  return p->unk.fmt != ZUN_RTCPRTPFB_TYPE_CCFB ? p->unk.source : 0;
}
/* False, `p` unchanged, for a CCFB. */
ZUN_INLINE ZunBool ZunRtcpRtpfbSetMediaSource(ZunRtcpRtpfb* p, ZunRtpSourceId source) {
  if (p->unk.fmt == ZUN_RTCPRTPFB_TYPE_CCFB) return 0;
  p->unk.source = source;
  return 1;
}

/* The member of that type. `fmt` is not checked: look at ZunRtcpRtpfbGetFeedbackMessageType first. */
ZUN_INLINE const ZunRtcpRtpfbUnknown* ZunRtcpRtpfbGetUnknown(const ZunRtcpRtpfb* p) { return &p->unk; }
ZUN_INLINE const ZunRtcpRtpfbNack* ZunRtcpRtpfbGetNack(const ZunRtcpRtpfb* p) { return &p->nack; }
ZUN_INLINE const ZunRtcpRtpfbTmmbr* ZunRtcpRtpfbGetTmmbr(const ZunRtcpRtpfb* p) { return &p->tmmbr; }
ZUN_INLINE const ZunRtcpRtpfbTmmbn* ZunRtcpRtpfbGetTmmbn(const ZunRtcpRtpfb* p) { return &p->tmmbn; }
ZUN_INLINE const ZunRtcpRtpfbTransportCc* ZunRtcpRtpfbGetTransportCc(const ZunRtcpRtpfb* p) { return &p->transportCc; }
ZUN_INLINE const ZunRtcpRtpfbCcfb* ZunRtcpRtpfbGetCcfb(const ZunRtcpRtpfb* p) { return &p->ccfb; }
ZUN_INLINE const ZunRtcpRtpfbAbafb* ZunRtcpRtpfbGetAbafb(const ZunRtcpRtpfb* p) { return &p->abafb; }

ZUN_EXTERN_C_END

#endif
