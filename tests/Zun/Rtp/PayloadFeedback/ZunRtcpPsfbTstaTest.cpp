#include "Zun/Rtp/PayloadFeedback/ZunRtcpPsfbTsta.h"

#include <gtest/gtest.h>

#include "tests/support/CodecControlChecks.h"
#include "tests/support/LogCapture.h"

namespace {

using namespace test;

const Row kRow = TEST_ROW(ZunRtcpPsfbTsta);

const std::string kTwo = Hex(R"(
    86 CE 0006    | version 2, FMT 6, type 206, 7 words
    01020304      | sender
    11121314      | media source
    21222324      | first entry: SSRC
    07 0000 1F    | sequence number, reserved, index
    31323334      | second entry: SSRC
    FF 0000 00    | sequence number, reserved, index
)");

class TstaTest : public ::testing::Test {
 protected:
  TstaTest() {
    ZunRtcpPsfbTstaConstructDefault(&tsta_, allocator_);
    tsta_.sender = 0x01020304;
    tsta_.source = 0x11121314;
  }
  ~TstaTest() override { ZunRtcpPsfbTstaDestruct(&tsta_); }

  static ZunRtcpPsfbTstaEntry Entry(ZunRtpSourceId ssrc, ZunUint8 seqno, ZunUint8 index) {
    ZunRtcpPsfbTstaEntry entry;
    EXPECT_EQ(ZunRtcpPsfbTstaEntryConstructFull(&entry, ssrc, seqno, index, nullptr), &entry);
    return entry;
  }
  void Add(const ZunRtcpPsfbTstaEntry& entry) {
    ASSERT_TRUE(ZunVector_ZunRtcpPsfbTstaEntryPushBack(ZunRtcpPsfbTstaGetFci(&tsta_), &entry));
  }
  std::string bytes() const { return Bytes(kRow, *reinterpret_cast<const ZunRtcpSubpacket*>(&tsta_)); }

