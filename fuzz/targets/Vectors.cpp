// Vectors against std::vector: any sequence of operations on vectors of plain values and of values that own memory,
// whose arguments may be elements of the vector itself, now and then with allocations refused.
#include <array>
#include <vector>

#include "fuzz/Packets.h"

namespace {

using namespace fuzz;

// The C functions of one vector, found by overloading where their names differ.
#define FUZZ_VECTOR(E)                                                        \
  struct Vector##E {                                                          \
    using Element = E;                                                        \
    using V = ZunVector_##E;                                                  \
    static constexpr auto ConstructDefault = ZunVector_##E##ConstructDefault; \
    static constexpr auto ConstructN = ZunVector_##E##ConstructN;             \
    static constexpr auto ConstructRange = ZunVector_##E##ConstructRange;     \
    static constexpr auto ConstructCopy = ZunVector_##E##ConstructCopy;       \
    static constexpr auto Destruct = ZunVector_##E##Destruct;                 \
    static constexpr auto Assign = ZunVector_##E##Assign;                     \
    static constexpr auto Swap = ZunVector_##E##Swap;                         \
    static constexpr auto PushBack = ZunVector_##E##PushBack;                 \
    static constexpr auto PopBack = ZunVector_##E##PopBack;                   \
    static constexpr auto Reserve = ZunVector_##E##Reserve;                   \
    static constexpr auto Clear = ZunVector_##E##Clear;                       \
    static constexpr auto Insert = ZunVector_##E##Insert;                     \
    static constexpr auto InsertN = ZunVector_##E##InsertN;                   \
    static constexpr auto InsertRange = ZunVector_##E##InsertRange;           \
    static constexpr auto Erase = ZunVector_##E##Erase;                       \
    static constexpr auto EraseRange = ZunVector_##E##EraseRange;             \
    static constexpr auto Resize = ZunVector_##E##Resize;                     \
    static constexpr auto Size = ZunVector_##E##Size;                         \
    static constexpr auto Capacity = ZunVector_##E##Capacity;                 \
  };
FUZZ_VECTOR(ZunUint16)
FUZZ_VECTOR(ZunRtcpSdesItem)

// An element of either vector that lives on its own, and what it means in the model.
class PlainValue {
 public:
  PlainValue(Input& input, ZunAllocator*) : value_(input.U8()) {}
  const ZunUint16* get() const { return &value_; }
  static std::string Of(ZunUint16 value) { return std::to_string(value); }

 private:
  ZunUint16 value_;
};

class Item {
 public:
  Item(Input& input, ZunAllocator* a) {
    ZunRtcpSdesItemConstructDefault(&item_, a);
    const Octets text = input.Take(input.Below(20));
    item_.type = static_cast<ZunRtcpSdesItemType>(text.size());
    const ZunString view = ViewOf(text);
    Check(ZunStringAssign(&item_.text, &view) != nullptr, "a text is assigned");
  }
  ~Item() { ZunRtcpSdesItemDestruct(&item_); }
  Item(const Item&) = delete;
  Item& operator=(const Item&) = delete;
  const ZunRtcpSdesItem* get() const { return &item_; }
  static std::string Of(const ZunRtcpSdesItem& item) {
    return std::to_string(item.type) + std::string(ZunStringCStr(&item.text), item.text.size);
  }

 private:
  ZunRtcpSdesItem item_;
};

template <class Ops, class Value>
class Modelled {
 public:
  using Model = std::vector<std::string>;
  using E = typename Ops::Element;

  explicit Modelled(ZunAllocator* a) { Ops::ConstructDefault(&v_, a); }
  ~Modelled() {
    Ops::Destruct(&v_);
    Ops::Destruct(&v_);
  }
  Modelled(const Modelled&) = delete;
  Modelled& operator=(const Modelled&) = delete;

  ZunSizeT size() const { return model_.size(); }
  bool IsAsItsModel() const {
    return Ops::Size(&v_) == model_.size() && Ops::Capacity(&v_) >= model_.size() && Contents() == model_;
  }
  // After a refusal, where more than one state is allowed.
  void TakeAsItIs() { model_ = Contents(); }

  // Does one operation on both; `o` may be this vector. Whether it succeeded.
  bool Step(Input& input, Modelled& o, ZunAllocator* of_values) {
    const Value value(input, of_values);
    const std::size_t pos = input.Below(size() + 1);
    const std::size_t end = pos + input.Below(size() - pos + 1);
    const std::size_t n = input.Below(20);
    switch (input.Below(12)) {
      case 0:
        return Do(Ops::PushBack(&v_, value.get()) != 0, [&] { model_.push_back(Value::Of(*value.get())); });
      case 1:
        if (pos == size()) return true;
        return Do(Ops::PushBack(&v_, v_.begin + pos) != 0, [&] { model_.push_back(std::string(model_[pos])); });
      case 2:
        return Do(Ops::Insert(&v_, v_.begin + pos, value.get()) != nullptr, [&] { InsertN(pos, 1, value); });
      case 3:
        return Do(Ops::InsertN(&v_, v_.begin + pos, n, value.get()) != 0, [&] { InsertN(pos, n, value); });
      case 4:
        return InsertOwn(pos, end, n, input);
      case 5:
        return InsertRange(o, pos, input);
      case 6:
        return Erase(pos, end, input.Bool());
      case 7:
        return Do(Ops::Resize(&v_, n, value.get()) != 0, [&] { model_.resize(n, Value::Of(*value.get())); });
      case 8:
        return Do(Ops::Assign(&v_, &o.v_) != nullptr, [&] { model_ = Model(o.model_); });
      case 9:
        if (this == &o) return true;
        if (Ops::Swap(&v_, &o.v_)) return std::swap(model_, o.model_), true;
        return o.TakeAsItIs(), false;
      case 10:
        return Do(Ops::Reserve(&v_, n) != 0 && Ops::Capacity(&v_) >= n, [] {});
      default:
        return Rebuild(o, pos, end, value, n);
    }
  }

