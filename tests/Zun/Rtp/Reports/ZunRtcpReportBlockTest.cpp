#include "Zun/Rtp/Reports/ZunRtcpReportBlock.h"

#include <gtest/gtest.h>

#include "tests/support/Kinds.h"

namespace {

using namespace test;

using Blocks = TEST_PART(ZunVector_ZunRtcpReportBlock);

const std::string kFirst = Hex(R"(
    01020304      | source
    40            | fraction lost: a quarter
    FFFFFE        | packets lost: -2
    00011234      | highest sequence number: one cycle, 0x1234
    0000002A      | jitter
    8899AABB      | LSR
    00010000      | DLSR: one second
)");
const std::string kSecond = Hex("11121314 00 000007 00000001 00000002 00000003 00000004");

void ExpectFirst(const ZunRtcpReportBlock& block) {
  EXPECT_EQ(ZunRtcpReportBlockGetSource(&block), 0x01020304U);
  EXPECT_EQ(ZunRtcpReportBlockGetLossFraction(&block), 0x40);
  EXPECT_EQ(ZunRtcpReportBlockGetPacketsLost(&block), -2);
  EXPECT_EQ(ZunRtcpReportBlockGetExtendedSequenceNumber(&block), 0x00011234U);
  EXPECT_EQ(ZunRtcpReportBlockGetJitter(&block), 42U);
  EXPECT_EQ(ZunRtcpReportBlockGetLastSrTime(&block), 0x8899AABBU);
  EXPECT_EQ(ZunRtcpReportBlockGetDelaySinceLastSr(&block), 65536U);
}

ZunRtcpReportBlock First() {
  ZunRtcpReportBlock block;
  EXPECT_TRUE(ZunRtcpReportBlockSetSource(&block, 0x01020304));
  EXPECT_TRUE(ZunRtcpReportBlockSetLossFraction(&block, 0x40));
  EXPECT_TRUE(ZunRtcpReportBlockSetPacketsLost(&block, -2));
  EXPECT_TRUE(ZunRtcpReportBlockSetExtendedSequenceNumber(&block, 0x00011234));
  EXPECT_TRUE(ZunRtcpReportBlockSetJitter(&block, 42));
  EXPECT_TRUE(ZunRtcpReportBlockSetLastSrTime(&block, 0x8899AABB));
  EXPECT_TRUE(ZunRtcpReportBlockSetDelaySinceLastSr(&block, 65536));
  return block;
}

ZunSizeT CountOf(const Blocks& blocks) { return ZunVector_ZunRtcpReportBlockSize(blocks); }

std::string Written(const Blocks& blocks) {
  Text out;
  EXPECT_TRUE(ZunRtcpWriteReportBlockToBuffer(blocks, out));
  return out.str();
}

TEST(ZunRtcpReportBlock, EveryAccessor) {
  const ZunRtcpReportBlock block = First();
  ExpectFirst(block);
  EXPECT_EQ(block.cum_num_packet_lost, 0xFFFFFEU);
}

TEST(ZunRtcpReportBlock, CopiesAllFields) {
  const ZunRtcpReportBlock block = First();
  ZunRtcpReportBlock copy;
  EXPECT_EQ(ZunRtcpReportBlockConstructCopy(&copy, &block), &copy);
  ExpectFirst(copy);
  ZunRtcpReportBlock assigned = {};
  EXPECT_EQ(ZunRtcpReportBlockAssign(&assigned, &block), &assigned);
  ExpectFirst(assigned);
  ZunRtcpReportBlockDestruct(&assigned);
  ExpectFirst(assigned);
}

TEST(ZunRtcpReportBlock, PacketsLostSaturatesAt24Bits) {
  struct {
    ZunInt32 set;
    ZunUint32 stored;
    ZunInt32 got;
  } const cases[] = {
      {0, 0, 0},
      {1, 1, 1},
      {-1, 0xFFFFFF, -1},
      {8388607, 0x7FFFFF, 8388607},
      {8388608, 0x7FFFFF, 8388607},
      {2147483647, 0x7FFFFF, 8388607},
      {-8388608, 0x800000, -8388608},
      {-8388609, 0x800000, -8388608},
      {-2147483647 - 1, 0x800000, -8388608},
  };
  for (const auto& c : cases) {
    ZunRtcpReportBlock block = {};
    EXPECT_TRUE(ZunRtcpReportBlockSetPacketsLost(&block, c.set));
    EXPECT_EQ(block.cum_num_packet_lost, c.stored) << c.set;
    EXPECT_EQ(ZunRtcpReportBlockGetPacketsLost(&block), c.got) << c.set;
  }
}

TEST(ZunRtcpReportBlock, WritesInOrder) {
  Blocks blocks;
  ZunRtcpReportBlock block = First();
  ASSERT_TRUE(ZunVector_ZunRtcpReportBlockPushBack(blocks, &block));
  block = {0x11121314, 0, 7, 1, 2, 3, 4};
  ASSERT_TRUE(ZunVector_ZunRtcpReportBlockPushBack(blocks, &block));
  EXPECT_EQ(ToHex(Written(blocks)), ToHex(kFirst + kSecond));
}

TEST(ZunRtcpReportBlock, WritesTheLow24BitsOfPacketsLost) {
  Blocks blocks;
  const ZunRtcpReportBlock block = {0, 0x12, 0xAB345678, 0, 0, 0, 0};
  ASSERT_TRUE(ZunVector_ZunRtcpReportBlockPushBack(blocks, &block));
  EXPECT_EQ(ToHex(Written(blocks).substr(4, 4)), "12345678");
}

TEST(ZunRtcpReportBlock, AppendsNothingWithoutBlocks) {
  Blocks blocks;
  Text out("xy");
  EXPECT_TRUE(ZunRtcpWriteReportBlockToBuffer(blocks, out));
  EXPECT_EQ(out.str(), "xy");
}

TEST(ZunRtcpReportBlock, AFailedWriteKeepsWhatFits) {
  Blocks blocks;
  const ZunRtcpReportBlock block = First();
  ASSERT_TRUE(ZunVector_ZunRtcpReportBlockPushBack(blocks, &block));
  ASSERT_TRUE(ZunVector_ZunRtcpReportBlockPushBack(blocks, &block));
  const std::string whole = kFirst + kFirst;
  for (std::size_t limit = 0; limit <= whole.size(); ++limit) {
    TestAllocator cramped;
    cramped.RefuseAbove(limit);
    Text out(cramped.get());
    const bool written = ZunRtcpWriteReportBlockToBuffer(blocks, out) != 0;
    EXPECT_EQ(written, out->size == whole.size());
    EXPECT_EQ(ToHex(out.str()), ToHex(whole.substr(0, out->size)));
  }
}

TEST(ZunRtcpReportBlock, ReadsFromAPositionAndAdvancesIt) {
  Blocks blocks;
  const Datagram datagram("head" + kFirst + kSecond + "tail");
  ZunSizeT position = 4;
  ASSERT_TRUE(ZunRtcpAssignReportBlockFromBuffer(datagram, &position, datagram->size, 2, blocks));
  EXPECT_EQ(position, 52U);
  ASSERT_EQ(CountOf(blocks), 2U);
  ExpectFirst(blocks->begin[0]);
  EXPECT_EQ(blocks->begin[0].cum_num_packet_lost, 0xFFFFFEU) << "no sign extension";
  EXPECT_EQ(ToHex(Written(blocks)), ToHex(kFirst + kSecond));
}

TEST(ZunRtcpReportBlock, ReplacesOldBlocksEvenByNone) {
  TestAllocator allocator;
  Blocks blocks(allocator);
  const Datagram datagram(kFirst + kSecond);
  ZunSizeT position = 0;
  ASSERT_TRUE(ZunRtcpAssignReportBlockFromBuffer(datagram, &position, datagram->size, 2, blocks));
  const std::size_t calls = allocator.calls();
  position = 24;
  ASSERT_TRUE(ZunRtcpAssignReportBlockFromBuffer(datagram, &position, datagram->size, 1, blocks));
  EXPECT_EQ(ToHex(Written(blocks)), ToHex(kSecond));
  EXPECT_EQ(position, 48U);
  ASSERT_TRUE(ZunRtcpAssignReportBlockFromBuffer(datagram, &position, datagram->size, 0, blocks));
  EXPECT_EQ(CountOf(blocks), 0U);
  EXPECT_EQ(position, 48U);
  EXPECT_EQ(allocator.calls(), calls) << "the storage is kept";
}

// The whole fields in front of a cut at `size` bytes; the fraction lost counts with the first byte after it.
ZunSizeT WholeFields(ZunSizeT size) {
  const ZunSizeT ends[] = {24, 20, 16, 12, 8, 6, 4};
  for (const ZunSizeT end : ends) {
    if (size >= end) return end;
  }
  return 0;
}

TEST(ZunRtcpReportBlock, ACutKeepsTheBlocksBeforeItAndStandsAfterTheLastWholeField) {
  Blocks blocks;
  const std::string whole = kFirst + kSecond;
  for (ZunSizeT size = 0; size < whole.size(); ++size) {
    for (const ZunSizeT end : {size, ZunSizeT{whole.size()}, ZunSizeT{1000}, SIZE_MAX}) {
      SCOPED_TRACE(::testing::Message() << size << " bytes, end " << end);
      const Datagram datagram(whole.substr(0, size));
      ZunSizeT position = 0;
      EXPECT_FALSE(ZunRtcpAssignReportBlockFromBuffer(datagram, &position, end, 2, blocks));
      EXPECT_EQ(CountOf(blocks), size / 24);
      EXPECT_EQ(position, size / 24 * 24 + WholeFields(size % 24));
      if (CountOf(blocks) == 1) ExpectFirst(blocks->begin[0]);
    }
  }
  const Datagram datagram(whole);
  for (ZunSizeT end = 0; end < whole.size(); ++end) {
    ZunSizeT position = 0;
    EXPECT_FALSE(ZunRtcpAssignReportBlockFromBuffer(datagram, &position, end, 2, blocks));
    EXPECT_EQ(position, end / 24 * 24 + WholeFields(end % 24));
  }
}

TEST(ZunRtcpReportBlock, APositionBeyondTheEndReadsNothing) {
  Blocks blocks;
  const Datagram datagram(kFirst);
  for (const ZunSizeT start : {ZunSizeT{25}, ZunSizeT{1000}, SIZE_MAX - 1, SIZE_MAX}) {
    ZunSizeT position = start;
    EXPECT_FALSE(ZunRtcpAssignReportBlockFromBuffer(datagram, &position, 24, 1, blocks));
    EXPECT_EQ(position, start);
  }
}

TEST(ZunRtcpReportBlock, ARefusedListKeepsTheBlocksThatItHasRoomFor) {
  std::string wire;
  for (int i = 0; i < 5; ++i) wire += kFirst;
  const Datagram datagram(wire);
  // Room for two blocks, then for four.
  for (const ZunSizeT room : {ZunSizeT{0}, ZunSizeT{2}, ZunSizeT{4}}) {
    TestAllocator cramped;
    cramped.RefuseAbove(room * sizeof(ZunRtcpReportBlock));
    Blocks in_cramped(cramped);
    ZunSizeT position = 0;
    EXPECT_FALSE(ZunRtcpAssignReportBlockFromBuffer(datagram, &position, datagram->size, 5, in_cramped));
    EXPECT_EQ(CountOf(in_cramped), room);
    EXPECT_EQ(position, (room + 1) * 24) << "the block that found no room was read";
  }
}

TEST(ZunRtcpReportBlock, ALargeCountReservesNoMoreThanTheBodyHolds) {
  Blocks blocks;
  const Datagram datagram(kFirst + kSecond);
  ZunSizeT position = 0;
  EXPECT_FALSE(ZunRtcpAssignReportBlockFromBuffer(datagram, &position, datagram->size, 255, blocks));
  EXPECT_EQ(CountOf(blocks), 2U);
  EXPECT_EQ(ZunVector_ZunRtcpReportBlockCapacity(blocks), 2U);
}

}  // namespace
