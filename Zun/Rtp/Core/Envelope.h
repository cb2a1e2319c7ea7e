// The generator of a feedback envelope: its copy, assignment and end, and the operations of its row, all of which hand
// on to the row of the message inside.
#ifndef ZUN_RTP_CORE_ENVELOPE_H
#define ZUN_RTP_CORE_ENVELOPE_H

#include "Zun/Rtp/Core/Dispatch.h"
#include "Zun/Rtp/Core/Row.h"
#include "Zun/Rtp/Core/Table.h"

// Level (Dispatch.h) chooses the row of a message, and that of the message in a body:
//   static const RtcpSubpacketFunctions& RowOfBody(const Body& body);
// A message that is rebuilt while it is read takes the allocator of the buffer.
#define ZUN_RTCP_ENVELOPE_DEFINE(Kind, Level)                                                                          \
  ZUN_RTCP_ROW_INTERNALS_DECLARE(Kind)                                                                                 \
  namespace zun {                                                                                                      \
  bool Kind##ConstructFromBody(ZunRtcpSubpacket* p, const Body& body, ZunAllocator* a) {                               \
    return Level::RowOfBody(body).construct_from_body(p, body, a);                                                     \
  }                                                                                                                    \
  bool Kind##AssignFromBody(ZunRtcpSubpacket* p, const Body& body) {                                                   \
    return Dispatch<Level>::AssignFromBody(                                                                            \
        Level::RowOfBody(body), p, body, [](const Body& of, ZunAllocator* own) { return of.BufferAllocatorOr(own); }); \
  }                                                                                                                    \
  bool Kind##Write(const ZunRtcpSubpacket* p, Output& out, bool pad) { return Dispatch<Level>::Write(p, out, pad); }   \
  ZunSizeT Kind##EncodedLength(const ZunRtcpSubpacket* p, ZunSizeT begin, ZunRtcpDialect dialect) {                    \
    return Dispatch<Level>::EncodedLength(p, begin, dialect);                                                          \
  }                                                                                                                    \
  ZunRtcpEncodeReason Kind##FindUnencodable(const ZunRtcpSubpacket* p, ZunRtcpDialect dialect) {                       \
    return Dispatch<Level>::FindUnencodable(p, dialect);                                                               \
  }                                                                                                                    \
  }                                                                                                                    \
  ZUN_RTCP_ROW_DEFINE_BUFFER_OPERATIONS(Kind)                                                                          \
  Kind* Kind##ConstructCopy(Kind* p, const Kind* o) {                                                                  \
    return zun::As<Kind>(zun::Dispatch<Level>::ConstructCopy(zun::AsSubpacket(p), zun::AsSubpacket(o)));               \
  }                                                                                                                    \
  Kind* Kind##Assign(Kind* p, const Kind* o) {                                                                         \
    return zun::As<Kind>(zun::Dispatch<Level>::Assign(zun::AsSubpacket(p), zun::AsSubpacket(o)));                      \
  }                                                                                                                    \
  void Kind##Destruct(Kind* p) { zun::Dispatch<Level>::Destruct(zun::AsSubpacket(p)); }                                \
  ZunAllocator* Kind##GetAllocator(Kind* p) { return zun::Dispatch<Level>::GetAllocator(zun::AsSubpacket(p)); }        \
  ZunRtcpSubpacket* Kind##ConstructCopyAllocator(ZunRtcpSubpacket* p, const ZunRtcpSubpacket* o, ZunAllocator* a) {    \
    return zun::Dispatch<Level>::ConstructCopyAllocator(p, o, a);                                                      \
  }                                                                                                                    \
  void Kind##DestructWrap(ZunRtcpSubpacket* p) { zun::Dispatch<Level>::Destruct(p); }                                  \
  ZunRtcpSubpacket* Kind##AssignWrap(ZunRtcpSubpacket* p, const ZunRtcpSubpacket* o) {                                 \
    return zun::Dispatch<Level>::Assign(p, o);                                                                         \
  }                                                                                                                    \
  ZunAllocator* Kind##GetAllocatorWrap(ZunRtcpSubpacket* p) { return zun::Dispatch<Level>::GetAllocator(p); }          \
  ZunSizeT Kind##GetPacketLength(const ZunRtcpSubpacket* p) { return zun::Dispatch<Level>::GetPacketLength(p); }

#endif
