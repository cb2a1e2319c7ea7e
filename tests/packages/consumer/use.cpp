// The same package, from C++: builds a report and reads what was written of it.
#include <array>
#include <cstdio>

#include "Zun/Rtp/Dialect/ZunRtcpCodec.h"

int main() {
  ZunRtcpSubpacket report;
  ZunRtcpRrConstructDefault(&report.rr, ZunAllocatorGetSystem());
  ZunRtcpRrSetSource(&report.rr, 0x11223344);
  ZunRtcpPacket packet;
  ZunRtcpPacketConstructDefault(&packet, ZunAllocatorGetSystem());
  bool is_well = ZunRtcpPacketAppendSubpacket(&packet, &report) != 0;
  ZunRtcpSubpacketDestruct(&report);

  std::array<unsigned char, 8> octets = {};
  ZunSizeT size = 0;
  is_well = is_well && ZunRtcpPacketEncode(&packet, octets.data(), octets.size(), ZUN_RTCP_DIALECT_HOUSE, &size) != 0 &&
            size == octets.size() && octets[1] == 201 && octets[4] == 0x11 && octets[7] == 0x44;
  ZunRtcpPacketDestruct(&packet);
  std::printf("%s\n", is_well ? "a report of 8 bytes" : "no report");
  return is_well ? 0 : 1;
}
