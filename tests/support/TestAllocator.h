// An allocator that watches its caller: it counts what is live, checks the size and the surroundings of every
// block that comes back, and refuses the allocations it is told to.
#ifndef TESTS_SUPPORT_TESTALLOCATOR_H
#define TESTS_SUPPORT_TESTALLOCATOR_H

#include <cstddef>
#include <functional>
#include <set>

#include "Zun/Utils/ZunAllocator.h"

namespace test {

class TestAllocator {
 public:
  TestAllocator();
  ~TestAllocator();  // fails the test when a block is still live
  TestAllocator(const TestAllocator&) = delete;
  TestAllocator& operator=(const TestAllocator&) = delete;

  ZunAllocator* get() { return &allocator_; }
  operator ZunAllocator*() { return &allocator_; }

  std::size_t live_blocks() const { return live_blocks_; }
  std::size_t live_bytes() const { return live_bytes_; }
  // The most bytes that were live at any time.
  std::size_t peak_bytes() const { return peak_bytes_; }
  // Calls to allocate, refused ones included.
  std::size_t allocations() const { return allocations_; }
  std::size_t deallocations() const { return deallocations_; }
  std::size_t calls() const { return allocations_ + deallocations_; }
  std::size_t refused() const { return refused_; }

  // Refuses the allocation number `n` from now on (0 is the next one), those of these numbers, or number `n` and all
  // after it.
  void RefuseOnce(std::size_t n) { RefuseThese({n}); }
  void RefuseThese(const std::set<std::size_t>& numbers);
  void RefuseFrom(std::size_t n);
  void RefuseNothing();
  // Refuses every block of more than `size` bytes.
  void RefuseAbove(std::size_t size) { largest_ = size; }

 private:
  static ZunVoidPtr Allocate(ZunAllocator* a, ZunSizeT size);
  static void Deallocate(ZunAllocator* a, ZunVoidPtr block, ZunSizeT size);
  bool IsRefused(std::size_t number, std::size_t size) const;

  ZunAllocator allocator_;
  std::size_t live_blocks_ = 0;
  std::size_t live_bytes_ = 0;
  std::size_t peak_bytes_ = 0;
  std::size_t allocations_ = 0;
  std::size_t deallocations_ = 0;
  std::size_t refused_ = 0;
  std::set<std::size_t> refused_numbers_;
  std::size_t refused_from_;
  std::size_t largest_;
};

// Runs `scenario` again and again, refusing its first, second, third ... allocation, each once alone and once with
// all that follow, until a run meets no refusal. The scenario builds, operates, checks what a failure must leave,
// and destructs; whatever it leaves live fails the test. It gets the allocator that refuses, and its own others.
// Returns how many allocations the scenario makes.
std::size_t ForEveryRefusal(const std::function<void(TestAllocator& refusing)>& scenario);

// The same for a scenario that builds undisturbed first: allocations are counted and refused from its call of `begin`.
std::size_t ForEveryRefusalAfter(
    const std::function<void(TestAllocator& refusing, const std::function<void()>& begin)>& scenario);

}  // namespace test

#endif
