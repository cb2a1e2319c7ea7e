#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <sstream>
#include <string>

#include "tests/Zun/Rtp/TransportFeedback/TransportCcTests.h"
#include "tests/support/LogCapture.h"

namespace {

using namespace test;

TEST(ZunRtcpRtpfbTransportCcRead, ReadsAndWritesRunsVectorsAndBothDeltas) {
  LogCapture log;
  TransportCc p;
  ASSERT_TRUE(p.Read(Golden("TransportCcMixed")));
  EXPECT_EQ(p->type, ZUN_RTCPSUBPACKET_TYPE_RTPFB);
  EXPECT_EQ(p->fmt, ZUN_RTCPRTPFB_TYPE_TransportCC);
  EXPECT_EQ(p->sender, 0x01020304U);
  EXPECT_EQ(p->source, 0x05060708U);
  EXPECT_EQ(p->baseSeq, 65534U);
  EXPECT_EQ(p->refTime, -2);
  EXPECT_EQ(p->packetCount, 42U);
  EXPECT_EQ(p->latestTime, kNoTime);
  EXPECT_EQ(InfosOf(p), MixedInfos());
  EXPECT_EQ(ToHex(p.bytes()), ToHex(Golden("TransportCcMixed")));
  EXPECT_EQ(ZunRtcpRtpfbTransportCcGetPacketLength(p.sp()), Golden("TransportCcMixed").size());
  log.ExpectNone();
}

TEST(ZunRtcpRtpfbTransportCcRead, TheReferenceTimeIsReadAsASignedNumber) {
  const auto reference = [](const std::string& octets) {
    TransportCc p;
    EXPECT_TRUE(p.Read(Hex("8FCD0004 00000000 00000000 00000000" + octets + "00")));
    return p->refTime;
  };
  EXPECT_EQ(reference("000000"), 0);
  EXPECT_EQ(reference("7FFFFF"), 0x7FFFFF);
  EXPECT_EQ(reference("800000"), -0x800000);
  EXPECT_EQ(reference("FFFFFF"), -1);
}

// Bytes that two other implementations sent.

// Packet infos with the deltas listed; "x" is a lost packet.
Infos Deltas(const std::string& list) {
  Infos infos;
  std::istringstream words(list);
  for (std::string word; words >> word;)
    infos.emplace_back(word == "x" ? Infos::value_type{0, 0, 0} : Infos::value_type{1, 1, std::stoi(word)});
  return infos;
}

void ExpectReceived(const std::string& packet, unsigned base, int reference, int count, const Infos& infos) {
  TransportCc p;
  ASSERT_TRUE(p.Read(packet));
  EXPECT_EQ(p->baseSeq, base);
  EXPECT_EQ(p->refTime, reference);
  EXPECT_EQ(p->packetCount, count);
  EXPECT_EQ(InfosOf(p), infos);
  ExpectWrittenByTheBook(p);
}

TEST(ZunRtcpRtpfbTransportCcRead, ReadsVectorsOfTwoBitsThatOthersSend) {
  ExpectReceived(Hex(R"(
    8F CD 00 08  FA 17 FA 17  CA FC 2F 16
    00 07 00 0D  | base 7, 13 statuses
    00 B8 6E 02  | reference time 47214, feedback packet 2
    DA 51        | small, large, large, small, small, lost, small
    D1 14        | small, lost, small, lost, small, small
    EF           | 59.75 ms
    FF D9        | -9.75 ms
    FF E7        | -6.25 ms
    4B 0E A6     | 18.75, 3.5 and 41.5 ms
    00 01 00 00  | 0, 0.25, 0 and 0 ms
  )"),
                 7, 47214, 2, Deltas("239 -39 -25 75 14 x 166 0 x 1 x 0 0"));
}

TEST(ZunRtcpRtpfbTransportCcRead, ReadsAVectorOfOneBitThatOthersSend) {
  ExpectReceived(Hex(R"(
    AF CD 00 07  1B D7 87 DC  E0 82 18 89
    00 14 00 08  | base 20, 8 statuses
    00 B1 83 03  | reference time 45443, feedback packet 3
    AF C0        | one, lost, six
    40 00 49 51  | 16, 0, 18.25 and 20.25 ms
    20 01 0B     | 8, 0.25 and 2.75 ms
    00 00 03     | padding, as the padding bit tells
  )"),
                 20, 45443, 3, Deltas("64 x 0 73 81 32 1 11"));
}

TEST(ZunRtcpRtpfbTransportCcRead, ReadsAVectorWithRoomForMoreThatOthersSend) {
  ExpectReceived(Hex(R"(
    8F CD 00 09  FF FF FF FF  31 89 6C 34
    00 9F 00 0F  | base 159, 15 statuses
    00 00 03 04  | reference time 3, feedback packet 4
    BB FF        | three, lost, ten
    A0 00        | one more, in a vector that has room for others
    A5 00 00 00  | 41.25, 0, 0 and 0 ms
    01 00 00 00 00 00 00 00 00 00  | 0.25 ms, and nine times 0
    00 00        | zeros to the word
  )"),
                 159, 3, 4, Deltas("165 0 0 x 0 1 0 0 0 0 0 0 0 0 0"));
}

TEST(ZunRtcpRtpfbTransportCcRead, ReadsALongLossThatAnotherSends) {
  TransportCc p;
  ASSERT_TRUE(p.Read(Hex(R"(
    AF CD 00 06  30 CB 5C 85  9E 8C CC 60
    00 3D 00 33  | base 61, 51 statuses
    00 B1 92 09  | reference time 45458, feedback packet 9
    00 32 20 01  | 50 lost, one small delta
    39 00 00 03  | 14.25 ms, padding
  )")));
  Infos expected = Untimed(std::string(50, '0'));
  expected.emplace_back(1, 1, 57);
  EXPECT_EQ(InfosOf(p), expected);
  EXPECT_EQ(ToHex(p.bytes().substr(20)), "0032200139000000");
}

TEST(ZunRtcpRtpfbTransportCcRead, ALowByteOfALargeDeltaFrom0x80OnSpillsIntoTheHighOne) {
  TransportCc p;
  ASSERT_TRUE(p.Read(Hex(Head("0006") + "4006 0180 017F 7FFF FE00 8000 00FF")));
  EXPECT_EQ(InfosOf(p), (Infos{{1, 1, -128}, {1, 1, 0x17F}, {1, 1, -1}, {1, 1, -512}, {1, 1, -32768}, {1, 1, -1}}));
  ASSERT_TRUE(p.Read(Hex(Head("0007") + "EAAA 0180 017F 7FFF FE00 8000 00FF 0101")));
  EXPECT_EQ(InfosOf(p),
            (Infos{{1, 1, -128}, {1, 1, 0x17F}, {1, 1, -1}, {1, 1, -512}, {1, 1, -32768}, {1, 1, -1}, {1, 1, 257}}));
}

TEST(ZunRtcpRtpfbTransportCcRead, DeltasThatAreCutShortAreNotReadAtAll) {
  TransportCc p;
  EXPECT_TRUE(p.Read(Hex(Head("0007") + "E9A4 0102 0304")));  // 9 bytes announced, 4 there
  EXPECT_EQ(InfosOf(p), Untimed("2211210"));
  EXPECT_TRUE(p.Read(Hex(Head("0004") + "2004 010203")));
  EXPECT_EQ(InfosOf(p), Untimed("1111"));
  EXPECT_TRUE(p.Read(Hex(Head("0004") + "2004 01020304")));
  EXPECT_EQ(InfosOf(p), (Infos{{1, 1, 1}, {1, 1, 2}, {1, 1, 3}, {1, 1, 4}}));
}

TEST(ZunRtcpRtpfbTransportCcRead, ARunOfLengthZeroAddsNothing) {
  TransportCc p;
  EXPECT_TRUE(p.Read(Hex(Head("0002") + "2000 0000 6000 2002 0708")));
  EXPECT_EQ(InfosOf(p), (Infos{{1, 1, 7}, {1, 1, 8}}));
  EXPECT_FALSE(p.Read(Hex(Head("0002") + "2000 0000 6000")));
  EXPECT_EQ(InfosOf(p), Infos());
}

TEST(ZunRtcpRtpfbTransportCcRead, WhatAChunkHoldsBeyondTheCountIsIgnored) {
  TransportCc p;
  EXPECT_TRUE(p.Read(Hex(Head("0003") + "3FFF 010203")));  // a run of 8191
  EXPECT_EQ(InfosOf(p), (Infos{{1, 1, 1}, {1, 1, 2}, {1, 1, 3}}));
  EXPECT_TRUE(p.Read(Hex(Head("0003") + "BFFF 010203")));  // 14 ones
  EXPECT_EQ(InfosOf(p), (Infos{{1, 1, 1}, {1, 1, 2}, {1, 1, 3}}));
  EXPECT_TRUE(p.Read(Hex(Head("0003") + "E6AA 0102 03")));  // large, small, large, ...
  EXPECT_EQ(InfosOf(p), Untimed("212")) << "two large deltas and a small one are five bytes";
  EXPECT_TRUE(p.Read(Hex(Head("0003") + "E6AA 0102 03 0405")));
  EXPECT_EQ(InfosOf(p), (Infos{{1, 1, 258}, {1, 1, 3}, {1, 1, 0x405}}));
  EXPECT_TRUE(p.Read(Hex(Head("0000") + "FFFF FFFF")));
  EXPECT_EQ(InfosOf(p), Infos());
}

TEST(ZunRtcpRtpfbTransportCcRead, APacketReceivedWithoutADeltaIsRead) {
  TransportCc p;
  EXPECT_TRUE(p.Read(Hex(Head("000A") + "6003 FB40 05 0102 06")));  // three; 3 2 3 1 0 0 0
  EXPECT_EQ(InfosOf(p), (Infos{{1, 0, 0},
                               {1, 0, 0},
                               {1, 0, 0},
                               {1, 0, 0},
                               {1, 1, 0x501},
                               {1, 0, 0},
                               {1, 1, 2},
                               {0, 0, 0},
                               {0, 0, 0},
                               {0, 0, 0}}));
}

TEST(ZunRtcpRtpfbTransportCcRead, VectorsOfAnyPatternAreRead) {
  // Every vector word in turn, in the middle and at the very end of a message, with exactly the deltas it announces.
  for (unsigned word = 0x8000; word <= 0xFFFF; ++word) {
    const bool two = word >= 0xC000;
    std::string deltas;
    Infos expected;
    for (int i = 0; i < (two ? 7 : 14); ++i) {
      const unsigned status = two ? word >> (12 - 2 * i) & 3 : word >> (13 - i) & 1;
      const int delta = status == 1 ? 100 + i : status == 2 ? 0x0100 + i : 0;
      if (status == 2) deltas += '\x01';
      if (status == 1 || status == 2) deltas += static_cast<char>(delta);
      expected.emplace_back(status != 0, status == 1 || status == 2, delta);
    }
    std::string chunk = {static_cast<char>(word >> 8), static_cast<char>(word)};
    std::string packet = Hex(Head(two ? "000E" : "001C")) + chunk + chunk + deltas + deltas;
    expected.insert(expected.end(), expected.begin(), expected.end());
    TransportCc p;
    ASSERT_TRUE(p.Read(packet)) << word;
    ASSERT_EQ(InfosOf(p), expected) << word;
  }
}

TEST(ZunRtcpRtpfbTransportCcRead, ACutMessageKeepsWhatWasReadOfIt) {
  const std::string whole = Golden("TransportCcMixed");
  for (const bool announced : {false, true}) {  // whether the end lies where the bytes end, or where the whole ends
    for (std::size_t size = 4; size <= whole.size(); ++size) {
      SCOPED_TRACE(::testing::Message() << size << (announced ? " bytes of all" : " bytes"));
      TransportCc p;
      ZunRtcpRtpfbTransportCcConstructFull(p, 91, 92, 93, ZunAllocatorGetSystem());
      ASSERT_TRUE(Add(p, true, 64 * kSecond, 94));
      const Infos old = InfosOf(p);
      const bool read = p.Read(whole.substr(0, size), {.beyond = announced ? whole.size() - size : 0});
      EXPECT_EQ(p->latestTime, kNoTime);
      EXPECT_EQ(p->sender, size >= 8 ? 0x01020304U : 91U);
      EXPECT_EQ(p->source, size >= 12 ? 0x05060708U : 92U);
      EXPECT_EQ(p->baseSeq, size >= 14 ? 65534U : 94U);
      EXPECT_EQ(p->refTime, size >= 20 ? -2 : 1000);
      EXPECT_EQ(p->packetCount, size >= 20 ? 42U : 93U);
      Infos expected = old;
      if (size >= 20) {
        const std::size_t statuses = size >= 26 ? 29 : size >= 24 ? 21 : size >= 22 ? 14 : 0;
        expected = Untimed((std::string(18, '1') + std::string(11, '0')).substr(0, statuses));
      }
      // What is announced is there, or one packet after the other is read as long as its delta is.
      std::size_t at = kMixedDeltas;
      for (std::size_t i = 0; i < 18 && (announced || size >= kMixedZeros); ++i) {
        at += i == 14 || i == 16 ? 2 : 1;
        if (at <= size) expected[i] = MixedInfos()[i];
      }
      EXPECT_EQ(InfosOf(p), expected);
      EXPECT_EQ(read, size >= (announced ? kMixedZeros : kMixedDeltas));
    }
  }
}

// The deltas are announced to lie before the end, but the string ends in front of, inside or after each of them.
TEST(ZunRtcpRtpfbTransportCcRead, AnEndBeyondTheStringIsNeverReadTo) {
  const struct {
    std::string chunk;
    std::size_t packets;
    std::size_t size;  // of each delta
  } cases[] = {{"2004", 4, 1}, {"4004", 4, 2}, {"EA80", 4, 2}, {"BC00", 4, 1}, {"6004", 4, 0}};
  for (const auto& c : cases) {
    for (std::size_t bytes = 0; bytes <= 9; ++bytes) {
      SCOPED_TRACE(c.chunk + ", " + std::to_string(bytes));
      TransportCc p;
      const bool read = p.Read(Hex(Head("0004") + c.chunk) + std::string(bytes, '\x01'), {.beyond = 100});
      Infos expected = Untimed("1111");
      for (std::size_t i = 0; c.size != 0 && i < std::min(c.packets, bytes / c.size); ++i) {
        expected[i] = {1, 1, c.size == 2 ? 0x0101 : 1};
      }
      EXPECT_EQ(InfosOf(p), expected);
      EXPECT_EQ(read, bytes >= c.packets * c.size);
    }
  }
}

TEST(ZunRtcpRtpfbTransportCcRead, ABodyThatIsNotInTheStringLeavesItAsItWas) {
  const Datagram datagram(Golden("TransportCcMixed"));
  TransportCc p;
  EXPECT_FALSE(ZunRtcpRtpfbTransportCcAssignFromBuffer(p.sp(), datagram, 8, 4, 205, 15));
  EXPECT_FALSE(ZunRtcpRtpfbTransportCcAssignFromBuffer(p.sp(), datagram, 1000, 2000, 205, 15));
  EXPECT_EQ(p->sender, 0U);
}

// Sixteen bytes of chunks that tell of 65535 packets.
TEST(ZunRtcpRtpfbTransportCcRead, AShortListOfLongRunsCostsNoMoreThanItsPackets) {
  for (const std::string status : {"1", "3", "5", "7"}) {  // lost, small, large, without a delta
    const std::string run = status + "FFF";
    std::string chunks;
    for (int i = 0; i < 8; ++i) chunks += run;
    TestAllocator allocator;
    TransportCc p(allocator);
    const auto start = std::chrono::steady_clock::now();
    // The last 7 of the 65535 need one more chunk.
    EXPECT_FALSE(p.Read(Hex(Head("FFFF") + chunks)));
    EXPECT_EQ(InfosOf(p).size(), 65528U);
    EXPECT_LE(allocator.live_bytes(), 65535U * 4);
    EXPECT_TRUE(p.Read(Hex(Head("FFF8") + chunks)));
    EXPECT_TRUE(InfosOf(p) == Untimed(std::string(65528, status == "1" ? '0' : '1')));
    EXPECT_LE(allocator.live_bytes(), 65535U * 4);
    EXPECT_LE(allocator.allocations(), 2U);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
  }
}

TEST(ZunRtcpRtpfbTransportCcRead, ACountThatNoChunkBearsOutTakesNoMemory) {
  TestAllocator allocator;
  TransportCc p(allocator);
  EXPECT_FALSE(p.Read(Hex(Head("FFFF"))));
  EXPECT_EQ(allocator.allocations(), 0U);
  EXPECT_FALSE(p.Read(Hex(Head("FFFF") + "8000")));
  EXPECT_LE(allocator.live_bytes(), 14U * 4);
  EXPECT_EQ(InfosOf(p), Untimed(std::string(14, '0')));
}

TEST(ZunRtcpRtpfbTransportCcRead, ARefusedReadKeepsThePacketsThatFit) {
  ForEveryRefusal([](TestAllocator& refusing) {
    TransportCc p(refusing);
    const bool read = p.Read(Golden("TransportCcMixed"));
    if (read) {
      EXPECT_EQ(InfosOf(p), MixedInfos());
    } else {
      EXPECT_EQ(InfosOf(p), Infos()) << "not even two fit";
      EXPECT_GT(refusing.refused(), 1U);
    }
    EXPECT_EQ(p->refTime, -2);
  });
  // Room for 2, 4, 8, 16 and 32 packets, but never for all at once.
  for (std::size_t room = 0; room <= 32; ++room) {
    SCOPED_TRACE(room);
    TestAllocator cramped;
    cramped.RefuseAbove(room * 4);
    TransportCc p(cramped);
    const bool read = p.Read(Golden("TransportCcMixed"));
    std::size_t fitting = 0;
    for (std::size_t capacity = 2; capacity <= room; capacity *= 2) fitting = capacity;
    if (room >= 29) {
      EXPECT_TRUE(read);
      EXPECT_EQ(InfosOf(p), MixedInfos());
    } else {
      EXPECT_FALSE(read);
      EXPECT_EQ(InfosOf(p), Untimed((std::string(18, '1') + std::string(11, '0')).substr(0, fitting)));
    }
  }
}

TEST(ZunRtcpRtpfbTransportCcRead, ARefusedReservationAloneIsNotReported) {
  TestAllocator refusing;
  TransportCc p(refusing);
  refusing.RefuseOnce(0);
  EXPECT_TRUE(p.Read(Golden("TransportCcMixed")));
  EXPECT_EQ(InfosOf(p), MixedInfos());
  EXPECT_EQ(ZunVector_ZunRtcpRtpfbTransportCcPacketInfoCapacity(&p->packetInfo), 32U);
}

TEST(ZunRtcpRtpfbTransportCcRead, ReadingAgainInPlaceGivesWhatAFreshReadGives) {
  const std::string packets[] = {
      Golden("TransportCcMixed"),
      Hex(Head("0000")),
      Hex(Head("0002") + "2002 0102"),
      Hex(Head("0007") + "E9A4 0102 0304"),
      Hex(Head("001D") + "BFFF 8000 2001" + std::string(30, '1')),
      Hex(Head("0028") + "0010 6010 2008 0102030405060708"),
  };
  for (const std::string& first : packets) {
    for (const std::string& second : packets) {
      TestAllocator allocator;
      TransportCc used(allocator);
      ASSERT_TRUE(used.Read(first));
      ASSERT_TRUE(Add(used, true, kSecond));
      ASSERT_TRUE(used.Read(second));
      TransportCc fresh;
      ASSERT_TRUE(fresh.Read(second));
      EXPECT_EQ(InfosOf(used), InfosOf(fresh));
      EXPECT_EQ(used->latestTime, fresh->latestTime);
      EXPECT_EQ(used->refTime, fresh->refTime);
      EXPECT_EQ(ToHex(used.bytes()), ToHex(fresh.bytes()));
    }
  }
}

TEST(ZunRtcpRtpfbTransportCcRead, ReadingAndWritingAgainInPlaceAllocatesNothing) {
  TestAllocator allocator;
  TransportCc p(allocator);
  Text out(allocator.get());
  const std::string shorter = Hex(Head("0002") + "2002 0102");
  ASSERT_TRUE(p.Read(Golden("TransportCcMixed")));
  ASSERT_TRUE(ZunRtcpRtpfbTransportCcWritePacket(p.sp(), out, 0));
  const std::size_t calls = allocator.calls();
  for (const std::string& packet : {Golden("TransportCcMixed"), shorter, Golden("TransportCcMixed")}) {
    ASSERT_TRUE(p.Read(packet));
    ZunStringClear(out);
    ASSERT_TRUE(ZunRtcpRtpfbTransportCcWritePacket(p.sp(), out, 0));
  }
  EXPECT_EQ(allocator.calls(), calls);
}

TEST(ZunRtcpRtpfbTransportCcRead, AFreshReadAllocatesOnce) {
  TestAllocator allocator;
  TransportCc p(allocator);
  ASSERT_TRUE(p.Read(Golden("TransportCcMixed")));
  EXPECT_EQ(allocator.allocations(), 1U);
  EXPECT_EQ(allocator.live_bytes(), 29U * 4);
}

}  // namespace
