// The algorithms of all vectors (ZunVector.h says what each does), written once. A source that uses those of a vector
// says ZUN_VECTOR_USE_PLAIN(E) or ZUN_VECTOR_USE_OWNING(E); in one source ZUN_VECTOR_DEFINE(E) gives them their C
// names.
#ifndef ZUN_UTILS_VECTORALGORITHMS_H
#define ZUN_UTILS_VECTORALGORITHMS_H

#include <cassert>
#include <cstring>
#include <functional>
#include <type_traits>
#include <utility>

#include "Zun/Utils/ZunVector.h"

namespace zun {

// The algorithms of a vector that is in use (ZUN_VECTOR_USE_PLAIN and so on, at the end).
template <class V>
struct VectorTraits;

template <class V>
using ElementOf = std::remove_pointer_t<decltype(V::begin)>;

// The element operations of a plain value: runs of elements are handled as blocks of memory.
template <class E>
struct PlainElement {
  static_assert(std::is_trivially_copyable_v<E>);

  static ZunSizeT ConstructRun(E* to, const E* from, ZunSizeT count) {
    if (count != 0) std::memcpy(to, from, count * sizeof(E));
    return count;
  }
  static ZunSizeT ConstructFill(E* to, const E* value, ZunSizeT count) {
    const E filling = *value;
    for (ZunSizeT i = 0; i < count; ++i) to[i] = filling;
    return count;
  }
  static bool AssignRunUp(E* to, const E* from, ZunSizeT count, ZunSizeT* done) {
    if (count != 0) std::memmove(to, from, count * sizeof(E));
    *done = count;
    return true;
  }
  static bool AssignRunDown(E* to, const E* from, ZunSizeT count) {
    if (count != 0) std::memmove(to, from, count * sizeof(E));
    return true;
  }
  static void DestructRun(E*, E*) {}
};

// The element operations of a value that owns memory, made of its three public functions.
template <class E, E* (*Copy)(E*, const E*), E* (*Assign)(E*, const E*), void (*Destruct)(E*)>
struct OwningElement {
  // Copies `count` elements into raw storage; returns how many were built before one failed.
  static ZunSizeT ConstructRun(E* to, const E* from, ZunSizeT count) {
    ZunSizeT built = 0;
    while (built < count && Copy(to + built, from + built) != nullptr) ++built;
    return built;
  }
  static ZunSizeT ConstructFill(E* to, const E* value, ZunSizeT count) {
    ZunSizeT built = 0;
    while (built < count && Copy(to + built, value) != nullptr) ++built;
    return built;
  }
  // Assigns over live elements from the first to the last; `done` tells how many succeeded.
  static bool AssignRunUp(E* to, const E* from, ZunSizeT count, ZunSizeT* done) {
    for (*done = 0; *done < count; ++*done) {
      if (Assign(to + *done, from + *done) == nullptr) return false;
    }
    return true;
  }
  // Assigns over live elements from the last to the first.
  static bool AssignRunDown(E* to, const E* from, ZunSizeT count) {
    while (count > 0) {
      --count;
      if (Assign(to + count, from + count) == nullptr) return false;
    }
    return true;
  }
  // Ends the elements of [first, last) from the last to the first.
  static void DestructRun(E* first, E* last) {
    while (last != first) Destruct(--last);
  }
};

template <class V, class Element>
class VectorAlgorithms {
 public:
  using Vector = V;
  using E = ElementOf<V>;

  static V* ConstructDefault(V* x, ZunAllocator* a) {
    *x = {a, nullptr, nullptr, nullptr};
    return x;
  }

  static V* ConstructN(V* x, ZunSizeT n, const E* value, ZunAllocator* a) {
    return ConstructFilled(x, n, a, [&](E* to) { return Element::ConstructFill(to, value, n); });
  }

  static V* ConstructRange(V* x, const E* first, const E* last, ZunAllocator* a) {
    const ZunSizeT n = Distance(first, last);
    return ConstructFilled(x, n, a, [&](E* to) { return Element::ConstructRun(to, first, n); });
  }

  static V* ConstructCopy(V* x, const V* o) { return ConstructRange(x, o->begin, o->end, o->allocator); }

  static void Destruct(V* x) {
    Clear(x);
    FreeStorage(x);
  }

