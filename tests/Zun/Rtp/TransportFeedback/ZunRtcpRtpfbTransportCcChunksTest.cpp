// How statuses are written as chunks.
#include <gtest/gtest.h>

#include <random>
#include <string>

#include "tests/Zun/Rtp/TransportFeedback/TransportCcTests.h"

namespace {

using namespace test;

// The chunk words that the statuses are written as, in hex.
std::string ChunksOf(const std::string& statuses, std::size_t words) {
  TransportCc p;
  PushStatuses(p, statuses);
  return ToHex(p.bytes().substr(20, 2 * words));
}

TEST(ZunRtcpRtpfbTransportCcChunks, ARunGoesOnUntilTheStatusChanges) {
  EXPECT_EQ(ChunksOf(std::string(20, '1') + "0", 2), "20140001");
  EXPECT_EQ(ChunksOf(std::string(14, '0') + "1", 2), "000E2001");
  EXPECT_EQ(ChunksOf("22222221", 2), "40072001");
  EXPECT_EQ(ChunksOf("33333330", 2), "60070001");
  EXPECT_EQ(ChunksOf("00000002", 2), "00074001");
  EXPECT_EQ(ChunksOf("11111111111113", 2), "200D6001");
  EXPECT_EQ(ChunksOf("1", 1), "2001");
}

TEST(ZunRtcpRtpfbTransportCcChunks, AShortRunBecomesAVector) {
  EXPECT_EQ(ChunksOf("1110111", 1), "BB80");
  EXPECT_EQ(ChunksOf("00000000000001", 1), "8001");
  EXPECT_EQ(ChunksOf("00000001", 1), "8040");
  EXPECT_EQ(ChunksOf("2222220", 1), "EAA8");
  EXPECT_EQ(ChunksOf("3330111", 1), "FF15");
  EXPECT_EQ(ChunksOf("12", 1), "D800");
  EXPECT_EQ(ChunksOf("0123012", 1), "C6C6");
}

TEST(ZunRtcpRtpfbTransportCcChunks, AVectorGoesOnUntilItIsFull) {
  EXPECT_EQ(ChunksOf("101010101010101", 2), "AAAA2001");
  EXPECT_EQ(ChunksOf("10101021", 2), "D1122001");
  EXPECT_EQ(ChunksOf("200000000000001", 2), "E0008040");
}

TEST(ZunRtcpRtpfbTransportCcChunks, ARunIsCutAtItsLongest) {
  EXPECT_EQ(ChunksOf(std::string(8191, '0'), 1), "1FFF");
  EXPECT_EQ(ChunksOf(std::string(8192, '0'), 2), "1FFF0001");
  EXPECT_EQ(ChunksOf(std::string(8200, '0'), 2), "1FFF0009");
  EXPECT_EQ(ChunksOf(std::string(8191, '3') + "0", 2), "7FFF0001");
  EXPECT_EQ(ChunksOf(std::string(2 * 8191, '0') + "1", 3), "1FFF1FFF2001");
}

// The reader takes it for 14 statuses: the rules of writing stay as peers know them.
TEST(ZunRtcpRtpfbTransportCcChunks, AShortVectorOfOneBitInFrontOfALargeDeltaDoesNotReadBack) {
  TransportCc p;
  for (const Info& info : {Info{1, 1, 9}, Info{0, 0, 0}, Info{0, 0, 0}, Info{0, 0, 0}, Info{0, 0, 0}, Info{0, 0, 0},
                           Info{0, 0, 0}, Info{1, 1, 300}}) {
    Push(p, info);
  }
  const std::string bytes = p.bytes();
  EXPECT_EQ(ToHex(bytes), ToHex(Hex(R"(
    8F CD 00 06  | version 2, FMT 15, packet type 205, 7 words
    00 00 00 00  | sender
    00 00 00 00  | media source
    00 00 00 08  | base 0, 8 statuses
    00 00 00 00  | reference time 0, feedback packet 0
    A0 00 40 01  | one, and six lost ones; a run of one large delta
    09 01 2C 00  | 9, 300, a zero
  )")));
  EXPECT_FALSE(ByTheBook(p).reads_back());
  TransportCc back;
  EXPECT_TRUE(back.Read(bytes));
  EXPECT_EQ(InfosOf(back), (Infos{{1, 1, 0x40},  // the next chunk, taken for the first delta
                                  {0, 0, 0},
                                  {0, 0, 0},
                                  {0, 0, 0},
                                  {0, 0, 0},
                                  {0, 0, 0},
                                  {0, 0, 0},
                                  {0, 0, 0}}));
}

TEST(ZunRtcpRtpfbTransportCcChunks, AllShortSequencesAreWrittenByTheBook) {
  // All of up to 4 statuses, and all one-bit ones of up to 9 followed by each status.
  for (int length = 0; length <= 4; ++length) {
    for (int n = 0; n < 1 << 2 * length; ++n) {
      std::string statuses;
      for (int i = 0; i < length; ++i) statuses += static_cast<char>('0' + (n >> 2 * i & 3));
      TransportCc p;
      PushStatuses(p, statuses);
      ASSERT_NO_FATAL_FAILURE(ExpectWrittenByTheBook(p));
    }
  }
  for (int length = 5; length <= 9; ++length) {
    for (int n = 0; n < 1 << length; ++n) {
      for (const char last : {'0', '1', '2', '3'}) {
        std::string statuses;
        for (int i = 0; i < length; ++i) statuses += static_cast<char>('0' + (n >> i & 1));
        TransportCc p;
        PushStatuses(p, statuses + last + "01");
        ASSERT_NO_FATAL_FAILURE(ExpectWrittenByTheBook(p));
      }
    }
  }
}

TEST(ZunRtcpRtpfbTransportCcChunks, RandomSequencesAreWrittenByTheBook) {
  std::mt19937 random(20261121);
  const auto below = [&](unsigned n) { return static_cast<unsigned>(random() % n); };
  const std::string alphabets[] = {"01", "1", "0", "12", "0123", "0011111111", "0111111112", "01111111111113",
                                   "02", "3"};
  int read_back = 0;
  for (int round = 0; round < 6000; ++round) {
    // Runs of random lengths of statuses that one alphabet or another gives.
    std::string statuses;
    const unsigned runs = below(12);
    for (unsigned i = 0; i < runs; ++i) {
      const std::string& alphabet = alphabets[below(std::size(alphabets))];
      const unsigned length = below(3) == 0 ? 1 + below(40) : 1 + below(8);
      const bool is_run = below(2) == 0;
      const char status = alphabet[below(static_cast<unsigned>(alphabet.size()))];
      for (unsigned k = 0; k < length; ++k) {
        statuses += is_run ? status : alphabet[below(static_cast<unsigned>(alphabet.size()))];
      }
    }
    TransportCc p;
    p->sender = static_cast<ZunRtpSourceId>(random());
    p->source = static_cast<ZunRtpSourceId>(random());
    p->baseSeq = static_cast<ZunUint16>(random());
    p->refTime = static_cast<ZunInt32>(random());
    p->packetCount = static_cast<ZunUint8>(random());
    PushStatuses(p, statuses);
    ASSERT_NO_FATAL_FAILURE(ExpectWrittenByTheBook(p)) << statuses;
    read_back += ByTheBook(p).reads_back() ? 1 : 0;
  }
  EXPECT_GT(read_back, 2000);
}

TEST(ZunRtcpRtpfbTransportCcChunks, LongRunsAndListsAreWrittenByTheBook) {
  std::mt19937 random(7);
  const struct {
    std::size_t length;
    char status;
    std::string tail;
  } runs[] = {
      {8190, '1', "1"}, {8190, '0', "1"}, {8191, '1', "2111111"}, {8192, '2', ""}, {8205, '0', "01010101010101"}};
  for (const auto& run : runs) {
    TransportCc p;
    PushStatuses(p, std::string(run.length, run.status) + run.tail);
    ASSERT_NO_FATAL_FAILURE(ExpectWrittenByTheBook(p));
  }
  for (const std::string alphabet : {"01", "0123", "0111111111111111", "02222222222222222"}) {
    std::string statuses;
    for (int i = 0; i < 3000; ++i) statuses += alphabet[random() % alphabet.size()];
    TransportCc p;
    PushStatuses(p, statuses);
    ASSERT_NO_FATAL_FAILURE(ExpectWrittenByTheBook(p));
  }
}

TEST(ZunRtcpRtpfbTransportCcChunks, AnyTrueValueOfAFlagCounts) {
  TransportCc p;
  Push(p, {1, 1, 0});
  Push(p, {2, 0x80, 255});
  Push(p, {0xFF, 4, 256});
  Push(p, {0x10, 0, 77});
  for (int i = 0; i < 40; ++i) Push(p, {static_cast<ZunBool>(1 + i % 3), static_cast<ZunBool>(1 + i % 2), 5});
  for (int i = 0; i < 40; ++i) Push(p, {0, static_cast<ZunBool>(i), static_cast<ZunInt16>(i)});
  const ByTheBook naive(p);
  EXPECT_EQ(naive.statuses(), "1123" + std::string(40, '1') + std::string(40, '0'));
  EXPECT_EQ(ToHex(p.bytes()), ToHex(naive.bytes()));
}

}  // namespace
