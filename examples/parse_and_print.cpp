// Parses a datagram and prints what it holds.
#include <iostream>

#include "Zun/Rtp/Cpp/Rtcp.h"

using namespace zun::rtcp;

// A datagram, as a socket gives it.
static bool Print(std::span<const std::byte> datagram) {
  Packet packet;  // keep it: a datagram of the same shape is decoded over this one without an allocation
  if (auto decoded = packet.decode(datagram); !decoded) {
    std::cerr << decoded.error() << '\n';
    return false;
  }
  for (View<Subpacket> subpacket : packet) {
    std::cout << subpacket << '\n';
    if (auto nack = get_if<Nack>(subpacket)) {
      for (std::uint16_t seq : nack->lost()) std::cout << "send packet " << seq << " again\n";
    }
  }
  return true;
}

int main() {
  // A receiver report without blocks, and a NACK for 1000 and 1003.
  constexpr char received[] =
      "\x80\xC9\x00\x01\x11\x22\x33\x44"
      "\x81\xCD\x00\x03\x11\x22\x33\x44\x12\x34\x56\x78\x03\xE8\x00\x04";
  return Print(std::as_bytes(std::span(received, sizeof(received) - 1))) ? 0 : 1;
}
