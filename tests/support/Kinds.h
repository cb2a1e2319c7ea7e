// What the tests of all kinds of subpackets do alike.
#ifndef TESTS_SUPPORT_KINDS_H
#define TESTS_SUPPORT_KINDS_H

#include <gtest/gtest.h>

#include <string>

#include "tests/support/Bytes.h"
#include "tests/support/TestAllocator.h"

namespace test {

// An object of one kind inside the storage of a subpacket, default-constructed at first and destructed at last.
template <class Kind, Kind* (*ConstructDefault)(Kind*, ZunAllocator*), void (*Destruct)(Kind*)>
class Built {
 public:
  explicit Built(ZunAllocator* a = ZunAllocatorGetSystem()) { EXPECT_NE(ConstructDefault(get(), a), nullptr); }
  ~Built() { Destruct(get()); }
  Built(const Built&) = delete;
  Built& operator=(const Built&) = delete;

  Kind* get() { return reinterpret_cast<Kind*>(&storage_); }
  const Kind* get() const { return reinterpret_cast<const Kind*>(&storage_); }
  Kind* operator->() { return get(); }
  operator Kind*() { return get(); }
  operator const Kind*() const { return get(); }
  ZunRtcpSubpacket* sp() { return &storage_; }
  const ZunRtcpSubpacket* sp() const { return &storage_; }

 private:
  ZunRtcpSubpacket storage_;
};

using WriteFunction = ZunBool (*)(const ZunRtcpSubpacket* p, ZunString* b, ZunBool pad);
using ReadFunction = ZunBool (*)(ZunRtcpSubpacket* p, const ZunString* b, ZunSizeT begin, ZunSizeT end,
                                 ZunRtcpSubpacketType pt, ZunUint8 count);

// Reads the body of `packet`, header included, into `sp`, which must be of the reader's kind. `beyond` bytes that
// the string does not hold are announced to follow.
inline bool Read(ReadFunction read, ZunRtcpSubpacket* sp, const std::string& packet, ZunSizeT beyond = 0) {
  const Datagram datagram(packet);
  const auto pt = static_cast<unsigned char>(packet[1]);
  return read(sp, datagram, 4, packet.size() + beyond, pt, static_cast<ZunUint8>(packet[0] & 0x1F)) != 0;
}

// What `write` appends to an empty string; empty, with a test failure, when it fails.
inline std::string Append(WriteFunction write, const ZunRtcpSubpacket* sp, bool pad = false) {
  Text out;
  const bool written = write(sp, out, pad) != 0;
  EXPECT_TRUE(written);
  return written ? out.str() : std::string();
}

// Writes `sp`, whose wire form is `whole`, into strings that are refused an allocation or room: what they hold then
// must be the first bytes of the wire form. Into a string that has held it before, writing must allocate nothing.
inline void ExpectSafeWriting(WriteFunction write, const ZunRtcpSubpacket* sp, const std::string& whole) {
  const auto expect_prefix = [&](TestAllocator& allocator) {
    Text out(allocator.get());
    const bool written = write(sp, out, 0) != 0;
    EXPECT_EQ(out.str(), whole.substr(0, out->size));
    EXPECT_EQ(written, out->size == whole.size());
  };
  ForEveryRefusal(expect_prefix);
  for (std::size_t room = 0; room <= whole.size() + 1; ++room) {
    SCOPED_TRACE(room);
    TestAllocator cramped;
    cramped.RefuseAbove(room);
    expect_prefix(cramped);
  }

  TestAllocator allocator;
  Text out(allocator.get());
  EXPECT_TRUE(write(sp, out, 0));
  const std::size_t calls = allocator.calls();
  ZunStringClear(out);
  EXPECT_TRUE(write(sp, out, 0));
  EXPECT_EQ(ToHex(out.str()), ToHex(whole));
  EXPECT_EQ(allocator.calls(), calls);
}

// Parses `first` and then `second` into one packet object, which must then be what parsing `second` gives.
inline void ExpectReadAgain(const std::string& first, const std::string& second) {
  TestAllocator allocator;
  Parsed used(first, allocator);
  ASSERT_TRUE(used.ok);
  const std::size_t calls = allocator.calls();
  ASSERT_TRUE(used.Again(second));
  EXPECT_EQ(ToHex(used.Rewritten()), ToHex(Parsed(second).Rewritten()));
  if (first.size() >= second.size()) {
    EXPECT_EQ(allocator.calls(), calls) << "there was storage for this";
  }
}

}  // namespace test

#endif
