#include "tools/zunrtcp/CheckCommand.h"

#include <array>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tools/zunrtcp/InputError.h"
#include "tools/zunrtcp/Packet/Srtcp.h"
#include "tools/zunrtcp/Text.h"
#include "tools/zunrtcp/WriteBack/Tally.h"

namespace zunrtcp {

namespace {

using Json = nlohmann::ordered_json;

// What is not explained, and where.
struct Trouble {
  std::size_t datagram;
  std::string words;
};

class Checker {
 public:
  Checker(Dialect dialect, std::size_t most_troubles) : dialect_(dialect), most_troubles_(most_troubles) {}

  void Check(const RtcpDatagram& datagram) {
    ++datagrams_;
    if (datagram.missing > 0) return static_cast<void>(++cut_off_);
    const SubpacketWalk walk = WalkSubpackets(datagram.payload, dialect_);
    if (!walk.fault.empty() && RecogniseSrtcp(datagram.payload)) return static_cast<void>(++srtcp_);
    const LibraryPacket packet(datagram.payload, dialect_, Reading::Tolerant);
    for (const SubpacketView& view : walk.subpackets) {
      Add(datagram, {view.type(), AllKinds().NameOf(view)}, JudgeSubpacket(view, packet));
    }
    if (walk.fault.empty()) return;
    const std::string fault = Printed("at byte %zu: ", walk.fault_offset) + walk.fault;
    Add(datagram, {kNoType, "no packet"}, {Outcome::RefusedUnexplained, {}, {fault}});
  }

  Dialect dialect() const { return dialect_; }
  std::size_t datagrams() const { return datagrams_; }
  std::size_t cut_off() const { return cut_off_; }
  std::size_t srtcp() const { return srtcp_; }
  const Tally& tally() const { return tally_; }
  const std::vector<Trouble>& troubles() const { return troubles_; }
  std::size_t CountTroubles() const {
    return tally_.Count(Outcome::Unexplained) + tally_.Count(Outcome::RefusedUnexplained);
  }

 private:
  static constexpr unsigned kNoType = 256;  // after all packet types

  void Add(const RtcpDatagram& datagram, const Tally::Kind& kind, const Verdict& verdict) {
    tally_.Add(kind, verdict);
    const bool is_trouble = verdict.outcome == Outcome::Unexplained || verdict.outcome == Outcome::RefusedUnexplained;
    if (is_trouble && troubles_.size() < most_troubles_) {
      troubles_.push_back({datagram.number, Joined(verdict.remarks, "; ")});
    }
  }

  Dialect dialect_;
  std::size_t most_troubles_;
  std::size_t datagrams_ = 0;
  std::size_t cut_off_ = 0;
  std::size_t srtcp_ = 0;
  Tally tally_;
  std::vector<Trouble> troubles_;
};

// What the outcomes are called here.
constexpr std::array<const char*, Tally::kOutcomes.size()> kColumns{"identical", "explained", "refused", "unexplained",
                                                                    "malformed"};
constexpr const char* kRow = "  %-18s %10zu %10zu %10zu %12zu %10zu\n";

template <class Count>
std::string Row(const std::string& name, Count count) {
  const auto& outcomes = Tally::kOutcomes;
  return Printed(kRow, name.c_str(), count(outcomes[0]), count(outcomes[1]), count(outcomes[2]), count(outcomes[3]),
                 count(outcomes[4]));
}

std::size_t CountIn(const Tally::Counts& counts, Outcome outcome) {
  const auto found = counts.find(outcome);
  return found == counts.end() ? 0 : found->second;
}

void PrintText(const Checker& checker, const std::string& path, std::ostream* out) {
  *out << path << ": " << Counted(checker.datagrams(), "datagram");
  if (checker.dialect() == Dialect::registered) *out << ", in the registered dialect";
  *out << "\n\n";
  *out << Printed("  %-18s %10s %10s %10s %12s %10s\n", "kind", kColumns[0], kColumns[1], kColumns[2], kColumns[3],
                  kColumns[4]);
  for (const auto& [kind, counts] : checker.tally().kinds()) {
    *out << Row(kind.second, [&, &of = counts](Outcome outcome) { return CountIn(of, outcome); });
  }
  *out << Row("all", [&](Outcome outcome) { return checker.tally().Count(outcome); });
  if (checker.srtcp() > 0) *out << "  and " << Counted(checker.srtcp(), "datagram") << " of SRTCP\n";
  if (checker.cut_off() > 0)
    *out << "  and " << Counted(checker.cut_off(), "datagram") << " that the capture cut off\n";
  if (!checker.tally().rules().empty()) *out << "\n  rules, and packets that each explains\n";
  for (const auto& [rule, count] : checker.tally().rules()) *out << Printed("  %7zu  %s\n", count, Sentence(rule));
  if (!checker.troubles().empty()) *out << "\n  unexplained and malformed\n";
  for (const Trouble& trouble : checker.troubles()) {
    *out << "  #" << trouble.datagram << "  " << trouble.words << '\n';
  }
  const std::size_t untold = checker.CountTroubles() - checker.troubles().size();
  if (untold > 0) *out << "  and " << untold << " more\n";
}

Json CountsValue(const Tally::Counts& counts) {
  Json value = Json::object();
  for (std::size_t i = 0; i < kColumns.size(); ++i) value[kColumns[i]] = CountIn(counts, Tally::kOutcomes[i]);
  return value;
}

void PrintJson(const Checker& checker, const std::string& path, std::ostream* out) {
  Json value{{"file", path},
             {"datagrams", checker.datagrams()},
             {"srtcp", checker.srtcp()},
             {"cutOff", checker.cut_off()},
             {"kinds", Json::object()},
             {"rules", Json::object()},
             {"troubles", Json::array()}};
  if (checker.dialect() == Dialect::registered) value["dialect"] = "registered";
  for (const auto& [kind, counts] : checker.tally().kinds()) value["kinds"][kind.second] = CountsValue(counts);
  for (const auto& [rule, count] : checker.tally().rules()) value["rules"][Sentence(rule)] = count;
  for (const Trouble& trouble : checker.troubles()) {
    value["troubles"].push_back({{"datagram", trouble.datagram}, {"remark", trouble.words}});
  }
  *out << value.dump() << '\n';
}

}  // namespace

ExitStatus RunCheck(const CheckOptions& options, std::ostream* out) {
  const std::unique_ptr<DatagramSource> source = OpenSource(options.input);
  Checker checker(options.dialect, options.troubles);
  std::string complaint;  // said when all that can be told is
  try {
    while (const std::optional<RtcpDatagram> datagram = source->Next()) checker.Check(*datagram);
  } catch (const InputError& damage) {
    complaint = damage.what();
  }
  if (checker.datagrams() > 0) {
    (options.json ? PrintJson : PrintText)(checker, source->path(), out);
  } else if (complaint.empty()) {
    complaint = source->NothingFound();
  }
  if (complaint.empty() && checker.cut_off() > 0) {
    complaint = source->path() + ": " + Counted(checker.cut_off(), "datagram") + " cut off by the capture";
  }
  if (!complaint.empty()) throw InputError(complaint);
  return checker.CountTroubles() > 0 ? kUnexplained : kFine;
}

}  // namespace zunrtcp
