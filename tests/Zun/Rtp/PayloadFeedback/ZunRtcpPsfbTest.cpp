// The envelope of payload-specific feedback: which format serves which message type, and what happens across formats.
#include "Zun/Rtp/PayloadFeedback/ZunRtcpPsfb.h"

#include <gtest/gtest.h>

#include "tests/support/RowChecks.h"

namespace {

using namespace test;

const Row kRow = TEST_ROW(ZunRtcpPsfb);

// A message that every format reads and writes back unchanged: two slices, a bit string of six octets, one command.
std::string WithType(ZunRtcpPsfbType fmt) {
  std::string wire = Hex(R"(
      80 CE 0004    | version 2, FMT to be filled in, type 206, 5 words
      01020304      | sender
      00000000      | media source
      00000007 01000000 | FCI
  )");
  wire[0] = static_cast<char>(0x80 | fmt);
  return wire;
}

const std::string kPli = WithType(ZUN_RTCPPSFB_TYPE_PLI);
const std::string kFir = WithType(ZUN_RTCPPSFB_TYPE_FIR);
const std::string kNine = WithType(9);
const std::string kTwelve = WithType(12);

ZunSizeT FirEntries(const Slot& slot) { return ZunVector_ZunRtcpPsfbFirEntrySize(&slot.sp.psfb.fir.fci); }

// An empty unknown message, as it is left where a rebuild failed.
void ExpectEmptyUnknown(const ZunRtcpPsfb& p, const ZunAllocator* a) {
  EXPECT_EQ(p.unk.type, 206);
  EXPECT_EQ(p.unk.fmt, ZUN_RTCPPSFB_TYPE_Unknown);
  EXPECT_EQ(p.unk.sender, 0U);
  EXPECT_EQ(p.unk.source, 0U);
  EXPECT_EQ(p.unk.data.size, 0U);
  EXPECT_EQ(p.unk.data.allocator, a);
}

TEST(PsfbTest, TypesWithoutAFormatAreUnknown) {
  for (ZunRtcpPsfbType type = -2; type <= 40; ++type) {
    EXPECT_EQ(ZunRtcpPsfbTypeIsUnknown(type), !((type >= 1 && type <= 6) || type == 15)) << type;
  }
}

TEST(PsfbTest, EveryMessageTypeFindsItsFormatAndComesBack) {
  for (ZunRtcpPsfbType fmt = 0; fmt <= 31; ++fmt) {
    SCOPED_TRACE(fmt);
    ExpectComesBackUnchanged(WithType(fmt));
    const Parsed parsed(WithType(fmt));
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

TEST(PsfbTest, CommonFieldsAreReachedThroughAnyFormat) {
  for (ZunRtcpPsfbType fmt = 0; fmt <= 15; ++fmt) {
    Slot slot(kRow, WithType(fmt));
    ASSERT_TRUE(slot.ok);
    ZunRtcpPsfb* const p = &slot.sp.psfb;
    EXPECT_TRUE(ZunRtcpPsfbSetSender(p, 0xFFFFFFFF));
    EXPECT_EQ(ZunRtcpPsfbGetSender(p), 0xFFFFFFFFU);
    EXPECT_EQ(ZunRtcpPsfbGetMediaSource(p), 0U);
    EXPECT_TRUE(ZunRtcpPsfbSetMediaSource(p, 5));
    EXPECT_EQ(ZunRtcpPsfbGetMediaSource(p), 5U);
  }
}

TEST(PsfbTest, NeighboursInACompoundPacketKeepTheirBytes) {
  const std::string wire = kPli + kNine + kFir + WithType(31) + kTwelve + kFir + kPli;
  Parsed parsed(wire);
  ASSERT_TRUE(parsed.ok);
  EXPECT_EQ(parsed.count(), 7U);
  EXPECT_EQ(ToHex(parsed.Rewritten()), ToHex(wire));
  ASSERT_TRUE(parsed.Again(kFir + kPli + kNine));
  EXPECT_EQ(ToHex(parsed.Rewritten()), ToHex(kFir + kPli + kNine));
}

TEST(PsfbTest, ACopyTakesTheAllocatorOfItsSource) {
  for (const std::string& wire : {kPli, kFir, kNine}) {
    TestAllocator allocator;
    Slot source(kRow, wire, allocator.get());
    ZunRtcpPsfb copy;
    ASSERT_EQ(ZunRtcpPsfbConstructCopy(&copy, &source.sp.psfb), &copy);
    EXPECT_EQ(ZunRtcpPsfbGetAllocator(&copy), allocator.get());
    EXPECT_EQ(allocator.live_blocks(), 2U);
    ZunRtcpPsfbDestruct(&copy);
    EXPECT_EQ(allocator.live_blocks(), 1U);
    allocator.RefuseFrom(0);
    EXPECT_EQ(ZunRtcpPsfbConstructCopy(&copy, &source.sp.psfb), nullptr);
  }
}

TEST(PsfbTest, AssignAcrossFormatsRebuildsWithTheAllocatorOfTheDestination) {
  TestAllocator mine;
  TestAllocator other;
  Slot target(kRow, kFir, mine.get());
  const Slot source(kRow, kPli, other.get());
  ASSERT_EQ(ZunRtcpPsfbAssign(&target.sp.psfb, &source.sp.psfb), &target.sp.psfb);
  EXPECT_EQ(target.allocator(), mine.get());
  EXPECT_EQ(ToHex(target.bytes()), ToHex(kPli));
  EXPECT_EQ(mine.live_blocks(), 1U);
  EXPECT_EQ(other.live_blocks(), 1U);
}

TEST(PsfbTest, AssignAcrossFormatsTakesTheAllocatorOfTheSourceWhereTheDestinationHasNone) {
  TestAllocator other;
  const Slot source(kRow, kPli, other.get());
  ZunRtcpPsfb target;
  ZunRtcpPsfbFirConstructDefault(&target.fir, nullptr);
  ASSERT_EQ(ZunRtcpPsfbAssign(&target, &source.sp.psfb), &target);
  EXPECT_EQ(ZunRtcpPsfbGetAllocator(&target), other.get());
  ZunRtcpPsfbDestruct(&target);
}

TEST(PsfbTest, AssignWithinAFormatAndAmongUnknownOnesIsInPlace) {
  for (const auto& [to, from] : {std::pair{kFir, kFir}, {kNine, kTwelve}, {kTwelve, WithType(0)}}) {
    TestAllocator mine;
    Slot target(kRow, to, mine.get());
    const Slot source(kRow, from);
    const std::size_t calls = mine.calls();
    ASSERT_EQ(ZunRtcpPsfbAssign(&target.sp.psfb, &source.sp.psfb), &target.sp.psfb);
    EXPECT_EQ(mine.calls(), calls);
    EXPECT_EQ(ToHex(target.bytes()), ToHex(from));
  }
}

TEST(PsfbTest, AFailedRebuildLeavesAnEmptyUnknownOfTheEnvelope) {
  for (const auto& [to, from] : {std::pair{kFir, kPli}, {kNine, kFir}, {kPli, kTwelve}}) {
    TestAllocator mine;
    Slot target(kRow, to, mine.get());
    const Slot source(kRow, from);
    mine.RefuseFrom(0);
    EXPECT_EQ(ZunRtcpPsfbAssign(&target.sp.psfb, &source.sp.psfb), nullptr);
    ExpectEmptyUnknown(target.sp.psfb, mine.get());
    EXPECT_EQ(mine.live_blocks(), 0U) << "an object that is not destructed loses nothing";
    mine.RefuseNothing();
    EXPECT_EQ(ZunRtcpPsfbAssign(&target.sp.psfb, &source.sp.psfb), &target.sp.psfb) << "it can be used again";
    EXPECT_EQ(ToHex(target.bytes()), ToHex(from));
  }
}

TEST(PsfbTest, AFailedRebuildOfASubpacketLeavesAnEmptyUnknownOfTheEnvelopeToo) {
  TestAllocator mine;
  Slot target(kRow, kFir, mine.get());
  const Slot source(kRow, kPli);
  mine.RefuseFrom(0);
  EXPECT_EQ(ZunRtcpSubpacketAssign(&target.sp, &source.sp), nullptr);
  ExpectEmptyUnknown(target.sp.psfb, mine.get());
}

TEST(PsfbTest, ReadingAnUnknownTypeOverAnotherIsInPlace) {
  TestAllocator mine;
  Slot slot(kRow, kNine, mine.get());
  const std::size_t calls = mine.calls();
  ASSERT_TRUE(slot.Again(kTwelve));
  EXPECT_EQ(slot.sp.psfb.unk.fmt, 12);
  EXPECT_EQ(slot.allocator(), mine.get());
  EXPECT_EQ(mine.calls(), calls);
}

TEST(PsfbTest, AnObjectRebuiltByReadingTakesTheAllocatorOfTheBufferString) {
  for (const auto& [held, read] : {std::pair{kNine, kPli}, {kPli, kFir}, {kFir, kNine}}) {
    TestAllocator mine;
    TestAllocator of_buffer;
    Slot slot(kRow, held, mine.get());
    const Datagram datagram(read, of_buffer.get());
    ASSERT_TRUE(ZunRtcpPsfbAssignFromBuffer(&slot.sp, datagram, kBodyBegin, read.size(), 206, CountOf(read)));
    EXPECT_EQ(slot.allocator(), of_buffer.get());
    EXPECT_EQ(ToHex(slot.bytes()), ToHex(read));
    EXPECT_EQ(mine.live_blocks(), 0U);
    EXPECT_EQ(of_buffer.live_blocks(), 1U);
  }
}

TEST(PsfbTest, AFailedReadAcrossFormatsLeavesAnObjectOfTheNewFormat) {
  TestAllocator mine;
  Slot slot(kRow, kPli, mine.get());
  EXPECT_FALSE(slot.Again(kFir.substr(0, 12)));
  EXPECT_EQ(slot.sp.psfb.fir.fmt, ZUN_RTCPPSFB_TYPE_FIR);
  EXPECT_EQ(slot.sp.psfb.fir.sender, 0x01020304U);
  EXPECT_EQ(FirEntries(slot), 0U);
  EXPECT_EQ(mine.live_blocks(), 0U);
  ASSERT_TRUE(slot.Again(kFir));
  EXPECT_EQ(FirEntries(slot), 1U);
}

TEST(PsfbTest, RefusedReadsAcrossFormatsLoseNothing) {
  for (const auto& [held, read] : {std::pair{kNine, kPli}, {kPli, kFir}, {kFir, kNine}}) {
    const std::string wire = read;
    const std::string before = held;
    EXPECT_GT(ForEveryRefusal([&](TestAllocator& refusing) {
                Slot slot(kRow, before);
                const Datagram datagram(wire, refusing.get());
                if (ZunRtcpPsfbAssignFromBuffer(&slot.sp, datagram, kBodyBegin, wire.size(), 206, CountOf(wire))) {
                  EXPECT_EQ(ToHex(slot.bytes()), ToHex(wire));
                } else {
                  EXPECT_GT(refusing.refused(), 0U);
                  EXPECT_EQ(ZunRtcpPsfbGetAllocator(&slot.sp.psfb), refusing.get());
                }
              }),
              0U);
  }
}

TEST(PsfbTest, FailuresOfAFormatArePassedBack) {
  EXPECT_FALSE(Slot(kRow, kFir.substr(0, 16)).ok);
  Slot empty(kRow, kFir.substr(0, 12));
  Text out;
  EXPECT_FALSE(ZunRtcpPsfbWritePacket(&empty.sp, out, 0));
  EXPECT_EQ(out->size, 12U);
  EXPECT_EQ(ZunRtcpPsfbGetPacketLength(&empty.sp), 12U);
}

TEST(PsfbTest, KeepsTheRulesOfEveryRow) {
  for (const std::string& wire : {kPli, kFir, kNine}) {
    ExpectAllocatorRules(kRow, wire, wire);
    ExpectWritesInPlace(kRow, wire);
  }
}

}  // namespace