 private:
  template <class OnModel>
  static bool Do(bool done, OnModel on_model) {
    if (done) on_model();
    return done;
  }

  Model Contents() const {
    Model contents;
    for (const E* e = v_.begin; e != v_.end; ++e) contents.push_back(Value::Of(*e));
    return contents;
  }
  auto At(std::size_t n) { return model_.begin() + static_cast<std::ptrdiff_t>(n); }
  void InsertN(std::size_t pos, std::size_t n, const Value& value) {
    model_.insert(At(pos), n, Value::Of(*value.get()));
  }

  // Copies of an element, or of a range, of the vector itself.
  bool InsertOwn(std::size_t first, std::size_t last, std::size_t n, Input& input) {
    const std::size_t pos = input.Below(size() + 1);
    const Model before = model_;
    if (input.Bool() && first != size()) {
      return Do(Ops::InsertN(&v_, v_.begin + pos, n, v_.begin + first) != 0,
                [&] { model_.insert(At(pos), n, before[first]); });
    }
    return Do(Ops::InsertRange(&v_, v_.begin + pos, v_.begin + first, v_.begin + last) != 0, [&] {
      model_.insert(At(pos), before.begin() + static_cast<std::ptrdiff_t>(first),
                    before.begin() + static_cast<std::ptrdiff_t>(last));
    });
  }

  bool InsertRange(Modelled& o, std::size_t pos, Input& input) {
    const std::size_t first = input.Below(o.size() + 1);
    const std::size_t last = first + input.Below(o.size() - first + 1);
    const Model source(o.At(first), o.At(last));
    return Do(Ops::InsertRange(&v_, v_.begin + pos, o.v_.begin + first, o.v_.begin + last) != 0,
              [&] { model_.insert(At(pos), source.begin(), source.end()); });
  }

  bool Erase(std::size_t first, std::size_t last, bool one) {
    if (one && first < size()) {
      return Do(Ops::Erase(&v_, v_.begin + first) != nullptr, [&] { model_.erase(At(first)); });
    }
    if (v_.begin == nullptr) return true;
    return Do(Ops::EraseRange(&v_, v_.begin + first, v_.begin + last) != nullptr,
              [&] { model_.erase(At(first), At(last)); });
  }

  bool Rebuild(Modelled& o, std::size_t first, std::size_t last, const Value& value, std::size_t n) {
    if (n < 5) {
      if (size() != 0) {
        Ops::PopBack(&v_);
        model_.pop_back();
      }
      return true;
    }
    if (n < 8) {
      Ops::Clear(&v_);
      model_.clear();
      return true;
    }
    typename Ops::V built;
    const bool done = n < 11   ? Ops::ConstructN(&built, n, value.get(), v_.allocator) != nullptr
                      : n < 14 ? Ops::ConstructRange(&built, v_.begin + first, v_.begin + last, v_.allocator) != nullptr
                               : Ops::ConstructCopy(&built, &o.v_) != nullptr;
    if (!done) return false;
    Ops::Destruct(&v_);
    v_ = built;
    if (n < 11) {
      model_.assign(n, Value::Of(*value.get()));
    } else {
      model_ = n < 14 ? Model(At(first), At(last)) : Model(o.model_);
    }
    return true;
  }

  typename Ops::V v_;
  Model model_;
};

template <class Ops, class Value>
void Run(Input& input) {
  Allocator of_values;
  Allocator a;
  Allocator b;
  using Vector = Modelled<Ops, Value>;
  std::array<Vector, 3> vectors = {Vector(a), Vector(a), Vector(b)};
  for (int steps = 0; !input.AtEnd() && steps < 64; ++steps) {
    const std::uint8_t which = input.U8();
    Vector& v = vectors[which % 3];
    Vector& o = vectors[which / 3 % 3];
    if (v.size() + o.size() > 2000) return;
    // One in four steps meets a refusal.
    if ((which & 0xC0) == 0xC0) {
      for (Allocator* const allocator : {&a, &b}) allocator->Refuse(which >> 4 & 3, which % 2 != 0);
    }
    const std::size_t refused = a.refused() + b.refused() + of_values.refused();
    if (!v.Step(input, o, of_values)) {
      Check(a.refused() + b.refused() + of_values.refused() > refused,
            "an operation fails only when memory is refused");
      v.TakeAsItIs();
    }
    a.RefuseNothing();
    b.RefuseNothing();
    for (const Vector& each : vectors) Check(each.IsAsItsModel(), "the vector is as its model");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  if (input.Bool()) {
    Run<VectorZunUint16, PlainValue>(input);
  } else {
    Run<VectorZunRtcpSdesItem, Item>(input);
  }
  return 0;
}
