// A subpacket of any kind: asked whether it is of one, or visited by a function for each.
#ifndef ZUN_RTP_CPP_SUBPACKET_H
#define ZUN_RTP_CPP_SUBPACKET_H

#include <optional>
#include <utility>

#include "Zun/Rtp/Cpp/List.h"
#include "Zun/Rtp/ZunRtcpSubpacket.h"
#if ZUN_RTCP_HAS_REPORTS
#include "Zun/Rtp/Cpp/Reports.h"
#endif
#if ZUN_RTCP_HAS_TRANSPORT_FEEDBACK
#include "Zun/Rtp/Cpp/TransportFeedback.h"
#endif
#if ZUN_RTCP_HAS_PAYLOAD_FEEDBACK
#include "Zun/Rtp/Cpp/PayloadFeedback.h"
#endif
#if ZUN_RTCP_HAS_APPLICATION_FEEDBACK
#include "Zun/Rtp/Cpp/ApplicationFeedback.h"
#endif

namespace zun::rtcp {

// ---- a packet type that the library does not model

ZUN_RTCP_CPP_FUNCTIONS_(ZunRtcpUnknown)

template <class S>
class BasicUnknown : public S {
 public:
  using S::S;

  ZunRtcpSubpacketType type() const noexcept { return this->get()->type; }
  // False for a type that the library models, and for one outside 0 to 255.
  [[nodiscard]] bool type(ZunRtcpSubpacketType type) noexcept {
    if (!ZunRtcpSubpacketTypeIsUnknown(type) || type < 0 || type > 255) return false;
    this->get()->type = type;
    return true;
  }
  std::uint8_t subtype() const noexcept { return this->get()->subtype; }
  // False when it exceeds 31.
  [[nodiscard]] bool subtype(std::uint8_t subtype) noexcept {
    return ZunRtcpUnknownSetSubtype(this->get(), subtype) != 0;
  }
  std::span<const std::byte> data() const noexcept { return octets_of(this->get()->data); }
  // False when its size is no multiple of 4, or an allocation is refused.
  [[nodiscard]] bool data(std::span<const std::byte> data) noexcept {
    const ZunString octets = borrowed(data);
    return ZunRtcpUnknownSetData(this->get(), &octets) != 0;
  }
};

template <>
struct Face<ZunRtcpUnknown> {
  template <class S>
  using Of = BasicUnknown<S>;
};
using Unknown = BasicUnknown<Owning<ZunRtcpUnknown>>;

// ---- the kinds

namespace kinds {

// Hands the object that `object`, a subpacket or one of the three envelopes, holds to `take`, as what it is in C. The
// library's lists of kinds are what there is: a kind that is added to one of them takes part, here and in all that is
// made of this.
template <class C, class Take>
decltype(auto) Visit(C& object, Take& take) {
#define ZUN_RTCP_CPP_CASE_(value, Kind, member, Getter) \
  case value:                                           \
    return Visit(object.member, take);

  using Bare = std::remove_const_t<C>;
  if constexpr (std::is_same_v<Bare, ZunRtcpSubpacket>) {
    switch (object.unk.type) {
      ZUN_RTCPSUBPACKET_KINDS(ZUN_RTCP_CPP_CASE_)
      default:
        return take(object.unk);
    }
  }
#if ZUN_RTCP_HAS_TRANSPORT_FEEDBACK
  else if constexpr (std::is_same_v<Bare, ZunRtcpRtpfb>) {
    switch (object.unk.fmt) {
      ZUN_RTCPRTPFB_KINDS(ZUN_RTCP_CPP_CASE_)
      default:
        return take(object.unk);
    }
  }
#endif
#if ZUN_RTCP_HAS_PAYLOAD_FEEDBACK
  else if constexpr (std::is_same_v<Bare, ZunRtcpPsfb>) {
    switch (object.unk.fmt) {
      ZUN_RTCPPSFB_KINDS(ZUN_RTCP_CPP_CASE_)
      default:
        return take(object.unk);
    }
  }
#endif
#if ZUN_RTCP_HAS_APPLICATION_FEEDBACK
  else if constexpr (std::is_same_v<Bare, ZunRtcpPsfbAfb>) {
    switch (object.unk.afbType) {
      ZUN_RTCPPSFBAFB_KINDS(ZUN_RTCP_CPP_CASE_)
      default:
        return take(object.unk);
    }
  }
#endif
  else {
    return take(object);
  }

#undef ZUN_RTCP_CPP_CASE_
}

// Whether a subpacket is of a kind.
template <class C>
struct Is;

#define ZUN_RTCP_CPP_IS_(Kind, condition)                                                 \
  template <>                                                                             \
  struct Is<Kind> {                                                                       \
    static constexpr bool In(const ZunRtcpSubpacket& sp) noexcept { return (condition); } \
  };
#define ZUN_RTCP_CPP_IS_TYPE_(value, Kind, member, Getter) ZUN_RTCP_CPP_IS_(Kind, sp.unk.type == (value))
#define ZUN_RTCP_CPP_IS_RTPFB_(value, Kind, member, Getter) \
  ZUN_RTCP_CPP_IS_(Kind, Is<ZunRtcpRtpfb>::In(sp) && sp.rtpfb.unk.fmt == (value))
#define ZUN_RTCP_CPP_IS_PSFB_(value, Kind, member, Getter) \
  ZUN_RTCP_CPP_IS_(Kind, Is<ZunRtcpPsfb>::In(sp) && sp.psfb.unk.fmt == (value))
#define ZUN_RTCP_CPP_IS_AFB_(value, Kind, member, Getter) \
  ZUN_RTCP_CPP_IS_(Kind, Is<ZunRtcpPsfbAfb>::In(sp) && sp.psfb.afb.unk.afbType == (value))

ZUN_RTCPSUBPACKET_KINDS(ZUN_RTCP_CPP_IS_TYPE_)
ZUN_RTCPRTPFB_KINDS(ZUN_RTCP_CPP_IS_RTPFB_)
ZUN_RTCPPSFB_KINDS(ZUN_RTCP_CPP_IS_PSFB_)
ZUN_RTCPPSFBAFB_KINDS(ZUN_RTCP_CPP_IS_AFB_)
ZUN_RTCP_CPP_IS_(ZunRtcpUnknown, ZunRtcpSubpacketTypeIsUnknown(sp.unk.type))
#if ZUN_RTCP_HAS_TRANSPORT_FEEDBACK
ZUN_RTCP_CPP_IS_(ZunRtcpRtpfbUnknown,
                 Is<ZunRtcpRtpfb>::In(sp) && ZunRtcpRtpfbFeedbackMessageIsUnknown(sp.rtpfb.unk.fmt))
#endif
#if ZUN_RTCP_HAS_PAYLOAD_FEEDBACK
ZUN_RTCP_CPP_IS_(ZunRtcpPsfbUnknown, Is<ZunRtcpPsfb>::In(sp) && ZunRtcpPsfbTypeIsUnknown(sp.psfb.unk.fmt))
#endif
#if ZUN_RTCP_HAS_APPLICATION_FEEDBACK
ZUN_RTCP_CPP_IS_(ZunRtcpPsfbAfbUnknown,
                 Is<ZunRtcpPsfbAfb>::In(sp) && ZunRtcpPsfbAfbTypeIsUnknown(sp.psfb.afb.unk.afbType))
#endif

#undef ZUN_RTCP_CPP_IS_AFB_
#undef ZUN_RTCP_CPP_IS_PSFB_
#undef ZUN_RTCP_CPP_IS_RTPFB_
#undef ZUN_RTCP_CPP_IS_TYPE_
#undef ZUN_RTCP_CPP_IS_

}  // namespace kinds

// A class of the C++ face whose objects a packet can hold: Sr, Nack, UnknownAfb ...
template <class Class>
concept SubpacketKind = requires(const ZunRtcpSubpacket& sp) {
  kinds::Is<ObjectOf<Class>>::In(sp);
  typename View<Class>;
};

// ---- a subpacket of any kind

template <>
struct Functions<ZunRtcpSubpacket> {
  using Subpacket = ZunRtcpSubpacket;
  static void ConstructDefault(Subpacket* p, ZunAllocator* a) noexcept { ZunRtcpUnknownConstructDefault(&p->unk, a); }
  static bool ConstructCopy(Subpacket* p, const Subpacket* o) noexcept {
    return ZunRtcpSubpacketConstructCopy(p, o) != nullptr;
  }
  static bool Assign(Subpacket* p, const Subpacket* o) noexcept { return ZunRtcpSubpacketAssign(p, o) != nullptr; }
  static void Destruct(Subpacket* p) noexcept { ZunRtcpSubpacketDestruct(p); }
  static ZunAllocator* GetAllocator(const Subpacket* p) noexcept {
    auto get = []<class C>(const C& object) { return Functions<C>::GetAllocator(&object); };
    return kinds::Visit(*p, get);
  }
};

// Keeps the allocator that `to` has; an object that owns no memory has none, and gives way to the system's.
template <>
struct Rebase<ZunRtcpSubpacket> {
  static bool Assign(ZunRtcpSubpacket* to, const ZunRtcpSubpacket* from) noexcept {
    ZunAllocator* const own = Functions<ZunRtcpSubpacket>::GetAllocator(to);
    ZunAllocator* const a = own != nullptr ? own : system_allocator();
    auto rebuild = [&]<class C>(const C& object) {
      Owning<C> made(a);
      if (!Rebase<C>::Assign(made.get(), &object)) return false;
      ZunRtcpSubpacketDestruct(to);
      made.release_to(to);
      return true;
    };
    return kinds::Visit(*from, rebuild);
  }
};

// Begins as an unknown subpacket of type 0.
template <class S>
class BasicSubpacket : public S {
 public:
  using S::S;

