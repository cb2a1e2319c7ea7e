// An allocator that watches its caller: it knows each live block and its size, counts, and refuses what it is told to.
#ifndef FUZZ_ALLOCATOR_H
#define FUZZ_ALLOCATOR_H

#include <cstddef>
#include <unordered_map>

#include "Zun/Utils/ZunAllocator.h"

namespace fuzz {

class Allocator {
 public:
  Allocator() : allocator_{Allocate, Deallocate, SIZE_MAX, this} {}
  ~Allocator();  // nothing may be live
  Allocator(const Allocator&) = delete;
  Allocator& operator=(const Allocator&) = delete;

  operator ZunAllocator*() { return &allocator_; }

  std::size_t live_blocks() const { return blocks_.size(); }
  std::size_t peak_bytes() const { return peak_bytes_; }
  // Of all that were asked for, those that were refused among them.
  std::size_t allocations() const { return allocations_; }
  std::size_t refused() const { return refused_; }

  // Refuses allocation number `n` from now on, which may be 0, or that one and all after it.
  void Refuse(std::size_t n, bool for_ever) {
    refused_from_ = allocations_ + n;
    refuses_for_ever_ = for_ever;
  }
  void RefuseNothing() { refused_from_ = SIZE_MAX; }

 private:
  static ZunVoidPtr Allocate(ZunAllocator* a, ZunSizeT size);
  static void Deallocate(ZunAllocator* a, ZunVoidPtr block, ZunSizeT size);

  ZunAllocator allocator_;
  std::unordered_map<void*, std::size_t> blocks_;
  std::size_t live_bytes_ = 0;
  std::size_t peak_bytes_ = 0;
  std::size_t allocations_ = 0;
  std::size_t refused_ = 0;
  std::size_t refused_from_ = SIZE_MAX;
  bool refuses_for_ever_ = false;
};

}  // namespace fuzz

#endif
