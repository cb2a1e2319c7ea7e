#include "Zun/Rtp/TransportFeedback/TransportCcWriter.h"

#include <bit>

#include "Zun/Rtp/TransportFeedback/StatusChunk.h"

namespace {

using PacketInfo = ZunRtcpRtpfbTransportCcPacketInfo;
using zun::OneBitChunk;
using zun::RunLengthChunk;
using zun::TwoBitChunk;

// The bytes that the writer of a delta stores, whatever it needs.
constexpr ZunUint32 kDeltaStore = 2;

// Packets that agree in the telling bits of a status have the same. That they may have it without agreeing does not
// matter to those who look for runs.
ZunUint32 TellingBits(ZunUint32 status) {
  if (status == zun::kNotReceived) return zun::kReceivedBits;
  if (status == zun::kNoDelta) return zun::kReceivedBits | zun::kHaveDeltaBits;
  return zun::kReceivedBits | zun::kHaveDeltaBits | zun::kLargeDeltaBits;
}

constexpr ZunDistanceT kStride = 8;  // packets that are looked at together

// The bits in which any packet of a stride differs.
ZunUint32 DifferenceInStride(const PacketInfo* infos, ZunUint32 bits) {
  ZunUint32 difference = 0;
  for (ZunDistanceT i = 0; i < kStride; ++i) difference |= zun::BitsOf(infos[i]) ^ bits;
  return difference;
}

// The end of the run of packets with the status of `first`, of which those in front of `end`, a stride or more, are
// known to be a part.
const PacketInfo* EndOfRun(const PacketInfo* first, const PacketInfo* end, const PacketInfo* last) {
  const ZunUint32 status = zun::StatusOf(*first);
  const ZunUint32 bits = zun::BitsOf(*first);
  const auto is_of_run = [=](const PacketInfo* infos) {
    return (DifferenceInStride(infos, bits) & TellingBits(status)) == 0;
  };
  while (last - end >= kStride && is_of_run(end)) end += kStride;
  // A run that goes on to the end is seen so by the last stride, part of which is known already.
  if (last - end < kStride && is_of_run(last - kStride)) return last;
  while (end != last && zun::StatusOf(*end) == status) ++end;
  return end;
}

// How many there are, as the unsigned number that counts are.
template <typename T>
ZunSizeT CountFrom(const T* first, const T* end) {
  return static_cast<ZunSizeT>(end - first);
}

// Makes chunks of a list of packets, one after the other. It tells the status of each packet once, but for those of
// long runs, and keeps those that no chunk has told of yet.
class ChunkMaker {
 public:
  ChunkMaker(const PacketInfo* first, const PacketInfo* last, bool is_registered)
      : first_(first), last_(last), is_registered_(is_registered) {}

  // The packet that the next chunk begins with; the end when there is none.
  const PacketInfo* first() const { return first_; }

  struct Chunk {
    ZunUint32 word;
    ZunUint32 count;  // of the packets that it tells of
  };

  // There is at least one packet left.
  //
  // A run goes on until the status changes, and a vector until it is full. A run becomes a vector when the status
  // changes while a vector has room left: within 7 packets, or within 14 that one bit each can tell. A vector has room
  // for 14 only as long as neither it nor the packet that follows needs two bits. So a vector of one-bit statuses may
  // end after 7 to 13 packets although more follow, and a reader, which takes it for 14, reads the next ones wrong.
  // Peers of the house know these very words, so there it stays as it is; in the registered dialect the first 7 take
  // two bits each instead, which every reader reads back.
  Chunk Next() {
    if (known_ < OneBitChunk::kCount) Tell();
    const ZunUint32 window = known_ < OneBitChunk::kCount ? known_ : OneBitChunk::kCount;
    const ZunUint32 run = Fewer(SameAsFirst(), window);
    const ZunUint32 narrow = Fewer(Narrow(), window);
    if (run == OneBitChunk::kCount) return LongRun();
    if (run == window || (run >= TwoBitChunk::kCount && run >= narrow)) return Taken(RunWord(run), run);
    if (narrow == window || (narrow >= TwoBitChunk::kCount && !is_registered_)) {
      return Taken(OneBitChunk::Word(OneBitEach(narrow), narrow), narrow);
    }
    const ZunUint32 count = Fewer(window, TwoBitChunk::kCount);
    return Taken(TwoBitChunk::Word(FirstPairs(count), count), count);
  }

