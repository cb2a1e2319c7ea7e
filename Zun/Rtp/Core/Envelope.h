// The generator of a feedback envelope: its copy, assignment and end, and the eight operations of its row, all of
// which hand on to the row of the message inside.
#ifndef ZUN_RTP_CORE_ENVELOPE_H
#define ZUN_RTP_CORE_ENVELOPE_H

#include "Zun/Rtp/Core/Dispatch.h"
#include "Zun/Rtp/Core/Row.h"

// Level (Dispatch.h) chooses the row of a message, and tells which one a body holds:
//   static ZunInt32 ValueOfBody(const ZunString* b, ZunSizeT begin, ZunSizeT end, ZunUint8 count);
// A message that is rebuilt while it is read takes the allocator of the buffer string.
#define ZUN_RTCP_ENVELOPE_DEFINE(Kind, Level)                                                                       \
  Kind* Kind##ConstructCopy(Kind* p, const Kind* o) {                                                               \
    return zun::As<Kind>(zun::Dispatch<Level>::ConstructCopy(zun::AsSubpacket(p), zun::AsSubpacket(o)));            \
  }                                                                                                                 \
  Kind* Kind##Assign(Kind* p, const Kind* o) {                                                                      \
    return zun::As<Kind>(zun::Dispatch<Level>::Assign(zun::AsSubpacket(p), zun::AsSubpacket(o)));                   \
  }                                                                                                                 \
  void Kind##Destruct(Kind* p) { zun::Dispatch<Level>::Destruct(zun::AsSubpacket(p)); }                             \
  ZunAllocator* Kind##GetAllocator(Kind* p) { return zun::Dispatch<Level>::GetAllocator(zun::AsSubpacket(p)); }     \
  ZunRtcpSubpacket* Kind##ConstructCopyAllocator(ZunRtcpSubpacket* p, const ZunRtcpSubpacket* o, ZunAllocator* a) { \
    return zun::Dispatch<Level>::ConstructCopyAllocator(p, o, a);                                                   \
  }                                                                                                                 \
  void Kind##DestructWrap(ZunRtcpSubpacket* p) { zun::Dispatch<Level>::Destruct(p); }                               \
  ZunRtcpSubpacket* Kind##AssignWrap(ZunRtcpSubpacket* p, const ZunRtcpSubpacket* o) {                              \
    return zun::Dispatch<Level>::Assign(p, o);                                                                      \
  }                                                                                                                 \
  ZunAllocator* Kind##GetAllocatorWrap(ZunRtcpSubpacket* p) { return zun::Dispatch<Level>::GetAllocator(p); }       \
  ZunBool Kind##WritePacket(const ZunRtcpSubpacket* p, ZunString* b, ZunBool pad) {                                 \
    return zun::Dispatch<Level>::WritePacket(p, b, pad);                                                            \
  }                                                                                                                 \
  ZunSizeT Kind##GetPacketLength(const ZunRtcpSubpacket* p) { return zun::Dispatch<Level>::GetPacketLength(p); }    \
  ZunBool Kind##ConstructFromBuffer(ZunRtcpSubpacket* p, const ZunString* b, ZunSizeT begin, ZunSizeT end,          \
                                    ZunRtcpSubpacketType pt, ZunUint8 count, ZunAllocator* a) {                     \
    const ZunInt32 value = Level::ValueOfBody(b, begin, end, count);                                                \
    return Level::RowOf(value).construct_from_buffer(p, b, begin, end, pt, count, a);                               \
  }                                                                                                                 \
  ZunBool Kind##AssignFromBuffer(ZunRtcpSubpacket* p, const ZunString* b, ZunSizeT begin, ZunSizeT end,             \
                                 ZunRtcpSubpacketType pt, ZunUint8 count) {                                         \
    const ZunInt32 value = Level::ValueOfBody(b, begin, end, count);                                                \
    return zun::Dispatch<Level>::AssignFromBuffer(value, p, b, begin, end, pt, count, b->allocator);                \
  }

#endif
