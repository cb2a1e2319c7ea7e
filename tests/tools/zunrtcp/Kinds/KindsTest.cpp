#include "tools/zunrtcp/Kinds/Kinds.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "tests/support/Samples.h"
#include "tests/tools/zunrtcp/Decoded.h"
#include "tests/tools/zunrtcp/Kinds/LibraryKinds.h"
#include "tools/zunrtcp/Kinds/PayloadFeedback/Rows.h"
#include "tools/zunrtcp/Kinds/RowOf.h"
#include "tools/zunrtcp/Kinds/TransportFeedback/Rows.h"
#include "tools/zunrtcp/Text.h"

namespace zunrtcp {

namespace {

using Names = std::vector<std::string>;

// Kinds with other tables than the tool's, whose rows they own.
class OtherKinds {
 public:
  OtherKinds() {
    for (std::size_t i = 0; i < kLevels; ++i) {
      const auto rows = AllKinds().tables()[i].rows;
      rows_[i].assign(rows.begin(), rows.end());
    }
  }

  void Remove(const KindLevel* level, ZunInt32 value) {
    std::erase_if(RowsOf(level), [&](const KindRow* row) { return row->value == value; });
  }
  // In the table of `level`, of whatever level the row itself is.
  void Add(const KindLevel* level, const KindRow* row) { RowsOf(level).push_back(row); }

  Kinds Get() const { return {Table(0), Table(1), Table(2), Table(3)}; }

 private:
  static constexpr std::size_t kLevels = 4;

  std::vector<const KindRow*>& RowsOf(const KindLevel* level) {
    const auto& tables = AllKinds().tables();
    return rows_.at(static_cast<std::size_t>(std::ranges::find(tables, level, &KindTable::level) - tables.begin()));
  }
  KindTable Table(std::size_t i) const {
    const KindTable& table = AllKinds().tables()[i];
    return {table.level, rows_[i], table.unmodelled};
  }

