#include "Zun/Rtp/TransportFeedback/ZunRtcpRtpfbTransportCc.h"

#include "Zun/Rtp/Core/FeedbackHeader.h"
#include "Zun/Rtp/Core/OwnedMember.h"
#include "Zun/Rtp/Core/Padding.h"
#include "Zun/Rtp/Core/Row.h"
#include "Zun/Rtp/TransportFeedback/StatusChunk.h"
#include "Zun/Utils/VectorAlgorithms.h"

ZUN_VECTOR_USE_PLAIN(ZunRtcpRtpfbTransportCcPacketInfo)

namespace {

using PacketInfo = ZunRtcpRtpfbTransportCcPacketInfo;
using PacketInfos = zun::VectorOfZunRtcpRtpfbTransportCcPacketInfo;
using OwnedInfos =
    zun::OwnedMember<&ZunRtcpRtpfbTransportCc::packetInfo, ZunVector_ZunRtcpRtpfbTransportCcPacketInfoConstructCopy,
                     ZunVector_ZunRtcpRtpfbTransportCcPacketInfoAssign>;
using zun::StatusChunk;

constexpr ZunTime kNoTime = ZUN_RTCPRTPFB_TRANSPORTCC_NO_TIME;
constexpr ZunTime kReferenceUnit = 64000000;  // nanoseconds
constexpr ZunTime kReferenceModulus = 1 << 24;
constexpr ZunTime kDeltaUnit = 250000;  // nanoseconds
// A difference of times is a delta of 16 bits when it lies no further below 0 than this, and in this range.
constexpr ZunUint64 kMostNegativeDelta = 8192124000;  // nanoseconds
constexpr ZunUint64 kDeltaRange = 16383998000;        // nanoseconds

constexpr ZunSizeT kFixedSize = zun::kFeedbackHeaderSize + 8;
constexpr ZunSizeT kChunkSize = 2;
// 7 packets take at most one chunk and 7 large deltas.
constexpr ZunSizeT kEstimatePackets = 7;
constexpr ZunSizeT kEstimateSize = 16;

// What deltas count from.
struct Clock {
  ZunInt32 reference;  // in kReferenceUnit
  ZunTime latest;
};

Clock StartedAt(ZunTime ts) {
  const ZunTime reference = ts / kReferenceUnit;
  return {static_cast<ZunInt32>(reference % kReferenceModulus), reference * kReferenceUnit};
}

bool Append(ZunRtcpRtpfbTransportCc* p, PacketInfo info) {
  if (!PacketInfos::GrowIfFull(&p->packetInfo)) return false;
  *p->packetInfo.end++ = info;
  return true;
}

// The wire form, as far as it depends on the packets.
struct Layout {
  ZunSizeT chunks = 0;  // how many
  ZunSizeT deltas = 0;  // bytes
  // The first chunks, so that few messages need a second pass over the packets to write them, and the packet behind.
  static constexpr ZunSizeT kKept = 64;
  ZunUint16 kept[kKept];
  const PacketInfo* behind_kept;

  explicit Layout(const ZunRtcpRtpfbTransportCc& p) {
    const PacketInfo* first = p.packetInfo.begin;
    for (; first != p.packetInfo.end && chunks != kKept; ++chunks) first = Add(first, p.packetInfo.end, &kept[chunks]);
    behind_kept = first;
    ZunUint16 word;
    for (; first != p.packetInfo.end; ++chunks) first = Add(first, p.packetInfo.end, &word);
  }

  ZunSizeT Unpadded() const { return kFixedSize + chunks * kChunkSize + deltas; }
  ZunSizeT Padded() const { return Unpadded() + zun::PaddingBehind(Unpadded()); }

