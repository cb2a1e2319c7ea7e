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

static int logged = 0;

static void count_log(ZunVoidPtr data, ZunLogLevel level, ZunLogCategory category, const char* file, ZunInt line,
                      const char* function, const char* message) {
  (void)file, (void)line;
  expect(data == &logged && level == ZUN_LOG_ERROR && category == ZunLogRtcp_, "the log names level and category");
  expect(strcmp(ZunLogCategoryGetName(category), "rtcp") == 0, "a category has a name");
  expect(strcmp(function, "use_services") == 0 && strcmp(message, "2 of 3") == 0, "the message is formatted");
  ++logged;
}

/* The inline functions of the services, each of which must be a symbol of the library. */
static void use_services(ZunAllocator* heap) {
  ZunString s, part;
  ZunUint16 u16 = 0;
  ZunInt16 i16 = 0;
  ZunUint32 u32 = 0;
  const ZunVoidPtr block = ZunAllocatorAllocate(heap, 8);

  expect(block != NULL, "the heap gives a block");
  ZunMemSet(block, 'x', 8);
  ZunAllocatorDeallocate(heap, block, 8);

  ZunStringConstructDefault(&s, heap);
  expect(ZunStringEmpty(&s) && *ZunStringCStr(&s) == '\0', "a string starts empty");
  expect(ZunUint16ToBuffer(0x0102, &s) && ZunUint32ToBuffer(0x83040506, &s) && ZunStringAppendChar(&s, 7) != NULL,
         "numbers are appended");
  expect(ZunStringLength(&s) == 7 && ZunStringAtConst(&s, 2) == (char)0x83, "bytes can be read");
  expect(ZunUint16FromBuffer(&s, 0, 7, &u16) && u16 == 0x0102, "16 bits are read");
  expect(ZunInt16FromBuffer(&s, 1, 7, &i16) && i16 == -125, "16 signed bits are read");
  expect(ZunUint32FromBuffer(&s, 2, 7, &u32) && u32 == 0x83040506, "32 bits are read");
  expect(!ZunUint32FromBuffer(&s, 4, 7, &u32), "nothing is read beyond the end");
  expect(ZunUint16FromOctets(ZunStringCStr(&s)) == 0x0102 && ZunInt16FromOctets(ZunStringCStr(&s)) == 0x0102 &&
             ZunUint32FromOctets(ZunStringCStr(&s)) == 0x01028304,
         "octets are values");
  expect(ZunStringConstructSubstring(&part, &s, 1, 3, ZunStringGetAllocator(&s)) != NULL && part.size == 3,
         "a part is copied");
  ZunStringDestruct(&part);
  ZunStringClear(&s);
  expect(ZunStringAssignCStr(&s, "text") != NULL && ZunStrLen(ZunStringCStr(&s)) == 4, "text is assigned");
  ZunStringDestruct(&s);

  ZunLogSetHandler(count_log, &logged);
  ZunLogDoFormatted_(ZUN_LOG_ERROR, ZunLogRtcp_, "UseFromC.c", 1, "use_services", "%d of %d", 2, 3);
  ZunLogSetMaxLevel(ZunLogRtcpFeedback_, ZUN_LOG_FATAL);
  ZunLogDo_(ZUN_LOG_ERROR, ZunLogRtcpFeedback_, "UseFromC.c", 1, "use_services", "not wanted");
  ZunLogSetHandler(NULL, NULL);
  ZunLogSetMaxLevel(ZunLogRtcpFeedback_, ZUN_LOG_DEBUG);
  expect(logged == 1, "one message is wanted");

  expect(ZunTimeGetCurrentMonotonicTime() > 0 && ZunTimeMachMonotonicTimeClockInterval_ == 1.0, "the clock runs");
  expect(ZunTimeGetNtp(0) == (ZunUint64)2208988800U << 32, "1970 has an NTP time");
}

/* A vector with its accessors and all four kinds of iterators. */
static void use_vector(ZunAllocator* heap) {
  ZunVector_ZunUint16 v;
  ZunVector_ZunUint16Iterator i;
  ZunVector_ZunUint16ConstIterator c;
  ZunVector_ZunUint16ReverseIterator r;
  ZunVector_ZunUint16ConstReverseIterator cr, end;
  ZunUint16 n;
  int sum = 0;

  ZunVector_ZunUint16ConstructDefault(&v, heap);
  expect(ZunVector_ZunUint16GetAllocator(&v) == heap && ZunVector_ZunUint16Empty(&v), "a vector starts empty");
  for (n = 1; n <= 3; ++n) expect(ZunVector_ZunUint16PushBack(&v, &n) != 0, "an element is appended");
  expect(ZunVector_ZunUint16Size(&v) == 3 && ZunVector_ZunUint16Capacity(&v) == 4, "a vector doubles");
  expect(ZunVector_ZunUint16MaxSize() == 0x7FFFFFFF, "the greatest size is told");
  expect(*ZunVector_ZunUint16Front(&v) == 1 && *ZunVector_ZunUint16BackConst(&v) == 3 &&
             *ZunVector_ZunUint16At(&v, 1) == 2,
         "elements are reached");
  i = ZunVector_ZunUint16Begin(&v);
  expect(*ZunVector_ZunUint16IteratorContentOf(ZunVector_ZunUint16IteratorIncrement(&i)) == 2, "an iterator walks");
  c = ZunVector_ZunUint16EndConst(&v);
  expect(*ZunVector_ZunUint16ConstIteratorAt(&c, -3) == 1, "an iterator reaches around");
  r = ZunVector_ZunUint16RBegin(&v);
  expect(*ZunVector_ZunUint16ReverseIteratorContentOf(&r) == 3, "a reverse iterator begins at the last");
  end = ZunVector_ZunUint16REndConst(&v);
  for (cr = ZunVector_ZunUint16RBeginConst(&v); ZunVector_ZunUint16ConstReverseIteratorLess(&cr, &end);
       ZunVector_ZunUint16ConstReverseIteratorIncrement(&cr)) {
    sum = 10 * sum + *ZunVector_ZunUint16ConstReverseIteratorContentOfConst(&cr);
  }
  expect(sum == 321, "a reverse iterator walks back");
  expect(ZunVector_ZunUint16IteratorIsExceptional(ZunVector_ZunUint16IteratorConstructExceptional(&i)) != 0,
         "an exceptional iterator tells so");
  ZunVector_ZunUint16Destruct(&v);
}

int main(void) {
  /* Two packets of types that the library does not model: 207 with four bytes of data, 192 with none. */
  static const char datagram[] =
      "\x85\xCF\x00\x01"
      "\x01\x02\x03\x04"
      "\x80\xC0\x00\x00";
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

  expect(ZunRtcpPacketGetAllocator(&packet) == heap && ZunRtcpPacketGetSubpackets(&packet) == &packet.subpackets,
         "the packet tells its parts");
  expect(ZunRtcpSubpacketTypeIsUnknown(ZunRtcpSubpacketGetType(ZunRtcpPacketGetSubpacket(&packet, 1))) != 0,
         "a type is known or not");
  ZunRtcpPacketReset(&packet);
  expect(ZunRtcpPacketGetSubpacketCount(&packet) == 0, "a packet can be emptied");
  use_services(heap);
  use_vector(heap);

  ZunRtcpPacketDestruct(&packet);
  ZunStringDestruct(&written);
  ZunStringDestruct(&received);
  return failures == 0 ? 0 : 1;
}
