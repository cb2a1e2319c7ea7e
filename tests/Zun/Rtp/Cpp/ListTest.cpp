#include "Zun/Rtp/Cpp/List.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <numeric>
#include <ranges>
#include <vector>

#include "Zun/Rtp/Cpp/Packet.h"
#include "tests/support/TestAllocator.h"

namespace {

using namespace zun::rtcp;

TEST(PlainList, IsAContiguousRange) {
  using Sources = decltype(std::declval<Bye&>().sources());
  using ConstSources = decltype(std::declval<const Bye&>().sources());
  static_assert(std::ranges::contiguous_range<Sources> && std::ranges::sized_range<Sources>);
  static_assert(std::ranges::borrowed_range<Sources>);
  static_assert(std::is_same_v<std::ranges::range_reference_t<Sources>, Ssrc&>);
  static_assert(std::is_same_v<std::ranges::range_reference_t<ConstSources>, const Ssrc&>);
  static_assert(std::is_convertible_v<ConstSources, std::span<const Ssrc>>);
  static_assert(std::is_convertible_v<Sources, std::span<Ssrc>>);
}

TEST(PlainList, GrowsShrinksAndServesAlgorithms) {
  Bye bye;
  auto sources = bye.sources();
  EXPECT_TRUE(sources.empty());
  EXPECT_EQ(sources.begin(), sources.end());
  for (const Ssrc ssrc : {3U, 1U, 2U}) ASSERT_TRUE(sources.push_back(ssrc));
  ASSERT_TRUE(sources.insert(0, 9));
  EXPECT_EQ(sources.size(), 4U);
  EXPECT_GE(sources.capacity(), 4U);
  std::ranges::sort(sources);
  EXPECT_EQ(std::vector<Ssrc>(sources.begin(), sources.end()), (std::vector<Ssrc>{1, 2, 3, 9}));
  sources.erase(1);
  sources.pop_back();
  EXPECT_EQ(sources.front(), 1U);
  EXPECT_EQ(sources.back(), 3U);
  sources[0] = 7;
  EXPECT_EQ(std::accumulate(sources.begin(), sources.end(), 0U), 10U);
  EXPECT_NE(std::ranges::find(bye.sources(), 7U), bye.sources().end());
  const std::vector<Ssrc> others{4, 5};
  ASSERT_TRUE(sources.assign(others));
  EXPECT_TRUE(std::ranges::equal(sources, others));
  std::vector<Ssrc> copied;
  std::ranges::copy(sources, std::back_inserter(copied));
  EXPECT_EQ(copied, others);
  sources.clear();
  EXPECT_EQ(bye.sources().size(), 0U);
  ASSERT_TRUE(sources.reserve(100));
  EXPECT_EQ(sources.capacity(), 100U);
}

TEST(PlainList, RefusedGrowthIsToldAndChangesNothing) {
  test::ForEveryRefusal([](test::TestAllocator& refusing) {
    Bye bye(refusing.get());
    std::size_t expected = 0;
    for (Ssrc ssrc = 0; ssrc < 9; ++ssrc) expected += bye.add(ssrc) ? 1 : 0;
    EXPECT_EQ(bye.sources().size(), expected);
  });
}

TEST(ObjectList, GrowsByDoublingAsInC) {
  Sdes sdes;
  std::vector<std::size_t> capacities;
  for (int i = 0; i < 5; ++i) {
    ASSERT_TRUE(sdes.chunks().push_back(SdesChunk(7)));
    capacities.push_back(sdes.chunks().capacity());
  }
  EXPECT_EQ(capacities, (std::vector<std::size_t>{2, 2, 4, 4, 8}));
}

TEST(ObjectList, IsARandomAccessRangeOfViewsOrRefs) {
  using Chunks = decltype(std::declval<Sdes&>().chunks());
  using ConstChunks = decltype(std::declval<const Sdes&>().chunks());
  static_assert(std::ranges::random_access_range<Chunks> && std::ranges::sized_range<Chunks>);
  static_assert(std::ranges::borrowed_range<Chunks>);
  static_assert(std::is_same_v<std::ranges::range_value_t<Chunks>, Ref<SdesChunk>>);
  static_assert(std::is_same_v<std::ranges::range_value_t<ConstChunks>, View<SdesChunk>>);
}

TEST(ObjectList, GrowsShrinksAndServesAlgorithms) {
  Sdes sdes;
  auto chunks = sdes.chunks();
  for (const Ssrc ssrc : {3U, 1U, 2U}) ASSERT_TRUE(chunks.emplace_back(ssrc));
  EXPECT_EQ(chunks.size(), 3U);
  const auto is_two = [](View<SdesChunk> chunk) { return chunk.ssrc() == 2; };
  const auto found = std::ranges::find_if(chunks, is_two);
  ASSERT_NE(found, chunks.end());
  EXPECT_EQ(found - chunks.begin(), 2);
  EXPECT_EQ(found->ssrc(), 2U);
  EXPECT_EQ(chunks.begin()[1].ssrc(), 1U);
  EXPECT_EQ((*std::prev(chunks.end())).ssrc(), 2U);
  EXPECT_LT(chunks.begin(), found);
  for (Ref<SdesChunk> chunk : chunks) chunk.ssrc(chunk.ssrc() + 10);
  chunks.erase(0);
  EXPECT_EQ(chunks.front().ssrc(), 11U);
  EXPECT_EQ(chunks.back().ssrc(), 12U);
  chunks.pop_back();
  EXPECT_EQ(chunks.size(), 1U);
}

TEST(ObjectList, CopiesTakeTheListsAllocatorAndMovesKeepTheirOwn) {
  test::TestAllocator of_list;
  test::TestAllocator of_object;
  SdesChunk chunk(7, of_object);
  ASSERT_TRUE(chunk.add(ZUN_RTCPSDESITEM_TYPE_CNAME, "alice"));
  Sdes sdes(of_list);
  const std::size_t calls = of_object.calls();
  ASSERT_TRUE(sdes.chunks().push_back(chunk));
  EXPECT_EQ(of_object.calls(), calls);
  EXPECT_EQ(sdes.chunks()[0].items()[0].get()->text.allocator, of_list.get());
  ASSERT_TRUE(sdes.chunks().push_back(std::move(chunk)));
  EXPECT_EQ(of_object.calls(), calls);
  EXPECT_EQ(sdes.chunks()[1].items()[0].get()->text.allocator, of_object.get());
  EXPECT_TRUE(chunk.items().empty());  // NOLINT(bugprone-use-after-move): it is what is tested
}

TEST(ObjectList, ARefusedPushLeavesListAndObject) {
  test::ForEveryRefusal([](test::TestAllocator& refusing) {
    Sdes sdes(refusing.get());
    const bool is_added = sdes.add(1, ZUN_RTCPSDESITEM_TYPE_CNAME, "alice");
    EXPECT_EQ(sdes.chunks().size(), is_added ? 1U : 0U);
    EXPECT_EQ(is_added, refusing.refused() == 0);
  });
}

}  // namespace
