#include "Zun/Rtp/PayloadFeedback/ZunRtcpPsfbFir.h"

#include "tests/Zun/Rtp/PayloadFeedback/CodecControlTests.h"

namespace {

using namespace test;

struct FirApi {
  static constexpr ZunRtcpPsfbType kType = 4;
  static constexpr char kName[] = "Fir";
  static constexpr ZunRtpSourceId kMediaSource = kSource;
  static constexpr bool kHasIndex = false;
  static constexpr auto View = ZunRtcpPsfbGetFir;
  CODEC_CONTROL_API(ZunRtcpPsfbFir)

  static Entry Construct(ZunRtpSourceId ssrc, ZunUint8 seqno, ZunUint8) {
    Entry entry;
    EXPECT_EQ(ZunRtcpPsfbFirEntryConstructFull(&entry, ssrc, seqno, nullptr), &entry);
    return entry;
  }
};

TEST(ZunRtcpPsfbFir, ReservedOctetsAreNotLookedAtAndWrittenAsZero) {
  const Received p(kRowOf<ZunRtcpPsfbFir>, Psfb(4, Hex("21222324 07FFFFFF")));
  ASSERT_TRUE(p.ok);
  EXPECT_EQ(ToHex(p.bytes().substr(12)), ToHex(Hex("21222324 07000000")));
}

}  // namespace

namespace test {
INSTANTIATE_TYPED_TEST_SUITE_P(ZunRtcpPsfbFir, CodecControlTest, FirApi);
}
