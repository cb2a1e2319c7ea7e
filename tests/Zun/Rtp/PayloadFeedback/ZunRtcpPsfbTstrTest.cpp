#include "Zun/Rtp/PayloadFeedback/ZunRtcpPsfbTstr.h"

#include "tests/Zun/Rtp/PayloadFeedback/CodecControlTests.h"

namespace {

using namespace test;

using Tstr = TEST_OBJECT(ZunRtcpPsfbTstr);

const Row& kRow = kRowOf<ZunRtcpPsfbTstr>;

struct TstrApi {
  static constexpr ZunRtcpPsfbType kType = 5;
  static constexpr char kName[] = "Tstr";
  static constexpr ZunRtpSourceId kMediaSource = 0;
  static constexpr bool kHasIndex = true;
  static constexpr auto View = ZunRtcpPsfbGetTstr;
  static constexpr auto GetIndex = ZunRtcpPsfbTstrEntryGetIndex;
  CODEC_CONTROL_API(ZunRtcpPsfbTstr)

  static Entry Construct(ZunRtpSourceId ssrc, ZunUint8 seqno, ZunUint8 index) {
    Entry entry;
    EXPECT_EQ(ZunRtcpPsfbTstrEntryConstructFull(&entry, ssrc, seqno, index, nullptr), &entry);
    return entry;
  }
};

TEST(ZunRtcpPsfbTstr, IndexIsReadAsTheLowFiveBits) {
  const Received p(kRow, Psfb(5, Hex("21222324 07FFFFE3")));
  ASSERT_TRUE(p.ok);
  EXPECT_EQ(p.sp()->psfb.tstr.fci.begin[0].index, 3) << "the reserved bits are not looked at";
  EXPECT_EQ(ToHex(p.bytes().substr(12)), ToHex(Hex("21222324 07000003")));
}

TEST(ZunRtcpPsfbTstr, IndexIsWrittenAsAWholeOctet) {
  Tstr p;
  const ZunRtcpPsfbTstrEntry entry = TstrApi::Construct(0x21222324, 7, 0xE3);
  ASSERT_TRUE(ZunVector_ZunRtcpPsfbTstrEntryPushBack(ZunRtcpPsfbTstrGetFci(p), &entry));
  EXPECT_EQ(ToHex(p.bytes().substr(12)), ToHex(Hex("21222324 070000E3")));
}

TEST(ZunRtcpPsfbTstr, IndexIsAtMost31) {
  ZunRtcpPsfbTstrEntry entry = TstrApi::Construct(1, 2, 3);
  EXPECT_TRUE(ZunRtcpPsfbTstrEntrySetIndex(&entry, 31));
  EXPECT_FALSE(ZunRtcpPsfbTstrEntrySetIndex(&entry, 32));
  EXPECT_FALSE(ZunRtcpPsfbTstrEntrySetIndex(&entry, 255));
  EXPECT_EQ(ZunRtcpPsfbTstrEntryGetIndex(&entry), 31);
}

constexpr char kWarning[] = "Non-zero SSRC of media source in RTCP TSTR message";

TEST(ZunRtcpPsfbTstr, ANonZeroMediaSourceIsWarnedOfAndKeptButWrittenAsZero) {
  LogCapture log;
  const Received p(kRow, Hex("85CE0004 01020304 00000005 21222324 07000003"));
  EXPECT_TRUE(p.ok);
  log.ExpectOne(ZUN_LOG_WARNING, ZunLogRtcpFeedback_, "ZunRtcpPsfbTstrAssignFromBuffer", kWarning);
  EXPECT_EQ(p.sp()->psfb.tstr.source, 5U);
  EXPECT_EQ(ToHex(p.bytes()), ToHex(Hex("85CE0004 01020304 00000000 21222324 07000003")));
}

TEST(ZunRtcpPsfbTstr, AMediaSourceIsWarnedOfBeforeTheFciIsLookedAt) {
  LogCapture log;
  EXPECT_FALSE(Received(kRow, Hex("85CE0002 01020304 00000005")).ok);
  log.ExpectOne(ZUN_LOG_WARNING, ZunLogRtcpFeedback_, "ZunRtcpPsfbTstrAssignFromBuffer", kWarning);
}

TEST(ZunRtcpPsfbTstr, AMediaSourceIsWarnedOfWhenItIsReadOverAnother) {
  const std::string without_source = Hex("85CE0004 01020304 00000000 21222324 07000003");
  Received p(kRow, without_source);  // from now on there is room for the entry
  for (const char* const source : {"00000001", "00000005"}) {
    LogCapture log;
    EXPECT_TRUE(p.Read(Hex(std::string("85CE0004 01020304") + source + "21222324 07000003")));
    log.ExpectOne(ZUN_LOG_WARNING, ZunLogRtcpFeedback_, "ZunRtcpPsfbTstrAssignFromBuffer", kWarning);
    EXPECT_TRUE(p.Read(without_source));
    log.ExpectNone();
  }
}

TEST(ZunRtcpPsfbTstr, AMediaSourceOfZeroOrACutOneIsNotWarnedOf) {
  LogCapture log;
  EXPECT_TRUE(Received(kRow, Golden("TstrTwoEntries")).ok);
  EXPECT_FALSE(Received(kRow, Hex("85CE0002 01020304 000001")).ok);
  log.ExpectNone();
}

}  // namespace

namespace test {
INSTANTIATE_TYPED_TEST_SUITE_P(ZunRtcpPsfbTstr, CodecControlTest, TstrApi);
}
