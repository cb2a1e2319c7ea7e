#include "Zun/Rtp/ApplicationFeedback/ZunRtcpPsfbAfbShow.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <set>
#include <utility>
#include <vector>

#include "tests/support/FeedbackWire.h"
#include "tests/support/LogCapture.h"
#include "tests/support/RowChecks.h"

namespace {

using namespace test;

const Row kRow = TEST_ROW(ZunRtcpPsfbAfbShow);

using Parameter = ZunRtcpPsfbAfbShowParameter;
using Values = std::vector<std::pair<ZunRtcpPsfbAfbShowParameterType, ZunUint64>>;

const std::string kEmpty = Afb(Hex("4E720003 2A000000"));
const std::string kOne = Afb(Hex("4E720003 2A 08 01 00"));
const std::string kWire = Hex(R"(
    8F CE 0007      | version 2, FMT 15, type 206, 8 words
    01020304        | sender
    11121314        | media source
    4E72 0003       | "Nr", SHOW
    2A              | sequence number 42
    08 00           | enable 0
    19 0780         | width 1920
    21 0438         | height 1080
    3A 16E360       | bandwidth 1500000
    000000
)");

Values ValuesOf(const ZunRtcpPsfbAfbShow& p) {
  Values values;
  for (const Parameter* x = p.parameters.begin; x != p.parameters.end; ++x) values.emplace_back(x->type, x->value);
  return values;
}

ZunVector_ZunRtcpPsfbAfbShowParameter ListOf(std::vector<Parameter>& v, ZunAllocator* a) {
  return {a, v.data(), v.data() + v.size(), v.data() + v.size()};
}

// Refuses the allocations whose numbers it is given.
struct RefusingSome {
  std::set<std::size_t> refused;
  std::size_t count = 0;
  ZunAllocator allocator = {Allocate, Deallocate, SIZE_MAX, this};

  static ZunVoidPtr Allocate(ZunAllocator* a, ZunSizeT size) {
    auto* const self = static_cast<RefusingSome*>(a->userData);
    return self->refused.count(self->count++) != 0 ? nullptr : std::malloc(size);
  }
  static void Deallocate(ZunAllocator*, ZunVoidPtr block, ZunSizeT) { std::free(block); }
};

class ShowTest : public ::testing::Test {
 protected:
  ShowTest() {
    ZunRtcpPsfbAfbShowConstructDefault(&show_, allocator_);
    show_.sender = kSender;
    show_.source = kSource;
    show_.seqno = 42;
  }
  ~ShowTest() override { ZunRtcpPsfbAfbShowDestruct(&show_); }

  void Add(ZunRtcpPsfbAfbShowParameterType type, ZunUint64 value) {
    const Parameter parameter = {type, value};
    ASSERT_TRUE(ZunVector_ZunRtcpPsfbAfbShowParameterPushBack(&show_.parameters, &parameter));
  }
  std::string bytes() const { return Bytes(kRow, *Sub(&show_)); }

