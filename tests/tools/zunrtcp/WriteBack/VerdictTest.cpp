#include "tools/zunrtcp/WriteBack/Verdict.h"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <vector>

#include "tests/support/Samples.h"
#include "tests/tools/zunrtcp/Decoded.h"

namespace zunrtcp {

namespace {

// Datagrams that come back otherwise than they came, and the rules that explain it.
struct ExplainedCase {
  const char* name;
  const char* bytes;
  std::vector<Rule> rules;
};

const ExplainedCase kExplained[] = {
    {"padding bit of an RR, whose padding is kept as extension", "A0C90002 00000001 00000004", {Rule::PaddingBit}},
    {"padding bit of an unknown type", "A0CF0001 00000004", {Rule::PaddingBit}},
    {"SDES item of type 20 before a CNAME", "81CA0003 11223344 140178 010161 0000", {Rule::SdesItemSkipped}},
    {"SDES first item of type 0 with text", "81CA0003 11223344 000178 010161 0000", {Rule::SdesItemSkipped}},
    {"SDES chunk padded with FF", "81CA0002 11223344 0100 00FF", {Rule::SdesPadding}},
    {"BYE reason padded with FF", "81CB0002 11223344 0178FFFF", {Rule::ByePadding}},
    {"BYE with an empty reason", "81CB0002 11223344 00000000", {Rule::ByeEmptyReason}},
    {"APP with subtype 3", "83CC0002 11223344 41424344", {Rule::AppSubtype}},
    {"TMMBR with a media source", "82CD0004 00000001 00000005 00000002 000003E8", {Rule::MediaSource}},
    {"TMMBR without entries", "82CD0002 00000001 00000000", {Rule::EmptyTmmbr}},
    {"TWCC run written as a vector",
     "8FCD0005 00000001 00000002 0001 0002 000001 00 B000 0404",
     {Rule::TransportCcChunks}},
    {"TWCC two runs of one symbol",
     "8FCD0006 00000001 00000002 0001 0002 000001 00 2001 2001 0404 0000",
     {Rule::TransportCcChunks, Rule::TransportCcPadding}},
    {"TWCC vector closed early by a large delta",
     "8FCD0007 00000001 00000002 0001 0008 000001 00 D000 4001 04 0100 00000000 00",
     {Rule::TransportCcChunks, Rule::TransportCcPadding}},
    {"TWCC large delta 0180", "8FCD0005 00000001 00000002 0001 0001 000001 00 4001 0180", {Rule::TransportCcDeltaSign}},
    {"TWCC large delta 0005",
     "8FCD0005 00000001 00000002 0001 0001 000001 00 4001 0005",
     {Rule::TransportCcChunks, Rule::TransportCcDeltaSize}},
    {"TWCC with two of five deltas",
     "8FCD0005 00000001 00000002 0001 0005 000001 00 2005 0404",
     {Rule::TransportCcChunks, Rule::TransportCcDeltasMissing}},
    {"TWCC with marked padding",
     "AFCD0006 00000001 00000002 0001 0001 000001 00 2001 04 00 00000004",
     {Rule::PaddingBit, Rule::TransportCcPadding}},
    {"CCFB metric with ECN 1", "8ECD0005 00000001 00000002 0001 0001 A005 0000 00010000", {Rule::CcfbEcn}},
    {"CCFB lost metric with an offset",
     "8ECD0005 00000001 00000002 0001 0001 0005 0000 00010000",
     {Rule::CcfbLostMetric}},
    {"CCFB stream padded with FF", "8ECD0005 00000001 00000002 0001 0001 8005 FFFF 00010000", {Rule::CcfbPadding}},
    {"FIR with reserved bits", "84CE0004 00000001 00000000 00000002 07000100", {Rule::ReservedBits}},
    {"TSTR with a media source and reserved bits",
     "85CE0004 00000001 00000005 00000002 070000E3",
     {Rule::MediaSource, Rule::ReservedBits}},
    {"TSTA with reserved bits", "86CE0004 00000001 00000005 00000002 070000E3", {Rule::ReservedBits}},
    {"RPSI whose padding is not zero", "83CE0003 00000001 00000002 0860 DEAD", {Rule::RpsiPadding}},
    {"RPSI with the first payload type bit set", "83CE0003 00000001 00000002 00E0 DEAD", {Rule::ReservedBits}},
    {"REMB 1 * 2^1", "8FCE0005 00000001 00000000 52454D42 01 040001 00000002", {Rule::RembMantissa}},
    {"REMB 0 * 2^5", "8FCE0005 00000001 00000000 52454D42 01 140000 00000002", {Rule::RembMantissa}},
    {"AFB ABAFB with a further word",
     "8FCE000B 00000001 00000000 4E720001 00000001 00000002 00000003 00000004 00000005 00000006 00000007 00000008",
     {Rule::BytesAfterFields}},
    {"ALBR with a further word", "8FCE0005 00000001 00000000 4E720002 000003E8 00000001", {Rule::BytesAfterFields}},
    {"SHOWACK with trailing bytes", "8FCE0005 00000001 00000000 4E720004 00000002 07000001", {Rule::ReservedBits}},
    {"SHOWACK with a further word",
     "8FCE0006 00000001 00000000 4E720004 00000002 07000000 00000000",
     {Rule::BytesAfterFields}},
    {"SHOW width 1 in two bytes", "8FCE0004 00000001 00000000 4E720003 05190001", {Rule::ShowWidth}},
    {"SHOW with a word of padding", "8FCE0005 00000001 00000000 4E720003 05000000 00000000", {Rule::ShowPadding}},
    {"LIR with 2 bytes of layer data",
     "8FCE0006 00000001 00000000 4E720005 00000002 01600002 AABB0000",
     {Rule::LirLayout}},
    {"LIR before a TWCC, which pads the whole string",
     "8FCE0006 00000001 00000000 4E720005 00000002 01600002 AABB0000"
     "8FCD0005 00000001 00000002 0001 0001 000001 00 2001 0400",
     {Rule::TransportCcPadding, Rule::LirLayout}},
    {"two rules in one datagram", "83CC0002 11223344 41424344 A0CF0001 00000004", {Rule::PaddingBit, Rule::AppSubtype}},
};

// Datagrams that come back as they came although a rule looks at them; the samples are more of them.
const char* const kIdentical[] = {
    "81CA0002 11223344 00000000",                                // a chunk without items
    "80CA0000",                                                  // no chunks
    "81CB0003 11223344 0461626364 000000",                       // BYE with a padded reason
    "8FCD0004 00000001 00000002 0001 0000 000001 00",            // TWCC without packets
    "8FCD0005 00000001 00000002 0001 0001 000001 00 6001 0000",  // TWCC, received without a delta
    "8ECD0005 00000001 00000002 0001 0001 8005 0000 00010000",   // CCFB with ECN 0
    "83CE0004 00000001 00000002 1060 DEADBEEF 0000",             // RPSI with 16 bits of padding
    "8FCE0005 00000001 00000000 52454D42 01 060000 00000002",    // REMB 2^17 * 2^1
    "8FCE0004 00000001 00000000 4E720003 05080100",              // SHOW
};

struct RefusedCase {
  const char* bytes;
  Rule rule;
  const char* remark;
};

// The first subpacket of each is an RR, so that the place is not the beginning.
const RefusedCase kRefusedByRule[] = {
    {"83CD0004 00000001 00000000 00000002 0A000028", Rule::TmmbnLength,
     "subpacket 1 (TMMBN, FMT 3) at byte 8: a TMMBN (FMT 3 here) is exactly 16 bytes"},
    {"80CB0000", Rule::ByeWithoutSources, "subpacket 1 (BYE, 0 sources) at byte 8: a BYE without sources is refused"},
    {"81CD0002 00000001 00000002", Rule::NoEntries,
     "subpacket 1 (NACK, FMT 1) at byte 8: a NACK, FIR, TSTR, TSTA or LIR without entries is refused"},
    {"84CE0002 00000001 00000002", Rule::NoEntries,
     "subpacket 1 (FIR, FMT 4) at byte 8: a NACK, FIR, TSTR, TSTA or LIR without entries is refused"},
    {"8FCE0003 00000001 00000002 4E720005", Rule::NoEntries,
     "subpacket 1 (LIR, FMT 15) at byte 8: a NACK, FIR, TSTR, TSTA or LIR without entries is refused"},
    {"83CE0003 00000001 00000002 1860DEAD", Rule::RpsiPaddingCount,
     "subpacket 1 (RPSI, FMT 3) at byte 8: an RPSI that counts more padding than it holds is refused"},
    {"A1CA0003 11223344 01000000 00000004", Rule::PaddingOctets,
     "subpacket 1 (SDES, 1 chunk) at byte 8: padding octets count as body; without them this kind is accepted"},
    {"A4CE0005 00000001 00000000 00000002 07000000 00000004", Rule::PaddingOctets,
     "subpacket 1 (FIR, FMT 4) at byte 8: padding octets count as body; without them this kind is accepted"},
};

const char* const kMalformed[][2] = {
    {"81C90001 00000001", "subpacket 1 (RR, 1 report block) at byte 8: its body is malformed"},
    {"81CD0003 00000001 00000002 0003", "at byte 8: type 205 announces 16 bytes, of which 14 are there"},
    {"80C9", "at byte 8: 2 bytes after the last subpacket, fewer than a header has"},
    {"40C90001 00000001", "at byte 8: version 1 instead of 2"},
    {"A1CA0002 11223344 01040003", "subpacket 1 (SDES, 1 chunk) at byte 8: its body is malformed"},
    {"84CE0003 00000001 00000000 00000002", "subpacket 1 (FIR, FMT 4) at byte 8: its body is malformed"},
    {"8FCE0004 00000001 00000000 52454D42 81000001", "subpacket 1 (REMB, FMT 15) at byte 8: its body is malformed"},
    {"8BCD0001 00000001", "subpacket 1 (RTPFB FMT 11) at byte 8: its body is malformed"},
    {"87CE0001 00000001", "subpacket 1 (PSFB FMT 7) at byte 8: its body is malformed"},
};

// The same in the registered dialect.
const ExplainedCase kExplainedRegistered[] = {
    {"RR with padding octets", "A0C90002 00000001 00000004", {Rule::PaddingOctetsDropped}},
    {"unknown type with padding octets", "A0CF0002 00000001 00000004", {Rule::PaddingOctetsDropped}},
    {"RR with three padding octets, which leave an octet", "A0C90002 00000001 AB000003", {Rule::NoWholeWords}},
    {"TWCC with two padding octets",
     "AFCD0006 00000001 00000002 0001 0004 000001 00 2004 04040404 0002",
     {Rule::PaddingOctetsDropped}},
    {"APP with subtype 3", "83CC0002 11223344 41424344", {Rule::AppSubtype}},
    {"BYE with an empty reason", "81CB0002 11223344 00000000", {Rule::ByeEmptyReason}},
    {"TMMBR with a media source", "83CD0004 00000001 00000005 00000002 00000200", {Rule::MediaSource}},
    {"house TMMBR with a media source", "82CD0004 00000001 00000005 00000002 000003E8", {Rule::MediaSource}},
    {"house TMMBR without entries", "82CD0002 00000001 00000000", {Rule::EmptyTmmbr}},
    {"TWCC vector closed early by a large delta",
     "8FCD0007 00000001 00000002 0001 0009 000001 00 2001 0007 4001 04 0100 000000",
     {Rule::TransportCcChunks, Rule::TransportCcPadding}},
    {"TWCC large delta 0005",
     "8FCD0005 00000001 00000002 0001 0001 000001 00 4001 0005",
     {Rule::TransportCcChunks, Rule::TransportCcDeltaSize}},
    {"CCFB of the house", "8ECD0005 00000001 00000002 0001 0001 8005 0000 00010000", {Rule::CcfbFormat}},
    {"CCFB of the house with ECN 1", "8ECD0005 00000001 00000002 0001 0001 A005 0000 00010000", {Rule::CcfbForeignEcn}},
    {"CCFB lost metric with an offset",
     "8BCD0005 00000001 00000002 0001 0001 0005 0000 00010000",
     {Rule::CcfbLostMetric}},
    {"FIR with reserved bits", "84CE0004 00000001 00000000 00000002 07000100", {Rule::ReservedBits}},
    {"RPSI with three padding octets",
     "A3CE0005 00000001 00000002 1860 A1A2A3 000000 00 000003",
     {Rule::PaddingOctetsDropped, Rule::RpsiPadding}},
    {"SHOW parameter of type 0", "8FCE0004 00000001 00000002 4E720003 2A 01 0000", {Rule::ShowParameterOfType0}},
};

const char* const kIdenticalRegistered[] = {
    "80CB0000",                                                  // a BYE of nobody
    "8BCD0005 00000001 00000002 0001 0001 A005 0000 00010000",   // a CCFB with ECN
    "83CD0004 00000001 00000000 00000002 00000200",              // a TMMBR
    "84CD0002 00000001 00000000",                                // a TMMBN that tells of no limit
    "8FCD0005 00000001 00000002 0001 0001 000001 00 4001 0180",  // a TWCC with a large delta
    "80CF0004 00000001 04000002 01020304 05060708",              // an XR
};

struct RefusedRegisteredCase {
  const char* bytes;
  Outcome outcome;
  const char* remark;
};

const RefusedRegisteredCase kRefusedRegistered[] = {
    {"81CD0002 00000001 00000002", Outcome::RefusedByRule,
     "subpacket 0 (NACK, FMT 1) at byte 0: a NACK, FIR, TSTR, TSTA or LIR without entries is refused"},
    {"A4CE0003 00000001 00000002 00000004", Outcome::RefusedByRule,
     "subpacket 0 (FIR, FMT 4) at byte 0: a NACK, FIR, TSTR, TSTA or LIR without entries is refused"},
    {"A1CB0001 11223344", Outcome::RefusedUnexplained,
     "subpacket 0 (BYE, 1 source) at byte 0: the padding count is 0 or more than the body has"},
    {"80CB0001 04414243", Outcome::RefusedUnexplained, "subpacket 0 (BYE, 0 sources) at byte 0: the body is too short"},
    {"8FCD0005 00000001 00000002 0001 0005 000001 00 2005 0404", Outcome::RefusedUnexplained,
     "subpacket 0 (TWCC, FMT 15) at byte 0: the body is too short"},
    {"83CD0003 00000001 00000000 00000001", Outcome::RefusedUnexplained,
     "subpacket 0 (TMMBR, FMT 3) at byte 0: the body is too short"},
};

constexpr const char* kReport = "80C90001 00000001";

}  // namespace

TEST(Verdict, ThereIsACaseForEveryRule) {
  std::set<Rule> tried{Rule::RembSourceCount};  // below, as its bytes are many
  for (const ExplainedCase& each : kExplained) tried.insert(each.rules.begin(), each.rules.end());
  for (const ExplainedCase& each : kExplainedRegistered) tried.insert(each.rules.begin(), each.rules.end());
  for (const RefusedCase& each : kRefusedByRule) tried.insert(each.rule);
  for (int rule = 0; rule <= static_cast<int>(Rule::PaddingOctets); ++rule) {
    EXPECT_TRUE(tried.contains(static_cast<Rule>(rule))) << Sentence(static_cast<Rule>(rule));
  }
}

TEST(Verdict, OfAWriteBackNamesTheRulesOfEveryDifference) {
  for (const ExplainedCase& each : kExplained) {
    SCOPED_TRACE(each.name);
    const test::Decoded decoded(each.bytes);
    EXPECT_STREQ(OutcomeName(decoded.verdict.outcome), "explained");
    EXPECT_EQ(decoded.verdict.rules, each.rules);
  }
}

TEST(Verdict, OfAWriteBackNamesNoRuleWhenAllBytesAreTheSame) {
  for (const char* bytes : kIdentical) {
    SCOPED_TRACE(bytes);
    const test::Decoded decoded(bytes);
    EXPECT_STREQ(OutcomeName(decoded.verdict.outcome), "identical");
    EXPECT_TRUE(decoded.verdict.rules.empty());
  }
}

TEST(Verdict, OfEverySampleNamesARuleUnlessItComesBackAsItCame) {
  for (const test::Sample& sample : test::Samples()) {
    SCOPED_TRACE(sample.name);
    const test::Decoded decoded(test::ToHex(sample.wire));
    EXPECT_STREQ(OutcomeName(decoded.verdict.outcome), sample.comes_back ? "identical" : "explained");
    EXPECT_EQ(decoded.verdict.rules.empty(), sample.comes_back);
  }
}

// What a peer may send instead of a sample: each bit flipped, and one word more.
std::vector<std::string> Variants(const std::string& wire) {
  std::vector<std::string> variants;
  for (std::size_t bit = 0; bit < 8 * wire.size(); ++bit) {
    variants.push_back(wire);
    variants.back()[bit / 8] = static_cast<char>(variants.back()[bit / 8] ^ 1 << bit % 8);
  }
  variants.push_back(wire + test::Hex("00000000"));
  const std::size_t words = wire.size() / 4;  // without the header's
  variants.back()[2] = static_cast<char>(words >> 8);
  variants.back()[3] = static_cast<char>(words);
  return variants;
}

TEST(Verdict, WhateverASampleBecomesARuleExplainsHowItComesBack) {
  for (const test::Sample& sample : test::Samples()) {
    for (const std::string& variant : Variants(sample.wire)) {
      const std::string hex = test::ToHex(variant);
      EXPECT_STRNE(OutcomeName(test::Decoded(hex).verdict.outcome), OutcomeName(Outcome::Unexplained)) << hex;
    }
  }
}

TEST(Verdict, ADifferenceThatNoRuleGivesIsUnexplained) {
  const std::string received = test::Hex("83CC0002 11223344 41424344");
  const LibraryPacket other(test::Hex("80CC0002 11223344 41424345"));
  const Verdict verdict = JudgeWriteBack(received, WalkSubpackets(received), other);
  EXPECT_EQ(verdict.outcome, Outcome::Unexplained);
  EXPECT_TRUE(verdict.rules.empty());
  ASSERT_EQ(verdict.remarks.size(), 1U);
  EXPECT_EQ(verdict.remarks[0], "12 bytes read, 12 written, first difference at byte 0, in subpacket 0 (APP)");
}

TEST(Verdict, TheDifferenceOfALaterSubpacketIsPlacedInIt) {
  const std::string received = test::Hex("80C90001 00000001 81CB0001 11223344");
  const LibraryPacket other(test::Hex("80C90001 00000001 81CB0001 11223345"));
  const Verdict verdict = JudgeWriteBack(received, WalkSubpackets(received), other);
  EXPECT_EQ(verdict.outcome, Outcome::Unexplained);
  EXPECT_EQ(verdict.remarks.at(0), "16 bytes read, 16 written, first difference at byte 15, in subpacket 1 (BYE)");
}

TEST(Verdict, BytesMissingAtTheEndAreUnexplained) {
  const std::string received = test::Hex("80C90001 00000001 81CB0001 11223344");
  const LibraryPacket other(test::Hex("80C90001 00000001"));
  const Verdict verdict = JudgeWriteBack(received, WalkSubpackets(received), other);
  EXPECT_EQ(verdict.outcome, Outcome::Unexplained);
  EXPECT_EQ(verdict.remarks.at(0), "16 bytes read, 8 written, first difference at byte 8, in subpacket 1 (BYE)");
}

TEST(Verdict, APacketThatIsNotWrittenIsUnexplained) {
  const std::string received = test::Hex("80C90001 00000001");
  const LibraryPacket other(test::Hex("82CD0002 00000001 00000000"));  // read, but never written
  EXPECT_EQ(JudgeWriteBack(received, WalkSubpackets(received), other).outcome, Outcome::Unexplained);
}

// What becomes of the only subpacket in the registered dialect.
Verdict JudgedRegistered(const std::string& bytes) {
  const SubpacketWalk walk = WalkSubpackets(bytes, Dialect::registered);
  if (walk.subpackets.size() != 1) return {Outcome::CutOff, {}, {}};
  return JudgeSubpacket(walk.subpackets.front(), LibraryPacket(bytes, Dialect::registered, Reading::Tolerant));
}

TEST(Verdict, OfTheRegisteredDialectNamesTheRulesOfEveryDifference) {
  for (const ExplainedCase& each : kExplainedRegistered) {
    SCOPED_TRACE(each.name);
    const Verdict verdict = JudgedRegistered(test::Hex(each.bytes));
    EXPECT_STREQ(OutcomeName(verdict.outcome), "explained");
    EXPECT_EQ(verdict.rules, each.rules);
  }
}

TEST(Verdict, OfTheRegisteredDialectNamesNoRuleWhenAllBytesAreTheSame) {
  for (const char* bytes : kIdenticalRegistered) {
    SCOPED_TRACE(bytes);
    const Verdict verdict = JudgedRegistered(test::Hex(bytes));
    EXPECT_STREQ(OutcomeName(verdict.outcome), "identical");
    EXPECT_TRUE(verdict.rules.empty());
  }
}

TEST(Verdict, OfARefusalInTheRegisteredDialectNamesTheRuleOrTheReason) {
  for (const auto& [bytes, outcome, remark] : kRefusedRegistered) {
    const Verdict verdict = JudgedRegistered(test::Hex(bytes));
    EXPECT_EQ(verdict.outcome, outcome) << bytes;
    EXPECT_EQ(verdict.remarks, std::vector<std::string>{remark});
  }
}

// The variants of a datagram, and it with so many octets of padding at its end.
std::vector<std::string> PaddedVariants(const std::string& wire) {
  std::vector<std::string> variants = Variants(wire);
  for (const std::size_t octets : {1U, 2U, 3U, 4U, 8U}) {
    std::string padded = wire + std::string(PaddingAfter(octets) + octets, '\0');
    const std::size_t words = padded.size() / 4 - 1;
    padded[0] = static_cast<char>(padded[0] | 0x20);
    padded[2] = static_cast<char>(words >> 8);
    padded[3] = static_cast<char>(words);
    padded.back() = static_cast<char>(octets);
    variants.push_back(padded);
  }
  return variants;
}

TEST(Verdict, WhateverASampleBecomesInTheRegisteredDialectARuleExplainsHowItComesBack) {
  std::map<Outcome, std::size_t> outcomes;
  for (const test::Sample& sample : test::Samples()) {
    std::string wire = sample.wire;
    const LibraryPacket house(wire);
    if (const auto registered = Encoded(house.objects(), Dialect::registered)) wire = *registered;
    for (const std::string& variant : PaddedVariants(wire)) {
      const Outcome outcome = JudgedRegistered(variant).outcome;
      EXPECT_STRNE(OutcomeName(outcome), OutcomeName(Outcome::Unexplained)) << test::ToHex(variant);
      ++outcomes[outcome];
    }
  }
  EXPECT_GT(outcomes[Outcome::Identical], 1000U);
  EXPECT_GT(outcomes[Outcome::Explained], 500U);
}

TEST(Verdict, OfARefusalNamesTheSubpacketAndTheRule) {
  for (const RefusedCase& each : kRefusedByRule) {
    SCOPED_TRACE(each.remark);
    const test::Decoded decoded(std::string(kReport) + each.bytes);
    EXPECT_EQ(decoded.verdict.outcome, Outcome::RefusedByRule);
    EXPECT_EQ(decoded.verdict.rules, std::vector<Rule>{each.rule});
    EXPECT_EQ(decoded.verdict.remarks, std::vector<std::string>{each.remark});
  }
}

TEST(Verdict, ARembWith128SourcesIsRefusedByRule) {
  std::string bytes = "8FCE0084 00000001 00000000 52454D42 80000001";
  for (int i = 0; i < 128; ++i) bytes += "00000002";
  const test::Decoded decoded(bytes);
  EXPECT_EQ(decoded.verdict.outcome, Outcome::RefusedByRule);
  EXPECT_EQ(decoded.verdict.rules, std::vector<Rule>{Rule::RembSourceCount});
}

TEST(Verdict, WhatIsMalformedIsExplainedByNoRule) {
  for (const auto& [bytes, remark] : kMalformed) {
    SCOPED_TRACE(remark);
    const test::Decoded decoded(std::string(kReport) + bytes);
    EXPECT_EQ(decoded.verdict.outcome, Outcome::RefusedUnexplained);
    EXPECT_TRUE(decoded.verdict.rules.empty());
    EXPECT_EQ(decoded.verdict.remarks, std::vector<std::string>{remark});
  }
}

TEST(Verdict, OneMalformedSubpacketAmongThoseRefusedByRuleIsNotExplained) {
  const test::Decoded decoded("80CB0000 81C90001 00000001");
  EXPECT_EQ(decoded.verdict.outcome, Outcome::RefusedUnexplained);
  EXPECT_EQ(decoded.verdict.remarks.size(), 2U);
}

TEST(Verdict, ADatagramThatTheCaptureCutOffIsNotJudged) {
  RtcpDatagram datagram = test::DatagramOf("80C90001 0000");
  datagram.missing = 2;
  const DecodedDatagram decoded(datagram, Dialect::house, false);
  EXPECT_EQ(decoded.verdict.outcome, Outcome::CutOff);
  EXPECT_EQ(decoded.verdict.remarks, std::vector<std::string>{"the capture holds 6 of its 8 bytes"});
}

}  // namespace zunrtcp
