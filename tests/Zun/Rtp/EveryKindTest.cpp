// What every kind of every level must keep to, checked on all samples.
#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "Zun/Rtp/Dialect/ZunRtcpCodec.h"
#include "tests/support/LogCapture.h"
#include "tests/support/Samples.h"

namespace {

using namespace test;

class EverySample : public ::testing::TestWithParam<Sample> {
 protected:
  const Sample& sample() const { return GetParam(); }
  const Row& row() const { return *sample().row; }
  // The other samples of its kind, and itself.
  std::vector<Sample> OfItsKind() const { return SamplesOf(row()); }
  // What it is written as, which need not be as it was read.
  std::string Written() const {
    Text out;
    EXPECT_TRUE(row().write_packet(ReceivedSample(sample()).sp(), out, 0));
    return out.str();
  }
  // All of what is read takes this allocator, also where it takes that of the buffer.
  static Received ReadWith(const Sample& sample, ZunAllocator* a) {
    return Received(*sample.row, sample.wire, a, {.buffer_allocator = a});
  }
  bool OwnsMemory() const { return ReceivedSample(sample()).allocator() != nullptr; }
};

std::string NameOf(const ::testing::TestParamInfo<Sample>& sample) { return sample.param.name; }

INSTANTIATE_TEST_SUITE_P(Kinds, EverySample, ::testing::ValuesIn(Samples()), NameOf);

// ---- the wire

TEST_P(EverySample, ComesBackAsItSays) {
  const Parsed parsed(sample().wire);
  ASSERT_TRUE(parsed.ok);
  ASSERT_EQ(parsed.count(), 1U);
  EXPECT_EQ(parsed.bytes() == sample().wire, sample().comes_back) << ToHex(parsed.bytes());
  if (!sample().comes_back) return;
  EXPECT_EQ(ToHex(ReceivedSample(sample()).bytes()), ToHex(sample().wire));
  EXPECT_EQ(ZunRtcpSubpacketGetNetworkPacketLength(&parsed[0]), sample().wire.size());
  EXPECT_EQ(ZunRtcpPacketGetNetworkPacketLength(&parsed.packet), sample().wire.size());
}

TEST_P(EverySample, ThePaddingBitIsWrittenAndNoPadding) {
  const ReceivedSample p(sample());
  Text out;
  ASSERT_TRUE(row().write_packet(p.sp(), out, 1));
  std::string expected = Written();
  expected[0] = static_cast<char>(expected[0] | 0x20);
  EXPECT_EQ(ToHex(out.str()), ToHex(expected));
}

// A string that has room, and one that must grow, take different paths.
TEST_P(EverySample, HowMuchRoomThereIsMakesNoDifference) {
  const ReceivedSample p(sample());
  const std::string written = Written();
  for (const bool pad : {false, true}) {
    std::string expected = "in front" + written;  // some align the end of the whole output
    if (pad) expected[8] = static_cast<char>(expected[8] | 0x20);
    for (ZunSizeT room = 0; room <= written.size() + 8; ++room) {
      Text out(std::string(8 + room, 'x'));
      ASSERT_NE(ZunStringAssign(out, Text("in front").get()), nullptr);
      ASSERT_TRUE(row().write_packet(p.sp(), out, pad)) << room;
      ASSERT_EQ(ToHex(out.str()), ToHex(expected)) << room;
    }
  }
}

// ---- the wire as octets

TEST_P(EverySample, IsEncodedAsItIsWritten) {
  const Parsed parsed(sample().wire);
  const std::string written = Written();
  ASSERT_EQ(ZunRtcpPacketGetEncodedLength(&parsed.packet, ZUN_RTCP_DIALECT_HOUSE), written.size());
  ZunSizeT size = 0;
  std::string octets(written.size() - 1, 'x');
  EXPECT_FALSE(ZunRtcpPacketEncode(&parsed.packet, octets.data(), octets.size(), ZUN_RTCP_DIALECT_HOUSE, &size));
  EXPECT_EQ(size, written.size());
  octets.resize(size);
  EXPECT_TRUE(ZunRtcpPacketEncode(&parsed.packet, octets.data(), octets.size(), ZUN_RTCP_DIALECT_HOUSE, &size));
  EXPECT_EQ(size, written.size());
  EXPECT_EQ(ToHex(octets), ToHex(written));
}

// A block that is too small is written up to its end at most, and what is needed is told.
TEST_P(EverySample, IsEncodedIntoNoBlockThatIsTooSmall) {
  for (const ZunRtcpDialect dialect : {ZUN_RTCP_DIALECT_HOUSE, ZUN_RTCP_DIALECT_REGISTERED}) {
    const Parsed parsed(sample().wire);
    const ZunSizeT needed = ZunRtcpPacketGetEncodedLength(&parsed.packet, dialect);
    for (ZunSizeT capacity = 0; capacity < needed; ++capacity) {
      ZunSizeT size = 0;
      std::string octets(needed + 8, 'x');
      EXPECT_FALSE(ZunRtcpPacketEncode(&parsed.packet, octets.data(), capacity, dialect, &size)) << capacity;
      EXPECT_EQ(size, needed);
      EXPECT_EQ(octets.substr(capacity), std::string(octets.size() - capacity, 'x')) << capacity;
    }
  }
}

// Cut to so many words, or followed by a word of zeros, as the header then says, it is read or refused alike, and
// refused with a reason.
TEST_P(EverySample, IsDecodedAsItIsRead) {
  for (ZunSizeT size = kBodyBegin; size <= sample().wire.size() + 4; size += 4) {
    SCOPED_TRACE(::testing::Message() << size << " bytes of it");
    std::string wire = sample().wire.substr(0, size);
    wire.resize(size, '\0');
    wire[2] = static_cast<char>((size / 4 - 1) >> 8);
    wire[3] = static_cast<char>(size / 4 - 1);
    const Parsed parsed(wire);
    Parsed decoded(Golden("UnknownWithoutData"));
    ZunRtcpDecodeReport report;
    const bool ok =
        ZunRtcpPacketDecode(&decoded.packet, wire.data(), size, ZUN_RTCP_DIALECT_HOUSE, nullptr, &report) != 0;
    ASSERT_EQ(ok, parsed.ok);
    EXPECT_EQ(report.first.reason == ZUN_RTCP_DECODE_REASON_NONE, ok);
    if (ok) {
      EXPECT_EQ(ToHex(decoded.bytes()), ToHex(parsed.bytes()));
    }
  }
}

// ---- allocators

TEST_P(EverySample, AReadObjectTakesTheAllocatorItIsGivenAndGivesAllBack) {
  TestAllocator mine;
  ReceivedSample p(sample(), mine);
  if (OwnsMemory()) {
    EXPECT_EQ(p.allocator(), mine.get());
  } else {
    EXPECT_EQ(mine.calls(), 0U);
  }
  row().destruct(p.sp());
  EXPECT_EQ(mine.live_blocks(), 0U);
}

TEST_P(EverySample, ACopyIsBuiltWithTheAllocatorThatIsAskedFor) {
  TestAllocator mine;
  TestAllocator other;
  const ReceivedSample source(sample(), mine);
  const std::size_t blocks = mine.live_blocks();
  for (ZunAllocator* const wanted : {mine.get(), other.get()}) {
    ZunRtcpSubpacket copy;
    ASSERT_EQ(row().construct_copy_allocator(&copy, source.sp(), wanted), &copy);
    EXPECT_EQ(row().get_allocator(&copy), OwnsMemory() ? wanted : nullptr);
    EXPECT_EQ(Seen(row(), copy), source.seen());
    EXPECT_EQ(mine.live_blocks() + other.live_blocks(), 2 * blocks);
    if (!sample().elements_own_memory) {
      EXPECT_EQ(other.live_blocks(), wanted == other.get() ? blocks : 0U);
    }
    row().destruct(&copy);
    EXPECT_EQ(mine.live_blocks(), blocks);
    EXPECT_EQ(other.live_blocks(), 0U);
  }
}

TEST_P(EverySample, AnAssignmentLeavesTheAllocatorAlone) {
  for (const Sample& held : OfItsKind()) {
    SCOPED_TRACE(held.name);
    TestAllocator mine;
    TestAllocator other;
    const ReceivedSample source(sample(), mine);
    ReceivedSample target(held, other);
    const std::size_t blocks = mine.live_blocks();
    ASSERT_EQ(row().assign(target.sp(), source.sp()), target.sp());
    EXPECT_EQ(target.allocator(), OwnsMemory() ? other.get() : nullptr);
    EXPECT_EQ(target.seen(), source.seen());
    ASSERT_EQ(row().assign(target.sp(), target.sp()), target.sp());
    EXPECT_EQ(target.seen(), source.seen());
    if (!sample().elements_own_memory) {
      EXPECT_EQ(mine.live_blocks(), blocks);
    }
  }
}

// ---- refused allocations: each operation does all that it should or reports failure, and loses nothing

TEST_P(EverySample, RefusedReadsLoseNothing) {
  ForEveryRefusal([&](TestAllocator& refusing) {
    const Received p = ReadWith(sample(), refusing);
    EXPECT_TRUE(p.ok || refusing.refused() > 0);
    if (p.ok && !sample().reads_despite_refusals) {
      EXPECT_EQ(p.seen(), Seen(sample()));
    }
  });
}

TEST_P(EverySample, RefusedReadsInPlaceLeaveAUsableObject) {
  for (const Sample& held : OfItsKind()) {
    SCOPED_TRACE(held.name);
    ForEveryRefusal([&](TestAllocator& refusing) {
      Received p = ReadWith(held, refusing);
      const bool ok = p.Read(sample().wire, {.buffer_allocator = refusing});
      EXPECT_TRUE(ok || refusing.refused() > 0);
      if (ok && !sample().reads_despite_refusals) {
        EXPECT_EQ(p.seen(), Seen(sample()));
      }
      refusing.RefuseNothing();
      EXPECT_TRUE(p.Read(sample().wire, {.buffer_allocator = refusing}));
      EXPECT_EQ(p.seen(), Seen(sample()));
    });
  }
}

TEST_P(EverySample, RefusedCopiesOwnNothing) {
  const ReceivedSample source(sample());
  const std::size_t allocations = ForEveryRefusal([&](TestAllocator& refusing) {
    LogCapture log;
    ZunRtcpSubpacket copy;
    const bool ok = row().construct_copy_allocator(&copy, source.sp(), refusing) != nullptr;
    log.ExpectNone();
    EXPECT_TRUE(ok || refusing.refused() > 0);
    if (!ok) return;  // it owns nothing, or the allocator would tell
    EXPECT_EQ(Seen(row(), copy), source.seen());
    row().destruct(&copy);
  });
  TestAllocator mine;
  const ReceivedSample twin(sample(), mine);
  EXPECT_EQ(allocations > 0, mine.live_blocks() > 0);
}

TEST_P(EverySample, RefusedCopiesWithTheSameAllocatorOwnNothing) {
  ForEveryRefusal([&](TestAllocator& refusing) {
    const Received source(row(), sample().wire, refusing);
    const std::size_t blocks = refusing.live_blocks();
    ZunRtcpSubpacket copy;
    if (row().construct_copy_allocator(&copy, source.sp(), refusing) != nullptr) row().destruct(&copy);
    EXPECT_EQ(refusing.live_blocks(), blocks);
  });
}

TEST_P(EverySample, RefusedAssignmentsLoseNothing) {
  const ReceivedSample source(sample());
  for (const Sample& held : OfItsKind()) {
    SCOPED_TRACE(held.name);
    ForEveryRefusalAfter([&](TestAllocator& refusing, const std::function<void()>& begin) {
      ReceivedSample target(held, refusing);
      LogCapture log;
      begin();
      const bool ok = row().assign(target.sp(), source.sp()) != nullptr;
      EXPECT_TRUE(ok || refusing.refused() > 0);
      log.ExpectNone();
      if (ok) {
        EXPECT_EQ(target.seen(), source.seen());
      }
      refusing.RefuseNothing();
      EXPECT_EQ(row().assign(target.sp(), source.sp()), target.sp());
      EXPECT_EQ(target.seen(), source.seen());
    });
  }
}

// ---- strings without room

// What fits of `written` into so much room.
std::string Fitting(const Sample& sample, const std::string& written, ZunSizeT room) {
  for (const auto& [first, last] : sample.pieces) {
    if (room > first && room < last) room = first;
  }
  return written.substr(0, room);
}

TEST_P(EverySample, AWriteWithoutRoomLeavesTheBeginningThatFits) {
  const ReceivedSample p(sample());
  const std::string written = Written();
  const std::string in_front(64, 'y');
  for (ZunSizeT room = 0; room < written.size(); ++room) {
    SCOPED_TRACE(::testing::Message() << room << " bytes fit");
    TestAllocator refusing;
    Text out(refusing.get());
    const Text exactly(std::string(in_front.size() + room, 'x'));
    ASSERT_NE(ZunStringAssign(out, exactly.get()), nullptr);
    ASSERT_EQ(out->capacity, in_front.size() + room);
    ZunStringClear(out);
    ASSERT_NE(ZunStringAppendN(out, in_front.size(), 'y'), nullptr);
    refusing.RefuseFrom(0);
    const bool ok = row().write_packet(p.sp(), out, 0) != 0;
    EXPECT_EQ(out.str().substr(0, in_front.size()), in_front);
    if (sample().writes_despite_refusals) continue;
    EXPECT_FALSE(ok);
    EXPECT_EQ(ToHex(out.str().substr(in_front.size())), ToHex(Fitting(sample(), written, room)));
  }
}

TEST_P(EverySample, AWriteThatIsRefusedStorageLeavesABeginning) {
  const ReceivedSample p(sample());
  const std::string written = Written();
  const auto expect_beginning = [&](TestAllocator& allocator) {
    Text out(allocator.get());
    const bool ok = row().write_packet(p.sp(), out, 0) != 0;
    if (sample().writes_despite_refusals) return;
    EXPECT_EQ(ToHex(out.str()), ToHex(written.substr(0, out->size)));
    EXPECT_EQ(ok, out->size == written.size());
  };
  EXPECT_GT(ForEveryRefusal(expect_beginning), 0U);
  for (std::size_t largest = 0; largest <= written.size() + 1; ++largest) {
    SCOPED_TRACE(::testing::Message() << "blocks of at most " << largest << " bytes");
    TestAllocator cramped;
    cramped.RefuseAbove(largest);
    expect_beginning(cramped);
  }
}

// The room for all of it and the first growth are refused, later ones are not.
TEST_P(EverySample, AWriteThatIsRefusedItsFirstByteWritesNothing) {
  const ReceivedSample p(sample());
  TestAllocator refusing;
  Text out(refusing.get());
  refusing.RefuseThese({0, 1});
  EXPECT_FALSE(row().write_packet(p.sp(), out, 0));
  EXPECT_EQ(refusing.refused(), 2U);
  EXPECT_EQ(ToHex(out.str()), "");
}

// ---- results

TEST_P(EverySample, AResultThatIsTrueIs1) {
  const Datagram datagram(sample().wire);
  const ZunSizeT end = sample().wire.size();
  ZunRtcpSubpacket sp;
  EXPECT_EQ(row().construct_from_buffer(&sp, datagram, kBodyBegin, end, PacketTypeOf(sample().wire),
                                        CountOf(sample().wire), ZunAllocatorGetSystem()),
            1);
  EXPECT_EQ(
      row().assign_from_buffer(&sp, datagram, kBodyBegin, end, PacketTypeOf(sample().wire), CountOf(sample().wire)), 1);
  Text out;
  EXPECT_EQ(row().write_packet(&sp, out, 0), 1);
  row().destruct(&sp);
}

// ---- in place

TEST_P(EverySample, IsReadInPlaceAsByAFreshObject) {
  for (const Sample& held : OfItsKind()) {
    SCOPED_TRACE(held.name);
    TestAllocator allocator;
    Received p = ReadWith(held, allocator);
    ASSERT_TRUE(p.ok);
    const std::size_t calls = allocator.calls();
    ASSERT_TRUE(p.Read(sample().wire, {.buffer_allocator = allocator}));
    EXPECT_EQ(p.allocator(), OwnsMemory() ? allocator.get() : nullptr);
    EXPECT_EQ(p.seen(), Seen(sample()));
    if (sample().wire.size() <= held.wire.size() && !sample().elements_own_memory) {
      EXPECT_EQ(allocator.calls(), calls) << "it has held as much as this";
    }
    const std::size_t calls_until_now = allocator.calls();
    ASSERT_TRUE(p.Read(sample().wire, {.buffer_allocator = allocator}));
    EXPECT_EQ(allocator.calls(), calls_until_now) << "it has held the same";
    EXPECT_EQ(p.seen(), Seen(sample()));
  }
}

TEST_P(EverySample, IsWrittenInPlaceWithoutItsAllocator) {
  const ReceivedSample p(sample());
  TestAllocator allocator;
  Text out(allocator.get());
  ASSERT_TRUE(row().write_packet(p.sp(), out, 0));
  const std::size_t calls = allocator.calls();
  ZunStringClear(out);
  ASSERT_TRUE(row().write_packet(p.sp(), out, 0));
  EXPECT_EQ(allocator.calls(), calls);
  EXPECT_EQ(ToHex(out.str()), ToHex(Written()));
}

// ---- cut short

// The bytes end where the body ends, or go on after it: that must make no difference.
TEST_P(EverySample, NothingAfterTheEndIsLookedAt) {
  ForEveryCut(row(), sample().wire, [&](const Received& p, ZunSizeT size, bool end_is_beyond) {
    if (end_is_beyond) return;
    const Datagram whole(sample().wire);
    ZunRtcpSubpacket sp;
    const bool ok = row().construct_from_buffer(&sp, whole, kBodyBegin, kBodyBegin + size, PacketTypeOf(sample().wire),
                                                CountOf(sample().wire), ZunAllocatorGetSystem()) != 0;
    EXPECT_EQ(ok, p.ok);
    EXPECT_EQ(Seen(row(), sp), p.seen());
    row().destruct(&sp);
  });
}

TEST_P(EverySample, ACutOneIsAnObjectOfItsKindThatCanBeUsedAgain) {
  ForEveryCut(row(), sample().wire, [&](const Received& cut, ZunSizeT size, bool end_is_beyond) {
    EXPECT_TRUE(IsOfKind(row(), *cut.sp()));
    const std::string beginning = sample().wire.substr(0, kBodyBegin + size);
    const ZunSizeT beyond = end_is_beyond ? sample().wire.size() - beginning.size() : 0;
    ReceivedSample p(sample());
    EXPECT_EQ(p.Read(beginning, {.beyond = beyond}), cut.ok);
    EXPECT_TRUE(p.Read(sample().wire));
    EXPECT_EQ(p.seen(), Seen(sample()));
  });
}

TEST_P(EverySample, AnEndFarBeyondTheStringIsNeverReadTo) {
  for (const ZunSizeT beyond : {ZunSizeT{1}, ZunSizeT{4}, ZunSizeT{1000}, SIZE_MAX - sample().wire.size()}) {
    ReceivedSample p(sample());
    p.Read(sample().wire, {.beyond = beyond});
    EXPECT_TRUE(p.Read(sample().wire));
    EXPECT_EQ(p.seen(), Seen(sample()));
  }
}

TEST_P(EverySample, ABodyThatIsNotInTheStringIsRefused) {
  const Datagram datagram(sample().wire);
  const ZunSizeT bodies[][2] = {{100000, 100020}, {SIZE_MAX, SIZE_MAX}, {8, 4}, {SIZE_MAX, 4}};
  for (const auto& [begin, end] : bodies) {
    SCOPED_TRACE(::testing::Message() << "[" << begin << ", " << end << ")");
    ReceivedSample p(sample());
    EXPECT_FALSE(
        row().assign_from_buffer(p.sp(), datagram, begin, end, PacketTypeOf(sample().wire), CountOf(sample().wire)));
    EXPECT_TRUE(p.Read(sample().wire));
    EXPECT_EQ(p.seen(), Seen(sample()));
  }
}

// ---- limits

// What is allocated while a wire form is read is bounded by its size, whole or cut, but for the room for two elements
// that the smallest list takes.
TEST_P(EverySample, ReadingTakesAFewTimesTheSizeOfTheWire) {
  const auto expect_bounded = [&](ZunSizeT size, ZunSizeT beyond) {
    SCOPED_TRACE(::testing::Message() << size << " bytes of it, " << beyond << " said to follow");
    TestAllocator allocator;
    const Received p(row(), sample().wire.substr(0, size), allocator,
                     {.beyond = beyond, .buffer_allocator = allocator});
    EXPECT_LE(allocator.peak_bytes(), 12 * size + 64);
    EXPECT_LE(allocator.calls(), size / 2);
  };
  for (ZunSizeT size = kBodyBegin; size <= sample().wire.size(); ++size) {
    expect_bounded(size, 0);
    expect_bounded(size, sample().wire.size() - size);
  }
}

// These rows read over an object that they are told to be of their kind, whatever it says of itself. The others leave
// its type alone.
TEST(EveryKind, AMessageMarksWhatItReads) {
  const std::set<const Row*> marks_nothing = {&kRowOf<ZunRtcpRtpfbUnknown>, &kRowOf<ZunRtcpPsfbUnknown>,
                                              &kRowOf<ZunRtcpRtpfbTransportCc>, &kRowOf<ZunRtcpPsfbAfbShow>};
  for (const Sample& sample : Samples()) {
    if (sample.row->level == Level::kSubpacket || marks_nothing.contains(sample.row)) continue;
    SCOPED_TRACE(sample.name);
    ReceivedSample p(sample);
    p.sp()->psfb.fir.type = 1;
    p.sp()->psfb.fir.fmt = 31;
    if (sample.row->level == Level::kAfb) p.sp()->psfb.afb.unk.afbType = 77;
    ASSERT_TRUE(p.Read(sample.wire));
    EXPECT_TRUE(IsOfKind(*sample.row, *p.sp()));
    EXPECT_EQ(p.seen(), Seen(sample));
  }
}

TEST(EveryKind, TheValuesOfTheRowsAreKnownAndNoOthers) {
  std::set<std::pair<Level, ZunInt32>> known;
  for (const Row* const row : AllRows()) {
    if (row->value != 0) known.insert({row->level, row->value});
  }
  for (const Level level : {Level::kSubpacket, Level::kRtpfb, Level::kPsfb, Level::kAfb}) {
    for (ZunInt32 value = -300; value < 66000; ++value) {
      ASSERT_EQ(IsUnknown(level, value), known.count({level, value}) == 0) << value;
    }
    EXPECT_TRUE(IsUnknown(level, INT32_MIN));
    EXPECT_TRUE(IsUnknown(level, INT32_MAX));
  }
}

// Of a kind that owns memory one sample is large enough to need some, and no other kind takes any.
TEST(EveryKind, WhatOwnsMemoryIsSampledWithSome) {
  for (const Row* const row : AllRows()) {
    SCOPED_TRACE(row->kind);
    bool owns = false;
    bool is_live = false;
    for (const Sample& sample : SamplesOf(*row)) {
      TestAllocator allocator;
      ReceivedSample p(sample, allocator);
      owns = owns || p.allocator() != nullptr;
      is_live = is_live || allocator.live_blocks() > 0;
    }
    EXPECT_EQ(owns, is_live);
  }
}

}  // namespace
