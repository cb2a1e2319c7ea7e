#include "tools/zunrtcp/Kinds/ApplicationFeedback/FixedSize.h"
#include "tools/zunrtcp/Kinds/ApplicationFeedback/Rows.h"
#include "tools/zunrtcp/Text.h"

namespace zunrtcp {

using namespace zun::rtcp;

namespace {

void DescribeAbafb(View<AfbAbafb> abafb, Description* description) {
  const int difference = abafb.average_delay_difference();
  description->AddNumber("timestamp", "timestamp", abafb.timestamp());
  description->AddNumber("delay", "delay", abafb.delay(), "us");
  description->AddNumber("dataRate", "data rate", abafb.data_rate());
  description->AddNumber("lossRate", "loss rate", abafb.loss_rate());
  description->AddNumber("abaDataRate", "ABA data rate", abafb.aba_data_rate());
  description->Add("averageDelayDifference", difference, Printed("average delay difference %d", difference));
  description->AddNumber("averageArrivalDifference", "average arrival difference", abafb.average_arrival_difference());
}

}  // namespace

constinit const KindRow afb_abafb_row = RowOf<Listed<afb_level, ZUN_RTCPPSFBAFB_TYPE_ABAFB>, DescribeAbafb>({
    .name = "AFB ABAFB",
    .rewrite = RewriteFixedSize<28>,
});

}  // namespace zunrtcp
