#include <gtest/gtest.h>

#include "tests/support/Kinds.h"
#include "tests/support/LogCapture.h"

namespace {

using test::Hex;
using test::LogCapture;
using test::TestAllocator;
using test::Text;

using Unknown = test::Built<ZunRtcpRtpfbUnknown, ZunRtcpRtpfbUnknownConstructDefault, ZunRtcpRtpfbUnknownDestruct>;

constexpr char kConstructFull[] = "ZunRtcpRtpfbUnknownConstructFull";
constexpr char kOutOfRange[] = "Unknown Transport Layer Feedback type is not in the range 0 - 31";

std::string Golden() {
  return Hex(R"(
    87 CD 00 04  | version 2, FMT 7, packet type 205, 5 words
    01 02 03 04  | sender
    05 06 07 08  | media source
    A0 A1 A2 A3 A4 A5 A6 A7  | data
  )");
}

void Fill(ZunRtcpRtpfbUnknown* p, ZunRtcpRtpfbType fmt, ZunRtpSourceId sender, ZunRtpSourceId source,
          const std::string& data) {
  p->fmt = fmt;
  p->sender = sender;
  p->source = source;
  EXPECT_TRUE(ZunRtcpRtpfbUnknownSetData(p, Text(data)));
}

void ExpectFields(const ZunRtcpRtpfbUnknown* p, ZunRtcpRtpfbType fmt, ZunRtpSourceId sender, ZunRtpSourceId source,
                  const std::string& data) {
  EXPECT_EQ(p->type, ZUN_RTCPSUBPACKET_TYPE_RTPFB);
  EXPECT_EQ(p->fmt, fmt);
  EXPECT_EQ(p->sender, sender);
  EXPECT_EQ(p->source, source);
  EXPECT_EQ(test::Str(ZunRtcpRtpfbUnknownGetData(p)), data);
}

TEST(ZunRtcpRtpfbUnknown, IsEmptyByDefault) {
  TestAllocator allocator;
  const Unknown unknown(allocator);
  ExpectFields(unknown, 0, 0, 0, "");
  EXPECT_EQ(unknown.get()->data.allocator, allocator.get());
  EXPECT_EQ(allocator.calls(), 0U);
}

TEST(ZunRtcpRtpfbUnknown, IsBuiltFromItsFields) {
  TestAllocator allocator;
  ZunRtcpRtpfbUnknown unknown;
  for (const ZunRtcpRtpfbType fmt : {0, 4, 13, 16, 29, 31}) {
    ASSERT_EQ(ZunRtcpRtpfbUnknownConstructFull(&unknown, fmt, 1, 2, Text("abcd"), allocator), &unknown);
    ExpectFields(&unknown, fmt, 1, 2, "abcd");
    EXPECT_EQ(ZunRtcpRtpfbUnknownGetAllocator(&unknown), allocator.get());
    ZunRtcpRtpfbUnknownDestruct(&unknown);
    ZunRtcpRtpfbUnknownDestruct(&unknown);
  }
}

TEST(ZunRtcpRtpfbUnknown, RefusesWhatItMustNotHoldInOrder) {
  TestAllocator allocator;
  LogCapture log;
  ZunRtcpRtpfbUnknown unknown;
  const Text odd("abcdef");
  const Text even("abcdefgh");
  for (const ZunRtcpRtpfbType fmt : {1, 2, 3, 14, 15, 30}) {
    EXPECT_EQ(ZunRtcpRtpfbUnknownConstructFull(&unknown, fmt, 1, 2, odd.get(), allocator), nullptr);
    log.ExpectOne(ZUN_LOG_ERROR, ZunLogRtcp_, kConstructFull,
                  "Type field for unknown feedback is actually a known type");
  }
  for (const ZunRtcpRtpfbType fmt : {31, 40, -1}) {
    EXPECT_EQ(ZunRtcpRtpfbUnknownConstructFull(&unknown, fmt, 1, 2, odd.get(), allocator), nullptr);
    log.ExpectOne(ZUN_LOG_ERROR, ZunLogRtcp_, kConstructFull,
                  "Length of unknown subpacket data is not a multiple of 4");
  }
  for (const ZunRtcpRtpfbType fmt : {32, 40, 287, -1}) {
    EXPECT_EQ(ZunRtcpRtpfbUnknownConstructFull(&unknown, fmt, 1, 2, even.get(), allocator), nullptr);
    log.ExpectOne(ZUN_LOG_ERROR, ZunLogRtcp_, kConstructFull, kOutOfRange);
  }
  EXPECT_EQ(allocator.calls(), 0U);
}

TEST(ZunRtcpRtpfbUnknown, SetsAnyMessageTypeOfTheWireEvenAModelledOne) {
  LogCapture log;
  Unknown unknown;
  for (const ZunRtcpRtpfbType fmt : {31, 0, 5, 1}) {
    EXPECT_TRUE(ZunRtcpRtpfbUnknownSetFeedbackMessageType(unknown, fmt));
    EXPECT_EQ(unknown->fmt, fmt);
  }
  log.ExpectNone();
  for (const ZunRtcpRtpfbType fmt : {32, 255, -1}) {
    EXPECT_FALSE(ZunRtcpRtpfbUnknownSetFeedbackMessageType(unknown, fmt));
    log.ExpectOne(ZUN_LOG_ERROR, ZunLogRtcp_, "ZunRtcpRtpfbUnknownSetFeedbackMessageType", kOutOfRange);
    EXPECT_EQ(unknown->fmt, 1);
  }
  // It still is raw bytes, under that type.
  EXPECT_EQ(test::Append(ZunRtcpRtpfbUnknownWritePacket, unknown.sp()), Hex("81CD0002 00000000 00000000"));
}

TEST(ZunRtcpRtpfbUnknown, SetsDataOfWholeWords) {
  LogCapture log;
  Unknown unknown;
  EXPECT_TRUE(ZunRtcpRtpfbUnknownSetData(unknown, Text("abcd")));
  for (const char* const data : {"a", "ab", "abc", "abcde"}) {
    EXPECT_FALSE(ZunRtcpRtpfbUnknownSetData(unknown, Text(data)));
    log.ExpectOne(ZUN_LOG_ERROR, ZunLogRtcp_, "ZunRtcpRtpfbUnknownSetData",
                  "Length of unknown Transport Layer Feedback data is not a multiple of 4");
  }
  EXPECT_EQ(test::Str(&unknown->data), "abcd");
  EXPECT_TRUE(ZunRtcpRtpfbUnknownSetData(unknown, Text("")));
  EXPECT_EQ(test::Str(&unknown->data), "");
  log.ExpectNone();
}

TEST(ZunRtcpRtpfbUnknown, ReadsAndWritesItsWireForm) {
  LogCapture log;
  Unknown unknown;
  ASSERT_TRUE(test::Read(ZunRtcpRtpfbUnknownAssignFromBuffer, unknown.sp(), Golden()));
  ExpectFields(unknown, 7, 0x01020304, 0x05060708, Hex("A0A1A2A3A4A5A6A7"));
  EXPECT_EQ(ZunRtcpRtpfbUnknownGetPacketLength(unknown.sp()), Golden().size());
  EXPECT_EQ(test::Append(ZunRtcpRtpfbUnknownWritePacket, unknown.sp()), Golden());
  test::ExpectSafeWriting(ZunRtcpRtpfbUnknownWritePacket, unknown.sp(), Golden());
  log.ExpectNone();
}

TEST(ZunRtcpRtpfbUnknown, ThePaddingBitAddsNoPadding) {
  Unknown unknown;
  Fill(unknown, 31, 1, 2, "");
  EXPECT_EQ(test::Append(ZunRtcpRtpfbUnknownWritePacket, unknown.sp(), true), Hex("BFCD0002 00000001 00000002"));
}

TEST(ZunRtcpRtpfbUnknown, KeepsWhatStandsInFrontOfACut) {
  LogCapture log;
  for (ZunSizeT size = 4; size < 12; ++size) {
    SCOPED_TRACE(size);
    for (const ZunSizeT beyond : {ZunSizeT{0}, Golden().size() - size, SIZE_MAX - size}) {
      Unknown unknown;
      Fill(unknown, 5, 10, 20, "keep");
      EXPECT_FALSE(test::Read(ZunRtcpRtpfbUnknownAssignFromBuffer, unknown.sp(), Golden().substr(0, size), beyond));
      ExpectFields(unknown, 5, size >= 8 ? 0x01020304 : 10, 20, "keep");
    }
  }
  // The length of the data is not checked, but it must be there.
  for (ZunSizeT size = 12; size <= Golden().size(); ++size) {
    SCOPED_TRACE(size);
    Unknown unknown;
    EXPECT_TRUE(test::Read(ZunRtcpRtpfbUnknownAssignFromBuffer, unknown.sp(), Golden().substr(0, size)));
    ExpectFields(unknown, 7, 0x01020304, 0x05060708, Golden().substr(12, size - 12));
    Fill(unknown, 5, 10, 20, "keep");
    EXPECT_FALSE(test::Read(ZunRtcpRtpfbUnknownAssignFromBuffer, unknown.sp(), Golden().substr(0, size), 1));
    ExpectFields(unknown, 5, 0x01020304, 0x05060708, "keep");
  }
  log.ExpectNone();
}

TEST(ZunRtcpRtpfbUnknown, ABodyBehindItsEndIsRefused) {
  const test::Datagram datagram(Golden());
  Unknown unknown;
  EXPECT_FALSE(ZunRtcpRtpfbUnknownAssignFromBuffer(unknown.sp(), datagram, 8, 4, 205, 7));
  EXPECT_FALSE(ZunRtcpRtpfbUnknownAssignFromBuffer(unknown.sp(), datagram, 100, 120, 205, 7));
  EXPECT_FALSE(ZunRtcpRtpfbUnknownAssignFromBuffer(unknown.sp(), datagram, SIZE_MAX, SIZE_MAX, 205, 7));
  ExpectFields(unknown, 0, 0, 0, "");
}

TEST(ZunRtcpRtpfbUnknown, AConstructedReadTakesTheAllocatorThatItIsGiven) {
  TestAllocator allocator;
  const test::Datagram datagram(Golden());
  ZunRtcpSubpacket sp;
  ASSERT_TRUE(ZunRtcpRtpfbUnknownConstructFromBuffer(&sp, datagram, 4, datagram->size, 205, 7, allocator));
  ExpectFields(&sp.rtpfb.unk, 7, 0x01020304, 0x05060708, Hex("A0A1A2A3A4A5A6A7"));
  EXPECT_EQ(ZunRtcpRtpfbUnknownGetAllocatorWrap(&sp), allocator.get());
  ZunRtcpRtpfbUnknownDestructWrap(&sp);

  EXPECT_FALSE(ZunRtcpRtpfbUnknownConstructFromBuffer(&sp, datagram, 4, 8, 205, 7, allocator));
  ExpectFields(&sp.rtpfb.unk, 0, 0x01020304, 0, "");
  ZunRtcpRtpfbUnknownDestructWrap(&sp);
}

TEST(ZunRtcpRtpfbUnknown, ACopyTakesItsSourcesAllocatorAndAnAssignmentKeepsItsOwn) {
  TestAllocator theirs;
  TestAllocator ours;
  Unknown source(theirs);
  Fill(source, 9, 1, 2, "abcd");

  ZunRtcpRtpfbUnknown copy;
  ASSERT_EQ(ZunRtcpRtpfbUnknownConstructCopy(&copy, source), &copy);
  ExpectFields(&copy, 9, 1, 2, "abcd");
  EXPECT_EQ(ZunRtcpRtpfbUnknownGetAllocator(&copy), theirs.get());
  ZunRtcpRtpfbUnknownDestruct(&copy);

  Unknown assigned(ours);
  ASSERT_EQ(ZunRtcpRtpfbUnknownAssignWrap(assigned.sp(), source.sp()), assigned.sp());
  ExpectFields(assigned, 9, 1, 2, "abcd");
  EXPECT_EQ(ZunRtcpRtpfbUnknownGetAllocator(assigned), ours.get());
  ASSERT_EQ(ZunRtcpRtpfbUnknownAssign(assigned, assigned), assigned.get());
  ExpectFields(assigned, 9, 1, 2, "abcd");

  for (TestAllocator* const allocator : {&theirs, &ours}) {
    ZunRtcpSubpacket sp;
    ASSERT_EQ(ZunRtcpRtpfbUnknownConstructCopyAllocator(&sp, source.sp(), *allocator), &sp);
    ExpectFields(&sp.rtpfb.unk, 9, 1, 2, "abcd");
    EXPECT_EQ(ZunRtcpRtpfbUnknownGetAllocatorWrap(&sp), allocator->get());
    ZunRtcpRtpfbUnknownDestructWrap(&sp);
  }
}

TEST(ZunRtcpRtpfbUnknown, ARefusedAllocationLosesNothing) {
  LogCapture log;
  Unknown source;
  Fill(source, 9, 1, 2, "abcdefgh");

  test::ForEveryRefusal([&](TestAllocator& refusing) {
    ZunRtcpSubpacket sp;
    if (ZunRtcpRtpfbUnknownConstructCopyAllocator(&sp, source.sp(), refusing) == nullptr) return;
    ExpectFields(&sp.rtpfb.unk, 9, 1, 2, "abcdefgh");
    ZunRtcpRtpfbUnknown copy;
    if (ZunRtcpRtpfbUnknownConstructCopy(&copy, &sp.rtpfb.unk) != nullptr) {
      ExpectFields(&copy, 9, 1, 2, "abcdefgh");
      ZunRtcpRtpfbUnknownDestruct(&copy);
    }
    ZunRtcpRtpfbUnknownDestructWrap(&sp);
  });
  test::ForEveryRefusal([&](TestAllocator& refusing) {
    ZunRtcpRtpfbUnknown full;
    if (ZunRtcpRtpfbUnknownConstructFull(&full, 9, 1, 2, &source->data, refusing) == nullptr) return;
    ExpectFields(&full, 9, 1, 2, "abcdefgh");
    ZunRtcpRtpfbUnknownDestruct(&full);
  });
  test::ForEveryRefusal([&](TestAllocator& refusing) {
    Unknown assigned(refusing);
    if (ZunRtcpRtpfbUnknownAssign(assigned, source) == nullptr) ExpectFields(assigned, 0, 0, 0, "");
    if (!ZunRtcpRtpfbUnknownSetData(assigned, Text("a longer text than before..."))) {
      EXPECT_LE(assigned->data.size, 8U);
    }
  });
  test::ForEveryRefusal([&](TestAllocator& refusing) {
    Unknown read(refusing);
    const bool ok = test::Read(ZunRtcpRtpfbUnknownAssignFromBuffer, read.sp(), Golden());
    ExpectFields(read, ok ? 7 : 0, 0x01020304, 0x05060708, ok ? Golden().substr(12) : "");
  });
  log.ExpectNone();
}

TEST(ZunRtcpRtpfbUnknown, IsReadAgainInPlace) {
  test::ExpectReadAgain(Golden(), Golden());
  test::ExpectReadAgain(Golden(), Hex("9FCD0003 00000001 00000002 61626364"));
  test::ExpectReadAgain(Hex("9FCD0003 00000001 00000002 61626364"), Golden());
}

}  // namespace
