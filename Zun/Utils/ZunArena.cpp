#include "Zun/Utils/ZunArena.h"

#include <cstddef>
#include <cstdint>
#include <functional>

namespace {

constexpr ZunSizeT kAlignment = 16;
static_assert(kAlignment % alignof(std::max_align_t) == 0);

ZunSizeT RoundUp(ZunSizeT size) { return (size + kAlignment - 1) & ~(kAlignment - 1); }

// The allocator is the arena's first member.
ZunArena* ArenaOf(ZunAllocator* a) { return reinterpret_cast<ZunArena*>(a); }
static_assert(offsetof(ZunArena, allocator) == 0);

bool IsOfBlock(const ZunArena* p, const ZunUint8* octets) {
  return !std::less<const ZunUint8*>()(octets, p->block) && std::less<const ZunUint8*>()(octets, p->block + p->size);
}

ZunVoidPtr Allocate(ZunAllocator* a, ZunSizeT size) {
  ZunArena* const p = ArenaOf(a);
  // What is asked for twice has two addresses, even where it is nothing.
  const ZunSizeT taken = RoundUp(size == 0 ? 1 : size);
  if (taken < size || taken > p->size - p->used) return ZunAllocatorAllocate(p->overflow, size);
  ZunUint8* const octets = p->block + p->used;
  p->used += taken;
  ++p->live;
  if (p->used > p->highWater) p->highWater = p->used;
  return octets;
}

void Deallocate(ZunAllocator* a, ZunVoidPtr block, ZunSizeT size) {
  ZunArena* const p = ArenaOf(a);
  ZunUint8* const octets = static_cast<ZunUint8*>(block);
  if (!IsOfBlock(p, octets)) {
    ZunAllocatorDeallocate(p->overflow, block, size);
    return;
  }
  const ZunSizeT begin = static_cast<ZunSizeT>(octets - p->block);
  const bool was_last = begin + RoundUp(size == 0 ? 1 : size) == p->used;
  if (--p->live == 0) {
    p->used = 0;
  } else if (was_last) {
    p->used = begin;
  }
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
