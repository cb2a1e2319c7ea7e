#include "Zun/Rtp/Reports/ZunRtcpSr.h"

#include "tests/Zun/Rtp/Reports/ReportTests.h"

namespace {

using namespace test;

struct SrApi {
  static constexpr ZunRtcpSubpacketType kType = 200;
  static constexpr ZunSizeT kFixedSize = 28;
  REPORT_API(ZunRtcpSr)

  static std::string kFixed() {
    return Hex(R"(
        01020304    | sender
        E1E2E3E4    | NTP timestamp, seconds
        F1F2F3F4    | NTP timestamp, fraction
        11121314    | RTP timestamp
        21222324    | packets sent
        31323334    | octets sent
    )");
  }
  static void ExpectFields(const ZunRtcpSr& sr, ZunUint32 sender, ZunUint64 ntp, ZunUint32 rtp, ZunUint32 packets,
                           ZunUint32 octets) {
    EXPECT_EQ(ZunRtcpSrGetSource(&sr), sender);
    EXPECT_EQ(ZunRtcpSrGetNtpTimestamp(&sr), ntp);
    EXPECT_EQ(ZunRtcpSrGetRtpTimestamp(&sr), rtp);
    EXPECT_EQ(ZunRtcpSrGetSenderPacketCount(&sr), packets);
    EXPECT_EQ(ZunRtcpSrGetSenderOctetCount(&sr), octets);
  }
  static void ExpectZero(const ZunRtcpSr& sr) { ExpectFields(sr, 0, 0, 0, 0, 0); }
  static void ExpectFixed(const ZunRtcpSr& sr) { ExpectCut(sr, 24); }
  // Each field is stored once all of it is there.
  static void ExpectCut(const ZunRtcpSr& sr, ZunSizeT size) {
    ExpectFields(sr, size >= 4 ? 0x01020304 : 0, size >= 12 ? 0xE1E2E3E4F1F2F3F4 : 0, size >= 16 ? 0x11121314 : 0,
                 size >= 20 ? 0x21222324 : 0, size >= 24 ? 0x31323334 : 0);
  }
};

TEST(ZunRtcpSr, IsBuiltAndWritten) {
  ZunRtcpSubpacket sp;
  ASSERT_EQ(ZunRtcpSrConstructDefault(&sp.sr, ZunAllocatorGetSystem()), &sp.sr);
  EXPECT_TRUE(ZunRtcpSrSetSource(&sp.sr, 0x01020304));
  EXPECT_TRUE(ZunRtcpSrSetNtpTimestamp(&sp.sr, 0xE1E2E3E4F1F2F3F4));
  EXPECT_TRUE(ZunRtcpSrSetRtpTimestamp(&sp.sr, 0x11121314));
  EXPECT_TRUE(ZunRtcpSrSetSenderPacketCount(&sp.sr, 0x21222324));
  EXPECT_TRUE(ZunRtcpSrSetSenderOctetCount(&sp.sr, 0x31323334));
  SrApi::ExpectFixed(sp.sr);
  EXPECT_TRUE(ZunRtcpSrSetReportBlocks(&sp.sr, Blocks(1)));
  EXPECT_TRUE(ZunRtcpSrSetProfileSpecificExt(&sp.sr, Text("ext.")));
  EXPECT_EQ(ToHex(Written(sp)), ToHex(Golden("SrOneBlock")));
  ZunRtcpSubpacketDestruct(&sp);
}

TEST(ZunRtcpSr, OfZerosIsSevenWords) {
  ZunRtcpSubpacket sp;
  ZunRtcpSrConstructDefault(&sp.sr, ZunAllocatorGetSystem());
  EXPECT_EQ(ToHex(Written(sp)), "80C80006" + std::string(48, '0'));
}

TEST(ZunRtcpSr, IsReachedThroughTheCompoundPacket) {
  const Parsed parsed(Hex("80C80006") + SrApi::kFixed());
  ASSERT_TRUE(parsed.ok);
  ASSERT_EQ(ZunRtcpSubpacketGetType(&parsed[0]), 200);
  SrApi::ExpectFixed(*ZunRtcpSubpacketGetSr(&parsed[0]));
}

}  // namespace

namespace test {
INSTANTIATE_TYPED_TEST_SUITE_P(ZunRtcpSr, ReportTest, SrApi);
}