  static V* Assign(V* x, const V* o) {
    if (x == o) return x;
    return Size(o) <= Capacity(x) ? AssignInPlace(x, o) : AssignIntoFresh(x, o);
  }

  static ZunBool Swap(V* x, V* y) {
    if (x->begin == x->end && y->begin == y->end) return 1;
    if (x->allocator == y->allocator) {
      std::swap(*x, *y);
      return 1;
    }
    return Size(x) >= Size(y) ? SwapByCopy(x, y) : SwapByCopy(y, x);
  }

  static ZunBool PushBack(V* x, const E* value) {
    const Aliased source(x, value);
    if (!GrowIfFull(x)) return 0;
    if (Element::ConstructRun(x->end, source.In(x), 1) == 0) return 0;
    ++x->end;
    return 1;
  }

  static void PopBack(V* x) { TruncateAt(x, x->end - 1); }

  static ZunBool Reserve(V* x, ZunSizeT capacity) {
    if (capacity <= Capacity(x)) return 1;
    const ZunSizeT size = Size(x);
    E* const fresh = Allocate(x->allocator, capacity);
    if (fresh == nullptr) return 0;
    if (x->begin == nullptr) {  // as in all that is built fresh: there is nothing to copy and nothing to end
      UseStorage(x, fresh, 0, capacity);
      return 1;
    }
    if (!BuildOrUndo(fresh, Element::ConstructRun(fresh, x->begin, size), size)) {
      Free(x->allocator, fresh, capacity);
      return 0;
    }
    ReplaceStorage(x, fresh, size, capacity);
    return 1;
  }

  static void Clear(V* x) { TruncateAt(x, x->begin); }

  static E* Insert(V* x, E* pos, const E* value) {
    const ZunSizeT index = Distance(x->begin, pos);
    return InsertN(x, pos, 1, value) ? x->begin + index : nullptr;
  }

  static ZunBool InsertN(V* x, E* pos, ZunSizeT n, const E* value) {
    return InsertFrom(Repeated{value, IsInside(x, value)}, x, pos, n);
  }

  static ZunBool InsertRange(V* x, E* pos, const E* first, const E* last) {
    return InsertFrom(Range{first, IsInside(x, first)}, x, pos, Distance(first, last));
  }

  static E* Erase(V* x, E* pos) { return CloseGap(x, pos, pos + 1) ? pos : nullptr; }

  static E* EraseRange(V* x, E* first, E* last) {
    if (first == last) return first;
    return CloseGap(x, first, last) ? last : nullptr;  // callers rely on getting `last` back
  }

  static ZunBool Resize(V* x, ZunSizeT n, const E* value) {
    const ZunSizeT size = Size(x);
    if (n <= size) {
      Truncate(x, n);
      return 1;
    }
    if (value == nullptr || n > SIZE_MAX - size) return 0;
    const Aliased source(x, value);
    if (!Reserve(x, size + n)) return 0;
    const ZunSizeT built = Element::ConstructFill(x->end, source.In(x), n - size);
    x->end += built;
    return built == n - size;
  }

  // Ends the elements from number `size` on.
  static void Truncate(V* x, ZunSizeT size) { TruncateAt(x, x->begin + size); }
  // Ends the elements from `new_end` on.
  static void TruncateAt(V* x, E* new_end) {
    E* const old_end = x->end;
    x->end = new_end;
    Element::DestructRun(new_end, old_end);
  }

  static void DestructElement(E* element) { Element::DestructRun(element, element + 1); }

  static ZunSizeT Size(const V* x) { return Distance(x->begin, x->end); }
  static ZunSizeT Capacity(const V* x) { return Distance(x->begin, x->endBuf); }
  // Whether there is storage for as many elements as take `size` bytes: a comparison that needs no division.
  static bool HasStorage(const V* x, ZunSizeT size) {
    return static_cast<ZunSizeT>(reinterpret_cast<const char*>(x->endBuf) - reinterpret_cast<const char*>(x->begin)) >=
           size;
  }

  // Makes room for one more element, growing as PushBack does.
  static bool GrowIfFull(V* x) {
    if (x->end != x->endBuf) return true;
    return Reserve(x, x->begin == nullptr ? kFirstCapacity : Size(x) * 2);
  }

