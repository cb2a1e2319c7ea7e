// Where the memory of C++ objects comes from: the system, a block of the caller's, a std::pmr::memory_resource.
#ifndef ZUN_RTP_CPP_MEMORY_H
#define ZUN_RTP_CPP_MEMORY_H

#include <cstddef>
#include <memory_resource>
#include <span>

#include "Zun/Utils/ZunAllocator.h"
#include "Zun/Utils/ZunArena.h"

namespace zun::rtcp {

// The C library's heap. Objects take it unless they are given another allocator.
inline ZunAllocator* system_allocator() noexcept { return ZunAllocatorGetSystem(); }

// Memory from one block of the caller's, which outlives the arena, as the arena outlives the objects that are built
// with it. What does not fit into the block is refused, unless there is an `overflow` to ask.
class Arena {
 public:
  explicit Arena(std::span<std::byte> block, ZunAllocator* overflow = nullptr) noexcept {
    ZunArenaConstruct(&arena_, block.data(), block.size(), overflow);
  }
  Arena(const Arena&) = delete;
  Arena& operator=(const Arena&) = delete;

  // So an arena may stand wherever an allocator is asked for.
  operator ZunAllocator*() noexcept { return ZunArenaGetAllocator(&arena_); }

  // Forgets everything that was handed out. Objects that are still there must not be used any more.
  void reset() noexcept { ZunArenaReset(&arena_); }
  std::size_t used() const noexcept { return ZunArenaGetUsed(&arena_); }
  std::size_t high_water_mark() const noexcept { return ZunArenaGetHighWaterMark(&arena_); }

 private:
  ZunArena arena_;
};

// Memory from a std::pmr::memory_resource, which outlives this, as this outlives the objects that are built with it. A
// resource that throws std::bad_alloc refuses, as an allocator does, where exceptions are compiled; without them such
// a resource ends the program.
class ResourceAllocator {
 public:
  explicit ResourceAllocator(std::pmr::memory_resource* resource = std::pmr::get_default_resource()) noexcept
      : allocator_{Allocate, Deallocate, SIZE_MAX, resource} {}
  ResourceAllocator(const ResourceAllocator&) = delete;
  ResourceAllocator& operator=(const ResourceAllocator&) = delete;

  operator ZunAllocator*() noexcept { return &allocator_; }

 private:
  static std::pmr::memory_resource& ResourceOf(ZunAllocator* a) noexcept {
    return *static_cast<std::pmr::memory_resource*>(a->userData);
  }
  // Nothing may be thrown through the library.
  static ZunVoidPtr Allocate(ZunAllocator* a, ZunSizeT size) noexcept {
#if defined(__cpp_exceptions)
    try {
      return ResourceOf(a).allocate(size);
    } catch (...) {
      return nullptr;
    }
#else
    return ResourceOf(a).allocate(size);
#endif
  }
  static void Deallocate(ZunAllocator* a, ZunVoidPtr block, ZunSizeT size) noexcept {
    ResourceOf(a).deallocate(block, size);
  }

  ZunAllocator allocator_;
};

}  // namespace zun::rtcp

#endif
