// The zero bytes that fill a run of bytes up to a whole number of 32-bit words.
#ifndef ZUN_RTP_CORE_PADDING_H
#define ZUN_RTP_CORE_PADDING_H

#include "Zun/Utils/ZunTypes.h"

namespace zun {

// How many bytes `size` bytes lack to the next multiple of 4; 0 to 3.
constexpr ZunSizeT PaddingAfter(ZunSizeT size) { return (0 - size) & 3; }

}  // namespace zun

#endif
