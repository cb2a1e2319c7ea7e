// What decoding takes from allocators: whose memory, when, how much at most, and what happens where it is refused.
#include <gtest/gtest.h>

#include <ctime>

#include "Zun/Rtp/Dialect/ZunRtcpCodec.h"
#include "tests/support/Captured.h"
#include "tests/support/GuardedBlock.h"
#include "tests/support/OpenDoor.h"
#include "tests/support/Samples.h"

namespace {

using namespace test;

// Every sample, what differs in the registered dialect, and datagrams of several subpackets.
const std::vector<std::string>& Wires() {
  static const std::vector<std::string> wires = [] {
    std::vector<std::string> all = {Hex(kCapturedCcfb), Hex(kCapturedTransportCc), Hex(kCapturedTmmbn),
                                    Hex(kCapturedDlrr), Hex(kCapturedXr)};
    std::string together;
    for (const Sample& sample : Samples()) {
      all.push_back(sample.wire);
      together += sample.wire;
    }
    all.push_back(together);
    return all;
  }();
  return wires;
}

// In place

TEST(ZunRtcpDecode, AllocatesNothingForTheShapeOfTheLastDatagram) {
  for (const ZunRtcpDialect dialect : kDialects) {
    for (const std::string& wire : Wires()) {
      TestAllocator a;
      Decoded p(wire, dialect, Defaults(), a);
      const std::size_t calls = a.calls();
      p.Read(wire, dialect);
      p.Read(wire, dialect);
      EXPECT_EQ(a.calls(), calls) << ToHex(wire);
    }
  }
}

TEST(ZunRtcpDecode, AllocatesNothingForShorterListsAndTexts) {
  const std::vector<std::pair<const char*, const char*>> pairs = {
      {"SrTwoBlocks", "SrOneBlock"},
      {"RrTwoBlocks", "RrWithoutBlocks"},
      {"ByeAtItsLimits", "ByeWithReason"},
      {"AppWithData", "AppWithoutData"},
      {"NackThreeMaps", "NackOneMap"},
      {"TmmbrTwoEntries", "TmmbrOneEntry"},
      {"CcfbTwoStreams", "CcfbWithoutStreams"},
      {"TransportCcMixed", "TransportCcOnePacket"},
      {"SliThreeItems", "SliWithoutItems"},
      {"RpsiThreeOctets", "RpsiTwoOctets"},
      {"FirTwoEntries", "FirOneEntry"},
      {"RembTwoSources", "RembWithoutSources"},
      {"ShowFourParameters", "ShowTwoParameters"},
      {"UnknownWithData", "UnknownWithoutData"},
      {"RtpfbUnknown", "RtpfbUnknownSmall"},
  };
  for (const auto& [longer, shorter] : pairs) {
    TestAllocator a;
    Decoded p(Golden(longer), kHouse, Defaults(), a);
    const std::size_t allocations = a.allocations();
    EXPECT_TRUE(p.Read(Golden(shorter), kHouse));
    EXPECT_EQ(a.allocations(), allocations) << longer;
    EXPECT_EQ(Everything(p.packet), Everything(Decoded(Golden(shorter), kHouse).packet));
  }
}

// Whose

// What the packet held may have been put there by its owner, with allocators of its own; all of it must go.
TEST(ZunRtcpDecode, OwnsAllWithTheAllocatorOfThePacket) {
  for (const ZunRtcpDialect dialect : kDialects) {
    for (const std::string& wire : Wires()) {
      TestAllocator own;
      TestAllocator foreign;
      Decoded p(own);
      {
        const Decoded theirs(wire, dialect, Tolerant(), foreign);
        ASSERT_TRUE(ZunRtcpPacketAppendSubpackets(&p.packet, ZunRtcpPacketGetSubpackets(&theirs.packet)));
      }
      const Decoded expected(wire, dialect, Tolerant());
      p.Read(wire, dialect, Tolerant());
      EXPECT_EQ(foreign.live_blocks(), 0U) << ToHex(wire);
      EXPECT_EQ(Everything(p.packet), Everything(expected.packet));
    }
  }
}

// The same of objects that have the packet's allocator, and of elements that have not.
TEST(ZunRtcpDecode, OwnsTheElementsOfListsWithTheAllocatorOfThePacket) {
  for (const Sample& sample : Samples()) {
    TestAllocator own;
    TestAllocator foreign;
    Decoded p(sample.wire, kHouse, Defaults(), own);
    {
      const Decoded theirs(sample.wire, kHouse, Defaults(), foreign);
      // An empty list first, so that its elements are copied and not assigned.
      ASSERT_TRUE(p.Read(Golden("UnknownWithoutData"), kHouse));
      ASSERT_NE(ZunRtcpSubpacketAssign(p.packet.subpackets.begin, &theirs[0]), nullptr);
    }
    EXPECT_EQ(foreign.live_blocks() != 0, sample.elements_own_memory && sample.name != "CcfbWithoutStreams")
        << sample.name;
    ASSERT_TRUE(p.Read(sample.wire, kHouse));
    EXPECT_EQ(foreign.live_blocks(), 0U) << sample.name;
    EXPECT_EQ(Everything(p.packet), Everything(Decoded(sample.wire, kHouse).packet));
  }
}

// Refused

// Where memory is refused that is the reason, or all was read without it.
void ExpectRightOrRefused(const Decoded& p, const Decoded& expected, bool met) {
  if (p.ok == expected.ok && p.reason() == expected.reason()) {
    EXPECT_EQ(Everything(p.packet), Everything(expected.packet));
    return;
  }
  EXPECT_TRUE(met);
  EXPECT_FALSE(p.ok);
  EXPECT_EQ(p.reason(), ZUN_RTCP_DECODE_REASON_ALLOCATION) << Told(p.report);
  EXPECT_EQ(p.report.read, p.count());
}

TEST(ZunRtcpDecode, TellsThatMemoryIsRefused) {
  std::size_t most = 0;
  for (const ZunRtcpDialect dialect : kDialects) {
    for (const std::string& wire : Wires()) {
      SCOPED_TRACE(ToHex(wire));
      const Decoded expected(wire, dialect);
      most = std::max(most, ForEveryRefusal([&](TestAllocator& refusing) {
                        const Decoded p(wire, dialect, Defaults(), refusing);
                        ExpectRightOrRefused(p, expected, refusing.refused() != 0);
                      }));
    }
  }
  EXPECT_GT(most, 50U);
}

TEST(ZunRtcpDecode, TellsThatMemoryIsRefusedInPlace) {
  for (const ZunRtcpDialect dialect : kDialects) {
    for (std::size_t i = 1; i < Wires().size(); ++i) {
      SCOPED_TRACE(ToHex(Wires()[i]));
      const Decoded expected(Wires()[i], dialect);
      ForEveryRefusalAfter([&](TestAllocator& refusing, const std::function<void()>& begin) {
        Decoded p(Wires()[i - 1], dialect, Tolerant(), refusing);
        begin();
        p.Read(Wires()[i], dialect);
        ExpectRightOrRefused(p, expected, refusing.refused() != 0);
      });
    }
  }
}

// A subpacket that found no memory is skipped like any other; those after it are read.
TEST(ZunRtcpDecode, SkipsWhatFindsNoMemoryWhereItIsTolerant) {
  const std::string bytes = Golden("SdesTwoChunks") + Golden("Albr") + Golden("NackThreeMaps");
  std::size_t skipped = 0;
  ForEveryRefusal([&](TestAllocator& refusing) {
    const Decoded p(bytes, kHouse, Tolerant(), refusing);
    EXPECT_EQ(p.report.read + p.report.refused, 3U);
    EXPECT_EQ(p.refusals.size(), p.report.refused);
    for (const ZunRtcpDecodeRefusal& refusal : p.refusals) {
      EXPECT_EQ(refusal.reason, ZUN_RTCP_DECODE_REASON_ALLOCATION);
    }
    skipped += p.report.read == 2;
  });
  EXPECT_GT(skipped, 3U);
}

// Room is made for as many subpackets as the options allow, those counted that there was room for.
TEST(ZunRtcpDecode, MakesNoRoomForMoreSubpacketsThanAreAllowed) {
  const auto receivers = [](int count) {
    std::string bytes;
    for (int i = 0; i < count; ++i) bytes += Hex("80C90001 00000001");
    return bytes;
  };
  Decoded p(receivers(4), kHouse);
  ZunRtcpDecodeOptions eight = Defaults();
  eight.maxSubpackets = 8;
  EXPECT_FALSE(p.Read(receivers(100), kHouse, eight));
  EXPECT_EQ(p.count(), 8U);
  EXPECT_EQ(p.packet.subpackets.endBuf - p.packet.subpackets.begin, 8);
}

TEST(ZunRtcpDecode, TakesNoPacketWithoutAnAllocator) {
  const Decoded p(Golden("Pli"), kHouse, Defaults(), nullptr);
  EXPECT_EQ(Told(p.report), "0 read, 1 refused, 0: 206/1 at 0, 12 bytes, stopped at 4: memory was refused");
}

// Time

// What a decode takes of the processor's time, as others may have the processor meanwhile: of a datagram of `count`
// subpackets, all but the first of which find no memory. That clock may tick rarely.
double SecondsWithoutMemory(ZunSizeT count) {
  std::string bytes;
  for (ZunSizeT i = 0; i < count; ++i) bytes += Hex("80CF0000");
  const ZunRtcpDecodeOptions options = Tolerant();
  const std::clock_t begin = std::clock();
  int runs = 0;
  for (; runs < 5 || std::clock() - begin < CLOCKS_PER_SEC / 5; ++runs) {
    TestAllocator a;
    a.RefuseAbove(4 * sizeof(ZunRtcpSubpacket));
    ZunRtcpPacket p;
    ZunRtcpPacketConstructDefault(&p, a);
    ZunRtcpDecodeReport report;
    EXPECT_TRUE(ZunRtcpPacketDecode(&p, bytes.data(), bytes.size(), kHouse, &options, &report));
    EXPECT_EQ(report.read, 4U);
    EXPECT_EQ(report.refused, count - 4);
    EXPECT_LT(a.calls(), 3 * count);
    ZunRtcpPacketDestruct(&p);
  }
  return static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC / runs;
}

// Sixteen times the subpackets take sixteen times the time; were what is left counted at each, it would be 256 times.
TEST(ZunRtcpDecode, TakesTimeInProportionWhereMemoryIsRefused) {
  EXPECT_LT(SecondsWithoutMemory(16 * 1023), 64 * SecondsWithoutMemory(1023));
}

// Cost

constexpr ZunSizeT kMaxDatagram = 65535;

// SDES subpackets of chunks with so many items each, as far as `room` goes; an item is its two octets and its text. A
// list that has just outgrown its storage has room for twice as much.
std::string Descriptions(ZunSizeT items, const std::string& item, ZunSizeT room) {
  std::string chunk = "ssrc";
  for (ZunSizeT i = 0; i < items; ++i) chunk += item;
  chunk += '\0';
  chunk.resize((chunk.size() + 3) / 4 * 4);
  std::string bytes;
  while (room >= 4 + chunk.size()) {
    const ZunSizeT count = std::min<ZunSizeT>(31, (room - 4) / chunk.size());
    std::string chunks;
    for (ZunSizeT i = 0; i < count; ++i) chunks += chunk;
    bytes += Subpacket(202, static_cast<int>(count), chunks);
    room -= 4 + chunks.size();
  }
  return bytes;
}

// One subpacket, again and again.
std::string Repeated(const std::string& subpacket, ZunSizeT room = kMaxDatagram) {
  std::string bytes;
  while (bytes.size() + subpacket.size() <= room) bytes += subpacket;
  return bytes;
}

// One subpacket: a head and as many entries as there is room for, but not more than `most`.
std::string ListOf(int type, int fmt, const std::string& head, const std::string& entry, ZunSizeT most = SIZE_MAX,
                   const std::string& tail = "") {
  const ZunSizeT room = kMaxDatagram - 4 - head.size() - tail.size();
  std::string body = head;
  for (ZunSizeT i = 0; i < std::min(most, room / entry.size()); ++i) body += entry;
  body += tail;
  body.resize(body.size() / 4 * 4);
  return Subpacket(type, fmt, body);
}

// Transport-wide feedback about 65,535 packets that were lost, in 38 octets.
std::string AllStatuses() {
  return Subpacket(205, 15, Hex("00000001 00000002 0000FFFF 00000000 1FFF1FFF 1FFF1FFF 1FFF1FFF 1FFF1FFF 00070000"));
}

struct Costly {
  std::string what;
  std::string bytes;
};

std::vector<Costly> CostlyOnes() {
  const std::string sources = Hex("00000001 00000002");
  const std::string statuses = AllStatuses();
  const ZunSizeT left = kMaxDatagram - statuses.size();
  std::vector<Costly> all = {
      {"two lists of items", Descriptions(16385, Hex("0100"), 32784) + Descriptions(16300, Hex("0100"), 32750)},
      {"one list of items", Descriptions(32700, Hex("0100"), kMaxDatagram)},
      {"empty subpackets", Repeated(Hex("80CF0000"))},
      {"subpackets of one octet of text", Repeated(Hex("81CA0002 00000001 01014100"))},
      {"statuses, message by message", Repeated(Subpacket(205, 15, sources + Hex("0000003F 00000000 003F0000")))},
      {"maps", ListOf(205, 1, sources, Hex("00010000"), 16383)},
      {"streams without metrics", ListOf(205, 14, Hex("00000001"), Hex("0000000100000000"), SIZE_MAX, Hex("00000000"))},
      {"streams of one metric", ListOf(205, 14, Hex("00000001"), Hex("000000010000000180010000"), 5460, "time")},
      {"metrics", ListOf(205, 14, Hex("00000001 00000002 00007FF0"), Hex("8001"), 0x7FF0, "time")},
      {"items of slices", ListOf(206, 2, sources, Hex("00000001"))},
      {"parameters", ListOf(206, 15, sources + Hex("4E720003 01"), Hex("0801"), 32756, Hex("000000"))},
      {"layers", ListOf(206, 15, sources + Hex("4E720005"), Hex("0000000101010000"), 8190)},
      {"layers of one octet", ListOf(206, 15, sources + Hex("4E720005"), Hex("000000010101000141000000"), 5460)},
      {"report blocks", Repeated(ListOf(201, 31, Hex("00000001"), std::string(24, 'b'), 31))},
  };
  for (const ZunSizeT items : std::initializer_list<ZunSizeT>{1, 3, 5, 9, 17, 65, 257, 1025, 2049, 4097}) {
    all.push_back({std::to_string(items) + " items each", Descriptions(items, Hex("0100"), kMaxDatagram)});
    all.push_back({std::to_string(items) + " items of one octet each", Descriptions(items, Hex("010141"), 65535)});
    all.push_back(
        {std::to_string(items) + " items each, and statuses", statuses + Descriptions(items, Hex("0100"), left)});
  }
  return all;
}

TEST(ZunRtcpDecode, TakesNoMoreMemoryThanItsHeaderTells) {
  std::size_t most = 0;
  for (const Costly& costly : CostlyOnes()) {
    SCOPED_TRACE(costly.what);
    ASSERT_GT(costly.bytes.size(), 57000U);
    ASSERT_LE(costly.bytes.size(), kMaxDatagram);
    for (const ZunRtcpDialect dialect : kDialects) {
      TestAllocator a;
      {
        const Decoded p(costly.bytes, dialect, Tolerant(), a);
        EXPECT_GT(p.report.read, 0U) << Told(p.report);
        EXPECT_LE(a.peak_bytes(), ZUN_RTCP_DECODE_MAX_COST * kMaxDatagram);
        // Time is that of reading so much: a list that grows copies its texts, so there may be a block for every octet.
        EXPECT_LE(a.allocations(), kMaxDatagram);
        most = std::max(most, a.peak_bytes());
      }
    }
  }
  // The bound is no idle one. It is that of machines whose pointers take eight bytes.
  EXPECT_GT(most, ZUN_RTCP_DECODE_MAX_COST * kMaxDatagram / 2 * sizeof(void*) / 8);
}

// Out of an arena

// How much of an arena decoding takes.
ZunSizeT HighWaterMark(const std::string& bytes, ZunRtcpDialect dialect) {
  alignas(16) static ZunUint8 block[65536];
  ZunArena arena;
  ZunArenaConstruct(&arena, block, sizeof(block), nullptr);
  const Decoded p(bytes, dialect, Defaults(), ZunArenaGetAllocator(&arena));
  EXPECT_NE(p.reason(), ZUN_RTCP_DECODE_REASON_ALLOCATION);
  return ZunArenaGetHighWaterMark(&arena);
}

// The block of every size ends at a page that nobody may touch, so that it begins at every alignment.
TEST(ZunRtcpDecode, ReadsOutOfAnArenaOfAnySizeOrIsRefused) {
  for (const std::string& bytes : {Wires().front(), Hex(kCapturedXr), Golden("SdesTwoChunks"), Wires().back()}) {
    const Decoded expected(bytes, kRegistered);
    const ZunSizeT enough = HighWaterMark(bytes, kRegistered);
    GuardedBlock block(enough + 32);
    const ZunSizeT step = enough > 4096 ? 11 : 1;  // of any alignment all the same
    for (ZunSizeT size = 0; size <= block.size(); size += step) {
      ZunArena arena;
      ZunArenaConstruct(&arena, block.Last(size), size, nullptr);
      const Decoded p(bytes, kRegistered, Defaults(), ZunArenaGetAllocator(&arena));
      ExpectRightOrRefused(p, expected, size < enough + 15);
      EXPECT_LE(ZunArenaGetHighWaterMark(&arena), size);
    }
  }
}

TEST(ZunRtcpDecode, TakesNothingButTheArenaThatIsLargeEnough) {
  for (const std::string& bytes : Wires()) {
    const ZunSizeT enough = HighWaterMark(bytes, kHouse);
    const std::unique_ptr<ZunUint8[]> block(new ZunUint8[enough + 16]);
    TestAllocator overflow;
    ZunArena arena;
    ZunArenaConstruct(&arena, block.get(), enough + 16, overflow);
    for (int datagram = 0; datagram < 3; ++datagram) {
      const Decoded p(bytes, kHouse, Defaults(), ZunArenaGetAllocator(&arena));
      EXPECT_NE(p.reason(), ZUN_RTCP_DECODE_REASON_ALLOCATION);
    }
    EXPECT_EQ(overflow.calls(), 0U);
    EXPECT_EQ(ZunArenaGetHighWaterMark(&arena), enough);
    EXPECT_EQ(ZunArenaGetUsed(&arena), 0U);
  }
}

TEST(ZunRtcpDecode, TurnsToTheOtherAllocatorWhereAnArenaIsTooSmall) {
  const std::string& bytes = Wires().back();
  const Decoded expected(bytes, kHouse);
  for (const ZunSizeT size : std::initializer_list<ZunSizeT>{0, 64, 1000, 4000}) {
    const std::unique_ptr<ZunUint8[]> block(new ZunUint8[size]);
    TestAllocator overflow;
    ZunArena arena;
    ZunArenaConstruct(&arena, block.get(), size, overflow);
    const Decoded p(bytes, kHouse, Defaults(), ZunArenaGetAllocator(&arena));
    EXPECT_TRUE(p.ok);
    EXPECT_EQ(Everything(p.packet), Everything(expected.packet));
    EXPECT_NE(overflow.live_blocks(), 0U);
  }
}

// The way to decode datagram after datagram with a ceiling: the packet is forgotten with the arena.
TEST(ZunRtcpDecode, ReadsDatagramAfterDatagramOutOfAnArenaThatIsReset) {
  const std::unique_ptr<ZunUint8[]> block(new ZunUint8[65536]);
  ZunArena arena;
  ZunArenaConstruct(&arena, block.get(), 65536, nullptr);
  for (int round = 0; round < 20; ++round) {
    for (const std::string& bytes : Wires()) {
      ZunRtcpPacket p;
      ZunRtcpPacketConstructDefault(&p, ZunArenaGetAllocator(&arena));
      EXPECT_TRUE(ZunRtcpPacketDecode(&p, bytes.data(), bytes.size(), kHouse, nullptr, nullptr));
      ZunArenaReset(&arena);
    }
  }
}

}  // namespace
