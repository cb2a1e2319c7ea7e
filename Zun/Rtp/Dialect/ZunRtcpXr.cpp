#include "Zun/Rtp/Dialect/ZunRtcpXr.h"

#include <initializer_list>

#include "Zun/Rtp/Core/BodyReader.h"
#include "Zun/Rtp/Core/BodyWriter.h"

namespace {

constexpr ZunSizeT kMaxReportSize = 262140;  // 65536 words, the common header among them
constexpr ZunSizeT kBlockHeaderSize = 4;
constexpr ZunSizeT kRangeSize = 8;
constexpr ZunSizeT kRrtrSize = 8;
constexpr ZunSizeT kDlrrSize = 12;
constexpr ZunSizeT kStatisticsSize = 36;
constexpr ZunSizeT kVoipSize = 32;
constexpr ZunSizeT kReceiptTimeSize = 4;
constexpr ZunSizeT kChunkSize = 2;

constexpr ZunUint8 kThinningMask = 0x0F;

// The second octet of a statistics block.
constexpr ZunUint8 kLossFlag = 0x80;
constexpr ZunUint8 kDuplicatesFlag = 0x40;
constexpr ZunUint8 kJitterFlag = 0x20;
constexpr int kHopKindShift = 3;
constexpr ZunUint8 kMaxHopKind = 3;

// Chunks of a trace of bits (RFC 3611, section 4.1): a run of one bit, or 15 bits as they are. 0 ends the trace.
//
//    0                   1                    0                   1
//    0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5          0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5
//   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+        +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
//   |0|R|        run length         |        |1|        bit vector           |
//   +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+        +-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+-+
constexpr ZunUint16 kVectorMark = 0x8000;
constexpr ZunUint32 kVectorBits = 15;
constexpr int kRunBitShift = 14;
constexpr ZunUint32 kMaxRun = 0x3FFF;

bool IsRle(ZunRtcpXrBlockType type) {
  return type == ZUN_RTCPXR_TYPE_LOSS_RLE || type == ZUN_RTCPXR_TYPE_DUPLICATE_RLE;
}

// Whether contents of `size` octets are what a block of that type has.
bool HasLengthOf(ZunRtcpXrBlockType type, ZunSizeT size) {
  switch (type) {
    case ZUN_RTCPXR_TYPE_LOSS_RLE:
    case ZUN_RTCPXR_TYPE_DUPLICATE_RLE:
    case ZUN_RTCPXR_TYPE_RECEIPT_TIMES:
      return size >= kRangeSize;
    case ZUN_RTCPXR_TYPE_RRTR:
      return size == kRrtrSize;
    case ZUN_RTCPXR_TYPE_DLRR:
      return size % kDlrrSize == 0;
    case ZUN_RTCPXR_TYPE_STATISTICS:
      return size == kStatisticsSize;
    case ZUN_RTCPXR_TYPE_VOIP:
      return size == kVoipSize;
    default:
      return false;
  }
}

bool IsKnownAs(const ZunRtcpXrBlock* block, ZunRtcpXrBlockType type) { return block->isKnown && block->type == type; }

ZunUint32 StepOf(const ZunRtcpXrRange& range) { return 1U << (range.thinning & kThinningMask); }

// From the beginning of the range to the first sequence number that is a multiple of its step.
ZunUint32 FirstOffset(const ZunRtcpXrRange& range) { return (0U - range.beginSeq) & (StepOf(range) - 1); }

ZunRtcpXrRange ReadRange(const ZunRtcpXrBlock& block, zun::FieldReader& f) {
  ZunRtcpXrRange range;
  f.U32(&range.source);
  f.U16(&range.beginSeq);
  f.U16(&range.endSeq);
  range.thinning = block.type == ZUN_RTCPXR_TYPE_STATISTICS ? 0 : block.typeSpecific & kThinningMask;
  return range;
}

void WriteRange(zun::FieldWriter& f, const ZunRtcpXrRange& range) {
  f.U32(range.source);
  f.U16(range.beginSeq);
  f.U16(range.endSeq);
}

// Hands out the sequence numbers that a range tells, one after the other.
class PacketWalk {
 public:
  PacketWalk(const ZunRtcpXrRange& range, ZunRtcpXrPacketCallback cb, ZunVoidPtr data)
      : seq_(range.beginSeq + FirstOffset(range)),
        step_(StepOf(range)),
        left_(ZunRtcpXrRangeGetCount(&range)),
        cb_(cb),
        data_(data) {}

