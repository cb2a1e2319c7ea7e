#include "tools/zunrtcp/Kinds/TransportFeedback/Rows.h"

namespace zunrtcp {

using namespace zun::rtcp;

namespace {

void DescribeAbafb(View<Abafb> abafb, Description* description) {
  description->AddNumber("timestamp", "timestamp", abafb.timestamp());
  description->AddNumber("delay", "delay", abafb.delay(), "us");
  description->AddNumber("dataRate", "data rate", abafb.data_rate());
  description->AddNumber("lossRate", "loss rate", abafb.loss_rate());
  description->AddNumber("abaDataRate", "ABA data rate", abafb.aba_data_rate());
}

}  // namespace

constinit const KindRow rtpfb_abafb_row = RowOf<Listed<rtpfb_level, ZUN_RTCPRTPFB_TYPE_ABAFB>, DescribeAbafb>({
    .name = "ABAFB",
});

}  // namespace zunrtcp
