#include "tools/zunrtcp/Stats/ArrivalFeedback.h"

#include <gtest/gtest.h>

#include <vector>

namespace zunrtcp {

namespace {

ReportedPacket At(std::uint16_t sequence, double seconds) { return {sequence, true, seconds}; }
ReportedPacket Lost(std::uint16_t sequence) { return {sequence, false, {}}; }

ArrivalNews Tell(ArrivalFeedback* feedback, const std::vector<ReportedPacket>& packets) {
  return feedback->Add(packets);
}

TEST(ArrivalFeedback, CountsWhatArrivedAndWhatDidNot) {
  ArrivalFeedback feedback;
  const ArrivalNews news = Tell(&feedback, {At(65535, 1.000), Lost(0), At(1, 1.030)});
  EXPECT_EQ(news.received, 2U);
  EXPECT_EQ(news.lost, 1U);
  ASSERT_TRUE(news.spread);
  EXPECT_NEAR(*news.spread, 30, 1e-6);  // from 1.000 s to 1.030 s
}

// The second message tells of 10 and 11 again; 11 came late.
TEST(ArrivalFeedback, CountsEachPacketOnce) {
  ArrivalFeedback feedback;
  Tell(&feedback, {At(10, 1), Lost(11), Lost(12)});
  const ArrivalNews news = Tell(&feedback, {At(10, 1), At(11, 1.2), Lost(12), At(13, 1.1)});
  EXPECT_EQ(news.received, 2U);
  EXPECT_EQ(news.lost, 0U);
  EXPECT_EQ(feedback.messages(), 2U);
  EXPECT_EQ(feedback.received(), 3U);
  EXPECT_EQ(feedback.lost(), 1U);
  EXPECT_EQ(feedback.late(), 1U);
}

// A number is another packet's after half of all numbers.
TEST(ArrivalFeedback, TakesANumberThatComesRoundForANewPacket) {
  ArrivalFeedback feedback;
  for (std::uint32_t i = 0; i < 65537; ++i) Tell(&feedback, {{static_cast<std::uint16_t>(i), true, {}}});
  EXPECT_EQ(feedback.received(), 65537U);
}

// 0, 20, 40 ... 1000 ms: 50 packets in the second before the last.
TEST(ArrivalFeedback, TellsTheRateOfASecond) {
  ArrivalFeedback feedback;
  std::optional<double> rate;
  for (std::uint16_t i = 0; i <= 50; ++i) {
    ASSERT_FALSE(rate);
    rate = Tell(&feedback, {At(i, 100 + i * 0.02)}).packet_rate;
  }
  ASSERT_TRUE(rate);
  EXPECT_NEAR(*rate, 50, 1e-6);
}

TEST(ArrivalFeedback, TakesAJumpOfTheClockForABegin) {
  ArrivalFeedback feedback;
  Tell(&feedback, {At(1, 100)});
  EXPECT_FALSE(Tell(&feedback, {At(2, 200)}).packet_rate);
  EXPECT_FALSE(Tell(&feedback, {At(3, 50)}).packet_rate);
  EXPECT_TRUE(Tell(&feedback, {At(4, 52)}).packet_rate);
}

TEST(ArrivalFeedback, KnowsNoSpreadOfOneArrival) {
  ArrivalFeedback feedback;
  EXPECT_FALSE(Tell(&feedback, {At(1, 100), Lost(2), {3, true, {}}}).spread);
}

TEST(UnwrappedCounter, GoesOnOverItsWrap) {
  UnwrappedCounter counter(32);
  const std::int64_t first = counter.Next(0xFFFFFFF0);
  EXPECT_EQ(counter.Next(0x10) - first, 0x20);
  EXPECT_EQ(counter.Next(0xFFFFFFF8) - first, 8);  // and back
}

}  // namespace

}  // namespace zunrtcp
