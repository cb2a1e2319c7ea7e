#include "Zun/Rtp/ZunRtcpUnknown.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "tests/support/Kinds.h"
#include "tests/support/LogCapture.h"

namespace {

using namespace test;

const char* const kKnownType = "Type field for unknown subpacket is actually a known type";
const char* const kBadLength = "Length of unknown subpacket data is not a multiple of 4";
const char* const kBadSubtype = "Unknown subpacket subtype is not in the range 0 - 31";

class Unknown : public TEST_OBJECT(ZunRtcpUnknown) {
 public:
  using Object::Object;
  Unknown(ZunRtcpSubpacketType type, ZunUint8 subtype, const std::string& data,
          ZunAllocator* a = ZunAllocatorGetSystem())
      : Object(a) {
    EXPECT_EQ(ZunRtcpUnknownConstructFull(get(), type, subtype, Text(data), a), get());
  }
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

TEST(ZunRtcpUnknown, DefaultIsTypeZeroWithoutData) {
  TestAllocator a;
  const Unknown p(a.get());
  ExpectHolds(*p.sp(), 0, 0, "", a);
  EXPECT_EQ(p->type, ZUN_RTCPSUBPACKET_TYPE_Unknown);
  EXPECT_EQ(a.calls(), 0U);
}

TEST(ZunRtcpUnknown, FullTakesEveryUnknownType) {
  TestAllocator a;
  LogCapture log;
  for (const ZunRtcpSubpacketType type : {0, 1, 192, 199, 255, 256, -1, INT32_MIN, INT32_MAX}) {
    const Unknown p(type, 31, "12345678", a);
    ExpectHolds(*p.sp(), type, 31, "12345678", a);
  }
  log.ExpectNone();
}

TEST(ZunRtcpUnknown, FullRefusesKnownTypes) {
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

TEST(ZunRtcpUnknown, FullRefusesDataThatIsNoMultipleOfFour) {
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

TEST(ZunRtcpUnknown, FullRefusesSubtypesAbove31) {
  LogCapture log;
  TestAllocator a;
  const Text data("1234");
  for (const int subtype : {32, 33, 255}) {
    ZunRtcpUnknown p;
    EXPECT_EQ(ZunRtcpUnknownConstructFull(&p, 100, static_cast<ZunUint8>(subtype), data.get(), a), nullptr);
    log.ExpectOne(ZUN_LOG_ERROR, ZunLogRtcp_, "ZunRtcpUnknownConstructFull", kBadSubtype);
  }
  EXPECT_EQ(a.calls(), 0U);
}

TEST(ZunRtcpUnknown, FullChecksTypeThenLengthThenSubtype) {
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

TEST(ZunRtcpUnknown, RefusedConstructionOwnsNothingAndLogsNothing) {
  LogCapture log;
  ForEveryRefusalAfter([](TestAllocator& a, const std::function<void()>& begin) {
    Unknown source(100, 1, "12345678", a);
    const Text data("abcd");
    const std::size_t live = a.live_blocks();
    begin();
    ZunRtcpSubpacket full;
    ZunRtcpSubpacket copy;
    ZunRtcpSubpacket elsewhere;
    TestAllocator other;
    ZunRtcpUnknown* const f = ZunRtcpUnknownConstructFull(&full.unk, 100, 1, data.get(), a);
    ZunRtcpUnknown* const c = ZunRtcpUnknownConstructCopy(&copy.unk, source.get());
    other.RefuseFrom(0);
    EXPECT_EQ(ZunRtcpUnknownConstructCopyAllocator(&elsewhere, source.sp(), other), nullptr);
    EXPECT_EQ((f == nullptr) + (c == nullptr), static_cast<int>(a.refused()));
    EXPECT_EQ(a.live_blocks(), live + 2 - a.refused());
    if (f != nullptr) ZunRtcpUnknownDestruct(&full.unk);
    if (c != nullptr) ZunRtcpUnknownDestruct(&copy.unk);
  });
  log.ExpectNone();
}

// ---- copy, assign, destruct

TEST(ZunRtcpUnknown, AssignKeepsTheAllocator) {
  TestAllocator a;
  TestAllocator b;
  Unknown p(100, 1, "1234", a);
  const Unknown o(192, 2, "12345678", b);
  EXPECT_EQ(ZunRtcpUnknownAssign(p.get(), o.get()), p.get());
  ExpectHolds(*p.sp(), 192, 2, "12345678", a);
  const Unknown empty(0, 3, "", b);
  EXPECT_EQ(ZunRtcpUnknownAssignWrap(p.sp(), empty.sp()), p.sp());
  ExpectHolds(*p.sp(), 0, 3, "", a);
  EXPECT_EQ(ZunRtcpUnknownGetAllocatorWrap(p.sp()), a.get());
}

TEST(ZunRtcpUnknown, AssignToItselfChangesNothing) {
  TestAllocator a;
  Unknown p(100, 1, "1234", a);
  const std::size_t calls = a.calls();
  EXPECT_EQ(ZunRtcpUnknownAssign(p.get(), p.get()), p.get());
  ExpectHolds(*p.sp(), 100, 1, "1234", a);
  EXPECT_EQ(a.calls(), calls);
}

TEST(ZunRtcpUnknown, AssignRepeatsNoCheck) {
  TestAllocator a;
  LogCapture log;
  Unknown o(100, 1, "1234");
  o->type = 201;
  o->subtype = 99;
  ASSERT_NE(ZunStringAppendChar(&o->data, '5'), nullptr);
  Unknown p(a.get());
  EXPECT_EQ(ZunRtcpUnknownAssign(p.get(), o.get()), p.get());
  ExpectHolds(*p.sp(), 201, 99, "12345", a);
  log.ExpectNone();
}

TEST(ZunRtcpUnknown, RefusedAssignChangesNothing) {
  TestAllocator a;
  Unknown p(100, 1, "1234", a);
  const Unknown o(192, 2, std::string(100, 'd'));
  a.RefuseFrom(0);
  EXPECT_EQ(ZunRtcpUnknownAssign(p.get(), o.get()), nullptr);
  EXPECT_EQ(ZunRtcpUnknownAssignWrap(p.sp(), o.sp()), nullptr);
  ExpectHolds(*p.sp(), 100, 1, "1234", a);
}

TEST(ZunRtcpUnknown, DestructLeavesItEmptyAndMayBeRepeated) {
  TestAllocator a;
  Unknown p(100, 1, "1234", a);
  ZunRtcpUnknownDestruct(p.get());
  EXPECT_EQ(a.live_blocks(), 0U);
  EXPECT_EQ(ZunRtcpUnknownGetData(p.get())->size, 0U);
  const std::size_t calls = a.calls();
  ZunRtcpUnknownDestruct(p.get());
  ZunRtcpUnknownDestructWrap(p.sp());
  EXPECT_EQ(a.calls(), calls);
}

// ---- fields

TEST(ZunRtcpUnknown, SubtypeIsAtMost31) {
  LogCapture log;
  Unknown p(100, 1, "1234");
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

TEST(ZunRtcpUnknown, DataIsAMultipleOfFour) {
  LogCapture log;
  TestAllocator a;
  Unknown p(100, 1, "1234", a);
  const Text longer("12345678");
  const Text empty;
  EXPECT_EQ(ZunRtcpUnknownSetData(p.get(), longer.get()), 1);
  ExpectHolds(*p.sp(), 100, 1, "12345678", a);
  EXPECT_EQ(ZunRtcpUnknownSetData(p.get(), ZunRtcpUnknownGetData(p.get())), 1);
  ExpectHolds(*p.sp(), 100, 1, "12345678", a);
  log.ExpectNone();
  for (const ZunSizeT size : {1U, 2U, 3U, 5U, 1023U}) {
    const Text odd(std::string(size, 'o'));
    EXPECT_EQ(ZunRtcpUnknownSetData(p.get(), odd.get()), 0);
    log.ExpectOne(ZUN_LOG_ERROR, ZunLogRtcp_, "ZunRtcpUnknownSetData", kBadLength);
  }
  ExpectHolds(*p.sp(), 100, 1, "12345678", a);
  EXPECT_EQ(ZunRtcpUnknownSetData(p.get(), empty.get()), 1);
  ExpectHolds(*p.sp(), 100, 1, "", a);
}

TEST(ZunRtcpUnknown, RefusedSetDataChangesAndLogsNothing) {
  LogCapture log;
  TestAllocator a;
  Unknown p(100, 1, "1234", a);
  const Text longer(std::string(100, 'd'));
  a.RefuseFrom(0);
  EXPECT_EQ(ZunRtcpUnknownSetData(p.get(), longer.get()), 0);
  ExpectHolds(*p.sp(), 100, 1, "1234", a);
  log.ExpectNone();
}

// ---- wire

TEST(ZunRtcpUnknown, WritesHeaderAndData) {
  const Unknown p(100, 3, Hex("01 02 03 04 05 06 07 08"));
  EXPECT_EQ(Write(*p.sp(), false), Hex(R"(
      83                       | version 2, subtype 3
      64                       | type 100
      00 02                    | two words of data
      01 02 03 04 05 06 07 08  | data)"));
}

TEST(ZunRtcpUnknown, PadSetsTheBitAndAddsNothing) {
  const Unknown p(100, 3, Hex("01 02 03 04 05 06 07 08"));
  EXPECT_EQ(Write(*p.sp(), true), Hex("A3 64 00 02 01 02 03 04 05 06 07 08"));
}

TEST(ZunRtcpUnknown, WithoutDataItIsAHeader) {
  const Unknown p(192, 0, "");
  EXPECT_EQ(Write(*p.sp(), false), Hex("80 C0 00 00"));
}

TEST(ZunRtcpUnknown, ConstructFromBufferTakesTheWholeBody) {
  TestAllocator a;
  const Datagram b(Hex("FF FF 01 02 03 04 FF"));
  ZunRtcpSubpacket p;
  ASSERT_EQ(ZunRtcpUnknownConstructFromBuffer(&p, b, 2, 6, 255, 17, a), 1);
  ExpectHolds(p, 255, 17, Hex("01 02 03 04"), a);
  ZunRtcpUnknownDestruct(&p.unk);
  ASSERT_EQ(ZunRtcpUnknownConstructFromBuffer(&p, b, 7, 7, 100, 0, a), 1);
  ExpectHolds(p, 100, 0, "", a);
  ZunRtcpUnknownDestruct(&p.unk);
}

TEST(ZunRtcpUnknown, ReaderChecksNeitherTypeNorLength) {
  LogCapture log;
  TestAllocator a;
  const Datagram b(Hex("01 02 03 04 05"));
  Unknown p(a.get());
  EXPECT_EQ(ZunRtcpUnknownAssignFromBuffer(p.sp(), b, 1, 4, 201, 31), 1);
  ExpectHolds(*p.sp(), 201, 31, Hex("02 03 04"), a);
  log.ExpectNone();
}

TEST(ZunRtcpUnknown, AssignFromBufferKeepsAllocatorAndStorage) {
  TestAllocator a;
  TestAllocator of_buffer;
  Unknown p(100, 1, "12345678", a);
  const std::size_t calls = a.calls();
  const Datagram b(Hex("01 02 03 04"), of_buffer);
  EXPECT_EQ(ZunRtcpUnknownAssignFromBuffer(p.sp(), b, 0, 4, 192, 2), 1);
  ExpectHolds(*p.sp(), 192, 2, Hex("01 02 03 04"), a);
  EXPECT_EQ(a.calls(), calls);
  EXPECT_EQ(of_buffer.calls(), 0U);
}

TEST(ZunRtcpUnknown, RefusedReadLeavesWhatWasThere) {
  TestAllocator a;
  const Datagram b(std::string(64, 'b'));
  Unknown p(100, 1, "1234", a);
  a.RefuseFrom(0);
  EXPECT_EQ(ZunRtcpUnknownAssignFromBuffer(p.sp(), b, 0, 64, 192, 2), 0);
  ExpectHolds(*p.sp(), 100, 1, "1234", a);
  ZunRtcpSubpacket fresh;
  EXPECT_EQ(ZunRtcpUnknownConstructFromBuffer(&fresh, b, 0, 64, 192, 2, a), 0);
  ExpectHolds(fresh, 0, 0, "", a);
  ZunRtcpUnknownDestruct(&fresh.unk);
}

// A body that reaches past the string, or starts after it, is refused; nothing outside the string is read.
TEST(ZunRtcpUnknown, BodyBeyondTheStringIsRefused) {
  TestAllocator a;
  const Datagram b(std::string(8, 'b'));
  Unknown p(100, 1, "1234", a);
  const ZunSizeT bodies[][2] = {{0, 9}, {4, 12}, {8, 12}, {9, 9}, {12, 16}, {0, SIZE_MAX}, {SIZE_MAX, SIZE_MAX}};
  for (const auto& [begin, end] : bodies) {
    EXPECT_EQ(ZunRtcpUnknownAssignFromBuffer(p.sp(), b, begin, end, 192, 2), 0) << begin << " " << end;
    ExpectHolds(*p.sp(), 100, 1, "1234", a);
  }
}

TEST(ZunRtcpUnknown, PaddingOctetsStayInTheBodyAndAreWrittenBack) {
  const std::string datagram = Hex(R"(
      A5 64 00 02  | padding bit, subtype 5, type 100
      01 02 03 04  | data
      00 00 00 04  | padding octets)");
  const Parsed parsed(datagram);
  ASSERT_TRUE(parsed.ok);
  ASSERT_EQ(parsed.count(), 1U);
  EXPECT_EQ(Str(ZunRtcpUnknownGetData(ZunRtcpSubpacketGetUnknown(&parsed[0]))), datagram.substr(4));
  EXPECT_EQ(parsed.bytes(), Hex("85") + datagram.substr(1)) << "all but the padding bit";
}

}  // namespace