  // Makes room for `count` elements in all, at once, with the capacity that appending them one by one would reach.
  static bool ReserveGrown(V* x, ZunSizeT count) {
    if (count <= Capacity(x)) return true;
    return count <= SIZE_MAX / 4 && Reserve(x, GrownCapacity(x, count));
  }

  // The same, or, where one block for all is refused, room for fewer in blocks of doubling size. Returns whether there
  // is room for all.
  static bool ReserveGrownOrLess(V* x, ZunSizeT count) {
    if (ReserveGrown(x, count)) return true;
    if (count > SIZE_MAX / 4) return false;
    const ZunSizeT refused = GrownCapacity(x, count);
    ZunSizeT capacity = Capacity(x) == 0 ? kFirstCapacity : 2 * Capacity(x);
    while (capacity < refused && Reserve(x, capacity)) capacity *= 2;
    return false;
  }

 private:
  static constexpr ZunSizeT kFirstCapacity = 2;

  // A value that may be an element of the vector it is copied into, found again after the vector grew.
  class Aliased {
   public:
    Aliased(const V* x, const E* value)
        : value_(value), inside_(IsInside(x, value)), index_(inside_ ? Distance(x->begin, value) : 0) {}
    const E* In(const V* x) const { return inside_ ? x->begin + index_ : value_; }

   private:
    const E* value_;
    bool inside_;
    ZunSizeT index_;
  };

  static ZunSizeT Distance(const E* first, const E* last) { return static_cast<ZunSizeT>(last - first); }

  // The first capacity of at least `count` that doubling reaches.
  static ZunSizeT GrownCapacity(const V* x, ZunSizeT count) {
    ZunSizeT capacity = Capacity(x) == 0 ? kFirstCapacity : Capacity(x);
    while (capacity < count) capacity *= 2;
    return capacity;
  }

  static bool IsInside(const V* x, const E* value) {
    return !std::less<const E*>()(value, x->begin) && std::less<const E*>()(value, x->end);
  }

  static E* Allocate(ZunAllocator* a, ZunSizeT count) {
    if (count > SIZE_MAX / sizeof(E)) return nullptr;
    return static_cast<E*>(ZunAllocatorAllocate(a, count * sizeof(E)));
  }
  static void Free(ZunAllocator* a, E* block, ZunSizeT count) {
    assert(a != nullptr && "an allocator that is NULL gave a block");
    ZunAllocatorDeallocate(a, block, count * sizeof(E));
  }

  static void FreeStorage(V* x) {
    if (x->begin != nullptr) Free(x->allocator, x->begin, Capacity(x));
    ConstructDefault(x, x->allocator);
  }

  static void ReplaceStorage(V* x, E* block, ZunSizeT size, ZunSizeT capacity) {
    Destruct(x);
    UseStorage(x, block, size, capacity);
  }
  static void UseStorage(V* x, E* block, ZunSizeT size, ZunSizeT capacity) {
    x->begin = block;
    x->end = block + size;
    x->endBuf = block + capacity;
  }

  // Whether all elements of a run were built; those of one that failed are ended.
  static bool BuildOrUndo(E* first, ZunSizeT built, ZunSizeT wanted) {
    if (built == wanted) return true;
    Element::DestructRun(first, first + built);
    return false;
  }

  template <class Fill>
  static V* ConstructFilled(V* x, ZunSizeT n, ZunAllocator* a, Fill fill) {
    ConstructDefault(x, a);
    if (n == 0) return x;
    E* const block = Allocate(a, n);
    if (block == nullptr) return nullptr;
    if (!BuildOrUndo(block, fill(block), n)) {
      Free(a, block, n);
      return nullptr;
    }
    ReplaceStorage(x, block, n, n);
    return x;
  }

  static V* AssignInPlace(V* x, const V* o) {
    const ZunSizeT size = Size(o);
    const ZunSizeT shared = size < Size(x) ? size : Size(x);
    ZunSizeT done = 0;
    if (!Element::AssignRunUp(x->begin, o->begin, shared, &done)) return nullptr;
    Truncate(x, shared);
    return AppendRun(x, o->begin + shared, size - shared) ? x : nullptr;
  }

