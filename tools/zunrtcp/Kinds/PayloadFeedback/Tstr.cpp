#include "tools/zunrtcp/Kinds/PayloadFeedback/CodecControl.h"
#include "tools/zunrtcp/Kinds/PayloadFeedback/Rows.h"

namespace zunrtcp {

namespace {

void RewriteTstr(Rewrite* rewrite) {
  rewrite->Put(kMediaSourceOffset, kSourceSize, 0, Rule::MediaSource);
  RewriteCodecControlEntries(rewrite, kTradeOffIndexMask);
}

}  // namespace

constinit const KindRow tstr_row = RowOf<Listed<psfb_level, ZUN_RTCPPSFB_TYPE_TSTR>, DescribeTradeOffs>({
    .name = "TSTR",
    .rewrite = RewriteTstr,
    .why_refused = WhyRefusedWithoutEntries,
});

}  // namespace zunrtcp
