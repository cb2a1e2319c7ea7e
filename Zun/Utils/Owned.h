// Copy, assignment and end of structs: of those that own memory through some of their fields, and of plain values.
#ifndef ZUN_UTILS_OWNED_H
#define ZUN_UTILS_OWNED_H

#include <type_traits>

#include "Zun/Utils/VectorAlgorithms.h"
#include "Zun/Utils/ZunString.h"

namespace zun {

// How a field that owns memory is built, copied and ended: a string, or a vector whose algorithms are in use here.
template <class Field>
struct OwnedField : VectorTraits<Field>::Algorithms {
  using Algorithms = typename VectorTraits<Field>::Algorithms;
};
template <>
struct OwnedField<ZunString> {
  static ZunString* ConstructDefault(ZunString* s, ZunAllocator* a) { return ZunStringConstructDefault(s, a); }
  static ZunString* ConstructCopy(ZunString* s, const ZunString* o) { return ZunStringConstructCopy(s, o); }
  static ZunString* Assign(ZunString* s, const ZunString* o) { return ZunStringAssign(s, o); }
  static void Destruct(ZunString* s) { ZunStringDestruct(s); }
};

template <auto kFirst, auto... kOthers>
struct FirstOf {
  static constexpr auto kValue = kFirst;
};
template <class Pointer>
struct MemberPointer;
template <class Struct_, class Field_>
struct MemberPointer<Field_ Struct_::*> {
  using Struct = Struct_;
  using Field = Field_;
};

// The fields that own memory, in their order:
//   using Fields = zun::Owned<&ZunRtcpApp::name, &ZunRtcpApp::data>;
// They come before the plain ones in every operation, as only they can fail.
template <auto... kFields>
struct Owned {
  static constexpr auto kFirstField = FirstOf<kFields...>::kValue;
  using Struct = typename MemberPointer<std::remove_cv_t<decltype(kFirstField)>>::Struct;
  template <auto kField>
  using Operations = OwnedField<typename MemberPointer<std::remove_cv_t<decltype(kField)>>::Field>;

  // Makes the fields empty, with allocator `a`; the others are left alone.
  static void ConstructDefault(Struct* p, ZunAllocator* a) {
    (Operations<kFields>::ConstructDefault(&(p->*kFields), a), ...);
  }

  // A copy with the allocators of o. Null, p left alone, when a field cannot be copied.
  static Struct* ConstructCopy(Struct* p, const Struct* o) {
    Struct copy = *o;
    ZunSizeT built = 0;
    const bool copied =
        ((Operations<kFields>::ConstructCopy(&(copy.*kFields), &(o->*kFields)) != nullptr && ++built != 0) && ...);
    if (!copied) {
      (void)((built-- != 0 && (Operations<kFields>::Destruct(&(copy.*kFields)), true)) && ...);
      return nullptr;
    }
    *p = copy;
    return p;
  }

  // p keeps its allocators. Null, the plain fields unchanged, when a field cannot be assigned; those before it are
  // assigned then.
  static Struct* Assign(Struct* p, const Struct* o) {
    if (!((Operations<kFields>::Assign(&(p->*kFields), &(o->*kFields)) != nullptr) && ...)) return nullptr;
    AssignPlainFields(p, o);
    return p;
  }

  static void AssignPlainFields(Struct* p, const Struct* o) {
    Struct assigned = *o;
    ((assigned.*kFields = p->*kFields), ...);
    *p = assigned;
  }

  static void Destruct(Struct* p) { (Operations<kFields>::Destruct(&(p->*kFields)), ...); }

  // Whether all of the fields have allocator `a`; elements of lists are not looked at.
  static bool HaveAllocator(const Struct& p, const ZunAllocator* a) { return (((p.*kFields).allocator == a) && ...); }
};

// The fields of a struct that own memory, found by the struct; of a plain value there are none.
template <class Struct>
struct OwnedFieldsOf {
  static bool HaveAllocator(const Struct&, const ZunAllocator*) { return true; }
};

}  // namespace zun

// The element operations of a struct that owns memory through the fields named, ZUN_OWNING_DEFINE(E, &E::field, ...),
// and of a plain value.
#define ZUN_OWNED_FIELDS(E, ...)                   \
  namespace zun {                                  \
  template <>                                      \
  struct OwnedFieldsOf<E> : Owned<__VA_ARGS__> {}; \
  }
#define ZUN_OWNING_DEFINE(E, ...)                                                                \
  ZUN_OWNED_FIELDS(E, __VA_ARGS__)                                                               \
  E* E##ConstructCopy(E* p, const E* o) { return zun::Owned<__VA_ARGS__>::ConstructCopy(p, o); } \
  E* E##Assign(E* p, const E* o) { return zun::Owned<__VA_ARGS__>::Assign(p, o); }               \
  void E##Destruct(E* p) { zun::Owned<__VA_ARGS__>::Destruct(p); }

#define ZUN_PLAIN_DEFINE(E)                       \
  static_assert(std::is_trivially_copyable_v<E>); \
  E* E##ConstructCopy(E* p, const E* o) {         \
    *p = *o;                                      \
    return p;                                     \
  }                                               \
  E* E##Assign(E* p, const E* o) {                \
    *p = *o;                                      \
    return p;                                     \
  }                                               \
  void E##Destruct(E*) {}

#endif
