#include "Zun/Rtp/PayloadFeedback/ZunRtcpPsfbPli.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/Samples.h"

namespace {

using namespace test;

using Pli = TEST_OBJECT(ZunRtcpPsfbPli);

const Row& kRow = kRowOf<ZunRtcpPsfbPli>;

TEST(ZunRtcpPsfbPli, ConstructDefaultIsEmpty) {
  TestAllocator allocator;
  const Pli pli(allocator);
  EXPECT_EQ(pli->type, 206);
  EXPECT_EQ(pli->fmt, 1);
  EXPECT_EQ(pli->sender, 0U);
  EXPECT_EQ(pli->source, 0U);
  EXPECT_EQ(ZunRtcpPsfbPliGetProfileSpecificExt(pli)->size, 0U);
  EXPECT_EQ(pli->profile_specific_ext.allocator, allocator.get());
  EXPECT_EQ(allocator.calls(), 0U);
}

TEST(ZunRtcpPsfbPli, WritesGoldenBytes) {
  TestAllocator allocator;
  Pli pli;
  ASSERT_EQ(ZunRtcpPsfbPliConstructFull(pli, kSender, kSource, allocator), pli.get());
  EXPECT_EQ(pli.allocator(), allocator.get());
  EXPECT_EQ(ToHex(pli.bytes()), ToHex(Golden("Pli")));
  ASSERT_TRUE(ZunRtcpPsfbPliSetProfileSpecificExt(pli, Text(Hex("A1A2A3A4 A5A6A7A8"))));
  EXPECT_EQ(ToHex(pli.bytes()), ToHex(Golden("PliWithExtension")));
  ZunRtcpPsfbPliDestruct(pli);
}

TEST(ZunRtcpPsfbPli, ReadsGoldenBytes) {
  const Parsed parsed(Golden("PliWithExtension"));
  ASSERT_TRUE(parsed.ok);
  ASSERT_EQ(ZunRtcpPsfbGetFeedbackMessageType(&parsed[0].psfb), ZUN_RTCPPSFB_TYPE_PLI);
  const ZunRtcpPsfbPli* const pli = ZunRtcpPsfbGetPli(ZunRtcpSubpacketGetPsfb(&parsed[0]));
  EXPECT_EQ(pli->type, 206);
  EXPECT_EQ(pli->sender, kSender);
  EXPECT_EQ(pli->source, kSource);
  EXPECT_EQ(Str(ZunRtcpPsfbPliGetProfileSpecificExt(pli)), Hex("A1A2A3A4 A5A6A7A8"));
}

TEST(ZunRtcpPsfbPli, ExtensionMustBeWholeWords) {
  Pli pli;
  ASSERT_TRUE(ZunRtcpPsfbPliSetProfileSpecificExt(pli, Text("abcd")));
  for (const char* const odd : {"a", "ab", "abc", "abcde", "abcdefg"}) {
    EXPECT_FALSE(ZunRtcpPsfbPliSetProfileSpecificExt(pli, Text(odd))) << odd;
    EXPECT_EQ(Str(&pli->profile_specific_ext), "abcd");
  }
  EXPECT_TRUE(ZunRtcpPsfbPliSetProfileSpecificExt(pli, Text("")));
  EXPECT_EQ(pli->profile_specific_ext.size, 0U);
}

TEST(ZunRtcpPsfbPli, SizeOfAReadExtensionIsNotChecked) {
  const Received p(kRow, Golden("Pli") + "ab");
  EXPECT_TRUE(p.ok);
  EXPECT_EQ(Str(&p.sp()->psfb.pli.profile_specific_ext), "ab");
}

TEST(ZunRtcpPsfbPli, RefusedExtensionLeavesTheOldOne) {
  TestAllocator allocator;
  Pli pli(allocator);
  ASSERT_TRUE(ZunRtcpPsfbPliSetProfileSpecificExt(pli, Text("abcd")));
  allocator.RefuseFrom(0);
  EXPECT_FALSE(ZunRtcpPsfbPliSetProfileSpecificExt(pli, Text("0123456789abcdef0123456789abcdef")));
  EXPECT_EQ(Str(&pli->profile_specific_ext), "abcd");
}

TEST(ZunRtcpPsfbPli, RefusedAssignLeavesTheOldObject) {
  const Received source(kRow, Golden("PliWithExtension"));
  TestAllocator allocator;
  Pli target(allocator);
  target->sender = 7;
  target->source = 8;
  allocator.RefuseFrom(0);
  EXPECT_EQ(ZunRtcpPsfbPliAssign(target, &source.sp()->psfb.pli), nullptr);
  EXPECT_EQ(target->sender, 7U);
  EXPECT_EQ(target->source, 8U);
  EXPECT_EQ(target->profile_specific_ext.size, 0U);
}

TEST(ZunRtcpPsfbPli, CutAnywhereKeepsWhatWasRead) {
  ForEveryCut(kRow, Golden("PliWithExtension"), [](const Received& p, ZunSizeT size, bool end_is_beyond) {
    const ZunRtcpPsfbPli& pli = p.sp()->psfb.pli;
    EXPECT_EQ(p.ok, size >= 8 && !end_is_beyond);
    EXPECT_EQ(pli.sender, size >= 4 ? kSender : 0U);
    EXPECT_EQ(pli.source, size >= 8 ? kSource : 0U);
    EXPECT_EQ(pli.profile_specific_ext.size, p.ok ? size - 8 : 0U);
  });
}

}  // namespace
