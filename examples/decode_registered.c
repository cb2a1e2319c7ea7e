/* Reads a datagram of a peer that speaks as the RFCs say, tolerantly, without the heap. */
#include <stdio.h>

#include "Zun/Rtp/Dialect/ZunRtcpCodec.h"

/* RR, CCFB of FMT 11, TMMBR of FMT 3, a NACK without entries, which is malformed, and a PLI with padding. */
static unsigned char received[] =
    "\x80\xC9\x00\x01\x00\x00\x00\x01"
    "\x8B\xCD\x00\x05\x00\x00\x00\x01\x00\x00\x00\x02\x00\x64\x00\x01\xA0\x05\x00\x00\x00\x01\x00\x00"
    "\x83\xCD\x00\x04\x00\x00\x00\x01\x00\x00\x00\x00\x00\x00\x00\x02\x0A\x61\x60\x1C"
    "\x81\xCD\x00\x02\x00\x00\x00\x01\x00\x00\x00\x02"
    "\xA1\xCE\x00\x03\x00\x00\x00\x01\x00\x00\x00\x02\x00\x00\x00\x04";

/* A TMMBR has no object in a packet: it is refused, and read from its octets. */
static void on_refusal(ZunVoidPtr user_data, const ZunRtcpDecodeRefusal* refusal) {
  const unsigned char* datagram = user_data;
  ZunRtcpTmmb tmmb;
  ZunRtcpTmmbEntry entry;
  if (ZunRtcpTmmbRead(&tmmb, datagram + refusal->offset, refusal->length, NULL)) {
    for (ZunSizeT i = 0; ZunRtcpTmmbGetEntry(&tmmb, i, &entry); ++i) {
      printf("%08x asks %08x for at most %.0f bit/s\n", tmmb.sender, entry.ssrc, ZunRtcpTmmbEntryGetBitrate(&entry));
    }
    return;
  }
  printf("packet %d (type %d, FMT %d) at byte %d: %s; stopped at byte %d\n", (int)refusal->index, (int)refusal->type,
         refusal->count, (int)refusal->offset, ZunRtcpDecodeReasonGetText(refusal->reason), (int)refusal->stoppedAt);
}

int main(void) {
  static unsigned char block[16384]; /* no datagram takes more memory than this */
  ZunArena arena;
  ZunArenaConstruct(&arena, block, sizeof(block), NULL);
  ZunRtcpPacket packet;
  ZunRtcpPacketConstructDefault(&packet, ZunArenaGetAllocator(&arena));

  ZunRtcpDecodeOptions options;
  ZunRtcpDecodeOptionsConstructDefault(&options); /* with limits on what a datagram may cost */
  options.tolerant = 1;                           /* what is refused is skipped, and the rest is read */
  options.onRefusal = on_refusal;
  options.userData = received;
  ZunRtcpDecodeReport report;
  if (!ZunRtcpPacketDecode(&packet, received, sizeof(received) - 1, ZUN_RTCP_DIALECT_REGISTERED, &options, &report)) {
    return 1;
  }
  printf("%d packets read, %d refused\n", (int)report.read, (int)report.refused);

  const ZunRtcpRtpfb* feedback = ZunRtcpSubpacketGetRtpfb(ZunRtcpPacketGetSubpacket(&packet, 1));
  const ZunRtcpRtpfbCcfbStream* stream = ZunRtcpRtpfbGetCcfb(feedback)->streams.begin;
  printf("packet %d of %08x came with ECN %d\n", stream->beginSeq, stream->ssrc, stream->packetMetrics.begin->ecn);

  if (ZunRtcpPacketCheckComposition(&packet) & ZUN_RTCP_COMPOSITION_NO_CNAME) {
    printf("advice: %s\n", ZunRtcpCompositionGetText(ZUN_RTCP_COMPOSITION_NO_CNAME));
  }
  ZunRtcpPacketDestruct(&packet);
  return 0;
}
