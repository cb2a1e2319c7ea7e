// A table of text: columns as wide as their widest cell.
#ifndef TOOLS_ZUNRTCP_STATS_TEXTTABLE_H
#define TOOLS_ZUNRTCP_STATS_TEXTTABLE_H

#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace zunrtcp {

class TextTable {
 public:
  explicit TextTable(std::vector<std::string> heads) : rows_{std::move(heads)} {}

  // As many cells as there are heads.
  void Add(std::vector<std::string> cells) { rows_.push_back(std::move(cells)); }
  bool empty() const { return rows_.size() == 1; }

  // The first column is aligned to the left, the others to the right.
  void Print(std::ostream* out) const;

 private:
  std::vector<std::vector<std::string>> rows_;
};

}  // namespace zunrtcp

#endif
