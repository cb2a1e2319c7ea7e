// The packet chunks of transport-wide congestion control feedback: packet statuses, packed (draft-holmer-rmcat-
// transport-wide-cc-extensions-01, sections 3.1.1 to 3.1.4).
#ifndef ZUN_RTP_TRANSPORTFEEDBACK_STATUSCHUNK_H
#define ZUN_RTP_TRANSPORTFEEDBACK_STATUSCHUNK_H

#include <bit>
#include <cstring>

#include "Zun/Rtp/TransportFeedback/ZunRtcpRtpfbTransportCcPacketInfo.h"

namespace zun {

// The status of a packet, as on the wire. The first two are those that one bit can tell.
enum PacketStatus : ZunUint32 {
  kNotReceived = 0,
  kSmallDelta = 1,  // received, with a delta of one byte, unsigned
  kLargeDelta = 2,  // received, with a delta of two bytes, signed
  kNoDelta = 3,     // received, without a delta
};

// A packet info as a word of 32 bits, and the bits of it that say something.
constexpr ZunUint32 BitsOf(const ZunRtcpRtpfbTransportCcPacketInfo& info) { return std::bit_cast<ZunUint32>(info); }
inline constexpr ZunUint32 kReceivedBits = BitsOf({0xFF, 0, 0});
inline constexpr ZunUint32 kHaveDeltaBits = BitsOf({0, 0xFF, 0});
inline constexpr ZunUint32 kLargeDeltaBits = BitsOf({0, 0, static_cast<ZunInt16>(0xFF00)});

// Makes a run of packets received, each with the delta of one byte that stands for it in `deltas`. A packet is one
// store, and several are one where the compiler uses vector registers.
inline void FillSmallDeltas(ZunRtcpRtpfbTransportCcPacketInfo* infos, const ZunUint8* deltas, ZunUint32 count) {
  constexpr ZunUint32 kTimed = BitsOf({1, 1, 0});
  constexpr int kDeltaShift = std::countr_zero(BitsOf({0, 0, 1}));
  for (ZunUint32 i = 0; i < count; ++i) {
    const ZunUint32 bits = kTimed | ZunUint32{deltas[i]} << kDeltaShift;
    std::memcpy(infos + i, &bits, sizeof(bits));
  }
}

inline ZunUint32 StatusOf(const ZunRtcpRtpfbTransportCcPacketInfo& info) {
  if (!info.received) return kNotReceived;
  if (!info.haveDelta) return kNoDelta;
  return (BitsOf(info) & kLargeDeltaBits) == 0 ? kSmallDelta : kLargeDelta;
}

// The statuses of kPacketsAtOnce packets in pairs of bits, that of the first in the highest: what StatusOf tells, four
// packets at a time.
inline constexpr ZunUint32 kPacketsAtOnce = 16;

inline ZunUint32 StatusPairsOf(const ZunRtcpRtpfbTransportCcPacketInfo* infos) {
  typedef ZunUint32 Four [[gnu::vector_size(16)]];
  Four bytes = {};
  // Each group of four fills a byte. No function returns them: a 32-bit machine may have no register to do so.
  const auto add = [&bytes](const ZunRtcpRtpfbTransportCcPacketInfo* four) {
    Four bits;
    std::memcpy(&bits, four, sizeof(bits));
    const Four is_received = (bits & kReceivedBits) != 0;  // all ones where it is so
    const Four has_delta = (bits & kHaveDeltaBits) != 0;
    const Four is_large = (bits & kLargeDeltaBits) != 0;
    const Four with_delta = ZunUint32{kSmallDelta} - is_large;
    const Four statuses = is_received & (ZunUint32{kNoDelta} ^ (has_delta & (ZunUint32{kNoDelta} ^ with_delta)));
    bytes = bytes << 8 | statuses;
  };
  add(infos);
  add(infos + 4);
  add(infos + 8);
  add(infos + 12);
  return bytes[0] << 6 | bytes[1] << 4 | bytes[2] << 2 | bytes[3];
}

// The bytes of the delta of a packet of that status, which is known not to exceed kMaxStatus.
template <ZunUint32 kMaxStatus = kNoDelta>
constexpr ZunUint32 DeltaSizeOf(ZunUint32 status) {
  return kMaxStatus == kNoDelta && status == kNoDelta ? 0 : status;
}

inline constexpr ZunSizeT kChunkSize = 2;

// The sum of the eight numbers of two bits, each at most 2, that `pairs` consists of.
constexpr ZunUint32 SumOfPairs(ZunUint32 pairs) {
  const ZunUint32 nibbles = (pairs & 0x3333) + (pairs >> 2 & 0x3333);
  const ZunUint32 octets = (nibbles & 0x0F0F) + (nibbles >> 4 & 0x0F0F);
  return (octets & 0xFF) + (octets >> 8);
}

// A status S of up to 8191 packets.
//
//    0                   1
//    0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5
//   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
//   |0| S |       run length        |
//   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
struct RunLengthChunk {
  static constexpr ZunUint32 kMaxCount = 8191;
  static constexpr ZunUint32 kStatusShift = 13;

