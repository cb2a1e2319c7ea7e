// Every vector operation, run on every kind of element.
#include "Zun/Utils/ZunVector.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <type_traits>

#include "tests/support/TestAllocator.h"
#include "tests/support/VectorKinds.h"

namespace {

using namespace test;

template <class Kind>
class ZunVector : public ::testing::Test {
 protected:
  void TearDown() override { EXPECT_TRUE(probes::live.empty()); }
};

TYPED_TEST_SUITE(ZunVector, VectorKinds, VectorKindNames);

// ---- construction

TYPED_TEST(ZunVector, DefaultIsEmptyAndOwnsNothing) {
  USE_VECTOR_KIND;
  TestAllocator a;
  V v;
  EXPECT_EQ(Ops::ConstructDefault(&v, a), &v);
  EXPECT_EQ(v.allocator, a.get());
  EXPECT_TRUE(IsBare(v));
  EXPECT_EQ(Ops::GetAllocator(&v), a.get());
  EXPECT_EQ(Ops::Empty(&v), 1);
  EXPECT_EQ(Ops::Size(&v), 0U);
  EXPECT_EQ(Ops::Capacity(&v), 0U);
  Ops::Clear(&v);
  Ops::Dump(&v);
  Ops::Destruct(&v);
  Ops::Destruct(&v);
  EXPECT_EQ(a.calls(), 0U);
}

TYPED_TEST(ZunVector, ConstructNHasExactlyNCopies) {
  USE_VECTOR_KIND;
  for (ZunSizeT n = 0; n <= 5; ++n) {
    TestAllocator a;
    const One<Kind> value(7);
    V v;
    ASSERT_EQ(Ops::ConstructN(&v, n, value, a), &v);
    EXPECT_EQ(v.allocator, a.get());
    EXPECT_EQ(Ops::Size(&v), n);
    EXPECT_EQ(Ops::Capacity(&v), n);
    for (ZunSizeT i = 0; i < n; ++i) EXPECT_EQ(Kind::Number(v.begin + i), 7);
    EXPECT_EQ(a.allocations(), n == 0 ? 0U : 1U);
    EXPECT_EQ(IsBare(v), n == 0);
    Ops::Destruct(&v);
  }
}

TYPED_TEST(ZunVector, ConstructRangeCopiesItExactly) {
  USE_VECTOR_KIND;
  TestAllocator a;
  TestAllocator other;
  Vec<Kind> source({0, 1, 2, 3}, other, 9);
  for (ZunSizeT first = 0; first <= 4; ++first) {
    for (ZunSizeT last = first; last <= 4; ++last) {
      Vec<Kind> v(a.get());
      ASSERT_EQ(Ops::ConstructRange(v, source.at(first), source.at(last), a), v.get());
      EXPECT_EQ(v->allocator, a.get());
      EXPECT_EQ(v.numbers(), Cut({0, 1, 2, 3}, first, last));
      EXPECT_EQ(v.capacity(), last - first);
    }
  }
  Vec<Kind> empty(a.get());
  EXPECT_EQ(Ops::ConstructRange(empty, nullptr, nullptr, a), empty.get());
  EXPECT_TRUE(IsBare(*empty.get()));
}

TYPED_TEST(ZunVector, ConstructCopyTakesTheSourcesAllocatorAndExactStorage) {
  USE_VECTOR_KIND;
  TestAllocator a;
  Vec<Kind> source({1, 0, 3}, a, 10);
  Vec<Kind> copy(ZunAllocatorGetSystem());
  ASSERT_EQ(Ops::ConstructCopy(copy, source), copy.get());
  EXPECT_EQ(copy->allocator, a.get());
  EXPECT_EQ(copy.numbers(), (Ints{1, 0, 3}));
  EXPECT_EQ(copy.capacity(), 3U);
}

TYPED_TEST(ZunVector, ConstructCopyOfAnEmptyVectorAllocatesNothing) {
  USE_VECTOR_KIND;
  TestAllocator a;
  Vec<Kind> source({}, a, 4);
  const std::size_t calls = a.calls();
  Vec<Kind> copy(ZunAllocatorGetSystem());
  EXPECT_EQ(Ops::ConstructCopy(copy, source), copy.get());
  EXPECT_EQ(copy->allocator, a.get());
  EXPECT_TRUE(IsBare(*copy.get()));
  EXPECT_EQ(a.calls(), calls);
}

TYPED_TEST(ZunVector, DestructLeavesItEmptyAndMayBeRepeated) {
  USE_VECTOR_KIND;
  TestAllocator a;
  Vec<Kind> v({1, 2, 3}, a, 5);
  Ops::Destruct(v);
  EXPECT_TRUE(IsBare(*v.get()));
  EXPECT_EQ(v->allocator, a.get());
  EXPECT_EQ(a.live_blocks(), 0U);
  const std::size_t calls = a.calls();
  Ops::Destruct(v);
  EXPECT_EQ(a.calls(), calls);
}

// ---- looking

TYPED_TEST(ZunVector, AccessorsReachEveryElement) {
  USE_VECTOR_KIND;
  TestAllocator a;
  Vec<Kind> v({4, 5, 6}, a, 7);
  const V* const c = v.get();
  EXPECT_EQ(Ops::Empty(c), 0);
  EXPECT_EQ(Ops::Size(c), 3U);
  EXPECT_EQ(Ops::Capacity(c), 7U);
  for (ZunSizeT i = 0; i < 3; ++i) {
    EXPECT_EQ(Ops::At(v, i), v->begin + i);
    EXPECT_EQ(Ops::AtConst(c, i), v->begin + i);
  }
  EXPECT_EQ(Kind::Number(Ops::Front(v)), 4);
  EXPECT_EQ(Kind::Number(Ops::FrontConst(c)), 4);
  EXPECT_EQ(Kind::Number(Ops::Back(v)), 6);
  EXPECT_EQ(Kind::Number(Ops::BackConst(c)), 6);
  EXPECT_EQ(Ops::Begin(v), v->begin);
  EXPECT_EQ(Ops::End(v), v->end);
  EXPECT_EQ(Ops::BeginConst(c), v->begin);
  EXPECT_EQ(Ops::EndConst(c), v->end);
  EXPECT_EQ(Ops::RBegin(v), v->end);
  EXPECT_EQ(Ops::REnd(v), v->begin);
  EXPECT_EQ(Ops::RBeginConst(c), v->end);
  EXPECT_EQ(Ops::REndConst(c), v->begin);
}

TYPED_TEST(ZunVector, MaxSizeIsWhat32BitsCanHold) {
  USE_VECTOR_KIND;
  EXPECT_EQ(Ops::MaxSize(), 0xFFFFFFFFU / sizeof(E));
  static_assert(std::is_same_v<typename Ops::SizeType, ZunSizeT>);
}

// ---- PushBack, PopBack, Reserve, Clear

TYPED_TEST(ZunVector, PushBackReservesTwoThenDoubles) {
  USE_VECTOR_KIND;
  TestAllocator a;
  Vec<Kind> v(a.get());
  Ints expected;
  for (const ZunSizeT capacity : {2U, 2U, 4U, 4U, 8U, 8U, 8U, 8U, 16U}) {
    const One<Kind> one(static_cast<int>(expected.size()));
    ASSERT_EQ(Ops::PushBack(v, one), 1);
    expected.push_back(static_cast<int>(expected.size()));
    EXPECT_EQ(v.capacity(), capacity);
    EXPECT_EQ(v.numbers(), expected);
  }
}

TYPED_TEST(ZunVector, PushBackIntoAFullVectorDoublesItsSize) {
  USE_VECTOR_KIND;
  TestAllocator a;
  Vec<Kind> v({1, 2, 3}, a);
  const One<Kind> one(9);
  ASSERT_TRUE(Ops::PushBack(v, one));
  EXPECT_EQ(v.capacity(), 6U);
  EXPECT_EQ(v.numbers(), (Ints{1, 2, 3, 9}));
}

TYPED_TEST(ZunVector, PushBackOfAnElementOfItsOwn) {
  USE_VECTOR_KIND;
  TestAllocator a;
  for (const ZunSizeT capacity : {3U, 10U}) {
    for (ZunSizeT i = 0; i < 3; ++i) {
      Vec<Kind> v({1, 2, 3}, a, capacity);
      ASSERT_TRUE(Ops::PushBack(v, v.at(i)));
      EXPECT_EQ(v.numbers(), (Ints{1, 2, 3, static_cast<int>(i) + 1}));
    }
  }
}

TYPED_TEST(ZunVector, PopBackEndsTheLastElement) {
  USE_VECTOR_KIND;
  TestAllocator a;
  Vec<Kind> v({1, 2, 3}, a, 3, a);
  Ops::PopBack(v);
  EXPECT_EQ(v.numbers(), (Ints{1, 2}));
  Ops::PopBack(v);
  Ops::PopBack(v);
  EXPECT_EQ(Ops::Empty(v.get()), 1);
  EXPECT_EQ(v.capacity(), 3U);
  EXPECT_EQ(a.live_blocks(), 1U);
}

TYPED_TEST(ZunVector, ReserveTakesExactlyWhatIsAsked) {
  USE_VECTOR_KIND;
  TestAllocator a;
  Vec<Kind> v(a.get());
  ASSERT_EQ(Ops::Reserve(v, 5), 1);
  EXPECT_EQ(v.capacity(), 5U);
  EXPECT_EQ(a.live_bytes(), 5 * sizeof(E));
  const One<Kind> one(3);
  ASSERT_TRUE(Ops::PushBack(v, one));
  ASSERT_EQ(Ops::Reserve(v, 6), 1);
  EXPECT_EQ(v.capacity(), 6U);
  EXPECT_EQ(v.numbers(), Ints{3});
  EXPECT_EQ(a.live_blocks(), 1U);
}

TYPED_TEST(ZunVector, ReserveBelowTheCapacityChangesNothing) {
  USE_VECTOR_KIND;
  TestAllocator a;
  Vec<Kind> v({1, 2, 3}, a, 5);
  Vec<Kind> bare(a.get());
  const V before = *v.get();
  const std::size_t calls = a.calls();
  for (ZunSizeT capacity = 0; capacity <= 5; ++capacity) EXPECT_EQ(Ops::Reserve(v, capacity), 1);
  EXPECT_EQ(Ops::Reserve(bare, 0), 1);
  EXPECT_EQ(std::memcmp(v.get(), &before, sizeof(before)), 0);
  EXPECT_TRUE(IsBare(*bare.get()));
  EXPECT_EQ(a.calls(), calls);
}

TYPED_TEST(ZunVector, ClearKeepsTheStorage) {
  USE_VECTOR_KIND;
  TestAllocator a;
  Vec<Kind> v({1, 2, 3}, a, 4, a);
  E* const storage = v->begin;
  Ops::Clear(v);
  EXPECT_EQ(Ops::Size(v.get()), 0U);
  EXPECT_EQ(v.capacity(), 4U);
  EXPECT_EQ(v->begin, storage);
  EXPECT_EQ(a.live_blocks(), 1U);
}

// ---- Assign

TYPED_TEST(ZunVector, AssignToItselfChangesNothing) {
  USE_VECTOR_KIND;
  TestAllocator a;
  Vec<Kind> v({1, 2}, a, 4);
  const V before = *v.get();
  const std::size_t calls = a.calls();
  EXPECT_EQ(Ops::Assign(v, v), v.get());
  EXPECT_EQ(std::memcmp(v.get(), &before, sizeof(before)), 0);
  EXPECT_EQ(v.numbers(), (Ints{1, 2}));
  EXPECT_EQ(a.calls(), calls);
}

// All sizes of both, and of spare room: within the capacity the storage stays, beyond it it is replaced exactly.
TYPED_TEST(ZunVector, AssignOfEverySizeOverEverySize) {
  USE_VECTOR_KIND;
  TestAllocator a;
  TestAllocator other;
  for (int old_size = 0; old_size <= 4; ++old_size) {
    for (int new_size = 0; new_size <= 6; ++new_size) {
      for (ZunSizeT spare = 0; spare <= 2; ++spare) {
        Ints before;
        Ints after;
        for (int i = 0; i < old_size; ++i) before.push_back(10 + i);
        for (int i = 0; i < new_size; ++i) after.push_back(20 + i);
        const ZunSizeT capacity = static_cast<ZunSizeT>(old_size) + spare;
        Vec<Kind> v(before, a, capacity);
        Vec<Kind> o(after, other, 9);
        E* const storage = v->begin;
        const bool fits = after.size() <= capacity;
        const std::size_t calls = a.calls();
        ASSERT_EQ(Ops::Assign(v, o), v.get());
        EXPECT_EQ(v.numbers(), after);
        EXPECT_EQ(o.numbers(), after);
        EXPECT_EQ(v->allocator, a.get());
        EXPECT_EQ(v.capacity(), fits ? capacity : after.size());
        if (fits) {
          EXPECT_EQ(v->begin, storage);
          EXPECT_EQ(a.calls(), calls);
        }
      }
    }
  }
}

TYPED_TEST(ZunVector, RefusedAssignIsEmptyAndWithoutStorage) {
  USE_VECTOR_KIND;
  TestAllocator a;
  TestAllocator other;
  Vec<Kind> v({1, 2}, a);
  Vec<Kind> o({3, 4, 5}, other);
  a.RefuseFrom(0);
  EXPECT_EQ(Ops::Assign(v, o), nullptr);
  EXPECT_TRUE(IsBare(*v.get()));
  EXPECT_EQ(v->allocator, a.get());
  EXPECT_EQ(a.live_blocks(), 0U);
  a.RefuseNothing();
  EXPECT_EQ(Ops::Assign(v, o), v.get());
  EXPECT_EQ(v.numbers(), (Ints{3, 4, 5}));
}

// ---- Swap

TYPED_TEST(ZunVector, SwapWithTheSameAllocatorExchangesStorage) {
  USE_VECTOR_KIND;
  TestAllocator a;
  Vec<Kind> x({1, 2, 3}, a, 5);
  Vec<Kind> y({4}, a);
  const V old_x = *x.get();
  const V old_y = *y.get();
  const std::size_t calls = a.calls();
  probes::events.clear();
  EXPECT_EQ(Ops::Swap(x, y), 1);
  EXPECT_EQ(std::memcmp(x.get(), &old_y, sizeof(V)), 0);
  EXPECT_EQ(std::memcmp(y.get(), &old_x, sizeof(V)), 0);
  EXPECT_EQ(a.calls(), calls);
  EXPECT_EQ(probes::events, Events{});
  EXPECT_EQ(Ops::Swap(x, x), 1);
  EXPECT_EQ(x.numbers(), Ints{4});
  Vec<Kind> bare(a.get());
  EXPECT_EQ(Ops::Swap(bare, y), 1);
  EXPECT_EQ(bare.numbers(), (Ints{1, 2, 3}));
  EXPECT_TRUE(IsBare(*y.get()));
}

TYPED_TEST(ZunVector, SwapOfTwoEmptyVectorsChangesNothing) {
  USE_VECTOR_KIND;
  TestAllocator a;
  TestAllocator b;
  Vec<Kind> x({}, a, 3);
  Vec<Kind> y({}, b, 5);
  a.RefuseFrom(0);
  b.RefuseFrom(0);
  EXPECT_EQ(Ops::Swap(x, y), 1);
  EXPECT_EQ(x.capacity(), 3U);
  EXPECT_EQ(y.capacity(), 5U);
  EXPECT_EQ(x->allocator, a.get());
  EXPECT_EQ(y->allocator, b.get());
}

// One of the two reuses its storage, the other one's becomes exact; TestAllocator sees to it that each block goes back
// to the allocator that it came from.
TYPED_TEST(ZunVector, SwapWithDifferentAllocatorsExchangesContents) {
  USE_VECTOR_KIND;
  TestAllocator a;
  TestAllocator b;
  for (int x_size = 0; x_size <= 4; ++x_size) {
    for (int y_size = 0; y_size <= 4; ++y_size) {
      for (const ZunSizeT spare : {0U, 5U}) {
        if (x_size + y_size == 0) continue;
        Ints in_x;
        Ints in_y;
        for (int i = 0; i < x_size; ++i) in_x.push_back(10 + i);
        for (int i = 0; i < y_size; ++i) in_y.push_back(20 + i);
        Vec<Kind> x(in_x, a, in_x.size() + spare);
        Vec<Kind> y(in_y, b, in_y.size() + spare);
        ASSERT_EQ(Ops::Swap(x, y), 1);
        EXPECT_EQ(x.numbers(), in_y);
        EXPECT_EQ(y.numbers(), in_x);
        EXPECT_EQ(x->allocator, a.get());
        EXPECT_EQ(y->allocator, b.get());
        const bool x_is_new = x.capacity() == in_y.size() && y.capacity() == in_y.size() + spare;
        const bool y_is_new = y.capacity() == in_x.size() && x.capacity() == in_x.size() + spare;
        EXPECT_TRUE(x_is_new || y_is_new) << x.capacity() << " " << y.capacity();
      }
    }
  }
}

// ---- Insert, InsertN, InsertRange

TYPED_TEST(ZunVector, InsertGrowsLikePushBackAndReturnsTheNewElement) {
  USE_VECTOR_KIND;
  TestAllocator a;
  const One<Kind> one(9);
  Vec<Kind> bare(a.get());
  E* const first = Ops::Insert(bare, Ops::End(bare), one);
  ASSERT_NE(first, nullptr);
  EXPECT_EQ(first, bare->begin);
  EXPECT_EQ(bare.capacity(), 2U);
  EXPECT_EQ(bare.numbers(), Ints{9});
  for (const ZunSizeT capacity : {3U, 4U}) {
    for (ZunSizeT pos = 0; pos <= 3; ++pos) {
      Vec<Kind> v({1, 2, 3}, a, capacity);
      E* const inserted = Ops::Insert(v, v.at(pos), one);
      EXPECT_EQ(inserted, v.at(pos));
      EXPECT_EQ(v.numbers(), Inserted({1, 2, 3}, pos, {9}));
      EXPECT_EQ(v.capacity(), capacity == 3 ? 6U : 4U);
    }
  }
}

TYPED_TEST(ZunVector, InsertNAtEveryPosition) {
  USE_VECTOR_KIND;
  TestAllocator a;
  const One<Kind> one(9);
  for (ZunSizeT size = 0; size <= 4; ++size) {
    const Ints before = Cut({1, 2, 3, 4}, 0, size);
    for (ZunSizeT n = 0; n <= 6; ++n) {
      for (ZunSizeT spare = 0; spare <= 6; ++spare) {
        for (ZunSizeT pos = 0; pos <= size; ++pos) {
          Vec<Kind> v(before, a, size + spare);
          ASSERT_EQ(Ops::InsertN(v, v.at(pos), n, one), 1);
          EXPECT_EQ(v.numbers(), Inserted(before, pos, Ints(n, 9)));
          const ZunSizeT capacity = size + spare;
          const ZunSizeT grown = capacity == 0 ? 2 * n : std::max(2 * capacity, size + n);
          EXPECT_EQ(v.capacity(), n <= spare ? capacity : grown);
        }
      }
    }
  }
}

TYPED_TEST(ZunVector, InsertRangeAtEveryPosition) {
  USE_VECTOR_KIND;
  TestAllocator a;
  const Ints more = {11, 12, 13, 14, 15, 16};
  Vec<Kind> source(more, a);
  for (ZunSizeT size = 0; size <= 4; ++size) {
    const Ints before = Cut({1, 2, 3, 4}, 0, size);
    for (ZunSizeT n = 0; n <= 6; ++n) {
      for (ZunSizeT spare = 0; spare <= 6; ++spare) {
        for (ZunSizeT pos = 0; pos <= size; ++pos) {
          Vec<Kind> v(before, a, size + spare);
          ASSERT_EQ(Ops::InsertRange(v, v.at(pos), source.at(6 - n), source.at(6)), 1);
          EXPECT_EQ(v.numbers(), Inserted(before, pos, Cut(more, 6 - n, 6)));
          const ZunSizeT capacity = size + spare;
          const ZunSizeT grown = capacity == 0 ? 2 * n : std::max(2 * capacity, size + n);
          EXPECT_EQ(v.capacity(), n <= spare ? capacity : grown);
        }
      }
    }
  }
}

TYPED_TEST(ZunVector, InsertOfNothingIntoAVectorWithoutStorage) {
  USE_VECTOR_KIND;
  TestAllocator a;
  a.RefuseFrom(0);
  Vec<Kind> v(a.get());
  EXPECT_EQ(Ops::InsertN(v, nullptr, 0, nullptr), 1);
  EXPECT_EQ(Ops::InsertRange(v, nullptr, nullptr, nullptr), 1);
  EXPECT_TRUE(IsBare(*v.get()));
  EXPECT_EQ(a.calls(), 0U);
}

// With and without room, at every position: as if the value, or the range, had been copied first. Where there is room
// no storage is asked for.
TYPED_TEST(ZunVector, InsertOfItsOwnElements) {
  USE_VECTOR_KIND;
  TestAllocator a;
  const Ints before = {1, 2, 3, 4};
  for (const ZunSizeT capacity : {4U, 5U, 6U, 20U}) {
    for (ZunSizeT pos = 0; pos <= 4; ++pos) {
      for (ZunSizeT own = 0; own < 4; ++own) {
        const int number = before[own];
        Vec<Kind> v(before, a, capacity);
        const std::size_t calls = a.calls();
        E* const inserted = Ops::Insert(v, v.at(pos), v.at(own));
        EXPECT_EQ(inserted, v.at(pos));
        EXPECT_EQ(a.calls() == calls, capacity > 4);
        EXPECT_EQ(v.numbers(), Inserted(before, pos, {number}));
        Vec<Kind> w(before, a, capacity);
        ASSERT_EQ(Ops::InsertN(w, w.at(pos), 3, w.at(own)), 1);
        EXPECT_EQ(w.numbers(), Inserted(before, pos, Ints(3, number)));
        for (ZunSizeT last = own; last <= 4; ++last) {
          Vec<Kind> r(before, a, capacity);
          const ZunSizeT n = last - own;
          const std::size_t calls_before = a.calls();
          ASSERT_EQ(Ops::InsertRange(r, r.at(pos), r.at(own), r.at(last)), 1);
          EXPECT_EQ(r.numbers(), Inserted(before, pos, Cut(before, own, last)));
          EXPECT_EQ(a.calls() == calls_before, 4 + n <= capacity);
          EXPECT_EQ(r.capacity(), 4 + n <= capacity ? capacity : std::max(2 * capacity, 4 + n));
        }
      }
    }
  }
}

// ---- Erase, EraseRange

TYPED_TEST(ZunVector, EraseAtEveryPositionReturnsThePosition) {
  USE_VECTOR_KIND;
  TestAllocator a;
  for (ZunSizeT pos = 0; pos < 4; ++pos) {
    Vec<Kind> v({1, 2, 0, 4}, a, 6);
    EXPECT_EQ(Ops::Erase(v, v.at(pos)), v.at(pos));
    EXPECT_EQ(v.numbers(), Without({1, 2, 0, 4}, pos, pos + 1));
    EXPECT_EQ(v.capacity(), 6U);
  }
}

TYPED_TEST(ZunVector, EraseRangeReturnsTheLastPointerItWasGiven) {
  USE_VECTOR_KIND;
  TestAllocator a;
  for (ZunSizeT first = 0; first <= 5; ++first) {
    for (ZunSizeT last = first; last <= 5; ++last) {
      Vec<Kind> v({1, 2, 3, 0, 5}, a);
      E* const given = v.at(last);
      EXPECT_EQ(Ops::EraseRange(v, v.at(first), v.at(last)), given);
      EXPECT_EQ(v.numbers(), Without({1, 2, 3, 0, 5}, first, last));
      EXPECT_EQ(v.capacity(), 5U);
    }
  }
}

// ---- Resize

TYPED_TEST(ZunVector, ResizeReservesTheSumOfOldAndNewSize) {
  USE_VECTOR_KIND;
  TestAllocator a;
  const One<Kind> one(9);
  Vec<Kind> v({1, 2, 3}, a);
  ASSERT_EQ(Ops::Resize(v, 5, one), 1);
  EXPECT_EQ(v.capacity(), 8U);
  EXPECT_EQ(v.numbers(), (Ints{1, 2, 3, 9, 9}));
  ASSERT_EQ(Ops::Resize(v, 6, one), 1);
  EXPECT_EQ(v.capacity(), 11U);
  Vec<Kind> roomy({1}, a, 20);
  ASSERT_EQ(Ops::Resize(roomy, 4, one), 1);
  EXPECT_EQ(roomy.capacity(), 20U);
  EXPECT_EQ(roomy.numbers(), (Ints{1, 9, 9, 9}));
}

TYPED_TEST(ZunVector, ResizeToLessOrTheSameNeedsNoValue) {
  USE_VECTOR_KIND;
  TestAllocator a;
  Vec<Kind> v({1, 2, 3}, a, 3, a);
  EXPECT_EQ(Ops::Resize(v, 3, nullptr), 1);
  EXPECT_EQ(v.numbers(), (Ints{1, 2, 3}));
  EXPECT_EQ(Ops::Resize(v, 1, nullptr), 1);
  EXPECT_EQ(v.numbers(), Ints{1});
  EXPECT_EQ(Ops::Resize(v, 0, nullptr), 1);
  EXPECT_EQ(v.capacity(), 3U);
  EXPECT_EQ(a.live_blocks(), 1U);
}

TYPED_TEST(ZunVector, ResizeToMoreWithoutAValueChangesNothing) {
  USE_VECTOR_KIND;
  TestAllocator a;
  Vec<Kind> v({1, 2, 3}, a);
  EXPECT_EQ(Ops::Resize(v, 4, nullptr), 0);
  EXPECT_EQ(v.numbers(), (Ints{1, 2, 3}));
  EXPECT_EQ(v.capacity(), 3U);
}

TYPED_TEST(ZunVector, ResizeWithAnElementOfItsOwn) {
  USE_VECTOR_KIND;
  TestAllocator a;
  for (const ZunSizeT capacity : {3U, 20U}) {
    for (ZunSizeT own = 0; own < 3; ++own) {
      Vec<Kind> v({1, 2, 3}, a, capacity);
      ASSERT_EQ(Ops::Resize(v, 5, v.at(own)), 1);
      const int number = static_cast<int>(own) + 1;
      EXPECT_EQ(v.numbers(), (Ints{1, 2, 3, number, number}));
    }
  }
}

// ---- iterators

// One walk for all kinds: `first` designates the element numbered 1, and increments go up to 4.
template <class It, class Kind>
void ExpectWalks(typename It::I first, typename It::I past) {
  using I = typename It::I;
  I it;
  ASSERT_EQ(It::ConstructCopy(&it, &first), &it);
  for (int i = 1; i <= 4; ++i) {
    EXPECT_EQ(It::Equal(&it, &past), 0);
    EXPECT_EQ(It::Less(&it, &past), 1);
    EXPECT_EQ(It::Less(&past, &it), 0);
    EXPECT_EQ(It::Subtract(&past, &it), 5 - i);
    EXPECT_EQ(It::Subtract(&it, &past), i - 5);
    EXPECT_EQ(Kind::Number(It::ContentOf(&it)), i);
    EXPECT_EQ(Kind::Number(It::ContentOfConst(&it)), i);
    for (int n = 1; n <= 4; ++n) {
      EXPECT_EQ(Kind::Number(It::At(&it, n - i)), n);
      const I there = It::Add(&it, n - i);
      EXPECT_EQ(Kind::Number(It::ContentOf(&there)), n);
      EXPECT_EQ(It::Less(&it, &there), n > i ? 1 : 0);
      EXPECT_EQ(It::Equal(&it, &there), n == i ? 1 : 0);
      EXPECT_EQ(It::Subtract(&there, &it), n - i);
      I moved = it;
      EXPECT_EQ(It::IncrementN(&moved, n - i), &moved);
      EXPECT_EQ(moved, there);
      EXPECT_EQ(It::DecrementN(&moved, n - i), &moved);
      EXPECT_EQ(moved, it);
    }
    EXPECT_EQ(It::Increment(&it), &it);
  }
  EXPECT_EQ(It::Equal(&it, &past), 1);
  EXPECT_EQ(It::Less(&it, &past), 0);
  EXPECT_EQ(It::Decrement(&it), &it);
  EXPECT_EQ(Kind::Number(It::ContentOf(&it)), 4);

  I other = first;
  It::Swap(&it, &other);
  EXPECT_EQ(it, first);
  EXPECT_EQ(Kind::Number(It::ContentOf(&other)), 4);
  EXPECT_EQ(It::Assign(&it, &other), &it);
  EXPECT_EQ(it, other);
  It::Destruct(&other);

  EXPECT_EQ(It::IsExceptional(&it), 0);
  EXPECT_EQ(It::ConstructExceptional(&it), &it);
  EXPECT_EQ(It::IsExceptional(&it), 1);
  EXPECT_EQ(it, nullptr);
  static_assert(std::is_same_v<typename It::D, ZunDistanceT>);
}

TYPED_TEST(ZunVector, IteratorsOfAllFourKindsWalk) {
  USE_VECTOR_KIND;
  TestAllocator a;
  Vec<Kind> up({1, 2, 3, 4}, a, 6);
  Vec<Kind> down({4, 3, 2, 1}, a, 6);
  ExpectWalks<typename Ops::Iterator, Kind>(Ops::Begin(up), Ops::End(up));
  ExpectWalks<typename Ops::ConstIterator, Kind>(Ops::BeginConst(up.get()), Ops::EndConst(up.get()));
  ExpectWalks<typename Ops::ReverseIterator, Kind>(Ops::RBegin(down), Ops::REnd(down));
  ExpectWalks<typename Ops::ConstReverseIterator, Kind>(Ops::RBeginConst(down.get()), Ops::REndConst(down.get()));
  static_assert(std::is_same_v<typename Ops::Iterator::I, E*>);
  static_assert(std::is_same_v<typename Ops::ConstIterator::I, const E*>);
  static_assert(std::is_same_v<typename Ops::ReverseIterator::I, E*>);
  static_assert(std::is_same_v<typename Ops::ConstReverseIterator::I, const E*>);
}

// ---- random operations against a model

// A vector on which one operation after the other is run at random, with what it must hold after each.
template <class Kind>
class Modelled {
 public:
  using Ops = typename Kind::Ops;
  using E = typename Kind::E;

