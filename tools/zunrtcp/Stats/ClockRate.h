// The clock rate of a stream's RTP timestamps, which RTCP does not tell: from the sender reports of a stream.
#ifndef TOOLS_ZUNRTCP_STATS_CLOCKRATE_H
#define TOOLS_ZUNRTCP_STATS_CLOCKRATE_H

#include <cstdint>
#include <optional>

namespace zunrtcp {

class ClockRate {
 public:
  // A sender report pairs the time of day, 32.32 seconds, with the RTP timestamp.
  void Add(std::uint64_t ntp, std::uint32_t rtp);

  // In Hz. None before the reports span a second, or when the timestamps grow with none of the rates in use.
  std::optional<unsigned> Rate() const;

 private:
  bool started_ = false;
  std::uint64_t first_ntp_ = 0;
  std::uint64_t last_ntp_ = 0;
  std::uint32_t last_rtp_ = 0;
  std::int64_t ticks_ = 0;  // of RTP since the first report
};

}  // namespace zunrtcp

#endif
