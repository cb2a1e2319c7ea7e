// What a receiver knows of one source: what arrived, what is missing, how evenly it came (RFC 3550, appendix A).
#ifndef EXAMPLES_FEEDBACK_RECEIVER_RECEPTION_H
#define EXAMPLES_FEEDBACK_RECEIVER_RECEPTION_H

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <map>
#include <vector>

#include "Zun/Rtp/Cpp/Rtcp.h"
#include "examples/feedback_receiver/RtpHeader.h"

using Clock = zun::rtcp::MonotonicClock;

class Reception {
 public:
  explicit Reception(unsigned clock_rate) : clock_rate_(clock_rate) {}

  // How many are missing between the highest that came and this one.
  unsigned MissingBefore(const RtpHeader& header) const {
    const int step = StepTo(header);
    return step > 1 ? static_cast<unsigned>(step - 1) : 0;
  }

  // True when it was missing: it comes late, or was sent again under its own number.
  bool Arrived(const RtpHeader& header, Clock::time_point now) {
    if (!has_begun_) {
      has_begun_ = true;
      first_ = highest_ = header.seq;
      last_transit_ = TransitOf(header, now);
    }
    ++received_;
    const int step = StepTo(header);
    for (int i = 1; i < step; ++i) missing_[highest_ + static_cast<std::uint32_t>(i)] = {};
    if (step > 0) highest_ += static_cast<std::uint32_t>(step);
    const bool was_missing = step < 0 && missing_.erase(highest_ + static_cast<std::uint32_t>(step)) > 0;
    const std::int64_t transit = TransitOf(header, now);
    jitter_ += (static_cast<double>(std::abs(transit - last_transit_)) - jitter_) / 16;
    last_transit_ = transit;
    return was_missing;
  }

  // A packet came in a retransmission. It stays lost in the reports. True when it was missing.
  bool Recovered(std::uint16_t seq) {
    const auto found = std::ranges::find_if(
        missing_, [seq](const auto& missing) { return static_cast<std::uint16_t>(missing.first) == seq; });
    if (found == missing_.end()) return false;
    missing_.erase(found);
    return true;
  }

  // The packets to ask for: each at once, then every 100 ms, three times in all; then they are given up.
  std::vector<std::uint16_t> ToAskFor(Clock::time_point now) {
    std::vector<std::uint16_t> asked;
    for (auto& [seq, asking] : missing_) {
      if (asking.times == 3 || now < asking.next) continue;
      ++asking.times;
      asking.next = now + std::chrono::milliseconds(100);
      asked.push_back(static_cast<std::uint16_t>(seq));
    }
    return asked;
  }
  // After a blackout nobody wants what was missed.
  void GiveUp() { missing_.clear(); }

  void SenderReported(zun::rtcp::View<zun::rtcp::Sr> sr, Clock::time_point now) {
    last_sr_ = zun::rtcp::middle_of_ntp(sr.ntp_timestamp());
    last_sr_time_ = now;
  }

  // The block of the next report.
  zun::rtcp::ReportBlock NextBlock(zun::rtcp::Ssrc source, Clock::time_point now) {
    const std::uint32_t expected = highest_ - first_ + 1;
    const std::int64_t expected_since = std::int64_t{expected} - expected_before_;
    const std::int64_t lost_since = expected_since - (std::int64_t{received_} - received_before_);
    expected_before_ = expected;
    received_before_ = received_;
    zun::rtcp::ReportBlock block{};
    block.ssrc = source;
    if (lost_since > 0)
      block.fraction_lost = static_cast<std::uint8_t>(std::min<std::int64_t>(255, 256 * lost_since / expected_since));
    zun::rtcp::packets_lost(block, static_cast<std::int32_t>(std::int64_t{expected} - received_));
    block.highest_seq_num_rcvd = highest_;
    block.inter_arrival_jitter = static_cast<std::uint32_t>(jitter_);
    block.last_sr = last_sr_;
    if (last_sr_ != 0) block.delay_last_sr = zun::rtcp::to_16_16(now - last_sr_time_);
    return block;
  }

  bool has_begun() const { return has_begun_; }
  std::uint32_t received() const { return received_; }

 private:
  struct Asking {
    int times = 0;
    Clock::time_point next{};
  };

  int StepTo(const RtpHeader& header) const {
    return static_cast<std::int16_t>(header.seq - static_cast<std::uint16_t>(highest_));
  }

  // In units of the RTP timestamp; only its changes mean something.
  std::int64_t TransitOf(const RtpHeader& header, Clock::time_point now) const {
    const auto micros = std::chrono::duration_cast<std::chrono::microseconds>(now.time_since_epoch()).count();
    const auto arrival = static_cast<std::uint32_t>(micros * clock_rate_ / 1000000);
    return static_cast<std::int32_t>(arrival - header.timestamp);
  }

  unsigned clock_rate_;
  bool has_begun_ = false;
  std::uint32_t first_ = 0;
  std::uint32_t highest_ = 0;  // extended by the cycles in its upper half
  std::uint32_t received_ = 0;
  std::int64_t expected_before_ = 0;
  std::int64_t received_before_ = 0;
  std::int64_t last_transit_ = 0;
  double jitter_ = 0;
  std::uint32_t last_sr_ = 0;
  Clock::time_point last_sr_time_{};
  std::map<std::uint32_t, Asking> missing_;
};

#endif
