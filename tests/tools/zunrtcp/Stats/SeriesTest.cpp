#include "tools/zunrtcp/Stats/Series.h"

#include <gtest/gtest.h>

#include "tools/zunrtcp/Stats/Trend.h"

namespace zunrtcp {

namespace {

TEST(Series, SumsUpItsValues) {
  Series series;
  for (const double value : {4.0, -2.0, 10.0}) series.Add(0, value);
  EXPECT_EQ(series.summary().count, 3U);
  EXPECT_EQ(series.summary().mean(), 4.0);
  EXPECT_EQ(series.summary().min, -2.0);
  EXPECT_EQ(series.summary().max, 10.0);
  EXPECT_EQ(series.summary().last, 10.0);
}

// 960 ticks of a clock of 48000 Hz are 20 ms.
TEST(Series, TakesAnotherUnit) {
  Series series;
  series.Add(1, 960);
  series.Scale(1000.0 / 48000);
  EXPECT_NEAR(series.points()[0].value, 20, 1e-9);
  EXPECT_NEAR(series.summary().mean(), 20, 1e-9);
  EXPECT_NEAR(series.summary().max, 20, 1e-9);
}

TEST(Series, ThinsOutButKeepsPeaksAndSums) {
  Series series;
  constexpr int kValues = 100000;
  for (int i = 0; i < kValues; ++i) series.Add(i, i == 777 ? 5 : 1);
  EXPECT_LE(series.points().size(), Series::kMostPoints);
  EXPECT_GE(series.points().size(), Series::kMostPoints / 2);
  EXPECT_TRUE(series.thinned());
  EXPECT_EQ(series.summary().count, static_cast<std::size_t>(kValues));
  EXPECT_EQ(series.summary().sum, kValues + 4.0);
  std::size_t peaks = 0;
  double before = -1;
  for (const Series::Point& point : series.points()) {
    if (point.value == 5) ++peaks;
    EXPECT_GT(point.seconds, before);
    before = point.seconds;
  }
  EXPECT_EQ(peaks, 1U);
  EXPECT_GT(before, kValues * 0.99);  // up to its end
}

// 100, 120, 140 at 0, 1, 2 s: 20 more each second, 40 over the whole, a third of the mean of 120.
TEST(Trend, IsTheSlopeOfTheBestLine) {
  const std::vector<Series::Point> points{{0, 100}, {1, 120}, {2, 140}};
  const auto trend = TrendOf(points);
  ASSERT_TRUE(trend);
  EXPECT_NEAR(trend->per_second, 20, 1e-9);
  EXPECT_NEAR(trend->change, 1.0 / 3, 1e-9);
  EXPECT_EQ(TrendWord(*trend), "rising");
}

TEST(Trend, HasAWordForEachWay) {
  EXPECT_EQ(TrendWord({-1, -0.2}), "falling");
  EXPECT_EQ(TrendWord({-1, -0.05}), "steady");
  EXPECT_EQ(TrendWord({0, 0}), "steady");
}

TEST(Trend, NeedsThreeMoments) {
  EXPECT_FALSE(TrendOf(std::vector<Series::Point>{{0, 1}, {1, 2}}));
  EXPECT_FALSE(TrendOf(std::vector<Series::Point>{{1, 1}, {1, 2}, {1, 3}}));
}

}  // namespace

}  // namespace zunrtcp
