#include "tools/zunrtcp/Kinds/ApplicationFeedback/Rows.h"
#include "tools/zunrtcp/Kinds/Kinds.h"

namespace zunrtcp {

namespace {

// All that these messages share are the fields of payload-specific feedback.
void DescribeAfb(const ZunRtcpPsfbAfb&, Description*) {}

constexpr const KindRow* kRows[] = {&afb_abafb_row, &albr_row, &show_row, &show_ack_row, &lir_row, &remb_row};

}  // namespace

constinit const KindRow afb_row = RowOf<Listed<psfb_level, ZUN_RTCPPSFB_TYPE_AFB>, DescribeAfb>({
    .name = "AFB",
});

constinit const KindTable afb_kinds = {&afb_level, kRows, {}};

}  // namespace zunrtcp