  std::array<std::vector<const KindRow*>, kLevels> rows_;
};

OtherKinds Without(const test::LibraryKind& kind) {
  OtherKinds kinds;
  kinds.Remove(kind.level, kind.value);
  return kinds;
}

const KindTable& TableOf(const Kinds& kinds, const KindLevel* level) {
  return *std::ranges::find(kinds.tables(), level, &KindTable::level);
}

Names KindsWithoutRow(const Kinds& kinds) {
  Names names;
  for (const test::LibraryKind& kind : test::kLibraryKinds) {
    if (TableOf(kinds, kind.level).Find(kind.value) == nullptr) names.emplace_back(kind.name);
  }
  return names;
}

bool IsListed(const KindRow& row) {
  return std::ranges::any_of(test::kLibraryKinds, [&](const test::LibraryKind& kind) {
    return kind.level == row.level && kind.value == row.value;
  });
}

// Rows that are of no kind of the library, stand in the table of another level, or after one of the same kind.
Names RowsWithoutKind(const Kinds& kinds) {
  Names names;
  for (const KindTable& table : kinds.tables()) {
    for (const KindRow* row : table.rows) {
      if (!IsListed(*row) || table.Find(row->value) != row) names.emplace_back(row->name);
    }
  }
  return names;
}

const KindLevel* LevelOf(test::Level level) {
  const KindLevel* const levels[] = {&subpacket_level, &rtpfb_level, &psfb_level, &afb_level};
  return levels[static_cast<int>(level)];
}

// The kind of a sample and those that hold it; only these where the kind is unknown.
std::vector<test::LibraryKind> KindsOf(const test::Sample& sample) {
  std::vector<test::LibraryKind> kinds;
  for (const test::Row* row = sample.row; row != nullptr; row = test::EnvelopeOf(*row)) {
    if (!test::IsUnknown(row->level, row->value)) kinds.push_back({LevelOf(row->level), row->value, row->kind});
  }
  return kinds;
}

std::string Body(const test::Sample& sample) { return sample.wire.substr(kHeaderSize); }

// What the tool tells of a sample, for programs.
Description::Value Told(const test::Sample& sample, const Kinds& kinds = AllKinds()) {
  const test::Decoded decoded(test::ToHex(sample.wire), true, kinds);
  EXPECT_EQ(decoded.subpackets.size(), 1U);
  return decoded.subpackets.at(0).description.ToValue();
}

const KindRow* RowOfKind(const test::Row& row) { return TableOf(AllKinds(), LevelOf(row.level)).Find(row.value); }

// Kinds of which one is known and nothing told.
OtherKinds WithSilent(const KindRow* silent) {
  OtherKinds kinds = Without({silent->level, silent->value, silent->name});
  kinds.Add(silent->level, silent);
  return kinds;
}

std::string NameOf(const std::string& hex) {
  const std::string bytes = test::Hex(hex);
  return AllKinds().NameOf({0, 0, bytes});
}

std::string NameAndCount(const std::string& hex) {
  const std::string bytes = test::Hex(hex);
  return AllKinds().NameAndCount({0, 0, bytes});
}

std::string RemarkOn(const std::string& hex) {
  const std::string bytes = test::Hex(hex);
  return AllKinds().RemarkOn({0, 0, bytes});
}

// Whether a row can be made for this value at all.
template <const KindLevel& level, ZunInt32 value>
constexpr bool kCanHaveRow = requires {
  Listed<level, value>::kValue;
};

}  // namespace

TEST(Kinds, EveryKindOfTheLibraryHasARow) { EXPECT_EQ(KindsWithoutRow(AllKinds()), Names{}); }

TEST(Kinds, EveryRowIsOfAKindOfTheLibrary) { EXPECT_EQ(RowsWithoutKind(AllKinds()), Names{}); }

TEST(Kinds, AKindWithoutARowIsFoundByName) {
  for (const test::LibraryKind& kind : test::kLibraryKinds) {
    EXPECT_EQ(KindsWithoutRow(Without(kind).Get()), Names{kind.name});
  }
}

TEST(Kinds, ARowWithoutAKindIsFoundByName) {
  const KindRow stray{.level = &rtpfb_level, .value = 4, .name = "STRAY"};
  OtherKinds kinds;
  kinds.Add(&rtpfb_level, &stray);
  EXPECT_EQ(RowsWithoutKind(kinds.Get()), Names{"STRAY"});
}

TEST(Kinds, ASecondRowOfAKindIsFoundByName) {
  OtherKinds kinds;
  KindRow second = nack_row;
  second.name = "SECOND";
  kinds.Add(&rtpfb_level, &second);
  EXPECT_EQ(RowsWithoutKind(kinds.Get()), Names{"SECOND"});
}

TEST(Kinds, ARowOfAnotherLevelServesNothing) {
  OtherKinds kinds;
  kinds.Remove(&rtpfb_level, ZUN_RTCPRTPFB_TYPE_NACK);
  kinds.Add(&rtpfb_level, &pli_row);  // of the same value, on its own level
  EXPECT_EQ(RowsWithoutKind(kinds.Get()), Names{"PLI"});
  EXPECT_EQ(KindsWithoutRow(kinds.Get()), Names{"ZUN_RTCPRTPFB_TYPE_NACK"});
}

TEST(Kinds, OnlyAValueThatTheLibraryListsCanHaveARow) {
  static_assert(kCanHaveRow<rtpfb_level, ZUN_RTCPRTPFB_TYPE_NACK>);
  static_assert(!kCanHaveRow<rtpfb_level, 4>);
  static_assert(!kCanHaveRow<psfb_level, ZUN_RTCPRTPFB_TYPE_CCFB>);
  static_assert(!kCanHaveRow<subpacket_level, 207>);
}

TEST(Kinds, EverySampleIsCalledByTheNameOfItsKind) {
  for (const test::Sample& sample : test::Samples()) {
    SCOPED_TRACE(sample.name);
    const std::string name = AllKinds().NameOf({0, 0, sample.wire});
    const test::Row& row = *sample.row;
    if (test::IsUnknown(row.level, row.value)) {
      for (const KindRow* known : TableOf(AllKinds(), LevelOf(row.level)).rows) EXPECT_NE(name, known->name);
    } else if (const KindRow* const own = RowOfKind(row)) {
      EXPECT_EQ(name, own->name);
    } else {
      ADD_FAILURE() << row.kind << " has no row";
    }
  }
}

// What holds no data says so.
TEST(Kinds, OfEverySampleAFieldIsTold) {
  for (const test::Sample& sample : test::Samples()) EXPECT_FALSE(Told(sample).empty()) << sample.name;
}

TEST(Kinds, SamplesThatDifferAreToldDifferently) {
  for (const test::Sample& sample : test::Samples()) {
    for (const test::Sample& other : test::SamplesOf(*sample.row)) {
      EXPECT_EQ(Told(sample) == Told(other), Body(sample) == Body(other)) << sample.name << " and " << other.name;
    }
  }
}

// But for that of AFB: what its messages share is told by the row of PSFB.
TEST(Kinds, EveryRowTellsSomething) {
  for (const test::Row* const row : test::AllRows()) {
    const KindRow* const own = RowOfKind(*row);
    if (own == nullptr || row == &test::kRowOf<ZunRtcpPsfbAfb>) continue;
    KindRow silent = *own;
    silent.describe = [](ObjectView, Description*) {};
    const OtherKinds kinds = WithSilent(&silent);
    const auto tells = [&](const test::Sample& sample) { return Told(sample) != Told(sample, kinds.Get()); };
    EXPECT_TRUE(std::ranges::any_of(test::SamplesOf(*row), tells)) << row->kind;
  }
}

// Whatever level lacks its row, all that is said of the object is the bytes of its body.
TEST(Kinds, AKindWithoutARowIsShownAsBytes) {
  for (const test::Sample& sample : test::Samples()) {
    for (const test::LibraryKind& kind : KindsOf(sample)) {
      SCOPED_TRACE(sample.name + " without " + kind.name);
      const OtherKinds kinds = Without(kind);
      const test::Decoded decoded(test::ToHex(sample.wire), true, kinds.Get());
      ASSERT_EQ(decoded.subpackets.size(), 1U);
      const Description& description = decoded.subpackets[0].description;
      const std::string data = HexDigits(Body(sample));
      EXPECT_EQ(description.ToValue(), (Description::Value{{"data", data}}));
      EXPECT_EQ(description.Line(), "data " + data);
      EXPECT_EQ(description.ItemLines(), Names{});
    }
  }
}

TEST(Kinds, AKindWithoutARowIsCalledByItsNumber) {
  const OtherKinds no_nack = Without({&rtpfb_level, ZUN_RTCPRTPFB_TYPE_NACK, ""});
  const std::string nack = test::Hex("81CD0003 00000001 00000002 00030001");
  EXPECT_EQ(no_nack.Get().NameAndCount({0, 0, nack}), "RTPFB FMT 1");
  const OtherKinds no_rtpfb = Without({&subpacket_level, ZUN_RTCPSUBPACKET_TYPE_RTPFB, ""});
  EXPECT_EQ(no_rtpfb.Get().NameAndCount({0, 0, nack}), "type 205, subtype 1");
  const OtherKinds no_albr = Without({&afb_level, ZUN_RTCPPSFBAFB_TYPE_ALBR, ""});
  const std::string albr = test::Hex("8FCE0004 00000001 00000000 4E720002 000003E8");
  EXPECT_EQ(no_albr.Get().NameAndCount({0, 0, albr}), "AFB Nr 2, FMT 15");
}

TEST(Kinds, AKindWithoutARowIsExpectedToBeWrittenAsItCame) {
  const OtherKinds kinds = Without({&subpacket_level, ZUN_RTCPSUBPACKET_TYPE_APP, ""});
  EXPECT_EQ(test::Decoded("80CC0002 11223344 41424344", false, kinds.Get()).verdict.outcome, Outcome::Identical);
  EXPECT_EQ(test::Decoded("83CC0002 11223344 41424344", false, kinds.Get()).verdict.outcome, Outcome::Unexplained);
}

TEST(Kinds, AKindWithoutARowIsRefusedByNoRule) {
  const OtherKinds kinds = Without({&subpacket_level, ZUN_RTCPSUBPACKET_TYPE_BYE, ""});
  EXPECT_EQ(test::Decoded("80CB0000").verdict.outcome, Outcome::RefusedByRule);
  EXPECT_EQ(test::Decoded("80CB0000", false, kinds.Get()).verdict.outcome, Outcome::RefusedUnexplained);
}

TEST(Kinds, TheHeadersFieldIsToldByWhatItCounts) {
  EXPECT_EQ(NameAndCount("82C90000"), "RR, 2 report blocks");
  EXPECT_EQ(NameAndCount("81CA0000"), "SDES, 1 chunk");
  EXPECT_EQ(NameAndCount("83CB0000"), "BYE, 3 sources");
  EXPECT_EQ(NameAndCount("83CC0000"), "APP, subtype 3");
  EXPECT_EQ(NameAndCount("83CF0000"), "XR (type 207), subtype 3");
  EXPECT_EQ(NameAndCount("81CD0000"), "NACK, FMT 1");
  EXPECT_EQ(NameAndCount("8FCE0003 00000001 00000000 52454D42"), "REMB, FMT 15");
  EXPECT_EQ(NameAndCount("8FCE0003 00000001 00000000 4C4E5446"), "AFB, FMT 15");
}

TEST(Kinds, AnUnknownFormatIsSaidOnce) {
  EXPECT_EQ(NameAndCount("8BCD0000"), "RTPFB FMT 11");
  EXPECT_EQ(NameAndCount("87CE0000"), "PSFB FMT 7");
}

TEST(Kinds, TellsKindsByTheirNumbers) {
  EXPECT_EQ(NameOf("80C80000"), "SR");
  EXPECT_EQ(NameOf("82CD0000"), "TMMBR");
  EXPECT_EQ(NameOf("83CD0000"), "TMMBN");
  EXPECT_EQ(NameOf("8ECD0000"), "CCFB");
  EXPECT_EQ(NameOf("84CD0000"), "RTPFB FMT 4");
  EXPECT_EQ(NameOf("87CE0000"), "PSFB FMT 7");
  EXPECT_EQ(NameOf("80CF0000"), "XR (type 207)");
  EXPECT_EQ(NameOf("80DF0000"), "type 223");
}

TEST(Kinds, TellsApplicationFeedbackByItsIdentifier) {
  EXPECT_EQ(NameOf("8FCE0003 00000001 00000000 52454D42"), "REMB");
  EXPECT_EQ(NameOf("8FCE0003 00000001 00000000 4E720005"), "LIR");
  EXPECT_EQ(NameOf("8FCE0003 00000001 00000000 4E720009"), "AFB Nr 9");
  EXPECT_EQ(NameOf("8FCE0003 00000001 00000000 4E720000"), "AFB Nr 0");
  EXPECT_EQ(NameOf("8FCE0003 00000001 00000000 4C4E5446"), "AFB");
  EXPECT_EQ(NameOf("8FCE0002 00000001 00000000"), "AFB");
}

TEST(Kinds, SaysWhatARegisteredFormIsHere) {
  EXPECT_EQ(
      RemarkOn("83CD0004 00000001 00000000 00000002 0A000028"),
      "FMT 3 is TMMBN here, which is exactly 16 bytes; this looks like a registered TMMBR (RFC 5104) of 20 bytes");
  EXPECT_EQ(
      RemarkOn("84CD0002 00000001 00000000"),
      "FMT 4 is unknown here and kept as bytes; it is the registered number of TMMBN (RFC 5104), which here is FMT "
      "3 in a simplified form");
  EXPECT_EQ(
      RemarkOn("8BCD0002 00000001 00000000"),
      "FMT 11 is unknown here and kept as bytes; it is the registered number of CCFB (RFC 8888), which here is FMT "
      "14");
  EXPECT_EQ(RemarkOn("83CD0003 00000001 00000000 000003E8"), "");
  EXPECT_EQ(RemarkOn("84CE0002 00000001 00000000"), "");
}

}  // namespace zunrtcp
