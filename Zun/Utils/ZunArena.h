/*
 * An allocator over one block of the caller's: memory without the heap, and a hard ceiling. It hands out the block from
 * the front, takes back what was handed out last, and begins again as soon as nothing of it is live.
 */
#ifndef ZUN_UTILS_ZUNARENA_H
#define ZUN_UTILS_ZUNARENA_H

#include "Zun/Utils/ZunAllocator.h"

ZUN_EXTERN_C_BEGIN

/*
 * The arena must stay where it is, and alive, as long as objects are that were built with its allocator; so must the
 * block. It is used by one thread at a time.
 */
typedef struct ZunArena ZunArena;
struct ZunArena {
  ZunAllocator allocator; /* what objects are built with: ZunArenaGetAllocator */
  ZunAllocator* overflow; /* asked where the block does not suffice; NULL: the arena refuses */
  ZunUint8* block;        /* the caller's, from its first aligned byte on */
  ZunSizeT size;          /* of the block from there */
  ZunSizeT used;          /* bytes up to the last one that is handed out */
  ZunSizeT live;          /* how many allocations of the block have not come back */
  ZunSizeT highWater;     /* the most that `used` has been */
};

/*
 * An arena over block[0, size). Allocations are aligned for any type and take a multiple of 16 bytes of it. Where the
 * block does not suffice `overflow` is asked; when it is NULL the allocation is refused, so nothing ever takes more
 * memory than the block has. Returns `p`; cannot fail.
 */
ZunArena* ZunArenaConstruct(ZunArena* p, void* block, ZunSizeT size, ZunAllocator* overflow);

/* Forgets everything that was handed out of the block. Objects that are still there must not be used any more. */
void ZunArenaReset(ZunArena* p);

/* The allocator, for as long as the arena lives. */
ZUN_INLINE ZunAllocator* ZunArenaGetAllocator(ZunArena* p) { return &p->allocator; }
/* Bytes of the block up to the last one that is handed out. */
ZUN_INLINE ZunSizeT ZunArenaGetUsed(const ZunArena* p) { return p->used; }
/* The most that this has been since construction: how large the block must be for the like of what was done. */
ZUN_INLINE ZunSizeT ZunArenaGetHighWaterMark(const ZunArena* p) { return p->highWater; }

ZUN_EXTERN_C_END

#endif
