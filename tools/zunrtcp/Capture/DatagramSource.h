// Where datagrams come from.
#ifndef TOOLS_ZUNRTCP_CAPTURE_DATAGRAMSOURCE_H
#define TOOLS_ZUNRTCP_CAPTURE_DATAGRAMSOURCE_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "tools/zunrtcp/Capture/UdpDatagram.h"

namespace zunrtcp {

// The payload of one UDP datagram that is RTCP, and where it was found.
struct RtcpDatagram {
  std::size_t number = 0;          // counted from 1
  std::size_t line = 0;            // of the text where it begins; 0 when it comes from a capture, as the next all tell
  std::size_t record_number = 0;   // of the capture
  std::int64_t record_offset = 0;  // byte offset of that record in the file; -1 when not known
  std::int64_t seconds = 0;        // since 1970
  std::uint32_t microseconds = 0;
  std::int64_t since_start = 0;  // microseconds since the first record of the capture
  Endpoint source;
  Endpoint destination;
  std::string payload;
  std::size_t missing = 0;  // bytes of the payload that the capture cut off
};

// What was seen besides.
struct FrameCounts {
  std::size_t lines = 0;      // of text; 0 for a capture
  std::size_t records = 0;    // of a capture
  std::size_t udp = 0;        // UDP datagrams, RTCP among them
  std::size_t rtp = 0;        // of which RTP
  std::size_t fragments = 0;  // fragments of IP packets that never became whole
  std::size_t cut_off = 0;    // records cut off within their headers, so that nobody knows what they held
};

class DatagramSource {
 public:
  virtual ~DatagramSource() = default;

  // The next datagram; none at the end. InputError when what comes next cannot be read: everything before has been.
  virtual std::optional<RtcpDatagram> Next() = 0;

  // So far.
  virtual FrameCounts counts() const = 0;
  virtual const std::string& path() const = 0;
  // What to complain of when there was no datagram at all.
  virtual std::string NothingFound() const = 0;
  // Whether datagrams come while they happen, until the user ends it.
  virtual bool live() const { return false; }
};

}  // namespace zunrtcp

#endif