 private:
  static constexpr ZunUint32 kPairs = 32;  // that fit
  static_assert(OneBitChunk::kCount - 1 + zun::kPacketsAtOnce <= kPairs);
  static constexpr ZunUint64 kEveryPair = 0x5555555555555555;

  static ZunUint32 Fewer(ZunUint32 a, ZunUint32 b) { return a < b ? a : b; }

  // Adds the statuses of as many packets more as are told at once, or are left.
  void Tell() {
    const PacketInfo* const next = first_ + known_;
    const ZunSizeT left = CountFrom(next, last_);
    if (left >= zun::kPacketsAtOnce) {
      Keep(zun::StatusPairsOf(next), zun::kPacketsAtOnce);
    } else if (left != 0) {
      ZunUint32 pairs = 0;
      for (ZunUint32 i = 0; i < left; ++i) pairs = pairs << 2 | zun::StatusOf(next[i]);
      Keep(pairs, static_cast<ZunUint32>(left));
    }
  }
  void Keep(ZunUint32 pairs, ZunUint32 count) {
    pairs_ |= ZunUint64{pairs} << 2 * (kPairs - count) >> 2 * known_;
    known_ += count;
  }

  ZunUint32 FirstPairs(ZunUint32 count) const { return static_cast<ZunUint32>(pairs_ >> 2 * (kPairs - count)); }
  ZunUint32 RunWord(ZunUint32 count) const { return RunLengthChunk::Word(FirstPairs(1), count); }
  // How many statuses are that of the first, and how many come before one that takes two bits; those that are not known
  // look like zeros.
  ZunUint32 SameAsFirst() const { return LeadingZeroPairs(pairs_ ^ kEveryPair * FirstPairs(1)); }
  ZunUint32 Narrow() const { return LeadingZeroPairs(pairs_ & 2 * kEveryPair); }
  static ZunUint32 LeadingZeroPairs(ZunUint64 pairs) { return static_cast<ZunUint32>(std::countl_zero(pairs)) / 2; }
  // The lower bits of the first pairs.
  ZunUint32 OneBitEach(ZunUint32 count) const {
    ZunUint32 bits = FirstPairs(count) & 0x5555555;
    bits = (bits | bits >> 1) & 0x33333333;
    bits = (bits | bits >> 2) & 0x0F0F0F0F;
    bits = (bits | bits >> 4) & 0x00FF00FF;
    return (bits | bits >> 8) & 0xFFFF;
  }

  Chunk LongRun() {
    const PacketInfo* const limit =
        CountFrom(first_, last_) > RunLengthChunk::kMaxCount ? first_ + RunLengthChunk::kMaxCount : last_;
    static_assert(OneBitChunk::kCount >= kStride);
    const PacketInfo* const end = EndOfRun(first_, first_ + OneBitChunk::kCount, limit);
    const ZunUint32 count = static_cast<ZunUint32>(end - first_);
    const Chunk chunk = {RunWord(count), count};
    if (count < known_) return Taken(chunk.word, count);
    first_ = end;
    pairs_ = 0;
    known_ = 0;
    return chunk;
  }
  Chunk Taken(ZunUint32 word, ZunUint32 count) {
    first_ += count;
    pairs_ <<= 2 * count;
    known_ -= count;
    return {word, count};
  }

  const PacketInfo* first_;
  const PacketInfo* last_;
  bool is_registered_;
  ZunUint64 pairs_ = 0;  // the statuses that are known, of two bits each, the first in the highest
  ZunUint32 known_ = 0;  // how many
};

// The one writer of a delta. It stores kDeltaStore bytes, of which it returns how many count.
ZunUint32 StoreDelta(ZunUint8* to, const PacketInfo& info) {
  const ZunUint32 size = zun::DeltaSizeOf(zun::StatusOf(info));
  const ZunUint8 low = static_cast<ZunUint8>(info.delta & 0xFF);
  to[0] = size == 2 ? static_cast<ZunUint8>(info.delta >> 8 & 0xFF) : low;
  to[1] = low;
  return size;
}

// Whether a stride of packets have a delta of one byte each, as nearly all have: those that agree with the first.
bool IsStrideOfSmallDeltas(const PacketInfo* infos) {
  if (zun::StatusOf(*infos) != zun::kSmallDelta) return false;
  return (DifferenceInStride(infos, zun::BitsOf(*infos)) & TellingBits(zun::kSmallDelta)) == 0;
}

}  // namespace

