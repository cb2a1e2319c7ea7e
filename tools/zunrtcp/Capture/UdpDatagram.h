// Finds the UDP datagram within a captured frame.
#ifndef TOOLS_ZUNRTCP_CAPTURE_UDPDATAGRAM_H
#define TOOLS_ZUNRTCP_CAPTURE_UDPDATAGRAM_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace zunrtcp {

struct Endpoint {
  std::string address;
  std::uint16_t port = 0;

  // "127.0.0.1:5005", "[::1]:5005".
  std::string Name() const;
};

struct UdpDatagram {
  Endpoint source;
  Endpoint destination;
  std::string payload;      // as far as it was captured
  std::size_t missing = 0;  // bytes of the payload that the capture cut off
};

enum class FrameContent {
  Udp,       // the datagram is there
  Fragment,  // a fragment of an IP packet, of which the rest is elsewhere
  CutOff,    // ends before its headers do, and says so or is shorter than it was on the wire
  Other,     // something else
};

// True when frames of this link layer (a DLT_ number of libpcap) can be read: Ethernet (VLAN tags included), Linux
// cooked (both versions), BSD loopback, raw IP.
bool LinkTypeIsKnown(int linkType);

// Looks into a frame; fills `datagram` when the result is Udp. IPv4 and IPv6.
FrameContent ReadUdpDatagram(int linkType, std::string_view frame, UdpDatagram* datagram);

}  // namespace zunrtcp

#endif
