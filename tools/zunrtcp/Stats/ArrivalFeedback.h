// What transport-wide and CCFB feedback tell of the arrival of packets.
#ifndef TOOLS_ZUNRTCP_STATS_ARRIVALFEEDBACK_H
#define TOOLS_ZUNRTCP_STATS_ARRIVALFEEDBACK_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>

#include "tools/zunrtcp/Stats/SequenceStates.h"

namespace zunrtcp {

struct ReportedPacket {
  std::uint16_t sequence = 0;
  bool received = false;
  std::optional<double> arrival;  // in seconds of the receiver's clock
};

// What one message tells that no message before it did.
struct ArrivalNews {
  std::size_t received = 0;
  std::size_t lost = 0;
  std::optional<double> spread;       // from the first arrival to the last, in ms; none when fewer than 2 are timed
  std::optional<double> packet_rate;  // packets per second of the receiver's clock, once a second is over
};

// The messages of one receiver. Each packet counts once: messages overlap, and tell of a packet as lost that comes
// late.
class ArrivalFeedback {
 public:
  ArrivalNews Add(std::span<const ReportedPacket> packets);

  std::size_t messages() const { return messages_; }
  std::size_t received() const { return received_; }
  std::size_t lost() const { return lost_; }  // and never told of as received later
  std::size_t late() const { return late_; }  // received after they were told of as lost

 private:
  // Counts the packet; true when it is received and was not before.
  bool Count(const ReportedPacket& packet, ArrivalNews* news);
  void AddArrival(double arrival, ArrivalNews* news);

  std::unique_ptr<SequenceStates> states_;
  std::size_t messages_ = 0;
  std::size_t received_ = 0;
  std::size_t lost_ = 0;
  std::size_t late_ = 0;
  std::optional<double> window_begin_;
  std::size_t window_packets_ = 0;
};

// A counter of `bits` bits, without its wraparound.
class UnwrappedCounter {
 public:
  explicit UnwrappedCounter(unsigned bits) : shift_(64 - bits) {}
  std::int64_t Next(std::uint64_t value);

 private:
  unsigned shift_;
  std::optional<std::int64_t> last_;
};

}  // namespace zunrtcp

#endif
