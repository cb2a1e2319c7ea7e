#include "tools/zunrtcp/Stats/SequenceStates.h"

namespace zunrtcp {

void SequenceStates::MoveTo(std::uint16_t sequence) {
  if (!started_) newest_ = sequence;
  started_ = true;
  const auto ahead = static_cast<std::uint16_t>(sequence - newest_);
  if (ahead >= kHalf) return;  // it is an older one
  for (std::uint16_t i = 1; i <= ahead; ++i) known_.reset(static_cast<std::uint16_t>(newest_ + i + kHalf));
  newest_ = sequence;
}

SequenceStates::State SequenceStates::Get(std::uint16_t sequence) {
  MoveTo(sequence);
  if (!known_.test(sequence)) return State::Unknown;
  return received_.test(sequence) ? State::Received : State::Missing;
}

void SequenceStates::Set(std::uint16_t sequence, State state) {
  MoveTo(sequence);
  known_.set(sequence, state != State::Unknown);
  received_.set(sequence, state == State::Received);
}

}  // namespace zunrtcp
