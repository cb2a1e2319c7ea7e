#include "tools/zunrtcp/Kinds/Reports/ReportBlocks.h"
#include "tools/zunrtcp/Kinds/Reports/Rows.h"

namespace zunrtcp {

using namespace zun::rtcp;

namespace {

void DescribeRr(View<Rr> rr, Description* description) {
  description->AddSource("sender", "sender", rr.sender_source());
  DescribeReportBlocks(rr.report_blocks(), rr.profile_specific_ext(), description);
}

}  // namespace

constinit const KindRow rr_row = RowOf<Listed<subpacket_level, ZUN_RTCPSUBPACKET_TYPE_RR>, DescribeRr>({
    .name = "RR",
    .counted = "report block",
});

}  // namespace zunrtcp
