#include "Zun/Rtp/PayloadFeedback/ZunRtcpPsfbUnknown.h"

#include <gtest/gtest.h>

#include "tests/support/LogCapture.h"
#include "tests/support/RowChecks.h"

namespace {

using namespace test;

const Row kRow = TEST_ROW(ZunRtcpPsfbUnknown);

const std::string kNine = Hex(R"(
    89 CE 0004    | version 2, FMT 9, type 206, 5 words
    01020304      | sender
    11121314      | media source
    A1A2A3A4 A5A6A7A8 | FCI
)");
const std::string kTwelve = Hex("8CCE0003 00000007 00000008 B1B2B3B4");

constexpr char kConstructFull[] = "ZunRtcpPsfbUnknownConstructFull";
constexpr char kSetType[] = "ZunRtcpPsfbUnknownSetFeedbackMessageType";
constexpr char kKnownType[] = "Type field for unknown feedback is actually a known type";
constexpr char kOddData[] = "Length of Payload Specific Feedback data is not a multiple of 4";
constexpr char kOutOfRange[] = "Unknown Payload Specific Feedback type is not in the range 0 - 31";

class UnknownTest : public ::testing::Test {
 protected:
  UnknownTest() {
    ZunRtcpPsfbUnknownConstructFull(&unknown_, 9, 0x01020304, 0x11121314, Text(Hex("A1A2A3A4A5A6A7A8")), allocator_);
  }
  ~UnknownTest() override { ZunRtcpPsfbUnknownDestruct(&unknown_); }
  const ZunRtcpSubpacket& sp() const { return *reinterpret_cast<const ZunRtcpSubpacket*>(&unknown_); }

  ZunRtcpPsfbUnknown* ConstructFull(ZunRtcpPsfbUnknown* p, ZunRtcpPsfbType type, const std::string& data) {
    return ZunRtcpPsfbUnknownConstructFull(p, type, 1, 2, Text(data), allocator_);
  }
  // Nothing is constructed, nothing is allocated, and this alone is logged.
  void ExpectRefused(ZunRtcpPsfbType type, const std::string& data, ZunLogCategory category, const char* message) {
    SCOPED_TRACE(::testing::Message() << "type " << type << ", " << data.size() << " bytes");
    const std::size_t calls = allocator_.calls();
    ZunRtcpPsfbUnknown refused;
    EXPECT_EQ(ConstructFull(&refused, type, data), nullptr);
    log_.ExpectOne(ZUN_LOG_ERROR, category, kConstructFull, message);
    EXPECT_EQ(allocator_.calls(), calls);
  }

