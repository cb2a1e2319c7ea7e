#include "Zun/Rtp/PayloadFeedback/ZunRtcpPsfbPli.h"

#include <gtest/gtest.h>

#include "tests/support/RowChecks.h"

namespace {

using namespace test;

const Row kRow = TEST_ROW(ZunRtcpPsfbPli);

const std::string kPlain = Hex(R"(
    81 CE 0002    | version 2, FMT 1, type 206, 3 words
    01020304      | sender
    11121314      | media source
)");
const std::string kExtended = Hex(R"(
    81 CE 0004    | version 2, FMT 1, type 206, 5 words
    01020304      | sender
    11121314      | media source
    A1A2A3A4 A5A6A7A8 | extension
)");

class PliTest : public ::testing::Test {
 protected:
  PliTest() { ZunRtcpPsfbPliConstructFull(&pli_, 0x01020304, 0x11121314, allocator_); }
  ~PliTest() override { ZunRtcpPsfbPliDestruct(&pli_); }
  const ZunRtcpSubpacket& sp() const { return *reinterpret_cast<const ZunRtcpSubpacket*>(&pli_); }

  TestAllocator allocator_;
  ZunRtcpPsfbPli pli_;
};

TEST_F(PliTest, ConstructDefaultIsEmpty) {
  ZunRtcpPsfbPli pli;
  ASSERT_EQ(ZunRtcpPsfbPliConstructDefault(&pli, allocator_), &pli);
  EXPECT_EQ(pli.type, 206);
  EXPECT_EQ(pli.fmt, 1);
  EXPECT_EQ(pli.sender, 0U);
  EXPECT_EQ(pli.source, 0U);
  EXPECT_EQ(ZunRtcpPsfbPliGetProfileSpecificExt(&pli)->size, 0U);
  EXPECT_EQ(ZunRtcpPsfbPliGetAllocator(&pli), allocator_.get());
  EXPECT_EQ(allocator_.calls(), 0U);
  ZunRtcpPsfbPliDestruct(&pli);
}

TEST_F(PliTest, WritesGoldenBytes) {
  EXPECT_EQ(ToHex(Bytes(kRow, sp())), ToHex(kPlain));
  ASSERT_TRUE(ZunRtcpPsfbPliSetProfileSpecificExt(&pli_, Text(Hex("A1A2A3A4 A5A6A7A8"))));
  EXPECT_EQ(ToHex(Bytes(kRow, sp())), ToHex(kExtended));
}

TEST_F(PliTest, ReadsGoldenBytes) {
  const Parsed parsed(kExtended);
  ASSERT_TRUE(parsed.ok);
  ASSERT_EQ(ZunRtcpPsfbGetFeedbackMessageType(&parsed[0].psfb), ZUN_RTCPPSFB_TYPE_PLI);
  const ZunRtcpPsfbPli* const pli = ZunRtcpPsfbGetPli(ZunRtcpSubpacketGetPsfb(&parsed[0]));
  EXPECT_EQ(pli->type, 206);
  EXPECT_EQ(pli->sender, 0x01020304U);
  EXPECT_EQ(pli->source, 0x11121314U);
  EXPECT_EQ(Str(ZunRtcpPsfbPliGetProfileSpecificExt(pli)), Hex("A1A2A3A4 A5A6A7A8"));
}

TEST_F(PliTest, AnExtensionOfFourBytesComesBack) {
  ExpectComesBackUnchanged(kPlain);
  ExpectComesBackUnchanged(Hex("81CE0003 01020304 11121314 A1A2A3A4"));
  ExpectComesBackUnchanged(kExtended);
}

TEST_F(PliTest, ExtensionMustBeWholeWords) {
  ASSERT_TRUE(ZunRtcpPsfbPliSetProfileSpecificExt(&pli_, Text("abcd")));
  for (const char* const odd : {"a", "ab", "abc", "abcde", "abcdefg"}) {
    EXPECT_FALSE(ZunRtcpPsfbPliSetProfileSpecificExt(&pli_, Text(odd))) << odd;
    EXPECT_EQ(Str(&pli_.profile_specific_ext), "abcd");
  }
  EXPECT_TRUE(ZunRtcpPsfbPliSetProfileSpecificExt(&pli_, Text("")));
  EXPECT_EQ(pli_.profile_specific_ext.size, 0U);
}

TEST_F(PliTest, SizeOfAReadExtensionIsNotChecked) {
  const Slot slot(kRow, kPlain + "ab");
  EXPECT_TRUE(slot.ok);
  EXPECT_EQ(Str(&slot.sp.psfb.pli.profile_specific_ext), "ab");
}

TEST_F(PliTest, RefusedExtensionLeavesTheOldOne) {
  ASSERT_TRUE(ZunRtcpPsfbPliSetProfileSpecificExt(&pli_, Text("abcd")));
  allocator_.RefuseFrom(0);
  EXPECT_FALSE(ZunRtcpPsfbPliSetProfileSpecificExt(&pli_, Text("0123456789abcdef0123456789abcdef")));
  EXPECT_EQ(Str(&pli_.profile_specific_ext), "abcd");
}

TEST_F(PliTest, RefusedAssignLeavesTheOldObject) {
  const Slot source(kRow, kExtended);
  ZunRtcpPsfbPli target;
  ZunRtcpPsfbPliConstructFull(&target, 7, 8, allocator_);
  allocator_.RefuseFrom(0);
  EXPECT_EQ(ZunRtcpPsfbPliAssign(&target, &source.sp.psfb.pli), nullptr);
  EXPECT_EQ(target.sender, 7U);
  EXPECT_EQ(target.source, 8U);
  EXPECT_EQ(target.profile_specific_ext.size, 0U);
  ZunRtcpPsfbPliDestruct(&target);
}

TEST_F(PliTest, CutAnywhereKeepsWhatWasRead) {
  ForEveryCut(kRow, kExtended, [](const Slot& slot, ZunSizeT size, bool end_is_beyond) {
    const ZunRtcpPsfbPli& pli = slot.sp.psfb.pli;
    EXPECT_EQ(slot.ok, size >= 8 && !end_is_beyond);
    EXPECT_EQ(pli.sender, size >= 4 ? 0x01020304U : 0U);
    EXPECT_EQ(pli.source, size >= 8 ? 0x11121314U : 0U);
    EXPECT_EQ(pli.profile_specific_ext.size, slot.ok ? size - 8 : 0U);
  });
}

TEST_F(PliTest, KeepsTheRulesOfEveryRow) {
  const std::vector<std::string> wires = {kExtended, Hex("81CE0003 00000007 00000008 B1B2B3B4"), kPlain};
  ExpectAllocatorRules(kRow, kExtended, wires[1]);
  ExpectRefusalsLoseNothing(kRow, kExtended, wires[1]);
  ExpectFailedWriteLeavesABeginning(kRow, kExtended, 12, 20);
  ExpectReadsInPlaceAsFresh(kRow, wires);
  ExpectWritesInPlace(kRow, kExtended);
}

}  // namespace
