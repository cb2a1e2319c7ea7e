#include "fuzz/Allocator.h"

#include <cstdlib>
#include <cstring>

#include "fuzz/Check.h"

namespace fuzz {

Allocator::~Allocator() { Check(blocks_.empty(), "every block is given back"); }

ZunVoidPtr Allocator::Allocate(ZunAllocator* a, ZunSizeT size) {
  auto* const self = static_cast<Allocator*>(a->userData);
  Check(size != 0, "no empty block is asked for");
  const std::size_t number = self->allocations_++;
  constexpr std::size_t kTooMuch = std::size_t{1} << 30;
  if (size > kTooMuch || number == self->refused_from_ || (number > self->refused_from_ && self->refuses_for_ever_)) {
    ++self->refused_;
    return nullptr;
  }
  void* const block = std::malloc(size);
  Check(block != nullptr, "the heap suffices");
  std::memset(block, 0xCD, size);  // what is not written must not be told apart by chance
  self->blocks_[block] = size;
  self->live_bytes_ += size;
  if (self->live_bytes_ > self->peak_bytes_) self->peak_bytes_ = self->live_bytes_;
  return block;
}

void Allocator::Deallocate(ZunAllocator* a, ZunVoidPtr block, ZunSizeT size) {
  auto* const self = static_cast<Allocator*>(a->userData);
  const auto found = self->blocks_.find(block);
  Check(found != self->blocks_.end(), "a block is given back once, to the allocator that gave it");
  Check(found->second == size, "a block is given back with the size that was asked for");
  self->blocks_.erase(found);
  self->live_bytes_ -= size;
  std::free(block);
}

}  // namespace fuzz
