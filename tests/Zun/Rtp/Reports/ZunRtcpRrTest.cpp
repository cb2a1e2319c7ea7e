#include "Zun/Rtp/Reports/ZunRtcpRr.h"

#include "tests/Zun/Rtp/Reports/ReportTests.h"

namespace {

using namespace test;

struct RrApi {
  static constexpr ZunRtcpSubpacketType kType = 201;
  static constexpr ZunSizeT kFixedSize = 8;
  REPORT_API(ZunRtcpRr)

  static std::string kFixed() { return Hex("01020304  | sender"); }
  static void ExpectZero(const ZunRtcpRr& rr) { EXPECT_EQ(ZunRtcpRrGetSource(&rr), 0U); }
  static void ExpectFixed(const ZunRtcpRr& rr) { EXPECT_EQ(ZunRtcpRrGetSource(&rr), 0x01020304U); }
  static void ExpectCut(const ZunRtcpRr& rr, ZunSizeT size) { size >= 4 ? ExpectFixed(rr) : ExpectZero(rr); }
};

TEST(ZunRtcpRr, IsBuiltAndWritten) {
  ZunRtcpSubpacket sp;
  ASSERT_EQ(ZunRtcpRrConstructDefault(&sp.rr, ZunAllocatorGetSystem()), &sp.rr);
  EXPECT_TRUE(ZunRtcpRrSetSource(&sp.rr, 0x01020304));
  EXPECT_TRUE(ZunRtcpRrSetReportBlocks(&sp.rr, Blocks(1)));
  EXPECT_TRUE(ZunRtcpRrSetProfileSpecificExt(&sp.rr, Text("ext.")));
  EXPECT_EQ(ToHex(Written(sp)), ToHex(Golden("RrOneBlock")));
  ZunRtcpSubpacketDestruct(&sp);
}

TEST(ZunRtcpRr, OfZerosIsTwoWords) {
  ZunRtcpSubpacket sp;
  ZunRtcpRrConstructDefault(&sp.rr, ZunAllocatorGetSystem());
  EXPECT_EQ(ToHex(Written(sp)), "80C9000100000000");
}

TEST(ZunRtcpRr, IsReachedThroughTheCompoundPacket) {
  const Parsed parsed(Hex("80C90001 01020304"));
  ASSERT_TRUE(parsed.ok);
  ASSERT_EQ(ZunRtcpSubpacketGetType(&parsed[0]), 201);
  RrApi::ExpectFixed(*ZunRtcpSubpacketGetRr(&parsed[0]));
}

// The destination keeps its allocator when its kind changes.
TEST(ZunRtcpRr, BecomesASenderReportWithItsOwnAllocator) {
  TestAllocator mine;
  TestAllocator other;
  ZunRtcpSubpacket rr;
  ZunRtcpRrConstructDefault(&rr.rr, mine);
  ASSERT_TRUE(ZunRtcpRrSetReportBlocks(&rr.rr, Blocks(1)));
  ZunRtcpSubpacket sr;
  ZunRtcpSrConstructDefault(&sr.sr, other);
  ASSERT_TRUE(ZunRtcpSrSetReportBlocks(&sr.sr, Blocks(2)));
  ASSERT_EQ(ZunRtcpSubpacketAssign(&rr, &sr), &rr);
  EXPECT_EQ(ZunRtcpSubpacketGetType(&rr), 200);
  EXPECT_EQ(ZunRtcpSrGetAllocator(&rr.sr), mine.get());
  EXPECT_EQ(ToHex(Written(rr)), ToHex(Written(sr)));
  ZunRtcpSubpacketDestruct(&rr);
  ZunRtcpSubpacketDestruct(&sr);
}

}  // namespace

namespace test {
INSTANTIATE_TYPED_TEST_SUITE_P(ZunRtcpRr, ReportTest, RrApi);
}
