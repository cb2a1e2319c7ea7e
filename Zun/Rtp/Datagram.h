// The subpackets of a datagram, one after the other.
#ifndef ZUN_RTP_DATAGRAM_H
#define ZUN_RTP_DATAGRAM_H

#include "Zun/Rtp/Core/BodyReader.h"
#include "Zun/Rtp/Core/SubpacketHeader.h"

namespace zun {

// Walks a datagram by the headers in it.
class Datagram {
 public:
  // The octets, allocators and terms of `whole` are those of every body.
  explicit Datagram(const Body& whole) : body_(whole) {}

  // Goes on to the next subpacket. Where there is none that can be told, says why, and stays where it is.
  ZunRtcpDecodeReason RtcpSubpacketReadHeader() {
    constexpr ZunUint8 kVersion = 2;
    BodyReader r(body_.octets, body_.size, end_, body_.size);
    const ZunUint8* const octets = r.Take(kSubpacketHeaderSize);
    if (octets == nullptr) return ZUN_RTCP_DECODE_REASON_HEADER_CUT_OFF;
    body_.header = {octets[1], static_cast<ZunUint8>(octets[0] & 0x1F)};
    has_padding_ = (octets[0] & 0x20) != 0;
    if (octets[0] >> 6 != kVersion) return ZUN_RTCP_DECODE_REASON_VERSION;
    const ZunSizeT body_size = ZunSizeT{4} * ZunUint16FromOctets(octets + 2);
    if (!r.HasReadable(body_size)) return ZUN_RTCP_DECODE_REASON_LENGTH;
    body_.begin = r.Position();
    body_.end = end_ = body_.begin + body_size;
    return ZUN_RTCP_DECODE_REASON_NONE;
  }

  // Takes the padding octets, which the last of them counts, from the end of the body (RFC 3550, section 6.4.1). False
  // when there are not as many.
  bool TakePadding() {
    if (!has_padding_) return true;
    const ZunSizeT size = body_.end - body_.begin;
    const ZunUint8 count = size == 0 ? 0 : body_.octets[body_.end - 1];
    if (count == 0 || count > size) return false;
    body_.end -= count;
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
  bool has_padding_ = false;
};

// How many whole subpackets follow, as far as their headers tell.
inline ZunSizeT CountSubpackets(Datagram datagram) {
  ZunSizeT count = 0;
  while (datagram.RtcpSubpacketReadHeader() == ZUN_RTCP_DECODE_REASON_NONE) ++count;
  return count;
}

}  // namespace zun

#endif
