#include "Zun/Rtp/Reports/ZunRtcpSdesChunk.h"

#include <gtest/gtest.h>

#include "tests/support/Bytes.h"
#include "tests/support/TestAllocator.h"

namespace {

using namespace test;

// Items of type CNAME that end themselves. Each takes the allocator of the list.
class Items {
 public:
  Items(std::initializer_list<const char*> texts, ZunAllocator* a = ZunAllocatorGetSystem()) {
    ZunVector_ZunRtcpSdesItemConstructDefault(&items_, a);
    for (const char* const text : texts) {
      const Text copied(text, a);
      ZunRtcpSdesItem item;
      EXPECT_NE(ZunRtcpSdesItemConstruct(&item, ZUN_RTCPSDESITEM_TYPE_CNAME, copied.get()), nullptr);
      EXPECT_TRUE(ZunVector_ZunRtcpSdesItemPushBack(&items_, &item));
      ZunRtcpSdesItemDestruct(&item);
    }
  }
  ~Items() { ZunVector_ZunRtcpSdesItemDestruct(&items_); }
  Items(const Items&) = delete;
  Items& operator=(const Items&) = delete;
  operator const ZunVector_ZunRtcpSdesItem*() const { return &items_; }

 private:
  ZunVector_ZunRtcpSdesItem items_;
};

std::string Texts(const ZunRtcpSdesChunk& chunk) {
  std::string texts;
  const ZunVector_ZunRtcpSdesItem* const items = ZunRtcpSdesChunkGetItems(&chunk);
  for (const ZunRtcpSdesItem* item = items->begin; item != items->end; ++item) {
    texts += ZunRtcpSdesItemGetText(item);
    texts += ';';
  }
  return texts;
}

class SdesChunkTest : public ::testing::Test {
 protected:
  SdesChunkTest() { EXPECT_EQ(ZunRtcpSdesChunkConstructDefault(&chunk_, allocator_), &chunk_); }
  ~SdesChunkTest() override { ZunRtcpSdesChunkDestruct(&chunk_); }

  TestAllocator allocator_;
  ZunRtcpSdesChunk chunk_;
};

TEST_F(SdesChunkTest, ConstructDefaultIsEmpty) {
  EXPECT_EQ(ZunRtcpSdesChunkGetSource(&chunk_), 0U);
  EXPECT_TRUE(ZunVector_ZunRtcpSdesItemEmpty(ZunRtcpSdesChunkGetItems(&chunk_)));
  EXPECT_EQ(ZunRtcpSdesChunkGetItems(&chunk_)->allocator, allocator_.get());
}

TEST_F(SdesChunkTest, Setters) {
  EXPECT_TRUE(ZunRtcpSdesChunkSetSource(&chunk_, 0xFEDCBA98));
  EXPECT_EQ(ZunRtcpSdesChunkGetSource(&chunk_), 0xFEDCBA98U);
  EXPECT_TRUE(ZunRtcpSdesChunkSetItems(&chunk_, Items({"one", "two"})));
  EXPECT_EQ(Texts(chunk_), "one;two;");
  EXPECT_EQ(ZunRtcpSdesChunkGetItems(&chunk_)->begin->type, ZUN_RTCPSDESITEM_TYPE_CNAME);
  EXPECT_TRUE(ZunRtcpSdesChunkSetItems(&chunk_, ZunRtcpSdesChunkGetItems(&chunk_)));
  EXPECT_EQ(Texts(chunk_), "one;two;");
  EXPECT_TRUE(ZunRtcpSdesChunkSetItems(&chunk_, Items({})));
  EXPECT_EQ(Texts(chunk_), "");
}

TEST_F(SdesChunkTest, CopiesTakeTheAllocatorsOfTheirSource) {
  TestAllocator of_items;
  ASSERT_TRUE(ZunRtcpSdesChunkSetSource(&chunk_, 7));
  ASSERT_TRUE(ZunRtcpSdesChunkSetItems(&chunk_, Items({"one"}, of_items)));
  EXPECT_EQ(ZunRtcpSdesChunkGetItems(&chunk_)->allocator, allocator_.get());
  EXPECT_EQ(ZunRtcpSdesChunkGetItems(&chunk_)->begin->text.allocator, of_items.get());

  ZunRtcpSdesChunk copy;
  ASSERT_EQ(ZunRtcpSdesChunkConstructCopy(&copy, &chunk_), &copy);
  EXPECT_EQ(ZunRtcpSdesChunkGetSource(&copy), 7U);
  EXPECT_EQ(Texts(copy), "one;");
  EXPECT_EQ(copy.items.allocator, allocator_.get());
  EXPECT_EQ(copy.items.begin->text.allocator, of_items.get());
  ZunRtcpSdesChunkDestruct(&copy);
  ZunRtcpSdesChunkDestruct(&copy);

  TestAllocator other;
  ZunRtcpSdesChunkConstructDefault(&copy, other);
  ASSERT_EQ(ZunRtcpSdesChunkAssign(&copy, &chunk_), &copy);
  EXPECT_EQ(ZunRtcpSdesChunkGetSource(&copy), 7U);
  EXPECT_EQ(Texts(copy), "one;");
  EXPECT_EQ(copy.items.allocator, other.get()) << "an assigned chunk keeps its own";
  ZunRtcpSdesChunkDestruct(&copy);
  ZunRtcpSdesChunkDestruct(&chunk_);
  EXPECT_EQ(of_items.live_blocks(), 0U);
}

TEST(SdesChunk, RefusalsLoseNothing) {
  EXPECT_GT(ForEveryRefusal([&](TestAllocator& refusing) {
              ZunRtcpSdesChunk source;
              ZunRtcpSdesChunkConstructDefault(&source, refusing);
              ZunRtcpSdesChunkSetSource(&source, 7);
              if (ZunRtcpSdesChunkSetItems(&source, Items({"one", "two", "three"}))) {
                ZunRtcpSdesChunk copy;
                const bool copied = ZunRtcpSdesChunkConstructCopy(&copy, &source) != nullptr;
                EXPECT_EQ(copied, refusing.refused() == 0);
                if (copied) {
                  EXPECT_EQ(Texts(copy), Texts(source));
                  ZunRtcpSdesChunkDestruct(&copy);
                }
              }
              ZunRtcpSdesChunk assigned;
              ZunRtcpSdesChunkConstructDefault(&assigned, refusing);
              const std::size_t refused = refusing.refused();
              if (ZunRtcpSdesChunkAssign(&assigned, &source) != nullptr) {
                EXPECT_EQ(ZunRtcpSdesChunkGetSource(&assigned), 7U);
                EXPECT_EQ(Texts(assigned), Texts(source));
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
