#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "Zun/Utils/ZunMiscInline.h"
#include "tests/support/Bytes.h"
#include "tests/support/TestAllocator.h"

namespace {

using namespace test;

TEST(ZunMisc, OctetsAreMostSignificantFirst) {
  const std::string octets = Hex("81 02 83 FF");
  EXPECT_EQ(ZunUint16FromOctets(octets.data()), 0x8102);
  EXPECT_EQ(ZunUint16FromOctets(octets.data() + 1), 0x0283);
  EXPECT_EQ(ZunUint32FromOctets(octets.data()), 0x810283FFU);
  EXPECT_EQ(ZunInt16FromOctets(octets.data()), -32510);
  EXPECT_EQ(ZunInt16FromOctets(octets.data() + 1), 0x0283);
  EXPECT_EQ(ZunUint32FromOctets(Hex("FF FF FF FF").data()), 0xFFFFFFFFU);
  EXPECT_EQ(ZunUint32FromOctets(Hex("00 00 00 01").data()), 1U);
}

TEST(ZunMisc, SignedOctetsAreTheTwosComplementValue) {
  for (int value = -32768; value <= 32767; ++value) {
    const char octets[] = {static_cast<char>(value >> 8), static_cast<char>(value)};
    ASSERT_EQ(ZunInt16FromOctets(octets), value);
  }
}

TEST(ZunMisc, BufferReadsTheValueAtItsPosition) {
  const Datagram b(Hex("00 81 02 03 84 FF"));
  ZunUint16 u16 = 0;
  ZunInt16 i16 = 0;
  ZunUint32 u32 = 0;
  EXPECT_EQ(ZunUint16FromBuffer(b, 1, 6, &u16), 1);
  EXPECT_EQ(u16, 0x8102);
  EXPECT_EQ(ZunInt16FromBuffer(b, 2, 6, &i16), 1);
  EXPECT_EQ(i16, 0x0203);
  EXPECT_EQ(ZunUint32FromBuffer(b, 1, 6, &u32), 1);
  EXPECT_EQ(u32, 0x81020384U);
}

// The low byte counts as a signed one: from 0x80 on it sets every bit above it.
TEST(ZunMisc, SignedBufferReadTakesTheLowByteAsSigned) {
  for (int high = 0; high < 256; ++high) {
    for (int low = 0; low < 256; ++low) {
      const char bytes[] = {static_cast<char>(high), static_cast<char>(low)};
      const ZunString b = {nullptr, const_cast<char*>(bytes), 2, 2};
      ZunInt16 value = 1;
      ASSERT_EQ(ZunInt16FromBuffer(&b, 0, 2, &value), 1);
      ASSERT_EQ(value, static_cast<ZunInt16>((high << 8) | static_cast<signed char>(low))) << high << " " << low;
    }
  }
  ZunInt16 value = 0;
  ASSERT_TRUE(ZunInt16FromBuffer(Datagram(Hex("01 80")), 0, 2, &value));
  EXPECT_EQ(value, -128);
  ASSERT_TRUE(ZunInt16FromBuffer(Datagram(Hex("01 7F")), 0, 2, &value));
  EXPECT_EQ(value, 383);
  ASSERT_TRUE(ZunInt16FromBuffer(Datagram(Hex("80 00")), 0, 2, &value));
  EXPECT_EQ(value, -32768);
}

// Every position and end around the string's size, and positions whose end overflows.
TEST(ZunMisc, BufferReadsNothingBeyondEndOrString) {
  for (ZunSizeT size = 0; size <= 6; ++size) {
    const Datagram b(std::string(size, '\x11'));
    for (ZunSizeT p = 0; p < 18; ++p) {
      const ZunSizeT pos = p < 9 ? p : SIZE_MAX - (p - 9);
      for (ZunSizeT e = 0; e < 18; ++e) {
        const ZunSizeT end = e < 9 ? e : SIZE_MAX - (e - 9);
        const auto fits = [&](ZunSizeT width) {
          const bool overflows = pos > SIZE_MAX - width;
          return !overflows && pos + width <= end && pos + width <= size;
        };
        ZunUint16 u16 = 0xABCD;
        ZunInt16 i16 = 0x1BCD;
        ZunUint32 u32 = 0xABCDEF01;
        EXPECT_EQ(ZunUint16FromBuffer(b, pos, end, &u16), fits(2) ? 1 : 0) << size << " " << pos << " " << end;
        EXPECT_EQ(u16, fits(2) ? 0x1111 : 0xABCD);
        EXPECT_EQ(ZunInt16FromBuffer(b, pos, end, &i16), fits(2) ? 1 : 0) << size << " " << pos << " " << end;
        EXPECT_EQ(i16, fits(2) ? 0x1111 : 0x1BCD);
        EXPECT_EQ(ZunUint32FromBuffer(b, pos, end, &u32), fits(4) ? 1 : 0) << size << " " << pos << " " << end;
        EXPECT_EQ(u32, fits(4) ? 0x11111111U : 0xABCDEF01U);
      }
    }
  }
}

TEST(ZunMisc, BufferAppendsMostSignificantFirst) {
  Text b("x");
  EXPECT_EQ(ZunUint16ToBuffer(0x8102, b), 1);
  EXPECT_EQ(ZunUint32ToBuffer(0xFF010283, b), 1);
  EXPECT_EQ(b.str(), "x" + Hex("81 02 FF 01 02 83"));
}

// A string with room for `room` bytes and an allocator that refuses from now on.
void FillUpTo(ZunString* b, ZunSizeT room, TestAllocator* a) {
  ASSERT_NE(ZunStringAppendChar(b, 'x'), nullptr);
  while (b->capacity - b->size > room) ASSERT_NE(ZunStringAppendChar(b, 'x'), nullptr);
  a->RefuseFrom(0);
}

TEST(ZunMisc, RefusedAppendKeepsTheBytesBeforeIt) {
  for (ZunSizeT room = 0; room <= 4; ++room) {
    TestAllocator a;
    Text b(a.get());
    FillUpTo(b, room, &a);
    const std::string before = b.str();
    EXPECT_EQ(ZunUint32ToBuffer(0x01020304, b), room == 4 ? 1 : 0);
    EXPECT_EQ(b.str(), before + Hex("01 02 03 04").substr(0, room));
  }
  for (ZunSizeT room = 0; room <= 2; ++room) {
    TestAllocator a;
    Text b(a.get());
    FillUpTo(b, room, &a);
    const std::string before = b.str();
    EXPECT_EQ(ZunUint16ToBuffer(0x0102, b), room == 2 ? 1 : 0);
    EXPECT_EQ(b.str(), before + Hex("01 02").substr(0, room));
  }
}

TEST(ZunMisc, MemoryAndTextHelpers) {
  char block[] = "abcdef";
  ZunMemSet(block + 1, 'x', 3);
  EXPECT_STREQ(block, "axxxef");
  ZunMemSet(block, 'y', 0);
  EXPECT_STREQ(block, "axxxef");
  EXPECT_EQ(ZunStrLen(""), 0U);
  EXPECT_EQ(ZunStrLen("abc"), 3U);
}

}  // namespace
