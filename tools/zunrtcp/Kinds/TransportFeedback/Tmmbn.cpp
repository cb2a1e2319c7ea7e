#include "tools/zunrtcp/Kinds/FeedbackLayout.h"
#include "tools/zunrtcp/Kinds/TransportFeedback/Rows.h"

namespace zunrtcp {

using namespace zun::rtcp;

namespace {

constexpr std::size_t kSize = kFciOffset + 4;  // one bit rate
constexpr std::size_t kRegisteredEntrySize = 8;

void DescribeTmmbn(View<Tmmbn> tmmbn, Description* description) {
  description->AddNumber("maxBitrate", "at most", tmmbn.max_bitrate(), "bit/s");
}

std::optional<Rule> WhyRefused(const SubpacketView& tmmbn) {
  if (tmmbn.bytes.size() >= kFciOffset && tmmbn.bytes.size() != kSize) return Rule::TmmbnLength;
  return std::nullopt;
}

// RFC 5104, section 4.2.1: the media source is 0, entries of 8 bytes follow.
bool LooksLikeRegisteredTmmbr(std::string_view bytes) {
  return bytes.size() > kFciOffset && (bytes.size() - kFciOffset) % kRegisteredEntrySize == 0 &&
         U32At(bytes, kMediaSourceOffset) == 0;
}

std::string RemarkOn(const SubpacketView& tmmbn) {
  if (!LooksLikeRegisteredTmmbr(tmmbn.bytes)) return {};
  return "FMT 3 is TMMBN here, which is exactly 16 bytes; this looks like a registered TMMBR (RFC 5104) of " +
         std::to_string(tmmbn.bytes.size()) + " bytes";
}

}  // namespace

constinit const KindRow tmmbn_row = RowOf<Listed<rtpfb_level, ZUN_RTCPRTPFB_TYPE_TMMBN>, DescribeTmmbn>({
    .name = "TMMBN",
    .why_refused = WhyRefused,
    .remark = RemarkOn,
});

}  // namespace zunrtcp
