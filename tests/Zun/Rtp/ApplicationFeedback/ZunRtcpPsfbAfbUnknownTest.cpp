#include "Zun/Rtp/ApplicationFeedback/ZunRtcpPsfbAfbUnknown.h"

#include <gtest/gtest.h>

#include "tests/support/LogCapture.h"
#include "tests/support/Samples.h"

namespace {

using namespace test;

const Row& kRow = kRowOf<ZunRtcpPsfbAfbUnknown>;

const std::string kWire = Golden("AfbUnknown");

TEST(ZunRtcpPsfbAfbUnknown, ConstructDefaultIsEmpty) {
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

TEST(ZunRtcpPsfbAfbUnknown, WritesAndReadsGoldenBytes) {
  const Text data(kWire.substr(12));
  ZunRtcpPsfbAfbUnknown p;
  ASSERT_EQ(ZunRtcpPsfbAfbUnknownConstructFull(&p, kSender, kSource, data.get(), nullptr), &p);
  EXPECT_EQ(p.type, 206);
  EXPECT_EQ(p.fmt, 15);
  EXPECT_EQ(p.afbType, 0);
  EXPECT_EQ(ToHex(Bytes(kRow, *AsSubpacket(&p))), ToHex(kWire));
  ZunRtcpPsfbAfbUnknownDestruct(&p);

  const Parsed parsed(kWire);
  ASSERT_TRUE(parsed.ok);
  const ZunRtcpPsfbAfb* const afb = ZunRtcpPsfbGetAfb(&parsed[0].psfb);
  ASSERT_EQ(ZunRtcpPsfbAfbGetType(afb), ZUN_RTCPPSFBAFB_TYPE_Unknown);
  const ZunRtcpPsfbAfbUnknown* const unknown = ZunRtcpPsfbAfbGetUnknown(afb);
  EXPECT_EQ(unknown->sender, kSender);
  EXPECT_EQ(unknown->source, kSource);
  EXPECT_EQ(ToHex(Str(ZunRtcpPsfbAfbUnknownGetData(unknown))), ToHex(kWire.substr(12)));
}

TEST(ZunRtcpPsfbAfbUnknown, HouseMessagesOfUnknownTypeComeBackAsTheyWere) {
  for (const ZunRtcpPsfbAfbType number : {0, UnassignedValue(Level::kAfb, 1), 0x0105, 0xFFFF}) {
    const std::string octets = {static_cast<char>(number >> 8), static_cast<char>(number)};
    const std::string wire = Afb("Nr" + octets + Hex("01020304"));
    const Parsed parsed(wire);
    ASSERT_TRUE(parsed.ok);
    EXPECT_EQ(parsed[0].psfb.afb.unk.afbType, 0) << number;
    EXPECT_EQ(ToHex(parsed.bytes()), ToHex(wire));
  }
}

// Chromium's report of lost frames, beside a NACK.
TEST(ZunRtcpPsfbAfbUnknown, MessagesOfAStrangerComeBackAsTheyWere) {
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
    EXPECT_EQ(ToHex(parsed.bytes()), ToHex(Hex(wire)));
  }
}

TEST(ZunRtcpPsfbAfbUnknown, ConstructFullTakesTheAllocatorOfTheDataAndNotItsOwn) {
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

TEST(ZunRtcpPsfbAfbUnknown, DataIsAMultipleOfFourAndNothingIsLogged) {
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

TEST(ZunRtcpPsfbAfbUnknown, RefusedDataChangesNothing) {
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

TEST(ZunRtcpPsfbAfbUnknown, CutAnywhereKeepsWhatWasRead) {
  ForEveryCut(kRow, kWire, [](const Received& received, ZunSizeT size, bool end_is_beyond) {
    const ZunRtcpPsfbAfbUnknown& p = received.sp()->psfb.afb.unk;
    EXPECT_EQ(received.ok, size >= 8 && !end_is_beyond) << "the size of the data is not checked";
    EXPECT_EQ(p.sender, size >= 4 ? kSender : 0U);
    EXPECT_EQ(p.source, size >= 8 ? kSource : 0U);
    EXPECT_EQ(p.data.size, received.ok ? size - 8 : 0U);
  });
}

}  // namespace
