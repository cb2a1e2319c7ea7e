// Copy, assignment and end of kinds that own nothing.
#ifndef ZUN_RTP_CORE_PLAINKIND_H
#define ZUN_RTP_CORE_PLAINKIND_H

#include <type_traits>

#include "Zun/Utils/ZunAllocator.h"

#define ZUN_RTCP_PLAIN_KIND_DEFINE(Kind)              \
  static_assert(std::is_trivially_copyable_v<Kind>);  \
  Kind* Kind##ConstructCopy(Kind* p, const Kind* o) { \
    *p = *o;                                          \
    return p;                                         \
  }                                                   \
  Kind* Kind##Assign(Kind* p, const Kind* o) {        \
    *p = *o;                                          \
    return p;                                         \
  }                                                   \
  void Kind##Destruct(Kind*) {}                       \
  ZunAllocator* Kind##GetAllocator(Kind*) { return nullptr; }

#endif
