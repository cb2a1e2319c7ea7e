// The generator of table rows: it makes a kind's eight operations of its public functions and its wire form.
#ifndef ZUN_RTP_CORE_ROW_H
#define ZUN_RTP_CORE_ROW_H

#include "Zun/Rtp/Core/BodyReader.h"
#include "Zun/Rtp/Core/SubpacketHeader.h"
#include "Zun/Rtp/Core/ZunRtcpRow.h"

namespace zun {

// A subpacket seen as the kind that it is. Every kind is a member of the union, directly or of an envelope
// inside it, so both stand at the same address; no member of the union is touched here, which also lets an
// object that stands alone pass through.
template <class Kind>
Kind* As(ZunRtcpSubpacket* p) {
  return reinterpret_cast<Kind*>(p);
}
template <class Kind>
const Kind* As(const ZunRtcpSubpacket* p) {
  return reinterpret_cast<const Kind*>(p);
}
template <class Kind>
ZunRtcpSubpacket* AsSubpacket(Kind* p) {
  return reinterpret_cast<ZunRtcpSubpacket*>(p);
}
template <class Kind>
const ZunRtcpSubpacket* AsSubpacket(const Kind* p) {
  return reinterpret_cast<const ZunRtcpSubpacket*>(p);
}

// Wire gives the kind's wire form:
//   static ZunSizeT Length(const Kind& p);                               bytes, header included
//   static bool Write(const Kind& p, ZunString* b, bool pad);            appends header and body
//   static bool Read(Kind* p, BodyReader& r, SubpacketHeader header);    reads the body
// and, where copying with another allocator does more than construct and assign:
//   static Kind* CopyWithAllocator(Kind* p, const Kind* o, ZunAllocator* a);
template <class Kind, class Wire, Kind* (*ConstructDefault)(Kind*, ZunAllocator*),
          Kind* (*ConstructCopy)(Kind*, const Kind*), Kind* (*Assign)(Kind*, const Kind*), void (*Destruct)(Kind*),
          ZunAllocator* (*GetAllocator)(Kind*)>
struct Row {
  static Kind* CopyWithAllocator(Kind* p, const Kind* o, ZunAllocator* a) {
    if (GetAllocator(const_cast<Kind*>(o)) == a) return ConstructCopy(p, o);
    if constexpr (requires { Wire::CopyWithAllocator(p, o, a); }) {
      return Wire::CopyWithAllocator(p, o, a);
    } else {
      if (ConstructDefault(p, a) == nullptr) return nullptr;
      if (Assign(p, o) != nullptr) return p;
      Destruct(p);
      return nullptr;
    }
  }

  static ZunBool AssignFromBuffer(Kind* p, const ZunString* b, ZunSizeT begin, ZunSizeT end, SubpacketHeader header) {
    BodyReader r(b, begin, end);
    return Wire::Read(p, r, header);
  }

  static ZunBool ConstructFromBuffer(Kind* p, const ZunString* b, ZunSizeT begin, ZunSizeT end, SubpacketHeader header,
                                     ZunAllocator* a) {
    return ConstructDefault(p, a) != nullptr && AssignFromBuffer(p, b, begin, end, header);
  }
};

}  // namespace zun

#define ZUN_RTCP_ROW_DEFINE(Kind, Wire)                                                                               \
  namespace zun {                                                                                                     \
  using RowOf##Kind =                                                                                                 \
      Row<Kind, Wire, Kind##ConstructDefault, Kind##ConstructCopy, Kind##Assign, Kind##Destruct, Kind##GetAllocator>; \
  }                                                                                                                   \
  ZunRtcpSubpacket* Kind##ConstructCopyAllocator(ZunRtcpSubpacket* p, const ZunRtcpSubpacket* o, ZunAllocator* a) {   \
    return zun::AsSubpacket(zun::RowOf##Kind::CopyWithAllocator(zun::As<Kind>(p), zun::As<Kind>(o), a));              \
  }                                                                                                                   \
  void Kind##DestructWrap(ZunRtcpSubpacket* p) { Kind##Destruct(zun::As<Kind>(p)); }                                  \
  ZunRtcpSubpacket* Kind##AssignWrap(ZunRtcpSubpacket* p, const ZunRtcpSubpacket* o) {                                \
    return zun::AsSubpacket(Kind##Assign(zun::As<Kind>(p), zun::As<Kind>(o)));                                        \
  }                                                                                                                   \
  ZunAllocator* Kind##GetAllocatorWrap(ZunRtcpSubpacket* p) { return Kind##GetAllocator(zun::As<Kind>(p)); }          \
  ZunBool Kind##WritePacket(const ZunRtcpSubpacket* p, ZunString* b, ZunBool pad) {                                   \
    return Wire::Write(*zun::As<Kind>(p), b, pad != 0);                                                               \
  }                                                                                                                   \
  ZunSizeT Kind##GetPacketLength(const ZunRtcpSubpacket* p) { return Wire::Length(*zun::As<Kind>(p)); }               \
  ZunBool Kind##ConstructFromBuffer(ZunRtcpSubpacket* p, const ZunString* b, ZunSizeT begin, ZunSizeT end,            \
                                    ZunRtcpSubpacketType pt, ZunUint8 count, ZunAllocator* a) {                       \
    return zun::RowOf##Kind::ConstructFromBuffer(zun::As<Kind>(p), b, begin, end, {pt, count}, a);                    \
  }                                                                                                                   \
  ZunBool Kind##AssignFromBuffer(ZunRtcpSubpacket* p, const ZunString* b, ZunSizeT begin, ZunSizeT end,               \
                                 ZunRtcpSubpacketType pt, ZunUint8 count) {                                           \
    return zun::RowOf##Kind::AssignFromBuffer(zun::As<Kind>(p), b, begin, end, {pt, count});                          \
  }

#endif