 private:
  const PacketInfo* Add(const PacketInfo* first, const PacketInfo* last, ZunUint16* word) {
    const zun::NextChunk chunk = zun::GetNextChunk(first, last);
    *word = chunk.word;
    deltas += StatusChunk(chunk.word).DeltaSize(static_cast<ZunUint32>(chunk.end - first));
    return chunk.end;
  }
};

bool WriteChunks(zun::BodyWriter& w, const Layout& layout, const PacketInfo* last) {
  const ZunSizeT kept = layout.chunks < Layout::kKept ? layout.chunks : Layout::kKept;
  for (ZunSizeT i = 0; i < kept; ++i) {
    if (!w.U16(layout.kept[i])) return false;
  }
  for (const PacketInfo* first = layout.behind_kept; first != last;) {
    const zun::NextChunk chunk = zun::GetNextChunk(first, last);
    if (!w.U16(chunk.word)) return false;
    first = chunk.end;
  }
  return true;
}

char* StoreDelta(char* to, const PacketInfo& info) {
  const ZunUint32 size = zun::DeltaSizeOf(zun::StatusOf(info));
  if (size == 2) *to++ = static_cast<char>(info.delta >> 8);
  if (size != 0) *to++ = static_cast<char>(info.delta & 0xFF);
  return to;
}

// Stores all deltas in the bytes [to, end). While two bytes are free both are stored, whatever is needed.
void StoreDeltas(char* to, const char* end, const PacketInfo* info, const PacketInfo* last) {
  for (; info != last && end - to >= 2; ++info) {
    const ZunUint32 size = zun::DeltaSizeOf(zun::StatusOf(*info));
    const char low = static_cast<char>(info->delta & 0xFF);
    to[0] = size == 2 ? static_cast<char>(info->delta >> 8) : low;
    to[1] = low;
    to += size;
  }
  for (; info != last; ++info) to = StoreDelta(to, *info);
}

// A delta that does not fit into the string is left out, and nobody told: the statuses tell what was to follow.
void WriteDeltas(zun::BodyWriter& w, const ZunRtcpRtpfbTransportCc& p, ZunSizeT size) {
  if (char* const to = w.Block(size)) return StoreDeltas(to, to + size, p.packetInfo.begin, p.packetInfo.end);
  for (const PacketInfo* info = p.packetInfo.begin; info != p.packetInfo.end; ++info) {
    const ZunUint32 status = zun::StatusOf(*info);
    if (status == zun::kSmallDelta) w.U8(static_cast<ZunUint8>(info->delta));
    if (status == zun::kLargeDelta) w.U16(static_cast<ZunUint16>(info->delta));
  }
}

// The chunks of a message that is read, looked through before any packet is stored.
struct ChunkList {
  const ZunUint8* words;
  ZunUint32 packets = 0;  // that they tell of
  ZunSizeT deltas = 0;    // the bytes of the deltas that they announce

  // Reads chunks up to `wanted` packets; there are fewer when the body ends too early.
  ChunkList(zun::BodyReader& r, ZunUint32 wanted) : words(r.Take(0)) {
    ZunUint16 word;
    while (packets < wanted && r.U16(&word)) {
      const StatusChunk chunk(word);
      const ZunUint32 count = Fewer(chunk.Room(), wanted - packets);
      deltas += chunk.DeltaSize(count);
      packets += count;
    }
  }

  // Calls visit(chunk, number of packets) for each chunk until it returns false.
  template <class Visit>
  bool ForEach(Visit visit) const {
    const ZunUint8* word = words;
    for (ZunUint32 left = packets; left != 0; word += kChunkSize) {
      const StatusChunk chunk(ZunUint16FromOctets(word));
      const ZunUint32 count = Fewer(chunk.Room(), left);
      if (!visit(chunk, count)) return false;
      left -= count;
    }
    return true;
  }

