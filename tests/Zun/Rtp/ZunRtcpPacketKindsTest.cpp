// Compound packets of all kinds: what one kind must not do to its neighbours, and what an object that held one kind
// must be after it has read another.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Zun/Rtp/SubpacketDispatch.h"
#include "Zun/Rtp/ZunRtcpPacket.h"
#include "tests/support/Bytes.h"
#include "tests/support/LogCapture.h"
#include "tests/support/TestAllocator.h"

namespace {

using test::Datagram;
using test::Hex;
using test::LogCapture;
using test::Parsed;
using test::TestAllocator;
using test::Text;
using test::ToHex;

const std::string kSr = Hex("80C80006 11223344 E0000000 80000000 00001000 00000002 00000100");
const std::string kRr = Hex("81C90007 11223344 55667788 01000002 00000003 00000004 00000005 00000006");
const std::string kSdes = Hex("81CA0003 11223344 0105 616C696365 00");
const std::string kEmptySdes = Hex("80CA0000");
const std::string kBye = Hex("81CB0002 11223344 03 627965");
const std::string kApp = Hex("80CC0003 11223344 54455354 01020304");
const std::string kNack = Hex("81CD0003 11223344 55667788 00640001");
const std::string kTmmbr = Hex("82CD0004 11223344 00000000 55667788 000F4240");
const std::string kTmmbn = Hex("83CD0003 11223344 55667788 000F4240");
const std::string kUnknownRtpfb = Hex("87CD0003 11223344 55667788 01020304");
const std::string kCcfb = Hex("8ECD0005 11223344 55667788 03E80002 80010000 12345678");
const std::string kTransportCc = Hex("8FCD0006 11223344 55667788 00010002 00000503 2002 10 20 00000000");
const std::string kRtpfbAbafb = Hex("9ECD0007 11223344 55667788 00000001 00000002 00000003 00000004 00000005");
const std::string kPli = Hex("81CE0002 11223344 55667788");
const std::string kSli = Hex("82CE0003 11223344 55667788 00080041");
const std::string kRpsi = Hex("83CE0004 11223344 55667788 0860 010203 00");
const std::string kFir = Hex("84CE0004 11223344 00000000 55667788 07000000");
const std::string kTstr = Hex("85CE0004 11223344 00000000 55667788 0700001F");
const std::string kTsta = Hex("86CE0004 11223344 55667788 55667788 0700001F");
const std::string kUnknownPsfb = Hex("89CE0003 11223344 55667788 01020304");
const std::string kUnknownAfb = Hex("8FCE0003 11223344 55667788 4C4E5446");
const std::string kRemb = Hex("8FCE0005 11223344 00000000 52454D42 0108F424 55667788");
const std::string kAlbr = Hex("8FCE0004 11223344 00000000 4E720002 000F4240");
const std::string kAfbAbafb =
    Hex("8FCE000A 11223344 00000000 4E720001 00000001 00000002 00000003 00000004 00000005 FFFFFFFA 00000007");
const std::string kShow = Hex("8FCE0005 11223344 55667788 4E720003 07 190780 0801 0000");
const std::string kShowAck = Hex("8FCE0005 11223344 00000000 4E720004 55667788 07000000");
const std::string kLir = Hex("8FCE0006 11223344 55667788 4E720005 55667788 0760 0004 01020304");
const std::string kUnknown = Hex("83CF0002 0102030405060708");

// Fixes the length field to what the bytes are.
std::string Packet(std::string bytes) {
  while (bytes.size() % 4 != 0) bytes += '\0';
  const std::size_t words = bytes.size() / 4 - 1;
  bytes[2] = static_cast<char>(words >> 8);
  bytes[3] = static_cast<char>(words & 0xFF);
  return bytes;
}

const std::vector<std::string>& AllKinds() {
  static const std::vector<std::string> kinds = [] {
    std::vector<std::string> all = {kSr,    kRr,           kSdes, kBye,         kApp,         kNack,       kTmmbr,
                                    kTmmbn, kUnknownRtpfb, kCcfb, kTransportCc, kRtpfbAbafb,  kPli,        kSli,
                                    kRpsi,  kFir,          kTstr, kTsta,        kUnknownPsfb, kUnknownAfb, kRemb,
                                    kAlbr,  kAfbAbafb,     kShow, kShowAck,     kLir,         kUnknown};
    for (std::string& bytes : all) bytes = Packet(bytes);
    return all;
  }();
  return kinds;
}

// All that can be seen of a subpacket: what it writes, or, for one that cannot be read back, its length as well.
std::string Seen(const ZunRtcpSubpacket& sp) {
  Text out;
  const bool written = zun::SubpacketLevel::RowOf(sp.unk.type).write_packet(&sp, out, 0) != 0;
  return ToHex(out.str()) + (written ? " written, " : " refused, ") +
         std::to_string(ZunRtcpSubpacketGetNetworkPacketLength(&sp));
}

TEST(PacketOfAllKinds, EveryTypeHasItsOwnRow) {
  for (ZunInt32 type = 200; type <= 206; ++type) EXPECT_EQ(zun::SubpacketLevel::RowOf(type).type, type);
  for (const ZunInt32 type : {0, 1, 199, 207, 255, -1}) EXPECT_EQ(zun::SubpacketLevel::RowOf(type).type, 0);
}

TEST(PacketOfAllKinds, AllParseTogetherInOrder) {
  std::string datagram;
  for (const std::string& kind : AllKinds()) datagram += kind;
  TestAllocator allocator;
  Parsed parsed(datagram, allocator);
  ASSERT_TRUE(parsed.ok);
  ASSERT_EQ(parsed.count(), AllKinds().size());
  for (std::size_t i = 0; i < AllKinds().size(); ++i) {
    EXPECT_EQ(ZunRtcpSubpacketGetType(&parsed[i]), static_cast<unsigned char>(AllKinds()[i][1]));
    EXPECT_EQ(Seen(parsed[i]), Seen(Parsed(AllKinds()[i])[0]));
  }
  const std::size_t calls = allocator.calls();
  EXPECT_TRUE(parsed.Again(datagram));
  EXPECT_EQ(allocator.calls(), calls) << "the shape is the same";
}

// An unknown format neither desynchronises nor drops its neighbours.
TEST(PacketOfAllKinds, AnUnknownFormatKeepsItsNeighbours) {
  const std::string datagram = kSr + kSdes + kUnknownRtpfb + kRr;
  const Parsed parsed(datagram);
  ASSERT_TRUE(parsed.ok);
  ASSERT_EQ(parsed.count(), 4U);
  EXPECT_EQ(ToHex(parsed.Rewritten()), ToHex(datagram));
}

// Each kind announces more than its own packet holds, while the datagram holds more: it must not reach into the next.
TEST(PacketOfAllKinds, NoKindReadsBeyondItsOwnPacket) {
  for (const std::string& kind : AllKinds()) {
    for (std::size_t size = 4; size < kind.size(); size += 4) {
      const std::string cut = Packet(kind.substr(0, size));
      const Parsed alone(cut);
      const Parsed followed(cut + kind);
      EXPECT_EQ(followed.ok, alone.ok) << ToHex(cut);
      if (alone.ok && followed.ok) {
        EXPECT_EQ(Seen(followed[0]), Seen(alone[0])) << ToHex(cut);
      }
    }
  }
}

TEST(PacketOfAllKinds, AnObjectThatHeldOneKindReadsAnotherLikeAFreshOne) {
  for (const std::string& first : AllKinds()) {
    for (const std::string& second : AllKinds()) {
      TestAllocator allocator;
      Parsed used(first, allocator);
      ASSERT_TRUE(used.ok) << ToHex(first);
      ASSERT_TRUE(used.Again(second)) << ToHex(first) << " then " << ToHex(second);
      EXPECT_EQ(Seen(used[0]), Seen(Parsed(second)[0])) << ToHex(first) << " then " << ToHex(second);
    }
  }
}

// A view of received bytes has no allocator: what would take it takes the one that the object has, or the packet's.
TEST(PacketOfAllKinds, AViewWithoutAnAllocatorIsReadOverAnyKind) {
  for (const std::string& first : AllKinds()) {
    for (const std::string& second : AllKinds()) {
      TestAllocator allocator;
      Parsed used(first, allocator);
      ASSERT_TRUE(used.ok) << ToHex(first);
      const Datagram view(second, nullptr);
      ASSERT_TRUE(ZunRtcpPacketParseNetworkPacket(&used.packet, view)) << ToHex(first) << " then " << ToHex(second);
      EXPECT_EQ(Seen(used[0]), Seen(Parsed(second)[0])) << ToHex(first) << " then " << ToHex(second);
      ZunAllocator* const own = zun::SubpacketDispatch::GetAllocator(&used[0]);
      EXPECT_TRUE(own == nullptr || own == allocator.get());
    }
  }
}

// An object that another allocator serves keeps that one where the view has none.
TEST(PacketOfAllKinds, AViewWithoutAnAllocatorLeavesAnObjectItsOwn) {
  TestAllocator packet_allocator;
  TestAllocator object_allocator;
  const Parsed source(kNack, object_allocator);
  ZunRtcpPacket packet;
  ZunRtcpPacketConstructDefault(&packet, packet_allocator);
  ASSERT_TRUE(ZunRtcpPacketAppendSubpacket(&packet, &source[0]));
  ASSERT_TRUE(ZunRtcpPacketParseNetworkPacket(&packet, Datagram(kUnknownRtpfb, nullptr)));
  EXPECT_EQ(zun::SubpacketDispatch::GetAllocator(ZunRtcpPacketGetSubpacket(&packet, 0)), object_allocator.get());
  ZunRtcpPacketDestruct(&packet);
}

// Where nobody has an allocator, nothing is read that would need one, and nothing is lost.
TEST(PacketOfAllKinds, AMessageWithoutAnyAllocatorIsRefusedWhereItNeedsOne) {
  const Datagram tmmbn(kTmmbn, nullptr);
  const Datagram nack(kNack, nullptr);
  ZunRtcpSubpacket sp;
  ASSERT_TRUE(ZunRtcpRtpfbConstructFromBuffer(&sp, tmmbn, 4, tmmbn->size, 205, 3, nullptr));
  EXPECT_FALSE(ZunRtcpRtpfbAssignFromBuffer(&sp, nack, 4, nack->size, 205, 1));
  EXPECT_TRUE(ZunRtcpRtpfbAssignFromBuffer(&sp, tmmbn, 4, tmmbn->size, 205, 3));
  ZunRtcpRtpfbDestructWrap(&sp);
}

// No kind takes more than four allocations to be copied.
TEST(PacketOfAllKinds, OneKindIsAssignedToAnother) {
  for (const std::string& first : AllKinds()) {
    for (const std::string& second : AllKinds()) {
      const Parsed source(second);
      for (std::size_t refused = 0; refused <= 4; ++refused) {
        TestAllocator allocator;
        Parsed target(first, allocator);
        ASSERT_TRUE(target.ok);
        allocator.RefuseFrom(refused);
        if (ZunRtcpPacketSetSubpacket(&target.packet, 0, &source[0])) {
          EXPECT_EQ(Seen(target[0]), Seen(source[0]));
        } else {
          EXPECT_GT(allocator.refused(), 0U);
          EXPECT_LT(refused, 4U);
        }
      }
    }
  }
}

// A subpacket that is appended begins fresh: an SDES that announces no chunks has none, whatever stands before it.
TEST(PacketOfAllKinds, AnAppendedSdesWithoutChunksHasNone) {
  EXPECT_EQ(ToHex(Parsed(kSdes + kEmptySdes).Rewritten()), ToHex(kSdes + kEmptySdes));
  EXPECT_EQ(ToHex(Parsed(kSdes + kPli + kEmptySdes).Rewritten()), ToHex(kSdes + kPli + kEmptySdes));
}

// One that is read over another keeps that one's chunks.
TEST(PacketOfAllKinds, AnSdesWithoutChunksKeepsThoseThatItIsReadOver) {
  Parsed parsed(kSdes);
  EXPECT_TRUE(parsed.Again(kEmptySdes));
  EXPECT_EQ(ToHex(parsed.Rewritten()), ToHex(kSdes));
}

TEST(PacketOfAllKinds, EveryAppendedSubpacketTakesTheAllocatorOfThePacket) {
  TestAllocator packet_allocator;
  TestAllocator buffer_allocator;
  const Datagram datagram(kNack + kUnknownRtpfb + kUnknownRtpfb + kPli + kRemb + kUnknown, buffer_allocator);
  ZunRtcpPacket packet;
  ASSERT_NE(ZunRtcpPacketConstructFromNetworkPacket(&packet, datagram, packet_allocator), nullptr);
  for (ZunSizeT n = 0; n < ZunRtcpPacketGetSubpacketCount(&packet); ++n) {
    EXPECT_EQ(zun::SubpacketDispatch::GetAllocator(ZunRtcpPacketGetSubpacket(&packet, n)), packet_allocator.get());
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

std::string Repeated(const std::string& packet, std::size_t times) {
  std::string all;
  for (; times > 0; --times) all += packet;
  return all;
}

// An SDES of 31 chunks with an item each, as large as one can be made with little, and thousands of empty ones after it.
TEST(PacketOfAllKinds, EmptySdesPacketsAfterALargeOneCostNoMoreThanTheirSlots) {
  const std::string large = Packet(Hex("9FCA0000") + Repeated(Hex("00000001 0101 41 00"), 31));
  ExpectCost(large + Repeated(kEmptySdes, 16000), 64, 0.01);
}

// The smallest subpackets there are, and all kinds in one datagram over and over.
TEST(PacketOfAllKinds, ManySubpacketsCostAMultipleOfTheirSize) {
  ExpectCost(Repeated(Hex("80CF0000"), 16383), 64, 0.01);
  std::string all;
  for (const std::string& kind : AllKinds()) all += kind;
  ExpectCost(Repeated(all, 60), 16, 0.1);
}

TEST(PacketOfAllKinds, RoomIsMadeOnceForAFreshPacket) {
  TestAllocator allocator;
  Parsed parsed(kSr + kSdes + kNack + kRemb + kPli, allocator);
  ASSERT_TRUE(parsed.ok);
  EXPECT_LE(allocator.allocations(), 8U);
  EXPECT_EQ(ZunVector_ZunRtcpSubpacketCapacity(&parsed.packet.subpackets), 8U) << "as appending one by one gives";
}

// A BYE without sources has no length; it is logged once for each operation that meets it.
TEST(PacketOfAllKinds, AByeWithoutSourcesHasNoLengthAndIsNotWritten) {
  constexpr char kMessage[] = "Number of sources for bye subpacket is not in the range 1 -- 31.";
  ZunRtcpSubpacket sp;
  ZunRtcpByeConstructDefault(&sp.bye, ZunAllocatorGetSystem());
  ZunRtcpPacket packet;
  ZunRtcpPacketConstructDefault(&packet, ZunAllocatorGetSystem());
  ASSERT_TRUE(ZunRtcpPacketAppendSubpacket(&packet, &sp));
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
  ZunRtcpByeDestruct(&sp.bye);
}

}  // namespace
