#include "tools/zunrtcp/Kinds/FeedbackLayout.h"
#include "tools/zunrtcp/Kinds/TransportFeedback/Rows.h"

namespace zunrtcp {

using namespace zun::rtcp;

namespace {

void DescribeTmmbr(View<Tmmbr> tmmbr, Description* description) {
  description->AddList("entries");
  for (const TmmbrEntry& entry : tmmbr.fci()) {
    Description& described = description->AddItem("entries");
    described.AddSource("source", "of", entry.ssrc);
    described.AddNumber("maxBitrate", "at most", entry.max_bitrate, "bit/s");
  }
}

void RewriteTmmbr(Rewrite* rewrite) { rewrite->Put(kMediaSourceOffset, kSourceSize, 0, Rule::MediaSource); }

std::optional<Rule> WhyUnwritten(const SubpacketView& tmmbr) {
  if (tmmbr.bytes.size() == kFciOffset) return Rule::EmptyTmmbr;
  return std::nullopt;
}

}  // namespace

constinit const KindRow tmmbr_row = RowOf<Listed<rtpfb_level, ZUN_RTCPRTPFB_TYPE_TMMBR>, DescribeTmmbr>({
    .name = "TMMBR",
    .house_name = "house TMMBR",
    .rewrite = RewriteTmmbr,
    .why_unwritten = WhyUnwritten,
});

}  // namespace zunrtcp