 private:
  static ZunUint32 Fewer(ZunUint32 a, ZunUint32 b) { return a < b ? a : b; }
};

PacketInfo Untimed(ZunUint32 status) { return {status != zun::kNotReceived, 0, 0}; }

void FillRun(PacketInfo* to, ZunUint32 count, PacketInfo info) {
  for (ZunUint32 i = 0; i < count; ++i) to[i] = info;
}

// Packets [from, from + count) of a chunk.
void FillStatuses(PacketInfo* to, StatusChunk chunk, ZunUint32 from, ZunUint32 count) {
  if (chunk.IsRun()) return FillRun(to, count, Untimed(chunk.RunStatus()));
  for (ZunUint32 i = 0; i < count; ++i) to[i] = Untimed(chunk.StatusAt(from + i));
}

// Appends the packets that the chunks tell of, without deltas. Where storage for all was refused the list grows bit by
// bit, and keeps what fits.
bool AppendStatuses(ZunVector_ZunRtcpRtpfbTransportCcPacketInfo* infos, const ChunkList& chunks) {
  return chunks.ForEach([infos](StatusChunk chunk, ZunUint32 count) {
    for (ZunUint32 from = 0; from < count;) {
      if (!PacketInfos::GrowIfFull(infos)) return false;
      const ZunSizeT room = PacketInfos::Capacity(infos) - PacketInfos::Size(infos);
      const ZunUint32 fitting = count - from < room ? count - from : static_cast<ZunUint32>(room);
      FillStatuses(infos->end, chunk, from, fitting);
      infos->end += fitting;
      from += fitting;
    }
    return true;
  });
}

// A packet with the delta at `delta`, of which its status tells the size; no more than that is read.
PacketInfo Timed(ZunUint32 status, const ZunUint8* delta) {
  if (status == zun::kSmallDelta) return {1, 1, delta[0]};
  if (status == zun::kLargeDelta) return {1, 1, ZunInt16FromSpilledOctets_(delta)};
  return Untimed(status);
}

// The same of a vector, without branches, as losses come unpredictably. The first reads one byte, the other two,
// whatever the status.
PacketInfo TimedOfOneBit(ZunUint32 status, const ZunUint8* delta) {
  const ZunBool timed = static_cast<ZunBool>(status);
  return {timed, timed, static_cast<ZunInt16>(delta[0] & -timed)};
}
PacketInfo TimedOfTwoBits(ZunUint32 status, const ZunUint8* delta) {
  const ZunBool timed = zun::DeltaSizeOf(status) != 0;
  const ZunInt16 value = status == zun::kLargeDelta ? ZunInt16FromSpilledOctets_(delta) : ZunInt16{delta[0]};
  return {status != zun::kNotReceived, timed, static_cast<ZunInt16>(value & -timed)};
}

// The packets of a chunk with their deltas, the first of which lies at `delta`; all deltas of the message end at `end`.
// Returns the place behind those of the chunk.
const ZunUint8* FillTimed(PacketInfo* to, StatusChunk chunk, ZunUint32 count, const ZunUint8* delta,
                          const ZunUint8* end) {
  const ZunDistanceT left = end - delta;
  if (chunk.IsRun() && chunk.RunStatus() == zun::kSmallDelta) {
    for (ZunUint32 i = 0; i < count; ++i) to[i] = {1, 1, delta[i]};
    return delta + count;
  }
  if (chunk.IsRun() && zun::DeltaSizeOf(chunk.RunStatus()) == 0) {
    FillRun(to, count, Untimed(chunk.RunStatus()));
    return delta;
  }
  if (chunk.IsOneBit() && count == zun::kOneBitRoom && left >= zun::kOneBitRoom) {
    for (ZunUint32 i = 0; i < zun::kOneBitRoom; ++i) {
      const ZunUint32 status = chunk.OneBitStatus(i);
      to[i] = TimedOfOneBit(status, delta);
      delta += status;
    }
    return delta;
  }
  if (chunk.IsTwoBit() && count == zun::kTwoBitRoom && left >= ZunDistanceT{2} * zun::kTwoBitRoom) {
    for (ZunUint32 i = 0; i < zun::kTwoBitRoom; ++i) {
      const ZunUint32 status = chunk.TwoBitStatus(i);
      to[i] = TimedOfTwoBits(status, delta);
      delta += zun::DeltaSizeOf(status);
    }
    return delta;
  }
  for (ZunUint32 i = 0; i < count; ++i) {
    const ZunUint32 status = chunk.StatusAt(i);
    to[i] = Timed(status, delta);
    delta += zun::DeltaSizeOf(status);
  }
  return delta;
}

// Puts the deltas into packets that are there, up to the first that lies outside the string.
bool ReadDeltasInside(zun::BodyReader& r, PacketInfo* to, const ChunkList& chunks) {
  return chunks.ForEach([&r, &to](StatusChunk chunk, ZunUint32 count) {
    for (ZunUint32 i = 0; i < count; ++i, ++to) {
      const ZunUint32 status = chunk.StatusAt(i);
      const ZunUint8* const delta = r.Take(zun::DeltaSizeOf(status));
      if (delta == nullptr) return false;
      *to = Timed(status, delta);
    }
    return true;
  });
}

// Appends the packets that the chunks tell of; all deltas and the storage are there.
void FillPackets(ZunVector_ZunRtcpRtpfbTransportCcPacketInfo* infos, const ChunkList& chunks, const ZunUint8* delta) {
  const ZunUint8* const end = delta + chunks.deltas;
  PacketInfo* to = infos->begin;
  chunks.ForEach([&](StatusChunk chunk, ZunUint32 count) {
    delta = FillTimed(to, chunk, count, delta, end);
    to += count;
    return true;
  });
  infos->end = to;
}

bool ReadPackets(zun::BodyReader& r, ZunVector_ZunRtcpRtpfbTransportCcPacketInfo* infos, ZunUint32 wanted) {
  const ChunkList chunks(r, wanted);
  const bool complete = chunks.packets == wanted;
  PacketInfos::Clear(infos);
  if (PacketInfos::Reserve(infos, chunks.packets) && complete && r.Has(chunks.deltas)) {
    FillPackets(infos, chunks, r.Take(chunks.deltas));
    return true;
  }
  // Something is missing. A message whose deltas are cut short still tells which packets arrived.
  if (!AppendStatuses(infos, chunks) || !complete) return false;
  return chunks.deltas > r.Remaining() || ReadDeltasInside(r, infos->begin, chunks);
}

struct Wire {
  static ZunSizeT Length(const ZunRtcpRtpfbTransportCc& p) { return Layout(p).Padded(); }

