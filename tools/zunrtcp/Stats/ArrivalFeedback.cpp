#include "tools/zunrtcp/Stats/ArrivalFeedback.h"

#include <algorithm>

namespace zunrtcp {

namespace {

using State = SequenceStates::State;

constexpr double kWindow = 1;          // seconds over which packets are counted for a rate
constexpr double kLongestWindow = 10;  // a longer one is a pause, or another clock
constexpr double kMilliseconds = 1000;

std::optional<double> SpreadOf(std::span<const ReportedPacket> packets) {
  std::size_t timed = 0;
  double first = 0;
  double last = 0;
  for (const ReportedPacket& packet : packets) {
    if (!packet.arrival) continue;
    first = timed == 0 ? *packet.arrival : std::min(first, *packet.arrival);
    last = timed == 0 ? *packet.arrival : std::max(last, *packet.arrival);
    ++timed;
  }
  if (timed < 2) return std::nullopt;
  return (last - first) * kMilliseconds;
}

}  // namespace

bool ArrivalFeedback::Count(const ReportedPacket& packet, ArrivalNews* news) {
  const State before = states_->Get(packet.sequence);
  if (before == State::Received) return false;
  if (!packet.received) {
    if (before == State::Missing) return false;
    states_->Set(packet.sequence, State::Missing);
    ++lost_;
    ++news->lost;
    return false;
  }
  if (before == State::Missing) {
    --lost_;
    ++late_;
  }
  states_->Set(packet.sequence, State::Received);
  ++received_;
  ++news->received;
  return true;
}

void ArrivalFeedback::AddArrival(double arrival, ArrivalNews* news) {
  const double elapsed = window_begin_ ? arrival - *window_begin_ : -kLongestWindow;
  if (elapsed <= -kLongestWindow || elapsed > kLongestWindow) {
    window_begin_ = arrival;
    window_packets_ = 0;
  } else if (elapsed >= kWindow) {
    news->packet_rate = static_cast<double>(window_packets_) / elapsed;
    window_begin_ = arrival;
    window_packets_ = 0;
  }
  ++window_packets_;
}

ArrivalNews ArrivalFeedback::Add(std::span<const ReportedPacket> packets) {
  if (states_ == nullptr) states_ = std::make_unique<SequenceStates>();
  ++messages_;
  ArrivalNews news;
  news.spread = SpreadOf(packets);
  for (const ReportedPacket& packet : packets) {
    const bool is_new = Count(packet, &news);
    if (is_new && packet.arrival) AddArrival(*packet.arrival, &news);
  }
  return news;
}

std::int64_t UnwrappedCounter::Next(std::uint64_t value) {
  if (!last_) {
    last_ = static_cast<std::int64_t>(value << shift_) >> shift_;
    return *last_;
  }
  const auto step = static_cast<std::int64_t>((value - static_cast<std::uint64_t>(*last_)) << shift_) >> shift_;
  *last_ += step;
  return *last_;
}

}  // namespace zunrtcp
