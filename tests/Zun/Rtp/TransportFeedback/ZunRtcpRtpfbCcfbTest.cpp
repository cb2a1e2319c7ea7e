#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <tuple>
#include <vector>

#include "Zun/Rtp/Dialect/ZunRtcpEncode.h"
#include "tests/support/LogCapture.h"
#include "tests/support/Samples.h"

namespace {

using namespace test;

using Ccfb = TEST_OBJECT(ZunRtcpRtpfbCcfb);
using Metrics = std::vector<std::tuple<int, int, int>>;                // received, ecn, arrivalTimeOffset
using Streams = std::vector<std::tuple<unsigned, unsigned, Metrics>>;  // ssrc, beginSeq, metrics

Streams StreamsOf(const ZunRtcpRtpfbCcfb* p) {
  Streams streams;
  for (const ZunRtcpRtpfbCcfbStream* s = p->streams.begin; s != p->streams.end; ++s) {
    Metrics metrics;
    for (const ZunRtcpRtpfbCcfbPacketMetric* m = s->packetMetrics.begin; m != s->packetMetrics.end; ++m) {
      metrics.emplace_back(m->received, m->ecn, m->arrivalTimeOffset);
    }
    streams.emplace_back(s->ssrc, s->beginSeq, metrics);
  }
  return streams;
}

// Adds a stream, built with `a`.
bool AddStream(ZunRtcpRtpfbCcfb* p, ZunRtpSourceId ssrc, ZunUint16 seq, const Metrics& metrics, ZunAllocator* a) {
  ZunRtcpRtpfbCcfbStream stream;
  ZunRtcpRtpfbCcfbStreamConstructDefault(&stream, ssrc, a);
  for (const auto& [received, ecn, offset] : metrics) {
    EXPECT_TRUE(ZunRtcpRtpfbCcfbStreamAddPacket(&stream, seq, static_cast<ZunBool>(received),
                                                static_cast<ZunUint8>(ecn), static_cast<ZunUint16>(offset)));
    seq = static_cast<ZunUint16>(seq + 1);
  }
  const bool added = ZunRtcpRtpfbCcfbAddStream(p, &stream) != 0;
  ZunRtcpRtpfbCcfbStreamDestruct(&stream);
  return added;
}
bool AddStream(ZunRtcpRtpfbCcfb* p, ZunRtpSourceId ssrc, ZunUint16 seq, const Metrics& metrics) {
  return AddStream(p, ssrc, seq, metrics, ZunAllocatorGetSystem());
}

Streams TwoStreamsRead() {
  return {{0x11121314, 65535, {{1, 0, 5}, {0, 0, 0}, {1, 0, 0x1FFF}}}, {0x21222324, 10, {{1, 0, 0}, {1, 0, 256}}}};
}

// Construction and fields.

TEST(ZunRtcpRtpfbCcfb, IsBuiltWithoutStreams) {
  TestAllocator allocator;
  ZunRtcpRtpfbCcfb p;
  ASSERT_EQ(ZunRtcpRtpfbCcfbConstructDefault(&p, allocator), &p);
  EXPECT_EQ(p.type, ZUN_RTCPSUBPACKET_TYPE_RTPFB);
  EXPECT_EQ(p.fmt, ZUN_RTCPRTPFB_TYPE_CCFB);
  EXPECT_EQ(p.sender, 0U);
  EXPECT_EQ(ZunRtcpRtpfbCcfbGetSendTimestamp(&p), 0U);
  EXPECT_EQ(StreamsOf(&p), Streams());
  EXPECT_EQ(ZunRtcpRtpfbCcfbGetAllocator(&p), allocator.get());
  ZunRtcpRtpfbCcfbDestruct(&p);

  ASSERT_EQ(ZunRtcpRtpfbCcfbConstructFullWithMonotonic(&p, 7, 1500000000, allocator), &p);
  EXPECT_EQ(p.type, ZUN_RTCPSUBPACKET_TYPE_RTPFB);
  EXPECT_EQ(p.fmt, ZUN_RTCPRTPFB_TYPE_CCFB);
  EXPECT_EQ(p.sender, 7U);
  EXPECT_EQ(ZunRtcpRtpfbCcfbGetSendTimestamp(&p), 0x7E818000U);
  EXPECT_EQ(StreamsOf(&p), Streams());
  ZunRtcpRtpfbCcfbDestruct(&p);
  ZunRtcpRtpfbCcfbDestruct(&p);
  EXPECT_EQ(allocator.calls(), 0U);
}

TEST(ZunRtcpRtpfbCcfb, TheTimestampIsTheMiddleOfTheNtpOne) {
  Ccfb p;
  const auto timestamp = [&](ZunTime ts) {
    EXPECT_TRUE(ZunRtcpRtpfbCcfbSetSendTimestampFromMonotonic(p, ts));
    EXPECT_EQ(p->sendTimestamp, static_cast<ZunUint32>(ZunTimeGetNtp(ts) >> 16));
    return ZunRtcpRtpfbCcfbGetSendTimestamp(p);
  };
  EXPECT_EQ(timestamp(0), 0x7E800000U);
  EXPECT_EQ(timestamp(1500000000), 0x7E818000U);
  EXPECT_EQ(timestamp(15259), 0x7E800001U);  // 1/65536 s is 15258.8 ns
  EXPECT_EQ(timestamp(15258), 0x7E800000U);
  EXPECT_EQ(timestamp(65536 * ZunTime{1000000000}), 0x7E800000U) << "the seconds keep 16 bits";
  EXPECT_EQ(timestamp(-500000000), 0x7E7F8000U);
  timestamp(INT64_MAX);
  timestamp(INT64_MIN);
}

TEST(ZunRtcpRtpfbCcfb, DestructingItTwiceIsHarmless) {
  TestAllocator allocator;
  ZunRtcpRtpfbCcfb p;
  ZunRtcpRtpfbCcfbConstructDefault(&p, allocator);
  ASSERT_TRUE(AddStream(&p, 1, 2, {{1, 0, 3}}, allocator));
  ZunRtcpRtpfbCcfbDestruct(&p);
  EXPECT_EQ(StreamsOf(&p), Streams());
  ZunRtcpRtpfbCcfbDestruct(&p);
}

TEST(ZunRtcpRtpfbCcfb, AnAddedStreamIsADeepCopyWithItsOwnAllocator) {
  TestAllocator of_list;
  TestAllocator of_stream;
  Ccfb p(of_list);
  ZunRtcpRtpfbCcfbStream stream;
  ZunRtcpRtpfbCcfbStreamConstructDefault(&stream, 1, of_stream);
  ASSERT_TRUE(ZunRtcpRtpfbCcfbStreamAddPacket(&stream, 5, 1, 0, 0));
  ASSERT_TRUE(ZunRtcpRtpfbCcfbAddStream(p, &stream));
  ASSERT_TRUE(ZunRtcpRtpfbCcfbStreamAddPacket(&stream, 6, 1, 0, 0));
  ASSERT_TRUE(ZunRtcpRtpfbCcfbAddStream(p, &stream));
  ZunRtcpRtpfbCcfbStreamDestruct(&stream);
  ASSERT_TRUE(ZunRtcpRtpfbCcfbAddStream(p, p->streams.begin)) << "one of its own, while the list grows";
  EXPECT_EQ(StreamsOf(p), (Streams{{1, 5, {{1, 0, 0}}}, {1, 5, {{1, 0, 0}, {1, 0, 0}}}, {1, 5, {{1, 0, 0}}}}));
  for (const ZunRtcpRtpfbCcfbStream* s = p->streams.begin; s != p->streams.end; ++s) {
    EXPECT_EQ(s->packetMetrics.allocator, of_stream.get());
  }
  EXPECT_EQ(p->streams.allocator, of_list.get());
}

// Wire form.

TEST(ZunRtcpRtpfbCcfb, ReadsAndWritesStreams) {
  LogCapture log;
  Ccfb p;
  ASSERT_TRUE(p.Read(Golden("CcfbTwoStreams")));
  EXPECT_EQ(p->type, ZUN_RTCPSUBPACKET_TYPE_RTPFB);
  EXPECT_EQ(p->fmt, ZUN_RTCPRTPFB_TYPE_CCFB);
  EXPECT_EQ(p->sender, 0x01020304U);
  EXPECT_EQ(p->sendTimestamp, 0xDEADBEEFU);
  EXPECT_EQ(StreamsOf(p), TwoStreamsRead());
  EXPECT_EQ(ToHex(p.bytes()), ToHex(Golden("CcfbTwoStreams")));
  EXPECT_EQ(ZunRtcpRtpfbCcfbGetPacketLength(p.sp()), Golden("CcfbTwoStreams").size());
  log.ExpectNone();
}

TEST(ZunRtcpRtpfbCcfb, WithoutStreamsItIsTwelveBytes) {
  Ccfb p;
  p->sender = 0x01020304;
  p->sendTimestamp = 0x05060708;
  const std::string bytes = Golden("CcfbWithoutStreams");
  EXPECT_EQ(ZunRtcpRtpfbCcfbGetPacketLength(p.sp()), 12U);
  EXPECT_EQ(ToHex(p.bytes()), ToHex(bytes));
  Ccfb back;
  ASSERT_TRUE(AddStream(back, 1, 2, {{1, 0, 3}}));
  ASSERT_TRUE(back.Read(bytes));
  EXPECT_EQ(StreamsOf(back), Streams());
  EXPECT_EQ(back->sendTimestamp, 0x05060708U);
}

TEST(ZunRtcpRtpfbCcfb, AnOddNumberOfMetricsIsPadded) {
  const auto length = [](std::size_t metrics) {
    Ccfb p;
    EXPECT_TRUE(AddStream(p, 1, 2, Metrics(metrics, {1, 0, 3})));
    const std::string bytes = p.bytes();
    EXPECT_EQ(bytes.size(), ZunRtcpRtpfbCcfbGetPacketLength(p.sp()));
    Ccfb back;
    EXPECT_TRUE(back.Read(bytes));
    EXPECT_EQ(StreamsOf(back), StreamsOf(p));
    return bytes.size() - 12;
  };
  EXPECT_EQ(length(0), 8U);
  EXPECT_EQ(length(1), 12U);
  EXPECT_EQ(length(2), 12U);
  EXPECT_EQ(length(3), 16U);
  EXPECT_EQ(length(4), 16U);
  EXPECT_EQ(length(65535), 8U + 2 * 65536);
}

std::string MetricWords(const Metrics& metrics) {
  Ccfb p;
  EXPECT_TRUE(AddStream(p, 1, 2, metrics));
  return ToHex(p.bytes().substr(16, 2 * metrics.size()));
}

TEST(ZunRtcpRtpfbCcfb, EcnComesBackFourTimesAsLarge) {
  Ccfb p;
  ASSERT_TRUE(AddStream(p, 1, 2, {{1, 0, 5}, {1, 1, 5}, {1, 2, 5}, {1, 3, 5}}));
  EXPECT_EQ(MetricWords({{1, 0, 5}, {1, 1, 5}, {1, 2, 5}, {1, 3, 5}}), "8005A005C005E005");
  Ccfb back;
  ASSERT_TRUE(back.Read(p.bytes()));
  EXPECT_EQ(StreamsOf(back), (Streams{{1, 2, {{1, 0, 5}, {1, 4, 5}, {1, 8, 5}, {1, 12, 5}}}}));
}

TEST(ZunRtcpRtpfbCcfb, EcnAndOffsetAreWrittenUnmasked) {
  // ECN 4 is the bit of `received`, 5 that and ECN 1; 8 and more fall out of the word.
  EXPECT_EQ(MetricWords({{1, 4, 5}, {1, 5, 5}, {1, 8, 5}, {1, 9, 5}, {1, 255, 0}}), "8005A0058005A005E000");
  EXPECT_EQ(MetricWords({{1, 0, 0x2000}, {1, 0, 0xFFFF}, {1, 1, 0x4001}}), "A000FFFFE001");
}

TEST(ZunRtcpRtpfbCcfb, WhatIsReadIsNotFitToBeWritten) {
  Ccfb p;
  ASSERT_TRUE(p.Read(Hex("8ECD0005 00000001 00000002 00030002 A005E005 00000004")));
  EXPECT_EQ(ToHex(p.bytes().substr(16, 4)), "80058005") << "4 and 12 times 0x2000 set no ECN bit";
}

TEST(ZunRtcpRtpfbCcfb, ALostPacketIsWrittenAsZeroWhateverItHolds) {
  EXPECT_EQ(MetricWords({{0, 3, 0x1FFF}, {0, 255, 0xFFFF}, {2, 0, 1}}), "000000008001");
}

TEST(ZunRtcpRtpfbCcfb, FieldsOfALostPacketAreReadAsTheyStand) {
  Ccfb p;
  ASSERT_TRUE(p.Read(Hex("8ECD0005 00000001 00000002 00030002 7FFF2001 00000004")));
  EXPECT_EQ(StreamsOf(p), (Streams{{2, 3, {{0, 12, 0x1FFF}, {0, 4, 1}}}}));
}

TEST(ZunRtcpRtpfbCcfb, PaddingMayHoldAnything) {
  Ccfb p;
  ASSERT_TRUE(p.Read(Hex("8ECD0005 00000001 00000002 00030001 8007FFFF 00000004")));
  EXPECT_EQ(StreamsOf(p), (Streams{{2, 3, {{1, 0, 7}}}}));
}

TEST(ZunRtcpRtpfbCcfb, MoreMetricsThanTheCountCanTellAreNotWritten) {
  Ccfb p;
  ASSERT_TRUE(AddStream(p, 1, 2, {{1, 0, 3}, {1, 0, 4}}));
  ASSERT_TRUE(AddStream(p, 5, 6, Metrics(65536, {1, 0, 7})));
  Text out;
  EXPECT_FALSE(ZunRtcpRtpfbCcfbWritePacket(p.sp(), out, 0));
  EXPECT_EQ(ToHex(out.str().substr(4)), ToHex(Hex("00000000 00000001 00020002 80038004")))
      << "nothing of the stream that is too long";
  EXPECT_EQ(ZunRtcpRtpfbCcfbGetPacketLength(p.sp()), 12U + 12 + 8 + 2 * 65536);
}

// Bytes that another implementation sent, but for the FMT, which is registered as 11.
TEST(ZunRtcpRtpfbCcfb, ReadsWhatOthersSend) {
  const std::string packet = Hex(R"(
    8E CD 00 0C  FA 17 FA 17
    4A 99 6C 24  | stream
    75 89 00 02  | from 30089, 2 metrics
    C0 1D C0 08  | ECN 2, 29/1024 and 8/1024 s before the report
    58 CA AF 55  | stream
    7F 0B 00 01  | from 32523, 1 metric
    A0 1F 00 00  | ECN 1, 31/1024 s before; padding
    5B 7A 7C 14  | stream
    52 B6 00 03  | from 21174, 3 metrics
    00 00 E0 0B  | lost; ECN 3, 11/1024 s before
    C0 0B 00 00  | ECN 2, 11/1024 s before; padding
    6F EE 49 46  | report timestamp
  )");
  Ccfb p;
  ASSERT_TRUE(p.Read(packet));
  EXPECT_EQ(p->sender, 0xFA17FA17U);
  EXPECT_EQ(p->sendTimestamp, 0x6FEE4946U);
  EXPECT_EQ(StreamsOf(p), (Streams{{0x4A996C24, 30089, {{1, 8, 29}, {1, 8, 8}}},
                                   {0x58CAAF55, 32523, {{1, 4, 31}}},
                                   {0x5B7A7C14, 21174, {{0, 0, 0}, {1, 12, 11}, {1, 8, 11}}}}));
  for (ZunRtcpRtpfbCcfbStream* s = p->streams.begin; s != p->streams.end; ++s) {
    for (auto* m = s->packetMetrics.begin; m != s->packetMetrics.end; ++m) m->ecn = static_cast<ZunUint8>(m->ecn / 4);
  }
  EXPECT_EQ(ToHex(p.bytes()), ToHex(packet));
}

// Truncation.

TEST(ZunRtcpRtpfbCcfb, ACutMessageKeepsTheStreamsInFrontOfTheCut) {
  const std::string whole = Golden("CcfbTwoStreams");
  for (const bool announced : {false, true}) {  // whether the end lies where the bytes end, or where the whole ends
    for (std::size_t size = 4; size <= whole.size(); ++size) {
      SCOPED_TRACE(::testing::Message() << size << (announced ? " bytes of all" : " bytes"));
      Ccfb p;
      p->sender = 91;
      p->sendTimestamp = 92;
      ASSERT_TRUE(AddStream(p, 93, 94, {{1, 0, 95}}));
      const Streams old = StreamsOf(p);
      const bool read = p.Read(whole.substr(0, size), {.beyond = announced ? whole.size() - size : 0});
      EXPECT_EQ(p->sender, size >= 8 ? 0x01020304U : 91U);
      // A stream ends at 24, with the padding, whose bytes need not be in the string; the other at 36.
      Streams expected = old;
      if (size >= 8) expected.clear();
      if (size >= (announced ? 22U : 24U)) expected.push_back(TwoStreamsRead()[0]);
      if (size >= 36) expected.push_back(TwoStreamsRead()[1]);
      EXPECT_EQ(StreamsOf(p), expected);
      // Where the body ends with the SSRC of a stream, that is taken for the timestamp.
      const ZunUint32 timestamp = size == whole.size()       ? 0xDEADBEEFU
                                  : size == 12 && !announced ? 0x11121314U
                                  : size == 28 && !announced ? 0x21222324U
                                                             : 92U;
      EXPECT_EQ(read, timestamp != 92);
      EXPECT_EQ(p->sendTimestamp, timestamp);
    }
  }
}

TEST(ZunRtcpRtpfbCcfb, TheTimestampMustEndAtTheEnd) {
  const std::string block = "00000002 00030002 80018002";
  Ccfb p;
  EXPECT_TRUE(p.Read(Hex("8ECD0005 00000001" + block + "00000004")));
  for (const std::string tail : {"", "00", "0000", "000000", "0000000400", "00000004000000", "0000000400000005"}) {
    SCOPED_TRACE(tail);
    EXPECT_FALSE(p.Read(Hex("8ECD0005 00000001" + block + tail)));
    EXPECT_EQ(StreamsOf(p), (Streams{{2, 3, {{1, 0, 1}, {1, 0, 2}}}})) << "the stream in front is kept";
    EXPECT_EQ(p->sendTimestamp, 4U);
  }
  // Eight bytes more are a stream without metrics, and no timestamp.
  EXPECT_FALSE(p.Read(Hex("8ECD0005 00000001" + block + "00000004 00050000")));
  EXPECT_EQ(StreamsOf(p).size(), 2U);
  EXPECT_EQ(p->sendTimestamp, 4U);
}

TEST(ZunRtcpRtpfbCcfb, AnEndBeyondTheStringIsNeverReadTo) {
  Ccfb p;
  for (std::size_t beyond = 1; beyond <= 64; ++beyond)
    EXPECT_FALSE(p.Read(Golden("CcfbTwoStreams"), {.beyond = beyond})) << beyond;
}

TEST(ZunRtcpRtpfbCcfb, ACountThatTheBodyDoesNotBearOutTakesNoMemory) {
  TestAllocator allocator;
  Ccfb p(allocator);
  EXPECT_FALSE(p.Read(Hex("8ECD0005 00000001 00000002 0003FFFF 80018002 00000004")));
  EXPECT_EQ(StreamsOf(p), Streams());
  EXPECT_LE(allocator.live_bytes(), 2 * sizeof(ZunRtcpRtpfbCcfbStream));
}

// Allocators.

TEST(ZunRtcpRtpfbCcfb, NewStreamsOfAnAssignmentTakeTheAllocatorsOfTheirSources) {
  TestAllocator a;
  TestAllocator b;
  Ccfb source(a);
  ASSERT_TRUE(source.Read(Golden("CcfbTwoStreams")));
  Ccfb assigned(b);
  ASSERT_EQ(ZunRtcpRtpfbCcfbAssign(assigned, source), assigned.get());
  EXPECT_EQ(ZunRtcpRtpfbCcfbGetAllocator(assigned), b.get());
  EXPECT_EQ(assigned->sender, 0x01020304U);
  EXPECT_EQ(assigned->sendTimestamp, 0xDEADBEEFU);
  EXPECT_EQ(StreamsOf(assigned), TwoStreamsRead());
  for (const ZunRtcpRtpfbCcfbStream* s = assigned->streams.begin; s != assigned->streams.end; ++s) {
    EXPECT_EQ(s->packetMetrics.allocator, a.get());
  }
}

TEST(ZunRtcpRtpfbCcfb, StreamsThatAreReadTakeTheAllocatorOfTheObject) {
  TestAllocator of_object;
  TestAllocator of_old_streams;
  TestAllocator of_buffer;
  {
    Ccfb p(of_object);
    ASSERT_TRUE(AddStream(p, 1, 2, {{1, 0, 3}, {1, 0, 4}}, of_old_streams));
    ASSERT_TRUE(AddStream(p, 5, 6, {{1, 0, 7}}, of_object));
    ASSERT_TRUE(p.Read(Golden("CcfbTwoStreams"), {.buffer_allocator = of_buffer}));
    EXPECT_EQ(StreamsOf(p), TwoStreamsRead());
    for (const ZunRtcpRtpfbCcfbStream* s = p->streams.begin; s != p->streams.end; ++s) {
      EXPECT_EQ(s->packetMetrics.allocator, of_object.get());
    }
    EXPECT_EQ(of_old_streams.live_blocks(), 0U);
  }
  EXPECT_EQ(of_buffer.calls(), 0U);
}

// Refused allocations.

TEST(ZunRtcpRtpfbCcfb, RefusedAllocationsLoseNothing) {
  Ccfb source;
  ASSERT_TRUE(source.Read(Golden("CcfbTwoStreams")));
  ForEveryRefusal([&](TestAllocator& refusing) {
    Ccfb p(refusing);
    if (!p.Read(Golden("CcfbTwoStreams"))) {
      Streams expected = TwoStreamsRead();
      expected.resize(StreamsOf(p).size());
      EXPECT_LT(expected.size(), 2U);
      EXPECT_EQ(StreamsOf(p), expected);
      EXPECT_EQ(p->sender, 0x01020304U);
      EXPECT_EQ(p->sendTimestamp, 0U);
    }
    const Streams before = StreamsOf(p);
    if (!AddStream(p, 1, 2, {{1, 0, 3}})) {
      EXPECT_EQ(StreamsOf(p), before);
    }

    ZunRtcpRtpfbCcfb copy;
    if (ZunRtcpRtpfbCcfbConstructCopy(&copy, p) != nullptr) {
      EXPECT_EQ(StreamsOf(&copy), StreamsOf(p));
      ZunRtcpRtpfbCcfbDestruct(&copy);
    }
    ZunRtcpSubpacket sp;
    if (ZunRtcpRtpfbCcfbConstructCopyAllocator(&sp, source.sp(), refusing) != nullptr) {
      EXPECT_EQ(StreamsOf(&sp.rtpfb.ccfb), TwoStreamsRead());
      ZunRtcpRtpfbCcfbDestructWrap(&sp);
    }
    Ccfb assigned(refusing);
    assigned->sender = 9;
    if (ZunRtcpRtpfbCcfbAssign(assigned, p) != nullptr) {
      EXPECT_EQ(StreamsOf(assigned), StreamsOf(p));
    } else {
      EXPECT_EQ(assigned->sender, 9U);
    }
  });
}

// In place.

TEST(ZunRtcpRtpfbCcfb, ReadingAgainInPlaceGivesWhatAFreshReadGives) {
  const std::string packets[] = {
      Golden("CcfbTwoStreams"),
      Hex("8ECD0002 00000001 00000002"),
      Hex("8ECD0004 00000001 00000002 00030000 00000004"),
      Hex("8ECD000B 00000001 0000000A 00010001 80010000 0000000B 00010001 80020000 0000000C 00010002 80038004 "
          "00000004"),
      Hex("8ECD0007 00000001 00000002 00030006 80018002 80038004 80058006 00000004"),
  };
  for (const std::string& first : packets) {
    for (const std::string& second : packets) {
      TestAllocator allocator;
      Ccfb used(allocator);
      ASSERT_TRUE(used.Read(first));
      ASSERT_TRUE(used.Read(second));
      Ccfb fresh;
      ASSERT_TRUE(fresh.Read(second));
      EXPECT_EQ(StreamsOf(used), StreamsOf(fresh));
      EXPECT_EQ(ToHex(used.bytes()), ToHex(second));
    }
  }
}

TEST(ZunRtcpRtpfbCcfb, AFailedReadInPlaceKeepsNoneOfTheOldStreams) {
  TestAllocator allocator;
  Ccfb p(allocator);
  ASSERT_TRUE(p.Read(Golden("CcfbTwoStreams")));
  EXPECT_FALSE(p.Read(Hex("8ECD0004 00000001 00000002 00030009 00000004")));
  EXPECT_EQ(StreamsOf(p), Streams());
  ASSERT_TRUE(p.Read(Golden("CcfbTwoStreams")));
  EXPECT_EQ(StreamsOf(p), TwoStreamsRead());
}

TEST(ZunRtcpRtpfbCcfb, AStreamOfAsManyMetricsAsItsCountCanSayIsEncodable) {
  const ZunRtcpRtpfbCcfbPacketMetric metric = {1, 1, 2};
  for (const ZunSizeT count : {ZunSizeT{65535}, ZunSizeT{65536}}) {
    TEST_PART(ZunRtcpPacket) packet;
    Ccfb ccfb;
    ASSERT_TRUE(AddStream(ccfb, 1, 0, {}, ZunAllocatorGetSystem()));
    ASSERT_TRUE(ZunVector_ZunRtcpRtpfbCcfbPacketMetricResize(&ccfb->streams.begin->packetMetrics, count, &metric));
    ASSERT_TRUE(ZunRtcpPacketAppendSubpacket(packet.get(), ccfb.sp()));
    EXPECT_EQ(ZunRtcpPacketFindUnencodable(packet.get(), ZUN_RTCP_DIALECT_HOUSE, nullptr),
              count == 65535 ? ZUN_RTCP_ENCODE_REASON_NONE : ZUN_RTCP_ENCODE_REASON_TOO_MANY);
  }
}

}  // namespace
