#include "tools/zunrtcp/Stats/TextTable.h"

#include <algorithm>

namespace zunrtcp {

void TextTable::Print(std::ostream* out) const {
  std::vector<std::size_t> widths(rows_.front().size());
  for (const auto& row : rows_) {
    for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], row[i].size());
  }
  for (const auto& row : rows_) {
    std::string line = "  " + row.front() + std::string(widths.front() - row.front().size(), ' ');
    for (std::size_t i = 1; i < row.size(); ++i) line += std::string(2 + widths[i] - row[i].size(), ' ') + row[i];
    *out << line << '\n';
  }
}

}  // namespace zunrtcp
