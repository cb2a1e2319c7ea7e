// Finds the UDP datagram within a captured frame.
#ifndef TOOLS_ZUNRTCP_CAPTURE_UDPDATAGRAM_H
#define TOOLS_ZUNRTCP_CAPTURE_UDPDATAGRAM_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "tools/zunrtcp/Capture/Reassembler.h"

namespace zunrtcp {

struct Endpoint {
  std::string address;
  std::uint16_t port = 0;

  // "127.0.0.1:5005", "[::1]:5005".
  std::string Name() const;
  bool operator==(const Endpoint&) const = default;
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
bool LinkTypeIsKnown(int link_type);

// What was found in a frame.
struct Frame {
  FrameContent content = FrameContent::Other;
  UdpDatagram datagram;  // when the content is Udp; of a Fragment only the addresses
  Fragment fragment;     // when the content is Fragment
};

// The datagram of which `frame` was a fragment, from the whole payload of its IP packet.
Frame ReadWhole(Frame frame, std::string_view ip_payload);

// Looks into a frame. IPv4 and IPv6.
Frame ReadFrame(int link_type, std::string_view bytes);

}  // namespace zunrtcp

#endif
