#include "Zun/Rtp/ApplicationFeedback/ZunRtcpPsfbAfb.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/FeedbackWire.h"
#include "tests/support/LogCapture.h"
#include "tests/support/RowChecks.h"

namespace {

using namespace test;

const Row kRow = TEST_ROW(ZunRtcpPsfbAfb);

struct Message {
  ZunRtcpPsfbAfbType type;
  bool owns_memory;
  std::string wire;
};

// One message of each kind.
const std::vector<Message> kMessages = {
    {ZUN_RTCPPSFBAFB_TYPE_Unknown, true, Afb("LNTF" + Hex("DEADBEEF"))},
    {ZUN_RTCPPSFBAFB_TYPE_ABAFB, false,
     Afb(Hex("4E720001 00000001 00000002 00000003 00000004 00000005 00000006 00000007"))},
    {ZUN_RTCPPSFBAFB_TYPE_ALBR, false, Afb(Hex("4E720002 00000001"))},
    {ZUN_RTCPPSFBAFB_TYPE_SHOW, true, Afb(Hex("4E720003 2A 08 01 19 0780 0000"))},
    {ZUN_RTCPPSFBAFB_TYPE_SHOWACK, false, Afb(Hex("4E720004 00000001 02000000"))},
    {ZUN_RTCPPSFBAFB_TYPE_LIR, true, Afb(Hex("4E720005 00000001 02 03 0003 61626300"))},
    {ZUN_RTCPPSFBAFB_TYPE_REMB, true, Afb("REMB" + Hex("02 0BD090 00000001 00000002"))},
};

// A message whose bytes live with an allocator of the test's choice.
struct Buffer {
  Buffer(const std::string& wire, ZunAllocator* a) : datagram(wire, a) {}
  bool AssignTo(ZunRtcpSubpacket* p) const {
    return kRow.assign_from_buffer(p, datagram, kBodyBegin, datagram->size, 206, 15) != 0;
  }
  Datagram datagram;
};

// What an object holds, told by what it writes. LIR announces another length than it writes, so lengths are not
// compared here.
std::string Contents(const ZunRtcpSubpacket& sp) {
  Text out;
  EXPECT_TRUE(kRow.write_packet(&sp, out, 0));
  return out.str();
}

std::string ContentsOf(const Message& message) {
  const Slot slot(kRow, message.wire);
  EXPECT_TRUE(slot.ok);
  return Contents(slot.sp);
}

TEST(AfbTest, KnownTypesAreTheHouseNumbersAndRemb) {
  for (ZunInt32 t = -10; t < 65600; ++t) {
    EXPECT_EQ(ZunRtcpPsfbAfbTypeIsUnknown(t) == 0, (t >= 1 && t <= 5) || t == 65537) << t;
  }
  EXPECT_TRUE(ZunRtcpPsfbAfbTypeIsUnknown(INT32_MIN));
  EXPECT_TRUE(ZunRtcpPsfbAfbTypeIsUnknown(INT32_MAX));
}

TEST(AfbTest, EachKindIsToldByItsIdentifier) {
  for (const Message& message : kMessages) {
    SCOPED_TRACE(message.type);
    const Parsed parsed(message.wire);
    ASSERT_TRUE(parsed.ok);
    ASSERT_EQ(parsed.count(), 1U);
    EXPECT_EQ(ZunRtcpSubpacketGetType(&parsed[0]), ZUN_RTCPSUBPACKET_TYPE_PSFB);
    const ZunRtcpPsfb* const psfb = ZunRtcpSubpacketGetPsfb(&parsed[0]);
    EXPECT_EQ(ZunRtcpPsfbGetFeedbackMessageType(psfb), ZUN_RTCPPSFB_TYPE_AFB);
    EXPECT_EQ(ZunRtcpPsfbGetSender(psfb), kSender);
    EXPECT_EQ(ZunRtcpPsfbGetMediaSource(psfb), kSource);
    const ZunRtcpPsfbAfb* const afb = ZunRtcpPsfbGetAfb(psfb);
    EXPECT_EQ(ZunRtcpPsfbAfbGetType(afb), message.type);
    if (message.type != ZUN_RTCPPSFBAFB_TYPE_LIR) {
      EXPECT_EQ(ToHex(parsed.Rewritten()), ToHex(message.wire));
    }
  }
}

TEST(AfbTest, ViewsAreTheMembersThemselves) {
  const ZunRtcpPsfb psfb = {};
  const ZunRtcpPsfbAfb* const afb = ZunRtcpPsfbGetAfb(&psfb);
  EXPECT_EQ(afb, &psfb.afb);
  EXPECT_EQ(ZunRtcpPsfbAfbGetUnknown(afb), &afb->unk);
  EXPECT_EQ(ZunRtcpPsfbAfbGetAbafb(afb), &afb->abafb);
  EXPECT_EQ(ZunRtcpPsfbAfbGetAlbr(afb), &afb->albr);
  EXPECT_EQ(ZunRtcpPsfbAfbGetShow(afb), &afb->show);
  EXPECT_EQ(ZunRtcpPsfbAfbGetShowAck(afb), &afb->showAck);
  EXPECT_EQ(ZunRtcpPsfbAfbGetLir(afb), &afb->lir);
  EXPECT_EQ(ZunRtcpPsfbAfbGetRemb(afb), &afb->remb);
}

TEST(AfbTest, OnlyMessageTypeFifteenIsClassified) {
  const std::string remb = kMessages.back().wire.substr(12);
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
        EXPECT_EQ(ToHex(parsed.Rewritten()), ToHex(Psfb(fmt, fci)));
      }
    }
  }
}

