#include "Zun/Rtp/ApplicationFeedback/ZunRtcpPsfbAfb.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "tests/Zun/Rtp/EnvelopeTests.h"
#include "tests/support/LogCapture.h"

namespace {

using namespace test;

struct AfbApi {
  static constexpr Level kLevel = Level::kAfb;
  ENVELOPE_API(ZunRtcpPsfbAfb)
};

const Row& kRow = kRowOf<ZunRtcpPsfbAfb>;

TEST(ZunRtcpPsfbAfb, TypesHaveTheirNumbers) {
  EXPECT_EQ(ZUN_RTCPPSFBAFB_TYPE_Unknown, 0);
  EXPECT_EQ(ZUN_RTCPPSFBAFB_TYPE_ABAFB, 1);
  EXPECT_EQ(ZUN_RTCPPSFBAFB_TYPE_ALBR, 2);
  EXPECT_EQ(ZUN_RTCPPSFBAFB_TYPE_SHOW, 3);
  EXPECT_EQ(ZUN_RTCPPSFBAFB_TYPE_SHOWACK, 4);
  EXPECT_EQ(ZUN_RTCPPSFBAFB_TYPE_LIR, 5);
  EXPECT_EQ(ZUN_RTCPPSFBAFB_TYPE_REMB, 65537);
}

TEST(ZunRtcpPsfbAfb, EachKindIsToldByItsIdentifier) {
  for (const Sample& sample : SamplesAt(Level::kAfb)) {
    SCOPED_TRACE(sample.name);
    const Parsed parsed(sample.wire);
    ASSERT_TRUE(parsed.ok);
    ASSERT_EQ(parsed.count(), 1U);
    EXPECT_EQ(ZunRtcpSubpacketGetType(&parsed[0]), ZUN_RTCPSUBPACKET_TYPE_PSFB);
    const ZunRtcpPsfb* const psfb = ZunRtcpSubpacketGetPsfb(&parsed[0]);
    EXPECT_EQ(ZunRtcpPsfbGetFeedbackMessageType(psfb), ZUN_RTCPPSFB_TYPE_AFB);
    EXPECT_EQ(ZunRtcpPsfbGetSender(psfb), ZunUint32FromOctets(sample.wire.data() + 4));
    EXPECT_EQ(ZunRtcpPsfbGetMediaSource(psfb), ZunUint32FromOctets(sample.wire.data() + 8));
    EXPECT_EQ(ZunRtcpPsfbAfbGetType(ZunRtcpPsfbGetAfb(psfb)), sample.row->value);
  }
}

TEST(ZunRtcpPsfbAfb, TheMemberViewsAreTheUnion) {
  const ZunRtcpPsfb psfb = {};
  const ZunRtcpPsfbAfb* const afb = ZunRtcpPsfbGetAfb(&psfb);
  EXPECT_EQ(afb, &psfb.afb);
  EXPECT_EQ(ZunRtcpPsfbAfbGetUnknown(afb), &afb->unk);
#define EXPECT_VIEW(value, Kind, member, Getter) EXPECT_EQ(Getter(afb), &afb->member);
  ZUN_RTCPPSFBAFB_KINDS(EXPECT_VIEW)
#undef EXPECT_VIEW
}

TEST(ZunRtcpPsfbAfb, OnlyMessageTypeFifteenIsClassified) {
  const std::string remb = Golden("RembTwoSources").substr(12);
  const std::string house = Hex("4E720002 00000001 00000000 00000000");
  for (ZunUint8 fmt = 0; fmt < 32; ++fmt) {
    SCOPED_TRACE(int{fmt});
    for (const std::string& fci : {remb, house}) {
      const Parsed parsed(Psfb(fmt, fci));
      ASSERT_TRUE(parsed.ok);
      ASSERT_EQ(ZunRtcpPsfbGetFeedbackMessageType(&parsed[0].psfb), fmt);
      if (fmt == 15) {
        EXPECT_EQ(parsed[0].psfb.afb.unk.afbType, fci == remb ? 65537 : 2);
      } else if (ZunRtcpPsfbTypeIsUnknown(fmt)) {
        EXPECT_EQ(ToHex(Str(&parsed[0].psfb.unk.data)), ToHex(fci));
        EXPECT_EQ(ToHex(parsed.bytes()), ToHex(Psfb(fmt, fci)));
      }
    }
  }
}

TEST(ZunRtcpPsfbAfb, WhatIsNotRecognisedIsKeptAsItIs) {
  for (const std::string& fci : {std::string(), std::string("remb"), std::string("Remb1234"), std::string("REMC"),
                                 std::string("NR\0\1", 4), std::string("nr\0\1", 4), std::string("Nr\0\6", 4),
                                 std::string("Nr\1\1", 4), std::string("Nr\0\0", 4), std::string("\0\0\0\0", 4)}) {
    const Parsed parsed(Afb(fci));
    ASSERT_TRUE(parsed.ok);
    EXPECT_EQ(ZunRtcpPsfbAfbGetType(&parsed[0].psfb.afb), 0);
    EXPECT_EQ(ToHex(Str(&parsed[0].psfb.afb.unk.data)), ToHex(fci));
    EXPECT_EQ(ToHex(parsed.bytes()), ToHex(Afb(fci)));
  }
}

TEST(ZunRtcpPsfbAfb, ABodyWithoutBothSsrcsFails) {
  LogCapture log;
  EXPECT_FALSE(Parsed(Hex("8FCE0000")).ok);
  EXPECT_FALSE(Parsed(Hex("8FCE0001 01020304")).ok);
  EXPECT_TRUE(Parsed(Hex("8FCE0002 01020304 11121314")).ok);
  log.ExpectNone();
}

TEST(ZunRtcpPsfbAfb, CutAnywhereEveryKindStaysInsideItsBytes) {
  for (const Sample& sample : SamplesAt(Level::kAfb)) {
    SCOPED_TRACE(sample.name);
    ForEveryCut(kRow, sample.wire, [](const Received& p, ZunSizeT size, bool end_is_beyond) {
      const ZunRtcpPsfbAfb& afb = p.sp()->psfb.afb;
      EXPECT_EQ(afb.unk.type, 206);
      EXPECT_EQ(afb.unk.sender, size >= 4 ? kSender : 0U);
      if (size < 8 || (end_is_beyond && ZunRtcpPsfbAfbGetType(&afb) == ZUN_RTCPPSFBAFB_TYPE_Unknown)) {
        EXPECT_FALSE(p.ok);
      }
    });
  }
}

TEST(ZunRtcpPsfbAfb, ValuesWithoutARowAreServedAsUnknown) {
  Received p(kRow, Golden("AfbUnknown"));
  for (const ZunRtcpPsfbAfbType type : {0, -1, UnassignedValue(Level::kAfb, 1), 65535, 65536, INT32_MAX, INT32_MIN}) {
    ASSERT_TRUE(ZunRtcpPsfbAfbTypeIsUnknown(type));
    p.sp()->psfb.afb.unk.afbType = type;
    EXPECT_EQ(ToHex(p.bytes()), ToHex(Golden("AfbUnknown"))) << type;
  }
}

TEST(ZunRtcpPsfbAfb, UnknownValuesAreAssignedInPlace) {
  TestAllocator mine;
  TestAllocator of_buffer;
  const ZunRtcpPsfbAfbType unassigned = UnassignedValue(Level::kAfb, 1);
  Received p(kRow, Golden("AfbUnknown"), mine);
  ZunRtcpPsfbAfbUnknown& unknown = p.sp()->psfb.afb.unk;
  unknown.afbType = unassigned;
  EXPECT_TRUE(p.Read(Golden("AfbUnknownZeros"), {.buffer_allocator = of_buffer}));
  EXPECT_EQ(unknown.afbType, 0);
  EXPECT_EQ(p.allocator(), mine.get());
  EXPECT_EQ(mine.calls(), 1U);

  unknown.afbType = unassigned;
  const Received other(kRow, Golden("AfbUnknown"));
  EXPECT_EQ(kRow.assign(p.sp(), other.sp()), p.sp());
  EXPECT_EQ(unknown.afbType, 0);
  EXPECT_EQ(p.allocator(), mine.get());
}

TEST(ZunRtcpPsfbAfb, AFailedReadOfAnotherKindLeavesAnObjectOfThatKind) {
  std::string remb = Golden("RembTwoSources");
  remb[16] = 3;  // of the sources that it announces one is missing
  for (const Sample& sample : SamplesAt(Level::kAfb)) {
    TestAllocator mine;
    TestAllocator of_buffer;
    Received p(kRow, sample.wire, mine);
    EXPECT_FALSE(p.Read(remb, {.buffer_allocator = of_buffer}));
    EXPECT_EQ(ZunRtcpPsfbAfbGetType(&p.sp()->psfb.afb), ZUN_RTCPPSFBAFB_TYPE_REMB);
    EXPECT_EQ(p.sp()->psfb.afb.remb.bitrate, 1000000.0F);
  }
}

}  // namespace

namespace test {
INSTANTIATE_TYPED_TEST_SUITE_P(ZunRtcpPsfbAfb, EnvelopeTest, AfbApi);
}
