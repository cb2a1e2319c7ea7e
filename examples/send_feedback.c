/* Asks a media sender for lost packets: builds a receiver report and a NACK, and writes them. */
#include <stdio.h>

#include "Zun/Rtp/ZunRtcpPacket.h"

int main(void) {
  const ZunRtpSourceId us = 0x11223344, media = 0x12345678;
  ZunString out;
  ZunStringConstructDefault(&out, ZunAllocatorGetSystem());

  ZunRtcpPacket packet;
  ZunRtcpPacketConstructDefault(&packet, ZunAllocatorGetSystem());

  ZunRtcpSubpacket sp; /* any kind: each is built with its own constructor, on its member */
  ZunRtcpRrConstructDefault(&sp.rr, ZunAllocatorGetSystem());
  ZunRtcpRrSetSource(&sp.rr, us);
  ZunBool ok = ZunRtcpPacketAppendSubpacket(&packet, &sp); /* a copy */
  ZunRtcpSubpacketDestruct(&sp);

  ZunRtcpRtpfbNackConstruct(&sp.rtpfb.nack, us, media, ZunAllocatorGetSystem());
  ok = ok && ZunRtcpRtpfbNackAddSeqNumber(&sp.rtpfb.nack, 1000); /* lost packets */
  ok = ok && ZunRtcpRtpfbNackAddSeqNumber(&sp.rtpfb.nack, 1003);
  ok = ok && ZunRtcpPacketAppendSubpacket(&packet, &sp);
  ZunRtcpSubpacketDestruct(&sp);

  if (ok && ZunRtcpPacketGetNetworkPacket(&packet, &out)) { /* out.buf and out.size: the datagram to send */
    for (ZunSizeT i = 0; i < out.size; ++i) printf("%02x", (unsigned char)out.buf[i]);
    printf("\n");
  }
  ZunRtcpPacketDestruct(&packet);
  ZunStringDestruct(&out);
  return ok ? 0 : 1;
}