  ZunRtcpSubpacketType type() const noexcept { return this->get()->unk.type; }
};

template <>
struct Face<ZunRtcpSubpacket> {
  template <class S>
  using Of = BasicSubpacket<S>;
};
using Subpacket = BasicSubpacket<Owning<ZunRtcpSubpacket>>;

// The object that `subpacket` holds, when it is of this kind: a View, or a Ref where the subpacket may be changed.
//   if (auto nack = get_if<Nack>(subpacket)) for (std::uint16_t seq : nack->lost()) resend(seq);
template <SubpacketKind Class, class C>
std::optional<LookingAt<std::conditional_t<std::is_const_v<C>, const ObjectOf<Class>, ObjectOf<Class>>>> get_if(
    Looking<C> subpacket) noexcept {
  using Object = std::conditional_t<std::is_const_v<C>, const ObjectOf<Class>, ObjectOf<Class>>;
  if (!kinds::Is<ObjectOf<Class>>::In(*subpacket.get())) return std::nullopt;
  // Every kind lies at the beginning of the union.
  return LookingAt<Object>(*reinterpret_cast<Object*>(subpacket.get()));
}
template <SubpacketKind Class>
std::optional<View<Class>> get_if(const Owning<ZunRtcpSubpacket>& subpacket) noexcept {
  return get_if<Class>(Looking<const ZunRtcpSubpacket>(subpacket));
}
template <SubpacketKind Class>
std::optional<Ref<Class>> get_if(Owning<ZunRtcpSubpacket>& subpacket) noexcept {
  return get_if<Class>(Looking<ZunRtcpSubpacket>(subpacket));
}
template <SubpacketKind Class>
void get_if(Owning<ZunRtcpSubpacket>&& subpacket) = delete;  // nothing would be left to look at

template <SubpacketKind Class>
bool holds(Looking<const ZunRtcpSubpacket> subpacket) noexcept {
  return kinds::Is<ObjectOf<Class>>::In(*subpacket.get());
}

// Hands the object that `subpacket` holds to the visitor: a View of it, or a Ref where the subpacket may be changed.
// The visitor must take all kinds, or it does not compile; all of its functions return the same type.
//   visit(subpacket, Overloaded{[](View<Sr> sr) { ... }, [](View<Nack> nack) { ... }, [](const auto& other) { ... }});
template <class C, class Visitor>
decltype(auto) visit(Looking<C> subpacket, Visitor&& visitor) {
  auto look = [&visitor]<class Object>(Object& object) -> decltype(auto) { return visitor(LookingAt<Object>(object)); };
  return kinds::Visit(*subpacket.get(), look);
}
template <class Visitor>
decltype(auto) visit(const Owning<ZunRtcpSubpacket>& subpacket, Visitor&& visitor) {
  return visit(Looking<const ZunRtcpSubpacket>(subpacket), std::forward<Visitor>(visitor));
}

// A visitor of several functions.
template <class... Parts>
struct Overloaded : Parts... {
  using Parts::operator()...;
};
template <class... Parts>
Overloaded(Parts...) -> Overloaded<Parts...>;

}  // namespace zun::rtcp

#endif