namespace zun {

TransportCcLayout::TransportCcLayout(const ZunVector_ZunRtcpRtpfbTransportCcPacketInfo& infos, ZunRtcpDialect dialect)
    : is_registered_(dialect == ZUN_RTCP_DIALECT_REGISTERED), begin_(infos.begin), end_(infos.end) {
  ChunkMaker maker(infos.begin, infos.end, is_registered_);
  ZunSizeT chunks = 0;
  ZunSizeT deltas = 0;
  bool is_small = true;
  for (; chunks != kKept && maker.first() != end_; ++chunks) {
    const ChunkMaker::Chunk chunk = maker.Next();
    const zun::StatusChunk statuses(chunk.word);
    const ZunUint32 size = statuses.DeltaSize(chunk.count);
    deltas += size;
    is_small = is_small && size == chunk.count && !statuses.IsTwoBit();
    kept_[chunks] = static_cast<ZunUint16>(chunk.word);
  }
  after_kept_ = maker.first();
  is_small_ = is_small && after_kept_ == end_;
  for (; maker.first() != end_; ++chunks) {
    const ChunkMaker::Chunk chunk = maker.Next();
    deltas += zun::StatusChunk(chunk.word).DeltaSize(chunk.count);
  }
  chunks_ = chunks;
  deltas_ = deltas;
}

ZunSizeT TransportCcLayout::Size() const { return chunks_ * kChunkSize + deltas_; }

bool TransportCcLayout::Write(BodyWriter& w) const {
  if (!WriteChunks(w)) return false;
  WriteDeltas(w);
  return true;
}

bool TransportCcLayout::WriteChunks(BodyWriter& w) const {
  const ZunSizeT kept = chunks_ < kKept ? chunks_ : kKept;
  for (ZunSizeT i = 0; i < kept; ++i) {
    if (!w.U16(kept_[i])) return false;
  }
  ChunkMaker maker(after_kept_, end_, is_registered_);
  while (maker.first() != end_) {
    if (!w.U16(static_cast<ZunUint16>(maker.Next().word))) return false;
  }
  return true;
}

void TransportCcLayout::WriteDeltas(BodyWriter& w) const {
  const PacketInfo* info = begin_;
  const PacketInfo* const last = end_;
  // The fast path: while as many bytes are free as the writer of a delta stores, it stores them in place.
  if (ZunUint8* to = w.Block(deltas_)) {
    if (is_small_) {
      for (; info != last; ++info) *to++ = static_cast<ZunUint8>(info->delta & 0xFF);
      return;
    }
    const ZunUint8* const end = to + deltas_;
    for (; last - info >= kStride && CountFrom(to, end) >= kDeltaStore * kStride; info += kStride) {
      if (IsStrideOfSmallDeltas(info)) {
        for (ZunDistanceT i = 0; i < kStride; ++i) to[i] = static_cast<ZunUint8>(info[i].delta & 0xFF);
        to += kStride;
      } else {
        for (ZunDistanceT i = 0; i < kStride; ++i) to += StoreDelta(to, info[i]);
      }
    }
    for (; info != last && CountFrom(to, end) >= kDeltaStore; ++info) to += StoreDelta(to, *info);
    for (; info != last; ++info) {
      ZunUint8 delta[kDeltaStore];
      const ZunUint32 size = StoreDelta(delta, *info);
      if (size != 0) *to++ = delta[0];  // the last byte of all, so it is a small one
    }
    return;
  }
  for (; info != last; ++info) {
    ZunUint8 delta[kDeltaStore];
    const ZunUint32 size = StoreDelta(delta, *info);
    (void)w.Octets(delta, size);
  }
}

}  // namespace zun