TEST(AfbTest, WhatIsNotRecognisedIsKeptAsItIs) {
  for (const std::string& fci : {std::string(), std::string("remb"), std::string("Remb1234"), std::string("REMC"),
                                 std::string("NR\0\1", 4), std::string("nr\0\1", 4), std::string("Nr\0\6", 4),
                                 std::string("Nr\1\1", 4), std::string("Nr\0\0", 4), std::string("\0\0\0\0", 4)}) {
    const Parsed parsed(Afb(fci));
    ASSERT_TRUE(parsed.ok);
    EXPECT_EQ(ZunRtcpPsfbAfbGetType(&parsed[0].psfb.afb), 0);
    EXPECT_EQ(ToHex(Str(&parsed[0].psfb.afb.unk.data)), ToHex(fci));
    EXPECT_EQ(ToHex(parsed.Rewritten()), ToHex(Afb(fci)));
  }
}

TEST(AfbTest, ABodyWithoutBothSsrcsFails) {
  LogCapture log;
  EXPECT_FALSE(Parsed(Hex("8FCE0000")).ok);
  EXPECT_FALSE(Parsed(Hex("8FCE0001 01020304")).ok);
  EXPECT_TRUE(Parsed(Hex("8FCE0002 01020304 11121314")).ok);
  log.ExpectNone();
}

TEST(AfbTest, CutAnywhereEveryKindStaysInsideItsBytes) {
  for (const Message& message : kMessages) {
    SCOPED_TRACE(message.type);
    ForEveryCut(kRow, message.wire, [](const Slot& slot, ZunSizeT size, bool end_is_beyond) {
      EXPECT_EQ(slot.sp.psfb.afb.unk.type, 206);
      EXPECT_EQ(slot.sp.psfb.afb.unk.sender, size >= 4 ? kSender : 0U);
      if (size < 8 || (end_is_beyond && ZunRtcpPsfbAfbGetType(&slot.sp.psfb.afb) == ZUN_RTCPPSFBAFB_TYPE_Unknown)) {
        EXPECT_FALSE(slot.ok);
      }
    });
  }
}

TEST(AfbTest, ValuesWithoutARowAreServedAsUnknown) {
  Slot slot(kRow, kMessages[0].wire);
  for (const ZunRtcpPsfbAfbType type : {0, -1, 6, 9, 65535, 65536, 65538, INT32_MAX, INT32_MIN}) {
    slot.sp.psfb.afb.unk.afbType = type;
    EXPECT_EQ(kRow.get_packet_length(&slot.sp), kMessages[0].wire.size()) << type;
    EXPECT_EQ(ToHex(slot.bytes()), ToHex(kMessages[0].wire)) << type;
  }
}

