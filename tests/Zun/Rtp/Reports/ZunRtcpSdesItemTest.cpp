#include "Zun/Rtp/Reports/ZunRtcpSdesItem.h"

#include <gtest/gtest.h>

#include "tests/support/Kinds.h"

namespace {

using namespace test;

using Item = TEST_PART(ZunRtcpSdesItem);

TEST(ZunRtcpSdesItem, ConstructDefaultIsEmpty) {
  TestAllocator allocator;
  Item item(allocator);
  EXPECT_EQ(ZunRtcpSdesItemGetType(item), ZUN_RTCPSDESITEM_TYPE_EndOfList);
  EXPECT_STREQ(ZunRtcpSdesItemGetText(item), "");
  EXPECT_EQ(ZunRtcpSdesItemGetSize(item), 0);
  EXPECT_EQ(ZunRtcpSdesItemGetAllocator(item), allocator.get());
  EXPECT_EQ(allocator.calls(), 0U);
}

TEST(ZunRtcpSdesItem, TypesAreThoseOfTheRegistry) {
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

TEST(ZunRtcpSdesItem, SetTypeStoresAnyByte) {
  Item item;
  for (const ZunUint8 type : {ZunUint8{0}, ZunUint8{15}, ZunUint8{16}, ZunUint8{255}}) {
    EXPECT_TRUE(ZunRtcpSdesItemSetType(item, type));
    EXPECT_EQ(ZunRtcpSdesItemGetType(item), type);
  }
}

TEST(ZunRtcpSdesItem, SetTextTakesUpTo255Characters) {
  Item item;
  const std::string longest(255, 'a');
  EXPECT_TRUE(ZunRtcpSdesItemSetText(item, longest.c_str()));
  EXPECT_EQ(ZunRtcpSdesItemGetText(item), longest);
  EXPECT_EQ(ZunRtcpSdesItemGetSize(item), 255);
  EXPECT_FALSE(ZunRtcpSdesItemSetText(item, std::string(256, 'b').c_str()));
  EXPECT_EQ(ZunRtcpSdesItemGetText(item), longest);
  EXPECT_TRUE(ZunRtcpSdesItemSetText(item, ZunRtcpSdesItemGetText(item) + 250)) << "a part of the old text";
  EXPECT_STREQ(ZunRtcpSdesItemGetText(item), "aaaaa");
  EXPECT_TRUE(ZunRtcpSdesItemSetText(item, ""));
  EXPECT_STREQ(ZunRtcpSdesItemGetText(item), "");
}

TEST(ZunRtcpSdesItem, ARefusedTextLeavesTheOldOne) {
  TestAllocator allocator;
  Item item(allocator);
  ASSERT_TRUE(ZunRtcpSdesItemSetText(item, "old"));
  allocator.RefuseFrom(0);
  EXPECT_FALSE(ZunRtcpSdesItemSetText(item, "quite a bit longer"));
  EXPECT_STREQ(ZunRtcpSdesItemGetText(item), "old");
}

TEST(ZunRtcpSdesItem, ConstructCopiesATextOfAnySizeWithItsAllocator) {
  TestAllocator allocator;
  const Text text(std::string(300, 'x'), allocator.get());
  ZunRtcpSdesItem item;
  ASSERT_EQ(ZunRtcpSdesItemConstruct(&item, ZUN_RTCPSDESITEM_TYPE_NOTE, text.get()), &item);
  EXPECT_EQ(ZunRtcpSdesItemGetType(&item), ZUN_RTCPSDESITEM_TYPE_NOTE);
  EXPECT_EQ(Str(&item.text), text.str());
  EXPECT_EQ(ZunRtcpSdesItemGetSize(&item), 300 - 256) << "only the low 8 bits are told";
  EXPECT_EQ(ZunRtcpSdesItemGetAllocator(&item), allocator.get());
  ZunRtcpSdesItemDestruct(&item);
  EXPECT_STREQ(ZunRtcpSdesItemGetText(&item), "");
  ZunRtcpSdesItemDestruct(&item);

  allocator.RefuseFrom(0);
  EXPECT_EQ(ZunRtcpSdesItemConstruct(&item, ZUN_RTCPSDESITEM_TYPE_NOTE, text.get()), nullptr);
}

TEST(ZunRtcpSdesItem, CopiesAndAssignments) {
  TestAllocator allocator;
  Item item(allocator);
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

  allocator.RefuseOnce(0);
  EXPECT_EQ(ZunRtcpSdesItemAssign(item, &source), nullptr);
  EXPECT_EQ(ZunRtcpSdesItemGetType(item), ZUN_RTCPSDESITEM_TYPE_EndOfList);
  EXPECT_STREQ(ZunRtcpSdesItemGetText(item), "");
  ASSERT_EQ(ZunRtcpSdesItemAssign(item, &source), item);
  EXPECT_EQ(ZunRtcpSdesItemGetAllocator(item), allocator.get()) << "an assigned item keeps its own";
  EXPECT_EQ(ZunRtcpSdesItemGetType(item), ZUN_RTCPSDESITEM_TYPE_CNAME);
  EXPECT_STREQ(ZunRtcpSdesItemGetText(item), "alice@example.org");

  other.RefuseFrom(0);
  EXPECT_EQ(ZunRtcpSdesItemConstructCopy(&copy, &source), nullptr);
  ZunRtcpSdesItemDestruct(&source);
}

}  // namespace
