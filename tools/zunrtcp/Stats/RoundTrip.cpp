#include "tools/zunrtcp/Stats/RoundTrip.h"

#include <algorithm>

namespace zunrtcp {

namespace {

constexpr double kDelaysPerSecond = 65536;
constexpr double kMilliseconds = 1000;

}  // namespace

const SentReports::Sent* SentReports::Find(std::uint32_t compact_ntp) const {
  const auto end = sent_.begin() + static_cast<std::ptrdiff_t>(std::min(count_, sent_.size()));
  const auto found =
      std::find_if(sent_.begin(), end, [&](const Sent& sent) { return sent.compact_ntp == compact_ntp; });
  return found == end ? nullptr : &*found;
}

void SentReports::Add(std::uint32_t compact_ntp, double seconds) {
  if (Find(compact_ntp) != nullptr) return;
  sent_[count_ % sent_.size()] = {compact_ntp, seconds};
  ++count_;
}

std::optional<double> SentReports::Answer(std::uint32_t compact_ntp, std::uint32_t delay, double seconds) const {
  if (compact_ntp == 0) return std::nullopt;
  const Sent* sent = Find(compact_ntp);
  if (sent == nullptr) return std::nullopt;
  return (seconds - sent->seconds - delay / kDelaysPerSecond) * kMilliseconds;
}

}  // namespace zunrtcp
