/* Writes a packet into a buffer of its own as the RFCs say, whole and in datagrams of a limited size. */
#include <stdio.h>

#include "Zun/Rtp/Dialect/ZunRtcpCodec.h"

static ZunBool append_nack(ZunRtcpPacket* packet, ZunUint16 lost) {
  ZunRtcpSubpacket sp;
  ZunRtcpRtpfbNackConstruct(&sp.rtpfb.nack, 1, 2, ZunAllocatorGetSystem());
  const ZunBool ok = ZunRtcpRtpfbNackAddSeqNumber(&sp.rtpfb.nack, lost) && ZunRtcpPacketAppendSubpacket(packet, &sp);
  ZunRtcpSubpacketDestruct(&sp);
  return ok;
}

int main(void) {
  ZunRtcpPacket packet;
  ZunRtcpPacketConstructDefault(&packet, ZunAllocatorGetSystem());
  ZunBool ok = append_nack(&packet, 100) && append_nack(&packet, 200) && append_nack(&packet, 300);

  unsigned char buffer[64];
  ZunSizeT size = 0;
  if (ok && ZunRtcpPacketEncode(&packet, buffer, sizeof(buffer), ZUN_RTCP_DIALECT_REGISTERED, &size)) {
    printf("all in %d octets\n", (int)size);
  } else if (size != 0) {
    printf("%d octets are needed\n", (int)size);
  } else { /* it cannot be encoded at all */
    ZunSizeT index = 0;
    const ZunRtcpEncodeReason reason = ZunRtcpPacketFindUnencodable(&packet, ZUN_RTCP_DIALECT_REGISTERED, &index);
    printf("packet %d: %s\n", (int)index, ZunRtcpEncodeReasonGetText(reason));
  }

  const ZunSizeT most = 40; /* octets of a datagram */
  ZunSizeT next = 0;
  while (next < ZunRtcpPacketGetSubpacketCount(&packet)) {
    const ZunSizeT first = next;
    if (!ZunRtcpPacketEncodePart(&packet, buffer, most, ZUN_RTCP_DIALECT_REGISTERED, first, NULL, &next, &size)) break;
    printf("packets %d up to, without, %d in %d octets\n", (int)first, (int)next, (int)size);
  }

  ZunRtcpSubpacket sp; /* the house's TMMBN, which has no registered form */
  ZunRtcpRtpfbTmmbnConstructDefault(&sp.rtpfb.tmmbn, ZunAllocatorGetSystem());
  ok = ZunRtcpPacketAppendSubpacket(&packet, &sp);
  ZunRtcpSubpacketDestruct(&sp);
  ZunSizeT index = 0;
  const ZunRtcpEncodeReason reason = ZunRtcpPacketFindUnencodable(&packet, ZUN_RTCP_DIALECT_REGISTERED, &index);
  if (ok) printf("packet %d: %s\n", (int)index, ZunRtcpEncodeReasonGetText(reason));
  ZunRtcpPacketDestruct(&packet);
  return 0;
}
