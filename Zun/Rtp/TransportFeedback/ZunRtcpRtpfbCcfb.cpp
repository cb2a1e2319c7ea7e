#include "Zun/Rtp/TransportFeedback/ZunRtcpRtpfbCcfb.h"

#include "Zun/Os/ZunTime.h"
#include "Zun/Rtp/Core/EntryList.h"
#include "Zun/Rtp/Core/FeedbackHeader.h"
#include "Zun/Rtp/Core/RegisteredNumbers.h"
#include "Zun/Rtp/Core/Row.h"
#include "Zun/Utils/ListRefill.h"

ZUN_VECTOR_USE_PLAIN(ZunRtcpRtpfbCcfbPacketMetric)
ZUN_VECTOR_USE_OWNING(ZunRtcpRtpfbCcfbStream)

namespace {

using Metric = ZunRtcpRtpfbCcfbPacketMetric;
using Metrics = zun::VectorOfZunRtcpRtpfbCcfbPacketMetric;
using Stream = ZunRtcpRtpfbCcfbStream;
using Streams = zun::VectorOfZunRtcpRtpfbCcfbStream;

constexpr zun::FeedbackIdentity kIdentity = zun::IsRtpfb(ZUN_RTCPRTPFB_TYPE_CCFB);

constexpr ZunSizeT kTimestampSize = 4;
constexpr ZunSizeT kFixedSize = zun::kSubpacketHeaderSize + 4 + kTimestampSize;
constexpr ZunSizeT kBlockHeaderSize = 8;
constexpr ZunSizeT kMetricSize = 2;
constexpr ZunSizeT kMaxMetrics = 65535;

constexpr ZunUint32 kReceived = 0x8000;
constexpr ZunUint32 kEcnUnit = 0x2000;
constexpr ZunUint32 kOffsetMask = 0x1FFF;
constexpr ZunUint32 kMaxEcn = 3;

// The form of a message is told by its number. In the house's the ECN bits are not moved down all the way, so the field
// holds four times the codepoint when it is read. Callers know.
enum class Form { House, Registered };
constexpr int kEcnShift = 5;  // in the first octet of a metric
constexpr ZunUint32 kHouseEcnUnit = 4;

// An odd number of metrics is followed by the size of one more.
ZunSizeT PaddingAfter(ZunSizeT metrics) { return metrics % 2 * kMetricSize; }

// Neither field is masked: what is too large spills into its neighbour, and only out of the word it is lost.
void EncodeMetric(const Metric& metric, ZunUint8* octets) {
  const ZunUint32 word = kReceived | metric.ecn * kEcnUnit | metric.arrivalTimeOffset;
  zun::StoreBigEndian(octets, static_cast<ZunUint16>(metric.received ? word & 0xFFFF : 0));
}

template <Form kForm>
Metric MetricOf(const ZunUint8* octets) {
  constexpr ZunUint32 kUnit = kForm == Form::House ? kHouseEcnUnit : 1;
  const ZunUint16 word = ZunUint16FromOctets(octets);
  return {static_cast<ZunBool>(word >> 15), static_cast<ZunUint8>((octets[0] >> kEcnShift & kMaxEcn) * kUnit),
          static_cast<ZunUint16>(word & kOffsetMask)};
}

// Whether all metrics of packets that were received fit their words.
bool FitTheirWords(const ZunVector_ZunRtcpRtpfbCcfbPacketMetric& metrics) {
  ZunUint32 excess = 0;
  for (const Metric* x = metrics.begin; x != metrics.end; ++x) {
    const ZunUint32 wide = (x->ecn & ~kMaxEcn) | (x->arrivalTimeOffset & ~kOffsetMask);
    excess |= x->received ? wide : 0;
  }
  return excess == 0;
}

bool WriteStream(zun::BodyWriter& w, const Stream& stream) {
  const ZunSizeT count = Metrics::Size(&stream.packetMetrics);
  return count <= kMaxMetrics && w.Fields<kBlockHeaderSize>([&](zun::FieldWriter& f) {
    f.U32(stream.ssrc);
    f.U16(stream.beginSeq);
    f.U16(static_cast<ZunUint16>(count));
  }) && zun::WriteEntries<kMetricSize>(w, stream.packetMetrics, EncodeMetric) &&
         w.Zeros(PaddingAfter(count));
}

template <Form kForm>
bool ReadMetrics(zun::BodyReader& r, ZunVector_ZunRtcpRtpfbCcfbPacketMetric* metrics, ZunSizeT count) {
  const ZunUint8* octets = r.Take(count * kMetricSize);
  if (octets == nullptr || !r.MayHoldEntries(count)) return false;
  Metrics::Clear(metrics);
  if (!Metrics::Reserve(metrics, count)) return r.RefuseAllocation();
  for (ZunSizeT i = 0; i < count; ++i) metrics->begin[i] = MetricOf<kForm>(octets + i * kMetricSize);
  metrics->end = metrics->begin + count;
  return true;
}

// A stream is kept once its padding lies before the end; the padding itself must be readable to go on.
template <Form kForm>
bool ReadStream(zun::BodyReader& r, zun::ListRefill<Streams>& streams, ZunAllocator* a) {
  if (!r.MayHoldEntries(1)) return false;
  Stream* const stream = streams.Next([a](const Stream& old) { return old.packetMetrics.allocator == a; },
                                      [a](Stream* fresh) { ZunRtcpRtpfbCcfbStreamConstructDefault(fresh, 0, a); });
  if (stream == nullptr) return r.RefuseAllocation();
  ZunUint16 count;
  if (!r.U32(&stream->ssrc) || !r.U16(&stream->beginSeq) || !r.U16(&count) ||
      !ReadMetrics<kForm>(r, &stream->packetMetrics, count)) {
    return false;
  }
  if (r.BytesBeforeEnd() < PaddingAfter(count)) return r.Refuse(ZUN_RTCP_DECODE_REASON_TOO_SHORT);
  streams.Keep();
  return r.SkipReadable(PaddingAfter(count));
}

struct Wire {
  static ZunSizeT Length(const ZunRtcpRtpfbCcfb& p) {
    ZunSizeT length = kFixedSize;
    for (const Stream* stream = p.streams.begin; stream != p.streams.end; ++stream) {
      const ZunSizeT count = Metrics::Size(&stream->packetMetrics);
      length += kBlockHeaderSize + count * kMetricSize + PaddingAfter(count);
    }
    return length;
  }

