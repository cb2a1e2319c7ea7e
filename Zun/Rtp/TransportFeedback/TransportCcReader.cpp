#include "Zun/Rtp/TransportFeedback/TransportCcReader.h"

#include "Zun/Rtp/TransportFeedback/StatusChunk.h"
#include "Zun/Utils/VectorAlgorithms.h"

ZUN_VECTOR_USE_PLAIN(ZunRtcpRtpfbTransportCcPacketInfo)

namespace {

using PacketInfo = ZunRtcpRtpfbTransportCcPacketInfo;
using PacketInfos = zun::VectorOfZunRtcpRtpfbTransportCcPacketInfo;
using zun::OneBitChunk;
using zun::RunLengthChunk;
using zun::StatusChunk;
using zun::TwoBitChunk;

// The bytes that the reader of a delta looks at, whatever it needs, where statuses up to kMaxStatus occur.
template <ZunUint32 kMaxStatus = zun::kNoDelta>
constexpr ZunUint32 kDeltaLook = kMaxStatus == zun::kSmallDelta ? 1 : 2;

ZunUint32 Fewer(ZunUint32 a, ZunUint32 b) { return a < b ? a : b; }

// The chunks of a message, looked through before any packet is stored.
struct ChunkList {
  const ZunUint8* words;
  ZunUint32 packets = 0;  // that they tell of
  ZunSizeT deltas = 0;    // the bytes of the deltas that they announce

  // Reads chunks up to `wanted` packets; there are fewer when the body ends too early.
  ChunkList(zun::BodyReader& r, ZunUint32 wanted) : words(r.Take(0)) {
    ZunUint16 word;
    while (packets < wanted && r.U16(&word)) {
      const StatusChunk chunk(word);
      const ZunUint32 count = Fewer(chunk.Count(), wanted - packets);
      deltas += chunk.DeltaSize(count);
      packets += count;
    }
  }

  // Calls visit(chunk, number of packets) for each chunk until it returns false.
  template <class Visit>
  [[gnu::always_inline]] bool ForEach(Visit visit) const {
    const ZunUint8* word = words;
    for (ZunUint32 left = packets; left != 0; word += zun::kChunkSize) {
      const StatusChunk chunk(ZunUint16FromOctets(word));
      const ZunUint32 count = Fewer(chunk.Count(), left);
      if (!visit(chunk, count)) return false;
      left -= count;
    }
    return true;
  }
};

PacketInfo Untimed(ZunUint32 status) { return {status != zun::kNotReceived, 0, 0}; }

// How a large delta is formed: as a number of 16 bits in the registered dialect; in the house's, where the low byte has
// a sign of its own, as ZunInt16FromBuffer forms it.
template <bool kRegistered>
ZunInt16 LargeDelta(const ZunUint8* octets) {
  return kRegistered ? static_cast<ZunInt16>(ZunUint16FromOctets(octets)) : ZunInt16FromSpilledOctets_(octets);
}

// The one reader of a delta: the packet of that status, up to kMaxStatus, whose delta, if any, lies at `delta`. It
// takes no branch, as losses come unpredictably, and so looks at kDeltaLook<kMaxStatus> bytes.
template <bool kRegistered, ZunUint32 kMaxStatus = zun::kNoDelta>
PacketInfo Timed(ZunUint32 status, const ZunUint8* delta) {
  const ZunBool timed = zun::DeltaSizeOf<kMaxStatus>(status) != 0;
  const bool is_large = kMaxStatus >= zun::kLargeDelta && status == zun::kLargeDelta;
  const ZunInt16 value = is_large ? LargeDelta<kRegistered>(delta) : ZunInt16{delta[0]};
  return {status != zun::kNotReceived, timed, static_cast<ZunInt16>(value & -timed)};
}

// Packets [from, from + count) of a chunk, without deltas.
void FillUntimed(PacketInfo* to, StatusChunk chunk, ZunUint32 from, ZunUint32 count) {
  if (chunk.IsRun()) {
    const PacketInfo info = Untimed(RunLengthChunk::Status(chunk.word()));
    for (ZunUint32 i = 0; i < count; ++i) to[i] = info;
  } else {
    for (ZunUint32 i = 0; i < count; ++i) to[i] = Untimed(chunk.Status(from + i));
  }
}

// Appends the packets that the chunks tell of, without deltas. Where storage for all was refused the list grows bit by
// bit, and keeps what fits.
bool AppendUntimed(ZunVector_ZunRtcpRtpfbTransportCcPacketInfo* infos, const ChunkList& chunks) {
  return chunks.ForEach([infos](StatusChunk chunk, ZunUint32 count) {
    for (ZunUint32 from = 0; from < count;) {
      if (!PacketInfos::GrowIfFull(infos)) return false;
      const ZunSizeT room = PacketInfos::Capacity(infos) - PacketInfos::Size(infos);
      const ZunUint32 fitting = count - from < room ? count - from : static_cast<ZunUint32>(room);
      FillUntimed(infos->end, chunk, from, fitting);
      infos->end += fitting;
      from += fitting;
    }
    return true;
  });
}

// Puts deltas into packets, one chunk after the other. It is meant to live in registers, so all of it is inlined.
template <bool kRegistered>
class DeltaReader {
 public:
  DeltaReader(const ZunUint8* begin, const ZunUint8* end) : next_(begin), end_(end) {}

