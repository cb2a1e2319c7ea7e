#include "Zun/Rtp/PayloadFeedback/ZunRtcpPsfbSli.h"

#include <gtest/gtest.h>

#include "tests/support/RowChecks.h"

namespace {

using namespace test;

const Row kRow = TEST_ROW(ZunRtcpPsfbSli);

const std::string kEmpty = Hex("82CE0002 01020304 11121314");
const std::string kOne = Hex("82CE0003 01020304 11121314 FFFFFFFF");
const std::string kThree = Hex(R"(
    82 CE 0005    | version 2, FMT 2, type 206, 6 words
    01020304      | sender
    11121314      | media source
    0008 0081     | first 1, number 2, picture 1
    FFF8 0000     | first 8191, number 0, picture 0
    0007 FFC0     | first 0, number 8191, picture 0
)");

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

class SliTest : public ::testing::Test {
 protected:
  SliTest() {
    ZunRtcpPsfbSliConstructDefault(&sli_, allocator_);
    sli_.sender = 0x01020304;
    sli_.source = 0x11121314;
  }
  ~SliTest() override { ZunRtcpPsfbSliDestruct(&sli_); }

  void Add(const ZunRtcpPsfbSliItem& item) {
    ASSERT_TRUE(ZunVector_ZunRtcpPsfbSliItemPushBack(ZunRtcpPsfbSliGetItems(&sli_), &item));
  }
  std::string bytes() const { return Bytes(kRow, *reinterpret_cast<const ZunRtcpSubpacket*>(&sli_)); }