  static V* AssignIntoFresh(V* x, const V* o) {
    Destruct(x);
    if (!Reserve(x, Size(o))) return nullptr;
    return AppendRun(x, o->begin, Size(o)) ? x : nullptr;
  }

  // Appends copies into storage that is there; those built before one failed stay.
  static bool AppendRun(V* x, const E* from, ZunSizeT count) {
    const ZunSizeT built = Element::ConstructRun(x->end, from, count);
    x->end += built;
    return built == count;
  }

  // `larger` holds at least as many elements as `smaller`, so its storage has room for those: its elements
  // are copied into a new block of `smaller`'s allocator, and it receives the others where they were.
  static bool SwapByCopy(V* larger, V* smaller) {
    V incoming;
    if (ConstructRange(&incoming, larger->begin, larger->end, smaller->allocator) == nullptr) return false;
    Clear(larger);
    if (!AppendRun(larger, smaller->begin, Size(smaller))) {
      Destruct(&incoming);
      return false;
    }
    ReplaceStorage(smaller, incoming.begin, Size(&incoming), Capacity(&incoming));
    return true;
  }

  // What is inserted: one value over and over, or a range. Both hand out any run of it as long as the vector has not
  // changed; Assign does so when the elements from `pos` on have moved up by `n`, those of the source among them.
  struct Repeated {
    const E* value;
    bool is_inside;
    ZunSizeT Construct(E* to, ZunSizeT, ZunSizeT count) const { return Element::ConstructFill(to, value, count); }
    bool Assign(E* pos, ZunSizeT count, ZunSizeT n) const {
      const E* const moved = is_inside && value >= pos ? value + n : value;
      ZunSizeT done = 1;
      for (ZunSizeT i = 0; i < count && done == 1; ++i) Element::AssignRunUp(pos + i, moved, 1, &done);
      return done == 1;
    }
  };
  struct Range {
    const E* first;
    bool is_inside;
    ZunSizeT Construct(E* to, ZunSizeT from, ZunSizeT count) const {
      return Element::ConstructRun(to, first + from, count);
    }
    bool Assign(E* pos, ZunSizeT count, ZunSizeT n) const {
      ZunSizeT unmoved = count;
      if (is_inside) {
        const ZunSizeT in_front = first < pos ? Distance(first, pos) : 0;
        if (in_front < count) unmoved = in_front;
      }
      ZunSizeT done = 0;
      if (!Element::AssignRunUp(pos, first, unmoved, &done)) return false;
      return unmoved == count || Element::AssignRunUp(pos + unmoved, first + unmoved + n, count - unmoved, &done);
    }
  };

  template <class Source>
  static bool InsertFrom(const Source& source, V* x, E* pos, ZunSizeT n) {
    if (n == 0) return true;
    const ZunSizeT size = Size(x);
    const ZunSizeT capacity = Capacity(x);
    if (n <= capacity - size) return InsertInPlace(source, x, pos, n);
    if (n > SIZE_MAX / 2 - size) return false;
    const ZunSizeT twice = 2 * (x->begin == nullptr ? n : capacity);
    return InsertIntoFresh(source, x, pos, n, twice > size + n ? twice : size + n);
  }

  // What of the source or of the tail after `pos` lands beyond the old end is built there, then the rest of the tail
  // moves up by `n`, then the rest of the source is assigned. On failure what was built is ended again.
  template <class Source>
  static bool InsertInPlace(const Source& source, V* x, E* pos, ZunSizeT n) {
    const ZunSizeT old_size = Size(x);
    const ZunSizeT tail = Distance(pos, x->end);
    const ZunSizeT live = tail < n ? tail : n;  // places of the gap that hold an element now
    const E* const last_of_tail = x->end - live;
    const ZunSizeT built = source.Construct(x->end, live, n - live);
    x->end += built;
    const bool done = built == n - live && AppendRun(x, last_of_tail, live) &&
                      Element::AssignRunDown(pos + n, pos, tail - live) && source.Assign(pos, live, n);
    if (!done) Truncate(x, old_size);
    return done;
  }

