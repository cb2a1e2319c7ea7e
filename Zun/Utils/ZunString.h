/*
 * A growable string of bytes, zeros among them allowed. An empty string that never held a byte owns no storage. The
 * byte after the last is always zero, so text can be printed as it stands. What holds for every object:
 * ZunConventions.h.
 */
#ifndef ZUN_UTILS_ZUNSTRING_H
#define ZUN_UTILS_ZUNSTRING_H

#include "Zun/Utils/ZunAllocator.h"

ZUN_EXTERN_C_BEGIN

typedef struct ZunString ZunString;
struct ZunString {
  ZunAllocator* allocator; /* of the buffer, fixed at construction; the string does not own it */
  char* buf;               /* the bytes; NULL while there is no storage (ZunStringCStr never is) */
  ZunSizeT size;           /* number of bytes held */
  ZunSizeT capacity;       /* bytes that fit into `buf`, the zero after the last not counted */
};

/*
 * Those that return a string return `s`, or NULL when an allocation is refused, a size overflows or a
 * substring begins beyond its source; the string is then as it was. Substrings that reach past the end of
 * `o` are cut there. `o` and `c` may be `s` itself or a part of it. Assignments that need storage take
 * exactly what they need, appends grow the storage geometrically, and nothing but ZunStringDestruct
 * releases it.
 */

/* An empty string that will take its storage from `a`. Cannot fail. */
ZunString* ZunStringConstructDefault(ZunString* s, ZunAllocator* a);
/* A copy of `o`, with the allocator of `o`. On failure `s` owns nothing. */
ZunString* ZunStringConstructCopy(ZunString* s, const ZunString* o);
/* The `len` bytes of `o` from `pos` on, with storage from `a`. On failure `s` owns nothing. */
ZunString* ZunStringConstructSubstring(ZunString* s, const ZunString* o, ZunSizeT pos, ZunSizeT len, ZunAllocator* a);
/* Releases the storage and leaves the string empty; destructing it once more does nothing. */
void ZunStringDestruct(ZunString* s);

/* Makes `s` a copy of the bytes of `o`; `s` keeps its allocator. */
ZunString* ZunStringAssign(ZunString* s, const ZunString* o);
/* Makes `s` the zero-terminated text `c`, without the zero. */
ZunString* ZunStringAssignCStr(ZunString* s, const char* c);
/* Makes `s` the `len` bytes of `o` from `pos` on. */
ZunString* ZunStringAssignSubstring(ZunString* s, const ZunString* o, ZunSizeT pos, ZunSizeT len);

/* Appends the bytes of `o`. */
ZunString* ZunStringAppend(ZunString* s, const ZunString* o);
/* Appends `n` copies of `c`. */
ZunString* ZunStringAppendN(ZunString* s, ZunSizeT n, char c);
/* Appends the `len` bytes at `c`. */
ZunString* ZunStringAppendCStrLen(ZunString* s, const char* c, ZunSizeT len);
/* Appends the `len` bytes of `o` from `pos` on. */
ZunString* ZunStringAppendSubstring(ZunString* s, const ZunString* o, ZunSizeT pos, ZunSizeT len);

ZUN_EXTERN_C_END

#include "Zun/Utils/ZunStringInline.h"

#endif
