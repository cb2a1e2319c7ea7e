// The storage of a string, for those who fill strings themselves: what is common is inline.
#ifndef ZUN_UTILS_STRINGSTORAGE_H
#define ZUN_UTILS_STRINGSTORAGE_H

#include <cstring>

#include "Zun/Utils/ZunString.h"

namespace zun {

// Grows the storage of `s`, geometrically, to hold `count` more bytes than it does. False, with `s` as it
// was, when the allocation is refused or the size overflows.
bool GrowStringBy(ZunString* s, ZunSizeT count);

// Sees to it that `count` bytes fit after the last of `s`.
inline bool ReserveStringTail(ZunString* s, ZunSizeT count) {
  return s->capacity - s->size >= count || GrowStringBy(s, count);
}

// Makes `s` the `count` bytes in a new block of exactly that capacity. False, with `s` as it was, when the
// allocation is refused.
bool AssignStringFresh(ZunString* s, const char* bytes, ZunSizeT count);

// Makes `s` the `count` bytes, which may lie in it, within its storage where they fit. `bytes` may be null when
// there are none.
inline bool AssignStringBytes(ZunString* s, const char* bytes, ZunSizeT count) {
  if (count > s->capacity) return AssignStringFresh(s, bytes, count);
  if (s->buf == nullptr) return true;
  if (count != 0) std::memmove(s->buf, bytes, count);
  s->size = count;
  s->buf[count] = '\0';
  return true;
}

}  // namespace zun

#endif
