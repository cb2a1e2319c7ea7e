/* Reads a datagram, prints its sender reports, and writes it back. */
#include <stdio.h>
#include <string.h>

#include "Zun/Rtp/ZunRtcpPacket.h"

/* A sender report without report blocks, and an SDES with the CNAME "zun@host". */
static const char received[] =
    "\x80\xC8\x00\x06\x12\x34\x56\x78\xE5\x8A\x30\x00\x80\x00\x00\x00\x00\x01\x5F\x90\x00\x00\x00\x64\x00\x00\x27\x10"
    "\x81\xCA\x00\x04\x12\x34\x56\x78\x01\x08zun@host\x00\x00";

int main(void) {
  ZunString datagram, out;
  ZunStringConstructDefault(&datagram, ZunAllocatorGetSystem());
  ZunStringConstructDefault(&out, ZunAllocatorGetSystem());
  if (!ZunStringAppendCStrLen(&datagram, received, sizeof(received) - 1)) return 1;

  ZunRtcpPacket packet; /* keep it: a datagram of the same shape is parsed over this one without an allocation */
  ZunRtcpPacketConstructDefault(&packet, ZunAllocatorGetSystem());

  if (ZunRtcpPacketParseNetworkPacket(&packet, &datagram)) { /* datagram: a ZunString with the received bytes */
    for (ZunSizeT i = 0; i < ZunRtcpPacketGetSubpacketCount(&packet); ++i) {
      const ZunRtcpSubpacket* sp = ZunRtcpPacketGetSubpacket(&packet, i);
      if (ZunRtcpSubpacketGetType(sp) == ZUN_RTCPSUBPACKET_TYPE_SR) {
        const ZunRtcpSr* sr = ZunRtcpSubpacketGetSr(sp);
        printf("sender report of %08x\n", ZunRtcpSrGetSource(sr));
      }
    }
    ZunRtcpPacketGetNetworkPacket(&packet, &out); /* out: a ZunString; holds the same bytes again */
  }
  ZunRtcpPacketDestruct(&packet);

  const int is_same = out.size == datagram.size && memcmp(out.buf, datagram.buf, out.size) == 0;
  printf("%d bytes read, %s\n", (int)datagram.size, is_same ? "the same written" : "others written");
  ZunStringDestruct(&out);
  ZunStringDestruct(&datagram);
  return is_same ? 0 : 1;
}