  template <class Source>
  static bool InsertIntoFresh(const Source& source, V* x, E* pos, ZunSizeT n, ZunSizeT capacity) {
    V fresh;
    ConstructDefault(&fresh, x->allocator);
    if (!Reserve(&fresh, capacity)) return false;
    bool done = AppendRun(&fresh, x->begin, Distance(x->begin, pos));
    if (done) {
      const ZunSizeT built = source.Construct(fresh.end, 0, n);
      fresh.end += built;
      done = built == n && AppendRun(&fresh, pos, Distance(pos, x->end));
    }
    Destruct(done ? x : &fresh);
    if (done) *x = fresh;
    return done;
  }

  // Moves the elements from `last` on down onto `first`, and ends those that are left over. On failure the
  // vector ends at the destination that failed.
  static bool CloseGap(V* x, E* first, E* last) {
    ZunSizeT done = 0;
    const bool moved = Element::AssignRunUp(first, last, Distance(last, x->end), &done);
    Truncate(x, Distance(x->begin, first) + done);
    return moved;
  }
};

}  // namespace zun

// zun::VectorOfE: the algorithms of one vector, for a source that wants them inline; VectorTraits<ZunVector_E> finds
// them by the vector.
#define ZUN_VECTOR_USE_PLAIN(E) ZUN_VECTOR_USE_(E, PlainElement<E>)
#define ZUN_VECTOR_USE_OWNING(E) \
  ZUN_VECTOR_USE_(E, ZUN_VECTOR_SINGLE_ARGUMENT_(OwningElement<E, E##ConstructCopy, E##Assign, E##Destruct>))
#define ZUN_VECTOR_SINGLE_ARGUMENT_(...) __VA_ARGS__
#define ZUN_VECTOR_USE_(E, Element)                             \
  namespace zun {                                               \
  using VectorOf##E = VectorAlgorithms<ZunVector_##E, Element>; \
  template <>                                                   \
  struct VectorTraits<ZunVector_##E> {                          \
    using Algorithms = VectorOf##E;                             \
  };                                                            \
  }

// The C functions of a vector that is in use.
#define ZUN_VECTOR_DEFINE(E) ZUN_VECTOR_DEFINE_(ZunVector_##E, E, zun::VectorOf##E)

#define ZUN_VECTOR_DEFINE_(V, E, A)                                                                                 \
  V* V##ConstructN(V* x, V##SizeType n, const E* value, ZunAllocator* a) { return A::ConstructN(x, n, value, a); }  \
  V* V##ConstructRange(V* x, V##ConstIterator first, V##ConstIterator last, ZunAllocator* a) {                      \
    return A::ConstructRange(x, first, last, a);                                                                    \
  }                                                                                                                 \
  V* V##ConstructCopy(V* x, const V* o) { return A::ConstructCopy(x, o); }                                          \
  void V##Destruct(V* x) { A::Destruct(x); }                                                                        \
  V* V##Assign(V* x, const V* o) { return A::Assign(x, o); }                                                        \
  ZunBool V##Swap(V* x, V* y) { return A::Swap(x, y); }                                                             \
  ZunBool V##PushBack(V* x, const E* value) { return A::PushBack(x, value); }                                       \
  void V##PopBack(V* x) { A::PopBack(x); }                                                                          \
  ZunBool V##Reserve(V* x, V##SizeType capacity) { return A::Reserve(x, capacity); }                                \
  void V##Clear(V* x) { A::Clear(x); }                                                                              \
  V##Iterator V##Insert(V* x, V##Iterator pos, const E* value) { return A::Insert(x, pos, value); }                 \
  ZunBool V##InsertN(V* x, V##Iterator pos, V##SizeType n, const E* value) { return A::InsertN(x, pos, n, value); } \
  ZunBool V##InsertRange(V* x, V##Iterator pos, V##ConstIterator first, V##ConstIterator last) {                    \
    return A::InsertRange(x, pos, first, last);                                                                     \
  }                                                                                                                 \
  V##Iterator V##Erase(V* x, V##Iterator pos) { return A::Erase(x, pos); }                                          \
  V##Iterator V##EraseRange(V* x, V##Iterator first, V##Iterator last) { return A::EraseRange(x, first, last); }    \
  ZunBool V##Resize(V* x, V##SizeType n, const E* value) { return A::Resize(x, n, value); }                         \
  void V##Dump(const V*) {}

#endif
