// What is told of a stream over time: one row for each, which every output goes by.
#ifndef TOOLS_ZUNRTCP_STATS_METRIC_H
#define TOOLS_ZUNRTCP_STATS_METRIC_H

#include <array>
#include <cstddef>
#include <string_view>

namespace zunrtcp {

enum class Metric {
  FractionLost,
  Loss,
  Jitter,
  RoundTrip,
  RoundTripXr,
  RoundTripVoip,
  Nacked,
  Repeated,
  SentRate,
  Remb,
  Limit,
  FeedbackReceived,
  FeedbackLost,
  ArrivalSpread,
  ArrivalRate,
  EstimatedRate,
};

struct MetricRow {
  Metric metric;
  std::string_view key;   // in JSON and CSV
  std::string_view name;  // for people
  std::string_view unit;
  std::string_view chart;  // of the page; those of one chart share an axis
};

inline constexpr std::array kMetrics{
    MetricRow{Metric::FractionLost, "fractionLost", "loss, as the report says", "%", "Loss"},
    MetricRow{Metric::Loss, "loss", "loss between reports", "%", "Loss"},
    MetricRow{Metric::Jitter, "jitter", "jitter", "", "Jitter"},  // its unit is that of the stream
    MetricRow{Metric::RoundTrip, "roundTrip", "round trip (LSR, DLSR)", "ms", "Round trip"},
    MetricRow{Metric::RoundTripXr, "roundTripXr", "round trip (XR DLRR)", "ms", "Round trip"},
    MetricRow{Metric::RoundTripVoip, "roundTripVoip", "round trip (XR VoIP metrics)", "ms", "Round trip"},
    MetricRow{Metric::Nacked, "nacked", "numbers asked for", "packets", "NACK"},
    MetricRow{Metric::Repeated, "repeated", "of these again", "packets", "NACK"},
    MetricRow{Metric::SentRate, "sentRate", "sent", "kbit/s", "Bit rate"},
    MetricRow{Metric::Remb, "remb", "REMB", "kbit/s", "Bit rate"},
    MetricRow{Metric::Limit, "limit", "TMMBR", "kbit/s", "Bit rate"},
    MetricRow{Metric::FeedbackReceived, "feedbackReceived", "received", "packets", "Packets in feedback"},
    MetricRow{Metric::FeedbackLost, "feedbackLost", "lost", "packets", "Packets in feedback"},
    MetricRow{Metric::ArrivalSpread, "arrivalSpread", "arrival spread", "ms", "Arrival spread"},
    MetricRow{Metric::ArrivalRate, "arrivalRate", "packets arriving", "packets/s", "Arrival rate"},
    MetricRow{Metric::EstimatedRate, "estimatedRate", "arriving, estimated", "kbit/s", "Bit rate"},
};

}  // namespace zunrtcp

#endif
