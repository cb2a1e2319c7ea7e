#include "tools/zunrtcp/StatsCommand.h"

#include <fstream>
#include <memory>
#include <optional>

#include "tools/zunrtcp/InputError.h"
#include "tools/zunrtcp/Stats/StatsCollector.h"
#include "tools/zunrtcp/Stats/StatsOutput.h"

namespace zunrtcp {

namespace {

void WritePage(const StatsCollector& stats, const std::string& capture, const std::string& path) {
  std::ofstream file(path, std::ios::binary);
  PrintStatsPage(stats, capture, &file);
  file.close();
  if (!file) throw InputError(path + ": cannot be written");
}

void Print(const StatsCollector& stats, const StatsOptions& options, const std::string& capture, std::ostream* out) {
  if (options.json) {
    *out << JsonText(StatsValue(stats, capture)) << '\n';
  } else if (options.csv) {
    PrintStatsCsv(stats, out);
  } else {
    PrintStatsText(stats, capture, out);
  }
  if (!options.html.empty()) WritePage(stats, capture, options.html);
}

}  // namespace

void RunStats(const StatsOptions& options, std::ostream* out) {
  const std::unique_ptr<DatagramSource> source = OpenSource(options.input);
  StatsCollector stats(options.dialect);
  std::string complaint;
  try {
    while (const std::optional<RtcpDatagram> datagram = source->Next()) stats.Add(*datagram);
  } catch (const InputError& damage) {
    complaint = damage.what();
  }
  stats.Finish();
  if (stats.datagrams() > 0) Print(stats, options, source->path(), out);
  if (stats.datagrams() == 0 && complaint.empty()) complaint = source->NothingFound();
  if (!complaint.empty()) throw InputError(complaint);
}

}  // namespace zunrtcp
