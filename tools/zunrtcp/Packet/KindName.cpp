#include "tools/zunrtcp/Packet/KindName.h"

#include <map>

#include "tools/zunrtcp/Text.h"

namespace zunrtcp {

namespace {

// The feedback control information begins behind the header and two SSRCs.
constexpr std::size_t kFciOffset = 12;

bool FciBeginsWith(const SubpacketView& subpacket, std::string_view identifier) {
  return subpacket.Is(kPsfb, kAfb) && subpacket.bytes.size() >= kFciOffset + 4 &&
         subpacket.bytes.substr(kFciOffset, identifier.size()) == identifier;
}

std::string NameOr(const std::map<unsigned, const char*>& names, unsigned number, const std::string& otherwise) {
  const auto found = names.find(number);
  return found == names.end() ? otherwise : found->second;
}

std::string RtpfbName(unsigned fmt) {
  static const std::map<unsigned, const char*> names{{kNack, "NACK"}, {kTmmbr, "TMMBR"},      {kTmmbn, "TMMBN"},
                                                     {kCcfb, "CCFB"}, {kTransportCc, "TWCC"}, {kRtpfbAbafb, "ABAFB"}};
  return NameOr(names, fmt, "RTPFB FMT " + std::to_string(fmt));
}

std::string AfbName(const SubpacketView& subpacket) {
  static const std::map<unsigned, const char*> names{
      {kAbafb, "AFB ABAFB"}, {kAlbr, "ALBR"}, {kShow, "SHOW"}, {kShowAck, "SHOWACK"}, {kLir, "LIR"}};
  if (IsRemb(subpacket)) return "REMB";
  if (!FciBeginsWith(subpacket, "Nr")) return "AFB";
  const unsigned number = U16At(subpacket.bytes, kFciOffset + 2);
  return NameOr(names, number, "AFB Nr " + std::to_string(number));
}

std::string PsfbName(const SubpacketView& subpacket) {
  static const std::map<unsigned, const char*> names{{kPli, "PLI"}, {kSli, "SLI"},   {kRpsi, "RPSI"},
                                                     {kFir, "FIR"}, {kTstr, "TSTR"}, {kTsta, "TSTA"}};
  if (subpacket.count() == kAfb) return AfbName(subpacket);
  return NameOr(names, subpacket.count(), "PSFB FMT " + std::to_string(subpacket.count()));
}

}  // namespace

bool IsRemb(const SubpacketView& subpacket) { return FciBeginsWith(subpacket, "REMB"); }

bool IsHouseMessage(const SubpacketView& subpacket, unsigned number) {
  return FciBeginsWith(subpacket, "Nr") && U16At(subpacket.bytes, kFciOffset + 2) == number;
}

std::string KindName(const SubpacketView& subpacket) {
  static const std::map<unsigned, const char*> names{
      {kSr, "SR"}, {kRr, "RR"}, {kSdes, "SDES"}, {kBye, "BYE"}, {kApp, "APP"}};
  static const std::map<unsigned, const char*> others{{192, "full intra request"},
                                                      {193, "negative acknowledgement"},
                                                      {195, "IJ"},
                                                      {207, "XR"},
                                                      {208, "AVB"},
                                                      {209, "RSI"},
                                                      {210, "TOKEN"},
                                                      {211, "IDMS"},
                                                      {212, "RGRS"},
                                                      {213, "SNM"}};
  const unsigned type = subpacket.type();
  if (type == kRtpfb) return RtpfbName(subpacket.count());
  if (type == kPsfb) return PsfbName(subpacket);
  const std::string number = "type " + std::to_string(type);
  if (const auto other = others.find(type); other != others.end())
    return std::string(other->second) + " (" + number + ")";
  return NameOr(names, type, number);
}

std::string CountWords(const SubpacketView& subpacket) {
  const unsigned count = subpacket.count();
  switch (subpacket.type()) {
    case kSr:
    case kRr:
      return Counted(count, "report block");
    case kSdes:
      return Counted(count, "chunk");
    case kBye:
      return Counted(count, "source");
    case kRtpfb:
    case kPsfb:
      return "FMT " + std::to_string(count);
    default:
      return "subtype " + std::to_string(count);
  }
}

std::string RegisteredFormRemark(const SubpacketView& subpacket) {
  if (subpacket.type() != kRtpfb) return {};
  switch (subpacket.count()) {
    case kTmmbn:
      // RFC 5104, section 4.2.1: the media source is 0, entries of 8 bytes follow.
      if (subpacket.bytes.size() < 20 || subpacket.bytes.size() % 8 != 4 || U32At(subpacket.bytes, 8) != 0) return {};
      return "FMT 3 is TMMBN here, which is exactly 16 bytes; this looks like a registered TMMBR (RFC 5104) of " +
             std::to_string(subpacket.bytes.size()) + " bytes";
    case 4:
      return "FMT 4 is unknown here and kept as bytes; it is the registered number of TMMBN (RFC 5104), which here is "
             "FMT 3 in a simplified form";
    case 11:
      return "FMT 11 is unknown here and kept as bytes; it is the registered number of CCFB (RFC 8888), which here is "
             "FMT 14";
    default:
      return {};
  }
}

}  // namespace zunrtcp