  ZunSizeT left() const { return left_; }
  void Tell(ZunUint32 value) {
    cb_(data_, static_cast<ZunUint16>(seq_ & 0xFFFF), value);
    seq_ += step_;
    --left_;
  }

 private:
  ZunUint32 seq_;
  ZunUint32 step_;
  ZunSizeT left_;
  ZunRtcpXrPacketCallback cb_;
  ZunVoidPtr data_;
};

void TellChunk(PacketWalk* walk, ZunUint16 chunk) {
  if ((chunk & kVectorMark) != 0) {
    for (ZunUint32 bit = kVectorBits; bit-- > 0 && walk->left() != 0;) walk->Tell(chunk >> bit & 1);
    return;
  }
  const ZunUint32 value = chunk >> kRunBitShift & 1;
  for (ZunUint32 i = chunk & kMaxRun; i > 0 && walk->left() != 0; --i) walk->Tell(value);
}

void TellTrace(PacketWalk* walk, zun::BodyReader r) {
  ZunUint16 chunk;
  while (walk->left() != 0 && r.U16(&chunk) && chunk != 0) TellChunk(walk, chunk);
}

void TellTimes(PacketWalk* walk, zun::BodyReader r) {
  ZunUint32 time;
  while (walk->left() != 0 && r.U32(&time)) walk->Tell(time);
}

// The next chunk of a trace of `count` bits, and how many of them it holds.
struct TraceChunk {
  ZunUint16 word;
  ZunSizeT count;
};

TraceChunk NextChunk(const ZunBool* told, ZunSizeT count) {
  const bool value = told[0] != 0;
  ZunSizeT run = 1;
  while (run < count && run < kMaxRun && (told[run] != 0) == value) ++run;
  if (run >= kVectorBits || run == count) {
    return {static_cast<ZunUint16>((value ? 1U << kRunBitShift : 0U) | run), run};
  }
  const ZunSizeT held = count < kVectorBits ? count : kVectorBits;
  ZunUint32 bits = 0;
  for (ZunSizeT i = 0; i < held; ++i) bits |= (told[i] != 0 ? 1U : 0U) << (kVectorBits - 1 - i);
  return {static_cast<ZunUint16>(kVectorMark | bits), held};
}

ZunSizeT CountChunks(const ZunBool* told, ZunSizeT count) {
  ZunSizeT chunks = 0;
  for (ZunSizeT i = 0; i < count; ++chunks) i += NextChunk(told + i, count - i).count;
  return chunks;
}

// Appends a block with contents of `size` octets, which write(BodyWriter&) appends. Nothing is appended where there is
// no room for all.
template <class Write>
bool AddBlock(ZunRtcpXrBuilder* b, ZunRtcpXrBlockType type, ZunUint8 type_specific, ZunSizeT size, Write write) {
  ZunString* const s = &b->data;
  if (size > kMaxReportSize || s->size + kBlockHeaderSize + size > kMaxReportSize) return false;
  if (!zun::ReserveStringTail(s, kBlockHeaderSize + size)) return false;
  zun::Output out(s);
  zun::BodyWriter w(out, kBlockHeaderSize + size);
  const ZunUint32 head = static_cast<ZunUint32>(type) << 24 | ZunUint32{type_specific} << 16;
  return w.U32(head | static_cast<ZunUint32>(size / 4)) && write(w);
}

bool IsValid(const ZunRtcpXrRange& range, ZunSizeT count) {
  return range.thinning <= kThinningMask && count == ZunRtcpXrRangeGetCount(&range);
}

ZunUint8 FlagsOf(const ZunRtcpXrStatistics& s) {
  return static_cast<ZunUint8>((s.hasLoss ? kLossFlag : 0) | (s.hasDuplicates ? kDuplicatesFlag : 0) |
                               (s.hasJitter ? kJitterFlag : 0) | s.hopKind << kHopKindShift);
}

}  // namespace

ZunRtcpXrReader* ZunRtcpXrReaderConstruct(ZunRtcpXrReader* r, const ZunRtcpSubpacket* sp) {
  *r = {};
  r->reason = ZUN_RTCP_DECODE_REASON_VALUE;
  if (ZunRtcpSubpacketGetType(sp) != ZUN_RTCPSUBPACKET_TYPE_XR) return nullptr;
  const ZunString& data = sp->unk.data;
  zun::BodyReader body(reinterpret_cast<const ZunUint8*>(data.buf), data.size, 0, data.size);
  r->reason = ZUN_RTCP_DECODE_REASON_TOO_SHORT;
  if (!body.U32(&r->sender)) return nullptr;
  r->reason = ZUN_RTCP_DECODE_REASON_NONE;
  r->size = body.ReadableBytes();
  r->octets = body.Take(r->size);
  return r;
}

