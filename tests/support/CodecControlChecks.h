// What FIR, TSTR and TSTA have in common: a list of eight-byte entries that must not be empty. The wire forms given
// hold two entries.
#ifndef TESTS_SUPPORT_CODECCONTROLCHECKS_H
#define TESTS_SUPPORT_CODECCONTROLCHECKS_H

#include "tests/support/RowChecks.h"

namespace test {

inline constexpr ZunSizeT kFciBegin = 12;
inline constexpr ZunSizeT kEntrySize = 8;

template <class Kind>
const Kind& As(const ZunRtcpSubpacket& sp) {
  return *reinterpret_cast<const Kind*>(&sp);
}

template <class Kind>
ZunSizeT EntryCount(const Slot& slot) {
  const auto& fci = As<Kind>(slot.sp).fci;
  return static_cast<ZunSizeT>(fci.end - fci.begin);
}

// The same message with other entries: `count` of them, their SSRCs 1, 2, 3 ...
inline std::string WithEntries(const std::string& wire, unsigned char count) {
  std::string other = wire.substr(0, kFciBegin);
  other[3] = static_cast<char>(2 + 2 * count);
  for (unsigned char i = 1; i <= count; ++i)
    other += Hex("000000") + std::string(1, static_cast<char>(i)) + Hex("09000000");
  return other;
}

template <class Kind>
void ExpectNothingWithoutEntries(const Row& row, const std::string& wire) {
  const std::string header = WithEntries(wire, 0);
  Slot slot(row, header);
  EXPECT_FALSE(slot.ok);
  EXPECT_EQ(As<Kind>(slot.sp).sender, 0x01020304U) << "the SSRCs were read";

  Text out;
  EXPECT_FALSE(row.write_packet(&slot.sp, out, 0));
  EXPECT_EQ(ToHex(out.str()), ToHex(header)) << "the header stays";
  EXPECT_EQ(row.get_packet_length(&slot.sp), kFciBegin);

  ASSERT_TRUE(slot.Again(wire));
  EXPECT_FALSE(slot.Again(header));
  EXPECT_EQ(EntryCount<Kind>(slot), 2U) << "the entries of before are not reached";
}

template <class Kind>
void ExpectCutAnywhereKeepsTheWholeEntries(const Row& row, const std::string& wire) {
  ForEveryCut(row, wire, [](const Slot& slot, ZunSizeT size, bool end_is_beyond) {
    const Kind& p = As<Kind>(slot.sp);
    EXPECT_EQ(slot.ok, size > 8 && (size - 8) % kEntrySize == 0 && !end_is_beyond);
    EXPECT_EQ(p.sender, size >= 4 ? 0x01020304U : 0U);
    EXPECT_EQ(p.source, size >= 8 ? 0x11121314U : 0U);
    ASSERT_EQ(EntryCount<Kind>(slot), size >= 8 ? (size - 8) / kEntrySize : 0U);
    if (size >= 16) {
      EXPECT_EQ(p.fci.begin[0].ssrc, 0x21222324U);
      EXPECT_EQ(p.fci.begin[0].seqno, 7);
    }
  });
}

template <class Kind>
void ExpectTwelveBytesOfFciFailAfterOneEntry(const Row& row, const std::string& wire) {
  Slot slot(row, WithEntries(wire, 5));
  ASSERT_TRUE(slot.ok);
  EXPECT_FALSE(slot.Again(wire.substr(0, kFciBegin + 12)));
  ASSERT_EQ(EntryCount<Kind>(slot), 1U);
  EXPECT_EQ(As<Kind>(slot.sp).fci.begin[0].ssrc, 0x21222324U);
}

template <class Kind>
void ExpectEntriesThatFitAreReadBeforeARefusal(const Row& row, const std::string& wire) {
  TestAllocator two_entries;
  two_entries.RefuseAbove(2 * sizeof(*As<Kind>({}).fci.begin));
  const Slot slot(row, WithEntries(wire, 3), two_entries.get());
  EXPECT_FALSE(slot.ok);
  ASSERT_EQ(EntryCount<Kind>(slot), 2U);
  EXPECT_EQ(As<Kind>(slot.sp).fci.begin[1].ssrc, 2U);
}

template <class Kind, Kind* (*Assign)(Kind*, const Kind*)>
void ExpectRefusedAssignLeavesNoEntries(const Row& row, const std::string& wire) {
  TestAllocator allocator;
  const Slot source(row, WithEntries(wire, 3));
  Slot target(row, WithEntries(wire, 1), allocator.get());  // has room for two
  ASSERT_TRUE(target.ok);
  allocator.RefuseFrom(0);
  Kind& p = *reinterpret_cast<Kind*>(&target.sp);
  EXPECT_EQ(Assign(&p, &As<Kind>(source.sp)), nullptr);
  EXPECT_EQ(p.fci.begin, nullptr);
  EXPECT_EQ(allocator.live_blocks(), 0U);
}

inline void ExpectTheRulesOfEveryRow(const Row& row, const std::string& wire) {
  ExpectComesBackUnchanged(wire);
  ExpectAllocatorRules(row, wire, WithEntries(wire, 1));
  ExpectRefusalsLoseNothing(row, wire, WithEntries(wire, 1));
  ExpectFailedWriteLeavesABeginning(row, wire);
  ExpectReadsInPlaceAsFresh(row, {wire, WithEntries(wire, 10), WithEntries(wire, 1)});
  ExpectWritesInPlace(row, wire);

  TestAllocator allocator;
  const Slot slot(row, WithEntries(wire, 10), allocator.get());
  EXPECT_EQ(allocator.calls(), 1U) << "a fresh read allocates once";
}

}  // namespace test

#endif
