// What every C++ object stands on: an object that it owns, or one that another owns and that it looks at.
#ifndef ZUN_RTP_CPP_OBJECT_H
#define ZUN_RTP_CPP_OBJECT_H

#include <concepts>
#include <cstring>
#include <optional>
#include <type_traits>
#include <utility>

#include "Zun/Rtp/Cpp/Memory.h"

namespace zun::rtcp {

// The C functions of an object type, under names that templates can use.
template <class C>
struct Functions;

#define ZUN_RTCP_CPP_FUNCTIONS_(C)                                                                        \
  template <>                                                                                             \
  struct Functions<C> {                                                                                   \
    static void ConstructDefault(C* p, ZunAllocator* a) noexcept { C##ConstructDefault(p, a); }           \
    static bool ConstructCopy(C* p, const C* o) noexcept { return C##ConstructCopy(p, o) != nullptr; }    \
    static bool Assign(C* p, const C* o) noexcept { return C##Assign(p, o) != nullptr; }                  \
    static void Destruct(C* p) noexcept { C##Destruct(p); }                                               \
    static ZunAllocator* GetAllocator(const C* p) noexcept { return C##GetAllocator(const_cast<C*>(p)); } \
  };

// The class of an object type: Face<ZunRtcpSr>::Of<S> is BasicSr<S>. Not defined for plain structs.
template <class C>
struct Face;

template <class C>
concept HasFace = requires {
  sizeof(Face<std::remove_const_t<C>>);
};

// Makes `to` a copy whose memory is all from its own allocator. An assignment in C gives the elements of lists the
// allocators of those that they are copies of, so objects with such lists have a form of their own.
template <class C>
struct Rebase {
  static bool Assign(C* to, const C* from) noexcept { return Functions<C>::Assign(to, from); }
};

template <class C>
class Looking;

// An object that is owned: built with an allocator, copied, moved, destructed.
//
// A move takes what the source owns and leaves it empty, with its allocator, ready for use; it allocates nothing and
// cannot fail. A copy is made with the allocators of its source; where an allocation is refused it is empty, and
// nothing is thrown: use copy() or assign() where that may happen. What outlives the allocators of its source, such as
// an arena, is copied with one of its own: Packet(view, allocator), copy(view, allocator).
template <class C>
class Owning {
 public:
  using Object = C;

  Owning() noexcept : Owning(system_allocator()) {}
  explicit Owning(ZunAllocator* a) noexcept { Functions<C>::ConstructDefault(&object_, a); }

  Owning(const Owning& o) noexcept : Owning(o.object_) {}
  Owning(Owning&& o) noexcept : object_(o.object_) { o.Forget(); }
  // Of what is looked at, or of an object of C, with their allocators.
  explicit Owning(Looking<const C> o) noexcept : Owning(*o.get()) {}
  explicit Owning(const C& o) noexcept {
    if (!Functions<C>::ConstructCopy(&object_, &o))
      Functions<C>::ConstructDefault(&object_, Functions<C>::GetAllocator(&o));
  }
  // All memory from `a`.
  Owning(Looking<const C> o, ZunAllocator* a) noexcept : Owning(a) {
    if (!Rebase<C>::Assign(&object_, o.get())) *this = Owning(a);
  }
  ~Owning() { Functions<C>::Destruct(&object_); }

  // The assignment in C takes an object for itself.
  Owning& operator=(const Owning& o) noexcept {  // NOLINT(cert-oop54-cpp)
    (void)assign(o);
    return *this;
  }
  Owning& operator=(Owning&& o) noexcept {
    if (this == &o) return *this;
    Functions<C>::Destruct(&object_);
    object_ = o.object_;
    o.Forget();
    return *this;
  }

  // False when an allocation is refused; ZunConventions.h says what is left then. Its own allocator stays, but elements
  // of its lists that own memory take those of their sources.
  [[nodiscard]] bool assign(Looking<const C> o) noexcept { return Functions<C>::Assign(&object_, o.get()); }
  void swap(Owning& o) noexcept { std::swap(object_, o.object_); }

  // Null for an object that owns no memory.
  ZunAllocator* allocator() const noexcept { return Functions<C>::GetAllocator(&object_); }

  // The object, for the functions of C.
  C* get() noexcept { return &object_; }
  const C* get() const noexcept { return &object_; }
  // Moves it to raw storage, where somebody else owns it, and leaves this empty.
  void release_to(void* storage) noexcept {
    std::memcpy(storage, &object_, sizeof(C));
    Forget();
  }

 private:
  // What it owned is another's.
  void Forget() noexcept {
    ZunAllocator* const a = Functions<C>::GetAllocator(&object_);
    Functions<C>::ConstructDefault(&object_, a);
  }

  C object_;
};

// An object that another owns, such as a subpacket of a packet: valid until its owner changes or ends. Copying it
// copies no object. C is const where it may only be read.
template <class C>
class Looking {
 public:
  using Object = C;

  Looking(C& object) noexcept : object_(&object) {}
  Looking(const Owning<std::remove_const_t<C>>& o) noexcept requires std::is_const_v<C> : object_(o.get()) {}
  Looking(Owning<std::remove_const_t<C>>& o) noexcept : object_(o.get()) {}
  template <std::same_as<std::remove_const_t<C>> Bare>
  Looking(const Looking<Bare>& o) noexcept requires std::is_const_v<C> : object_(o.get()) {}

  C* get() const noexcept { return object_; }
  // Of the object, as Owning::assign.
  [[nodiscard]] bool assign(Looking<const C> o) const noexcept requires(!std::is_const_v<C>) {
    return Functions<C>::Assign(object_, o.get());
  }

 private:
  C* object_;
};

template <class Class>
using ObjectOf = std::remove_const_t<typename Class::Object>;

// View<Nack> looks at a NACK, Ref<Nack> may change it too. Both have all that a Nack has.
template <class Class>
using View = typename Face<ObjectOf<Class>>::template Of<Looking<const ObjectOf<Class>>>;
template <class Class>
using Ref = typename Face<ObjectOf<Class>>::template Of<Looking<ObjectOf<Class>>>;

// A View or a Ref, as `C` is const or not.
template <class C>
using LookingAt = typename Face<std::remove_const_t<C>>::template Of<Looking<C>>;

// A copy that tells when an allocation is refused: std::nullopt.
template <class C>
auto copy(Looking<C> o, ZunAllocator* a) noexcept {
  using Class = typename Face<std::remove_const_t<C>>::template Of<Owning<std::remove_const_t<C>>>;
  std::optional<Class> made(std::in_place, a);
  if (!Rebase<std::remove_const_t<C>>::Assign(made->get(), o.get())) made.reset();
  return made;
}
template <class C>
auto copy(const Owning<C>& o, ZunAllocator* a) noexcept {
  return copy(Looking<const C>(o), a);
}

}  // namespace zun::rtcp

#endif