ZunBool ZunRtcpXrReaderNext(ZunRtcpXrReader* r, ZunRtcpXrBlock* block) {
  zun::BodyReader body(r->octets, r->size, r->position, r->size);
  if (body.AtEnd() || r->reason != ZUN_RTCP_DECODE_REASON_NONE) return 0;
  ZunUint8 type;
  ZunUint8 type_specific;
  ZunUint16 words;
  r->reason = ZUN_RTCP_DECODE_REASON_TOO_SHORT;
  if (!body.U8(&type) || !body.U8(&type_specific) || !body.U16(&words)) return 0;
  r->reason = ZUN_RTCP_DECODE_REASON_LENGTH;
  const ZunSizeT size = ZunSizeT{4} * words;
  const ZunUint8* const octets = body.Take(size);
  if (octets == nullptr) return 0;
  r->reason = ZUN_RTCP_DECODE_REASON_NONE;
  r->position = body.Position();
  *block = {type, type_specific, HasLengthOf(type, size), octets, size};
  return 1;
}

ZunBool ZunRtcpXrBlockGetRrtr(const ZunRtcpXrBlock* block, ZunRtcpXrRrtr* rrtr) {
  if (!IsKnownAs(block, ZUN_RTCPXR_TYPE_RRTR)) return 0;
  return zun::FieldReader(block->octets).U64(&rrtr->ntpTimestamp);
}

ZunBool ZunRtcpXrBlockGetStatistics(const ZunRtcpXrBlock* block, ZunRtcpXrStatistics* statistics) {
  if (!IsKnownAs(block, ZUN_RTCPXR_TYPE_STATISTICS)) return 0;
  const ZunUint8 flags = block->typeSpecific;
  zun::FieldReader f(block->octets);
  ZunRtcpXrStatistics s = {};
  s.range = ReadRange(*block, f);
  s.hasLoss = (flags & kLossFlag) != 0;
  s.hasDuplicates = (flags & kDuplicatesFlag) != 0;
  s.hasJitter = (flags & kJitterFlag) != 0;
  s.hopKind = flags >> kHopKindShift & kMaxHopKind;
  for (ZunUint32* const field :
       {&s.lostPackets, &s.duplicatePackets, &s.minJitter, &s.maxJitter, &s.meanJitter, &s.jitterDeviation}) {
    f.U32(field);
  }
  for (ZunUint8* const field : {&s.minHops, &s.maxHops, &s.meanHops, &s.hopsDeviation}) f.U8(field);
  *statistics = s;
  return 1;
}

ZunBool ZunRtcpXrBlockGetVoip(const ZunRtcpXrBlock* block, ZunRtcpXrVoip* voip) {
  if (!IsKnownAs(block, ZUN_RTCPXR_TYPE_VOIP)) return 0;
  zun::FieldReader f(block->octets);
  ZunRtcpXrVoip v = {};
  ZunUint8 signal = 0;
  ZunUint8 noise = 0;
  ZunUint8 reserved = 0;
  f.U32(&v.source);
  for (ZunUint8* const field : {&v.lossRate, &v.discardRate, &v.burstDensity, &v.gapDensity}) f.U8(field);
  for (ZunUint16* const field : {&v.burstDuration, &v.gapDuration, &v.roundTripDelay, &v.endSystemDelay}) f.U16(field);
  for (ZunUint8* const field : {&signal, &noise, &v.residualEchoReturnLoss, &v.gmin, &v.rFactor, &v.externalRFactor,
                                &v.mosListening, &v.mosConversational, &v.receiverConfig, &reserved}) {
    f.U8(field);
  }
  for (ZunUint16* const field : {&v.jitterBufferNominal, &v.jitterBufferMaximum, &v.jitterBufferAbsoluteMaximum}) {
    f.U16(field);
  }
  v.signalLevel = static_cast<ZunInt8>(signal);
  v.noiseLevel = static_cast<ZunInt8>(noise);
  *voip = v;
  return 1;
}

