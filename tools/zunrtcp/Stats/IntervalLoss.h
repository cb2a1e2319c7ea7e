// The loss between two reports about a stream.
#ifndef TOOLS_ZUNRTCP_STATS_INTERVALLOSS_H
#define TOOLS_ZUNRTCP_STATS_INTERVALLOSS_H

#include <cstdint>
#include <optional>

namespace zunrtcp {

// Of the blocks of one reporter.
class IntervalLoss {
 public:
  // Takes a block's extended highest sequence number and cumulative number of packets lost. The percentage of the
  // packets expected since the block before that were lost (RFC 3550, appendix A.3); 0 when duplicates outnumber the
  // losses. None for the first block, when no packet was expected, or after the source began again.
  std::optional<double> Next(std::uint32_t highest_sequence, std::int32_t lost);

 private:
  bool started_ = false;
  std::uint32_t highest_sequence_ = 0;
  std::int32_t lost_ = 0;
};

}  // namespace zunrtcp

#endif
