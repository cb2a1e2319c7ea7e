#include <algorithm>
#include <cstddef>

#include "tools/zunrtcp/Text.h"
#include "tools/zunrtcp/WriteBack/Verdict.h"

namespace zunrtcp {

namespace {

// "first difference at byte 12, in subpacket 1 (SDES)".
std::string FirstDifference(std::string_view received, std::string_view written, const SubpacketWalk& walk,
                            const Kinds& kinds) {
  const auto [in, out] = std::mismatch(received.begin(), received.end(), written.begin(), written.end());
  const auto at = static_cast<std::size_t>(in - received.begin());
  std::string words =
      Printed("%zu bytes read, %zu written, first difference at byte %zu", received.size(), written.size(), at);
  for (const SubpacketView& subpacket : walk.subpackets) {
    if (at < subpacket.offset || at >= subpacket.offset + subpacket.bytes.size()) continue;
    words += Printed(", in subpacket %zu (%s)", subpacket.index, kinds.NameOf(subpacket).c_str());
  }
  return words;
}

Verdict JudgeUnwritten(const SubpacketWalk& walk, const Kinds& kinds) {
  for (const SubpacketView& subpacket : walk.subpackets) {
    std::optional<Rule> rule = kinds.WhyUnwritten(subpacket.WithoutPadding());
    if (subpacket.WithoutPadding().bytes.size() % 4 != 0) rule = Rule::NoWholeWords;
    if (rule) return {Outcome::Explained, {*rule}, {"not written"}};
  }
  return {Outcome::Unexplained, {}, {"the library read it but does not write it"}};
}

// What the library is to write by the stated rules, and those that make it differ from what it read.
struct Expectation {
  std::string bytes;
  std::set<Rule> rules;
};

// Nothing when a field is not where the rules look for it.
std::optional<Expectation> Expect(const SubpacketWalk& walk, const Kinds& kinds) {
  Expectation expected;
  try {
    for (const SubpacketView& subpacket : walk.subpackets) {
      Rewrite rewrite(subpacket, expected.bytes.size());
      kinds.Apply(subpacket, &rewrite);
      expected.bytes += rewrite.bytes;
      expected.rules.merge(rewrite.rules);
    }
  } catch (const OctetsEnd&) {
    return std::nullopt;
  }
  return expected;
}

Verdict JudgeWritten(std::string_view datagram, const SubpacketWalk& walk, const std::optional<std::string>& written,
                     const Kinds& kinds) {
  if (!written) return JudgeUnwritten(walk, kinds);
  if (*written == datagram) return {};

  const std::optional<Expectation> expected = Expect(walk, kinds);
  if (!expected || *written != expected->bytes) {
    return {Outcome::Unexplained, {}, {FirstDifference(datagram, *written, walk, kinds)}};
  }
  return {Outcome::Explained, {expected->rules.begin(), expected->rules.end()}, {}};
}

}  // namespace

Verdict JudgeWriteBack(std::string_view datagram, const SubpacketWalk& walk, const LibraryPacket& packet,
                       const Kinds& kinds) {
  return JudgeWritten(datagram, walk, packet.Write(), kinds);
}

Verdict JudgeSubpacket(const SubpacketView& subpacket, const LibraryPacket& packet, const Kinds& kinds) {
  std::optional<std::string> written = packet.Write(subpacket.index);
  if (const zun::rtcp::DecodeRefusal* refusal = packet.RefusalOf(subpacket.index)) {
    if (refusal->reason == ZUN_RTCP_DECODE_REASON_NO_OBJECT) written = kinds.WriteRegisteredForm(subpacket);
    if (!written) return JudgeRefused(subpacket, *refusal, kinds);
  }
  SubpacketView alone = subpacket;
  alone.offset = 0;
  Verdict verdict = JudgeWritten(subpacket.bytes, {{alone}, {}, 0}, written, kinds);
  for (std::string& remark : verdict.remarks) remark.insert(0, PlaceWords(subpacket, kinds));
  return verdict;
}

}  // namespace zunrtcp
