#include "tools/zunrtcp/Kinds/PayloadFeedback/CodecControl.h"
#include "tools/zunrtcp/Kinds/PayloadFeedback/Rows.h"

namespace zunrtcp {

namespace {

void RewriteTsta(Rewrite* rewrite) { RewriteCodecControlEntries(rewrite, kTradeOffIndexMask); }

}  // namespace

constinit const KindRow tsta_row = RowOf<Listed<psfb_level, ZUN_RTCPPSFB_TYPE_TSTA>, DescribeTradeOffs>({
    .name = "TSTA",
    .rewrite = RewriteTsta,
    .why_refused = WhyRefusedWithoutEntries,
});

}  // namespace zunrtcp
