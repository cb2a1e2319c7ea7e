/*
 * Full intra request, FMT 4: asks media senders for a decoder refresh point (RFC 5104, section 4.3.1). After the
 * common feedback header comes one entry for each sender asked:
 *
 *     0                   1                   2                   3
 *     0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1
 *    +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 12 |                              SSRC                             |
 *    +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 16 |   Seq nr.     |                  Reserved = 0                 |
 *    +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 */
#ifndef ZUN_RTP_PAYLOADFEEDBACK_ZUNRTCPPSFBFIR_H
#define ZUN_RTP_PAYLOADFEEDBACK_ZUNRTCPPSFBFIR_H

#include "Zun/Rtp/Core/ZunRtcpPsfbType.h"
#include "Zun/Rtp/Core/ZunRtcpRow.h"
#include "Zun/Rtp/ZunRtpHeader.h"

ZUN_EXTERN_C_BEGIN

/* One command. */
typedef struct ZunRtcpPsfbFirEntry ZunRtcpPsfbFirEntry;
struct ZunRtcpPsfbFirEntry {
  ZunRtpSourceId ssrc; /* the media sender that is asked for a decoder refresh point */
  ZunUint8 seqno;      /* command sequence number, modulo 256 */
};

/* Both values. `a` is not used. */
ZunRtcpPsfbFirEntry* ZunRtcpPsfbFirEntryConstructFull(ZunRtcpPsfbFirEntry* p, ZunRtpSourceId ssrc, ZunUint8 seqno,
                                                      ZunAllocator* a);

/* Lifecycle of a plain value (ZunConventions.h). */
ZunRtcpPsfbFirEntry* ZunRtcpPsfbFirEntryConstructCopy(ZunRtcpPsfbFirEntry* p, const ZunRtcpPsfbFirEntry* o);
ZunRtcpPsfbFirEntry* ZunRtcpPsfbFirEntryAssign(ZunRtcpPsfbFirEntry* p, const ZunRtcpPsfbFirEntry* o);
void ZunRtcpPsfbFirEntryDestruct(ZunRtcpPsfbFirEntry* p);

ZUN_INLINE ZunRtpSourceId ZunRtcpPsfbFirEntryGetSsrc(const ZunRtcpPsfbFirEntry* p) { return p->ssrc; }
ZUN_INLINE ZunBool ZunRtcpPsfbFirEntrySetSsrc(ZunRtcpPsfbFirEntry* p, ZunRtpSourceId ssrc) {
  p->ssrc = ssrc;
  return 1;
}
ZUN_INLINE ZunUint8 ZunRtcpPsfbFirEntryGetSequenceNumber(const ZunRtcpPsfbFirEntry* p) { return p->seqno; }
ZUN_INLINE ZunBool ZunRtcpPsfbFirEntrySetSequenceNumber(ZunRtcpPsfbFirEntry* p, ZunUint8 seqno) {
  p->seqno = seqno;
  return 1;
}

ZUN_EXTERN_C_END

ZUN_VECTOR_DECLARE(ZunRtcpPsfbFirEntry)

ZUN_EXTERN_C_BEGIN

typedef struct ZunRtcpPsfbFir ZunRtcpPsfbFir;
struct ZunRtcpPsfbFir {
  ZunRtcpSubpacketType type;         /* 206 */
  ZunRtcpPsfbType fmt;               /* 4 */
  ZunRtpSourceId sender;             /* SSRC of the packet sender */
  ZunRtpSourceId source;             /* SSRC of the media source; RFC 5104 wants 0, any value is kept */
  ZunVector_ZunRtcpPsfbFirEntry fci; /* the commands, in wire order; its allocator is the object's */
};

/* Both SSRCs 0, no entries. */
ZunRtcpPsfbFir* ZunRtcpPsfbFirConstructDefault(ZunRtcpPsfbFir* p, ZunAllocator* a);

/* Lifecycle (ZunConventions.h). */
ZunRtcpPsfbFir* ZunRtcpPsfbFirConstructCopy(ZunRtcpPsfbFir* p, const ZunRtcpPsfbFir* o);
ZunRtcpPsfbFir* ZunRtcpPsfbFirAssign(ZunRtcpPsfbFir* p, const ZunRtcpPsfbFir* o);
void ZunRtcpPsfbFirDestruct(ZunRtcpPsfbFir* p);

/*
 * The row operations. A message without entries is neither read nor written: reading leaves the entries that `p`
 * had, writing leaves the 12 bytes of the header. A body whose FCI is no multiple of 8 bytes is refused, its whole
 * entries having been read.
 */
ZUN_RTCP_ROW_DECLARE(ZunRtcpPsfbFir)

/* The allocator of the entries. */
ZUN_INLINE ZunAllocator* ZunRtcpPsfbFirGetAllocator(ZunRtcpPsfbFir* p) { return p->fci.allocator; }
/* The list itself, for reading, and, where `p` may be changed, for adding to it with the vector's operations. */
ZUN_INLINE ZunVector_ZunRtcpPsfbFirEntry* ZunRtcpPsfbFirGetFci(const ZunRtcpPsfbFir* p) {
  return ZUN_MUTABLE_(ZunVector_ZunRtcpPsfbFirEntry, &p->fci);
}

ZUN_EXTERN_C_END

#endif
