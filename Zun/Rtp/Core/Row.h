// The generator of table rows: it makes a kind's operations of its public functions and its wire form.
#ifndef ZUN_RTP_CORE_ROW_H
#define ZUN_RTP_CORE_ROW_H

#include <cassert>

#include "Zun/Rtp/Core/BodyReader.h"
#include "Zun/Rtp/Core/Identity.h"
#include "Zun/Rtp/Core/RtcpSubpacketFunctions.h"
#include "Zun/Rtp/Core/SubpacketHeader.h"
#include "Zun/Utils/Owned.h"

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

// A wire form that can hold whatever an object of its kind holds.
struct AlwaysEncodable {
  template <class Kind>
  static ZunRtcpEncodeReason FindUnencodable(const Kind&, ZunRtcpDialect) {
    return ZUN_RTCP_ENCODE_REASON_NONE;
  }
};

// Wire gives the kind's wire form:
//   static ZunSizeT Length(const Kind& p);                               bytes, header included
//   static bool Write(const Kind& p, Output& out, bool pad);             appends header and body
// or, where what is usual is written without calls in front of that, one by UsualWriter and one by a BodyWriter of
// Length(p) bytes, of their own or as a template of the writer:
//   static bool Write(const Kind& p, Writer& w, bool pad);
//   static bool Read(Kind* p, BodyReader& r, const Body& body);          reads the body
// where what is usual is read without calls in front of that, a Read by UsualReader as well, of its own or as a
// template of the reader:
//   static bool Read(Kind* p, UsualReader& r, const Body& body);
// the first reason why not to encode an object, which may hold what the wire cannot (AlwaysEncodable, where none can):
//   static ZunRtcpEncodeReason FindUnencodable(const Kind& p, ZunRtcpDialect dialect);
// where that would go through a list that is written anyway, that Write looks for itself, and fails where it is to:
//   static constexpr bool kLooksWhileItWrites = true;
// where what is written may differ in length from what Length says (docs/wire-differences.md lists all of them), the
// length of what is written at byte `begin` of an output:
//   static ZunSizeT EncodedLength(const Kind& p, ZunSizeT begin, ZunRtcpDialect dialect);
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

  // What is decoded belongs to the packet's allocator.
  static bool HasAllocatorFor(const Body& body, const Kind& p) {
    return !body.IsDecoded() || OwnedFieldsOf<Kind>::HaveAllocator(p, body.packet_allocator);
  }
  [[gnu::cold, gnu::noinline]] static void Rebuild(Kind* p, ZunAllocator* a) {
    Destruct(p);
    (void)ConstructDefault(p, a);
  }

  [[gnu::noinline]] static bool ReadCarefully(Kind* p, const Body& body) {
    if (!HasAllocatorFor(body, *p)) [[unlikely]]
      Rebuild(p, body.packet_allocator);
    BodyReader r(body);
    return Wire::Read(p, r, body);
  }

  static constexpr bool kReadsUsual = requires(Kind * p, UsualReader& r, const Body& body) { Wire::Read(p, r, body); };
  static constexpr bool kWritesUsual = requires(const Kind& p, UsualWriter& w) { Wire::Write(p, w, false); };

  static bool AssignFromBody(Kind* p, const Body& body) {
    if constexpr (kReadsUsual) {
      if (UsualReader::MayRead(body) && HasAllocatorFor(body, *p) && ReadUsual(p, body)) [[likely]]
        return true;
    }
    return ReadCarefully(p, body);
  }
  [[gnu::always_inline]] static bool ReadUsual(Kind* p, const Body& body) {
    UsualReader r(body);
    if (Wire::Read(p, r, body)) [[likely]]
      return true;
    r.GiveBack();
    return false;
  }

  static ZunSizeT EncodedLength(const Kind& p, ZunSizeT begin, ZunRtcpDialect dialect) {
    if constexpr (requires { Wire::EncodedLength(p, begin, dialect); }) {
      return Wire::EncodedLength(p, begin, dialect);
    } else {
      return Wire::Length(p);
    }
  }

  // A write that fails may have failed at what is not usual.
  static bool WriteAll(const Kind& p, Output& out, bool pad) {
    if constexpr (kWritesUsual) {
      return WriteUsual(p, out, pad) || WriteCarefully(p, out, pad);
    } else {
      return Wire::Write(p, out, pad);
    }
  }
  [[gnu::always_inline]] static bool WriteUsual(const Kind& p, Output& out, bool pad) {
    UsualWriter w(out);
    if (!Wire::Write(p, w, pad)) [[unlikely]]
      return false;
    w.Keep();
    return true;
  }
  [[gnu::noinline]] static bool WriteCarefully(const Kind& p, Output& out, bool pad) {
    BodyWriter w(out, Wire::Length(p));
    return Wire::Write(p, w, pad);
  }

  // What is encoded into a block must fit the wire. In debug builds a message that was written without a refusal must
  // be as long as was said.
  static bool Write(const Kind& p, Output& out, bool pad) {
    if constexpr (!requires { Wire::kLooksWhileItWrites; }) {
      if (out.IsBlock() && Wire::FindUnencodable(p, out.dialect()) != ZUN_RTCP_ENCODE_REASON_NONE) return false;
    }
#ifdef NDEBUG
    return WriteAll(p, out, pad);
#else
    const ZunSizeT begin = out.Size();
    const bool written = WriteAll(p, out, pad);
    assert(!written || out.WasRefused() || out.Size() - begin == EncodedLength(p, begin, out.dialect()));
    assert(!written || !out.IsBlock() || Wire::FindUnencodable(p, out.dialect()) == ZUN_RTCP_ENCODE_REASON_NONE);
    return written;
#endif
  }
};

}  // namespace zun

