// What is known of the packets of a stream by their sequence numbers, over the last half of all numbers.
#ifndef TOOLS_ZUNRTCP_STATS_SEQUENCESTATES_H
#define TOOLS_ZUNRTCP_STATS_SEQUENCESTATES_H

#include <bitset>
#include <cstddef>
#include <cstdint>

namespace zunrtcp {

// Sequence numbers wrap, so one that is far enough in the past stands for another packet when it comes again.
class SequenceStates {
 public:
  enum class State { Unknown, Missing, Received };

  State Get(std::uint16_t sequence);
  void Set(std::uint16_t sequence, State state);

 private:
  static constexpr std::size_t kNumbers = 65536;
  static constexpr std::uint16_t kHalf = 32768;

  // Forgets what is more than half of all numbers before the newest.
  void MoveTo(std::uint16_t sequence);

  bool started_ = false;
  std::uint16_t newest_ = 0;
  std::bitset<kNumbers> known_;
  std::bitset<kNumbers> received_;
};

}  // namespace zunrtcp

#endif
