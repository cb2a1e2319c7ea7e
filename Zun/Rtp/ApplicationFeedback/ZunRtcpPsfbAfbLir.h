/*
 * House message 5: what is known of the layers of some media sources. The layer data is opaque to the library.
 *
 * The reader and the writer do not use the same form of an entry, and both are what peers expect: entries arrive with
 * the length of their layer data and leave without it, under a header that always announces 24 octets. So this
 * message does not survive writing and reading again.
 *
 *    0                   1                   2                   3
 *    0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1
 *   +=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+
 * 12|      'N'      |      'r'      |               5               |
 *   +=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+
 *   |                      SSRC of media source                     |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 *   |     seqno     |0|payload type |  length (only when it is read) |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 *   |  layer data, filled up to a multiple of 4 octets ...          |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 *   |  ... further entries                                          |
 */
#ifndef ZUN_RTP_APPLICATIONFEEDBACK_ZUNRTCPPSFBAFBLIR_H
#define ZUN_RTP_APPLICATIONFEEDBACK_ZUNRTCPPSFBAFBLIR_H

#include "Zun/Rtp/Core/ZunRtcpPsfbAfbType.h"
#include "Zun/Rtp/Core/ZunRtcpPsfbType.h"
#include "Zun/Rtp/Core/ZunRtcpRow.h"
#include "Zun/Rtp/ZunRtpHeader.h"
#include "Zun/Utils/ZunString.h"

ZUN_EXTERN_C_BEGIN

/* What is known of one media source. */
typedef struct ZunRtcpPsfbAfbLirEntry ZunRtcpPsfbAfbLirEntry;
struct ZunRtcpPsfbAfbLirEntry {
  ZunRtpSourceId ssrc;  /* the media source */
  ZunUint8 seqno;       /* sequence number */
  ZunUint8 payloadType; /* RTP payload type, 0..127 unless it was set otherwise */
  ZunString layerData;  /* opaque; at most 65535 bytes when it was read; owns the entry's allocator */
};

/*
 * All fields. The copy of the layer data takes the allocator of `layerData`; `a` is not used. NULL when `pt` exceeds
 * 127.
 */
ZunRtcpPsfbAfbLirEntry* ZunRtcpPsfbAfbLirEntryConstructFull(ZunRtcpPsfbAfbLirEntry* p, ZunRtpSourceId ssrc,
                                                            ZunUint8 seqno, ZunUint8 pt, const ZunString* layerData,
                                                            ZunAllocator* a);

/* Lifecycle (ZunConventions.h). */
ZunRtcpPsfbAfbLirEntry* ZunRtcpPsfbAfbLirEntryConstructCopy(ZunRtcpPsfbAfbLirEntry* p, const ZunRtcpPsfbAfbLirEntry* o);
ZunRtcpPsfbAfbLirEntry* ZunRtcpPsfbAfbLirEntryAssign(ZunRtcpPsfbAfbLirEntry* p, const ZunRtcpPsfbAfbLirEntry* o);
void ZunRtcpPsfbAfbLirEntryDestruct(ZunRtcpPsfbAfbLirEntry* p);

/* Copies `layerData`, of any length. */
ZunBool ZunRtcpPsfbAfbLirEntrySetLayerData(ZunRtcpPsfbAfbLirEntry* p, const ZunString* layerData);

/* The setters of plain fields are always true. */
ZUN_INLINE ZunRtpSourceId ZunRtcpPsfbAfbLirEntryGetSsrc(const ZunRtcpPsfbAfbLirEntry* p) { return p->ssrc; }
ZUN_INLINE ZunBool ZunRtcpPsfbAfbLirEntrySetSsrc(ZunRtcpPsfbAfbLirEntry* p, ZunRtpSourceId ssrc) {
  p->ssrc = ssrc;
  return 1;
}
ZUN_INLINE ZunUint8 ZunRtcpPsfbAfbLirEntryGetSequenceNumber(const ZunRtcpPsfbAfbLirEntry* p) { return p->seqno; }
ZUN_INLINE ZunBool ZunRtcpPsfbAfbLirEntrySetSequenceNumber(ZunRtcpPsfbAfbLirEntry* p, ZunUint8 seqno) {
  p->seqno = seqno;
  return 1;
}
ZUN_INLINE ZunUint8 ZunRtcpPsfbAfbLirEntryGetPayloadType(const ZunRtcpPsfbAfbLirEntry* p) { return p->payloadType; }
/* Unlike construction, this takes any value; a reader refuses a message with one above 127. */
ZUN_INLINE ZunBool ZunRtcpPsfbAfbLirEntrySetPayloadType(ZunRtcpPsfbAfbLirEntry* p, ZunUint8 pt) {
  p->payloadType = pt;
  return 1;
}
/* The layer data itself. */
ZUN_INLINE const ZunString* ZunRtcpPsfbAfbLirEntryGetLayerData(const ZunRtcpPsfbAfbLirEntry* p) {
  return &p->layerData;
}

ZUN_EXTERN_C_END

/* Entries are copied with the allocators of their sources. */
ZUN_VECTOR_DECLARE(ZunRtcpPsfbAfbLirEntry)

ZUN_EXTERN_C_BEGIN

typedef struct ZunRtcpPsfbAfbLir ZunRtcpPsfbAfbLir;
struct ZunRtcpPsfbAfbLir {
  ZunRtcpSubpacketType type;            /* 206 */
  ZunRtcpPsfbType fmt;                  /* 15 */
  ZunRtpSourceId sender;                /* SSRC of the packet sender */
  ZunRtpSourceId source;                /* SSRC of the media source */
  ZunRtcpPsfbAfbType afbType;           /* 5 */
  ZunVector_ZunRtcpPsfbAfbLirEntry fci; /* the entries in wire order; owns the object's allocator */
};

/* Both SSRCs 0, no entries. */
ZunRtcpPsfbAfbLir* ZunRtcpPsfbAfbLirConstructDefault(ZunRtcpPsfbAfbLir* p, ZunAllocator* a);

/* Lifecycle (ZunConventions.h). */
ZunRtcpPsfbAfbLir* ZunRtcpPsfbAfbLirConstructCopy(ZunRtcpPsfbAfbLir* p, const ZunRtcpPsfbAfbLir* o);
ZunRtcpPsfbAfbLir* ZunRtcpPsfbAfbLirAssign(ZunRtcpPsfbAfbLir* p, const ZunRtcpPsfbAfbLir* o);
void ZunRtcpPsfbAfbLirDestruct(ZunRtcpPsfbAfbLir* p);

/*
 * The row operations. The wire length counts 2 octets for the length of each entry, which are not written. Writing
 * fails when there is no entry, after the octets in front of the first. Reading requires an entry; the layer data of
 * what it reads takes the allocator of the buffer string. The entries in front of a failure are kept.
 */
ZUN_RTCP_ROW_DECLARE(ZunRtcpPsfbAfbLir)

/* The allocator of the list. */
ZUN_INLINE ZunAllocator* ZunRtcpPsfbAfbLirGetAllocator(ZunRtcpPsfbAfbLir* p) { return p->fci.allocator; }
/* The entries themselves, through which they are added and changed; those of a const object must not be. */
ZUN_INLINE ZunVector_ZunRtcpPsfbAfbLirEntry* ZunRtcpPsfbAfbLirGetFci(const ZunRtcpPsfbAfbLir* p) {
  return ZUN_MUTABLE_(ZunVector_ZunRtcpPsfbAfbLirEntry, &p->fci);
}

ZUN_EXTERN_C_END

#endif