  explicit Modelled(unsigned seed) : random_(seed), x_(a_.get()), y_(b_.get()) {}

  void Step() {
    const ZunSizeT size = in_x_.size();
    const int number = static_cast<int>(Below(1000));
    const One<Kind> one(number, of_elements_);
    const Ints more = SomeNumbers();
    Vec<Kind> range(more, a_, 0, of_elements_);
    const ZunSizeT own = size == 0 ? 0 : Below(size);
    const ZunSizeT own_last = size == 0 ? 0 : own + Below(size - own + 1);
    const bool own_value = size != 0 && Below(3) == 0;
    const Arguments arguments = {own_value ? x_.at(own) : one,
                                 own_value ? in_x_[own] : number,
                                 range->begin,
                                 range->end,
                                 &more,
                                 Below(size + 1),
                                 own,
                                 own_last,
                                 Below(5)};
    Run(arguments);
    ASSERT_EQ(x_.numbers(), in_x_);
    ASSERT_EQ(y_.numbers(), in_y_);
    ASSERT_EQ(x_.capacity(), capacity_);
  }

 private:
  // What an operation may use: a value, which may be an element of its own; a range; a position; a range of its own; a
  // number of elements.
  struct Arguments {
    const E* value;
    int of_value;
    const E* first;
    const E* last;
    const Ints* more;
    ZunSizeT pos;
    ZunSizeT own;
    ZunSizeT own_last;
    ZunSizeT n;
  };

