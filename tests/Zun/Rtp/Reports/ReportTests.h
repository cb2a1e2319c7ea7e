// The tests that sender and receiver reports share: everything but their own fields.
#ifndef TESTS_ZUN_RTP_REPORTS_REPORTTESTS_H
#define TESTS_ZUN_RTP_REPORTS_REPORTTESTS_H

#include <gtest/gtest.h>

#include "Zun/Rtp/Cpp/Reports.h"
#include "tests/support/Samples.h"

namespace test {

// Two report blocks, and what they hold.
inline const std::string kBlockA = Hex("A1A2A3A4 40 FFFFFF 00011234 0000002A 8899AABB 00010000");
inline const std::string kBlockB = Hex("B1B2B3B4 00 000007 00000001 00000002 00000003 00000004");
inline const ZunRtcpReportBlock kDecodedA = {0xA1A2A3A4, 0x40, 0xFFFFFF, 0x00011234, 42, 0x8899AABB, 65536};
inline const ZunRtcpReportBlock kDecodedB = {0xB1B2B3B4, 0, 7, 1, 2, 3, 4};

inline void ExpectBlock(const ZunRtcpReportBlock& block, const ZunRtcpReportBlock& expected) {
  EXPECT_EQ(block.ssrc, expected.ssrc);
  EXPECT_EQ(block.fraction_lost, expected.fraction_lost);
  EXPECT_EQ(block.cum_num_packet_lost, expected.cum_num_packet_lost);
  EXPECT_EQ(block.highest_seq_num_rcvd, expected.highest_seq_num_rcvd);
  EXPECT_EQ(block.inter_arrival_jitter, expected.inter_arrival_jitter);
  EXPECT_EQ(block.last_sr, expected.last_sr);
  EXPECT_EQ(block.delay_last_sr, expected.delay_last_sr);
}

// An owned list of blocks.
class Blocks : public zun::rtcp::Owning<ZunVector_ZunRtcpReportBlock> {
 public:
  explicit Blocks(std::size_t count, ZunAllocator* a = ZunAllocatorGetSystem()) : Owning(a) {
    EXPECT_NE(ZunVector_ZunRtcpReportBlockConstructN(get(), count, &kDecodedA, a), nullptr);
  }
  operator const ZunVector_ZunRtcpReportBlock*() const { return get(); }
};

// The functions of a kind of report, so that one test serves both:
//   using Kind; kType; kFixedSize (of its wire form in front of the blocks); kFixed, the body in front of the
//   blocks; ConstructDefault, ConstructCopy, Assign, Destruct, GetAllocator; Get/SetReportBlocks,
//   Get/SetProfileSpecificExt; ExpectZero(kind), ExpectFixed(kind): its own fields are zero, or those of kFixed
template <class Api>
class ReportTest : public ::testing::Test {
 protected:
  using Kind = typename Api::Kind;

  ReportTest() { EXPECT_EQ(Api::ConstructDefault(&report_, allocator_), &report_); }
  ~ReportTest() override { Api::Destruct(&report_); }

  static const Row& row() { return kRowOf<Kind>; }
  // A whole report; the count is that of the blocks unless another one is announced.
  static std::string Wire(const std::string& blocks, const std::string& extension, int count = -1) {
    const int announced = count < 0 ? static_cast<int>(blocks.size() / 24) : count;
    return Subpacket(Api::kType, announced, Api::kFixed() + blocks + extension);
  }
  static std::string WireOf(const Kind& report) {
    return Bytes(row(), *reinterpret_cast<const ZunRtcpSubpacket*>(&report));
  }
  static const Kind& In(const Received& received) { return *reinterpret_cast<const Kind*>(received.sp()); }

