#include "Zun/Rtp/Reports/ZunRtcpBye.h"

#include <gtest/gtest.h>

#include "tests/support/LogCapture.h"
#include "tests/support/RowChecks.h"

namespace {

using namespace test;

const Row kRow = TEST_ROW(ZunRtcpBye);

const std::string kSourcesMessage = "Number of sources for bye subpacket is not in the range 1 -- 31.";
const std::string kReasonMessage = "Length of bye subpacket reason is greater than 255";

const std::string kNoReason = Hex("81CB0001 01020304");
const std::string kTwoSources = Hex(R"(
    82 CB 0005      | two sources, type 203, 6 words
    01020304        | first source
    11121314        | second source
    08 63616D657261206F     | reason "camera o"
    00 00 00        | padding
)");

const ZunRtcpBye& In(const Slot& slot) { return slot.sp.bye; }

// Sources that end themselves: 1, 2, 3 ...
class Sources {
 public:
  explicit Sources(ZunUint32 count, ZunAllocator* a = ZunAllocatorGetSystem()) {
    ZunVector_ZunRtpSourceIdConstructDefault(&sources_, a);
    for (ZunUint32 source = 1; source <= count; ++source) {
      EXPECT_TRUE(ZunVector_ZunRtpSourceIdPushBack(&sources_, &source));
    }
  }
  ~Sources() { ZunVector_ZunRtpSourceIdDestruct(&sources_); }
  Sources(const Sources&) = delete;
  Sources& operator=(const Sources&) = delete;
  operator const ZunVector_ZunRtpSourceId*() const { return &sources_; }

 private:
  ZunVector_ZunRtpSourceId sources_;
};

ZunSizeT CountOf(const ZunRtcpBye& bye) { return ZunVector_ZunRtpSourceIdSize(ZunRtcpByeGetSources(&bye)); }

// The wire form with sources 1, 2 ..., a reason unless it is empty, and what stands behind it.
std::string Wire(int count, const std::string& reason, const std::string& padding = "") {
  std::string body;
  for (int i = 1; i <= count; ++i) body += Hex("000000") + static_cast<char>(i);
  if (!reason.empty()) body += static_cast<char>(reason.size()) + reason + padding;
  return std::string{static_cast<char>(0x80 | count), '\xCB', '\0', static_cast<char>(body.size() / 4)} + body;
}

class ByeTest : public ::testing::Test {
 protected:
  ByeTest() { EXPECT_EQ(ZunRtcpByeConstructDefault(&sp_.bye, allocator_), &sp_.bye); }
  ~ByeTest() override { ZunRtcpByeDestruct(&sp_.bye); }

  std::string bytes() const { return Bytes(kRow, sp_); }
  void ExpectError(const std::string& function, const std::string& message) {
    log_.ExpectOne(ZUN_LOGLEVEL_ERROR, ZunLogRtcp_, function, message);
  }

