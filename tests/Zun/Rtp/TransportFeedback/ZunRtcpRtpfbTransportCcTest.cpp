#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <random>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include "tests/support/Kinds.h"
#include "tests/support/LogCapture.h"

namespace {

using test::Datagram;
using test::ForEveryRefusal;
using test::Hex;
using test::LogCapture;
using test::TestAllocator;
using test::Text;
using test::ToHex;

using TransportCc =
    test::Built<ZunRtcpRtpfbTransportCc, ZunRtcpRtpfbTransportCcConstructDefault, ZunRtcpRtpfbTransportCcDestruct>;
using Info = ZunRtcpRtpfbTransportCcPacketInfo;
using Infos = std::vector<std::tuple<int, int, int>>;  // received, haveDelta, delta

constexpr ZunTime kNoTime = ZUN_RTCPRTPFB_TRANSPORTCC_NO_TIME;
constexpr ZunTime kMillisecond = 1000000;
constexpr ZunTime kSecond = 1000 * kMillisecond;

Infos InfosOf(const ZunRtcpRtpfbTransportCc* p) {
  Infos infos;
  for (const Info* i = p->packetInfo.begin; i != p->packetInfo.end; ++i) {
    infos.emplace_back(i->received, i->haveDelta, i->delta);
  }
  return infos;
}

// The packet infos that are read of statuses alone.
Infos Untimed(const std::string& statuses) {
  Infos infos;
  for (const char status : statuses) infos.emplace_back(status != '0', 0, 0);
  return infos;
}

bool Add(ZunRtcpRtpfbTransportCc* p, bool received, ZunTime ts, ZunUint16 seq = 1) {
  return ZunRtcpRtpfbTransportCcAddPacket(p, received, seq, ts) != 0;
}

void Push(ZunRtcpRtpfbTransportCc* p, const Info& info) {
  ASSERT_TRUE(ZunVector_ZunRtcpRtpfbTransportCcPacketInfoPushBack(&p->packetInfo, &info));
}

// Adds a packet info for each status: small deltas count up, large ones are negative and positive in turn.
void PushStatuses(ZunRtcpRtpfbTransportCc* p, const std::string& statuses) {
  int n = 0;
  for (const char status : statuses) {
    ++n;
    switch (status) {
      case '0':
        Push(p, {0, 0, 0});
        break;
      case '1':
        Push(p, {1, 1, static_cast<ZunInt16>(n % 256)});
        break;
      case '2':
        Push(p, {1, 1, static_cast<ZunInt16>(n % 2 == 0 ? -n % 32768 - 1 : 256 + n * 7 % 32512)});
        break;
      default:
        Push(p, {1, 0, 0});
        break;
    }
  }
}

std::string Append(const ZunRtcpSubpacket* sp, bool pad = false) {
  return test::Append(ZunRtcpRtpfbTransportCcWritePacket, sp, pad);
}

bool Read(ZunRtcpSubpacket* sp, const std::string& packet, ZunSizeT beyond = 0) {
  return test::Read(ZunRtcpRtpfbTransportCcAssignFromBuffer, sp, packet, beyond);
}

// All that adding packets changes.
struct TransportCcFields {
  ZunUint16 base_seq;
  ZunInt32 reference_time;
  ZunTime latest_time;
  Infos infos;
  bool operator==(const TransportCcFields&) const = default;
};

TransportCcFields FieldsOf(const TransportCc& p) {
  return {p.get()->baseSeq, p.get()->refTime, p.get()->latestTime, InfosOf(p)};
}

// The chunk words that the statuses are written as, in hex.
std::string ChunksOf(const std::string& statuses, std::size_t words) {
  TransportCc p;
  PushStatuses(p, statuses);
  return ToHex(Append(p.sp()).substr(20, 2 * words));
}

// The wire form, made by the book: bits as text, and every rule put as a question about what is taken so far.

class Naive {
 public:
  explicit Naive(const ZunRtcpRtpfbTransportCc* p) : p_(p) {
    for (const Info* i = p->packetInfo.begin; i != p->packetInfo.end; ++i) statuses_ += StatusOf(*i);
    for (std::size_t at = 0; at < statuses_.size();) {
      std::string taken(1, statuses_[at++]);
      while (at < statuses_.size() && MayTake(taken, statuses_[at])) taken += statuses_[at++];
      chunks_ += ToWord(BitsOf(taken));
      if (!AllTheSame(taken) && !HasWide(taken) && taken.size() < 14 && at < statuses_.size()) reads_back_ = false;
    }
  }

  const std::string& statuses() const { return statuses_; }
  std::size_t chunk_bytes() const { return chunks_.size(); }
  // Whether a reader that takes every vector to be full understands it.
  bool reads_back() const { return reads_back_; }

  std::string bytes() const {
    std::string body = Number(p_->sender, 4) + Number(p_->source, 4) + Number(p_->baseSeq, 2) +
                       Number(static_cast<long long>(statuses_.size() % 65536), 2) + Number(p_->refTime, 3) +
                       Number(p_->packetCount, 1) + chunks_;
    for (std::size_t i = 0; i < statuses_.size(); ++i) {
      if (statuses_[i] == '1') body += Number(p_->packetInfo.begin[i].delta, 1);
      if (statuses_[i] == '2') body += Number(p_->packetInfo.begin[i].delta, 2);
    }
    while (body.size() % 4 != 0) body += '\0';
    return std::string("\x8F\xCD") + Number(static_cast<long long>(body.size() / 4 % 65536), 2) + body;
  }

  // What reading it back gives: a large delta is not read as it was written when its low byte is 0x80 or more.
  Infos read() const {
    Infos infos;
    for (std::size_t i = 0; i < statuses_.size(); ++i) {
      int delta = statuses_[i] == '1' || statuses_[i] == '2' ? p_->packetInfo.begin[i].delta : 0;
      if (statuses_[i] == '2' && (delta & 0xFF) >= 128) delta = (delta & 0xFF) - 256;
      infos.emplace_back(statuses_[i] != '0', statuses_[i] == '1' || statuses_[i] == '2', delta);
    }
    return infos;
  }

 private:
  static char StatusOf(const Info& info) {
    if (info.received == 0) return '0';
    if (info.haveDelta == 0) return '3';
    return info.delta >= 0 && info.delta <= 255 ? '1' : '2';
  }
  static bool IsWide(char status) { return status == '2' || status == '3'; }
  static bool HasWide(const std::string& taken) { return taken.find_first_of("23") != std::string::npos; }
  static bool AllTheSame(const std::string& taken) { return taken.find_first_not_of(taken[0]) == std::string::npos; }

  static bool MayTake(const std::string& taken, char next) {
    const bool for_any = taken.size() < 7;
    const bool for_bits = taken.size() < 14 && !IsWide(next) && !HasWide(taken);
    return for_any || for_bits || (taken.size() < 8191 && next == taken[0] && AllTheSame(taken));
  }

