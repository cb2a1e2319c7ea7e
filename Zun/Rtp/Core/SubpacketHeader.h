// The common header that opens every subpacket (RFC 3550, section 6.4.1).
//
//    0                   1                   2                   3
//    0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1
//   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
// 0 |V=2|P|  count  |  packet type  |  length in 32-bit words - 1   |
//   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
#ifndef ZUN_RTP_CORE_SUBPACKETHEADER_H
#define ZUN_RTP_CORE_SUBPACKETHEADER_H

#include "Zun/Rtp/Core/BodyWriter.h"
#include "Zun/Rtp/Core/ZunRtcpSubpacketType.h"

namespace zun {

inline constexpr ZunSizeT kSubpacketHeaderSize = 4;

// The header of a subpacket of `length` bytes, header included. A count above 31 is not masked: it spills into the
// padding and version bits, as peers of this library have always seen it do. A length of 0 gives the length field
// 0xFFFF.
inline ZunUint32 SubpacketHeaderWord(bool pad, ZunUint8 count, ZunRtcpSubpacketType type, ZunSizeT length) {
  const ZunUint32 first = 0x80U | (pad ? 0x20U : 0U) | count;
  const ZunUint32 words = static_cast<ZunUint32>(length >> 2) - 1;
  return first << 24 | (static_cast<ZunUint32>(type) & 0xFF) << 16 | (words & 0xFFFF);
}

template <class Writer>
[[gnu::always_inline]] inline bool WriteSubpacketHeader(Writer& w, bool pad, ZunUint8 count, ZunRtcpSubpacketType type,
                                                        ZunSizeT length) {
  return w.U32(SubpacketHeaderWord(pad, count, type, length));
}

}  // namespace zun

#endif
