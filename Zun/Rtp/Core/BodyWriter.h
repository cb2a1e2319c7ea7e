// The one place that appends to an output.
#ifndef ZUN_RTP_CORE_BODYWRITER_H
#define ZUN_RTP_CORE_BODYWRITER_H

#include <cassert>

#include "Zun/Rtp/Core/ZunRtcpDialect.h"
#include "Zun/Utils/BigEndian.h"
#include "Zun/Utils/ShortCopy.h"
#include "Zun/Utils/StringStorage.h"

namespace zun {

// What subpackets are written to, one after the other: a string, which grows, or a block of the caller's, which does
// not. A string is as long as what was written once its output is gone, and speaks the house's dialect.
class Output {
 public:
  explicit Output(ZunString* string) : string_(string) { TakeFromString(); }
  Output(ZunUint8* octets, ZunSizeT capacity, ZunRtcpDialect dialect)
      : string_(nullptr), origin_(octets), cursor_(octets), limit_(octets + capacity), dialect_(dialect) {}
  ~Output() { GiveToString(); }
  Output(const Output&) = delete;
  Output& operator=(const Output&) = delete;

  // Bytes so far, those that a string held before among them.
  ZunSizeT Size() const { return static_cast<ZunSizeT>(cursor_ - origin_); }
  bool IsRegistered() const { return dialect_ == ZUN_RTCP_DIALECT_REGISTERED; }
  ZunRtcpDialect dialect() const { return dialect_; }
  // A block that is too small is no fault of what is written to it, and nothing to log.
  bool IsBlock() const { return string_ == nullptr; }
  // Whether a string could not be made to hold all of a subpacket at once.
  bool WasRefused() const { return was_refused_; }

 private:
  friend class BodyWriter;
  friend class UsualWriter;

  void TakeFromString() {
    origin_ = reinterpret_cast<ZunUint8*>(string_->buf);
    cursor_ = origin_ + string_->size;
    limit_ = origin_ + string_->capacity;
  }
  void GiveToString() {
    if (string_ == nullptr || origin_ == nullptr) return;
    string_->size = Size();
    *cursor_ = 0;
  }
  [[gnu::cold, gnu::noinline]] bool Grow(ZunSizeT length) {
    if (string_ == nullptr) return false;
    GiveToString();
    was_refused_ = !GrowStringBy(string_, length);
    TakeFromString();
    return !was_refused_;
  }

  ZunString* string_;  // null: a block
  ZunUint8* origin_;   // null while a string has no storage
  ZunUint8* cursor_;   // where the next byte goes
  ZunUint8* limit_;    // after the last byte that there is room for
  ZunRtcpDialect dialect_ = ZUN_RTCP_DIALECT_HOUSE;
  bool was_refused_ = false;
};

// A run of fields whose room is there.
class FieldWriter {
 public:
  explicit FieldWriter(ZunUint8* octets) : next_(octets) {}

  [[gnu::always_inline]] void U8(ZunUint8 value) { *next_++ = value; }
  [[gnu::always_inline]] void U16(ZunUint16 value) { Store(value); }
  [[gnu::always_inline]] void U24(ZunUint32 value) {
    U8(static_cast<ZunUint8>(value >> 16 & 0xFF));
    U16(static_cast<ZunUint16>(value & 0xFFFF));
  }
  [[gnu::always_inline]] void U32(ZunUint32 value) { Store(value); }
  [[gnu::always_inline]] void U64(ZunUint64 value) { Store(value); }

 private:
  template <class Value>
  [[gnu::always_inline]] void Store(Value value) {
    StoreBigEndian(next_, value);
    next_ += sizeof(value);
  }

  ZunUint8* next_;
};

// Appends what is written all the time: a subpacket for which the output has room. It fails at everything else, logs
// nothing and calls nothing, so that all of a kind's writer stays in registers; what it failed at is then written again
// by a BodyWriter, from where this one began.
class UsualWriter {
 public:
  static constexpr bool kIsCareful = false;

  explicit UsualWriter(Output& out) : out_(out), begin_(out.cursor_), cursor_(out.cursor_), limit_(out.limit_) {}
  UsualWriter(const UsualWriter&) = delete;
  UsualWriter& operator=(const UsualWriter&) = delete;
  // What was written is part of the output.
  void Keep() { out_.cursor_ = cursor_; }

