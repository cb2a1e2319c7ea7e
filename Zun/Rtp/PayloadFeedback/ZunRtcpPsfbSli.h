/*
 * Slice loss indication, FMT 2: the receiver lost runs of macroblocks (RFC 4585, section 6.3.2). After the common
 * feedback header comes one word for each run:
 *
 *     0                   1                   2                   3
 *     0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1
 *    +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 12 |         First           |        Number           | PictureID |
 *    +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 */
#ifndef ZUN_RTP_PAYLOADFEEDBACK_ZUNRTCPPSFBSLI_H
#define ZUN_RTP_PAYLOADFEEDBACK_ZUNRTCPPSFBSLI_H

#include "Zun/Rtp/Core/ZunRtcpPsfbType.h"
#include "Zun/Rtp/Core/ZunRtcpRow.h"
#include "Zun/Rtp/ZunRtpHeader.h"

ZUN_EXTERN_C_BEGIN

/*
 * One run of lost macroblocks. The wire fields of the two macroblock numbers have 13 bits, and values up to 8191
 * come in by a parse or by ConstructFull and are written in full; the setters take 11 bits, the range that callers
 * of this library have always been held to.
 */
typedef struct ZunRtcpPsfbSliItem ZunRtcpPsfbSliItem;
struct ZunRtcpPsfbSliItem {
  ZunUint16 lost_mblock;      /* address of the first lost macroblock, 0..8191 */
  ZunUint16 num_lost_mblocks; /* number of lost macroblocks in scan order, 0..8191 */
  ZunUint8 picture_id;        /* the low six bits of the picture's identifier, 0..63 */
};

/* The three values, not checked; what exceeds its wire field is cut when written. `a` is not used. */
ZunRtcpPsfbSliItem* ZunRtcpPsfbSliItemConstructFull(ZunRtcpPsfbSliItem* p, ZunUint16 firstLostMblock,
                                                    ZunUint16 numLostMblocks, ZunUint8 pictureId, ZunAllocator* a);

/* Lifecycle of a plain value (ZunConventions.h). */
ZunRtcpPsfbSliItem* ZunRtcpPsfbSliItemConstructCopy(ZunRtcpPsfbSliItem* p, const ZunRtcpPsfbSliItem* o);
ZunRtcpPsfbSliItem* ZunRtcpPsfbSliItemAssign(ZunRtcpPsfbSliItem* p, const ZunRtcpPsfbSliItem* o);
void ZunRtcpPsfbSliItemDestruct(ZunRtcpPsfbSliItem* p);

/* False, the field unchanged, when the value exceeds 2047. */
ZunBool ZunRtcpPsfbSliItemSetFirstLostMblock(ZunRtcpPsfbSliItem* p, ZunUint16 firstLostMblock);
/* False, the field unchanged, when the value exceeds 2047. */
ZunBool ZunRtcpPsfbSliItemSetNumLostMblocks(ZunRtcpPsfbSliItem* p, ZunUint16 numLostMblocks);
/* False, the field unchanged, when the value exceeds 63. */
ZunBool ZunRtcpPsfbSliItemSetPictureId(ZunRtcpPsfbSliItem* p, ZunUint8 pictureId);

/* The fields; their units and ranges stand with them above. */
ZUN_INLINE ZunUint16 ZunRtcpPsfbSliItemGetFirstLostMblock(const ZunRtcpPsfbSliItem* p) { return p->lost_mblock; }
ZUN_INLINE ZunUint16 ZunRtcpPsfbSliItemGetNumLostMblocks(const ZunRtcpPsfbSliItem* p) { return p->num_lost_mblocks; }
ZUN_INLINE ZunUint8 ZunRtcpPsfbSliItemGetPictureId(const ZunRtcpPsfbSliItem* p) { return p->picture_id; }

ZUN_EXTERN_C_END

ZUN_VECTOR_DECLARE(ZunRtcpPsfbSliItem)

ZUN_EXTERN_C_BEGIN

typedef struct ZunRtcpPsfbSli ZunRtcpPsfbSli;
struct ZunRtcpPsfbSli {
  ZunRtcpSubpacketType type;          /* 206 */
  ZunRtcpPsfbType fmt;                /* 2 */
  ZunRtpSourceId sender;              /* SSRC of the packet sender */
  ZunRtpSourceId source;              /* SSRC of the media source whose slices were lost */
  ZunVector_ZunRtcpPsfbSliItem items; /* the lost runs, in wire order; its allocator is the object's */
};

/* Both SSRCs 0, no items. */
ZunRtcpPsfbSli* ZunRtcpPsfbSliConstructDefault(ZunRtcpPsfbSli* p, ZunAllocator* a);

/* Lifecycle (ZunConventions.h). */
ZunRtcpPsfbSli* ZunRtcpPsfbSliConstructCopy(ZunRtcpPsfbSli* p, const ZunRtcpPsfbSli* o);
ZunRtcpPsfbSli* ZunRtcpPsfbSliAssign(ZunRtcpPsfbSli* p, const ZunRtcpPsfbSli* o);
void ZunRtcpPsfbSliDestruct(ZunRtcpPsfbSli* p);

/*
 * The row operations. A body whose FCI is no multiple of 4 bytes is refused, its whole words having been read. A
 * message without items is read and written.
 */
ZUN_RTCP_ROW_DECLARE(ZunRtcpPsfbSli)

/* The allocator of the items. */
ZUN_INLINE ZunAllocator* ZunRtcpPsfbSliGetAllocator(ZunRtcpPsfbSli* p) { return p->items.allocator; }
/* The list itself, for reading, and, where `p` may be changed, for adding to it with the vector's operations. */
ZUN_INLINE ZunVector_ZunRtcpPsfbSliItem* ZunRtcpPsfbSliGetItems(const ZunRtcpPsfbSli* p) {
  return ZUN_MUTABLE_(ZunVector_ZunRtcpPsfbSliItem, &p->items);
}

ZUN_EXTERN_C_END

#endif
