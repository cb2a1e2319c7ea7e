/*
 * Source description, packet type 202: texts about one or more sources (RFC 3550, section 6.5). Chunks and items are
 * drawn in ZunRtcpSdesChunk.h and ZunRtcpSdesItem.h.
 *
 *    0                   1                   2                   3
 *    0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1
 *   +=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+
 * 4 |    chunks, whole words each, as many as the count says ...    |
 *   +=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+=+
 */
#ifndef ZUN_RTP_REPORTS_ZUNRTCPSDES_H
#define ZUN_RTP_REPORTS_ZUNRTCPSDES_H

#include "Zun/Rtp/Core/ZunRtcpRow.h"
#include "Zun/Rtp/Reports/ZunRtcpSdesChunk.h"

ZUN_EXTERN_C_BEGIN

typedef struct ZunRtcpSdes ZunRtcpSdes;
struct ZunRtcpSdes {
  ZunRtcpSubpacketType type;         /* 202 */
  ZunVector_ZunRtcpSdesChunk chunks; /* in wire order; owns the object's allocator, each chunk has its own */
};

/* Without chunks. */
ZunRtcpSdes* ZunRtcpSdesConstructDefault(ZunRtcpSdes* p, ZunAllocator* a);

/* Lifecycle (ZunConventions.h). */
ZunRtcpSdes* ZunRtcpSdesConstructCopy(ZunRtcpSdes* p, const ZunRtcpSdes* o);
ZunRtcpSdes* ZunRtcpSdesAssign(ZunRtcpSdes* p, const ZunRtcpSdes* o);
void ZunRtcpSdesDestruct(ZunRtcpSdes* p);

/*
 * Copies the chunks. There is no limit of 31: a packet with more is written with a count that spills into the padding
 * and version bits of the header. False as ZunRtcpSdesAssign.
 */
ZunBool ZunRtcpSdesSetChunks(ZunRtcpSdes* p, const ZunVector_ZunRtcpSdesChunk* chunks);

/*
 * The row operations. A body without chunks is accepted when it is empty, and leaves the old chunks. Otherwise chunks,
 * items and texts are built with the allocator of `chunks`; items of a type outside 1 to 15 are skipped with a message
 * (level info, category "rtcp"). The first entry of a chunk is always read as an item, so a chunk without items has one
 * of type 0 skipped. False when the chunks do not end exactly where the body does; the chunks read before the one that
 * fails are kept. Writing does not notice when an allocation for a text or for the zero bytes after it is refused.
 */
ZUN_RTCP_ROW_DECLARE(ZunRtcpSdes)

/* The allocator of the chunks. */
ZUN_INLINE ZunAllocator* ZunRtcpSdesGetAllocator(ZunRtcpSdes* p) { return p->chunks.allocator; }
/* The chunks themselves. */
ZUN_INLINE const ZunVector_ZunRtcpSdesChunk* ZunRtcpSdesGetChunks(const ZunRtcpSdes* p) { return &p->chunks; }

ZUN_EXTERN_C_END

#endif
