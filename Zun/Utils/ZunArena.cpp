#include "Zun/Utils/ZunArena.h"

#include <cstddef>
#include <cstdint>

namespace {

constexpr ZunSizeT kAlignment = 16;
static_assert(kAlignment % alignof(std::max_align_t) == 0);

ZunSizeT RoundUp(ZunSizeT size) { return (size + kAlignment - 1) & ~(kAlignment - 1); }

// What an allocation takes of the block. What is asked for twice has two addresses, even where it is nothing.
ZunSizeT TakenBy(ZunSizeT size) { return RoundUp(size + (size == 0)); }

// The allocator is the arena's first member.
ZunArena* ArenaOf(ZunAllocator* a) { return reinterpret_cast<ZunArena*>(a); }
static_assert(offsetof(ZunArena, allocator) == 0);

// Where in the block the octets lie; not below its size when they lie elsewhere.
ZunSizeT OffsetOf(const ZunArena* p, const void* octets) {
  return reinterpret_cast<std::uintptr_t>(octets) - reinterpret_cast<std::uintptr_t>(p->block);
}

ZunVoidPtr Allocate(ZunAllocator* a, ZunSizeT size) {
  ZunArena* const p = ArenaOf(a);
  const ZunSizeT left = p->size - p->used;  // a multiple of the alignment, so what fits unrounded fits rounded
  if (size > left || left == 0) [[unlikely]]
    return ZunAllocatorAllocate(p->overflow, size);
  const ZunSizeT taken = TakenBy(size);
  ZunUint8* const octets = p->block + p->used;
  p->used += taken;
  ++p->live;
  if (p->used > p->highWater) p->highWater = p->used;
  return octets;
}

void Deallocate(ZunAllocator* a, ZunVoidPtr block, ZunSizeT size) {
  ZunArena* const p = ArenaOf(a);
  const ZunSizeT begin = OffsetOf(p, block);
  if (begin >= p->size) [[unlikely]] {
    ZunAllocatorDeallocate(p->overflow, block, size);
    return;
  }
  if (begin + TakenBy(size) == p->used) p->used = begin;
  if (--p->live == 0) p->used = 0;
}

}  // namespace

ZunArena* ZunArenaConstruct(ZunArena* p, void* block, ZunSizeT size, ZunAllocator* overflow) {
  const ZunSizeT misaligned = reinterpret_cast<std::uintptr_t>(block) % kAlignment;
  const ZunSizeT skipped = misaligned == 0 ? 0 : kAlignment - misaligned;
  p->allocator = {Allocate, Deallocate, size, nullptr};
  p->overflow = overflow;
  p->block = static_cast<ZunUint8*>(block);
  p->size = 0;
  if (skipped < size) {
    p->block += skipped;
    p->size = (size - skipped) & ~(kAlignment - 1);
  }
  p->highWater = 0;
  ZunArenaReset(p);
  return p;
}

void ZunArenaReset(ZunArena* p) {
  p->used = 0;
  p->live = 0;
}
