// What decoding takes from allocators: whose memory, when, how much at most, and what happens where it is refused.
#include <gtest/gtest.h>

#include <chrono>

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

// The same of objects that have the packet's allocator, and elements that have not.
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

TEST(ZunRtcpDecode, TakesNoPacketWithoutAnAllocator) {
  const Decoded p(Golden("Pli"), kHouse, Defaults(), nullptr);
  EXPECT_EQ(Told(p.report), "0 read, 1 refused, 0: 206/1 at 0, 12 bytes, stopped at 4: memory was refused");
}

// Time

// The shortest of some runs over a datagram of `count` subpackets, all but the first of which find no memory.
double SecondsWithoutMemory(ZunSizeT count) {
  using Clock = std::chrono::steady_clock;
  std::string bytes;
  for (ZunSizeT i = 0; i < count; ++i) bytes += Hex("80CF0000");
  double least = 1e9;
  for (int run = 0; run < 5; ++run) {
    TestAllocator a;
    a.RefuseAbove(4 * sizeof(ZunRtcpSubpacket));
    ZunRtcpPacket p;
    ZunRtcpPacketConstructDefault(&p, a);
    const ZunRtcpDecodeOptions options = Tolerant();
    ZunRtcpDecodeReport report;
    const Clock::time_point begin = Clock::now();
    EXPECT_TRUE(ZunRtcpPacketDecode(&p, bytes.data(), bytes.size(), kHouse, &options, &report));
    least = std::min(least, std::chrono::duration<double>(Clock::now() - begin).count());
    EXPECT_EQ(report.read, 4U);
    EXPECT_EQ(report.refused, count - 4);
    EXPECT_LT(a.calls(), 3 * count);
    ZunRtcpPacketDestruct(&p);
  }
  return least;
}

// Sixteen times the subpackets take sixteen times the time; were what is left counted at each, it would be 256 times.
TEST(ZunRtcpDecode, TakesTimeInProportionWhereMemoryIsRefused) {
  EXPECT_LT(SecondsWithoutMemory(16 * 1023), 64 * SecondsWithoutMemory(1023));
}

}  // namespace
