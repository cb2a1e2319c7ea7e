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
#include "tools/zunrtcp/Capture/DatagramSource.h"

namespace zunrtcp {

// RTCP as RFC 5761, section 4 tells it from RTP: at least a header, version 2, packet type 192 to 223.
bool LooksLikeRtcp(std::string_view payload);

// RTP, told in the same way: at least a header, version 2, and no RTCP.
bool LooksLikeRtp(std::string_view payload);

// Reads them from a capture file.
class RtcpFinder : public DatagramSource {
 public:
  // Opens the file; "-" is standard input. Looks only at datagrams from or to one of `ports`, or at all of them
  // when there are none. InputError when it cannot be opened or its link layer is not known.
  RtcpFinder(const std::string& path, std::set<std::uint16_t> ports);
  // The same of a capture that is open, or of an interface.
  RtcpFinder(CaptureReader capture, std::set<std::uint16_t> ports);

  std::optional<RtcpDatagram> Next() override;
  FrameCounts counts() const override;
  const std::string& path() const override { return capture_.path(); }
  std::string NothingFound() const override;
  bool live() const override { return capture_.live(); }

 private:
  // The datagram in a record; none when it holds no RTCP.
  std::optional<RtcpDatagram> RtcpIn(const Record& record);
  bool HasPort(const UdpDatagram& udp) const;

  CaptureReader capture_;
  std::set<std::uint16_t> ports_;
  FrameCounts counts_;  // but for the fragments
  Reassembler fragments_;
  std::optional<std::int64_t> start_;  // time of the first record, in microseconds
  std::size_t found_ = 0;
};

}  // namespace zunrtcp

#endif
