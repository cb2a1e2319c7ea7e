#include "tools/zunrtcp/Encode/Builder.h"

namespace zunrtcp {

using namespace zun::rtcp;

namespace {

constexpr std::uint64_t kMostCount = 31;

template <class Kind>
void SetData(const JsonField& packet, Kind* unknown) {
  const std::string data = packet["data"].Bytes();
  MustAccept(unknown->data(octets_of(data)), packet, ZUN_RTCP_ENCODE_REASON_NOT_WHOLE_WORDS);
}

// Takes what the library reads of these numbers for bytes; the numbers of kinds that it models are no such.
void FillUnknown(const JsonField& packet, Unknown* unknown) {
  const JsonField type = packet["type"];
  if (!unknown->type(type.As<std::uint8_t>())) type.Refuse("is that of another kind");
  MustBeTrue(unknown->subtype(static_cast<std::uint8_t>(packet["count"].Unsigned(kMostCount))));
  SetData(packet, unknown);
}

template <class Kind>
void FillFeedback(const JsonField& packet, Kind* unknown) {
  SetEnds(packet, unknown);
  const JsonField format = packet["count"];
  const auto number = static_cast<std::int32_t>(format.Unsigned(kMostCount));
  if (!unknown->fmt(number)) format.Refuse("is the FMT of another kind");
  SetData(packet, unknown);
}

void FillAfb(const JsonField& packet, UnknownAfb* unknown) {
  SetEnds(packet, unknown);
  SetData(packet, unknown);
}

constexpr Builder kUnknown = BuilderOf<Unknown, FillUnknown>("");
constexpr Builder kRtpfb = BuilderOf<UnknownRtpfb, FillFeedback>("");
constexpr Builder kPsfb = BuilderOf<UnknownPsfb, FillFeedback>("");
constexpr Builder kAfb = BuilderOf<UnknownAfb, FillAfb>("");

}  // namespace

const Builder& BuilderOfBytes(const JsonField& packet) {
  switch (packet["type"].As<std::uint8_t>()) {
    case ZUN_RTCPSUBPACKET_TYPE_RTPFB:
      return kRtpfb;
    case ZUN_RTCPSUBPACKET_TYPE_PSFB:
      return packet["count"].Unsigned(kMostCount) == ZUN_RTCPPSFB_TYPE_AFB ? kAfb : kPsfb;
    default:
      return kUnknown;
  }
}

}  // namespace zunrtcp
