#include "Zun/Rtp/Core/BodyReader.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <string>

#include "Zun/Rtp/Core/EntryList.h"
#include "tests/support/Bytes.h"
#include "tests/support/TestAllocator.h"

ZUN_VECTOR_USE_PLAIN(ZunRtpSourceId)

namespace {

using namespace test;
using zun::BodyReader;
using zun::UsualReader;

BodyReader Reader(const Datagram& b, ZunSizeT begin, ZunSizeT end) {
  return BodyReader(zun::BodyIn(b, begin, end, {0, 0}));
}

TEST(BodyReader, FieldsAreReadInOrderMostSignificantFirst) {
  const Datagram b(Hex(R"(
      FF FF                    | in front of the body
      81                       | U8
      82 03                    | U16
        87 08 09 0A              | U32
      8B 0C 0D 0E 0F 10 11 12  | U64
      FF                       | after it)"));
  BodyReader r = Reader(b, 2, 17);
  ZunUint8 u8 = 0;
  ZunUint16 u16 = 0;
  ZunUint32 u32 = 0;
  ZunUint64 u64 = 0;
  EXPECT_EQ(r.Position(), 2U);
  EXPECT_EQ(r.BytesBeforeEnd(), 15U);
  EXPECT_EQ(r.ReadableBytes(), 15U);
  EXPECT_TRUE(r.U8(&u8) && r.U16(&u16) && r.U32(&u32) && r.U64(&u64));
  EXPECT_EQ(u8, 0x81);
  EXPECT_EQ(u16, 0x8203);
  EXPECT_EQ(u32, 0x8708090AU);
  EXPECT_EQ(u64, 0x8B0C0D0E0F101112U);
  EXPECT_TRUE(r.AtEnd());
  EXPECT_EQ(r.Position(), 17U);
  EXPECT_EQ(r.BytesBeforeEnd(), 0U);
  EXPECT_EQ(r.ReadableBytes(), 0U);
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

TEST(BodyReader, ReadThatDoesNotFitStoresAndMovesNothing) {
  ForEveryExtent([](const Datagram& b, ZunSizeT begin, ZunSizeT end) {
    const ZunSizeT readable = Readable(b, begin, end);
    ZunUint8 u8 = 0xAA;
    ZunUint16 u16 = 0xAAAA;
    ZunUint32 u32 = 0xAAAAAAAA;
    ZunUint64 u64 = 0xAAAAAAAAAAAAAAAA;
    const auto expect = [&](ZunSizeT width, const std::function<bool(BodyReader&)>& read) {
      BodyReader r = Reader(b, begin, end);
      const bool fits = readable >= width;
      EXPECT_EQ(r.HasReadable(width), fits);
      EXPECT_EQ(read(r), fits) << width;
      EXPECT_EQ(r.Position(), fits ? begin + width : begin);
      return fits;
    };
    const bool read_8 = expect(1, [&](BodyReader& r) { return r.U8(&u8); });
    EXPECT_EQ(u8 != 0xAA, read_8);
    const bool read_16 = expect(2, [&](BodyReader& r) { return r.U16(&u16); });
    EXPECT_EQ(u16 != 0xAAAA, read_16);
    const bool read_32 = expect(4, [&](BodyReader& r) { return r.U32(&u32); });
    EXPECT_EQ(u32 != 0xAAAAAAAA, read_32);
    const bool read_64 = expect(8, [&](BodyReader& r) { return r.U64(&u64); });
    EXPECT_EQ(u64 != 0xAAAAAAAAAAAAAAAA, read_64);
    for (ZunSizeT width = 0; width <= 12; ++width) {
      expect(width, [&](BodyReader& r) { return r.SkipReadable(width); });
      if (begin > b->size) continue;  // there is no such byte to point to
      expect(width, [&](BodyReader& r) {
        const ZunUint8* const octets = r.Take(width);
        return octets != nullptr && octets == reinterpret_cast<const ZunUint8*>(b->buf) + begin;
      });
    }
    expect(SIZE_MAX, [&](BodyReader& r) { return r.SkipReadable(SIZE_MAX); });
    expect(SIZE_MAX, [&](BodyReader& r) { return r.Take(SIZE_MAX) != nullptr; });
  });
}

// Octets that nobody reads need only lie before the end; what follows them can be read where it is readable.
TEST(BodyReader, SkipBeforeEndLooksAtTheEndAlone) {
  ForEveryExtent([](const Datagram& b, ZunSizeT begin, ZunSizeT end) {
    for (const ZunSizeT count : {ZunSizeT{0}, ZunSizeT{1}, ZunSizeT{3}, ZunSizeT{11}, SIZE_MAX}) {
      BodyReader r = Reader(b, begin, end);
      const bool fits = begin < end ? end - begin >= count : count == 0;
      EXPECT_EQ(r.SkipBeforeEnd(count), fits);
      EXPECT_EQ(r.Position(), fits ? begin + count : begin);
      EXPECT_EQ(r.ReadableBytes(), Readable(b, r.Position(), end));
    }
  });
}

// A run of fields is stored as far as it is readable, whether it is compared with the limit once or field by field.
TEST(BodyReader, FieldsAreStoredUpToTheFirstThatIsNotReadable) {
  const Datagram b(Hex("01 0203 04050607 08090A0B0C0D0E0F"));
  for (ZunSizeT end = 0; end <= b->size; ++end) {
    BodyReader r = Reader(b, 0, end);
    ZunUint8 u8 = 0;
    ZunUint16 u16 = 0;
    ZunUint32 u32 = 0;
    ZunUint64 u64 = 0;
    const bool read = r.Fields<15>([&](auto& f) { return f.U8(&u8) && f.U16(&u16) && f.U32(&u32) && f.U64(&u64); });
    EXPECT_EQ(read, end == 15);
    EXPECT_EQ(u8, end >= 1 ? 1 : 0);
    EXPECT_EQ(u16, end >= 3 ? 0x0203 : 0);
    EXPECT_EQ(u32, end >= 7 ? 0x04050607U : 0U);
    EXPECT_EQ(u64, end >= 15 ? 0x08090A0B0C0D0E0FU : 0U);
    EXPECT_EQ(r.Position(), end >= 15 ? 15U : end >= 7 ? 7U : end >= 3 ? 3U : end >= 1 ? 1U : 0U);
  }
}

TEST(BodyReader, ReadAfterAnotherIsBoundedByWhatIsLeft) {
  const Datagram b(Hex("01 02 03 04 05 06"));
  BodyReader r = Reader(b, 1, 5);
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
  EXPECT_TRUE(r.SkipReadable(0));
}

// The end counts as it was given, even where the string is shorter.
TEST(BodyReader, EndIsTakenAsGiven) {
  ForEveryExtent([](const Datagram& b, ZunSizeT begin, ZunSizeT end) {
    const BodyReader r = Reader(b, begin, end);
    EXPECT_EQ(r.AtEnd(), begin == end);
    EXPECT_EQ(r.BytesBeforeEnd(), begin < end ? end - begin : 0);
  });
}

TEST(BodyReader, StringsAreCopiedOutOrRefusedWhole) {
  ForEveryExtent([](const Datagram& b, ZunSizeT begin, ZunSizeT end) {
    const ZunSizeT readable = Readable(b, begin, end);
    for (const ZunSizeT count : {ZunSizeT{0}, ZunSizeT{1}, ZunSizeT{4}, ZunSizeT{10}, SIZE_MAX}) {
      BodyReader r = Reader(b, begin, end);
      Text s("before");
      const bool fits = readable >= count && begin <= b->size;
      EXPECT_EQ(r.String(s, count), fits);
      EXPECT_EQ(s.str(), fits ? Str(b).substr(begin, count) : "before");
      EXPECT_EQ(r.Position(), fits ? begin + count : begin);
    }
  });
}

TEST(BodyReader, StringToEndReachesTheEndOrFails) {
  ForEveryExtent([](const Datagram& b, ZunSizeT begin, ZunSizeT end) {
    BodyReader r = Reader(b, begin, end);
    Text s("before");
    const bool fits = begin <= end && end <= b->size;
    EXPECT_EQ(r.StringToEnd(s), fits);
    EXPECT_EQ(s.str(), fits ? Str(b).substr(begin, end - begin) : "before");
    EXPECT_EQ(r.Position(), fits ? end : begin);
    if (fits) {
      EXPECT_TRUE(r.AtEnd());
    }
  });
}

TEST(BodyReader, RefusedStringMovesNothing) {
  TestAllocator a;
  a.RefuseFrom(0);
  const Datagram b(Hex("01 02 03 04"));
  BodyReader r = Reader(b, 0, 4);
  Text s(a.get());
  EXPECT_FALSE(r.String(s, 2));
  EXPECT_FALSE(r.StringToEnd(s));
  EXPECT_EQ(r.Position(), 0U);
  EXPECT_EQ(s.str(), "");
}

TEST(BodyReader, EmptyBufferHasNothing) {
  const Text empty;
  BodyReader r(zun::BodyIn(empty.get(), 0, 0, {0, 0}));
  ZunUint8 u8 = 0;
  Text s("before");
  EXPECT_TRUE(r.AtEnd());
  EXPECT_FALSE(r.U8(&u8));
  EXPECT_EQ(r.Take(1), nullptr);
  EXPECT_TRUE(r.StringToEnd(s));
  EXPECT_EQ(s.str(), "");
}

// The reader of what is usual

TEST(UsualReader, ReadsOnlyBodiesThatAreThereAsFarAsTheirEnd) {
  ForEveryExtent([](const Datagram& b, ZunSizeT begin, ZunSizeT end) {
    const zun::Body body = zun::BodyIn(b, begin, end, {0, 0});
    EXPECT_EQ(UsualReader::MayRead(body), begin <= end && end <= b->size) << begin << " to " << end;
  });
}

TEST(UsualReader, FailsWhereAFieldIsCutOffAndStoresNothing) {
  const Datagram b(Hex("00 01 02 03 04 05"));
  UsualReader r(zun::BodyIn(b, 1, 6, {0, 0}));
  ZunUint32 value = 0xAAAAAAAA;
  EXPECT_FALSE(r.Fields<6>([&](auto& f) { return f.U32(&value); }));
  EXPECT_EQ(value, 0xAAAAAAAA);
  EXPECT_TRUE(r.U32(&value));
  EXPECT_EQ(value, 0x01020304U);
  EXPECT_FALSE(r.U32(&value));
  EXPECT_EQ(r.Take(2), nullptr);
  EXPECT_FALSE(r.AtEnd());
  EXPECT_EQ(*r.Take(1), 5);
  EXPECT_TRUE(r.AtEnd());
}

// A string in front of the end is for the careful reader; none makes the old one empty.
TEST(UsualReader, ReadsNoString) {
  const Datagram b(Hex("00 01"));
  const Datagram old("old");
  ZunString s;
  ASSERT_NE(ZunStringConstructCopy(&s, old.get()), nullptr);
  UsualReader r(zun::BodyIn(b, 1, 2, {0, 0}));
  EXPECT_FALSE(r.StringToEnd(&s));
  EXPECT_STREQ(ZunStringCStr(&s), "old");
  ASSERT_NE(r.Take(1), nullptr);
  EXPECT_TRUE(r.StringToEnd(&s));
  EXPECT_STREQ(ZunStringCStr(&s), "");
  ZunStringDestruct(&s);
}

TEST(UsualReader, ReadsEntriesForWhichTheListHasRoom) {
  const Datagram b(Hex("00 01020304 05060708 09"));
  TestAllocator a;
  ZunVector_ZunRtpSourceId list;
  ZunVector_ZunRtpSourceIdConstructDefault(&list, a.get());
  const auto read = [&](ZunSizeT count) {
    UsualReader r(zun::BodyIn(b, 1, 9, {0, 0}));
    return zun::ReadCountedEntries<zun::kSourceIdSize, zun::VectorOfZunRtpSourceId>(r, &list, count,
                                                                                    zun::DecodeSourceId);
  };
  EXPECT_FALSE(read(2));
  EXPECT_EQ(list.begin, nullptr);
  ASSERT_TRUE(ZunVector_ZunRtpSourceIdReserve(&list, 3));
  EXPECT_FALSE(read(3));  // the third is cut off
  EXPECT_TRUE(read(2));
  ASSERT_EQ(ZunVector_ZunRtpSourceIdSize(&list), 2U);
  EXPECT_EQ(list.begin[0], 0x01020304U);
  EXPECT_EQ(list.begin[1], 0x05060708U);
  ZunVector_ZunRtpSourceIdDestruct(&list);
}

TEST(UsualReader, GivesBackTheEntriesThatItHeld) {
  const Datagram b(Hex("00"));
  zun::ReadTerms terms = {ZUN_RTCP_DIALECT_HOUSE, 5, 0, ZUN_RTCP_DECODE_REASON_NONE, 0};
  zun::Body body = zun::BodyIn(b, 0, 1, {0, 0});
  body.terms = &terms;
  UsualReader r(body);
  EXPECT_TRUE(r.MayHoldEntries(2));
  EXPECT_FALSE(r.MayHoldEntries(4));
  EXPECT_TRUE(r.MayHoldEntries(3));
  EXPECT_EQ(terms.entries_left, 0U);
  r.GiveBack();
  EXPECT_EQ(terms.entries_left, 5U);
  EXPECT_EQ(terms.reason, ZUN_RTCP_DECODE_REASON_NONE);
}

}  // namespace
