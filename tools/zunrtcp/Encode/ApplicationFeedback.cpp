#include "tools/zunrtcp/Encode/Builder.h"

namespace zunrtcp {

using namespace zun::rtcp;

namespace {

constexpr std::uint64_t kMostPayloadType = 127;
constexpr std::uint64_t kMostParameterType = 31;

void FillRemb(const JsonField& packet, Remb* remb) {
  SetEnds(packet, remb);
  const JsonField bitrate = packet["bitrate"];
  if (!remb->bitrate(static_cast<float>(bitrate.Real()))) bitrate.Refuse("is out of range");
  for (const JsonField& field : packet["sources"].Elements()) MustBeTrue(remb->add(field.As<std::uint32_t>()));
}

void FillAbafb(const JsonField& packet, AfbAbafb* abafb) {
  SetEnds(packet, abafb);
  abafb->timestamp(packet["timestamp"].As<std::uint32_t>());
  abafb->delay(packet["delay"].As<std::uint32_t>());
  abafb->data_rate(packet["dataRate"].As<std::uint32_t>());
  abafb->loss_rate(packet["lossRate"].As<std::uint32_t>());
  abafb->aba_data_rate(packet["abaDataRate"].As<std::uint32_t>());
  abafb->average_delay_difference(
      static_cast<std::int32_t>(packet["averageDelayDifference"].Signed(INT32_MIN, INT32_MAX)));
  abafb->average_arrival_difference(packet["averageArrivalDifference"].As<std::uint32_t>());
}

void FillAlbr(const JsonField& packet, Albr* albr) {
  SetEnds(packet, albr);
  albr->available_bit_rate(packet["availableBitRate"].As<std::uint32_t>());
}

// A parameter may be one that only others know, which the list takes as it is.
void FillShow(const JsonField& packet, Show* show) {
  SetEnds(packet, show);
  show->seqno(packet["sequence"].As<std::uint8_t>());
  for (const JsonField& field : packet["parameters"].Elements()) {
    const auto type = static_cast<ZunRtcpPsfbAfbShowParameterType>(field["type"].Unsigned(kMostParameterType));
    MustBeTrue(show->parameters().push_back({type, field["value"].As<std::uint64_t>()}));
  }
}

void FillShowAck(const JsonField& packet, ShowAck* ack) {
  SetEnds(packet, ack);
  ack->seqno(packet["sequence"].As<std::uint8_t>());
  ack->show_sender(packet["showSender"].As<std::uint32_t>());
}

void FillLir(const JsonField& packet, Lir* lir) {
  SetEnds(packet, lir);
  for (const JsonField& field : packet["entries"].Elements()) {
    const std::string layer_data = field["layerData"].Bytes();
    MustBeTrue(lir->add(field["source"].As<std::uint32_t>(), field["sequence"].As<std::uint8_t>(),
                        static_cast<std::uint8_t>(field["payloadType"].Unsigned(kMostPayloadType)),
                        octets_of(layer_data)));
  }
}

constexpr Builder kBuilders[] = {
    BuilderOf<Remb, FillRemb>("REMB"), BuilderOf<AfbAbafb, FillAbafb>("AFB ABAFB"), BuilderOf<Albr, FillAlbr>("ALBR"),
    BuilderOf<Show, FillShow>("SHOW"), BuilderOf<ShowAck, FillShowAck>("SHOWACK"),  BuilderOf<Lir, FillLir>("LIR"),
};

}  // namespace

std::span<const Builder> ApplicationFeedbackBuilders() { return kBuilders; }

}  // namespace zunrtcp
