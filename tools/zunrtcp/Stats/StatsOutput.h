// What was gathered, for people, programs, spreadsheets and browsers.
#ifndef TOOLS_ZUNRTCP_STATS_STATSOUTPUT_H
#define TOOLS_ZUNRTCP_STATS_STATSOUTPUT_H

#include <nlohmann/json.hpp>
#include <ostream>
#include <string>

#include "tools/zunrtcp/Stats/StatsCollector.h"

namespace zunrtcp {

// Tables: what the reports say of each stream, then what feedback asks and tells.
void PrintStatsText(const StatsCollector& stats, const std::string& capture, std::ostream* out);

// One object: what holds for the capture, and the streams with all their time lines.
nlohmann::ordered_json StatsValue(const StatsCollector& stats, const std::string& capture);
// As text, where bytes of a peer's that are no UTF-8 become U+FFFD.
std::string JsonText(const nlohmann::ordered_json& value);

// A line for each value of each time line, and for each event.
void PrintStatsCsv(const StatsCollector& stats, std::ostream* out);

// One page that needs nothing else.
void PrintStatsPage(const StatsCollector& stats, const std::string& capture, std::ostream* out);

}  // namespace zunrtcp

#endif
