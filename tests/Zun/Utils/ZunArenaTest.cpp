#include "Zun/Utils/ZunArena.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <random>
#include <vector>

#include "tests/support/GuardedBlock.h"
#include "tests/support/TestAllocator.h"

namespace {

using namespace test;

constexpr ZunSizeT kUnit = 16;

// An arena over a block of its own, which ends at a page that nobody may touch.
class Arena {
 public:
  explicit Arena(ZunSizeT size, ZunAllocator* overflow = nullptr) : block_(size) {
    EXPECT_EQ(ZunArenaConstruct(&arena_, block_.octets(), size, overflow), &arena_);
  }

  ZunUint8* Allocate(ZunSizeT size) {
    return static_cast<ZunUint8*>(ZunAllocatorAllocate(ZunArenaGetAllocator(&arena_), size));
  }
  void Deallocate(ZunUint8* octets, ZunSizeT size) {
    ZunAllocatorDeallocate(ZunArenaGetAllocator(&arena_), octets, size);
  }
  bool Holds(const ZunUint8* octets) { return octets >= block_.octets() && octets < block_.octets() + block_.size(); }
  ZunSizeT used() const { return ZunArenaGetUsed(&arena_); }
  ZunSizeT high_water_mark() const { return ZunArenaGetHighWaterMark(&arena_); }
  ZunArena* get() { return &arena_; }

 private:
  GuardedBlock block_;
  ZunArena arena_;
};

TEST(ZunArena, HandsOutItsBlockFromTheFront) {
  Arena arena(4 * kUnit);
  ZunUint8* const first = arena.Allocate(1);
  ZunUint8* const second = arena.Allocate(17);
  EXPECT_TRUE(arena.Holds(first));
  EXPECT_EQ(second, first + kUnit);
  EXPECT_EQ(arena.used(), 3 * kUnit);
  EXPECT_EQ(arena.Allocate(17), nullptr);
  EXPECT_EQ(arena.Allocate(16), first + 3 * kUnit);
  EXPECT_EQ(arena.Allocate(1), nullptr);
  EXPECT_EQ(arena.used(), 4 * kUnit);
}

TEST(ZunArena, TakesBackWhatWasHandedOutLast) {
  Arena arena(8 * kUnit);
  ZunUint8* const first = arena.Allocate(20);
  ZunUint8* const second = arena.Allocate(33);
  arena.Deallocate(second, 33);
  EXPECT_EQ(arena.used(), 2 * kUnit);
  EXPECT_EQ(arena.Allocate(16), second);
  // What is in front of another stays until nothing is live.
  arena.Deallocate(first, 20);
  EXPECT_EQ(arena.used(), 3 * kUnit);
  arena.Deallocate(second, 16);
  EXPECT_EQ(arena.used(), 0U);
  EXPECT_EQ(arena.Allocate(8 * kUnit), first);
}

TEST(ZunArena, BeginsAgainWhenNothingIsLive) {
  Arena arena(4 * kUnit);
  for (int round = 0; round < 100; ++round) {
    ZunUint8* const first = arena.Allocate(16);
    ZunUint8* const second = arena.Allocate(32);
    ASSERT_NE(second, nullptr);
    arena.Deallocate(first, 16);
    arena.Deallocate(second, 32);
    EXPECT_EQ(arena.used(), 0U);
  }
}

TEST(ZunArena, RemembersTheMostThatItHandedOut) {
  Arena arena(8 * kUnit);
  EXPECT_EQ(arena.high_water_mark(), 0U);
  ZunUint8* const first = arena.Allocate(40);
  EXPECT_EQ(arena.high_water_mark(), 3 * kUnit);
  ZunUint8* const second = arena.Allocate(1);
  arena.Deallocate(second, 1);
  arena.Deallocate(first, 40);
  EXPECT_EQ(arena.high_water_mark(), 4 * kUnit);
  EXPECT_EQ(arena.Allocate(9 * kUnit), nullptr);
  EXPECT_EQ(arena.high_water_mark(), 4 * kUnit);
  ZunArenaReset(arena.get());
  EXPECT_EQ(arena.high_water_mark(), 4 * kUnit);
}

TEST(ZunArena, ForgetsEverythingWhenItIsReset) {
  Arena arena(4 * kUnit);
  ZunUint8* const first = arena.Allocate(1);
  arena.Allocate(1);
  ZunArenaReset(arena.get());
  EXPECT_EQ(arena.used(), 0U);
  EXPECT_EQ(arena.Allocate(4 * kUnit), first);
  arena.Deallocate(first, 4 * kUnit);
  EXPECT_EQ(arena.used(), 0U);
}

// The block is as large as it says from its first aligned byte on, and what is handed out never passes its end.
TEST(ZunArena, IsAlignedWhereverItsBlockBegins) {
  alignas(kUnit) ZunUint8 bytes[8 * kUnit];
  for (ZunSizeT offset = 0; offset <= 2 * kUnit; ++offset) {
    for (ZunSizeT size = 0; size <= 5 * kUnit; ++size) {
      ZunArena arena;
      ZunArenaConstruct(&arena, bytes + offset, size, nullptr);
      const ZunSizeT skipped = (kUnit - offset % kUnit) % kUnit;
      ZunSizeT count = 0;
      while (void* const block = ZunAllocatorAllocate(ZunArenaGetAllocator(&arena), 1)) {
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % alignof(std::max_align_t), 0U);
        EXPECT_EQ(block, bytes + offset + skipped + count * kUnit);
        ++count;
      }
      EXPECT_EQ(count, size > skipped ? (size - skipped) / kUnit : 0) << offset << ", " << size;
    }
  }
}

