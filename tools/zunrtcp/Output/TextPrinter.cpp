#include <algorithm>

#include "tools/zunrtcp/Output/Printer.h"
#include "tools/zunrtcp/Text.h"

namespace zunrtcp {

namespace {

constexpr const char* kIndent = "           ";  // of what belongs to a subpacket
constexpr std::size_t kKindWidth = 8;

// "written back identical", "refused by rule: ..."; in capitals what needs looking at.
std::string VerdictLine(const Verdict& verdict) {
  std::vector<std::string> sentences;
  for (const Rule rule : verdict.rules) sentences.emplace_back(Sentence(rule));
  switch (verdict.outcome) {
    case Outcome::Identical:
      return "written back identical";
    case Outcome::Explained:
      return "written back otherwise, by rule: " + Joined(sentences, "; ");
    case Outcome::Unexplained:
      return "WRITTEN BACK OTHERWISE, BY NO RULE: " + Joined(verdict.remarks, "; ");
    case Outcome::RefusedByRule:
      return "refused by rule: " + Joined(verdict.remarks, "; ");
    case Outcome::RefusedUnexplained:
      return "REFUSED: " + Joined(verdict.remarks, "; ");
    case Outcome::CutOff:
      return "CUT OFF: " + Joined(verdict.remarks, "; ");
    case Outcome::Read:
    case Outcome::Protected:
      return {};
  }
  return {};
}

// "  RR       2 report blocks, 56 bytes: sender ...".
std::string HeadLine(const DecodedSubpacket& subpacket, const Colours& colours) {
  std::string line = "  " + colours.In(Ink::Kind, subpacket.kind);
  if (!subpacket.count.empty()) {
    line += std::string(std::max(kKindWidth, subpacket.kind.size()) + 1 - subpacket.kind.size(), ' ') + subpacket.count;
  }
  line += Printed(", %zu bytes", subpacket.view.bytes.size());
  const std::string fields = subpacket.description.Line();
  return fields.empty() ? line : line + ": " + fields;
}

// "#1  2026-11-21 11:02:33.123456  192.0.2.1:5005 > 192.0.2.2:5007  8 bytes", "#1  line 1  8 bytes".
std::string DatagramLine(const RtcpDatagram& datagram) {
  std::string line = Printed("#%zu  ", datagram.number);
  if (datagram.line > 0) {
    line += Printed("line %zu  ", datagram.line);
  } else {
    line += UtcTime(datagram.seconds, datagram.microseconds) + "  ";
  }
  if (!datagram.source.address.empty()) line += datagram.source.Name() + " > " + datagram.destination.Name() + "  ";
  return line + Counted(datagram.payload.size(), "byte");
}

// What the datagrams were found among: "3 records, of which 3 UDP", "3 lines".
std::string FoundAmong(const FrameCounts& frames) {
  if (frames.lines > 0) return Counted(frames.lines, "line");
  std::string words = Printed("%s, of which %zu UDP", Counted(frames.records, "record").c_str(), frames.udp);
  if (frames.rtp > 0) words += Printed(", of which %zu RTP", frames.rtp);
  return words;
}

std::string RefusalLines(const std::string& indent, const Refusal& refusal, const Colours& colours) {
  return indent + colours.In(Ink::Trouble, "REFUSED: " + refusal.Words()) + '\n' + indent + refusal.BytesWords() + '\n';
}

Ink InkOf(Outcome outcome) {
  switch (outcome) {
    case Outcome::Unexplained:
    case Outcome::RefusedUnexplained:
    case Outcome::CutOff:
      return Ink::Trouble;
    default:
      return Ink::Aside;
  }
}

}  // namespace

void TextPrinter::Print(const DecodedDatagram& decoded) {
  const RtcpDatagram& datagram = decoded.datagram;
  *out_ << colours_.In(Ink::Place, DatagramLine(datagram)) << '\n';
  if (decoded.srtcp) {
    *out_ << "  " << colours_.In(Ink::Kind, decoded.srtcp->Words()) << "\n\n";
    return;
  }
  for (const DecodedSubpacket& subpacket : decoded.subpackets) Print(subpacket);
  if (decoded.fault) *out_ << RefusalLines("  ", *decoded.fault, colours_);
  if (verbose_) {
    for (const std::string& message : decoded.messages) *out_ << "  log: " << message << '\n';
  }
  // What the registered dialect refuses is told where it stands.
  const bool is_told = dialect_ == Dialect::registered && decoded.verdict.outcome != Outcome::CutOff;
  if (!is_told) *out_ << "  " << colours_.In(InkOf(decoded.verdict.outcome), VerdictLine(decoded.verdict)) << '\n';
  *out_ << '\n';
}

void TextPrinter::Print(const DecodedSubpacket& subpacket) {
  *out_ << HeadLine(subpacket, colours_) << '\n';
  for (const std::string& item : subpacket.description.ItemLines()) *out_ << kIndent << item << '\n';
  if (subpacket.padding > 0) {
    *out_ << kIndent << colours_.In(Ink::Aside, "padding, " + Counted(subpacket.padding, "octet")) << '\n';
  }
  if (!subpacket.remark.empty()) *out_ << kIndent << colours_.In(Ink::Aside, "note: " + subpacket.remark) << '\n';
  if (subpacket.refusal) *out_ << RefusalLines(kIndent, *subpacket.refusal, colours_);
}

void TextPrinter::Print(const Totals& totals, const FrameCounts& frames, const std::string& path) {
  *out_ << "Totals of " << path << '\n';
  *out_ << Printed("  datagrams  %7zu  (%s)\n", totals.datagrams(), FoundAmong(frames).c_str());
  *out_ << Printed("  subpackets %7zu\n", totals.subpackets());
  for (const auto& [kind, count] : totals.kinds()) *out_ << Printed("    %-16s %7zu\n", kind.second.c_str(), count);
  if (dialect_ == Dialect::registered) {
    PrintReadings(totals);
  } else {
    PrintWriteBacks(totals);
  }
  if (const std::size_t cut_off = totals.Count(Outcome::CutOff); cut_off > 0) {
    *out_ << Printed("  cut off    %7zu\n", cut_off);
  }
  if (const std::size_t srtcp = totals.Count(Outcome::Protected); srtcp > 0) {
    *out_ << Printed("  SRTCP      %7zu\n", srtcp);
  }
  if (frames.fragments > 0) *out_ << "  skipped " << Counted(frames.fragments, "fragment") << " of IP packets\n";
  if (totals.filtered() > 0) *out_ << "  passed over " << Counted(totals.filtered(), "datagram") << '\n';
  if (totals.rules().empty()) return;
  *out_ << "  rules, and datagrams that each explains\n";
  for (const auto& [rule, count] : totals.rules()) *out_ << Printed("    %7zu  %s\n", count, Sentence(rule));
}

void TextPrinter::PrintWriteBacks(const Totals& totals) {
  *out_ << "  written back\n";
  for (const Outcome outcome : {Outcome::Identical, Outcome::Explained, Outcome::Unexplained}) {
    *out_ << Printed("    %-16s %7zu\n", OutcomeName(outcome), totals.Count(outcome));
  }
  *out_ << Printed("  refused\n    %-16s %7zu\n    %-16s %7zu\n", "explained", totals.Count(Outcome::RefusedByRule),
                   "unexplained", totals.Count(Outcome::RefusedUnexplained));
}

void TextPrinter::PrintReadings(const Totals& totals) {
  *out_ << Printed("  read       %7zu\n", totals.Count(Outcome::Read));
  *out_ << Printed("  refused    %7zu\n", totals.Count(Outcome::RefusedUnexplained));
  for (const auto& [reason, count] : totals.refusals()) *out_ << Printed("    %7zu  %s\n", count, reason.c_str());
}

}  // namespace zunrtcp
