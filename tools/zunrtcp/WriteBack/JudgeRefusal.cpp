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
  if (const std::optional<Rule> rule = kinds.WhyRefused(subpacket.WithoutPadding())) return rule;
  if (!subpacket.registered() && IsAcceptedWithoutPadding(subpacket)) return Rule::PaddingOctets;
  return std::nullopt;
}

// What only costs too much is in good form, so no rule speaks of it. The forms of the house are told apart by rules,
// the registered ones by the library's reasons.
std::string WhyMalformed(const SubpacketView& subpacket, const zun::rtcp::DecodeRefusal& refusal, const Kinds& kinds) {
  Description nobody_reads(false, subpacket.dialect);
  std::size_t packets_left = 0;
  const std::optional<FormFault> fault =
      kinds.DescribeRegisteredForm(std::nullopt, subpacket, &packets_left, &nobody_reads);
  if (fault && fault->reason != nullptr) return fault->reason;
  const bool has_reason = subpacket.registered() || refusal.reason == ZUN_RTCP_DECODE_REASON_LIMIT;
  return has_reason ? ZunRtcpDecodeReasonGetText(refusal.reason) : "its body is malformed";
}

}  // namespace

std::string PlaceWords(const SubpacketView& subpacket, const Kinds& kinds) {
  return Printed("subpacket %zu (%s) at byte %zu: ", subpacket.index, kinds.NameAndCount(subpacket).c_str(),
                 subpacket.offset);
}

Verdict JudgeRefused(const SubpacketView& subpacket, const zun::rtcp::DecodeRefusal& refusal, const Kinds& kinds) {
  const std::string place = PlaceWords(subpacket, kinds);
  const std::optional<Rule> rule = RuleOfRefusal(subpacket, kinds);
  if (rule) return {Outcome::RefusedByRule, {*rule}, {place + Sentence(*rule)}};
  return {Outcome::RefusedUnexplained, {}, {place + WhyMalformed(subpacket, refusal, kinds)}};
}

Verdict JudgeRefusal(const SubpacketWalk& walk, const LibraryPacket& packet, const Kinds& kinds) {
  Verdict verdict{Outcome::RefusedByRule, {}, {}};
  for (const SubpacketView& subpacket : walk.subpackets) {
    const zun::rtcp::DecodeRefusal* refusal = packet.RefusalOf(subpacket.index);
    if (refusal == nullptr) continue;
    const Verdict judged = JudgeRefused(subpacket, *refusal, kinds);
    if (judged.outcome == Outcome::RefusedUnexplained) verdict.outcome = judged.outcome;
    verdict.rules.insert(verdict.rules.end(), judged.rules.begin(), judged.rules.end());
    verdict.remarks.insert(verdict.remarks.end(), judged.remarks.begin(), judged.remarks.end());
  }
  if (!walk.fault.empty()) {
    verdict.outcome = Outcome::RefusedUnexplained;
    verdict.remarks.push_back(Printed("at byte %zu: ", walk.fault_offset) + walk.fault);
  }
  return verdict;
}

}  // namespace zunrtcp
