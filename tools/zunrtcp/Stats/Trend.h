// Whether a series rises or falls.
#ifndef TOOLS_ZUNRTCP_STATS_TREND_H
#define TOOLS_ZUNRTCP_STATS_TREND_H

#include <optional>
#include <span>
#include <string>

#include "tools/zunrtcp/Stats/Series.h"

namespace zunrtcp {

struct Trend {
  double per_second = 0;  // the slope of the straight line that fits best (least squares)
  double change = 0;      // what it makes of the series from its begin to its end, as a part of the mean
};

// None for fewer than 3 points, or when they are of one moment.
std::optional<Trend> TrendOf(std::span<const Series::Point> points);

// "rising", "falling"; "steady" when it changes by less than a tenth of the mean.
std::string TrendWord(const Trend& trend);

}  // namespace zunrtcp

#endif
