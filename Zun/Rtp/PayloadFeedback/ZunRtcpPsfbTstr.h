/*
 * Temporal-spatial trade-off request, FMT 5: asks media senders for another balance of frame rate and picture
 * quality (RFC 5104, section 4.3.2). After the common feedback header comes one entry for each sender asked:
 *
 *     0                   1                   2                   3
 *     0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1
 *    +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 12 |                              SSRC                             |
 *    +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 16 |  Seq nr.      |            Reserved = 0             |  Index  |
 *    +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 */
#ifndef ZUN_RTP_PAYLOADFEEDBACK_ZUNRTCPPSFBTSTR_H
#define ZUN_RTP_PAYLOADFEEDBACK_ZUNRTCPPSFBTSTR_H

#include "Zun/Rtp/Core/ZunRtcpPsfbType.h"
#include "Zun/Rtp/Core/ZunRtcpRow.h"
#include "Zun/Rtp/ZunRtpHeader.h"

ZUN_EXTERN_C_BEGIN

/* One request. */
typedef struct ZunRtcpPsfbTstrEntry ZunRtcpPsfbTstrEntry;
struct ZunRtcpPsfbTstrEntry {
  ZunRtpSourceId ssrc; /* the media sender that is asked to change its trade-off */
  ZunUint8 seqno;      /* request sequence number, modulo 256 */
  ZunUint8 index;      /* trade-off, from 0 (best picture quality) to 31 (highest frame rate) */
};

/* The three values, not checked; the index is written as a whole octet. `a` is not used. */
ZunRtcpPsfbTstrEntry* ZunRtcpPsfbTstrEntryConstructFull(ZunRtcpPsfbTstrEntry* p, ZunRtpSourceId ssrc, ZunUint8 seqno,
                                                        ZunUint8 idx, ZunAllocator* a);

/* Lifecycle of a plain value (ZunConventions.h). */
ZunRtcpPsfbTstrEntry* ZunRtcpPsfbTstrEntryConstructCopy(ZunRtcpPsfbTstrEntry* p, const ZunRtcpPsfbTstrEntry* o);
ZunRtcpPsfbTstrEntry* ZunRtcpPsfbTstrEntryAssign(ZunRtcpPsfbTstrEntry* p, const ZunRtcpPsfbTstrEntry* o);
void ZunRtcpPsfbTstrEntryDestruct(ZunRtcpPsfbTstrEntry* p);

/* False, the field unchanged, when `idx` exceeds 31. */
ZunBool ZunRtcpPsfbTstrEntrySetIndex(ZunRtcpPsfbTstrEntry* p, ZunUint8 idx);

ZUN_INLINE ZunRtpSourceId ZunRtcpPsfbTstrEntryGetSsrc(const ZunRtcpPsfbTstrEntry* p) { return p->ssrc; }
ZUN_INLINE ZunBool ZunRtcpPsfbTstrEntrySetSsrc(ZunRtcpPsfbTstrEntry* p, ZunRtpSourceId ssrc) {
  p->ssrc = ssrc;
  return 1;
}
ZUN_INLINE ZunUint8 ZunRtcpPsfbTstrEntryGetSequenceNumber(const ZunRtcpPsfbTstrEntry* p) { return p->seqno; }
ZUN_INLINE ZunBool ZunRtcpPsfbTstrEntrySetSequenceNumber(ZunRtcpPsfbTstrEntry* p, ZunUint8 seqno) {
  p->seqno = seqno;
  return 1;
}
ZUN_INLINE ZunUint8 ZunRtcpPsfbTstrEntryGetIndex(const ZunRtcpPsfbTstrEntry* p) { return p->index; }

ZUN_EXTERN_C_END

ZUN_VECTOR_DECLARE(ZunRtcpPsfbTstrEntry)

ZUN_EXTERN_C_BEGIN

typedef struct ZunRtcpPsfbTstr ZunRtcpPsfbTstr;
struct ZunRtcpPsfbTstr {
  ZunRtcpSubpacketType type;          /* 206 */
  ZunRtcpPsfbType fmt;                /* 5 */
  ZunRtpSourceId sender;              /* SSRC of the packet sender */
  ZunRtpSourceId source;              /* SSRC of the media source; always written as 0, kept when read */
  ZunVector_ZunRtcpPsfbTstrEntry fci; /* the requests, in wire order; its allocator is the object's */
};

/* Both SSRCs 0, no entries. */
ZunRtcpPsfbTstr* ZunRtcpPsfbTstrConstructDefault(ZunRtcpPsfbTstr* p, ZunAllocator* a);

/* Lifecycle (ZunConventions.h). */
ZunRtcpPsfbTstr* ZunRtcpPsfbTstrConstructCopy(ZunRtcpPsfbTstr* p, const ZunRtcpPsfbTstr* o);
ZunRtcpPsfbTstr* ZunRtcpPsfbTstrAssign(ZunRtcpPsfbTstr* p, const ZunRtcpPsfbTstr* o);
void ZunRtcpPsfbTstrDestruct(ZunRtcpPsfbTstr* p);

/*
 * The row operations. A message without entries is neither read nor written: reading leaves the entries that `p`
 * had, writing leaves the 12 bytes of the header. A body whose FCI is no multiple of 8 bytes is refused, its whole
 * entries having been read. The media source is written as 0, whatever `source` holds; reading another
 * value logs a warning in category "rtcp-feedback" and goes on.
 */
ZUN_RTCP_ROW_DECLARE(ZunRtcpPsfbTstr)

/* The allocator of the entries. */
ZUN_INLINE ZunAllocator* ZunRtcpPsfbTstrGetAllocator(ZunRtcpPsfbTstr* p) { return p->fci.allocator; }
/* The list itself, for reading, and, where `p` may be changed, for adding to it with the vector's operations. */
ZUN_INLINE ZunVector_ZunRtcpPsfbTstrEntry* ZunRtcpPsfbTstrGetFci(const ZunRtcpPsfbTstr* p) {
  return ZUN_MUTABLE_(ZunVector_ZunRtcpPsfbTstrEntry, &p->fci);
}

ZUN_EXTERN_C_END

#endif
