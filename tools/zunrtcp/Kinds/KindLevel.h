// The levels on which kinds are told: packet types, formats of feedback, application-layer messages.
#ifndef TOOLS_ZUNRTCP_KINDS_KINDLEVEL_H
#define TOOLS_ZUNRTCP_KINDS_KINDLEVEL_H

#include <cstddef>
#include <optional>
#include <span>
#include <string>

#include "tools/zunrtcp/Packet/LibraryPacket.h"
#include "tools/zunrtcp/Packet/SubpacketWalk.h"

namespace zunrtcp {

// Added to the registered number of a form that the house has no object for, to tell it from what the house means by
// that number.
inline constexpr ZunInt32 kRegisteredForm = 0x100;

// A level tells kinds by a value, both in an object of the library and in the bytes of a subpacket.
struct KindLevel {
  // The kind of the level around it that holds the kinds of this one; no level for the outermost.
  const KindLevel* outer;
  ZunInt32 outer_value;

  // These four are asked only about what is on this level.
  ZunInt32 (*value_of_object)(ObjectView object);
  ZunInt32 (*value_of_bytes)(const SubpacketView& subpacket);
  std::span<const std::byte> (*unknown_data)(ObjectView object);  // of one whose value is unknown
  std::string (*number_words)(const SubpacketView& subpacket);    // "RTPFB FMT 11"

  // Whether the library keeps bodies of this value as bytes.
  bool (*is_unknown)(ZunInt32 value);

  // The value on this level; nothing for a subpacket that is not on it.
  std::optional<ZunInt32> ValueOf(ObjectView object) const;
  std::optional<ZunInt32> ValueOf(const SubpacketView& subpacket) const;
};

extern const KindLevel subpacket_level;
extern const KindLevel rtpfb_level;
extern const KindLevel psfb_level;
extern const KindLevel afb_level;

}  // namespace zunrtcp

#endif
