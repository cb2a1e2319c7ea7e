#include "tools/zunrtcp/Kinds/TransportFeedback/Rows.h"

namespace zunrtcp {

namespace {

void DescribeAbafb(const ZunRtcpRtpfbAbafb& abafb, Description* description) {
  description->AddNumber("timestamp", "timestamp", ZunRtcpRtpfbAbafbGetTimestamp(&abafb));
  description->AddNumber("delay", "delay", ZunRtcpRtpfbAbafbGetDelay(&abafb), "us");
  description->AddNumber("dataRate", "data rate", ZunRtcpRtpfbAbafbGetDataRate(&abafb));
  description->AddNumber("lossRate", "loss rate", ZunRtcpRtpfbAbafbGetLossRate(&abafb));
  description->AddNumber("abaDataRate", "ABA data rate", ZunRtcpRtpfbAbafbGetAbaDataRate(&abafb));
}

}  // namespace

constinit const KindRow rtpfb_abafb_row = RowOf<Listed<rtpfb_level, ZUN_RTCPRTPFB_TYPE_ABAFB>, DescribeAbafb>({
    .name = "ABAFB",
});

}  // namespace zunrtcp
