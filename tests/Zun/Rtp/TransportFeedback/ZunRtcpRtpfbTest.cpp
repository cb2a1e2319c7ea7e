#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

#include "tests/support/Kinds.h"
#include "tests/support/LogCapture.h"

namespace {

using test::Hex;
using test::TestAllocator;

// One message of every modelled type, and two of unknown types.
struct Sample {
  ZunRtcpRtpfbType fmt;
  bool owns_memory;
  std::string packet;
};

std::vector<Sample> Samples() {
  return {
      {7, true, Hex("87CD0004 00000001 00000002 A0A1A2A3 A4A5A6A7")},
      {31, true, Hex("9FCD0003 00000011 00000012 B0B1B2B3")},
      {ZUN_RTCPRTPFB_TYPE_NACK, true, Hex("81CD0004 00000021 00000022 00640001 00C80003")},
      {ZUN_RTCPRTPFB_TYPE_TMMBR, true, Hex("82CD0004 00000031 00000000 00000032 000186A0")},
      {ZUN_RTCPRTPFB_TYPE_TMMBN, false, Hex("83CD0003 00000041 00000042 000186A0")},
      {ZUN_RTCPRTPFB_TYPE_CCFB, true, Hex("8ECD0005 00000051 00000052 00010002 80010000 00010000")},
      {ZUN_RTCPRTPFB_TYPE_TransportCC, true, Hex("8FCD0005 00000061 00000062 00010001 00000107 20010400")},
      {ZUN_RTCPRTPFB_TYPE_ABAFB, false, Hex("9ECD0007 00000071 00000072 00000073 00000074 00000075 00000076 00000077")},
  };
}

// A message in an object of its own, read from a sample.
class Message {
 public:
  Message(const Sample& sample, ZunAllocator* a) {
    const test::Datagram datagram(sample.packet);
    const auto count = static_cast<ZunUint8>(sample.packet[0] & 0x1F);
    EXPECT_TRUE(ZunRtcpRtpfbConstructFromBuffer(&sp_, datagram, 4, datagram->size, 205, count, a));
  }
  ~Message() { ZunRtcpRtpfbDestruct(get()); }
  Message(const Message&) = delete;
  Message& operator=(const Message&) = delete;

  ZunRtcpRtpfb* get() { return &sp_.rtpfb; }
  ZunRtcpSubpacket* sp() { return &sp_; }
  ZunRtcpRtpfbType fmt() const { return ZunRtcpRtpfbGetFeedbackMessageType(&sp_.rtpfb); }
  ZunAllocator* allocator() { return ZunRtcpRtpfbGetAllocator(get()); }
  std::string bytes() const { return test::Append(ZunRtcpRtpfbWritePacket, &sp_); }

