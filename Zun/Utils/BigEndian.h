// Integers as octets, most significant first: how every integer of the wire is stored. ZunMiscInline.h loads them.
#ifndef ZUN_UTILS_BIGENDIAN_H
#define ZUN_UTILS_BIGENDIAN_H

#include <bit>
#include <cstring>

#include "Zun/Utils/ZunTypes.h"

namespace zun {

constexpr ZunUint16 ToBigEndian(ZunUint16 value) {
  if constexpr (std::endian::native == std::endian::big) return value;
  return static_cast<ZunUint16>(value << 8 | value >> 8);
}

constexpr ZunUint32 ToBigEndian(ZunUint32 value) {
  if constexpr (std::endian::native == std::endian::big) return value;
  return value << 24 | (value & 0xFF00) << 8 | (value >> 8 & 0xFF00) | value >> 24;
}

constexpr ZunUint64 ToBigEndian(ZunUint64 value) {
  if constexpr (std::endian::native == std::endian::big) return value;
  return ZunUint64{ToBigEndian(static_cast<ZunUint32>(value))} << 32 | ToBigEndian(static_cast<ZunUint32>(value >> 32));
}

// Stores all octets of an unsigned integer.
template <class Value>
[[gnu::always_inline]] inline void StoreBigEndian(ZunUint8* octets, Value value) {
  const Value wire = ToBigEndian(value);
  std::memcpy(octets, &wire, sizeof(wire));
}

}  // namespace zun

#endif
