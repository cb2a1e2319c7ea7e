/*
 * One chunk of a source description: what a participant tells about one source (RFC 3550, section 6.5).
 *
 *    0                   1                   2                   3
 *    0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 0 |                           SSRC/CSRC                           |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 4 |   items, one after the other, and 1 to 4 zero bytes up to     |
 *   |   the end of a word: the first ends the list ...              |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 */
#ifndef ZUN_RTP_REPORTS_ZUNRTCPSDESCHUNK_H
#define ZUN_RTP_REPORTS_ZUNRTCPSDESCHUNK_H

#include "Zun/Rtp/Reports/ZunRtcpSdesItem.h"
#include "Zun/Rtp/ZunRtpHeader.h"

ZUN_EXTERN_C_BEGIN

typedef struct ZunRtcpSdesChunk ZunRtcpSdesChunk;
struct ZunRtcpSdesChunk {
  ZunRtpSourceId ssrc;             /* the source that is described */
  ZunVector_ZunRtcpSdesItem items; /* in wire order; its allocator is the chunk's, each item has its own */
};

/* Source 0 without items. */
ZunRtcpSdesChunk* ZunRtcpSdesChunkConstructDefault(ZunRtcpSdesChunk* p, ZunAllocator* a);

/* Lifecycle (ZunConventions.h). */
ZunRtcpSdesChunk* ZunRtcpSdesChunkConstructCopy(ZunRtcpSdesChunk* p, const ZunRtcpSdesChunk* o);
ZunRtcpSdesChunk* ZunRtcpSdesChunkAssign(ZunRtcpSdesChunk* p, const ZunRtcpSdesChunk* o);
void ZunRtcpSdesChunkDestruct(ZunRtcpSdesChunk* p);

/* Copies the items. */
ZunBool ZunRtcpSdesChunkSetItems(ZunRtcpSdesChunk* p, const ZunVector_ZunRtcpSdesItem* items);

/* The items themselves. */
ZUN_INLINE const ZunVector_ZunRtcpSdesItem* ZunRtcpSdesChunkGetItems(const ZunRtcpSdesChunk* p) { return &p->items; }
/* The source. */
ZUN_INLINE ZunRtpSourceId ZunRtcpSdesChunkGetSource(const ZunRtcpSdesChunk* chunk) { return chunk->ssrc; }
ZUN_INLINE ZunBool ZunRtcpSdesChunkSetSource(ZunRtcpSdesChunk* chunk, ZunRtpSourceId ssrc) {
  chunk->ssrc = ssrc;
  return 1;
}

ZUN_EXTERN_C_END

/* Elements are copied with the allocators of their sources. */
ZUN_VECTOR_DECLARE(ZunRtcpSdesChunk)

#endif