  static ZunRtcpEncodeReason FindUnencodable(const ZunRtcpRtpfbCcfb& p, ZunRtcpDialect) {
    for (const Stream* stream = p.streams.begin; stream != p.streams.end; ++stream) {
      if (Metrics::Size(&stream->packetMetrics) > kMaxMetrics) return ZUN_RTCP_ENCODE_REASON_TOO_MANY;
      if (!FitTheirWords(stream->packetMetrics)) return ZUN_RTCP_ENCODE_REASON_VALUE;
    }
    return ZUN_RTCP_ENCODE_REASON_NONE;
  }

  static bool Write(const ZunRtcpRtpfbCcfb& p, zun::Output& out, bool pad) {
    const ZunSizeT length = Length(p);
    const ZunRtcpRtpfbType fmt = out.IsRegistered() ? zun::kRegisteredCcfb : kIdentity.fmt;
    zun::BodyWriter w(out, length);
    if (!zun::WriteSubpacketHeader(w, pad, static_cast<ZunUint8>(fmt), kIdentity.type, length) || !w.U32(p.sender)) {
      return false;
    }
    for (const Stream* stream = p.streams.begin; stream != p.streams.end; ++stream) {
      if (!WriteStream(w, *stream)) return false;
    }
    return w.U32(p.sendTimestamp);
  }

  static bool Read(ZunRtcpRtpfbCcfb* p, zun::BodyReader& r, const zun::Body& body) {
    if (!r.U32(&p->sender) || !ReadStreams(r, &p->streams, body)) return false;
    ZunUint32 timestamp;
    if (!r.U32(&timestamp) || !r.NeedEnd()) return false;
    p->sendTimestamp = timestamp;
    kIdentity.Mark(p);
    return true;
  }

 private:
  static bool ReadStreams(zun::BodyReader& r, ZunVector_ZunRtcpRtpfbCcfbStream* list, const zun::Body& body) {
    if (body.IsRegistered() && body.header.count == zun::kRegisteredCcfb) return ReadStreams<Form::Registered>(r, list);
    return ReadStreams<Form::House>(r, list);
  }
  template <Form kForm>
  static bool ReadStreams(zun::BodyReader& r, ZunVector_ZunRtcpRtpfbCcfbStream* list) {
    zun::ListRefill<Streams> streams(list);
    while (r.BytesBeforeEnd() > kTimestampSize) {
      if (!ReadStream<kForm>(r, streams, list->allocator)) return false;
    }
    return true;
  }
};

}  // namespace

ZunRtcpRtpfbCcfb* ZunRtcpRtpfbCcfbConstructDefault(ZunRtcpRtpfbCcfb* p, ZunAllocator* a) {
  zun::SetFeedbackHead(p, kIdentity, 0, 0);
  Streams::ConstructDefault(&p->streams, a);
  p->sendTimestamp = 0;
  return p;
}

ZunRtcpRtpfbCcfb* ZunRtcpRtpfbCcfbConstructFullWithMonotonic(ZunRtcpRtpfbCcfb* p, ZunRtpSourceId sender,
                                                             ZunTime sendTimestamp, ZunAllocator* a) {
  ZunRtcpRtpfbCcfbConstructDefault(p, a);
  p->sender = sender;
  ZunRtcpRtpfbCcfbSetSendTimestampFromMonotonic(p, sendTimestamp);
  return p;
}

ZunBool ZunRtcpRtpfbCcfbSetSendTimestampFromMonotonic(ZunRtcpRtpfbCcfb* p, ZunTime ts) {
  p->sendTimestamp = static_cast<ZunUint32>(ZunTimeGetNtp(ts) >> 16 & 0xFFFFFFFF);
  return 1;
}

ZunBool ZunRtcpRtpfbCcfbAddStream(ZunRtcpRtpfbCcfb* p, const ZunRtcpRtpfbCcfbStream* stream) {
  return Streams::PushBack(&p->streams, stream);
}

ZUN_RTCP_OWNING_KIND_DEFINE(ZunRtcpRtpfbCcfb, kIdentity, &ZunRtcpRtpfbCcfb::streams)
ZUN_RTCP_ROW_DEFINE(ZunRtcpRtpfbCcfb, Wire)
