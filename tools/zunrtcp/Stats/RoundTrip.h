// The round trip, from times of sending that a peer gives back with the delay until it did.
#ifndef TOOLS_ZUNRTCP_STATS_ROUNDTRIP_H
#define TOOLS_ZUNRTCP_STATS_ROUNDTRIP_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace zunrtcp {

// The middle 32 bits of an NTP timestamp, as LSR and LRR hold them.
constexpr std::uint32_t CompactNtp(std::uint64_t ntp) { return static_cast<std::uint32_t>(ntp >> 16); }

// The reports of one sender that may still be answered: SR by LSR and DLSR, RRTR by LRR and DLRR. Both times are taken
// where the capture was made, so no clock of a peer matters; what comes out is the way from there to the peer and back.
class SentReports {
 public:
  // A report with this time passed. One that is seen again (a copy on another leg) keeps its first time.
  void Add(std::uint32_t compact_ntp, double seconds);

  // The round trip in milliseconds, when the answer to it passes; `delay` is in 1/65536 s. It may come out slightly
  // below 0 where the capture was made at the peer. None when no such report was seen, or it says that there was none.
  std::optional<double> Answer(std::uint32_t compact_ntp, std::uint32_t delay, double seconds) const;

 private:
  struct Sent {
    std::uint32_t compact_ntp = 0;
    double seconds = 0;
  };
  const Sent* Find(std::uint32_t compact_ntp) const;

  // Peers answer one of the last few.
  std::array<Sent, 32> sent_{};
  std::size_t count_ = 0;  // of all; the newest overwrites the oldest
};

}  // namespace zunrtcp

#endif
