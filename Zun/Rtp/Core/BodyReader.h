// Where the readers of all kinds compare positions with the end of a subpacket and with the size of its buffer.
#ifndef ZUN_RTP_CORE_BODYREADER_H
#define ZUN_RTP_CORE_BODYREADER_H

#include "Zun/Utils/StringStorage.h"
#include "Zun/Utils/ZunMiscInline.h"

namespace zun {

// Reads the body b[begin, end) of one subpacket from its first byte on. Every read returns false, and stores
// and moves nothing, when what it reads does not lie before `end` and inside the string; so a kind's reader is
// a list of fields. Tests against the end (AtEnd, Remaining) take `end` as it was given.
class BodyReader {
 public:
  BodyReader(const ZunString* b, ZunSizeT begin, ZunSizeT end)
      : string_(b), position_(begin), limit_(ReadableLimit(b, begin, end)), end_(end) {}

  bool U8(ZunUint8* value) {
    const ZunUint8* const octets = Take(1);
    if (octets == nullptr) return false;
    *value = octets[0];
    return true;
  }
  bool U16(ZunUint16* value) {
    const ZunUint8* const octets = Take(2);
    if (octets == nullptr) return false;
    *value = ZunUint16FromOctets(octets);
    return true;
  }
  bool U24(ZunUint32* value) {
    const ZunUint8* const octets = Take(3);
    if (octets == nullptr) return false;
    *value = static_cast<ZunUint32>(octets[0]) << 16 | ZunUint16FromOctets(octets + 1);
    return true;
  }
  bool U32(ZunUint32* value) {
    const ZunUint8* const octets = Take(4);
    if (octets == nullptr) return false;
    *value = ZunUint32FromOctets(octets);
    return true;
  }
  bool U64(ZunUint64* value) {
    const ZunUint8* const octets = Take(8);
    if (octets == nullptr) return false;
    *value = static_cast<ZunUint64>(ZunUint32FromOctets(octets)) << 32 | ZunUint32FromOctets(octets + 4);
    return true;
  }

  // Makes `s` the next `count` bytes, or what is left up to the end. Also false when `s` cannot grow, and for an empty
  // run that begins behind the string.
  bool String(ZunString* s, ZunSizeT count) {
    if (!Has(count) || position_ > string_->size) return false;
    if (!AssignStringBytes(s, string_->buf + position_, count)) return false;
    position_ += count;
    return true;
  }
  bool Rest(ZunString* s) { return position_ <= end_ && String(s, end_ - position_); }

  bool Skip(ZunSizeT count) {
    if (!Has(count)) return false;
    position_ += count;
    return true;
  }
  // Passes bytes that nobody looks at: they must lie before the end, but need not be in the string.
  bool Pass(ZunSizeT count) {
    if (Remaining() < count) return false;
    position_ += count;
    if (limit_ < position_) limit_ = position_;
    return true;
  }

  // The next `count` bytes, which it passes, or null; 0 bytes only behind a read that succeeded. For runs of fields
  // that are checked at once.
  const ZunUint8* Take(ZunSizeT count) {
    if (!Has(count)) return nullptr;
    const ZunUint8* const octets = reinterpret_cast<const ZunUint8*>(string_->buf) + position_;
    position_ += count;
    return octets;
  }

  bool Has(ZunSizeT count) const { return limit_ - position_ >= count; }
  bool AtEnd() const { return position_ == end_; }
  // Bytes up to the end; they need not all be readable.
  ZunSizeT Remaining() const { return position_ < end_ ? end_ - position_ : 0; }
  // Bytes that can be read.
  ZunSizeT Readable() const { return limit_ - position_; }

  ZunSizeT Position() const { return position_; }
  const ZunString* Buffer() const { return string_; }

 private:
  // Never below `begin`, so that the distance to it is what can be read.
  static ZunSizeT ReadableLimit(const ZunString* b, ZunSizeT begin, ZunSizeT end) {
    const ZunSizeT limit = end < b->size ? end : b->size;
    return begin < limit ? limit : begin;
  }

  const ZunString* string_;
  ZunSizeT position_;
  ZunSizeT limit_;
  ZunSizeT end_;
};

}  // namespace zun

#endif
