// The packet chunks of transport-wide congestion control feedback: packet statuses, packed (draft-holmer-rmcat-
// transport-wide-cc-extensions-01, section 3.1.2 to 3.1.4).
//
//    0                   1
//    0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5
//   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
//   |0| S |       run length        |  S, 1 to 8191 times
//   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
//   |1|0|      14 statuses          |  of one bit, kNotReceived or kSmallDelta
//   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
//   |1|1|   7 statuses of two bits  |
//   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
#ifndef ZUN_RTP_TRANSPORTFEEDBACK_STATUSCHUNK_H
#define ZUN_RTP_TRANSPORTFEEDBACK_STATUSCHUNK_H

#include <bit>

#include "Zun/Rtp/TransportFeedback/ZunRtcpRtpfbTransportCcPacketInfo.h"

namespace zun {

// The status of a packet, as on the wire. The first two are those that one bit can tell.
enum PacketStatus : ZunUint32 {
  kNotReceived = 0,
  kSmallDelta = 1,  // received, with a delta of one byte, unsigned
  kLargeDelta = 2,  // received, with a delta of two bytes, signed
  kNoDelta = 3,     // received, without a delta
};

inline constexpr ZunUint32 kMaxRunLength = 8191;
inline constexpr ZunUint32 kOneBitRoom = 14;
inline constexpr ZunUint32 kTwoBitRoom = 7;
inline constexpr ZunUint32 kOneBitVector = 0x8000;
inline constexpr ZunUint32 kTwoBitVector = 0xC000;
inline constexpr ZunUint32 kRunStatusShift = 13;

inline ZunUint32 StatusOf(const ZunRtcpRtpfbTransportCcPacketInfo& info) {
  if (!info.received) return kNotReceived;
  if (!info.haveDelta) return kNoDelta;
  return static_cast<ZunUint16>(info.delta) < 256 ? kSmallDelta : kLargeDelta;
}

// The bytes of the delta of a packet of that status.
inline ZunUint32 DeltaSizeOf(ZunUint32 status) { return status == kNoDelta ? 0 : status; }

// Whether it takes two bits to tell the status.
inline bool IsWide(ZunUint32 status) { return status > kSmallDelta; }

// A chunk by its word, and the rules that are told by it.
class StatusChunk {
 public:
  explicit StatusChunk(ZunUint16 word) : word_(word) {}

  bool IsRun() const { return word_ < kOneBitVector; }
  bool IsOneBit() const { return word_ >> 14 == kOneBitVector >> 14; }
  bool IsTwoBit() const { return word_ >= kTwoBitVector; }

  // How many statuses it holds.
  ZunUint32 Room() const { return IsRun() ? word_ & kMaxRunLength : IsTwoBit() ? kTwoBitRoom : kOneBitRoom; }

  // Of a run.
  ZunUint32 RunStatus() const { return word_ >> kRunStatusShift; }
  // Status number `i` of a vector.
  ZunUint32 OneBitStatus(ZunUint32 i) const { return word_ >> (kOneBitRoom - 1 - i) & 1; }
  ZunUint32 TwoBitStatus(ZunUint32 i) const { return word_ >> 2 * (kTwoBitRoom - 1 - i) & 3; }
  ZunUint32 StatusAt(ZunUint32 i) const {
    return IsRun() ? RunStatus() : IsTwoBit() ? TwoBitStatus(i) : OneBitStatus(i);
  }

  // The bytes of the deltas that its first `count` statuses announce.
  ZunUint32 DeltaSize(ZunUint32 count) const {
    if (IsRun()) return DeltaSizeOf(RunStatus()) * count;
    if (!IsTwoBit()) {
      const ZunUint32 bits = (word_ & 0x3FFF) >> (kOneBitRoom - count);
      return SumOfPairs(bits - (bits >> 1 & 0x5555));  // each pair now holds how many of its bits are set
    }
    const ZunUint32 pairs = (word_ & 0x3FFF) >> 2 * (kTwoBitRoom - count);
    const ZunUint32 without_delta = pairs & pairs >> 1 & 0x5555;
    return SumOfPairs(pairs - 3 * without_delta);
  }

