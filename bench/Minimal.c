/* The least that uses the library: one datagram decoded. Only its size is of interest. */
#include <stdio.h>

#include "Zun/Rtp/Dialect/ZunRtcpDecode.h"

int main(void) {
  unsigned char octets[1500];
  const size_t size = fread(octets, 1, sizeof(octets), stdin);
  ZunRtcpPacket packet;
  ZunRtcpPacketConstructDefault(&packet, ZunAllocatorGetSystem());
  const ZunBool is_read = ZunRtcpPacketDecode(&packet, octets, size, ZUN_RTCP_DIALECT_REGISTERED, NULL, NULL);
  ZunRtcpPacketDestruct(&packet);
  return is_read ? 0 : 1;
}
