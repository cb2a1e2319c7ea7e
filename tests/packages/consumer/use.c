/* What a stranger may compile against the package: reads a datagram in one dialect and writes it in both. */
#include <stdio.h>
#include <string.h>

#include "Zun/Rtp/Dialect/ZunRtcpCodec.h"

/* A receiver report without blocks, and a picture loss indication. */
static const unsigned char datagram[] = {0x80, 201, 0, 1, 0x11, 0x22, 0x33, 0x44, /* RR */
                                         0x81, 206, 0, 2, 0x11, 0x22, 0x33, 0x44, 0x55, 0x66, 0x77, 0x88};

int main(void) {
  ZunRtcpPacket packet;
  unsigned char written[64];
  ZunSizeT size = 0;
  int failed = 0;

  ZunRtcpPacketConstructDefault(&packet, ZunAllocatorGetSystem());
  if (!ZunRtcpPacketDecode(&packet, datagram, sizeof(datagram), ZUN_RTCP_DIALECT_REGISTERED, NULL, NULL)) return 1;
  for (ZunRtcpDialect dialect = ZUN_RTCP_DIALECT_HOUSE; dialect <= ZUN_RTCP_DIALECT_REGISTERED; ++dialect) {
    if (!ZunRtcpPacketEncode(&packet, written, sizeof(written), dialect, &size)) failed = 1;
    if (size != sizeof(datagram) || memcmp(written, datagram, size) != 0) failed = 1;
  }
  printf("%d subpackets of %s, %s\n", (int)ZunRtcpPacketGetSubpacketCount(&packet),
         ZunRtcpDecodeReasonGetText(ZUN_RTCP_DECODE_REASON_NONE), failed ? "others written" : "the same written");
  ZunRtcpPacketDestruct(&packet);
  return failed;
}
