#include <cmath>

#include "tools/zunrtcp/Stats/StatsOutput.h"
#include "tools/zunrtcp/Stats/TextTable.h"
#include "tools/zunrtcp/Text.h"

namespace zunrtcp {

namespace {

// With as many digits as say something: "0.35", "12.4", "1234".
std::string Number(double value) {
  const double size = std::abs(value);
  return Printed("%.*f",
                 size < 10     ? 2
                 : size < 1000 ? 1
                               : 0,
                 value);  // NOLINT(readability-avoid-nested-conditional-operator)
}

// "mean/max"; "-" where there is nothing.
std::string MeanAndMax(const Series& series) {
  if (series.empty()) return "-";
  return Number(series.summary().mean()) + "/" + Number(series.summary().max);
}

std::string LastOf(const Series& series) { return series.empty() ? "-" : Number(series.summary().last); }

std::string CountOf(std::size_t count) { return count == 0 ? "-" : std::to_string(count); }

std::string MeanOf(const Series& series) { return series.empty() ? "-" : Number(series.summary().mean()); }

std::string JitterOf(const Stream& stream) {
  const Series& series = stream[Metric::Jitter];
  if (series.empty()) return "-";
  return MeanAndMax(series) + (stream.clock.Rate() ? " ms" : " ticks");
}

std::string ClockOf(const Stream& stream) {
  const auto rate = stream.clock.Rate();
  return rate ? std::to_string(*rate) : "-";
}

std::string RateOf(const Stream& stream) {
  const Series& estimated = stream[Metric::EstimatedRate];
  if (!estimated.empty()) return MeanOf(estimated) + " kbit/s";
  const Series& packets = stream[Metric::ArrivalRate];
  return packets.empty() ? "-" : MeanOf(packets) + " packets/s";
}

// "falling -12.3/s", in the unit of the rate.
std::string TrendOf(const Stream& stream) {
  const auto trend = stream.RateTrend();
  return trend ? TrendWord(*trend) + Printed(" %+.1f/s", trend->per_second) : "-";
}

bool HasFeedback(const Stream& stream) {
  return stream.nack.messages + stream.feedback.messages() + stream.events.size() > 0 ||
         !stream[Metric::Remb].empty() || !stream[Metric::Limit].empty();
}

void AddReports(const Stream& stream, TextTable* table) {
  if (!stream.ssrc) return;
  table->Add({stream.Name(), CountOf(stream.sender.reports), ClockOf(stream), MeanOf(stream[Metric::SentRate]),
              CountOf(stream.reporter.blocks), stream.reporter.blocks > 0 ? std::to_string(stream.reporter.lost) : "-",
              MeanAndMax(stream[Metric::Loss]), JitterOf(stream), MeanAndMax(stream[Metric::RoundTrip]),
              MeanAndMax(stream[Metric::RoundTripXr])});
}

void AddFeedback(const Stream& stream, TextTable* table) {
  if (!HasFeedback(stream)) return;
  const ArrivalFeedback& feedback = stream.feedback;
  const bool told = feedback.messages() > 0;
  table->Add({stream.Name(), CountOf(stream.nack.messages), CountOf(stream.nack.numbers), CountOf(stream.nack.repeated),
              CountOf(stream.Count(EventKind::Pli)), CountOf(stream.Count(EventKind::Fir)),
              CountOf(stream.Count(EventKind::Bye)), LastOf(stream[Metric::Remb]), LastOf(stream[Metric::Limit]),
              CountOf(feedback.messages()), told ? std::to_string(feedback.received()) : "-",
              told ? std::to_string(feedback.lost()) : "-", MeanAndMax(stream[Metric::ArrivalSpread]), RateOf(stream),
              TrendOf(stream)});
}

// The streams of one path, which come together in the order of the paths' first packets.
void PrintPath(const StatsCollector& stats, const Path& path, std::ostream* out) {
  TextTable reports(
      {"SSRC", "SR", "Hz", "sent kbit/s", "blocks", "lost", "loss %", "jitter", "round trip ms", "by XR"});
  TextTable feedback({"SSRC", "NACK", "numbers", "again", "PLI", "FIR", "BYE", "REMB", "TMMBR", "feedback", "received",
                      "lost", "spread ms", "rate", "trend"});
  std::string names;
  for (const auto& stream : stats.streams()) {
    if (stream->path != path) continue;
    AddReports(*stream, &reports);
    AddFeedback(*stream, &feedback);
    if (!stream->cname.empty()) names += "  " + stream->Name() + " is " + Quoted(stream->cname) + "\n";
  }
  *out << '\n' << path.Name() << '\n' << names;
  if (!reports.empty()) reports.Print(out);
  if (!feedback.empty()) feedback.Print(out);
}

}  // namespace

void PrintStatsText(const StatsCollector& stats, const std::string& capture, std::ostream* out) {
  *out << capture << ": " << Counted(stats.datagrams(), "datagram") << " in " << Printed("%.3f s", stats.duration())
       << " from " << UtcTime(stats.begin_seconds(), stats.begin_microseconds()) << " UTC\n";
  if (stats.refused() > 0) *out << Counted(stats.refused(), "datagram") << " refused in whole or in part\n";
  if (stats.protected_count() > 0) *out << Counted(stats.protected_count(), "datagram") << " of SRTCP\n";
  if (stats.incomplete()) *out << "more streams than are told of\n";
  *out << "where two numbers stand, the mean and the greatest; REMB and TMMBR are the last, in kbit/s\n";
  std::vector<Path> paths;
  for (const auto& stream : stats.streams()) {
    if (std::ranges::find(paths, stream->path) == paths.end()) paths.push_back(stream->path);
  }
  for (const Path& path : paths) PrintPath(stats, path, out);
}

}  // namespace zunrtcp
