#include "tools/zunrtcp/Encode/Builder.h"

namespace zunrtcp {

using namespace zun::rtcp;

namespace {

constexpr std::int64_t kMostReferenceTime = 0x7FFFFF;
constexpr unsigned kMapBits = 16;

// Which bit of the map tells of `number`; kMapBits or more when none is left for it, as bits are told in
// order. No map of the library's goes on after 65535.
unsigned BitFor(const NackSeqMap& map, std::uint16_t number) {
  if (number <= map.seqNumber) return kMapBits;
  const unsigned bit = number - map.seqNumber - 1U;
  return bit < kMapBits && map.map >> bit == 0 ? bit : kMapBits;
}

// A number that is told again begins a new map, as it did where it was received.
void FillNack(const JsonField& packet, Nack* nack) {
  SetEnds(packet, nack);
  auto maps = nack->seq_maps();
  for (const JsonField& field : packet["lost"].Elements()) {
    const auto number = field.As<std::uint16_t>();
    const unsigned bit = maps.empty() ? kMapBits : BitFor(maps.back(), number);
    if (bit < kMapBits) {
      maps.back().map = static_cast<std::uint16_t>(maps.back().map | 1U << bit);
    } else {
      MustBeTrue(maps.push_back({number, 0}));
    }
  }
}

void FillTmmbr(const JsonField& packet, Tmmbr* tmmbr) {
  SetEnds(packet, tmmbr);
  for (const JsonField& field : packet["entries"].Elements()) {
    MustBeTrue(tmmbr->add(field["source"].As<std::uint32_t>(), field["maxBitrate"].As<std::uint32_t>()));
  }
}

void FillTmmbn(const JsonField& packet, Tmmbn* tmmbn) {
  SetEnds(packet, tmmbn);
  tmmbn->max_bitrate(packet["maxBitrate"].As<std::uint32_t>());
}

CcfbPacketMetric MetricOf(const JsonField& field) {
  CcfbPacketMetric metric{};
  metric.received = field["received"].Bool();
  metric.ecn = static_cast<std::uint8_t>(field["ecn"].Unsigned(3));
  metric.arrivalTimeOffset = static_cast<std::uint16_t>(field["offset"].Unsigned(0x1FFF));
  return metric;
}

void FillCcfb(const JsonField& packet, Ccfb* ccfb) {
  ccfb->sender(packet["sender"].As<std::uint32_t>());
  ccfb->send_timestamp(packet["timestamp"].As<std::uint32_t>());
  for (const JsonField& field : packet["streams"].Elements()) {
    CcfbStream stream(field["source"].As<std::uint32_t>());
    stream.begin_seq(field["beginSequence"].As<std::uint16_t>());
    for (const JsonField& metric : field["metrics"].Elements()) {
      MustBeTrue(stream.packet_metrics().push_back(MetricOf(metric)));
    }
    MustBeTrue(ccfb->add(std::move(stream)));
  }
}

TransportCcPacketInfo InfoOf(const JsonField& field) {
  TransportCcPacketInfo info{};
  info.received = field["received"].Bool();
  const JsonField delta = field["delta"];
  info.haveDelta = !delta.IsNull();
  if (!info.haveDelta) return info;
  if (!info.received) delta.Refuse("a packet that was not received has none");
  info.delta = static_cast<std::int16_t>(delta.Signed(-0x8000, 0x7FFF));
  return info;
}

void FillTransportCc(const JsonField& packet, TransportCc* feedback) {
  SetEnds(packet, feedback);
  feedback->base_seq(packet["baseSequence"].As<std::uint16_t>());
  feedback->ref_time(
      static_cast<std::int32_t>(packet["referenceTime"].Signed(-kMostReferenceTime - 1, kMostReferenceTime)));
  feedback->packet_count(packet["feedbackCount"].As<std::uint8_t>());
  for (const JsonField& field : packet["packets"].Elements()) {
    MustBeTrue(feedback->packet_info().push_back(InfoOf(field)));
  }
}

void FillAbafb(const JsonField& packet, Abafb* abafb) {
  SetEnds(packet, abafb);
  abafb->timestamp(packet["timestamp"].As<std::uint32_t>());
  abafb->delay(packet["delay"].As<std::uint32_t>());
  abafb->data_rate(packet["dataRate"].As<std::uint32_t>());
  abafb->loss_rate(packet["lossRate"].As<std::uint32_t>());
  abafb->aba_data_rate(packet["abaDataRate"].As<std::uint32_t>());
}

constexpr Builder kBuilders[] = {
    BuilderOf<Nack, FillNack>("NACK"),          BuilderOf<Tmmbr, FillTmmbr>("TMMBR"),
    BuilderOf<Tmmbr, FillTmmbr>("house TMMBR"), BuilderOf<Tmmbn, FillTmmbn>("TMMBN"),
    BuilderOf<Ccfb, FillCcfb>("CCFB"),          BuilderOf<TransportCc, FillTransportCc>("TWCC"),
    BuilderOf<Abafb, FillAbafb>("ABAFB"),
};

}  // namespace

std::span<const Builder> TransportFeedbackBuilders() { return kBuilders; }

}  // namespace zunrtcp
