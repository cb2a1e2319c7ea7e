// Where the fields common to all feedback stand in the bytes of a subpacket (RFC 4585, section 6.1).
#ifndef TOOLS_ZUNRTCP_KINDS_FEEDBACKLAYOUT_H
#define TOOLS_ZUNRTCP_KINDS_FEEDBACKLAYOUT_H

#include <cstddef>
#include <optional>

#include "tools/zunrtcp/Kinds/Rule.h"
#include "tools/zunrtcp/Packet/SubpacketWalk.h"

namespace zunrtcp {

inline constexpr std::size_t kMediaSourceOffset = kHeaderSize + kSourceSize;  // after the sender
inline constexpr std::size_t kFciOffset = kMediaSourceOffset + kSourceSize;   // the feedback control information
inline constexpr std::size_t kAfbBodyOffset = kFciOffset + 4;                 // after the identifier of a message

// The refusal of a message whose entries begin at `kEntriesOffset` and that has none.
template <std::size_t kEntriesOffset = kFciOffset>
std::optional<Rule> WhyRefusedWithoutEntries(const SubpacketView& subpacket) {
  if (subpacket.bytes.size() == kEntriesOffset) return Rule::NoEntries;
  return std::nullopt;
}

}  // namespace zunrtcp

#endif
