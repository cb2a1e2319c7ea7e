#include "Zun/Rtp/TransportFeedback/ZunRtcpRtpfb.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>

#include "tests/Zun/Rtp/EnvelopeTests.h"

namespace {

using namespace test;

struct RtpfbApi {
  static constexpr Level kLevel = Level::kRtpfb;
  ENVELOPE_API(ZunRtcpRtpfb)
};

// Every kind begins with the fields of the unknown one.
template <class Kind>
void ExpectHeadAlike() {
  EXPECT_EQ(offsetof(Kind, type), offsetof(ZunRtcpRtpfbUnknown, type));
  EXPECT_EQ(offsetof(Kind, fmt), offsetof(ZunRtcpRtpfbUnknown, fmt));
  EXPECT_EQ(offsetof(Kind, sender), offsetof(ZunRtcpRtpfbUnknown, sender));
  if constexpr (requires(Kind p) { p.source; }) {
    EXPECT_EQ(offsetof(Kind, source), offsetof(ZunRtcpRtpfbUnknown, source));
  }
}

TEST(ZunRtcpRtpfb, EveryMemberBeginsAlike) {
#define EXPECT_HEAD_ALIKE(value, Kind, member, Getter) ExpectHeadAlike<Kind>();
  ZUN_RTCPRTPFB_KINDS(EXPECT_HEAD_ALIKE)
#undef EXPECT_HEAD_ALIKE
}

TEST(ZunRtcpRtpfb, TypesHaveTheirNumbers) {
  EXPECT_EQ(ZUN_RTCPRTPFB_TYPE_Unknown, 0);
  EXPECT_EQ(ZUN_RTCPRTPFB_TYPE_NACK, 1);
  EXPECT_EQ(ZUN_RTCPRTPFB_TYPE_TMMBR, 2);
  EXPECT_EQ(ZUN_RTCPRTPFB_TYPE_TMMBN, 3);
  EXPECT_EQ(ZUN_RTCPRTPFB_TYPE_CCFB, 14);
  EXPECT_EQ(ZUN_RTCPRTPFB_TYPE_TransportCC, 15);
  EXPECT_EQ(ZUN_RTCPRTPFB_TYPE_ABAFB, 30);
}

// A message of both SSRCs and nothing else.
std::string WithoutFci(ZunInt32 fmt) {
  std::string packet = Hex("80CD0002 00000001 00000002");
  packet[0] = static_cast<char>(0x80 | fmt);
  return packet;
}

TEST(ZunRtcpRtpfb, EveryUnknownMessageTypeFindsTheUnknownRow) {
  for (ZunInt32 fmt = 0; fmt < 32; ++fmt) {
    if (!ZunRtcpRtpfbFeedbackMessageIsUnknown(fmt)) continue;
    SCOPED_TRACE(fmt);
    const Parsed parsed(WithoutFci(fmt));
    ASSERT_TRUE(parsed.ok);
    const ZunRtcpRtpfb* const rtpfb = ZunRtcpSubpacketGetRtpfb(&parsed[0]);
    EXPECT_EQ(ZunRtcpRtpfbGetFeedbackMessageType(rtpfb), fmt);
    EXPECT_EQ(ZunRtcpRtpfbGetUnknown(rtpfb)->type, 205);
    EXPECT_EQ(ZunRtcpRtpfbGetUnknown(rtpfb)->data.size, 0U);
    EXPECT_EQ(parsed.bytes(), WithoutFci(fmt));
  }
}

TEST(ZunRtcpRtpfb, EveryOtherMessageTypeFindsTheRowOfItsKind) {
#define EXPECT_READ_BY(value, Kind, member, Getter) \
  EXPECT_EQ(Parsed(WithoutFci(value)).ok, Received(kRowOf<Kind>, WithoutFci(value)).ok) << #Kind;
  ZUN_RTCPRTPFB_KINDS(EXPECT_READ_BY)
#undef EXPECT_READ_BY
  // A TMMBR is complete without entries, and a CCFB takes the second word for its timestamp.
  EXPECT_TRUE(Parsed(WithoutFci(ZUN_RTCPRTPFB_TYPE_TMMBR)).ok);
  EXPECT_TRUE(Parsed(WithoutFci(ZUN_RTCPRTPFB_TYPE_CCFB)).ok);
  EXPECT_FALSE(Parsed(WithoutFci(ZUN_RTCPRTPFB_TYPE_NACK)).ok);
  EXPECT_FALSE(Parsed(WithoutFci(ZUN_RTCPRTPFB_TYPE_TMMBN)).ok);
  EXPECT_FALSE(Parsed(WithoutFci(ZUN_RTCPRTPFB_TYPE_TransportCC)).ok);
  EXPECT_FALSE(Parsed(WithoutFci(ZUN_RTCPRTPFB_TYPE_ABAFB)).ok);
}

TEST(ZunRtcpRtpfb, TheMemberViewsAreTheUnion) {
  const ZunRtcpRtpfb rtpfb = {};
  const void* const address = &rtpfb;
  EXPECT_EQ(ZunRtcpRtpfbGetUnknown(&rtpfb), address);
#define EXPECT_VIEW(value, Kind, member, Getter) EXPECT_EQ(Getter(&rtpfb), address);
  ZUN_RTCPRTPFB_KINDS(EXPECT_VIEW)
#undef EXPECT_VIEW
}

TEST(ZunRtcpRtpfb, TheSsrcsAreReachedWhateverTheMessageIs) {
  for (const Sample& sample : SamplesAt(Level::kRtpfb)) {
    SCOPED_TRACE(sample.name);
    ReceivedSample message(sample);
    ZunRtcpRtpfb* const rtpfb = &message.sp()->rtpfb;
    EXPECT_EQ(ZunRtcpRtpfbGetSender(rtpfb), ZunUint32FromOctets(sample.wire.data() + 4));
    EXPECT_TRUE(ZunRtcpRtpfbSetSender(rtpfb, 0xAABBCCDD));
    EXPECT_EQ(ZunRtcpRtpfbGetSender(rtpfb), 0xAABBCCDD);
    std::string expected = sample.wire;
    expected.replace(4, 4, Hex("AABBCCDD"));
    if (sample.row != &kRowOf<ZunRtcpRtpfbCcfb>) {
      EXPECT_EQ(ZunRtcpRtpfbGetMediaSource(rtpfb), ZunUint32FromOctets(sample.wire.data() + 8));
      EXPECT_TRUE(ZunRtcpRtpfbSetMediaSource(rtpfb, 0x11223344));
      EXPECT_EQ(ZunRtcpRtpfbGetMediaSource(rtpfb), 0x11223344U);
      if (sample.row != &kRowOf<ZunRtcpRtpfbTmmbr>) expected.replace(8, 4, Hex("11223344"));
    }
    EXPECT_EQ(ToHex(message.bytes()), ToHex(expected));
  }
}

TEST(ZunRtcpRtpfb, ACcfbHasNoMediaSource) {
  Received p(kRowOf<ZunRtcpRtpfb>, Golden("CcfbTwoStreams"));
  ZunRtcpRtpfb* const rtpfb = &p.sp()->rtpfb;
  EXPECT_EQ(ZunRtcpRtpfbGetMediaSource(rtpfb), 0U);
  EXPECT_FALSE(ZunRtcpRtpfbSetMediaSource(rtpfb, 0xFFFFFFFF));
  EXPECT_EQ(ZunRtcpRtpfbGetMediaSource(rtpfb), 0U);
  EXPECT_EQ(ToHex(p.bytes()), ToHex(Golden("CcfbTwoStreams")));
}

TEST(ZunRtcpRtpfb, AFailedReadOfAnotherTypeLeavesAMessageOfThatType) {
  TestAllocator ours;
  TestAllocator of_buffer;
  Received p(kRowOf<ZunRtcpRtpfb>, Golden("RtpfbUnknown"), ours);
  EXPECT_FALSE(p.Read(Hex("81CD0002 00000001 00000002"), {.buffer_allocator = of_buffer}));
  EXPECT_EQ(ZunRtcpRtpfbGetFeedbackMessageType(&p.sp()->rtpfb), ZUN_RTCPRTPFB_TYPE_NACK);
  EXPECT_EQ(ZunRtcpRtpfbGetSender(&p.sp()->rtpfb), 1U);
  EXPECT_EQ(ZunRtcpRtpfbGetMediaSource(&p.sp()->rtpfb), 2U);
  EXPECT_EQ(p.allocator(), of_buffer.get());
  EXPECT_EQ(ours.live_blocks(), 0U);
}

TEST(ZunRtcpRtpfb, AnUnknownMessageKeepsItsStorageUnderAnotherUnknownType) {
  TestAllocator allocator;
  Received p(kRowOf<ZunRtcpRtpfb>, Golden("RtpfbUnknown"), allocator);
  const ZunRtcpRtpfbUnknown& unknown = p.sp()->rtpfb.unk;
  const char* const storage = unknown.data.buf;
  const std::size_t calls = allocator.calls();
  ASSERT_TRUE(p.Read(Golden("RtpfbUnknownSmall")));
  EXPECT_EQ(unknown.fmt, CountOf(Golden("RtpfbUnknownSmall")));
  EXPECT_EQ(ToHex(Str(&unknown.data)), "B0B1B2B3");
  EXPECT_EQ(unknown.data.buf, storage);
  EXPECT_EQ(allocator.calls(), calls);
}

TEST(ZunRtcpRtpfb, UnknownMessagesStayInPlaceBetweenTheirNeighbours) {
  const std::string packet = Hex(R"(
    80 C7 00 01  61 62 63 64                    | an unknown packet type
    85 CD 00 03  00000001 00000002  A0 A1 A2 A3 | FMT 5
    81 CF 00 00                                 | an unknown packet type
    80 CD 00 02  00000003 00000004              | FMT 0
    9F CD 00 04  00000005 00000006  00 00 00 00 00 00 00 08 | FMT 31
    81 CD 00 03  00000007 00000008  00 64 00 01 | NACK
    BF C0 00 02  00 00 00 00 00 00 00 04        | an unknown packet type, with padding
  )");
  Parsed parsed(packet);
  ASSERT_TRUE(parsed.ok);
  ASSERT_EQ(parsed.count(), 7U);
  const int types[] = {199, 205, 207, 205, 205, 205, 192};
  for (ZunSizeT i = 0; i < 7; ++i) EXPECT_EQ(ZunRtcpSubpacketGetType(&parsed[i]), types[i]);
  EXPECT_EQ(parsed[1].rtpfb.unk.fmt, 5);
  EXPECT_EQ(parsed[3].rtpfb.unk.fmt, 0);
  EXPECT_EQ(parsed[4].rtpfb.unk.fmt, 31);
  EXPECT_EQ(ZunRtcpRtpfbNackGetNumOfSeqNumbers(&parsed[5].rtpfb.nack), 2U);
  std::string expected = packet;
  expected[packet.size() - 12] = '\x9F';  // a written packet never has the padding bit
  EXPECT_EQ(ToHex(parsed.bytes()), ToHex(expected));
  ASSERT_TRUE(parsed.Read(packet));
  EXPECT_EQ(ToHex(parsed.bytes()), ToHex(expected));
}

}  // namespace

namespace test {
INSTANTIATE_TYPED_TEST_SUITE_P(ZunRtcpRtpfb, EnvelopeTest, RtpfbApi);
}
