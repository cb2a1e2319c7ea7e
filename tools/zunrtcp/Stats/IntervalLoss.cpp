#include "tools/zunrtcp/Stats/IntervalLoss.h"

#include <algorithm>

namespace zunrtcp {

std::optional<double> IntervalLoss::Next(std::uint32_t highest_sequence, std::int32_t lost) {
  const bool first = !started_;
  const auto expected = static_cast<std::int32_t>(highest_sequence - highest_sequence_);
  const std::int32_t lost_since = lost - lost_;
  started_ = true;
  highest_sequence_ = highest_sequence;
  lost_ = lost;
  if (first || expected <= 0) return std::nullopt;
  return 100.0 * std::clamp(lost_since, 0, expected) / expected;
}

}  // namespace zunrtcp