 private:
  ZunRtcpSubpacket sp_;
};

bool AreOfOneKind(ZunRtcpRtpfbType a, ZunRtcpRtpfbType b) {
  return a == b || (ZunRtcpRtpfbFeedbackMessageIsUnknown(a) && ZunRtcpRtpfbFeedbackMessageIsUnknown(b));
}

void ExpectEmptyUnknown(ZunRtcpRtpfb* p, ZunAllocator* a) {
  EXPECT_EQ(p->unk.type, ZUN_RTCPSUBPACKET_TYPE_RTPFB);
  EXPECT_EQ(p->unk.fmt, ZUN_RTCPRTPFB_TYPE_Unknown);
  EXPECT_EQ(p->unk.sender, 0U);
  EXPECT_EQ(p->unk.source, 0U);
  EXPECT_EQ(p->unk.data.size, 0U);
  EXPECT_EQ(ZunRtcpRtpfbGetAllocator(p), a);
}

TEST(ZunRtcpRtpfb, EveryMemberBeginsAlike) {
#define EXPECT_ALIKE(Kind, field) EXPECT_EQ(offsetof(Kind, field), offsetof(ZunRtcpRtpfbUnknown, field))
#define EXPECT_HEAD_ALIKE(Kind) \
  EXPECT_ALIKE(Kind, type);     \
  EXPECT_ALIKE(Kind, fmt);      \
  EXPECT_ALIKE(Kind, sender)
  EXPECT_HEAD_ALIKE(ZunRtcpRtpfbNack);
  EXPECT_HEAD_ALIKE(ZunRtcpRtpfbTmmbr);
  EXPECT_HEAD_ALIKE(ZunRtcpRtpfbTmmbn);
  EXPECT_HEAD_ALIKE(ZunRtcpRtpfbTransportCc);
  EXPECT_HEAD_ALIKE(ZunRtcpRtpfbCcfb);
  EXPECT_HEAD_ALIKE(ZunRtcpRtpfbAbafb);
  EXPECT_ALIKE(ZunRtcpRtpfbNack, source);
  EXPECT_ALIKE(ZunRtcpRtpfbTmmbr, source);
  EXPECT_ALIKE(ZunRtcpRtpfbTmmbn, source);
  EXPECT_ALIKE(ZunRtcpRtpfbTransportCc, source);
  EXPECT_ALIKE(ZunRtcpRtpfbAbafb, source);
}

TEST(ZunRtcpRtpfb, SixMessageTypesAreModelled) {
  for (ZunRtcpRtpfbType fmt = -40; fmt <= 300; ++fmt) {
    const bool modelled = fmt == 1 || fmt == 2 || fmt == 3 || fmt == 14 || fmt == 15 || fmt == 30;
    EXPECT_EQ(ZunRtcpRtpfbFeedbackMessageIsUnknown(fmt), !modelled) << fmt;
  }
}

TEST(ZunRtcpRtpfb, EveryMessageTypeFindsItsRow) {
  // With both SSRCs and nothing else an unknown message is complete, and so is a TMMBR; a CCFB takes the second word
  // for its timestamp. The others lack something.
  for (ZunUint8 fmt = 0; fmt < 32; ++fmt) {
    SCOPED_TRACE(static_cast<int>(fmt));
    std::string packet = Hex("80CD0002 00000001 00000002");
    packet[0] = static_cast<char>(0x80 | fmt);
    const bool is_unknown = ZunRtcpRtpfbFeedbackMessageIsUnknown(fmt) != 0;
    const test::Parsed parsed(packet);
    ASSERT_EQ(parsed.ok, is_unknown || fmt == 2 || fmt == 14);
    if (!is_unknown) continue;
    const ZunRtcpRtpfb* const rtpfb = ZunRtcpSubpacketGetRtpfb(&parsed[0]);
    EXPECT_EQ(ZunRtcpRtpfbGetFeedbackMessageType(rtpfb), fmt);
    EXPECT_EQ(ZunRtcpRtpfbGetUnknown(rtpfb)->type, 205);
    EXPECT_EQ(ZunRtcpRtpfbGetUnknown(rtpfb)->data.size, 0U);
    EXPECT_EQ(parsed.Rewritten(), packet);
  }
}

TEST(ZunRtcpRtpfb, EveryOperationReachesTheMessage) {
  for (const Sample& sample : Samples()) {
    SCOPED_TRACE(sample.fmt);
    TestAllocator allocator;
    Message message(sample, allocator);
    EXPECT_EQ(message.fmt(), sample.fmt);
    EXPECT_EQ(message.bytes(), sample.packet);
    EXPECT_EQ(ZunRtcpRtpfbGetPacketLength(message.sp()), sample.packet.size());
    EXPECT_EQ(ZunRtcpSubpacketGetNetworkPacketLength(message.sp()), sample.packet.size());
    EXPECT_EQ(message.allocator(), sample.owns_memory ? allocator.get() : nullptr);
    EXPECT_EQ(ZunRtcpRtpfbGetAllocatorWrap(message.sp()), message.allocator());
    EXPECT_EQ(allocator.live_blocks() != 0, sample.owns_memory);
    const std::string padded = test::Append(ZunRtcpRtpfbWritePacket, message.sp(), true);
    EXPECT_EQ(static_cast<unsigned char>(padded[0]), static_cast<unsigned char>(sample.packet[0]) | 0x20);
    EXPECT_EQ(padded.substr(1), sample.packet.substr(1));
    ZunRtcpRtpfbDestructWrap(message.sp());
    EXPECT_EQ(allocator.live_blocks(), 0U);
  }
}

TEST(ZunRtcpRtpfb, TheMemberViewsAreTheUnion) {
  const ZunRtcpRtpfb rtpfb = {};
  const void* const address = &rtpfb;
  EXPECT_EQ(ZunRtcpRtpfbGetUnknown(&rtpfb), address);
  EXPECT_EQ(ZunRtcpRtpfbGetNack(&rtpfb), address);
  EXPECT_EQ(ZunRtcpRtpfbGetTmmbr(&rtpfb), address);
  EXPECT_EQ(ZunRtcpRtpfbGetTmmbn(&rtpfb), address);
  EXPECT_EQ(ZunRtcpRtpfbGetTransportCc(&rtpfb), address);
  EXPECT_EQ(ZunRtcpRtpfbGetCcfb(&rtpfb), address);
  EXPECT_EQ(ZunRtcpRtpfbGetAbafb(&rtpfb), address);
}

TEST(ZunRtcpRtpfb, TheSsrcsAreReachedWhateverTheMessageIs) {
  for (const Sample& sample : Samples()) {
    SCOPED_TRACE(sample.fmt);
    Message message(sample, ZunAllocatorGetSystem());
    ZunRtcpRtpfb* const rtpfb = message.get();
    EXPECT_EQ(ZunRtcpRtpfbGetSender(rtpfb), ZunUint32FromOctets(sample.packet.data() + 4));
    EXPECT_TRUE(ZunRtcpRtpfbSetSender(rtpfb, 0xAABBCCDD));
    EXPECT_EQ(ZunRtcpRtpfbGetSender(rtpfb), 0xAABBCCDD);
    std::string expected = sample.packet;
    expected.replace(4, 4, Hex("AABBCCDD"));
    if (sample.fmt != ZUN_RTCPRTPFB_TYPE_CCFB) {
      EXPECT_EQ(ZunRtcpRtpfbGetMediaSource(rtpfb), ZunUint32FromOctets(sample.packet.data() + 8));
      EXPECT_TRUE(ZunRtcpRtpfbSetMediaSource(rtpfb, 0x11223344));
      EXPECT_EQ(ZunRtcpRtpfbGetMediaSource(rtpfb), 0x11223344U);
      if (sample.fmt != ZUN_RTCPRTPFB_TYPE_TMMBR) expected.replace(8, 4, Hex("11223344"));
    }
    EXPECT_EQ(message.bytes(), expected);
  }
}

TEST(ZunRtcpRtpfb, ACcfbHasNoMediaSource) {
  ZunRtcpSubpacket sp;
  ZunRtcpRtpfbCcfbConstructFullWithMonotonic(&sp.rtpfb.ccfb, 1, 2000000000, ZunAllocatorGetSystem());
  const std::string before = test::Append(ZunRtcpRtpfbWritePacket, &sp);
  EXPECT_EQ(ZunRtcpRtpfbGetMediaSource(&sp.rtpfb), 0U);
  EXPECT_FALSE(ZunRtcpRtpfbSetMediaSource(&sp.rtpfb, 0xFFFFFFFF));
  EXPECT_EQ(ZunRtcpRtpfbGetMediaSource(&sp.rtpfb), 0U);
  EXPECT_EQ(test::Append(ZunRtcpRtpfbWritePacket, &sp), before);
  ZunRtcpRtpfbDestruct(&sp.rtpfb);
}

TEST(ZunRtcpRtpfb, ACopyTakesTheAllocatorOfItsSourceOrTheOneItIsGiven) {
  for (const Sample& sample : Samples()) {
    SCOPED_TRACE(sample.fmt);
    TestAllocator theirs;
    TestAllocator ours;
    Message source(sample, theirs);
    ZunRtcpSubpacket copy;
    ASSERT_EQ(ZunRtcpRtpfbConstructCopy(&copy.rtpfb, source.get()), &copy.rtpfb);
    EXPECT_EQ(test::Append(ZunRtcpRtpfbWritePacket, &copy), sample.packet);
    EXPECT_EQ(ZunRtcpRtpfbGetAllocator(&copy.rtpfb), source.allocator());
    ZunRtcpRtpfbDestruct(&copy.rtpfb);

    ASSERT_EQ(ZunRtcpRtpfbConstructCopyAllocator(&copy, source.sp(), ours), &copy);
    EXPECT_EQ(test::Append(ZunRtcpRtpfbWritePacket, &copy), sample.packet);
    EXPECT_EQ(ZunRtcpRtpfbGetAllocator(&copy.rtpfb), sample.owns_memory ? ours.get() : nullptr);
    ZunRtcpRtpfbDestruct(&copy.rtpfb);
  }
}

// The destination's allocator survives, unless it has none.
TEST(ZunRtcpRtpfb, AnyMessageIsAssignedToAnyOther) {
  for (const Sample& from : Samples()) {
    for (const Sample& to : Samples()) {
      SCOPED_TRACE(testing::Message() << from.fmt << " to " << to.fmt);
      TestAllocator theirs;
      TestAllocator ours;
      Message source(from, theirs);
      Message destination(to, ours);
      ASSERT_EQ(ZunRtcpRtpfbAssign(destination.get(), source.get()), destination.get());
      EXPECT_EQ(destination.fmt(), from.fmt);
      EXPECT_EQ(destination.bytes(), from.packet);
      ZunAllocator* const expected = to.owns_memory ? ours.get() : theirs.get();
      EXPECT_EQ(destination.allocator(), from.owns_memory ? expected : nullptr);
      EXPECT_EQ(source.bytes(), from.packet);
      // Through the row, and again: now they are of one kind.
      ASSERT_EQ(ZunRtcpRtpfbAssignWrap(destination.sp(), source.sp()), destination.sp());
      EXPECT_EQ(destination.bytes(), from.packet);
      ASSERT_EQ(ZunRtcpRtpfbAssign(destination.get(), destination.get()), destination.get());
      EXPECT_EQ(destination.bytes(), from.packet);
    }
  }
}

TEST(ZunRtcpRtpfb, AFailedRebuildLeavesAnEmptyUnknownMessage) {
  for (const Sample& from : Samples()) {
    for (const Sample& to : Samples()) {
      if (AreOfOneKind(from.fmt, to.fmt) || !from.owns_memory) continue;
      SCOPED_TRACE(testing::Message() << from.fmt << " to " << to.fmt);
      TestAllocator theirs;
      TestAllocator ours;
      TestAllocator& chosen = to.owns_memory ? ours : theirs;
      std::size_t failures = 0;
      for (std::size_t n = 0;; ++n) {
        Message source(from, theirs);
        Message destination(to, ours);
        chosen.RefuseFrom(n);
        const bool assigned = ZunRtcpRtpfbAssign(destination.get(), source.get()) != nullptr;
        chosen.RefuseNothing();
        if (assigned) {
          EXPECT_EQ(destination.bytes(), from.packet);
          break;
        }
        ++failures;
        ExpectEmptyUnknown(destination.get(), chosen);
        EXPECT_EQ(ours.live_blocks(), 0U);
        // It is a message like any other: it can be assigned to.
        ASSERT_EQ(ZunRtcpRtpfbAssign(destination.get(), source.get()), destination.get());
        EXPECT_EQ(destination.bytes(), from.packet);
      }
      EXPECT_GT(failures, 0U);
    }
  }
}

TEST(ZunRtcpRtpfb, AMessageOfAnotherTypeIsRebuiltWithTheAllocatorOfTheBufferString) {
  for (const Sample& from : Samples()) {
    for (const Sample& to : Samples()) {
      SCOPED_TRACE(testing::Message() << from.fmt << " into " << to.fmt);
      TestAllocator ours;
      TestAllocator of_the_string;
      Message message(to, ours);
      const test::Datagram datagram(from.packet, of_the_string);
      ASSERT_TRUE(ZunRtcpRtpfbAssignFromBuffer(message.sp(), datagram, 4, datagram->size, 205,
                                               static_cast<ZunUint8>(from.fmt)));
      EXPECT_EQ(message.fmt(), from.fmt);
      EXPECT_EQ(message.bytes(), from.packet);
      const bool in_place = AreOfOneKind(from.fmt, to.fmt);
      ZunAllocator* const expected = in_place ? ours.get() : of_the_string.get();
      EXPECT_EQ(message.allocator(), from.owns_memory ? expected : nullptr);
      if (!in_place) {
        EXPECT_EQ(ours.live_blocks(), 0U);
      }
    }
  }
}

TEST(ZunRtcpRtpfb, AFailedReadOfAnotherTypeLeavesAMessageOfThatType) {
  TestAllocator ours;
  TestAllocator of_the_string;
  Message message(Samples()[0], ours);
  const test::Datagram datagram(Hex("81CD0002 00000001 00000002"), of_the_string);
  EXPECT_FALSE(ZunRtcpRtpfbAssignFromBuffer(message.sp(), datagram, 4, datagram->size, 205, 1));
  EXPECT_EQ(message.fmt(), ZUN_RTCPRTPFB_TYPE_NACK);
  EXPECT_EQ(ZunRtcpRtpfbGetSender(message.get()), 1U);
  EXPECT_EQ(ZunRtcpRtpfbGetMediaSource(message.get()), 2U);
  EXPECT_EQ(message.allocator(), of_the_string.get());
  EXPECT_EQ(ours.live_blocks(), 0U);
}

TEST(ZunRtcpRtpfb, ARefusedReadOwnsNothingThatItsDestructDoesNotRelease) {
  for (const Sample& from : Samples()) {
    for (const Sample& to : Samples()) {
      SCOPED_TRACE(testing::Message() << from.fmt << " into " << to.fmt);
      test::ForEveryRefusal([&](TestAllocator& refusing) {
        const test::Datagram datagram(from.packet, refusing);
        Message message(to, ZunAllocatorGetSystem());
        const bool read = ZunRtcpRtpfbAssignFromBuffer(message.sp(), datagram, 4, datagram->size, 205,
                                                       static_cast<ZunUint8>(from.fmt)) != 0;
        if (read) {
          EXPECT_EQ(message.bytes(), from.packet);
        } else {
          EXPECT_GT(refusing.refused(), 0U);
          EXPECT_FALSE(AreOfOneKind(from.fmt, to.fmt));
        }
      });
    }
  }
}

TEST(ZunRtcpRtpfb, AnyMessageIsReadAgainOverAnyOther) {
  for (const Sample& from : Samples()) {
    for (const Sample& to : Samples()) {
      SCOPED_TRACE(testing::Message() << from.fmt << " over " << to.fmt);
      test::Parsed used(to.packet);
      ASSERT_TRUE(used.ok);
      ASSERT_TRUE(used.Again(from.packet));
      EXPECT_EQ(used.Rewritten(), from.packet);
      ASSERT_TRUE(used.Again(to.packet + from.packet + to.packet));
      EXPECT_EQ(used.Rewritten(), to.packet + from.packet + to.packet);
    }
  }
}

TEST(ZunRtcpRtpfb, ReadingTheSameMessageAgainAllocatesNothing) {
  for (const Sample& sample : Samples()) test::ExpectReadAgain(sample.packet, sample.packet);
}

TEST(ZunRtcpRtpfb, AnUnknownMessageKeepsItsStorageUnderAnotherUnknownType) {
  TestAllocator allocator;
  Message message(Samples()[0], allocator);
  const char* const storage = message.get()->unk.data.buf;
  const std::size_t calls = allocator.calls();
  const test::Datagram datagram(Hex("89CD0003 00000001 00000002 61626364"));
  ASSERT_TRUE(ZunRtcpRtpfbAssignFromBuffer(message.sp(), datagram, 4, datagram->size, 205, 9));
  EXPECT_EQ(message.fmt(), 9);
  EXPECT_EQ(test::Str(&message.get()->unk.data), "abcd");
  EXPECT_EQ(message.get()->unk.data.buf, storage);
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
  test::Parsed parsed(packet);
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
  EXPECT_EQ(test::ToHex(parsed.Rewritten()), test::ToHex(expected));
  ASSERT_TRUE(parsed.Again(packet));
  EXPECT_EQ(test::ToHex(parsed.Rewritten()), test::ToHex(expected));
}

TEST(ZunRtcpRtpfb, IsAssignedAcrossPacketTypes) {
  TestAllocator allocator;
  for (const Sample& sample : Samples()) {
    SCOPED_TRACE(sample.fmt);
    Message message(sample, ZunAllocatorGetSystem());
    ZunRtcpSubpacket sp;
    ZunRtcpUnknownConstructDefault(&sp.unk, allocator);
    ASSERT_EQ(ZunRtcpSubpacketAssign(&sp, message.sp()), &sp);
    EXPECT_EQ(test::Written(sp), sample.packet);
    EXPECT_EQ(ZunRtcpRtpfbGetAllocator(&sp.rtpfb), sample.owns_memory ? allocator.get() : nullptr);
    ZunRtcpSubpacketDestruct(&sp);
    ZunRtcpSubpacketDestruct(&sp);
    ASSERT_EQ(ZunRtcpSubpacketConstructCopy(&sp, message.sp()), &sp);
    EXPECT_EQ(test::Written(sp), sample.packet);
    ZunRtcpSubpacketDestruct(&sp);
  }
}

}  // namespace
