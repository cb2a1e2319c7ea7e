#include "tools/zunrtcp/Stats/IntervalLoss.h"

#include <gtest/gtest.h>

namespace zunrtcp {

namespace {

// 100 packets were expected after the first block, 7 of them were lost.
TEST(IntervalLoss, IsWhatWasLostOfWhatWasExpected) {
  IntervalLoss loss;
  EXPECT_EQ(loss.Next(1000, 3), std::nullopt);
  EXPECT_EQ(loss.Next(1100, 10), 7.0);
}

// From 0x0000FFF6 to 0x0001000A are 20 numbers; 5 lost are a quarter.
TEST(IntervalLoss, GoesOnOverTheWrapOfTheSequence) {
  IntervalLoss loss;
  loss.Next(0x0000FFF6, 0);
  EXPECT_EQ(loss.Next(0x0001000A, 5), 25.0);
}

TEST(IntervalLoss, IsNoneWhenDuplicatesOutnumberTheLosses) {
  IntervalLoss loss;
  loss.Next(1000, 0);
  EXPECT_EQ(loss.Next(1010, -2), 0.0);
}

TEST(IntervalLoss, IsNotKnownWhereNothingWasExpected) {
  IntervalLoss loss;
  loss.Next(1000, 0);
  EXPECT_EQ(loss.Next(1000, 0), std::nullopt);
  EXPECT_EQ(loss.Next(10, 0), std::nullopt);  // the source began again
  EXPECT_EQ(loss.Next(20, 1), 10.0);
}

}  // namespace

}  // namespace zunrtcp
