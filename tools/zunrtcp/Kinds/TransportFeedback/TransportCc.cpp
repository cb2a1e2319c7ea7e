#include "tools/zunrtcp/Kinds/TransportFeedback/Rows.h"
#include "tools/zunrtcp/Kinds/TransportFeedback/TransportCcRewrite.h"
#include "tools/zunrtcp/Text.h"

namespace zunrtcp {

using namespace zun::rtcp;

namespace {

constexpr std::size_t kMostPacketsShown = 12;  // unless verbose
constexpr double kMillisecondsPerDelta = 0.25;

// A packet in words: "x" when it did not arrive, "?" when nobody knows when, else the milliseconds from the reference
// time, which the deltas up to its own add up to.
std::string ArrivalWords(const TransportCcPacketInfo& info, int sum) {
  if (!info.received) return "x";
  if (!info.haveDelta) return "?";
  return Printed("%.2f", sum * kMillisecondsPerDelta);
}

Description::Value ValueOf(const TransportCcPacketInfo& info, std::uint16_t sequence) {
  return {{"sequence", sequence},
          {"received", info.received != 0},
          {"delta", info.haveDelta ? Description::Value(info.delta) : Description::Value(nullptr)}};
}

// As many as are to be shown, with the number of those left out.
std::string ArrivalsWords(std::vector<std::string> arrivals, bool verbose) {
  const std::size_t all = arrivals.size();
  if (!verbose && all > kMostPacketsShown) arrivals.resize(kMostPacketsShown);
  std::string words = "arrivals in ms: " + Joined(arrivals, " ");
  if (all > arrivals.size()) words += Printed(" ... (%zu more)", all - arrivals.size());
  return words;
}

void DescribeTransportCc(View<TransportCc> feedback, Description* description) {
  const auto packets = feedback.packet_info();
  std::size_t received = 0;
  int sum = 0;
  std::vector<std::string> arrivals;
  Description::Value values = Description::Value::array();
  std::uint16_t sequence = feedback.base_seq();
  for (const TransportCcPacketInfo& info : packets) {
    if (info.received) ++received;
    if (info.haveDelta) sum += info.delta;
    arrivals.push_back(ArrivalWords(info, sum));
    values.push_back(ValueOf(info, sequence++));
  }
  description->AddNumber("baseSequence", "from sequence", feedback.base_seq());
  description->Add("statusCount", packets.size(),
                   Printed("%s, %zu arrived", Counted(packets.size(), "packet").c_str(), received));
  description->Add("referenceTime", feedback.ref_time(),
                   Printed("reference time %d x 64 ms", static_cast<int>(feedback.ref_time())));
  description->AddNumber("feedbackCount", "feedback number", feedback.packet_count());
  description->Add("packets", std::move(values), ArrivalsWords(std::move(arrivals), description->verbose()));
}

}  // namespace

constinit const KindRow transport_cc_row =
    RowOf<Listed<rtpfb_level, ZUN_RTCPRTPFB_TYPE_TransportCC>, DescribeTransportCc>({
        .name = "TWCC",
        .rewrite = RewriteTransportCc,
    });

}  // namespace zunrtcp
