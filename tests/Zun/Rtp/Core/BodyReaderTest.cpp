#include "Zun/Rtp/Core/BodyReader.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <string>

#include "tests/support/Bytes.h"
#include "tests/support/TestAllocator.h"

namespace {

using test::Datagram;
using test::Hex;
using test::TestAllocator;
using test::Text;
using zun::BodyReader;

TEST(BodyReaderTest, FieldsAreReadInOrderMostSignificantFirst) {
  const Datagram b(Hex(R"(
      FF FF                    | in front of the body
      81                       | U8
      82 03                    | U16
      84 05 06                 | U24
      87 08 09 0A              | U32
      8B 0C 0D 0E 0F 10 11 12  | U64
      FF                       | behind it)"));
  BodyReader r(b, 2, 20);
  ZunUint8 u8 = 0;
  ZunUint16 u16 = 0;
  ZunUint32 u24 = 0;
  ZunUint32 u32 = 0;
  ZunUint64 u64 = 0;
  EXPECT_EQ(r.Buffer(), b.get());
  EXPECT_EQ(r.Position(), 2U);
  EXPECT_EQ(r.Remaining(), 18U);
  EXPECT_TRUE(r.U8(&u8) && r.U16(&u16) && r.U24(&u24) && r.U32(&u32) && r.U64(&u64));
  EXPECT_EQ(u8, 0x81);
  EXPECT_EQ(u16, 0x8203);
  EXPECT_EQ(u24, 0x840506U);
  EXPECT_EQ(u32, 0x8708090AU);
  EXPECT_EQ(u64, 0x8B0C0D0E0F101112U);
  EXPECT_TRUE(r.AtEnd());
  EXPECT_EQ(r.Position(), 20U);
  EXPECT_EQ(r.Remaining(), 0U);
}

// Positions and ends around the size of the string, and at the end of the number range.
void ForEveryExtent(const std::function<void(const Datagram& b, ZunSizeT begin, ZunSizeT end)>& check) {
  const Datagram b(Hex("01 02 03 04 05 06 07 08 09 0A"));
  for (ZunSizeT i = 0; i < 26; ++i) {
    const ZunSizeT begin = i < 13 ? i : SIZE_MAX - (i - 13);
    for (ZunSizeT j = 0; j < 26; ++j) {
      const ZunSizeT end = j < 13 ? j : SIZE_MAX - (j - 13);
      SCOPED_TRACE(::testing::Message() << "[" << begin << ", " << end << ")");
      check(b, begin, end);
    }
  }
}

// Bytes that lie at `begin`, before `end` and inside the string.
ZunSizeT Readable(const Datagram& b, ZunSizeT begin, ZunSizeT end) {
  const ZunSizeT limit = end < b->size ? end : b->size;
  return begin < limit ? limit - begin : 0;
}

TEST(BodyReaderTest, ReadThatDoesNotFitStoresAndMovesNothing) {
  ForEveryExtent([](const Datagram& b, ZunSizeT begin, ZunSizeT end) {
    const ZunSizeT readable = Readable(b, begin, end);
    ZunUint8 u8 = 0xAA;
    ZunUint16 u16 = 0xAAAA;
    ZunUint32 u24 = 0xAAAAAAAA;
    ZunUint32 u32 = 0xAAAAAAAA;
    ZunUint64 u64 = 0xAAAAAAAAAAAAAAAA;
    const auto expect = [&](ZunSizeT width, const std::function<bool(BodyReader&)>& read) {
      BodyReader r(b, begin, end);
      const bool fits = readable >= width;
      EXPECT_EQ(r.Has(width), fits);
      EXPECT_EQ(read(r), fits) << width;
      EXPECT_EQ(r.Position(), fits ? begin + width : begin);
      return fits;
    };
    const bool read_8 = expect(1, [&](BodyReader& r) { return r.U8(&u8); });
    EXPECT_EQ(u8 != 0xAA, read_8);
    const bool read_16 = expect(2, [&](BodyReader& r) { return r.U16(&u16); });
    EXPECT_EQ(u16 != 0xAAAA, read_16);
    const bool read_24 = expect(3, [&](BodyReader& r) { return r.U24(&u24); });
    EXPECT_EQ(u24 != 0xAAAAAAAA, read_24);
    const bool read_32 = expect(4, [&](BodyReader& r) { return r.U32(&u32); });
    EXPECT_EQ(u32 != 0xAAAAAAAA, read_32);
    const bool read_64 = expect(8, [&](BodyReader& r) { return r.U64(&u64); });
    EXPECT_EQ(u64 != 0xAAAAAAAAAAAAAAAA, read_64);
    for (ZunSizeT width = 0; width <= 12; ++width) {
      expect(width, [&](BodyReader& r) { return r.Skip(width); });
      if (begin > b->size) continue;  // there is no such byte to point to
      expect(width, [&](BodyReader& r) {
        const ZunUint8* const octets = r.Take(width);
        return octets != nullptr && octets == reinterpret_cast<const ZunUint8*>(b->buf) + begin;
      });
    }
    expect(SIZE_MAX, [&](BodyReader& r) { return r.Skip(SIZE_MAX); });
    expect(SIZE_MAX, [&](BodyReader& r) { return r.Take(SIZE_MAX) != nullptr; });
  });
}

TEST(BodyReaderTest, ReadAfterAnotherIsBoundedByWhatIsLeft) {
  const Datagram b(Hex("01 02 03 04 05 06"));
  BodyReader r(b, 1, 5);
  ZunUint8 u8 = 0;
  ZunUint16 u16 = 0;
  ZunUint32 u32 = 77;
  EXPECT_TRUE(r.U8(&u8));
  EXPECT_FALSE(r.U32(&u32));
  EXPECT_EQ(u32, 77U);
  EXPECT_TRUE(r.U16(&u16));
  EXPECT_EQ(u16, 0x0304);
  EXPECT_FALSE(r.U16(&u16));
  EXPECT_TRUE(r.U8(&u8));
  EXPECT_EQ(u8, 5);
  EXPECT_FALSE(r.U8(&u8));
  EXPECT_TRUE(r.Skip(0));
}

// The end counts as it was given, even where the string is shorter.
TEST(BodyReaderTest, EndIsTakenAsGiven) {
  ForEveryExtent([](const Datagram& b, ZunSizeT begin, ZunSizeT end) {
    const BodyReader r(b, begin, end);
    EXPECT_EQ(r.AtEnd(), begin == end);
    EXPECT_EQ(r.Remaining(), begin < end ? end - begin : 0);
  });
}

TEST(BodyReaderTest, StringsAreCopiedOutOrRefusedWhole) {
  ForEveryExtent([](const Datagram& b, ZunSizeT begin, ZunSizeT end) {
    const ZunSizeT readable = Readable(b, begin, end);
    for (const ZunSizeT count : {ZunSizeT{0}, ZunSizeT{1}, ZunSizeT{4}, ZunSizeT{10}, SIZE_MAX}) {
      BodyReader r(b, begin, end);
      Text s("before");
      const bool fits = readable >= count && begin <= b->size;
      EXPECT_EQ(r.String(s, count), fits);
      EXPECT_EQ(s.str(), fits ? test::Str(b).substr(begin, count) : "before");
      EXPECT_EQ(r.Position(), fits ? begin + count : begin);
    }
  });
}

TEST(BodyReaderTest, RestReachesTheEndOrFails) {
  ForEveryExtent([](const Datagram& b, ZunSizeT begin, ZunSizeT end) {
    BodyReader r(b, begin, end);
    Text s("before");
    const bool fits = begin <= end && end <= b->size;
    EXPECT_EQ(r.Rest(s), fits);
    EXPECT_EQ(s.str(), fits ? test::Str(b).substr(begin, end - begin) : "before");
    EXPECT_EQ(r.Position(), fits ? end : begin);
    if (fits) {
      EXPECT_TRUE(r.AtEnd());
    }
  });
}

TEST(BodyReaderTest, RefusedStringMovesNothing) {
  TestAllocator a;
  a.RefuseFrom(0);
  const Datagram b(Hex("01 02 03 04"));
  BodyReader r(b, 0, 4);
  Text s(a.get());
  EXPECT_FALSE(r.String(s, 2));
  EXPECT_FALSE(r.Rest(s));
  EXPECT_EQ(r.Position(), 0U);
  EXPECT_EQ(s.str(), "");
}

TEST(BodyReaderTest, EmptyBufferHasNothing) {
  const Text empty;
  BodyReader r(empty.get(), 0, 0);
  ZunUint8 u8 = 0;
  Text s("before");
  EXPECT_TRUE(r.AtEnd());
  EXPECT_FALSE(r.U8(&u8));
  EXPECT_EQ(r.Take(1), nullptr);
  EXPECT_TRUE(r.Rest(s));
  EXPECT_EQ(s.str(), "");
}

}  // namespace
