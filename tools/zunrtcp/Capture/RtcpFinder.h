// Finds the RTCP datagrams among the frames of a capture.
#ifndef TOOLS_ZUNRTCP_CAPTURE_RTCPFINDER_H
#define TOOLS_ZUNRTCP_CAPTURE_RTCPFINDER_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "tools/zunrtcp/Capture/CaptureReader.h"
#include "tools/zunrtcp/Capture/UdpDatagram.h"

namespace zunrtcp {

// The payload of one UDP datagram that is RTCP, and where it was found.
struct RtcpDatagram {
  std::size_t number = 0;          // counted from 1
  std::size_t record_number = 0;   // of the capture
  std::int64_t record_offset = 0;  // byte offset of that record in the file; -1 when not known
  std::int64_t seconds = 0;        // since 1970
  std::uint32_t microseconds = 0;
  Endpoint source;
  Endpoint destination;
  std::string payload;
  std::size_t missing = 0;  // bytes of the payload that the capture cut off
};

// What was seen besides.
struct FrameCounts {
  std::size_t records = 0;
  std::size_t udp = 0;        // UDP datagrams, RTCP among them
  std::size_t fragments = 0;  // fragments of IP packets, which are skipped
  std::size_t cut_off = 0;    // records cut off within their headers, so that nobody knows what they held
};

// RTCP as RFC 5761, section 4 tells it from RTP: at least a header, version 2, packet type 192 to 223.
bool LooksLikeRtcp(std::string_view payload);

class RtcpFinder {
 public:
  // Looks only at datagrams from or to one of `ports`, or at all of them when there are none. InputError when the
  // link layer of the capture is not known.
  RtcpFinder(CaptureReader* capture, std::set<std::uint16_t> ports);

  // The next datagram; none at the end. InputError as CaptureReader::Next.
  std::optional<RtcpDatagram> Next();

  const FrameCounts& counts() const { return counts_; }

 private:
  // The datagram in a record; none when it holds no RTCP.
  std::optional<RtcpDatagram> RtcpIn(const Record& record);
  bool HasPort(const UdpDatagram& udp) const;

  CaptureReader* capture_;
  std::set<std::uint16_t> ports_;
  FrameCounts counts_;
  std::size_t found_ = 0;
};

}  // namespace zunrtcp

#endif
