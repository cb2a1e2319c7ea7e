#include "Zun/Rtp/Reports/ZunRtcpSdesChunk.h"

#include <gtest/gtest.h>

#include "Zun/Rtp/Cpp/Reports.h"
#include "tests/support/Kinds.h"

namespace {

using namespace test;

using Chunk = TEST_PART(ZunRtcpSdesChunk);

// Owned items of type CNAME. Each takes the allocator of the list.
class Items : public zun::rtcp::Owning<ZunVector_ZunRtcpSdesItem> {
 public:
  Items(std::initializer_list<const char*> texts, ZunAllocator* a = ZunAllocatorGetSystem()) : Owning(a) {
    for (const char* const text : texts) {
      zun::rtcp::SdesItem item(a);
      item.type(ZUN_RTCPSDESITEM_TYPE_CNAME);
      EXPECT_TRUE(item.text(text));
      EXPECT_TRUE(ZunVector_ZunRtcpSdesItemPushBack(get(), item.get()));
    }
  }
  operator const ZunVector_ZunRtcpSdesItem*() const { return get(); }
};

std::string Texts(const ZunRtcpSdesChunk* chunk) {
  std::string texts;
  const ZunVector_ZunRtcpSdesItem* const items = ZunRtcpSdesChunkGetItems(chunk);
  for (const ZunRtcpSdesItem* item = items->begin; item != items->end; ++item) {
    texts += ZunRtcpSdesItemGetText(item);
    texts += ';';
  }
  return texts;
}

TEST(ZunRtcpSdesChunk, ConstructDefaultIsEmpty) {
  TestAllocator allocator;
  Chunk chunk(allocator);
  EXPECT_EQ(ZunRtcpSdesChunkGetSource(chunk), 0U);
  EXPECT_TRUE(ZunVector_ZunRtcpSdesItemEmpty(ZunRtcpSdesChunkGetItems(chunk)));
  EXPECT_EQ(ZunRtcpSdesChunkGetItems(chunk)->allocator, allocator.get());
}

TEST(ZunRtcpSdesChunk, Setters) {
  Chunk chunk;
  EXPECT_TRUE(ZunRtcpSdesChunkSetSource(chunk, 0xFEDCBA98));
  EXPECT_EQ(ZunRtcpSdesChunkGetSource(chunk), 0xFEDCBA98U);
  EXPECT_TRUE(ZunRtcpSdesChunkSetItems(chunk, Items({"one", "two"})));
  EXPECT_EQ(Texts(chunk), "one;two;");
  EXPECT_EQ(ZunRtcpSdesChunkGetItems(chunk)->begin->type, ZUN_RTCPSDESITEM_TYPE_CNAME);
  EXPECT_TRUE(ZunRtcpSdesChunkSetItems(chunk, ZunRtcpSdesChunkGetItems(chunk)));
  EXPECT_EQ(Texts(chunk), "one;two;");
  EXPECT_TRUE(ZunRtcpSdesChunkSetItems(chunk, Items({})));
  EXPECT_EQ(Texts(chunk), "");
}

TEST(ZunRtcpSdesChunk, CopiesTakeTheAllocatorsOfTheirSource) {
  TestAllocator allocator;
  Chunk chunk(allocator);
  TestAllocator of_items;
  ASSERT_TRUE(ZunRtcpSdesChunkSetSource(chunk, 7));
  ASSERT_TRUE(ZunRtcpSdesChunkSetItems(chunk, Items({"one"}, of_items)));
  EXPECT_EQ(ZunRtcpSdesChunkGetItems(chunk)->allocator, allocator.get());
  EXPECT_EQ(ZunRtcpSdesChunkGetItems(chunk)->begin->text.allocator, of_items.get());

  ZunRtcpSdesChunk copy;
  ASSERT_EQ(ZunRtcpSdesChunkConstructCopy(&copy, chunk), &copy);
  EXPECT_EQ(ZunRtcpSdesChunkGetSource(&copy), 7U);
  EXPECT_EQ(Texts(&copy), "one;");
  EXPECT_EQ(copy.items.allocator, allocator.get());
  EXPECT_EQ(copy.items.begin->text.allocator, of_items.get());
  ZunRtcpSdesChunkDestruct(&copy);
  ZunRtcpSdesChunkDestruct(&copy);

  TestAllocator other;
  ZunRtcpSdesChunkConstructDefault(&copy, other);
  ASSERT_EQ(ZunRtcpSdesChunkAssign(&copy, chunk), &copy);
  EXPECT_EQ(ZunRtcpSdesChunkGetSource(&copy), 7U);
  EXPECT_EQ(Texts(&copy), "one;");
  EXPECT_EQ(copy.items.allocator, other.get()) << "an assigned chunk keeps its own";
  ZunRtcpSdesChunkDestruct(&copy);
  ZunRtcpSdesChunkDestruct(chunk);
  EXPECT_EQ(of_items.live_blocks(), 0U);
}

TEST(ZunRtcpSdesChunk, RefusalsLoseNothing) {
  EXPECT_GT(ForEveryRefusal([&](TestAllocator& refusing) {
              ZunRtcpSdesChunk source;
              ZunRtcpSdesChunkConstructDefault(&source, refusing);
              ZunRtcpSdesChunkSetSource(&source, 7);
              if (ZunRtcpSdesChunkSetItems(&source, Items({"one", "two", "three"}))) {
                ZunRtcpSdesChunk copy;
                const bool copied = ZunRtcpSdesChunkConstructCopy(&copy, &source) != nullptr;
                EXPECT_EQ(copied, refusing.refused() == 0);
                if (copied) {
                  EXPECT_EQ(Texts(&copy), Texts(&source));
                  ZunRtcpSdesChunkDestruct(&copy);
                }
              }
              ZunRtcpSdesChunk assigned;
              ZunRtcpSdesChunkConstructDefault(&assigned, refusing);
              const std::size_t refused = refusing.refused();
              if (ZunRtcpSdesChunkAssign(&assigned, &source) != nullptr) {
                EXPECT_EQ(ZunRtcpSdesChunkGetSource(&assigned), 7U);
                EXPECT_EQ(Texts(&assigned), Texts(&source));
              } else {
                EXPECT_GT(refusing.refused(), refused);
                EXPECT_EQ(ZunRtcpSdesChunkGetSource(&assigned), 0U) << "the source is stored last";
              }
              ZunRtcpSdesChunkDestruct(&assigned);
              ZunRtcpSdesChunkDestruct(&assigned);
              ZunRtcpSdesChunkDestruct(&source);
            }),
            0U);
}

}  // namespace
