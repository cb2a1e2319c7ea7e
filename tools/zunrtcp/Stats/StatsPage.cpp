#include "tools/zunrtcp/Stats/Page/Page.h"
#include "tools/zunrtcp/Stats/StatsOutput.h"

namespace zunrtcp {

namespace {

// Where the page takes its data.
constexpr std::string_view kDataMark = "@DATA@";

// JSON within a script element: whatever a peer calls itself, it ends neither the element nor begins a comment.
std::string WithinScript(const std::string& json) {
  std::string escaped;
  for (const char c : json) {
    if (c == '<') {
      escaped += "\\u003c";
    } else {
      escaped += c;
    }
  }
  return escaped;
}

}  // namespace

void PrintStatsPage(const StatsCollector& stats, const std::string& capture, std::ostream* out) {
  const std::string_view page = Page();
  const std::size_t mark = page.find(kDataMark);
  *out << page.substr(0, mark) << WithinScript(JsonText(StatsValue(stats, capture)))
       << page.substr(mark + kDataMark.size());
}

}  // namespace zunrtcp
