/* The string's accessors and its append of one byte. Included by ZunString.h. */
#ifndef ZUN_UTILS_ZUNSTRINGINLINE_H
#define ZUN_UTILS_ZUNSTRINGINLINE_H

ZUN_EXTERN_C_BEGIN

/* Number of bytes held. */
ZUN_INLINE ZunSizeT ZunStringLength(const ZunString* s) { return s->size; }
/* The same. */
ZUN_INLINE ZunSizeT ZunStringSize(const ZunString* s) { return s->size; }
/* The bytes, with a zero after the last. Never NULL; valid until the string changes. */
ZUN_INLINE const char* ZunStringCStr(const ZunString* s) { return s->buf != NULL ? s->buf : ""; }
/* Byte `n`, which must lie below the size. */
ZUN_INLINE char ZunStringAtConst(const ZunString* s, ZunSizeT n) { return s->buf[n]; }
/* Whether the string holds no byte. */
ZUN_INLINE ZunBool ZunStringEmpty(const ZunString* s) { return s->size == 0; }
/* The allocator of the buffer. */
ZUN_INLINE ZunAllocator* ZunStringGetAllocator(const ZunString* s) { return s->allocator; }

/* Makes the string empty and keeps its storage. */
ZUN_INLINE void ZunStringClear(ZunString* s) {
  s->size = 0;
  if (s->buf != NULL) s->buf[0] = '\0';
}

/* Appends the byte `c`; returns `s`, or NULL with `s` as it was when its growth is refused. */
ZUN_INLINE ZunString* ZunStringAppendChar(ZunString* s, char c) {
  if (s->size == s->capacity) return ZunStringAppendN(s, 1, c);
  s->buf[s->size] = c;
  s->size += 1;
  s->buf[s->size] = '\0';
  return s;
}

ZUN_EXTERN_C_END

#endif
