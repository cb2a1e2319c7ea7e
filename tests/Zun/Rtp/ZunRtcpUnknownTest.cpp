#include "Zun/Rtp/ZunRtcpUnknown.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "Zun/Rtp/ZunRtcpPacket.h"
#include "tests/support/Bytes.h"
#include "tests/support/LogCapture.h"
#include "tests/support/TestAllocator.h"

namespace {

using test::Datagram;
using test::ForEveryRefusalAfter;
using test::Hex;
using test::LogCapture;
using test::Str;
using test::TestAllocator;
using test::Text;

const char* const kKnownType = "Type field for unknown subpacket is actually a known type";
const char* const kBadLength = "Length of unknown subpacket data is not a multiple of 4";
const char* const kBadSubtype = "Unknown subpacket subtype is not in the range 0 - 31";

// An unknown subpacket that ends itself.
struct Unknown {
  explicit Unknown(ZunAllocator* a = ZunAllocatorGetSystem()) {
    EXPECT_EQ(ZunRtcpUnknownConstructDefault(&sp.unk, a), &sp.unk);
  }
  Unknown(ZunRtcpSubpacketType type, ZunUint8 subtype, const std::string& data,
          ZunAllocator* a = ZunAllocatorGetSystem()) {
    const Text text(data);
    EXPECT_EQ(ZunRtcpUnknownConstructFull(&sp.unk, type, subtype, text.get(), a), &sp.unk);
  }
  ~Unknown() { ZunRtcpUnknownDestruct(&sp.unk); }
  Unknown(const Unknown&) = delete;
  Unknown& operator=(const Unknown&) = delete;

  ZunRtcpUnknown* get() { return &sp.unk; }
  ZunRtcpUnknown* operator->() { return &sp.unk; }

