#include "Zun/Rtp/Reports/ZunRtcpSdesItem.h"

#include <gtest/gtest.h>

#include "tests/support/Bytes.h"
#include "tests/support/TestAllocator.h"

namespace {

using namespace test;

class SdesItemTest : public ::testing::Test {
 protected:
  SdesItemTest() { EXPECT_EQ(ZunRtcpSdesItemConstructDefault(&item_, allocator_), &item_); }
  ~SdesItemTest() override { ZunRtcpSdesItemDestruct(&item_); }

  TestAllocator allocator_;
  ZunRtcpSdesItem item_;
};

TEST_F(SdesItemTest, ConstructDefaultIsEmpty) {
  EXPECT_EQ(ZunRtcpSdesItemGetType(&item_), ZUN_RTCPSDESITEM_TYPE_EndOfList);
  EXPECT_STREQ(ZunRtcpSdesItemGetText(&item_), "");
  EXPECT_EQ(ZunRtcpSdesItemGetSize(&item_), 0);
  EXPECT_EQ(ZunRtcpSdesItemGetAllocator(&item_), allocator_.get());
  EXPECT_EQ(allocator_.calls(), 0U);
}

TEST(SdesItem, TypesAreThoseOfTheRegistry) {
  EXPECT_EQ(ZUN_RTCPSDESITEM_TYPE_CNAME, 1);
  EXPECT_EQ(ZUN_RTCPSDESITEM_TYPE_NAME, 2);
  EXPECT_EQ(ZUN_RTCPSDESITEM_TYPE_EMAIL, 3);
  EXPECT_EQ(ZUN_RTCPSDESITEM_TYPE_PHONE, 4);
  EXPECT_EQ(ZUN_RTCPSDESITEM_TYPE_LOC, 5);
  EXPECT_EQ(ZUN_RTCPSDESITEM_TYPE_TOOL, 6);
  EXPECT_EQ(ZUN_RTCPSDESITEM_TYPE_NOTE, 7);
  EXPECT_EQ(ZUN_RTCPSDESITEM_TYPE_PRIV, 8);
  EXPECT_EQ(ZUN_RTCPSDESITEM_TYPE_H323CADDR, 9);
  EXPECT_EQ(ZUN_RTCPSDESITEM_TYPE_APSI, 10);
  EXPECT_EQ(ZUN_RTCPSDESITEM_TYPE_RGRP, 11);
  EXPECT_EQ(ZUN_RTCPSDESITEM_TYPE_RID, 12);
  EXPECT_EQ(ZUN_RTCPSDESITEM_TYPE_RRID, 13);
  EXPECT_EQ(ZUN_RTCPSDESITEM_TYPE_CCID, 14);
  EXPECT_EQ(ZUN_RTCPSDESITEM_TYPE_MID, 15);
  EXPECT_EQ(ZUN_RTCPSDESITEM_TYPE_MAX, 16);
}

TEST_F(SdesItemTest, SetTypeStoresAnyByte) {
  for (const ZunUint8 type : {ZunUint8{0}, ZunUint8{15}, ZunUint8{16}, ZunUint8{255}}) {
    EXPECT_TRUE(ZunRtcpSdesItemSetType(&item_, type));
    EXPECT_EQ(ZunRtcpSdesItemGetType(&item_), type);
  }
}

TEST_F(SdesItemTest, SetTextTakesUpTo255Characters) {
  const std::string longest(255, 'a');
  EXPECT_TRUE(ZunRtcpSdesItemSetText(&item_, longest.c_str()));
  EXPECT_EQ(ZunRtcpSdesItemGetText(&item_), longest);
  EXPECT_EQ(ZunRtcpSdesItemGetSize(&item_), 255);
  EXPECT_FALSE(ZunRtcpSdesItemSetText(&item_, std::string(256, 'b').c_str()));
  EXPECT_EQ(ZunRtcpSdesItemGetText(&item_), longest);
  EXPECT_TRUE(ZunRtcpSdesItemSetText(&item_, ZunRtcpSdesItemGetText(&item_) + 250)) << "a part of the old text";
  EXPECT_STREQ(ZunRtcpSdesItemGetText(&item_), "aaaaa");
  EXPECT_TRUE(ZunRtcpSdesItemSetText(&item_, ""));
  EXPECT_STREQ(ZunRtcpSdesItemGetText(&item_), "");
}

TEST_F(SdesItemTest, ARefusedTextLeavesTheOldOne) {
  ASSERT_TRUE(ZunRtcpSdesItemSetText(&item_, "old"));
  allocator_.RefuseFrom(0);
  EXPECT_FALSE(ZunRtcpSdesItemSetText(&item_, "quite a bit longer"));
  EXPECT_STREQ(ZunRtcpSdesItemGetText(&item_), "old");
}

TEST_F(SdesItemTest, ConstructCopiesATextOfAnySizeWithItsAllocator) {
  const Text text(std::string(300, 'x'), allocator_.get());
  ZunRtcpSdesItem item;
  ASSERT_EQ(ZunRtcpSdesItemConstruct(&item, ZUN_RTCPSDESITEM_TYPE_NOTE, text.get()), &item);
  EXPECT_EQ(ZunRtcpSdesItemGetType(&item), ZUN_RTCPSDESITEM_TYPE_NOTE);
  EXPECT_EQ(Str(&item.text), text.str());
  EXPECT_EQ(ZunRtcpSdesItemGetSize(&item), 300 - 256) << "only the low 8 bits are told";
  EXPECT_EQ(ZunRtcpSdesItemGetAllocator(&item), allocator_.get());
  ZunRtcpSdesItemDestruct(&item);
  EXPECT_STREQ(ZunRtcpSdesItemGetText(&item), "");
  ZunRtcpSdesItemDestruct(&item);

  allocator_.RefuseFrom(0);
  EXPECT_EQ(ZunRtcpSdesItemConstruct(&item, ZUN_RTCPSDESITEM_TYPE_NOTE, text.get()), nullptr);
}

TEST_F(SdesItemTest, CopiesAndAssignments) {
  TestAllocator other;
  ZunRtcpSdesItem source;
  ZunRtcpSdesItemConstructDefault(&source, other);
  ASSERT_TRUE(ZunRtcpSdesItemSetType(&source, ZUN_RTCPSDESITEM_TYPE_CNAME));
  ASSERT_TRUE(ZunRtcpSdesItemSetText(&source, "alice@example.org"));

  ZunRtcpSdesItem copy;
  ASSERT_EQ(ZunRtcpSdesItemConstructCopy(&copy, &source), &copy);
  EXPECT_EQ(ZunRtcpSdesItemGetAllocator(&copy), other.get()) << "a copy takes the allocator of its source";
  EXPECT_EQ(ZunRtcpSdesItemGetType(&copy), ZUN_RTCPSDESITEM_TYPE_CNAME);
  EXPECT_STREQ(ZunRtcpSdesItemGetText(&copy), "alice@example.org");
  ZunRtcpSdesItemDestruct(&copy);

  allocator_.RefuseOnce(0);
  EXPECT_EQ(ZunRtcpSdesItemAssign(&item_, &source), nullptr);
  EXPECT_EQ(ZunRtcpSdesItemGetType(&item_), ZUN_RTCPSDESITEM_TYPE_EndOfList);
  EXPECT_STREQ(ZunRtcpSdesItemGetText(&item_), "");
  ASSERT_EQ(ZunRtcpSdesItemAssign(&item_, &source), &item_);
  EXPECT_EQ(ZunRtcpSdesItemGetAllocator(&item_), allocator_.get()) << "an assigned item keeps its own";
  EXPECT_EQ(ZunRtcpSdesItemGetType(&item_), ZUN_RTCPSDESITEM_TYPE_CNAME);
  EXPECT_STREQ(ZunRtcpSdesItemGetText(&item_), "alice@example.org");

  other.RefuseFrom(0);
  EXPECT_EQ(ZunRtcpSdesItemConstructCopy(&copy, &source), nullptr);
  ZunRtcpSdesItemDestruct(&source);
}

}  // namespace
