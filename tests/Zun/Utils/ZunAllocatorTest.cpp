#include "Zun/Utils/ZunAllocator.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <thread>
#include <vector>

namespace {

struct Calls {
  ZunAllocator* allocator = nullptr;
  ZunSizeT allocated = 0;
  ZunVoidPtr released = nullptr;
  ZunSizeT released_size = 0;
};

ZunVoidPtr RecordAllocate(ZunAllocator* a, ZunSizeT size) {
  auto* const calls = static_cast<Calls*>(a->userData);
  calls->allocator = a;
  calls->allocated = size;
  return size > a->maxSize ? nullptr : a->userData;
}

void RecordDeallocate(ZunAllocator* a, ZunVoidPtr block, ZunSizeT size) {
  auto* const calls = static_cast<Calls*>(a->userData);
  calls->allocator = a;
  calls->released = block;
  calls->released_size = size;
}

TEST(ZunAllocator, CallsGoToTheAllocatorsOwnFunctions) {
  Calls calls;
  ZunAllocator a = {RecordAllocate, RecordDeallocate, 100, &calls};
  EXPECT_EQ(ZunAllocatorAllocate(&a, 100), &calls);
  EXPECT_EQ(calls.allocator, &a);
  EXPECT_EQ(calls.allocated, 100U);
  EXPECT_EQ(ZunAllocatorAllocate(&a, 101), nullptr);
  int block = 0;
  ZunAllocatorDeallocate(&a, &block, 7);
  EXPECT_EQ(calls.released, &block);
  EXPECT_EQ(calls.released_size, 7U);
}

TEST(ZunAllocator, SystemAllocatorIsTheHeap) {
  ZunAllocator* const a = ZunAllocatorGetSystem();
  ASSERT_NE(a, nullptr);
  EXPECT_EQ(ZunAllocatorGetSystem(), a);
  for (ZunSizeT size = 1; size < 5000; size = size * 3 / 2 + 1) {
    void* const block = ZunAllocatorAllocate(a, size);
    ASSERT_NE(block, nullptr);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % alignof(std::max_align_t), 0U);
    std::memset(block, 0x5A, size);
    ZunAllocatorDeallocate(a, block, size);
  }
}

TEST(ZunAllocator, SystemAllocatorServesAnyThread) {
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([t] {
      ZunAllocator* const a = ZunAllocatorGetSystem();
      for (ZunSizeT i = 1; i < 2000; ++i) {
        auto* const block = static_cast<unsigned char*>(ZunAllocatorAllocate(a, i));
        ASSERT_NE(block, nullptr);
        std::memset(block, t, i);
        EXPECT_EQ(block[i - 1], t);
        ZunAllocatorDeallocate(a, block, i);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
}

}  // namespace
