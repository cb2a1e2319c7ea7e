#include <cmath>

#include "tools/zunrtcp/Stats/StatsOutput.h"
#include "tools/zunrtcp/Text.h"

namespace zunrtcp {

namespace {

using Json = nlohmann::ordered_json;

// To the microsecond and to the millionth: what lies below is noise of the reckoning.
double Rounded(double value) { return std::round(value * 1e6) / 1e6; }

Json EndpointValue(const Endpoint& endpoint) { return {{"address", endpoint.address}, {"port", endpoint.port}}; }

Json SeriesValue(const Stream& stream, const MetricRow& row) {
  const Series& series = stream[row.metric];
  const Summary& summary = series.summary();
  Json points = Json::array();
  for (const Series::Point& point : series.points()) points.push_back({Rounded(point.seconds), Rounded(point.value)});
  return {{"name", row.name},
          {"chart", row.chart},
          {"unit", stream.UnitOf(row)},
          {"count", summary.count},
          {"mean", Rounded(summary.mean())},
          {"min", Rounded(summary.min)},
          {"max", Rounded(summary.max)},
          {"last", Rounded(summary.last)},
          {"thinned", series.thinned()},
          {"points", std::move(points)}};
}

Json TrendValue(const Stream& stream) {
  const auto trend = stream.RateTrend();
  if (!trend) return nullptr;
  const bool sized = !stream[Metric::EstimatedRate].empty();
  return {{"word", TrendWord(*trend)},
          {"perSecond", Rounded(trend->per_second)},
          {"unit", sized ? "kbit/s per second" : "packets/s per second"},
          {"change", Rounded(trend->change)}};
}

Json EventsValue(const Stream& stream) {
  Json events = Json::array();
  for (const Event& event : stream.events) {
    events.push_back({{"time", Rounded(event.seconds)},
                      {"kind", kEventNames.at(static_cast<std::size_t>(event.kind))},
                      {"sender", event.sender}});
  }
  return events;
}

Json StreamValue(const Stream& stream) {
  const auto rate = stream.clock.Rate();
  Json value{{"ssrc", stream.ssrc ? Json(*stream.ssrc) : Json(nullptr)},
             {"name", stream.Name()},
             {"from", EndpointValue(stream.path.from)},
             {"to", EndpointValue(stream.path.to)},
             {"cname", stream.cname},
             {"clockRate", rate ? Json(*rate) : Json(nullptr)}};
  const SenderTotals& sender = stream.sender;
  value["sender"] = {{"reports", sender.reports}, {"packets", sender.packets}, {"octets", sender.octets}};
  const ReporterTotals& reporter = stream.reporter;
  value["reports"] = {
      {"blocks", reporter.blocks}, {"lost", reporter.lost}, {"highestSequence", reporter.highest_sequence}};
  const NackTotals& nack = stream.nack;
  value["nack"] = {{"messages", nack.messages}, {"numbers", nack.numbers}, {"repeated", nack.repeated}};
  const ArrivalFeedback& feedback = stream.feedback;
  value["feedback"] = {{"messages", feedback.messages()},
                       {"received", feedback.received()},
                       {"lost", feedback.lost()},
                       {"late", feedback.late()}};
  value["trend"] = TrendValue(stream);
  for (std::size_t i = 0; i < kEventNames.size(); ++i) value["events"][kEventNames.at(i)] = stream.event_counts.at(i);
  value["eventTimes"] = EventsValue(stream);
  value["series"] = Json::object();
  for (const MetricRow& row : kMetrics) {
    if (!stream[row.metric].empty()) value["series"][row.key] = SeriesValue(stream, row);
  }
  return value;
}

}  // namespace

Json StatsValue(const StatsCollector& stats, const std::string& capture) {
  Json value{{"capture", capture},
             {"begin", UtcTime(stats.begin_seconds(), stats.begin_microseconds())},
             {"duration", Rounded(stats.duration())},
             {"datagrams", stats.datagrams()},
             {"refused", stats.refused()},
             {"srtcp", stats.protected_count()},
             {"incomplete", stats.incomplete()},
             {"streams", Json::array()}};
  for (const auto& stream : stats.streams()) value["streams"].push_back(StreamValue(*stream));
  return value;
}

std::string JsonText(const Json& value) { return value.dump(-1, ' ', false, Json::error_handler_t::replace); }

}  // namespace zunrtcp
