#include <optional>

#include "tools/zunrtcp/Packet/KindName.h"
#include "tools/zunrtcp/Text.h"
#include "tools/zunrtcp/WriteBack/Verdict.h"

namespace zunrtcp {

namespace {

constexpr std::size_t kFeedbackHeadSize = 12;  // header and two SSRCs

bool HasNoEntries(const SubpacketView& subpacket) {
  const bool needsThem = subpacket.Is(kRtpfb, kNack) || subpacket.Is(kPsfb, kFir) || subpacket.Is(kPsfb, kTstr) ||
                         subpacket.Is(kPsfb, kTsta);
  if (needsThem) return subpacket.bytes.size() == kFeedbackHeadSize;
  return IsHouseMessage(subpacket, kLir) && subpacket.bytes.size() == kFeedbackHeadSize + 4;
}

// True when the header announces padding and the library reads the subpacket without it.
bool IsAcceptedWithoutPadding(const SubpacketView& subpacket) {
  if (!subpacket.padded()) return false;
  const unsigned padding = U8At(subpacket.bytes, subpacket.bytes.size() - 1);
  if (padding == 0 || padding % 4 != 0 || padding > subpacket.bytes.size() - 4) return false;
  std::string bare(subpacket.bytes.substr(0, subpacket.bytes.size() - padding));
  std::string length;
  AppendNumber(&length, bare.size() / 4 - 1, 2);
  return LibraryAccepts(bare.replace(2, 2, length));
}

std::optional<Rule> RuleOfRefusal(const SubpacketView& subpacket) {
  const std::string_view bytes = subpacket.bytes;
  if (subpacket.Is(kRtpfb, kTmmbn) && bytes.size() >= kFeedbackHeadSize && bytes.size() != 16) return Rule::TmmbnLength;
  if (subpacket.type() == kBye && subpacket.count() == 0) return Rule::ByeWithoutSources;
  if (IsRemb(subpacket) && bytes.size() >= 20 && U8At(bytes, 16) >= 128 && bytes.size() == 20 + 4U * U8At(bytes, 16)) {
    return Rule::RembSourceCount;
  }
  if (HasNoEntries(subpacket)) return Rule::NoEntries;
  if (subpacket.Is(kPsfb, kRpsi) && bytes.size() >= 16 && U8At(bytes, 12) / 8U > bytes.size() - 14) {
    return Rule::RpsiPaddingCount;
  }
  if (IsAcceptedWithoutPadding(subpacket)) return Rule::PaddingOctets;
  return std::nullopt;
}

}  // namespace

Verdict JudgeRefusal(const SubpacketWalk& walk) {
  Verdict verdict{Outcome::RefusedByRule, {}, {}};
  for (const SubpacketView& subpacket : walk.subpackets) {
    if (LibraryAccepts(subpacket.bytes)) continue;
    std::string words = Printed("subpacket %zu (%s, %s) at byte %zu", subpacket.index, KindName(subpacket).c_str(),
                                CountWords(subpacket).c_str(), subpacket.offset);
    if (const std::optional<Rule> rule = RuleOfRefusal(subpacket)) {
      verdict.rules.push_back(*rule);
      words += std::string(": ") + Sentence(*rule);
    } else {
      verdict.outcome = Outcome::RefusedUnexplained;
      words += ": its body is malformed";
    }
    verdict.remarks.push_back(words);
  }
  if (!walk.fault.empty()) {
    verdict.outcome = Outcome::RefusedUnexplained;
    verdict.remarks.push_back(Printed("at byte %zu: ", walk.faultOffset) + walk.fault);
  }
  if (verdict.remarks.empty()) {
    verdict.outcome = Outcome::RefusedUnexplained;
    verdict.remarks.emplace_back("each subpacket is read by itself, but not all of them together");
  }
  return verdict;
}

}  // namespace zunrtcp
