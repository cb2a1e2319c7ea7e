#include "tools/zunrtcp/WriteBack/Tally.h"

namespace zunrtcp {

void Tally::Add(const Kind& kind, const Verdict& verdict) {
  ++kinds_[kind][verdict.outcome];
  for (const Rule rule : verdict.rules) ++rules_[rule];
}

std::size_t Tally::Count(Outcome outcome) const {
  std::size_t count = 0;
  for (const auto& [kind, counts] : kinds_) {
    const auto found = counts.find(outcome);
    if (found != counts.end()) count += found->second;
  }
  return count;
}

}  // namespace zunrtcp
