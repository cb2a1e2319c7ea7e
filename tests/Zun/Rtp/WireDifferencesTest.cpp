// The warnings of docs/wire-differences.md, one by one: when one of these tests changes, so must the page.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "Zun/Rtp/Cpp/TransportFeedback.h"
#include "Zun/Rtp/ZunRtcpPacket.h"
#include "tests/support/Bytes.h"
#include "tests/support/Kinds.h"

namespace {

using test::Hex;
using test::Parsed;
using test::Str;
using test::Text;
using test::ToHex;

const std::string kLirOf14And0Bytes = Hex(R"(
    8FCE000B 01020304 11121314 4E720005
    21222324 01 60 000E | 14 bytes of layer data: two that fit under the written header's length, then
      0000
      81CB0001 2A2A2A2A | a BYE
      80D20002          | and the header of a packet of no known type
      0000              | padding
    31323334 02 61 0000)");

// The types of the subpackets, in order.
std::vector<ZunRtcpSubpacketType> TypesOf(const Parsed& packet) {
  std::vector<ZunRtcpSubpacketType> types;
  for (ZunSizeT i = 0; i < packet.count(); ++i) types.push_back(ZunRtcpSubpacketGetType(&packet[i]));
  return types;
}

// What one packet, alone in its datagram, becomes when it is written back; empty when it is refused.
std::string WrittenBack(const std::string& wire) {
  const Parsed packet(wire);
  return packet.ok ? packet.bytes() : std::string();
}

TEST(WireDifferencesTest, LayerDataOfAWrittenLirIsReadAsPackets) {
  const Parsed received(kLirOf14And0Bytes);
  ASSERT_TRUE(received.ok);
  ASSERT_EQ(TypesOf(received), (std::vector<ZunRtcpSubpacketType>{206}));
  const Parsed relayed(received.bytes());
  EXPECT_EQ(TypesOf(relayed), (std::vector<ZunRtcpSubpacketType>{206, 203, 210})) << ToHex(received.bytes());
}

TEST(WireDifferencesTest, WrittenLirIsTwoBytesAnEntryShorterThanItsLengthSays) {
  const Parsed received(kLirOf14And0Bytes);
  EXPECT_EQ(ZunRtcpPacketGetNetworkPacketLength(&received.packet), received.bytes().size() + 2 * 2);
}

TEST(WireDifferencesTest, RpsiKeepsPaddingOctetsAsBits) {
  const Parsed padded(Hex("A3CE0004 01020304 11121314 00600A0B 00000004"));
  ASSERT_TRUE(padded.ok);
  EXPECT_EQ(Str(ZunRtcpPsfbRpsiGetRpsi(&padded[0].psfb.rpsi)), Hex("0A0B 00000004"));
}

TEST(WireDifferencesTest, RpsiOfPaddingAloneIsWrittenInAFormThatIsRefused) {
  const Parsed padding_alone(Hex("83CE0004 01020304 11121314 30600000 00000000"));
  ASSERT_TRUE(padding_alone.ok);
  const std::string written = padding_alone.bytes();
  EXPECT_EQ(ToHex(written), ToHex(Hex("83CE0003 01020304 11121314 30600000")));
  EXPECT_FALSE(Parsed(written).ok);
}

TEST(WireDifferencesTest, ShowDropsWholeZeroWords) {
  const std::string show = Hex("8FCE0004 01020304 11121314 4E720003 07080100");
  EXPECT_EQ(ToHex(WrittenBack(show)), ToHex(show));
  EXPECT_EQ(ToHex(WrittenBack(Hex("8FCE0005 01020304 11121314 4E720003 07080100 00000000"))), ToHex(show));
}

TEST(WireDifferencesTest, ShowAndLirRefusePadding) {
  EXPECT_FALSE(Parsed(Hex("AFCE0005 01020304 11121314 4E720003 07080100 00000004")).ok);
  EXPECT_TRUE(Parsed(Hex("8FCE0005 01020304 11121314 4E720005 21222324 01600000")).ok);
  EXPECT_FALSE(Parsed(Hex("AFCE0006 01020304 11121314 4E720005 21222324 01600000 00000004")).ok);
}

TEST(WireDifferencesTest, EightOctetsOfPaddingAreTakenForAnEntry) {
  const struct {
    const char* kind;
    std::string wire;
  } rows[] = {{"FIR", "A4CE0004 01020304 11121314 21222324 07000000"},
              {"TSTR", "A5CE0004 01020304 11121314 21222324 07000001"},
              {"TSTA", "A6CE0004 01020304 11121314 21222324 07000001"},
              {"TMMBR", "A2CD0004 01020304 00000000 21222324 000003E8"}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.kind);
    for (int eights = 0; eights < 4; ++eights) {
      std::string padded = Hex(row.wire);
      padded[3] = static_cast<char>(padded[3] + 2 * eights);
      if (eights > 0)
        padded += std::string(8U * static_cast<unsigned>(eights) - 1, '\0') + static_cast<char>(8 * eights);
      const std::string written = WrittenBack(padded);
      EXPECT_EQ(written.size(), padded.size());
      EXPECT_TRUE(Parsed(written).ok) << "the padding became entries";
    }
    EXPECT_FALSE(Parsed(Hex(row.wire).replace(3, 1, "\5") + Hex("00000004")).ok) << "4 octets are no entry";
  }
}