TEST(ZunArena, GivesNothingTwoAddressesToo) {
  Arena arena(2 * kUnit);
  ZunUint8* const first = arena.Allocate(0);
  ZunUint8* const second = arena.Allocate(0);
  EXPECT_NE(first, nullptr);
  EXPECT_NE(first, second);
  EXPECT_EQ(arena.Allocate(0), nullptr);
  arena.Deallocate(second, 0);
  EXPECT_EQ(arena.used(), kUnit);
  arena.Deallocate(first, 0);
  EXPECT_EQ(arena.used(), 0U);
}

TEST(ZunArena, MayHaveNoBlock) {
  TestAllocator overflow;
  for (ZunAllocator* const other : {static_cast<ZunAllocator*>(nullptr), overflow.get()}) {
    ZunArena arena;
    ZunArenaConstruct(&arena, nullptr, 0, other);
    void* const block = ZunAllocatorAllocate(ZunArenaGetAllocator(&arena), 8);
    EXPECT_EQ(block != nullptr, other != nullptr);
    if (block != nullptr) ZunAllocatorDeallocate(ZunArenaGetAllocator(&arena), block, 8);
    EXPECT_EQ(ZunArenaGetUsed(&arena), 0U);
  }
}

TEST(ZunArena, RefusesSizesThatOverflow) {
  Arena arena(4 * kUnit);
  for (const ZunSizeT size : {SIZE_MAX, SIZE_MAX - 1, SIZE_MAX - 14, SIZE_MAX - 15, SIZE_MAX / 2}) {
    EXPECT_EQ(arena.Allocate(size), nullptr);
  }
  EXPECT_NE(arena.Allocate(4 * kUnit), nullptr);
}

TEST(ZunArena, TurnsToTheOtherAllocatorWhereItDoesNotSuffice) {
  TestAllocator overflow;
  Arena arena(2 * kUnit, overflow);
  ZunUint8* const inside = arena.Allocate(20);
  ZunUint8* const outside = arena.Allocate(100);
  EXPECT_FALSE(arena.Holds(outside));
  EXPECT_EQ(overflow.live_bytes(), 100U);
  EXPECT_EQ(arena.used(), 2 * kUnit);
  EXPECT_EQ(arena.high_water_mark(), 2 * kUnit);
  arena.Deallocate(inside, 20);
  EXPECT_EQ(arena.used(), 0U);
  arena.Deallocate(outside, 100);
  EXPECT_EQ(overflow.live_blocks(), 0U);
  overflow.RefuseFrom(0);
  EXPECT_EQ(arena.Allocate(33), nullptr);
  EXPECT_NE(arena.Allocate(32), nullptr);
}

TEST(ZunArena, MayBeTheOtherAllocatorOfAnArena) {
  Arena large(16 * kUnit);
  Arena small(2 * kUnit, ZunArenaGetAllocator(large.get()));
  ZunUint8* const inside = small.Allocate(32);
  ZunUint8* const outside = small.Allocate(32);
  EXPECT_TRUE(large.Holds(outside));
  small.Deallocate(outside, 32);
  EXPECT_EQ(large.used(), 0U);
  small.Deallocate(inside, 32);
}

// Blocks are filled with a number of their own, and must still hold it when they go.
struct Live {
  ZunUint8* octets;
  ZunSizeT size;
  ZunUint8 mark;
};

TEST(ZunArena, KeepsBlocksApartWhateverComesAndGoes) {
  std::mt19937 random(1);
  for (const ZunSizeT size : {0U, 15U, 100U, 1000U, 5000U}) {
    TestAllocator overflow;
    Arena arena(size, overflow);
    std::vector<Live> live;
    ZunSizeT most = 0;
    for (int step = 0; step < 3000; ++step) {
      const bool adds = live.empty() || (live.size() < 40 && random() % 2 == 0);
      if (adds) {
        const ZunSizeT wanted = 1 + random() % 200;
        const auto mark = static_cast<ZunUint8>(random() % 256);
        live.push_back({arena.Allocate(wanted), wanted, mark});
        std::memset(live.back().octets, mark, wanted);
      } else {
        const std::size_t at = random() % 3 == 0 ? random() % live.size() : live.size() - 1;
        const Live gone = live[at];
        live.erase(live.begin() + static_cast<std::ptrdiff_t>(at));
        for (ZunSizeT i = 0; i < gone.size; ++i) ASSERT_EQ(gone.octets[i], gone.mark);
        arena.Deallocate(gone.octets, gone.size);
      }
      most = std::max(most, arena.used());
      ASSERT_LE(arena.used(), size);
    }
    EXPECT_EQ(arena.high_water_mark(), most);
    for (const Live& one : live) arena.Deallocate(one.octets, one.size);
    EXPECT_EQ(arena.used(), 0U);
    EXPECT_GT(overflow.allocations(), 0U);
  }
}

}  // namespace
