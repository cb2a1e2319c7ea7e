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

// Packet infos as words of 32 bits: those that agree in the telling bits of one have its status. That they may have it
// without agreeing does not matter to those who look for runs.
ZunUint32 BitsOf(const PacketInfo& info) { return std::bit_cast<ZunUint32>(info); }

ZunUint32 TellingBits(ZunUint32 status) {
  const ZunInt16 high = static_cast<ZunInt16>(0xFF00);
  if (status == zun::kNotReceived) return BitsOf({0xFF, 0, 0});
  return BitsOf({0xFF, 0xFF, status == zun::kNoDelta ? ZunInt16{0} : high});
}

// The end of the run of packets with the status of `first`, of which those in front of `end` are known to be a part.
const PacketInfo* EndOfRun(const PacketInfo* first, const PacketInfo* end, const PacketInfo* last) {
  constexpr ZunDistanceT kStride = 8;  // looked at together
  const ZunUint32 status = zun::StatusOf(*first);
  const ZunUint32 bits = BitsOf(*first);
  for (; last - end >= kStride; end += kStride) {
    ZunUint32 difference = 0;
    for (ZunDistanceT i = 0; i < kStride; ++i) difference |= BitsOf(end[i]) ^ bits;
    if ((difference & TellingBits(status)) != 0) break;
  }
  while (end != last && zun::StatusOf(*end) == status) ++end;
  return end;
}

// How many there are, as the unsigned number that counts are.
template <typename T>
ZunSizeT CountFrom(const T* first, const T* end) {
  return static_cast<ZunSizeT>(end - first);
}

// A chunk as it is to be written, and the packet after the last one that it tells of.
struct NextChunk {
  ZunUint32 word;
  const PacketInfo* end;
};

// The chunk that begins with packet `first`; there is at least one packet.
//
// A run goes on until the status changes, and a vector until it is full. A run becomes a vector when the status
// changes while a vector has room left: within 7 packets, or within 14 that one bit each can tell. A vector has room
// for 14 only as long as neither it nor the packet that follows needs two bits. So a vector of one-bit statuses may
// end after 7 to 13 packets although more follow, and a reader, which takes it for 14, reads the next ones wrong. Peers
// of the house know these very words, so there it stays as it is; in the registered dialect the first 7 take two bits
// each instead, which every reader reads back.
NextChunk GetNextChunk(const PacketInfo* first, const PacketInfo* last, bool is_registered) {
  const ZunUint32 status = zun::StatusOf(*first);
  ZunUint32 one_bit = 0;   // the statuses taken so far, of one bit each
  ZunUint32 two_bits = 0;  // and of two
  ZunUint32 wide = 0;      // not 0 when one of them needs two
  bool is_run = true;      // they are all the same
  const PacketInfo* const limit = CountFrom(first, last) > OneBitChunk::kCount ? first + OneBitChunk::kCount : last;
  const PacketInfo* end = first;
  for (; end != limit; ++end) {
    const ZunUint32 next = zun::StatusOf(*end);
    const bool is_full = CountFrom(first, end) >= TwoBitChunk::kCount && (wide != 0 || zun::IsWide(next));
    if (is_full && !(is_run && next == status)) break;
    is_run = is_run && next == status;
    wide |= next & 2;
    one_bit = one_bit << 1 | next;
    two_bits = two_bits << 2 | next;
  }
  ZunUint32 count = static_cast<ZunUint32>(end - first);
  const bool ends_early = count < OneBitChunk::kCount && end != last;
  if (is_registered && !is_run && wide == 0 && ends_early) {
    const ZunUint32 others = count - TwoBitChunk::kCount;
    return {TwoBitChunk::Word(two_bits >> 2 * others, TwoBitChunk::kCount), end - others};
  }
  if (!is_run) return {wide != 0 ? TwoBitChunk::Word(two_bits, count) : OneBitChunk::Word(one_bit, count), end};
  if (count == OneBitChunk::kCount) {
    end = EndOfRun(first, end,
                   CountFrom(first, last) > RunLengthChunk::kMaxCount ? first + RunLengthChunk::kMaxCount : last);
    count = static_cast<ZunUint32>(end - first);
  }
  return {RunLengthChunk::Word(status, count), end};
}

// The one writer of a delta. It stores kDeltaStore bytes, of which it returns how many count.
ZunUint32 StoreDelta(ZunUint8* to, const PacketInfo& info) {
  const ZunUint32 size = zun::DeltaSizeOf(zun::StatusOf(info));
  const ZunUint8 low = static_cast<ZunUint8>(info.delta & 0xFF);
  to[0] = size == 2 ? static_cast<ZunUint8>(info.delta >> 8 & 0xFF) : low;
  to[1] = low;
  return size;
}

}  // namespace

namespace zun {

TransportCcLayout::TransportCcLayout(const ZunVector_ZunRtcpRtpfbTransportCcPacketInfo& infos, ZunRtcpDialect dialect)
    : is_registered_(dialect == ZUN_RTCP_DIALECT_REGISTERED), begin_(infos.begin), end_(infos.end) {
  const PacketInfo* const last = infos.end;
  const PacketInfo* first = infos.begin;
  ZunSizeT chunks = 0;
  ZunSizeT deltas = 0;
  const auto next = [&] {
    const NextChunk chunk = GetNextChunk(first, last, is_registered_);
    deltas += zun::StatusChunk(chunk.word).DeltaSize(static_cast<ZunUint32>(chunk.end - first));
    first = chunk.end;
    ++chunks;
    return static_cast<ZunUint16>(chunk.word);
  };
  while (first != last && chunks != kKept) {
    const ZunUint16 word = next();
    kept_[chunks - 1] = word;
  }
  after_kept_ = first;
  while (first != last) next();
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
  for (const PacketInfo* first = after_kept_; first != end_;) {
    const NextChunk chunk = GetNextChunk(first, end_, is_registered_);
    if (!w.U16(static_cast<ZunUint16>(chunk.word))) return false;
    first = chunk.end;
  }
  return true;
}

void TransportCcLayout::WriteDeltas(BodyWriter& w) const {
  const PacketInfo* info = begin_;
  const PacketInfo* const last = end_;
  // The fast path: while as many bytes are free as the writer of a delta stores, it stores them in place.
  if (ZunUint8* to = w.Block(deltas_)) {
    const ZunUint8* const end = to + deltas_;
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
