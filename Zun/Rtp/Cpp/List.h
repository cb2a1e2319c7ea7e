// The lists and byte strings inside objects, as ranges and views.
#ifndef ZUN_RTP_CPP_LIST_H
#define ZUN_RTP_CPP_LIST_H

#include <compare>
#include <cstddef>
#include <iterator>
#include <ranges>
#include <span>
#include <string_view>
#include <type_traits>

#include "Zun/Rtp/Cpp/Object.h"
#include "Zun/Rtp/ZunRtpHeader.h"
#include "Zun/Utils/ZunBasicTypesContainer.h"
#include "Zun/Utils/ZunString.h"
#include "Zun/Utils/ZunVector.h"

namespace zun::rtcp {

// ---- bytes

ZUN_RTCP_CPP_FUNCTIONS_(ZunString)

// A string of the library's that is owned.
using String = Owning<ZunString>;

inline std::string_view text_of(const ZunString& s) noexcept { return {ZunStringCStr(&s), s.size}; }
inline std::span<const std::byte> octets_of(const ZunString& s) noexcept {
  return {reinterpret_cast<const std::byte*>(ZunStringCStr(&s)), s.size};
}
inline std::span<const std::byte> octets_of(std::string_view s) noexcept {
  return {reinterpret_cast<const std::byte*>(s.data()), s.size()};
}

// A string of C over bytes of another's, to be read only.
inline ZunString borrowed(std::string_view s) noexcept {
  return {nullptr, const_cast<char*>(s.data()), s.size(), s.size()};
}
inline ZunString borrowed(std::span<const std::byte> s) noexcept {
  return borrowed(std::string_view(reinterpret_cast<const char*>(s.data()), s.size()));
}

// ---- vectors

// The C functions of a vector type. As those of every object they make an Owning<ZunVector_E> as well.
template <class Vector>
struct VectorFunctions;

#define ZUN_RTCP_CPP_VECTOR_(E)                                                                                \
  ZUN_RTCP_CPP_FUNCTIONS_(ZunVector_##E)                                                                       \
  template <>                                                                                                  \
  struct VectorFunctions<ZunVector_##E> {                                                                      \
    using Vector = ZunVector_##E;                                                                              \
    using Element = E;                                                                                         \
    static bool PushBack(Vector* v, const E* e) noexcept { return ZunVector_##E##PushBack(v, e) != 0; }        \
    static bool Reserve(Vector* v, std::size_t n) noexcept { return ZunVector_##E##Reserve(v, n) != 0; }       \
    static bool Assign(Vector* v, const Vector* o) noexcept { return ZunVector_##E##Assign(v, o) != nullptr; } \
    static E* Insert(Vector* v, E* at, const E* e) noexcept { return ZunVector_##E##Insert(v, at, e); }        \
    static void Erase(Vector* v, E* first, E* last) noexcept { ZunVector_##E##EraseRange(v, first, last); }    \
    static void PopBack(Vector* v) noexcept { ZunVector_##E##PopBack(v); }                                     \
    static void Clear(Vector* v) noexcept { ZunVector_##E##Clear(v); }                                         \
  };

ZUN_RTCP_CPP_VECTOR_(ZunRtpSourceId)
ZUN_RTCP_CPP_VECTOR_(ZunUint16)
using Ssrc = ZunRtpSourceId;

// What all lists have. `Vector` is const where the list may only be read.
template <class Vector>
class AnyList {
 public:
  using Calls = VectorFunctions<std::remove_const_t<Vector>>;
  using size_type = std::size_t;
  using difference_type = std::ptrdiff_t;

  explicit AnyList(Vector& vector) noexcept : vector_(&vector) {}

  std::size_t size() const noexcept { return static_cast<std::size_t>(vector_->end - vector_->begin); }
  bool empty() const noexcept { return vector_->begin == vector_->end; }
  std::size_t capacity() const noexcept { return static_cast<std::size_t>(vector_->endBuf - vector_->begin); }

  // False when an allocation is refused; the list is then as it was.
  [[nodiscard]] bool reserve(std::size_t n) noexcept { return Calls::Reserve(vector_, n); }
  // The list must not be empty.
  void pop_back() noexcept { Calls::PopBack(vector_); }
  // Element `n`, which must be there; those after it move up.
  void erase(std::size_t n) noexcept { Calls::Erase(vector_, vector_->begin + n, vector_->begin + n + 1); }
  // Keeps the storage.
  void clear() noexcept { Calls::Clear(vector_); }

  Vector* get() const noexcept { return vector_; }

  // Room for one more, as appending one makes it.
  [[nodiscard]] bool reserve_one() noexcept {
    if (vector_->end != vector_->endBuf) return true;
    return Calls::Reserve(vector_, size() == 0 ? 2 : 2 * size());
  }

 private:
  Vector* vector_;
};

// A list of plain values: contiguous, and so a std::span where one is asked for.
template <class Vector>
class PlainList : public AnyList<Vector> {
 public:
  using value_type = typename AnyList<Vector>::Calls::Element;
  using Element = std::conditional_t<std::is_const_v<Vector>, const value_type, value_type>;
  using reference = Element&;
  using const_reference = const value_type&;
  using iterator = Element*;

  using AnyList<Vector>::AnyList;

  Element* begin() const noexcept { return this->get()->begin; }
  Element* end() const noexcept { return this->get()->end; }
  Element* data() const noexcept { return this->get()->begin; }
  Element& operator[](std::size_t n) const noexcept { return begin()[n]; }
  Element& front() const noexcept { return *begin(); }
  Element& back() const noexcept { return end()[-1]; }

  // False when an allocation is refused; the list is then as it was.
  [[nodiscard]] bool push_back(const value_type& value) noexcept {
    return AnyList<Vector>::Calls::PushBack(this->get(), &value);
  }
  [[nodiscard]] bool insert(std::size_t n, const value_type& value) noexcept {
    return AnyList<Vector>::Calls::Insert(this->get(), begin() + n, &value) != nullptr;
  }
  // False when an allocation is refused; the list is then empty.
  [[nodiscard]] bool assign(std::span<const value_type> values) noexcept {
    auto* const first = const_cast<value_type*>(values.data());
    const std::remove_const_t<Vector> all{nullptr, first, first + values.size(), first + values.size()};
    return AnyList<Vector>::Calls::Assign(this->get(), &all);
  }
};

// A place in a list of objects: designates a View or a Ref.
template <class C>
class ObjectIterator {
 public:
  using value_type = LookingAt<C>;
  using reference = value_type;
  using difference_type = std::ptrdiff_t;
  using iterator_category =
      std::random_access_iterator_tag;  // as that of std::vector<bool>, whose elements are proxies too
  struct pointer {
    value_type value;
    value_type* operator->() noexcept { return &value; }
  };

  ObjectIterator() noexcept = default;
  explicit ObjectIterator(C* at) noexcept : at_(at) {}

  value_type operator*() const noexcept { return value_type(*at_); }
  pointer operator->() const noexcept { return {**this}; }
  value_type operator[](std::ptrdiff_t n) const noexcept { return value_type(at_[n]); }

  ObjectIterator& operator+=(std::ptrdiff_t n) noexcept {
    at_ += n;
    return *this;
  }
  ObjectIterator& operator-=(std::ptrdiff_t n) noexcept { return *this += -n; }
  ObjectIterator& operator++() noexcept { return *this += 1; }
  ObjectIterator& operator--() noexcept { return *this -= 1; }
  ObjectIterator operator++(int) noexcept { return ObjectIterator(at_++); }
  ObjectIterator operator--(int) noexcept { return ObjectIterator(at_--); }
  friend ObjectIterator operator+(ObjectIterator i, std::ptrdiff_t n) noexcept { return i += n; }
  friend ObjectIterator operator+(std::ptrdiff_t n, ObjectIterator i) noexcept { return i += n; }
  friend ObjectIterator operator-(ObjectIterator i, std::ptrdiff_t n) noexcept { return i -= n; }
  friend std::ptrdiff_t operator-(ObjectIterator i, ObjectIterator j) noexcept { return i.at_ - j.at_; }
  friend auto operator<=>(ObjectIterator, ObjectIterator) noexcept = default;

 private:
  C* at_ = nullptr;
};

// A list of objects that own memory: its elements are looked at through Views, or through Refs where they may be
// changed.
template <class Vector>
class ObjectList : public AnyList<Vector> {
 public:
  using Bare = typename AnyList<Vector>::Calls::Element;
  using Element = std::conditional_t<std::is_const_v<Vector>, const Bare, Bare>;
  using Class = typename Face<Bare>::template Of<Owning<Bare>>;
  using value_type = LookingAt<Element>;
  using reference = value_type;
  using const_reference = LookingAt<const Bare>;
  using iterator = ObjectIterator<Element>;

  using AnyList<Vector>::AnyList;

  iterator begin() const noexcept { return iterator(this->get()->begin); }
  iterator end() const noexcept { return iterator(this->get()->end); }
  value_type operator[](std::size_t n) const noexcept { return value_type(this->get()->begin[n]); }
  value_type front() const noexcept { return (*this)[0]; }
  value_type back() const noexcept { return value_type(this->get()->end[-1]); }

  // A copy, with the list's allocator. False when an allocation is refused; the list is then as it was.
  [[nodiscard]] bool push_back(Looking<const Bare> object) noexcept {
    Owning<Bare> made(this->get()->allocator);
    return Rebase<Bare>::Assign(made.get(), object.get()) && push_back(std::move(made));
  }
  // The object itself, nothing is copied. False when an allocation is refused; the object is then as it was.
  [[nodiscard]] bool push_back(Owning<Bare>&& object) noexcept {
    if (!this->reserve_one()) return false;
    object.release_to(this->get()->end++);
    return true;
  }
  // One that is built with these arguments and the list's allocator.
  template <class... Arguments>
  std::optional<LookingAt<Bare>> emplace_back(Arguments&&... arguments) noexcept {
    if (!push_back(Class(std::forward<Arguments>(arguments)..., this->get()->allocator))) return std::nullopt;
    return LookingAt<Bare>(this->get()->end[-1]);
  }
};

template <class Vector>
using List = std::conditional_t<HasFace<typename VectorFunctions<std::remove_const_t<Vector>>::Element>,
                                ObjectList<Vector>, PlainList<Vector>>;

// The list that a vector is.
template <class Vector>
List<Vector> list_of(Vector& vector) noexcept {
  return List<Vector>(vector);
}

// Replaces the elements of `to` by copies whose memory is all from its allocator.
template <class Vector>
bool RebaseElements(Vector* to, const Vector* from) noexcept {
  using Element = typename VectorFunctions<Vector>::Element;
  ObjectList<Vector> list(*to);
  list.clear();
  if (!list.reserve(static_cast<std::size_t>(from->end - from->begin))) return false;
  for (const Element* element = from->begin; element != from->end; ++element) {
    Owning<Element> made(to->allocator);
    if (!Rebase<Element>::Assign(made.get(), element) || !list.push_back(std::move(made))) return false;
  }
  return true;
}

}  // namespace zun::rtcp

template <class Vector>
inline constexpr bool std::ranges::enable_borrowed_range<zun::rtcp::PlainList<Vector>> = true;
template <class Vector>
inline constexpr bool std::ranges::enable_borrowed_range<zun::rtcp::ObjectList<Vector>> = true;

#endif
