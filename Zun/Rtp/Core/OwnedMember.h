// Copy and assignment of kinds that own memory through one member, a string or a vector.
#ifndef ZUN_RTP_CORE_OWNEDMEMBER_H
#define ZUN_RTP_CORE_OWNEDMEMBER_H

namespace zun {

template <class Member>
struct OwnedMemberTraits;
template <class Kind_, class Member_>
struct OwnedMemberTraits<Member_ Kind_::*> {
  using Kind = Kind_;
  using Member = Member_;
};

// The member comes first, as only it can fail; then every plain field is copied.
//   using Owned = OwnedMember<&ZunRtcpUnknown::data, ZunStringConstructCopy, ZunStringAssign>;
template <auto kMember, auto kMemberConstructCopy, auto kMemberAssign>
struct OwnedMember {
  using Kind = typename OwnedMemberTraits<decltype(kMember)>::Kind;
  using Member = typename OwnedMemberTraits<decltype(kMember)>::Member;

  // A copy with the allocator of o's member. Null, p owning nothing, when the member cannot be copied.
  static Kind* ConstructCopy(Kind* p, const Kind* o) {
    Member copy;
    if (kMemberConstructCopy(&copy, &(o->*kMember)) == nullptr) return nullptr;
    *p = *o;
    p->*kMember = copy;
    return p;
  }

  // p keeps its allocator. Null, the plain fields unchanged, when the member cannot be assigned.
  static Kind* Assign(Kind* p, const Kind* o) {
    if (kMemberAssign(&(p->*kMember), &(o->*kMember)) == nullptr) return nullptr;
    const Member assigned = p->*kMember;
    *p = *o;
    p->*kMember = assigned;
    return p;
  }
};

}  // namespace zun

#endif
