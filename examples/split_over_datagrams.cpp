// Splits what there is to say over datagrams of a limited size, each a compound packet of its own.
#include <iostream>

#include "Zun/Rtp/Cpp/Rtcp.h"

using namespace zun::rtcp;

int main() {
  constexpr Ssrc us = 0x11223344;
  // Each datagram begins with a report and a name.
  Packet prefix;
  bool ok = prefix.emplace<Rr>(us).has_value();
  Sdes sdes;
  ok = ok && sdes.add(us, ZUN_RTCPSDESITEM_TYPE_CNAME, "receiver@host") && prefix.append(std::move(sdes));

  Packet packet;
  for (Ssrc media = 1; media <= 100; ++media) ok = ok && packet.emplace<Pli>(us, media).has_value();
  if (!ok) return 1;

  Datagrams datagrams = packet.datagrams(500, prefix);
  for (std::span<const std::byte> datagram : datagrams) {
    Packet sent;  // as the peer sees it
    if (!sent.decode(datagram)) return 1;
    std::cout << datagram.size() << " octets, " << sent.size() << " packets\n";
  }
  if (datagrams.error()) std::cerr << *datagrams.error() << '\n';
  return datagrams.error() ? 1 : 0;
}