  TestAllocator allocator_;
  ZunRtcpPsfbTsta tsta_;
};

TEST_F(TstaTest, ConstructDefaultIsEmpty) {
  ZunRtcpPsfbTsta tsta;
  ASSERT_EQ(ZunRtcpPsfbTstaConstructDefault(&tsta, allocator_), &tsta);
  EXPECT_EQ(tsta.type, 206);
  EXPECT_EQ(tsta.fmt, 6);
  EXPECT_EQ(tsta.sender, 0U);
  EXPECT_EQ(tsta.source, 0U);
  EXPECT_TRUE(ZunVector_ZunRtcpPsfbTstaEntryEmpty(ZunRtcpPsfbTstaGetFci(&tsta)));
  EXPECT_EQ(ZunRtcpPsfbTstaGetAllocator(&tsta), allocator_.get());
  EXPECT_EQ(allocator_.calls(), 0U);
  ZunRtcpPsfbTstaDestruct(&tsta);
}

TEST_F(TstaTest, WritesGoldenBytes) {
  Add(Entry(0x21222324, 7, 31));
  Add(Entry(0x31323334, 255, 0));
  EXPECT_EQ(ToHex(bytes()), ToHex(kTwo));
}

TEST_F(TstaTest, ReadsGoldenBytes) {
  const Parsed parsed(kTwo);
  ASSERT_TRUE(parsed.ok);
  ASSERT_EQ(ZunRtcpPsfbGetFeedbackMessageType(&parsed[0].psfb), ZUN_RTCPPSFB_TYPE_TSTA);
  const ZunRtcpPsfbTsta* const tsta = ZunRtcpPsfbGetTsta(&parsed[0].psfb);
  EXPECT_EQ(tsta->sender, 0x01020304U);
  EXPECT_EQ(tsta->source, 0x11121314U);
  const ZunVector_ZunRtcpPsfbTstaEntry* const fci = ZunRtcpPsfbTstaGetFci(tsta);
  ASSERT_EQ(ZunVector_ZunRtcpPsfbTstaEntrySize(fci), 2U);
  EXPECT_EQ(ZunRtcpPsfbTstaEntryGetSsrc(&fci->begin[0]), 0x21222324U);
  EXPECT_EQ(ZunRtcpPsfbTstaEntryGetSequenceNumber(&fci->begin[0]), 7);
  EXPECT_EQ(ZunRtcpPsfbTstaEntryGetIndex(&fci->begin[0]), 31);
  EXPECT_EQ(ZunRtcpPsfbTstaEntryGetSsrc(&fci->begin[1]), 0x31323334U);
  EXPECT_EQ(ZunRtcpPsfbTstaEntryGetSequenceNumber(&fci->begin[1]), 255);
}

TEST_F(TstaTest, IndexIsReadAsTheLowFiveBits) {
  const Slot slot(kRow, Hex("86CE0004 01020304 00000000 21222324 07FFFFE3"));
  ASSERT_TRUE(slot.ok);
  EXPECT_EQ(slot.sp.psfb.tsta.fci.begin[0].index, 3) << "the reserved bits are not looked at";
  EXPECT_EQ(ToHex(slot.bytes().substr(12)), ToHex(Hex("21222324 07000003")));
}

TEST_F(TstaTest, IndexIsWrittenAsAWholeOctet) {
  Add(Entry(0x21222324, 7, 0xE3));
  EXPECT_EQ(ToHex(bytes().substr(12)), ToHex(Hex("21222324 070000E3")));
}

TEST_F(TstaTest, IndexIsAtMost31) {
  ZunRtcpPsfbTstaEntry entry = Entry(1, 2, 3);
  EXPECT_TRUE(ZunRtcpPsfbTstaEntrySetIndex(&entry, 31));
  EXPECT_FALSE(ZunRtcpPsfbTstaEntrySetIndex(&entry, 32));
  EXPECT_FALSE(ZunRtcpPsfbTstaEntrySetIndex(&entry, 255));
  EXPECT_EQ(ZunRtcpPsfbTstaEntryGetIndex(&entry), 31);
}

TEST_F(TstaTest, ANonZeroMediaSourceIsKeptWithoutAWarning) {
  LogCapture log;
  ExpectComesBackUnchanged(kTwo);
  log.ExpectNone();
}

TEST_F(TstaTest, SettersOfAnEntryStore) {
  ZunRtcpPsfbTstaEntry entry = Entry(1, 2, 3);
  EXPECT_TRUE(ZunRtcpPsfbTstaEntrySetSsrc(&entry, 0xFFFFFFFF));
  EXPECT_TRUE(ZunRtcpPsfbTstaEntrySetSequenceNumber(&entry, 255));
  EXPECT_EQ(entry.ssrc, 0xFFFFFFFFU);
  EXPECT_EQ(entry.seqno, 255);
}

TEST_F(TstaTest, EntriesAreCopiedAsValues) {
  ZunRtcpPsfbTstaEntry entry = Entry(5, 6, 3);
  ZunRtcpPsfbTstaEntry copy;
  EXPECT_EQ(ZunRtcpPsfbTstaEntryConstructCopy(&copy, &entry), &copy);
  EXPECT_EQ(copy.ssrc, 5U);
  EXPECT_EQ(copy.seqno, 6);
  entry = Entry(8, 9, 4);
  EXPECT_EQ(ZunRtcpPsfbTstaEntryAssign(&copy, &entry), &copy);
  EXPECT_EQ(copy.ssrc, 8U);
  EXPECT_EQ(copy.seqno, 9);
  EXPECT_EQ(copy.index, 4);
  ZunRtcpPsfbTstaEntryDestruct(&copy);
  EXPECT_EQ(copy.ssrc, 8U);
}

TEST_F(TstaTest, WithoutEntriesItIsNeitherReadNorWritten) { ExpectNothingWithoutEntries<ZunRtcpPsfbTsta>(kRow, kTwo); }

TEST_F(TstaTest, CutAnywhereKeepsTheWholeEntries) {
  ExpectCutAnywhereKeepsTheWholeEntries<ZunRtcpPsfbTsta>(kRow, kTwo);
}

TEST_F(TstaTest, TwelveBytesOfFciFailAfterOneEntry) {
  ExpectTwelveBytesOfFciFailAfterOneEntry<ZunRtcpPsfbTsta>(kRow, kTwo);
}

TEST_F(TstaTest, EntriesThatFitAreReadBeforeARefusal) {
  ExpectEntriesThatFitAreReadBeforeARefusal<ZunRtcpPsfbTsta>(kRow, kTwo);
}

TEST_F(TstaTest, RefusedAssignLeavesNoEntries) {
  ExpectRefusedAssignLeavesNoEntries<ZunRtcpPsfbTsta, ZunRtcpPsfbTstaAssign>(kRow, kTwo);
}

TEST_F(TstaTest, KeepsTheRulesOfEveryRow) { ExpectTheRulesOfEveryRow(kRow, kTwo); }

}  // namespace
