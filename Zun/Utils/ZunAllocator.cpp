#include "Zun/Utils/ZunAllocator.h"

#include <cstdlib>

namespace {

ZunVoidPtr HeapAllocate(ZunAllocator*, ZunSizeT size) { return std::malloc(size); }

void HeapDeallocate(ZunAllocator*, ZunVoidPtr block, ZunSizeT) { std::free(block); }

// Never written after its constant initialisation, so any number of threads may use it.
ZunAllocator system_allocator = {HeapAllocate, HeapDeallocate, SIZE_MAX, nullptr};

}  // namespace

ZunAllocator* ZunAllocatorGetSystem(void) { return &system_allocator; }
