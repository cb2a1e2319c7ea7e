#include "Zun/Utils/ZunString.h"

#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <random>
#include <string>

#include "tests/support/Bytes.h"
#include "tests/support/TestAllocator.h"

namespace {

using namespace test;

const std::string kWithZeros("a\0b\0\xFF", 5);

// What holds for every string at any time.
void ExpectSound(const ZunString* s) {
  EXPECT_LE(s->size, s->capacity);
  EXPECT_EQ(s->buf == nullptr, s->capacity == 0);
  ASSERT_NE(ZunStringCStr(s), nullptr);
  EXPECT_EQ(ZunStringCStr(s)[s->size], '\0');
}

void ExpectHolds(const ZunString* s, const std::string& bytes) {
  ExpectSound(s);
  EXPECT_EQ(Str(s), bytes);
}

// A string without spare room, so that every append has to grow.
void MakeTight(ZunString* s, const std::string& bytes, ZunAllocator* a) {
  const Text source(bytes);
  ASSERT_EQ(ZunStringConstructSubstring(s, source.get(), 0, bytes.size(), a), s);
  ASSERT_EQ(s->capacity, bytes.size());
}

TEST(ZunString, DefaultIsEmptyAndOwnsNothing) {
  TestAllocator a;
  ZunString s;
  EXPECT_EQ(ZunStringConstructDefault(&s, a), &s);
  EXPECT_EQ(s.allocator, a.get());
  EXPECT_EQ(s.buf, nullptr);
  EXPECT_EQ(s.size, 0U);
  EXPECT_EQ(s.capacity, 0U);
  EXPECT_STREQ(ZunStringCStr(&s), "");
  ZunStringDestruct(&s);
  EXPECT_EQ(a.calls(), 0U);
}

TEST(ZunString, AccessorsReadTheFields) {
  TestAllocator a;
  const Text s(kWithZeros, a);
  EXPECT_EQ(ZunStringLength(s.get()), 5U);
  EXPECT_EQ(ZunStringSize(s.get()), 5U);
  EXPECT_EQ(ZunStringCStr(s.get()), s.get()->buf);
  EXPECT_EQ(ZunStringAtConst(s.get(), 0), 'a');
  EXPECT_EQ(ZunStringAtConst(s.get(), 3), '\0');
  EXPECT_EQ(ZunStringAtConst(s.get(), 4), '\xFF');
  EXPECT_EQ(ZunStringEmpty(s.get()), 0);
  EXPECT_EQ(ZunStringGetAllocator(s.get()), a.get());
  const Text empty(a.get());
  EXPECT_EQ(ZunStringEmpty(empty.get()), 1);
  EXPECT_EQ(ZunStringLength(empty.get()), 0U);
}

TEST(ZunString, CopyTakesTheAllocatorOfItsSource) {
  TestAllocator a;
  const Text source(kWithZeros, a);
  ZunString copy;
  ASSERT_EQ(ZunStringConstructCopy(&copy, source.get()), &copy);
  EXPECT_EQ(copy.allocator, a.get());
  EXPECT_NE(copy.buf, source.get()->buf);
  EXPECT_EQ(copy.capacity, 5U);
  ExpectHolds(&copy, kWithZeros);
  ZunStringDestruct(&copy);
}

TEST(ZunString, CopyOfAnEmptyStringAllocatesNothing) {
  TestAllocator a;
  a.RefuseFrom(0);
  const Text empty(a.get());
  ZunString copy;
  EXPECT_EQ(ZunStringConstructCopy(&copy, empty.get()), &copy);
  ExpectHolds(&copy, "");
  EXPECT_EQ(ZunStringConstructSubstring(&copy, empty.get(), 0, 10, a), &copy);
  ExpectHolds(&copy, "");
  const Text full("abc");
  EXPECT_EQ(ZunStringConstructSubstring(&copy, full.get(), 3, 10, a), &copy);
  EXPECT_EQ(ZunStringConstructSubstring(&copy, full.get(), 1, 0, a), &copy);
  ExpectHolds(&copy, "");
  EXPECT_EQ(a.calls(), 0U);
}

TEST(ZunString, DestructLeavesItEmptyAndMayBeRepeated) {
  TestAllocator a;
  ZunString s;
  MakeTight(&s, "abc", a);
  ZunStringDestruct(&s);
  EXPECT_EQ(a.live_blocks(), 0U);
  EXPECT_EQ(s.buf, nullptr);
  EXPECT_EQ(s.size, 0U);
  EXPECT_EQ(s.capacity, 0U);
  ZunStringDestruct(&s);
  EXPECT_EQ(a.deallocations(), 1U);
}

TEST(ZunString, SubstringsOfEveryPositionAndLength) {
  const std::string bytes = kWithZeros;
  const Text source(bytes);
  TestAllocator a;
  for (ZunSizeT pos = 0; pos <= bytes.size(); ++pos) {
    for (const ZunSizeT len :
         {ZunSizeT{0}, ZunSizeT{1}, ZunSizeT{2}, ZunSizeT{4}, ZunSizeT{5}, ZunSizeT{6}, SIZE_MAX - 1, SIZE_MAX}) {
      const std::string expected = bytes.substr(pos, len);
      ZunString part;
      ASSERT_EQ(ZunStringConstructSubstring(&part, source.get(), pos, len, a), &part);
      EXPECT_EQ(part.allocator, a.get());
      ExpectHolds(&part, expected);
      ZunStringDestruct(&part);

      Text assigned("before", a);
      EXPECT_EQ(ZunStringAssignSubstring(assigned, source.get(), pos, len), assigned.get());
      ExpectHolds(assigned, expected);

      Text appended("before", a);
      EXPECT_EQ(ZunStringAppendSubstring(appended, source.get(), pos, len), appended.get());
      ExpectHolds(appended, "before" + expected);
    }
  }
}

TEST(ZunString, SubstringBeyondTheSourceFails) {
  TestAllocator a;
  const Text source("abc");
  for (const ZunSizeT pos : {ZunSizeT{4}, ZunSizeT{5}, SIZE_MAX}) {
    for (const ZunSizeT len : {ZunSizeT{0}, ZunSizeT{1}, SIZE_MAX}) {
      ZunString part;
      EXPECT_EQ(ZunStringConstructSubstring(&part, source.get(), pos, len, a), nullptr);
      Text s("before", a);
      EXPECT_EQ(ZunStringAssignSubstring(s, source.get(), pos, len), nullptr);
      EXPECT_EQ(ZunStringAppendSubstring(s, source.get(), pos, len), nullptr);
      ExpectHolds(s, "before");
    }
  }
  EXPECT_EQ(a.live_blocks(), 0U);
}

TEST(ZunString, AssignKeepsAllocatorAndStorage) {
  TestAllocator a;
  TestAllocator other;
  Text s("0123456789", a);
  const std::size_t calls = a.calls();
  const char* const storage = s->buf;
  const Text shorter("abc", other);
  EXPECT_EQ(ZunStringAssign(s, shorter.get()), s.get());
  ExpectHolds(s, "abc");
  EXPECT_EQ(s->allocator, a.get());
  EXPECT_EQ(s->buf, storage);
  const Text empty;
  EXPECT_EQ(ZunStringAssign(s, empty.get()), s.get());
  ExpectHolds(s, "");
  EXPECT_EQ(ZunStringAssignCStr(s, "0123456789"), s.get());
  ExpectHolds(s, "0123456789");
  EXPECT_EQ(s->buf, storage);
  EXPECT_EQ(a.calls(), calls);
}

TEST(ZunString, AssignBeyondTheCapacityTakesStorageOfTheAllocatorItHas) {
  TestAllocator a;
  Text s(a.get());
  const Text longer(std::string(100, 'x'));
  EXPECT_EQ(ZunStringAssign(s, longer.get()), s.get());
  ExpectHolds(s, std::string(100, 'x'));
  EXPECT_EQ(s->capacity, 100U);
  EXPECT_EQ(a.live_blocks(), 1U);
}

TEST(ZunString, AssignCStrLeavesTheTerminatorOut) {
  TestAllocator a;
  Text s(a.get());
  EXPECT_EQ(ZunStringAssignCStr(s, ""), s.get());
  EXPECT_EQ(a.calls(), 0U);
  EXPECT_EQ(ZunStringAssignCStr(s, "text"), s.get());
  EXPECT_EQ(s->size, 4U);
  ExpectHolds(s, "text");
}

TEST(ZunString, AppendsOfEveryKind) {
  TestAllocator a;
  Text s(a.get());
  const Text tail(kWithZeros);
  EXPECT_EQ(ZunStringAppend(s, tail.get()), s.get());
  EXPECT_EQ(ZunStringAppendChar(s, '\0'), s.get());
  EXPECT_EQ(ZunStringAppendN(s, 3, 'n'), s.get());
  EXPECT_EQ(ZunStringAppendCStrLen(s, "uv\0w", 4), s.get());
  ExpectHolds(s, kWithZeros + std::string(1, '\0') + "nnn" + std::string("uv\0w", 4));
}

TEST(ZunString, AppendOfNothingAllocatesNothing) {
  TestAllocator a;
  a.RefuseFrom(0);
  Text s(a.get());
  const Text empty;
  EXPECT_EQ(ZunStringAppend(s, empty.get()), s.get());
  EXPECT_EQ(ZunStringAppendN(s, 0, 'x'), s.get());
  EXPECT_EQ(ZunStringAppendCStrLen(s, "abc", 0), s.get());
  EXPECT_EQ(ZunStringAppendSubstring(s, empty.get(), 0, 5), s.get());
  ExpectHolds(s, "");
  EXPECT_EQ(a.calls(), 0U);
}

TEST(ZunString, AppendCharTakesEveryByte) {
  Text s;
  std::string expected;
  for (int c = 0; c < 256; ++c) {
    ASSERT_EQ(ZunStringAppendChar(s, static_cast<char>(c)), s.get());
    expected += static_cast<char>(c);
    ExpectHolds(s, expected);
  }
}

TEST(ZunString, GrowthIsGeometric) {
  TestAllocator a;
  Text s(a.get());
  for (int i = 0; i < 100000; ++i) ASSERT_NE(ZunStringAppendChar(s, 'x'), nullptr);
  EXPECT_LT(a.allocations(), 40U);
  const std::size_t until_now = a.allocations();
  for (int i = 0; i < 10000; ++i) ASSERT_NE(ZunStringAppendCStrLen(s, "0123456789", 10), nullptr);
  EXPECT_LE(a.allocations(), until_now + 2);
  EXPECT_EQ(s->size, 200000U);
}

TEST(ZunString, ClearKeepsTheStorage) {
  TestAllocator a;
  Text s("abc", a);
  const std::size_t calls = a.calls();
  const ZunSizeT capacity = s->capacity;
  ZunStringClear(s);
  ExpectHolds(s, "");
  EXPECT_EQ(s->capacity, capacity);
  EXPECT_EQ(a.calls(), calls);
  Text never_filled(a.get());
  ZunStringClear(never_filled);
  ExpectHolds(never_filled, "");
}

TEST(ZunString, MayBeAssignedToItselfWholeOrInPart) {
  TestAllocator a;
  const std::string bytes = "0123456789";
  Text whole(bytes, a);
  EXPECT_EQ(ZunStringAssign(whole, whole.get()), whole.get());
  ExpectHolds(whole, bytes);
  Text never_filled(a.get());
  EXPECT_EQ(ZunStringAssign(never_filled, never_filled.get()), never_filled.get());
  ExpectHolds(never_filled, "");
  Text text(bytes, a);
  EXPECT_EQ(ZunStringAssignCStr(text, text->buf + 3), text.get());
  ExpectHolds(text, "3456789");
  for (ZunSizeT pos = 0; pos <= bytes.size(); ++pos) {
    for (ZunSizeT len = 0; len <= bytes.size(); ++len) {
      ZunString s;
      MakeTight(&s, bytes, a);
      EXPECT_EQ(ZunStringAssignSubstring(&s, &s, pos, len), &s);
      ExpectHolds(&s, bytes.substr(pos, len));
      ZunStringDestruct(&s);
    }
  }
}

// With and without room after the last byte: in the second case the bytes must survive the old buffer.
TEST(ZunString, MayBeAppendedToItselfWholeOrInPart) {
  TestAllocator a;
  const std::string bytes = "0123456789";
  for (const bool roomy : {false, true}) {
    const auto make = [&](ZunString* s) {
      MakeTight(s, roomy ? bytes + std::string(30, '.') : bytes, a);
      s->size = bytes.size();
      s->buf[s->size] = '\0';
    };
    ZunString s;
    make(&s);
    EXPECT_EQ(ZunStringAppend(&s, &s), &s);
    ExpectHolds(&s, bytes + bytes);
    ZunStringDestruct(&s);
    for (ZunSizeT pos = 0; pos <= bytes.size(); ++pos) {
      for (ZunSizeT len = 0; len <= bytes.size(); ++len) {
        make(&s);
        EXPECT_EQ(ZunStringAppendSubstring(&s, &s, pos, len), &s);
        ExpectHolds(&s, bytes + bytes.substr(pos, len));
        ZunStringDestruct(&s);
        if (pos + len > bytes.size()) continue;
        make(&s);
        EXPECT_EQ(ZunStringAppendCStrLen(&s, s.buf + pos, len), &s);
        ExpectHolds(&s, bytes + bytes.substr(pos, len));
        ZunStringDestruct(&s);
      }
    }
  }
}

TEST(ZunString, SizeThatOverflowsIsAFailedAllocation) {
  TestAllocator a;
  a.RefuseAbove(1000000);
  Text empty(a.get());
  EXPECT_EQ(ZunStringAppendN(empty, SIZE_MAX, 'x'), nullptr);
  EXPECT_EQ(ZunStringAppendN(empty, SIZE_MAX - 1, 'x'), nullptr);
  EXPECT_EQ(ZunStringAppendCStrLen(empty, "x", SIZE_MAX), nullptr);
  ExpectHolds(empty, "");
  Text s("abc", a);
  for (ZunSizeT less = 0; less < 6; ++less) {
    EXPECT_EQ(ZunStringAppendN(s, SIZE_MAX - less, 'x'), nullptr);
    EXPECT_EQ(ZunStringAppendCStrLen(s, "x", SIZE_MAX - less), nullptr);
    ExpectHolds(s, "abc");
  }
}

TEST(ZunString, EveryRefusedOperationLeavesTheStringAsItWas) {
  const Text longer(std::string(40, 'l'));
  const std::function<ZunString*(ZunString*)> operations[] = {
      [&](ZunString* s) { return ZunStringAssign(s, longer.get()); },
      [&](ZunString* s) { return ZunStringAssignCStr(s, longer.get()->buf); },
      [&](ZunString* s) { return ZunStringAssignSubstring(s, longer.get(), 1, 30); },
      [&](ZunString* s) { return ZunStringAppend(s, longer.get()); },
      [&](ZunString* s) { return ZunStringAppend(s, s); },
      [&](ZunString* s) { return ZunStringAppendChar(s, 'c'); },
      [&](ZunString* s) { return ZunStringAppendN(s, 7, 'n'); },
      [&](ZunString* s) { return ZunStringAppendCStrLen(s, "tail", 4); },
      [&](ZunString* s) { return ZunStringAppendSubstring(s, longer.get(), 2, 3); },
  };
  for (const auto& operation : operations) {
    TestAllocator a;
    ZunString s;
    MakeTight(&s, "before", a);
    const ZunString before = s;
    a.RefuseFrom(0);
    EXPECT_EQ(operation(&s), nullptr);
    EXPECT_EQ(a.refused(), 1U);
    EXPECT_EQ(std::memcmp(&s, &before, sizeof(s)), 0);
    ExpectHolds(&s, "before");
    a.RefuseNothing();
    EXPECT_EQ(operation(&s), &s);
    ExpectSound(&s);
    ZunStringDestruct(&s);
  }
}

TEST(ZunString, RefusedConstructionOwnsNothing) {
  TestAllocator a;
  const Text source("abc", a);
  const std::size_t live = a.live_blocks();
  a.RefuseFrom(0);
  ZunString s;
  EXPECT_EQ(ZunStringConstructCopy(&s, source.get()), nullptr);
  EXPECT_EQ(ZunStringConstructSubstring(&s, source.get(), 0, 3, a), nullptr);
  EXPECT_EQ(a.live_blocks(), live);
}

// What an operation at random is given: some bytes, and a part of the string itself.
struct Arguments {
  std::string bytes;
  ZunSizeT own;
  ZunSizeT own_length;
};

// An operation, and what a string must hold after it.
struct Operation {
  ZunString* (*run)(ZunString* s, const Arguments& x);
  std::string (*expected)(const std::string& held, const Arguments& x);
};

const Operation kOperations[] = {
    {[](ZunString* s, const Arguments& x) { return ZunStringAssign(s, Text(x.bytes)); },
     [](const std::string&, const Arguments& x) { return x.bytes; }},
    {[](ZunString* s, const Arguments& x) { return ZunStringAssignSubstring(s, s, x.own, x.own_length); },
     [](const std::string& held, const Arguments& x) { return held.substr(x.own, x.own_length); }},
    {[](ZunString* s, const Arguments& x) { return ZunStringAppend(s, Text(x.bytes)); },
     [](const std::string& held, const Arguments& x) { return held + x.bytes; }},
    {[](ZunString* s, const Arguments&) { return ZunStringAppend(s, s); },
     [](const std::string& held, const Arguments&) { return held + held; }},
    {[](ZunString* s, const Arguments& x) { return ZunStringAppendSubstring(s, s, x.own, x.own_length); },
     [](const std::string& held, const Arguments& x) { return held + held.substr(x.own, x.own_length); }},
    {[](ZunString* s, const Arguments&) { return ZunStringAppendChar(s, 'z'); },
     [](const std::string& held, const Arguments&) { return held + 'z'; }},
    {[](ZunString* s, const Arguments& x) { return ZunStringAppendN(s, x.own_length, 'n'); },
     [](const std::string& held, const Arguments& x) { return held + std::string(x.own_length, 'n'); }},
    {[](ZunString* s, const Arguments& x) { return ZunStringAppendCStrLen(s, x.bytes.data(), x.bytes.size()); },
     [](const std::string& held, const Arguments& x) { return held + x.bytes; }},
    {[](ZunString* s, const Arguments& x) { return ZunStringAssignCStr(s, x.bytes.c_str()); },
     [](const std::string&, const Arguments& x) { return x.bytes; }},
    {[](ZunString* s, const Arguments&) {
       ZunStringClear(s);
       return s;
     },
     [](const std::string&, const Arguments&) { return std::string(); }},
};

TEST(ZunString, RandomOperationsAgreeWithAModel) {
  std::mt19937 random(20240501);
  const auto below = [&](ZunSizeT limit) { return static_cast<ZunSizeT>(random() % limit); };
  TestAllocator a;
  for (int round = 0; round < 40; ++round) {
    Text s(a.get());
    std::string model;
    for (int step = 0; step < 60; ++step) {
      const Arguments x = {std::string(below(40), static_cast<char>('a' + below(26))), below(model.size() + 1),
                           below(50)};
      const Operation& operation = kOperations[below(std::size(kOperations))];
      const bool refused = below(8) == 0;
      if (refused) a.RefuseFrom(0);
      const ZunString* const result = operation.run(s, x);
      a.RefuseNothing();
      EXPECT_TRUE(refused || result != nullptr);
      if (result != nullptr) model = operation.expected(model, x);
      ExpectHolds(s, model);
      if (model.size() > 4000) {
        ZunStringDestruct(s);
        model.clear();
      }
    }
  }
}

}  // namespace
