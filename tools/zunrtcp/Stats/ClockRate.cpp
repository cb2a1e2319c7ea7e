#include "tools/zunrtcp/Stats/ClockRate.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace zunrtcp {

namespace {

// Those of RFC 3551 and of common codecs since.
constexpr std::array kRates{8000U, 11025U, 12000U, 16000U, 22050U, 24000U, 32000U, 44100U, 48000U, 90000U, 96000U};
constexpr double kTolerance =
    0.04;  // senders stamp a report with the time of a frame, and some count by their own clock
constexpr double kNtpPerSecond = 4294967296.0;

}  // namespace

void ClockRate::Add(std::uint64_t ntp, std::uint32_t rtp) {
  if (!started_ || ntp <= last_ntp_) {  // the sender began again
    first_ntp_ = ntp;
    ticks_ = 0;
    started_ = true;
  } else {
    ticks_ += static_cast<std::int32_t>(rtp - last_rtp_);
  }
  last_ntp_ = ntp;
  last_rtp_ = rtp;
}

std::optional<unsigned> ClockRate::Rate() const {
  const double seconds = static_cast<double>(last_ntp_ - first_ntp_) / kNtpPerSecond;
  if (seconds < 1) return std::nullopt;
  const double measured = static_cast<double>(ticks_) / seconds;
  const auto* nearest = std::ranges::min_element(kRates, {}, [&](unsigned rate) { return std::abs(rate - measured); });
  if (std::abs(*nearest - measured) > kTolerance * *nearest) return std::nullopt;
  return *nearest;
}

}  // namespace zunrtcp
