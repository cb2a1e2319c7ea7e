// Where the readers of all kinds compare positions with the end of a subpacket and with the size of its buffer.
#ifndef ZUN_RTP_CORE_BODYREADER_H
#define ZUN_RTP_CORE_BODYREADER_H

#include "Zun/Rtp/Core/Body.h"
#include "Zun/Utils/StringStorage.h"
#include "Zun/Utils/ZunMiscInline.h"

namespace zun {

// A run of fields that is known to be readable. It has the reads of a BodyReader, none of which can fail.
class FieldReader {
 public:
  explicit FieldReader(const ZunUint8* octets) : next_(octets) {}

  bool U8(ZunUint8* value) {
    *value = *next_++;
    return true;
  }
  bool U16(ZunUint16* value) {
    *value = ZunUint16FromOctets(next_);
    next_ += 2;
    return true;
  }
  bool U32(ZunUint32* value) {
    *value = ZunUint32FromOctets(next_);
    next_ += 4;
    return true;
  }
  bool U64(ZunUint64* value) {
    *value = static_cast<ZunUint64>(ZunUint32FromOctets(next_)) << 32 | ZunUint32FromOctets(next_ + 4);
    next_ += 8;
    return true;
  }

 private:
  const ZunUint8* next_;
};

// Reads a body from its first octet on. There are two bounds. The end is the body's, as it was given. The limit is the
// end or the size of the buffer, whichever comes first: octets before it are readable. Whatever reads an octet looks at
// the limit, and its name says so where it reads none; what looks at the end has the end in its name. Every read
// returns false, and stores and moves nothing, when what it reads is not readable; so a kind's reader is a list of
// fields.
class BodyReader {
 public:
  static constexpr bool kIsCareful = true;

  explicit BodyReader(const Body& body)
      : octets_(body.octets),
        position_(body.begin),
        limit_(body.limit),
        end_(body.end),
        size_(body.size),
        terms_(body.terms) {}
  BodyReader(const ZunUint8* octets, ZunSizeT size, ZunSizeT begin, ZunSizeT end)
      : octets_(octets),
        position_(begin),
        limit_(ReadableLimit(size, begin, end)),
        end_(end),
        size_(size),
        terms_(nullptr) {}

  // A reader that looks ahead: what it finds missing is no reason yet.
  BodyReader LookAhead() const {
    BodyReader r = *this;
    r.terms_ = nullptr;
    return r;
  }

  bool U8(ZunUint8* value) { return NeedReadable(1) && FieldReader(Advance(1)).U8(value); }
  bool U16(ZunUint16* value) { return NeedReadable(2) && FieldReader(Advance(2)).U16(value); }
  bool U32(ZunUint32* value) { return NeedReadable(4) && FieldReader(Advance(4)).U32(value); }
  bool U64(ZunUint64* value) { return NeedReadable(8) && FieldReader(Advance(8)).U64(value); }

  // A run of fields of kSize octets in all, a list that read(auto& reader) gives: compared with the limit once where
  // all of it is readable, and field by field where it is not, so that those in front of the limit are stored.
  template <ZunSizeT kSize, class Read>
  bool Fields(Read read) {
    if (!HasReadable(kSize)) [[unlikely]]
      return read(*this);
    FieldReader f(Advance(kSize));
    return read(f);
  }

  // Makes `s` the next `count` octets, or all up to the end. Also false when `s` cannot grow, and for an empty run that
  // begins beyond the buffer.
  bool String(ZunString* s, ZunSizeT count) {
    if (!NeedReadable(count)) return false;
    if (position_ > size_) return Refuse(ZUN_RTCP_DECODE_REASON_TOO_SHORT);
    if (!AssignStringBytes(s, reinterpret_cast<const char*>(octets_) + position_, count)) return RefuseAllocation();
    position_ += count;
    return true;
  }
  bool StringToEnd(ZunString* s) {
    return position_ <= end_ ? String(s, end_ - position_) : Refuse(ZUN_RTCP_DECODE_REASON_TOO_SHORT);
  }

  // The next `count` octets, which are passed, or null.
  const ZunUint8* Take(ZunSizeT count) { return NeedReadable(count) ? Advance(count) : nullptr; }

  bool SkipReadable(ZunSizeT count) {
    if (!NeedReadable(count)) return false;
    position_ += count;
    return true;
  }
  // Passes octets that nobody reads: they must lie before the end, and need not be in the buffer.
  bool SkipBeforeEnd(ZunSizeT count) {
    if (BytesBeforeEnd() < count) return Refuse(ZUN_RTCP_DECODE_REASON_TOO_SHORT);
    position_ += count;
    if (limit_ < position_) limit_ = position_;
    return true;
  }

  bool HasReadable(ZunSizeT count) const { return limit_ - position_ >= count; }
  ZunSizeT ReadableBytes() const { return limit_ - position_; }
  bool AtEnd() const { return position_ == end_; }
  ZunSizeT BytesBeforeEnd() const { return position_ < end_ ? end_ - position_ : 0; }

