/*
 * One entry of a TMMBR: a media sender, and the bit rate that it is asked not to exceed. The bit rate travels as a
 * plain number, not in the exponent and mantissa of RFC 5104, section 4.2.1.1.
 *
 *    0                   1                   2                   3
 *    0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 0 |                              SSRC                             |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 4 |                        maximum bit rate                       |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 */
#ifndef ZUN_RTP_TRANSPORTFEEDBACK_ZUNRTCPRTPFBTMMBRENTRY_H
#define ZUN_RTP_TRANSPORTFEEDBACK_ZUNRTCPRTPFBTMMBRENTRY_H

#include "Zun/Rtp/ZunRtpHeader.h"
#include "Zun/Utils/ZunVector.h"

ZUN_EXTERN_C_BEGIN

typedef struct ZunRtcpRtpfbTmmbrEntry ZunRtcpRtpfbTmmbrEntry;
struct ZunRtcpRtpfbTmmbrEntry {
  ZunRtpSourceId ssrc;   /* the media sender that is asked */
  ZunUint8 seqno;        /* not a part of this form of the message: 0 after construction, never written */
  ZunUint32 max_bitrate; /* bits per second */
};

/* Stores both, and a sequence number of 0; `a` is not used. */
ZUN_INLINE ZunRtcpRtpfbTmmbrEntry* ZunRtcpRtpfbTmmbrEntryConstructFull(ZunRtcpRtpfbTmmbrEntry* p, ZunRtpSourceId ssrc,
                                                                       ZunUint32 max_bitrate, ZunAllocator* a) {
  (void)a;
  p->ssrc = ssrc;
  p->seqno = 0;
  p->max_bitrate = max_bitrate;
  return p;
}
/* Lifecycle of a plain value (ZunConventions.h). */
ZunRtcpRtpfbTmmbrEntry* ZunRtcpRtpfbTmmbrEntryConstructCopy(ZunRtcpRtpfbTmmbrEntry* p, const ZunRtcpRtpfbTmmbrEntry* o);
ZunRtcpRtpfbTmmbrEntry* ZunRtcpRtpfbTmmbrEntryAssign(ZunRtcpRtpfbTmmbrEntry* p, const ZunRtcpRtpfbTmmbrEntry* o);
void ZunRtcpRtpfbTmmbrEntryDestruct(ZunRtcpRtpfbTmmbrEntry* p);

/* The fields. Their setters store them and return true. */
ZUN_INLINE ZunRtpSourceId ZunRtcpRtpfbTmmbrEntryGetSsrc(const ZunRtcpRtpfbTmmbrEntry* p) { return p->ssrc; }
ZUN_INLINE ZunBool ZunRtcpRtpfbTmmbrEntrySetSsrc(ZunRtcpRtpfbTmmbrEntry* p, ZunRtpSourceId ssrc) {
  p->ssrc = ssrc;
  return 1;
}
ZUN_INLINE ZunUint32 ZunRtcpRtpfbTmmbrEntryGetMaxBitrate(const ZunRtcpRtpfbTmmbrEntry* p) { return p->max_bitrate; }
ZUN_INLINE ZunBool ZunRtcpRtpfbTmmbrEntrySetMaxBitrate(ZunRtcpRtpfbTmmbrEntry* p, ZunUint32 max_bitrate) {
  p->max_bitrate = max_bitrate;
  return 1;
}

ZUN_EXTERN_C_END

ZUN_VECTOR_DECLARE(ZunRtcpRtpfbTmmbrEntry)

#endif
