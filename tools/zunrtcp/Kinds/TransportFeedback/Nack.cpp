#include "tools/zunrtcp/Kinds/FeedbackLayout.h"
#include "tools/zunrtcp/Kinds/TransportFeedback/Rows.h"

namespace zunrtcp {

namespace {

void DescribeNack(const ZunRtcpRtpfbNack& nack, Description* description) {
  std::vector<ZunUint16> lost;
  ZunRtcpRtpfbNackGenerateSeqNumbers(
      &nack,
      [](const ZunRtcpRtpfbNack*, ZunUint16 number, ZunVoidPtr numbers) {
        static_cast<std::vector<ZunUint16>*>(numbers)->push_back(number);
      },
      &lost);
  std::string words = "lost";
  for (const ZunUint16 number : lost) words += " " + std::to_string(number);
  description->Add("lost", lost, words);
}

}  // namespace

constinit const KindRow nack_row = RowOf<Listed<rtpfb_level, ZUN_RTCPRTPFB_TYPE_NACK>, DescribeNack>({
    .name = "NACK",
    .why_refused = WhyRefusedWithoutEntries,
});

}  // namespace zunrtcp
