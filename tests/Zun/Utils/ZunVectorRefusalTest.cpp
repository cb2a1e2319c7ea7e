// What every vector operation leaves when an allocation is refused or a size overflows.
#include "Zun/Utils/ZunVector.h"

#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <random>
#include <type_traits>

#include "tests/support/TestAllocator.h"
#include "tests/support/VectorKinds.h"

namespace {

using namespace test;

template <class Kind>
class ZunVectorRefusal : public ::testing::Test {
 protected:
  void TearDown() override { EXPECT_TRUE(probes::live.empty()); }
};

TYPED_TEST_SUITE(ZunVectorRefusal, VectorKinds, VectorKindNames);

TYPED_TEST(ZunVectorRefusal, SizeThatOverflowsIsAFailedAllocation) {
  USE_VECTOR_KIND;
  TestAllocator a;
  const One<Kind> one(9);
  Vec<Kind> v({1, 2, 3}, a, 4);
  Vec<Kind> bare(a.get());
  const V before = *v.get();
  const std::size_t calls = a.calls();
  constexpr ZunSizeT first_that_overflows = SIZE_MAX / sizeof(E) + 1;
  for (const ZunSizeT n : {SIZE_MAX, SIZE_MAX - 1, SIZE_MAX - 3, SIZE_MAX - 4, first_that_overflows}) {
    V constructed;
    EXPECT_EQ(Ops::ConstructN(&constructed, n, one, a), nullptr);
    for (V* const x : {v.get(), bare.get()}) {
      EXPECT_EQ(Ops::Reserve(x, n), 0);
      EXPECT_EQ(Ops::Resize(x, n, one), 0);
      EXPECT_EQ(Ops::InsertN(x, Ops::Begin(x), n, one), 0);
      EXPECT_EQ(Ops::InsertN(x, Ops::End(x), n, one), 0);
    }
    EXPECT_EQ(Ops::InsertN(v, v.at(1), n, v.at(2)), 0);
    EXPECT_EQ(Ops::Resize(v, n, v.at(2)), 0);
  }
  EXPECT_EQ(a.calls(), calls) << "an allocation of a wrapped size was tried";
  EXPECT_EQ(std::memcmp(v.get(), &before, sizeof(before)), 0);
  EXPECT_TRUE(IsBare(*bare.get()));
  EXPECT_EQ(v.numbers(), (Ints{1, 2, 3}));
}

// The doubled capacity overflows, or the size of its block does, although the new size itself does not.
TYPED_TEST(ZunVectorRefusal, CapacityThatOverflowsIsAFailedAllocation) {
  USE_VECTOR_KIND;
  TestAllocator a;
  a.RefuseAbove(1 << 20);
  const One<Kind> one(9);
  Vec<Kind> v({1, 2, 3}, a);
  Vec<Kind> bare(a.get());
  for (const ZunSizeT n :
       {SIZE_MAX / sizeof(E), SIZE_MAX / sizeof(E) - 3, SIZE_MAX / 2, SIZE_MAX / 2 + 1, SIZE_MAX / sizeof(E) / 2 + 1}) {
    EXPECT_EQ(Ops::InsertN(v, v.at(0), n, one), 0);
    EXPECT_EQ(Ops::InsertN(bare, Ops::End(bare), n, one), 0);
    EXPECT_EQ(Ops::Resize(v, n, one), 0);
    EXPECT_EQ(Ops::Reserve(v, n), 0);
  }
  EXPECT_EQ(v.numbers(), (Ints{1, 2, 3}));
  EXPECT_EQ(v.capacity(), 3U);
  EXPECT_TRUE(IsBare(*bare.get()));
}

// Every allocation refused, of the vector's storage and of the elements' (the same allocator serves both).
TYPED_TEST(ZunVectorRefusal, RefusedConstructionOwnsNothing) {
  USE_VECTOR_KIND;
  const std::function<V*(V*, V*, ZunAllocator*)> constructors[] = {
      [](V* x, V* o, ZunAllocator* a) { return Ops::ConstructN(x, 4, o->begin + 1, a); },
      [](V* x, V* o, ZunAllocator* a) { return Ops::ConstructRange(x, o->begin, o->end, a); },
      [](V* x, V* o, ZunAllocator*) { return Ops::ConstructCopy(x, o); },
  };
  for (const auto& construct : constructors) {
    const std::size_t allocations = ForEveryRefusalAfter([&](TestAllocator& a, const std::function<void()>& begin) {
      Vec<Kind> source({1, 2, 0, 4}, a, 4, a);
      const std::size_t live = a.live_blocks();
      begin();
      V v;
      V* const result = construct(&v, source, a);
      EXPECT_EQ(result == nullptr, a.refused() > 0);
      if (result == nullptr) {
        EXPECT_EQ(a.live_blocks(), live);
      }
      if (result != nullptr) Ops::Destruct(&v);
    });
    EXPECT_GE(allocations, Kind::kOwnsMemory ? 4U : 1U);
  }
}

TYPED_TEST(ZunVectorRefusal, RefusedReserveOrPushBackLeavesTheElements) {
  USE_VECTOR_KIND;
  ForEveryRefusalAfter([](TestAllocator& a, const std::function<void()>& begin) {
    Vec<Kind> v({1, 2, 3}, a, 3, a);
    const V before = *v.get();
    begin();
    const ZunBool done = Ops::Reserve(v, 10);
    EXPECT_EQ(done != 0, a.refused() == 0);
    if (!done) {
      EXPECT_EQ(std::memcmp(v.get(), &before, sizeof(before)), 0);
    }
    EXPECT_EQ(v.numbers(), (Ints{1, 2, 3}));
  });
  ForEveryRefusalAfter([](TestAllocator& a, const std::function<void()>& begin) {
    const One<Kind> one(8, a);
    Vec<Kind> v({1, 2, 3}, a, 3, a);
    begin();
    const ZunBool done = Ops::PushBack(v, one);
    EXPECT_EQ(done != 0, a.refused() == 0);
    EXPECT_EQ(v.numbers(), done ? (Ints{1, 2, 3, 8}) : (Ints{1, 2, 3}));
  });
}

// Size and everything in front of the position stay; what comes after it may hold other elements' values.
TYPED_TEST(ZunVectorRefusal, RefusedInsertKeepsTheSizeAndTheElementsInFront) {
  USE_VECTOR_KIND;
  for (const ZunSizeT capacity : {5U, 6U, 20U}) {
    for (ZunSizeT pos = 0; pos <= 5; ++pos) {
      for (int which = 0; which < 5; ++which) {
        ForEveryRefusalAfter([&](TestAllocator& a, const std::function<void()>& begin) {
          Vec<Kind> v({1, 2, 0, 4, 5}, a, capacity, a);
          Vec<Kind> more({7, 8, 9}, a, 3, a);
          begin();
          bool done = false;
          switch (which) {
            case 0:
              done = Ops::Insert(v, v.at(pos), more.at(0)) != nullptr;
              break;
            case 1:
              done = Ops::InsertN(v, v.at(pos), 3, more.at(0)) != 0;
              break;
            case 2:
              done = Ops::InsertRange(v, v.at(pos), more.at(0), more.at(3)) != 0;
              break;
            case 3:
              done = Ops::InsertRange(v, v.at(pos), v.at(1), v.at(4)) != 0;
              break;
            default:
              done = Ops::Insert(v, v.at(pos), v.at(1)) != nullptr;
              break;
          }
          EXPECT_EQ(done, a.refused() == 0);
          const Ints read = v.numbers();
          const Ints inserted[] = {{7}, {7, 7, 7}, {7, 8, 9}, {2, 0, 4}, {2}};
          if (done) {
            EXPECT_EQ(read, Inserted({1, 2, 0, 4, 5}, pos, inserted[which]));
          } else {
            ASSERT_EQ(read.size(), 5U);
            EXPECT_EQ(Cut(read, 0, pos), Cut({1, 2, 0, 4, 5}, 0, pos));
          }
        });
      }
    }
  }
}

TYPED_TEST(ZunVectorRefusal, RefusedAssignKeepsWhatWasDone) {
  USE_VECTOR_KIND;
  for (const ZunSizeT capacity : {3U, 8U}) {
    ForEveryRefusalAfter([&](TestAllocator& a, const std::function<void()>& begin) {
      Vec<Kind> v({0, 2, 3}, a, capacity, a);
      Vec<Kind> o({5, 6, 7, 8, 9}, a, 5, a);
      begin();
      const bool done = Ops::Assign(v, o) != nullptr;
      EXPECT_EQ(done, a.refused() == 0);
      const Ints read = v.numbers();
      if (done) {
        EXPECT_EQ(read, (Ints{5, 6, 7, 8, 9}));
      } else if (capacity == 8 && !std::is_same_v<Kind, PacketKind>) {
        // In place: a beginning of the new elements, and the old ones after them as long as none was appended.
        std::size_t assigned = 0;
        while (assigned < read.size() && read[assigned] == 5 + static_cast<int>(assigned)) ++assigned;
        const Ints old = {0, 2, 3};
        EXPECT_GE(read.size(), 3U);
        for (std::size_t i = assigned; i < read.size(); ++i) EXPECT_EQ(read[i], old[i]);
      } else if (capacity == 3) {
        EXPECT_EQ(read, Cut({5, 6, 7, 8, 9}, 0, read.size()));
      }
    });
  }
}

TYPED_TEST(ZunVectorRefusal, RefusedSwapLosesNothingButElements) {
  USE_VECTOR_KIND;
  for (const bool smaller_first : {false, true}) {
    ForEveryRefusalAfter([&](TestAllocator& a, const std::function<void()>& begin) {
      TestAllocator other;
      Vec<Kind> x({1, 2, 0}, a, 4, a);
      Vec<Kind> y({7, 8}, other, 2, a);
      begin();
      const ZunBool done = smaller_first ? Ops::Swap(y, x) : Ops::Swap(x, y);
      EXPECT_EQ(done != 0, a.refused() == 0);
      if (done) {
        EXPECT_EQ(x.numbers(), (Ints{7, 8}));
        EXPECT_EQ(y.numbers(), (Ints{1, 2, 0}));
      } else {
        EXPECT_TRUE(y.numbers() == (Ints{7, 8}) || x.numbers() == (Ints{1, 2, 0}));
      }
      EXPECT_EQ(x->allocator, a.get());
      EXPECT_EQ(y->allocator, other.get());
    });
  }
  // The new block alone refused: both are as they were.
  TestAllocator a;
  TestAllocator b;
  Vec<Kind> x({1, 2, 0}, a);
  Vec<Kind> y({7, 8}, b);
  a.RefuseFrom(0);
  b.RefuseFrom(0);
  EXPECT_EQ(Ops::Swap(x, y), 0);
  EXPECT_EQ(x.numbers(), (Ints{1, 2, 0}));
  EXPECT_EQ(y.numbers(), (Ints{7, 8}));
}

TYPED_TEST(ZunVectorRefusal, RefusedResizeKeepsTheElementsBuilt) {
  USE_VECTOR_KIND;
  for (const ZunSizeT capacity : {3U, 20U}) {
    ForEveryRefusalAfter([&](TestAllocator& a, const std::function<void()>& begin) {
      Vec<Kind> v({1, 2, 3}, a, capacity, a);
      const One<Kind> one(9, a);
      begin();
      const bool done = Ops::Resize(v, 6, one) != 0;
      EXPECT_EQ(done, a.refused() == 0);
      const Ints read = v.numbers();
      ASSERT_GE(read.size(), 3U);
      ASSERT_LE(read.size(), 6U);
      EXPECT_EQ(done, read.size() == 6U);
      EXPECT_EQ(read, Cut({1, 2, 3, 9, 9, 9}, 0, read.size()));
    });
  }
}

// Elements of growing size, so that assigning a later one over an earlier one needs storage.
TYPED_TEST(ZunVectorRefusal, RefusedEraseEndsWhereTheMoveFailed) {
  USE_VECTOR_KIND;
  const Ints before = {0, 3, 4, 5, 1};
  for (ZunSizeT first = 0; first < 4; ++first) {
    for (ZunSizeT last = first + 1; last < 5; ++last) {
      ForEveryRefusalAfter([&](TestAllocator& a, const std::function<void()>& begin) {
        Vec<Kind> v(before, a, 5, a);
        const Ints after = Without(before, first, last);
        begin();
        E* const given = v.at(last == first + 1 ? first : last);
        E* const result = last == first + 1 ? Ops::Erase(v, v.at(first)) : Ops::EraseRange(v, v.at(first), v.at(last));
        EXPECT_EQ(result == nullptr, a.refused() > 0);
        const Ints read = v.numbers();
        if (result != nullptr) {
          EXPECT_EQ(result, given);
          EXPECT_EQ(read, after);
        } else {
          ASSERT_GE(read.size(), first);
          ASSERT_LT(read.size(), after.size());
          EXPECT_EQ(read, Cut(after, 0, read.size()));
        }
      });
    }
  }
}

// Runs one operation at random on x, or one that makes it and y exchange something.
template <class Kind, class Below>
void RunAny(Vec<Kind>& x, Vec<Kind>& y, const One<Kind>& one, Below below) {
  using Ops = typename Kind::Ops;
  using E = typename Kind::E;
  const ZunSizeT size = x.numbers().size();
  E* const pos = x.at(below(size + 1));
  const ZunSizeT first = below(size + 1);
  E* const from = x.at(first);
  E* const to = x.at(first + below(size - first + 1));
  const E* const value = size == 0 ? static_cast<const E*>(one) : x.at(below(size));
  const std::function<void()> operations[] = {
      [&] { Ops::PushBack(x, one); },
      [&] { Ops::Insert(x, pos, one); },
      [&] { Ops::InsertN(x, pos, below(4), value); },
      [&] { Ops::InsertRange(x, pos, from, to); },
      [&] { Ops::InsertRange(x, pos, y->begin, y->end); },
      [&] { size == 0 ? nullptr : Ops::Erase(x, x.at(below(size))); },
      [&] { Ops::EraseRange(x, from, to); },
      [&] { Ops::Resize(x, below(size + 5), one); },
      [&] { Ops::Reserve(x, below(30)); },
      [&] { Ops::Assign(x, y); },
      [&] { Ops::Swap(x, y); },
      [&] { Ops::Assign(y, x); },
  };
  operations[below(std::size(operations))]();
}

// Allocations fail at random and the vector is used on: nothing is lost or freed twice, every element can be read.
TYPED_TEST(ZunVectorRefusal, RandomRefusalsLeaveAUsableVector) {
  USE_VECTOR_KIND;
  std::mt19937 random(815);
  const auto below = [&](ZunSizeT limit) { return static_cast<ZunSizeT>(random() % limit); };
  TestAllocator a;
  TestAllocator b;
  Vec<Kind> x(a.get());
  Vec<Kind> y(b.get());
  for (int step = 0; step < 4000; ++step) {
    const One<Kind> one(static_cast<int>(below(1000)), b);
    if (below(2) == 0) a.RefuseOnce(below(3));
    if (below(2) == 0) b.RefuseFrom(below(6));
    RunAny(x, y, one, below);
    a.RefuseNothing();
    b.RefuseNothing();
    if (x.numbers().size() > 40) Ops::Resize(x, 5, nullptr);
    y.numbers();
  }
  probes::events.clear();
}

}  // namespace
