// One subpacket as it lies in the bytes of a datagram.
#ifndef ZUN_RTP_CORE_BODY_H
#define ZUN_RTP_CORE_BODY_H

#include "Zun/Rtp/Core/ReadTerms.h"
#include "Zun/Rtp/Core/ZunRtcpSubpacketType.h"
#include "Zun/Utils/ZunString.h"

namespace zun {

// What a reader is told of the common header in front of its body.
struct SubpacketHeader {
  ZunRtcpSubpacketType type;
  ZunUint8 count;  // the count, subtype or feedback message type, 0 to 31
};

// The body octets[begin, end). `end` may lie beyond `size` when a caller says so; no reader follows it there.
struct Body {
  const ZunUint8* octets;  // the datagram; may be null when it is empty
  ZunSizeT size;
  ZunSizeT begin;
  ZunSizeT end;
  ZunSizeT limit;  // where what is readable ends: the end or the size, but not below the beginning
  SubpacketHeader header;
  ZunAllocator* buffer_allocator;  // of the string that holds the datagram; null when it has none
  ZunAllocator* packet_allocator;  // of the compound packet that is read into; null when there is none
  // Where a datagram is decoded. What is read then is that which is told by its octets alone, whatever the object held,
  // and belongs to the packet's allocator. Null where it is parsed, or a row is read on its own.
  ReadTerms* terms;

  bool IsDecoded() const { return terms != nullptr; }
  bool IsRegistered() const { return terms != nullptr && terms->dialect == ZUN_RTCP_DIALECT_REGISTERED; }

  // The allocator of what takes that of the buffer: where the buffer has none, the one that the object has, and where
  // that has none either, the packet's.
  ZunAllocator* BufferAllocatorOr(ZunAllocator* own) const {
    if (buffer_allocator != nullptr) return buffer_allocator;
    return own != nullptr ? own : packet_allocator;
  }
};

inline ZunSizeT ReadableLimit(ZunSizeT size, ZunSizeT begin, ZunSizeT end) {
  const ZunSizeT limit = end < size ? end : size;
  return begin < limit ? limit : begin;
}

inline Body BodyIn(const ZunString* b, ZunSizeT begin, ZunSizeT end, SubpacketHeader header) {
  return {reinterpret_cast<const ZunUint8*>(b->buf),
          b->size,
          begin,
          end,
          ReadableLimit(b->size, begin, end),
          header,
          b->allocator,
          nullptr,
          nullptr};
}

}  // namespace zun

#endif
