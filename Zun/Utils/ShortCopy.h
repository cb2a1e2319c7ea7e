// Copying what is short as a rule: texts of some ten bytes, of a length that the compiler does not know.
#ifndef ZUN_UTILS_SHORTCOPY_H
#define ZUN_UTILS_SHORTCOPY_H

#include <cstring>

#include "Zun/Utils/ZunTypes.h"

namespace zun {

// The most octets that are copied without a call.
inline constexpr ZunSizeT kMaxCallFreeCopy = 64;

// memcpy without a call. The ranges must not overlap; they may be null when `size` is 0.
[[gnu::always_inline]] inline void CopyWords(void* to, const void* from, ZunSizeT size) {
  constexpr ZunSizeT kWord = sizeof(ZunUint64);
  auto* const t = static_cast<char*>(to);
  const auto* const f = static_cast<const char*>(from);
  if (size < kWord) {
    for (ZunSizeT i = 0; i < size; ++i) t[i] = f[i];
    return;
  }
  const ZunSizeT last = size - kWord;
  for (ZunSizeT i = 0; i < last; i += kWord) std::memcpy(t + i, f + i, kWord);
  std::memcpy(t + last, f + last, kWord);
}

// memcpy without a call where a few words do.
inline void CopyShort(void* to, const void* from, ZunSizeT size) {
  if (size > kMaxCallFreeCopy) {
    std::memcpy(to, from, size);
  } else {
    CopyWords(to, from, size);
  }
}

}  // namespace zun

#endif
