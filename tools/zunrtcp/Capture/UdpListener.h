// Receives RTCP on a UDP port.
#ifndef TOOLS_ZUNRTCP_CAPTURE_UDPLISTENER_H
#define TOOLS_ZUNRTCP_CAPTURE_UDPLISTENER_H

#include <optional>
#include <string>

#include "tools/zunrtcp/Capture/DatagramSource.h"

namespace zunrtcp {

class UdpListener : public DatagramSource {
 public:
  // "127.0.0.1:5005", "[::1]:5005"; port 0 takes a free one, which path() tells. InputError when it is no address, or
  // cannot be had.
  explicit UdpListener(const std::string& address);
  ~UdpListener() override;
  UdpListener(const UdpListener&) = delete;
  UdpListener& operator=(const UdpListener&) = delete;

  // Waits for the next datagram of RTCP; none after an interrupt (CatchInterrupts).
  std::optional<RtcpDatagram> Next() override;
  FrameCounts counts() const override { return counts_; }
  const std::string& path() const override { return path_; }
  std::string NothingFound() const override { return {}; }
  bool live() const override { return true; }

 private:
  std::optional<RtcpDatagram> Receive();

  int socket_ = -1;
  Endpoint own_;
  std::string path_;
  std::string buffer_;
  FrameCounts counts_;
  std::size_t found_ = 0;
  std::optional<std::int64_t> start_;  // when the first datagram came, in microseconds
};

}  // namespace zunrtcp

#endif
