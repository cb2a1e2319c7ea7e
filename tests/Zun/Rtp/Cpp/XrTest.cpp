#include "Zun/Rtp/Cpp/Xr.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <utility>
#include <vector>

#include "Zun/Rtp/Cpp/Packet.h"
#include "tests/support/Bytes.h"
#include "tests/support/TestAllocator.h"

namespace {

using namespace zun::rtcp;

constexpr Ssrc kReporter = 0x01020304;
constexpr Ssrc kSource = 0x11121314;

// One block of each kind that a report is built of.
bool AddAll(XrBuilder* builder) {
  const XrRange range{kSource, 0, 65535, 2};
  const std::array<ZunBool, 3> told{1, 0, 1};
  const std::array<std::uint32_t, 3> times{7, 8, 9};
  const std::array<XrDlrr, 2> dlrrs{{{1, 2, 3}, {4, 5, 6}}};
  XrStatistics statistics{};
  statistics.range = range;
  statistics.hasLoss = 1;
  statistics.lostPackets = 5;
  XrVoip voip{};
  voip.source = kSource;
  voip.roundTripDelay = 120;
  return builder->add_rle(ZUN_RTCPXR_TYPE_LOSS_RLE, range, told) &&
         builder->add_rle(ZUN_RTCPXR_TYPE_DUPLICATE_RLE, range, told) && builder->add_receipt_times(range, times) &&
         builder->add(XrRrtr{0x0102030405060708}) && builder->add(dlrrs) && builder->add(statistics) &&
         builder->add(voip) && builder->add_block(99, 3, octets_of("abcd"));
}

// A packet with that report, as it comes after it was sent.
Packet Received() {
  XrBuilder builder(kReporter);
  EXPECT_TRUE(AddAll(&builder));
  Packet sent;
  auto report = builder.subpacket();
  EXPECT_TRUE(report && sent.append(std::move(*report)));
  const auto octets = sent.encode(Dialect::registered);
  EXPECT_TRUE(octets);
  Packet received;
  EXPECT_TRUE(received.decode(*octets, {.dialect = Dialect::registered}));
  return received;
}

using Packets = std::vector<std::pair<int, std::uint32_t>>;
Packets PacketsOf(const XrBlock& block) {
  Packets packets;
  block.for_each_packet([&](std::uint16_t seq, std::uint32_t value) { packets.emplace_back(seq, value); });
  return packets;
}

TEST(XrReport, IsARangeOfItsBlocks) {
  const Packet packet = Received();
  XrReport report(packet[0]);
  ASSERT_TRUE(report);
  EXPECT_EQ(report.sender(), kReporter);
  for (int walk = 0; walk < 2; ++walk) {
    std::vector<int> types;
    for (const XrBlock block : report) types.push_back(block.type());
    EXPECT_EQ(types, (std::vector<int>{1, 2, 3, 4, 5, 6, 7, 99}));
    EXPECT_EQ(report.reason(), ZUN_RTCP_DECODE_REASON_NONE);
  }
  auto at = report.begin();
  at++;
  EXPECT_EQ((*at).type(), 2);
}

TEST(XrReport, EachBlockHasTheFieldsOfItsType) {
  const Packet packet = Received();
  XrReport report(packet[0]);
  std::vector<XrBlock> blocks;
  for (const XrBlock block : report) blocks.push_back(block);
  ASSERT_EQ(blocks.size(), 8U);

  ASSERT_TRUE(blocks[0].range());
  EXPECT_EQ(blocks[0].range()->source, kSource);
  EXPECT_EQ(packet_count(*blocks[0].range()), 3U);
  EXPECT_EQ(PacketsOf(blocks[0]), (Packets{{65535, 1}, {0, 0}, {1, 1}}));
  EXPECT_EQ(PacketsOf(blocks[1]), (Packets{{65535, 1}, {0, 0}, {1, 1}}));
  EXPECT_EQ(PacketsOf(blocks[2]), (Packets{{65535, 7}, {0, 8}, {1, 9}}));
  ASSERT_TRUE(blocks[3].rrtr());
  EXPECT_EQ(blocks[3].rrtr()->ntpTimestamp, 0x0102030405060708U);
  std::vector<Ssrc> receivers;
  blocks[4].for_each_dlrr([&](const XrDlrr& dlrr) { receivers.push_back(dlrr.ssrc); });
  EXPECT_EQ(receivers, (std::vector<Ssrc>{1, 4}));
  ASSERT_TRUE(blocks[5].statistics());
  EXPECT_EQ(blocks[5].statistics()->lostPackets, 5U);
  ASSERT_TRUE(blocks[6].voip());
  EXPECT_EQ(blocks[6].voip()->roundTripDelay, 120);

  EXPECT_TRUE(blocks[6].is_known());
  EXPECT_FALSE(blocks[7].is_known());
  EXPECT_EQ(blocks[7].type_specific(), 3);
  EXPECT_EQ(blocks[7].octets().size(), 4U);
  EXPECT_EQ(blocks[7].octets()[0], std::byte{'a'});
  EXPECT_FALSE(blocks[7].rrtr() || blocks[7].statistics() || blocks[7].voip() || blocks[7].range());
  EXPECT_EQ(PacketsOf(blocks[7]), Packets{});
  EXPECT_EQ(blocks[7].get()->size, 4U);
}

Packet DecodedHex(const std::string& hex) {
  Packet packet;
  EXPECT_TRUE(packet.decode(octets_of(test::Hex(hex)), {.dialect = Dialect::registered}));
  return packet;
}

TEST(XrReport, TellsWhyThereIsNoneOrItEndsEarly) {
  const Packet other = DecodedHex("80C90001 00000001");
  XrReport none(other[0]);
  EXPECT_FALSE(none);
  EXPECT_EQ(none.begin(), none.end());
  EXPECT_EQ(none.reason(), ZUN_RTCP_DECODE_REASON_VALUE);

  const Packet cut = DecodedHex("80CF0004 00000001 63000001 61626364 63000001");
  XrReport report(cut[0]);
  ASSERT_TRUE(report);
  std::size_t blocks = 0;
  for (const XrBlock block : report) blocks += block.octets().size() / 4;
  EXPECT_EQ(blocks, 1U);
  EXPECT_NE(report.reason(), ZUN_RTCP_DECODE_REASON_NONE);
  EXPECT_EQ(report.position(), 8U);
}

TEST(XrBuilder, RefusesWhatNoBlockHas) {
  XrBuilder builder(kReporter);
  const std::array<ZunBool, 2> too_few{1, 0};
  EXPECT_FALSE(builder.add_rle(ZUN_RTCPXR_TYPE_LOSS_RLE, XrRange{kSource, 0, 10, 13}, too_few));
  EXPECT_FALSE(builder.add_block(99, 0, octets_of("abc")));
  const auto report = builder.subpacket();
  ASSERT_TRUE(report);
  EXPECT_EQ(test::ToHex(test::Written(*report->get())), "80CF000101020304");
}

TEST(XrBuilder, SaysWhereMemoryIsRefused) {
  const std::size_t allocations = test::ForEveryRefusal([](test::TestAllocator& refusing) {
    XrBuilder builder(kReporter, refusing);
    const bool is_added = AddAll(&builder);
    EXPECT_TRUE(is_added || refusing.refused() > 0);
    const auto report = builder.subpacket(refusing);
    EXPECT_TRUE(report || refusing.refused() > 0);
    refusing.RefuseNothing();
    if (report && is_added) {
      EXPECT_EQ(test::Written(*report->get()).substr(4), test::Str(&builder.get()->data));
    }
  });
  EXPECT_GT(allocations, 2U);
}

// Whether it is the sender that finds no memory or the block after it.
TEST(XrBuilder, NothingIsAddedWithoutMemory) {
  for (const bool is_begun : {false, true}) {
    const auto expect_refused = [is_begun](auto add) {
      test::TestAllocator refusing;
      refusing.RefuseFrom(is_begun ? 1 : 0);
      XrBuilder builder(kReporter, refusing);
      EXPECT_FALSE(add(builder));
      EXPECT_EQ(builder.subpacket().has_value(), is_begun);
    };
    const XrRange range{kSource, 0, 65535, 2};
    const std::array<ZunBool, 3> told{1, 0, 1};
    const std::array<std::uint32_t, 3> times{7, 8, 9};
    const std::array<XrDlrr, 2> dlrrs{{{1, 2, 3}, {4, 5, 6}}};
    XrStatistics statistics{};
    statistics.range = {kSource, 0, 10, 0};
    expect_refused([&](XrBuilder& b) { return b.add_rle(ZUN_RTCPXR_TYPE_LOSS_RLE, range, told); });
    expect_refused([&](XrBuilder& b) { return b.add_receipt_times(range, times); });
    expect_refused([&](XrBuilder& b) { return b.add(XrRrtr{1}) && b.add(XrRrtr{1}); });  // one fits
    expect_refused([&](XrBuilder& b) { return b.add(dlrrs); });
    expect_refused([&](XrBuilder& b) { return b.add(statistics); });
    expect_refused([&](XrBuilder& b) { return b.add(XrVoip{}); });
    expect_refused([&](XrBuilder& b) { return b.add_block(99, 3, octets_of(std::string(64, 'x'))); });
  }
}

}  // namespace
