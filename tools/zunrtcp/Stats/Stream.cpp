#include "tools/zunrtcp/Stats/Stream.h"

#include "tools/zunrtcp/Text.h"

namespace zunrtcp {

void Stream::AddEvent(EventKind kind, std::uint32_t from, double seconds) {
  ++event_counts[static_cast<std::size_t>(kind)];
  if (events.size() < kMostEvents) events.push_back({seconds, kind, from});
}

std::string Stream::Name() const { return ssrc ? SourceName(*ssrc) : "transport-wide"; }

std::string_view Stream::UnitOf(const MetricRow& row) const {
  if (row.metric != Metric::Jitter) return row.unit;
  return clock.Rate() ? "ms" : "ticks";
}

std::optional<Trend> Stream::RateTrend() const {
  const Series& estimated = (*this)[Metric::EstimatedRate];
  return TrendOf((estimated.empty() ? (*this)[Metric::ArrivalRate] : estimated).points());
}

}  // namespace zunrtcp
