// What became of the packets of each kind.
#ifndef TOOLS_ZUNRTCP_WRITEBACK_TALLY_H
#define TOOLS_ZUNRTCP_WRITEBACK_TALLY_H

#include <array>
#include <cstddef>
#include <map>
#include <string>
#include <utility>

#include "tools/zunrtcp/WriteBack/Verdict.h"

namespace zunrtcp {

class Tally {
 public:
  static constexpr std::array<Outcome, 5> kOutcomes{Outcome::Identical, Outcome::Explained, Outcome::RefusedByRule,
                                                    Outcome::Unexplained, Outcome::RefusedUnexplained};
  using Kind = std::pair<unsigned, std::string>;  // in the order of the packet types
  using Counts = std::map<Outcome, std::size_t>;

  void Add(const Kind& kind, const Verdict& verdict);

  const std::map<Kind, Counts>& kinds() const { return kinds_; }
  const std::map<Rule, std::size_t>& rules() const { return rules_; }
  std::size_t Count(Outcome outcome) const;

 private:
  std::map<Kind, Counts> kinds_;
  std::map<Rule, std::size_t> rules_;  // packets that each explains
};

}  // namespace zunrtcp

#endif