  ZunSizeT Position() const { return position_; }

  // What must be so at this place, and is the reason of a refusal where it is not.
  bool NeedReadable(ZunSizeT count) const { return Need(HasReadable(count), ZUN_RTCP_DECODE_REASON_TOO_SHORT); }
  bool NeedEnd() const { return Need(AtEnd(), ZUN_RTCP_DECODE_REASON_LEFT_OVER); }
  bool NeedEntry() const { return Need(!AtEnd(), ZUN_RTCP_DECODE_REASON_NO_ENTRIES); }
  bool NeedValue(bool is_allowed) const { return Need(is_allowed, ZUN_RTCP_DECODE_REASON_VALUE); }

  // Whether the datagram may hold so many entries of lists, or statuses, more.
  bool MayHoldEntries(ZunSizeT count) const { return terms_ == nullptr || MayHold(&terms_->entries_left, count); }
  bool MayHoldStatuses(ZunSizeT count) const { return terms_ == nullptr || MayHold(&terms_->statuses_left, count); }

  // Says why the subpacket is refused, to those who asked. Returns false.
  [[gnu::always_inline]] bool Refuse(ZunRtcpDecodeReason reason) const {
    if (terms_ != nullptr) [[unlikely]]
      return terms_->Refuse(reason, position_);
    return false;
  }
  bool RefuseAllocation() const { return Refuse(ZUN_RTCP_DECODE_REASON_ALLOCATION); }

  bool IsDecoded() const { return terms_ != nullptr; }

 private:
  // Refusals are rare: where the compiler is not told, it takes the half of all datagrams for them, and lays out code,
  // and leaves loops as they are, accordingly.
  [[gnu::always_inline]] bool Need(bool holds, ZunRtcpDecodeReason reason) const {
    if (holds) [[likely]]
      return true;
    return Refuse(reason);
  }
  const ZunUint8* Advance(ZunSizeT count) {
    const ZunUint8* const octets = octets_ + position_;
    position_ += count;
    return octets;
  }
  bool MayHold(ZunSizeT* left, ZunSizeT count) const {
    if (!Need(count <= *left, ZUN_RTCP_DECODE_REASON_LIMIT)) return false;
    *left -= count;
    return true;
  }

  const ZunUint8* octets_;
  ZunSizeT position_;
  ZunSizeT limit_;
  ZunSizeT end_;
  ZunSizeT size_;
  ReadTerms* terms_;  // null when nobody asks why something is refused
};

// Reads what peers send all the time: a body that is there as far as its end, lists for which the object has room, and
// no string. It fails at everything else, says no reason, logs nothing and calls nothing, so that all of a kind's
// reader stays in registers; what it failed at is then read again by a BodyReader, which stores all that this one did.
class UsualReader {
 public:
  static constexpr bool kIsCareful = false;

  static bool MayRead(const Body& body) { return body.begin <= body.end && body.end <= body.size; }
  // Of a body that it may read.
  explicit UsualReader(const Body& body)
      : next_(body.octets + body.begin), end_(body.octets + body.end), terms_(body.terms) {}

  bool U32(ZunUint32* value) { return HasReadable(4) && FieldReader(Advance(4)).U32(value); }
  template <ZunSizeT kSize, class Read>
  bool Fields(Read read) {
    if (!HasReadable(kSize)) return false;
    FieldReader f(Advance(kSize));
    return read(f);
  }
  const ZunUint8* Take(ZunSizeT count) { return HasReadable(count) ? Advance(count) : nullptr; }
  bool StringToEnd(ZunString* s) const {
    if (!AtEnd()) return false;
    ZunStringClear(s);
    return true;
  }

  bool HasReadable(ZunSizeT count) const { return ReadableBytes() >= count; }
  ZunSizeT ReadableBytes() const { return static_cast<ZunSizeT>(end_ - next_); }
  bool AtEnd() const { return next_ == end_; }

  bool NeedReadable(ZunSizeT count) const { return HasReadable(count); }
  bool NeedEnd() const { return AtEnd(); }
  bool NeedEntry() const { return !AtEnd(); }
  bool NeedValue(bool is_allowed) const { return is_allowed; }
  bool Refuse(ZunRtcpDecodeReason) const { return false; }

  bool MayHoldEntries(ZunSizeT count) {
    if (terms_ == nullptr) return true;
    if (count > terms_->entries_left) return false;
    terms_->entries_left -= count;
    held_ += count;
    return true;
  }
  // What was held is read again.
  void GiveBack() const {
    if (terms_ != nullptr) terms_->entries_left += held_;
  }

 private:
  const ZunUint8* Advance(ZunSizeT count) {
    const ZunUint8* const octets = next_;
    next_ += count;
    return octets;
  }

  const ZunUint8* next_;
  const ZunUint8* end_;
  ReadTerms* terms_;
  ZunSizeT held_ = 0;
};

}  // namespace zun

#endif
