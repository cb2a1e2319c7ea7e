// Counts what was decoded.
#ifndef TOOLS_ZUNRTCP_TOTALS_H
#define TOOLS_ZUNRTCP_TOTALS_H

#include <cstddef>
#include <map>
#include <string>

#include "tools/zunrtcp/DecodedDatagram.h"

namespace zunrtcp {

class Totals {
 public:
  void Add(const DecodedDatagram& decoded);
  // Counts one that a filter keeps back.
  void PassOver() { ++filtered_; }

  std::size_t datagrams() const { return datagrams_; }
  std::size_t filtered() const { return filtered_; }
  std::size_t subpackets() const { return subpackets_; }
  // By kind, those of the library's own packet types first.
  const std::map<std::pair<unsigned, std::string>, std::size_t>& kinds() const { return kinds_; }
  // Datagrams with that outcome.
  std::size_t Count(Outcome outcome) const;
  // Datagrams that each rule explains.
  const std::map<Rule, std::size_t>& rules() const { return rules_; }
  // Refusals of the registered dialect, by reason.
  const std::map<std::string, std::size_t>& refusals() const { return refusals_; }

  // True when something was read or written otherwise than any stated rule says.
  bool Unexplained() const { return Count(Outcome::Unexplained) + Count(Outcome::RefusedUnexplained) > 0; }

 private:
  std::size_t datagrams_ = 0;
  std::size_t filtered_ = 0;
  std::size_t subpackets_ = 0;
  std::map<std::pair<unsigned, std::string>, std::size_t> kinds_;
  std::map<Outcome, std::size_t> outcomes_;
  std::map<Rule, std::size_t> rules_;
  std::map<std::string, std::size_t> refusals_;
};

}  // namespace zunrtcp

#endif