ZunSizeT ZunRtcpXrBlockGetDlrrCount(const ZunRtcpXrBlock* block) {
  return IsKnownAs(block, ZUN_RTCPXR_TYPE_DLRR) ? block->size / kDlrrSize : 0;
}

ZunBool ZunRtcpXrBlockGetDlrr(const ZunRtcpXrBlock* block, ZunSizeT n, ZunRtcpXrDlrr* dlrr) {
  if (n >= ZunRtcpXrBlockGetDlrrCount(block)) return 0;
  zun::FieldReader f(block->octets + n * kDlrrSize);
  return f.U32(&dlrr->ssrc) && f.U32(&dlrr->lastRr) && f.U32(&dlrr->delaySinceLastRr);
}

ZunBool ZunRtcpXrBlockGetRange(const ZunRtcpXrBlock* block, ZunRtcpXrRange* range) {
  const bool has_range =
      IsRle(block->type) || block->type == ZUN_RTCPXR_TYPE_RECEIPT_TIMES || block->type == ZUN_RTCPXR_TYPE_STATISTICS;
  if (!block->isKnown || !has_range) return 0;
  zun::FieldReader f(block->octets);
  *range = ReadRange(*block, f);
  return 1;
}

ZunSizeT ZunRtcpXrBlockGeneratePackets(const ZunRtcpXrBlock* block, ZunRtcpXrPacketCallback cb, ZunVoidPtr data) {
  ZunRtcpXrRange range;
  if (block->type == ZUN_RTCPXR_TYPE_STATISTICS || !ZunRtcpXrBlockGetRange(block, &range)) return 0;
  PacketWalk walk(range, cb, data);
  const ZunSizeT count = walk.left();
  const zun::BodyReader contents(block->octets, block->size, kRangeSize, block->size);
  if (IsRle(block->type)) {
    TellTrace(&walk, contents);
  } else {
    TellTimes(&walk, contents);
  }
  return count - walk.left();
}

ZunSizeT ZunRtcpXrRangeGetCount(const ZunRtcpXrRange* range) {
  const ZunUint32 span = static_cast<ZunUint16>(range->endSeq - range->beginSeq);
  const ZunUint32 offset = FirstOffset(*range);
  return span > offset ? (span - offset - 1) / StepOf(*range) + 1 : 0;
}

ZunRtcpXrBuilder* ZunRtcpXrBuilderConstruct(ZunRtcpXrBuilder* b, ZunRtpSourceId sender, ZunAllocator* a) {
  ZunStringConstructDefault(&b->data, a);
  if (!zun::ReserveStringTail(&b->data, sizeof(sender))) return nullptr;
  zun::Output out(&b->data);
  zun::BodyWriter w(out, sizeof(sender));
  return w.U32(sender) ? b : nullptr;
}

void ZunRtcpXrBuilderDestruct(ZunRtcpXrBuilder* b) { ZunStringDestruct(&b->data); }

ZunBool ZunRtcpXrBuilderAddRrtr(ZunRtcpXrBuilder* b, const ZunRtcpXrRrtr* rrtr) {
  return AddBlock(b, ZUN_RTCPXR_TYPE_RRTR, 0, kRrtrSize, [&](zun::BodyWriter& w) {
    return w.Fields<kRrtrSize>([&](zun::FieldWriter& f) { f.U64(rrtr->ntpTimestamp); });
  });
}

ZunBool ZunRtcpXrBuilderAddDlrr(ZunRtcpXrBuilder* b, const ZunRtcpXrDlrr* dlrrs, ZunSizeT count) {
  if (count > kMaxReportSize / kDlrrSize) return 0;
  return AddBlock(b, ZUN_RTCPXR_TYPE_DLRR, 0, count * kDlrrSize, [&](zun::BodyWriter& w) {
    for (ZunSizeT i = 0; i < count; ++i) {
      if (!w.U32(dlrrs[i].ssrc) || !w.U32(dlrrs[i].lastRr) || !w.U32(dlrrs[i].delaySinceLastRr)) return false;
    }
    return true;
  });
}

