#include <gtest/gtest.h>

#include "tests/support/LogCapture.h"
#include "tests/support/Samples.h"

namespace {

using namespace test;

using Unknown = TEST_OBJECT(ZunRtcpRtpfbUnknown);

constexpr char kConstructFull[] = "ZunRtcpRtpfbUnknownConstructFull";
constexpr char kOutOfRange[] = "Unknown Transport Layer Feedback type is not in the range 0 - 31";

const std::string kWire = Golden("RtpfbUnknown");
const ZunRtcpRtpfbType kFmt = CountOf(kWire);

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
  EXPECT_EQ(Str(ZunRtcpRtpfbUnknownGetData(p)), data);
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
  for (ZunRtcpRtpfbType fmt = 0; fmt <= 31; ++fmt) {
    if (!ZunRtcpRtpfbFeedbackMessageIsUnknown(fmt)) continue;
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
  for (const ZunRtcpRtpfbType fmt : {kFmt, 40, -1}) {
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
  EXPECT_EQ(unknown.bytes(), Hex("81CD0002 00000000 00000000"));
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
  EXPECT_EQ(Str(&unknown->data), "abcd");
  EXPECT_TRUE(ZunRtcpRtpfbUnknownSetData(unknown, Text("")));
  EXPECT_EQ(Str(&unknown->data), "");
  log.ExpectNone();
}

TEST(ZunRtcpRtpfbUnknown, ReadsAndWritesItsWireForm) {
  LogCapture log;
  Unknown unknown;
  ASSERT_TRUE(unknown.Read(kWire));
  ExpectFields(unknown, kFmt, 0x01020304, 0x05060708, Hex("A0A1A2A3A4A5A6A7"));
  EXPECT_EQ(ZunRtcpRtpfbUnknownGetPacketLength(unknown.sp()), kWire.size());
  EXPECT_EQ(unknown.bytes(), kWire);
  log.ExpectNone();
}

TEST(ZunRtcpRtpfbUnknown, KeepsWhatStandsInFrontOfACut) {
  LogCapture log;
  for (ZunSizeT size = 4; size < 12; ++size) {
    SCOPED_TRACE(size);
    for (const ZunSizeT beyond : {ZunSizeT{0}, kWire.size() - size, SIZE_MAX - size}) {
      Unknown unknown;
      Fill(unknown, 5, 10, 20, "keep");
      EXPECT_FALSE(unknown.Read(kWire.substr(0, size), {.beyond = beyond}));
      ExpectFields(unknown, 5, size >= 8 ? 0x01020304 : 10, 20, "keep");
    }
  }
  // The length of the data is not checked, but it must be there.
  for (ZunSizeT size = 12; size <= kWire.size(); ++size) {
    SCOPED_TRACE(size);
    Unknown unknown;
    EXPECT_TRUE(unknown.Read(kWire.substr(0, size)));
    ExpectFields(unknown, kFmt, 0x01020304, 0x05060708, kWire.substr(12, size - 12));
    Fill(unknown, 5, 10, 20, "keep");
    EXPECT_FALSE(unknown.Read(kWire.substr(0, size), {.beyond = 1}));
    ExpectFields(unknown, 5, 0x01020304, 0x05060708, "keep");
  }
  log.ExpectNone();
}

TEST(ZunRtcpRtpfbUnknown, ABodyThatIsNotInTheStringLeavesItAsItWas) {
  const Datagram datagram(kWire);
  Unknown unknown;
  EXPECT_FALSE(ZunRtcpRtpfbUnknownAssignFromBuffer(unknown.sp(), datagram, 8, 4, 205, CountOf(kWire)));
  EXPECT_FALSE(ZunRtcpRtpfbUnknownAssignFromBuffer(unknown.sp(), datagram, 100, 120, 205, CountOf(kWire)));
  EXPECT_FALSE(ZunRtcpRtpfbUnknownAssignFromBuffer(unknown.sp(), datagram, SIZE_MAX, SIZE_MAX, 205, CountOf(kWire)));
  ExpectFields(unknown, 0, 0, 0, "");
}

TEST(ZunRtcpRtpfbUnknown, ARefusedAllocationLosesNothing) {
  LogCapture log;
  Unknown source;
  Fill(source, kFmt, 1, 2, "abcdefgh");

  ForEveryRefusal([&](TestAllocator& refusing) {
    ZunRtcpRtpfbUnknown full;
    if (ZunRtcpRtpfbUnknownConstructFull(&full, kFmt, 1, 2, &source->data, refusing) == nullptr) return;
    ExpectFields(&full, kFmt, 1, 2, "abcdefgh");
    ZunRtcpRtpfbUnknownDestruct(&full);
  });
  ForEveryRefusal([&](TestAllocator& refusing) {
    Unknown assigned(refusing);
    if (ZunRtcpRtpfbUnknownAssign(assigned, source) == nullptr) ExpectFields(assigned, 0, 0, 0, "");
    if (!ZunRtcpRtpfbUnknownSetData(assigned, Text("a longer text than before..."))) {
      EXPECT_LE(assigned->data.size, 8U);
    }
  });
  ForEveryRefusal([&](TestAllocator& refusing) {
    Unknown read(refusing);
    const bool ok = read.Read(kWire);
    ExpectFields(read, ok ? kFmt : 0, 0x01020304, 0x05060708, ok ? kWire.substr(12) : "");
  });
  log.ExpectNone();
}

}  // namespace
