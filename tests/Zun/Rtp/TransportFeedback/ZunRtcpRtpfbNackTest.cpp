#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <set>
#include <utility>
#include <vector>

#include "Zun/Rtp/Cpp/List.h"
#include "tests/support/LogCapture.h"
#include "tests/support/Samples.h"

namespace {

using namespace test;

using Nack = TEST_OBJECT(ZunRtcpRtpfbNack);
using Maps = std::vector<std::pair<int, int>>;
using Numbers = std::vector<ZunUint16>;

constexpr char kWrite[] = "ZunRtcpRtpfbNackWritePacket";
constexpr char kRead[] = "ZunRtcpRtpfbNackAssignFromBuffer";
constexpr char kUnwritable[] = "Unable to write Generic NACK subpacket";
constexpr char kUnreadable[] = "Unable to parse Generic NACK subpacket";
constexpr char kManyWritten[] =
    "Writing Generic NACK subpacket containing multiple sequence number/map fields.  Old versions of the code could "
    "not produce or parse such subpackets.  Make sure receiving endpoint has support.";
constexpr char kManyRead[] = "Generic NACK subpacket contains multiple sequence number/map fields.";

std::string ManyMaps(std::size_t count) {
  std::string body = Hex("00000001 00000002");
  for (std::size_t i = 0; i < count; ++i) {
    body += {static_cast<char>(i >> 3), static_cast<char>(i << 5), 0, static_cast<char>(i)};
  }
  return Subpacket(205, 1, body);
}

Maps MapsOf(const ZunRtcpRtpfbNack* p) {
  Maps maps;
  for (const ZunRtcpRtpfbNackSeqMap* map = p->seqMaps.begin; map != p->seqMaps.end; ++map) {
    maps.emplace_back(map->seqNumber, map->map);
  }
  return maps;
}

void SetMaps(ZunRtcpRtpfbNack* p, const Maps& maps) {
  ZunRtcpRtpfbNackResetSeqMaps(p);
  for (const auto& [seqNumber, bits] : maps) {
    const ZunRtcpRtpfbNackSeqMap map = {static_cast<ZunUint16>(seqNumber), static_cast<ZunUint16>(bits)};
    ASSERT_TRUE(ZunVector_ZunRtcpRtpfbNackSeqMapPushBack(&p->seqMaps, &map));
  }
}

void Add(ZunRtcpRtpfbNack* p, const Numbers& numbers) {
  for (const ZunUint16 number : numbers) EXPECT_TRUE(ZunRtcpRtpfbNackAddSeqNumber(p, number));
}

Numbers Enumerated(const ZunRtcpRtpfbNack* p) {
  struct Context {
    const ZunRtcpRtpfbNack* nack;
    Numbers numbers;
  } context = {p, {}};
  ZunRtcpRtpfbNackGenerateSeqNumbers(
      p,
      [](const ZunRtcpRtpfbNack* nack, ZunUint16 number, ZunVoidPtr data) {
        auto* const to = static_cast<Context*>(data);
        EXPECT_EQ(nack, to->nack);
        to->numbers.push_back(number);
      },
      &context);
  EXPECT_EQ(ZunRtcpRtpfbNackGetNumOfSeqNumbers(p), context.numbers.size());
  return context.numbers;
}

void ExpectHead(const ZunRtcpRtpfbNack* p, ZunRtpSourceId sender, ZunRtpSourceId source) {
  EXPECT_EQ(p->type, ZUN_RTCPSUBPACKET_TYPE_RTPFB);
  EXPECT_EQ(p->fmt, ZUN_RTCPRTPFB_TYPE_NACK);
  EXPECT_EQ(p->sender, sender);
  EXPECT_EQ(p->source, source);
}

// An owned vector of numbers.
class Collected : public zun::rtcp::Owning<ZunVector_ZunUint16> {
 public:
  using Owning::Owning;
  operator ZunVector_ZunUint16*() { return get(); }
  Numbers numbers() const { return Numbers(get()->begin, get()->end); }
};

TEST(ZunRtcpRtpfbNack, IsBuiltWithoutMaps) {
  TestAllocator allocator;
  ZunRtcpRtpfbNack nack;
  ASSERT_EQ(ZunRtcpRtpfbNackConstruct(&nack, 1, 2, allocator), &nack);
  ExpectHead(&nack, 1, 2);
  EXPECT_EQ(ZunRtcpRtpfbNackGetNumOfSeqMaps(&nack), 0U);
  EXPECT_EQ(ZunRtcpRtpfbNackGetNumOfSeqNumbers(&nack), 0U);
  EXPECT_EQ(ZunRtcpRtpfbNackGetAllocator(&nack), allocator.get());
  ZunRtcpRtpfbNackDestruct(&nack);
  ASSERT_EQ(ZunRtcpRtpfbNackConstructDefault(&nack, allocator), &nack);
  ExpectHead(&nack, 0, 0);
  ZunRtcpRtpfbNackDestruct(&nack);
  EXPECT_EQ(allocator.calls(), 0U);
}

TEST(ZunRtcpRtpfbNack, DestructingItTwiceIsHarmless) {
  TestAllocator allocator;
  ZunRtcpRtpfbNack nack;
  ZunRtcpRtpfbNackConstruct(&nack, 1, 2, allocator);
  Add(&nack, {1, 100, 200});
  ZunRtcpRtpfbNackDestruct(&nack);
  EXPECT_EQ(ZunRtcpRtpfbNackGetNumOfSeqMaps(&nack), 0U);
  ZunRtcpRtpfbNackDestruct(&nack);
}

// Adding.

TEST(ZunRtcpRtpfbNack, AMapTakesTheSixteenNumbersAboveItsBase) {
  Nack nack;
  Add(nack, {100, 101, 116});
  EXPECT_EQ(MapsOf(nack), (Maps{{100, 0x8001}}));
  Add(nack, {117});
  EXPECT_EQ(MapsOf(nack), (Maps{{100, 0x8001}, {117, 0}}));
}

TEST(ZunRtcpRtpfbNack, EachBitStandsForOneNumber) {
  for (ZunUint16 distance = 1; distance <= 16; ++distance) {
    Nack nack;
    Add(nack, {1000, static_cast<ZunUint16>(1000 + distance)});
    EXPECT_EQ(MapsOf(nack), (Maps{{1000, 1 << (distance - 1)}}));
    EXPECT_EQ(Enumerated(nack), (Numbers{1000, static_cast<ZunUint16>(1000 + distance)}));
  }
}

TEST(ZunRtcpRtpfbNack, ALowerNumberGetsAMapOfItsOwn) {
  Nack nack;
  Add(nack, {100, 90});
  EXPECT_EQ(MapsOf(nack), (Maps{{100, 0}, {90, 0}}));
}

TEST(ZunRtcpRtpfbNack, ANumberThatIsThereIsNotAddedAgain) {
  Nack nack;
  Add(nack, {100, 90, 105});
  const Maps before = {{100, 0x0010}, {90, 0}};
  ASSERT_EQ(MapsOf(nack), before);
  Add(nack, {100, 90, 105});
  EXPECT_EQ(MapsOf(nack), before);
}

TEST(ZunRtcpRtpfbNack, TheFirstMapThatCanTakeANumberDoes) {
  Nack nack;
  SetMaps(nack, {{110, 0}, {100, 0}, {105, 0}});
  Add(nack, {112, 108});
  EXPECT_EQ(MapsOf(nack), (Maps{{110, 0x0002}, {100, 0x0080}, {105, 0}}));
  // 105 is the base of the last map, but bit 4 of the second one comes first.
  Add(nack, {105});
  EXPECT_EQ(MapsOf(nack), (Maps{{110, 0x0002}, {100, 0x0090}, {105, 0}}));
}

TEST(ZunRtcpRtpfbNack, GroupingDoesNotWrapAround) {
  Nack nack;
  Add(nack, {65535, 0});
  EXPECT_EQ(MapsOf(nack), (Maps{{65535, 0}, {0, 0}}));
  EXPECT_TRUE(ZunRtcpRtpfbNackWillSeqNumberRequireNewSeqMap(nack, 65520));
  ZunRtcpRtpfbNackResetSeqMaps(nack);
  Add(nack, {65520});
  EXPECT_FALSE(ZunRtcpRtpfbNackWillSeqNumberRequireNewSeqMap(nack, 65535));
  EXPECT_TRUE(ZunRtcpRtpfbNackWillSeqNumberRequireNewSeqMap(nack, 0));
}

TEST(ZunRtcpRtpfbNack, EnumerationDoesWrapAround) {
  Nack nack;
  SetMaps(nack, {{65530, 0x0020}, {65535, 0x8001}});
  EXPECT_EQ(Enumerated(nack), (Numbers{65530, 0, 65535, 0, 15}));
}

TEST(ZunRtcpRtpfbNack, TellsWhetherANumberNeedsANewMap) {
  Nack nack;
  EXPECT_TRUE(ZunRtcpRtpfbNackWillSeqNumberRequireNewSeqMap(nack, 100));
  Add(nack, {100});
  for (int number = 0; number < 65536; ++number) {
    const bool is_new = ZunRtcpRtpfbNackWillSeqNumberRequireNewSeqMap(nack, static_cast<ZunUint16>(number)) != 0;
    ASSERT_EQ(is_new, number < 100 || number > 116) << number;
  }
  EXPECT_EQ(MapsOf(nack), (Maps{{100, 0}}));
}

TEST(ZunRtcpRtpfbNack, MapsGrowFromTwoToTwice) {
  Nack nack;
  for (int i = 0; i < 5; ++i) Add(nack, {static_cast<ZunUint16>(i * 100)});
  EXPECT_EQ(ZunVector_ZunRtcpRtpfbNackSeqMapCapacity(&nack->seqMaps), 8U);
}

// Removing.

TEST(ZunRtcpRtpfbNack, AMapThatLosesItsBaseIsBasedOnItsNextNumber) {
  Nack nack;
  SetMaps(nack, {{100, 0x0006}});
  ZunRtcpRtpfbNackRemoveSeqNumber(nack, 100);
  EXPECT_EQ(MapsOf(nack), (Maps{{102, 0x0001}}));

  SetMaps(nack, {{100, 0x8000}});
  ZunRtcpRtpfbNackRemoveSeqNumber(nack, 100);
  EXPECT_EQ(MapsOf(nack), (Maps{{116, 0}}));

  SetMaps(nack, {{65530, 0x0120}});
  ZunRtcpRtpfbNackRemoveSeqNumber(nack, 65530);
  EXPECT_EQ(MapsOf(nack), (Maps{{0, 0x0004}}));
}

TEST(ZunRtcpRtpfbNack, AMapThatLosesItsOnlyNumberIsErased) {
  Nack nack;
  SetMaps(nack, {{100, 0}});
  ZunRtcpRtpfbNackRemoveSeqNumber(nack, 100);
  EXPECT_EQ(MapsOf(nack), Maps());
}

TEST(ZunRtcpRtpfbNack, ANumberAboveTheBaseLosesItsBit) {
  for (int distance = 1; distance <= 16; ++distance) {
    Nack nack;
    SetMaps(nack, {{100, 0xFFFF}});
    ZunRtcpRtpfbNackRemoveSeqNumber(nack, static_cast<ZunUint16>(100 + distance));
    EXPECT_EQ(MapsOf(nack), (Maps{{100, 0xFFFF & ~(1 << (distance - 1))}}));
    ZunRtcpRtpfbNackRemoveSeqNumber(nack, static_cast<ZunUint16>(100 + distance));
    EXPECT_EQ(MapsOf(nack), (Maps{{100, 0xFFFF & ~(1 << (distance - 1))}}));
  }
}

TEST(ZunRtcpRtpfbNack, WhatIsNotThereIsNotRemoved) {
  Nack nack;
  const Maps maps = {{100, 0x0006}, {65530, 0x0020}};
  SetMaps(nack, maps);
  // 0 is in the second map by enumeration, but not by distance.
  for (const ZunUint16 number : Numbers{0, 99, 101, 117, 65529, 65535}) {
    ZunRtcpRtpfbNackRemoveSeqNumber(nack, number);
  }
  EXPECT_EQ(MapsOf(nack), maps);
}

TEST(ZunRtcpRtpfbNack, ANumberIsRemovedFromEveryMapThatHoldsIt) {
  Nack nack;
  SetMaps(nack, {{100, 0x0200}, {110, 0x0001}, {105, 0x0010}});
  ZunRtcpRtpfbNackRemoveSeqNumber(nack, 110);
  EXPECT_EQ(MapsOf(nack), (Maps{{100, 0}, {111, 0}, {105, 0}}));
}

TEST(ZunRtcpRtpfbNack, TheMapAfterAnErasedOneIsPassedOver) {
  Nack nack;
  SetMaps(nack, {{10, 0}, {10, 0}, {10, 0}});
  ZunRtcpRtpfbNackRemoveSeqNumber(nack, 10);
  EXPECT_EQ(MapsOf(nack), (Maps{{10, 0}}));

  SetMaps(nack, {{10, 0}, {5, 0x0010}, {4, 0x0020}});
  ZunRtcpRtpfbNackRemoveSeqNumber(nack, 10);
  EXPECT_EQ(MapsOf(nack), (Maps{{5, 0x0010}, {4, 0}}));
}

TEST(ZunRtcpRtpfbNack, AddedNumbersAreHeldOnceUntilTheyAreRemoved) {
  std::mt19937 random(1);
  for (int round = 0; round < 50; ++round) {
    SCOPED_TRACE(round);
    const ZunUint16 start = static_cast<ZunUint16>(random());
    const unsigned spread = 1 + static_cast<unsigned>(random() % 400);
    std::set<ZunUint16> added;
    Nack nack;
    for (int i = 0; i < 100; ++i) {
      const ZunUint16 number = static_cast<ZunUint16>(start + random() % spread);
      const ZunSizeT maps = ZunRtcpRtpfbNackGetNumOfSeqMaps(nack);
      const bool is_new_map = ZunRtcpRtpfbNackWillSeqNumberRequireNewSeqMap(nack, number) != 0;
      Add(nack, {number});
      ASSERT_EQ(ZunRtcpRtpfbNackGetNumOfSeqMaps(nack), maps + (is_new_map ? 1 : 0));
      added.insert(number);
    }
    Numbers held = Enumerated(nack);
    std::sort(held.begin(), held.end());
    ASSERT_EQ(held, Numbers(added.begin(), added.end()));
    std::shuffle(held.begin(), held.end(), random);
    while (!held.empty()) {
      ZunRtcpRtpfbNackRemoveSeqNumber(nack, held.back());
      held.pop_back();
      ASSERT_EQ(Enumerated(nack).size(), held.size());
    }
    ASSERT_EQ(ZunRtcpRtpfbNackGetNumOfSeqMaps(nack), 0U);
  }
}

TEST(ZunRtcpRtpfbNack, ResetKeepsTheStorage) {
  TestAllocator allocator;
  Nack nack(allocator);
  Add(nack, {1, 100, 200});
  const std::size_t calls = allocator.calls();
  ZunRtcpRtpfbNackResetSeqMaps(nack);
  EXPECT_EQ(ZunRtcpRtpfbNackGetNumOfSeqMaps(nack), 0U);
  Add(nack, {1, 100, 200});
  EXPECT_EQ(allocator.calls(), calls);
}

// Enumerating.

TEST(ZunRtcpRtpfbNack, NumbersComeMapByMapUnsortedAndWithDuplicates) {
  Nack nack;
  EXPECT_EQ(Enumerated(nack), Numbers());
  SetMaps(nack, {{100, 0x8005}, {90, 0x0200}, {100, 0}});
  EXPECT_EQ(Enumerated(nack), (Numbers{100, 101, 103, 116, 90, 100, 100}));
  SetMaps(nack, {{0, 0xFFFF}});
  EXPECT_EQ(Enumerated(nack).size(), 17U);
}

TEST(ZunRtcpRtpfbNack, CollectingReplacesWhatTheVectorHeld) {
  TestAllocator allocator;
  Collected numbers(allocator);
  Nack nack;
  SetMaps(nack, {{100, 0x8005}, {65535, 0x0001}});
  ZunRtcpRtpfbNackGetSeqNumbers(nack, numbers);
  EXPECT_EQ(numbers.numbers(), (Numbers{100, 101, 103, 116, 65535, 0}));
  const std::size_t calls = allocator.calls();
  SetMaps(nack, {{7, 0}});
  ZunRtcpRtpfbNackGetSeqNumbers(nack, numbers);
  EXPECT_EQ(numbers.numbers(), (Numbers{7}));
  EXPECT_EQ(allocator.calls(), calls);
  ZunRtcpRtpfbNackResetSeqMaps(nack);
  ZunRtcpRtpfbNackGetSeqNumbers(nack, numbers);
  EXPECT_EQ(numbers.numbers(), Numbers());
}

TEST(ZunRtcpRtpfbNack, ANumberThatTheVectorCannotHoldIsLeftOutSilently) {
  LogCapture log;
  Nack nack;
  SetMaps(nack, {{100, 0x8005}});
  {
    TestAllocator refusing;
    Collected numbers(refusing);
    refusing.RefuseOnce(0);
    ZunRtcpRtpfbNackGetSeqNumbers(nack, numbers);
    EXPECT_EQ(numbers.numbers(), (Numbers{101, 103, 116}));
  }
  {
    TestAllocator refusing;
    Collected numbers(refusing);
    refusing.RefuseFrom(1);
    ZunRtcpRtpfbNackGetSeqNumbers(nack, numbers);
    EXPECT_EQ(numbers.numbers(), (Numbers{100, 101}));
  }
  log.ExpectNone();
}

// The wire.

TEST(ZunRtcpRtpfbNack, ReadsAndWritesOneMapSilently) {
  LogCapture log;
  Nack nack;
  ASSERT_TRUE(nack.Read(Golden("NackOneMap")));
  ExpectHead(nack, 0x01020304, 0x05060708);
  EXPECT_EQ(MapsOf(nack), (Maps{{0x1234, 0x8001}}));
  EXPECT_EQ(ZunRtcpRtpfbNackGetPacketLength(nack.sp()), 16U);
  EXPECT_EQ(nack.bytes(), Golden("NackOneMap"));
  log.ExpectNone();
}

TEST(ZunRtcpRtpfbNack, MoreThanOneMapIsMentionedOnceEachWay) {
  LogCapture log;
  Nack nack;
  ASSERT_TRUE(nack.Read(Golden("NackThreeMaps")));
  log.ExpectOne(ZUN_LOG_DEBUG, ZunLogRtcp_, kRead, kManyRead);
  ExpectHead(nack, 0x01020304, 0x05060708);
  EXPECT_EQ(MapsOf(nack), (Maps{{100, 0x8001}, {65535, 0}, {0, 2}}));
  EXPECT_EQ(Enumerated(nack), (Numbers{100, 101, 116, 65535, 0, 2}));
  EXPECT_EQ(ZunRtcpRtpfbNackGetPacketLength(nack.sp()), 24U);
  EXPECT_EQ(nack.bytes(), Golden("NackThreeMaps"));
  log.ExpectOne(ZUN_LOG_DEBUG, ZunLogRtcp_, kWrite, kManyWritten);
}

TEST(ZunRtcpRtpfbNack, ABuiltOneWritesWhatWasAdded) {
  ZunRtcpSubpacket sp;
  ZunRtcpRtpfbNackConstruct(&sp.rtpfb.nack, 0x01020304, 0x05060708, ZunAllocatorGetSystem());
  Add(&sp.rtpfb.nack, {100, 101, 116, 65535, 0, 2});
  EXPECT_EQ(Written(sp), Golden("NackThreeMaps"));
  ZunRtcpRtpfbNackDestructWrap(&sp);
}

TEST(ZunRtcpRtpfbNack, WithoutMapsItIsNeverWritten) {
  LogCapture log;
  Nack nack;
  Text out("abc");
  EXPECT_EQ(ZunRtcpRtpfbNackGetPacketLength(nack.sp()), 12U);
  EXPECT_FALSE(ZunRtcpRtpfbNackWritePacket(nack.sp(), out, 0));
  log.ExpectOne(ZUN_LOG_ERROR, ZunLogRtcp_, kWrite, kUnwritable);
  EXPECT_EQ(out.str(), "abc" + Hex("81CD0002 00000000 00000000"));
}

TEST(ZunRtcpRtpfbNack, KeepsWhatStandsInFrontOfACut) {
  LogCapture log;
  const std::string whole = Golden("NackThreeMaps");
  const Maps all = {{100, 0x8001}, {65535, 0}, {0, 2}};
  for (ZunSizeT size = 4; size <= whole.size(); ++size) {
    for (const ZunSizeT beyond : {ZunSizeT{0}, whole.size() - size, SIZE_MAX - size}) {
      SCOPED_TRACE(testing::Message() << size << " bytes, " << beyond << " announced after them");
      Nack nack;
      ZunRtcpRtpfbNackAddSeqNumber(nack, 1);
      nack->sender = 10;
      nack->source = 20;
      const ZunSizeT maps = size < 16 ? 0 : (size - 12) / 4;
      const bool is_whole = maps != 0 && size % 4 == 0 && beyond == 0;
      EXPECT_EQ(nack.Read(whole.substr(0, size), {.beyond = beyond}), is_whole);
      ExpectHead(nack, size >= 8 ? 0x01020304 : 10, size >= 12 ? 0x05060708 : 20);
      EXPECT_EQ(MapsOf(nack), Maps(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(maps)));
      ASSERT_EQ(log.entries().size(), (maps > 1 ? 1U : 0U) + (is_whole ? 0U : 1U));
      if (!is_whole) {
        EXPECT_EQ(log.entries().back().level, ZUN_LOG_ERROR);
        EXPECT_EQ(log.entries().back().function, kRead);
        EXPECT_EQ(log.entries().back().message, kUnreadable);
      }
      log.Clear();
    }
  }
}

TEST(ZunRtcpRtpfbNack, ABodyWithoutMapsIsRefused) {
  LogCapture log;
  Nack nack;
  EXPECT_FALSE(nack.Read(Hex("81CD0002 00000001 00000002")));
  log.ExpectOne(ZUN_LOG_ERROR, ZunLogRtcp_, kRead, kUnreadable);
  ExpectHead(nack, 1, 2);
  EXPECT_FALSE(Parsed(Hex("81CD0002 00000001 00000002")).ok);
}

TEST(ZunRtcpRtpfbNack, ReceivedMapsAreKeptAsTheyAre) {
  const std::string overlapping = Hex("81CD0005 00000001 00000002 000A0000 000AFFFF 00090001");
  const Parsed parsed(overlapping);
  ASSERT_TRUE(parsed.ok);
  const ZunRtcpRtpfb* const rtpfb = ZunRtcpSubpacketGetRtpfb(&parsed[0]);
  EXPECT_EQ(MapsOf(ZunRtcpRtpfbGetNack(rtpfb)), (Maps{{10, 0}, {10, 0xFFFF}, {9, 1}}));
  EXPECT_EQ(parsed.bytes(), overlapping);
}

TEST(ZunRtcpRtpfbNack, ThereIsNoUpperBoundOnItsMaps) {
  for (const std::size_t count : {255U, 256U, 16000U}) {
    const std::string packet = ManyMaps(count);
    const Parsed parsed(packet);
    ASSERT_TRUE(parsed.ok);
    EXPECT_EQ(ZunRtcpRtpfbNackGetNumOfSeqMaps(&parsed[0].rtpfb.nack), count);
    EXPECT_EQ(ZunRtcpSubpacketGetNetworkPacketLength(&parsed[0]), packet.size());
    EXPECT_TRUE(parsed.bytes() == packet);
  }
}

TEST(ZunRtcpRtpfbNack, ASecondMapIsLoggedEvenWhenItFindsNoRoom) {
  TestAllocator allocator;
  Nack one;
  ASSERT_TRUE(one.Read(Golden("NackOneMap")));
  Nack p(allocator);
  ASSERT_NE(ZunRtcpRtpfbNackAssign(p, one), nullptr);  // has room for just one map
  allocator.RefuseFrom(0);
  LogCapture log;
  EXPECT_FALSE(p.Read(Golden("NackThreeMaps")));
  ASSERT_EQ(log.entries().size(), 2U);
  EXPECT_EQ(log.entries()[0].message, kManyRead);
  EXPECT_EQ(log.entries()[1].message, kUnreadable);
  EXPECT_EQ(ZunRtcpRtpfbNackGetNumOfSeqMaps(p), 1U);
}

TEST(ZunRtcpRtpfbNack, AllItsMapsAreReadIntoOneBlock) {
  TestAllocator allocator;
  Nack nack(allocator);
  ASSERT_TRUE(nack.Read(ManyMaps(50)));
  EXPECT_EQ(allocator.calls(), 1U);
  EXPECT_EQ(allocator.live_bytes(), 64 * sizeof(ZunRtcpRtpfbNackSeqMap)) << "as appending them one by one would";
}

TEST(ZunRtcpRtpfbNack, ARefusedWriteIsLogged) {
  LogCapture log;
  Nack nack;
  Add(nack, {1});
  TestAllocator refusing;
  refusing.RefuseFrom(0);
  Text out(refusing.get());
  EXPECT_FALSE(ZunRtcpRtpfbNackWritePacket(nack.sp(), out, 0));
  log.ExpectOne(ZUN_LOG_ERROR, ZunLogRtcp_, kWrite, kUnwritable);
}

// Copies, and refused allocations.

TEST(ZunRtcpRtpfbNack, ACopyIsANackWhateverItsSourceSays) {
  Nack source;
  Add(source, {1});
  source->type = 0;
  source->fmt = 9;
  ZunRtcpRtpfbNack copy;
  ASSERT_EQ(ZunRtcpRtpfbNackConstructCopy(&copy, source), &copy);
  ExpectHead(&copy, 0, 0);
  copy.type = 7;
  copy.fmt = 7;
  ASSERT_EQ(ZunRtcpRtpfbNackAssign(&copy, source), &copy);
  ExpectHead(&copy, 0, 0);
  ASSERT_TRUE(source.Read(Golden("NackOneMap")));
  ExpectHead(source, 0x01020304, 0x05060708);
  ZunRtcpRtpfbNackDestruct(&copy);
}

TEST(ZunRtcpRtpfbNack, ARefusedAssignmentLeavesNoMaps) {
  Nack source;
  source->sender = 1;
  SetMaps(source, {{1, 1}, {2, 2}, {3, 3}});
  TestAllocator refusing;
  Nack nack(refusing);
  nack->sender = 10;
  Add(nack, {100});
  refusing.RefuseFrom(0);
  EXPECT_EQ(ZunRtcpRtpfbNackAssign(nack, source), nullptr);
  ExpectHead(nack, 10, 0);
  EXPECT_EQ(MapsOf(nack), Maps());
  EXPECT_EQ(refusing.live_blocks(), 0U);
  refusing.RefuseNothing();
  ASSERT_EQ(ZunRtcpRtpfbNackAssign(nack, source), nack.get());
  EXPECT_EQ(MapsOf(nack), MapsOf(source));
}

TEST(ZunRtcpRtpfbNack, ARefusedAddChangesNothing) {
  ForEveryRefusal([](TestAllocator& refusing) {
    Nack nack(refusing);
    Maps expected;
    for (const int number : {10, 100, 200, 300, 400}) {
      if (ZunRtcpRtpfbNackAddSeqNumber(nack, static_cast<ZunUint16>(number))) expected.emplace_back(number, 0);
      EXPECT_EQ(MapsOf(nack), expected);
    }
  });
}

TEST(ZunRtcpRtpfbNack, ARefusedReadKeepsTheMapsThatCouldBeHeld) {
  LogCapture log;
  const Maps all = {{100, 0x8001}, {65535, 0}, {0, 2}};
  ForEveryRefusal([&](TestAllocator& refusing) {
    log.Clear();
    Nack nack(refusing);
    const bool ok = nack.Read(Golden("NackThreeMaps"));
    ExpectHead(nack, 0x01020304, 0x05060708);
    const Maps maps = MapsOf(nack);
    ASSERT_LE(maps.size(), all.size());
    EXPECT_EQ(maps, Maps(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(maps.size())));
    EXPECT_EQ(ok, maps.size() == all.size());
    if (!ok) {
      EXPECT_EQ(log.entries().back().message, kUnreadable);
    }
  });
  // Where the whole list is too large for the allocator, the first two maps are not.
  TestAllocator cramped;
  cramped.RefuseAbove(2 * sizeof(ZunRtcpRtpfbNackSeqMap));
  Nack nack(cramped);
  log.Clear();
  EXPECT_FALSE(nack.Read(Golden("NackThreeMaps")));
  EXPECT_EQ(MapsOf(nack), Maps(all.begin(), all.begin() + 2));
  ASSERT_EQ(log.entries().size(), 2U);
  EXPECT_EQ(log.entries().front().message, kManyRead);
  EXPECT_EQ(log.entries().back().message, kUnreadable);
}

}  // namespace
