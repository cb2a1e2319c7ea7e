#include "Zun/Rtp/TransportFeedback/ZunRtcpRtpfbTransportCc.h"

#include "Zun/Rtp/Core/FeedbackHeader.h"
#include "Zun/Rtp/Core/Padding.h"
#include "Zun/Rtp/Core/Row.h"
#include "Zun/Rtp/TransportFeedback/TransportCcReader.h"
#include "Zun/Rtp/TransportFeedback/TransportCcWriter.h"

ZUN_VECTOR_USE_PLAIN(ZunRtcpRtpfbTransportCcPacketInfo)

namespace {

using PacketInfo = ZunRtcpRtpfbTransportCcPacketInfo;
using PacketInfos = zun::VectorOfZunRtcpRtpfbTransportCcPacketInfo;
using zun::TransportCcLayout;

constexpr zun::FeedbackIdentity kIdentity = zun::IsRtpfb(ZUN_RTCPRTPFB_TYPE_TransportCC);

constexpr ZunTime kNoTime = ZUN_RTCPRTPFB_TRANSPORTCC_NO_TIME;
constexpr ZunTime kReferenceUnit = 64000000;  // nanoseconds
constexpr ZunTime kReferenceModulus = 1 << 24;
constexpr ZunTime kDeltaUnit = 250000;  // nanoseconds
// A difference of times is a delta of 16 bits when it lies no further below 0 than this, and in this range.
constexpr ZunUint64 kMostNegativeDelta = 8192124000;  // nanoseconds
constexpr ZunUint64 kDeltaRange = 16383998000;        // nanoseconds

constexpr ZunSizeT kMaxStatuses = 65535;
constexpr ZunSizeT kFixedSize = zun::kFeedbackHeaderSize + 8;
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

struct Wire {
  static ZunSizeT Length(const ZunRtcpRtpfbTransportCc& p) {
    return Length(TransportCcLayout(p.packetInfo, ZUN_RTCP_DIALECT_HOUSE));
  }

  // The zeros align the end of the whole output.
  static ZunSizeT EncodedLength(const ZunRtcpRtpfbTransportCc& p, ZunSizeT begin, ZunRtcpDialect dialect) {
    const ZunSizeT unpadded = kFixedSize + TransportCcLayout(p.packetInfo, dialect).Size();
    return unpadded + zun::PaddingAfter(begin + unpadded);
  }

  static ZunRtcpEncodeReason FindUnencodable(const ZunRtcpRtpfbTransportCc& p, ZunRtcpDialect) {
    if (PacketInfos::Size(&p.packetInfo) > kMaxStatuses) return ZUN_RTCP_ENCODE_REASON_TOO_MANY;
    const bool fits = p.refTime > -kReferenceModulus && p.refTime < kReferenceModulus;
    return fits ? ZUN_RTCP_ENCODE_REASON_NONE : ZUN_RTCP_ENCODE_REASON_VALUE;
  }

  static bool Write(const ZunRtcpRtpfbTransportCc& p, zun::Output& out, bool pad) {
    const TransportCcLayout layout(p.packetInfo, out.dialect());
    const ZunSizeT unpadded = kFixedSize + layout.Size();
    const ZunUint16 count = static_cast<ZunUint16>(PacketInfos::Size(&p.packetInfo) & 0xFFFF);
    zun::BodyWriter w(out, unpadded + zun::PaddingAfter(out.Size() + unpadded));
    const bool written = zun::WriteFeedbackHeader(w, pad, kIdentity, p, Length(layout)) &&
                         w.Fields<kFixedSize - zun::kFeedbackHeaderSize>([&p, count](zun::FieldWriter& f) {
                           f.U16(p.baseSeq);
                           f.U16(count);
                           f.U24(static_cast<ZunUint32>(p.refTime));
                           f.U8(p.packetCount);
                         }) &&
                         layout.Write(w);
    if (!written) return false;
    w.OptionalZeros(zun::PaddingAfter(w.Size()));
    return true;
  }

  static bool Read(ZunRtcpRtpfbTransportCc* p, zun::BodyReader& r, const zun::Body& body) {
    p->latestTime = kNoTime;
    if (!zun::ReadFeedbackSources(r, p) || !r.U16(&p->baseSeq)) return false;
    const ZunUint8* const head = r.Take(6);
    if (head == nullptr) return false;
    const ZunUint32 count = ZunUint16FromOctets(head);
    p->refTime = SignedReferenceTime(static_cast<ZunUint32>(head[2]) << 16 | ZunUint16FromOctets(head + 3));
    p->packetCount = head[5];
    return zun::ReadTransportCcPackets(r, &p->packetInfo, count, body.IsRegistered());
  }

 private:
  static ZunSizeT Length(const TransportCcLayout& layout) {
    const ZunSizeT unpadded = kFixedSize + layout.Size();
    return unpadded + zun::PaddingAfter(unpadded);
  }

  static ZunInt32 SignedReferenceTime(ZunUint32 value) {
    return static_cast<ZunInt32>(value) - ((value & 0x800000) != 0 ? 0x1000000 : 0);
  }
};

}  // namespace

ZunRtcpRtpfbTransportCc* ZunRtcpRtpfbTransportCcConstructFull(ZunRtcpRtpfbTransportCc* p, ZunRtpSourceId sender,
                                                              ZunRtpSourceId source, ZunUint8 packetCount,
                                                              ZunAllocator* a) {
  zun::SetFeedbackHead(p, kIdentity, sender, source);
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

ZUN_RTCP_OWNING_KIND_DEFINE(ZunRtcpRtpfbTransportCc, kIdentity, &ZunRtcpRtpfbTransportCc::packetInfo)
ZUN_RTCP_ROW_DEFINE(ZunRtcpRtpfbTransportCc, Wire)
