/*
 * Where memory comes from. Every object that owns memory is built with an allocator, keeps it, and gives every block
 * back to it with the size that it asked for. What else holds for every object: ZunConventions.h.
 */
#ifndef ZUN_UTILS_ZUNALLOCATOR_H
#define ZUN_UTILS_ZUNALLOCATOR_H

#include "Zun/Utils/ZunConventions.h"
#include "Zun/Utils/ZunTypes.h"

ZUN_EXTERN_C_BEGIN

/*
 * An allocator of the caller's. It must outlive every object built with it; it is called from whatever
 * thread uses such an object. Its blocks are aligned for any type.
 */
typedef struct ZunAllocator ZunAllocator;
struct ZunAllocator {
  /* Returns a block of `size` bytes, or NULL when it cannot. */
  ZunVoidPtr (*allocate)(ZunAllocator* a, ZunSizeT size);
  /* Takes back a block that `allocate` gave; `size` is the size that was asked for. */
  void (*deallocate)(ZunAllocator* a, ZunVoidPtr block, ZunSizeT size);
  ZunSizeT maxSize;    /* the largest block it can give; the library never reads it */
  ZunVoidPtr userData; /* the allocator's own; the library never reads it */
};

/* The C library's heap, usable from any thread. Never NULL; not to be changed or released. */
ZunAllocator* ZunAllocatorGetSystem(void);

ZUN_EXTERN_C_END

#include "Zun/Utils/ZunAllocatorInline.h"

#endif
