// What is refused of a datagram, and the bytes around the place.
#ifndef TOOLS_ZUNRTCP_PACKET_REFUSAL_H
#define TOOLS_ZUNRTCP_PACKET_REFUSAL_H

#include <cstddef>
#include <string>
#include <string_view>

namespace zunrtcp {

// Offsets are in the datagram.
struct Refusal {
  std::string reason;
  std::size_t offset = 0;      // where what is refused begins
  std::size_t stopped_at = 0;  // where reading stopped
  std::size_t bytes_offset = 0;
  std::string_view bytes;  // of the datagram, a few before and after where reading stopped

  // "the body is too short; it begins at byte 8, reading stopped at byte 12".
  std::string Words() const;
  // "bytes 4 to 15: 00000001 81c90001 | 00000001"; the mark is where reading stopped.
  std::string BytesWords() const;
};

Refusal RefusalAt(std::string_view datagram, std::string reason, std::size_t offset, std::size_t stopped_at);

}  // namespace zunrtcp

#endif
