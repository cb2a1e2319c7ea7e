// Values over time, in bounded memory.
#ifndef TOOLS_ZUNRTCP_STATS_SERIES_H
#define TOOLS_ZUNRTCP_STATS_SERIES_H

#include <cstddef>
#include <vector>

namespace zunrtcp {

// What holds for all values, also for those whose points were thinned out.
struct Summary {
  std::size_t count = 0;
  double sum = 0;
  double min = 0;
  double max = 0;
  double last = 0;

  void Add(double value);
  double mean() const { return count == 0 ? 0 : sum / static_cast<double>(count); }
};

class Series {
 public:
  struct Point {
    double seconds = 0;  // since the capture began
    double value = 0;
  };

  // Beyond that many points each two neighbours become one, the greater of them: peaks stay.
  static constexpr std::size_t kMostPoints = 2048;

  void Add(double seconds, double value);
  // Gives all values in another unit.
  void Scale(double factor);

  const std::vector<Point>& points() const { return points_; }
  const Summary& summary() const { return summary_; }
  bool empty() const { return points_.empty(); }
  bool thinned() const { return stride_ > 1; }

 private:
  void Thin();

  std::vector<Point> points_;
  Summary summary_;
  std::size_t stride_ = 1;   // how many values a point stands for
  std::size_t pending_ = 0;  // of the last point
};

}  // namespace zunrtcp

#endif
