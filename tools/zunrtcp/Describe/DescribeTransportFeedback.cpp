#include <array>

#include "tools/zunrtcp/Describe/Describe.h"
#include "tools/zunrtcp/Text.h"

namespace zunrtcp {

namespace {

// How many packets of a feedback message are told unless verbose.
constexpr std::size_t kMostPacketsShown = 12;
constexpr double kMillisecondsPerDelta = 0.25;
constexpr double kOffsetsPerMillisecond = 1.024;
constexpr unsigned kOffsetOverRange = 0x1ffe;  // RFC 8888, section 3.1: too long ago, or (1fff) not known

void DescribeNack(const ZunRtcpRtpfbNack& nack, Description* description) {
  Description::Value lost = Description::Value::array();
  ZunRtcpRtpfbNackGenerateSeqNumbers(
      &nack,
      [](const ZunRtcpRtpfbNack*, ZunUint16 seqNumber, ZunVoidPtr data) {
        static_cast<Description::Value*>(data)->push_back(seqNumber);
      },
      &lost);
  std::string words = "lost";
  for (const auto& number : lost) words += Printed(" %u", number.get<unsigned>());
  description->Add("lost", std::move(lost), words);
}

void DescribeTmmbr(const ZunRtcpRtpfbTmmbr& tmmbr, Description* description) {
  description->AddList("entries");
  for (const ZunRtcpRtpfbTmmbrEntry& entry : Elements(tmmbr.fci)) {
    Description& described = description->AddItem("entries");
    described.AddSource("source", "of", entry.ssrc);
    described.AddNumber("maxBitrate", "at most", entry.max_bitrate, "bit/s");
  }
}

// One packet of transport-wide feedback in words: "x" when it did not arrive, "?" when nobody knows when, else the
// milliseconds from the reference time.
std::string ArrivalWords(const ZunRtcpRtpfbTransportCcPacketInfo& info, int sum) {
  if (!info.received) return "x";
  if (!info.haveDelta) return "?";
  return Printed("%.2f", sum * kMillisecondsPerDelta);
}

void DescribeTransportCc(const ZunRtcpRtpfbTransportCc& feedback, Description* description) {
  const auto packets = Elements(feedback.packetInfo);
  std::size_t received = 0;
  int sum = 0;
  std::vector<std::string> arrivals;
  Description::Value values = Description::Value::array();
  std::uint16_t sequence = feedback.baseSeq;
  for (const ZunRtcpRtpfbTransportCcPacketInfo& info : packets) {
    if (info.received) ++received;
    if (info.haveDelta) sum += info.delta;
    arrivals.push_back(ArrivalWords(info, sum));
    values.push_back({{"sequence", sequence++},
                      {"received", info.received != 0},
                      {"delta", info.haveDelta ? Description::Value(info.delta) : Description::Value(nullptr)}});
  }
  description->AddNumber("baseSequence", "from sequence", feedback.baseSeq);
  description->Add("statusCount", packets.size(),
                   Printed("%s, %zu arrived", Counted(packets.size(), "packet").c_str(), received));
  description->Add("referenceTime", feedback.refTime,
                   Printed("reference time %d x 64 ms", static_cast<int>(feedback.refTime)));
  description->AddNumber("feedbackCount", "feedback number", feedback.packetCount);
  const std::size_t left = arrivals.size();
  if (!description->verbose() && left > kMostPacketsShown) arrivals.resize(kMostPacketsShown);
  std::string words = "arrivals in ms: " + Joined(arrivals, " ");
  if (left > arrivals.size()) words += Printed(" ... (%zu more)", left - arrivals.size());
  description->Add("packets", std::move(values), words);
}

// What the codepoints of RFC 3168 mean, by the two bits of the wire. A parsed metric holds four times these.
constexpr std::array<const char*, 4> kEcnNames{"Not-ECT", "ECT(1)", "ECT(0)", "CE"};

// A metric of CCFB in words: "x" when the packet did not arrive, "?" when nobody knows when, else the milliseconds
// from its arrival to the report.
std::string OffsetWords(const ZunRtcpRtpfbCcfbPacketMetric& metric) {
  if (!metric.received) return "x";
  if (metric.arrivalTimeOffset >= kOffsetOverRange) return "?";
  return Printed("%.1f", metric.arrivalTimeOffset / kOffsetsPerMillisecond);
}

void DescribeStream(const ZunRtcpRtpfbCcfbStream& stream, Description* description) {
  const auto metrics = Elements(stream.packetMetrics);
  std::size_t received = 0;
  std::array<std::size_t, 4> ecn{};
  std::vector<std::string> arrivals;
  Description::Value values = Description::Value::array();
  for (const ZunRtcpRtpfbCcfbPacketMetric& metric : metrics) {
    if (metric.received) {
      ++received;
      ++ecn[metric.ecn / 4 % 4];
    }
    arrivals.push_back(OffsetWords(metric));
    values.push_back({{"received", metric.received != 0}, {"ecn", metric.ecn}, {"offset", metric.arrivalTimeOffset}});
  }
  const std::size_t lost = metrics.size() - received;
  description->AddSource("source", "stream", stream.ssrc);
  description->AddNumber("beginSequence", "from sequence", stream.beginSeq);
  description->AddWords(
      Printed("%s, %zu lost (%.1f %%)", Counted(metrics.size(), "packet").c_str(), lost,
              metrics.empty() ? 0.0 : 100.0 * static_cast<double>(lost) / static_cast<double>(metrics.size())));
  std::vector<std::string> marks;
  for (std::size_t i = 0; i < ecn.size(); ++i) {
    if (ecn[i] > 0) marks.push_back(Printed("%s x%zu", kEcnNames[i], ecn[i]));
  }
  if (!marks.empty()) description->AddWords("ECN " + Joined(marks, " "));
  description->AddValue("metrics", std::move(values));
  if (description->verbose()) description->AddWords("ms before the report: " + Joined(arrivals, " "));
}

void DescribeCcfb(const ZunRtcpRtpfbCcfb& ccfb, Description* description) {
  description->Add("timestamp", ccfb.sendTimestamp,
                   Printed("report time %.6f s (16.16)", ccfb.sendTimestamp / 65536.0));
  description->AddList("streams");
  for (const ZunRtcpRtpfbCcfbStream& stream : Elements(ccfb.streams)) {
    DescribeStream(stream, &description->AddItem("streams"));
  }
}

void DescribeAbafb(const ZunRtcpRtpfbAbafb& abafb, Description* description) {
  description->AddNumber("timestamp", "timestamp", ZunRtcpRtpfbAbafbGetTimestamp(&abafb));
  description->AddNumber("delay", "delay", ZunRtcpRtpfbAbafbGetDelay(&abafb), "us");
  description->AddNumber("dataRate", "data rate", ZunRtcpRtpfbAbafbGetDataRate(&abafb));
  description->AddNumber("lossRate", "loss rate", ZunRtcpRtpfbAbafbGetLossRate(&abafb));
  description->AddNumber("abaDataRate", "ABA data rate", ZunRtcpRtpfbAbafbGetAbaDataRate(&abafb));
}

}  // namespace

void DescribeTransportFeedback(const ZunRtcpRtpfb& rtpfb, Description* description) {
  const ZunRtcpRtpfbType fmt = ZunRtcpRtpfbGetFeedbackMessageType(&rtpfb);
  description->AddSource("sender", "sender", ZunRtcpRtpfbGetSender(&rtpfb));
  if (fmt != ZUN_RTCPRTPFB_TYPE_CCFB) {
    description->AddSource("source", "source", ZunRtcpRtpfbGetMediaSource(&rtpfb));
  }
  switch (fmt) {
    case ZUN_RTCPRTPFB_TYPE_NACK:
      return DescribeNack(*ZunRtcpRtpfbGetNack(&rtpfb), description);
    case ZUN_RTCPRTPFB_TYPE_TMMBR:
      return DescribeTmmbr(*ZunRtcpRtpfbGetTmmbr(&rtpfb), description);
    case ZUN_RTCPRTPFB_TYPE_TMMBN:
      return description->AddNumber("maxBitrate", "at most", rtpfb.tmmbn.max_bitrate, "bit/s");
    case ZUN_RTCPRTPFB_TYPE_TransportCC:
      return DescribeTransportCc(*ZunRtcpRtpfbGetTransportCc(&rtpfb), description);
    case ZUN_RTCPRTPFB_TYPE_CCFB:
      return DescribeCcfb(*ZunRtcpRtpfbGetCcfb(&rtpfb), description);
    case ZUN_RTCPRTPFB_TYPE_ABAFB:
      return DescribeAbafb(*ZunRtcpRtpfbGetAbafb(&rtpfb), description);
    default:
      return description->AddBytes("data", "data", BytesOf(*ZunRtcpRtpfbUnknownGetData(&rtpfb.unk)));
  }
}

}  // namespace zunrtcp
