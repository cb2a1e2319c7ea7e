// The subpackets of a datagram, one after the other.
#ifndef ZUN_RTP_DATAGRAM_H
#define ZUN_RTP_DATAGRAM_H

#include "Zun/Rtp/Core/Body.h"
#include "Zun/Rtp/Core/SubpacketHeader.h"
#include "Zun/Utils/ZunMiscInline.h"

namespace zun {

// Walks a datagram by the headers in it.
class Datagram {
 public:
  // The octets, allocators and terms of `whole` are those of every body.
  explicit Datagram(const Body& whole) : body_(whole) {}

  // Goes on to the next subpacket. Where there is none that can be told, says why, and stays where it is.
  ZunRtcpDecodeReason RtcpSubpacketReadHeader() {
    constexpr ZunUint32 kVersion = 2;
    const ZunSizeT left = body_.size - end_;
    if (left < kSubpacketHeaderSize) [[unlikely]]
      return ZUN_RTCP_DECODE_REASON_HEADER_CUT_OFF;
    const ZunUint32 word = ZunUint32FromOctets(body_.octets + end_);
    body_.header = {static_cast<ZunRtcpSubpacketType>(word >> 16 & 0xFF), static_cast<ZunUint8>(word >> 24 & 0x1F)};
    if (word >> 30 != kVersion) [[unlikely]]
      return ZUN_RTCP_DECODE_REASON_VERSION;
    const ZunSizeT size = kSubpacketHeaderSize + ZunSizeT{4} * (word & 0xFFFF);
    if (left < size) [[unlikely]]
      return ZUN_RTCP_DECODE_REASON_LENGTH;
    body_.begin = end_ + kSubpacketHeaderSize;
    end_ += size;
    body_.end = body_.limit = end_;
    return ZUN_RTCP_DECODE_REASON_NONE;
  }

  // Takes the padding octets, which the last of them counts, from the end of the body (RFC 3550, section 6.4.1). False
  // when there are not as many.
  bool TakePadding() {
    constexpr ZunUint8 kPaddingBit = 0x20;
    if ((body_.octets[body_.begin - kSubpacketHeaderSize] & kPaddingBit) == 0) [[likely]]
      return true;
    const ZunSizeT size = body_.end - body_.begin;
    const ZunUint8 count = size == 0 ? 0 : body_.octets[body_.end - 1];
    if (count == 0 || count > size) return false;
    body_.end = body_.limit = body_.end - count;
    return true;
  }

  bool AtEnd() const { return end_ == body_.size; }
  // Where the next subpacket begins.
  ZunSizeT Position() const { return end_; }
  // Of the subpacket that was gone to last.
  const Body& body() const { return body_; }

 private:
  Body body_;
  ZunSizeT end_ = 0;
};

// How many whole subpackets follow, as far as their headers tell.
inline ZunSizeT CountSubpackets(Datagram datagram) {
  ZunSizeT count = 0;
  while (datagram.RtcpSubpacketReadHeader() == ZUN_RTCP_DECODE_REASON_NONE) ++count;
  return count;
}

}  // namespace zun

#endif
