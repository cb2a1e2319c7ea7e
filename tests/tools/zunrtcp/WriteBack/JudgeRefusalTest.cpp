#include <gtest/gtest.h>

#include "tests/tools/zunrtcp/Decoded.h"

namespace zunrtcp {

namespace {

struct RefusedCase {
  const char* bytes;
  Rule rule;
  const char* remark;
};

// The first subpacket of each is an RR, so that the place is not the beginning.
const RefusedCase kRefusedByRule[] = {
    {"83cd0004 00000001 00000000 00000002 0a000028", Rule::TmmbnLength,
     "subpacket 1 (TMMBN, FMT 3) at byte 8: a TMMBN (FMT 3 here) is exactly 16 bytes"},
    {"80cb0000", Rule::ByeWithoutSources, "subpacket 1 (BYE, 0 sources) at byte 8: a BYE without sources is refused"},
    {"81cd0002 00000001 00000002", Rule::NoEntries,
     "subpacket 1 (NACK, FMT 1) at byte 8: a NACK, FIR, TSTR, TSTA or LIR without entries is refused"},
    {"84ce0002 00000001 00000002", Rule::NoEntries,
     "subpacket 1 (FIR, FMT 4) at byte 8: a NACK, FIR, TSTR, TSTA or LIR without entries is refused"},
    {"8fce0003 00000001 00000002 4e720005", Rule::NoEntries,
     "subpacket 1 (LIR, FMT 15) at byte 8: a NACK, FIR, TSTR, TSTA or LIR without entries is refused"},
    {"83ce0003 00000001 00000002 1860dead", Rule::RpsiPaddingCount,
     "subpacket 1 (RPSI, FMT 3) at byte 8: an RPSI that counts more padding than it holds is refused"},
    {"a1ca0003 11223344 01000000 00000004", Rule::PaddingOctets,
     "subpacket 1 (SDES, 1 chunk) at byte 8: padding octets count as body; without them this kind is accepted"},
    {"a4ce0005 00000001 00000000 00000002 07000000 00000004", Rule::PaddingOctets,
     "subpacket 1 (FIR, FMT 4) at byte 8: padding octets count as body; without them this kind is accepted"},
};

const char* const kMalformed[][2] = {
    {"81c90001 00000001", "subpacket 1 (RR, 1 report block) at byte 8: its body is malformed"},
    {"81cd0003 00000001 00000002 0003", "at byte 8: type 205 announces 16 bytes, of which 14 are there"},
    {"80c9", "at byte 8: 2 bytes behind the last subpacket, fewer than a header has"},
    {"40c90001 00000001", "at byte 8: version 1 instead of 2"},
    {"a1ca0002 11223344 01040003", "subpacket 1 (SDES, 1 chunk) at byte 8: its body is malformed"},
    {"84ce0003 00000001 00000000 00000002", "subpacket 1 (FIR, FMT 4) at byte 8: its body is malformed"},
    {"8fce0004 00000001 00000000 52454d42 81000001", "subpacket 1 (REMB, FMT 15) at byte 8: its body is malformed"},
};

constexpr const char* kReport = "80c90001 00000001";

}  // namespace

TEST(JudgeRefusal, NamesTheSubpacketAndTheRule) {
  for (const RefusedCase& each : kRefusedByRule) {
    SCOPED_TRACE(each.remark);
    const test::Decoded decoded(std::string(kReport) + each.bytes);
    EXPECT_EQ(decoded.verdict.outcome, Outcome::RefusedByRule);
    EXPECT_EQ(decoded.verdict.rules, std::vector<Rule>{each.rule});
    EXPECT_EQ(decoded.verdict.remarks, std::vector<std::string>{each.remark});
  }
}

TEST(JudgeRefusal, ARembWith128SourcesIsRefusedByRule) {
  std::string bytes = "8fce0084 00000001 00000000 52454d42 80000001";
  for (int i = 0; i < 128; ++i) bytes += "00000002";
  const test::Decoded decoded(bytes);
  EXPECT_EQ(decoded.verdict.outcome, Outcome::RefusedByRule);
  EXPECT_EQ(decoded.verdict.rules, std::vector<Rule>{Rule::RembSourceCount});
}

TEST(JudgeRefusal, WhatIsMalformedIsExplainedByNoRule) {
  for (const auto& [bytes, remark] : kMalformed) {
    SCOPED_TRACE(remark);
    const test::Decoded decoded(std::string(kReport) + bytes);
    EXPECT_EQ(decoded.verdict.outcome, Outcome::RefusedUnexplained);
    EXPECT_TRUE(decoded.verdict.rules.empty());
    EXPECT_EQ(decoded.verdict.remarks, std::vector<std::string>{remark});
  }
}

TEST(JudgeRefusal, OneMalformedSubpacketAmongThoseRefusedByRuleIsNotExplained) {
  const test::Decoded decoded("80cb0000 81c90001 00000001");
  EXPECT_EQ(decoded.verdict.outcome, Outcome::RefusedUnexplained);
  EXPECT_EQ(decoded.verdict.remarks.size(), 2U);
}

TEST(JudgeRefusal, ADatagramThatTheCaptureCutOffIsNotJudged) {
  DecodedDatagram decoded;
  decoded.datagram.payload = test::Hex("80c90001 0000");
  decoded.datagram.missing = 2;
  Decode(false, &decoded);
  EXPECT_EQ(decoded.verdict.outcome, Outcome::CutOff);
  EXPECT_EQ(decoded.verdict.remarks, std::vector<std::string>{"the capture holds 6 of its 8 bytes"});
}

}  // namespace zunrtcp
