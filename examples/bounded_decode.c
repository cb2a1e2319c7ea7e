/* Decodes a stranger's datagram within a fixed block of memory, says what is refused and why, and sends the rest on. */
#include <stdio.h>

#include "Zun/Rtp/Dialect/ZunRtcpCodec.h"

/* A sender report, a receiver report that ends before its block, and a picture loss indication. */
static const unsigned char received[] = {
    0x80, 200, 0, 6, 0x12, 0x34, 0x56, 0x78, 0xE5, 0x8A, 0x30, 0,   0x80, 0,
    0,    0,   0, 1, 0x5F, 0x90, 0,    0,    0,    100,  0,    0,   0x27, 0x10, /* SR */
    0x81, 201, 0, 1, 0x12, 0x34, 0x56, 0x78,                                    /* RR */
    0x81, 206, 0, 2, 0x12, 0x34, 0x56, 0x78, 0x55, 0x66, 0x77, 0x88};           /* PLI */

static void PrintRefusal(ZunVoidPtr userData, const ZunRtcpDecodeRefusal* refusal) {
  (void)userData;
  printf("subpacket %u of type %d, from byte %u on: %s\n", (unsigned)refusal->index, (int)refusal->type,
         (unsigned)refusal->offset, ZunRtcpDecodeReasonGetText(refusal->reason));
}

int main(void) {
  static unsigned char block[16 * 1024];
  ZunArena arena;
  ZunArenaConstruct(&arena, block, sizeof(block), NULL); /* NULL: where the block does not suffice, it refuses */

  ZunRtcpPacket packet;
  ZunRtcpPacketConstructDefault(&packet, ZunArenaGetAllocator(&arena));

  ZunRtcpDecodeOptions options;
  ZunRtcpDecodeOptionsConstructDefault(&options);
  options.tolerant = 1; /* skip what is refused; without it the first refusal ends the decoding */
  options.onRefusal = PrintRefusal;
  ZunRtcpDecodeReport report;
  if (!ZunRtcpPacketDecode(&packet, received, sizeof(received), ZUN_RTCP_DIALECT_REGISTERED, &options, &report)) {
    printf("nothing could be read\n");
  }
  printf("%u read, %u refused\n", (unsigned)report.read, (unsigned)report.refused);

  unsigned char datagram[32]; /* so small that not all fits into one */
  ZunSizeT size = 0;
  for (ZunSizeT next = 0; next < ZunRtcpPacketGetSubpacketCount(&packet);) {
    if (!ZunRtcpPacketEncodePart(&packet, datagram, sizeof(datagram), ZUN_RTCP_DIALECT_REGISTERED, next, NULL, &next,
                                 &size)) {
      break; /* subpacket `next` is too long, or cannot be encoded: ZunRtcpPacketFindUnencodable says why */
    }
    printf("a datagram of %u bytes\n", (unsigned)size); /* send(socket, datagram, size, 0) */
  }

  ZunRtcpPacketDestruct(&packet);
  printf("%s\n", ZunArenaGetUsed(&arena) == 0 ? "the block is free again" : "something is left");
  return 0;
}
