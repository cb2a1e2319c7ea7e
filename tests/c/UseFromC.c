/* The library as a C program sees it: parse, look, change, write, with nothing but the one public header. */
#include <stdio.h>
#include <string.h>

#include "Zun/Rtp/ZunRtcpPacket.h"

static int failures = 0;

static void expect(int holds, const char* what) {
  if (holds) return;
  fprintf(stderr, "UseFromC: %s\n", what);
  ++failures;
}

int main(void) {
  /* Two packets of types that the library does not model: 207 with four bytes of data, 192 with none. */
  static const char datagram[] = "\x85\xCF\x00\x01" "\x01\x02\x03\x04" "\x80\xC0\x00\x00";
  const ZunSizeT size = sizeof(datagram) - 1;
  ZunAllocator* const heap = ZunAllocatorGetSystem();
  ZunString received, written;
  ZunRtcpPacket packet;
  const ZunRtcpUnknown* unknown;

  ZunStringConstructDefault(&received, heap);
  ZunStringConstructDefault(&written, heap);
  expect(ZunStringAppendCStrLen(&received, datagram, size) != NULL, "the datagram fits into a string");
  expect(ZunRtcpPacketConstructFromNetworkPacket(&packet, &received, heap) != NULL, "the datagram parses");
  expect(ZunRtcpPacketGetSubpacketCount(&packet) == 2, "it holds two subpackets");

  unknown = ZunRtcpSubpacketGetUnknown(ZunRtcpPacketGetSubpacket(&packet, 0));
  expect(ZunRtcpUnknownGetSubtype(unknown) == 5, "the subtype is read");
  expect(ZunStringSize(ZunRtcpUnknownGetData(unknown)) == 4, "the data is read");
  expect(ZunRtcpPacketGetNetworkPacketLength(&packet) == size, "the length is known beforehand");
  expect(ZunRtcpPacketGetNetworkPacket(&packet, &written) != 0, "the packet is written");
  expect(ZunStringSize(&written) == size && memcmp(ZunStringCStr(&written), datagram, size) == 0,
         "the same bytes come back");

  ZunRtcpPacketDestruct(&packet);
  ZunStringDestruct(&written);
  ZunStringDestruct(&received);
  return failures == 0 ? 0 : 1;
}
