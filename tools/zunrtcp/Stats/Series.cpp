#include "tools/zunrtcp/Stats/Series.h"

#include <algorithm>

namespace zunrtcp {

void Summary::Add(double value) {
  min = count == 0 ? value : std::min(min, value);
  max = count == 0 ? value : std::max(max, value);
  sum += value;
  last = value;
  ++count;
}

void Series::Add(double seconds, double value) {
  summary_.Add(value);
  if (pending_ > 0 && pending_ < stride_) {
    if (value > points_.back().value) points_.back() = {seconds, value};
    ++pending_;
    return;
  }
  if (points_.size() == kMostPoints) Thin();
  points_.push_back({seconds, value});
  pending_ = 1;
}

void Series::Thin() {
  for (std::size_t i = 0; i < kMostPoints / 2; ++i) {
    const Point& first = points_[2 * i];
    const Point& second = points_[2 * i + 1];
    points_[i] = second.value > first.value ? second : first;
  }
  points_.resize(kMostPoints / 2);
  stride_ *= 2;
}

void Series::Scale(double factor) {
  for (Point& point : points_) point.value *= factor;
  summary_.sum *= factor;
  summary_.min *= factor;
  summary_.max *= factor;
  summary_.last *= factor;
}

}  // namespace zunrtcp
