#include "tools/zunrtcp/Kinds/ApplicationFeedback/FixedSize.h"
#include "tools/zunrtcp/Kinds/ApplicationFeedback/Rows.h"
#include "tools/zunrtcp/Text.h"

namespace zunrtcp {

namespace {

void DescribeAbafb(const ZunRtcpPsfbAfbAbafb& abafb, Description* description) {
  const int difference = ZunRtcpPsfbAfbAbafbGetAverageDelayDifference(&abafb);
  description->AddNumber("timestamp", "timestamp", ZunRtcpPsfbAfbAbafbGetTimestamp(&abafb));
  description->AddNumber("delay", "delay", ZunRtcpPsfbAfbAbafbGetDelay(&abafb), "us");
  description->AddNumber("dataRate", "data rate", ZunRtcpPsfbAfbAbafbGetDataRate(&abafb));
  description->AddNumber("lossRate", "loss rate", ZunRtcpPsfbAfbAbafbGetLossRate(&abafb));
  description->AddNumber("abaDataRate", "ABA data rate", ZunRtcpPsfbAfbAbafbGetAbaDataRate(&abafb));
  description->Add("averageDelayDifference", difference, Printed("average delay difference %d", difference));
  description->AddNumber("averageArrivalDifference", "average arrival difference",
                         ZunRtcpPsfbAfbAbafbGetAverageArrivalDifference(&abafb));
}

}  // namespace

constinit const KindRow afb_abafb_row = RowOf<Listed<afb_level, ZUN_RTCPPSFBAFB_TYPE_ABAFB>, DescribeAbafb>({
    .name = "AFB ABAFB",
    .rewrite = RewriteFixedSize<28>,
});

}  // namespace zunrtcp
