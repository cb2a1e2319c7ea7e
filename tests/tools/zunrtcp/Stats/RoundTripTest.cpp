#include "tools/zunrtcp/Stats/RoundTrip.h"

#include <gtest/gtest.h>

namespace zunrtcp {

namespace {

TEST(CompactNtp, TakesTheMiddle32Bits) { EXPECT_EQ(CompactNtp(0x0123456789ABCDEF), 0x456789ABU); }

// The report passes at 10 s. The peer answers after 1.5 s (0x18000 / 65536), the answer passes at 11.58 s: 1.58 s
// later, of which the way there and back took 80 ms.
TEST(SentReports, TakesThePeersDelayFromTheTimeUntilTheAnswer) {
  SentReports sent;
  sent.Add(0xB44DB705, 10.0);
  const auto ms = sent.Answer(0xB44DB705, 0x18000, 11.58);
  ASSERT_TRUE(ms);
  EXPECT_NEAR(*ms, 80, 1e-6);
}

TEST(SentReports, DoesNotKnowWhatIsNoAnswer) {
  SentReports sent;
  sent.Add(7, 10.0);
  EXPECT_FALSE(sent.Answer(8, 0, 10.1));  // to a report that was not seen
  EXPECT_FALSE(sent.Answer(0, 0, 10.1));  // the peer had none
}

TEST(SentReports, KeepsTheFirstTimeOfAReportThatIsSeenTwice) {
  SentReports sent;
  sent.Add(7, 10.0);
  sent.Add(7, 10.5);
  EXPECT_NEAR(*sent.Answer(7, 0, 11.0), 1000, 1e-6);
}

// 32 reports are remembered: of 40, the first 8 are forgotten.
TEST(SentReports, ForgetsOldReports) {
  SentReports sent;
  for (std::uint32_t i = 1; i <= 40; ++i) sent.Add(i, i);
  EXPECT_FALSE(sent.Answer(8, 0, 50));
  EXPECT_NEAR(*sent.Answer(9, 0, 50), 41000, 1e-6);
}

}  // namespace

}  // namespace zunrtcp
