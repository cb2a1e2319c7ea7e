#include "Zun/Rtp/ApplicationFeedback/ZunRtcpPsfbAfbAbafb.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>

#include "Zun/Os/ZunTime.h"
#include "tests/support/LogCapture.h"
#include "tests/support/Samples.h"

namespace {

using namespace test;

const Row& kRow = kRowOf<ZunRtcpPsfbAfbAbafb>;

constexpr ZunTime kSecond = 1000000000;

const std::string kWire = Golden("AfbAbafb");

ZunRtcpPsfbAfbAbafb Golden() {
  ZunRtcpPsfbAfbAbafb p;
  EXPECT_EQ(ZunRtcpPsfbAfbAbafbConstructFull(&p, kSender, 0x21222324, 1000000, 0x31323334, 0x41424344, 0x51525354, -2,
                                             0x61626364, nullptr),
            &p);
  EXPECT_EQ(p.source, 0U);
  p.source = kSource;
  return p;
}

ZunRtcpPsfbAfbAbafb Timed(ZunTime timestamp_time) {
  ZunRtcpPsfbAfbAbafb p;
  EXPECT_EQ(ZunRtcpPsfbAfbAbafbConstructWithCalculatedDelay(&p, 1, 2, timestamp_time, 3, 4, 5, -6, 7, nullptr), &p);
  return p;
}

void ExpectGolden(const ZunRtcpPsfbAfbAbafb& p) {
  EXPECT_EQ(p.type, 206);
  EXPECT_EQ(p.fmt, 15);
  EXPECT_EQ(p.sender, kSender);
  EXPECT_EQ(p.source, kSource);
  EXPECT_EQ(p.afbType, 1);
  EXPECT_EQ(ZunRtcpPsfbAfbAbafbGetTimestamp(&p), 0x21222324U);
  EXPECT_EQ(ZunRtcpPsfbAfbAbafbGetDelay(&p), 1000000U);
  EXPECT_EQ(ZunRtcpPsfbAfbAbafbGetDataRate(&p), 0x31323334U);
  EXPECT_EQ(ZunRtcpPsfbAfbAbafbGetLossRate(&p), 0x41424344U);
  EXPECT_EQ(ZunRtcpPsfbAfbAbafbGetAbaDataRate(&p), 0x51525354U);
  EXPECT_EQ(ZunRtcpPsfbAfbAbafbGetAverageDelayDifference(&p), -2);
  EXPECT_EQ(ZunRtcpPsfbAfbAbafbGetAverageArrivalDifference(&p), 0x61626364U);
  EXPECT_FALSE(p.calculate_delay);
}

TEST(ZunRtcpPsfbAfbAbafb, ConstructDefaultIsZeroButForTheArrivalDifference) {
  ZunRtcpPsfbAfbAbafb p;
  ASSERT_EQ(ZunRtcpPsfbAfbAbafbConstructDefault(&p, nullptr), &p);
  EXPECT_EQ(p.type, 206);
  EXPECT_EQ(p.fmt, 15);
  EXPECT_EQ(p.sender, 0U);
  EXPECT_EQ(p.source, 0U);
  EXPECT_EQ(p.afbType, 1);
  EXPECT_EQ(p.timestamp, 0U);
  EXPECT_EQ(p.u.delay, 0U);
  EXPECT_EQ(p.data_rate, 0U);
  EXPECT_EQ(p.loss_rate, 0U);
  EXPECT_EQ(p.aba_data_rate, 0U);
  EXPECT_EQ(p.average_delay_difference, 0);
  EXPECT_FALSE(p.calculate_delay);
  EXPECT_EQ(p.average_arrival_difference, 1000000U);
  EXPECT_EQ(ZunRtcpPsfbAfbAbafbGetAllocator(&p), nullptr);
}

TEST(ZunRtcpPsfbAfbAbafb, WritesGoldenBytes) {
  const ZunRtcpPsfbAfbAbafb p = Golden();
  EXPECT_EQ(ToHex(Bytes(kRow, *AsSubpacket(&p))), ToHex(kWire));
  EXPECT_EQ(kRow.get_packet_length(AsSubpacket(&p)), 44U);
}

TEST(ZunRtcpPsfbAfbAbafb, ReadsGoldenBytes) {
  const Parsed parsed(kWire);
  ASSERT_TRUE(parsed.ok);
  const ZunRtcpPsfbAfb* const afb = ZunRtcpPsfbGetAfb(&parsed[0].psfb);
  ASSERT_EQ(ZunRtcpPsfbAfbGetType(afb), ZUN_RTCPPSFBAFB_TYPE_ABAFB);
  ExpectGolden(*ZunRtcpPsfbAfbGetAbafb(afb));
}

TEST(ZunRtcpPsfbAfbAbafb, SettersTakeAnyValue) {
  ZunRtcpPsfbAfbAbafb p;
  ZunRtcpPsfbAfbAbafbConstructDefault(&p, nullptr);
  p.sender = kSender;
  p.source = kSource;
  EXPECT_TRUE(ZunRtcpPsfbAfbAbafbSetTimestamp(&p, 0x21222324));
  EXPECT_TRUE(ZunRtcpPsfbAfbAbafbSetDelay(&p, 1000000));
  EXPECT_TRUE(ZunRtcpPsfbAfbAbafbSetDataRate(&p, 0x31323334));
  EXPECT_TRUE(ZunRtcpPsfbAfbAbafbSetLossRate(&p, 0x41424344));
  EXPECT_TRUE(ZunRtcpPsfbAfbAbafbSetAbaDataRate(&p, 0x51525354));
  EXPECT_TRUE(ZunRtcpPsfbAfbAbafbSetAverageDelayDifference(&p, -2));
  EXPECT_TRUE(ZunRtcpPsfbAfbAbafbSetAverageArrivalDifference(&p, 0x61626364));
  ExpectGolden(p);
  EXPECT_TRUE(ZunRtcpPsfbAfbAbafbSetAverageDelayDifference(&p, std::numeric_limits<ZunInt32>::min()));
  EXPECT_EQ(ToHex(Bytes(kRow, *AsSubpacket(&p)).substr(36, 4)), "80000000");
}

TEST(ZunRtcpPsfbAfbAbafb, CalculatedDelayIsMeasuredWhenItIsReadOrWritten) {
  const ZunRtcpPsfbAfbAbafb p = Timed(ZunTimeGetCurrentMonotonicTime() - 5 * kSecond);
  EXPECT_TRUE(p.calculate_delay);
  EXPECT_EQ(p.afbType, 1);
  EXPECT_EQ(p.source, 0U);
  const ZunUint32 before = ZunRtcpPsfbAfbAbafbGetDelay(&p);
  EXPECT_GE(before, 5000000U);
  EXPECT_LT(before, 65000000U);
  const ZunTime begin = ZunTimeGetCurrentMonotonicTime();
  while (ZunTimeGetCurrentMonotonicTime() - begin < 2000) {
  }
  const Received first(kRow, Bytes(kRow, *AsSubpacket(&p)));
  EXPECT_GT(first.sp()->psfb.afb.abafb.u.delay, before);
  EXPECT_FALSE(first.sp()->psfb.afb.abafb.calculate_delay) << "a received delay is a fixed one";
}

TEST(ZunRtcpPsfbAfbAbafb, ATimeInTheFutureSendsTheLowBitsOfANegativeDelay) {
  const ZunRtcpPsfbAfbAbafb p = Timed(ZunTimeGetCurrentMonotonicTime() + 100 * kSecond);
  const auto delay = static_cast<ZunInt32>(ZunRtcpPsfbAfbAbafbGetDelay(&p));
  EXPECT_GE(delay, -100000000);
  EXPECT_LT(delay, -40000000);
}

TEST(ZunRtcpPsfbAfbAbafb, NoPairOfTimesIsTooFarApart) {
  for (const ZunTime time : {std::numeric_limits<ZunTime>::min(), std::numeric_limits<ZunTime>::max()}) {
    const ZunRtcpPsfbAfbAbafb p = Timed(time);
    EXPECT_EQ(Bytes(kRow, *AsSubpacket(&p)).size(), 44U);
  }
}

TEST(ZunRtcpPsfbAfbAbafb, SettersChooseTheKindOfDelay) {
  ZunRtcpPsfbAfbAbafb p = Timed(0);
  EXPECT_TRUE(ZunRtcpPsfbAfbAbafbSetDelay(&p, 42));
  EXPECT_FALSE(p.calculate_delay);
  EXPECT_EQ(ZunRtcpPsfbAfbAbafbGetDelay(&p), 42U);
  const ZunTime now = ZunTimeGetCurrentMonotonicTime();
  EXPECT_TRUE(ZunRtcpPsfbAfbAbafbSetTimestampTime(&p, now - 7 * kSecond));
  EXPECT_TRUE(p.calculate_delay);
  EXPECT_EQ(p.u.timestamp_time, now - 7 * kSecond);
  EXPECT_GE(ZunRtcpPsfbAfbAbafbGetDelay(&p), 7000000U);
}

TEST(ZunRtcpPsfbAfbAbafb, CopiesAndAssignmentsKeepTheKindOfDelay) {
  const ZunRtcpPsfbAfbAbafb fixed = Golden();
  const ZunRtcpPsfbAfbAbafb timed = Timed(0x123456789ABCDEF0);
  ZunRtcpPsfbAfbAbafb p;
  EXPECT_EQ(ZunRtcpPsfbAfbAbafbConstructCopy(&p, &fixed), &p);
  ExpectGolden(p);
  EXPECT_EQ(ZunRtcpPsfbAfbAbafbAssign(&p, &timed), &p);
  EXPECT_TRUE(p.calculate_delay);
  EXPECT_EQ(p.u.timestamp_time, 0x123456789ABCDEF0);
  EXPECT_EQ(p.average_delay_difference, -6);
  EXPECT_EQ(ZunRtcpPsfbAfbAbafbAssign(&p, &fixed), &p);
  ExpectGolden(p);
  EXPECT_EQ(ZunRtcpPsfbAfbAbafbConstructCopy(&p, &timed), &p);
  EXPECT_TRUE(p.calculate_delay);
  EXPECT_EQ(p.u.timestamp_time, 0x123456789ABCDEF0);
  ZunRtcpPsfbAfbAbafbDestruct(&p);
  EXPECT_EQ(p.u.timestamp_time, 0x123456789ABCDEF0) << "there is nothing to end";
}

// A stored delay is shorter than the time that it takes the place of.
TEST(ZunRtcpPsfbAfbAbafb, AnAssignmentLeavesTheHalfOfTheDelayThatIsNotAlive) {
  TEST_OBJECT(ZunRtcpPsfbAfbAbafb) source;
  TEST_OBJECT(ZunRtcpPsfbAfbAbafb) target;
  ASSERT_TRUE(ZunRtcpPsfbAfbAbafbSetDelay(source, 7));
  ASSERT_TRUE(ZunRtcpPsfbAfbAbafbSetTimestampTime(target, 0x1122334455667788));
  unsigned char expected[sizeof(target->u)];
  std::memcpy(expected, &target->u, sizeof(expected));
  std::memcpy(expected, &source->u.delay, sizeof(source->u.delay));
  ASSERT_EQ(ZunRtcpPsfbAfbAbafbAssign(target, source), target.get());
  unsigned char assigned[sizeof(target->u)];
  std::memcpy(assigned, &target->u, sizeof(assigned));
  EXPECT_EQ(std::memcmp(assigned, expected, sizeof(expected)), 0);
}

TEST(ZunRtcpPsfbAfbAbafb, ZeroArrivalDifferenceIsWarnedOfAndWritten) {
  LogCapture log;
  ZunRtcpPsfbAfbAbafb p = Golden();
  EXPECT_TRUE(ZunRtcpPsfbAfbAbafbSetAverageArrivalDifference(&p, 0));
  EXPECT_EQ(Bytes(kRow, *AsSubpacket(&p)).size(), 44U);
  log.ExpectOne(ZUN_LOG_WARNING, ZunLogRtcpFeedback_, "ZunRtcpPsfbAfbAbafbWritePacket",
                "Average arrival difference is 0 when encoding a PSFB AFB ABAFB packet.");
  EXPECT_TRUE(ZunRtcpPsfbAfbAbafbSetAverageArrivalDifference(&p, 1));
  EXPECT_EQ(Bytes(kRow, *AsSubpacket(&p)).size(), 44U);
  log.ExpectNone();
}

TEST(ZunRtcpPsfbAfbAbafb, BytesAfterTheLastFieldAreIgnored) {
  const Received received(kRow, kWire + Hex("DEADBEEF 01020304"));
  EXPECT_TRUE(received.ok);
  ExpectGolden(received.sp()->psfb.afb.abafb);
}

TEST(ZunRtcpPsfbAfbAbafb, TheReaderDoesNotCompareTheNumber) {
  std::string wire = kWire;
  wire[15] = 2;
  const Received received(kRow, wire);
  EXPECT_TRUE(received.ok);
  ExpectGolden(received.sp()->psfb.afb.abafb);
  wire[13] = 'R';
  EXPECT_FALSE(Received(kRow, wire).ok);
}

TEST(ZunRtcpPsfbAfbAbafb, CutAnywhereKeepsWhatWasRead) {
  ForEveryCut(kRow, kWire, [](const Received& received, ZunSizeT size, bool) {
    const ZunRtcpPsfbAfbAbafb& p = received.sp()->psfb.afb.abafb;
    EXPECT_FALSE(received.ok);
    EXPECT_EQ(p.sender, size >= 4 ? kSender : 0U);
    EXPECT_EQ(p.source, size >= 8 ? kSource : 0U);
    EXPECT_EQ(p.timestamp, size >= 16 ? 0x21222324U : 0U);
    EXPECT_EQ(p.u.delay, size >= 20 ? 1000000U : 0U);
    EXPECT_EQ(p.data_rate, size >= 24 ? 0x31323334U : 0U);
    EXPECT_EQ(p.loss_rate, size >= 28 ? 0x41424344U : 0U);
    EXPECT_EQ(p.aba_data_rate, size >= 32 ? 0x51525354U : 0U);
    EXPECT_EQ(p.average_delay_difference, size >= 36 ? -2 : 0);
    EXPECT_EQ(p.average_arrival_difference, 1000000U);
  });
}

// What a cut leaves over a report whose delay was measured: still measured before the delay, the delay read after it.
TEST(ZunRtcpPsfbAfbAbafb, ACutAfterTheDelayLeavesItStored) {
  for (const ZunSizeT size : {16U, 20U, 24U, 40U}) {
    ZunRtcpSubpacket sp;
    sp.psfb.afb.abafb = Timed(1);
    const Datagram datagram(kWire.substr(0, kBodyBegin + size));
    EXPECT_EQ(kRow.assign_from_buffer(&sp, datagram, kBodyBegin, datagram->size, 206, 15) != 0, size == 40);
    EXPECT_EQ(sp.psfb.afb.abafb.calculate_delay != 0, size == 16);
    if (size > 16) {
      EXPECT_EQ(ZunRtcpPsfbAfbAbafbGetDelay(&sp.psfb.afb.abafb), 1000000U);
    }
  }
}

TEST(ZunRtcpPsfbAfbAbafb, ReadsAnyObjectAnewWithoutAnAllocator) {
  ZunRtcpSubpacket sp;
  ZunRtcpPsfbAfbAbafb p = Timed(1);
  TestAllocator allocator;
  ASSERT_EQ(kRow.construct_copy_allocator(&sp, AsSubpacket(&p), allocator), &sp);
  EXPECT_EQ(sp.psfb.afb.abafb.u.timestamp_time, 1);
  EXPECT_EQ(kRow.get_allocator(&sp), nullptr);
  const Datagram datagram(kWire);
  EXPECT_TRUE(kRow.assign_from_buffer(&sp, datagram, kBodyBegin, datagram->size, 206, 15));
  ExpectGolden(sp.psfb.afb.abafb);
  const ZunRtcpPsfbAfbAbafb other = Timed(99);
  EXPECT_EQ(kRow.assign(&sp, AsSubpacket(&other)), &sp);
  EXPECT_EQ(sp.psfb.afb.abafb.u.timestamp_time, 99);
  kRow.destruct(&sp);
  EXPECT_EQ(allocator.calls(), 0U);
}

}  // namespace