  static constexpr bool IsIn(ZunUint32 word) { return word < 0x8000; }
  static constexpr ZunUint32 Word(ZunUint32 status, ZunUint32 count) { return status << kStatusShift | count; }
  static constexpr ZunUint32 Count(ZunUint32 word) { return word & kMaxCount; }
  static constexpr ZunUint32 Status(ZunUint32 word) { return word >> kStatusShift; }
  static constexpr ZunUint32 DeltaSize(ZunUint32 word, ZunUint32 count) { return DeltaSizeOf(Status(word)) * count; }
};

// The statuses of 14 packets, kNotReceived or kSmallDelta, the first in the highest bit.
//
//    0                   1
//    0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5
//   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
//   |1|0|S|S|S|S|S|S|S|S|S|S|S|S|S|S|
//   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
struct OneBitChunk {
  static constexpr ZunUint32 kCount = 14;
  static constexpr ZunUint32 kMark = 0x8000;
  static constexpr ZunUint32 kMaxStatus = kSmallDelta;

  static constexpr bool IsIn(ZunUint32 word) { return word >> kCount == kMark >> kCount; }
  // Of `count` statuses, the last in the lowest bit; the bits after them are zeros.
  static constexpr ZunUint32 Word(ZunUint32 statuses, ZunUint32 count) { return kMark | statuses << (kCount - count); }
  static constexpr ZunUint32 Status(ZunUint32 word, ZunUint32 i) { return word >> (kCount - 1 - i) & 1; }
  // Of the first `count` statuses.
  static constexpr ZunUint32 DeltaSize(ZunUint32 word, ZunUint32 count) {
    const ZunUint32 bits = (word & 0x3FFF) >> (kCount - count);
    return SumOfPairs(bits - (bits >> 1 & 0x5555));  // each pair now holds how many of its bits are set
  }
};

// The statuses of 7 packets, the first in the highest two bits.
//
//    0                   1
//    0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5
//   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
//   |1|1| S | S | S | S | S | S | S |
//   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
struct TwoBitChunk {
  static constexpr ZunUint32 kCount = 7;
  static constexpr ZunUint32 kMark = 0xC000;
  static constexpr ZunUint32 kMaxStatus = kNoDelta;

  static constexpr bool IsIn(ZunUint32 word) { return word >= kMark; }
  static constexpr ZunUint32 Word(ZunUint32 statuses, ZunUint32 count) {
    return kMark | statuses << 2 * (kCount - count);
  }
  static constexpr ZunUint32 Status(ZunUint32 word, ZunUint32 i) { return word >> 2 * (kCount - 1 - i) & 3; }
  static constexpr ZunUint32 DeltaSize(ZunUint32 word, ZunUint32 count) {
    const ZunUint32 pairs = (word & 0x3FFF) >> 2 * (kCount - count);
    const ZunUint32 without_delta = pairs & pairs >> 1 & 0x5555;
    return SumOfPairs(pairs - 3 * without_delta);
  }
};

// A chunk of any form, told by its word.
class StatusChunk {
 public:
  explicit StatusChunk(ZunUint32 word) : word_(word) {}

  ZunUint32 word() const { return word_; }
  bool IsRun() const { return RunLengthChunk::IsIn(word_); }
  bool IsOneBit() const { return OneBitChunk::IsIn(word_); }
  bool IsTwoBit() const { return TwoBitChunk::IsIn(word_); }

  // How many statuses it holds.
  ZunUint32 Count() const {
    return IsRun() ? RunLengthChunk::Count(word_) : IsTwoBit() ? TwoBitChunk::kCount : OneBitChunk::kCount;
  }
  ZunUint32 Status(ZunUint32 i) const {
    return IsRun()      ? RunLengthChunk::Status(word_)
           : IsTwoBit() ? TwoBitChunk::Status(word_, i)
                        : OneBitChunk::Status(word_, i);
  }
  // The bytes of the deltas that its first `count` statuses announce.
  ZunUint32 DeltaSize(ZunUint32 count) const {
    return IsRun()      ? RunLengthChunk::DeltaSize(word_, count)
           : IsTwoBit() ? TwoBitChunk::DeltaSize(word_, count)
                        : OneBitChunk::DeltaSize(word_, count);
  }

 private:
  ZunUint32 word_;
};

}  // namespace zun

#endif