  LogCapture log_;
  TestAllocator allocator_;
  ZunRtcpSubpacket sp_;
};

TEST_F(ByeTest, ConstructDefaultIsEmpty) {
  EXPECT_EQ(sp_.bye.type, 203);
  EXPECT_EQ(CountOf(sp_.bye), 0U);
  EXPECT_TRUE(ZunStringEmpty(ZunRtcpByeGetReason(&sp_.bye)));
  EXPECT_EQ(ZunRtcpByeGetAllocator(&sp_.bye), allocator_.get());
  EXPECT_EQ(ZunRtcpByeGetReason(&sp_.bye)->allocator, allocator_.get());
  EXPECT_EQ(allocator_.calls(), 0U);
  log_.ExpectNone();
}

TEST_F(ByeTest, ConstructFullCopiesIntoStorageOfTheAllocator) {
  TestAllocator other;
  ZunRtcpSubpacket sp;
  ASSERT_EQ(ZunRtcpByeConstructFull(&sp.bye, Sources(2), Text("bye"), other), &sp.bye);
  EXPECT_EQ(sp.bye.type, 203);
  EXPECT_EQ(ToHex(Written(sp)), ToHex(Hex("82CB0003 00000001 00000002 03627965")));
  EXPECT_EQ(ZunRtcpByeGetAllocator(&sp.bye), other.get());
  EXPECT_EQ(ZunRtcpByeGetReason(&sp.bye)->allocator, other.get());
  ZunRtcpByeDestruct(&sp.bye);
  ZunRtcpByeDestruct(&sp.bye);
  log_.ExpectNone();
}

TEST_F(ByeTest, ConstructFullAtItsLimits) {
  ZunRtcpBye bye;
  for (const ZunUint32 count : {1U, 31U}) {
    ASSERT_EQ(ZunRtcpByeConstructFull(&bye, Sources(count), Text(std::string(255, 'r')), allocator_), &bye);
    EXPECT_EQ(CountOf(bye), count);
    ZunRtcpByeDestruct(&bye);
  }
  log_.ExpectNone();
  for (const ZunUint32 count : {0U, 32U}) {
    EXPECT_EQ(ZunRtcpByeConstructFull(&bye, Sources(count), Text("bye"), allocator_), nullptr);
    ExpectError("ZunRtcpByeConstructFull", kSourcesMessage);
  }
  EXPECT_EQ(ZunRtcpByeConstructFull(&bye, Sources(1), Text(std::string(256, 'r')), allocator_), nullptr);
  ExpectError("ZunRtcpByeConstructFull", kReasonMessage);
  EXPECT_EQ(ZunRtcpByeConstructFull(&bye, Sources(0), Text(std::string(256, 'r')), allocator_), nullptr);
  ExpectError("ZunRtcpByeConstructFull", kSourcesMessage);  // the sources are checked first
  EXPECT_EQ(allocator_.live_blocks(), 0U);
}

TEST_F(ByeTest, SetSourcesAtItsLimits) {
  EXPECT_TRUE(ZunRtcpByeSetSources(&sp_.bye, Sources(1)));
  EXPECT_TRUE(ZunRtcpByeSetSources(&sp_.bye, Sources(31)));
  log_.ExpectNone();
  for (const ZunUint32 count : {0U, 32U}) {
    EXPECT_FALSE(ZunRtcpByeSetSources(&sp_.bye, Sources(count)));
    ExpectError("ZunRtcpByeSetSources", kSourcesMessage);
    EXPECT_EQ(CountOf(sp_.bye), 31U);
  }
  EXPECT_TRUE(ZunRtcpByeSetSources(&sp_.bye, ZunRtcpByeGetSources(&sp_.bye)));
  EXPECT_EQ(ToHex(bytes()), ToHex(Wire(31, "")));
}

TEST_F(ByeTest, SetReasonAtItsLimits) {
  const std::string longest(255, 'r');
  EXPECT_TRUE(ZunRtcpByeSetReason(&sp_.bye, Text(longest)));
  log_.ExpectNone();
  EXPECT_FALSE(ZunRtcpByeSetReason(&sp_.bye, Text(std::string(256, 's'))));
  ExpectError("ZunRtcpByeSetReason", kReasonMessage);
  EXPECT_EQ(Str(ZunRtcpByeGetReason(&sp_.bye)), longest);
  ASSERT_TRUE(ZunRtcpByeSetSources(&sp_.bye, Sources(1)));
  EXPECT_EQ(ToHex(bytes()), ToHex(Wire(1, longest)));
  EXPECT_TRUE(ZunRtcpByeSetReason(&sp_.bye, Text("")));
  EXPECT_EQ(ToHex(bytes()), ToHex(Wire(1, "")));
}

TEST_F(ByeTest, WithoutSourcesItCannotBeWritten) {
  EXPECT_EQ(ZunRtcpSubpacketGetNetworkPacketLength(&sp_), 0U);
  ExpectError("ZunRtcpByeGetPacketLength", kSourcesMessage);
  Text out("before");
  EXPECT_FALSE(ZunRtcpByeWritePacket(&sp_, out, 0));
  ExpectError("ZunRtcpByeWritePacket", kSourcesMessage);
  EXPECT_EQ(out.str(), "before");
}

TEST_F(ByeTest, WithTooManySourcesItCannotBeWritten) {
  const Sources sources(32);
  ASSERT_NE(ZunVector_ZunRtpSourceIdAssign(&sp_.bye.sources, sources), nullptr);
  EXPECT_EQ(ZunRtcpSubpacketGetNetworkPacketLength(&sp_), 0U);
  ExpectError("ZunRtcpByeGetPacketLength", kSourcesMessage);
  Text out("before");
  EXPECT_FALSE(ZunRtcpByeWritePacket(&sp_, out, 0));
  ExpectError("ZunRtcpByeWritePacket", kSourcesMessage);
  EXPECT_EQ(out.str(), "before");
}

TEST_F(ByeTest, ACompoundPacketWithOneThatCannotBeWrittenSaysSoOnce) {
  ZunRtcpPacket packet;
  ZunRtcpPacketConstructDefault(&packet, ZunAllocatorGetSystem());
  ASSERT_TRUE(ZunRtcpPacketAppendSubpacket(&packet, &sp_));
  Text out;
  EXPECT_FALSE(ZunRtcpPacketGetNetworkPacket(&packet, out));
  ExpectError("ZunRtcpByeWritePacket", kSourcesMessage);
  EXPECT_EQ(ZunRtcpPacketGetNetworkPacketLength(&packet), 0U);
  ExpectError("ZunRtcpByeGetPacketLength", kSourcesMessage);
  ZunSizeT last = 0;
  EXPECT_FALSE(ZunRtcpPacketGetPartialNetworkPacket(&packet, out, 0, 1200, nullptr, &last));
  ExpectError("ZunRtcpByeGetPacketLength", kSourcesMessage);
  ZunRtcpPacketDestruct(&packet);
}

TEST(Bye, ReadsSourcesAndReason) {
  ExpectComesBackUnchanged(kTwoSources);
  const Parsed parsed(kTwoSources);
  ASSERT_TRUE(parsed.ok);
  ASSERT_EQ(ZunRtcpSubpacketGetType(&parsed[0]), 203);
  const ZunRtcpBye* const bye = ZunRtcpSubpacketGetBye(&parsed[0]);
  ASSERT_EQ(CountOf(*bye), 2U);
  EXPECT_EQ(ZunRtcpByeGetSources(bye)->begin[0], 0x01020304U);
  EXPECT_EQ(ZunRtcpByeGetSources(bye)->begin[1], 0x11121314U);
  EXPECT_EQ(Str(ZunRtcpByeGetReason(bye)), "camera o");
}

TEST(Bye, EveryReasonIsFilledUpToAWord) {
  ExpectComesBackUnchanged(kNoReason);
  EXPECT_EQ(kNoReason.size(), 8U);
  ExpectComesBackUnchanged(Wire(1, "b", std::string(2, '\0')));
  ExpectComesBackUnchanged(Wire(1, "by", std::string(1, '\0')));
  ExpectComesBackUnchanged(Wire(1, "bye"));
  EXPECT_EQ(Wire(1, "bye").size(), 12U);
  ExpectComesBackUnchanged(Wire(1, "bye!", std::string(3, '\0')));
  EXPECT_EQ(Wire(1, "bye!", std::string(3, '\0')).size(), 16U);
  ExpectComesBackUnchanged(Wire(31, std::string(255, 'r')));
}

TEST(Bye, WithoutSourcesItIsRefusedAndLeavesTheOldOnes) {
  const Slot fresh(kRow, Hex("80CB0000"));
  EXPECT_FALSE(fresh.ok);
  Slot used(kRow, kTwoSources);
  EXPECT_FALSE(used.Again(Hex("80CB0000")));
  EXPECT_EQ(ToHex(used.bytes()), ToHex(kTwoSources));
}

TEST(Bye, AnEmptyReasonIsReadAndNotWritten) {
  const Slot slot(kRow, Hex("81CB0002 01020304 00000000"));
  ASSERT_TRUE(slot.ok);
  EXPECT_TRUE(ZunStringEmpty(ZunRtcpByeGetReason(&In(slot))));
  EXPECT_EQ(ToHex(slot.bytes()), ToHex(kNoReason));
}

TEST(Bye, PaddingIsPassedUnseen) {
  const Slot slot(kRow, Wire(1, "b", Hex("FFFF")));
  ASSERT_TRUE(slot.ok);
  EXPECT_EQ(ToHex(slot.bytes()), ToHex(Wire(1, "b", Hex("0000")))) << "it is written as zeros";
}

TEST(Bye, AReasonMustEndExactlyWhereTheBodyDoes) {
  for (const char* const wire : {
           "81CB0002 01020304 04627965",           // longer than what is left
           "81CB0002 01020304 FF627965",           //
           "81CB0003 01020304 03627965 00000000",  // ends before the body
           "81CB0003 01020304 00000000 00000000",  //
       }) {
    Slot slot(kRow, Hex(wire));
    EXPECT_FALSE(slot.ok) << wire;
    EXPECT_EQ(CountOf(In(slot)), 1U) << "the sources are kept";
    EXPECT_TRUE(ZunStringEmpty(ZunRtcpByeGetReason(&In(slot))));
    ASSERT_TRUE(slot.Again(kTwoSources));
    EXPECT_FALSE(slot.Again(Hex(wire)));
    EXPECT_EQ(CountOf(In(slot)), 1U);
    EXPECT_EQ(Str(ZunRtcpByeGetReason(&In(slot))), "camera o") << "and so is the old reason";
  }
}

TEST(Bye, AReadWithoutReasonClearsTheOldOne) {
  Slot slot(kRow, kTwoSources);
  ASSERT_TRUE(slot.Again(kNoReason));
  EXPECT_EQ(ToHex(slot.bytes()), ToHex(kNoReason));
}

TEST(Bye, EveryCut) {
  const ZunSizeT sources_end = 8;
  const ZunSizeT reason_end = sources_end + 1 + 8;
  ForEveryCut(kRow, kTwoSources, [&](const Slot& slot, ZunSizeT size, bool end_is_beyond) {
    // Without a reason a body may end behind its sources. The padding may be missing where the body is said to go on.
    EXPECT_EQ(slot.ok, end_is_beyond ? size >= reason_end : size == sources_end);
    EXPECT_EQ(CountOf(In(slot)), size < sources_end ? size / 4 : 2);
    EXPECT_EQ(Str(ZunRtcpByeGetReason(&In(slot))), end_is_beyond && size >= reason_end ? "camera o" : "");
  });
}

TEST(Bye, AFailedAssignKeepsTheReason) {
  TestAllocator refusing;
  Slot target(kRow, kNoReason, refusing.get());
  const Slot source(kRow, kTwoSources);
  refusing.RefuseOnce(0);  // there is room for two sources
  EXPECT_EQ(ZunRtcpByeAssign(&target.sp.bye, &source.sp.bye), nullptr);
  EXPECT_EQ(CountOf(In(target)), 2U) << "the sources come first";
  EXPECT_TRUE(ZunStringEmpty(ZunRtcpByeGetReason(&In(target))));
}

TEST(Bye, AllocatorRules) { ExpectAllocatorRules(kRow, kTwoSources, kNoReason); }

TEST(Bye, RefusalsLoseNothing) {
  const std::string large = Wire(31, std::string(255, 'r'));
  ExpectRefusalsLoseNothing(kRow, large, kNoReason);
  ExpectRefusalsLoseNothing(kRow, kNoReason, large);
  ExpectRefusalsLoseNothing(kRow, kTwoSources, large);
  ExpectFailedWriteLeavesABeginning(kRow, kTwoSources, 13, 21);
  EXPECT_EQ(ForEveryRefusal([](TestAllocator& refusing) {
              ZunRtcpBye bye;
              const bool made = ZunRtcpByeConstructFull(&bye, Sources(3), Text("reason"), refusing) != nullptr;
              EXPECT_EQ(made, refusing.refused() == 0);
              if (made) ZunRtcpByeDestruct(&bye);
            }),
            2U);
  // A copy with another allocator has no second way.
  const Slot source(kRow, kTwoSources);
  TestAllocator refusing;
  refusing.RefuseOnce(1);
  ZunRtcpSubpacket copy;
  EXPECT_EQ(kRow.construct_copy_allocator(&copy, &source.sp, refusing), nullptr);
}

TEST(Bye, InPlace) {
  ExpectReadsInPlaceAsFresh(kRow, {kNoReason, kTwoSources, Wire(31, std::string(255, 'r'))});
  ExpectWritesInPlace(kRow, kTwoSources);
}

}  // namespace
