// The envelope of payload-specific feedback: which format serves which message type, and what happens across formats.
#include "Zun/Rtp/PayloadFeedback/ZunRtcpPsfb.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/Zun/Rtp/EnvelopeTests.h"

namespace {

using namespace test;

struct PsfbApi {
  static constexpr Level kLevel = Level::kPsfb;
  ENVELOPE_API(ZunRtcpPsfb)
};

const Row& kRow = kRowOf<ZunRtcpPsfb>;

// A message that every format reads and writes back unchanged: two slices, a bit string of six octets, one command.
std::string WithType(ZunRtcpPsfbType fmt) {
  return Subpacket(206, fmt, Hex(R"(
      01020304          | sender
      00000000          | media source
      00000007 01000000 | FCI
  )"));
}

const std::string kPli = WithType(ZUN_RTCPPSFB_TYPE_PLI);
const std::string kFir = WithType(ZUN_RTCPPSFB_TYPE_FIR);

TEST(ZunRtcpPsfb, TypesHaveTheirNumbers) {
  EXPECT_EQ(ZUN_RTCPPSFB_TYPE_Unknown, 0);
  EXPECT_EQ(ZUN_RTCPPSFB_TYPE_PLI, 1);
  EXPECT_EQ(ZUN_RTCPPSFB_TYPE_SLI, 2);
  EXPECT_EQ(ZUN_RTCPPSFB_TYPE_RPSI, 3);
  EXPECT_EQ(ZUN_RTCPPSFB_TYPE_FIR, 4);
  EXPECT_EQ(ZUN_RTCPPSFB_TYPE_TSTR, 5);
  EXPECT_EQ(ZUN_RTCPPSFB_TYPE_TSTA, 6);
  EXPECT_EQ(ZUN_RTCPPSFB_TYPE_AFB, 15);
}

TEST(ZunRtcpPsfb, TheMemberViewsAreTheUnion) {
  const ZunRtcpPsfb psfb = {};
  const void* const address = &psfb;
  EXPECT_EQ(ZunRtcpPsfbGetUnknown(&psfb), address);
#define EXPECT_VIEW(value, Kind, member, Getter) EXPECT_EQ(Getter(&psfb), address);
  ZUN_RTCPPSFB_KINDS(EXPECT_VIEW)
#undef EXPECT_VIEW
}

TEST(ZunRtcpPsfb, EveryMessageTypeFindsItsFormatAndComesBack) {
  for (ZunRtcpPsfbType fmt = 0; fmt <= 31; ++fmt) {
    SCOPED_TRACE(fmt);
    const Parsed parsed(WithType(fmt));
    ASSERT_TRUE(parsed.ok);
    EXPECT_EQ(ToHex(parsed.bytes()), ToHex(WithType(fmt)));
    ASSERT_EQ(ZunRtcpSubpacketGetType(&parsed[0]), ZUN_RTCPSUBPACKET_TYPE_PSFB);
    const ZunRtcpPsfb* const p = ZunRtcpSubpacketGetPsfb(&parsed[0]);
    EXPECT_EQ(ZunRtcpPsfbGetFeedbackMessageType(p), fmt);
    EXPECT_EQ(ZunRtcpPsfbGetSender(p), 0x01020304U);
    switch (fmt) {
      case 1:
        EXPECT_EQ(ZunRtcpPsfbGetPli(p)->profile_specific_ext.size, 8U);
        break;
      case 2:
        EXPECT_EQ(ZunVector_ZunRtcpPsfbSliItemSize(ZunRtcpPsfbSliGetItems(ZunRtcpPsfbGetSli(p))), 2U);
        break;
      case 3:
        EXPECT_EQ(ZunRtcpPsfbGetRpsi(p)->rpsi.size, 6U);
        break;
      case 4:
        EXPECT_EQ(ZunVector_ZunRtcpPsfbFirEntrySize(ZunRtcpPsfbFirGetFci(ZunRtcpPsfbGetFir(p))), 1U);
        break;
      case 5:
        EXPECT_EQ(ZunVector_ZunRtcpPsfbTstrEntrySize(ZunRtcpPsfbTstrGetFci(ZunRtcpPsfbGetTstr(p))), 1U);
        break;
      case 6:
        EXPECT_EQ(ZunVector_ZunRtcpPsfbTstaEntrySize(ZunRtcpPsfbTstaGetFci(ZunRtcpPsfbGetTsta(p))), 1U);
        break;
      case 15:  // tested with the application-layer kinds
        break;
      default:
        EXPECT_EQ(ZunRtcpPsfbUnknownGetData(ZunRtcpPsfbGetUnknown(p))->size, 8U);
    }
  }
}

TEST(ZunRtcpPsfb, CommonFieldsAreReachedThroughAnyFormat) {
  for (ZunRtcpPsfbType fmt = 0; fmt <= 31; ++fmt) {
    Received message(kRow, WithType(fmt));
    ASSERT_TRUE(message.ok);
    ZunRtcpPsfb* const p = &message.sp()->psfb;
    EXPECT_TRUE(ZunRtcpPsfbSetSender(p, 0xFFFFFFFF));
    EXPECT_EQ(ZunRtcpPsfbGetSender(p), 0xFFFFFFFFU);
    EXPECT_EQ(ZunRtcpPsfbGetMediaSource(p), 0U);
    EXPECT_TRUE(ZunRtcpPsfbSetMediaSource(p, 5));
    EXPECT_EQ(ZunRtcpPsfbGetMediaSource(p), 5U);
  }
}

TEST(ZunRtcpPsfb, NeighboursInACompoundPacketKeepTheirBytes) {
  std::string all;
  for (ZunRtcpPsfbType fmt = 0; fmt <= 31; ++fmt) all += WithType(fmt) + kFir;
  Parsed parsed(all);
  ASSERT_TRUE(parsed.ok);
  EXPECT_EQ(parsed.count(), 64U);
  EXPECT_EQ(ToHex(parsed.bytes()), ToHex(all));
  ASSERT_TRUE(parsed.Read(kFir + kPli + Golden("PsfbUnknown")));
  EXPECT_EQ(ToHex(parsed.bytes()), ToHex(kFir + kPli + Golden("PsfbUnknown")));
}

TEST(ZunRtcpPsfb, AssignAcrossFormatsTakesTheAllocatorOfTheSourceWhereTheDestinationHasNone) {
  TestAllocator other;
  const Received source(kRow, kPli, other);
  ZunRtcpPsfb target;
  ZunRtcpPsfbFirConstructDefault(&target.fir, nullptr);
  ASSERT_EQ(ZunRtcpPsfbAssign(&target, &source.sp()->psfb), &target);
  EXPECT_EQ(ZunRtcpPsfbGetAllocator(&target), other.get());
  ZunRtcpPsfbDestruct(&target);
}

TEST(ZunRtcpPsfb, AFailedRebuildOfASubpacketLeavesAnEmptyUnknownOfTheEnvelopeToo) {
  TestAllocator mine;
  Received target(kRow, kFir, mine);
  const Received source(kRow, kPli);
  mine.RefuseFrom(0);
  EXPECT_EQ(ZunRtcpSubpacketAssign(target.sp(), source.sp()), nullptr);
  const ZunRtcpPsfbUnknown& left = target.sp()->psfb.unk;
  EXPECT_EQ(left.type, 206);
  EXPECT_EQ(left.fmt, ZUN_RTCPPSFB_TYPE_Unknown);
  EXPECT_EQ(left.sender, 0U);
  EXPECT_EQ(left.source, 0U);
  EXPECT_EQ(left.data.size, 0U);
  EXPECT_EQ(left.data.allocator, mine.get());
}

TEST(ZunRtcpPsfb, AFailedReadAcrossFormatsLeavesAnObjectOfTheNewFormat) {
  TestAllocator mine;
  Received message(kRow, kPli, mine);
  const ZunRtcpPsfbFir& fir = message.sp()->psfb.fir;
  EXPECT_FALSE(message.Read(kFir.substr(0, 12)));
  EXPECT_EQ(fir.fmt, ZUN_RTCPPSFB_TYPE_FIR);
  EXPECT_EQ(fir.sender, 0x01020304U);
  EXPECT_EQ(ZunVector_ZunRtcpPsfbFirEntrySize(&fir.fci), 0U);
  EXPECT_EQ(mine.live_blocks(), 0U);
  ASSERT_TRUE(message.Read(kFir));
  EXPECT_EQ(ZunVector_ZunRtcpPsfbFirEntrySize(&fir.fci), 1U);
}

TEST(ZunRtcpPsfb, FailuresOfAFormatArePassedBack) {
  EXPECT_FALSE(Received(kRow, kFir.substr(0, 16)).ok);
  const Received empty(kRow, kFir.substr(0, 12));
  Text out;
  EXPECT_FALSE(ZunRtcpPsfbWritePacket(empty.sp(), out, 0));
  EXPECT_EQ(out->size, 12U);
  EXPECT_EQ(ZunRtcpPsfbGetPacketLength(empty.sp()), 12U);
}

}  // namespace

namespace test {
INSTANTIATE_TYPED_TEST_SUITE_P(ZunRtcpPsfb, EnvelopeTest, PsfbApi);
}
