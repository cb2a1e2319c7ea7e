#include <gtest/gtest.h>

#include <random>

#include "tests/Zun/Rtp/TransportFeedback/TransportCcTests.h"

namespace {

using namespace test;

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
  EXPECT_EQ(ToHex(p.bytes().substr(20)), "20010000");  // a run of one small delta, the delta, one zero
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
  EXPECT_EQ(ToHex(p.bytes().substr(20)), "D80000FFFF000000");
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

TEST(ZunRtcpRtpfbTransportCc, ACopyGoesOnAddingWhereItsSourceWas) {
  TransportCc source;
  ASSERT_TRUE(Add(source, true, 64 * kSecond));
  TransportCc assigned;
  ASSERT_NE(ZunRtcpRtpfbTransportCcAssign(assigned, source), nullptr);
  TransportCc copy;
  ASSERT_NE(ZunRtcpRtpfbTransportCcConstructCopy(copy, source), nullptr);
  TestAllocator other;
  TransportCc elsewhere;
  ASSERT_NE(ZunRtcpRtpfbTransportCcConstructCopyAllocator(elsewhere.sp(), source.sp(), other), nullptr);
  for (TransportCc* const p : {&assigned, &copy, &elsewhere}) {
    EXPECT_EQ((*p)->latestTime, 64 * kSecond);
    ASSERT_TRUE(Add(*p, true, 64 * kSecond + kMillisecond));
    EXPECT_EQ(InfosOf(*p), (Infos{{1, 1, 0}, {1, 1, 4}}));
  }
  EXPECT_EQ(InfosOf(source).size(), 1U);
}

TEST(ZunRtcpRtpfbTransportCc, ARefusedAssignmentLeavesNoPacketsAndTheFieldsThatWere) {
  TransportCc source;
  ASSERT_TRUE(source.Read(Golden("TransportCcMixed")));
  TestAllocator refusing;
  TransportCc p(refusing);
  ASSERT_TRUE(Add(p, true, 64 * kSecond));
  refusing.RefuseFrom(0);
  EXPECT_EQ(ZunRtcpRtpfbTransportCcAssign(p, source), nullptr);
  EXPECT_EQ(InfosOf(p), Infos());
  EXPECT_EQ(p->refTime, 1000);
  EXPECT_EQ(p->latestTime, 64 * kSecond);
}

}  // namespace
