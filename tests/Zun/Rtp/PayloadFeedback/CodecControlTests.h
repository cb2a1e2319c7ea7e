// The tests that FIR, TSTR and TSTA share: a list of eight-byte entries that must not be empty.
#ifndef TESTS_ZUN_RTP_PAYLOADFEEDBACK_CODECCONTROLTESTS_H
#define TESTS_ZUN_RTP_PAYLOADFEEDBACK_CODECCONTROLTESTS_H

#include <gtest/gtest.h>

#include <string>

#include "tests/support/LogCapture.h"
#include "tests/support/Samples.h"

namespace test {

// The functions of a kind, so that one test serves all:
//   using Kind, Entry; kType; kName, what the names of its samples begin with; kMediaSource, theirs; View, the getter
//   of the envelope; ConstructDefault, Assign, GetFci, PushBack; and of an entry: Construct(ssrc, seqno, index),
//   Get/SetSsrc, Get/SetSequenceNumber, CopyEntry, AssignEntry, DestructEntry; kHasIndex, and GetIndex where it has one
template <class Api>
class CodecControlTest : public ::testing::Test {
 protected:
  using Kind = typename Api::Kind;
  using Entry = typename Api::Entry;
  using Message = Object<Kind, Api::ConstructDefault>;

  static constexpr ZunSizeT kFciBegin = 12;
  static constexpr ZunSizeT kEntrySize = 8;

  static const Row& row() { return kRowOf<Kind>; }
  static std::string OneEntry() { return Golden(std::string(Api::kName) + "OneEntry"); }
  static std::string TwoEntries() { return Golden(std::string(Api::kName) + "TwoEntries"); }

  // The same message with other entries: `count` of them, their SSRCs 1, 2, 3 ...
  static std::string WithEntries(unsigned char count) {
    std::string body = TwoEntries().substr(kBodyBegin, kFciBegin - kBodyBegin);
    for (unsigned char i = 1; i <= count; ++i) {
      body += Hex("000000") + std::string(1, static_cast<char>(i)) + Hex("09000000");
    }
    return Subpacket(206, Api::kType, body);
  }

