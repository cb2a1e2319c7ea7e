#include "Zun/Rtp/PayloadFeedback/ZunRtcpPsfbUnknown.h"

#include <gtest/gtest.h>

#include "tests/support/LogCapture.h"
#include "tests/support/Samples.h"

namespace {

using namespace test;

using Unknown = TEST_OBJECT(ZunRtcpPsfbUnknown);

const Row& kRow = kRowOf<ZunRtcpPsfbUnknown>;

const std::string kWire = Golden("PsfbUnknown");
const ZunRtcpPsfbType kFmt = CountOf(kWire);

constexpr char kConstructFull[] = "ZunRtcpPsfbUnknownConstructFull";
constexpr char kSetType[] = "ZunRtcpPsfbUnknownSetFeedbackMessageType";
constexpr char kKnownType[] = "Type field for unknown feedback is actually a known type";
constexpr char kOddData[] = "Length of Payload Specific Feedback data is not a multiple of 4";
constexpr char kOutOfRange[] = "Unknown Payload Specific Feedback type is not in the range 0 - 31";

ZunRtcpPsfbUnknown* ConstructFull(ZunRtcpPsfbUnknown* p, ZunRtcpPsfbType type, const std::string& data,
                                  ZunAllocator* a) {
  return ZunRtcpPsfbUnknownConstructFull(p, type, 1, 2, Text(data), a);
}

// Nothing is constructed, nothing is allocated, and this alone is logged.
void ExpectRefused(ZunRtcpPsfbType type, const std::string& data, ZunLogCategory category, const char* message) {
  SCOPED_TRACE(::testing::Message() << "type " << type << ", " << data.size() << " bytes");
  LogCapture log;
  TestAllocator allocator;
  ZunRtcpPsfbUnknown refused;
  EXPECT_EQ(ConstructFull(&refused, type, data, allocator), nullptr);
  log.ExpectOne(ZUN_LOG_ERROR, category, kConstructFull, message);
  EXPECT_EQ(allocator.calls(), 0U);
}

TEST(ZunRtcpPsfbUnknown, ConstructDefaultIsEmpty) {
  TestAllocator allocator;
  ZunRtcpPsfbUnknown unknown;
  ASSERT_EQ(ZunRtcpPsfbUnknownConstructDefault(&unknown, allocator), &unknown);
  EXPECT_EQ(unknown.type, 206);
  EXPECT_EQ(unknown.fmt, 0);
  EXPECT_EQ(unknown.sender, 0U);
  EXPECT_EQ(unknown.source, 0U);
  EXPECT_EQ(ZunRtcpPsfbUnknownGetData(&unknown)->size, 0U);
  EXPECT_EQ(ZunRtcpPsfbUnknownGetAllocator(&unknown), allocator.get());
  EXPECT_EQ(allocator.calls(), 0U);
  ZunRtcpPsfbUnknownDestruct(&unknown);
}

TEST(ZunRtcpPsfbUnknown, WritesGoldenBytes) {
  TestAllocator allocator;
  Unknown p;
  ASSERT_EQ(ZunRtcpPsfbUnknownConstructFull(p, kFmt, kSender, kSource, Text(Hex("A1A2A3A4A5A6A7A8")), allocator),
            p.get());
  EXPECT_EQ(ToHex(p.bytes()), ToHex(kWire));
}

TEST(ZunRtcpPsfbUnknown, ReadsGoldenBytes) {
  const Parsed parsed(kWire);
  ASSERT_TRUE(parsed.ok);
  const ZunRtcpPsfbUnknown* const unknown = ZunRtcpPsfbGetUnknown(&parsed[0].psfb);
  EXPECT_EQ(unknown->type, 206);
  EXPECT_EQ(unknown->fmt, kFmt);
  EXPECT_EQ(unknown->sender, 0x01020304U);
  EXPECT_EQ(unknown->source, 0x11121314U);
  EXPECT_EQ(Str(ZunRtcpPsfbUnknownGetData(unknown)), Hex("A1A2A3A4A5A6A7A8"));
}

TEST(ZunRtcpPsfbUnknown, ConstructFullStoresEveryUnknownType) {
  LogCapture log;
  TestAllocator allocator;
  for (ZunRtcpPsfbType type = 0; type <= 31; ++type) {
    if (!ZunRtcpPsfbTypeIsUnknown(type)) continue;
    ZunRtcpPsfbUnknown unknown;
    ASSERT_EQ(ConstructFull(&unknown, type, "abcd", allocator), &unknown) << type;
    EXPECT_EQ(unknown.type, 206);
    EXPECT_EQ(unknown.fmt, type);
    EXPECT_EQ(unknown.sender, 1U);
    EXPECT_EQ(unknown.source, 2U);
    EXPECT_EQ(Str(&unknown.data), "abcd");
    EXPECT_EQ(unknown.data.allocator, allocator.get());
    ZunRtcpPsfbUnknownDestruct(&unknown);
  }
  log.ExpectNone();
}

TEST(ZunRtcpPsfbUnknown, AKnownTypeIsReportedFirstAndInTheGeneralCategory) {
  for (const ZunRtcpPsfbType known : {1, 2, 3, 4, 5, 6, 15}) {
    ExpectRefused(known, "abcd", ZunLogRtcp_, kKnownType);
    ExpectRefused(known, "abcdef", ZunLogRtcp_, kKnownType);
  }
}

TEST(ZunRtcpPsfbUnknown, OddDataIsReportedBeforeTheRangeAndInTheFeedbackCategory) {
  for (const char* const odd : {"a", "ab", "abc", "abcdef"}) {
    ExpectRefused(kFmt, odd, ZunLogRtcpFeedback_, kOddData);
    ExpectRefused(40, odd, ZunLogRtcpFeedback_, kOddData);
  }
}

TEST(ZunRtcpPsfbUnknown, ATypeOutside0To31IsReportedInTheFeedbackCategory) {
  for (const ZunRtcpPsfbType type : {32, 40, 256 + 9, -1, INT32_MIN, INT32_MAX}) {
    ExpectRefused(type, "abcd", ZunLogRtcpFeedback_, kOutOfRange);
  }
}

TEST(ZunRtcpPsfbUnknown, SetFeedbackMessageTypeTakesKnownTypesToo) {
  LogCapture log;
  Unknown unknown;
  ASSERT_TRUE(unknown.Read(kWire));
  EXPECT_TRUE(ZunRtcpPsfbUnknownSetFeedbackMessageType(unknown, 1));
  EXPECT_EQ(unknown->fmt, 1);
  EXPECT_EQ(ToHex(unknown.bytes()), ToHex(Hex("81") + kWire.substr(1))) << "the raw bytes go out under that type";
  for (const ZunRtcpPsfbType type : {0, 15, 31}) {
    EXPECT_TRUE(ZunRtcpPsfbUnknownSetFeedbackMessageType(unknown, type));
    EXPECT_EQ(unknown->fmt, type);
  }
  log.ExpectNone();
}

TEST(ZunRtcpPsfbUnknown, SetFeedbackMessageTypeRefusesWhatTheWireCannotHold) {
  LogCapture log;
  Unknown unknown;
  ASSERT_TRUE(unknown.Read(kWire));
  for (const ZunRtcpPsfbType type : {32, 255, -1, INT32_MIN}) {
    EXPECT_FALSE(ZunRtcpPsfbUnknownSetFeedbackMessageType(unknown, type));
    log.ExpectOne(ZUN_LOG_ERROR, ZunLogRtcpFeedback_, kSetType, kOutOfRange);
    EXPECT_EQ(unknown->fmt, kFmt);
  }
}

TEST(ZunRtcpPsfbUnknown, SetDataTakesWholeWords) {
  LogCapture log;
  Unknown unknown;
  EXPECT_TRUE(ZunRtcpPsfbUnknownSetData(unknown, Text("abcd")));
  EXPECT_EQ(Str(&unknown->data), "abcd");
  EXPECT_TRUE(ZunRtcpPsfbUnknownSetData(unknown, Text("")));
  EXPECT_EQ(unknown->data.size, 0U);
  log.ExpectNone();
  for (const char* const odd : {"a", "ab", "abc", "abcdef"}) {
    EXPECT_FALSE(ZunRtcpPsfbUnknownSetData(unknown, Text(odd)));
    log.ExpectOne(ZUN_LOG_ERROR, ZunLogRtcpFeedback_, "ZunRtcpPsfbUnknownSetData",
                  "Length of unknown Payload Specific Feedback data is not a multiple of 4");
    EXPECT_EQ(unknown->data.size, 0U);
  }
}

TEST(ZunRtcpPsfbUnknown, RefusedAllocationsAreNotLoggedAndChangeNothing) {
  LogCapture log;
  TestAllocator allocator;
  Unknown unknown(allocator);
  ASSERT_TRUE(unknown.Read(kWire));
  const Received longer(kRow, Hex("8CCE0006 00000007 00000008 B1B2B3B4 B5B6B7B8 C1C2C3C4 C5C6C7C8"));
  const std::string before = unknown.bytes();
  allocator.RefuseFrom(0);
  ZunRtcpPsfbUnknown refused;
  EXPECT_EQ(ConstructFull(&refused, kFmt, "abcd", allocator), nullptr);
  EXPECT_EQ(ZunRtcpPsfbUnknownConstructCopy(&refused, unknown), nullptr);
  EXPECT_EQ(ZunRtcpPsfbUnknownAssign(unknown, &longer.sp()->psfb.unk), nullptr);
  EXPECT_FALSE(ZunRtcpPsfbUnknownSetData(unknown, &longer.sp()->psfb.unk.data));
  EXPECT_EQ(ToHex(unknown.bytes()), ToHex(before));
  log.ExpectNone();
}

TEST(ZunRtcpPsfbUnknown, ReadingChecksNeitherTypeNorSize) {
  LogCapture log;
  const Received odd(kRow, kWire.substr(0, 12) + "ab");
  EXPECT_TRUE(odd.ok);
  EXPECT_EQ(Str(&odd.sp()->psfb.unk.data), "ab");
  const Received known(kRow, Hex("84") + kWire.substr(1));
  EXPECT_TRUE(known.ok);
  EXPECT_EQ(known.sp()->psfb.unk.fmt, 4);
  log.ExpectNone();
}

TEST(ZunRtcpPsfbUnknown, CutAnywhereKeepsWhatWasRead) {
  ForEveryCut(kRow, kWire, [](const Received& received, ZunSizeT size, bool end_is_beyond) {
    const ZunRtcpPsfbUnknown& unknown = received.sp()->psfb.unk;
    EXPECT_EQ(received.ok, size >= 8 && !end_is_beyond);
    EXPECT_EQ(unknown.fmt, received.ok ? kFmt : 0) << "the type is stored last";
    EXPECT_EQ(unknown.sender, size >= 4 ? 0x01020304U : 0U);
    EXPECT_EQ(unknown.source, size >= 8 ? 0x11121314U : 0U);
    EXPECT_EQ(unknown.data.size, received.ok ? size - 8 : 0U);
  });
}

}  // namespace