  // The last three are run on long vectors only, as they make them short.
  void Run(const Arguments& x) {
    static constexpr void (Modelled::*kOperations[])(const Arguments&) = {
        &Modelled::PushBack,    &Modelled::PushBack,       &Modelled::Insert, &Modelled::InsertN,
        &Modelled::InsertRange, &Modelled::InsertOwnRange, &Modelled::Erase,  &Modelled::Resize,
        &Modelled::Reserve,     &Modelled::PopBack,        &Modelled::Swap,   &Modelled::AssignOther,
        &Modelled::Assign,      &Modelled::EraseRange,     &Modelled::Clear,  &Modelled::Rebuild};
    (this->*kOperations[Below(in_x_.size() > 60 ? 16 : 13)])(x);
  }

  void PushBack(const Arguments& x) {
    ASSERT_TRUE(Ops::PushBack(x_, x.value));
    Grow(1);
    in_x_.push_back(x.of_value);
  }
  void Insert(const Arguments& x) {
    ASSERT_NE(Ops::Insert(x_, x_.at(x.pos), x.value), nullptr);
    Grow(1);
    in_x_ = Inserted(in_x_, x.pos, {x.of_value});
  }
  void InsertN(const Arguments& x) {
    ASSERT_TRUE(Ops::InsertN(x_, x_.at(x.pos), x.n, x.value));
    Grow(x.n);
    in_x_ = Inserted(in_x_, x.pos, Ints(x.n, x.of_value));
  }
  void InsertRange(const Arguments& x) {
    ASSERT_TRUE(Ops::InsertRange(x_, x_.at(x.pos), x.first, x.last));
    Grow(x.more->size());
    in_x_ = Inserted(in_x_, x.pos, *x.more);
  }
  void InsertOwnRange(const Arguments& x) {
    ASSERT_TRUE(Ops::InsertRange(x_, x_.at(x.pos), x_.at(x.own), x_.at(x.own_last)));
    Grow(x.own_last - x.own);
    in_x_ = Inserted(in_x_, x.pos, Cut(in_x_, x.own, x.own_last));
  }
  void Erase(const Arguments& x) {
    if (in_x_.empty()) return;
    ASSERT_EQ(Ops::Erase(x_, x_.at(x.own)), x_.at(x.own));
    in_x_ = Without(in_x_, x.own, x.own + 1);
  }
  void EraseRange(const Arguments& x) {
    ASSERT_NE(Ops::EraseRange(x_, x_.at(x.own), x_.at(x.own_last)), nullptr);
    in_x_ = Without(in_x_, x.own, x.own_last);
  }
  void Resize(const Arguments& x) {
    const ZunSizeT size = in_x_.size();
    const ZunSizeT target = Below(size + 4);
    ASSERT_TRUE(Ops::Resize(x_, target, x.value));
    if (target > size) capacity_ = std::max(capacity_, size + target);
    in_x_.resize(target, x.of_value);
  }
  void Reserve(const Arguments&) {
    const ZunSizeT wanted = Below(2 * in_x_.size() + 4);
    ASSERT_TRUE(Ops::Reserve(x_, wanted));
    capacity_ = std::max(capacity_, wanted);
  }
  void PopBack(const Arguments&) {
    if (in_x_.empty()) return;
    Ops::PopBack(x_);
    in_x_.pop_back();
  }
  void Clear(const Arguments&) {
    Ops::Clear(x_);
    in_x_.clear();
  }
  void Swap(const Arguments&) {
    ASSERT_TRUE(Ops::Swap(x_, y_));
    in_x_.swap(in_y_);
    capacity_ = x_.capacity();  // either one's storage may be reused
  }
  void Assign(const Arguments&) {
    ASSERT_NE(Ops::Assign(x_, y_), nullptr);
    capacity_ = std::max<ZunSizeT>(capacity_, in_y_.size());
    in_x_ = in_y_;
  }
  void AssignOther(const Arguments&) {
    ASSERT_NE(Ops::Assign(y_, x_), nullptr);
    in_y_ = in_x_;
  }
  void Rebuild(const Arguments& x) {
    const int number = static_cast<int>(Below(1000));
    const One<Kind> one(number, of_elements_);
    Ops::Destruct(x_);
    ASSERT_NE(Ops::ConstructN(x_, x.n, one, a_), nullptr);
    in_x_ = Ints(x.n, number);
    capacity_ = x.n;
  }

  // What a vector grows to when `count` more come in at once.
  void Grow(ZunSizeT count) {
    const ZunSizeT size = in_x_.size();
    if (size + count <= capacity_) return;
    capacity_ = capacity_ == 0 ? 2 * count : std::max(2 * capacity_, size + count);
  }
  ZunSizeT Below(ZunSizeT limit) { return static_cast<ZunSizeT>(random_() % limit); }
  Ints SomeNumbers() {
    Ints numbers(Below(6));
    for (int& number : numbers) number = static_cast<int>(Below(1000));
    return numbers;
  }

  std::mt19937 random_;
  TestAllocator a_;
  TestAllocator b_;
  TestAllocator of_elements_;
  Vec<Kind> x_;
  Vec<Kind> y_;
  Ints in_x_;
  Ints in_y_;
  ZunSizeT capacity_ = 0;
};

TYPED_TEST(ZunVector, RandomOperationsAgreeWithAModel) {
  USE_VECTOR_KIND;
  Modelled<Kind> modelled(4711);
  for (int step = 0; step < 3000; ++step) {
    ASSERT_NO_FATAL_FAILURE(modelled.Step()) << "step " << step;
    if (step % 64 == 0) probes::events.clear();
  }
}

}  // namespace
