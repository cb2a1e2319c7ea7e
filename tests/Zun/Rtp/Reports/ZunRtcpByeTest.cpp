#include "Zun/Rtp/Reports/ZunRtcpBye.h"

#include <gtest/gtest.h>

#include "Zun/Rtp/Cpp/List.h"
#include "tests/support/LogCapture.h"
#include "tests/support/Samples.h"

namespace {

using namespace test;

using Bye = TEST_OBJECT(ZunRtcpBye);

const Row& kRow = kRowOf<ZunRtcpBye>;

const std::string kSourcesMessage = "Number of sources for bye subpacket is not in the range 1 -- 31.";
const std::string kReasonMessage = "Length of bye subpacket reason is greater than 255";

const ZunRtcpBye& In(const Received& received) { return received.sp()->bye; }

// Owned sources: 1, 2, 3 ...
class Sources : public zun::rtcp::Owning<ZunVector_ZunRtpSourceId> {
 public:
  explicit Sources(ZunUint32 count, ZunAllocator* a = ZunAllocatorGetSystem()) : Owning(a) {
    for (ZunUint32 source = 1; source <= count; ++source) EXPECT_TRUE(ZunVector_ZunRtpSourceIdPushBack(get(), &source));
  }
  operator const ZunVector_ZunRtpSourceId*() const { return get(); }
};

ZunSizeT CountOf(const ZunRtcpBye& bye) { return ZunVector_ZunRtpSourceIdSize(ZunRtcpByeGetSources(&bye)); }

// The wire form with sources 1, 2 ..., a reason unless it is empty, and what stands after it.
std::string Wire(int count, const std::string& reason, const std::string& padding = "") {
  std::string body;
  for (int i = 1; i <= count; ++i) body += Hex("000000") + static_cast<char>(i);
  if (!reason.empty()) body += static_cast<char>(reason.size()) + reason + padding;
  return Subpacket(203, count, body);
}

void ExpectError(LogCapture& log, const std::string& function, const std::string& message) {
  log.ExpectOne(ZUN_LOGLEVEL_ERROR, ZunLogRtcp_, function, message);
}

TEST(ZunRtcpBye, ConstructDefaultIsEmpty) {
  LogCapture log;
  TestAllocator allocator;
  Bye bye(allocator);
  EXPECT_EQ(bye->type, 203);
  EXPECT_EQ(CountOf(*bye.get()), 0U);
  EXPECT_TRUE(ZunStringEmpty(ZunRtcpByeGetReason(bye)));
  EXPECT_EQ(ZunRtcpByeGetAllocator(bye), allocator.get());
  EXPECT_EQ(ZunRtcpByeGetReason(bye)->allocator, allocator.get());
  EXPECT_EQ(allocator.calls(), 0U);
  log.ExpectNone();
}

TEST(ZunRtcpBye, ConstructFullCopiesIntoStorageOfTheAllocator) {
  LogCapture log;
  TestAllocator other;
  ZunRtcpSubpacket sp;
  ASSERT_EQ(ZunRtcpByeConstructFull(&sp.bye, Sources(2), Text("bye"), other), &sp.bye);
  EXPECT_EQ(sp.bye.type, 203);
  EXPECT_EQ(ToHex(Written(sp)), ToHex(Hex("82CB0003 00000001 00000002 03627965")));
  EXPECT_EQ(ZunRtcpByeGetAllocator(&sp.bye), other.get());
  EXPECT_EQ(ZunRtcpByeGetReason(&sp.bye)->allocator, other.get());
  ZunRtcpByeDestruct(&sp.bye);
  ZunRtcpByeDestruct(&sp.bye);
  log.ExpectNone();
}

TEST(ZunRtcpBye, ConstructFullAtItsLimits) {
  LogCapture log;
  TestAllocator allocator;
  ZunRtcpBye bye;
  for (const ZunUint32 count : {1U, 31U}) {
    ASSERT_EQ(ZunRtcpByeConstructFull(&bye, Sources(count), Text(std::string(255, 'r')), allocator), &bye);
    EXPECT_EQ(CountOf(bye), count);
    ZunRtcpByeDestruct(&bye);
  }
  log.ExpectNone();
  for (const ZunUint32 count : {0U, 32U}) {
    EXPECT_EQ(ZunRtcpByeConstructFull(&bye, Sources(count), Text("bye"), allocator), nullptr);
    ExpectError(log, "ZunRtcpByeConstructFull", kSourcesMessage);
  }
  EXPECT_EQ(ZunRtcpByeConstructFull(&bye, Sources(1), Text(std::string(256, 'r')), allocator), nullptr);
  ExpectError(log, "ZunRtcpByeConstructFull", kReasonMessage);
  EXPECT_EQ(ZunRtcpByeConstructFull(&bye, Sources(0), Text(std::string(256, 'r')), allocator), nullptr);
  ExpectError(log, "ZunRtcpByeConstructFull", kSourcesMessage);  // the sources are checked first
  EXPECT_EQ(allocator.live_blocks(), 0U);
}

TEST(ZunRtcpBye, SetSourcesAtItsLimits) {
  LogCapture log;
  Bye bye;
  EXPECT_TRUE(ZunRtcpByeSetSources(bye, Sources(1)));
  EXPECT_TRUE(ZunRtcpByeSetSources(bye, Sources(31)));
  log.ExpectNone();
  for (const ZunUint32 count : {0U, 32U}) {
    EXPECT_FALSE(ZunRtcpByeSetSources(bye, Sources(count)));
    ExpectError(log, "ZunRtcpByeSetSources", kSourcesMessage);
    EXPECT_EQ(CountOf(*bye.get()), 31U);
  }
  EXPECT_TRUE(ZunRtcpByeSetSources(bye, ZunRtcpByeGetSources(bye)));
  EXPECT_EQ(ToHex(bye.bytes()), ToHex(Wire(31, "")));
}

TEST(ZunRtcpBye, SetReasonAtItsLimits) {
  LogCapture log;
  Bye bye;
  const std::string longest(255, 'r');
  EXPECT_TRUE(ZunRtcpByeSetReason(bye, Text(longest)));
  log.ExpectNone();
  EXPECT_FALSE(ZunRtcpByeSetReason(bye, Text(std::string(256, 's'))));
  ExpectError(log, "ZunRtcpByeSetReason", kReasonMessage);
  EXPECT_EQ(Str(ZunRtcpByeGetReason(bye)), longest);
  ASSERT_TRUE(ZunRtcpByeSetSources(bye, Sources(1)));
  EXPECT_EQ(ToHex(bye.bytes()), ToHex(Wire(1, longest)));
  EXPECT_TRUE(ZunRtcpByeSetReason(bye, Text("")));
  EXPECT_EQ(ToHex(bye.bytes()), ToHex(Wire(1, "")));
}

TEST(ZunRtcpBye, WithoutSourcesItCannotBeWritten) {
  LogCapture log;
  Bye bye;
  EXPECT_EQ(ZunRtcpSubpacketGetNetworkPacketLength(bye.sp()), 0U);
  ExpectError(log, "ZunRtcpByeGetPacketLength", kSourcesMessage);
  Text out("before");
  EXPECT_FALSE(ZunRtcpByeWritePacket(bye.sp(), out, 0));
  ExpectError(log, "ZunRtcpByeWritePacket", kSourcesMessage);
  EXPECT_EQ(out.str(), "before");
}

TEST(ZunRtcpBye, WithTooManySourcesItCannotBeWritten) {
  LogCapture log;
  Bye bye;
  const Sources sources(32);
  ASSERT_NE(ZunVector_ZunRtpSourceIdAssign(&bye->sources, sources), nullptr);
  EXPECT_EQ(ZunRtcpSubpacketGetNetworkPacketLength(bye.sp()), 0U);
  ExpectError(log, "ZunRtcpByeGetPacketLength", kSourcesMessage);
  Text out("before");
  EXPECT_FALSE(ZunRtcpByeWritePacket(bye.sp(), out, 0));
  ExpectError(log, "ZunRtcpByeWritePacket", kSourcesMessage);
  EXPECT_EQ(out.str(), "before");
}

TEST(ZunRtcpBye, ACompoundPacketWithOneThatCannotBeWrittenSaysSoOnce) {
  LogCapture log;
  Bye bye;
  ZunRtcpPacket packet;
  ZunRtcpPacketConstructDefault(&packet, ZunAllocatorGetSystem());
  ASSERT_TRUE(ZunRtcpPacketAppendSubpacket(&packet, bye.sp()));
  Text out;
  EXPECT_FALSE(ZunRtcpPacketGetNetworkPacket(&packet, out));
  ExpectError(log, "ZunRtcpByeWritePacket", kSourcesMessage);
  EXPECT_EQ(ZunRtcpPacketGetNetworkPacketLength(&packet), 0U);
  ExpectError(log, "ZunRtcpByeGetPacketLength", kSourcesMessage);
  ZunSizeT last = 0;
  EXPECT_FALSE(ZunRtcpPacketGetPartialNetworkPacket(&packet, out, 0, 1200, nullptr, &last));
  ExpectError(log, "ZunRtcpByeGetPacketLength", kSourcesMessage);
  ZunRtcpPacketDestruct(&packet);
}

TEST(ZunRtcpBye, ReadsSourcesAndReason) {
  const Parsed parsed(Golden("ByeWithReason"));
  ASSERT_TRUE(parsed.ok);
  ASSERT_EQ(ZunRtcpSubpacketGetType(&parsed[0]), 203);
  const ZunRtcpBye* const bye = ZunRtcpSubpacketGetBye(&parsed[0]);
  ASSERT_EQ(CountOf(*bye), 2U);
  EXPECT_EQ(ZunRtcpByeGetSources(bye)->begin[0], 0x01020304U);
  EXPECT_EQ(ZunRtcpByeGetSources(bye)->begin[1], 0x11121314U);
  EXPECT_EQ(Str(ZunRtcpByeGetReason(bye)), "camera o");
}

TEST(ZunRtcpBye, WithoutSourcesItIsRefusedAndLeavesTheOldOnes) {
  const Received fresh(kRow, Hex("80CB0000"));
  EXPECT_FALSE(fresh.ok);
  Received used(kRow, Golden("ByeWithReason"));
  EXPECT_FALSE(used.Read(Hex("80CB0000")));
  EXPECT_EQ(ToHex(used.bytes()), ToHex(Golden("ByeWithReason")));
}

TEST(ZunRtcpBye, AnEmptyReasonIsReadAndNotWritten) {
  const Received received(kRow, Hex("81CB0002 01020304 00000000"));
  ASSERT_TRUE(received.ok);
  EXPECT_TRUE(ZunStringEmpty(ZunRtcpByeGetReason(&In(received))));
  EXPECT_EQ(ToHex(received.bytes()), ToHex(Golden("ByeWithoutReason")));
}

TEST(ZunRtcpBye, PaddingIsPassedUnseen) {
  const Received received(kRow, Wire(1, "b", Hex("FFFF")));
  ASSERT_TRUE(received.ok);
  EXPECT_EQ(ToHex(received.bytes()), ToHex(Wire(1, "b", Hex("0000")))) << "it is written as zeros";
}

TEST(ZunRtcpBye, AReasonMustEndExactlyWhereTheBodyDoes) {
  for (const char* const wire : {
           "81CB0002 01020304 04627965",           // longer than what is left
           "81CB0002 01020304 FF627965",           //
           "81CB0003 01020304 03627965 00000000",  // ends before the body
           "81CB0003 01020304 00000000 00000000",  //
       }) {
    Received received(kRow, Hex(wire));
    EXPECT_FALSE(received.ok) << wire;
    EXPECT_EQ(CountOf(In(received)), 1U) << "the sources are kept";
    EXPECT_TRUE(ZunStringEmpty(ZunRtcpByeGetReason(&In(received))));
    ASSERT_TRUE(received.Read(Golden("ByeWithReason")));
    EXPECT_FALSE(received.Read(Hex(wire)));
    EXPECT_EQ(CountOf(In(received)), 1U);
    EXPECT_EQ(Str(ZunRtcpByeGetReason(&In(received))), "camera o") << "and so is the old reason";
  }
}

TEST(ZunRtcpBye, AReadWithoutReasonClearsTheOldOne) {
  Received received(kRow, Golden("ByeWithReason"));
  ASSERT_TRUE(received.Read(Golden("ByeWithoutReason")));
  EXPECT_EQ(ToHex(received.bytes()), ToHex(Golden("ByeWithoutReason")));
}

TEST(ZunRtcpBye, EveryCut) {
  const ZunSizeT sources_end = 8;
  const ZunSizeT reason_end = sources_end + 1 + 8;
  ForEveryCut(kRow, Golden("ByeWithReason"), [&](const Received& received, ZunSizeT size, bool end_is_beyond) {
    // Without a reason a body may end after its sources. The padding may be missing where the body is said to go on.
    EXPECT_EQ(received.ok, end_is_beyond ? size >= reason_end : size == sources_end);
    EXPECT_EQ(CountOf(In(received)), size < sources_end ? size / 4 : 2);
    EXPECT_EQ(Str(ZunRtcpByeGetReason(&In(received))), end_is_beyond && size >= reason_end ? "camera o" : "");
  });
}

TEST(ZunRtcpBye, AFailedAssignKeepsTheReason) {
  TestAllocator refusing;
  Received target(kRow, Golden("ByeWithoutReason"), refusing.get());
  const Received source(kRow, Golden("ByeWithReason"));
  refusing.RefuseOnce(0);  // there is room for two sources
  EXPECT_EQ(ZunRtcpByeAssign(&target.sp()->bye, &source.sp()->bye), nullptr);
  EXPECT_EQ(CountOf(In(target)), 2U) << "the sources come first";
  EXPECT_TRUE(ZunStringEmpty(ZunRtcpByeGetReason(&In(target))));
}

TEST(ZunRtcpBye, ARefusedConstructionOwnsNothing) {
  EXPECT_EQ(ForEveryRefusal([](TestAllocator& refusing) {
              ZunRtcpBye bye;
              const bool made = ZunRtcpByeConstructFull(&bye, Sources(3), Text("reason"), refusing) != nullptr;
              EXPECT_EQ(made, refusing.refused() == 0);
              if (made) ZunRtcpByeDestruct(&bye);
            }),
            2U);
}

TEST(ZunRtcpBye, ACopyWithAnotherAllocatorHasNoSecondWay) {
  const Received source(kRow, Golden("ByeWithReason"));
  TestAllocator refusing;
  refusing.RefuseOnce(1);
  ZunRtcpSubpacket copy;
  EXPECT_EQ(kRow.construct_copy_allocator(&copy, source.sp(), refusing), nullptr);
}

TEST(ZunRtcpBye, EveryReasonIsFilledUpToAWord) {
  for (std::size_t size = 1; size <= 255; ++size) {
    const std::string wire = Wire(1, std::string(size, 'r'), std::string((255 - size) % 4, '\0'));
    const Received received(kRow, wire);
    EXPECT_EQ(Str(ZunRtcpByeGetReason(&In(received))).size(), size);
    EXPECT_EQ(ToHex(received.bytes()), ToHex(wire));
  }
}

}  // namespace