TEST(WireDifferencesTest, AnnouncedLengthWrapsAbove262144Bytes) {
  for (const std::size_t more : {std::size_t{0}, std::size_t{4}}) {
    ZunRtcpSubpacket sp;
    const Text data(std::string(262144 - 12 + more, 'x'));
    ASSERT_NE(ZunRtcpPsfbUnknownConstructFull(&sp.psfb.unk, 31, 1, 2, data.get(), ZunAllocatorGetSystem()), nullptr);
    const std::string written = test::Written(sp);
    EXPECT_EQ(written.size(), 262144 + more);
    EXPECT_EQ(ToHex(written.substr(2, 2)), more == 0 ? "FFFF" : "0000");
    EXPECT_EQ(Parsed(written).ok, more == 0);
    ZunRtcpSubpacketDestruct(&sp);
  }
}

// The type in front of the length is even: a bit that spilled over would show in it.
TEST(WireDifferencesTest, ALengthThatWrapsDoesNotSpillIntoTheType) {
  ZunRtcpSubpacket sp;
  const Text data(std::string(262144, 'x'));
  ASSERT_NE(ZunRtcpUnknownConstructFull(&sp.unk, 210, 0, data.get(), ZunAllocatorGetSystem()), nullptr);
  EXPECT_EQ(ToHex(test::Written(sp).substr(0, 4)), "80D20000");
  ZunRtcpSubpacketDestruct(&sp);
}

// Transport-wide feedback about 100 packets that arrive 5 ms after each other, but `losses` of them not at all and
// `gaps` of them 80 ms later than the one before, a large delta that itself reads back.
class Feedback {
 public:
  Feedback(std::mt19937& random, double losses, double gaps) {
    std::uniform_real_distribution<double> draw(0, 1);
    ZunTime now = 0;
    for (ZunUint16 i = 0; i < 100; ++i) {
      const bool lost = draw(random) < losses;
      if (!lost) now += draw(random) < gaps ? 80'000'000 : 5'000'000;
      EXPECT_TRUE(sent_.add_packet(!lost, i, now));
    }
  }

  bool ReadsBack() const {
    const Parsed read(test::Written(*test::AsSubpacket(sent_.get())));
    return read.ok && SamePackets(read[0].rtpfb.transportCc.packetInfo);
  }

 private:
  bool SamePackets(const ZunVector_ZunRtcpRtpfbTransportCcPacketInfo& read) const {
    const auto sent = sent_.packet_info();
    return std::equal(sent.begin(), sent.end(), read.begin, read.end, [](const auto& a, const auto& b) {
      return a.received == b.received && a.haveDelta == b.haveDelta && a.delta == b.delta;
    });
  }

  zun::rtcp::TransportCc sent_{1, 2};
};

TEST(WireDifferencesTest, EverySeventhMessageHoldsTheChunkThatDoesNotReadBack) {
  std::mt19937 random(1);
  int misread = 0;
  for (int i = 0; i < 2000; ++i) misread += Feedback(random, 0.02, 0.02).ReadsBack() ? 0 : 1;
  EXPECT_NEAR(misread / 2000.0, 1.0 / 7, 0.02);
}

TEST(WireDifferencesTest, HalfOfAllLargeDeltasReadWrong) {
  int misread = 0;
  for (int delta = 256; delta < 0x8000; ++delta) {
    const std::string wire = Hex("8FCD0005 01020304 11121314 00000001 00000000 4001") + static_cast<char>(delta >> 8) +
                             static_cast<char>(delta & 0xFF);
    const Parsed read(wire);
    ASSERT_TRUE(read.ok);
    const bool is_wrong = (delta & 0x80) != 0;
    ASSERT_EQ(read[0].rtpfb.transportCc.packetInfo.begin->delta, is_wrong ? (delta & 0xFF) - 256 : delta);
    misread += is_wrong ? 1 : 0;
  }
  EXPECT_EQ(misread, (0x8000 - 256) / 2);
}

}  // namespace
