// Compound packets of all kinds: what one kind must not do to its neighbours, and what an object that held one kind
// must be after it has read another.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "Zun/Rtp/SubpacketDispatch.h"
#include "tests/support/LogCapture.h"
#include "tests/support/Samples.h"

namespace {

using namespace test;

const std::string kEmptySdes = Hex("80CA0000");

// All samples in one datagram.
std::string AllSamples() {
  std::string datagram;
  for (const Sample& sample : Samples()) datagram += sample.wire;
  return datagram;
}

// Every sample after every other.
void ForEveryPair(const std::function<void(const Sample& first, const Sample& second)>& check) {
  for (const Sample& first : Samples()) {
    for (const Sample& second : Samples()) {
      SCOPED_TRACE(first.name + " then " + second.name);
      check(first, second);
    }
  }
}

std::string Repeated(const std::string& packet, std::size_t times) {
  std::string all;
  for (; times > 0; --times) all += packet;
  return all;
}

ZunAllocator* AllocatorOf(const ZunRtcpSubpacket& sp) { return zun::SubpacketDispatch::GetAllocator(&sp); }

TEST(ZunRtcpPacketOfAllKinds, AllParseTogetherInOrder) {
  TestAllocator allocator;
  Parsed parsed(AllSamples(), allocator);
  ASSERT_TRUE(parsed.ok);
  ASSERT_EQ(parsed.count(), Samples().size());
  for (std::size_t i = 0; i < Samples().size(); ++i) {
    EXPECT_TRUE(IsOfKind(*Samples()[i].row, parsed[i])) << Samples()[i].name;
    EXPECT_EQ(SeenOf(parsed[i]), Seen(Samples()[i])) << Samples()[i].name;
  }
}

TEST(ZunRtcpPacketOfAllKinds, ParsingTheSameDatagramAgainTakesNoAllocation) {
  TestAllocator allocator;
  ZunRtcpPacket packet;
  ZunRtcpPacketConstructDefault(&packet, allocator);
  const Datagram bytes(AllSamples(), allocator);
  ASSERT_TRUE(ZunRtcpPacketParseNetworkPacket(&packet, bytes));
  const std::size_t calls = allocator.calls();
  ASSERT_TRUE(ZunRtcpPacketParseNetworkPacket(&packet, bytes));
  EXPECT_EQ(allocator.calls(), calls);

  Text out(allocator);
  ASSERT_TRUE(ZunRtcpPacketGetNetworkPacket(&packet, out));
  const std::string written = out.str();
  const std::size_t calls_of_write = allocator.calls();
  ASSERT_TRUE(ZunRtcpPacketGetNetworkPacket(&packet, out));
  EXPECT_EQ(allocator.calls(), calls_of_write);
  EXPECT_EQ(out.str(), written);
  ZunRtcpPacketDestruct(&packet);
}

// An unknown format neither desynchronises nor drops its neighbours.
TEST(ZunRtcpPacketOfAllKinds, AnUnknownFormatKeepsItsNeighbours) {
  for (const std::string name : {"UnknownWithData", "RtpfbUnknown", "PsfbUnknown", "AfbUnknown"}) {
    const std::string datagram = Golden("SrOneBlock") + Golden("SdesTwoChunks") + Golden(name) + Golden("RrOneBlock");
    const Parsed parsed(datagram);
    ASSERT_TRUE(parsed.ok) << name;
    ASSERT_EQ(parsed.count(), 4U);
    EXPECT_EQ(ToHex(parsed.bytes()), ToHex(datagram));
  }
}

// Each kind announces more than its own packet holds, while the datagram holds more: it must not reach into the next.
TEST(ZunRtcpPacketOfAllKinds, NoKindReadsBeyondItsOwnPacket) {
  for (const Sample& sample : Samples()) {
    for (std::size_t size = kBodyBegin; size < sample.wire.size(); size += 4) {
      const std::string cut =
          Subpacket(PacketTypeOf(sample.wire), CountOf(sample.wire), sample.wire.substr(kBodyBegin, size - kBodyBegin));
      SCOPED_TRACE(sample.name + " cut to " + ToHex(cut));
      const Parsed alone(cut);
      const Parsed followed(cut + sample.wire);
      EXPECT_EQ(followed.ok, alone.ok);
      if (alone.ok && followed.ok) {
        EXPECT_EQ(SeenOf(followed[0]), SeenOf(alone[0]));
      }
    }
  }
}

TEST(ZunRtcpPacketOfAllKinds, AnObjectThatHeldOneKindReadsAnotherLikeAFreshOne) {
  ForEveryPair([](const Sample& first, const Sample& second) {
    TestAllocator allocator;
    Parsed used(first.wire, allocator);
    ASSERT_TRUE(used.ok);
    ASSERT_TRUE(used.Read(second.wire));
    EXPECT_EQ(SeenOf(used[0]), Seen(second));
    ASSERT_TRUE(used.Read(first.wire + second.wire + first.wire));
    EXPECT_EQ(SeenOf(used[0]), Seen(first));
    EXPECT_EQ(SeenOf(used[1]), Seen(second));
    EXPECT_EQ(SeenOf(used[2]), Seen(first));
  });
}

// A view of received bytes has no allocator: what would take it takes the one that the object has, or the packet's.
TEST(ZunRtcpPacketOfAllKinds, AViewWithoutAnAllocatorIsReadOverAnyKind) {
  ForEveryPair([](const Sample& first, const Sample& second) {
    TestAllocator allocator;
    Parsed used(first.wire, allocator);
    ASSERT_TRUE(used.ok);
    ASSERT_TRUE(ZunRtcpPacketParseNetworkPacket(&used.packet, Datagram(second.wire, nullptr)));
    EXPECT_EQ(SeenOf(used[0]), Seen(second));
    ZunAllocator* const own = AllocatorOf(used[0]);
    EXPECT_TRUE(own == nullptr || own == allocator.get());
  });
}

// An object that another allocator serves keeps that one where the view has none.
TEST(ZunRtcpPacketOfAllKinds, AViewWithoutAnAllocatorLeavesAnObjectItsOwn) {
  TestAllocator packet_allocator;
  TestAllocator object_allocator;
  const Parsed source(Golden("NackOneMap"), object_allocator);
  ZunRtcpPacket packet;
  ZunRtcpPacketConstructDefault(&packet, packet_allocator);
  ASSERT_TRUE(ZunRtcpPacketAppendSubpacket(&packet, &source[0]));
  ASSERT_TRUE(ZunRtcpPacketParseNetworkPacket(&packet, Datagram(Golden("RtpfbUnknown"), nullptr)));
  EXPECT_EQ(AllocatorOf(*ZunRtcpPacketGetSubpacket(&packet, 0)), object_allocator.get());
  ZunRtcpPacketDestruct(&packet);
}

// Where nobody has an allocator, nothing is read that would need one, and nothing is lost.
TEST(ZunRtcpPacketOfAllKinds, AMessageWithoutAnyAllocatorIsRefusedWhereItNeedsOne) {
  const Reading without_allocator = {.buffer_allocator = nullptr};
  Received p(kRowOf<ZunRtcpRtpfb>, Golden("Tmmbn"), nullptr, without_allocator);
  ASSERT_TRUE(p.ok);
  EXPECT_FALSE(p.Read(Golden("NackOneMap"), without_allocator));
  EXPECT_TRUE(p.Read(Golden("Tmmbn"), without_allocator));
}

TEST(ZunRtcpPacketOfAllKinds, OneKindIsAssignedToAnother) {
  ForEveryPair([](const Sample& first, const Sample& second) {
    const Parsed source(second.wire);
    ForEveryRefusalAfter([&](TestAllocator& refusing, const std::function<void()>& begin) {
      Parsed target(first.wire, refusing);
      ASSERT_TRUE(target.ok);
      begin();
      if (ZunRtcpPacketSetSubpacket(&target.packet, 0, &source[0])) {
        EXPECT_EQ(SeenOf(target[0]), Seen(second));
      } else {
        EXPECT_GT(refusing.refused(), 0U);
      }
    });
  });
}

TEST(ZunRtcpPacketOfAllKinds, RefusedReadsOfAnyKindOverAnyOtherLoseNothing) {
  ForEveryPair([](const Sample& first, const Sample& second) {
    ForEveryRefusal([&](TestAllocator& refusing) {
      ZunRtcpPacket packet;
      ZunRtcpPacketConstructDefault(&packet, refusing);
      const bool ok = ZunRtcpPacketParseNetworkPacket(&packet, Datagram(first.wire, refusing)) &&
                      ZunRtcpPacketParseNetworkPacket(&packet, Datagram(second.wire, refusing));
      if (ok && !second.reads_despite_refusals) {
        EXPECT_EQ(SeenOf(*ZunRtcpPacketGetSubpacket(&packet, 0)), Seen(second));
      }
      EXPECT_TRUE(ok || refusing.refused() > 0);
      ZunRtcpPacketDestruct(&packet);
    });
  });
}

// A subpacket that is appended begins fresh: an SDES that announces no chunks has none, whatever stands before it.
TEST(ZunRtcpPacketOfAllKinds, AnAppendedSdesWithoutChunksHasNone) {
  const std::string sdes = Golden("SdesOneChunk");
  EXPECT_EQ(ToHex(Parsed(sdes + kEmptySdes).bytes()), ToHex(sdes + kEmptySdes));
  EXPECT_EQ(ToHex(Parsed(sdes + Golden("Pli") + kEmptySdes).bytes()), ToHex(sdes + Golden("Pli") + kEmptySdes));
}

// One that is read over another keeps that one's chunks.
TEST(ZunRtcpPacketOfAllKinds, AnSdesWithoutChunksKeepsThoseThatItIsReadOver) {
  Parsed parsed(Golden("SdesOneChunk"));
  EXPECT_TRUE(parsed.Read(kEmptySdes));
  EXPECT_EQ(ToHex(parsed.bytes()), ToHex(Golden("SdesOneChunk")));
}

TEST(ZunRtcpPacketOfAllKinds, EveryAppendedSubpacketTakesTheAllocatorOfThePacket) {
  std::string wires;
  std::vector<bool> own_memory;
  for (const Sample& sample : Samples()) {
    if (sample.row == &kRowOf<ZunRtcpPsfbAfbLir>) continue;  // its layer data takes the allocator of the buffer
    wires += sample.wire;
    own_memory.push_back(ReceivedSample(sample).allocator() != nullptr);
  }
  TestAllocator packet_allocator;
  TestAllocator buffer_allocator;
  ZunRtcpPacket packet;
  ASSERT_NE(ZunRtcpPacketConstructFromNetworkPacket(&packet, Datagram(wires, buffer_allocator), packet_allocator),
            nullptr);
  ASSERT_EQ(ZunRtcpPacketGetSubpacketCount(&packet), own_memory.size());
  for (ZunSizeT n = 0; n < own_memory.size(); ++n) {
    EXPECT_EQ(AllocatorOf(*ZunRtcpPacketGetSubpacket(&packet, n)), own_memory[n] ? packet_allocator.get() : nullptr);
  }
  EXPECT_EQ(buffer_allocator.calls(), 0U);
  ZunRtcpPacketDestruct(&packet);
}

// Parses a datagram into a fresh packet and checks what it costs: memory that is live at any time, and calls of the
// allocator, for each byte of the datagram.
void ExpectCost(const std::string& datagram, std::size_t bytes_per_byte, double calls_per_byte) {
  TestAllocator allocator;
  Parsed parsed(datagram, allocator);
  ASSERT_TRUE(parsed.ok);
  EXPECT_LE(allocator.peak_bytes(), bytes_per_byte * datagram.size());
  EXPECT_LE(static_cast<double>(allocator.calls()), calls_per_byte * static_cast<double>(datagram.size()));
}

// An SDES of 31 chunks with an item each, as large as one can be made with little, and thousands of empty ones after
// it.
TEST(ZunRtcpPacketOfAllKinds, EmptySdesPacketsAfterALargeOneCostNoMoreThanTheirSlots) {
  const std::string large = Subpacket(202, 31, Repeated(Hex("00000001 0101 41 00"), 31));
  ExpectCost(large + Repeated(kEmptySdes, 16000), 64, 0.01);
}

// The smallest subpackets there are, and all kinds in one datagram over and over.
TEST(ZunRtcpPacketOfAllKinds, ManySubpacketsCostAMultipleOfTheirSize) {
  ExpectCost(Repeated(Golden("UnknownWithoutData"), 16383), 64, 0.01);
  ExpectCost(Repeated(AllSamples(), 30), 16, 0.1);
}

// As many packets as 36 bytes can announce, none of which was received.
std::string WidestTransportCc() {
  return Hex(R"(
    8F CD 0008        | FMT 15, type 205, 9 words
    01020304 05060708 | sender, media source
    0001 FFF8         | base sequence number, 65528 packets
    000001 00         | reference time, count
    1FFF 1FFF 1FFF 1FFF 1FFF 1FFF 1FFF 1FFF  | runs of 8191 packets, not received
  )");
}

// What a datagram costs is bounded by its size, but not by a small factor: ZunRtcpPacket.h tells by which.
TEST(ZunRtcpPacketOfAllKinds, AnnouncedPacketsCostAsMuchAsTheInterfaceTells) {
  const std::string datagram = WidestTransportCc();
  ASSERT_EQ(datagram.size(), 36U);
  TestAllocator allocator;
  const Parsed one(datagram, allocator);
  ASSERT_TRUE(one.ok);
  EXPECT_EQ(ZunVector_ZunRtcpRtpfbTransportCcPacketInfoSize(&one[0].rtpfb.transportCc.packetInfo), 65528U);
  EXPECT_EQ(allocator.peak_bytes() / 1000, 262U);

  const std::size_t in_a_full_datagram = 65535 / datagram.size();
  TestAllocator of_ten;
  ASSERT_TRUE(Parsed(Repeated(datagram, 10), of_ten).ok);
  EXPECT_EQ(of_ten.peak_bytes() / 10 * in_a_full_datagram / 10000000, 47U) << "480 MB, as little as 477 of them";
}

TEST(ZunRtcpPacketOfAllKinds, AnAllocatorThatRefusesBoundsWhatAnnouncedPacketsCost) {
  TestAllocator cramped;
  cramped.RefuseAbove(10000);
  Parsed parsed(Golden("SrOneBlock") + WidestTransportCc(), cramped);
  EXPECT_FALSE(parsed.ok);
  EXPECT_LE(cramped.peak_bytes(), 30000U);
  EXPECT_TRUE(parsed.Read(Golden("SrOneBlock")));
}

TEST(ZunRtcpPacketOfAllKinds, RoomIsMadeOnceForAFreshPacket) {
  TestAllocator allocator;
  Parsed parsed(Golden("SrWithoutBlocks") + Golden("SdesOneChunk") + Golden("NackOneMap") + Golden("RembOneSource") +
                    Golden("Pli"),
                allocator);
  ASSERT_TRUE(parsed.ok);
  EXPECT_LE(allocator.allocations(), 8U);
  EXPECT_EQ(ZunVector_ZunRtcpSubpacketCapacity(&parsed.packet.subpackets), 8U) << "as appending one by one gives";
}

// A BYE without sources has no length; it is logged once for each operation that meets it.
TEST(ZunRtcpPacketOfAllKinds, AByeWithoutSourcesHasNoLengthAndIsNotWritten) {
  constexpr char kMessage[] = "Number of sources for bye subpacket is not in the range 1 -- 31.";
  const TEST_OBJECT(ZunRtcpBye) bye;
  ZunRtcpPacket packet;
  ZunRtcpPacketConstructDefault(&packet, ZunAllocatorGetSystem());
  ASSERT_TRUE(ZunRtcpPacketAppendSubpacket(&packet, bye.sp()));
  LogCapture log;
  EXPECT_EQ(ZunRtcpPacketGetNetworkPacketLength(&packet), 0U);
  log.ExpectOne(ZUN_LOGLEVEL_ERROR, ZunLogRtcp_, "ZunRtcpByeGetPacketLength", kMessage);
  Text out;
  EXPECT_FALSE(ZunRtcpPacketGetNetworkPacket(&packet, out));
  log.ExpectOne(ZUN_LOGLEVEL_ERROR, ZunLogRtcp_, "ZunRtcpByeWritePacket", kMessage);
  ZunSizeT last = 7;
  EXPECT_FALSE(ZunRtcpPacketGetPartialNetworkPacket(&packet, out, 0, 1200, nullptr, &last));
  log.ExpectOne(ZUN_LOGLEVEL_ERROR, ZunLogRtcp_, "ZunRtcpByeGetPacketLength", kMessage);
  EXPECT_EQ(last, 7U);
  ZunRtcpPacketDestruct(&packet);
}

}  // namespace