  template <ZunSizeT kSize, class Fill>
  bool Fields(Fill fill) {
    if (Room() < kSize) [[unlikely]]
      return false;
    FieldWriter f(Advance(kSize));
    fill(f);
    return true;
  }
  bool U32(ZunUint32 value) {
    return Fields<4>([=](FieldWriter& f) { f.U32(value); });
  }
  bool U24(ZunUint32 value) {
    return Fields<3>([=](FieldWriter& f) { f.U24(value); });
  }
  bool String(const ZunString& s) {
    if (s.size > kMaxCallFreeCopy || Room() < s.size) [[unlikely]]
      return false;
    CopyWords(Advance(s.size), s.buf, s.size);
    return true;
  }
  // The place of the next `count` bytes, which are passed and which the caller fills, or null.
  ZunUint8* Block(ZunSizeT count) { return Room() < count ? nullptr : Advance(count); }

  // One to four zeros, up to the end of a word.
  bool ZerosToWord(ZunSizeT count) {
    if (Room() >= sizeof(ZunUint32)) [[likely]] {
      StoreBigEndian(Advance(count), ZunUint32{0});  // those after them are overwritten by what follows
      return true;
    }
    if (Room() < count) return false;
    for (; count > 0; --count) *Advance(1) = 0;
    return true;
  }

  // What is written to.
  const Output& out() const { return out_; }
  // Bytes of this subpacket so far.
  ZunSizeT Written() const { return static_cast<ZunSizeT>(cursor_ - begin_); }

 private:
  ZunSizeT Room() const { return static_cast<ZunSizeT>(limit_ - cursor_); }
  ZunUint8* Advance(ZunSizeT count) {
    ZunUint8* const octets = cursor_;
    cursor_ += count;
    return octets;
  }

  Output& out_;
  ZunUint8* begin_;   // of the subpacket
  ZunUint8* cursor_;  // where the next byte goes
  ZunUint8* limit_;   // after the last byte that there is room for
};

// Appends one subpacket of `length` bytes to an output. Where there is room for all of it, fields are plain stores, and
// one that would pass the length fails: a wrong length function makes a failed write, never an overflow. Where a string
// is refused that room, fields are appended byte by byte and strings as a whole, so that it ends up holding what fits
// before the first failure; that append returns false.
//
// A writer is meant to live in registers. So whatever takes one by reference is inlined, and what is not takes the
// output instead.
class BodyWriter {
 public:
  static constexpr bool kIsCareful = true;

  [[gnu::always_inline]] BodyWriter(Output& out, ZunSizeT length) : out_(out), cursor_(nullptr), limit_(nullptr) {
    if (static_cast<ZunSizeT>(out.limit_ - out.cursor_) < length && !out.Grow(length)) return;
    cursor_ = out.cursor_;
    limit_ = cursor_ + length;
  }
  [[gnu::always_inline]] ~BodyWriter() {
    if (cursor_ != nullptr) out_.cursor_ = cursor_;
  }
  BodyWriter(const BodyWriter&) = delete;
  BodyWriter& operator=(const BodyWriter&) = delete;

  // Runs of fields of kSize octets in all, which fill(FieldWriter&) writes. It had better hold values, not references
  // to what the writer of a kind has in registers.
  template <ZunSizeT kSize, class Fill>
  [[gnu::always_inline]] bool Fields(Fill fill) {
    if (Room() < kSize) [[unlikely]]
      return AppendFilled<kSize>(out_, SlowString(), fill);
    FieldWriter f(Advance(kSize));
    fill(f);
    return true;
  }
  [[gnu::always_inline]] bool U8(ZunUint8 value) {
    return Fields<1>([=](FieldWriter& f) { f.U8(value); });
  }
  [[gnu::always_inline]] bool U16(ZunUint16 value) {
    return Fields<2>([=](FieldWriter& f) { f.U16(value); });
  }
  [[gnu::always_inline]] bool U24(ZunUint32 value) {
    return Fields<3>([=](FieldWriter& f) { f.U24(value); });
  }
  [[gnu::always_inline]] bool U32(ZunUint32 value) {
    return Fields<4>([=](FieldWriter& f) { f.U32(value); });
  }
  // The low `width` octets of `value`, 1 to 8.
  [[gnu::always_inline]] bool Number(ZunUint64 value, ZunUint32 width) {
    ZunUint8 octets[sizeof(value)];
    const ZunUint64 leading = value << (64 - 8 * width);
    if (Room() < sizeof(value)) {
      StoreBigEndian(octets, leading);
      return Octets(octets, width);
    }
    StoreBigEndian(Advance(width), leading);  // those after the number are overwritten by what follows
    return true;
  }

