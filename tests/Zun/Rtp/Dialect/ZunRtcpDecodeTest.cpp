// What is read and what is refused, and how that is told. What decoding costs: ZunRtcpDecodeMemoryTest. That the
// house's dialect is that of the functions without one: ZunRtcpDecodeAgreementTest.
#include "Zun/Rtp/Dialect/ZunRtcpDecode.h"

#include <gtest/gtest.h>

#include "tests/support/OpenDoor.h"
#include "tests/support/Samples.h"

namespace {

using namespace test;

constexpr char kRr[] = "80C90001 01020304";

// One subpacket that is refused, after a receiver report that is not.
struct Refusal {
  const char* what;
  ZunRtcpDialect dialect;
  const char* wire;
  ZunRtcpDecodeReason reason;
  ZunSizeT stopped_at;  // from the beginning of the subpacket
};

const Refusal kRefusals[] = {
    {"SR without its last field", kHouse, "80C80005 00000001 00000002 00000003 00000004 00000005",
     ZUN_RTCP_DECODE_REASON_TOO_SHORT, 24},
    {"SR without anything", kHouse, "80C80000", ZUN_RTCP_DECODE_REASON_TOO_SHORT, 4},
    {"RR whose second block is cut off", kHouse,
     "82C90008 00000001 00000002 00000003 00000004 00000005 00000006 00000007 00000008",
     ZUN_RTCP_DECODE_REASON_TOO_SHORT, 32},
    {"SDES whose item passes the end", kHouse, "81CA0002 00000001 01054141", ZUN_RTCP_DECODE_REASON_TOO_SHORT, 10},
    {"SDES whose list has no end", kHouse, "81CA0002 00000001 01014101", ZUN_RTCP_DECODE_REASON_TOO_SHORT, 12},
    {"SDES with too few chunks", kHouse, "82CA0002 00000001 01014100", ZUN_RTCP_DECODE_REASON_TOO_SHORT, 12},
    {"SDES without chunks, with a word", kHouse, "80CA0001 00000000", ZUN_RTCP_DECODE_REASON_LEFT_OVER, 4},
    {"SDES with a word after its chunk", kHouse, "81CA0003 00000001 01014100 00000000",
     ZUN_RTCP_DECODE_REASON_LEFT_OVER, 12},
    {"BYE of nobody", kHouse, "80CB0000", ZUN_RTCP_DECODE_REASON_NO_ENTRIES, 4},
    {"BYE with too few sources", kHouse, "82CB0001 00000001", ZUN_RTCP_DECODE_REASON_TOO_SHORT, 8},
    {"BYE whose reason passes the end", kHouse, "81CB0002 00000001 04414141", ZUN_RTCP_DECODE_REASON_TOO_SHORT, 9},
    {"BYE with a word after its reason", kHouse, "81CB0003 00000001 03414141 00000000",
     ZUN_RTCP_DECODE_REASON_LEFT_OVER, 9},
    {"APP without its name", kHouse, "80CC0001 00000001", ZUN_RTCP_DECODE_REASON_TOO_SHORT, 8},
    {"APP whose padding leaves half a word", kRegistered, "A0CC0003 00000001 41414141 42420002",
     ZUN_RTCP_DECODE_REASON_LEFT_OVER, 12},
    {"NACK of nothing", kHouse, "81CD0002 00000001 00000002", ZUN_RTCP_DECODE_REASON_NO_ENTRIES, 12},
    {"NACK without a media source", kHouse, "81CD0001 00000001", ZUN_RTCP_DECODE_REASON_TOO_SHORT, 8},
    {"NACK whose padding leaves half a map", kRegistered, "A1CD0003 00000001 00000002 00050002",
     ZUN_RTCP_DECODE_REASON_TOO_SHORT, 12},
    {"house TMMBR with half an entry", kHouse, "82CD0005 00000001 00000000 00000002 00000003 00000004",
     ZUN_RTCP_DECODE_REASON_TOO_SHORT, 20},
    {"house TMMBN with a word too many", kHouse, "83CD0004 00000001 00000002 00000003 00000004",
     ZUN_RTCP_DECODE_REASON_LEFT_OVER, 16},
    {"registered TMMBR", kRegistered, "83CD0004 00000001 00000000 00000002 00000003", ZUN_RTCP_DECODE_REASON_NO_OBJECT,
     4},
    {"house CCFB with half a stream", kHouse, "8ECD0003 00000001 00000002 00000003", ZUN_RTCP_DECODE_REASON_TOO_SHORT,
     16},
    {"house CCFB without a timestamp", kHouse, "8ECD0001 00000001", ZUN_RTCP_DECODE_REASON_TOO_SHORT, 8},
    {"registered CCFB whose metrics are cut off", kRegistered, "8BCD0005 00000001 00000002 00000003 80018002 00000005",
     ZUN_RTCP_DECODE_REASON_TOO_SHORT, 24},
    {"transport-wide feedback without chunks", kHouse, "8FCD0004 00000001 00000002 00000003 00000000",
     ZUN_RTCP_DECODE_REASON_TOO_SHORT, 20},
    {"registered transport-wide feedback with a delta cut off", kRegistered,
     "8FCD0005 00000001 00000002 00000003 00000000 20030102", ZUN_RTCP_DECODE_REASON_TOO_SHORT, 22},
    {"house ABAFB with a word too many", kHouse,
     "9ECD0008 00000001 00000002 00000003 00000004 00000005 00000006 00000007 00000008",
     ZUN_RTCP_DECODE_REASON_LEFT_OVER, 32},
    {"unknown feedback without a media source", kHouse, "84CD0001 00000001", ZUN_RTCP_DECODE_REASON_TOO_SHORT, 8},
    {"PLI without a media source", kHouse, "81CE0001 00000001", ZUN_RTCP_DECODE_REASON_TOO_SHORT, 8},
    {"RPSI that pads more than it has", kHouse, "83CE0003 00000001 00000002 18604142", ZUN_RTCP_DECODE_REASON_VALUE,
     14},
    {"FIR of nobody", kHouse, "84CE0002 00000001 00000002", ZUN_RTCP_DECODE_REASON_NO_ENTRIES, 12},
    {"FIR with half an entry", kHouse, "84CE0005 00000001 00000000 00000002 01000000 00000003",
     ZUN_RTCP_DECODE_REASON_TOO_SHORT, 20},
    {"REMB with too many sources", kHouse, "8FCE0005 00000001 00000000 52454D42 00000000 00000003",
     ZUN_RTCP_DECODE_REASON_LEFT_OVER, 20},
    {"REMB with too few sources", kHouse, "8FCE0004 00000001 00000000 52454D42 01000000",
     ZUN_RTCP_DECODE_REASON_TOO_SHORT, 20},
    {"SHOW whose padding is not zeros", kHouse, "8FCE0004 00000001 00000000 4E720003 01000001",
     ZUN_RTCP_DECODE_REASON_VALUE, 20},
    {"SHOW whose value is cut off", kHouse, "8FCE0004 00000001 00000000 4E720003 01080019",
     ZUN_RTCP_DECODE_REASON_TOO_SHORT, 20},
    {"ALBR without its rate", kHouse, "8FCE0003 00000001 00000000 4E720002", ZUN_RTCP_DECODE_REASON_TOO_SHORT, 16},
    {"LIR of nothing", kHouse, "8FCE0003 00000001 00000000 4E720005", ZUN_RTCP_DECODE_REASON_NO_ENTRIES, 16},
    {"LIR with half an entry", kHouse, "8FCE0004 00000001 00000000 4E720005 00000001", ZUN_RTCP_DECODE_REASON_TOO_SHORT,
     16},
    {"LIR whose payload type is too large", kHouse, "8FCE0005 00000001 00000000 4E720005 00000001 01800000",
     ZUN_RTCP_DECODE_REASON_VALUE, 22},
    {"padding of 0", kRegistered, "A0C90002 00000001 00000000", ZUN_RTCP_DECODE_REASON_PADDING, 12},
    {"more padding than body", kRegistered, "A0C90001 00000005", ZUN_RTCP_DECODE_REASON_PADDING, 8},
    {"padding without a body", kRegistered, "A0C90000", ZUN_RTCP_DECODE_REASON_PADDING, 4},
    {"padding that takes a field", kRegistered, "A0C90001 00000004", ZUN_RTCP_DECODE_REASON_TOO_SHORT, 4},
};

ZunRtcpDecodeRefusal Expected(const Refusal& refusal, ZunSizeT offset) {
  const std::string wire = Hex(refusal.wire);
  return {refusal.reason, 1, PacketTypeOf(wire), CountOf(wire), offset, wire.size(), offset + refusal.stopped_at};
}

TEST(ZunRtcpDecode, TellsEachRefusalOfABody) {
  for (const Refusal& refusal : kRefusals) {
    SCOPED_TRACE(refusal.what);
    const Decoded p(Hex(kRr) + Hex(refusal.wire) + Hex(kRr), refusal.dialect);
    EXPECT_FALSE(p.ok);
    EXPECT_EQ(p.count(), 1U);
    EXPECT_EQ(p.report.read, 1U);
    EXPECT_EQ(p.report.refused, 1U);
    EXPECT_EQ(Told(p.report.first), Told(Expected(refusal, 8)));
    ASSERT_EQ(p.refusals.size(), 1U);
    EXPECT_EQ(Told(p.refusals[0]), Told(p.report.first));
  }
}

TEST(ZunRtcpDecode, SkipsWhatIsRefusedWhereItIsTolerant) {
  for (const Refusal& refusal : kRefusals) {
    SCOPED_TRACE(refusal.what);
    const std::string wire = Hex(refusal.wire);
    const Decoded p(wire + Hex(kRr) + wire + Hex(kRr), refusal.dialect, Tolerant());
    EXPECT_TRUE(p.ok);
    EXPECT_EQ(Everything(p.packet), Everything(Decoded(Hex(kRr) + Hex(kRr), refusal.dialect).packet));
    EXPECT_EQ(p.report.read, 2U);
    EXPECT_EQ(p.report.refused, 2U);
    ASSERT_EQ(p.refusals.size(), 2U);
    EXPECT_EQ(Told(p.refusals[0]), Told(p.report.first));
    EXPECT_EQ(p.refusals[0].index, 0U);
    EXPECT_EQ(p.refusals[1].index, 2U);
    EXPECT_EQ(p.refusals[1].offset, wire.size() + 8);
    EXPECT_EQ(p.refusals[1].reason, refusal.reason);
  }
}

// Where the next header cannot be found decoding ends, tolerant or not.
struct Ending {
  const char* what;
  const char* wire;
  const char* told;
};

const Ending kEndings[] = {
    {"nothing", "", "0: 0/0 at 0, 0 bytes, stopped at 0: the datagram is empty"},
    {"three octets", "81C900", "0: 0/0 at 0, 3 bytes, stopped at 0: fewer than 4 octets are left for a header"},
    {"one octet after a report", "80C90001 01020304 80",
     "1: 0/0 at 8, 1 bytes, stopped at 8: fewer than 4 octets are left for a header"},
    {"version 1", "41CD0001 00000000", "0: 205/1 at 0, 8 bytes, stopped at 0: the version is not 2"},
    {"version 3, longer than there is", "DFC9FFFF", "0: 201/31 at 0, 262144 bytes, stopped at 0: the version is not 2"},
    {"a length beyond the end", "80C90001 01020304 85CE0002 00000000",
     "1: 206/5 at 8, 12 bytes, stopped at 10: the length passes the end of the datagram"},
};

TEST(ZunRtcpDecode, EndsWhereTheNextHeaderCannotBeFound) {
  for (const Ending& ending : kEndings) {
    for (const ZunRtcpDialect dialect : kDialects) {
      for (const ZunRtcpDecodeOptions& options : {Defaults(), Tolerant()}) {
        SCOPED_TRACE(ending.what);
        const Decoded p(Hex(ending.wire), dialect, options);
        EXPECT_EQ(Told(p.report.first), ending.told);
        EXPECT_EQ(p.report.refused, 1U);
        EXPECT_EQ(p.refusals.size(), 1U);
        EXPECT_EQ(p.report.read, p.count());
        EXPECT_EQ(p.ok, options.tolerant && p.count() != 0);
      }
    }
  }
}

TEST(ZunRtcpDecode, IsFalseWhereTolerantButNothingIsRead) {
  const Decoded p(Hex("80CB0000 80CB0000"), kHouse, Tolerant());
  EXPECT_FALSE(p.ok);
  EXPECT_EQ(p.count(), 0U);
  EXPECT_EQ(p.report.read, 0U);
  EXPECT_EQ(p.report.refused, 2U);
  EXPECT_EQ(Told(p.refusals.back()), "1: 203/0 at 4, 4 bytes, stopped at 8: there is no entry where there must be one");
}

TEST(ZunRtcpDecode, ReportsNothingRefusedOfAWholeDatagram) {
  for (const ZunRtcpDialect dialect : kDialects) {
    const Decoded p(Hex(kRr) + Golden("SdesOneChunk") + Golden("NackOneMap"), dialect);
    EXPECT_TRUE(p.ok);
    EXPECT_EQ(Told(p.report), "3 read, 0 refused, 0: 0/0 at 0, 0 bytes, stopped at 0: not refused");
    EXPECT_TRUE(p.refusals.empty());
  }
}

TEST(ZunRtcpDecode, TakesNeitherOptionsNorReport) {
  for (const ZunRtcpDialect dialect : kDialects) {
    for (const std::string& bytes : {Golden("SdesTwoChunks"), Hex(kRr) + Hex("80CB"), Hex("84CE0001 00000000")}) {
      const Decoded expected(bytes, dialect);
      Decoded p;
      EXPECT_EQ(ZunRtcpPacketDecode(&p.packet, bytes.data(), bytes.size(), dialect, nullptr, nullptr), expected.ok);
      EXPECT_EQ(Everything(p.packet), Everything(expected.packet));
      const ZunRtcpDecodeOptions no_callback = Defaults();
      EXPECT_EQ(ZunRtcpPacketDecode(&p.packet, bytes.data(), bytes.size(), dialect, &no_callback, &p.report),
                expected.ok);
      EXPECT_EQ(Told(p.report), Told(expected.report));
      EXPECT_EQ(Everything(p.packet), Everything(expected.packet));
    }
  }
}

TEST(ZunRtcpDecode, TakesNullForNoOctets) {
  Decoded p(Hex(kRr), kHouse);
  EXPECT_FALSE(ZunRtcpPacketDecode(&p.packet, nullptr, 0, kRegistered, nullptr, &p.report));
  EXPECT_EQ(p.count(), 0U);
  EXPECT_EQ(p.reason(), ZUN_RTCP_DECODE_REASON_EMPTY);
}

TEST(ZunRtcpDecode, TakesAnyOtherDialectForTheHouses) {
  for (const ZunRtcpDialect dialect : {-1, 2, 77}) {
    EXPECT_EQ(Told(Decoded(Golden("Tmmbn"), dialect).report), Told(Decoded(Golden("Tmmbn"), kHouse).report));
    EXPECT_EQ(Encoded(Decoded(Golden("CcfbOneStream"), dialect), dialect).bytes, Golden("CcfbOneStream"));
    EXPECT_EQ(Decoded(Hex("80CB0000"), dialect).reason(), ZUN_RTCP_DECODE_REASON_NO_ENTRIES);
  }
}

TEST(ZunRtcpDecode, KeepsThePaddingWhereTheHouseReads) {
  const Decoded p(Hex("A0C90002 01020304 00000001"), kHouse);
  ASSERT_TRUE(p.ok);
  EXPECT_EQ(Str(&p[0].rr.profile_specific_ext), Hex("00000001"));
}

TEST(ZunRtcpDecode, ReplacesAllOfAPacketWhetherTheNewOneIsShorterOrRefused) {
  Decoded p(Golden("SdesTwoChunks") + Golden("NackOneMap") + Golden("Pli"), kHouse);
  ASSERT_TRUE(p.Read(Golden("ByeWithReason"), kHouse));
  EXPECT_EQ(Everything(p.packet), Everything(Decoded(Golden("ByeWithReason"), kHouse).packet));
  ASSERT_TRUE(p.Read(Golden("SdesTwoChunks") + Golden("NackOneMap") + Golden("Pli"), kHouse));
  EXPECT_FALSE(p.Read(Golden("Pli") + Hex("80CB0000"), kHouse));
  EXPECT_EQ(Everything(p.packet), Everything(Decoded(Golden("Pli"), kHouse).packet));
  EXPECT_FALSE(p.Read("", kHouse));
  EXPECT_EQ(p.count(), 0U);
}

// Limits

struct Limited {
  const char* what;
  std::string wire;
  ZunSizeT ZunRtcpDecodeOptions::*limit;
  ZunSizeT needed;
  ZunSizeT last_subpacket;  // the one that is refused where the limit is one less
  ZunRtcpDialect dialect = kHouse;
};

const std::vector<Limited>& LimitedOnes() {
  constexpr auto kEntries = &ZunRtcpDecodeOptions::maxEntries;
  constexpr auto kStatuses = &ZunRtcpDecodeOptions::maxStatuses;
  constexpr auto kSubpackets = &ZunRtcpDecodeOptions::maxSubpackets;
  const std::string ccfb = Hex("8BCD0005 00000001 00000002 00000002 80018002 00000005");
  static const std::vector<Limited> all = {
      {"three subpackets", Hex(kRr) + Hex(kRr) + Golden("Pli"), kSubpackets, 3, 2},
      {"report blocks", Golden("SrTwoBlocks") + Golden("RrTwoBlocks"), kEntries, 4, 1},
      {"report blocks in front of an extension",
       Hex("81C90008 00000001 00000002 00000003 00000004 00000005 00000006 00000007 AABBCCDD") + Golden("RrTwoBlocks"),
       kEntries, 3, 1},
      {"chunks and items", Golden("SdesOneChunk") + Golden("SdesTwoChunks"), kEntries, 2 + 2 + 5, 1},
      {"sources", Golden("ByeWithoutReason") + Golden("ByeAtItsLimits"), kEntries, 32, 1},
      {"sequence number maps", Golden("NackThreeMaps") + Golden("NackOneMap"), kEntries, 4, 1},
      {"house bit rate limits", Golden("TmmbrTwoEntries") + Golden("TmmbrOneEntry"), kEntries, 3, 1},
      {"streams and metrics", Golden("CcfbOneStream") + Golden("CcfbTwoStreams"), kEntries, 7 + 7, 1},
      {"registered streams and metrics", ccfb + ccfb, kEntries, 6, 1, kRegistered},
      {"statuses", Golden("TransportCcMixed") + Golden("TransportCcOnePacket"), kStatuses, 30, 1},
      {"registered statuses", Golden("TransportCcOnePacket") + Golden("TransportCcMixed"), kStatuses, 30, 1,
       kRegistered},
      {"lost slices", Golden("SliThreeItems") + Golden("SliOneItem"), kEntries, 4, 1},
      {"entries of codec control", Golden("FirTwoEntries") + Golden("TstrOneEntry") + Golden("TstaTwoEntries"),
       kEntries, 5, 2},
      {"REMB sources", Golden("RembTwoSources") + Golden("RembOneSource"), kEntries, 3, 1},
      {"SHOW parameters", Golden("ShowFourParameters") + Golden("ShowTwoParameters"), kEntries, 6, 1},
      {"layers", Golden("LirThreeEntries") + Golden("LirOneEntry"), kEntries, 4, 1},
      {"entries of several kinds", Golden("SrOneBlock") + Golden("NackOneMap") + Golden("RembTwoSources"), kEntries, 4,
       2},
  };
  return all;
}

TEST(ZunRtcpDecode, KeepsItsLimitsToTheEntry) {
  for (const Limited& limited : LimitedOnes()) {
    SCOPED_TRACE(limited.what);
    ZunRtcpDecodeOptions options = Defaults();
    options.*limited.limit = limited.needed;
    const Decoded enough(limited.wire, limited.dialect, options);
    EXPECT_TRUE(enough.ok) << Told(enough.report);
    EXPECT_EQ(Everything(enough.packet), Everything(Decoded(limited.wire, limited.dialect).packet));
    options.*limited.limit = limited.needed - 1;
    const Decoded p(limited.wire, limited.dialect, options);
    EXPECT_FALSE(p.ok);
    EXPECT_EQ(p.reason(), ZUN_RTCP_DECODE_REASON_LIMIT) << Told(p.report);
    EXPECT_EQ(p.report.first.index, limited.last_subpacket);
    EXPECT_EQ(p.count(), limited.last_subpacket);
  }
}

// In place as well, where another reader is tried first: what it gave up is not counted twice.
TEST(ZunRtcpDecode, KeepsTheSameLimitsInPlace) {
  for (const Limited& limited : LimitedOnes()) {
    SCOPED_TRACE(limited.what);
    Decoded p(limited.wire, limited.dialect);
    ZunRtcpDecodeOptions options = Defaults();
    options.*limited.limit = limited.needed;
    EXPECT_TRUE(p.Read(limited.wire, limited.dialect, options)) << Told(p.report);
    EXPECT_EQ(Everything(p.packet), Everything(Decoded(limited.wire, limited.dialect).packet));
    options.*limited.limit = limited.needed - 1;
    EXPECT_FALSE(p.Read(limited.wire, limited.dialect, options));
    EXPECT_EQ(p.reason(), ZUN_RTCP_DECODE_REASON_LIMIT) << Told(p.report);
    EXPECT_EQ(p.report.first.index, limited.last_subpacket);
  }
}

TEST(ZunRtcpDecode, ReadsWhatNeedsNoEntriesWhenTheyAreUsedUp) {
  ZunRtcpDecodeOptions options = Tolerant();
  options.maxEntries = 0;
  options.maxStatuses = 0;
  for (const char* const name : {"RrWithoutBlocks", "Pli", "AppWithData", "CcfbWithoutStreams", "RembWithoutSources"}) {
    EXPECT_TRUE(Decoded(Golden(name), kHouse, options).ok) << name;
  }
  const Decoded p(Golden("TransportCcMixed") + Golden("SdesOneChunk") + Golden("Albr"), kHouse, options);
  EXPECT_TRUE(p.ok);
  EXPECT_EQ(p.report.read, 1U);
  EXPECT_EQ(p.report.refused, 2U);
}

TEST(ZunRtcpDecode, RefusesEverySubpacketAboveTheirNumber) {
  std::string bytes;
  for (int i = 0; i < 1025; ++i) bytes += Hex("80CF0000");
  EXPECT_TRUE(Decoded(bytes.substr(4), kHouse).ok);
  const Decoded strict(bytes, kHouse);
  EXPECT_EQ(Told(strict.report),
            "1024 read, 1 refused, 1024: 207/0 at 4096, 4 bytes, stopped at 4100: it holds more "
            "than the limits allow");
  ZunRtcpDecodeOptions none = Tolerant();
  none.maxSubpackets = 0;
  const Decoded nothing(bytes, kHouse, none);
  EXPECT_FALSE(nothing.ok);
  EXPECT_EQ(nothing.report.refused, 1025U);
  none.maxSubpackets = 1000;
  const Decoded some(bytes, kHouse, none);
  EXPECT_TRUE(some.ok);
  EXPECT_EQ(Told(some.refusals.back()),
            "1024: 207/0 at 4096, 4 bytes, stopped at 4100: it holds more than the limits allow");
  EXPECT_EQ(some.report.refused, 25U);
}

// A NACK of `count` maps, two SDES of many items, as far as one datagram carries them.
std::string Nack(ZunSizeT count) { return Subpacket(205, 1, std::string(8 + 4 * count, 'n')); }
std::string Sdes(ZunSizeT items) {
  std::string list;
  for (ZunSizeT i = 0; i < items; ++i) list += Hex("0200");
  list += '\0';
  list.resize((list.size() + 3) / 4 * 4);
  return Subpacket(202, 1, "ssrc" + list);
}

TEST(ZunRtcpDecode, HoldsTheDefaultLimitOfEntriesAcrossLists) {
  EXPECT_TRUE(Decoded(Sdes(16383) + Sdes(16383), kHouse).ok);
  const Decoded p(Sdes(16385) + Sdes(16385), kHouse);
  EXPECT_EQ(p.count(), 1U);
  EXPECT_EQ(p.reason(), ZUN_RTCP_DECODE_REASON_LIMIT);
  EXPECT_EQ(p.report.first.index, 1U);
  // The chunk of the first and its items leave 16,382 to the second.
  EXPECT_EQ(p.report.first.stoppedAt, Sdes(16385).size() + 8 + 2 * 16381 + 2);
  EXPECT_TRUE(Decoded(Nack(16384) + Nack(16384), kHouse).ok);
  EXPECT_EQ(Decoded(Nack(16384) + Nack(16385), kHouse).reason(), ZUN_RTCP_DECODE_REASON_LIMIT);
}

TEST(ZunRtcpDecode, HoldsTheDefaultLimitOfStatusesAcrossMessages) {
  // Runs of lost packets: 65,535 in one message, and one more in another.
  const std::string full =
      Subpacket(205, 15, Hex("00000001 00000002 0000FFFF 00000000") + Hex("1FFF1FFF1FFF1FFF1FFF1FFF1FFF1FFF0007 0000"));
  const std::string one = Subpacket(205, 15, Hex("00000001 00000002 00000001 00000000 0001 0000"));
  for (const ZunRtcpDialect dialect : kDialects) {
    EXPECT_TRUE(Decoded(full, dialect).ok);
    EXPECT_EQ(Decoded(full + one, dialect).reason(), ZUN_RTCP_DECODE_REASON_LIMIT);
    EXPECT_EQ(Decoded(full + one, dialect).count(), 1U);
  }
}

TEST(ZunRtcpDecodeOptions, DefaultsAreThoseThatTheHeaderTells) {
  ZunRtcpDecodeOptions o = {1, 1, 1, 1, [](ZunVoidPtr, const ZunRtcpDecodeRefusal*) {}, &o};
  ZunRtcpDecodeOptionsConstructDefault(&o);
  EXPECT_FALSE(o.tolerant);
  EXPECT_EQ(o.maxSubpackets, 1024U);
  EXPECT_EQ(o.maxStatuses, 65535U);
  EXPECT_EQ(o.maxEntries, 32768U);
  EXPECT_EQ(o.onRefusal, nullptr);
  EXPECT_EQ(o.userData, nullptr);
}

}  // namespace