TEST(AfbTest, UnknownValuesAreAssignedInPlace) {
  TestAllocator mine;
  TestAllocator of_buffer;
  Slot slot(kRow, kMessages[0].wire, mine.get());
  slot.sp.psfb.afb.unk.afbType = 9;
  EXPECT_TRUE(Buffer(Afb(Hex("4E720007")), of_buffer).AssignTo(&slot.sp));
  EXPECT_EQ(slot.sp.psfb.afb.unk.afbType, 0);
  EXPECT_EQ(slot.allocator(), mine.get());
  EXPECT_EQ(mine.calls(), 1U);

  slot.sp.psfb.afb.unk.afbType = 9;
  const Slot other(kRow, kMessages[0].wire);
  EXPECT_EQ(kRow.assign(&slot.sp, &other.sp), &slot.sp);
  EXPECT_EQ(slot.sp.psfb.afb.unk.afbType, 0);
  EXPECT_EQ(slot.allocator(), mine.get());
}

TEST(AfbTest, CopiesTakeTheAllocatorOfTheirSource) {
  for (const Message& message : kMessages) {
    SCOPED_TRACE(message.type);
    TestAllocator allocator;
    TestAllocator other;
    const Slot source(kRow, message.wire, allocator.get());
    ZunRtcpPsfbAfb copy;
    ASSERT_EQ(ZunRtcpPsfbAfbConstructCopy(&copy, &source.sp.psfb.afb), &copy);
    EXPECT_EQ(ZunRtcpPsfbAfbGetAllocator(&copy), message.owns_memory ? allocator.get() : nullptr);
    EXPECT_EQ(ToHex(Contents(*Sub(&copy))), ToHex(ContentsOf(message)));
    ZunRtcpPsfbAfbDestruct(&copy);
    ZunRtcpPsfbAfbDestruct(&copy);
    ZunRtcpSubpacket wanted;
    ASSERT_EQ(kRow.construct_copy_allocator(&wanted, &source.sp, other), &wanted);
    EXPECT_EQ(kRow.get_allocator(&wanted), message.owns_memory ? other.get() : nullptr);
    EXPECT_EQ(ToHex(Contents(wanted)), ToHex(ContentsOf(message)));
    kRow.destruct(&wanted);
  }
}

TEST(AfbTest, AssignmentAcrossKindsKeepsTheAllocatorOfTheDestination) {
  for (const Message& from : kMessages) {
    for (const Message& to : kMessages) {
      SCOPED_TRACE(::testing::Message() << from.type << " to " << to.type);
      TestAllocator of_source;
      TestAllocator of_destination;
      Slot source(kRow, from.wire, of_source.get());
      Slot destination(kRow, to.wire, of_destination.get());
      ASSERT_EQ(ZunRtcpPsfbAfbAssign(&destination.sp.psfb.afb, &source.sp.psfb.afb), &destination.sp.psfb.afb);
      EXPECT_EQ(ZunRtcpPsfbAfbGetType(&destination.sp.psfb.afb), from.type);
      EXPECT_EQ(ToHex(Contents(destination.sp)), ToHex(ContentsOf(from)));
      ZunAllocator* const kept = to.owns_memory ? of_destination.get() : of_source.get();
      EXPECT_EQ(destination.allocator(), from.owns_memory ? kept : nullptr);
    }
  }
}

TEST(AfbTest, RefusedAssignmentAcrossKindsLeavesAnEmptyUnknown) {
  for (const Message& from : kMessages) {
    for (const Message& to : kMessages) {
      if (from.type == to.type || !from.owns_memory) continue;
      SCOPED_TRACE(::testing::Message() << from.type << " to " << to.type);
      TestAllocator of_source;
      TestAllocator of_destination;
      Slot source(kRow, from.wire, of_source.get());
      Slot destination(kRow, to.wire, of_destination.get());
      of_source.RefuseFrom(0);
      of_destination.RefuseFrom(0);
      EXPECT_EQ(kRow.assign(&destination.sp, &source.sp), nullptr);
      const ZunRtcpPsfbAfbUnknown& left = destination.sp.psfb.afb.unk;
      EXPECT_EQ(left.type, 206);
      EXPECT_EQ(left.fmt, 15);
      EXPECT_EQ(left.afbType, 0);
      EXPECT_EQ(left.data.size, 0U);
      EXPECT_EQ(left.data.allocator, to.owns_memory ? of_destination.get() : of_source.get());
      EXPECT_EQ(of_destination.live_blocks(), 0U);
      of_source.RefuseNothing();
      of_destination.RefuseNothing();
      EXPECT_EQ(kRow.assign(&destination.sp, &source.sp), &destination.sp) << "it can be used again";
    }
  }
}