  TestAllocator allocator_;
  Kind report_;
};

TYPED_TEST_SUITE_P(ReportTest);

TYPED_TEST_P(ReportTest, ConstructDefaultIsEmpty) {
  EXPECT_EQ(this->report_.type, TypeParam::kType);
  TypeParam::ExpectZero(this->report_);
  EXPECT_TRUE(ZunVector_ZunRtcpReportBlockEmpty(TypeParam::GetReportBlocks(&this->report_)));
  EXPECT_TRUE(ZunStringEmpty(TypeParam::GetProfileSpecificExt(&this->report_)));
  EXPECT_EQ(TypeParam::GetAllocator(&this->report_), this->allocator_.get());
  EXPECT_EQ(TypeParam::GetProfileSpecificExt(&this->report_)->allocator, this->allocator_.get());
  EXPECT_EQ(this->allocator_.calls(), 0U);
}

TYPED_TEST_P(ReportTest, DestructTwiceIsHarmless) {
  ASSERT_TRUE(TypeParam::SetReportBlocks(&this->report_, Blocks(3)));
  ASSERT_TRUE(TypeParam::SetProfileSpecificExt(&this->report_, Text("ext.")));
  TypeParam::Destruct(&this->report_);
  EXPECT_EQ(this->allocator_.live_blocks(), 0U);
  TypeParam::Destruct(&this->report_);
}

TYPED_TEST_P(ReportTest, WithoutBlocksAndExtension) {
  EXPECT_EQ(this->WireOf(this->report_).size(), TypeParam::kFixedSize);
  const std::string wire = this->Wire("", "");
  EXPECT_EQ(ToHex(Parsed(wire).bytes()), ToHex(wire));
  const Received received(this->row(), wire);
  ASSERT_TRUE(received.ok);
  TypeParam::ExpectFixed(this->In(received));
  EXPECT_TRUE(ZunVector_ZunRtcpReportBlockEmpty(TypeParam::GetReportBlocks(&this->In(received))));
}

TYPED_TEST_P(ReportTest, ReadsBlocksAndKeepsWhatFollowsThem) {
  const std::string wire = this->Wire(kBlockA, "profile.");
  EXPECT_EQ(ToHex(Parsed(wire).bytes()), ToHex(wire));
  const Received received(this->row(), wire);
  ASSERT_TRUE(received.ok);
  EXPECT_EQ(this->In(received).type, TypeParam::kType);
  TypeParam::ExpectFixed(this->In(received));
  const auto* const blocks = TypeParam::GetReportBlocks(&this->In(received));
  ASSERT_EQ(ZunVector_ZunRtcpReportBlockSize(blocks), 1U);
  ExpectBlock(blocks->begin[0], kDecodedA);
  EXPECT_EQ(Str(TypeParam::GetProfileSpecificExt(&this->In(received))), "profile.");
}

TYPED_TEST_P(ReportTest, BlocksThatAreNotCountedAreExtension) {
  const Received received(this->row(), this->Wire(kBlockA + kBlockB, "", 1));
  ASSERT_TRUE(received.ok);
  EXPECT_EQ(ZunVector_ZunRtcpReportBlockSize(TypeParam::GetReportBlocks(&this->In(received))), 1U);
  EXPECT_EQ(ToHex(Str(TypeParam::GetProfileSpecificExt(&this->In(received)))), ToHex(kBlockB));
}

TYPED_TEST_P(ReportTest, AnExtensionOfAnySizeIsRead) {
  // No compound packet has such a body; the reader does not care.
  const std::string wire = this->Wire(kBlockA, "12345678");
  const Received received(this->row(), wire.substr(0, wire.size() - 3));
  ASSERT_TRUE(received.ok);
  EXPECT_EQ(Str(TypeParam::GetProfileSpecificExt(&this->In(received))), "12345");
}

TYPED_TEST_P(ReportTest, ThirtyOneBlocks) {
  std::string blocks;
  for (int i = 0; i < 31; ++i) blocks += i % 2 == 0 ? kBlockA : kBlockB;
  const std::string wire = this->Wire(blocks, "");
  EXPECT_EQ(ToHex(Parsed(wire).bytes()), ToHex(wire));
  EXPECT_EQ(wire[0], '\x9F');
}

TYPED_TEST_P(ReportTest, ThirtyTwoBlocksSetThePaddingBitAndSixtyFourTheVersion) {
  ASSERT_TRUE(TypeParam::SetReportBlocks(&this->report_, Blocks(32)));
  EXPECT_EQ(ToHex(this->WireOf(this->report_).substr(0, 1)), "A0");
  ASSERT_TRUE(TypeParam::SetReportBlocks(&this->report_, Blocks(33)));
  EXPECT_EQ(ToHex(this->WireOf(this->report_).substr(0, 1)), "A1");
  ASSERT_TRUE(TypeParam::SetReportBlocks(&this->report_, Blocks(64)));
  EXPECT_EQ(ToHex(this->WireOf(this->report_).substr(0, 1)), "C0");
  ASSERT_TRUE(TypeParam::SetReportBlocks(&this->report_, Blocks(257)));
  EXPECT_EQ(ToHex(this->WireOf(this->report_).substr(0, 1)), "81") << "only the low 8 bits of the count are written";
}

TYPED_TEST_P(ReportTest, AShortBodyKeepsTheBlocksReadBefore) {
  const std::string wire = this->Wire(kBlockA + kBlockB, "ext.", 3);
  const Received received(this->row(), wire);
  EXPECT_FALSE(received.ok);
  const auto* const blocks = TypeParam::GetReportBlocks(&this->In(received));
  ASSERT_EQ(ZunVector_ZunRtcpReportBlockSize(blocks), 2U);
  ExpectBlock(blocks->begin[0], kDecodedA);
  ExpectBlock(blocks->begin[1], kDecodedB);
  EXPECT_TRUE(ZunStringEmpty(TypeParam::GetProfileSpecificExt(&this->In(received))));
}

TYPED_TEST_P(ReportTest, EveryCut) {
  const std::string wire = this->Wire(kBlockA + kBlockB, "ext.ext.");
  const ZunSizeT blocks_begin = TypeParam::kFixedSize - 4;
  const ZunSizeT blocks_end = blocks_begin + 48;
  ForEveryCut(this->row(), wire, [&](const Received& received, ZunSizeT size, bool end_is_beyond) {
    EXPECT_EQ(received.ok, size >= blocks_end && !end_is_beyond);
    TypeParam::ExpectCut(this->In(received), size);
    const auto* const blocks = TypeParam::GetReportBlocks(&this->In(received));
    const ZunSizeT whole = size < blocks_begin ? 0 : (size - blocks_begin) / 24;
    ASSERT_EQ(ZunVector_ZunRtcpReportBlockSize(blocks), whole < 2 ? whole : 2);
    if (whole >= 1) ExpectBlock(blocks->begin[0], kDecodedA);
    if (whole >= 2) ExpectBlock(blocks->begin[1], kDecodedB);
    EXPECT_EQ(Str(TypeParam::GetProfileSpecificExt(&this->In(received))),
              received.ok ? std::string("ext.ext.").substr(0, size - blocks_end) : "");
  });
}

TYPED_TEST_P(ReportTest, AFailedReadLeavesTheOldExtension) {
  Received received(this->row(), this->Wire(kBlockA, "old."));
  const std::string wire = this->Wire(kBlockB, "", 2);
  EXPECT_FALSE(received.Read(wire));
  const auto* const blocks = TypeParam::GetReportBlocks(&this->In(received));
  ASSERT_EQ(ZunVector_ZunRtcpReportBlockSize(blocks), 1U);
  ExpectBlock(blocks->begin[0], kDecodedB);
  EXPECT_EQ(Str(TypeParam::GetProfileSpecificExt(&this->In(received))), "old.");
}

TYPED_TEST_P(ReportTest, SetProfileSpecificExtTakesWholeWordsOnly) {
  ASSERT_TRUE(TypeParam::SetProfileSpecificExt(&this->report_, Text("four")));
  for (const char* const ext : {"1", "12", "123", "12345", "123456", "1234567"}) {
    EXPECT_FALSE(TypeParam::SetProfileSpecificExt(&this->report_, Text(ext)));
    EXPECT_EQ(Str(TypeParam::GetProfileSpecificExt(&this->report_)), "four");
  }
  EXPECT_TRUE(TypeParam::SetProfileSpecificExt(&this->report_, Text("12345678")));
  EXPECT_EQ(Str(TypeParam::GetProfileSpecificExt(&this->report_)), "12345678");
  EXPECT_TRUE(TypeParam::SetProfileSpecificExt(&this->report_, Text("")));
  EXPECT_TRUE(ZunStringEmpty(TypeParam::GetProfileSpecificExt(&this->report_)));
}

TYPED_TEST_P(ReportTest, SettersKeepTheAllocator) {
  TestAllocator other;
  ASSERT_TRUE(TypeParam::SetReportBlocks(&this->report_, Blocks(2, other.get())));
  ASSERT_TRUE(TypeParam::SetProfileSpecificExt(&this->report_, Text("ext.", other.get())));
  EXPECT_EQ(TypeParam::GetAllocator(&this->report_), this->allocator_.get());
  EXPECT_EQ(this->allocator_.live_blocks(), 2U);
  ASSERT_TRUE(TypeParam::SetReportBlocks(&this->report_, TypeParam::GetReportBlocks(&this->report_)));
  EXPECT_EQ(ZunVector_ZunRtcpReportBlockSize(TypeParam::GetReportBlocks(&this->report_)), 2U);
}

TYPED_TEST_P(ReportTest, TheTypeIsNotAssigned) {
  typename TypeParam::Kind odd = this->report_;
  odd.type = 77;
  typename TypeParam::Kind copy;
  ASSERT_EQ(TypeParam::ConstructCopy(&copy, &odd), &copy);
  EXPECT_EQ(copy.type, TypeParam::kType);
  ASSERT_EQ(TypeParam::Assign(&this->report_, &odd), &this->report_);
  EXPECT_EQ(this->report_.type, TypeParam::kType);
}

TYPED_TEST_P(ReportTest, AFailedAssignKeepsTheFieldsAndMayHaveReplacedTheBlocks) {
  const Received source(this->row(), this->Wire(kBlockA + kBlockB, "profile."));
  ASSERT_TRUE(TypeParam::SetReportBlocks(&this->report_, Blocks(1)));
  this->allocator_.RefuseOnce(0);
  EXPECT_EQ(TypeParam::Assign(&this->report_, &this->In(source)), nullptr);
  TypeParam::ExpectZero(this->report_);
  EXPECT_TRUE(ZunVector_ZunRtcpReportBlockEmpty(TypeParam::GetReportBlocks(&this->report_)));
  this->allocator_.RefuseOnce(1);
  EXPECT_EQ(TypeParam::Assign(&this->report_, &this->In(source)), nullptr);
  TypeParam::ExpectZero(this->report_);
  EXPECT_EQ(ZunVector_ZunRtcpReportBlockSize(TypeParam::GetReportBlocks(&this->report_)), 2U);
  EXPECT_TRUE(ZunStringEmpty(TypeParam::GetProfileSpecificExt(&this->report_)));
  this->allocator_.RefuseNothing();
  EXPECT_EQ(TypeParam::Assign(&this->report_, &this->In(source)), &this->report_);
  TypeParam::ExpectFixed(this->report_);
}

TYPED_TEST_P(ReportTest, ACopyWhoseExtensionIsRefusedTakesTheAllocatorOfItsSource) {
  TestAllocator sources;
  const Received source(this->row(), this->Wire(kBlockA, "profile."), sources.get());
  const std::size_t source_blocks = sources.live_blocks();
  ZunRtcpSubpacket copy;

  this->allocator_.RefuseOnce(1);  // the blocks are granted, the extension is not
  ASSERT_EQ(this->row().construct_copy_allocator(&copy, source.sp(), this->allocator_), &copy);
  EXPECT_EQ(this->row().get_allocator(&copy), sources.get());
  EXPECT_EQ(this->allocator_.live_blocks(), 0U) << "what was granted is given back";
  EXPECT_EQ(ToHex(Bytes(this->row(), copy)), ToHex(source.bytes()));
  this->row().destruct(&copy);
  EXPECT_EQ(sources.live_blocks(), source_blocks);

  this->allocator_.RefuseOnce(1);
  sources.RefuseOnce(0);
  EXPECT_EQ(this->row().construct_copy_allocator(&copy, source.sp(), this->allocator_), nullptr);
  EXPECT_EQ(this->allocator_.live_blocks(), 0U);
  EXPECT_EQ(sources.live_blocks(), source_blocks);

  this->allocator_.RefuseOnce(0);
  EXPECT_EQ(this->row().construct_copy_allocator(&copy, source.sp(), this->allocator_), nullptr);
  EXPECT_EQ(this->allocator_.live_blocks(), 0U);
  this->row().destruct(&copy);
}

REGISTER_TYPED_TEST_SUITE_P(ReportTest, ConstructDefaultIsEmpty, DestructTwiceIsHarmless, WithoutBlocksAndExtension,
                            ReadsBlocksAndKeepsWhatFollowsThem, BlocksThatAreNotCountedAreExtension,
                            AnExtensionOfAnySizeIsRead, ThirtyOneBlocks,
                            ThirtyTwoBlocksSetThePaddingBitAndSixtyFourTheVersion, AShortBodyKeepsTheBlocksReadBefore,
                            EveryCut, AFailedReadLeavesTheOldExtension, SetProfileSpecificExtTakesWholeWordsOnly,
                            SettersKeepTheAllocator, TheTypeIsNotAssigned,
                            AFailedAssignKeepsTheFieldsAndMayHaveReplacedTheBlocks,
                            ACopyWhoseExtensionIsRefusedTakesTheAllocatorOfItsSource);

}  // namespace test

// The functions that both kinds name alike.
#define REPORT_API(KIND)                                                     \
  using Kind = KIND;                                                         \
  static constexpr auto ConstructDefault = KIND##ConstructDefault;           \
  static constexpr auto ConstructCopy = KIND##ConstructCopy;                 \
  static constexpr auto Assign = KIND##Assign;                               \
  static constexpr auto Destruct = KIND##Destruct;                           \
  static constexpr auto GetAllocator = KIND##GetAllocator;                   \
  static constexpr auto GetReportBlocks = KIND##GetReportBlocks;             \
  static constexpr auto SetReportBlocks = KIND##SetReportBlocks;             \
  static constexpr auto GetProfileSpecificExt = KIND##GetProfileSpecificExt; \
  static constexpr auto SetProfileSpecificExt = KIND##SetProfileSpecificExt;

#endif
