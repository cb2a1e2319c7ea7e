#include "Zun/Rtp/PayloadFeedback/ZunRtcpPsfbSli.h"

#include <gtest/gtest.h>

#include "tests/support/Samples.h"

namespace {

using namespace test;

using Sli = TEST_OBJECT(ZunRtcpPsfbSli);

const Row& kRow = kRowOf<ZunRtcpPsfbSli>;

ZunRtcpPsfbSliItem Item(ZunUint16 first, ZunUint16 number, ZunUint8 picture) {
  ZunRtcpPsfbSliItem item;
  EXPECT_EQ(ZunRtcpPsfbSliItemConstructFull(&item, first, number, picture, nullptr), &item);
  return item;
}

void ExpectItem(const ZunRtcpPsfbSliItem& item, ZunUint16 first, ZunUint16 number, ZunUint8 picture) {
  EXPECT_EQ(ZunRtcpPsfbSliItemGetFirstLostMblock(&item), first);
  EXPECT_EQ(ZunRtcpPsfbSliItemGetNumLostMblocks(&item), number);
  EXPECT_EQ(ZunRtcpPsfbSliItemGetPictureId(&item), picture);
}

void Add(ZunRtcpPsfbSli* sli, const ZunRtcpPsfbSliItem& item) {
  ASSERT_TRUE(ZunVector_ZunRtcpPsfbSliItemPushBack(ZunRtcpPsfbSliGetItems(sli), &item));
}

TEST(ZunRtcpPsfbSli, ConstructDefaultIsEmpty) {
  TestAllocator allocator;
  ZunRtcpPsfbSli sli;
  ASSERT_EQ(ZunRtcpPsfbSliConstructDefault(&sli, allocator), &sli);
  EXPECT_EQ(sli.type, 206);
  EXPECT_EQ(sli.fmt, 2);
  EXPECT_EQ(sli.sender, 0U);
  EXPECT_EQ(sli.source, 0U);
  EXPECT_TRUE(ZunVector_ZunRtcpPsfbSliItemEmpty(ZunRtcpPsfbSliGetItems(&sli)));
  EXPECT_EQ(ZunRtcpPsfbSliGetAllocator(&sli), allocator.get());
  EXPECT_EQ(allocator.calls(), 0U);
  ZunRtcpPsfbSliDestruct(&sli);
}

TEST(ZunRtcpPsfbSli, WritesGoldenBytes) {
  Sli sli;
  SetSsrcs(sli);
  Add(sli, Item(1, 2, 1));
  Add(sli, Item(8191, 0, 0));
  Add(sli, Item(0, 8191, 0));
  EXPECT_EQ(ToHex(sli.bytes()), ToHex(Golden("SliThreeItems")));
}

TEST(ZunRtcpPsfbSli, ReadsGoldenBytes) {
  const Parsed parsed(Golden("SliThreeItems"));
  ASSERT_TRUE(parsed.ok);
  ASSERT_EQ(ZunRtcpPsfbGetFeedbackMessageType(&parsed[0].psfb), ZUN_RTCPPSFB_TYPE_SLI);
  const ZunRtcpPsfbSli* const sli = ZunRtcpPsfbGetSli(&parsed[0].psfb);
  EXPECT_EQ(sli->sender, 0x01020304U);
  EXPECT_EQ(sli->source, 0x11121314U);
  const ZunVector_ZunRtcpPsfbSliItem* const items = ZunRtcpPsfbSliGetItems(sli);
  ASSERT_EQ(ZunVector_ZunRtcpPsfbSliItemSize(items), 3U);
  ExpectItem(items->begin[0], 1, 2, 1);
  ExpectItem(items->begin[1], 8191, 0, 0);
  ExpectItem(items->begin[2], 0, 8191, 0);
}

TEST(ZunRtcpPsfbSli, NoItemsAreTwelveBytes) {
  Sli sli;
  SetSsrcs(sli);
  EXPECT_EQ(ToHex(sli.bytes()), ToHex(Golden("SliWithoutItems")));
}

TEST(ZunRtcpPsfbSli, TheLargestWireValuesComeBack) {
  Sli sli;
  SetSsrcs(sli);
  Add(sli, Item(8191, 8191, 63));
  EXPECT_EQ(ToHex(sli.bytes()), ToHex(Golden("SliOneItem")));
  const Received received(kRow, Golden("SliOneItem"));
  ASSERT_TRUE(received.ok);
  ASSERT_EQ(ZunVector_ZunRtcpPsfbSliItemSize(&received.sp()->psfb.sli.items), 1U);
  ExpectItem(received.sp()->psfb.sli.items.begin[0], 8191, 8191, 63);
}

TEST(ZunRtcpPsfbSli, EveryBitOfAnItemHasItsPlace) {
  for (ZunUint32 bit = 0; bit < 32; ++bit) {
    const ZunUint32 word = ZunUint32{1} << bit;
    std::string wire = Golden("SliWithoutItems");
    wire[3] = 3;
    for (const int shift : {24, 16, 8, 0}) wire += static_cast<char>(word >> shift & 0xFF);
    const Received received(kRow, wire);
    ASSERT_TRUE(received.ok);
    const auto first = static_cast<ZunUint16>(word / 0x80000);
    const auto number = static_cast<ZunUint16>(word / 64 % 0x2000);
    ExpectItem(received.sp()->psfb.sli.items.begin[0], first, number, static_cast<ZunUint8>(word % 64));
    EXPECT_EQ(ToHex(received.bytes()), ToHex(wire));
  }
}

TEST(ZunRtcpPsfbSli, ValuesBeyondTheWireAreCutWhenWritten) {
  Sli sli;
  SetSsrcs(sli);
  Add(sli, Item(0xFFFF, 0, 0));
  Add(sli, Item(0, 0xFFFF, 0));
  Add(sli, Item(0, 0, 0xFF));
  EXPECT_EQ(ToHex(sli.bytes()), ToHex(Hex("82CE0005 01020304 11121314 FFF80000 0007FFC0 0000003F")));
}

TEST(ZunRtcpPsfbSli, MacroblockSettersTakeElevenBitsAlthoughTheWireHasThirteen) {
  ZunRtcpPsfbSliItem item = Item(1, 2, 3);
  EXPECT_TRUE(ZunRtcpPsfbSliItemSetFirstLostMblock(&item, 2047));
  EXPECT_TRUE(ZunRtcpPsfbSliItemSetNumLostMblocks(&item, 2047));
  ExpectItem(item, 2047, 2047, 3);
  for (const ZunUint16 refused : {ZunUint16{2048}, ZunUint16{8191}, ZunUint16{65535}}) {
    EXPECT_FALSE(ZunRtcpPsfbSliItemSetFirstLostMblock(&item, refused));
    EXPECT_FALSE(ZunRtcpPsfbSliItemSetNumLostMblocks(&item, refused));
  }
  ExpectItem(item, 2047, 2047, 3);
}

TEST(ZunRtcpPsfbSli, PictureIdHasSixBits) {
  ZunRtcpPsfbSliItem item = Item(1, 2, 3);
  EXPECT_TRUE(ZunRtcpPsfbSliItemSetPictureId(&item, 63));
  EXPECT_FALSE(ZunRtcpPsfbSliItemSetPictureId(&item, 64));
  EXPECT_FALSE(ZunRtcpPsfbSliItemSetPictureId(&item, 255));
  ExpectItem(item, 1, 2, 63);
}

TEST(ZunRtcpPsfbSli, ItemsAreCopiedAsValues) {
  ZunRtcpPsfbSliItem item = Item(5, 6, 7);
  ZunRtcpPsfbSliItem copy;
  EXPECT_EQ(ZunRtcpPsfbSliItemConstructCopy(&copy, &item), &copy);
  ExpectItem(copy, 5, 6, 7);
  item = Item(8, 9, 10);
  EXPECT_EQ(ZunRtcpPsfbSliItemAssign(&copy, &item), &copy);
  ExpectItem(copy, 8, 9, 10);
  ZunRtcpPsfbSliItemDestruct(&copy);
  ExpectItem(copy, 8, 9, 10);
}

TEST(ZunRtcpPsfbSli, CutAnywhereKeepsTheWholeItems) {
  ForEveryCut(kRow, Golden("SliThreeItems"), [](const Received& received, ZunSizeT size, bool end_is_beyond) {
    const ZunRtcpPsfbSli& sli = received.sp()->psfb.sli;
    EXPECT_EQ(received.ok, size >= 8 && size % 4 == 0 && !end_is_beyond);
    EXPECT_EQ(sli.sender, size >= 4 ? 0x01020304U : 0U);
    EXPECT_EQ(sli.source, size >= 8 ? 0x11121314U : 0U);
    EXPECT_EQ(ZunVector_ZunRtcpPsfbSliItemSize(&sli.items), size >= 8 ? (size - 8) / 4 : 0U);
    if (size >= 12) ExpectItem(sli.items.begin[0], 1, 2, 1);
  });
}

TEST(ZunRtcpPsfbSli, AFailedReadReplacesTheItemsOfAUsedObject) {
  Received received(kRow, Golden("SliThreeItems"));
  EXPECT_FALSE(received.Read(Golden("SliOneItem") + "ab"));
  ASSERT_EQ(ZunVector_ZunRtcpPsfbSliItemSize(&received.sp()->psfb.sli.items), 1U);
  ExpectItem(received.sp()->psfb.sli.items.begin[0], 8191, 8191, 63);
  EXPECT_FALSE(received.Read(Golden("SliWithoutItems").substr(0, 11))) << "the media source is cut";
  EXPECT_EQ(ZunVector_ZunRtcpPsfbSliItemSize(&received.sp()->psfb.sli.items), 1U) << "the items were not reached";
}

TEST(ZunRtcpPsfbSli, ItemsThatFitAreReadBeforeARefusal) {
  TestAllocator two_items;
  two_items.RefuseAbove(2 * sizeof(ZunRtcpPsfbSliItem));
  const Received received(kRow, Golden("SliThreeItems"), two_items.get());
  EXPECT_FALSE(received.ok);
  ASSERT_EQ(ZunVector_ZunRtcpPsfbSliItemSize(&received.sp()->psfb.sli.items), 2U);
  ExpectItem(received.sp()->psfb.sli.items.begin[1], 8191, 0, 0);
}

TEST(ZunRtcpPsfbSli, RefusedAssignLeavesNoItems) {
  TestAllocator allocator;
  Sli sli(allocator);
  const Received source(kRow, Golden("SliThreeItems"));
  Add(sli, Item(1, 2, 3));
  allocator.RefuseFrom(0);
  EXPECT_EQ(ZunRtcpPsfbSliAssign(sli, &source.sp()->psfb.sli), nullptr);
  EXPECT_EQ(sli->items.begin, nullptr);
  EXPECT_EQ(sli->items.end, nullptr);
  EXPECT_EQ(allocator.live_blocks(), 0U);
}

TEST(ZunRtcpPsfbSli, AFreshReadAllocatesOnce) {
  TestAllocator allocator;
  const Received received(kRow, Golden("SliThreeItems"), allocator.get());
  EXPECT_EQ(allocator.calls(), 1U);
}

}  // namespace