  TestAllocator allocator_;
  ZunRtcpPsfbSli sli_;
};

TEST_F(SliTest, ConstructDefaultIsEmpty) {
  ZunRtcpPsfbSli sli;
  ASSERT_EQ(ZunRtcpPsfbSliConstructDefault(&sli, allocator_), &sli);
  EXPECT_EQ(sli.type, 206);
  EXPECT_EQ(sli.fmt, 2);
  EXPECT_EQ(sli.sender, 0U);
  EXPECT_EQ(sli.source, 0U);
  EXPECT_TRUE(ZunVector_ZunRtcpPsfbSliItemEmpty(ZunRtcpPsfbSliGetItems(&sli)));
  EXPECT_EQ(ZunRtcpPsfbSliGetAllocator(&sli), allocator_.get());
  EXPECT_EQ(allocator_.calls(), 0U);
  ZunRtcpPsfbSliDestruct(&sli);
}

TEST_F(SliTest, WritesGoldenBytes) {
  Add(Item(1, 2, 1));
  Add(Item(8191, 0, 0));
  Add(Item(0, 8191, 0));
  EXPECT_EQ(ToHex(bytes()), ToHex(kThree));
}

TEST_F(SliTest, ReadsGoldenBytes) {
  const Parsed parsed(kThree);
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

TEST_F(SliTest, NoItemsAreTwelveBytes) {
  EXPECT_EQ(ToHex(bytes()), ToHex(kEmpty));
  ExpectComesBackUnchanged(kEmpty);
}

TEST_F(SliTest, TheLargestWireValuesComeBack) {
  Add(Item(8191, 8191, 63));
  EXPECT_EQ(ToHex(bytes()), ToHex(kOne));
  const Slot slot(kRow, kOne);
  ASSERT_TRUE(slot.ok);
  ASSERT_EQ(ZunVector_ZunRtcpPsfbSliItemSize(&slot.sp.psfb.sli.items), 1U);
  ExpectItem(slot.sp.psfb.sli.items.begin[0], 8191, 8191, 63);
}

TEST_F(SliTest, EveryBitOfAnItemHasItsPlace) {
  for (ZunUint32 bit = 0; bit < 32; ++bit) {
    const ZunUint32 word = ZunUint32{1} << bit;
    std::string wire = kEmpty;
    wire[3] = 3;
    for (const int shift : {24, 16, 8, 0}) wire += static_cast<char>(word >> shift & 0xFF);
    const Slot slot(kRow, wire);
    ASSERT_TRUE(slot.ok);
    const auto first = static_cast<ZunUint16>(word / 0x80000);
    const auto number = static_cast<ZunUint16>(word / 64 % 0x2000);
    ExpectItem(slot.sp.psfb.sli.items.begin[0], first, number, static_cast<ZunUint8>(word % 64));
    EXPECT_EQ(ToHex(slot.bytes()), ToHex(wire));
  }
}

TEST_F(SliTest, ValuesBeyondTheWireAreCutWhenWritten) {
  Add(Item(0xFFFF, 0, 0));
  Add(Item(0, 0xFFFF, 0));
  Add(Item(0, 0, 0xFF));
  EXPECT_EQ(ToHex(bytes()), ToHex(Hex("82CE0005 01020304 11121314 FFF80000 0007FFC0 0000003F")));
}

TEST_F(SliTest, MacroblockSettersTakeElevenBitsAlthoughTheWireHasThirteen) {
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

TEST_F(SliTest, PictureIdHasSixBits) {
  ZunRtcpPsfbSliItem item = Item(1, 2, 3);
  EXPECT_TRUE(ZunRtcpPsfbSliItemSetPictureId(&item, 63));
  EXPECT_FALSE(ZunRtcpPsfbSliItemSetPictureId(&item, 64));
  EXPECT_FALSE(ZunRtcpPsfbSliItemSetPictureId(&item, 255));
  ExpectItem(item, 1, 2, 63);
}

TEST_F(SliTest, ItemsAreCopiedAsValues) {
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

TEST_F(SliTest, CutAnywhereKeepsTheWholeItems) {
  ForEveryCut(kRow, kThree, [](const Slot& slot, ZunSizeT size, bool end_is_beyond) {
    const ZunRtcpPsfbSli& sli = slot.sp.psfb.sli;
    EXPECT_EQ(slot.ok, size >= 8 && size % 4 == 0 && !end_is_beyond);
    EXPECT_EQ(sli.sender, size >= 4 ? 0x01020304U : 0U);
    EXPECT_EQ(sli.source, size >= 8 ? 0x11121314U : 0U);
    EXPECT_EQ(ZunVector_ZunRtcpPsfbSliItemSize(&sli.items), size >= 8 ? (size - 8) / 4 : 0U);
    if (size >= 12) ExpectItem(sli.items.begin[0], 1, 2, 1);
  });
}

TEST_F(SliTest, AFailedReadReplacesTheItemsOfAUsedObject) {
  Slot slot(kRow, kThree);
  EXPECT_FALSE(slot.Again(kOne + "ab"));
  ASSERT_EQ(ZunVector_ZunRtcpPsfbSliItemSize(&slot.sp.psfb.sli.items), 1U);
  ExpectItem(slot.sp.psfb.sli.items.begin[0], 8191, 8191, 63);
  EXPECT_FALSE(slot.Again(kEmpty.substr(0, 11))) << "the media source is cut";
  EXPECT_EQ(ZunVector_ZunRtcpPsfbSliItemSize(&slot.sp.psfb.sli.items), 1U) << "the items were not reached";
}

TEST_F(SliTest, ItemsThatFitAreReadBeforeARefusal) {
  TestAllocator two_items;
  two_items.RefuseAbove(2 * sizeof(ZunRtcpPsfbSliItem));
  const Slot slot(kRow, kThree, two_items.get());
  EXPECT_FALSE(slot.ok);
  ASSERT_EQ(ZunVector_ZunRtcpPsfbSliItemSize(&slot.sp.psfb.sli.items), 2U);
  ExpectItem(slot.sp.psfb.sli.items.begin[1], 8191, 0, 0);
}

TEST_F(SliTest, RefusedAssignLeavesNoItems) {
  const Slot source(kRow, kThree);
  Add(Item(1, 2, 3));
  allocator_.RefuseFrom(0);
  EXPECT_EQ(ZunRtcpPsfbSliAssign(&sli_, &source.sp.psfb.sli), nullptr);
  EXPECT_EQ(sli_.items.begin, nullptr);
  EXPECT_EQ(sli_.items.end, nullptr);
  EXPECT_EQ(allocator_.live_blocks(), 0U);
}

TEST_F(SliTest, AFreshReadAllocatesOnce) {
  const Slot slot(kRow, kThree, allocator_.get());
  EXPECT_EQ(allocator_.calls(), 1U);
}

TEST_F(SliTest, KeepsTheRulesOfEveryRow) {
  ExpectComesBackUnchanged(kThree);
  ExpectAllocatorRules(kRow, kThree, kOne);
  ExpectRefusalsLoseNothing(kRow, kThree, kOne);
  ExpectFailedWriteLeavesABeginning(kRow, kThree);
  ExpectReadsInPlaceAsFresh(kRow, {kThree, kOne, kEmpty});
  ExpectWritesInPlace(kRow, kThree);
}

}  // namespace
