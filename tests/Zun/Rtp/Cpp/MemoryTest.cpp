#include "Zun/Rtp/Cpp/Memory.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <memory_resource>
#include <new>
#include <string>

#include "Zun/Rtp/Cpp/Packet.h"
#include "tests/support/Samples.h"

// The heap is watched: the library's calls of malloc, which the linker hands to these, and operator new.
namespace {
std::size_t heap_calls = 0;
}  // namespace
extern "C" {
void* __real_malloc(std::size_t size);
void* __wrap_malloc(std::size_t size) {
  ++heap_calls;
  return __real_malloc(size);
}
}
void* operator new(std::size_t size) {
  ++heap_calls;
  if (void* const block = std::malloc(size)) return block;
  std::abort();
}
void operator delete(void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t) noexcept { std::free(block); }

namespace {

using namespace zun::rtcp;

TEST(Arena, ThePacketsOfAllSamplesMakeNoHeapCall) {
  static std::array<std::byte, 1 << 16> block;
  static std::array<std::byte, 1 << 16> out;
  for (const test::Sample& sample : test::Samples()) {
    const auto octets = octets_of(sample.wire);
    const std::size_t before = heap_calls;
    Arena arena(block);
    {
      Packet packet(arena);
      ASSERT_TRUE(packet.decode(octets)) << sample.name;
      (void)visit(packet[0], [&](const auto& object) { return packet.append(object); });
      Packet copy(packet, arena);
      EXPECT_EQ(copy.size(), 2U);
      Packet moved(std::move(packet));
      (void)moved.encode(std::span(out));
      for (const auto datagram : moved.datagrams(std::span(out))) EXPECT_FALSE(datagram.empty());
    }
    EXPECT_EQ(heap_calls, before) << sample.name;
  }
  Nack on_the_heap;
  EXPECT_TRUE(on_the_heap.add(1));
  EXPECT_GT(heap_calls, 0U);  // the watch sees something, also under a checker that takes operator new for itself
}

TEST(Arena, TheWatchSeesTheLibrarysHeap) {
  const std::size_t before = heap_calls;
  Nack nack;
  ASSERT_TRUE(nack.add(1));
  EXPECT_EQ(heap_calls, before + 1);
}

TEST(Arena, RefusesWhatDoesNotFitUnlessThereIsAnOverflow) {
  std::array<std::byte, 64> block;
  Arena small(block);
  Packet packet(small);
  EXPECT_FALSE(packet.emplace<Nack>(1U, 2U));
  EXPECT_TRUE(packet.empty());
  Arena with_overflow(block, system_allocator());
  Packet second(with_overflow);
  EXPECT_TRUE(second.emplace<Nack>(1U, 2U));
}

TEST(Arena, TellsWhatItHandedOut) {
  alignas(16) std::array<std::byte, 256> block;
  Arena arena(block);
  {
    Nack nack(arena);
    ASSERT_TRUE(nack.add(1));
    EXPECT_EQ(arena.used(), 16U);
  }
  EXPECT_EQ(arena.used(), 0U);
  EXPECT_EQ(arena.high_water_mark(), 16U);
}

class CountingResource : public std::pmr::memory_resource {
 public:
  std::size_t live = 0;

 private:
  void* do_allocate(std::size_t size, std::size_t) override {
    live += size;
    return std::malloc(size);
  }
  void do_deallocate(void* block, std::size_t size, std::size_t) override {
    live -= size;
    std::free(block);
  }
  bool do_is_equal(const memory_resource& other) const noexcept override { return this == &other; }
};

TEST(ResourceAllocator, TakesAndGivesBackWithTheSizeThatWasAskedFor) {
  CountingResource resource;
  ResourceAllocator allocator(&resource);
  {
    Packet packet(allocator);
    ASSERT_TRUE(packet.decode(octets_of(test::Golden("SdesTwoChunks"))));
    EXPECT_GT(resource.live, 0U);
  }
  EXPECT_EQ(resource.live, 0U);
}

TEST(ResourceAllocator, AMonotonicBufferServesAWholePacket) {
  std::array<std::byte, 4096> block;
  std::pmr::monotonic_buffer_resource buffer(block.data(), block.size(), std::pmr::null_memory_resource());
  ResourceAllocator allocator(&buffer);
  const auto octets = octets_of(test::Golden("SdesTwoChunks"));
  const std::size_t before = heap_calls;
  Packet packet(allocator);
  EXPECT_TRUE(packet.decode(octets));
  EXPECT_EQ(heap_calls, before);
}

}  // namespace