  // The zeros align the end of the whole string, as every subpacket before this one is a number of whole words.
  static bool Write(const ZunRtcpRtpfbTransportCc& p, ZunString* b, bool pad) {
    const Layout layout(p);
    const ZunSizeT unpadded = layout.Unpadded();
    zun::BodyWriter w(b, unpadded + zun::PaddingBehind(b->size + unpadded));
    const ZunSizeT count = ZunVector_ZunRtcpRtpfbTransportCcPacketInfoSize(&p.packetInfo);
    if (!zun::WriteFeedbackHeader(w, pad, ZUN_RTCPRTPFB_TYPE_TransportCC, ZUN_RTCPSUBPACKET_TYPE_RTPFB, layout.Padded(),
                                  p.sender, p.source) ||
        !w.U16(p.baseSeq) || !w.U16(static_cast<ZunUint16>(count)) || !w.U24(static_cast<ZunUint32>(p.refTime)) ||
        !w.U8(p.packetCount) || !WriteChunks(w, layout, p.packetInfo.end)) {
      return false;
    }
    WriteDeltas(w, p, layout.deltas);
    w.Padding(zun::PaddingBehind(w.Size()));
    return true;
  }

  static bool Read(ZunRtcpRtpfbTransportCc* p, zun::BodyReader& r, zun::SubpacketHeader) {
    p->latestTime = kNoTime;
    if (!zun::ReadFeedbackSources(r, p) || !r.U16(&p->baseSeq)) return false;
    const ZunUint8* const head = r.Take(6);
    if (head == nullptr) return false;
    const ZunUint32 count = ZunUint16FromOctets(head);
    p->refTime = SignedReferenceTime(static_cast<ZunUint32>(head[2]) << 16 | ZunUint16FromOctets(head + 3));
    p->packetCount = head[5];
    return ReadPackets(r, &p->packetInfo, count);
  }

