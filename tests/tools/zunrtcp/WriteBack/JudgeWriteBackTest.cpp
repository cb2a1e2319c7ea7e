#include <gtest/gtest.h>

#include <vector>

#include "tests/tools/zunrtcp/Decoded.h"
#include "tools/zunrtcp/WriteBack/Verdict.h"

namespace zunrtcp {

namespace {

// Datagrams that come back otherwise than they came, and the rules that explain it.
struct ExplainedCase {
  const char* name;
  const char* bytes;
  std::vector<Rule> rules;
};

const ExplainedCase kExplained[] = {
    {"padding bit of an RR, whose padding is kept as extension", "a0c90002 00000001 00000004", {Rule::PaddingBit}},
    {"padding bit of an unknown type", "a0cf0001 00000004", {Rule::PaddingBit}},
    {"SDES item of type 20 before a CNAME", "81ca0003 11223344 140178 010161 0000", {Rule::SdesItemSkipped}},
    {"SDES first item of type 0 with text", "81ca0003 11223344 000178 010161 0000", {Rule::SdesItemSkipped}},
    {"SDES chunk padded with FF", "81ca0002 11223344 0100 00ff", {Rule::SdesPadding}},
    {"BYE reason padded with FF", "81cb0002 11223344 0178ffff", {Rule::ByePadding}},
    {"BYE with an empty reason", "81cb0002 11223344 00000000", {Rule::ByeEmptyReason}},
    {"APP with subtype 3", "83cc0002 11223344 41424344", {Rule::AppSubtype}},
    {"TMMBR with a media source", "82cd0004 00000001 00000005 00000002 000003e8", {Rule::MediaSource}},
    {"TMMBR without entries", "82cd0002 00000001 00000000", {Rule::EmptyTmmbr}},
    {"TWCC run written as a vector",
     "8fcd0005 00000001 00000002 0001 0002 000001 00 b000 0404",
     {Rule::TransportCcChunks}},
    {"TWCC two runs of one symbol",
     "8fcd0006 00000001 00000002 0001 0002 000001 00 2001 2001 0404 0000",
     {Rule::TransportCcChunks, Rule::TransportCcPadding}},
    {"TWCC vector closed early by a large delta",
     "8fcd0007 00000001 00000002 0001 0008 000001 00 d000 4001 04 0100 00000000 00",
     {Rule::TransportCcChunks, Rule::TransportCcPadding}},
    {"TWCC large delta 0180", "8fcd0005 00000001 00000002 0001 0001 000001 00 4001 0180", {Rule::TransportCcDeltaSign}},
    {"TWCC large delta 0005",
     "8fcd0005 00000001 00000002 0001 0001 000001 00 4001 0005",
     {Rule::TransportCcChunks, Rule::TransportCcDeltaSize}},
    {"TWCC with two of five deltas",
     "8fcd0005 00000001 00000002 0001 0005 000001 00 2005 0404",
     {Rule::TransportCcChunks, Rule::TransportCcDeltasMissing}},
    {"TWCC with marked padding",
     "afcd0006 00000001 00000002 0001 0001 000001 00 2001 04 00 00000004",
     {Rule::PaddingBit, Rule::TransportCcPadding}},
    {"CCFB metric with ECN 1", "8ecd0005 00000001 00000002 0001 0001 a005 0000 00010000", {Rule::CcfbEcn}},
    {"CCFB lost metric with an offset",
     "8ecd0005 00000001 00000002 0001 0001 0005 0000 00010000",
     {Rule::CcfbLostMetric}},
    {"CCFB stream padded with FF", "8ecd0005 00000001 00000002 0001 0001 8005 ffff 00010000", {Rule::CcfbPadding}},
    {"FIR with reserved bits", "84ce0004 00000001 00000000 00000002 07000100", {Rule::ReservedBits}},
    {"TSTR with a media source and reserved bits",
     "85ce0004 00000001 00000005 00000002 070000e3",
     {Rule::MediaSource, Rule::ReservedBits}},
    {"TSTA with reserved bits", "86ce0004 00000001 00000005 00000002 070000e3", {Rule::ReservedBits}},
    {"RPSI whose padding is not zero", "83ce0003 00000001 00000002 0860 dead", {Rule::RpsiPadding}},
    {"RPSI with the first payload type bit set", "83ce0003 00000001 00000002 00e0 dead", {Rule::ReservedBits}},
    {"REMB 1 * 2^1", "8fce0005 00000001 00000000 52454d42 01 040001 00000002", {Rule::RembMantissa}},
    {"REMB 0 * 2^5", "8fce0005 00000001 00000000 52454d42 01 140000 00000002", {Rule::RembMantissa}},
    {"AFB ABAFB with a further word",
     "8fce000b 00000001 00000000 4e720001 00000001 00000002 00000003 00000004 00000005 00000006 00000007 00000008",
     {Rule::BytesBehindFields}},
    {"ALBR with a further word", "8fce0005 00000001 00000000 4e720002 000003e8 00000001", {Rule::BytesBehindFields}},
    {"SHOWACK with trailing bytes", "8fce0005 00000001 00000000 4e720004 00000002 07000001", {Rule::ReservedBits}},
    {"SHOWACK with a further word",
     "8fce0006 00000001 00000000 4e720004 00000002 07000000 00000000",
     {Rule::BytesBehindFields}},
    {"SHOW width 1 in two bytes", "8fce0004 00000001 00000000 4e720003 05190001", {Rule::ShowWidth}},
    {"SHOW with a word of padding", "8fce0005 00000001 00000000 4e720003 05000000 00000000", {Rule::ShowPadding}},
    {"LIR with 2 bytes of layer data",
     "8fce0006 00000001 00000000 4e720005 00000002 01600002 aabb0000",
     {Rule::LirLayout}},
    {"LIR before a TWCC, which pads the whole string",
     "8fce0006 00000001 00000000 4e720005 00000002 01600002 aabb0000"
     "8fcd0005 00000001 00000002 0001 0001 000001 00 2001 0400",
     {Rule::TransportCcPadding, Rule::LirLayout}},
    {"two rules in one datagram", "83cc0002 11223344 41424344 a0cf0001 00000004", {Rule::PaddingBit, Rule::AppSubtype}},
};

// Datagrams that come back as they came although a rule looks at them.
const char* const kIdentical[] = {
    "80c90001 00000001",
    "81ca0002 11223344 00000000",                                // a chunk without items
    "80ca0000",                                                  // no chunks
    "81cb0003 11223344 0461626364 000000",                       // BYE with a padded reason
    "82cd0004 00000001 00000000 00000002 000003e8",              // TMMBR
    "83cd0003 00000001 00000005 000003e8",                       // TMMBN
    "8fcd0004 00000001 00000002 0001 0000 000001 00",            // TWCC without packets
    "8fcd0005 00000001 00000002 0001 0001 000001 00 6001 0000",  // TWCC, received without a delta
    "8ecd0005 00000001 00000002 0001 0001 8005 0000 00010000",   // CCFB with ECN 0
    "83ce0004 00000001 00000002 1060 deadbeef 0000",             // RPSI with 16 bits of padding
    "8fce0005 00000001 00000000 52454d42 01 060000 00000002",    // REMB 2^17 * 2^1
    "8fce0004 00000001 00000000 4e720003 05080100",              // SHOW
    "8fce0003 00000001 00000000 4e720009",                       // a house message of unknown number
    "8bcd0003 00000001 00000002 00000003",                       // RTPFB of unknown format
};

}  // namespace

TEST(JudgeWriteBack, NamesTheRulesOfEveryDifference) {
  for (const ExplainedCase& each : kExplained) {
    SCOPED_TRACE(each.name);
    const test::Decoded decoded(each.bytes);
    EXPECT_STREQ(OutcomeName(decoded.verdict.outcome), "explained");
    EXPECT_EQ(decoded.verdict.rules, each.rules);
  }
}

TEST(JudgeWriteBack, NamesNoRuleWhenAllBytesAreTheSame) {
  for (const char* bytes : kIdentical) {
    SCOPED_TRACE(bytes);
    const test::Decoded decoded(bytes);
    EXPECT_STREQ(OutcomeName(decoded.verdict.outcome), "identical");
    EXPECT_TRUE(decoded.verdict.rules.empty());
  }
}

TEST(JudgeWriteBack, ADifferenceThatNoRuleGivesIsUnexplained) {
  const std::string received = test::Hex("83cc0002 11223344 41424344");
  const LibraryPacket other(test::Hex("80cc0002 11223344 41424345"));
  const Verdict verdict = JudgeWriteBack(received, WalkSubpackets(received), other);
  EXPECT_EQ(verdict.outcome, Outcome::Unexplained);
  EXPECT_TRUE(verdict.rules.empty());
  ASSERT_EQ(verdict.remarks.size(), 1U);
  EXPECT_EQ(verdict.remarks[0], "12 bytes read, 12 written, first difference at byte 0, in subpacket 0 (APP)");
}

TEST(JudgeWriteBack, TheDifferenceOfALaterSubpacketIsPlacedInIt) {
  const std::string received = test::Hex("80c90001 00000001 81cb0001 11223344");
  const LibraryPacket other(test::Hex("80c90001 00000001 81cb0001 11223345"));
  const Verdict verdict = JudgeWriteBack(received, WalkSubpackets(received), other);
  EXPECT_EQ(verdict.outcome, Outcome::Unexplained);
  EXPECT_EQ(verdict.remarks.at(0), "16 bytes read, 16 written, first difference at byte 15, in subpacket 1 (BYE)");
}

TEST(JudgeWriteBack, BytesMissingAtTheEndAreUnexplained) {
  const std::string received = test::Hex("80c90001 00000001 81cb0001 11223344");
  const LibraryPacket other(test::Hex("80c90001 00000001"));
  const Verdict verdict = JudgeWriteBack(received, WalkSubpackets(received), other);
  EXPECT_EQ(verdict.outcome, Outcome::Unexplained);
  EXPECT_EQ(verdict.remarks.at(0), "16 bytes read, 8 written, first difference at byte 8, in subpacket 1 (BYE)");
}

TEST(JudgeWriteBack, APacketThatIsNotWrittenIsUnexplained) {
  const std::string received = test::Hex("80c90001 00000001");
  const LibraryPacket other(test::Hex("82cd0002 00000001 00000000"));  // read, but never written
  EXPECT_EQ(JudgeWriteBack(received, WalkSubpackets(received), other).outcome, Outcome::Unexplained);
}

}  // namespace zunrtcp
