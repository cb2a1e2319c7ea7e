/*
 * Reads packets, a name and octets in hex on each line, with a library that has not all rooms. A packet whose room is
 * left out must be an unknown one of the innermost level that there is, hold its octets, and be written as it came:
 * through every door, copied, assigned over others and read over others. Of all other packets it prints what is
 * written, which must be the same as with a whole library.
 */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "Zun/Rtp/Dialect/ZunRtcpCodec.h"

enum { MOST_OCTETS = 4096, HEADER = 4, FEEDBACK_HEADER = 12, FMT_AFB = 15 };
enum { DOOR_STRING, DOOR_HOUSE, DOOR_REGISTERED, DOORS };
static const char* const door_names[DOORS] = {"string", "house", "registered"};

typedef struct Datagram {
  char name[64];
  unsigned char octets[MOST_OCTETS];
  ZunSizeT size;
} Datagram;

static void Fail(const Datagram* d, int door, const char* what) {
  fprintf(stderr, "%s, %s: %s\n", d->name, door_names[door], what);
  exit(1);
}

/* Where the data of the unknown kind begins that a packet falls to; 0 when its room is there. */
static ZunSizeT DataBegins(const Datagram* d) {
  const int type = d->octets[1];
  const int fmt = d->octets[0] & 31;
  if (type >= 200 && type <= 204) return ZUN_RTCP_HAS_REPORTS ? 0 : HEADER;
  if (type == 205) return ZUN_RTCP_HAS_TRANSPORT_FEEDBACK ? 0 : HEADER;
  if (type != 206) return 0;
  if (!ZUN_RTCP_HAS_PAYLOAD_FEEDBACK) return HEADER;
  return fmt == FMT_AFB && !ZUN_RTCP_HAS_APPLICATION_FEEDBACK ? FEEDBACK_HEADER : 0;
}

static int HoldsData(const ZunString* data, const Datagram* d, ZunSizeT begin) {
  return data->size == d->size - begin && (data->size == 0 || memcmp(data->buf, d->octets + begin, data->size) == 0);
}

static ZunUint32 Word(const unsigned char* octets) {
  return (ZunUint32)octets[0] << 24 | (ZunUint32)octets[1] << 16 | (ZunUint32)octets[2] << 8 | octets[3];
}

/* Whether it is the unknown kind that holds all that came. */
static int IsKept(const ZunRtcpSubpacket* sp, const Datagram* d) {
  const ZunSizeT begin = DataBegins(d);
  if (ZunRtcpSubpacketGetType(sp) != d->octets[1]) return 0;
#if ZUN_RTCP_HAS_PAYLOAD_FEEDBACK
  if (begin == FEEDBACK_HEADER) {
    const ZunRtcpPsfbUnknown* const psfb = &sp->psfb.unk;
    return ZunRtcpPsfbTypeIsUnknown(psfb->fmt) && psfb->fmt == FMT_AFB && psfb->sender == Word(d->octets + 4) &&
           psfb->source == Word(d->octets + 8) && HoldsData(&psfb->data, d, begin);
  }
#else
  (void)Word;
#endif
  return ZunRtcpSubpacketTypeIsUnknown(d->octets[1]) && sp->unk.subtype == (d->octets[0] & 31) &&
         HoldsData(&sp->unk.data, d, begin);
}

static ZunBool ReadThrough(int door, ZunRtcpPacket* packet, const Datagram* d) {
  ZunString view;
  if (door != DOOR_STRING) {
    const ZunRtcpDialect dialect = door == DOOR_HOUSE ? ZUN_RTCP_DIALECT_HOUSE : ZUN_RTCP_DIALECT_REGISTERED;
    return ZunRtcpPacketDecode(packet, d->octets, d->size, dialect, NULL, NULL);
  }
  ZunStringConstructDefault(&view, NULL);
  view.buf = (char*)d->octets;
  view.size = view.capacity = d->size;
  return ZunRtcpPacketParseNetworkPacket(packet, &view);
}

/* The size of what is written; 0 when it is refused. */
static ZunSizeT WriteThrough(int door, const ZunRtcpPacket* packet, unsigned char* octets) {
  ZunString written;
  ZunSizeT size = 0;
  if (door != DOOR_STRING) {
    const ZunRtcpDialect dialect = door == DOOR_HOUSE ? ZUN_RTCP_DIALECT_HOUSE : ZUN_RTCP_DIALECT_REGISTERED;
    if (!ZunRtcpPacketEncode(packet, octets, MOST_OCTETS, dialect, &size)) return 0;
    return size == ZunRtcpPacketGetEncodedLength(packet, dialect) ? size : 0;
  }
  ZunStringConstructDefault(&written, ZunAllocatorGetSystem());
  if (ZunRtcpPacketGetNetworkPacket(packet, &written)) {
    size = written.size;
    memcpy(octets, written.buf, size);
    if (size != ZunRtcpPacketGetNetworkPacketLength(packet)) size = 0;
  }
  ZunStringDestruct(&written);
  return size;
}

