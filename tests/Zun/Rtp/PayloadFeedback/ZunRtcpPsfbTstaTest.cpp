#include "Zun/Rtp/PayloadFeedback/ZunRtcpPsfbTsta.h"

#include "tests/Zun/Rtp/PayloadFeedback/CodecControlTests.h"

namespace {

using namespace test;

using Tsta = TEST_OBJECT(ZunRtcpPsfbTsta);

const Row& kRow = kRowOf<ZunRtcpPsfbTsta>;

struct TstaApi {
  static constexpr ZunRtcpPsfbType kType = 6;
  static constexpr char kName[] = "Tsta";
  static constexpr ZunRtpSourceId kMediaSource = kSource;
  static constexpr bool kHasIndex = true;
  static constexpr auto View = ZunRtcpPsfbGetTsta;
  static constexpr auto GetIndex = ZunRtcpPsfbTstaEntryGetIndex;
  CODEC_CONTROL_API(ZunRtcpPsfbTsta)

  static Entry Construct(ZunRtpSourceId ssrc, ZunUint8 seqno, ZunUint8 index) {
    Entry entry;
    EXPECT_EQ(ZunRtcpPsfbTstaEntryConstructFull(&entry, ssrc, seqno, index, nullptr), &entry);
    return entry;
  }
};

TEST(ZunRtcpPsfbTsta, IndexIsReadAsTheLowFiveBits) {
  const Received p(kRow, Psfb(6, Hex("21222324 07FFFFE3")));
  ASSERT_TRUE(p.ok);
  EXPECT_EQ(p.sp()->psfb.tsta.fci.begin[0].index, 3) << "the reserved bits are not looked at";
  EXPECT_EQ(ToHex(p.bytes().substr(12)), ToHex(Hex("21222324 07000003")));
}

TEST(ZunRtcpPsfbTsta, IndexIsWrittenAsAWholeOctet) {
  Tsta p;
  const ZunRtcpPsfbTstaEntry entry = TstaApi::Construct(0x21222324, 7, 0xE3);
  ASSERT_TRUE(ZunVector_ZunRtcpPsfbTstaEntryPushBack(ZunRtcpPsfbTstaGetFci(p), &entry));
  EXPECT_EQ(ToHex(p.bytes().substr(12)), ToHex(Hex("21222324 070000E3")));
}

TEST(ZunRtcpPsfbTsta, IndexIsAtMost31) {
  ZunRtcpPsfbTstaEntry entry = TstaApi::Construct(1, 2, 3);
  EXPECT_TRUE(ZunRtcpPsfbTstaEntrySetIndex(&entry, 31));
  EXPECT_FALSE(ZunRtcpPsfbTstaEntrySetIndex(&entry, 32));
  EXPECT_FALSE(ZunRtcpPsfbTstaEntrySetIndex(&entry, 255));
  EXPECT_EQ(ZunRtcpPsfbTstaEntryGetIndex(&entry), 31);
}

}  // namespace

namespace test {
INSTANTIATE_TYPED_TEST_SUITE_P(ZunRtcpPsfbTsta, CodecControlTest, TstaApi);
}
