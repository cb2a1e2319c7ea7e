#include <algorithm>
#include <cstddef>

#include "tools/zunrtcp/Packet/KindName.h"
#include "tools/zunrtcp/Packet/Octets.h"
#include "tools/zunrtcp/Text.h"
#include "tools/zunrtcp/WriteBack/Rewrite.h"
#include "tools/zunrtcp/WriteBack/Verdict.h"

namespace zunrtcp {

namespace {

// A TMMBR without entries: a header and two SSRCs.
bool IsEmptyTmmbr(const SubpacketView& subpacket) {
  return subpacket.Is(kRtpfb, kTmmbr) && subpacket.bytes.size() == 12;
}

// "first difference at byte 12, in subpacket 1 (SDES)".
std::string FirstDifference(std::string_view received, std::string_view written, const SubpacketWalk& walk) {
  const auto [in, out] = std::mismatch(received.begin(), received.end(), written.begin(), written.end());
  const auto at = static_cast<std::size_t>(in - received.begin());
  std::string words =
      Printed("%zu bytes read, %zu written, first difference at byte %zu", received.size(), written.size(), at);
  for (const SubpacketView& subpacket : walk.subpackets) {
    if (at < subpacket.offset || at >= subpacket.offset + subpacket.bytes.size()) continue;
    words += Printed(", in subpacket %zu (%s)", subpacket.index, KindName(subpacket).c_str());
  }
  return words;
}

Verdict JudgeUnwritten(const SubpacketWalk& walk) {
  for (const SubpacketView& subpacket : walk.subpackets) {
    if (IsEmptyTmmbr(subpacket)) return {Outcome::Explained, {Rule::EmptyTmmbr}, {"not written"}};
  }
  return {Outcome::Unexplained, {}, {"the library read it but does not write it"}};
}

}  // namespace

const char* OutcomeName(Outcome outcome) {
  switch (outcome) {
    case Outcome::Identical:
      return "identical";
    case Outcome::Explained:
      return "explained";
    case Outcome::Unexplained:
      return "unexplained";
    case Outcome::RefusedByRule:
      return "refused by rule";
    case Outcome::RefusedUnexplained:
      return "refused";
    case Outcome::CutOff:
      return "cut off";
  }
  return "";
}

Verdict JudgeWriteBack(std::string_view datagram, const SubpacketWalk& walk, const LibraryPacket& packet) {
  std::string written;
  if (!packet.Write(&written)) return JudgeUnwritten(walk);
  if (written == datagram) return {};

  std::string expected;
  std::set<Rule> rules;
  std::string remark = FirstDifference(datagram, written, walk);
  try {
    for (const SubpacketView& subpacket : walk.subpackets) RewriteSubpacket(subpacket, &expected, &rules);
  } catch (const OctetsEnd&) {
    return {Outcome::Unexplained, {}, {remark}};
  }
  if (written != expected) return {Outcome::Unexplained, {}, {remark}};
  return {Outcome::Explained, {rules.begin(), rules.end()}, {}};
}

}  // namespace zunrtcp