  ZunRtcpSubpacket sp;
};

void ExpectHolds(const ZunRtcpSubpacket& sp, ZunRtcpSubpacketType type, ZunUint8 subtype, const std::string& data,
                 ZunAllocator* a) {
  EXPECT_EQ(sp.unk.type, type);
  EXPECT_EQ(ZunRtcpUnknownGetSubtype(&sp.unk), subtype);
  EXPECT_EQ(Str(ZunRtcpUnknownGetData(&sp.unk)), data);
  EXPECT_EQ(ZunRtcpUnknownGetAllocator(const_cast<ZunRtcpUnknown*>(&sp.unk)), a);
}

std::string Write(const ZunRtcpSubpacket& sp, bool pad) {
  Text b("in front");
  EXPECT_EQ(ZunRtcpUnknownWritePacket(&sp, b, pad ? 1 : 0), 1);
  EXPECT_EQ(b.str().substr(0, 8), "in front");
  EXPECT_EQ(ZunRtcpUnknownGetPacketLength(&sp), b->size - 8);
  return b.str().substr(8);
}

// ---- construction

TEST(ZunRtcpUnknownTest, DefaultIsTypeZeroWithoutData) {
  TestAllocator a;
  const Unknown p(a);
  ExpectHolds(p.sp, 0, 0, "", a);
  EXPECT_EQ(p.sp.unk.type, ZUN_RTCPSUBPACKET_TYPE_Unknown);
  EXPECT_EQ(a.calls(), 0U);
}

TEST(ZunRtcpUnknownTest, FullTakesEveryUnknownType) {
  TestAllocator a;
  LogCapture log;
  for (const ZunRtcpSubpacketType type : {0, 1, 192, 199, 207, 255, 256, -1, INT32_MIN, INT32_MAX}) {
    const Unknown p(type, 31, "12345678", a);
    ExpectHolds(p.sp, type, 31, "12345678", a);
  }
  log.ExpectNone();
}

TEST(ZunRtcpUnknownTest, FullRefusesKnownTypes) {
  LogCapture log;
  TestAllocator a;
  const Text data("1234");
  for (ZunRtcpSubpacketType type = 200; type <= 206; ++type) {
    ZunRtcpUnknown p;
    EXPECT_EQ(ZunRtcpUnknownConstructFull(&p, type, 0, data.get(), a), nullptr);
    log.ExpectOne(ZUN_LOG_ERROR, ZunLogRtcp_, "ZunRtcpUnknownConstructFull", kKnownType);
  }
  EXPECT_EQ(a.calls(), 0U);
}

TEST(ZunRtcpUnknownTest, FullRefusesDataThatIsNoMultipleOfFour) {
  LogCapture log;
  TestAllocator a;
  for (ZunSizeT size = 0; size <= 9; ++size) {
    const Text data(std::string(size, 'd'));
    ZunRtcpUnknown p;
    ZunRtcpUnknown* const result = ZunRtcpUnknownConstructFull(&p, 0, 0, data.get(), a);
    EXPECT_EQ(result, size % 4 == 0 ? &p : nullptr);
    if (size % 4 != 0) log.ExpectOne(ZUN_LOG_ERROR, ZunLogRtcp_, "ZunRtcpUnknownConstructFull", kBadLength);
    if (result != nullptr) ZunRtcpUnknownDestruct(&p);
  }
  log.ExpectNone();
}

TEST(ZunRtcpUnknownTest, FullRefusesSubtypesAbove31) {
  LogCapture log;
  TestAllocator a;
  const Text data("1234");
  for (const int subtype : {32, 33, 255}) {
    ZunRtcpUnknown p;
    EXPECT_EQ(ZunRtcpUnknownConstructFull(&p, 207, static_cast<ZunUint8>(subtype), data.get(), a), nullptr);
    log.ExpectOne(ZUN_LOG_ERROR, ZunLogRtcp_, "ZunRtcpUnknownConstructFull", kBadSubtype);
  }
  EXPECT_EQ(a.calls(), 0U);
}

TEST(ZunRtcpUnknownTest, FullChecksTypeThenLengthThenSubtype) {
  LogCapture log;
  TestAllocator a;
  const Text bad("123456");
  ZunRtcpUnknown p;
  EXPECT_EQ(ZunRtcpUnknownConstructFull(&p, 206, 32, bad.get(), a), nullptr);
  log.ExpectOne(ZUN_LOG_ERROR, ZunLogRtcp_, "ZunRtcpUnknownConstructFull", kKnownType);
  EXPECT_EQ(ZunRtcpUnknownConstructFull(&p, 0, 32, bad.get(), a), nullptr);
  log.ExpectOne(ZUN_LOG_ERROR, ZunLogRtcp_, "ZunRtcpUnknownConstructFull", kBadLength);
  const Text good("1234");
  EXPECT_EQ(ZunRtcpUnknownConstructFull(&p, 0, 32, good.get(), a), nullptr);
  log.ExpectOne(ZUN_LOG_ERROR, ZunLogRtcp_, "ZunRtcpUnknownConstructFull", kBadSubtype);
}

TEST(ZunRtcpUnknownTest, RefusedConstructionOwnsNothingAndLogsNothing) {
  LogCapture log;
  ForEveryRefusalAfter([](TestAllocator& a, const std::function<void()>& begin) {
    Unknown source(207, 1, "12345678", a);
    const Text data("abcd");
    const std::size_t live = a.live_blocks();
    begin();
    ZunRtcpSubpacket full;
    ZunRtcpSubpacket copy;
    ZunRtcpSubpacket elsewhere;
    TestAllocator other;
    ZunRtcpUnknown* const f = ZunRtcpUnknownConstructFull(&full.unk, 207, 1, data.get(), a);
    ZunRtcpUnknown* const c = ZunRtcpUnknownConstructCopy(&copy.unk, source.get());
    other.RefuseFrom(0);
    EXPECT_EQ(ZunRtcpUnknownConstructCopyAllocator(&elsewhere, &source.sp, other), nullptr);
    EXPECT_EQ((f == nullptr) + (c == nullptr), static_cast<int>(a.refused()));
    EXPECT_EQ(a.live_blocks(), live + 2 - a.refused());
    if (f != nullptr) ZunRtcpUnknownDestruct(&full.unk);
    if (c != nullptr) ZunRtcpUnknownDestruct(&copy.unk);
  });
  log.ExpectNone();
}

// ---- copy, assign, destruct

TEST(ZunRtcpUnknownTest, CopyTakesTheAllocatorOfItsSource) {
  TestAllocator a;
  Unknown source(192, 5, "12345678", a);
  ZunRtcpSubpacket copy;
  ASSERT_EQ(ZunRtcpUnknownConstructCopy(&copy.unk, source.get()), &copy.unk);
  ExpectHolds(copy, 192, 5, "12345678", a);
  EXPECT_EQ(a.live_blocks(), 2U);
  ZunRtcpUnknownDestruct(&copy.unk);
}

TEST(ZunRtcpUnknownTest, CopyWithAnAllocatorTakesThatOne) {
  TestAllocator a;
  TestAllocator b;
  const Unknown source(192, 5, "12345678", a);
  for (TestAllocator* const wanted : {&a, &b}) {
    ZunRtcpSubpacket copy;
    ASSERT_EQ(ZunRtcpUnknownConstructCopyAllocator(&copy, &source.sp, *wanted), &copy);
    ExpectHolds(copy, 192, 5, "12345678", *wanted);
    ZunRtcpUnknownDestructWrap(&copy);
  }
  EXPECT_EQ(b.allocations(), 1U);
}

TEST(ZunRtcpUnknownTest, AssignKeepsTheAllocator) {
  TestAllocator a;
  TestAllocator b;
  Unknown p(207, 1, "1234", a);
  const Unknown o(192, 2, "12345678", b);
  EXPECT_EQ(ZunRtcpUnknownAssign(p.get(), &o.sp.unk), p.get());
  ExpectHolds(p.sp, 192, 2, "12345678", a);
  const Unknown empty(0, 3, "", b);
  EXPECT_EQ(ZunRtcpUnknownAssignWrap(&p.sp, &empty.sp), &p.sp);
  ExpectHolds(p.sp, 0, 3, "", a);
  EXPECT_EQ(ZunRtcpUnknownGetAllocatorWrap(&p.sp), a.get());
}

TEST(ZunRtcpUnknownTest, AssignToItselfChangesNothing) {
  TestAllocator a;
  Unknown p(207, 1, "1234", a);
  const std::size_t calls = a.calls();
  EXPECT_EQ(ZunRtcpUnknownAssign(p.get(), p.get()), p.get());
  ExpectHolds(p.sp, 207, 1, "1234", a);
  EXPECT_EQ(a.calls(), calls);
}

TEST(ZunRtcpUnknownTest, AssignRepeatsNoCheck) {
  TestAllocator a;
  LogCapture log;
  Unknown o(207, 1, "1234");
  o->type = 201;
  o->subtype = 99;
  ASSERT_NE(ZunStringAppendChar(&o->data, '5'), nullptr);
  Unknown p(a);
  EXPECT_EQ(ZunRtcpUnknownAssign(p.get(), o.get()), p.get());
  ExpectHolds(p.sp, 201, 99, "12345", a);
  log.ExpectNone();
}

TEST(ZunRtcpUnknownTest, RefusedAssignChangesNothing) {
  TestAllocator a;
  Unknown p(207, 1, "1234", a);
  const Unknown o(192, 2, std::string(100, 'd'));
  a.RefuseFrom(0);
  EXPECT_EQ(ZunRtcpUnknownAssign(p.get(), &o.sp.unk), nullptr);
  EXPECT_EQ(ZunRtcpUnknownAssignWrap(&p.sp, &o.sp), nullptr);
  ExpectHolds(p.sp, 207, 1, "1234", a);
}

TEST(ZunRtcpUnknownTest, DestructLeavesItEmptyAndMayBeRepeated) {
  TestAllocator a;
  Unknown p(207, 1, "1234", a);
  ZunRtcpUnknownDestruct(p.get());
  EXPECT_EQ(a.live_blocks(), 0U);
  EXPECT_EQ(ZunRtcpUnknownGetData(p.get())->size, 0U);
  const std::size_t calls = a.calls();
  ZunRtcpUnknownDestruct(p.get());
  ZunRtcpUnknownDestructWrap(&p.sp);
  EXPECT_EQ(a.calls(), calls);
}

// ---- fields

TEST(ZunRtcpUnknownTest, SubtypeIsAtMost31) {
  LogCapture log;
  Unknown p(207, 1, "1234");
  EXPECT_EQ(ZunRtcpUnknownSetSubtype(p.get(), 31), 1);
  EXPECT_EQ(ZunRtcpUnknownGetSubtype(p.get()), 31);
  EXPECT_EQ(ZunRtcpUnknownSetSubtype(p.get(), 0), 1);
  EXPECT_EQ(ZunRtcpUnknownSetSubtype(p.get(), 7), 1);
  log.ExpectNone();
  for (const int subtype : {32, 255}) {
    EXPECT_EQ(ZunRtcpUnknownSetSubtype(p.get(), static_cast<ZunUint8>(subtype)), 0);
    log.ExpectOne(ZUN_LOG_ERROR, ZunLogRtcp_, "ZunRtcpUnknownSetSubtype", kBadSubtype);
    EXPECT_EQ(ZunRtcpUnknownGetSubtype(p.get()), 7);
  }
}

TEST(ZunRtcpUnknownTest, DataIsAMultipleOfFour) {
  LogCapture log;
  TestAllocator a;
  Unknown p(207, 1, "1234", a);
  const Text longer("12345678");
  const Text empty;
  EXPECT_EQ(ZunRtcpUnknownSetData(p.get(), longer.get()), 1);
  ExpectHolds(p.sp, 207, 1, "12345678", a);
  EXPECT_EQ(ZunRtcpUnknownSetData(p.get(), ZunRtcpUnknownGetData(p.get())), 1);
  ExpectHolds(p.sp, 207, 1, "12345678", a);
  log.ExpectNone();
  for (const ZunSizeT size : {1U, 2U, 3U, 5U, 1023U}) {
    const Text odd(std::string(size, 'o'));
    EXPECT_EQ(ZunRtcpUnknownSetData(p.get(), odd.get()), 0);
    log.ExpectOne(ZUN_LOG_ERROR, ZunLogRtcp_, "ZunRtcpUnknownSetData", kBadLength);
  }
  ExpectHolds(p.sp, 207, 1, "12345678", a);
  EXPECT_EQ(ZunRtcpUnknownSetData(p.get(), empty.get()), 1);
  ExpectHolds(p.sp, 207, 1, "", a);
}

TEST(ZunRtcpUnknownTest, RefusedSetDataChangesAndLogsNothing) {
  LogCapture log;
  TestAllocator a;
  Unknown p(207, 1, "1234", a);
  const Text longer(std::string(100, 'd'));
  a.RefuseFrom(0);
  EXPECT_EQ(ZunRtcpUnknownSetData(p.get(), longer.get()), 0);
  ExpectHolds(p.sp, 207, 1, "1234", a);
  log.ExpectNone();
}

// ---- wire

TEST(ZunRtcpUnknownTest, WritesHeaderAndData) {
  const Unknown p(207, 3, Hex("01 02 03 04 05 06 07 08"));
  EXPECT_EQ(Write(p.sp, false), Hex(R"(
      83                       | version 2, subtype 3
      CF                       | type 207
      00 02                    | two words of data
      01 02 03 04 05 06 07 08  | data)"));
}

TEST(ZunRtcpUnknownTest, PadSetsTheBitAndAddsNothing) {
  const Unknown p(207, 3, Hex("01 02 03 04 05 06 07 08"));
  EXPECT_EQ(Write(p.sp, true), Hex("A3 CF 00 02 01 02 03 04 05 06 07 08"));
}

TEST(ZunRtcpUnknownTest, WithoutDataItIsAHeader) {
  const Unknown p(192, 0, "");
  EXPECT_EQ(Write(p.sp, false), Hex("80 C0 00 00"));
}

// What the room cuts off: the header byte by byte, the data as a whole.
TEST(ZunRtcpUnknownTest, RefusedWriteLeavesABeginning) {
  const Unknown p(207, 3, "12345678");
  for (ZunSizeT room = 0; room <= 12; ++room) {
    TestAllocator a;
    Text b(a.get());
    ASSERT_NE(ZunStringAppendN(b, 64, 'x'), nullptr);
    while (b->capacity - b->size > room) ASSERT_NE(ZunStringAppendChar(b, 'x'), nullptr);
    b->size = b->capacity - room;
    const std::string before = b.str();
    a.RefuseFrom(0);
    EXPECT_EQ(ZunRtcpUnknownWritePacket(&p.sp, b, 0), room == 12 ? 1 : 0);
    const std::string whole = Hex("83 CF 00 02") + "12345678";
    EXPECT_EQ(b.str(), before + whole.substr(0, room == 12 ? 12 : room < 4 ? room : 4));
  }
}

TEST(ZunRtcpUnknownTest, ConstructFromBufferTakesTheWholeBody) {
  TestAllocator a;
  const Datagram b(Hex("FF FF 01 02 03 04 FF"));
  ZunRtcpSubpacket p;
  ASSERT_EQ(ZunRtcpUnknownConstructFromBuffer(&p, b, 2, 6, 255, 17, a), 1);
  ExpectHolds(p, 255, 17, Hex("01 02 03 04"), a);
  ZunRtcpUnknownDestruct(&p.unk);
  ASSERT_EQ(ZunRtcpUnknownConstructFromBuffer(&p, b, 7, 7, 207, 0, a), 1);
  ExpectHolds(p, 207, 0, "", a);
  ZunRtcpUnknownDestruct(&p.unk);
}

TEST(ZunRtcpUnknownTest, ReaderChecksNeitherTypeNorLength) {
  LogCapture log;
  TestAllocator a;
  const Datagram b(Hex("01 02 03 04 05"));
  Unknown p(a);
  EXPECT_EQ(ZunRtcpUnknownAssignFromBuffer(&p.sp, b, 1, 4, 201, 31), 1);
  ExpectHolds(p.sp, 201, 31, Hex("02 03 04"), a);
  log.ExpectNone();
}

TEST(ZunRtcpUnknownTest, AssignFromBufferKeepsAllocatorAndStorage) {
  TestAllocator a;
  TestAllocator of_buffer;
  Unknown p(207, 1, "12345678", a);
  const std::size_t calls = a.calls();
  const Datagram b(Hex("01 02 03 04"), of_buffer);
  EXPECT_EQ(ZunRtcpUnknownAssignFromBuffer(&p.sp, b, 0, 4, 192, 2), 1);
  ExpectHolds(p.sp, 192, 2, Hex("01 02 03 04"), a);
  EXPECT_EQ(a.calls(), calls);
  EXPECT_EQ(of_buffer.calls(), 0U);
}

TEST(ZunRtcpUnknownTest, RefusedReadLeavesWhatWasThere) {
  TestAllocator a;
  const Datagram b(std::string(64, 'b'));
  Unknown p(207, 1, "1234", a);
  a.RefuseFrom(0);
  EXPECT_EQ(ZunRtcpUnknownAssignFromBuffer(&p.sp, b, 0, 64, 192, 2), 0);
  ExpectHolds(p.sp, 207, 1, "1234", a);
  ZunRtcpSubpacket fresh;
  EXPECT_EQ(ZunRtcpUnknownConstructFromBuffer(&fresh, b, 0, 64, 192, 2, a), 0);
  ExpectHolds(fresh, 0, 0, "", a);
  ZunRtcpUnknownDestruct(&fresh.unk);
}

// A body that reaches past the string, or starts behind it, is refused; nothing outside the string is read.
TEST(ZunRtcpUnknownTest, BodyBeyondTheStringIsRefused) {
  TestAllocator a;
  const Datagram b(std::string(8, 'b'));
  Unknown p(207, 1, "1234", a);
  const ZunSizeT bodies[][2] = {{0, 9}, {4, 12}, {8, 12}, {9, 9}, {12, 16}, {0, SIZE_MAX}, {SIZE_MAX, SIZE_MAX}};
  for (const auto& [begin, end] : bodies) {
    EXPECT_EQ(ZunRtcpUnknownAssignFromBuffer(&p.sp, b, begin, end, 192, 2), 0) << begin << " " << end;
    ExpectHolds(p.sp, 207, 1, "1234", a);
  }
}

TEST(ZunRtcpUnknownTest, PaddingOctetsStayInTheBodyAndAreWrittenBack) {
  const std::string datagram = Hex(R"(
      A5 CF 00 02  | padding bit, subtype 5, type 207
      01 02 03 04  | data
      00 00 00 04  | padding octets)");
  const test::Parsed parsed(datagram);
  ASSERT_TRUE(parsed.ok);
  ASSERT_EQ(parsed.count(), 1U);
  EXPECT_EQ(Str(ZunRtcpUnknownGetData(ZunRtcpSubpacketGetUnknown(&parsed[0]))), datagram.substr(4));
  EXPECT_EQ(parsed.Rewritten(), Hex("85") + datagram.substr(1)) << "all but the padding bit";
}

}  // namespace
