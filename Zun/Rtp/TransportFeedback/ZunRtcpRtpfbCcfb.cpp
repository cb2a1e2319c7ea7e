#include "Zun/Rtp/TransportFeedback/ZunRtcpRtpfbCcfb.h"

#include "Zun/Os/ZunTime.h"
#include "Zun/Rtp/Core/EntryList.h"
#include "Zun/Rtp/Core/FeedbackHeader.h"
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

// An odd number of metrics is followed by the size of one more.
ZunSizeT PaddingAfter(ZunSizeT metrics) { return metrics % 2 * kMetricSize; }

// Neither field is masked: what is too large spills into its neighbour, and only out of the word it is lost.
void EncodeMetric(const Metric& metric, ZunUint8* octets) {
  const ZunUint32 word = kReceived | metric.ecn * kEcnUnit | metric.arrivalTimeOffset;
  zun::StoreBigEndian(octets, static_cast<ZunUint16>(metric.received ? word & 0xFFFF : 0));
}

// The ECN bits are not moved down all the way, so the field holds four times the codepoint. Callers know.
Metric MetricOf(const ZunUint8* octets) {
  const ZunUint16 word = ZunUint16FromOctets(octets);
  return {static_cast<ZunBool>(word >> 15), static_cast<ZunUint8>(octets[0] >> 3 & 0x0C),
          static_cast<ZunUint16>(word & kOffsetMask)};
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

bool ReadMetrics(zun::BodyReader& r, ZunVector_ZunRtcpRtpfbCcfbPacketMetric* metrics, ZunSizeT count) {
  const ZunUint8* octets = r.Take(count * kMetricSize);
  if (octets == nullptr) return false;
  Metrics::Clear(metrics);
  if (!Metrics::Reserve(metrics, count)) return false;
  for (ZunSizeT i = 0; i < count; ++i) metrics->begin[i] = MetricOf(octets + i * kMetricSize);
  metrics->end = metrics->begin + count;
  return true;
}

// A stream is kept once its padding lies before the end; the padding itself must be readable to go on.
bool ReadStream(zun::BodyReader& r, zun::ListRefill<Streams>& streams, ZunAllocator* a) {
  Stream* const stream = streams.Next([a](const Stream& old) { return old.packetMetrics.allocator == a; },
                                      [a](Stream* fresh) { ZunRtcpRtpfbCcfbStreamConstructDefault(fresh, 0, a); });
  ZunUint16 count;
  if (stream == nullptr || !r.U32(&stream->ssrc) || !r.U16(&stream->beginSeq) || !r.U16(&count) ||
      !ReadMetrics(r, &stream->packetMetrics, count) || r.BytesBeforeEnd() < PaddingAfter(count)) {
    return false;
  }
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

  static bool Write(const ZunRtcpRtpfbCcfb& p, zun::Output& out, bool pad) {
    const ZunSizeT length = Length(p);
    zun::BodyWriter w(out, length);
    if (!zun::WriteSubpacketHeader(w, pad, ZUN_RTCPRTPFB_TYPE_CCFB, kIdentity.type, length) || !w.U32(p.sender)) {
      return false;
    }
    for (const Stream* stream = p.streams.begin; stream != p.streams.end; ++stream) {
      if (!WriteStream(w, *stream)) return false;
    }
    return w.U32(p.sendTimestamp);
  }

  static bool Read(ZunRtcpRtpfbCcfb* p, zun::BodyReader& r, const zun::Body&) {
    if (!r.U32(&p->sender) || !ReadStreams(r, &p->streams)) return false;
    ZunUint32 timestamp;
    if (!r.U32(&timestamp) || !r.AtEnd()) return false;
    p->sendTimestamp = timestamp;
    kIdentity.Mark(p);
    return true;
  }

 private:
  static bool ReadStreams(zun::BodyReader& r, ZunVector_ZunRtcpRtpfbCcfbStream* list) {
    zun::ListRefill<Streams> streams(list);
    while (r.BytesBeforeEnd() > kTimestampSize) {
      if (!ReadStream(r, streams, list->allocator)) return false;
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
