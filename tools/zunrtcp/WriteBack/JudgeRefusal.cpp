#include "tools/zunrtcp/Text.h"
#include "tools/zunrtcp/WriteBack/Verdict.h"

namespace zunrtcp {

namespace {

// True when the header announces padding and the library reads the subpacket without it.
bool IsAcceptedWithoutPadding(const SubpacketView& subpacket) {
  if (!subpacket.padded()) return false;
  const unsigned padding = U8At(subpacket.bytes, subpacket.bytes.size() - 1);
  if (padding == 0 || padding % 4 != 0 || padding > subpacket.body().size()) return false;
  std::string bare(subpacket.bytes.substr(0, subpacket.bytes.size() - padding));
  std::string length;
  AppendNumber(&length, bare.size() / 4 - 1, 2);
  return LibraryAccepts(bare.replace(2, 2, length));
}

std::optional<Rule> RuleOfRefusal(const SubpacketView& subpacket, const Kinds& kinds) {
  if (const std::optional<Rule> rule = kinds.WhyRefused(subpacket)) return rule;
  if (IsAcceptedWithoutPadding(subpacket)) return Rule::PaddingOctets;
  return std::nullopt;
}

void AddUnexplained(std::string remark, Verdict* verdict) {
  verdict->outcome = Outcome::RefusedUnexplained;
  verdict->remarks.push_back(std::move(remark));
}

void JudgeSubpacket(const SubpacketView& subpacket, const Kinds& kinds, Verdict* verdict) {
  if (LibraryAccepts(subpacket.bytes)) return;
  const std::string place = Printed("subpacket %zu (%s) at byte %zu: ", subpacket.index,
                                    kinds.NameAndCount(subpacket).c_str(), subpacket.offset);
  const std::optional<Rule> rule = RuleOfRefusal(subpacket, kinds);
  if (!rule) return AddUnexplained(place + "its body is malformed", verdict);
  verdict->rules.push_back(*rule);
  verdict->remarks.push_back(place + Sentence(*rule));
}

}  // namespace

Verdict JudgeRefusal(const SubpacketWalk& walk, const Kinds& kinds) {
  Verdict verdict{Outcome::RefusedByRule, {}, {}};
  for (const SubpacketView& subpacket : walk.subpackets) JudgeSubpacket(subpacket, kinds, &verdict);
  if (!walk.fault.empty()) AddUnexplained(Printed("at byte %zu: ", walk.fault_offset) + walk.fault, &verdict);
  if (verdict.remarks.empty())
    AddUnexplained("each subpacket is read by itself, but not all of them together", &verdict);
  return verdict;
}

}  // namespace zunrtcp
