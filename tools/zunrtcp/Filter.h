// Which datagrams are to be shown.
#ifndef TOOLS_ZUNRTCP_FILTER_H
#define TOOLS_ZUNRTCP_FILTER_H

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "tools/zunrtcp/DecodedDatagram.h"

namespace zunrtcp {

// A point in time, in microseconds since the first record of the capture or since 1970.
struct TimeLimit {
  bool is_relative = false;
  std::int64_t microseconds = 0;
};

// "12.5", in seconds since the first record; "2026-11-21T11:02:33.5" in UTC, with a T or a blank. Nothing when it is
// neither.
std::optional<TimeLimit> ParseTimeLimit(const std::string& text);

// "0x1234ABCD", "305441741". Nothing when it is no SSRC.
std::optional<std::uint32_t> ParseSource(const std::string& text);

// A datagram passes when it is in time and one subpacket of it is all that is asked for. Nothing is asked by default.
struct Filter {
  std::set<std::uint32_t> sources;  // it is about or from one of these
  std::vector<std::string> types;   // a name as it is shown ("nack"), a packet type ("205"), or with the FMT ("205/1")
  bool only_refused = false;
  std::optional<TimeLimit> from;
  std::optional<TimeLimit> to;

  bool Passes(const DecodedDatagram& decoded) const;
  bool AsksForSubpackets() const { return !sources.empty() || !types.empty() || only_refused; }

 private:
  bool IsInTime(const RtcpDatagram& datagram) const;
  bool Passes(const DecodedSubpacket& subpacket) const;
  bool HasSource(const DecodedSubpacket& subpacket) const;
  bool HasType(const DecodedSubpacket& subpacket) const;
};

}  // namespace zunrtcp

#endif
