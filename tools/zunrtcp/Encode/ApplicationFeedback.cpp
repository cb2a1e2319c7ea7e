#include "tools/zunrtcp/Encode/Builder.h"

namespace zunrtcp {

namespace {

constexpr std::uint64_t kMostPayloadType = 127;
constexpr std::uint64_t kMostParameterType = 31;

void FillRemb(const JsonField& packet, ZunRtcpPsfbAfbRemb* remb) {
  SetEnds(packet, remb);
  const JsonField bitrate = packet["bitrate"];
  if (!ZunRtcpPsfbAfbRembSetBitrate(remb, static_cast<ZunFloat32>(bitrate.Real()))) bitrate.Refuse("is out of range");
  for (const JsonField& field : packet["sources"].Elements()) {
    const ZunRtpSourceId source = field.As<std::uint32_t>();
    MustBeTrue(ZunVector_ZunRtpSourceIdPushBack(&remb->sources, &source));
  }
}

void FillAbafb(const JsonField& packet, ZunRtcpPsfbAfbAbafb* abafb) {
  SetEnds(packet, abafb);
  abafb->timestamp = packet["timestamp"].As<std::uint32_t>();
  MustBeTrue(ZunRtcpPsfbAfbAbafbSetDelay(abafb, packet["delay"].As<std::uint32_t>()));
  abafb->data_rate = packet["dataRate"].As<std::uint32_t>();
  abafb->loss_rate = packet["lossRate"].As<std::uint32_t>();
  abafb->aba_data_rate = packet["abaDataRate"].As<std::uint32_t>();
  abafb->average_delay_difference =
      static_cast<ZunInt32>(packet["averageDelayDifference"].Signed(INT32_MIN, INT32_MAX));
  abafb->average_arrival_difference = packet["averageArrivalDifference"].As<std::uint32_t>();
}

void FillAlbr(const JsonField& packet, ZunRtcpPsfbAfbAlbr* albr) {
  SetEnds(packet, albr);
  albr->available_bit_rate = packet["availableBitRate"].As<std::uint32_t>();
}

void FillShow(const JsonField& packet, ZunRtcpPsfbAfbShow* show) {
  SetEnds(packet, show);
  show->seqno = packet["sequence"].As<std::uint8_t>();
  for (const JsonField& field : packet["parameters"].Elements()) {
    const ZunRtcpPsfbAfbShowParameter parameter{
        static_cast<ZunRtcpPsfbAfbShowParameterType>(field["type"].Unsigned(kMostParameterType)),
        field["value"].As<std::uint64_t>()};
    MustBeTrue(ZunVector_ZunRtcpPsfbAfbShowParameterPushBack(&show->parameters, &parameter));
  }
}

void FillShowAck(const JsonField& packet, ZunRtcpPsfbAfbShowAck* ack) {
  SetEnds(packet, ack);
  ack->seqno = packet["sequence"].As<std::uint8_t>();
  ack->showSender = packet["showSender"].As<std::uint32_t>();
}

void AddEntry(const JsonField& field, ZunRtcpPsfbAfbLir* lir) {
  ZunString none;
  ZunStringConstructDefault(&none, lir->fci.allocator);
  ZunRtcpPsfbAfbLirEntry empty;
  MustBeTrue(ZunRtcpPsfbAfbLirEntryConstructFull(&empty, field["source"].As<std::uint32_t>(),
                                                 field["sequence"].As<std::uint8_t>(),
                                                 static_cast<ZunUint8>(field["payloadType"].Unsigned(kMostPayloadType)),
                                                 &none, lir->fci.allocator) != nullptr);
  MustBeTrue(ZunVector_ZunRtcpPsfbAfbLirEntryPushBack(&lir->fci, &empty));  // which owns nothing
  SetBytes(&(lir->fci.end - 1)->layerData, field["layerData"].Bytes());
}

void FillLir(const JsonField& packet, ZunRtcpPsfbAfbLir* lir) {
  SetEnds(packet, lir);
  for (const JsonField& field : packet["entries"].Elements()) AddEntry(field, lir);
}

constexpr Builder kBuilders[] = {
    BuilderOf<ZunRtcpPsfbAfbRemb, ZunRtcpPsfbAfbRembConstructDefault, FillRemb>("REMB"),
    BuilderOf<ZunRtcpPsfbAfbAbafb, ZunRtcpPsfbAfbAbafbConstructDefault, FillAbafb>("AFB ABAFB"),
    BuilderOf<ZunRtcpPsfbAfbAlbr, ZunRtcpPsfbAfbAlbrConstructDefault, FillAlbr>("ALBR"),
    BuilderOf<ZunRtcpPsfbAfbShow, ZunRtcpPsfbAfbShowConstructDefault, FillShow>("SHOW"),
    BuilderOf<ZunRtcpPsfbAfbShowAck, ZunRtcpPsfbAfbShowAckConstructDefault, FillShowAck>("SHOWACK"),
    BuilderOf<ZunRtcpPsfbAfbLir, ZunRtcpPsfbAfbLirConstructDefault, FillLir>("LIR"),
};

}  // namespace

std::span<const Builder> ApplicationFeedbackBuilders() { return kBuilders; }

}  // namespace zunrtcp