  static std::string BitsOf(const std::string& taken) {
    const auto binary = [](std::size_t value, std::size_t width) {
      std::string bits;
      for (; width > 0; --width) bits += (value >> (width - 1)) % 2 == 1 ? '1' : '0';
      return bits;
    };
    if (AllTheSame(taken)) return "0" + binary(static_cast<std::size_t>(taken[0] - '0'), 2) + binary(taken.size(), 13);
    std::string bits = HasWide(taken) ? "11" : "10";
    for (const char status : taken) bits += binary(static_cast<std::size_t>(status - '0'), HasWide(taken) ? 2 : 1);
    return bits;
  }
  static std::string ToWord(std::string bits) {
    bits.resize(16, '0');
    return Number(std::stoi(bits, nullptr, 2), 2);
  }
  static std::string Number(long long value, int width) {
    std::string bytes;
    for (; width > 0; --width, value >>= 8) bytes.insert(bytes.begin(), static_cast<char>(value));
    return bytes;
  }

  const ZunRtcpRtpfbTransportCc* p_;
  std::string statuses_;
  std::string chunks_;
  bool reads_back_ = true;
};

// Writes `p` and compares with the naive wire form; reads it back where that can be.
void ExpectWrittenByTheBook(const TransportCc& p) {
  const Naive naive(p.get());
  const std::string bytes = Append(p.sp());
  ASSERT_EQ(ToHex(bytes), ToHex(naive.bytes())) << naive.statuses();
  ASSERT_EQ(ZunRtcpRtpfbTransportCcGetPacketLength(p.sp()), bytes.size());
  ASSERT_EQ(ZunRtcpRtpfbTransportCcGetPacketLength_(p.get()), bytes.size());
  if (!naive.reads_back() || naive.statuses().size() > 65535) return;
  TransportCc back;
  ASSERT_TRUE(Read(back.sp(), bytes));
  ASSERT_EQ(InfosOf(back), naive.read()) << naive.statuses();
  ASSERT_EQ(back->baseSeq, p.get()->baseSeq);
  ASSERT_EQ(back->packetCount, p.get()->packetCount);
}

// Construction.

TEST(ZunRtcpRtpfbTransportCc, IsBuiltWithoutPackets) {
  TestAllocator allocator;
  ZunRtcpRtpfbTransportCc p;
  ASSERT_EQ(ZunRtcpRtpfbTransportCcConstructFull(&p, 1, 2, 3, allocator), &p);
  EXPECT_EQ(p.type, ZUN_RTCPSUBPACKET_TYPE_RTPFB);
  EXPECT_EQ(p.fmt, ZUN_RTCPRTPFB_TYPE_TransportCC);
  EXPECT_EQ(p.sender, 1U);
  EXPECT_EQ(p.source, 2U);
  EXPECT_EQ(p.packetCount, 3U);
  EXPECT_EQ(ZunRtcpRtpfbTransportCcGetBaseSeq(&p), 0U);
  EXPECT_EQ(ZunRtcpRtpfbTransportCcGetRefTime(&p), 0);
  EXPECT_EQ(p.latestTime, INT64_MAX);
  EXPECT_TRUE(ZunVector_ZunRtcpRtpfbTransportCcPacketInfoEmpty(&p.packetInfo));
  EXPECT_EQ(ZunRtcpRtpfbTransportCcGetAllocator(&p), allocator.get());
  ZunRtcpRtpfbTransportCcDestruct(&p);

  ASSERT_EQ(ZunRtcpRtpfbTransportCcConstructDefault(&p, allocator), &p);
  EXPECT_EQ(p.type, ZUN_RTCPSUBPACKET_TYPE_RTPFB);
  EXPECT_EQ(p.fmt, ZUN_RTCPRTPFB_TYPE_TransportCC);
  EXPECT_EQ(p.sender, 0U);
  EXPECT_EQ(p.source, 0U);
  EXPECT_EQ(p.packetCount, 0U);
  EXPECT_EQ(p.latestTime, INT64_MAX);
  ZunRtcpRtpfbTransportCcDestruct(&p);
  EXPECT_EQ(allocator.calls(), 0U);
}

TEST(ZunRtcpRtpfbTransportCc, DestructingItTwiceIsHarmless) {
  TestAllocator allocator;
  ZunRtcpRtpfbTransportCc p;
  ZunRtcpRtpfbTransportCcConstructDefault(&p, allocator);
  ASSERT_TRUE(Add(&p, true, kSecond));
  ZunRtcpRtpfbTransportCcDestruct(&p);
  EXPECT_TRUE(ZunVector_ZunRtcpRtpfbTransportCcPacketInfoEmpty(&p.packetInfo));
  ZunRtcpRtpfbTransportCcDestruct(&p);
}

// Adding.

TEST(ZunRtcpRtpfbTransportCc, ALostAnUntimedAndATimedPacketAreAdded) {
  TransportCc p;
  EXPECT_TRUE(Add(p, false, 5 * kSecond));
  EXPECT_EQ(p->latestTime, kNoTime) << "the time of a lost packet is not looked at";
  EXPECT_TRUE(Add(p, true, kNoTime));
  EXPECT_EQ(p->latestTime, kNoTime);
  EXPECT_TRUE(Add(p, true, 100 * kMillisecond));
  EXPECT_EQ(p->refTime, 1);
  EXPECT_EQ(p->latestTime, 100 * kMillisecond);
  EXPECT_EQ(InfosOf(p), (Infos{{0, 0, 0}, {1, 1, 0}, {1, 1, 144}}));
}

TEST(ZunRtcpRtpfbTransportCc, AnArrivalWithoutATimeIsWrittenAsADeltaOfZero) {
  TransportCc p;
  EXPECT_TRUE(Add(p, true, kNoTime));
  EXPECT_EQ(ToHex(Append(p.sp()).substr(20)), "20010000");  // a run of one small delta, the delta, one zero
}

TEST(ZunRtcpRtpfbTransportCc, OnlyTheFirstSequenceNumberIsLookedAt) {
  TransportCc p;
  EXPECT_TRUE(Add(p, false, kNoTime, 65535));
  EXPECT_TRUE(Add(p, false, kNoTime, 12));
  EXPECT_EQ(ZunRtcpRtpfbTransportCcGetBaseSeq(p), 65535U);
  ZunVector_ZunRtcpRtpfbTransportCcPacketInfoClear(&p->packetInfo);
  EXPECT_TRUE(Add(p, false, kNoTime, 12));
  EXPECT_EQ(ZunRtcpRtpfbTransportCcGetBaseSeq(p), 12U);
}

TEST(ZunRtcpRtpfbTransportCc, TheReferenceTimeIsSetOnce) {
  TransportCc p;
  EXPECT_TRUE(Add(p, true, 64 * kMillisecond));
  EXPECT_TRUE(Add(p, true, 640 * kMillisecond));
  EXPECT_EQ(p->refTime, 1);
  EXPECT_EQ(InfosOf(p), (Infos{{1, 1, 0}, {1, 1, 2304}}));
}

TEST(ZunRtcpRtpfbTransportCc, TheReferenceTimeIsTruncatedTowardZeroAndKeepsItsSign) {
  const auto reference = [](ZunTime ts, ZunTime* latest_before, int* delta) {
    TransportCc p;
    EXPECT_TRUE(Add(p, true, ts));
    *delta = p->packetInfo.begin->delta;
    *latest_before = ts - *delta * ZunTime{250000};
    return ZunRtcpRtpfbTransportCcGetRefTime(p);
  };
  ZunTime from = 0;
  int delta = 0;
  EXPECT_EQ(reference(63 * kMillisecond, &from, &delta), 0);
  EXPECT_EQ(delta, 252);
  EXPECT_EQ(reference(-63 * kMillisecond, &from, &delta), 0);
  EXPECT_EQ(delta, -252);
  EXPECT_EQ(reference(-100 * kMillisecond, &from, &delta), -1);
  EXPECT_EQ(delta, -144);
  EXPECT_EQ(from, -64 * kMillisecond);
  const ZunTime wrap = (ZunTime{1} << 24) * 64 * kMillisecond;
  EXPECT_EQ(reference(wrap - 1, &from, &delta), (1 << 24) - 1);
  EXPECT_EQ(reference(wrap, &from, &delta), 0);
  EXPECT_EQ(delta, 0);
  EXPECT_EQ(reference(5 * wrap + 128 * kMillisecond, &from, &delta), 2);
  EXPECT_EQ(reference(-wrap - 128 * kMillisecond, &from, &delta), -2);
  EXPECT_EQ(reference(INT64_MIN, &from, &delta), static_cast<ZunInt32>(INT64_MIN / 64000000 % (1 << 24)));
  EXPECT_EQ(reference(INT64_MAX - 1, &from, &delta), static_cast<ZunInt32>(INT64_MAX / 64000000 % (1 << 24)));
}

TEST(ZunRtcpRtpfbTransportCc, DeltasAreTruncatedTowardZero) {
  const auto delta_of = [](ZunTime difference) {
    TransportCc p;
    EXPECT_TRUE(Add(p, true, 10 * kSecond));
    EXPECT_TRUE(Add(p, true, 10 * kSecond + difference));
    return static_cast<int>(p->packetInfo.begin[1].delta);
  };
  EXPECT_EQ(delta_of(-100000), 0);
  EXPECT_EQ(delta_of(-249999), 0);
  EXPECT_EQ(delta_of(-250000), -1);
  EXPECT_EQ(delta_of(-300000), -1);
  EXPECT_EQ(delta_of(249999), 0);
  EXPECT_EQ(delta_of(250000), 1);
  EXPECT_EQ(delta_of(499999), 1);
}

TEST(ZunRtcpRtpfbTransportCc, ADeltaOfMinusOneIsALargeOne) {
  TransportCc p;
  ASSERT_TRUE(Add(p, true, 64 * kSecond));
  ASSERT_TRUE(Add(p, true, 64 * kSecond - 300000));
  // A vector of a small and a large delta, the delta 0, the delta -1 in two bytes, zeros.
  EXPECT_EQ(ToHex(Append(p.sp()).substr(20)), "D80000FFFF000000");
}

TEST(ZunRtcpRtpfbTransportCc, DeltasCountFromTheExactTimeNotFromTheRoundedOne) {
  TransportCc p;
  for (int i = 0; i <= 4; ++i) ASSERT_TRUE(Add(p, true, 64 * kSecond + i * ZunTime{375000}));
  // Deltas that add up to the true time would be 1, 2, 1, 2.
  EXPECT_EQ(InfosOf(p), (Infos{{1, 1, 0}, {1, 1, 1}, {1, 1, 1}, {1, 1, 1}, {1, 1, 1}}));
  EXPECT_EQ(p->latestTime, 64 * kSecond + 4 * 375000);
}

TEST(ZunRtcpRtpfbTransportCc, TheLargestDeltasAreAddedAndTheNextOnesRefused) {
  const struct {
    ZunTime difference;
    bool is_added;
    int delta;
  } cases[] = {
      {8191874000, true, 32767},   {8191874001, false, 0},  {9 * kSecond, false, 0},
      {-8192124000, true, -32768}, {-8192124001, false, 0}, {-9 * kSecond, false, 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.difference);
    TransportCc p;
    const ZunTime start = 128 * kSecond + 1;
    ASSERT_TRUE(Add(p, true, start));
    EXPECT_EQ(Add(p, true, start + c.difference), c.is_added);
    Infos expected = {{1, 1, 0}};
    if (c.is_added) expected.emplace_back(1, 1, c.delta);
    EXPECT_EQ(InfosOf(p), expected);
    EXPECT_EQ(p->latestTime, c.is_added ? start + c.difference : start);
    EXPECT_EQ(p->refTime, 2000);
    // The object goes on from where it was.
    EXPECT_TRUE(Add(p, true, p->latestTime + kMillisecond));
    EXPECT_EQ(std::get<2>(InfosOf(p).back()), 4);
  }
}

TEST(ZunRtcpRtpfbTransportCc, TimesAreComparedAroundTheEndsOfTheirRange) {
  TransportCc p;
  ASSERT_TRUE(Add(p, true, INT64_MIN));
  const Infos first = InfosOf(p);
  EXPECT_TRUE(Add(p, true, INT64_MAX - kMillisecond)) << "a millisecond and a nanosecond before, modulo 2^64";
  EXPECT_EQ(std::get<2>(InfosOf(p).back()), -4);
  EXPECT_FALSE(Add(p, true, 0));
  EXPECT_TRUE(Add(p, true, INT64_MIN));
  EXPECT_EQ(std::get<2>(InfosOf(p).back()), 4);
  EXPECT_FALSE(Add(p, true, INT64_MAX - 9 * kSecond));
  EXPECT_EQ(InfosOf(p).size(), first.size() + 2);
}

TEST(ZunRtcpRtpfbTransportCc, ItsListGrowsFromTwoToTwice) {
  TestAllocator allocator;
  TransportCc p(allocator);
  for (const ZunSizeT capacity : {2U, 2U, 4U, 4U, 8U}) {
    ASSERT_TRUE(Add(p, true, kSecond));
    EXPECT_EQ(ZunVector_ZunRtcpRtpfbTransportCcPacketInfoCapacity(&p->packetInfo), capacity);
  }
}

// Whether it is the first of the list or not, timed or not: a second try adds what the first would have.
TEST(ZunRtcpRtpfbTransportCc, APacketThatCannotBeStoredCanBeTriedAgain) {
  ForEveryRefusal([](TestAllocator& refusing) {
    TransportCc p(refusing);
    TransportCc undisturbed;
    for (int i = 0; i < 20; ++i) {
      const bool received = i % 3 != 0;
      const ZunTime ts = i % 5 == 2 ? kNoTime : 65 * kSecond + i * kMillisecond;
      const ZunUint16 seq = static_cast<ZunUint16>(7 + i);
      ASSERT_TRUE(Add(undisturbed, received, ts, seq));
      const TransportCcFields before = FieldsOf(p);
      if (!Add(p, received, ts, seq)) {
        EXPECT_EQ(FieldsOf(p), before);
        refusing.RefuseNothing();
        ASSERT_TRUE(Add(p, received, ts, seq));
      }
      EXPECT_EQ(FieldsOf(p), FieldsOf(undisturbed));
    }
  });
}

TEST(ZunRtcpRtpfbTransportCc, TheEstimateIsSevenPacketsForSixteenBytes) {
  TransportCc p;
  const auto estimate = [&](ZunSizeT mtu) { return ZunRtcpRtpfbTransportCcGetEstimatedPacketsRemaining(p, mtu); };
  EXPECT_EQ(estimate(0), 0U);
  EXPECT_EQ(estimate(19), 0U);
  EXPECT_EQ(estimate(20), 0U);
  EXPECT_EQ(estimate(22), 0U);
  EXPECT_EQ(estimate(23), 1U);
  EXPECT_EQ(estimate(36), 7U);
  EXPECT_EQ(estimate(1200), 516U);
  EXPECT_EQ(estimate(SIZE_MAX), (SIZE_MAX - 20) / 16 * 7 + (SIZE_MAX - 20) % 16 * 7 / 16);
  PushStatuses(p, "1111111");
  EXPECT_EQ(estimate(32), 0U);
  EXPECT_EQ(estimate(48), 7U);
}

// Chunks.

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
  const std::string bytes = Append(p.sp());
  EXPECT_EQ(ToHex(bytes), ToHex(Hex(R"(
    8F CD 00 06  | version 2, FMT 15, packet type 205, 7 words
    00 00 00 00  | sender
    00 00 00 00  | media source
    00 00 00 08  | base 0, 8 statuses
    00 00 00 00  | reference time 0, feedback packet 0
    A0 00 40 01  | one, and six lost ones; a run of one large delta
    09 01 2C 00  | 9, 300, a zero
  )")));
  EXPECT_FALSE(Naive(p).reads_back());
  TransportCc back;
  EXPECT_TRUE(Read(back.sp(), bytes));
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
    read_back += Naive(p).reads_back() ? 1 : 0;
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
  const Naive naive(p);
  EXPECT_EQ(naive.statuses(), "1123" + std::string(40, '1') + std::string(40, '0'));
  EXPECT_EQ(ToHex(Append(p.sp())), ToHex(naive.bytes()));
}

TEST(ZunRtcpRtpfbTransportCc, DeltasAddUpToTheArrivals) {
  std::mt19937 random(11);
  const auto below = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
  for (int round = 0; round < 500; ++round) {
    TransportCc p;
    ZunTime ts = below(1000000000) * ZunTime{250000};
    ZunTime last = kNoTime;
    const int packets = 1 + below(120);
    for (int i = 0; i < packets; ++i) {
      const bool received = below(10) != 0;
      const bool timed = below(20) != 0;
      ts += below(70) * ZunTime{250000} - (below(30) == 0 ? 20 * kMillisecond : 0);
      ASSERT_TRUE(Add(p, received, timed ? ts : kNoTime, static_cast<ZunUint16>(i + 500)));
      if (received && timed) last = ts;
    }
    ASSERT_EQ(p->latestTime, last);
    ASSERT_EQ(p->baseSeq, 500U);
    ASSERT_NO_FATAL_FAILURE(ExpectWrittenByTheBook(p));
    if (last == kNoTime) continue;
    ZunTime sum = p->refTime * 64 * kMillisecond;
    for (const Info* i = p->packetInfo.begin; i != p->packetInfo.end; ++i) sum += i->delta * ZunTime{250000};
    EXPECT_EQ(sum, last);
  }
}

// Wire form.

std::string Mixed() {
  return Hex(R"(
    8F CD 00 0B  | version 2, FMT 15, packet type 205, 12 words
    01 02 03 04  | sender
    05 06 07 08  | media source
    FF FE 00 1D  | base 65534, 29 statuses
    FF FF FE 2A  | reference time -2, feedback packet 42
    20 0E        | a run of 14 small deltas
    E6 40        | large, small, large, small and three lost
    00 08        | a run of 8 lost
    01 02 03 04 05 06 07 08 09 0A 0B 0C 0D FF  | small deltas
    01 2C        | 300
    11           | 17
    FF FF        | -1
    12           | 18
    00 00        | zeros to the word
  )");
}

constexpr std::size_t kMixedDeltas = 26;  // where they begin
constexpr std::size_t kMixedZeros = 46;   // and end

// The statuses and deltas of it.
Infos MixedInfos() {
  Infos infos;
  for (int i = 1; i <= 13; ++i) infos.emplace_back(1, 1, i);
  for (const int delta : {255, 300, 17, -1, 18}) infos.emplace_back(1, 1, delta);
  for (int i = 0; i < 11; ++i) infos.emplace_back(0, 0, 0);
  return infos;
}

TEST(ZunRtcpRtpfbTransportCc, ReadsAndWritesRunsVectorsAndBothDeltas) {
  LogCapture log;
  TransportCc p;
  ASSERT_TRUE(Read(p.sp(), Mixed()));
  EXPECT_EQ(p->type, ZUN_RTCPSUBPACKET_TYPE_RTPFB);
  EXPECT_EQ(p->fmt, ZUN_RTCPRTPFB_TYPE_TransportCC);
  EXPECT_EQ(p->sender, 0x01020304U);
  EXPECT_EQ(p->source, 0x05060708U);
  EXPECT_EQ(p->baseSeq, 65534U);
  EXPECT_EQ(p->refTime, -2);
  EXPECT_EQ(p->packetCount, 42U);
  EXPECT_EQ(p->latestTime, kNoTime);
  EXPECT_EQ(InfosOf(p), MixedInfos());
  EXPECT_EQ(ToHex(Append(p.sp())), ToHex(Mixed()));
  EXPECT_EQ(ZunRtcpRtpfbTransportCcGetPacketLength(p.sp()), Mixed().size());
  log.ExpectNone();
}

TEST(ZunRtcpRtpfbTransportCc, IsReachedThroughTheEnvelope) {
  const test::Parsed parsed(Mixed());
  ASSERT_TRUE(parsed.ok);
  const ZunRtcpRtpfb* const rtpfb = ZunRtcpSubpacketGetRtpfb(&parsed[0]);
  ASSERT_EQ(ZunRtcpRtpfbGetFeedbackMessageType(rtpfb), ZUN_RTCPRTPFB_TYPE_TransportCC);
  EXPECT_EQ(InfosOf(ZunRtcpRtpfbGetTransportCc(rtpfb)), MixedInfos());
  EXPECT_EQ(ToHex(parsed.Rewritten()), ToHex(Mixed()));
}

TEST(ZunRtcpRtpfbTransportCc, WithoutPacketsItIsTwentyBytes) {
  TransportCc p;
  p->refTime = 0x1234567;
  EXPECT_EQ(ZunRtcpRtpfbTransportCcGetPacketLength(p.sp()), 20U);
  EXPECT_EQ(ToHex(Append(p.sp())), ToHex(Hex(R"(
    8F CD 00 04  | version 2, FMT 15, packet type 205, 5 words
    00 00 00 00  | sender
    00 00 00 00  | media source
    00 00 00 00  | base 0, no statuses
    23 45 67 00  | the low 24 bits of the reference time, feedback packet 0
  )")));
  TransportCc back;
  PushStatuses(back, "0123");
  EXPECT_TRUE(Read(back.sp(), Append(p.sp())));
  EXPECT_EQ(InfosOf(back), Infos());
  EXPECT_EQ(back->refTime, 0x234567);
}

TEST(ZunRtcpRtpfbTransportCc, TheReferenceTimeIsReadAsASignedNumber) {
  const auto reference = [](const std::string& octets) {
    TransportCc p;
    EXPECT_TRUE(Read(p.sp(), Hex("8FCD0004 00000000 00000000 00000000" + octets + "00")));
    return p->refTime;
  };
  EXPECT_EQ(reference("000000"), 0);
  EXPECT_EQ(reference("7FFFFF"), 0x7FFFFF);
  EXPECT_EQ(reference("800000"), -0x800000);
  EXPECT_EQ(reference("FFFFFF"), -1);
}

TEST(ZunRtcpRtpfbTransportCc, ThePaddingBitAddsNoPadding) {
  TransportCc p;
  ASSERT_TRUE(Read(p.sp(), Mixed()));
  std::string expected = Mixed();
  expected[0] = static_cast<char>(0xAF);
  EXPECT_EQ(ToHex(Append(p.sp(), true)), ToHex(expected));
}

TEST(ZunRtcpRtpfbTransportCc, TheEndIsAlignedToTheWholeString) {
  TransportCc p;
  PushStatuses(p, "11");  // 24 bytes
  for (std::size_t in_front = 0; in_front < 9; ++in_front) {
    Text out(std::string(in_front, 'x'));
    ASSERT_TRUE(ZunRtcpRtpfbTransportCcWritePacket(p.sp(), out, 0));
    std::string expected = std::string(in_front, 'x') + Naive(p).bytes();
    while (expected.size() % 4 != 0) expected += '\0';
    EXPECT_EQ(ToHex(out.str()), ToHex(expected));
  }
  PushStatuses(p, "1");  // 25 bytes without zeros
  for (std::size_t in_front = 0; in_front < 9; ++in_front) {
    Text out(std::string(in_front, 'x'));
    ASSERT_TRUE(ZunRtcpRtpfbTransportCcWritePacket(p.sp(), out, 0));
    std::string expected = std::string(in_front, 'x') + Naive(p).bytes().substr(0, 25);
    while (expected.size() % 4 != 0) expected += '\0';
    EXPECT_EQ(ToHex(out.str()), ToHex(expected));
    EXPECT_EQ(ZunRtcpRtpfbTransportCcGetPacketLength(p.sp()), 28U);
  }
}

TEST(ZunRtcpRtpfbTransportCc, TheStatusCountWrapsAndAllPacketsAreWritten) {
  const auto count_field = [](std::size_t packets) {
    TransportCc p;
    for (std::size_t i = 0; i < packets; ++i) Push(p, {0, 0, 0});
    const std::string bytes = Append(p.sp());
    EXPECT_EQ(bytes.size(), ZunRtcpRtpfbTransportCcGetPacketLength(p.sp()));
    EXPECT_EQ(bytes.size(), (20 + (packets + 8190) / 8191 * 2 + 3) / 4 * 4);
    return ToHex(bytes.substr(14, 2));
  };
  EXPECT_EQ(count_field(65535), "FFFF");
  EXPECT_EQ(count_field(65536), "0000");
  EXPECT_EQ(count_field(65539), "0003");
}

// Bytes that two other implementations sent.

TEST(ZunRtcpRtpfbTransportCc, ReadsWhatOthersSend) {
  const struct {
    std::string packet;
    unsigned base;
    int reference;
    int count;
    Infos infos;
  } samples[] = {
      {Hex(R"(
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
       7,
       47214,
       2,
       {{1, 1, 239},
        {1, 1, -39},
        {1, 1, -25},
        {1, 1, 75},
        {1, 1, 14},
        {0, 0, 0},
        {1, 1, 166},
        {1, 1, 0},
        {0, 0, 0},
        {1, 1, 1},
        {0, 0, 0},
        {1, 1, 0},
        {1, 1, 0}}},
      {Hex(R"(
         AF CD 00 07  1B D7 87 DC  E0 82 18 89
         00 14 00 08  | base 20, 8 statuses
         00 B1 83 03  | reference time 45443, feedback packet 3
         AF C0        | one, lost, six
         40 00 49 51  | 16, 0, 18.25 and 20.25 ms
         20 01 0B     | 8, 0.25 and 2.75 ms
         00 00 03     | padding, as the padding bit tells
       )"),
       20,
       45443,
       3,
       {{1, 1, 64}, {0, 0, 0}, {1, 1, 0}, {1, 1, 73}, {1, 1, 81}, {1, 1, 32}, {1, 1, 1}, {1, 1, 11}}},
      {Hex(R"(
         8F CD 00 09  FF FF FF FF  31 89 6C 34
         00 9F 00 0F  | base 159, 15 statuses
         00 00 03 04  | reference time 3, feedback packet 4
         BB FF        | three, lost, ten
         A0 00        | one more, in a vector that has room for others
         A5 00 00 00  | 41.25, 0, 0 and 0 ms
         01 00 00 00 00 00 00 00 00 00  | 0.25 ms, and nine times 0
         00 00        | zeros to the word
       )"),
       159,
       3,
       4,
       {{1, 1, 165},
        {1, 1, 0},
        {1, 1, 0},
        {0, 0, 0},
        {1, 1, 0},
        {1, 1, 1},
        {1, 1, 0},
        {1, 1, 0},
        {1, 1, 0},
        {1, 1, 0},
        {1, 1, 0},
        {1, 1, 0},
        {1, 1, 0},
        {1, 1, 0},
        {1, 1, 0}}},
  };
  for (const auto& sample : samples) {
    SCOPED_TRACE(ToHex(sample.packet));
    TransportCc p;
    ASSERT_TRUE(Read(p.sp(), sample.packet));
    EXPECT_EQ(p->baseSeq, sample.base);
    EXPECT_EQ(p->refTime, sample.reference);
    EXPECT_EQ(p->packetCount, sample.count);
    EXPECT_EQ(InfosOf(p), sample.infos);
    ExpectWrittenByTheBook(p);
  }
}

TEST(ZunRtcpRtpfbTransportCc, ReadsALongLossThatAnotherSends) {
  TransportCc p;
  ASSERT_TRUE(Read(p.sp(), Hex(R"(
    AF CD 00 06  30 CB 5C 85  9E 8C CC 60
    00 3D 00 33  | base 61, 51 statuses
    00 B1 92 09  | reference time 45458, feedback packet 9
    00 32 20 01  | 50 lost, one small delta
    39 00 00 03  | 14.25 ms, padding
  )")));
  Infos expected = Untimed(std::string(50, '0'));
  expected.emplace_back(1, 1, 57);
  EXPECT_EQ(InfosOf(p), expected);
  EXPECT_EQ(ToHex(Append(p.sp()).substr(20)), "0032200139000000");
}

// Reading what is odd.

std::string Head(const std::string& count) { return "8FCD0000 00000001 00000002 0003" + count + "00000405"; }

TEST(ZunRtcpRtpfbTransportCc, ALowByteOfALargeDeltaFrom0x80OnSpillsIntoTheHighOne) {
  TransportCc p;
  ASSERT_TRUE(Read(p.sp(), Hex(Head("0006") + "4006 0180 017F 7FFF FE00 8000 00FF")));
  EXPECT_EQ(InfosOf(p), (Infos{{1, 1, -128}, {1, 1, 0x17F}, {1, 1, -1}, {1, 1, -512}, {1, 1, -32768}, {1, 1, -1}}));
  ASSERT_TRUE(Read(p.sp(), Hex(Head("0007") + "EAAA 0180 017F 7FFF FE00 8000 00FF 0101")));
  EXPECT_EQ(InfosOf(p),
            (Infos{{1, 1, -128}, {1, 1, 0x17F}, {1, 1, -1}, {1, 1, -512}, {1, 1, -32768}, {1, 1, -1}, {1, 1, 257}}));
}

TEST(ZunRtcpRtpfbTransportCc, DeltasThatAreCutShortAreNotReadAtAll) {
  TransportCc p;
  EXPECT_TRUE(Read(p.sp(), Hex(Head("0007") + "E9A4 0102 0304")));  // 9 bytes announced, 4 there
  EXPECT_EQ(InfosOf(p), Untimed("2211210"));
  EXPECT_TRUE(Read(p.sp(), Hex(Head("0004") + "2004 010203")));
  EXPECT_EQ(InfosOf(p), Untimed("1111"));
  EXPECT_TRUE(Read(p.sp(), Hex(Head("0004") + "2004 01020304")));
  EXPECT_EQ(InfosOf(p), (Infos{{1, 1, 1}, {1, 1, 2}, {1, 1, 3}, {1, 1, 4}}));
}

TEST(ZunRtcpRtpfbTransportCc, ARunOfLengthZeroAddsNothing) {
  TransportCc p;
  EXPECT_TRUE(Read(p.sp(), Hex(Head("0002") + "2000 0000 6000 2002 0708")));
  EXPECT_EQ(InfosOf(p), (Infos{{1, 1, 7}, {1, 1, 8}}));
  EXPECT_FALSE(Read(p.sp(), Hex(Head("0002") + "2000 0000 6000")));
  EXPECT_EQ(InfosOf(p), Infos());
}

TEST(ZunRtcpRtpfbTransportCc, WhatAChunkHoldsBeyondTheCountIsIgnored) {
  TransportCc p;
  EXPECT_TRUE(Read(p.sp(), Hex(Head("0003") + "3FFF 010203")));  // a run of 8191
  EXPECT_EQ(InfosOf(p), (Infos{{1, 1, 1}, {1, 1, 2}, {1, 1, 3}}));
  EXPECT_TRUE(Read(p.sp(), Hex(Head("0003") + "BFFF 010203")));  // 14 ones
  EXPECT_EQ(InfosOf(p), (Infos{{1, 1, 1}, {1, 1, 2}, {1, 1, 3}}));
  EXPECT_TRUE(Read(p.sp(), Hex(Head("0003") + "E6AA 0102 03")));  // large, small, large, ...
  EXPECT_EQ(InfosOf(p), Untimed("212")) << "two large deltas and a small one are five bytes";
  EXPECT_TRUE(Read(p.sp(), Hex(Head("0003") + "E6AA 0102 03 0405")));
  EXPECT_EQ(InfosOf(p), (Infos{{1, 1, 258}, {1, 1, 3}, {1, 1, 0x405}}));
  EXPECT_TRUE(Read(p.sp(), Hex(Head("0000") + "FFFF FFFF")));
  EXPECT_EQ(InfosOf(p), Infos());
}

TEST(ZunRtcpRtpfbTransportCc, APacketReceivedWithoutADeltaIsRead) {
  TransportCc p;
  EXPECT_TRUE(Read(p.sp(), Hex(Head("000A") + "6003 FB40 05 0102 06")));  // three; 3 2 3 1 0 0 0
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

TEST(ZunRtcpRtpfbTransportCc, VectorsOfAnyPatternAreRead) {
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
    ASSERT_TRUE(Read(p.sp(), packet)) << word;
    ASSERT_EQ(InfosOf(p), expected) << word;
  }
}

// Truncation.

TEST(ZunRtcpRtpfbTransportCc, ACutMessageKeepsWhatWasReadOfIt) {
  const std::string whole = Mixed();
  for (const bool announced : {false, true}) {  // whether the end lies where the bytes end, or where the whole ends
    for (std::size_t size = 4; size <= whole.size(); ++size) {
      SCOPED_TRACE(::testing::Message() << size << (announced ? " bytes of all" : " bytes"));
      TransportCc p;
      ZunRtcpRtpfbTransportCcConstructFull(p, 91, 92, 93, ZunAllocatorGetSystem());
      ASSERT_TRUE(Add(p, true, 64 * kSecond, 94));
      const Infos old = InfosOf(p);
      const bool read = Read(p.sp(), whole.substr(0, size), announced ? whole.size() - size : 0);
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

// The deltas are announced to lie before the end, but the string ends in front of, inside or behind each of them.
TEST(ZunRtcpRtpfbTransportCc, AnEndBeyondTheStringIsNeverReadTo) {
  const struct {
    std::string chunk;
    std::size_t packets;
    std::size_t size;  // of each delta
  } cases[] = {{"2004", 4, 1}, {"4004", 4, 2}, {"EA80", 4, 2}, {"BC00", 4, 1}, {"6004", 4, 0}};
  for (const auto& c : cases) {
    for (std::size_t bytes = 0; bytes <= 9; ++bytes) {
      SCOPED_TRACE(c.chunk + ", " + std::to_string(bytes));
      TransportCc p;
      const bool read = Read(p.sp(), Hex(Head("0004") + c.chunk) + std::string(bytes, '\x01'), 100);
      Infos expected = Untimed("1111");
      for (std::size_t i = 0; c.size != 0 && i < std::min(c.packets, bytes / c.size); ++i) {
        expected[i] = {1, 1, c.size == 2 ? 0x0101 : 1};
      }
      EXPECT_EQ(InfosOf(p), expected);
      EXPECT_EQ(read, bytes >= c.packets * c.size);
    }
  }
}

TEST(ZunRtcpRtpfbTransportCc, AnEndInFrontOfTheBeginIsRefused) {
  const Datagram datagram(Mixed());
  TransportCc p;
  EXPECT_FALSE(ZunRtcpRtpfbTransportCcAssignFromBuffer(p.sp(), datagram, 8, 4, 205, 15));
  EXPECT_FALSE(ZunRtcpRtpfbTransportCcAssignFromBuffer(p.sp(), datagram, 1000, 2000, 205, 15));
  EXPECT_EQ(p->sender, 0U);
}

// Sixteen bytes of chunks that tell of 65535 packets.
TEST(ZunRtcpRtpfbTransportCc, AShortListOfLongRunsCostsNoMoreThanItsPackets) {
  for (const std::string status : {"1", "3", "5", "7"}) {  // lost, small, large, without a delta
    const std::string run = status + "FFF";
    std::string chunks;
    for (int i = 0; i < 8; ++i) chunks += run;
    TestAllocator allocator;
    TransportCc p(allocator);
    const auto start = std::chrono::steady_clock::now();
    // The last 7 of the 65535 need one more chunk.
    EXPECT_FALSE(Read(p.sp(), Hex(Head("FFFF") + chunks)));
    EXPECT_EQ(InfosOf(p).size(), 65528U);
    EXPECT_LE(allocator.live_bytes(), 65535U * 4);
    EXPECT_TRUE(Read(p.sp(), Hex(Head("FFF8") + chunks)));
    EXPECT_TRUE(InfosOf(p) == Untimed(std::string(65528, status == "1" ? '0' : '1')));
    EXPECT_LE(allocator.live_bytes(), 65535U * 4);
    EXPECT_LE(allocator.allocations(), 2U);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
  }
}

TEST(ZunRtcpRtpfbTransportCc, ACountThatNoChunkBearsOutTakesNoMemory) {
  TestAllocator allocator;
  TransportCc p(allocator);
  EXPECT_FALSE(Read(p.sp(), Hex(Head("FFFF"))));
  EXPECT_EQ(allocator.allocations(), 0U);
  EXPECT_FALSE(Read(p.sp(), Hex(Head("FFFF") + "8000")));
  EXPECT_LE(allocator.live_bytes(), 14U * 4);
  EXPECT_EQ(InfosOf(p), Untimed(std::string(14, '0')));
}

// Allocators.

TEST(ZunRtcpRtpfbTransportCc, ACopyTakesTheAllocatorOfItsSourceAndAnAssignmentKeepsItsOwn) {
  TestAllocator a;
  TestAllocator b;
  TransportCc source(a);
  ASSERT_TRUE(Read(source.sp(), Mixed()));
  source->latestTime = 5;

  ZunRtcpRtpfbTransportCc copy;
  ASSERT_EQ(ZunRtcpRtpfbTransportCcConstructCopy(&copy, source), &copy);
  EXPECT_EQ(ZunRtcpRtpfbTransportCcGetAllocator(&copy), a.get());
  EXPECT_EQ(copy.latestTime, 5);
  EXPECT_EQ(copy.refTime, -2);
  EXPECT_EQ(copy.packetCount, 42U);
  EXPECT_EQ(InfosOf(&copy), MixedInfos());
  ZunRtcpRtpfbTransportCcDestruct(&copy);

  TransportCc assigned(b);
  ASSERT_EQ(ZunRtcpRtpfbTransportCcAssign(assigned, source), assigned.get());
  EXPECT_EQ(ZunRtcpRtpfbTransportCcGetAllocator(assigned), b.get());
  EXPECT_EQ(assigned->latestTime, 5);
  EXPECT_EQ(ToHex(Append(assigned.sp())), ToHex(Mixed()));
  EXPECT_EQ(ZunRtcpRtpfbTransportCcAssign(assigned, assigned), assigned.get());
  EXPECT_EQ(ToHex(Append(assigned.sp())), ToHex(Mixed()));

  for (TestAllocator* const wanted : {&a, &b}) {
    ZunRtcpSubpacket sp;
    ASSERT_EQ(ZunRtcpRtpfbTransportCcConstructCopyAllocator(&sp, source.sp(), *wanted), &sp);
    EXPECT_EQ(ZunRtcpRtpfbTransportCcGetAllocatorWrap(&sp), wanted->get());
    EXPECT_EQ(sp.rtpfb.transportCc.latestTime, 5);
    EXPECT_EQ(ToHex(Append(&sp)), ToHex(Mixed()));
    ZunRtcpRtpfbTransportCcDestructWrap(&sp);
  }
}

TEST(ZunRtcpRtpfbTransportCc, ACopyGoesOnAddingWhereItsSourceWas) {
  TransportCc source;
  ASSERT_TRUE(Add(source, true, 64 * kSecond));
  TransportCc copy;
  ASSERT_NE(ZunRtcpRtpfbTransportCcAssign(copy, source), nullptr);
  ASSERT_TRUE(Add(copy, true, 64 * kSecond + kMillisecond));
  EXPECT_EQ(InfosOf(copy), (Infos{{1, 1, 0}, {1, 1, 4}}));
  EXPECT_EQ(InfosOf(source).size(), 1U);
}

TEST(ZunRtcpRtpfbTransportCc, AReadPacketTakesTheAllocatorItIsGiven) {
  TestAllocator a;
  TestAllocator of_buffer;
  {
    const Datagram datagram(Mixed(), of_buffer);
    ZunRtcpSubpacket sp;
    ASSERT_TRUE(ZunRtcpRtpfbTransportCcConstructFromBuffer(&sp, datagram, 4, datagram->size, 205, 15, a));
    EXPECT_EQ(ZunRtcpRtpfbTransportCcGetAllocatorWrap(&sp), a.get());
    ASSERT_TRUE(ZunRtcpRtpfbTransportCcAssignFromBuffer(&sp, datagram, 4, datagram->size, 205, 15));
    EXPECT_EQ(ZunRtcpRtpfbTransportCcGetAllocatorWrap(&sp), a.get());
    EXPECT_EQ(a.live_bytes(), 29U * 4);
    ZunRtcpRtpfbTransportCcDestructWrap(&sp);
  }
  EXPECT_EQ(of_buffer.calls(), 0U);
}

// Refused allocations.

TEST(ZunRtcpRtpfbTransportCc, ARefusedCopyOwnsNothing) {
  TransportCc source;
  ASSERT_TRUE(Read(source.sp(), Mixed()));
  ForEveryRefusal([&](TestAllocator& refusing) {
    TransportCc other(refusing);
    if (ZunRtcpRtpfbTransportCcAssign(other, source) != nullptr) {
      EXPECT_EQ(InfosOf(other), MixedInfos());
      ZunRtcpRtpfbTransportCc copy;
      if (ZunRtcpRtpfbTransportCcConstructCopy(&copy, other) != nullptr) {
        EXPECT_EQ(InfosOf(&copy), MixedInfos());
        ZunRtcpRtpfbTransportCcDestruct(&copy);
      }
    } else {
      EXPECT_EQ(InfosOf(other), Infos());
      EXPECT_EQ(other->refTime, 0);
    }
    ZunRtcpSubpacket sp;
    if (ZunRtcpRtpfbTransportCcConstructCopyAllocator(&sp, source.sp(), refusing) != nullptr) {
      ZunRtcpRtpfbTransportCcDestructWrap(&sp);
    }
  });
}

TEST(ZunRtcpRtpfbTransportCc, ARefusedReadKeepsThePacketsThatFit) {
  ForEveryRefusal([](TestAllocator& refusing) {
    TransportCc p(refusing);
    const bool read = Read(p.sp(), Mixed());
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
    const bool read = Read(p.sp(), Mixed());
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

TEST(ZunRtcpRtpfbTransportCc, ARefusedReservationAloneIsNotReported) {
  TestAllocator refusing;
  TransportCc p(refusing);
  refusing.RefuseOnce(0);
  EXPECT_TRUE(Read(p.sp(), Mixed()));
  EXPECT_EQ(InfosOf(p), MixedInfos());
  EXPECT_EQ(ZunVector_ZunRtcpRtpfbTransportCcPacketInfoCapacity(&p->packetInfo), 32U);
}

TEST(ZunRtcpRtpfbTransportCc, AStringWithoutRoomForTheChunksIsAFailureAndForTheDeltasIsNot) {
  TransportCc p;
  ASSERT_TRUE(Read(p.sp(), Mixed()));
  const std::string whole = Mixed();
  std::set<std::size_t> sizes;
  for (std::size_t room = 0; room <= whole.size() + 1; ++room) {
    SCOPED_TRACE(room);
    TestAllocator cramped;
    cramped.RefuseAbove(room);
    // A string that holds a few bytes already ends in other places as it grows.
    for (std::size_t held = 0; held <= room && held < 48; held += 4) {
      Text out(cramped.get());
      if (held != 0 && ZunStringAppendN(out, held, 'x') == nullptr) continue;
      const bool written = ZunRtcpRtpfbTransportCcWritePacket(p.sp(), out, 0) != 0;
      EXPECT_EQ(ToHex(out.str()), ToHex((std::string(held, 'x') + whole).substr(0, out->size)));
      EXPECT_EQ(written, out->size >= held + kMixedDeltas);
      sizes.insert(out->size - held);
    }
  }
  EXPECT_TRUE(sizes.count(0) == 1 && sizes.count(whole.size()) == 1 && sizes.size() > 8) << sizes.size();
}

// Refuses the allocations of the given numbers.
class Refusing {
 public:
  explicit Refusing(std::set<int> refused) : refused_(refused), allocator_{Allocate, Deallocate, SIZE_MAX, this} {}
  operator ZunAllocator*() { return &allocator_; }

 private:
  static ZunVoidPtr Allocate(ZunAllocator* a, ZunSizeT size) {
    auto* const self = static_cast<Refusing*>(a->userData);
    if (self->refused_.count(self->made_++) != 0) return nullptr;
    return ZunAllocatorAllocate(ZunAllocatorGetSystem(), size);
  }
  static void Deallocate(ZunAllocator*, ZunVoidPtr block, ZunSizeT size) {
    ZunAllocatorDeallocate(ZunAllocatorGetSystem(), block, size);
  }
  std::set<int> refused_;
  int made_ = 0;
  ZunAllocator allocator_;
};

// The string grows to 16, 32 and 64 bytes once the reservation is refused; the growth to 64 is refused once.
TEST(ZunRtcpRtpfbTransportCc, ADeltaThatCannotBeAppendedIsLeftOutAndTheNextOnesAreNot) {
  const auto written = [](const std::string& statuses) {
    TransportCc p;
    int n = 0;
    for (const char status : statuses) {
      ++n;
      Push(p, {1, 1, static_cast<ZunInt16>(status == '1' ? n : 0x0100 + n)});
    }
    Refusing refusing({0, 3});
    Text out(refusing);
    EXPECT_TRUE(ZunRtcpRtpfbTransportCcWritePacket(p.sp(), out, 0));
    EXPECT_EQ(out->size % 4, 0U);
    return ToHex(out.str().substr(20));
  };
  const auto hex = [](const std::string& text) { return ToHex(Hex(text)); };
  // A small delta at byte 32.
  EXPECT_EQ(written("2222212"), hex("EAA6 0101 0102 0103 0104 0105 0107 0000"));
  // The high byte of a large delta at byte 32: its low byte is not attempted.
  EXPECT_EQ(written("2222221"), hex("EAA9 0101 0102 0103 0104 0105 07 000000"));
  // The low byte of a large delta at byte 32.
  EXPECT_EQ(written("1222221"), hex("DAA9 01 0102 0103 0104 0105 01 07 000000"));
}

// In place.

TEST(ZunRtcpRtpfbTransportCc, ReadingAgainInPlaceGivesWhatAFreshReadGives) {
  const std::string packets[] = {
      Mixed(),
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
      ASSERT_TRUE(Read(used.sp(), first));
      ASSERT_TRUE(Add(used, true, kSecond));
      ASSERT_TRUE(Read(used.sp(), second));
      TransportCc fresh;
      ASSERT_TRUE(Read(fresh.sp(), second));
      EXPECT_EQ(InfosOf(used), InfosOf(fresh));
      EXPECT_EQ(used->latestTime, fresh->latestTime);
      EXPECT_EQ(used->refTime, fresh->refTime);
      EXPECT_EQ(ToHex(Append(used.sp())), ToHex(Append(fresh.sp())));
    }
  }
}

TEST(ZunRtcpRtpfbTransportCc, ReadingAndWritingAgainInPlaceAllocatesNothing) {
  TestAllocator allocator;
  TransportCc p(allocator);
  Text out(allocator.get());
  const std::string shorter = Hex(Head("0002") + "2002 0102");
  ASSERT_TRUE(Read(p.sp(), Mixed()));
  ASSERT_TRUE(ZunRtcpRtpfbTransportCcWritePacket(p.sp(), out, 0));
  const std::size_t calls = allocator.calls();
  for (const std::string& packet : {Mixed(), shorter, Mixed()}) {
    ASSERT_TRUE(Read(p.sp(), packet));
    ZunStringClear(out);
    ASSERT_TRUE(ZunRtcpRtpfbTransportCcWritePacket(p.sp(), out, 0));
  }
  EXPECT_EQ(allocator.calls(), calls);
}

TEST(ZunRtcpRtpfbTransportCc, AFreshReadAllocatesOnce) {
  TestAllocator allocator;
  TransportCc p(allocator);
  ASSERT_TRUE(Read(p.sp(), Mixed()));
  EXPECT_EQ(allocator.allocations(), 1U);
  EXPECT_EQ(allocator.live_bytes(), 29U * 4);
}

}  // namespace
