/* The only two calls through which the library reaches an allocator. Included by ZunAllocator.h. */
#ifndef ZUN_UTILS_ZUNALLOCATORINLINE_H
#define ZUN_UTILS_ZUNALLOCATORINLINE_H

ZUN_EXTERN_C_BEGIN

/* A block of `size` bytes from `a`, or NULL. An allocator that is NULL refuses everything. */
ZUN_INLINE ZunVoidPtr ZunAllocatorAllocate(ZunAllocator* a, ZunSizeT size) {
  return a != NULL ? a->allocate(a, size) : NULL;
}

/* Gives `block`, which `a` gave for `size` bytes, back to it. */
ZUN_INLINE void ZunAllocatorDeallocate(ZunAllocator* a, ZunVoidPtr block, ZunSizeT size) {
  a->deallocate(a, block, size);
}

ZUN_EXTERN_C_END

#endif