TEST(AfbTest, ReadingAnotherKindRebuildsWithTheAllocatorOfTheBuffer) {
  for (const Message& from : kMessages) {
    for (const Message& to : kMessages) {
      SCOPED_TRACE(::testing::Message() << to.type << " over " << from.type);
      TestAllocator mine;
      TestAllocator of_buffer;
      Slot slot(kRow, from.wire, mine.get());
      ASSERT_TRUE(Buffer(to.wire, of_buffer).AssignTo(&slot.sp));
      EXPECT_EQ(ZunRtcpPsfbAfbGetType(&slot.sp.psfb.afb), to.type);
      EXPECT_EQ(ToHex(Contents(slot.sp)), ToHex(ContentsOf(to)));
      if (to.owns_memory) {
        EXPECT_EQ(slot.allocator(), from.type == to.type ? mine.get() : of_buffer.get());
      }
      if (from.type != to.type) {
        EXPECT_EQ(mine.live_blocks(), 0U);
      }
    }
  }
}

TEST(AfbTest, AFailedReadOfAnotherKindLeavesAnObjectOfThatKind) {
  std::string remb = kMessages.back().wire;
  remb[16] = 3;
  for (const Message& from : kMessages) {
    TestAllocator mine;
    TestAllocator of_buffer;
    Slot slot(kRow, from.wire, mine.get());
    EXPECT_FALSE(Buffer(remb, of_buffer).AssignTo(&slot.sp));
    EXPECT_EQ(ZunRtcpPsfbAfbGetType(&slot.sp.psfb.afb), ZUN_RTCPPSFBAFB_TYPE_REMB);
    EXPECT_EQ(slot.sp.psfb.afb.remb.bitrate, 1000000.0F);
  }
}

TEST(AfbTest, RefusedReadsOfAnyKindOverAnyOtherLoseNothing) {
  for (const Message& from : kMessages) {
    for (const Message& to : kMessages) {
      SCOPED_TRACE(::testing::Message() << to.type << " over " << from.type);
      ForEveryRefusal([&](TestAllocator& refusing) {
        ZunRtcpPacket packet;
        ZunRtcpPacketConstructDefault(&packet, refusing);
        const Datagram first(from.wire, refusing);
        const Datagram second(to.wire, refusing);
        const bool ok =
            ZunRtcpPacketParseNetworkPacket(&packet, first) && ZunRtcpPacketParseNetworkPacket(&packet, second);
        if (ok) {
          EXPECT_EQ(ToHex(Contents(*ZunRtcpPacketGetSubpacket(&packet, 0))), ToHex(ContentsOf(to)));
        }
        EXPECT_TRUE(ok || refusing.refused() > 0);
        ZunRtcpPacketDestruct(&packet);
      });
    }
  }
}

TEST(AfbTest, ParsingTheSameDatagramAgainTakesNoAllocation) {
  std::string datagram = Psfb(1, "");
  for (const Message& message : kMessages) datagram += message.wire;
  TestAllocator allocator;
  ZunRtcpPacket packet;
  ZunRtcpPacketConstructDefault(&packet, allocator);
  const Datagram bytes(datagram, allocator);
  ASSERT_TRUE(ZunRtcpPacketParseNetworkPacket(&packet, bytes));
  EXPECT_EQ(ZunRtcpPacketGetSubpacketCount(&packet), 1 + kMessages.size());
  const std::size_t calls = allocator.calls();
  ASSERT_TRUE(ZunRtcpPacketParseNetworkPacket(&packet, bytes));
  EXPECT_EQ(allocator.calls(), calls);

  Text out(allocator);
  ASSERT_TRUE(ZunRtcpPacketGetNetworkPacket(&packet, out));
  const std::string written = out.str();
  const std::size_t calls_of_write = allocator.calls();
  ASSERT_TRUE(ZunRtcpPacketGetNetworkPacket(&packet, out));
  EXPECT_EQ(allocator.calls(), calls_of_write);
  EXPECT_EQ(out.str(), written);
  ZunRtcpPacketDestruct(&packet);
}

}  // namespace