// What reads and writes a kind is one function each, into which all that it calls is inlined, whatever the optimiser
// thinks of its size: where all sources are optimised at once it makes calls of single stores.
#define ZUN_RTCP_ROW_DEFINE(Kind, Wire)                                                                               \
  ZUN_RTCP_ROW_INTERNALS_DECLARE(Kind)                                                                                \
  namespace zun {                                                                                                     \
  using RowOf##Kind =                                                                                                 \
      Row<Kind, Wire, Kind##ConstructDefault, Kind##ConstructCopy, Kind##Assign, Kind##Destruct, Kind##GetAllocator>; \
  [[gnu::flatten]] bool Kind##AssignFromBody(ZunRtcpSubpacket* p, const Body& body) {                                 \
    return RowOf##Kind::AssignFromBody(As<Kind>(p), body);                                                            \
  }                                                                                                                   \
  bool Kind##ConstructFromBody(ZunRtcpSubpacket* p, const Body& body, ZunAllocator* a) {                              \
    return Kind##ConstructDefault(As<Kind>(p), a) != nullptr && RowOf##Kind::ReadCarefully(As<Kind>(p), body);        \
  }                                                                                                                   \
  [[gnu::flatten]] bool Kind##Write(const ZunRtcpSubpacket* p, Output& out, bool pad) {                               \
    return RowOf##Kind::Write(*As<Kind>(p), out, pad);                                                                \
  }                                                                                                                   \
  ZunSizeT Kind##EncodedLength(const ZunRtcpSubpacket* p, ZunSizeT begin, ZunRtcpDialect dialect) {                   \
    return RowOf##Kind::EncodedLength(*As<Kind>(p), begin, dialect);                                                  \
  }                                                                                                                   \
  ZunRtcpEncodeReason Kind##FindUnencodable(const ZunRtcpSubpacket* p, ZunRtcpDialect dialect) {                      \
    return Wire::FindUnencodable(*As<Kind>(p), dialect);                                                              \
  }                                                                                                                   \
  }                                                                                                                   \
  ZUN_RTCP_ROW_DEFINE_BUFFER_OPERATIONS(Kind)                                                                         \
  ZunRtcpSubpacket* Kind##ConstructCopyAllocator(ZunRtcpSubpacket* p, const ZunRtcpSubpacket* o, ZunAllocator* a) {   \
    return zun::AsSubpacket(zun::RowOf##Kind::CopyWithAllocator(zun::As<Kind>(p), zun::As<Kind>(o), a));              \
  }                                                                                                                   \
  void Kind##DestructWrap(ZunRtcpSubpacket* p) { Kind##Destruct(zun::As<Kind>(p)); }                                  \
  ZunRtcpSubpacket* Kind##AssignWrap(ZunRtcpSubpacket* p, const ZunRtcpSubpacket* o) {                                \
    return zun::AsSubpacket(Kind##Assign(zun::As<Kind>(p), zun::As<Kind>(o)));                                        \
  }                                                                                                                   \
  ZunAllocator* Kind##GetAllocatorWrap(ZunRtcpSubpacket* p) { return Kind##GetAllocator(zun::As<Kind>(p)); }          \
  ZunSizeT Kind##GetPacketLength(const ZunRtcpSubpacket* p) { return Wire::Length(*zun::As<Kind>(p)); }

// The three operations of a row that read or write strings.
#define ZUN_RTCP_ROW_DEFINE_BUFFER_OPERATIONS(Kind)                                                        \
  ZunBool Kind##WritePacket(const ZunRtcpSubpacket* p, ZunString* b, ZunBool pad) {                        \
    zun::Output out(b);                                                                                    \
    return zun::Kind##Write(p, out, pad != 0);                                                             \
  }                                                                                                        \
  ZunBool Kind##ConstructFromBuffer(ZunRtcpSubpacket* p, const ZunString* b, ZunSizeT begin, ZunSizeT end, \
                                    ZunRtcpSubpacketType pt, ZunUint8 count, ZunAllocator* a) {            \
    return zun::Kind##ConstructFromBody(p, zun::BodyIn(b, begin, end, {pt, count}), a);                    \
  }                                                                                                        \
  ZunBool Kind##AssignFromBuffer(ZunRtcpSubpacket* p, const ZunString* b, ZunSizeT begin, ZunSizeT end,    \
                                 ZunRtcpSubpacketType pt, ZunUint8 count) {                                \
    return zun::Kind##AssignFromBody(p, zun::BodyIn(b, begin, end, {pt, count}));                          \
  }

// Copy, assignment and end of a kind: of one that owns memory through the fields named,
//   ZUN_RTCP_OWNING_KIND_DEFINE(ZunRtcpBye, kIdentity, &ZunRtcpBye::sources, &ZunRtcpBye::reason)
// and of one that owns none. What is copied to is marked as that kind, whatever the source says of itself.
#define ZUN_RTCP_OWNING_KIND_DEFINE(Kind, identity, ...)                                                      \
  ZUN_OWNED_FIELDS(Kind, __VA_ARGS__)                                                                         \
  Kind* Kind##ConstructCopy(Kind* p, const Kind* o) {                                                         \
    return identity.Mark(zun::Owned<__VA_ARGS__>::ConstructCopy(p, o));                                       \
  }                                                                                                           \
  Kind* Kind##Assign(Kind* p, const Kind* o) { return identity.Mark(zun::Owned<__VA_ARGS__>::Assign(p, o)); } \
  void Kind##Destruct(Kind* p) { zun::Owned<__VA_ARGS__>::Destruct(p); }

#define ZUN_RTCP_PLAIN_KIND_DEFINE(Kind) \
  ZUN_PLAIN_DEFINE(Kind)                 \
  ZunAllocator* Kind##GetAllocator(Kind*) { return nullptr; }

#endif
