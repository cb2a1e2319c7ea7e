#include <gtest/gtest.h>

#include <cstring>
#include <tuple>
#include <vector>

#include "Zun/Rtp/ZunRtcpPacket.h"
#include "tests/support/TestAllocator.h"

namespace {

using namespace test;

using Stream = ZunRtcpRtpfbCcfbStream;
using Metrics = std::vector<std::tuple<int, int, int>>;  // received, ecn, arrivalTimeOffset

Metrics MetricsOf(const Stream& stream) {
  Metrics metrics;
  for (const ZunRtcpRtpfbCcfbPacketMetric* m = stream.packetMetrics.begin; m != stream.packetMetrics.end; ++m) {
    metrics.emplace_back(m->received, m->ecn, m->arrivalTimeOffset);
  }
  return metrics;
}

// Adds packets from number `seq` on, with arrival time offsets from 0 on.
void Add(Stream* stream, ZunUint16 seq, int count) {
  for (int i = 0; i < count; ++i) {
    ASSERT_TRUE(
        ZunRtcpRtpfbCcfbStreamAddPacket(stream, static_cast<ZunUint16>(seq + i), 1, 2, static_cast<ZunUint16>(i)));
  }
}

TEST(ZunRtcpRtpfbCcfbStream, IsBuiltWithoutMetrics) {
  TestAllocator allocator;
  Stream stream;
  std::memset(static_cast<void*>(&stream), 0xFF, sizeof(stream));  // what is not set would stay
  ASSERT_EQ(ZunRtcpRtpfbCcfbStreamConstructDefault(&stream, 0x01020304, allocator), &stream);
  EXPECT_EQ(ZunRtcpRtpfbCcfbStreamGetSsrc(&stream), 0x01020304U);
  EXPECT_EQ(ZunRtcpRtpfbCcfbStreamGetBeginSeq(&stream), 0U);
  EXPECT_EQ(MetricsOf(stream), Metrics());
  EXPECT_EQ(stream.packetMetrics.allocator, allocator.get());
  ZunRtcpRtpfbCcfbStreamDestruct(&stream);
  ZunRtcpRtpfbCcfbStreamDestruct(&stream);
  EXPECT_EQ(allocator.calls(), 0U);
}

TEST(ZunRtcpRtpfbCcfbStream, OnlyTheNextSequenceNumberIsAdded) {
  TestAllocator allocator;
  Stream stream;
  ZunRtcpRtpfbCcfbStreamConstructDefault(&stream, 1, allocator);
  EXPECT_TRUE(ZunRtcpRtpfbCcfbStreamAddPacket(&stream, 10, 1, 0, 100));
  EXPECT_TRUE(ZunRtcpRtpfbCcfbStreamAddPacket(&stream, 11, 0, 0, 0));
  for (const int seq : {13, 11, 10, 9, 0, 65535}) {
    EXPECT_FALSE(ZunRtcpRtpfbCcfbStreamAddPacket(&stream, static_cast<ZunUint16>(seq), 1, 1, 1)) << seq;
  }
  EXPECT_EQ(ZunRtcpRtpfbCcfbStreamGetBeginSeq(&stream), 10U);
  EXPECT_EQ(MetricsOf(stream), (Metrics{{1, 0, 100}, {0, 0, 0}}));
  EXPECT_TRUE(ZunRtcpRtpfbCcfbStreamAddPacket(&stream, 12, 1, 3, 5));
  EXPECT_EQ(MetricsOf(stream), (Metrics{{1, 0, 100}, {0, 0, 0}, {1, 3, 5}}));
  ZunRtcpRtpfbCcfbStreamDestruct(&stream);
}

TEST(ZunRtcpRtpfbCcfbStream, SequenceNumbersWrapAround) {
  TestAllocator allocator;
  Stream stream;
  ZunRtcpRtpfbCcfbStreamConstructDefault(&stream, 1, allocator);
  EXPECT_TRUE(ZunRtcpRtpfbCcfbStreamAddPacket(&stream, 65535, 1, 0, 0));
  EXPECT_TRUE(ZunRtcpRtpfbCcfbStreamAddPacket(&stream, 0, 1, 0, 0));
  EXPECT_TRUE(ZunRtcpRtpfbCcfbStreamAddPacket(&stream, 1, 1, 0, 0));
  EXPECT_EQ(ZunRtcpRtpfbCcfbStreamGetBeginSeq(&stream), 65535U);
  // A whole round of numbers: the next is once more the first.
  Add(&stream, 2, 65536 - 3);
  EXPECT_EQ(MetricsOf(stream).size(), 65536U);
  EXPECT_FALSE(ZunRtcpRtpfbCcfbStreamAddPacket(&stream, 0, 1, 0, 0));
  EXPECT_TRUE(ZunRtcpRtpfbCcfbStreamAddPacket(&stream, 65535, 1, 0, 0));
  ZunRtcpRtpfbCcfbStreamDestruct(&stream);
}

TEST(ZunRtcpRtpfbCcfbStream, AnyValueIsStored) {
  TestAllocator allocator;
  Stream stream;
  ZunRtcpRtpfbCcfbStreamConstructDefault(&stream, 1, allocator);
  EXPECT_TRUE(ZunRtcpRtpfbCcfbStreamAddPacket(&stream, 1, 7, 255, 0xFFFF));
  EXPECT_TRUE(ZunRtcpRtpfbCcfbStreamAddPacket(&stream, 2, 0, 4, 0x2000));
  EXPECT_EQ(MetricsOf(stream), (Metrics{{7, 255, 0xFFFF}, {0, 4, 0x2000}}));
  ZunRtcpRtpfbCcfbStreamDestruct(&stream);
}

TEST(ZunRtcpRtpfbCcfbStream, ItsListGrowsFromTwoToTwice) {
  TestAllocator allocator;
  Stream stream;
  ZunRtcpRtpfbCcfbStreamConstructDefault(&stream, 1, allocator);
  ZunUint16 seq = 0;
  for (const ZunSizeT capacity : {2U, 2U, 4U, 4U, 8U}) {
    ASSERT_TRUE(ZunRtcpRtpfbCcfbStreamAddPacket(&stream, seq++, 1, 0, 0));
    EXPECT_EQ(ZunVector_ZunRtcpRtpfbCcfbPacketMetricCapacity(&stream.packetMetrics), capacity);
  }
  ZunRtcpRtpfbCcfbStreamDestruct(&stream);
}

TEST(ZunRtcpRtpfbCcfbStream, ACopyTakesTheAllocatorOfItsSourceAndAnAssignmentKeepsItsOwn) {
  TestAllocator a;
  TestAllocator b;
  Stream source;
  Stream copy;
  Stream assigned;
  ZunRtcpRtpfbCcfbStreamConstructDefault(&source, 1, a);
  Add(&source, 500, 5);
  ASSERT_EQ(ZunRtcpRtpfbCcfbStreamConstructCopy(&copy, &source), &copy);
  EXPECT_EQ(copy.packetMetrics.allocator, a.get());
  ZunRtcpRtpfbCcfbStreamConstructDefault(&assigned, 2, b);
  ASSERT_EQ(ZunRtcpRtpfbCcfbStreamAssign(&assigned, &source), &assigned);
  EXPECT_EQ(assigned.packetMetrics.allocator, b.get());
  ASSERT_EQ(ZunRtcpRtpfbCcfbStreamAssign(&assigned, &assigned), &assigned);
  for (const Stream* const stream : {&copy, &assigned}) {
    EXPECT_EQ(stream->ssrc, 1U);
    EXPECT_EQ(stream->beginSeq, 500U);
    EXPECT_EQ(MetricsOf(*stream), MetricsOf(source));
  }
  for (Stream* const stream : {&source, &copy, &assigned}) ZunRtcpRtpfbCcfbStreamDestruct(stream);
}

TEST(ZunRtcpRtpfbCcfbStream, RefusedAllocationsLoseNothing) {
  ForEveryRefusal([](TestAllocator& refusing) {
    Stream stream;
    ZunRtcpRtpfbCcfbStreamConstructDefault(&stream, 1, refusing);
    Metrics expected;
    ZunUint16 seq = 9;
    for (int i = 0; i < 9; ++i) {
      if (!ZunRtcpRtpfbCcfbStreamAddPacket(&stream, seq, 1, 0, 7)) continue;
      expected.emplace_back(1, 0, 7);
      ++seq;
    }
    EXPECT_EQ(MetricsOf(stream), expected);
    Stream copy;
    if (ZunRtcpRtpfbCcfbStreamConstructCopy(&copy, &stream) != nullptr) {
      EXPECT_EQ(MetricsOf(copy), expected);
      ZunRtcpRtpfbCcfbStreamDestruct(&copy);
    }
    Stream other;
    ZunRtcpRtpfbCcfbStreamConstructDefault(&other, 2, refusing);
    if (ZunRtcpRtpfbCcfbStreamAssign(&other, &stream) != nullptr) {
      EXPECT_EQ(MetricsOf(other), expected);
    } else {
      EXPECT_EQ(MetricsOf(other), Metrics());
      EXPECT_EQ(other.ssrc, 2U);
    }
    ZunRtcpRtpfbCcfbStreamDestruct(&other);
    ZunRtcpRtpfbCcfbStreamDestruct(&stream);
  });
}

TEST(ZunRtcpRtpfbCcfbStream, AVectorOfStreamsOwnsTheirMetrics) {
  TestAllocator allocator;
  Stream stream;
  ZunRtcpRtpfbCcfbStreamConstructDefault(&stream, 1, allocator);
  Add(&stream, 1, 3);
  ZunVector_ZunRtcpRtpfbCcfbStream v;
  ASSERT_NE(ZunVector_ZunRtcpRtpfbCcfbStreamConstructN(&v, 3, &stream, allocator), nullptr);
  ZunRtcpRtpfbCcfbStreamDestruct(&stream);
  ASSERT_TRUE(ZunVector_ZunRtcpRtpfbCcfbStreamPushBack(&v, v.begin));
  EXPECT_EQ(MetricsOf(v.begin[3]), (Metrics{{1, 2, 0}, {1, 2, 1}, {1, 2, 2}}));
  ZunVector_ZunRtcpRtpfbCcfbStreamErase(&v, v.begin);
  EXPECT_EQ(ZunVector_ZunRtcpRtpfbCcfbStreamSize(&v), 3U);
  ZunVector_ZunRtcpRtpfbCcfbStreamDestruct(&v);
}

}  // namespace
