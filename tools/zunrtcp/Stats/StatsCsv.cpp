#include "tools/zunrtcp/Stats/StatsOutput.h"
#include "tools/zunrtcp/Text.h"

namespace zunrtcp {

namespace {

// No field holds a comma or a quote: endpoints and SSRCs are numbers, the rest are words of the tool's own.
std::string BeginOf(const Stream& stream, double seconds) {
  return Printed("%.6f,%s,%s,%s,", seconds, stream.path.from.Name().c_str(), stream.path.to.Name().c_str(),
                 stream.Name().c_str());
}

}  // namespace

void PrintStatsCsv(const StatsCollector& stats, std::ostream* out) {
  *out << "seconds,from,to,ssrc,what,value,unit\n";
  for (const auto& stream : stats.streams()) {
    for (const MetricRow& row : kMetrics) {
      for (const Series::Point& point : (*stream)[row.metric].points()) {
        *out << BeginOf(*stream, point.seconds) << row.key << Printed(",%.6g,", point.value) << stream->UnitOf(row)
             << '\n';
      }
    }
    for (const Event& event : stream->events) {
      *out << BeginOf(*stream, event.seconds) << kEventNames.at(static_cast<std::size_t>(event.kind)) << ",1,event\n";
    }
  }
}

}  // namespace zunrtcp
