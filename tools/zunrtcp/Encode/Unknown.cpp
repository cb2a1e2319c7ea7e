#include "tools/zunrtcp/Encode/Builder.h"

namespace zunrtcp {

namespace {

constexpr std::uint64_t kMostCount = 31;

// Takes what the library reads of these numbers for bytes; the numbers of kinds that it models are no such.
void FillUnknown(const JsonField& packet, ZunRtcpUnknown* unknown) {
  unknown->type = packet["type"].As<std::uint8_t>();
  if (!ZunRtcpSubpacketTypeIsUnknown(unknown->type)) packet["type"].Refuse("is that of another kind");
  unknown->subtype = static_cast<ZunUint8>(packet["count"].Unsigned(kMostCount));
  SetBytes(&unknown->data, packet["data"].Bytes());
}

void FillRtpfb(const JsonField& packet, ZunRtcpRtpfbUnknown* unknown) {
  SetEnds(packet, unknown);
  const JsonField format = packet["count"];
  const auto number = static_cast<ZunRtcpRtpfbType>(format.Unsigned(kMostCount));
  if (!ZunRtcpRtpfbFeedbackMessageIsUnknown(number)) format.Refuse("is the FMT of another kind");
  MustBeTrue(ZunRtcpRtpfbUnknownSetFeedbackMessageType(unknown, number));
  SetBytes(&unknown->data, packet["data"].Bytes());
}

void FillPsfb(const JsonField& packet, ZunRtcpPsfbUnknown* unknown) {
  SetEnds(packet, unknown);
  const JsonField format = packet["count"];
  const auto number = static_cast<ZunRtcpPsfbType>(format.Unsigned(kMostCount));
  if (!ZunRtcpPsfbTypeIsUnknown(number)) format.Refuse("is the FMT of another kind");
  MustBeTrue(ZunRtcpPsfbUnknownSetFeedbackMessageType(unknown, number));
  SetBytes(&unknown->data, packet["data"].Bytes());
}

void FillAfb(const JsonField& packet, ZunRtcpPsfbAfbUnknown* unknown) {
  SetEnds(packet, unknown);
  SetBytes(&unknown->data, packet["data"].Bytes());
}

constexpr Builder kUnknown = BuilderOf<ZunRtcpUnknown, ZunRtcpUnknownConstructDefault, FillUnknown>("");
constexpr Builder kRtpfb = BuilderOf<ZunRtcpRtpfbUnknown, ZunRtcpRtpfbUnknownConstructDefault, FillRtpfb>("");
constexpr Builder kPsfb = BuilderOf<ZunRtcpPsfbUnknown, ZunRtcpPsfbUnknownConstructDefault, FillPsfb>("");
constexpr Builder kAfb = BuilderOf<ZunRtcpPsfbAfbUnknown, ZunRtcpPsfbAfbUnknownConstructDefault, FillAfb>("");

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