ZunBool ZunRtcpXrBuilderAddStatistics(ZunRtcpXrBuilder* b, const ZunRtcpXrStatistics* statistics) {
  const ZunRtcpXrStatistics& s = *statistics;
  if (s.range.thinning != 0 || s.hopKind > kMaxHopKind) return 0;
  return AddBlock(b, ZUN_RTCPXR_TYPE_STATISTICS, FlagsOf(s), kStatisticsSize, [&](zun::BodyWriter& w) {
    return w.Fields<kStatisticsSize>([&](zun::FieldWriter& f) {
      WriteRange(f, s.range);
      for (const ZunUint32 field :
           {s.lostPackets, s.duplicatePackets, s.minJitter, s.maxJitter, s.meanJitter, s.jitterDeviation}) {
        f.U32(field);
      }
      for (const ZunUint8 field : {s.minHops, s.maxHops, s.meanHops, s.hopsDeviation}) f.U8(field);
    });
  });
}

ZunBool ZunRtcpXrBuilderAddVoip(ZunRtcpXrBuilder* b, const ZunRtcpXrVoip* voip) {
  const ZunRtcpXrVoip& v = *voip;
  return AddBlock(b, ZUN_RTCPXR_TYPE_VOIP, 0, kVoipSize, [&](zun::BodyWriter& w) {
    return w.Fields<kVoipSize>([&](zun::FieldWriter& f) {
      f.U32(v.source);
      for (const ZunUint8 field : {v.lossRate, v.discardRate, v.burstDensity, v.gapDensity}) f.U8(field);
      for (const ZunUint16 field : {v.burstDuration, v.gapDuration, v.roundTripDelay, v.endSystemDelay}) f.U16(field);
      f.U8(static_cast<ZunUint8>(v.signalLevel));
      f.U8(static_cast<ZunUint8>(v.noiseLevel));
      for (const ZunUint8 field : {v.residualEchoReturnLoss, v.gmin, v.rFactor, v.externalRFactor, v.mosListening,
                                   v.mosConversational, v.receiverConfig, ZunUint8{0}}) {
        f.U8(field);
      }
      for (const ZunUint16 field : {v.jitterBufferNominal, v.jitterBufferMaximum, v.jitterBufferAbsoluteMaximum}) {
        f.U16(field);
      }
    });
  });
}

ZunBool ZunRtcpXrBuilderAddRle(ZunRtcpXrBuilder* b, ZunRtcpXrBlockType type, const ZunRtcpXrRange* range,
                               const ZunBool* told, ZunSizeT count) {
  if (!IsRle(type) || !IsValid(*range, count)) return 0;
  const ZunSizeT chunks = CountChunks(told, count);
  const ZunSizeT size = kRangeSize + (chunks + chunks % 2) * kChunkSize;
  return AddBlock(b, type, range->thinning, size, [&](zun::BodyWriter& w) {
    const bool begun = w.Fields<kRangeSize>([&](zun::FieldWriter& f) { WriteRange(f, *range); });
    if (!begun) return false;
    for (ZunSizeT i = 0; i < count;) {
      const TraceChunk chunk = NextChunk(told + i, count - i);
      if (!w.U16(chunk.word)) return false;
      i += chunk.count;
    }
    return chunks % 2 == 0 || w.U16(0);
  });
}

ZunBool ZunRtcpXrBuilderAddReceiptTimes(ZunRtcpXrBuilder* b, const ZunRtcpXrRange* range, const ZunUint32* times,
                                        ZunSizeT count) {
  if (!IsValid(*range, count)) return 0;
  const ZunSizeT size = kRangeSize + count * kReceiptTimeSize;
  return AddBlock(b, ZUN_RTCPXR_TYPE_RECEIPT_TIMES, range->thinning, size, [&](zun::BodyWriter& w) {
    const bool begun = w.Fields<kRangeSize>([&](zun::FieldWriter& f) { WriteRange(f, *range); });
    for (ZunSizeT i = 0; begun && i < count; ++i) {
      if (!w.U32(times[i])) return false;
    }
    return begun;
  });
}

ZunBool ZunRtcpXrBuilderAddBlock(ZunRtcpXrBuilder* b, ZunUint8 type, ZunUint8 typeSpecific, const void* octets,
                                 ZunSizeT size) {
  if (size % 4 != 0) return 0;
  return AddBlock(b, type, typeSpecific, size,
                  [&](zun::BodyWriter& w) { return w.Bytes(static_cast<const char*>(octets), size); });
}

ZunRtcpSubpacket* ZunRtcpXrBuilderMakeSubpacket(const ZunRtcpXrBuilder* b, ZunRtcpSubpacket* sp, ZunAllocator* a) {
  return ZunRtcpUnknownConstructFull(&sp->unk, ZUN_RTCPSUBPACKET_TYPE_XR, 0, &b->data, a) != nullptr ? sp : nullptr;
}