  static const Kind& In(const Received& p) { return *reinterpret_cast<const Kind*>(p.sp()); }
  static ZunSizeT CountIn(const Received& p) { return static_cast<ZunSizeT>(In(p).fci.end - In(p).fci.begin); }
  static void ExpectEntry(const Entry& entry, ZunRtpSourceId ssrc, ZunUint8 seqno, ZunUint8 index) {
    EXPECT_EQ(Api::GetSsrc(&entry), ssrc);
    EXPECT_EQ(Api::GetSequenceNumber(&entry), seqno);
    if constexpr (Api::kHasIndex) {
      EXPECT_EQ(Api::GetIndex(&entry), index);
    }
  }
};

TYPED_TEST_SUITE_P(CodecControlTest);

TYPED_TEST_P(CodecControlTest, ConstructDefaultIsEmpty) {
  TestAllocator allocator;
  typename TestFixture::Message p(allocator);
  EXPECT_EQ(p->type, 206);
  EXPECT_EQ(p->fmt, TypeParam::kType);
  EXPECT_EQ(p->sender, 0U);
  EXPECT_EQ(p->source, 0U);
  EXPECT_EQ(TypeParam::GetFci(p)->begin, TypeParam::GetFci(p)->end);
  EXPECT_EQ(p.allocator(), allocator.get());
  EXPECT_EQ(allocator.calls(), 0U);
}

TYPED_TEST_P(CodecControlTest, WritesGoldenBytes) {
  typename TestFixture::Message p;
  p->sender = kSender;
  p->source = kSource;
  for (const auto& entry : {TypeParam::Construct(0x21222324, 7, 31), TypeParam::Construct(0x31323334, 255, 0)}) {
    ASSERT_TRUE(TypeParam::PushBack(TypeParam::GetFci(p), &entry));
  }
  EXPECT_EQ(ToHex(p.bytes()), ToHex(this->TwoEntries()));
}

TYPED_TEST_P(CodecControlTest, ReadsGoldenBytes) {
  LogCapture log;
  const Parsed parsed(this->TwoEntries());
  ASSERT_TRUE(parsed.ok);
  ASSERT_EQ(ZunRtcpPsfbGetFeedbackMessageType(&parsed[0].psfb), TypeParam::kType);
  const auto* const p = TypeParam::View(&parsed[0].psfb);
  EXPECT_EQ(p->sender, kSender);
  EXPECT_EQ(p->source, TypeParam::kMediaSource);
  const auto* const fci = TypeParam::GetFci(p);
  ASSERT_EQ(fci->end - fci->begin, 2);
  this->ExpectEntry(fci->begin[0], 0x21222324, 7, 31);
  this->ExpectEntry(fci->begin[1], 0x31323334, 255, 0);
  log.ExpectNone();
}

TYPED_TEST_P(CodecControlTest, SettersOfAnEntryStore) {
  auto entry = TypeParam::Construct(1, 2, 3);
  EXPECT_TRUE(TypeParam::SetSsrc(&entry, 0xFFFFFFFF));
  EXPECT_TRUE(TypeParam::SetSequenceNumber(&entry, 255));
  EXPECT_EQ(entry.ssrc, 0xFFFFFFFFU);
  EXPECT_EQ(entry.seqno, 255);
}

TYPED_TEST_P(CodecControlTest, EntriesAreCopiedAsValues) {
  auto entry = TypeParam::Construct(5, 6, 3);
  typename TypeParam::Entry copy;
  EXPECT_EQ(TypeParam::CopyEntry(&copy, &entry), &copy);
  this->ExpectEntry(copy, 5, 6, 3);
  entry = TypeParam::Construct(8, 9, 4);
  EXPECT_EQ(TypeParam::AssignEntry(&copy, &entry), &copy);
  this->ExpectEntry(copy, 8, 9, 4);
  TypeParam::DestructEntry(&copy);
  this->ExpectEntry(copy, 8, 9, 4);
}

TYPED_TEST_P(CodecControlTest, WithoutEntriesItIsNeitherReadNorWritten) {
  const std::string header = this->WithEntries(0);
  Received p(this->row(), header);
  EXPECT_FALSE(p.ok);
  EXPECT_EQ(this->In(p).sender, kSender) << "the SSRCs were read";

  Text out;
  EXPECT_FALSE(this->row().write_packet(p.sp(), out, 0));
  EXPECT_EQ(ToHex(out.str()), ToHex(header)) << "the header stays";
  EXPECT_EQ(this->row().get_packet_length(p.sp()), this->kFciBegin);

  ASSERT_TRUE(p.Read(this->TwoEntries()));
  EXPECT_FALSE(p.Read(header));
  EXPECT_EQ(this->CountIn(p), 2U) << "the entries of before are not reached";
}

TYPED_TEST_P(CodecControlTest, CutAnywhereKeepsTheWholeEntries) {
  std::string wire = this->TwoEntries();
  wire.replace(8, 4, Hex("11121314"));
  ForEveryCut(this->row(), wire, [this](const Received& p, ZunSizeT size, bool end_is_beyond) {
    EXPECT_EQ(p.ok, size > 8 && (size - 8) % this->kEntrySize == 0 && !end_is_beyond);
    EXPECT_EQ(this->In(p).sender, size >= 4 ? kSender : 0U);
    EXPECT_EQ(this->In(p).source, size >= 8 ? kSource : 0U);
    ASSERT_EQ(this->CountIn(p), size >= 8 ? (size - 8) / this->kEntrySize : 0U);
    if (size >= 16) this->ExpectEntry(this->In(p).fci.begin[0], 0x21222324, 7, 31);
  });
}

TYPED_TEST_P(CodecControlTest, TwelveBytesOfFciFailAfterOneEntry) {
  Received p(this->row(), this->WithEntries(5));
  ASSERT_TRUE(p.ok);
  EXPECT_FALSE(p.Read(this->TwoEntries().substr(0, this->kFciBegin + 12)));
  ASSERT_EQ(this->CountIn(p), 1U);
  EXPECT_EQ(this->In(p).fci.begin[0].ssrc, 0x21222324U);
}

TYPED_TEST_P(CodecControlTest, ManyEntriesAreReadIntoOneBlockInPlaceOrNot) {
  TestAllocator allocator;
  Received p(this->row(), this->WithEntries(10), allocator);
  EXPECT_TRUE(p.ok);
  EXPECT_EQ(allocator.calls(), 1U) << "a fresh read allocates once";
  for (const std::string& wire : {this->TwoEntries(), this->WithEntries(10), this->OneEntry()}) {
    ASSERT_TRUE(p.Read(wire));
    EXPECT_EQ(ToHex(p.bytes()), ToHex(wire));
  }
  EXPECT_EQ(allocator.calls(), 1U);
}

TYPED_TEST_P(CodecControlTest, EntriesThatFitAreReadBeforeARefusal) {
  TestAllocator two_entries;
  two_entries.RefuseAbove(2 * sizeof(typename TypeParam::Entry));
  const Received p(this->row(), this->WithEntries(3), two_entries);
  EXPECT_FALSE(p.ok);
  ASSERT_EQ(this->CountIn(p), 2U);
  EXPECT_EQ(this->In(p).fci.begin[1].ssrc, 2U);
}

TYPED_TEST_P(CodecControlTest, RefusedAssignLeavesNoEntries) {
  TestAllocator allocator;
  typename TestFixture::Message source;
  ASSERT_TRUE(source.Read(this->WithEntries(3)));
  typename TestFixture::Message target(allocator);
  ASSERT_TRUE(target.Read(this->WithEntries(1)));  // has room for two
  allocator.RefuseFrom(0);
  EXPECT_EQ(TypeParam::Assign(target, source), nullptr);
  EXPECT_EQ(target->fci.begin, nullptr);
  EXPECT_EQ(allocator.live_blocks(), 0U);
}

REGISTER_TYPED_TEST_SUITE_P(CodecControlTest, ConstructDefaultIsEmpty, WritesGoldenBytes, ReadsGoldenBytes,
                            SettersOfAnEntryStore, EntriesAreCopiedAsValues, WithoutEntriesItIsNeitherReadNorWritten,
                            CutAnywhereKeepsTheWholeEntries, TwelveBytesOfFciFailAfterOneEntry,
                            ManyEntriesAreReadIntoOneBlockInPlaceOrNot, EntriesThatFitAreReadBeforeARefusal,
                            RefusedAssignLeavesNoEntries);

}  // namespace test

// The functions that all three kinds name alike.
#define CODEC_CONTROL_API(KIND)                                           \
  using Kind = KIND;                                                      \
  using Entry = KIND##Entry;                                              \
  static constexpr auto ConstructDefault = KIND##ConstructDefault;        \
  static constexpr auto Assign = KIND##Assign;                            \
  static constexpr auto PushBack = ZunVector_##KIND##EntryPushBack;       \
  static constexpr auto GetSsrc = KIND##EntryGetSsrc;                     \
  static constexpr auto SetSsrc = KIND##EntrySetSsrc;                     \
  static constexpr auto GetSequenceNumber = KIND##EntryGetSequenceNumber; \
  static constexpr auto SetSequenceNumber = KIND##EntrySetSequenceNumber; \
  static constexpr auto CopyEntry = KIND##EntryConstructCopy;             \
  static constexpr auto AssignEntry = KIND##EntryAssign;                  \
  static constexpr auto DestructEntry = KIND##EntryDestruct;              \
  static constexpr auto GetFci = KIND##GetFci;

#endif