  TestAllocator allocator_;
  ZunRtcpPsfbAfbShow show_;
};

TEST_F(ShowTest, ConstructDefaultIsEmpty) {
  ZunRtcpPsfbAfbShow p;
  ASSERT_EQ(ZunRtcpPsfbAfbShowConstructDefault(&p, allocator_), &p);
  EXPECT_EQ(p.type, 206);
  EXPECT_EQ(p.fmt, 15);
  EXPECT_EQ(p.sender, 0U);
  EXPECT_EQ(p.source, 0U);
  EXPECT_EQ(p.afbType, 3);
  EXPECT_EQ(ZunRtcpPsfbAfbShowGetSequenceNumber(&p), 0);
  EXPECT_TRUE(ZunVector_ZunRtcpPsfbAfbShowParameterEmpty(ZunRtcpPsfbAfbShowGetParameters(&p)));
  EXPECT_EQ(ZunRtcpPsfbAfbShowGetAllocator(&p), allocator_.get());
  EXPECT_EQ(allocator_.calls(), 0U);
}

TEST_F(ShowTest, WritesGoldenBytes) {
  std::vector<Parameter> parameters = {{1, 0}, {3, 1920}, {4, 1080}, {7, 1500000}};
  const ZunVector_ZunRtcpPsfbAfbShowParameter list = ListOf(parameters, allocator_);
  ZunRtcpPsfbAfbShow p;
  ASSERT_EQ(ZunRtcpPsfbAfbShowConstructFull(&p, kSender, kSource, 42, &list), &p);
  EXPECT_EQ(p.type, 206);
  EXPECT_EQ(p.fmt, 15);
  EXPECT_EQ(p.afbType, 3);
  EXPECT_EQ(ZunRtcpPsfbAfbShowGetAllocator(&p), allocator_.get());
  EXPECT_EQ(ToHex(Bytes(kRow, *Sub(&p))), ToHex(kWire));
  ZunRtcpPsfbAfbShowDestruct(&p);
}

TEST_F(ShowTest, ReadsGoldenBytes) {
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

TEST_F(ShowTest, EachParameterTypeAcceptsItsValues) {
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

TEST_F(ShowTest, ParametersAreCopiedAsValues) {
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

TEST_F(ShowTest, NoParametersAreTwentyBytes) {
  EXPECT_EQ(ToHex(bytes()), ToHex(kEmpty));
  EXPECT_EQ(kEmpty.size(), 20U);
  ExpectComesBackUnchanged(kEmpty);
}

TEST_F(ShowTest, ValuesTakeAsFewOctetsAsTheyNeed) {
  for (int bits = 0; bits <= 64; ++bits) {
    const ZunUint64 most = bits == 64 ? UINT64_MAX : (ZunUint64{1} << bits) - 1;
    const std::size_t width = bits == 0 ? 1 : (static_cast<std::size_t>(bits) + 7) / 8;
    ZunVector_ZunRtcpPsfbAfbShowParameterClear(&show_.parameters);
    Add(ZUN_RTCPPSFBAFBSHOWPARAMETER_TYPE_PixelRate, most);
    const std::string wire = bytes();
    EXPECT_EQ(static_cast<unsigned char>(wire[17]), 6 << 3 | (width - 1)) << bits;
    EXPECT_EQ(wire.size(), (17 + 1 + width + 3) / 4 * 4) << bits;
    const Slot slot(kRow, wire);
    ASSERT_TRUE(slot.ok);
    EXPECT_EQ(ValuesOf(slot.sp.psfb.afb.show), (Values{{6, most}}));
  }
}

TEST_F(ShowTest, AValueOfEightOctetsComesFirstOctetFirst) {
  Add(ZUN_RTCPPSFBAFBSHOWPARAMETER_TYPE_MinBandwidth, 0x0102030405060708);
  EXPECT_EQ(ToHex(bytes().substr(16)),
            "2A67"
            "0102030405060708"
            "0000");
}

TEST_F(ShowTest, OnlyTheLowFiveBitsOfATypeAreWritten) {
  Add(35, 1);
  Add(-1, 1);
  EXPECT_EQ(ToHex(bytes().substr(16)), "2A1801F801000000");
}

TEST_F(ShowTest, ReceivedParametersOfAnyTypeAndValueAreKept) {
  const std::string wire = Afb(Hex("4E720003 2A A0 07 01 00 05 08 FF F8 00 00 00"));
  const Slot slot(kRow, wire);
  ASSERT_TRUE(slot.ok);
  EXPECT_EQ(ValuesOf(slot.sp.psfb.afb.show), (Values{{20, 7}, {0, 5}, {1, 255}, {31, 0}}));
}

TEST_F(ShowTest, ValuesMayArriveWiderThanTheyNeed) {
  const Slot slot(kRow, Afb(Hex("4E720003 2A 0A 00 00 01 00 00 00")));
  ASSERT_TRUE(slot.ok);
  EXPECT_EQ(ValuesOf(slot.sp.psfb.afb.show), (Values{{1, 1}}));
}

TEST_F(ShowTest, AZeroBeginsThePaddingWhichMustBeZero) {
  EXPECT_TRUE(Slot(kRow, kOne + Hex("00000000 00000000")).ok);
  const Slot slot(kRow, Afb(Hex("4E720003 2A 08 01 00 00 00 08 01")));
  EXPECT_FALSE(slot.ok);
  EXPECT_EQ(ValuesOf(slot.sp.psfb.afb.show), (Values{{1, 1}})) << "those in front of the zero are kept";
  EXPECT_FALSE(Slot(kRow, Afb(Hex("4E720003 2A 00 00 01"))).ok);
}

TEST_F(ShowTest, TheBodyMayEndBehindTheSequenceNumber) {
  const Slot slot(kRow, kEmpty.substr(0, 17));
  EXPECT_TRUE(slot.ok);
  EXPECT_EQ(slot.sp.psfb.afb.show.seqno, 42);
  EXPECT_FALSE(Slot(kRow, kEmpty.substr(0, 16)).ok);
}

TEST_F(ShowTest, TheReaderDoesNotCompareTheNumberAndLeavesTheTypesAlone) {
  std::string wire = kOne;
  wire[15] = 9;
  Slot slot(kRow, kWire);
  slot.sp.psfb.afb.show.afbType = 4711;
  EXPECT_TRUE(slot.Again(wire));
  EXPECT_EQ(slot.sp.psfb.afb.show.afbType, 4711);
  EXPECT_EQ(ValuesOf(slot.sp.psfb.afb.show), (Values{{1, 1}}));
  wire[13] = 'R';
  EXPECT_FALSE(slot.Again(wire));
  EXPECT_EQ(ValuesOf(slot.sp.psfb.afb.show), (Values{{1, 1}})) << "the parameters were not reached";
}

TEST_F(ShowTest, CutAnywhereKeepsWhatWasRead) {
  const Values all = {{1, 0}, {3, 1920}, {4, 1080}, {7, 1500000}};
  ForEveryCut(kRow, kWire, [&](const Slot& slot, ZunSizeT size, bool end_is_beyond) {
    const ZunRtcpPsfbAfbShow& p = slot.sp.psfb.afb.show;
    const std::set<ZunSizeT> ends = {13, 15, 18, 21, 25, 26, 27};
    EXPECT_EQ(slot.ok, ends.count(size) != 0 && !end_is_beyond);
    EXPECT_EQ(p.sender, size >= 4 ? kSender : 0U);
    EXPECT_EQ(p.source, size >= 8 ? kSource : 0U);
    EXPECT_EQ(p.seqno, size >= 13 ? 42 : 0);
    const int count = (size >= 15) + (size >= 18) + (size >= 21) + (size >= 25);
    EXPECT_EQ(ValuesOf(p), Values(all.begin(), all.begin() + count));
  });
}

TEST_F(ShowTest, PaddingAlignsTheWholeString) {
  Add(ZUN_RTCPPSFBAFBSHOWPARAMETER_TYPE_Enable, 1);
  for (std::size_t before = 0; before < 8; ++before) {
    Text out(std::string(before, 'x'));
    ASSERT_TRUE(kRow.write_packet(Sub(&show_), out, 0));
    const std::size_t unpadded = before + 19;
    const std::size_t size = (unpadded + 3) / 4 * 4;
    EXPECT_EQ(ToHex(out.str()),
              ToHex(std::string(before, 'x') + kOne.substr(0, 19) + std::string(size - unpadded, '\0')));
  }
}

TEST_F(ShowTest, WritesAsFarAsThereIsRoom) {
  Add(1, 0);
  Add(3, 1920);
  Add(4, 1080);
  Add(7, 1500000);
  for (ZunSizeT capacity = 0; capacity < kWire.size(); ++capacity) {
    TestAllocator refusing;
    Text out(std::string(capacity, 'x'), refusing);
    ZunStringClear(out);
    const ZunSizeT filled = (out->capacity - capacity) / 4 * 4;  // keeps the alignment
    const ZunSizeT room = out->capacity - filled;
    ASSERT_NE(ZunStringAppendN(out, filled, 'y'), nullptr);
    refusing.RefuseFrom(0);
    EXPECT_EQ(kRow.write_packet(Sub(&show_), out, 0) != 0, room >= kWire.size());
    EXPECT_EQ(ToHex(out.str()), ToHex(std::string(filled, 'y') + kWire.substr(0, room)));
  }
}

TEST_F(ShowTest, ARefusedDescriptorDoesNotStopTheWrite) {
  Add(3, 0xABCD);
  RefusingSome some;
  ZunString out;
  ZunStringConstructDefault(&out, &some.allocator);
  ASSERT_NE(ZunStringAppendN(&out, 32, 'x'), nullptr);
  ASSERT_EQ(out.capacity, 32U);
  ZunStringClear(&out);
  ASSERT_NE(ZunStringAppendN(&out, 32 - 17, 'x'), nullptr);  // room up to the sequence number
  some.refused = {some.count, some.count + 1};               // the message as a whole, then the descriptor
  EXPECT_TRUE(kRow.write_packet(Sub(&show_), &out, 0));
  EXPECT_EQ(ToHex(Str(&out).substr(31)), "2AABCD0000") << "the value stands there alone, and is aligned";
  ZunStringDestruct(&out);
}

TEST_F(ShowTest, ParametersThatFitAreReadBeforeARefusal) {
  TestAllocator two;
  two.RefuseAbove(2 * sizeof(Parameter));
  const Slot slot(kRow, kWire, two.get());
  EXPECT_FALSE(slot.ok);
  EXPECT_EQ(ValuesOf(slot.sp.psfb.afb.show), (Values{{1, 0}, {3, 1920}}));
}

TEST_F(ShowTest, ConstructFullDoesNotCheckTheParameters) {
  std::vector<Parameter> parameters = {{99, 0}, {1, 7}};
  const ZunVector_ZunRtcpPsfbAfbShowParameter list = ListOf(parameters, allocator_);
  ZunRtcpPsfbAfbShow p;
  ASSERT_EQ(ZunRtcpPsfbAfbShowConstructFull(&p, 1, 2, 3, &list), &p);
  EXPECT_EQ(ValuesOf(p), (Values{{99, 0}, {1, 7}}));
  ZunRtcpPsfbAfbShowDestruct(&p);
  allocator_.RefuseFrom(0);
  EXPECT_EQ(ZunRtcpPsfbAfbShowConstructFull(&p, 1, 2, 3, &list), nullptr);
}

TEST_F(ShowTest, CopiesAndAssignmentsTakeEveryField) {
  const Slot source(kRow, kWire);
  ZunRtcpPsfbAfbShow copy;
  ASSERT_EQ(ZunRtcpPsfbAfbShowConstructCopy(&copy, &source.sp.psfb.afb.show), &copy);
  EXPECT_EQ(ToHex(Bytes(kRow, *Sub(&copy))), ToHex(kWire));
  show_.seqno = 0;
  ASSERT_EQ(ZunRtcpPsfbAfbShowAssign(&show_, &copy), &show_);
  EXPECT_EQ(ToHex(bytes()), ToHex(kWire));
  EXPECT_EQ(ZunRtcpPsfbAfbShowGetAllocator(&show_), allocator_.get());
  ZunRtcpPsfbAfbShowDestruct(&copy);
}

TEST_F(ShowTest, RefusedAssignLeavesNoParameters) {
  const Slot source(kRow, kWire);
  Add(1, 1);
  show_.seqno = 7;
  allocator_.RefuseFrom(0);
  EXPECT_EQ(ZunRtcpPsfbAfbShowAssign(&show_, &source.sp.psfb.afb.show), nullptr);
  EXPECT_EQ(show_.parameters.begin, nullptr);
  EXPECT_EQ(show_.seqno, 7);
}

TEST_F(ShowTest, AFreshReadAllocatesOnceAndOnlyForParameters) {
  const Slot slot(kRow, kWire, allocator_.get());
  EXPECT_EQ(allocator_.calls(), 1U);
  TestAllocator none;
  none.RefuseFrom(0);
  EXPECT_TRUE(Slot(kRow, kEmpty, none.get()).ok);
}

TEST_F(ShowTest, KeepsTheRulesOfEveryRow) {
  ExpectComesBackUnchanged(kWire);
  ExpectAllocatorRules(kRow, kWire, kOne);
  ExpectRefusalsLoseNothing(kRow, kWire, kOne);
  ExpectReadsInPlaceAsFresh(kRow, {kWire, kOne});
  ExpectReadsInPlaceAsFresh(kRow, {kWire, kEmpty});
  ExpectWritesInPlace(kRow, kWire);
}

}  // namespace
