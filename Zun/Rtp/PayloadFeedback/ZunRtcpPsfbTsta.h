/*
 * Temporal-spatial trade-off notification, FMT 6: tells what became of trade-off requests (RFC 5104, section
 * 4.3.3). After the common feedback header comes one entry for each request:
 *
 *     0                   1                   2                   3
 *     0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1
 *    +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 12 |                              SSRC                             |
 *    +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 16 |  Seq nr.      |            Reserved = 0             |  Index  |
 *    +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 */
#ifndef ZUN_RTP_PAYLOADFEEDBACK_ZUNRTCPPSFBTSTA_H
#define ZUN_RTP_PAYLOADFEEDBACK_ZUNRTCPPSFBTSTA_H

#include "Zun/Rtp/Core/ZunRtcpPsfbType.h"
#include "Zun/Rtp/Core/ZunRtcpRow.h"
#include "Zun/Rtp/ZunRtpHeader.h"

ZUN_EXTERN_C_BEGIN

/* One answer. */
typedef struct ZunRtcpPsfbTstaEntry ZunRtcpPsfbTstaEntry;
struct ZunRtcpPsfbTstaEntry {
  ZunRtpSourceId ssrc; /* the sender of the request that is answered */
  ZunUint8 seqno;      /* sequence number of that request */
  ZunUint8 index;      /* trade-off, from 0 (best picture quality) to 31 (highest frame rate) */
};

/* The three values, not checked; the index is written as a whole octet. `a` is not used. */
ZunRtcpPsfbTstaEntry* ZunRtcpPsfbTstaEntryConstructFull(ZunRtcpPsfbTstaEntry* p, ZunRtpSourceId ssrc, ZunUint8 seqno,
                                                        ZunUint8 idx, ZunAllocator* a);

/* Lifecycle of a plain value (ZunConventions.h). */
ZunRtcpPsfbTstaEntry* ZunRtcpPsfbTstaEntryConstructCopy(ZunRtcpPsfbTstaEntry* p, const ZunRtcpPsfbTstaEntry* o);
ZunRtcpPsfbTstaEntry* ZunRtcpPsfbTstaEntryAssign(ZunRtcpPsfbTstaEntry* p, const ZunRtcpPsfbTstaEntry* o);
void ZunRtcpPsfbTstaEntryDestruct(ZunRtcpPsfbTstaEntry* p);

/* False, the field unchanged, when `idx` exceeds 31. */
ZunBool ZunRtcpPsfbTstaEntrySetIndex(ZunRtcpPsfbTstaEntry* p, ZunUint8 idx);

ZUN_INLINE ZunRtpSourceId ZunRtcpPsfbTstaEntryGetSsrc(const ZunRtcpPsfbTstaEntry* p) { return p->ssrc; }
ZUN_INLINE ZunBool ZunRtcpPsfbTstaEntrySetSsrc(ZunRtcpPsfbTstaEntry* p, ZunRtpSourceId ssrc) {
  p->ssrc = ssrc;
  return 1;
}
ZUN_INLINE ZunUint8 ZunRtcpPsfbTstaEntryGetSequenceNumber(const ZunRtcpPsfbTstaEntry* p) { return p->seqno; }
ZUN_INLINE ZunBool ZunRtcpPsfbTstaEntrySetSequenceNumber(ZunRtcpPsfbTstaEntry* p, ZunUint8 seqno) {
  p->seqno = seqno;
  return 1;
}
ZUN_INLINE ZunUint8 ZunRtcpPsfbTstaEntryGetIndex(const ZunRtcpPsfbTstaEntry* p) { return p->index; }

ZUN_EXTERN_C_END

ZUN_VECTOR_DECLARE(ZunRtcpPsfbTstaEntry)

ZUN_EXTERN_C_BEGIN

typedef struct ZunRtcpPsfbTsta ZunRtcpPsfbTsta;
struct ZunRtcpPsfbTsta {
  ZunRtcpSubpacketType type;          /* 206 */
  ZunRtcpPsfbType fmt;                /* 6 */
  ZunRtpSourceId sender;              /* SSRC of the packet sender */
  ZunRtpSourceId source;              /* SSRC of the media source; RFC 5104 wants 0, any value is kept */
  ZunVector_ZunRtcpPsfbTstaEntry fci; /* the answers, in wire order; its allocator is the object's */
};

/* Both SSRCs 0, no entries. */
ZunRtcpPsfbTsta* ZunRtcpPsfbTstaConstructDefault(ZunRtcpPsfbTsta* p, ZunAllocator* a);

/* Lifecycle (ZunConventions.h). */
ZunRtcpPsfbTsta* ZunRtcpPsfbTstaConstructCopy(ZunRtcpPsfbTsta* p, const ZunRtcpPsfbTsta* o);
ZunRtcpPsfbTsta* ZunRtcpPsfbTstaAssign(ZunRtcpPsfbTsta* p, const ZunRtcpPsfbTsta* o);
void ZunRtcpPsfbTstaDestruct(ZunRtcpPsfbTsta* p);

/*
 * The row operations. A message without entries is neither read nor written: reading leaves the entries that `p`
 * had, writing leaves the 12 bytes of the header. A body whose FCI is no multiple of 8 bytes is refused, its whole
 * entries having been read.
 */
ZUN_RTCP_ROW_DECLARE(ZunRtcpPsfbTsta)

/* The allocator of the entries. */
ZUN_INLINE ZunAllocator* ZunRtcpPsfbTstaGetAllocator(ZunRtcpPsfbTsta* p) { return p->fci.allocator; }
/* The list itself, for reading, and, where `p` may be changed, for adding to it with the vector's operations. */
ZUN_INLINE ZunVector_ZunRtcpPsfbTstaEntry* ZunRtcpPsfbTstaGetFci(const ZunRtcpPsfbTsta* p) {
  return ZUN_MUTABLE_(ZunVector_ZunRtcpPsfbTstaEntry, &p->fci);
}

ZUN_EXTERN_C_END

#endif
