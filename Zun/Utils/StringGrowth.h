// Room at the end of a string for those who fill it themselves.
#ifndef ZUN_UTILS_STRINGGROWTH_H
#define ZUN_UTILS_STRINGGROWTH_H

#include "Zun/Utils/ZunString.h"

namespace zun {

// Grows the storage of `s`, geometrically, to hold `count` more bytes than it does. False, with `s` as it
// was, when the allocation is refused or the size overflows.
bool GrowStringBy(ZunString* s, ZunSizeT count);

// Sees to it that `count` bytes fit behind the last of `s`; the test of the common case is inline.
inline bool ReserveStringTail(ZunString* s, ZunSizeT count) {
  return s->capacity - s->size >= count || GrowStringBy(s, count);
}

}  // namespace zun

#endif
