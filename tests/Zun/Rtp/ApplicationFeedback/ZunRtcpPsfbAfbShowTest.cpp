#include "Zun/Rtp/ApplicationFeedback/ZunRtcpPsfbAfbShow.h"

#include <gtest/gtest.h>

#include <set>
#include <utility>
#include <vector>

#include "tests/support/LogCapture.h"
#include "tests/support/Samples.h"

namespace {

using namespace test;

using Show = TEST_OBJECT(ZunRtcpPsfbAfbShow);

const Row& kRow = kRowOf<ZunRtcpPsfbAfbShow>;

const std::string kEmpty = Golden("ShowWithoutParameters");
const std::string kOne = Afb(Hex("4E720003 2A 08 01 00"));
const std::string kWire = Golden("ShowFourParameters");

using Parameter = ZunRtcpPsfbAfbShowParameter;
using Values = std::vector<std::pair<ZunRtcpPsfbAfbShowParameterType, ZunUint64>>;

Values ValuesOf(const ZunRtcpPsfbAfbShow& p) {
  Values values;
  for (const Parameter* x = p.parameters.begin; x != p.parameters.end; ++x) values.emplace_back(x->type, x->value);
  return values;
}

ZunVector_ZunRtcpPsfbAfbShowParameter ListOf(std::vector<Parameter>& v, ZunAllocator* a) {
  return {a, v.data(), v.data() + v.size(), v.data() + v.size()};
}

void Add(ZunRtcpPsfbAfbShow* p, ZunRtcpPsfbAfbShowParameterType type, ZunUint64 value) {
  const Parameter parameter = {type, value};
  ASSERT_TRUE(ZunVector_ZunRtcpPsfbAfbShowParameterPushBack(&p->parameters, &parameter));
}

TEST(ZunRtcpPsfbAfbShow, ConstructDefaultIsEmpty) {
  TestAllocator allocator;
  ZunRtcpPsfbAfbShow p;
  ASSERT_EQ(ZunRtcpPsfbAfbShowConstructDefault(&p, allocator), &p);
  EXPECT_EQ(p.type, 206);
  EXPECT_EQ(p.fmt, 15);
  EXPECT_EQ(p.sender, 0U);
  EXPECT_EQ(p.source, 0U);
  EXPECT_EQ(p.afbType, 3);
  EXPECT_EQ(ZunRtcpPsfbAfbShowGetSequenceNumber(&p), 0);
  EXPECT_TRUE(ZunVector_ZunRtcpPsfbAfbShowParameterEmpty(ZunRtcpPsfbAfbShowGetParameters(&p)));
  EXPECT_EQ(ZunRtcpPsfbAfbShowGetAllocator(&p), allocator.get());
  EXPECT_EQ(allocator.calls(), 0U);
}

TEST(ZunRtcpPsfbAfbShow, WritesGoldenBytes) {
  TestAllocator allocator;
  std::vector<Parameter> parameters = {{1, 0}, {3, 1920}, {4, 1080}, {7, 1500000}};
  const ZunVector_ZunRtcpPsfbAfbShowParameter list = ListOf(parameters, allocator);
  ZunRtcpPsfbAfbShow p;
  ASSERT_EQ(ZunRtcpPsfbAfbShowConstructFull(&p, kSender, kSource, 42, &list), &p);
  EXPECT_EQ(p.type, 206);
  EXPECT_EQ(p.fmt, 15);
  EXPECT_EQ(p.afbType, 3);
  EXPECT_EQ(ZunRtcpPsfbAfbShowGetAllocator(&p), allocator.get());
  EXPECT_EQ(ToHex(Bytes(kRow, *AsSubpacket(&p))), ToHex(kWire));
  ZunRtcpPsfbAfbShowDestruct(&p);
}

TEST(ZunRtcpPsfbAfbShow, ReadsGoldenBytes) {
  const Parsed parsed(kWire);
  ASSERT_TRUE(parsed.ok);
  const ZunRtcpPsfbAfb* const afb = ZunRtcpPsfbGetAfb(&parsed[0].psfb);
  ASSERT_EQ(ZunRtcpPsfbAfbGetType(afb), ZUN_RTCPPSFBAFB_TYPE_SHOW);
  const ZunRtcpPsfbAfbShow& p = *ZunRtcpPsfbAfbGetShow(afb);
  EXPECT_EQ(p.type, 206);
  EXPECT_EQ(p.fmt, 15);
  EXPECT_EQ(p.sender, kSender);
  EXPECT_EQ(p.source, kSource);
  EXPECT_EQ(ZunRtcpPsfbAfbShowGetSequenceNumber(&p), 42);
  const ZunVector_ZunRtcpPsfbAfbShowParameter* const list = ZunRtcpPsfbAfbShowGetParameters(&p);
  ASSERT_EQ(ZunVector_ZunRtcpPsfbAfbShowParameterSize(list), 4U);
  EXPECT_EQ(ZunRtcpPsfbAfbShowParameterGetType(&list->begin[3]), ZUN_RTCPPSFBAFBSHOWPARAMETER_TYPE_Bandwidth);
  EXPECT_EQ(ZunRtcpPsfbAfbShowParameterGetValue(&list->begin[3]), 1500000U);
  EXPECT_EQ(ValuesOf(p), (Values{{1, 0}, {3, 1920}, {4, 1080}, {7, 1500000}}));
}

TEST(ZunRtcpPsfbAfbShow, EachParameterTypeAcceptsItsValues) {
  struct Rule {
    ZunRtcpPsfbAfbShowParameterType type;
    std::vector<ZunUint64> accepted;
    std::vector<ZunUint64> refused;
  };
  const ZunUint64 most = UINT64_MAX;
  const Rule rules[] = {
      {ZUN_RTCPPSFBAFBSHOWPARAMETER_TYPE_Enable, {0, 1}, {2, most}},
      {ZUN_RTCPPSFBAFBSHOWPARAMETER_TYPE_Preference, {0, 15}, {16, most}},
      {ZUN_RTCPPSFBAFBSHOWPARAMETER_TYPE_Width, {1, most}, {0}},
      {ZUN_RTCPPSFBAFBSHOWPARAMETER_TYPE_Height, {1, most}, {0}},
      {ZUN_RTCPPSFBAFBSHOWPARAMETER_TYPE_FrameRate, {1, most}, {0}},
      {ZUN_RTCPPSFBAFBSHOWPARAMETER_TYPE_PixelRate, {1, most}, {0}},
      {ZUN_RTCPPSFBAFBSHOWPARAMETER_TYPE_Bandwidth, {1, most}, {0}},
      {ZUN_RTCPPSFBAFBSHOWPARAMETER_TYPE_MinWidth, {0, most}, {}},
      {ZUN_RTCPPSFBAFBSHOWPARAMETER_TYPE_MinHeight, {0, most}, {}},
      {ZUN_RTCPPSFBAFBSHOWPARAMETER_TYPE_MinFrameRate, {0, most}, {}},
      {ZUN_RTCPPSFBAFBSHOWPARAMETER_TYPE_MinPixelRate, {0, most}, {}},
      {ZUN_RTCPPSFBAFBSHOWPARAMETER_TYPE_MinBandwidth, {0, most}, {}},
      {ZUN_RTCPPSFBAFBSHOWPARAMETER_TYPE_PacketSize, {12, most}, {0, 11}},
      {0, {}, {0, 1, 12}},
      {14, {}, {0, 1, 12}},
      {31, {}, {1}},
      {-1, {}, {1}},
      {259, {}, {1}},
  };
  LogCapture log;
  for (const Rule& rule : rules) {
    SCOPED_TRACE(rule.type);
    for (const ZunUint64 value : rule.accepted) {
      Parameter p;
      EXPECT_EQ(ZunRtcpPsfbAfbShowParameterConstruct(&p, rule.type, value), &p) << value;
      EXPECT_TRUE(p.type == rule.type && p.value == value);
    }
    for (const ZunUint64 value : rule.refused) {
      Parameter p = {77, 88};
      EXPECT_EQ(ZunRtcpPsfbAfbShowParameterConstruct(&p, rule.type, value), nullptr) << value;
      EXPECT_TRUE(p.type == 77 && p.value == 88);
    }
  }
  log.ExpectNone();
}

TEST(ZunRtcpPsfbAfbShow, ParametersAreCopiedAsValues) {
  const Parameter one = {1, 2};
  const Parameter other = {3, UINT64_MAX};
  Parameter p;
  EXPECT_EQ(ZunRtcpPsfbAfbShowParameterConstructCopy(&p, &one), &p);
  EXPECT_TRUE(p.type == 1 && p.value == 2);
  EXPECT_EQ(ZunRtcpPsfbAfbShowParameterAssign(&p, &other), &p);
  EXPECT_TRUE(p.type == 3 && p.value == UINT64_MAX);
  ZunRtcpPsfbAfbShowParameterDestruct(&p);
  EXPECT_TRUE(p.type == 3 && p.value == UINT64_MAX);
}

TEST(ZunRtcpPsfbAfbShow, NoParametersAreTwentyBytes) {
  Show show;
  SetSsrcs(show);
  show->seqno = 42;
  EXPECT_EQ(ToHex(show.bytes()), ToHex(kEmpty));
  EXPECT_EQ(kEmpty.size(), 20U);
}

TEST(ZunRtcpPsfbAfbShow, ValuesTakeAsFewOctetsAsTheyNeed) {
  Show show;
  SetSsrcs(show);
  show->seqno = 42;
  for (int bits = 0; bits <= 64; ++bits) {
    const ZunUint64 most = bits == 64 ? UINT64_MAX : (ZunUint64{1} << bits) - 1;
    const std::size_t width = bits == 0 ? 1 : (static_cast<std::size_t>(bits) + 7) / 8;
    ZunVector_ZunRtcpPsfbAfbShowParameterClear(&show->parameters);
    Add(show, ZUN_RTCPPSFBAFBSHOWPARAMETER_TYPE_PixelRate, most);
    const std::string wire = show.bytes();
    EXPECT_EQ(static_cast<unsigned char>(wire[17]), 6 << 3 | (width - 1)) << bits;
    EXPECT_EQ(wire.size(), (17 + 1 + width + 3) / 4 * 4) << bits;
    const Received received(kRow, wire);
    ASSERT_TRUE(received.ok);
    EXPECT_EQ(ValuesOf(received.sp()->psfb.afb.show), (Values{{6, most}}));
  }
}

TEST(ZunRtcpPsfbAfbShow, AValueOfEightOctetsComesFirstOctetFirst) {
  Show show;
  SetSsrcs(show);
  show->seqno = 42;
  Add(show, ZUN_RTCPPSFBAFBSHOWPARAMETER_TYPE_MinBandwidth, 0x0102030405060708);
  EXPECT_EQ(ToHex(show.bytes().substr(16)),
            "2A67"
            "0102030405060708"
            "0000");
}

TEST(ZunRtcpPsfbAfbShow, OnlyTheLowFiveBitsOfATypeAreWritten) {
  Show show;
  show->seqno = 42;
  Add(show, 35, 1);
  Add(show, -1, 1);
  EXPECT_EQ(ToHex(show.bytes().substr(16)), "2A1801F801000000");
}

TEST(ZunRtcpPsfbAfbShow, ReceivedParametersOfAnyTypeAndValueAreKept) {
  const std::string wire = Afb(Hex("4E720003 2A A0 07 01 00 05 08 FF F8 00 00 00"));
  const Received received(kRow, wire);
  ASSERT_TRUE(received.ok);
  EXPECT_EQ(ValuesOf(received.sp()->psfb.afb.show), (Values{{20, 7}, {0, 5}, {1, 255}, {31, 0}}));
}

TEST(ZunRtcpPsfbAfbShow, ValuesMayArriveWiderThanTheyNeed) {
  const Received received(kRow, Afb(Hex("4E720003 2A 0A 00 00 01 00 00 00")));
  ASSERT_TRUE(received.ok);
  EXPECT_EQ(ValuesOf(received.sp()->psfb.afb.show), (Values{{1, 1}}));
}

TEST(ZunRtcpPsfbAfbShow, AZeroBeginsThePaddingWhichMustBeZero) {
  EXPECT_TRUE(Received(kRow, kOne + Hex("00000000 00000000")).ok);
  const Received received(kRow, Afb(Hex("4E720003 2A 08 01 00 00 00 08 01")));
  EXPECT_FALSE(received.ok);
  EXPECT_EQ(ValuesOf(received.sp()->psfb.afb.show), (Values{{1, 1}})) << "those in front of the zero are kept";
  EXPECT_FALSE(Received(kRow, Afb(Hex("4E720003 2A 00 00 01"))).ok);
}

TEST(ZunRtcpPsfbAfbShow, TheBodyMayEndAfterTheSequenceNumber) {
  const Received received(kRow, kEmpty.substr(0, 17));
  EXPECT_TRUE(received.ok);
  EXPECT_EQ(received.sp()->psfb.afb.show.seqno, 42);
  EXPECT_FALSE(Received(kRow, kEmpty.substr(0, 16)).ok);
}

TEST(ZunRtcpPsfbAfbShow, TheReaderDoesNotCompareTheNumberAndLeavesTheTypesAlone) {
  std::string wire = kOne;
  wire[15] = 9;
  Received received(kRow, kWire);
  received.sp()->psfb.afb.show.afbType = 4711;
  EXPECT_TRUE(received.Read(wire));
  EXPECT_EQ(received.sp()->psfb.afb.show.afbType, 4711);
  EXPECT_EQ(ValuesOf(received.sp()->psfb.afb.show), (Values{{1, 1}}));
  wire[13] = 'R';
  EXPECT_FALSE(received.Read(wire));
  EXPECT_EQ(ValuesOf(received.sp()->psfb.afb.show), (Values{{1, 1}})) << "the parameters were not reached";
}

TEST(ZunRtcpPsfbAfbShow, CutAnywhereKeepsWhatWasRead) {
  const Values all = {{1, 0}, {3, 1920}, {4, 1080}, {7, 1500000}};
  ForEveryCut(kRow, kWire, [&](const Received& received, ZunSizeT size, bool end_is_beyond) {
    const ZunRtcpPsfbAfbShow& p = received.sp()->psfb.afb.show;
    const std::set<ZunSizeT> ends = {13, 15, 18, 21, 25, 26, 27};
    EXPECT_EQ(received.ok, ends.count(size) != 0 && !end_is_beyond);
    EXPECT_EQ(p.sender, size >= 4 ? kSender : 0U);
    EXPECT_EQ(p.source, size >= 8 ? kSource : 0U);
    EXPECT_EQ(p.seqno, size >= 13 ? 42 : 0);
    const int count = (size >= 15) + (size >= 18) + (size >= 21) + (size >= 25);
    EXPECT_EQ(ValuesOf(p), Values(all.begin(), all.begin() + count));
  });
}

TEST(ZunRtcpPsfbAfbShow, PaddingAlignsTheWholeString) {
  Show show;
  SetSsrcs(show);
  show->seqno = 42;
  Add(show, ZUN_RTCPPSFBAFBSHOWPARAMETER_TYPE_Enable, 1);
  for (std::size_t before = 0; before < 8; ++before) {
    Text out(std::string(before, 'x'));
    ASSERT_TRUE(kRow.write_packet(show.sp(), out, 0));
    const std::size_t unpadded = before + 19;
    const std::size_t size = (unpadded + 3) / 4 * 4;
    EXPECT_EQ(ToHex(out.str()),
              ToHex(std::string(before, 'x') + kOne.substr(0, 19) + std::string(size - unpadded, '\0')));
  }
}

TEST(ZunRtcpPsfbAfbShow, ARefusedDescriptorDoesNotStopTheWrite) {
  Show show;
  show->seqno = 42;
  Add(show, 3, 0xABCD);
  TestAllocator some;
  Text out(some.get());
  ASSERT_NE(ZunStringAppendN(out, 32, 'x'), nullptr);
  ASSERT_EQ(out->capacity, 32U);
  ZunStringClear(out);
  ASSERT_NE(ZunStringAppendN(out, 32 - 17, 'x'), nullptr);  // room up to the sequence number
  some.RefuseThese({0, 1});                                 // the message as a whole, then the descriptor
  EXPECT_TRUE(kRow.write_packet(show.sp(), out, 0));
  EXPECT_EQ(ToHex(out.str().substr(31)), "2AABCD0000") << "the value stands there alone, and is aligned";
}

TEST(ZunRtcpPsfbAfbShow, ParametersThatFitAreReadBeforeARefusal) {
  TestAllocator two;
  two.RefuseAbove(2 * sizeof(Parameter));
  const Received received(kRow, kWire, two.get());
  EXPECT_FALSE(received.ok);
  EXPECT_EQ(ValuesOf(received.sp()->psfb.afb.show), (Values{{1, 0}, {3, 1920}}));
}

TEST(ZunRtcpPsfbAfbShow, ConstructFullDoesNotCheckTheParameters) {
  TestAllocator allocator;
  std::vector<Parameter> parameters = {{99, 0}, {1, 7}};
  const ZunVector_ZunRtcpPsfbAfbShowParameter list = ListOf(parameters, allocator);
  ZunRtcpPsfbAfbShow p;
  ASSERT_EQ(ZunRtcpPsfbAfbShowConstructFull(&p, 1, 2, 3, &list), &p);
  EXPECT_EQ(ValuesOf(p), (Values{{99, 0}, {1, 7}}));
  ZunRtcpPsfbAfbShowDestruct(&p);
  allocator.RefuseFrom(0);
  EXPECT_EQ(ZunRtcpPsfbAfbShowConstructFull(&p, 1, 2, 3, &list), nullptr);
}

TEST(ZunRtcpPsfbAfbShow, RefusedAssignLeavesNoParameters) {
  TestAllocator allocator;
  Show show(allocator);
  const Received source(kRow, kWire);
  Add(show, 1, 1);
  show->seqno = 7;
  allocator.RefuseFrom(0);
  EXPECT_EQ(ZunRtcpPsfbAfbShowAssign(show, &source.sp()->psfb.afb.show), nullptr);
  EXPECT_EQ(show->parameters.begin, nullptr);
  EXPECT_EQ(show->seqno, 7);
}

TEST(ZunRtcpPsfbAfbShow, AFreshReadAllocatesOnceAndOnlyForParameters) {
  TestAllocator allocator;
  const Received received(kRow, kWire, allocator.get());
  EXPECT_EQ(allocator.calls(), 1U);
  TestAllocator none;
  none.RefuseFrom(0);
  EXPECT_TRUE(Received(kRow, kEmpty, none.get()).ok);
}

}  // namespace
