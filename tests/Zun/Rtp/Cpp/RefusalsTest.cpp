// What the C++ face refuses: values beyond their limit, and whatever needs memory when none is given.
#include <gtest/gtest.h>

#include <array>
#include <compare>
#include <functional>
#include <initializer_list>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "Zun/Rtp/Cpp/Packet.h"
#include "tests/support/Samples.h"

namespace {

using namespace zun::rtcp;
using test::ForEveryRefusal;
using test::TestAllocator;

std::string Wire(const auto& object) {
  return test::Seen(test::kRowOf<ObjectOf<std::remove_cvref_t<decltype(object)>>>, *test::AsSubpacket(object.get()));
}

// change(object) is refused at each of its allocations in turn, and then leaves the object as it was.
template <class Class>
void ExpectAllOrNothing(auto change) {
  EXPECT_GT(ForEveryRefusal([&](TestAllocator& refusing) {
              Class object(refusing.get());
              const std::string before = Wire(object);
              const bool is_changed = change(object);
              EXPECT_EQ(is_changed, refusing.refused() == 0);
              EXPECT_EQ(Wire(object) != before, is_changed);
            }),
            0U);
}

TEST(Refusals, AnEntryIsAddedWholeOrNotAtAll) {
  ExpectAllOrNothing<Tstr>([](Tstr& p) { return p.add(1, 2, 31); });
  ExpectAllOrNothing<Tsta>([](Tsta& p) { return p.add(1, 2, 31); });
  ExpectAllOrNothing<Fir>([](Fir& p) { return p.add(1, 2); });
  ExpectAllOrNothing<Show>([](Show& p) { return p.add(ZUN_RTCPPSFBAFBSHOWPARAMETER_TYPE_Width, 640); });
  ExpectAllOrNothing<Lir>([](Lir& p) { return p.add(1, 2, 3, octets_of(std::string_view("layer"))); });
  ExpectAllOrNothing<Sdes>([](Sdes& p) { return p.add(1, ZUN_RTCPSDESITEM_TYPE_CNAME, "a name of some length"); });
}

TEST(Refusals, ElementsAreBuiltInTheirListOrNotAtAll) {
  ExpectAllOrNothing<Sdes>([](Sdes& p) { return p.chunks().emplace_back(7U).has_value(); });
  ExpectAllOrNothing<Ccfb>([](Ccfb& p) { return p.streams().emplace_back(7U).has_value(); });
}

TEST(Refusals, AnIndexBeyondFiveBitsIsNone) {
  Tstr tstr;
  Tsta tsta;
  EXPECT_FALSE(tstr.add(1, 2, 32));
  EXPECT_FALSE(tsta.add(1, 2, 32));
  EXPECT_TRUE(tstr.fci().empty());
  EXPECT_TRUE(tsta.fci().empty());
}

// The elements of lists own memory of their own. A copy takes all of it from its source's allocator, or is empty.
template <class Element>
void ExpectWholeCopies(auto fill, auto seen) {
  EXPECT_GT(test::ForEveryRefusalAfter([&](TestAllocator& refusing, const std::function<void()>& begin) {
              Element source(refusing.get());
              fill(source);
              begin();
              const Element copied(source);
              EXPECT_EQ(seen(copied), refusing.refused() == 0 ? seen(source) : seen(Element(refusing.get())));
            }),
            0U);
  Element source;
  fill(source);
  Element assigned;
  assigned = source;
  EXPECT_EQ(seen(assigned), seen(source));
}

TEST(Refusals, ACopyOfAnElementIsWholeOrEmpty) {
  ExpectWholeCopies<SdesChunk>(
      [](SdesChunk& chunk) {
        SdesItem item(chunk.allocator());
        item.type(ZUN_RTCPSDESITEM_TYPE_NAME);
        ASSERT_TRUE(item.text("a name of some length"));
        ASSERT_TRUE(chunk.items().push_back(std::move(item)));
      },
      [](const SdesChunk& chunk) { return chunk.items().empty() ? "" : std::string(chunk.items()[0].text()); });
  ExpectWholeCopies<LirEntry>(
      [](LirEntry& entry) { ASSERT_TRUE(entry.layer_data(octets_of(std::string_view("a layer of some length")))); },
      [](const LirEntry& entry) { return entry.layer_data().size(); });
  ExpectWholeCopies<CcfbStream>([](CcfbStream& stream) { ASSERT_TRUE(stream.add(65535, true, 1, 2)); },
                                [](const CcfbStream& stream) { return stream.packet_metrics().size(); });
}

TEST(Refusals, ACopyIsPushedWholeOrNotAtAll) {
  SdesChunk chunk(7);
  SdesItem item;
  item.type(ZUN_RTCPSDESITEM_TYPE_NAME);
  ASSERT_TRUE(item.text("a name of some length"));
  ASSERT_TRUE(chunk.items().push_back(item));
  ASSERT_TRUE(chunk.items().push_back(item));
  ExpectAllOrNothing<Sdes>([&](Sdes& p) { return p.chunks().push_back(View<SdesChunk>(chunk)); });
}

TEST(Refusals, ASubpacketWithoutMemoryTakesThatOfTheSystem) {
  Packet packet;
  ASSERT_TRUE(packet.decode(octets_of(test::Golden("Tmmbn") + test::Golden("NackThreeMaps"))));
  Subpacket subpacket(packet[0]);
  EXPECT_EQ(subpacket.allocator(), nullptr);
  Subpacket copied(packet[1], nullptr);
  ASSERT_TRUE(holds<Nack>(copied));
  EXPECT_EQ(copied.allocator(), ZunAllocatorGetSystem());
}

TEST(Refusals, ACopyOfASubpacketIsWholeOrEmpty) {
  Packet packet;
  ASSERT_TRUE(packet.decode(octets_of(test::Golden("NackThreeMaps"))));
  EXPECT_GT(ForEveryRefusal([&](TestAllocator& refusing) {
              const Subpacket copied(packet[0], refusing.get());
              EXPECT_EQ(holds<Nack>(copied), refusing.refused() == 0);
            }),
            0U);
}

TEST(Refusals, ADatagramWithoutAHeaderHasNoType) {
  Packet packet;
  const auto decoded = packet.decode(octets_of(std::string_view("\x80\xC8", 2)));
  ASSERT_FALSE(decoded);
  EXPECT_EQ(decoded.error().text().find("(type"), std::string::npos) << decoded.error().text();
}

TEST(Iterators, OfListsOfObjectsGoBothWays) {
  Sdes sdes;
  for (const Ssrc ssrc : {1U, 2U, 3U, 4U}) ASSERT_TRUE(sdes.chunks().emplace_back(ssrc));
  const auto chunks = sdes.chunks();
  auto at = chunks.end();
  EXPECT_EQ((*--at).ssrc(), 4U);
  EXPECT_EQ((*at--).ssrc(), 4U);
  EXPECT_EQ(at->ssrc(), 3U);
  EXPECT_EQ((*(at -= 2)).ssrc(), 1U);
  EXPECT_EQ((*at++).ssrc(), 1U);
  EXPECT_EQ((*++at).ssrc(), 3U);
  EXPECT_EQ((*(at += 1)).ssrc(), 4U);
  EXPECT_EQ(at[-3].ssrc(), 1U);
  EXPECT_EQ((*(at - 1)).ssrc(), 3U);
  EXPECT_EQ((*(1 + chunks.begin())).ssrc(), 2U);
  EXPECT_EQ(at - chunks.begin(), 3);
  EXPECT_LT(chunks.begin(), at);
  EXPECT_GT(at, chunks.begin());
  EXPECT_NE(at, chunks.end());
  EXPECT_EQ(at <=> at, std::strong_ordering::equal);
  EXPECT_EQ(at, chunks.end() - 1);
}

TEST(Iterators, OfLostNumbersKeepTheirPlaceWhenACopyGoesOn) {
  Nack nack;
  for (const std::uint16_t seq : std::initializer_list<std::uint16_t>{10, 12, 26, 1000}) ASSERT_TRUE(nack.add(seq));
  auto at = nack.lost().begin();
  const auto before = at++;
  EXPECT_EQ(*before, 10U);
  EXPECT_EQ(*at, 12U);
  EXPECT_NE(at, before);
  EXPECT_EQ(*++at, 26U);
  EXPECT_EQ(*++at, 1000U);
  EXPECT_EQ(++at, nack.lost().end());
}

TEST(Iterators, OfDatagramsGoOnAfterTheFact) {
  Packet packet;
  ASSERT_TRUE(packet.emplace<Pli>(1U, 2U));
  ASSERT_TRUE(packet.emplace<Pli>(3U, 4U));
  Datagrams datagrams = packet.datagrams(12);
  auto at = datagrams.begin();
  EXPECT_EQ((*at).size(), 12U);
  at++;
  EXPECT_EQ(static_cast<int>((*at)[7]), 3);
  at++;
  EXPECT_EQ(at, datagrams.end());
}

TEST(Arena, IsEmptyAgainAfterAReset) {
  alignas(16) std::array<std::byte, 256> block;
  Arena arena(block);
  auto* const nack = new (std::nothrow) Nack(arena);  // it is never destructed: the block goes first
  ASSERT_TRUE(nack->add(1));
  EXPECT_GT(arena.used(), 0U);
  arena.reset();
  EXPECT_EQ(arena.used(), 0U);
  ::operator delete(nack);
}

TEST(Arrivals, APacketThatArrivedAtAnUntoldTimeHasNone) {
  TransportCc feedback;
  ASSERT_TRUE(feedback.packet_info().push_back(TransportCcPacketInfo{1, 1, 4}));
  ASSERT_TRUE(feedback.packet_info().push_back(TransportCcPacketInfo{1, 0, 4}));
  ASSERT_TRUE(feedback.packet_info().push_back(TransportCcPacketInfo{0, 1, 4}));
  std::vector<std::pair<bool, bool>> told;
  feedback.for_each_arrival(
      [&](const auto& arrival) { told.emplace_back(arrival.received, arrival.time.has_value()); });
  EXPECT_EQ(told, (std::vector<std::pair<bool, bool>>{{true, true}, {true, false}, {false, false}}));
}

}  // namespace
