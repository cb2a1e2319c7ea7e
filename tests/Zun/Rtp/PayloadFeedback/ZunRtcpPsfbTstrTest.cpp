#include "Zun/Rtp/PayloadFeedback/ZunRtcpPsfbTstr.h"

#include <gtest/gtest.h>

#include "tests/support/CodecControlChecks.h"
#include "tests/support/LogCapture.h"

namespace {

using namespace test;

const Row kRow = TEST_ROW(ZunRtcpPsfbTstr);

const std::string kTwo = Hex(R"(
    85 CE 0006    | version 2, FMT 5, type 206, 7 words
    01020304      | sender
    00000000      | media source
    21222324      | first entry: SSRC
    07 0000 1F    | sequence number, reserved, index
    31323334      | second entry: SSRC
    FF 0000 00    | sequence number, reserved, index
)");

std::string WithMediaSource(std::string wire) { return wire.replace(8, 4, Hex("11121314")); }

class TstrTest : public ::testing::Test {
 protected:
  TstrTest() {
    ZunRtcpPsfbTstrConstructDefault(&tstr_, allocator_);
    tstr_.sender = 0x01020304;
    tstr_.source = 0x11121314;
  }
  ~TstrTest() override { ZunRtcpPsfbTstrDestruct(&tstr_); }

  static ZunRtcpPsfbTstrEntry Entry(ZunRtpSourceId ssrc, ZunUint8 seqno, ZunUint8 index) {
    ZunRtcpPsfbTstrEntry entry;
    EXPECT_EQ(ZunRtcpPsfbTstrEntryConstructFull(&entry, ssrc, seqno, index, nullptr), &entry);
    return entry;
  }
  void Add(const ZunRtcpPsfbTstrEntry& entry) {
    ASSERT_TRUE(ZunVector_ZunRtcpPsfbTstrEntryPushBack(ZunRtcpPsfbTstrGetFci(&tstr_), &entry));
  }
  std::string bytes() const { return Bytes(kRow, *reinterpret_cast<const ZunRtcpSubpacket*>(&tstr_)); }

