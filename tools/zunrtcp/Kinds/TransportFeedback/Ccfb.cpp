#include <array>

#include "tools/zunrtcp/Kinds/FeedbackLayout.h"
#include "tools/zunrtcp/Kinds/TransportFeedback/Rows.h"
#include "tools/zunrtcp/Text.h"

namespace zunrtcp {

using namespace zun::rtcp;

namespace {

constexpr double kOffsetsPerMillisecond = 1.024;
constexpr unsigned kOffsetOverRange = 0x1FFE;  // RFC 8888, section 3.1: too long ago, or (1FFF) not known
constexpr double kTimestampPerSecond = 65536;

// What the codepoints of RFC 3168 mean, by the two bits of the wire. In the house's dialect a parsed metric
// holds four times these.
constexpr std::array<const char*, 4> kEcnNames{"Not-ECT", "ECT(1)", "ECT(0)", "CE"};
constexpr unsigned kEcnFactor = 4;

// The bits of a metric on the wire.
constexpr unsigned kReceivedBit = 0x8000;
constexpr unsigned kOffsetMask = 0x1FFF;
constexpr unsigned kEcnMask = 0x6000;
constexpr std::size_t kMetricSize = 2;

// The parts of a body, and how a registered one begins: version 2, FMT 11.
constexpr std::size_t kTimestampSize = 4;
constexpr std::size_t kStreamHeaderSize = 8;
constexpr unsigned kRegisteredFirstByte = 0x8B;

std::size_t Codepoint(const CcfbPacketMetric& metric, Dialect dialect) {
  return (dialect == Dialect::registered ? metric.ecn : metric.ecn / kEcnFactor) % kEcnNames.size();
}

// A metric in words: "x" when the packet did not arrive, "?" when nobody knows when, else the milliseconds from its
// arrival to the report.
std::string OffsetWords(const CcfbPacketMetric& metric) {
  if (!metric.received) return "x";
  if (metric.arrivalTimeOffset >= kOffsetOverRange) return "?";
  return Printed("%.1f", metric.arrivalTimeOffset / kOffsetsPerMillisecond);
}

Description::Value ValueOf(const CcfbPacketMetric& metric) {
  return {{"received", metric.received != 0}, {"ecn", metric.ecn}, {"offset", metric.arrivalTimeOffset}};
}

// "5 packets, 1 lost (20.0 %)".
std::string LossWords(std::size_t packets, std::size_t lost) {
  const double percent = packets == 0 ? 0.0 : 100.0 * static_cast<double>(lost) / static_cast<double>(packets);
  return Printed("%s, %zu lost (%.1f %%)", Counted(packets, "packet").c_str(), lost, percent);
}

// "ECN ECT(1) x1 CE x3"; empty when there are no marks.
std::string EcnWords(const std::array<std::size_t, kEcnNames.size()>& counts) {
  std::string words;
  for (std::size_t i = 0; i < counts.size(); ++i) {
    if (counts[i] > 0) words += Printed(" %s x%zu", kEcnNames[i], counts[i]);
  }
  return words.empty() ? words : "ECN" + words;
}

void DescribeStream(View<CcfbStream> stream, Description* description) {
  const auto metrics = stream.packet_metrics();
  std::size_t lost = 0;
  std::array<std::size_t, kEcnNames.size()> ecn{};
  std::vector<std::string> offsets;
  Description::Value values = Description::Value::array();
  for (const CcfbPacketMetric& metric : metrics) {
    if (metric.received) {
      ++ecn[Codepoint(metric, description->dialect())];
    } else {
      ++lost;
    }
    offsets.push_back(OffsetWords(metric));
    values.push_back(ValueOf(metric));
  }
  description->AddSource("source", "stream", stream.ssrc());
  description->AddNumber("beginSequence", "from sequence", stream.begin_seq());
  description->AddWords(LossWords(metrics.size(), lost));
  if (lost < metrics.size()) description->AddWords(EcnWords(ecn));
  description->AddValue("metrics", std::move(values));
  if (description->verbose()) description->AddWords("ms before the report: " + Joined(offsets, " "));
}

void DescribeCcfb(View<Ccfb> ccfb, Description* description) {
  description->Add("timestamp", ccfb.send_timestamp(),
                   Printed("report time %.6f s (16.16)", ccfb.send_timestamp() / kTimestampPerSecond));
  description->AddList("streams");
  for (const auto stream : ccfb.streams()) {
    DescribeStream(stream, &description->AddItem("streams"));
  }
}

// Received, 2 bits of ECN, 13 bits of arrival time offset. In the house's dialect a value of four times the ECN keeps
// only the lowest bit of the ECN when it is shifted to its place, in the bit of "received", which is set anyway.
void RewriteMetric(Rewrite* rewrite, std::size_t at) {
  const unsigned metric = U16At(rewrite->bytes, at);
  if ((metric & kReceivedBit) == 0) {
    rewrite->Put(at, kMetricSize, 0, Rule::CcfbLostMetric);
  } else if (!rewrite->is_registered) {
    rewrite->Put(at, kMetricSize, metric & (kReceivedBit | kOffsetMask), Rule::CcfbEcn);
  }
}

// Streams of an SSRC, a first sequence number, a count and as many metrics, padded to a multiple of 4; then a
// timestamp.
void RewriteCcfb(Rewrite* rewrite) {
  if (rewrite->is_registered) rewrite->Put(0, 1, kRegisteredFirstByte, Rule::CcfbFormat);
  for (std::size_t at = kMediaSourceOffset; at + kTimestampSize < rewrite->bytes.size();) {
    const unsigned metrics = U16At(rewrite->bytes, at + 6);
    at += kStreamHeaderSize;
    for (unsigned i = 0; i < metrics; ++i, at += kMetricSize) RewriteMetric(rewrite, at);
    if (metrics % 2 != 0) {
      rewrite->Put(at, kMetricSize, 0, Rule::CcfbPadding);
      at += kMetricSize;
    }
  }
}

// Whether a packet that arrived has an ECN, in bytes where each metric is.
bool HasEcn(std::string_view bytes) {
  for (std::size_t at = kMediaSourceOffset; at + kTimestampSize < bytes.size();) {
    const unsigned metrics = U16At(bytes, at + 6);
    at += kStreamHeaderSize;
    for (unsigned i = 0; i < metrics; ++i, at += kMetricSize) {
      const unsigned metric = U16At(bytes, at);
      if ((metric & kReceivedBit) != 0 && (metric & kEcnMask) != 0) return true;
    }
    at += metrics % 2 * kMetricSize;
  }
  return false;
}

std::optional<Rule> WhyUnwritten(const SubpacketView& ccfb) {
  const bool is_foreign = ccfb.registered() && ccfb.count() == ZUN_RTCPRTPFB_TYPE_CCFB;
  return is_foreign && HasEcn(ccfb.bytes) ? std::optional(Rule::CcfbForeignEcn) : std::nullopt;
}

}  // namespace

constinit const KindRow ccfb_row = RowOf<Listed<rtpfb_level, ZUN_RTCPRTPFB_TYPE_CCFB>, DescribeCcfb>({
    .name = "CCFB",
    .rewrite = RewriteCcfb,
    .why_unwritten = WhyUnwritten,
});

}  // namespace zunrtcp
