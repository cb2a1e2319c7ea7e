#include "tools/zunrtcp/Stats/Trend.h"

namespace zunrtcp {

namespace {

constexpr std::size_t kFewestPoints = 3;
constexpr double kSteady = 0.1;

}  // namespace

std::optional<Trend> TrendOf(std::span<const Series::Point> points) {
  if (points.size() < kFewestPoints) return std::nullopt;
  const auto count = static_cast<double>(points.size());
  double mean_seconds = 0;
  double mean_value = 0;
  for (const Series::Point& point : points) {
    mean_seconds += point.seconds / count;
    mean_value += point.value / count;
  }
  double square = 0;
  double product = 0;
  for (const Series::Point& point : points) {
    square += (point.seconds - mean_seconds) * (point.seconds - mean_seconds);
    product += (point.seconds - mean_seconds) * (point.value - mean_value);
  }
  if (square == 0) return std::nullopt;
  const double slope = product / square;
  const double span = points.back().seconds - points.front().seconds;
  return Trend{slope, mean_value == 0 ? 0 : slope * span / mean_value};
}

std::string TrendWord(const Trend& trend) {
  if (trend.change > kSteady) return "rising";
  return trend.change < -kSteady ? "falling" : "steady";
}

}  // namespace zunrtcp
