// In which order a vector builds, overwrites and ends its elements, and what it leaves when one of them fails.
#include "Zun/Utils/ZunVector.h"

#include <gtest/gtest.h>

#include <cstring>
#include <functional>

#include "tests/support/TestAllocator.h"
#include "tests/support/VectorKinds.h"

namespace {

using namespace test;

class ZunVectorOrder : public ::testing::Test {
 protected:
  using Ops = ProbeVectorOps;
  using V = ZunVector_Probe;
  using ProbeVec = Vec<ProbeKind>;

  void SetUp() override { probes::failing = -1; }
  void TearDown() override {
    probes::failing = -1;
    EXPECT_TRUE(probes::live.empty());
  }

  // What `operation` did to elements.
  static Events EventsOf(const std::function<void()>& operation) {
    probes::events.clear();
    operation();
    return probes::events;
  }

  // Runs `operation` with its n-th element operation failing.
  static Events EventsOfFailing(int n, const std::function<void()>& operation) {
    probes::failing = n;
    Events events = EventsOf(operation);
    EXPECT_EQ(probes::failing, -1) << "there is no operation " << n;
    probes::failing = -1;
    return events;
  }

  TestAllocator a_;
  TestAllocator b_;
};

TEST_F(ZunVectorOrder, ClearAndDestructGoFromTheLastToTheFirst) {
  ProbeVec v({1, 2, 3}, a_);
  EXPECT_EQ(EventsOf([&] { Ops::Clear(v); }), (Events{"end 3", "end 2", "end 1"}));
  ProbeVec w({1, 2, 3}, a_);
  EXPECT_EQ(EventsOf([&] { Ops::Destruct(w); }), (Events{"end 3", "end 2", "end 1"}));
}

TEST_F(ZunVectorOrder, FailedConstructionEndsTheCopiesInReverseOrder) {
  ProbeVec source({1, 2, 3, 4}, a_);
  const One<ProbeKind> one(9);
  V v;
  const std::size_t live = a_.live_blocks();
  EXPECT_EQ(EventsOfFailing(2, [&] { EXPECT_EQ(Ops::ConstructCopy(&v, source), nullptr); }),
            (Events{"copy 1", "copy 2", "end 2", "end 1"}));
  EXPECT_EQ(EventsOfFailing(3, [&] { EXPECT_EQ(Ops::ConstructRange(&v, source.at(0), source.at(4), a_), nullptr); }),
            (Events{"copy 1", "copy 2", "copy 3", "end 3", "end 2", "end 1"}));
  EXPECT_EQ(EventsOfFailing(2, [&] { EXPECT_EQ(Ops::ConstructN(&v, 3, one, a_), nullptr); }),
            (Events{"copy 9", "copy 9", "end 9", "end 9"}));
  EXPECT_EQ(EventsOfFailing(0, [&] { EXPECT_EQ(Ops::ConstructN(&v, 3, one, a_), nullptr); }), Events{});
  EXPECT_EQ(a_.live_blocks(), live);
}

TEST_F(ZunVectorOrder, ReserveCopiesThenEndsTheOldOnes) {
  ProbeVec v({1, 2, 3}, a_);
  EXPECT_EQ(EventsOf([&] { EXPECT_TRUE(Ops::Reserve(v, 4)); }),
            (Events{"copy 1", "copy 2", "copy 3", "end 3", "end 2", "end 1"}));
}

TEST_F(ZunVectorOrder, FailedReserveEndsTheCopiesAndLeavesTheVector) {
  ProbeVec v({1, 2, 3}, a_);
  const V before = *v.get();
  EXPECT_EQ(EventsOfFailing(2, [&] { EXPECT_FALSE(Ops::Reserve(v, 4)); }),
            (Events{"copy 1", "copy 2", "end 2", "end 1"}));
  EXPECT_EQ(std::memcmp(v.get(), &before, sizeof(before)), 0);
  EXPECT_EQ(v.numbers(), (Ints{1, 2, 3}));
  EXPECT_EQ(a_.live_blocks(), 1U);
}

TEST_F(ZunVectorOrder, PushBackRelocatesThenCopies) {
  ProbeVec v({1, 2}, a_);
  const One<ProbeKind> one(3);
  EXPECT_EQ(EventsOf([&] { EXPECT_TRUE(Ops::PushBack(v, one)); }),
            (Events{"copy 1", "copy 2", "end 2", "end 1", "copy 3"}));
  EXPECT_EQ(EventsOf([&] { EXPECT_TRUE(Ops::PushBack(v, one)); }), Events{"copy 3"});
}

TEST_F(ZunVectorOrder, FailedPushBackKeepsTheSize) {
  const One<ProbeKind> one(3);
  for (int n = 0; n < 3; ++n) {
    ProbeVec v({1, 2}, a_);
    EventsOfFailing(n, [&] { EXPECT_FALSE(Ops::PushBack(v, one)); });
    EXPECT_EQ(v.numbers(), (Ints{1, 2}));
    EXPECT_EQ(v.capacity(), n == 2 ? 4U : 2U);
  }
}

TEST_F(ZunVectorOrder, AssignInPlaceOverwritesThenEndsTheSurplus) {
  ProbeVec v({1, 2, 3, 4}, a_);
  ProbeVec o({7, 8}, a_);
  EXPECT_EQ(EventsOf([&] { EXPECT_NE(Ops::Assign(v, o), nullptr); }),
            (Events{"assign 7 over 1", "assign 8 over 2", "end 4", "end 3"}));
}

TEST_F(ZunVectorOrder, AssignInPlaceOverwritesThenCopiesTheRest) {
  ProbeVec v({1}, a_, 3);
  ProbeVec o({7, 8, 9}, a_);
  EXPECT_EQ(EventsOf([&] { EXPECT_NE(Ops::Assign(v, o), nullptr); }), (Events{"assign 7 over 1", "copy 8", "copy 9"}));
}

TEST_F(ZunVectorOrder, AssignIntoFreshStorageEndsTheOldOnesFirst) {
  ProbeVec v({1, 2}, a_);
  ProbeVec o({7, 8, 9}, b_);
  EXPECT_EQ(EventsOf([&] { EXPECT_NE(Ops::Assign(v, o), nullptr); }),
            (Events{"end 2", "end 1", "copy 7", "copy 8", "copy 9"}));
}

TEST_F(ZunVectorOrder, FailedAssignKeepsWhatWasDone) {
  ProbeVec o({7, 8, 9}, b_);
  const Ints within_surplus[] = {{1, 2, 3, 4}, {7, 2, 3, 4}, {7, 8, 3, 4}};
  const Ints within_growing[] = {{1}, {7}, {7, 8}};
  const Ints beyond[] = {{}, {7}, {7, 8}};
  for (int n = 0; n < 3; ++n) {
    ProbeVec surplus({1, 2, 3, 4}, a_);
    EventsOfFailing(n, [&] { EXPECT_EQ(Ops::Assign(surplus, o), nullptr); });
    EXPECT_EQ(surplus.numbers(), within_surplus[n]);
    ProbeVec growing({1}, a_, 3);
    EventsOfFailing(n, [&] { EXPECT_EQ(Ops::Assign(growing, o), nullptr); });
    EXPECT_EQ(growing.numbers(), within_growing[n]);
    ProbeVec replaced({1}, a_);
    EventsOfFailing(n, [&] { EXPECT_EQ(Ops::Assign(replaced, o), nullptr); });
    EXPECT_EQ(replaced.numbers(), beyond[n]);
    EXPECT_EQ(replaced.capacity(), 3U);
  }
}

TEST_F(ZunVectorOrder, EraseMovesDownByAssignment) {
  ProbeVec v({1, 2, 3, 4}, a_);
  EXPECT_EQ(EventsOf([&] { EXPECT_EQ(Ops::Erase(v, v.at(1)), v.at(1)); }),
            (Events{"assign 3 over 2", "assign 4 over 3", "end 4"}));
  ProbeVec w({1, 2, 3, 4, 5, 6}, a_);
  EXPECT_EQ(EventsOf([&] { EXPECT_EQ(Ops::EraseRange(w, w.at(1), w.at(3)), w.at(3)); }),
            (Events{"assign 4 over 2", "assign 5 over 3", "assign 6 over 4", "end 6", "end 5"}));
  ProbeVec last({1, 2}, a_);
  EXPECT_EQ(EventsOf([&] { EXPECT_EQ(Ops::Erase(last, last.at(1)), last.at(1)); }), Events{"end 2"});
}

// The vector ends at the destination that failed; what it drops gives its storage back.
TEST_F(ZunVectorOrder, FailedEraseEndsAtTheFailedDestination) {
  const Ints left[] = {{1}, {1, 3}};
  for (int n = 0; n < 2; ++n) {
    ProbeVec v({1, 2, 3, 4}, a_);
    EventsOfFailing(n, [&] { EXPECT_EQ(Ops::Erase(v, v.at(1)), nullptr); });
    EXPECT_EQ(v.numbers(), left[n]);
    EXPECT_EQ(v.capacity(), 4U);
    EXPECT_EQ(probes::live.size(), v.numbers().size());
  }
  const Ints left_of_range[] = {{1}, {1, 4}, {1, 4, 5}};
  for (int n = 0; n < 3; ++n) {
    ProbeVec v({1, 2, 3, 4, 5, 6}, a_);
    EventsOfFailing(n, [&] { EXPECT_EQ(Ops::EraseRange(v, v.at(1), v.at(3)), nullptr); });
    EXPECT_EQ(v.numbers(), left_of_range[n]);
    EXPECT_EQ(probes::live.size(), v.numbers().size());
  }
}

TEST_F(ZunVectorOrder, ResizeDownEndsFromTheLast) {
  ProbeVec v({1, 2, 3}, a_);
  EXPECT_EQ(EventsOf([&] { EXPECT_TRUE(Ops::Resize(v, 1, nullptr)); }), (Events{"end 3", "end 2"}));
}

TEST_F(ZunVectorOrder, FailedResizeKeepsTheElementsBuilt) {
  const One<ProbeKind> one(9);
  const Ints left[] = {{1, 2}, {1, 2, 9}, {1, 2, 9, 9}};
  for (int n = 0; n < 3; ++n) {
    ProbeVec v({1, 2}, a_, 10);
    EventsOfFailing(n, [&] { EXPECT_FALSE(Ops::Resize(v, 5, one)); });
    EXPECT_EQ(v.numbers(), left[n]);
  }
  ProbeVec full({1, 2}, a_);
  EventsOfFailing(1, [&] { EXPECT_FALSE(Ops::Resize(full, 5, one)); });
  EXPECT_EQ(full.numbers(), (Ints{1, 2}));
  EXPECT_EQ(full.capacity(), 2U);
}

TEST_F(ZunVectorOrder, InsertIntoNewStorageCopiesHeadValuesAndTail) {
  ProbeVec v({1, 2}, a_);
  ProbeVec more({7, 8}, a_);
  EXPECT_EQ(EventsOf([&] { EXPECT_TRUE(Ops::InsertRange(v, v.at(1), more.at(0), more.at(2))); }),
            (Events{"copy 1", "copy 7", "copy 8", "copy 2", "end 2", "end 1"}));
}

// Insertion in place builds only beyond the old end; everything else is assigned.
TEST_F(ZunVectorOrder, InsertInPlaceBuildsOnlyWhatIsNew) {
  ProbeVec more({7, 8}, a_);
  ProbeVec v({1, 2, 3, 4}, a_, 6);
  const Events events = EventsOf([&] { EXPECT_TRUE(Ops::InsertRange(v, v.at(1), more.at(0), more.at(2))); });
  EXPECT_EQ(events, (Events{"copy 3", "copy 4", "assign 2 over 4", "assign 7 over 2", "assign 8 over 3"}));
}

TEST_F(ZunVectorOrder, FailedInsertKeepsTheSize) {
  for (const ZunSizeT capacity : {4U, 10U}) {
    for (ZunSizeT pos = 0; pos <= 4; ++pos) {
      for (int n = 0;; ++n) {
        ProbeVec v({1, 2, 3, 4}, a_, capacity);
        ProbeVec more({7, 8}, a_);
        probes::failing = n;
        const ZunBool done = Ops::InsertRange(v, v.at(pos), more.at(0), more.at(2));
        const bool failed = probes::failing == -1;
        probes::failing = -1;
        EXPECT_EQ(done == 0, failed);
        const Ints read = v.numbers();
        EXPECT_EQ(read.size(), failed ? 4U : 6U);
        EXPECT_EQ(Cut(read, 0, pos), Cut({1, 2, 3, 4}, 0, pos));
        if (failed && capacity == 4) {
          EXPECT_EQ(read, (Ints{1, 2, 3, 4}));
        }
        if (!failed) break;
      }
    }
  }
}

TEST_F(ZunVectorOrder, FailedSwapEndsTheCopiesInTheNewBlock) {
  for (int n = 0; n < 5; ++n) {
    ProbeVec x({1, 2, 3}, a_, 5);
    ProbeVec y({7, 8}, b_);
    const Events events = EventsOfFailing(n, [&] { EXPECT_FALSE(Ops::Swap(x, y)); });
    EXPECT_EQ(y.numbers(), (Ints{7, 8}));
    EXPECT_EQ(y.capacity(), 2U);
    if (n < 3) {
      EXPECT_EQ(x.numbers(), (Ints{1, 2, 3}));
    }
    if (n == 2) {
      EXPECT_EQ(events, (Events{"copy 1", "copy 2", "end 2", "end 1"}));
    }
    EXPECT_EQ(b_.live_blocks(), 1U);
    EXPECT_EQ(probes::live.size(), x.numbers().size() + 2);
  }
}

}  // namespace
