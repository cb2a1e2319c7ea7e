/*
 * Transport-layer feedback, packet type 205 (RFC 4585, section 6.1): one message of any kind, told by its feedback
 * message type (FMT). Every member begins with `type`, `fmt` and `sender`, and every one but `ccfb` has `source` next,
 * so these may be read through any of them.
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

/* A message of one kind is built with the constructors of that kind, called on its member. */
typedef union ZunRtcpRtpfb ZunRtcpRtpfb;
union ZunRtcpRtpfb {
  ZunRtcpRtpfbUnknown unk;             /* any other FMT */
  ZunRtcpRtpfbNack nack;               /* 1 */
  ZunRtcpRtpfbTmmbr tmmbr;             /* 2 */
  ZunRtcpRtpfbTmmbn tmmbn;             /* 3 */
  ZunRtcpRtpfbTransportCc transportCc; /* 15 */
  ZunRtcpRtpfbCcfb ccfb;               /* 14 */
  ZunRtcpRtpfbAbafb abafb;             /* 30 */
};

/* Lifecycle of a tagged union (ZunConventions.h). */
ZunRtcpRtpfb* ZunRtcpRtpfbConstructCopy(ZunRtcpRtpfb* p, const ZunRtcpRtpfb* o);
ZunRtcpRtpfb* ZunRtcpRtpfbAssign(ZunRtcpRtpfb* p, const ZunRtcpRtpfb* o);
void ZunRtcpRtpfbDestruct(ZunRtcpRtpfb* p);

/* The allocator of the message. */
ZunAllocator* ZunRtcpRtpfbGetAllocator(ZunRtcpRtpfb* p);

/* The row operations of an envelope (ZunRtcpRow.h). The header's count is the FMT. */
ZUN_RTCP_ROW_DECLARE(ZunRtcpRtpfb)

/* The FMT, which tells the member that lives. */
ZUN_INLINE ZunRtcpRtpfbType ZunRtcpRtpfbGetFeedbackMessageType(const ZunRtcpRtpfb* p) { return p->unk.fmt; }
/* The SSRC of the packet sender. */
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

/* The members. */
ZUN_INLINE const ZunRtcpRtpfbUnknown* ZunRtcpRtpfbGetUnknown(const ZunRtcpRtpfb* p) { return &p->unk; }
ZUN_INLINE const ZunRtcpRtpfbNack* ZunRtcpRtpfbGetNack(const ZunRtcpRtpfb* p) { return &p->nack; }
ZUN_INLINE const ZunRtcpRtpfbTmmbr* ZunRtcpRtpfbGetTmmbr(const ZunRtcpRtpfb* p) { return &p->tmmbr; }
ZUN_INLINE const ZunRtcpRtpfbTmmbn* ZunRtcpRtpfbGetTmmbn(const ZunRtcpRtpfb* p) { return &p->tmmbn; }
ZUN_INLINE const ZunRtcpRtpfbTransportCc* ZunRtcpRtpfbGetTransportCc(const ZunRtcpRtpfb* p) { return &p->transportCc; }
ZUN_INLINE const ZunRtcpRtpfbCcfb* ZunRtcpRtpfbGetCcfb(const ZunRtcpRtpfb* p) { return &p->ccfb; }
ZUN_INLINE const ZunRtcpRtpfbAbafb* ZunRtcpRtpfbGetAbafb(const ZunRtcpRtpfb* p) { return &p->abafb; }

ZUN_EXTERN_C_END

#endif
