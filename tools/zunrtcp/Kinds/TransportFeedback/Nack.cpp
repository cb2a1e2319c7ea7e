#include "tools/zunrtcp/Kinds/FeedbackLayout.h"
#include "tools/zunrtcp/Kinds/TransportFeedback/Rows.h"

namespace zunrtcp {

using namespace zun::rtcp;

namespace {

void DescribeNack(View<Nack> nack, Description* description) {
  Description::Value numbers = Description::Value::array();
  std::string words = "lost";
  for (const std::uint16_t number : nack.lost()) {
    numbers.push_back(number);
    words += " " + std::to_string(number);
  }
  description->Add("lost", std::move(numbers), std::move(words));
}

}  // namespace

constinit const KindRow nack_row = RowOf<Listed<rtpfb_level, ZUN_RTCPRTPFB_TYPE_NACK>, DescribeNack>({
    .name = "NACK",
    .why_refused = WhyRefusedWithoutEntries,
});

}  // namespace zunrtcp
