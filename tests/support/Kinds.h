// What the tests of all kinds of subpackets do alike: the rows of all kinds, objects that are read, written and
// destructed through their row, and the places at which a wire form can be cut.
#ifndef TESTS_SUPPORT_KINDS_H
#define TESTS_SUPPORT_KINDS_H

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "Zun/Rtp/ZunRtcpPacket.h"
#include "tests/support/Bytes.h"
#include "tests/support/TestAllocator.h"

namespace test {

// What a kind is told by: the packet type, or the type of a message in one of the three envelopes.
enum class Level { kSubpacket, kRtpfb, kPsfb, kAfb };

// A kind: the value that it is told by, the name of its type and its eight public operations.
struct Row {
  Level level;
  ZunInt32 value;
  const char* kind;
  ZunRtcpSubpacket* (*construct_copy_allocator)(ZunRtcpSubpacket* p, const ZunRtcpSubpacket* o, ZunAllocator* a);
  void (*destruct)(ZunRtcpSubpacket* p);
  ZunRtcpSubpacket* (*assign)(ZunRtcpSubpacket* p, const ZunRtcpSubpacket* o);
  ZunAllocator* (*get_allocator)(ZunRtcpSubpacket* p);
  ZunBool (*write_packet)(const ZunRtcpSubpacket* p, ZunString* b, ZunBool pad);
  ZunSizeT (*get_packet_length)(const ZunRtcpSubpacket* p);
  ZunBool (*construct_from_buffer)(ZunRtcpSubpacket* p, const ZunString* b, ZunSizeT begin, ZunSizeT end,
                                   ZunRtcpSubpacketType pt, ZunUint8 count, ZunAllocator* a);
  ZunBool (*assign_from_buffer)(ZunRtcpSubpacket* p, const ZunString* b, ZunSizeT begin, ZunSizeT end,
                                ZunRtcpSubpacketType pt, ZunUint8 count);
};

// The row of each kind: kRowOf<ZunRtcpRtpfbNack>. A kind has one as soon as a list of kinds holds it.
template <class Kind>
extern const Row kRowOf;

#define TEST_DEFINE_ROW(level, value, Kind)                          \
  template <>                                                        \
  inline constexpr Row kRowOf<Kind> = {level,                        \
                                       value,                        \
                                       #Kind,                        \
                                       Kind##ConstructCopyAllocator, \
                                       Kind##DestructWrap,           \
                                       Kind##AssignWrap,             \
                                       Kind##GetAllocatorWrap,       \
                                       Kind##WritePacket,            \
                                       Kind##GetPacketLength,        \
                                       Kind##ConstructFromBuffer,    \
                                       Kind##AssignFromBuffer};
#define TEST_DEFINE_SUBPACKET_ROW(value, Kind, member, Getter) TEST_DEFINE_ROW(Level::kSubpacket, value, Kind)
#define TEST_DEFINE_RTPFB_ROW(value, Kind, member, Getter) TEST_DEFINE_ROW(Level::kRtpfb, value, Kind)
#define TEST_DEFINE_PSFB_ROW(value, Kind, member, Getter) TEST_DEFINE_ROW(Level::kPsfb, value, Kind)
#define TEST_DEFINE_AFB_ROW(value, Kind, member, Getter) TEST_DEFINE_ROW(Level::kAfb, value, Kind)

ZUN_RTCPSUBPACKET_KINDS(TEST_DEFINE_SUBPACKET_ROW)
ZUN_RTCPRTPFB_KINDS(TEST_DEFINE_RTPFB_ROW)
ZUN_RTCPPSFB_KINDS(TEST_DEFINE_PSFB_ROW)
ZUN_RTCPPSFBAFB_KINDS(TEST_DEFINE_AFB_ROW)
TEST_DEFINE_ROW(Level::kSubpacket, ZUN_RTCPSUBPACKET_TYPE_Unknown, ZunRtcpUnknown)
TEST_DEFINE_ROW(Level::kRtpfb, ZUN_RTCPRTPFB_TYPE_Unknown, ZunRtcpRtpfbUnknown)
TEST_DEFINE_ROW(Level::kPsfb, ZUN_RTCPPSFB_TYPE_Unknown, ZunRtcpPsfbUnknown)
TEST_DEFINE_ROW(Level::kAfb, ZUN_RTCPPSFBAFB_TYPE_Unknown, ZunRtcpPsfbAfbUnknown)

// All of them, envelopes included.
const std::vector<const Row*>& AllRows();

// The row of the envelope that holds messages of this kind; null for a kind of the first level.
const Row* EnvelopeOf(const Row& row);

// The value that `sp` is told by at that level.
ZunInt32 ValueAt(Level level, const ZunRtcpSubpacket& sp);

// Whether `sp` is of this kind, or is an envelope with a message of this kind, as its values tell.
bool IsOfKind(const Row& row, const ZunRtcpSubpacket& sp);

// Whether the value has no row at that level.
bool IsUnknown(Level level, ZunInt32 value);

// The first value from `from` on that has no row at that level.
ZunInt32 UnassignedValue(Level level, ZunInt32 from);

// Where the body begins in the wire form of one subpacket.
inline constexpr ZunSizeT kBodyBegin = 4;

inline ZunRtcpSubpacketType PacketTypeOf(const std::string& wire) { return static_cast<unsigned char>(wire[1]); }
inline ZunUint8 CountOf(const std::string& wire) { return static_cast<unsigned char>(wire[0]) & 0x1F; }

// What the row writes of a subpacket. It must be written, and as long as was announced.
std::string Bytes(const Row& row, const ZunRtcpSubpacket& sp, bool pad = false);

// All that can be seen of a subpacket: what it writes, and the length that it announces. Unlike the bytes alone it may
// be asked of one that cannot be written, or is written in another length than it announces.
std::string Seen(const Row& row, const ZunRtcpSubpacket& sp);
// The same of one of whatever kind it is.
std::string SeenOf(const ZunRtcpSubpacket& sp);

// How a wire form is given to a reader: so many bytes that the string does not hold are said to follow, and the
// string has this allocator.
struct Reading {
  ZunSizeT beyond = 0;
  ZunAllocator* buffer_allocator = ZunAllocatorGetSystem();
};

// A subpacket that is read, written and destructed through its row. It is owned: destructed with this object, twice,
// as the second time must do nothing.
class Owned {
 public:
  ~Owned() {
    row_.destruct(&sp_);
    row_.destruct(&sp_);
  }
  Owned(const Owned&) = delete;
  Owned& operator=(const Owned&) = delete;

  // Reads over what it holds.
  bool Read(const std::string& wire, Reading how = {});

  std::string bytes(bool pad = false) const { return Bytes(row_, sp_, pad); }
  std::string seen() const { return Seen(row_, sp_); }
  ZunAllocator* allocator() { return row_.get_allocator(&sp_); }
  const Row& row() const { return row_; }
  ZunRtcpSubpacket* sp() { return &sp_; }
  const ZunRtcpSubpacket* sp() const { return &sp_; }

 protected:
  explicit Owned(const Row& row) : row_(row) {}

 private:
  const Row& row_;
  ZunRtcpSubpacket sp_;
};

// A subpacket that its row reads from a wire form.
class Received : public Owned {
 public:
  Received(const Row& row, const std::string& wire, ZunAllocator* a = ZunAllocatorGetSystem(), Reading how = {});

  bool ok;  // whether it was read
};

// An object of one kind, default-constructed at first:
//   using Nack = TEST_OBJECT(ZunRtcpRtpfbNack);
template <class Kind, Kind* (*ConstructDefault)(Kind*, ZunAllocator*)>
class Object : public Owned {
 public:
  explicit Object(ZunAllocator* a = ZunAllocatorGetSystem()) : Owned(kRowOf<Kind>) {
    EXPECT_EQ(ConstructDefault(get(), a), get());
  }

  Kind* get() { return reinterpret_cast<Kind*>(sp()); }
  const Kind* get() const { return reinterpret_cast<const Kind*>(sp()); }
  Kind* operator->() { return get(); }
  const Kind* operator->() const { return get(); }
  operator Kind*() { return get(); }
  operator const Kind*() const { return get(); }
};
#define TEST_OBJECT(Kind) test::Object<Kind, Kind##ConstructDefault>

// A part of a message that may own memory, such as an item or a list: default-constructed at first, and owned.
//   using Item = TEST_PART(ZunRtcpSdesItem);
template <class Value, Value* (*ConstructDefault)(Value*, ZunAllocator*), void (*Destruct)(Value*)>
class Part {
 public:
  explicit Part(ZunAllocator* a = ZunAllocatorGetSystem()) { EXPECT_EQ(ConstructDefault(&value_, a), &value_); }
  ~Part() {
    Destruct(&value_);
    Destruct(&value_);
  }
  Part(const Part&) = delete;
  Part& operator=(const Part&) = delete;

  Value* get() { return &value_; }
  const Value* get() const { return &value_; }
  Value* operator->() { return &value_; }
  const Value* operator->() const { return &value_; }
  operator Value*() { return &value_; }
  operator const Value*() const { return &value_; }

 private:
  Value value_;
};
#define TEST_PART(Value) test::Part<Value, Value##ConstructDefault, Value##Destruct>

// Gives a message the SSRCs that most samples have.
template <class Message>
void SetSsrcs(Message& p) {
  p->sender = kSender;
  p->source = kSource;
}

// A message seen as the subpacket that the operations of a row take. They look at it as what it is, so that it need not
// be aligned as a subpacket is.
template <class Kind>
ZunRtcpSubpacket* AsSubpacket(Kind* p) {
  return static_cast<ZunRtcpSubpacket*>(static_cast<void*>(p));
}
template <class Kind>
const ZunRtcpSubpacket* AsSubpacket(const Kind* p) {
  return static_cast<const ZunRtcpSubpacket*>(static_cast<const void*>(p));
}

// Reads each beginning of the body, `size` bytes long, that lies on a heap block of exactly its size: once with the
// body ending there, once with it ending where the whole one would.
void ForEveryCut(const Row& row, const std::string& wire,
                 const std::function<void(const Received& p, ZunSizeT size, bool end_is_beyond)>& check);

}  // namespace test

#endif