  [[gnu::always_inline]] bool Bytes(const char* bytes, ZunSizeT count) {
    if (Room() < count) return AppendWhole(bytes, count);
    CopyShort(Advance(count), bytes, count);
    return true;
  }
  [[gnu::always_inline]] bool String(const ZunString& s) { return Bytes(s.buf, s.size); }
  // The same as fields of one byte each.
  [[gnu::always_inline]] bool Octets(const ZunUint8* octets, ZunSizeT count) {
    if (Room() < count) return AppendEach(octets, count);
    ZunUint8* const to = Advance(count);
    for (ZunSizeT i = 0; i < count; ++i) to[i] = octets[i];
    return true;
  }
  [[gnu::always_inline]] bool Zeros(ZunSizeT count) {
    if (Room() >= count) return StoreZeros(count);
    while (count > 0 && U8(0)) --count;
    return count == 0;
  }
  // Zeros that nobody misses: one that there is no room for is left out, and the next is tried.
  [[gnu::always_inline]] void OptionalZeros(ZunSizeT count) {
    if (Room() >= count) {
      StoreZeros(count);
    } else {
      for (; count > 0; --count) (void)U8(0);
    }
  }

  // The place of the next `count` bytes, which are passed and which the caller fills; null where they must be appended
  // one by one, or not at all.
  [[gnu::always_inline]] ZunUint8* Block(ZunSizeT count) {
    return cursor_ == nullptr || Room() < count ? nullptr : Advance(count);
  }

  // What is written to.
  const Output& out() const { return out_; }
  // Bytes in the whole output so far.
  ZunSizeT Size() const { return cursor_ == nullptr ? out_.Size() : static_cast<ZunSizeT>(cursor_ - out_.origin_); }

 private:
  // Of what was reserved; 0 where bytes are appended one by one.
  ZunSizeT Room() const { return static_cast<ZunSizeT>(limit_ - cursor_); }
  ZunUint8* Advance(ZunSizeT count) {
    assert((cursor_ != nullptr || count == 0) && "there is room where there is no storage");
    ZunUint8* const octets = cursor_;
    cursor_ += count;
    return octets;
  }

  // There are rarely more than four.
  [[gnu::always_inline]] bool StoreZeros(ZunSizeT count) {
    for (; count >= 4; count -= 4) StoreBigEndian(Advance(4), ZunUint32{0});
    if ((count & 2) != 0) StoreBigEndian(Advance(2), ZunUint16{0});
    if ((count & 1) != 0) *Advance(1) = 0;
    return true;
  }

  // The string that bytes are appended to one by one; null when what does not fit must fail.
  ZunString* SlowString() const {
    assert(cursor_ == nullptr && "more is written than the length function said");
    return cursor_ == nullptr ? out_.string_ : nullptr;
  }
  [[gnu::always_inline]] bool AppendWhole(const char* bytes, ZunSizeT count) {
    return AppendWhole(out_, SlowString(), bytes, count);
  }
  [[gnu::always_inline]] bool AppendEach(const ZunUint8* octets, ZunSizeT count) {
    return AppendEach(out_, SlowString(), octets, count);
  }
  [[gnu::cold, gnu::noinline]] static bool AppendWhole(Output& out, ZunString* s, const char* bytes, ZunSizeT count) {
    if (s == nullptr) return false;
    const bool appended = ZunStringAppendCStrLen(s, bytes, count) != nullptr;
    out.TakeFromString();
    return appended;
  }
  template <ZunSizeT kSize, class Fill>
  [[gnu::cold, gnu::noinline]] static bool AppendFilled(Output& out, ZunString* s, Fill fill) {
    ZunUint8 octets[kSize];
    FieldWriter f(octets);
    fill(f);
    return AppendEach(out, s, octets, kSize);
  }
  [[gnu::cold, gnu::noinline]] static bool AppendEach(Output& out, ZunString* s, const ZunUint8* octets,
                                                      ZunSizeT count) {
    if (s == nullptr) return false;
    ZunSizeT i = 0;
    while (i < count && ZunStringAppendChar(s, static_cast<char>(octets[i])) != nullptr) ++i;
    out.TakeFromString();
    return i == count;
  }

  Output& out_;
  ZunUint8* cursor_;  // where the next byte goes; null when bytes are appended one by one
  ZunUint8* limit_;   // after the last byte of the subpacket
};

}  // namespace zun

#endif
