#include "tools/zunrtcp/Kinds/KindLevel.h"

#include "Zun/Rtp/Dialect/ZunRtcpXr.h"
#include "tools/zunrtcp/Kinds/FeedbackLayout.h"

namespace zunrtcp {

using namespace zun::rtcp;

namespace {

constexpr std::string_view kHouseIdentifier = "Nr";  // followed by the number of the message in two bytes
constexpr std::string_view kRembIdentifier = "REMB";

const ZunRtcpRtpfb& RtpfbIn(ObjectView object) { return *ZunRtcpSubpacketGetRtpfb(object.get()); }
const ZunRtcpPsfb& PsfbIn(ObjectView object) { return *ZunRtcpSubpacketGetPsfb(object.get()); }
const ZunRtcpPsfbAfb& AfbIn(ObjectView object) { return *ZunRtcpPsfbGetAfb(&PsfbIn(object)); }

// The numbers whose registered form is another than the house's, or which the house keeps as bytes.
constexpr ZunInt32 kRegisteredTmmbr = 3;
constexpr ZunInt32 kRegisteredTmmbn = 4;
constexpr ZunInt32 kRegisteredCcfb = 11;

ZunInt32 TypeOfBytes(const SubpacketView& subpacket) {
  const auto type = static_cast<ZunInt32>(subpacket.type());
  return subpacket.registered() && type == ZUN_RTCPSUBPACKET_TYPE_XR ? kRegisteredForm + type : type;
}

ZunInt32 TransportFormatOfBytes(const SubpacketView& subpacket) {
  const auto format = static_cast<ZunInt32>(subpacket.count());
  if (!subpacket.registered()) return format;
  if (format == kRegisteredCcfb) return ZUN_RTCPRTPFB_TYPE_CCFB;
  return format == kRegisteredTmmbr || format == kRegisteredTmmbn ? kRegisteredForm + format : format;
}

ZunInt32 FormatOfBytes(const SubpacketView& subpacket) { return static_cast<ZunInt32>(subpacket.count()); }

// The number of a house message, known or not; nothing for all others.
std::optional<ZunInt32> HouseNumber(const SubpacketView& subpacket) {
  const bool has_identifier = subpacket.bytes.size() >= kAfbBodyOffset;
  if (!has_identifier || !subpacket.bytes.substr(kFciOffset).starts_with(kHouseIdentifier)) return std::nullopt;
  return U16At(subpacket.bytes, kFciOffset + kHouseIdentifier.size());
}

ZunInt32 MessageOfBytes(const SubpacketView& subpacket) {
  if (const std::optional<ZunInt32> number = HouseNumber(subpacket)) return *number;
  const bool is_remb =
      subpacket.bytes.size() >= kAfbBodyOffset && subpacket.bytes.substr(kFciOffset).starts_with(kRembIdentifier);
  return is_remb ? ZUN_RTCPPSFBAFB_TYPE_REMB : ZUN_RTCPPSFBAFB_TYPE_Unknown;
}

std::string MessageNumber(const SubpacketView& subpacket) {
  const std::optional<ZunInt32> number = HouseNumber(subpacket);
  return number ? "AFB Nr " + std::to_string(*number) : "AFB";
}

// The value of `subpacket` on the level, if the level around it says that it is there.
template <class Subpacket, class Value>
std::optional<ZunInt32> ValueOn(const KindLevel& level, const Subpacket& subpacket, Value value) {
  if (level.outer != nullptr && level.outer->ValueOf(subpacket) != level.outer_value) return std::nullopt;
  return value(subpacket);
}

}  // namespace

std::optional<ZunInt32> KindLevel::ValueOf(ObjectView object) const { return ValueOn(*this, object, value_of_object); }

std::optional<ZunInt32> KindLevel::ValueOf(const SubpacketView& subpacket) const {
  return ValueOn(*this, subpacket, value_of_bytes);
}

constinit const KindLevel subpacket_level = {
    .outer = nullptr,
    .outer_value = 0,
    .value_of_object = [](ObjectView object) { return object.type(); },
    .value_of_bytes = TypeOfBytes,
    .unknown_data = [](ObjectView object) { return get_if<Unknown>(object)->data(); },
    .number_words = [](const SubpacketView& subpacket) { return "type " + std::to_string(subpacket.type()); },
    .is_unknown = [](ZunInt32 value) { return ZunRtcpSubpacketTypeIsUnknown(value) != 0; },
};

constinit const KindLevel rtpfb_level = {
    .outer = &subpacket_level,
    .outer_value = ZUN_RTCPSUBPACKET_TYPE_RTPFB,
    .value_of_object = [](ObjectView object) { return ZunRtcpRtpfbGetFeedbackMessageType(&RtpfbIn(object)); },
    .value_of_bytes = TransportFormatOfBytes,
    .unknown_data = [](ObjectView object) { return get_if<UnknownRtpfb>(object)->data(); },
    .number_words = [](const SubpacketView& subpacket) { return "RTPFB FMT " + std::to_string(subpacket.count()); },
    .is_unknown = [](ZunInt32 value) { return ZunRtcpRtpfbFeedbackMessageIsUnknown(value) != 0; },
};

constinit const KindLevel psfb_level = {
    .outer = &subpacket_level,
    .outer_value = ZUN_RTCPSUBPACKET_TYPE_PSFB,
    .value_of_object = [](ObjectView object) { return ZunRtcpPsfbGetFeedbackMessageType(&PsfbIn(object)); },
    .value_of_bytes = FormatOfBytes,
    .unknown_data = [](ObjectView object) { return get_if<UnknownPsfb>(object)->data(); },
    .number_words = [](const SubpacketView& subpacket) { return "PSFB FMT " + std::to_string(subpacket.count()); },
    .is_unknown = [](ZunInt32 value) { return ZunRtcpPsfbTypeIsUnknown(value) != 0; },
};

constinit const KindLevel afb_level = {
    .outer = &psfb_level,
    .outer_value = ZUN_RTCPPSFB_TYPE_AFB,
    .value_of_object = [](ObjectView object) { return ZunRtcpPsfbAfbGetType(&AfbIn(object)); },
    .value_of_bytes = MessageOfBytes,
    .unknown_data = [](ObjectView object) { return get_if<UnknownAfb>(object)->data(); },
    .number_words = MessageNumber,
    .is_unknown = [](ZunInt32 value) { return ZunRtcpPsfbAfbTypeIsUnknown(value) != 0; },
};

}  // namespace zunrtcp
