#include "tools/zunrtcp/Encode/Builder.h"

namespace zunrtcp {

namespace {

constexpr std::int64_t kMostReferenceTime = 0x7FFFFF;
constexpr unsigned kMapBits = 16;

// Which bit of the map tells of `number`; kMapBits or more when none is left for it, as bits are told in
// order. No map of the library's goes on after 65535.
unsigned BitFor(const ZunRtcpRtpfbNackSeqMap& map, std::uint16_t number) {
  if (number <= map.seqNumber) return kMapBits;
  const unsigned bit = number - map.seqNumber - 1U;
  return bit < kMapBits && map.map >> bit == 0 ? bit : kMapBits;
}

// A number that is told again begins a new map, as it did where it was received.
void FillNack(const JsonField& packet, ZunRtcpRtpfbNack* nack) {
  SetEnds(packet, nack);
  for (const JsonField& field : packet["lost"].Elements()) {
    const auto number = field.As<std::uint16_t>();
    ZunRtcpRtpfbNackSeqMap* last = nack->seqMaps.begin == nack->seqMaps.end ? nullptr : nack->seqMaps.end - 1;
    const unsigned bit = last == nullptr ? kMapBits : BitFor(*last, number);
    if (bit < kMapBits) {
      last->map = static_cast<ZunUint16>(last->map | 1U << bit);
    } else {
      const ZunRtcpRtpfbNackSeqMap map{number, 0};
      MustBeTrue(ZunVector_ZunRtcpRtpfbNackSeqMapPushBack(&nack->seqMaps, &map));
    }
  }
}

void FillTmmbr(const JsonField& packet, ZunRtcpRtpfbTmmbr* tmmbr) {
  SetEnds(packet, tmmbr);
  for (const JsonField& field : packet["entries"].Elements()) {
    const ZunRtcpRtpfbTmmbrEntry entry{field["source"].As<std::uint32_t>(), 0, field["maxBitrate"].As<std::uint32_t>()};
    MustBeTrue(ZunVector_ZunRtcpRtpfbTmmbrEntryPushBack(&tmmbr->fci, &entry));
  }
}

void FillTmmbn(const JsonField& packet, ZunRtcpRtpfbTmmbn* tmmbn) {
  SetEnds(packet, tmmbn);
  tmmbn->max_bitrate = packet["maxBitrate"].As<std::uint32_t>();
}

ZunRtcpRtpfbCcfbPacketMetric MetricOf(const JsonField& field) {
  ZunRtcpRtpfbCcfbPacketMetric metric{};
  metric.received = field["received"].Bool();
  metric.ecn = static_cast<ZunUint8>(field["ecn"].Unsigned(3));
  metric.arrivalTimeOffset = static_cast<ZunUint16>(field["offset"].Unsigned(0x1FFF));
  return metric;
}

void FillCcfb(const JsonField& packet, ZunRtcpRtpfbCcfb* ccfb) {
  ccfb->sender = packet["sender"].As<std::uint32_t>();
  ccfb->sendTimestamp = packet["timestamp"].As<std::uint32_t>();
  for (const JsonField& field : packet["streams"].Elements()) {
    ZunRtcpRtpfbCcfbStream empty;
    ZunRtcpRtpfbCcfbStreamConstructDefault(&empty, field["source"].As<std::uint32_t>(), ccfb->streams.allocator);
    MustBeTrue(ZunVector_ZunRtcpRtpfbCcfbStreamPushBack(&ccfb->streams, &empty));  // which owns nothing
    ZunRtcpRtpfbCcfbStream* stream = ccfb->streams.end - 1;
    stream->beginSeq = field["beginSequence"].As<std::uint16_t>();
    for (const JsonField& each : field["metrics"].Elements()) {
      const ZunRtcpRtpfbCcfbPacketMetric metric = MetricOf(each);
      MustBeTrue(ZunVector_ZunRtcpRtpfbCcfbPacketMetricPushBack(&stream->packetMetrics, &metric));
    }
  }
}

ZunRtcpRtpfbTransportCcPacketInfo InfoOf(const JsonField& field) {
  ZunRtcpRtpfbTransportCcPacketInfo info{};
  info.received = field["received"].Bool();
  const JsonField delta = field["delta"];
  info.haveDelta = !delta.IsNull();
  if (!info.haveDelta) return info;
  if (!info.received) delta.Refuse("a packet that was not received has none");
  info.delta = static_cast<ZunInt16>(delta.Signed(-0x8000, 0x7FFF));
  return info;
}

void FillTransportCc(const JsonField& packet, ZunRtcpRtpfbTransportCc* feedback) {
  SetEnds(packet, feedback);
  feedback->baseSeq = packet["baseSequence"].As<std::uint16_t>();
  feedback->refTime =
      static_cast<ZunInt32>(packet["referenceTime"].Signed(-kMostReferenceTime - 1, kMostReferenceTime));
  feedback->packetCount = packet["feedbackCount"].As<std::uint8_t>();
  for (const JsonField& field : packet["packets"].Elements()) {
    const ZunRtcpRtpfbTransportCcPacketInfo info = InfoOf(field);
    MustBeTrue(ZunVector_ZunRtcpRtpfbTransportCcPacketInfoPushBack(&feedback->packetInfo, &info));
  }
}

void FillAbafb(const JsonField& packet, ZunRtcpRtpfbAbafb* abafb) {
  SetEnds(packet, abafb);
  abafb->timestamp = packet["timestamp"].As<std::uint32_t>();
  MustBeTrue(ZunRtcpRtpfbAbafbSetDelay(abafb, packet["delay"].As<std::uint32_t>()));
  abafb->data_rate = packet["dataRate"].As<std::uint32_t>();
  abafb->loss_rate = packet["lossRate"].As<std::uint32_t>();
  abafb->aba_data_rate = packet["abaDataRate"].As<std::uint32_t>();
}

constexpr Builder kBuilders[] = {
    BuilderOf<ZunRtcpRtpfbNack, ZunRtcpRtpfbNackConstructDefault, FillNack>("NACK"),
    BuilderOf<ZunRtcpRtpfbTmmbr, ZunRtcpRtpfbTmmbrConstructDefault, FillTmmbr>("TMMBR"),
    BuilderOf<ZunRtcpRtpfbTmmbr, ZunRtcpRtpfbTmmbrConstructDefault, FillTmmbr>("house TMMBR"),
    BuilderOf<ZunRtcpRtpfbTmmbn, ZunRtcpRtpfbTmmbnConstructDefault, FillTmmbn>("TMMBN"),
    BuilderOf<ZunRtcpRtpfbCcfb, ZunRtcpRtpfbCcfbConstructDefault, FillCcfb>("CCFB"),
    BuilderOf<ZunRtcpRtpfbTransportCc, ZunRtcpRtpfbTransportCcConstructDefault, FillTransportCc>("TWCC"),
    BuilderOf<ZunRtcpRtpfbAbafb, ZunRtcpRtpfbAbafbConstructDefault, FillAbafb>("ABAFB"),
};

}  // namespace

std::span<const Builder> TransportFeedbackBuilders() { return kBuilders; }

}  // namespace zunrtcp
