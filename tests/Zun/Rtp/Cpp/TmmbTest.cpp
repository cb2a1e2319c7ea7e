#include "Zun/Rtp/Cpp/Tmmb.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

#include "Zun/Rtp/Cpp/Packet.h"
#include "tests/support/Bytes.h"

namespace {

using namespace zun::rtcp;

constexpr const char* kReport = "80C90001 00000001";
constexpr const char* kTmmbr =
    "83CD0006 01020304 00000000"  // sender, media source
    "11121314 1602B028"           // 5 x 2^5 bit/s ...
    "21222324 000003FF";          // of 1 bit/s, overhead 511

std::string HexOf(std::span<const std::byte> octets) {
  return test::ToHex(std::string(reinterpret_cast<const char*>(octets.data()), octets.size()));
}

std::vector<TmmbEntry> EntriesOf(const TmmbMessage& message) { return {message.begin(), message.end()}; }

TEST(Tmmb, IsReadWhereAPacketRefusesIt) {
  const std::string bytes = test::Hex(std::string(kReport) + kTmmbr);
  const auto octets = octets_of(bytes);
  Packet packet;
  std::vector<TmmbEntry> entries;
  const DecodeOptions options{.dialect = Dialect::registered, .tolerant = true};
  EXPECT_TRUE(packet.decode(octets, options, [&](const DecodeRefusal& refusal) {
    EXPECT_EQ(refusal.reason, ZUN_RTCP_DECODE_REASON_NO_OBJECT);
    const TmmbMessage message(octets.subspan(refusal.offset, refusal.length));
    ASSERT_TRUE(message);
    EXPECT_EQ(message.type(), ZUN_RTCP_TMMB_TYPE_TMMBR);
    EXPECT_EQ(message.sender(), 0x01020304U);
    entries = EntriesOf(message);
  }));
  ASSERT_EQ(entries.size(), 2U);
  EXPECT_EQ(entries[0].ssrc, 0x11121314U);
  EXPECT_EQ(entries[0].exponent, 5);
  EXPECT_EQ(entries[0].mantissa, 0x10158U);
  EXPECT_EQ(entries[0].overhead, 0x28);
  EXPECT_EQ(bitrate(entries[0]), 0x10158 * 32.0);
  EXPECT_EQ(entries[1].mantissa, 1U);
  EXPECT_EQ(entries[1].overhead, 0x1FF);
}

TEST(Tmmb, OfATmmbnIsReadFromThePacket) {
  std::vector<std::byte> octets;
  const std::array<TmmbEntry, 1> entries{{{7, 1, 1000, 40}}};
  ASSERT_TRUE(append_tmmb(octets, ZUN_RTCP_TMMB_TYPE_TMMBN, 1, entries));
  Packet packet;
  ASSERT_TRUE(packet.decode(octets, {.dialect = Dialect::registered}));
  const TmmbMessage message(packet[0]);
  ASSERT_EQ(message.size(), 1U);
  EXPECT_EQ(message.type(), ZUN_RTCP_TMMB_TYPE_TMMBN);
  EXPECT_EQ(message[0].ssrc, 7U);
  EXPECT_EQ(bitrate(message[0]), 2000.0);
  auto at = message.begin();
  EXPECT_EQ((*at++).ssrc, 7U);
  EXPECT_EQ(at, message.end());
}

TEST(Tmmb, TellsWhyItIsNone) {
  const std::string report = test::Hex(kReport);
  const TmmbMessage other(octets_of(report));
  EXPECT_FALSE(other);
  EXPECT_TRUE(other.empty());
  EXPECT_EQ(other.begin(), other.end());
  EXPECT_NE(other.reason(), ZUN_RTCP_DECODE_REASON_NONE);
  Packet packet;
  ASSERT_TRUE(packet.decode(octets_of(report)));
  EXPECT_FALSE(TmmbMessage(packet[0]));
}

TEST(Tmmb, IsAppendedToADatagram) {
  std::vector<std::byte> octets(1, std::byte{0xAB});
  std::array<TmmbEntry, 2> entries{{{0x11121314, 0, 0, 0x28}, {0x21222324, 0, 1, 511}}};
  ASSERT_TRUE(bitrate(entries[0], 0x10158 * 32.0));
  EXPECT_FALSE(bitrate(entries[0], -1));
  ASSERT_TRUE(append_tmmb(octets, ZUN_RTCP_TMMB_TYPE_TMMBR, 0x01020304, entries));
  EXPECT_EQ(HexOf(octets), "AB" + test::ToHex(test::Hex(kTmmbr)));

  entries[1].overhead = 512;
  EXPECT_FALSE(append_tmmb(octets, ZUN_RTCP_TMMB_TYPE_TMMBR, 1, entries));
  EXPECT_FALSE(append_tmmb(octets, ZUN_RTCP_TMMB_TYPE_TMMBR, 1, {}));
  EXPECT_EQ(HexOf(octets), "AB" + test::ToHex(test::Hex(kTmmbr)));
}

}  // namespace
