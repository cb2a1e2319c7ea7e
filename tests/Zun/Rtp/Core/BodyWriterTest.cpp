#include "Zun/Rtp/Core/BodyWriter.h"

#include <gtest/gtest.h>

#include <string>

#include "Zun/Rtp/Core/EntryList.h"
#include "Zun/Rtp/Core/SubpacketHeader.h"
#include "tests/support/Bytes.h"
#include "tests/support/TestAllocator.h"

namespace {

using namespace test;
using zun::BodyWriter;
using zun::Output;
using zun::UsualWriter;

const std::string kFields = Hex(R"(
    81                       | U8
    82 03                    | U16
    84 05 06                 | U24
    87 08 09 0A              | U32
    8B 0C 0D 0E 0F 10 11 12  | Fields: U64,
    13 14 15 16              | U8 and U24
    17 18 19 1A 1B           | Number
    1C 1D                    | Octets
    00 00 00                 | Zeros)");
constexpr ZunSizeT kFieldsSize = 32;

bool WriteFields(BodyWriter& w) {
  const ZunUint8 octets[] = {0x1C, 0x1D};
  const auto run = [](zun::FieldWriter& f) {
    f.U64(0x8B0C0D0E0F101112U);
    f.U8(0x13);
    f.U24(0x141516);
  };
  return w.U8(0x81) && w.U16(0x8203) && w.U24(0x840506) && w.U32(0x8708090A) && w.Fields<12>(run) &&
         w.Number(0xFFFFFF1718191A1BU, 5) && w.Octets(octets, 2) && w.Zeros(3);
}

// A string with room for exactly `room` bytes after "x...", whose allocator refuses everything from now on.
struct Cramped {
  explicit Cramped(ZunSizeT room) : text(a.get()) {
    EXPECT_NE(ZunStringAppendN(text, 64, 'x'), nullptr);
    while (text->capacity - text->size > room) EXPECT_NE(ZunStringAppendChar(text, 'x'), nullptr);
    while (text->capacity - text->size < room) --text->size;
    text->buf[text->size] = '\0';
    before = text.str();
    a.RefuseFrom(0);
  }
  TestAllocator a;
  Text text;
  std::string before;
};

TEST(BodyWriter, FieldsAreAppendedMostSignificantFirst) {
  TestAllocator a;
  Text b("x", a);
  {
    Output out(b);
    BodyWriter w(out, kFieldsSize);
    EXPECT_FALSE(out.WasRefused());
    EXPECT_EQ(w.Size(), 1U);
    EXPECT_TRUE(WriteFields(w));
    EXPECT_EQ(w.Size(), 1 + kFieldsSize);
  }
  EXPECT_EQ(b.str(), "x" + kFields);
  EXPECT_EQ(b->buf[b->size], '\0');
}

TEST(BodyWriter, StringsAndBytesAreAppended) {
  Text b;
  const Text text(Hex("01 00 02"));
  const Text empty;
  {
    Output out(b);
    BodyWriter w(out, 8);
    EXPECT_TRUE(w.String(*text.get()) && w.String(*empty.get()) && w.Bytes("abc", 2) && w.Bytes(nullptr, 0));
    EXPECT_EQ(w.Size(), 5U);
  }
  EXPECT_EQ(b.str(), Hex("01 00 02 61 62"));
}

TEST(BodyWriter, WholeLengthIsAskedForOnce) {
  TestAllocator a;
  Text b(a.get());
  {
    Output out(b);
    BodyWriter w(out, 1000);
    EXPECT_EQ(a.allocations(), 1U);
    for (int i = 0; i < 250; ++i) EXPECT_TRUE(w.U32(0x01020304));
  }
  EXPECT_EQ(a.allocations(), 1U);
  EXPECT_EQ(b->size, 1000U);
  ZunStringClear(b);
  {
    Output out(b);
    BodyWriter w(out, 1000);
    EXPECT_TRUE(w.Zeros(1000));
  }
  EXPECT_EQ(a.calls(), 1U);
  EXPECT_EQ(b.str(), std::string(1000, '\0'));
}

TEST(BodyWriter, LessThanAskedForMayBeWritten) {
  Text b("x");
  {
    Output out(b);
    BodyWriter w(out, 100);
    EXPECT_TRUE(w.U16(0x0102));
  }
  EXPECT_EQ(b.str(), "x" + Hex("01 02"));
  {
    Output out(b);
    const BodyWriter w(out, 100);
  }
  {
    Output out(b);
    BodyWriter w(out, 0);
    EXPECT_EQ(w.Size(), 3U);
  }
  EXPECT_EQ(b.str(), "x" + Hex("01 02"));
}

TEST(BodyWriter, EmptyLengthOnAFreshStringAllocatesNothing) {
  TestAllocator a;
  Text b(a.get());
  {
    Output out(b);
    BodyWriter w(out, 0);
    EXPECT_EQ(w.Size(), 0U);
    EXPECT_TRUE(w.Zeros(0));
  }
  EXPECT_EQ(a.calls(), 0U);
}

// The string takes exactly the bytes that fit, whatever field they cut through.
TEST(BodyWriter, RefusedReservationKeepsEveryByteThatFits) {
  for (ZunSizeT room = 0; room < kFieldsSize; ++room) {
    Cramped c(room);
    {
      Output out(c.text);
      BodyWriter w(out, kFieldsSize);
      EXPECT_FALSE(WriteFields(w));
      EXPECT_EQ(w.Size(), c.text->capacity);
    }
    EXPECT_EQ(c.text.str(), c.before + kFields.substr(0, room));
    EXPECT_EQ(c.text->buf[c.text->size], '\0');
  }
  Cramped enough(kFieldsSize);
  {
    Output out(enough.text);
    BodyWriter w(out, kFieldsSize);
    EXPECT_TRUE(WriteFields(w));
  }
  EXPECT_EQ(enough.a.refused(), 0U);
  EXPECT_EQ(enough.text.str(), enough.before + kFields);
}

// A string is one append: it is there whole or not at all.
TEST(BodyWriter, RefusedReservationTakesAStringWholeOrNotAtAll) {
  const Text text("0123456789");
  for (ZunSizeT room = 0; room < 12; ++room) {
    Cramped c(room);
    {
      Output out(c.text);
      BodyWriter w(out, 12);
      EXPECT_FALSE(w.U16(0x4142) && w.String(*text.get()));
    }
    EXPECT_EQ(c.text.str(), c.before + std::string("AB").substr(0, room < 2 ? room : 2));
  }
}

// The whole does not fit but the beginning does: growing for single fields is still tried.
TEST(BodyWriter, RefusedReservationStillGrowsForSmallerAppends) {
  TestAllocator a;
  a.RefuseAbove(600);
  Text b(a.get());
  {
    Output out(b);
    BodyWriter w(out, 1000);
    for (int i = 0; i < 25; ++i) EXPECT_TRUE(w.U32(0x01020304));
  }
  EXPECT_EQ(b->size, 100U);
  EXPECT_EQ(b.str().substr(96), Hex("01 02 03 04"));
}

TEST(BodyWriter, LengthThatOverflowsIsARefusedReservation) {
  TestAllocator a;
  Text b("x", a);
  {
    Output out(b);
    BodyWriter w(out, SIZE_MAX);
    EXPECT_TRUE(w.U8(1));
  }
  EXPECT_EQ(b.str(), "x" + Hex("01"));
}

// ---- a block of the caller's

TEST(BodyWriter, ABlockTakesWhatFitsAndNeverMore) {
  for (ZunSizeT capacity = 0; capacity <= kFieldsSize + 1; ++capacity) {
    std::string block(capacity + 8, '#');
    Output out(reinterpret_cast<ZunUint8*>(block.data()), capacity, ZUN_RTCP_DIALECT_HOUSE);
    bool written = false;
    {
      BodyWriter w(out, kFieldsSize);
      written = WriteFields(w);
    }
    EXPECT_EQ(written, capacity >= kFieldsSize);
    EXPECT_LE(out.Size(), capacity);
    EXPECT_EQ(block.substr(capacity), std::string(8, '#'));
    EXPECT_EQ(block.substr(0, out.Size()), kFields.substr(0, out.Size()));
  }
}

TEST(BodyWriter, SeveralWritersFillABlockOneAfterTheOther) {
  ZunUint8 block[8] = {};
  Output out(block, sizeof(block), ZUN_RTCP_DIALECT_HOUSE);
  for (ZunUint32 i = 1; i <= 2; ++i) {
    BodyWriter w(out, 4);
    EXPECT_TRUE(w.U32(i));
    EXPECT_EQ(w.Size(), ZunSizeT{4} * i);
  }
  BodyWriter full(out, 1);
  EXPECT_FALSE(full.U8(1));
  EXPECT_EQ(ToHex(std::string(reinterpret_cast<char*>(block), sizeof(block))), "0000000100000002");
}

// ---- what is usual

TEST(UsualWriter, WritesWhatHasRoomAndGivesItToTheOutputOnlyWhenItIsKept) {
  for (ZunSizeT capacity = 0; capacity <= 24; ++capacity) {
    std::string block(capacity + 8, '#');
    Output out(reinterpret_cast<ZunUint8*>(block.data()), capacity, ZUN_RTCP_DIALECT_HOUSE);
    UsualWriter w(out);
    const auto run = [](zun::FieldWriter& f) { f.U16(0x0809); };
    const bool written =
        w.U32(0x01020304) && w.U24(0x050607) && w.Fields<2>(run) && w.String(*Text("word, word").get());
    EXPECT_EQ(written, capacity >= 19) << capacity;
    EXPECT_EQ(block.substr(capacity), std::string(8, '#'));
    EXPECT_EQ(out.Size(), 0U);
    if (!written) continue;
    EXPECT_EQ(w.Written(), 19U);
    w.Keep();
    EXPECT_EQ(out.Size(), 19U);
    EXPECT_EQ(block.substr(0, 19), Hex("010203040506070809") + "word, word");
  }
}

TEST(UsualWriter, WritesFieldsThatFillTheRoom) {
  for (const ZunSizeT room : {3U, 4U}) {
    Cramped cramped(room);
    Output out(cramped.text);
    UsualWriter w(out);
    EXPECT_EQ(w.U32(0x01020304), room == 4);
  }
}

TEST(UsualWriter, WritesAllEntriesOfAListOrNone) {
  const ZunRtpSourceId sources[] = {0x01020304, 0x05060708};
  ZunVector_ZunRtpSourceId list;
  ZunVector_ZunRtpSourceIdConstructDefault(&list, ZunAllocatorGetSystem());
  for (const ZunRtpSourceId& source : sources) ASSERT_TRUE(ZunVector_ZunRtpSourceIdPushBack(&list, &source));
  for (const ZunSizeT room : {7U, 8U}) {
    Cramped cramped(room);
    Output out(cramped.text);
    UsualWriter w(out);
    EXPECT_EQ(zun::WriteEntries<zun::kSourceIdSize>(w, list, zun::EncodeSourceId), room == 8);
    EXPECT_EQ(w.Written(), room == 8 ? 8U : 0U);
  }
  ZunVector_ZunRtpSourceIdDestruct(&list);
}

TEST(UsualWriter, LeavesToOthersWhatIsCopiedByACall) {
  ZunUint8 block[200];
  Output out(block, sizeof(block), ZUN_RTCP_DIALECT_HOUSE);
  UsualWriter w(out);
  EXPECT_TRUE(w.String(*Text(std::string(zun::kMaxCallFreeCopy, 'x')).get()));
  EXPECT_FALSE(w.String(*Text(std::string(zun::kMaxCallFreeCopy + 1, 'x')).get()));
  EXPECT_EQ(w.Written(), zun::kMaxCallFreeCopy);
}

TEST(UsualWriter, ZerosEndAWordAndNeverPassTheRoom) {
  for (ZunSizeT count = 1; count <= 4; ++count) {
    for (ZunSizeT room = 0; room <= 6; ++room) {
      std::string block(room + 4, '#');
      Output out(reinterpret_cast<ZunUint8*>(block.data()), room, ZUN_RTCP_DIALECT_HOUSE);
      UsualWriter w(out);
      EXPECT_EQ(w.ZerosToWord(count), room >= count);
      EXPECT_EQ(w.Written(), room >= count ? count : 0);
      EXPECT_EQ(block.substr(0, w.Written()), std::string(w.Written(), '\0'));
      EXPECT_EQ(block.substr(room), "####");
    }
  }
}

// ---- a length function that says too little

// In release builds the write fails; in debug builds it is a failed assertion.
TEST(BodyWriter, MoreThanTheLengthIsNeverWritten) {
  Text b(std::string(64, 'x'));  // so that there is room in the string itself
  ZunStringClear(b);
  const auto overrun = [&] {
    Output out(b);
    BodyWriter w(out, 6);
    return w.U32(0x01020304) && w.U32(0x05060708);
  };
#ifdef NDEBUG
  EXPECT_FALSE(overrun());
  EXPECT_EQ(b.str(), Hex("01 02 03 04"));
#else
  EXPECT_DEATH(overrun(), "more is written than the length function said");
#endif
}

// ---- the common header

std::string Header(bool pad, ZunUint8 count, ZunRtcpSubpacketType type, ZunSizeT length) {
  Text b;
  {
    Output out(b);
    BodyWriter w(out, zun::kSubpacketHeaderSize);
    EXPECT_TRUE(zun::WriteSubpacketHeader(w, pad, count, type, length));
  }
  return b.str();
}

TEST(SubpacketHeader, FieldsStandWhereTheyBelong) {
  EXPECT_EQ(Header(false, 3, 207, 12), Hex("83 CF 00 02"));
  EXPECT_EQ(Header(true, 3, 207, 12), Hex("A3 CF 00 02"));
  EXPECT_EQ(Header(false, 31, 0, 4), Hex("9F 00 00 00"));
  EXPECT_EQ(Header(false, 0, 200, 262144), Hex("80 C8 FF FF"));
}

TEST(BodyWriter, ABlockThatIsTooSmallTakesNothing) {
  ZunUint8 block[8] = {};
  Output out(block, sizeof(block), ZUN_RTCP_DIALECT_HOUSE);
  BodyWriter w(out, sizeof(block) + 1);
  EXPECT_FALSE(w.Bytes("abc", 3));
  EXPECT_FALSE(w.U8(1));
  EXPECT_EQ(w.Block(1), nullptr);
  EXPECT_EQ(block[0], 0);
}

TEST(BodyWriter, APlaceIsGivenWhereThereIsRoomForAllOfIt) {
  ZunUint8 block[8] = {};
  Output out(block, sizeof(block), ZUN_RTCP_DIALECT_HOUSE);
  BodyWriter w(out, sizeof(block));
  EXPECT_EQ(w.Block(9), nullptr);
  EXPECT_EQ(w.Block(8), block);
  EXPECT_EQ(w.Block(1), nullptr);
}

TEST(SubpacketHeader, TypeIsCutTo8Bits) {
  EXPECT_EQ(Header(false, 0, 0x1C9, 8), Hex("80 C9 00 01"));
  EXPECT_EQ(Header(false, 0, -1, 8), Hex("80 FF 00 01"));
}

TEST(SubpacketHeader, CountAbove31SpillsIntoPaddingAndVersion) {
  EXPECT_EQ(Header(false, 32, 207, 4), Hex("A0 CF 00 00"));
  EXPECT_EQ(Header(false, 64, 207, 4), Hex("C0 CF 00 00"));
  EXPECT_EQ(Header(false, 255, 207, 4), Hex("FF CF 00 00"));
}

TEST(SubpacketHeader, LengthIsCountedInWordsModulo16Bits) {
  EXPECT_EQ(Header(false, 0, 207, 0), Hex("80 CF FF FF"));
  EXPECT_EQ(Header(false, 0, 207, 7), Hex("80 CF 00 00"));
  EXPECT_EQ(Header(false, 0, 207, 262148), Hex("80 CF 00 00"));
  EXPECT_EQ(Header(false, 0, 206, 262148), Hex("80 CE 00 00")) << "what is cut off would be seen in an even type";
}

TEST(SubpacketHeader, RefusedAppendKeepsTheBytesBeforeIt) {
  for (ZunSizeT room = 0; room < 4; ++room) {
    Cramped c(room);
    {
      Output out(c.text);
      BodyWriter w(out, zun::kSubpacketHeaderSize);
      EXPECT_FALSE(zun::WriteSubpacketHeader(w, false, 3, 207, 12));
      EXPECT_TRUE(out.WasRefused());
    }
    EXPECT_EQ(c.text.str(), c.before + Hex("83 CF 00 02").substr(0, room));
  }
}

}  // namespace
