#include "Zun/Rtp/Cpp/Packet.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

#include "tests/support/Samples.h"

namespace {

using namespace zun::rtcp;
using test::Golden;

std::string Text(std::span<const std::byte> octets) {
  return {reinterpret_cast<const char*>(octets.data()), octets.size()};
}

Packet Decoded(const std::string& wire) {
  Packet packet;
  EXPECT_TRUE(packet.decode(octets_of(wire)));
  return packet;
}

TEST(Packet, IsARangeOfItsSubpackets) {
  const Packet packet = Decoded(Golden("RrOneBlock") + Golden("SdesOneChunk") + Golden("NackOneMap"));
  EXPECT_EQ(packet.size(), 3U);
  EXPECT_FALSE(packet.empty());
  std::vector<ZunRtcpSubpacketType> types;
  for (const View<Subpacket> subpacket : packet) types.push_back(subpacket.type());
  EXPECT_EQ(types, (std::vector<ZunRtcpSubpacketType>{201, 202, 205}));
  EXPECT_EQ(packet[2].type(), 205);
  ASSERT_TRUE(packet.find<Nack>());
  EXPECT_EQ(packet.find<Nack>()->lost_count(), 3U);
  EXPECT_FALSE(packet.find<Pli>());
}

TEST(Packet, VisitTakesOneFunctionForEachKindOrOneForSeveral) {
  const Packet packet = Decoded(Golden("RrOneBlock") + Golden("SdesOneChunk") + Golden("NackOneMap"));
  std::string seen;
  for (const View<Subpacket> subpacket : packet) {
    seen += visit(subpacket, Overloaded{[](View<Rr>) { return "rr "; },
                                        [](View<Nack> nack) { return nack.lost_count() == 3 ? "nack " : ""; },
                                        [](const auto&) { return "other "; }});
  }
  EXPECT_EQ(seen, "rr other nack ");
}

TEST(Packet, IsChangedThroughRefs) {
  Packet packet = Decoded(Golden("NackOneMap"));
  for (Ref<Subpacket> subpacket : packet.edit()) {
    visit(subpacket, Overloaded{[](Ref<Nack> nack) { nack.sender(7); }, [](const auto&) { FAIL(); }});
    ASSERT_TRUE(get_if<Nack>(subpacket)->add(9));
  }
  EXPECT_EQ(packet.find<Nack>()->sender(), 7U);
  EXPECT_EQ(packet.find<Nack>()->lost_count(), 4U);
  ASSERT_TRUE(packet.edit()[0].assign(Decoded(Golden("Pli"))[0]));
  EXPECT_TRUE(packet.find<Pli>());
  packet.erase(0);
  EXPECT_TRUE(packet.empty());
}

TEST(Packet, BuildsInPlaceWithItsAllocator) {
  test::TestAllocator mine;
  Packet packet(mine);
  auto rr = packet.emplace<Rr>(1U);
  ASSERT_TRUE(rr);
  ASSERT_TRUE(rr->add({}));
  ASSERT_TRUE(packet.emplace<Nack>(1U, 2U)->add(3));
  ASSERT_TRUE(packet.emplace<Sdes>()->add(1, ZUN_RTCPSDESITEM_TYPE_CNAME, "a"));
  ASSERT_TRUE(packet.emplace<Tmmbn>(1U, 2U));
  EXPECT_EQ(packet.size(), 4U);
  EXPECT_EQ(packet.find<Rr>()->report_blocks().size(), 1U);
  const Packet copy(packet, mine);
  EXPECT_EQ(Text(*copy.encode()), Text(*packet.encode()));
  packet.clear();
  EXPECT_TRUE(packet.empty());
}

TEST(Packet, GrowingKeepsWhatIsThereAndARefusedOneChangesNothing) {
  test::ForEveryRefusal([](test::TestAllocator& refusing) {
    Packet packet(refusing.get());
    std::size_t count = 0;
    for (std::uint16_t seq = 0; seq < 5; ++seq) {
      Nack nack(refusing.get());
      if (nack.add(seq) && packet.append(std::move(nack))) ++count;
    }
    ASSERT_EQ(packet.size(), count);
    for (const View<Subpacket> subpacket : packet) EXPECT_EQ(get_if<Nack>(subpacket)->lost_count(), 1U);
  });
}

// ---- octets in

TEST(Packet, DecodingTheSameShapeAgainAllocatesNothing) {
  test::TestAllocator mine;
  Packet packet(mine);
  const std::string wire = Golden("RrOneBlock") + Golden("SdesOneChunk") + Golden("NackOneMap");
  ASSERT_TRUE(packet.decode(octets_of(wire)));
  const std::size_t calls = mine.calls();
  const auto again = packet.decode(octets_of(wire));
  ASSERT_TRUE(again);
  EXPECT_EQ(again->read, 3U);
  EXPECT_EQ(again->refused, 0U);
  EXPECT_EQ(mine.calls(), calls);
}

TEST(Packet, ARefusalTellsWhereAndWhy) {
  Packet packet;
  const std::string wire = Golden("NackOneMap") + Golden("Pli").substr(0, 8);
  const auto decoded = packet.decode(octets_of(wire));
  ASSERT_FALSE(decoded);
  EXPECT_EQ(decoded.error().reason(), ZUN_RTCP_DECODE_REASON_LENGTH);
  EXPECT_EQ(decoded.error().refusal().offset, 16U);
  EXPECT_EQ(decoded.error().report().read, 1U);
  EXPECT_EQ(decoded.error().text(), "subpacket 1 (type 206, count 1) at octet 16: " +
                                        std::string(ZunRtcpDecodeReasonGetText(ZUN_RTCP_DECODE_REASON_LENGTH)) +
                                        " (octet " + std::to_string(decoded.error().refusal().stoppedAt) + ")");
  EXPECT_EQ(packet.size(), 1U);
  EXPECT_EQ(packet.decode({}).error().reason(), ZUN_RTCP_DECODE_REASON_EMPTY);
}

TEST(Packet, TheOptionsAreThoseOfTheLibrary) {
  ZunRtcpDecodeOptions in_c;
  ZunRtcpDecodeOptionsConstructDefault(&in_c);
  const DecodeOptions options;
  EXPECT_EQ(options.tolerant, in_c.tolerant != 0);
  EXPECT_EQ(options.max_subpackets, in_c.maxSubpackets);
  EXPECT_EQ(options.max_statuses, in_c.maxStatuses);
  EXPECT_EQ(options.max_entries, in_c.maxEntries);

  const std::string wire = Golden("NackThreeMaps") + Golden("Pli");
  EXPECT_EQ(Packet().decode(octets_of(wire), {.max_subpackets = 1}).error().reason(), ZUN_RTCP_DECODE_REASON_LIMIT);
  EXPECT_EQ(Packet().decode(octets_of(wire), {.max_entries = 2}).error().reason(), ZUN_RTCP_DECODE_REASON_LIMIT);
  EXPECT_EQ(Packet().decode(octets_of(Golden("TransportCcMixed")), {.max_statuses = 28}).error().reason(),
            ZUN_RTCP_DECODE_REASON_LIMIT);
}

TEST(Packet, TolerantDecodingHandsOverEachRefusal) {
  std::string empty_nack = Golden("NackOneMap").substr(0, 12);
  empty_nack[3] = 2;
  std::vector<std::size_t> refused;
  Packet packet;
  const auto decoded = packet.decode(octets_of(empty_nack + Golden("Pli") + empty_nack), {.tolerant = true},
                                     [&](const DecodeRefusal& refusal) { refused.push_back(refusal.index); });
  ASSERT_TRUE(decoded);
  EXPECT_EQ(decoded->read, 1U);
  EXPECT_EQ(decoded->refused, 2U);
  EXPECT_EQ(refused, (std::vector<std::size_t>{0, 2}));
}

TEST(Packet, SpeaksTheDialectThatIsAskedFor) {
  Packet packet;
  ASSERT_TRUE(packet.emplace<Ccfb>(1U));
  const auto house = packet.encode();
  const auto registered = packet.encode(Dialect::registered);
  ASSERT_TRUE(house && registered);
  EXPECT_EQ(std::to_integer<int>((*house)[0]), 0x8E);
  EXPECT_EQ(std::to_integer<int>((*registered)[0]), 0x8B);
  Packet other;
  ASSERT_TRUE(other.decode(*registered, {.dialect = Dialect::registered}));
  EXPECT_TRUE(other.find<Ccfb>());
  ASSERT_TRUE(other.decode(*registered));
  EXPECT_TRUE(other.find<UnknownRtpfb>());
}

// ---- octets out

TEST(Packet, IsWrittenIntoAnyContainer) {
  const std::string wire = Golden("RrOneBlock") + Golden("SdesOneChunk");
  const Packet packet = Decoded(wire);
  EXPECT_EQ(packet.encoded_length(), wire.size());
  EXPECT_EQ(Text(*packet.encode()), wire);
  std::vector<std::byte> vector(3);
  EXPECT_EQ(*packet.encode(vector), wire.size());
  EXPECT_EQ(Text(vector), wire);
  std::array<std::byte, 100> array{};
  const auto written = packet.encode(std::span(array));
  ASSERT_TRUE(written);
  EXPECT_EQ(Text(std::span(array).first(*written)), wire);
  test::Text string("what was there");
  EXPECT_EQ(*packet.encode(*string.get()), wire.size());
  EXPECT_EQ(string.str(), wire);
}

TEST(Packet, WhatDoesNotFitTellsWhatIsNeeded) {
  const Packet packet = Decoded(Golden("Pli"));
  std::array<std::byte, 11> small{};
  const auto written = packet.encode(std::span(small));
  ASSERT_FALSE(written);
  EXPECT_EQ(written.error().needed(), 12U);
  EXPECT_EQ(written.error().reason(), ZUN_RTCP_ENCODE_REASON_NONE);
  EXPECT_EQ(written.error().text(), "12 octets are needed");
  test::TestAllocator refusing;
  refusing.RefuseFrom(0);
  test::Text string(refusing);
  EXPECT_EQ(packet.encode(*string.get()).error().needed(), 12U);
}

TEST(Packet, WhatCannotBeEncodedTellsWhy) {
  Packet packet;
  EXPECT_EQ(packet.encode().error().reason(), ZUN_RTCP_ENCODE_REASON_EMPTY);
  ASSERT_TRUE(packet.emplace<Pli>(1U, 2U));
  ASSERT_TRUE(packet.emplace<Nack>(1U, 2U));
  const auto vector = packet.encode();
  ASSERT_FALSE(vector);
  EXPECT_EQ(vector.error().index(), 1U);
  EXPECT_EQ(vector.error().reason(), ZUN_RTCP_ENCODE_REASON_NO_ENTRIES);
  EXPECT_EQ(vector.error().text(),
            "subpacket 1: " + std::string(ZunRtcpEncodeReasonGetText(ZUN_RTCP_ENCODE_REASON_NO_ENTRIES)));
  std::array<std::byte, 100> array{};
  EXPECT_EQ(packet.encode(std::span(array)).error().reason(), ZUN_RTCP_ENCODE_REASON_NO_ENTRIES);
  test::Text string;
  EXPECT_EQ(packet.encode(*string.get()).error().index(), 1U);
  EXPECT_EQ(packet.encoded_length(), 0U);
}

TEST(Packet, DatagramsCarryAllOfIt) {
  Packet packet;
  for (Ssrc source = 0; source < 10; ++source) ASSERT_TRUE(packet.emplace<Pli>(1U, source));
  Packet prefix;
  ASSERT_TRUE(prefix.emplace<Rr>(1U));
  std::vector<Ssrc> sources;
  std::size_t count = 0;
  Datagrams datagrams = packet.datagrams(8 + 3 * 12 + 5, prefix);
  for (const auto datagram : datagrams) {
    Packet part;
    ASSERT_TRUE(part.decode(datagram));
    EXPECT_TRUE(get_if<Rr>(part[0]));
    for (const View<Subpacket> subpacket : part) {
      if (const auto pli = get_if<Pli>(subpacket)) sources.push_back(pli->source());
    }
    ++count;
  }
  EXPECT_FALSE(datagrams.error());
  EXPECT_EQ(count, 4U);
  EXPECT_EQ(sources, (std::vector<Ssrc>{0, 1, 2, 3, 4, 5, 6, 7, 8, 9}));
}

TEST(Packet, DatagramsInABufferOfTheCallers) {
  const Packet packet = Decoded(Golden("Pli") + Golden("Pli") + Golden("Pli"));
  std::array<std::byte, 24> buffer{};
  std::string all;
  for (const auto datagram : packet.datagrams(std::span(buffer))) {
    EXPECT_EQ(datagram.data(), buffer.data());
    all += Text(datagram);
  }
  EXPECT_EQ(all, Golden("Pli") + Golden("Pli") + Golden("Pli"));
}

TEST(Packet, DatagramsEndWhereOneDoesNotFitOrCannotBeEncoded) {
  Packet packet = Decoded(Golden("Pli") + Golden("SrTwoBlocks"));
  const auto count = [](Datagrams& datagrams) {
    std::size_t n = 0;
    for (const auto datagram : datagrams) n += datagram.empty() ? 0 : 1;
    return n;
  };
  Datagrams too_small = packet.datagrams(40);
  EXPECT_EQ(count(too_small), 1U);
  ASSERT_TRUE(too_small.error());
  EXPECT_EQ(too_small.error()->needed(), Golden("SrTwoBlocks").size());
  EXPECT_EQ(too_small.error()->index(), 1U);

  ASSERT_TRUE(packet.emplace<Nack>(1U, 2U));
  Datagrams unencodable = packet.datagrams(1200);
  EXPECT_EQ(count(unencodable), 1U);
  ASSERT_TRUE(unencodable.error());
  EXPECT_EQ(unencodable.error()->index(), 2U);
  EXPECT_EQ(unencodable.error()->reason(), ZUN_RTCP_ENCODE_REASON_NO_ENTRIES);

  Packet prefix;
  ASSERT_TRUE(prefix.emplace<Fir>(1U, 2U));
  Datagrams with_prefix = packet.datagrams(1200, prefix);
  EXPECT_EQ(count(with_prefix), 0U);
  ASSERT_TRUE(with_prefix.error());
  EXPECT_EQ(with_prefix.error()->index(), 0U);
  EXPECT_EQ(with_prefix.error()->reason(), ZUN_RTCP_ENCODE_REASON_NO_ENTRIES);
  EXPECT_EQ(count(with_prefix), 0U) << "it stays ended";

  Packet sound;
  ASSERT_TRUE(sound.emplace<Pli>(1U, 2U));
  Packet empty;
  for (const Packet* const fine : {&sound, &empty}) {
    Datagrams after_sound = packet.datagrams(1200, *fine);
    EXPECT_EQ(count(after_sound), 1U);
    ASSERT_TRUE(after_sound.error());
    EXPECT_EQ(after_sound.error()->index(), 2U) << "the fault is not that of the prefix";
  }

  Datagrams none = Packet().datagrams(1200);
  EXPECT_FALSE(none.error());
}

TEST(Packet, TellsWhatAStrictReceiverWouldObjectTo) {
  Packet packet;
  EXPECT_NE(packet.check_composition() & ZUN_RTCP_COMPOSITION_EMPTY, 0U);
  ASSERT_TRUE(packet.emplace<Rr>(1U));
  EXPECT_EQ(packet.check_composition(), ZunRtcpComposition{ZUN_RTCP_COMPOSITION_NO_CNAME});
  ASSERT_TRUE(packet.emplace<Sdes>()->add(1, ZUN_RTCPSDESITEM_TYPE_CNAME, "a"));
  EXPECT_EQ(packet.check_composition(), 0U);
}

// ---- results

TEST(Result, AValueOrAnError) {
  using R = Result<std::string, EncodeError>;
  const R good(std::string("value"));
  EXPECT_TRUE(good);
  EXPECT_EQ(*good, "value");
  EXPECT_EQ(good->size(), 5U);
  const R bad(EncodeError::no_room(7));
  EXPECT_FALSE(bad);
  EXPECT_EQ(bad.value_or("other"), "other");
  EXPECT_EQ(bad.error().needed(), 7U);
  EXPECT_EQ(bad.error().index(), 0U);
}

}  // namespace
