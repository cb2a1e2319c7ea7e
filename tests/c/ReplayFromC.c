/*
 * Reads files, each a byte of flags and a datagram, and does with them what a C program can do: decodes and parses
 * them, whole and cut anywhere, in place, copies, writes and encodes them. All of it is C, the library included, so
 * that MemorySanitizer and valgrind see every byte that was never written; the sum over all output makes it be looked
 * at.
 */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "Zun/Rtp/Dialect/ZunRtcpCodec.h"

static unsigned long sum; /* of all octets that came out */

static void look_at(const void* octets, size_t size) {
  const unsigned char* o = (const unsigned char*)octets;
  for (size_t i = 0; i < size; ++i) sum = sum * 31 + (o[i] == 0x55 ? 7 : o[i]);
}

static void write_back(const ZunRtcpPacket* p) {
  ZunString out;
  ZunStringConstructDefault(&out, ZunAllocatorGetSystem());
  (void)ZunRtcpPacketGetNetworkPacket(p, &out);
  look_at(ZunStringCStr(&out), ZunStringSize(&out));
  ZunStringDestruct(&out);
  for (ZunRtcpDialect dialect = 0; dialect < 2; ++dialect) {
    ZunSizeT size = ZunRtcpPacketGetEncodedLength(p, dialect);
    unsigned char* const octets = (unsigned char*)malloc(size + 1);
    if (octets != NULL && ZunRtcpPacketEncode(p, octets, size, dialect, &size)) look_at(octets, size);
    free(octets);
  }
}

static void use(ZunRtcpPacket* decoded, ZunRtcpPacket* parsed, const char* octets, size_t size) {
  char* const block = (char*)malloc(size + 1); /* exactly its size, but for one that must not be asked for */
  if (block == NULL) exit(3);
  memcpy(block, octets, size);
  ZunString view = {NULL, block, size, size};
  for (ZunRtcpDialect dialect = 0; dialect < 2; ++dialect) {
    ZunRtcpDecodeReport report;
    sum += (unsigned long)ZunRtcpPacketDecode(decoded, block, size, dialect, NULL, &report);
    look_at(&report.first.reason, sizeof report.first.reason);
    write_back(decoded);
  }
  (void)ZunRtcpPacketParseNetworkPacket(parsed, &view);
  write_back(parsed);
  ZunRtcpPacket copy;
  if (ZunRtcpPacketConstructCopy(&copy, decoded) != NULL) {
    write_back(&copy);
    ZunRtcpPacketDestruct(&copy);
  }
  free(block);
}

int main(int argc, char** argv) {
  static char octets[65536];
  ZunRtcpPacket decoded, parsed;
  ZunRtcpPacketConstructDefault(&decoded, ZunAllocatorGetSystem());
  ZunRtcpPacketConstructDefault(&parsed, ZunAllocatorGetSystem());
  for (int i = 1; i < argc; ++i) {
    FILE* const file = fopen(argv[i], "rb");
    if (file == NULL) {
      fprintf(stderr, "cannot read %s\n", argv[i]);
      return 2;
    }
    const size_t size = fread(octets, 1, sizeof octets, file);
    fclose(file);
    if (size < 2) continue;
    for (size_t cut = size < 60 ? 1 : size; cut <= size; ++cut) use(&decoded, &parsed, octets + 1, cut - 1);
  }
  ZunRtcpPacketDestruct(&decoded);
  ZunRtcpPacketDestruct(&parsed);
  printf("%d files, sum of what came out %lu\n", argc - 1, sum);
  return argc > 1 ? 0 : 1;
}