static void ExpectKept(const ZunRtcpPacket* packet, const Datagram* d, int door, const char* after) {
  unsigned char octets[MOST_OCTETS];
  if (ZunRtcpPacketGetSubpacketCount(packet) != 1) Fail(d, door, after);
  if (!IsKept(ZunRtcpPacketGetSubpacket(packet, 0), d)) Fail(d, door, after);
  if (WriteThrough(door, packet, octets) != d->size || memcmp(octets, d->octets, d->size) != 0) Fail(d, door, after);
}

/* A packet that is left out: `used` holds the one before it, of whatever kind. */
static void Keep(ZunRtcpPacket* used, const Datagram* d, int door) {
  ZunRtcpPacket packet;
  ZunRtcpPacket copy;
  ZunRtcpPacketConstructDefault(&packet, ZunAllocatorGetSystem());
  if (!ReadThrough(door, &packet, d)) Fail(d, door, "is refused");
  ExpectKept(&packet, d, door, "is not kept");
  if (ZunRtcpPacketConstructCopy(&copy, &packet) == NULL) Fail(d, door, "cannot be copied");
  ExpectKept(&copy, d, door, "is not copied");
  ZunRtcpPacketDestruct(&copy);
  if (ZunRtcpPacketConstructCopy(&copy, used) == NULL) Fail(d, door, "the one before it cannot be copied");
  if (ZunRtcpPacketAssign(&copy, &packet) == NULL) Fail(d, door, "cannot be assigned");
  ExpectKept(&copy, d, door, "is not assigned over another");
  if (!ReadThrough(door, used, d) || !ReadThrough(door, used, d)) Fail(d, door, "is refused over another");
  ExpectKept(used, d, door, "is not kept over another");
  if (ZunRtcpPacketAssign(&copy, used) == NULL) Fail(d, door, "cannot be assigned to its like");
  ExpectKept(&copy, d, door, "is not assigned to its like");
  ZunRtcpPacketDestruct(&copy);
  ZunRtcpPacketDestruct(&packet);
}

static void Show(ZunRtcpPacket* used, const Datagram* d, int door) {
  unsigned char octets[MOST_OCTETS];
  ZunSizeT size = 0;
  ZunSizeT i;
  if (ReadThrough(door, used, d)) size = WriteThrough(door, used, octets);
  printf("%s %s ", d->name, door_names[door]);
  for (i = 0; i < size; ++i) printf("%02X", octets[i]);
  printf("%s\n", size == 0 ? "refused" : "");
}

/* What no reader made: an unknown packet of any type that is left out can be built and sent. */
static void ExpectBuilt(const Datagram* d) {
  ZunRtcpUnknown unknown;
  ZunString data;
  ZunStringConstructDefault(&data, ZunAllocatorGetSystem());
  if (ZunStringAppendCStrLen(&data, (const char*)d->octets + HEADER, d->size - HEADER) == NULL ||
      ZunRtcpUnknownConstructFull(&unknown, d->octets[1], d->octets[0] & 31, &data, ZunAllocatorGetSystem()) == NULL)
    Fail(d, DOOR_STRING, "cannot be built as an unknown packet");
  ZunRtcpUnknownDestruct(&unknown);
  ZunStringDestruct(&data);
}

static int ReadLine(Datagram* d) {
  char hex[2 * MOST_OCTETS + 1];
  ZunSizeT i;
  if (scanf("%63s %8192s", d->name, hex) != 2) return 0;
  d->size = strlen(hex) / 2;
  for (i = 0; i < d->size; ++i) {
    unsigned octet = 0;
    if (sscanf(hex + 2 * i, "%2x", &octet) != 1) return 0;
    d->octets[i] = (unsigned char)octet;
  }
  return d->size >= HEADER;
}

int main(void) {
  static Datagram d;
  ZunRtcpPacket used[DOORS];
  int kept = 0;
  int door;
  for (door = 0; door < DOORS; ++door) ZunRtcpPacketConstructDefault(&used[door], ZunAllocatorGetSystem());
  while (ReadLine(&d)) {
    const ZunSizeT begin = DataBegins(&d);
    for (door = 0; door < DOORS; ++door) (begin != 0 ? Keep : Show)(&used[door], &d, door);
    if (begin == HEADER) ExpectBuilt(&d);
    kept += begin != 0;
  }
  for (door = 0; door < DOORS; ++door) ZunRtcpPacketDestruct(&used[door]);
  fprintf(stderr, "%d packets of rooms that are left out are kept\n", kept);
  return 0;
}
