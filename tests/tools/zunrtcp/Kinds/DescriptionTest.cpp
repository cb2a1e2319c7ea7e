// What is said about each kind: in words, and for programs.
#include "tools/zunrtcp/Kinds/Description.h"

#include <gtest/gtest.h>

#include <vector>

#include "tests/tools/zunrtcp/Decoded.h"

namespace zunrtcp {

namespace {

struct Words {
  const char* bytes;
  std::string line;
  std::vector<std::string> items;
};

const Words kWords[] = {
    {"81C8000C 11223344 EEAB68CD 80000000 00000064 00000001 00000002"
     "55667788 40 FFFFFF 00020003 00000004 68CD5199 00018000",
     "sender 0x11223344, NTP 2026-11-21 00:48:13.500000 (0xeeab68cd.80000000), RTP time 100, 1 packet, 2 octets",
     {"block on 0x55667788, lost 64/256 (25.0 %), -1 in all, highest sequence 3 in cycle 2, jitter 4, last SR "
      "0x68cd5199, 1.500000 s ago"}},
    {"80C80006 11223344 00000010 80000000 00000064 00000001 00000002",
     "sender 0x11223344, NTP 0x00000010.80000000, RTP time 100, 1 packet, 2 octets",
     {}},
    {"81C90008 11223344 55667788 00 000000 00000003 00000004 00000000 00000000 AABBCCDD",
     "sender 0x11223344, extension aabbccdd",
     {"block on 0x55667788, lost 0/256 (0.0 %), 0 in all, highest sequence 3 in cycle 0, jitter 4, no SR yet"}},
    {"82CA0007 11223344 0103 610A22 0802 0178 0F02 7631 000000 55667788 0800 0000",
     "",
     {R"(chunk of 0x11223344: CNAME "a\x0a\"", PRIV "x" = "", MID "v1")", R"(chunk of 0x55667788: PRIV "")"}},
    {"82CB0004 11223344 55667788 0474 6F6F21 000000", R"(0x11223344 0x55667788 left, reason "too!")", {}},
    {"80CC0003 11223344 4142430A DEADBEEF", R"(source 0x11223344, name "ABC\x0a", 4 bytes of data, data deadbeef)", {}},
    {"81CD0004 00000001 00000002 FFFE 0005 0064 0000",
     "sender 0x00000001, source 0x00000002, lost 65534 65535 1 100",
     {}},
    {"82CD0004 00000001 00000000 00000002 000003E8",
     "sender 0x00000001, source 0x00000000",
     {"of 0x00000002, at most 1000 bit/s"}},
    {"83CD0003 00000001 00000002 000003E8", "sender 0x00000001, source 0x00000002, at most 1000 bit/s", {}},
    {"8FCD0006 00000001 00000002 FFFF 0005 FFFFFF 07 D930 04 FFFC 08 0000",
     "sender 0x00000001, source 0x00000002, from sequence 65535, 5 packets, 4 arrived, reference time -1 x 64 ms, "
     "feedback number 7, arrivals in ms: 1.00 0.00 2.00 x ?",
     {}},
    {"8ECD0006 00000001 00000002 0064 0003 A000 0000 FFFF 0000 00018000",
     "sender 0x00000001, report time 1.500000 s (16.16)",
     {"stream 0x00000002, from sequence 100, 3 packets, 1 lost (33.3 %), ECN ECT(1) x1 CE x1"}},
    {"9ECD0007 00000001 00000002 00000003 00000004 00000005 00000006 00000007",
     "sender 0x00000001, source 0x00000002, timestamp 3, delay 4 us, data rate 5, loss rate 6, ABA data rate 7",
     {}},
    {"8BCD0003 00000001 00000002 DEADBEEF", "sender 0x00000001, source 0x00000002, data deadbeef", {}},
    {"81CE0002 00000001 00000002", "sender 0x00000001, source 0x00000002", {}},
    {"82CE0003 00000001 00000002 01E804C5",
     "sender 0x00000001, source 0x00000002",
     {"lost from macroblock 61, as many as 19, in picture 5"}},
    {"83CE0003 00000001 00000002 0360DEAD",
     "sender 0x00000001, source 0x00000002, payload type 96, unused bits 3, bit string dead",
     {}},
    {"84CE0004 00000001 00000000 00000002 07000000",
     "sender 0x00000001, source 0x00000000",
     {"to 0x00000002, command 7"}},
    {"85CE0004 00000001 00000000 00000002 07000003",
     "sender 0x00000001, source 0x00000000",
     {"to 0x00000002, request 7, trade-off 3"}},
    {"86CE0004 00000001 00000000 00000002 07000003",
     "sender 0x00000001, source 0x00000000",
     {"to 0x00000002, request 7, trade-off 3"}},
    {"8FCE0006 00000001 00000000 52454D42 02 060F42 00000002 00000003",
     "sender 0x00000001, source 0x00000000, 269.956 kbit/s, for 0x00000002 0x00000003",
     {}},
    {"8FCE000A 00000001 00000000 4E720001 00000003 00000004 00000005 00000006 00000007 FFFFFFFF 00000009",
     "sender 0x00000001, source 0x00000000, timestamp 3, delay 4 us, data rate 5, loss rate 6, ABA data rate 7, "
     "average "
     "delay difference -1, average arrival difference 9",
     {}},
    {"8FCE0004 00000001 00000000 4E720002 000003E8",
     "sender 0x00000001, source 0x00000000, available link bit rate 1000",
     {}},
    {"8FCE0006 00000001 00000000 4E720003 05 0801 190780 2A012345 A001",
     "sender 0x00000001, source 0x00000000, request 5, enable 1, width 1920, frame rate 74565, parameter of type 20 1",
     {}},
    {"8FCE0005 00000001 00000000 4E720004 00000002 07000000",
     "sender 0x00000001, source 0x00000000, request 7, of 0x00000002",
     {}},
    {"8FCE0006 00000001 00000000 4E720005 00000002 01600002 AABB0000",
     "sender 0x00000001, source 0x00000000",
     {"source 0x00000002, sequence 1, payload type 96, layer data aabb"}},
    {"8FCE0003 00000001 00000000 4C4E5446", "sender 0x00000001, source 0x00000000, data 4c4e5446", {}},
    {"80CF0001 DEADBEEF", "data deadbeef", {}},
};

}  // namespace

TEST(Description, SaysEveryFieldOfEveryKind) {
  for (const Words& each : kWords) {
    SCOPED_TRACE(each.bytes);
    const test::Decoded decoded(each.bytes);
    ASSERT_EQ(decoded.subpackets.size(), 1U);
    ASSERT_NE(decoded.verdict.outcome, Outcome::RefusedUnexplained);
    EXPECT_EQ(decoded.subpackets[0].description.Line(), each.line);
    EXPECT_EQ(decoded.subpackets[0].description.ItemLines(), each.items);
  }
}

TEST(Description, GivesProgramsTheSameFields) {
  const test::Decoded decoded("81C90007 11223344 55667788 40 FFFFFF 00020003 00000004 68CD5199 00018000");
  EXPECT_EQ(decoded.subpackets.at(0).description.ToValue().dump(),
            R"({"sender":287454020,"reportBlocks":[{"source":1432778632,"fractionLost":64,"packetsLost":-1,)"
            R"("highestSequence":131075,"jitter":4,"lastSr":1758286233,"delaySinceLastSr":98304}],"extension":""})");
}

TEST(Description, TextForProgramsIsEscapedAndGivenAsBytesToo) {
  const test::Decoded decoded("81CB0003 11223344 03 C3A922 00000000");
  ASSERT_EQ(decoded.verdict.outcome, Outcome::RefusedUnexplained);  // three zeros too many
  const test::Decoded bye("81CB0002 11223344 03 C3A922");
  const Description::Value value = bye.subpackets.at(0).description.ToValue();
  EXPECT_EQ(value["reason"], R"(\xc3\xa9\")");
  EXPECT_EQ(value["reasonHex"], "c3a922");
}

TEST(Description, LongListsAreCutUnlessVerbose) {
  const char* feedback = "8FCD0008 00000001 00000002 0001 000E 000001 00 200E 0404040404040404040404040404";
  const test::Decoded brief(feedback);
  EXPECT_NE(brief.subpackets.at(0).description.Line().find("12.00 ... (2 more)"), std::string::npos);
  const test::Decoded verbose(feedback, true);
  EXPECT_NE(verbose.subpackets.at(0).description.Line().find("12.00 13.00 14.00"), std::string::npos);
  EXPECT_EQ(brief.subpackets[0].description.ToValue()["packets"].size(), 14U);
}

TEST(Description, CcfbArrivalsAreToldWhenVerbose) {
  const test::Decoded verbose("8ECD0006 00000001 00000002 0064 0003 8400 0000 9FFF 0000 00018000", true);
  EXPECT_EQ(verbose.subpackets.at(0).description.ItemLines().at(0),
            "stream 0x00000002, from sequence 100, 3 packets, 1 lost (33.3 %), ECN Not-ECT x2, ms before the report: "
            "1000.0 x ?");
}

TEST(Description, OfARefusedDatagramWhatIsReadByItselfIsDescribed) {
  const test::Decoded decoded("80C90001 00000001 80CB0000");
  ASSERT_EQ(decoded.verdict.outcome, Outcome::RefusedByRule);
  EXPECT_EQ(decoded.subpackets.at(0).description.Line(), "sender 0x00000001");
  EXPECT_EQ(decoded.subpackets.at(1).description.Line(), "");
}

TEST(Description, WhatTheLibraryLogsIsKept) {
  const test::Decoded decoded("82CD0004 00000001 00000005 00000002 000003E8");
  EXPECT_EQ(decoded.messages, std::vector<std::string>{"Non-zero SSRC of media source in RTCP TMMBR message"});
}

}  // namespace zunrtcp
