#include "Zun/Rtp/ApplicationFeedback/ZunRtcpPsfbAfbUnknown.h"

#include <gtest/gtest.h>

#include "tests/support/FeedbackWire.h"
#include "tests/support/LogCapture.h"
#include "tests/support/RowChecks.h"

namespace {

using namespace test;

const Row kRow = TEST_ROW(ZunRtcpPsfbAfbUnknown);

const std::string kEmpty = Afb("");
const std::string kWire = Hex(R"(
    8F CE 0004      | version 2, FMT 15, type 206, 5 words
    01020304        | sender
    11121314        | media source
    4C4E5446        | "LNTF", which is not known
    DEADBEEF
)");

TEST(AfbUnknownTest, ConstructDefaultIsEmpty) {
  TestAllocator allocator;
  ZunRtcpPsfbAfbUnknown p;
  ASSERT_EQ(ZunRtcpPsfbAfbUnknownConstructDefault(&p, allocator), &p);
  EXPECT_EQ(p.type, 206);
  EXPECT_EQ(p.fmt, 15);
  EXPECT_EQ(p.sender, 0U);
  EXPECT_EQ(p.source, 0U);
  EXPECT_EQ(p.afbType, 0);
  EXPECT_EQ(Str(ZunRtcpPsfbAfbUnknownGetData(&p)), "");
  EXPECT_EQ(ZunRtcpPsfbAfbUnknownGetAllocator(&p), allocator.get());
  EXPECT_EQ(allocator.calls(), 0U);
  ZunRtcpPsfbAfbUnknownDestruct(&p);
}

TEST(AfbUnknownTest, WritesAndReadsGoldenBytes) {
  const Text data(Hex("4C4E5446 DEADBEEF"));
  ZunRtcpPsfbAfbUnknown p;
  ASSERT_EQ(ZunRtcpPsfbAfbUnknownConstructFull(&p, kSender, kSource, data.get(), nullptr), &p);
  EXPECT_EQ(p.type, 206);
  EXPECT_EQ(p.fmt, 15);
  EXPECT_EQ(p.afbType, 0);
  EXPECT_EQ(ToHex(Bytes(kRow, *Sub(&p))), ToHex(kWire));
  ZunRtcpPsfbAfbUnknownDestruct(&p);

  const Parsed parsed(kWire);
  ASSERT_TRUE(parsed.ok);
  const ZunRtcpPsfbAfb* const afb = ZunRtcpPsfbGetAfb(&parsed[0].psfb);
  ASSERT_EQ(ZunRtcpPsfbAfbGetType(afb), ZUN_RTCPPSFBAFB_TYPE_Unknown);
  const ZunRtcpPsfbAfbUnknown* const unknown = ZunRtcpPsfbAfbGetUnknown(afb);
  EXPECT_EQ(unknown->sender, kSender);
  EXPECT_EQ(unknown->source, kSource);
  EXPECT_EQ(ToHex(Str(ZunRtcpPsfbAfbUnknownGetData(unknown))), "4C4E5446DEADBEEF");
}

TEST(AfbUnknownTest, HouseMessagesOfUnknownTypeComeBackAsTheyWere) {
  for (const std::string number : {"0000", "0006", "0007", "0009", "0105", "FFFF"}) {
    const std::string wire = Afb(Hex("4E72" + number + "01020304"));
    const Parsed parsed(wire);
    ASSERT_TRUE(parsed.ok);
    EXPECT_EQ(parsed[0].psfb.afb.unk.afbType, 0) << number;
    EXPECT_EQ(ToHex(parsed.Rewritten()), ToHex(wire));
  }
}

// Chromium's report of lost frames, beside a NACK.
TEST(AfbUnknownTest, MessagesOfAStrangerComeBackAsTheyWere) {
  for (const std::string wire : {"8fce000400000001384939fb4c4e54465b850003",
                                 "81cd000300000001384939fb5b8d00008fce000400000001384939fb4c4e54465b8a0008"}) {
    const Parsed parsed(Hex(wire));
    ASSERT_TRUE(parsed.ok);
    const ZunRtcpPsfbAfbUnknown& unknown = parsed[parsed.count() - 1].psfb.afb.unk;
    EXPECT_EQ(unknown.type, 206);
    EXPECT_EQ(unknown.fmt, 15);
    EXPECT_EQ(unknown.afbType, 0);
    EXPECT_EQ(unknown.sender, 1U);
    EXPECT_EQ(unknown.source, 0x384939FBU);
    EXPECT_EQ(Str(&unknown.data).substr(0, 4), "LNTF");
    EXPECT_EQ(ToHex(parsed.Rewritten()), ToHex(Hex(wire)));
  }
}

TEST(AfbUnknownTest, ConstructFullTakesTheAllocatorOfTheDataAndNotItsOwn) {
  TestAllocator of_data;
  TestAllocator given;
  const Text data("abcd", of_data);
  ZunRtcpPsfbAfbUnknown p;
  ASSERT_EQ(ZunRtcpPsfbAfbUnknownConstructFull(&p, 1, 2, data.get(), given), &p);
  EXPECT_EQ(ZunRtcpPsfbAfbUnknownGetAllocator(&p), of_data.get());
  EXPECT_EQ(of_data.live_blocks(), 2U);
  EXPECT_EQ(given.calls(), 0U);
  ZunRtcpPsfbAfbUnknownDestruct(&p);
}

TEST(AfbUnknownTest, DataIsAMultipleOfFourAndNothingIsLogged) {
  LogCapture log;
  ZunRtcpPsfbAfbUnknown p;
  for (const std::string bytes : {"a", "ab", "abc", "abcde"}) {
    EXPECT_EQ(ZunRtcpPsfbAfbUnknownConstructFull(&p, 1, 2, Text(bytes).get(), nullptr), nullptr);
  }
  ZunRtcpPsfbAfbUnknownConstructDefault(&p, ZunAllocatorGetSystem());
  EXPECT_TRUE(ZunRtcpPsfbAfbUnknownSetData(&p, Text("abcdefgh").get()));
  for (const std::string bytes : {"a", "ab", "abc", "abcde"}) {
    EXPECT_FALSE(ZunRtcpPsfbAfbUnknownSetData(&p, Text(bytes).get()));
    EXPECT_EQ(Str(&p.data), "abcdefgh");
  }
  EXPECT_TRUE(ZunRtcpPsfbAfbUnknownSetData(&p, Text().get()));
  EXPECT_EQ(Str(&p.data), "");
  ZunRtcpPsfbAfbUnknownDestruct(&p);
  log.ExpectNone();
}

TEST(AfbUnknownTest, RefusedDataChangesNothing) {
  TestAllocator allocator;
  const Text data("abcdefghijklmnopqrstuvwxyz012345", allocator);
  ZunRtcpPsfbAfbUnknown p;
  allocator.RefuseFrom(0);
  EXPECT_EQ(ZunRtcpPsfbAfbUnknownConstructFull(&p, 1, 2, data.get(), nullptr), nullptr);
  ZunRtcpPsfbAfbUnknownConstructDefault(&p, allocator);
  EXPECT_FALSE(ZunRtcpPsfbAfbUnknownSetData(&p, data.get()));
  EXPECT_EQ(p.data.size, 0U);
  ZunRtcpPsfbAfbUnknownDestruct(&p);
}

TEST(AfbUnknownTest, CutAnywhereKeepsWhatWasRead) {
  ForEveryCut(kRow, kWire, [](const Slot& slot, ZunSizeT size, bool end_is_beyond) {
    const ZunRtcpPsfbAfbUnknown& p = slot.sp.psfb.afb.unk;
    EXPECT_EQ(slot.ok, size >= 8 && !end_is_beyond) << "the size of the data is not checked";
    EXPECT_EQ(p.sender, size >= 4 ? kSender : 0U);
    EXPECT_EQ(p.source, size >= 8 ? kSource : 0U);
    EXPECT_EQ(p.data.size, slot.ok ? size - 8 : 0U);
  });
}

TEST(AfbUnknownTest, CopiesAndAssignmentsTakeEveryField) {
  TestAllocator allocator;
  const Slot source(kRow, kWire, allocator.get());
  ZunRtcpPsfbAfbUnknown copy;
  ASSERT_EQ(ZunRtcpPsfbAfbUnknownConstructCopy(&copy, &source.sp.psfb.afb.unk), &copy);
  EXPECT_EQ(copy.data.allocator, allocator.get());
  EXPECT_EQ(ToHex(Bytes(kRow, *Sub(&copy))), ToHex(kWire));
  ZunRtcpPsfbAfbUnknown assigned;
  ZunRtcpPsfbAfbUnknownConstructDefault(&assigned, ZunAllocatorGetSystem());
  ASSERT_EQ(ZunRtcpPsfbAfbUnknownAssign(&assigned, &copy), &assigned);
  EXPECT_EQ(assigned.data.allocator, ZunAllocatorGetSystem());
  EXPECT_EQ(ToHex(Bytes(kRow, *Sub(&assigned))), ToHex(kWire));
  ZunRtcpPsfbAfbUnknownDestruct(&assigned);
  ZunRtcpPsfbAfbUnknownDestruct(&copy);
}

TEST(AfbUnknownTest, KeepsTheRulesOfEveryRow) {
  const std::string small = Afb("abcd");
  ExpectComesBackUnchanged(kWire);
  ExpectComesBackUnchanged(kEmpty);
  ExpectAllocatorRules(kRow, kWire, small);
  ExpectRefusalsLoseNothing(kRow, kWire, small);
  ExpectFailedWriteLeavesABeginning(kRow, kWire, 12, kWire.size());
  ExpectReadsInPlaceAsFresh(kRow, {kWire, small, kEmpty});
  ExpectWritesInPlace(kRow, kWire);
}

}  // namespace
