#include "Zun/Rtp/TransportFeedback/ZunRtcpRtpfbCcfb.h"

#include <bit>
#include <cstring>

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
constexpr int kWireEcnShift = 13;
constexpr ZunUint32 kHouseEcnUnit = 4;

// An odd number of metrics is followed by the size of one more.
ZunSizeT PaddingAfter(ZunSizeT metrics) { return metrics % 2 * kMetricSize; }

// A metric as one word, as it lies in memory, so that loops over metrics work on many at once.
constexpr bool kIsLittle = std::endian::native == std::endian::little;
constexpr int kReceivedShift = kIsLittle ? 0 : 24;
constexpr int kEcnShift = kIsLittle ? 8 : 16;
constexpr int kOffsetShift = kIsLittle ? 16 : 0;

constexpr ZunUint32 WordOf(ZunUint32 received, ZunUint32 ecn, ZunUint32 offset) {
  return received << kReceivedShift | ecn << kEcnShift | offset << kOffsetShift;
}
static_assert(WordOf(1, 2, 0x304) == std::bit_cast<ZunUint32>(Metric{1, 2, 0x304}));

struct MetricWord {
  explicit MetricWord(const Metric& metric) { std::memcpy(&word, &metric, sizeof(word)); }
  ZunUint32 Ecn() const { return word >> kEcnShift & 0xFF; }
  ZunUint32 Offset() const { return word >> kOffsetShift & 0xFFFF; }
  // All bits of a packet that was received, none of one that was not.
  ZunUint32 Mask() const { return (word >> kReceivedShift & 0xFF) != 0 ? ~ZunUint32{0} : 0; }

  ZunUint32 word;
};

// Neither field is masked: what is too large spills into its neighbour, and only out of the word it is lost.
void EncodeMetric(const Metric& metric, ZunUint8* octets) {
  const MetricWord m(metric);
  zun::StoreBigEndian(octets,
                      static_cast<ZunUint16>((kReceived | m.Ecn() * kEcnUnit | m.Offset()) & m.Mask() & 0xFFFF));
}

// What of a metric is too large for its word; 0 when nothing is.
ZunUint32 ExcessOf(const Metric& metric) {
  const MetricWord m(metric);
  return ((m.Ecn() & ~kMaxEcn) | (m.Offset() & ~kOffsetMask)) & m.Mask();
}

template <Form kForm>
void DecodeMetric(const ZunUint8* octets, Metric* metric) {
  constexpr ZunUint32 kUnit = kForm == Form::House ? kHouseEcnUnit : 1;
  const ZunUint32 wire = ZunUint32{octets[0]} << 8 | octets[1];
  const ZunUint32 word = WordOf(wire >> 15, (wire >> kWireEcnShift & kMaxEcn) * kUnit, wire & kOffsetMask);
  std::memcpy(metric, &word, sizeof(word));
}

template <Form kForm>
void DecodeMetrics(const ZunUint8* octets, Metric* metrics, ZunSizeT count) {
  for (ZunSizeT i = 0; i < count; ++i) DecodeMetric<kForm>(octets + i * kMetricSize, metrics + i);
}

bool FitTheirWords(const ZunVector_ZunRtcpRtpfbCcfbPacketMetric& metrics) {
  ZunUint32 excess = 0;
  for (const Metric* x = metrics.begin; x != metrics.end; ++x) excess |= ExcessOf(*x);
  return excess == 0;
}

bool WriteMetrics(zun::BodyWriter& w, const ZunVector_ZunRtcpRtpfbCcfbPacketMetric& metrics) {
  return zun::WriteEntries<kMetricSize>(w, metrics, EncodeMetric);
}
// The same, but false when something is too large for its word.
bool WriteMetricsThatFit(zun::BodyWriter& w, const ZunVector_ZunRtcpRtpfbCcfbPacketMetric& metrics) {
  ZunUint32 excess = 0;
  return zun::WriteEntries<kMetricSize>(w, metrics,
                                        [&excess](const Metric& metric, ZunUint8* octets) {
                                          excess |= ExcessOf(metric);
                                          EncodeMetric(metric, octets);
                                        }) &&
         excess == 0;
}

bool WriteStream(zun::BodyWriter& w, const Stream& stream, bool must_fit) {
  const ZunSizeT count = Metrics::Size(&stream.packetMetrics);
  return count <= kMaxMetrics && w.Fields<kBlockHeaderSize>([&stream, count](zun::FieldWriter& f) {
    f.U32(stream.ssrc);
    f.U16(stream.beginSeq);
    f.U16(static_cast<ZunUint16>(count));
  }) && (must_fit ? WriteMetricsThatFit(w, stream.packetMetrics) : WriteMetrics(w, stream.packetMetrics)) &&
         w.Zeros(PaddingAfter(count));
}

template <Form kForm>
bool ReadMetrics(zun::BodyReader& r, ZunVector_ZunRtcpRtpfbCcfbPacketMetric* metrics, ZunSizeT count) {
  const ZunUint8* octets = r.Take(count * kMetricSize);
  if (octets == nullptr || !r.MayHoldEntries(count)) return false;
  Metrics::Clear(metrics);
  if (!Metrics::Reserve(metrics, count)) return r.RefuseAllocation();
  DecodeMetrics<kForm>(octets, metrics->begin, count);
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

  static constexpr bool kLooksWhileItWrites = true;
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
      if (!WriteStream(w, *stream, out.IsBlock())) return false;
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
    // Neither is rare. A compiler that is not told takes the registered form for it, and leaves its loop as it is.
    if (body.IsRegistered() && body.header.count == zun::kRegisteredCcfb) [[likely]]
      return ReadStreams<Form::Registered>(r, list);
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