  // False at the first packet whose delta does not lie before the end. The fast path is taken where what the reader of
  // a delta looks at lies before the end for every packet of the chunk.
  [[gnu::always_inline]] bool Fill(PacketInfo* to, StatusChunk chunk, ZunUint32 count) {
    if (chunk.IsTwoBit()) return FillVector<TwoBitChunk>(to, chunk, count);
    if (chunk.IsOneBit()) return FillVector<OneBitChunk>(to, chunk, count);
    switch (RunLengthChunk::Status(chunk.word())) {
      case zun::kSmallDelta:
        return FillRun<zun::kSmallDelta>(to, chunk, count);
      case zun::kLargeDelta:
        return FillRun<zun::kLargeDelta>(to, chunk, count);
      default:
        FillUntimed(to, chunk, 0, count);
        return true;
    }
  }

 private:
  template <ZunUint32 kMaxStatus>
  bool CanLook(ZunUint32 count) const {
    return static_cast<ZunSizeT>(end_ - next_) >= ZunSizeT{kDeltaLook<kMaxStatus>} * count;
  }

  template <ZunUint32 kStatus>
  [[gnu::always_inline]] bool FillRun(PacketInfo* to, StatusChunk chunk, ZunUint32 count) {
    if (!CanLook<kStatus>(count)) return FillToEnd(to, chunk, count);
    const ZunUint8* const deltas = next_;
    if constexpr (kStatus == zun::kSmallDelta) {
      zun::FillSmallDeltas(to, deltas, count);
    } else {
      for (ZunUint32 i = 0; i < count; ++i)
        to[i] = Timed<kRegistered, kStatus>(kStatus, deltas + ZunSizeT{i} * kStatus);
    }
    next_ = deltas + ZunSizeT{count} * kStatus;
    return true;
  }

  template <class Chunk>
  [[gnu::always_inline]] bool FillVector(PacketInfo* to, StatusChunk chunk, ZunUint32 count) {
    if (!CanLook<Chunk::kMaxStatus>(count)) return FillToEnd(to, chunk, count);
    const ZunUint8* next = next_;
    const auto fill = [&](ZunUint32 i) {
      const ZunUint32 status = Chunk::Status(chunk.word(), i);
      to[i] = Timed<kRegistered, Chunk::kMaxStatus>(status, next);
      next += zun::DeltaSizeOf<Chunk::kMaxStatus>(status);
    };
    if (count == Chunk::kCount) {  // a loop of known length is unrolled
      for (ZunUint32 i = 0; i < Chunk::kCount; ++i) fill(i);
    } else {
      for (ZunUint32 i = 0; i < count; ++i) fill(i);
    }
    next_ = next;
    return true;
  }

  // Near the end a delta is looked at in a place of its own.
  [[gnu::always_inline]] bool FillToEnd(PacketInfo* to, StatusChunk chunk, ZunUint32 count) {
    for (ZunUint32 i = 0; i < count; ++i) {
      const ZunUint32 status = chunk.Status(i);
      const ZunUint32 size = zun::DeltaSizeOf(status);
      if (static_cast<ZunSizeT>(end_ - next_) < size) return false;
      ZunUint8 delta[kDeltaLook<zun::kNoDelta>] = {};
      for (ZunUint32 k = 0; k < size; ++k) delta[k] = *next_++;
      to[i] = Timed<kRegistered>(status, delta);
    }
    return true;
  }

  const ZunUint8* next_;
  const ZunUint8* end_;
};

template <bool kRegistered>
bool FillDeltas(PacketInfo* to, const ChunkList& chunks, const ZunUint8* octets, ZunSizeT size) {
  DeltaReader<kRegistered> deltas(octets, octets + size);
  return chunks.ForEach([&](StatusChunk chunk, ZunUint32 count) {
    const bool filled = deltas.Fill(to, chunk, count);
    to += count;
    return filled;
  });
}

// Something is missing: chunks, deltas or memory. What is there is kept.
template <bool kRegistered>
bool ReadIncomplete(zun::BodyReader& r, ZunVector_ZunRtcpRtpfbTransportCcPacketInfo* infos, const ChunkList& chunks,
                    bool has_all_chunks) {
  if (!AppendUntimed(infos, chunks)) return r.RefuseAllocation();
  if (!has_all_chunks) return r.Refuse(ZUN_RTCP_DECODE_REASON_TOO_SHORT);
  if (chunks.deltas > r.BytesBeforeEnd()) return true;
  const ZunUint8* const deltas = r.Take(0);
  return FillDeltas<kRegistered>(infos->begin, chunks, deltas, r.ReadableBytes());
}

template <bool kRegistered>
bool ReadPackets(zun::BodyReader r, ZunVector_ZunRtcpRtpfbTransportCcPacketInfo* infos, ZunUint32 count) {
  const ChunkList chunks(r, count);
  const bool has_all_chunks = chunks.packets == count;
  PacketInfos::Clear(infos);
  if (!r.MayHoldStatuses(chunks.packets)) return false;
  if (kRegistered && (!has_all_chunks || !r.NeedReadable(chunks.deltas))) return false;
  if (!PacketInfos::Reserve(infos, chunks.packets) || !has_all_chunks || !r.HasReadable(chunks.deltas)) {
    return ReadIncomplete<kRegistered>(r, infos, chunks, has_all_chunks);
  }
  const ZunUint8* const deltas = r.Take(0);
  infos->end = infos->begin + chunks.packets;
  return FillDeltas<kRegistered>(infos->begin, chunks, deltas, r.ReadableBytes());
}

}  // namespace

bool zun::ReadTransportCcPackets(const BodyReader& r, ZunVector_ZunRtcpRtpfbTransportCcPacketInfo* infos,
                                 ZunUint32 count, bool is_registered) {
  return is_registered ? ReadPackets<true>(r, infos, count) : ReadPackets<false>(r, infos, count);
}