  TestAllocator allocator_;
  ZunRtcpPsfbTstr tstr_;
};

TEST_F(TstrTest, ConstructDefaultIsEmpty) {
  ZunRtcpPsfbTstr tstr;
  ASSERT_EQ(ZunRtcpPsfbTstrConstructDefault(&tstr, allocator_), &tstr);
  EXPECT_EQ(tstr.type, 206);
  EXPECT_EQ(tstr.fmt, 5);
  EXPECT_EQ(tstr.sender, 0U);
  EXPECT_EQ(tstr.source, 0U);
  EXPECT_TRUE(ZunVector_ZunRtcpPsfbTstrEntryEmpty(ZunRtcpPsfbTstrGetFci(&tstr)));
  EXPECT_EQ(ZunRtcpPsfbTstrGetAllocator(&tstr), allocator_.get());
  EXPECT_EQ(allocator_.calls(), 0U);
  ZunRtcpPsfbTstrDestruct(&tstr);
}

TEST_F(TstrTest, WritesGoldenBytes) {
  Add(Entry(0x21222324, 7, 31));
  Add(Entry(0x31323334, 255, 0));
  EXPECT_EQ(ToHex(bytes()), ToHex(kTwo));
}

TEST_F(TstrTest, ReadsGoldenBytes) {
  const Parsed parsed(kTwo);
  ASSERT_TRUE(parsed.ok);
  ASSERT_EQ(ZunRtcpPsfbGetFeedbackMessageType(&parsed[0].psfb), ZUN_RTCPPSFB_TYPE_TSTR);
  const ZunRtcpPsfbTstr* const tstr = ZunRtcpPsfbGetTstr(&parsed[0].psfb);
  EXPECT_EQ(tstr->sender, 0x01020304U);
  EXPECT_EQ(tstr->source, 0U);
  const ZunVector_ZunRtcpPsfbTstrEntry* const fci = ZunRtcpPsfbTstrGetFci(tstr);
  ASSERT_EQ(ZunVector_ZunRtcpPsfbTstrEntrySize(fci), 2U);
  EXPECT_EQ(ZunRtcpPsfbTstrEntryGetSsrc(&fci->begin[0]), 0x21222324U);
  EXPECT_EQ(ZunRtcpPsfbTstrEntryGetSequenceNumber(&fci->begin[0]), 7);
  EXPECT_EQ(ZunRtcpPsfbTstrEntryGetIndex(&fci->begin[0]), 31);
  EXPECT_EQ(ZunRtcpPsfbTstrEntryGetSsrc(&fci->begin[1]), 0x31323334U);
  EXPECT_EQ(ZunRtcpPsfbTstrEntryGetSequenceNumber(&fci->begin[1]), 255);
}

TEST_F(TstrTest, IndexIsReadAsTheLowFiveBits) {
  const Slot slot(kRow, Hex("85CE0004 01020304 00000000 21222324 07FFFFE3"));
  ASSERT_TRUE(slot.ok);
  EXPECT_EQ(slot.sp.psfb.tstr.fci.begin[0].index, 3) << "the reserved bits are not looked at";
  EXPECT_EQ(ToHex(slot.bytes().substr(12)), ToHex(Hex("21222324 07000003")));
}

TEST_F(TstrTest, IndexIsWrittenAsAWholeOctet) {
  Add(Entry(0x21222324, 7, 0xE3));
  EXPECT_EQ(ToHex(bytes().substr(12)), ToHex(Hex("21222324 070000E3")));
}

TEST_F(TstrTest, IndexIsAtMost31) {
  ZunRtcpPsfbTstrEntry entry = Entry(1, 2, 3);
  EXPECT_TRUE(ZunRtcpPsfbTstrEntrySetIndex(&entry, 31));
  EXPECT_FALSE(ZunRtcpPsfbTstrEntrySetIndex(&entry, 32));
  EXPECT_FALSE(ZunRtcpPsfbTstrEntrySetIndex(&entry, 255));
  EXPECT_EQ(ZunRtcpPsfbTstrEntryGetIndex(&entry), 31);
}

TEST_F(TstrTest, ANonZeroMediaSourceIsWarnedOfAndKeptButWrittenAsZero) {
  LogCapture log;
  const Slot slot(kRow, Hex("85CE0004 01020304 00000005 21222324 07000003"));
  EXPECT_TRUE(slot.ok);
  log.ExpectOne(ZUN_LOG_WARNING, ZunLogRtcpFeedback_, "ZunRtcpPsfbTstrAssignFromBuffer",
                "Non-zero SSRC of media source in RTCP TSTR message");
  EXPECT_EQ(slot.sp.psfb.tstr.source, 5U);
  EXPECT_EQ(ToHex(slot.bytes()), ToHex(Hex("85CE0004 01020304 00000000 21222324 07000003")));
}

TEST_F(TstrTest, AMediaSourceIsWarnedOfBeforeTheFciIsLookedAt) {
  LogCapture log;
  const Slot slot(kRow, Hex("85CE0002 01020304 00000005"));
  EXPECT_FALSE(slot.ok);
  log.ExpectOne(ZUN_LOG_WARNING, ZunLogRtcpFeedback_, "ZunRtcpPsfbTstrAssignFromBuffer",
                "Non-zero SSRC of media source in RTCP TSTR message");
}

TEST_F(TstrTest, AMediaSourceOfZeroOrACutOneIsNotWarnedOf) {
  LogCapture log;
  EXPECT_TRUE(Slot(kRow, kTwo).ok);
  EXPECT_FALSE(Slot(kRow, Hex("85CE0002 01020304 000001")).ok);
  log.ExpectNone();
}

TEST_F(TstrTest, SettersOfAnEntryStore) {
  ZunRtcpPsfbTstrEntry entry = Entry(1, 2, 3);
  EXPECT_TRUE(ZunRtcpPsfbTstrEntrySetSsrc(&entry, 0xFFFFFFFF));
  EXPECT_TRUE(ZunRtcpPsfbTstrEntrySetSequenceNumber(&entry, 255));
  EXPECT_EQ(entry.ssrc, 0xFFFFFFFFU);
  EXPECT_EQ(entry.seqno, 255);
}

TEST_F(TstrTest, EntriesAreCopiedAsValues) {
  ZunRtcpPsfbTstrEntry entry = Entry(5, 6, 3);
  ZunRtcpPsfbTstrEntry copy;
  EXPECT_EQ(ZunRtcpPsfbTstrEntryConstructCopy(&copy, &entry), &copy);
  EXPECT_EQ(copy.ssrc, 5U);
  EXPECT_EQ(copy.seqno, 6);
  entry = Entry(8, 9, 4);
  EXPECT_EQ(ZunRtcpPsfbTstrEntryAssign(&copy, &entry), &copy);
  EXPECT_EQ(copy.ssrc, 8U);
  EXPECT_EQ(copy.seqno, 9);
  EXPECT_EQ(copy.index, 4);
  ZunRtcpPsfbTstrEntryDestruct(&copy);
  EXPECT_EQ(copy.ssrc, 8U);
}

TEST_F(TstrTest, WithoutEntriesItIsNeitherReadNorWritten) { ExpectNothingWithoutEntries<ZunRtcpPsfbTstr>(kRow, kTwo); }

TEST_F(TstrTest, CutAnywhereKeepsTheWholeEntries) {
  ExpectCutAnywhereKeepsTheWholeEntries<ZunRtcpPsfbTstr>(kRow, WithMediaSource(kTwo));
}

TEST_F(TstrTest, TwelveBytesOfFciFailAfterOneEntry) {
  ExpectTwelveBytesOfFciFailAfterOneEntry<ZunRtcpPsfbTstr>(kRow, kTwo);
}

TEST_F(TstrTest, EntriesThatFitAreReadBeforeARefusal) {
  ExpectEntriesThatFitAreReadBeforeARefusal<ZunRtcpPsfbTstr>(kRow, kTwo);
}

TEST_F(TstrTest, RefusedAssignLeavesNoEntries) {
  ExpectRefusedAssignLeavesNoEntries<ZunRtcpPsfbTstr, ZunRtcpPsfbTstrAssign>(kRow, kTwo);
}

TEST_F(TstrTest, KeepsTheRulesOfEveryRow) { ExpectTheRulesOfEveryRow(kRow, kTwo); }

}  // namespace
