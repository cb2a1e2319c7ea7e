#include "tools/zunrtcp/Totals.h"

namespace zunrtcp {

void Totals::Add(const DecodedDatagram& decoded) {
  ++datagrams_;
  subpackets_ += decoded.subpackets.size();
  for (const DecodedSubpacket& subpacket : decoded.subpackets) {
    ++kinds_[{subpacket.view.type(), subpacket.kind}];
    if (subpacket.refusal) ++refusals_[subpacket.refusal->reason];
  }
  if (decoded.fault) ++refusals_[decoded.fault->reason];
  ++outcomes_[decoded.verdict.outcome];
  for (const Rule rule : decoded.verdict.rules) ++rules_[rule];
}

std::size_t Totals::Count(Outcome outcome) const {
  const auto found = outcomes_.find(outcome);
  return found == outcomes_.end() ? 0 : found->second;
}

}  // namespace zunrtcp
