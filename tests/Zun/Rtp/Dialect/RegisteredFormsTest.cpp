// The registered dialect's wire forms, where they differ from the house's and where they do not.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "Zun/Rtp/Dialect/ZunRtcpCodec.h"
#include "tests/Zun/Rtp/TransportFeedback/TransportCcTests.h"
#include "tests/support/Captured.h"
#include "tests/support/OpenDoor.h"
#include "tests/support/RandomDatagrams.h"
#include "tests/support/Samples.h"

namespace {

using namespace test;

// What is read in one dialect and written in another.
std::string Rewritten(const std::string& wire, ZunRtcpDialect from, ZunRtcpDialect to) {
  const Decoded p(wire, from);
  EXPECT_TRUE(p.ok) << Told(p.report);
  return Encoded(p, to).bytes;
}

// What is the same

TEST(RegisteredForms, AreThoseOfTheHouseForAllOtherKinds) {
  const std::set<std::string> different = {"Tmmbn", "TmmbnSmall", "CcfbTwoStreams", "CcfbOneStream",
                                           "CcfbWithoutStreams"};
  for (const Sample& sample : Samples()) {
    if (different.count(sample.name) != 0) continue;
    const Decoded p(sample.wire, kRegistered);
    EXPECT_TRUE(p.ok) << sample.name;
    EXPECT_EQ(Everything(p.packet), Everything(Decoded(sample.wire, kHouse).packet)) << sample.name;
    EXPECT_EQ(ToHex(Encoded(p, kRegistered).bytes), ToHex(Encoded(p, kHouse).bytes)) << sample.name;
  }
}

TEST(RegisteredForms, CompoundsOfPeersComeBack) {
  for (const char* const captured : {kCapturedTmmbn, kCapturedDlrr, kCapturedEmptyCname, kCapturedXr, kCapturedCcfb}) {
    EXPECT_EQ(ToHex(Rewritten(Hex(captured), kRegistered, kRegistered)), ToHex(Hex(captured)));
  }
}

// Congestion control feedback (RFC 8888)

TEST(RegisteredForms, CcfbIsFmt11) {
  for (const char* const name : {"CcfbTwoStreams", "CcfbOneStream", "CcfbWithoutStreams"}) {
    std::string registered = Golden(name);
    registered[0] = static_cast<char>(0x8B);
    EXPECT_EQ(ToHex(Rewritten(Golden(name), kHouse, kRegistered)), ToHex(registered));
    EXPECT_EQ(ToHex(Rewritten(registered, kRegistered, kHouse)), ToHex(Golden(name)));
    EXPECT_EQ(ToHex(Rewritten(registered, kRegistered, kRegistered)), ToHex(registered));
  }
}

// The object says FMT 14 in either dialect: it does not know one.
TEST(RegisteredForms, CcfbIsOneObjectWhateverItsNumberWas) {
  const Decoded p(Hex(kCapturedCcfb), kRegistered);
  ASSERT_TRUE(p.ok);
  EXPECT_EQ(ZunRtcpRtpfbGetFeedbackMessageType(&p[0].rtpfb), ZUN_RTCPRTPFB_TYPE_CCFB);
  EXPECT_EQ(p[0].rtpfb.ccfb.sender, 0xFA17FA17U);
  EXPECT_EQ(p[0].rtpfb.ccfb.sendTimestamp, 0x6FEBEEDFU);
  ASSERT_EQ(ZunVector_ZunRtcpRtpfbCcfbStreamSize(&p[0].rtpfb.ccfb.streams), 3U);
  const ZunRtcpRtpfbCcfbStream& second = p[0].rtpfb.ccfb.streams.begin[1];
  EXPECT_EQ(second.ssrc, 0x58CAAF55U);
  EXPECT_EQ(second.beginSeq, 0x7F01);
  const std::vector<std::vector<int>> expected = {{1, 2, 19}, {1, 0, 16}, {1, 0, 10}, {1, 2, 10},
                                                  {1, 2, 7},  {1, 1, 5},  {1, 0, 2},  {1, 2, 0}};
  std::vector<std::vector<int>> metrics;
  for (const ZunRtcpRtpfbCcfbPacketMetric* x = second.packetMetrics.begin; x != second.packetMetrics.end; ++x) {
    metrics.push_back({x->received, x->ecn, x->arrivalTimeOffset});
  }
  EXPECT_EQ(metrics, expected);
}

// One metric in a message of this FMT.
std::string OneMetric(int fmt, const std::string& metric) {
  return Subpacket(205, fmt, Hex("00000001 00000002 00030001") + Hex(metric) + Hex("0000 00000004"));
}

TEST(RegisteredForms, EcnIsTheCodepointBothWays) {
  for (ZunUint8 ecn = 0; ecn <= 3; ++ecn) {
    const std::string metric = {static_cast<char>(0x80 | ecn << 5 | 0x1F), static_cast<char>(0xFE)};
    const std::string wire = OneMetric(11, ToHex(metric));
    const Decoded p(wire, kRegistered);
    ASSERT_TRUE(p.ok);
    const ZunRtcpRtpfbCcfbPacketMetric& read = *p[0].rtpfb.ccfb.streams.begin->packetMetrics.begin;
    EXPECT_EQ(read.ecn, ecn);
    EXPECT_EQ(read.arrivalTimeOffset, 0x1FFE);
    EXPECT_EQ(ToHex(Encoded(p, kRegistered).bytes), ToHex(wire));
    EXPECT_EQ(ToHex(Encoded(p, kHouse).bytes), ToHex(OneMetric(14, ToHex(metric))));
  }
}

// The house reads four times the codepoint, which does not fit a metric again.
TEST(RegisteredForms, Fmt14KeepsWhatTheHouseReads) {
  const std::string wire = OneMetric(14, "C005");
  for (const ZunRtcpDialect dialect : kDialects) {
    const Decoded p(wire, dialect);
    ASSERT_TRUE(p.ok);
    EXPECT_EQ(p[0].rtpfb.ccfb.streams.begin->packetMetrics.begin->ecn, 8);
    EXPECT_EQ(Encoded(p, dialect).reason, ZUN_RTCP_ENCODE_REASON_VALUE);
  }
  EXPECT_EQ(ToHex(Rewritten(OneMetric(14, "8005"), kRegistered, kRegistered)), ToHex(OneMetric(11, "8005")));
}

TEST(RegisteredForms, Fmt11IsUnknownToTheHouse) {
  const Decoded p(Hex(kCapturedCcfb), kHouse);
  ASSERT_TRUE(p.ok);
  EXPECT_TRUE(IsOfKind(kRowOf<ZunRtcpRtpfbUnknown>, p[0]));
  for (const ZunRtcpDialect dialect : kDialects) EXPECT_EQ(Encoded(p, dialect).bytes, Hex(kCapturedCcfb));
}

// Transport-wide feedback

// A message about packets of these statuses, with base sequence number 1 and all else 0.
std::string TransportCcWire(ZunUint16 count, const std::string& chunks_and_deltas) {
  std::string fci = Hex("00000000 00000000 0001") + static_cast<char>(count >> 8) + static_cast<char>(count & 0xFF) +
                    Hex("000000 00") + chunks_and_deltas;
  fci.resize((fci.size() + 3) / 4 * 4);
  return Subpacket(205, 15, fci);
}

TEST(RegisteredForms, LargeDeltasAreSigned) {
  struct Case {
    const char* delta;
    int registered;
    int house;
  };
  for (const Case& c :
       {Case{"0100", 256, 256}, Case{"01FF", 511, -1}, Case{"7FFF", 32767, -1}, Case{"8000", -32768, -32768},
        Case{"FFFF", -1, -1}, Case{"FF80", -128, -128}, Case{"0080", 128, -128}, Case{"0000", 0, 0}}) {
    const std::string wire = TransportCcWire(1, Hex("4001") + Hex(c.delta));
    EXPECT_EQ(InfosOf(&Decoded(wire, kRegistered)[0].rtpfb.transportCc), (Infos{{1, 1, c.registered}})) << c.delta;
    EXPECT_EQ(InfosOf(&Decoded(wire, kHouse)[0].rtpfb.transportCc), (Infos{{1, 1, c.house}})) << c.delta;
  }
}

TEST(RegisteredForms, TransportCcOfPeersIsReadWithoutItsPadding) {
  const Decoded p(Hex(kCapturedTransportCc), kRegistered);
  ASSERT_TRUE(p.ok);
  const ZunRtcpRtpfbTransportCc& message = p[0].rtpfb.transportCc;
  EXPECT_EQ(message.baseSeq, 131);
  EXPECT_EQ(message.refTime, 47234);
  EXPECT_EQ(message.packetCount, 23);
  // 41.75, -4, -18.75 and 72.25 ms.
  EXPECT_EQ(InfosOf(&message), (Infos{{1, 1, 167}, {1, 1, -16}, {1, 1, -75}, {0, 0, 0}, {1, 1, 289}}));
  std::string unpadded = Hex(kCapturedTransportCc);
  unpadded[0] = static_cast<char>(0x8F);
  unpadded.back() = 0;
  EXPECT_EQ(ToHex(Encoded(p, kRegistered).bytes), ToHex(unpadded));
}

TEST(RegisteredForms, DeltasThatAreCutShortAreRefused) {
  // Two deltas, of one octet and of two: the body ends after so many octets of them, by padding.
  for (int octets = 0; octets <= 3; ++octets) {
    std::string wire = TransportCcWire(2, Hex("D800 01FFFE 000000000000"));
    wire[0] = static_cast<char>(0xAF);
    wire.back() = static_cast<char>(wire.size() - 4 - 16 - 2 - static_cast<std::size_t>(octets));
    const Decoded p(wire, kRegistered);
    EXPECT_EQ(p.ok, octets == 3) << octets;
    EXPECT_EQ(p.reason(), octets == 3 ? ZUN_RTCP_DECODE_REASON_NONE : ZUN_RTCP_DECODE_REASON_TOO_SHORT);
  }
  // The house reads such packets without their deltas.
  const std::string cut = TransportCcWire(3, Hex("2003 0102"));
  EXPECT_EQ(Decoded(cut, kRegistered).reason(), ZUN_RTCP_DECODE_REASON_TOO_SHORT);
  EXPECT_EQ(InfosOf(&Decoded(cut, kHouse)[0].rtpfb.transportCc), Untimed("111"));
}

// The words of the chunks that tell of so many statuses.
std::vector<unsigned> Chunks(const std::string& wire, std::size_t statuses) {
  std::vector<unsigned> chunks;
  for (std::size_t told = 0; told < statuses;) {
    const std::size_t at = 20 + 2 * chunks.size();
    const unsigned word = static_cast<unsigned char>(wire.at(at)) * 256U + static_cast<unsigned char>(wire.at(at + 1));
    told += word < 0x8000 ? word & 0x1FFF : word < 0xC000 ? 14 : 7;
    chunks.push_back(word);
  }
  return chunks;
}

// Two-bit vectors of statuses that one bit could tell: they stand where a one-bit vector would have ended early.
std::size_t CountNarrow(const std::vector<unsigned>& chunks) {
  return static_cast<std::size_t>(std::count_if(chunks.begin(), chunks.end(),
                                                [](unsigned word) { return word >= 0xC000 && (word & 0x2AAA) == 0; }));
}

// What is encoded of statuses reads back, and takes no more octets than the house's layout and two for each one-bit
// vector that it avoids. Returns the chunks.
std::vector<unsigned> ExpectToReadBack(const std::string& statuses) {
  TransportCc message;
  PushStatuses(message, statuses);
  Decoded p;
  EXPECT_TRUE(ZunRtcpPacketAppendSubpacket(&p.packet, message.sp()));
  const std::string wire = Encoded(p, kRegistered).bytes;
  EXPECT_EQ(InfosOf(&Decoded(wire, kRegistered)[0].rtpfb.transportCc), InfosOf(message)) << statuses;
  std::vector<unsigned> chunks = Chunks(wire, statuses.size());
  const ByTheBook house(message);
  EXPECT_LE(2 * chunks.size(), house.chunk_bytes() + 2 * CountNarrow(chunks)) << statuses;
  EXPECT_EQ(CountNarrow(chunks) == 0, house.reads_back());
  if (house.reads_back()) {
    EXPECT_EQ(ToHex(wire), ToHex(house.bytes())) << statuses;
  }
  return chunks;
}

TEST(RegisteredForms, NoOneBitVectorEndsEarly) {
  EXPECT_EQ(ExpectToReadBack("10000002"), (std::vector<unsigned>{0xD000, 0x4001}));         // the house: A000 4001
  EXPECT_EQ(ExpectToReadBack("1000000002"), (std::vector<unsigned>{0xD000, 0xC200}));       // the house: A000 4001
  EXPECT_EQ(ExpectToReadBack("10000000000002"), (std::vector<unsigned>{0xD000, 0xC002}));   // the house: A000 4001
  EXPECT_EQ(ExpectToReadBack("100000000000002"), (std::vector<unsigned>{0xA000, 0x4001}));  // fourteen, and one more
  EXPECT_EQ(ExpectToReadBack("10000000000000"), (std::vector<unsigned>{0xA000}));
  EXPECT_EQ(ExpectToReadBack("1010101"), (std::vector<unsigned>{0xAA80}));  // the last may end early
  EXPECT_EQ(ExpectToReadBack("1112111"), (std::vector<unsigned>{0xD595}));
  EXPECT_EQ(ExpectToReadBack("11111112"), (std::vector<unsigned>{0x2007, 0x4001}));
  EXPECT_EQ(ExpectToReadBack("0000000000000000000"), (std::vector<unsigned>{0x0013}));
}

TEST(RegisteredForms, AllShortSequencesOfStatusesReadBack) {
  for (std::size_t length = 1; length <= 8; ++length) {
    std::string statuses(length, '0');
    for (std::size_t at = 0; at < length && !HasFailure();) {
      ExpectToReadBack(statuses);
      for (at = 0; at < length && ++statuses[at] == '3'; ++at) statuses[at] = '0';
    }
  }
}

TEST(RegisteredForms, RandomSequencesOfStatusesReadBack) {
  RandomDatagrams random(4);
  std::size_t avoided = 0;
  for (int i = 0; i < 5000 && !HasFailure(); ++i) {
    std::string statuses;
    for (unsigned runs = 1 + random.Below(12); runs > 0; --runs) {
      const char status = static_cast<char>('0' + random.Below(random.Below(3) == 0 ? 4 : 2));
      statuses += std::string(1 + random.Below(12), status);
    }
    avoided += CountNarrow(ExpectToReadBack(statuses));
  }
  EXPECT_GT(avoided, 300U);
}

// More chunks than are kept between the measuring of a message and its writing.
TEST(RegisteredForms, ManyChunksReadBack) {
  std::string statuses;
  for (int i = 0; i < 100; ++i) statuses += "10000002";
  EXPECT_GT(ExpectToReadBack(statuses).size(), 100U);
}

TEST(RegisteredForms, LongRunsReadBack) {
  for (const std::size_t length : {8191U, 8192U}) {
    ExpectToReadBack("1" + std::string(9, '0') + std::string(length, '2') + "01");
  }
}

// Padding (RFC 3550, section 6.4.1)

// A subpacket with padding of `count` octets appended, which may make it no whole words before that.
std::string Padded(const std::string& subpacket, std::size_t count) {
  const std::string body = subpacket.substr(4) + std::string(count - 1, '\0') + static_cast<char>(count);
  std::string padded = Subpacket(PacketTypeOf(subpacket), CountOf(subpacket), body);
  padded[0] = static_cast<char>(padded[0] | 0x20);
  return padded;
}

TEST(RegisteredForms, PaddingIsNoPartOfAnySubpacket) {
  for (const Sample& sample : Samples()) {
    const Decoded bare(sample.wire, kRegistered);
    for (const std::size_t count : {4U, 8U, 252U}) {
      const Decoded p(Padded(sample.wire, count) + Golden("Pli"), kRegistered);
      EXPECT_EQ(p.ok, bare.ok) << sample.name;
      if (!bare.ok) continue;
      ASSERT_EQ(p.count(), 2U);
      EXPECT_EQ(Everything(p.packet), Everything(Decoded(sample.wire + Golden("Pli"), kRegistered).packet));
    }
  }
}

// Peers fill words with octets that count as padding.
TEST(RegisteredForms, PaddingNeedNotBeWholeWords) {
  const std::string data = Hex("80CF0001 414243");
  for (std::size_t count = 1; count <= 3; ++count) {
    const Decoded p(Padded(data.substr(0, 8 - count), count), kRegistered);
    ASSERT_TRUE(p.ok);
    EXPECT_EQ(Str(&p[0].unk.data), std::string("ABC").substr(0, 4 - count));
    EXPECT_EQ(Encoded(p, kRegistered).reason, ZUN_RTCP_ENCODE_REASON_NOT_WHOLE_WORDS);
  }
  const Decoded all(Hex("A0CF0001 00000004"), kRegistered);
  ASSERT_TRUE(all.ok);
  EXPECT_EQ(Str(&all[0].unk.data), "");
  EXPECT_EQ(Encoded(all, kRegistered).bytes, Hex("80CF0000"));
}

// Its end is aligned within all that is written, where it then begins at no word. Such a packet is not encoded.
TEST(RegisteredForms, WhatFollowsDataOfNoWholeWordsIsLongerThanItSays) {
  const std::string feedback = Golden("TransportCcOnePacket");
  const Decoded p(Padded(Hex("80CF0001 4142"), 2) + feedback, kRegistered);
  ASSERT_TRUE(p.ok);
  ASSERT_EQ(p.count(), 2U);
  EXPECT_EQ(ZunRtcpPacketGetNetworkPacketLength(&p.packet), 6 + feedback.size());
  Text written;
  EXPECT_TRUE(ZunRtcpPacketGetNetworkPacket(&p.packet, written));
  EXPECT_EQ(written->size % 4, 0U);
  EXPECT_NE(written->size, 6 + feedback.size());
  EXPECT_EQ(Encoded(p, kRegistered).reason, ZUN_RTCP_ENCODE_REASON_NOT_WHOLE_WORDS);
}

// SDES and BYE

TEST(RegisteredForms, SdesWithoutChunksHasNone) {
  Decoded p(Golden("SdesTwoChunks"), kRegistered);
  ASSERT_TRUE(p.Read(Hex("80CA0000"), kRegistered));
  EXPECT_TRUE(ZunVector_ZunRtcpSdesChunkEmpty(&p[0].sdes.chunks));
  EXPECT_EQ(Encoded(p, kRegistered).bytes, Hex("80CA0000"));
}

TEST(RegisteredForms, AnEmptyCnameIsAnItem) {
  const Decoded p(Hex(kCapturedEmptyCname), kRegistered);
  ASSERT_EQ(p.count(), 2U);
  const ZunVector_ZunRtcpSdesItem& items = p[1].sdes.chunks.begin->items;
  ASSERT_EQ(ZunVector_ZunRtcpSdesItemSize(&items), 1U);
  EXPECT_EQ(items.begin->type, ZUN_RTCPSDESITEM_TYPE_CNAME);
  EXPECT_EQ(Str(&items.begin->text), "");
}

TEST(RegisteredForms, AByeMayBeOfNobody) {
  for (const char* const wire : {"80CB0000", "80CB0001 03627965"}) {
    const Decoded p(Hex(wire), kRegistered);
    ASSERT_TRUE(p.ok) << wire;
    EXPECT_TRUE(ZunVector_ZunRtpSourceIdEmpty(&p[0].bye.sources));
    EXPECT_EQ(ToHex(Encoded(p, kRegistered).bytes), ToHex(Hex(wire)));
    EXPECT_EQ(Decoded(Hex(wire), kHouse).reason(), ZUN_RTCP_DECODE_REASON_NO_ENTRIES);
  }
  EXPECT_EQ(Str(&Decoded(Hex("80CB0001 03627965"), kRegistered)[0].bye.reason), "bye");
}

// Numbers

// FMT of RTPFB and what reads it in the registered dialect; that of the house is its row.
TEST(RegisteredForms, NumbersThatTheRegistryLeavesUnassignedKeepTheirMeaning) {
  for (const char* const name : {"TmmbrOneEntry", "RtpfbAbafb", "AfbAbafb", "Albr", "ShowTwoParameters", "ShowAck",
                                 "LirOneEntry", "RembOneSource"}) {
    EXPECT_EQ(Everything(Decoded(Golden(name), kRegistered).packet), Everything(Decoded(Golden(name), kHouse).packet));
  }
}

TEST(RegisteredForms, Fmt3HasNoObjectAndFmt4IsUnknown) {
  EXPECT_EQ(Decoded(Golden("Tmmbn"), kRegistered).reason(), ZUN_RTCP_DECODE_REASON_NO_OBJECT);
  const Decoded p(Hex("84CD0004 00000001 00000000 00000002 0A61601C"), kRegistered);
  ASSERT_TRUE(p.ok);
  EXPECT_TRUE(IsOfKind(kRowOf<ZunRtcpRtpfbUnknown>, p[0]));
  EXPECT_EQ(p[0].rtpfb.unk.fmt, 4);
  // Over a house TMMBN as well.
  Decoded over(Golden("Tmmbn"), kHouse);
  EXPECT_FALSE(over.Read(Golden("Tmmbn"), kRegistered));
  EXPECT_EQ(over.count(), 0U);
}

// Of every packet type and FMT an empty body of three words is read as, or not read as, what the house makes of it; but
// for these numbers.
TEST(RegisteredForms, AllOtherNumbersAreThoseOfTheHouse) {
  for (int type = 192; type <= 223; ++type) {
    for (int count = 0; count <= 31; ++count) {
      if (type == ZUN_RTCPSUBPACKET_TYPE_RTPFB && (count == 3 || count == 11)) continue;
      if (type == ZUN_RTCPSUBPACKET_TYPE_BYE && count == 0) continue;
      const std::string wire = Subpacket(type, count, Hex("00000001 00000000 00000000 00000000"));
      const Decoded p(wire, kRegistered);
      const Decoded house(wire, kHouse);
      EXPECT_EQ(Told(p.report), Told(house.report));
      EXPECT_EQ(Everything(p.packet), Everything(house.packet)) << ToHex(wire);
    }
  }
}

}  // namespace
