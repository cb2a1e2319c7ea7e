/*
 * One chunk of a source description: what a participant tells about one source (RFC 3550, section 6.5).
 *
 *    0                   1                   2                   3
 *    0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 0 |                           SSRC/CSRC                           |
 *   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
 * 4 |   items, one behind the other, and 1 to 4 zero bytes up to    |
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

/* Source 0 without items, with allocator `a`. Returns `p`; cannot fail. */
ZunRtcpSdesChunk* ZunRtcpSdesChunkConstructDefault(ZunRtcpSdesChunk* p, ZunAllocator* a);

/* A copy with the allocators of `o`. NULL, `p` owning nothing, when an allocation is refused. */
ZunRtcpSdesChunk* ZunRtcpSdesChunkConstructCopy(ZunRtcpSdesChunk* p, const ZunRtcpSdesChunk* o);

/*
 * Makes `p` a copy of `o`; `p` keeps its allocator. NULL when an allocation is refused: the source of `p` is unchanged
 * then, its items may be some of the new and some of the old ones, or none.
 */
ZunRtcpSdesChunk* ZunRtcpSdesChunkAssign(ZunRtcpSdesChunk* p, const ZunRtcpSdesChunk* o);

/* Releases the items and leaves `p` without any; destructing it once more does nothing. */
void ZunRtcpSdesChunkDestruct(ZunRtcpSdesChunk* p);

/*
 * Copies the items. False when an allocation is refused: the items may be some of the new and some of the old ones
 * then, or none.
 */
ZunBool ZunRtcpSdesChunkSetItems(ZunRtcpSdesChunk* p, const ZunVector_ZunRtcpSdesItem* items);

/* The items themselves, valid as long as the chunk is neither changed nor destructed. */
ZUN_INLINE const ZunVector_ZunRtcpSdesItem* ZunRtcpSdesChunkGetItems(const ZunRtcpSdesChunk* p) { return &p->items; }
/* The source. The setter returns true. */
ZUN_INLINE ZunRtpSourceId ZunRtcpSdesChunkGetSource(const ZunRtcpSdesChunk* chunk) { return chunk->ssrc; }
ZUN_INLINE ZunBool ZunRtcpSdesChunkSetSource(ZunRtcpSdesChunk* chunk, ZunRtpSourceId ssrc) {
  chunk->ssrc = ssrc;
  return 1;
}

ZUN_EXTERN_C_END

/* Elements are copied with the allocators of their sources. */
ZUN_VECTOR_DECLARE(ZunRtcpSdesChunk)

#endif
