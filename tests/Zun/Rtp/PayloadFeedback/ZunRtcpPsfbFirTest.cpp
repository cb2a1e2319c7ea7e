#include "Zun/Rtp/PayloadFeedback/ZunRtcpPsfbFir.h"

#include <gtest/gtest.h>

#include "tests/support/CodecControlChecks.h"

namespace {

using namespace test;

const Row kRow = TEST_ROW(ZunRtcpPsfbFir);

const std::string kTwo = Hex(R"(
    84 CE 0006    | version 2, FMT 4, type 206, 7 words
    01020304      | sender
    11121314      | media source
    21222324      | first entry: SSRC
    07 0000 00    | sequence number, reserved, reserved
    31323334      | second entry: SSRC
    FF 0000 00    | sequence number, reserved, reserved
)");

class FirTest : public ::testing::Test {
 protected:
  FirTest() {
    ZunRtcpPsfbFirConstructDefault(&fir_, allocator_);
    fir_.sender = 0x01020304;
    fir_.source = 0x11121314;
  }
  ~FirTest() override { ZunRtcpPsfbFirDestruct(&fir_); }

  static ZunRtcpPsfbFirEntry Entry(ZunRtpSourceId ssrc, ZunUint8 seqno) {
    ZunRtcpPsfbFirEntry entry;
    EXPECT_EQ(ZunRtcpPsfbFirEntryConstructFull(&entry, ssrc, seqno, nullptr), &entry);
    return entry;
  }
  void Add(const ZunRtcpPsfbFirEntry& entry) {
    ASSERT_TRUE(ZunVector_ZunRtcpPsfbFirEntryPushBack(ZunRtcpPsfbFirGetFci(&fir_), &entry));
  }
  std::string bytes() const { return Bytes(kRow, *reinterpret_cast<const ZunRtcpSubpacket*>(&fir_)); }

  TestAllocator allocator_;
  ZunRtcpPsfbFir fir_;
};

TEST_F(FirTest, ConstructDefaultIsEmpty) {
  ZunRtcpPsfbFir fir;
  ASSERT_EQ(ZunRtcpPsfbFirConstructDefault(&fir, allocator_), &fir);
  EXPECT_EQ(fir.type, 206);
  EXPECT_EQ(fir.fmt, 4);
  EXPECT_EQ(fir.sender, 0U);
  EXPECT_EQ(fir.source, 0U);
  EXPECT_TRUE(ZunVector_ZunRtcpPsfbFirEntryEmpty(ZunRtcpPsfbFirGetFci(&fir)));
  EXPECT_EQ(ZunRtcpPsfbFirGetAllocator(&fir), allocator_.get());
  EXPECT_EQ(allocator_.calls(), 0U);
  ZunRtcpPsfbFirDestruct(&fir);
}

TEST_F(FirTest, WritesGoldenBytes) {
  Add(Entry(0x21222324, 7));
  Add(Entry(0x31323334, 255));
  EXPECT_EQ(ToHex(bytes()), ToHex(kTwo));
}

TEST_F(FirTest, ReadsGoldenBytes) {
  const Parsed parsed(kTwo);
  ASSERT_TRUE(parsed.ok);
  ASSERT_EQ(ZunRtcpPsfbGetFeedbackMessageType(&parsed[0].psfb), ZUN_RTCPPSFB_TYPE_FIR);
  const ZunRtcpPsfbFir* const fir = ZunRtcpPsfbGetFir(&parsed[0].psfb);
  EXPECT_EQ(fir->sender, 0x01020304U);
  EXPECT_EQ(fir->source, 0x11121314U);
  const ZunVector_ZunRtcpPsfbFirEntry* const fci = ZunRtcpPsfbFirGetFci(fir);
  ASSERT_EQ(ZunVector_ZunRtcpPsfbFirEntrySize(fci), 2U);
  EXPECT_EQ(ZunRtcpPsfbFirEntryGetSsrc(&fci->begin[0]), 0x21222324U);
  EXPECT_EQ(ZunRtcpPsfbFirEntryGetSequenceNumber(&fci->begin[0]), 7);
  EXPECT_EQ(ZunRtcpPsfbFirEntryGetSsrc(&fci->begin[1]), 0x31323334U);
  EXPECT_EQ(ZunRtcpPsfbFirEntryGetSequenceNumber(&fci->begin[1]), 255);
}

TEST_F(FirTest, OneEntryIsTwentyBytes) {
  Add(Entry(0x11223344, 7));
  EXPECT_EQ(bytes().size(), 20U);
  EXPECT_EQ(ToHex(bytes().substr(12)), ToHex(Hex("11223344 07000000")));
}

TEST_F(FirTest, ReservedOctetsAreNotLookedAtAndWrittenAsZero) {
  const Slot slot(kRow, Hex("84CE0004 01020304 11121314 21222324 07FFFFFF"));
  ASSERT_TRUE(slot.ok);
  EXPECT_EQ(ToHex(slot.bytes().substr(12)), ToHex(Hex("21222324 07000000")));
}

TEST_F(FirTest, SettersOfAnEntryStore) {
  ZunRtcpPsfbFirEntry entry = Entry(1, 2);
  EXPECT_TRUE(ZunRtcpPsfbFirEntrySetSsrc(&entry, 0xFFFFFFFF));
  EXPECT_TRUE(ZunRtcpPsfbFirEntrySetSequenceNumber(&entry, 255));
  EXPECT_EQ(entry.ssrc, 0xFFFFFFFFU);
  EXPECT_EQ(entry.seqno, 255);
}

TEST_F(FirTest, EntriesAreCopiedAsValues) {
  ZunRtcpPsfbFirEntry entry = Entry(5, 6);
  ZunRtcpPsfbFirEntry copy;
  EXPECT_EQ(ZunRtcpPsfbFirEntryConstructCopy(&copy, &entry), &copy);
  EXPECT_EQ(copy.ssrc, 5U);
  EXPECT_EQ(copy.seqno, 6);
  entry = Entry(8, 9);
  EXPECT_EQ(ZunRtcpPsfbFirEntryAssign(&copy, &entry), &copy);
  EXPECT_EQ(copy.ssrc, 8U);
  EXPECT_EQ(copy.seqno, 9);
  ZunRtcpPsfbFirEntryDestruct(&copy);
  EXPECT_EQ(copy.ssrc, 8U);
}

TEST_F(FirTest, WithoutEntriesItIsNeitherReadNorWritten) { ExpectNothingWithoutEntries<ZunRtcpPsfbFir>(kRow, kTwo); }

TEST_F(FirTest, CutAnywhereKeepsTheWholeEntries) { ExpectCutAnywhereKeepsTheWholeEntries<ZunRtcpPsfbFir>(kRow, kTwo); }

TEST_F(FirTest, TwelveBytesOfFciFailAfterOneEntry) {
  ExpectTwelveBytesOfFciFailAfterOneEntry<ZunRtcpPsfbFir>(kRow, kTwo);
}

TEST_F(FirTest, EntriesThatFitAreReadBeforeARefusal) {
  ExpectEntriesThatFitAreReadBeforeARefusal<ZunRtcpPsfbFir>(kRow, kTwo);
}

TEST_F(FirTest, RefusedAssignLeavesNoEntries) {
  ExpectRefusedAssignLeavesNoEntries<ZunRtcpPsfbFir, ZunRtcpPsfbFirAssign>(kRow, kTwo);
}

TEST_F(FirTest, KeepsTheRulesOfEveryRow) { ExpectTheRulesOfEveryRow(kRow, kTwo); }

}  // namespace
