// The one place that appends to an output string.
#ifndef ZUN_RTP_CORE_BODYWRITER_H
#define ZUN_RTP_CORE_BODYWRITER_H

#include <bit>
#include <cassert>
#include <cstring>

#include "Zun/Utils/StringStorage.h"
#include "Zun/Utils/ZunMiscInline.h"

namespace zun {

// Appends one subpacket to a string. It asks for `length` bytes once; where the string grants them, every
// field is a plain store. Where it does not, fields are appended byte by byte and strings as a whole, so that
// the string ends up holding what fits before the first failure; that append returns false. The caller must not append more
// than `length` bytes, and the string is as long as what was appended once the writer is gone.
class BodyWriter {
 public:
  BodyWriter(ZunString* b, ZunSizeT length)
      : string_(b),
        cursor_(ReserveStringTail(b, length) && length != 0 ? b->buf + b->size : nullptr),
        limit_(cursor_ != nullptr ? cursor_ + length : nullptr) {}
  ~BodyWriter() { Commit(); }
  BodyWriter(const BodyWriter&) = delete;
  BodyWriter& operator=(const BodyWriter&) = delete;

  bool U8(ZunUint8 value) {
    if (cursor_ == nullptr) return ZunStringAppendChar(string_, static_cast<char>(value)) != nullptr;
    char* const octet = Pass(1);
    *octet = static_cast<char>(value);
    return true;
  }
  bool U16(ZunUint16 value) {
    if (cursor_ == nullptr) return ZunUint16ToBuffer(value, string_);
    Store(ToBigEndian(value));
    return true;
  }
  bool U24(ZunUint32 value) {
    return U8(static_cast<ZunUint8>(value >> 16)) && U16(static_cast<ZunUint16>(value & 0xFFFF));
  }
  bool U32(ZunUint32 value) {
    if (cursor_ == nullptr) return ZunUint32ToBuffer(value, string_);
    Store(ToBigEndian(value));
    return true;
  }
  bool U64(ZunUint64 value) {
    return U32(static_cast<ZunUint32>(value >> 32)) && U32(static_cast<ZunUint32>(value & 0xFFFFFFFF));
  }

  bool Bytes(const char* bytes, ZunSizeT count) {
    if (cursor_ == nullptr) return ZunStringAppendCStrLen(string_, bytes, count) != nullptr;
    char* const to = Pass(count);
    if (count != 0) std::memcpy(to, bytes, count);
    return true;
  }
  bool String(const ZunString& s) { return Bytes(s.buf, s.size); }
  bool Zeros(ZunSizeT count) {
    for (; count > 0; --count) {
      if (!U8(0)) return false;
    }
    return true;
  }

  // Zeros that nobody misses: one that the string has no room for is left out, and the next is tried.
  void Padding(ZunSizeT count) {
    for (; count > 0; --count) U8(0);
  }

  // The place of the next `count` bytes, which it passes and the caller fills; null where bytes are appended one by
  // one. For runs of fields that are stored at once.
  char* Block(ZunSizeT count) { return cursor_ == nullptr ? nullptr : Pass(count); }

  // Bytes in the whole string so far.
  ZunSizeT Size() const { return cursor_ == nullptr ? string_->size : static_cast<ZunSizeT>(cursor_ - string_->buf); }

 private:
  static ZunUint16 ToBigEndian(ZunUint16 value) {
    if constexpr (std::endian::native == std::endian::big) return value;
    return static_cast<ZunUint16>(value << 8 | value >> 8);
  }
  static ZunUint32 ToBigEndian(ZunUint32 value) {
    if constexpr (std::endian::native == std::endian::big) return value;
    return value << 24 | (value & 0xFF00) << 8 | (value >> 8 & 0xFF00) | value >> 24;
  }
  template <class Value>
  void Store(Value value) {
    std::memcpy(Pass(sizeof(value)), &value, sizeof(value));
  }

  // The next `count` bytes of the reservation, which the caller fills.
  char* Pass(ZunSizeT count) {
    assert(count <= static_cast<ZunSizeT>(limit_ - cursor_));
    char* const octets = cursor_;
    cursor_ += count;
    return octets;
  }

  void Commit() {
    if (cursor_ == nullptr) return;
    string_->size = Size();
    *cursor_ = '\0';
  }

  ZunString* string_;
  char* cursor_;       // where the next byte goes; null when bytes are appended one by one
  const char* limit_;  // behind the last byte that was asked for; looked at in debug builds
};

}  // namespace zun

#endif
