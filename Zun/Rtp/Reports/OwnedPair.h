// Copy, assignment and end of kinds that own memory through two members.
#ifndef ZUN_RTP_REPORTS_OWNEDPAIR_H
#define ZUN_RTP_REPORTS_OWNEDPAIR_H

#include "Zun/Rtp/Core/OwnedMember.h"
#include "Zun/Rtp/Core/ZunRtcpSubpacketType.h"
#include "Zun/Utils/ZunString.h"

namespace zun {

// One of the two members: where it is in its kind, and how it is copied and ended.
template <auto kMember_, auto kConstructCopy, auto kAssign, auto kDestruct>
struct PairMember {
  using Kind = typename OwnedMemberTraits<decltype(kMember_)>::Kind;
  static constexpr auto kMember = kMember_;

  static bool ConstructCopy(Kind* p, const Kind* o) {
    return kConstructCopy(&(p->*kMember), &(o->*kMember)) != nullptr;
  }
  static bool Assign(Kind* p, const Kind* o) { return kAssign(&(p->*kMember), &(o->*kMember)) != nullptr; }
  static void Destruct(Kind* p) { kDestruct(&(p->*kMember)); }
};

template <auto kMember>
using StringMember = PairMember<kMember, ZunStringConstructCopy, ZunStringAssign, ZunStringDestruct>;
template <auto kMember, class Algorithms>
using VectorMember = PairMember<kMember, Algorithms::ConstructCopy, Algorithms::Assign, Algorithms::Destruct>;

// The members come first and in order, as only they can fail; then every plain field but the type is copied.
//   using Owned = OwnedPair<ZUN_RTCPSUBPACKET_TYPE_APP, StringMember<&ZunRtcpApp::name>,
//   StringMember<&ZunRtcpApp::data>>;
template <ZunRtcpSubpacketType kType, class First, class Second>
struct OwnedPair {
  using Kind = typename First::Kind;

  // A copy with the allocators of o. Null, p left alone, when a member cannot be copied.
  static Kind* ConstructCopy(Kind* p, const Kind* o) {
    Kind copy = *o;
    if (!First::ConstructCopy(&copy, o)) return nullptr;
    if (!Second::ConstructCopy(&copy, o)) {
      First::Destruct(&copy);
      return nullptr;
    }
    copy.type = kType;
    *p = copy;
    return p;
  }

  // p keeps its allocators. Null, the plain fields unchanged, when a member cannot be assigned.
  static Kind* Assign(Kind* p, const Kind* o) {
    if (!First::Assign(p, o) || !Second::Assign(p, o)) return nullptr;
    AssignPlainFields(p, o);
    return p;
  }

  static void AssignPlainFields(Kind* p, const Kind* o) {
    Kind assigned = *o;
    assigned.type = p->type;
    assigned.*First::kMember = p->*First::kMember;
    assigned.*Second::kMember = p->*Second::kMember;
    *p = assigned;
  }

  static void Destruct(Kind* p) {
    First::Destruct(p);
    Second::Destruct(p);
  }
};

}  // namespace zun

#endif