  TestAllocator allocator_;
  ZunRtcpPsfbUnknown unknown_;
  LogCapture log_;
};

TEST_F(UnknownTest, ConstructDefaultIsEmpty) {
  ZunRtcpPsfbUnknown unknown;
  const std::size_t calls = allocator_.calls();
  ASSERT_EQ(ZunRtcpPsfbUnknownConstructDefault(&unknown, allocator_), &unknown);
  EXPECT_EQ(unknown.type, 206);
  EXPECT_EQ(unknown.fmt, 0);
  EXPECT_EQ(unknown.sender, 0U);
  EXPECT_EQ(unknown.source, 0U);
  EXPECT_EQ(ZunRtcpPsfbUnknownGetData(&unknown)->size, 0U);
  EXPECT_EQ(ZunRtcpPsfbUnknownGetAllocator(&unknown), allocator_.get());
  EXPECT_EQ(allocator_.calls(), calls);
  ZunRtcpPsfbUnknownDestruct(&unknown);
}

TEST_F(UnknownTest, WritesGoldenBytes) { EXPECT_EQ(ToHex(Bytes(kRow, sp())), ToHex(kNine)); }

TEST_F(UnknownTest, ReadsGoldenBytes) {
  const Parsed parsed(kNine);
  ASSERT_TRUE(parsed.ok);
  const ZunRtcpPsfbUnknown* const unknown = ZunRtcpPsfbGetUnknown(&parsed[0].psfb);
  EXPECT_EQ(unknown->type, 206);
  EXPECT_EQ(unknown->fmt, 9);
  EXPECT_EQ(unknown->sender, 0x01020304U);
  EXPECT_EQ(unknown->source, 0x11121314U);
  EXPECT_EQ(Str(ZunRtcpPsfbUnknownGetData(unknown)), Hex("A1A2A3A4A5A6A7A8"));
}

TEST_F(UnknownTest, ConstructFullStoresEveryUnknownType) {
  for (ZunRtcpPsfbType type = 0; type <= 31; ++type) {
    if (!ZunRtcpPsfbTypeIsUnknown(type)) continue;
    ZunRtcpPsfbUnknown unknown;
    ASSERT_EQ(ConstructFull(&unknown, type, "abcd"), &unknown) << type;
    EXPECT_EQ(unknown.type, 206);
    EXPECT_EQ(unknown.fmt, type);
    EXPECT_EQ(unknown.sender, 1U);
    EXPECT_EQ(unknown.source, 2U);
    EXPECT_EQ(Str(&unknown.data), "abcd");
    EXPECT_EQ(unknown.data.allocator, allocator_.get());
    ZunRtcpPsfbUnknownDestruct(&unknown);
  }
  log_.ExpectNone();
}

TEST_F(UnknownTest, AKnownTypeIsReportedFirstAndInTheGeneralCategory) {
  for (const ZunRtcpPsfbType known : {1, 2, 3, 4, 5, 6, 15}) {
    ExpectRefused(known, "abcd", ZunLogRtcp_, kKnownType);
    ExpectRefused(known, "abcdef", ZunLogRtcp_, kKnownType);
  }
}

TEST_F(UnknownTest, OddDataIsReportedBeforeTheRangeAndInTheFeedbackCategory) {
  for (const char* const odd : {"a", "ab", "abc", "abcdef"}) {
    ExpectRefused(9, odd, ZunLogRtcpFeedback_, kOddData);
    ExpectRefused(40, odd, ZunLogRtcpFeedback_, kOddData);
  }
}

TEST_F(UnknownTest, ATypeOutside0To31IsReportedInTheFeedbackCategory) {
  for (const ZunRtcpPsfbType type : {32, 40, 256 + 9, -1, INT32_MIN, INT32_MAX}) {
    ExpectRefused(type, "abcd", ZunLogRtcpFeedback_, kOutOfRange);
  }
}

TEST_F(UnknownTest, SetFeedbackMessageTypeTakesKnownTypesToo) {
  EXPECT_TRUE(ZunRtcpPsfbUnknownSetFeedbackMessageType(&unknown_, 1));
  EXPECT_EQ(unknown_.fmt, 1);
  EXPECT_EQ(ToHex(Bytes(kRow, sp())), ToHex(Hex("81") + kNine.substr(1))) << "the raw bytes go out under that type";
  for (const ZunRtcpPsfbType type : {0, 15, 31}) {
    EXPECT_TRUE(ZunRtcpPsfbUnknownSetFeedbackMessageType(&unknown_, type));
    EXPECT_EQ(unknown_.fmt, type);
  }
  log_.ExpectNone();
}

TEST_F(UnknownTest, SetFeedbackMessageTypeRefusesWhatTheWireCannotHold) {
  for (const ZunRtcpPsfbType type : {32, 255, -1, INT32_MIN}) {
    EXPECT_FALSE(ZunRtcpPsfbUnknownSetFeedbackMessageType(&unknown_, type));
    log_.ExpectOne(ZUN_LOG_ERROR, ZunLogRtcpFeedback_, kSetType, kOutOfRange);
    EXPECT_EQ(unknown_.fmt, 9);
  }
}

TEST_F(UnknownTest, SetDataTakesWholeWords) {
  EXPECT_TRUE(ZunRtcpPsfbUnknownSetData(&unknown_, Text("abcd")));
  EXPECT_EQ(Str(&unknown_.data), "abcd");
  EXPECT_TRUE(ZunRtcpPsfbUnknownSetData(&unknown_, Text("")));
  EXPECT_EQ(unknown_.data.size, 0U);
  log_.ExpectNone();
  for (const char* const odd : {"a", "ab", "abc", "abcdef"}) {
    EXPECT_FALSE(ZunRtcpPsfbUnknownSetData(&unknown_, Text(odd)));
    log_.ExpectOne(ZUN_LOG_ERROR, ZunLogRtcpFeedback_, "ZunRtcpPsfbUnknownSetData",
                   "Length of unknown Payload Specific Feedback data is not a multiple of 4");
    EXPECT_EQ(unknown_.data.size, 0U);
  }
}

TEST_F(UnknownTest, RefusedAllocationsAreNotLoggedAndChangeNothing) {
  const Slot longer(kRow, Hex("8CCE0006 00000007 00000008 B1B2B3B4 B5B6B7B8 C1C2C3C4 C5C6C7C8"));
  const std::string before = Bytes(kRow, sp());
  allocator_.RefuseFrom(0);
  ZunRtcpPsfbUnknown refused;
  EXPECT_EQ(ConstructFull(&refused, 9, "abcd"), nullptr);
  EXPECT_EQ(ZunRtcpPsfbUnknownConstructCopy(&refused, &unknown_), nullptr);
  EXPECT_EQ(ZunRtcpPsfbUnknownAssign(&unknown_, &longer.sp.psfb.unk), nullptr);
  EXPECT_FALSE(ZunRtcpPsfbUnknownSetData(&unknown_, &longer.sp.psfb.unk.data));
  EXPECT_EQ(ToHex(Bytes(kRow, sp())), ToHex(before));
  log_.ExpectNone();
}

TEST_F(UnknownTest, ReadingChecksNeitherTypeNorSize) {
  const Slot odd(kRow, kNine.substr(0, 12) + "ab");
  EXPECT_TRUE(odd.ok);
  EXPECT_EQ(Str(&odd.sp.psfb.unk.data), "ab");
  const Slot known(kRow, Hex("84") + kNine.substr(1));
  EXPECT_TRUE(known.ok);
  EXPECT_EQ(known.sp.psfb.unk.fmt, 4);
  log_.ExpectNone();
}

TEST_F(UnknownTest, AnEmptyFciComesBack) { ExpectComesBackUnchanged(Hex("89CE0002 01020304 11121314")); }

TEST_F(UnknownTest, CutAnywhereKeepsWhatWasRead) {
  ForEveryCut(kRow, kNine, [](const Slot& slot, ZunSizeT size, bool end_is_beyond) {
    const ZunRtcpPsfbUnknown& unknown = slot.sp.psfb.unk;
    EXPECT_EQ(slot.ok, size >= 8 && !end_is_beyond);
    EXPECT_EQ(unknown.fmt, slot.ok ? 9 : 0) << "the type is stored last";
    EXPECT_EQ(unknown.sender, size >= 4 ? 0x01020304U : 0U);
    EXPECT_EQ(unknown.source, size >= 8 ? 0x11121314U : 0U);
    EXPECT_EQ(unknown.data.size, slot.ok ? size - 8 : 0U);
  });
}

TEST_F(UnknownTest, KeepsTheRulesOfEveryRow) {
  ExpectComesBackUnchanged(kNine);
  ExpectAllocatorRules(kRow, kNine, kTwelve);
  ExpectRefusalsLoseNothing(kRow, kNine, kTwelve);
  ExpectFailedWriteLeavesABeginning(kRow, kNine, 12, 20);
  ExpectReadsInPlaceAsFresh(kRow, {kNine, kTwelve, Hex("89CE0004 00000001 00000002 C1C2C3C4 C5C6C7C8")});
  ExpectWritesInPlace(kRow, kNine);
}

}  // namespace