 private:
  static ZunInt32 SignedReferenceTime(ZunUint32 value) {
    return static_cast<ZunInt32>(value) - ((value & 0x800000) != 0 ? 0x1000000 : 0);
  }
};

}  // namespace

ZunRtcpRtpfbTransportCc* ZunRtcpRtpfbTransportCcConstructFull(ZunRtcpRtpfbTransportCc* p, ZunRtpSourceId sender,
                                                              ZunRtpSourceId source, ZunUint8 packetCount,
                                                              ZunAllocator* a) {
  zun::SetFeedbackHead(p, ZUN_RTCPSUBPACKET_TYPE_RTPFB, ZUN_RTCPRTPFB_TYPE_TransportCC, sender, source);
  p->baseSeq = 0;
  p->refTime = 0;
  p->packetCount = packetCount;
  PacketInfos::ConstructDefault(&p->packetInfo, a);
  p->latestTime = kNoTime;
  return p;
}

ZunRtcpRtpfbTransportCc* ZunRtcpRtpfbTransportCcConstructDefault(ZunRtcpRtpfbTransportCc* p, ZunAllocator* a) {
  return ZunRtcpRtpfbTransportCcConstructFull(p, 0, 0, 0, a);
}

ZunRtcpRtpfbTransportCc* ZunRtcpRtpfbTransportCcConstructCopy(ZunRtcpRtpfbTransportCc* p,
                                                              const ZunRtcpRtpfbTransportCc* o) {
  return OwnedInfos::ConstructCopy(p, o);
}

ZunRtcpRtpfbTransportCc* ZunRtcpRtpfbTransportCcAssign(ZunRtcpRtpfbTransportCc* p, const ZunRtcpRtpfbTransportCc* o) {
  return OwnedInfos::Assign(p, o);
}

void ZunRtcpRtpfbTransportCcDestruct(ZunRtcpRtpfbTransportCc* p) { PacketInfos::Destruct(&p->packetInfo); }

ZunBool ZunRtcpRtpfbTransportCcAddPacket(ZunRtcpRtpfbTransportCc* p, ZunBool received, ZunUint16 seq, ZunTime ts) {
  const bool is_first = ZunVector_ZunRtcpRtpfbTransportCcPacketInfoEmpty(&p->packetInfo);
  if (!received || ts == kNoTime) {
    if (!Append(p, {received != 0, received != 0, 0})) return 0;
    if (is_first) p->baseSeq = seq;
    return 1;
  }
  Clock clock = {p->refTime, p->latestTime};
  if (clock.latest == kNoTime) clock = StartedAt(ts);
  const ZunUint64 difference = static_cast<ZunUint64>(ts) - static_cast<ZunUint64>(clock.latest);
  const bool is_in_range = difference + kMostNegativeDelta <= kDeltaRange;
  if (is_in_range) {
    if (!Append(p, {1, 1, static_cast<ZunInt16>(static_cast<ZunInt64>(difference) / kDeltaUnit)})) return 0;
    clock.latest = ts;
  }
  // The first time starts the clock even when it is too far from it to be told.
  p->refTime = clock.reference;
  p->latestTime = clock.latest;
  if (is_first) p->baseSeq = seq;
  return is_in_range;
}

ZunSizeT ZunRtcpRtpfbTransportCcGetEstimatedPacketsRemaining(const ZunRtcpRtpfbTransportCc* p, ZunSizeT mtu) {
  const ZunSizeT length = Wire::Length(*p);
  const ZunSizeT left = mtu > length ? mtu - length : 0;
  // left * 7 / 16, for any mtu.
  return left / kEstimateSize * kEstimatePackets + left % kEstimateSize * kEstimatePackets / kEstimateSize;
}

ZunSizeT ZunRtcpRtpfbTransportCcGetPacketLength_(const ZunRtcpRtpfbTransportCc* p) { return Wire::Length(*p); }

ZUN_RTCP_ROW_DEFINE(ZunRtcpRtpfbTransportCc, Wire)