 private:
  // The sum of the eight numbers of two bits, each at most 2, that `pairs` consists of.
  static ZunUint32 SumOfPairs(ZunUint32 pairs) {
    const ZunUint32 nibbles = (pairs & 0x3333) + (pairs >> 2 & 0x3333);
    const ZunUint32 octets = (nibbles & 0x0F0F) + (nibbles >> 4 & 0x0F0F);
    return (octets & 0xFF) + (octets >> 8);
  }

  ZunUint32 word_;
};

// Packet infos as words of 32 bits: those that agree in the telling bits of one have its status. That they may have it
// without agreeing does not matter to those who look for runs.
inline ZunUint32 BitsOf(const ZunRtcpRtpfbTransportCcPacketInfo& info) { return std::bit_cast<ZunUint32>(info); }

inline ZunUint32 TellingBits(ZunUint32 status) {
  const ZunInt16 high = static_cast<ZunInt16>(0xFF00);
  if (status == kNotReceived) return BitsOf({0xFF, 0, 0});
  return BitsOf({0xFF, 0xFF, status == kNoDelta ? ZunInt16{0} : high});
}

// The end of the run of packets with the status of `first`, of which those in front of `end` are known to be a part.
inline const ZunRtcpRtpfbTransportCcPacketInfo* EndOfRun(const ZunRtcpRtpfbTransportCcPacketInfo* first,
                                                         const ZunRtcpRtpfbTransportCcPacketInfo* end,
                                                         const ZunRtcpRtpfbTransportCcPacketInfo* last) {
  constexpr ZunDistanceT kStride = 8;  // looked at together
  const ZunUint32 status = StatusOf(*first);
  const ZunUint32 bits = BitsOf(*first);
  for (; last - end >= kStride; end += kStride) {
    ZunUint32 difference = 0;
    for (ZunDistanceT i = 0; i < kStride; ++i) difference |= BitsOf(end[i]) ^ bits;
    if ((difference & TellingBits(status)) != 0) break;
  }
  while (end != last && StatusOf(*end) == status) ++end;
  return end;
}

// A chunk as it is to be written, and the packet behind the last one that it tells of.
struct NextChunk {
  ZunUint16 word;
  const ZunRtcpRtpfbTransportCcPacketInfo* end;
};

// The chunk that begins with packet `first`; there is at least one packet.
//
// A run goes on until the status changes, and a vector until it is full. A run becomes a vector when the status
// changes while a vector has room left: within 7 packets, or within 14 that one bit each can tell. A vector has room
// for 14 only as long as neither it nor the packet that follows needs two bits. So a vector of one-bit statuses may
// end after 7 to 13 packets although more follow, and a reader, which takes it for 14, reads the next ones wrong.
// Peers know these very words, so it stays as it is.
inline NextChunk GetNextChunk(const ZunRtcpRtpfbTransportCcPacketInfo* first,
                              const ZunRtcpRtpfbTransportCcPacketInfo* last) {
  const ZunUint32 status = StatusOf(*first);
  ZunUint32 one_bit = 0;   // the statuses taken so far, of one bit each
  ZunUint32 two_bits = 0;  // and of two
  ZunUint32 wide = 0;      // not 0 when one of them needs two
  bool is_run = true;      // they are all the same
  const ZunRtcpRtpfbTransportCcPacketInfo* const limit = last - first > kOneBitRoom ? first + kOneBitRoom : last;
  const ZunRtcpRtpfbTransportCcPacketInfo* end = first;
  for (; end != limit; ++end) {
    const ZunUint32 next = StatusOf(*end);
    const bool is_full = end - first >= kTwoBitRoom && (wide != 0 || IsWide(next));
    if (is_full && !(is_run && next == status)) break;
    is_run = is_run && next == status;
    wide |= next & 2;
    one_bit = one_bit << 1 | next;
    two_bits = two_bits << 2 | next;
  }
  ZunUint32 count = static_cast<ZunUint32>(end - first);
  if (is_run) {
    if (count == kOneBitRoom) {
      end = EndOfRun(first, end, last - first > kMaxRunLength ? first + kMaxRunLength : last);
      count = static_cast<ZunUint32>(end - first);
    }
    return {static_cast<ZunUint16>(status << kRunStatusShift | count), end};
  }
  const ZunUint32 word = wide != 0 ? kTwoBitVector | two_bits << 2 * (kTwoBitRoom - count)
                                   : kOneBitVector | one_bit << (kOneBitRoom - count);
  return {static_cast<ZunUint16>(word), end};
}

}  // namespace zun

#endif
