#include "Zun/Rtp/ZunRtcpPacket.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "Zun/Rtp/Cpp/Packet.h"
#include "tests/support/LogCapture.h"
#include "tests/support/Samples.h"

namespace {

using namespace test;

using Subpackets = ZunVector_ZunRtcpSubpacket;

// The wire form of a subpacket of a type that the library does not model: `words` words, all of the byte `fill`. The
// types that are used here are none that RTCP can have, or reserved: no kind will ever have them.
std::string Wire(int type, std::size_t words, char fill = 'd', int subtype = 3) {
  return Subpacket(type, subtype, std::string(4 * words, fill));
}

const std::string kFirst = Wire(100, 2, 'a');
const std::string kSecond = Wire(192, 0);
const std::string kThird = Wire(255, 5, 'c', 31);

// An owned subpacket of such a type.
struct Unknown : zun::rtcp::Subpacket {
  Unknown(ZunRtcpSubpacketType type, std::size_t words, char fill, ZunAllocator* a = ZunAllocatorGetSystem()) {
    const Text data(std::string(4 * words, fill));
    EXPECT_NE(ZunRtcpUnknownConstructFull(&get()->unk, type, 3, data.get(), a), nullptr);
  }
  operator const ZunRtcpSubpacket*() const { return get(); }
};

// An owned packet.
struct Packet : zun::rtcp::Owning<ZunRtcpPacket> {
  using Owning::Owning;
  Packet(const std::string& bytes, ZunAllocator* a) : Owning(a) { EXPECT_TRUE(Parse(bytes)); }
  operator ZunRtcpPacket*() { return get(); }
  operator const ZunRtcpPacket*() const { return get(); }

  bool Parse(const std::string& bytes) {
    const Datagram datagram(bytes);
    return ZunRtcpPacketParseNetworkPacket(get(), datagram) != 0;
  }
  ZunSizeT count() const { return ZunRtcpPacketGetSubpacketCount(get()); }
  ZunSizeT capacity() const { return ZunVector_ZunRtcpSubpacketCapacity(&get()->subpackets); }
  // The wire form, read from the objects without the writer.
  std::string bytes() const {
    std::string all;
    for (ZunSizeT i = 0; i < count(); ++i) {
      const ZunRtcpUnknown* const unknown = ZunRtcpSubpacketGetUnknown(ZunRtcpPacketGetSubpacket(get(), i));
      const std::string data = Str(ZunRtcpUnknownGetData(unknown));
      all += Wire(unknown->type, data.size() / 4, 0, ZunRtcpUnknownGetSubtype(unknown)).substr(0, 4) + data;
    }
    return all;
  }
};

// ---- construction

TEST(ZunRtcpPacket, DefaultIsEmptyAndWithoutStorage) {
  TestAllocator a;
  ZunRtcpPacket p;
  EXPECT_EQ(ZunRtcpPacketConstructDefault(&p, a), &p);
  EXPECT_EQ(ZunRtcpPacketGetAllocator(&p), a.get());
  EXPECT_EQ(ZunRtcpPacketGetSubpacketCount(&p), 0U);
  EXPECT_EQ(ZunRtcpPacketGetSubpackets(&p), &p.subpackets);
  EXPECT_EQ(p.subpackets.begin, nullptr);
  ZunRtcpPacketReset(&p);
  ZunRtcpPacketDestruct(&p);
  ZunRtcpPacketDestruct(&p);
  EXPECT_EQ(a.calls(), 0U);
}

TEST(ZunRtcpPacket, FromSubpacketsOfTheSameAllocatorIsACopy) {
  TestAllocator a;
  const Packet source(kFirst + kThird, a);
  const Packet empty(a.get());
  ZunRtcpPacket p;
  ASSERT_EQ(ZunRtcpPacketConstructFromSubpackets(&p, &source.get()->subpackets, a), &p);
  EXPECT_EQ(ZunRtcpPacketGetSubpacketCount(&p), 2U);
  EXPECT_EQ(ZunRtcpPacketGetAllocator(&p), a.get());
  ZunRtcpPacketDestruct(&p);
  ASSERT_EQ(ZunRtcpPacketConstructFromSubpackets(&p, &empty.get()->subpackets, a), &p);
  EXPECT_EQ(ZunRtcpPacketGetSubpacketCount(&p), 0U);
  ZunRtcpPacketDestruct(&p);
}

TEST(ZunRtcpPacket, FromSubpacketsOfAnotherAllocatorIsSet) {
  TestAllocator a;
  TestAllocator b;
  const Packet source(kFirst + kThird, b);
  Packet p;
  ASSERT_EQ(ZunRtcpPacketConstructFromSubpackets(p, &source.get()->subpackets, a), p.get());
  EXPECT_EQ(p.bytes(), kFirst + kThird);
  EXPECT_EQ(ZunRtcpPacketGetAllocator(p), a.get());
  EXPECT_EQ(p.get()->subpackets.begin[0].unk.data.allocator, b.get()) << "a copy takes the allocator of its source";
}

TEST(ZunRtcpPacket, FromNoSubpacketsOfAnotherAllocatorFails) {
  TestAllocator a;
  TestAllocator b;
  const Packet empty(b.get());
  ZunRtcpPacket p;
  EXPECT_EQ(ZunRtcpPacketConstructFromSubpackets(&p, &empty.get()->subpackets, a), nullptr);
  EXPECT_EQ(a.live_blocks(), 0U);
}

TEST(ZunRtcpPacket, FromNetworkPacketIsParsed) {
  TestAllocator a;
  Packet p;
  ASSERT_EQ(ZunRtcpPacketConstructFromNetworkPacket(p, Datagram(kFirst + kSecond), a), p.get());
  EXPECT_EQ(p.bytes(), kFirst + kSecond);
  EXPECT_EQ(ZunRtcpPacketGetAllocator(p), a.get());
  for (const std::string& bad : {std::string(), kFirst + "x", kFirst.substr(0, 11)}) {
    ZunRtcpPacket failed;
    const std::size_t live = a.live_blocks();
    EXPECT_EQ(ZunRtcpPacketConstructFromNetworkPacket(&failed, Datagram(bad), a), nullptr);
    EXPECT_EQ(a.live_blocks(), live);
  }
}

TEST(ZunRtcpPacket, CopyAndAssign) {
  TestAllocator a;
  TestAllocator b;
  const Packet source(kFirst + kThird, a);
  Packet copy;
  ASSERT_EQ(ZunRtcpPacketConstructCopy(copy, source), copy.get());
  EXPECT_EQ(copy.bytes(), kFirst + kThird);
  EXPECT_EQ(ZunRtcpPacketGetAllocator(copy), a.get());
  Packet assigned(b.get());
  EXPECT_EQ(ZunRtcpPacketAssign(assigned, source), assigned.get());
  EXPECT_EQ(assigned.bytes(), kFirst + kThird);
  EXPECT_EQ(ZunRtcpPacketGetAllocator(assigned), b.get());
  EXPECT_EQ(ZunRtcpPacketAssign(assigned, assigned), assigned.get());
  EXPECT_EQ(assigned.bytes(), kFirst + kThird);
  const Packet empty;
  EXPECT_EQ(ZunRtcpPacketAssign(assigned, empty), assigned.get());
  EXPECT_EQ(assigned.count(), 0U);
}

TEST(ZunRtcpPacket, RefusedConstructionOwnsNothing) {
  const std::function<ZunRtcpPacket*(ZunRtcpPacket*, const Packet&, ZunAllocator*)> constructors[] = {
      [](ZunRtcpPacket* p, const Packet& o, ZunAllocator*) { return ZunRtcpPacketConstructCopy(p, o); },
      [](ZunRtcpPacket* p, const Packet& o, ZunAllocator* a) {
        return ZunRtcpPacketConstructFromSubpackets(p, &o.get()->subpackets, a);
      },
      [](ZunRtcpPacket* p, const Packet& o, ZunAllocator*) {
        return ZunRtcpPacketConstructFromSubpackets(p, &o.get()->subpackets, ZunAllocatorGetSystem());
      },
      [](ZunRtcpPacket* p, const Packet& o, ZunAllocator* a) {
        return ZunRtcpPacketConstructFromNetworkPacket(p, Datagram(o.bytes()), a);
      },
  };
  for (const auto& construct : constructors) {
    const std::size_t allocations = ForEveryRefusalAfter([&](TestAllocator& a, const std::function<void()>& begin) {
      const Packet source(kFirst + kThird + kFirst, a);
      const std::size_t live = a.live_blocks();
      begin();
      ZunRtcpPacket p;
      ZunRtcpPacket* const result = construct(&p, source, a);
      EXPECT_EQ(result == nullptr, a.refused() > 0);
      if (result == nullptr) {
        EXPECT_EQ(a.live_blocks(), live);
      } else {
        ZunRtcpPacketDestruct(&p);
      }
    });
    EXPECT_GE(allocations, 3U);
  }
}

TEST(ZunRtcpPacket, RefusedAssignKeepsWhatWasDone) {
  ForEveryRefusalAfter([&](TestAllocator& a, const std::function<void()>& begin) {
    Packet p(kSecond + kFirst + kSecond, a);
    const Packet o(Wire(199, 9, 'x') + Wire(198, 8, 'y'), ZunAllocatorGetSystem());
    begin();
    const bool done = ZunRtcpPacketAssign(p, o) != nullptr;
    EXPECT_EQ(done, a.refused() == 0);
    if (done) {
      EXPECT_EQ(p.bytes(), o.bytes());
    } else {
      const std::string either[] = {kSecond + kFirst + kSecond, Wire(199, 9, 'x') + kFirst + kSecond};
      EXPECT_TRUE(p.bytes() == either[0] || p.bytes() == either[1]) << ToHex(p.bytes());
    }
  });
}

TEST(ZunRtcpPacket, ResetKeepsTheStorage) {
  TestAllocator a;
  Packet p(kFirst + kThird, a);
  ZunRtcpPacketReset(p);
  EXPECT_EQ(p.count(), 0U);
  EXPECT_EQ(p.capacity(), 2U);
  EXPECT_EQ(a.live_blocks(), 1U);
}

TEST(ZunRtcpPacket, DestructReleasesEverythingAndMayBeRepeated) {
  TestAllocator a;
  Packet p(kFirst + kThird, a);
  ZunRtcpPacketDestruct(p);
  EXPECT_EQ(a.live_blocks(), 0U);
  EXPECT_EQ(p.count(), 0U);
  const std::size_t calls = a.calls();
  ZunRtcpPacketDestruct(p);
  EXPECT_EQ(a.calls(), calls);
}

// ---- editing the sequence

TEST(ZunRtcpPacket, SetSubpacketsReplacesThem) {
  TestAllocator a;
  const Packet source(kThird + kFirst + kSecond, ZunAllocatorGetSystem());
  Packet p(kFirst, a);
  EXPECT_EQ(ZunRtcpPacketSetSubpackets(p, &source.get()->subpackets), 1);
  EXPECT_EQ(p.bytes(), kThird + kFirst + kSecond);
  EXPECT_EQ(ZunRtcpPacketGetAllocator(p), a.get());
  EXPECT_EQ(ZunRtcpPacketSetSubpackets(p, ZunRtcpPacketGetSubpackets(p)), 1);
  EXPECT_EQ(p.bytes(), kThird + kFirst + kSecond);
}

TEST(ZunRtcpPacket, SetSubpacketsWithAnEmptyVectorFails) {
  const Packet empty;
  Packet p(kFirst, ZunAllocatorGetSystem());
  EXPECT_EQ(ZunRtcpPacketSetSubpackets(p, &empty.get()->subpackets), 0);
  EXPECT_EQ(p.bytes(), kFirst);
}

TEST(ZunRtcpPacket, SetSubpacketCountBelowDropsTheSurplus) {
  TestAllocator a;
  Packet p(kFirst + kSecond + kThird, a);
  EXPECT_EQ(ZunRtcpPacketSetSubpacketCount(p, 3), 1);
  EXPECT_EQ(ZunRtcpPacketSetSubpacketCount(p, 1), 1);
  EXPECT_EQ(p.bytes(), kFirst);
  EXPECT_EQ(p.capacity(), 4U);
  EXPECT_EQ(ZunRtcpPacketSetSubpacketCount(p, 0), 1);
  EXPECT_EQ(p.count(), 0U);
}

TEST(ZunRtcpPacket, SetSubpacketCountAboveOnlyReserves) {
  TestAllocator a;
  Packet p(kFirst + kSecond, a);
  EXPECT_EQ(ZunRtcpPacketSetSubpacketCount(p, 7), 1);
  EXPECT_EQ(p.bytes(), kFirst + kSecond);
  EXPECT_EQ(p.capacity(), 7U);
  const std::size_t calls = a.calls();
  EXPECT_EQ(ZunRtcpPacketSetSubpacketCount(p, 5), 1);
  EXPECT_EQ(p.capacity(), 7U);
  EXPECT_EQ(a.calls(), calls);
  EXPECT_EQ(ZunRtcpPacketSetSubpacketCount(p, SIZE_MAX), 0);
  a.RefuseFrom(0);
  EXPECT_EQ(ZunRtcpPacketSetSubpacketCount(p, 8), 0);
  EXPECT_EQ(p.capacity(), 7U);
  EXPECT_EQ(p.bytes(), kFirst + kSecond);
}

TEST(ZunRtcpPacket, GetSubpacketBelowTheCountOnly) {
  const Packet p(kFirst + kSecond, ZunAllocatorGetSystem());
  EXPECT_EQ(ZunRtcpPacketGetSubpacket(p, 0), p.get()->subpackets.begin);
  EXPECT_EQ(ZunRtcpPacketGetSubpacket(p, 1), p.get()->subpackets.begin + 1);
  EXPECT_EQ(ZunRtcpPacketGetSubpacket(p, 2), nullptr);
  EXPECT_EQ(ZunRtcpPacketGetSubpacket(p, SIZE_MAX), nullptr);
  EXPECT_EQ(ZunRtcpPacketGetSubpacket(Packet(), 0), nullptr);
}

TEST(ZunRtcpPacket, SetSubpacketBelowTheCountAssigns) {
  TestAllocator a;
  TestAllocator b;
  Packet p(kFirst + kSecond, a);
  const Unknown sp(199, 7, 'x', b);
  EXPECT_EQ(ZunRtcpPacketSetSubpacket(p, 0, sp), 1);
  EXPECT_EQ(p.bytes(), Wire(199, 7, 'x') + kSecond);
  EXPECT_EQ(p.get()->subpackets.begin->unk.data.allocator, a.get()) << "the one that was there keeps its allocator";
}

TEST(ZunRtcpPacket, SetSubpacketAtTheCountAppends) {
  TestAllocator a;
  TestAllocator b;
  Packet p(a.get());
  const Unknown sp(199, 1, 'x', b);
  EXPECT_EQ(ZunRtcpPacketSetSubpacket(p, 0, sp), 1);
  EXPECT_EQ(ZunRtcpPacketSetSubpacket(p, 1, sp), 1);
  EXPECT_EQ(p.bytes(), Wire(199, 1, 'x') + Wire(199, 1, 'x'));
  EXPECT_EQ(p.get()->subpackets.begin->unk.data.allocator, b.get());
}

TEST(ZunRtcpPacket, SetSubpacketAboveTheCountFails) {
  Packet p(kFirst, ZunAllocatorGetSystem());
  const Unknown sp(199, 1, 'x');
  EXPECT_EQ(ZunRtcpPacketSetSubpacket(p, 2, sp), 0);
  EXPECT_EQ(ZunRtcpPacketSetSubpacket(p, SIZE_MAX, sp), 0);
  EXPECT_EQ(p.bytes(), kFirst);
}

TEST(ZunRtcpPacket, SetSubpacketToOneOfItsOwn) {
  TestAllocator a;
  Packet p(kFirst + kSecond + kThird, a);
  EXPECT_EQ(ZunRtcpPacketSetSubpacket(p, 0, ZunRtcpPacketGetSubpacket(p, 0)), 1);
  EXPECT_EQ(ZunRtcpPacketSetSubpacket(p, 1, ZunRtcpPacketGetSubpacket(p, 2)), 1);
  EXPECT_EQ(p.bytes(), kFirst + kThird + kThird);
  EXPECT_EQ(ZunRtcpPacketSetSubpacket(p, 3, ZunRtcpPacketGetSubpacket(p, 0)), 1);
  EXPECT_EQ(ZunRtcpPacketSetSubpacket(p, 4, ZunRtcpPacketGetSubpacket(p, 0)), 1);
  EXPECT_EQ(p.bytes(), kFirst + kThird + kThird + kFirst + kFirst);
}

TEST(ZunRtcpPacket, AppendSubpacketGrowsLikeAVectorAndKeepsTheAllocatorOfTheSubpacket) {
  TestAllocator a;
  TestAllocator b;
  Packet p(a.get());
  const Unknown sp(199, 1, 'x', b);
  std::string expected;
  for (const ZunSizeT capacity : {2U, 2U, 4U, 4U, 8U}) {
    ASSERT_EQ(ZunRtcpPacketAppendSubpacket(p, sp), 1);
    expected += Wire(199, 1, 'x');
    EXPECT_EQ(p.capacity(), capacity);
    EXPECT_EQ(p.get()->subpackets.end[-1].unk.data.allocator, b.get());
  }
  EXPECT_EQ(p.bytes(), expected);
  EXPECT_EQ(a.live_blocks(), 1U);
}

TEST(ZunRtcpPacket, AppendSubpacketOfItsOwn) {
  TestAllocator a;
  Packet p(kFirst + kThird, a);
  ASSERT_EQ(p.capacity(), 2U) << "so that it must grow";
  EXPECT_EQ(ZunRtcpPacketAppendSubpacket(p, ZunRtcpPacketGetSubpacket(p, 0)), 1);
  EXPECT_EQ(ZunRtcpPacketAppendSubpacket(p, ZunRtcpPacketGetSubpacket(p, 1)), 1);
  EXPECT_EQ(p.bytes(), kFirst + kThird + kFirst + kThird);
}

TEST(ZunRtcpPacket, AppendSubpacketsAppendsAll) {
  TestAllocator a;
  const Packet source(kThird + kSecond, ZunAllocatorGetSystem());
  const Packet empty;
  Packet p(a.get());
  EXPECT_EQ(ZunRtcpPacketAppendSubpackets(p, &empty.get()->subpackets), 1);
  EXPECT_EQ(a.calls(), 0U);
  EXPECT_EQ(ZunRtcpPacketAppendSubpackets(p, &source.get()->subpackets), 1);
  EXPECT_EQ(p.capacity(), 4U);
  EXPECT_EQ(ZunRtcpPacketAppendSubpackets(p, &source.get()->subpackets), 1);
  EXPECT_EQ(ZunRtcpPacketAppendSubpackets(p, &empty.get()->subpackets), 1);
  EXPECT_EQ(p.bytes(), kThird + kSecond + kThird + kSecond);
}

TEST(ZunRtcpPacket, AppendSubpacketsOfItsOwn) {
  TestAllocator a;
  for (const ZunSizeT capacity : {3U, 20U}) {
    Packet p(kFirst + kSecond + kThird, a);
    ASSERT_EQ(ZunRtcpPacketSetSubpacketCount(p, capacity), 1);
    EXPECT_EQ(ZunRtcpPacketAppendSubpackets(p, ZunRtcpPacketGetSubpackets(p)), 1);
    EXPECT_EQ(p.bytes(), kFirst + kSecond + kThird + kFirst + kSecond + kThird);
  }
}

TEST(ZunRtcpPacket, RefusedEditsLeaveTheSubpackets) {
  const std::function<ZunBool(ZunRtcpPacket*, const Packet&)> edits[] = {
      [](ZunRtcpPacket* p, const Packet& o) {
        return ZunRtcpPacketAppendSubpacket(p, ZunRtcpPacketGetSubpacket(o, 0));
      },
      [](ZunRtcpPacket* p, const Packet&) { return ZunRtcpPacketAppendSubpacket(p, ZunRtcpPacketGetSubpacket(p, 0)); },
      [](ZunRtcpPacket* p, const Packet& o) {
        return ZunRtcpPacketSetSubpacket(p, 2, ZunRtcpPacketGetSubpacket(o, 0));
      },
      [](ZunRtcpPacket* p, const Packet& o) {
        return ZunRtcpPacketSetSubpacket(p, 0, ZunRtcpPacketGetSubpacket(o, 0));
      },
      [](ZunRtcpPacket* p, const Packet& o) { return ZunRtcpPacketAppendSubpackets(p, &o.get()->subpackets); },
      [](ZunRtcpPacket* p, const Packet&) { return ZunRtcpPacketAppendSubpackets(p, &p->subpackets); },
      [](ZunRtcpPacket* p, const Packet&) { return ZunRtcpPacketSetSubpacketCount(p, 9); },
  };
  for (const auto& edit : edits) {
    const std::size_t allocations = ForEveryRefusalAfter([&](TestAllocator& a, const std::function<void()>& begin) {
      Packet p(kFirst + kSecond, a);
      const Packet more(kThird + Wire(199, 30, 'x'), a);
      begin();
      const bool done = edit(p, more) != 0;
      EXPECT_EQ(done, a.refused() == 0);
      if (!done) {
        EXPECT_EQ(p.bytes(), kFirst + kSecond);
      }
    });
    EXPECT_GE(allocations, 1U);
  }
}

// ---- parse

TEST(ZunRtcpPacketParse, EverySubpacketIsReadInOrder) {
  TestAllocator a;
  Packet p(a.get());
  ASSERT_TRUE(p.Parse(kFirst + kSecond + kThird));
  ASSERT_EQ(p.count(), 3U);
  EXPECT_EQ(p.bytes(), kFirst + kSecond + kThird);
  const ZunRtcpSubpacket* const third = ZunRtcpPacketGetSubpacket(p, 2);
  EXPECT_EQ(ZunRtcpSubpacketGetType(third), 255);
  EXPECT_EQ(ZunRtcpUnknownGetSubtype(ZunRtcpSubpacketGetUnknown(third)), 31);
  EXPECT_EQ(ZunRtcpUnknownGetData(ZunRtcpSubpacketGetUnknown(third))->size, 20U);
}

TEST(ZunRtcpPacketParse, EmptyBufferFailsAndLeavesThePacket) {
  TestAllocator a;
  Packet p(kFirst + kSecond, a);
  const std::size_t calls = a.calls();
  EXPECT_FALSE(p.Parse(""));
  EXPECT_EQ(p.bytes(), kFirst + kSecond);
  EXPECT_EQ(a.calls(), calls);
  Packet fresh(a.get());
  EXPECT_FALSE(fresh.Parse(""));
  EXPECT_EQ(fresh.count(), 0U);
}

TEST(ZunRtcpPacketParse, ReceiverReportGoesToItsRow) {
  const std::string report = Golden("RrOneBlock");
  Packet p;
  ASSERT_TRUE(p.Parse(report));
  ASSERT_EQ(p.count(), 1U);
  EXPECT_EQ(ZunRtcpSubpacketGetType(ZunRtcpPacketGetSubpacket(p, 0)), ZUN_RTCPSUBPACKET_TYPE_RR);
  Text out;
  ASSERT_TRUE(ZunRtcpPacketGetNetworkPacket(p, out));
  EXPECT_EQ(out.str(), report);
  EXPECT_FALSE(p.Parse(report + Hex("00 00")));
}

TEST(ZunRtcpPacketParse, OnlyVersionTwoIsReadAndThePaddingBitIsIgnored) {
  for (const std::string& front : {std::string(), kFirst}) {
    for (int first = 0; first < 256; ++first) {
      std::string bytes = Wire(100, 1);
      bytes[0] = static_cast<char>(first);
      Packet p;
      const bool is_version_two = first >> 6 == 2;
      EXPECT_EQ(p.Parse(front + bytes), is_version_two) << first;
      if (!is_version_two) continue;
      ASSERT_EQ(p.count(), front.empty() ? 1U : 2U);
      EXPECT_EQ(ZunRtcpUnknownGetSubtype(&p.get()->subpackets.end[-1].unk), first & 31);
    }
  }
}

// A length field of 0 is a header alone.
TEST(ZunRtcpPacketParse, HeaderAloneIsASubpacketWithoutBody) {
  Packet p;
  ASSERT_TRUE(p.Parse(kSecond));
  ASSERT_EQ(p.count(), 1U);
  EXPECT_EQ(ZunRtcpSubpacketGetNetworkPacketLength(ZunRtcpPacketGetSubpacket(p, 0)), 4U);
  ASSERT_TRUE(p.Parse(kSecond + kSecond + kSecond));
  EXPECT_EQ(p.count(), 3U);
}

TEST(ZunRtcpPacketParse, LongestBody) {
  const std::string longest = Wire(100, 0xFFFF);
  Packet p;
  ASSERT_TRUE(p.Parse(longest));
  EXPECT_EQ(p.bytes(), longest);
  EXPECT_FALSE(p.Parse(longest.substr(0, longest.size() - 1)));
  EXPECT_EQ(ZunRtcpPacketGetNetworkPacketLength(p), 262144U);
}

// Cut at every length: it parses exactly where a subpacket ends. Into a fresh packet, what was read before stays.
TEST(ZunRtcpPacketParse, TruncationAtEveryLength) {
  const std::string whole = kFirst + kSecond + kThird;
  const ZunSizeT ends[] = {kFirst.size(), kFirst.size() + kSecond.size(), whole.size()};
  for (ZunSizeT size = 1; size <= whole.size(); ++size) {
    TestAllocator a;
    const auto complete = static_cast<ZunSizeT>(
        std::count_if(std::begin(ends), std::end(ends), [&](ZunSizeT end) { return end <= size; }));
    const bool is_whole = complete > 0 && ends[complete - 1] == size;
    Packet fresh(a.get());
    EXPECT_EQ(fresh.Parse(whole.substr(0, size)), is_whole) << size;
    EXPECT_EQ(fresh.bytes(), whole.substr(0, complete == 0 ? 0 : ends[complete - 1]));

    // Into a used one: the new ones in front, the old ones after them.
    Packet used(kThird + kThird + kThird + kThird, a);
    EXPECT_EQ(used.Parse(whole.substr(0, size)), is_whole) << size;
    const std::string read = whole.substr(0, complete == 0 ? 0 : ends[complete - 1]);
    std::string kept;
    for (ZunSizeT i = complete; i < 4 && !is_whole; ++i) kept += kThird;
    EXPECT_EQ(used.bytes(), read + kept);
  }
}

TEST(ZunRtcpPacketParse, TrailingBytesFail) {
  for (ZunSizeT extra = 1; extra <= 3; ++extra) {
    Packet p;
    EXPECT_FALSE(p.Parse(kFirst + Wire(192, 0).substr(0, extra)));
    EXPECT_EQ(p.bytes(), kFirst);
  }
  Packet p;
  EXPECT_FALSE(p.Parse(kFirst + Hex("00 00 00 00")));
  EXPECT_FALSE(p.Parse(kFirst + Hex("80 64 00 01")));
}

// The announced length counts, whatever the kind would have been content with: the body lacks its last word.
TEST(ZunRtcpPacketParse, LengthPastTheBufferFailsForEveryType) {
  for (const int type : {200, 201, 202, 203, 204, 205, 206, 100}) {
    const std::string complete = Wire(type, 10, '\0', 0);
    Packet p;
    EXPECT_FALSE(p.Parse(complete.substr(0, complete.size() - 4))) << type;
    EXPECT_FALSE(p.Parse(complete.substr(0, complete.size() - 1))) << type;
    EXPECT_EQ(p.count(), 0U);
  }
}

TEST(ZunRtcpPacketParse, FewerSubpacketsThanBefore) {
  TestAllocator a;
  Packet p(kFirst + kSecond + kThird, a);
  ASSERT_TRUE(p.Parse(kThird + kFirst));
  EXPECT_EQ(p.bytes(), kThird + kFirst);
  EXPECT_EQ(p.capacity(), 4U);
}

TEST(ZunRtcpPacketParse, MoreSubpacketsThanBefore) {
  TestAllocator a;
  Packet p(kFirst + kSecond + kThird, a);
  ASSERT_TRUE(p.Parse(kSecond + kThird + kThird + kFirst));
  EXPECT_EQ(p.bytes(), kSecond + kThird + kThird + kFirst);
  ASSERT_TRUE(p.Parse(kFirst + kFirst + kFirst + kFirst + kFirst));
  EXPECT_EQ(p.count(), 5U);
  EXPECT_EQ(p.capacity(), 8U);
}

TEST(ZunRtcpPacketParse, SubpacketsTakeThePacketsAllocator) {
  TestAllocator a;
  TestAllocator of_buffer;
  const Datagram datagram(kFirst + kThird, of_buffer);
  Packet p(a.get());
  ASSERT_TRUE(ZunRtcpPacketParseNetworkPacket(p, datagram));
  for (ZunSizeT i = 0; i < 2; ++i) EXPECT_EQ(p.get()->subpackets.begin[i].unk.data.allocator, a.get());
  EXPECT_EQ(of_buffer.calls(), 0U);
}

TEST(ZunRtcpPacketParse, SubpacketsReadInPlaceKeepTheirAllocator) {
  TestAllocator a;
  TestAllocator of_subpacket;
  Packet p(a.get());
  const Unknown sp(199, 1, 'x', of_subpacket);
  ASSERT_TRUE(ZunRtcpPacketAppendSubpacket(p, sp));
  ASSERT_TRUE(p.Parse(kFirst + kThird));
  EXPECT_EQ(p.bytes(), kFirst + kThird);
  EXPECT_EQ(p.get()->subpackets.begin[0].unk.data.allocator, of_subpacket.get());
  EXPECT_EQ(p.get()->subpackets.begin[1].unk.data.allocator, a.get());
}

TEST(ZunRtcpPacketParse, SubpacketOfAnotherKindIsRebuiltWithThePacketsAllocator) {
  const std::string report = Hex("80 C9 00 01 00 00 00 01");
  TestAllocator a;
  TestAllocator of_subpacket;
  Packet p(a.get());
  const Unknown sp(199, 3, 'x', of_subpacket);
  ASSERT_TRUE(ZunRtcpPacketAppendSubpacket(p, sp));
  const std::size_t live = of_subpacket.live_blocks();
  ASSERT_TRUE(p.Parse(report));
  EXPECT_EQ(of_subpacket.live_blocks(), live - 1);
  ASSERT_TRUE(p.Parse(kFirst));
  EXPECT_EQ(p.bytes(), kFirst);
  EXPECT_EQ(p.get()->subpackets.begin[0].unk.data.allocator, a.get());
}

TEST(ZunRtcpPacketParse, SameShapeInPlaceMakesNoAllocatorCall) {
  TestAllocator a;
  const std::string whole = kFirst + kSecond + kThird;
  Packet p(whole, a);
  const std::size_t calls = a.calls();
  for (int i = 0; i < 3; ++i) {
    ASSERT_TRUE(p.Parse(whole));
    EXPECT_EQ(p.bytes(), whole);
    const std::string other = Wire(199, 2, 'z') + Wire(0, 0) + Wire(100, 5, 'q');
    ASSERT_TRUE(p.Parse(other));
    EXPECT_EQ(p.bytes(), other);
  }
  EXPECT_EQ(a.calls(), calls);
}

TEST(ZunRtcpPacketParse, NothingIsLogged) {
  LogCapture log;
  Packet p;
  EXPECT_FALSE(p.Parse(""));
  EXPECT_FALSE(p.Parse("abc"));
  EXPECT_FALSE(p.Parse(Hex("41 64 00 00")));
  EXPECT_FALSE(p.Parse(Hex("81 64 00 01")));
  EXPECT_TRUE(p.Parse(kFirst));
  log.ExpectNone();
}

// After a refusal: what was read is there, the one being read is the old one or the new one or gone, and the old
// ones after it stay.
TEST(ZunRtcpPacketParse, RefusedParseIntoAFreshPacket) {
  const std::string pieces[] = {kFirst, kThird, kSecond, kThird, kFirst};
  std::string whole;
  for (const std::string& piece : pieces) whole += piece;
  const std::size_t allocations = ForEveryRefusal([&](TestAllocator& a) {
    Packet p(a.get());
    const bool done = p.Parse(whole);
    EXPECT_EQ(done, a.refused() == 0);
    EXPECT_EQ(p.bytes(), whole.substr(0, p.bytes().size()));
    if (done) {
      EXPECT_EQ(p.count(), 5U);
    } else {
      EXPECT_LT(p.count(), 5U);
    }
    a.RefuseNothing();
    EXPECT_TRUE(p.Parse(whole)) << "the packet can be used again";
    EXPECT_EQ(p.bytes(), whole);
  });
  EXPECT_EQ(allocations, 1U + 4U) << "one for the vector, one for each subpacket that has a body";
}

TEST(ZunRtcpPacketParse, RefusedParseIntoAUsedPacket) {
  const std::string old_ones[] = {Wire(199, 1, 'o'), Wire(198, 1, 'p'), Wire(197, 1, 'q')};
  const std::string new_ones[] = {Wire(100, 4, 'x'), Wire(101, 30, 'y'), Wire(102, 1, 'z'), Wire(103, 9, 'w')};
  const std::string whole = new_ones[0] + new_ones[1] + new_ones[2] + new_ones[3];
  ForEveryRefusalAfter([&](TestAllocator& a, const std::function<void()>& begin) {
    Packet p(old_ones[0] + old_ones[1] + old_ones[2], a);
    begin();
    const bool done = p.Parse(whole);
    EXPECT_EQ(done, a.refused() == 0);
    if (done) {
      EXPECT_EQ(p.bytes(), whole);
      return;
    }
    ASSERT_EQ(p.count(), 3U);
    std::string states[4];
    for (ZunSizeT read = 0; read <= 3; ++read) {
      for (ZunSizeT i = 0; i < 3; ++i) states[read] += i < read ? new_ones[i] : old_ones[i];
    }
    EXPECT_NE(std::find(std::begin(states), std::end(states), p.bytes()), std::end(states)) << ToHex(p.bytes());
  });
}

// Any datagram of the pieces, whole or damaged, into any used packet: as into a fresh one.
TEST(ZunRtcpPacketParse, UsedPacketsReadLikeFreshOnes) {
  std::mt19937 random(31337);
  TestAllocator a;
  Packet used(a.get());
  for (int round = 0; round < 2000; ++round) {
    std::string bytes;
    for (auto i = random() % 5; i > 0; --i) {
      bytes += Wire(static_cast<int>(random() % 200), random() % 6, static_cast<char>(random()),
                    static_cast<int>(random() % 32));
    }
    if (random() % 4 == 0 && !bytes.empty()) bytes[random() % bytes.size()] = static_cast<char>(random());
    if (random() % 8 == 0) bytes.resize(random() % (bytes.size() + 1));
    Packet fresh;
    const bool done = fresh.Parse(bytes);
    EXPECT_EQ(used.Parse(bytes), done);
    // Damage may have made a known type of it, whose kind may read a body that it writes in another form.
    const bool is_opaque =
        std::all_of(fresh.get()->subpackets.begin, fresh.get()->subpackets.end,
                    [](const ZunRtcpSubpacket& sp) { return ZunRtcpSubpacketTypeIsUnknown(sp.unk.type) != 0; });
    if (!done || !is_opaque) continue;
    Text from_fresh;
    Text from_used;
    ASSERT_TRUE(ZunRtcpPacketGetNetworkPacket(fresh, from_fresh));
    ASSERT_TRUE(ZunRtcpPacketGetNetworkPacket(used, from_used));
    EXPECT_EQ(from_used.str(), from_fresh.str());
    EXPECT_EQ(from_fresh->size, bytes.size());
    EXPECT_EQ(ZunRtcpPacketGetNetworkPacketLength(fresh), bytes.size());
  }
}

// ---- write and length

TEST(ZunRtcpPacketWrite, LengthIsTheSumOfAll) {
  Packet p;
  EXPECT_EQ(ZunRtcpPacketGetNetworkPacketLength(p), 0U);
  ASSERT_TRUE(p.Parse(kFirst + kSecond + kThird));
  EXPECT_EQ(ZunRtcpPacketGetNetworkPacketLength(p), 12U + 4U + 24U);
}

TEST(ZunRtcpPacketWrite, EmptyPacketWritesNothing) {
  const Packet p;
  Text out("before");
  EXPECT_EQ(ZunRtcpPacketGetNetworkPacket(p, out), 0);
  EXPECT_EQ(out.str(), "before");
}

TEST(ZunRtcpPacketWrite, OutputReplacesWhatTheStringHeld) {
  const Packet p(kFirst + kSecond + kThird, ZunAllocatorGetSystem());
  Text out("before");
  EXPECT_EQ(ZunRtcpPacketGetNetworkPacket(p, out), 1);
  EXPECT_EQ(out.str(), kFirst + kSecond + kThird);
}

TEST(ZunRtcpPacketWrite, PaddingBitIsNeverWritten) {
  std::string padded = kFirst + kThird;
  padded[0] = static_cast<char>(padded[0] | 0x20);
  padded[kFirst.size()] = static_cast<char>(padded[kFirst.size()] | 0x20);
  const Packet p(padded, ZunAllocatorGetSystem());
  Text out;
  ASSERT_TRUE(ZunRtcpPacketGetNetworkPacket(p, out));
  EXPECT_EQ(out.str(), kFirst + kThird);
}

TEST(ZunRtcpPacketWrite, UsedStringMakesNoAllocatorCall) {
  TestAllocator of_packet;
  TestAllocator a;
  const Packet p(kFirst + kSecond + kThird, of_packet);
  Text out(a.get());
  ASSERT_TRUE(ZunRtcpPacketGetNetworkPacket(p, out));
  const std::size_t calls = a.calls() + of_packet.calls();
  for (int i = 0; i < 3; ++i) {
    ASSERT_TRUE(ZunRtcpPacketGetNetworkPacket(p, out));
    EXPECT_EQ(ZunRtcpPacketGetNetworkPacketLength(p), out->size);
    ZunSizeT last = 0;
    ASSERT_TRUE(ZunRtcpPacketGetPartialNetworkPacket(p, out, 1, 1000, nullptr, &last));
  }
  EXPECT_EQ(a.calls() + of_packet.calls(), calls);
}

TEST(ZunRtcpPacketWrite, RefusedWriteLeavesABeginning) {
  const Packet p(kFirst + Wire(199, 50, 'x') + kThird + Wire(198, 400, 'y'), ZunAllocatorGetSystem());
  const std::string whole = p.bytes();
  const std::size_t allocations = ForEveryRefusal([&](TestAllocator& a) {
    Text out(a.get());
    const bool done = ZunRtcpPacketGetNetworkPacket(p, out) != 0;
    EXPECT_EQ(out.str(), whole.substr(0, out->size));
    if (done) {
      EXPECT_EQ(out->size, whole.size());
    }
    if (a.refused() > 1) {
      EXPECT_FALSE(done);
    }
  });
  EXPECT_GE(allocations, 2U);
}

// Room for so many bytes: whole subpackets, then a header byte by byte, then its data whole or not at all.
TEST(ZunRtcpPacketWrite, CrampedStringTakesWhatFits) {
  const Packet p(kFirst + kThird, ZunAllocatorGetSystem());
  const std::string whole = kFirst + kThird;
  for (ZunSizeT room = 1; room <= whole.size(); ++room) {
    TestAllocator a;
    const Text filler(std::string(room, 'f'));
    Text out(a.get());
    ASSERT_NE(ZunStringAssign(out, filler.get()), nullptr);
    ASSERT_EQ(out->capacity, room);
    a.RefuseFrom(0);
    EXPECT_EQ(ZunRtcpPacketGetNetworkPacket(p, out), room == whole.size() ? 1 : 0);
    const ZunSizeT fits = room == whole.size() ? room
                          : room >= 12         ? std::min<ZunSizeT>(room, 16)
                                               : std::min<ZunSizeT>(room, 4);
    EXPECT_EQ(out.str(), whole.substr(0, fits)) << room;
  }
}

// ---- partial write

struct Partial {
  ZunBool done = 0;
  ZunSizeT last = 777;
  std::string bytes;
};

Partial Write(const ZunRtcpPacket* p, ZunSizeT first, ZunSizeT max_size, const Subpackets* prefix) {
  Partial partial;
  Text out("before");
  partial.done = ZunRtcpPacketGetPartialNetworkPacket(p, out, first, max_size, prefix, &partial.last);
  partial.bytes = out.str();
  return partial;
}

class ZunRtcpPacketPartialWrite : public ::testing::Test {
 protected:
  ZunRtcpPacketPartialWrite()
      : p_(kFirst + kSecond + kThird, ZunAllocatorGetSystem()), prefix_(Wire(199, 1, 'p'), ZunAllocatorGetSystem()) {}

  void ExpectWarning(ZunSizeT max_size, ZunSizeT first, unsigned type, ZunSizeT size, ZunSizeT prefix_size) {
    log_.ExpectOne(ZUN_LOG_WARNING, ZunLogRtcp_, "ZunRtcpPacketGetPartialNetworkPacket",
                   "Partial network packet must violate maxSize " + std::to_string(max_size) + ": first subpacket " +
                       std::to_string(first) + " (type " + std::to_string(type) + ") is " + std::to_string(size) +
                       " bytes (after " + std::to_string(prefix_size) + " byte prefix)");
  }

  LogCapture log_;
  const Packet p_;
  const Packet prefix_;
  const std::string prefix_bytes_ = Wire(199, 1, 'p');
};

TEST_F(ZunRtcpPacketPartialWrite, EverythingFits) {
  for (const ZunSizeT max_size : {ZunSizeT{40}, ZunSizeT{41}, SIZE_MAX}) {
    const Partial partial = Write(p_, 0, max_size, nullptr);
    EXPECT_EQ(partial.done, 1);
    EXPECT_EQ(partial.last, 3U);
    EXPECT_EQ(partial.bytes, kFirst + kSecond + kThird);
  }
  log_.ExpectNone();
}

TEST_F(ZunRtcpPacketPartialWrite, BeginsAtTheFirstAskedFor) {
  const Partial partial = Write(p_, 1, 1000, nullptr);
  EXPECT_EQ(partial.done, 1);
  EXPECT_EQ(partial.last, 3U);
  EXPECT_EQ(partial.bytes, kSecond + kThird);
  log_.ExpectNone();
}

// Every size: whole subpackets in order while they fit, at least the first one.
TEST_F(ZunRtcpPacketPartialWrite, EverySizeTakesWhatFits) {
  for (ZunSizeT max_size = 0; max_size <= 45; ++max_size) {
    const Partial partial = Write(p_, 0, max_size, nullptr);
    EXPECT_EQ(partial.done, 1);
    EXPECT_EQ(partial.last, max_size >= 40 ? 3U : max_size >= 16 ? 2U : 1U);
    EXPECT_EQ(partial.bytes, (kFirst + kSecond + kThird).substr(0, max_size >= 40 ? 40 : max_size >= 16 ? 16 : 12));
    if (max_size < 12) {
      ExpectWarning(max_size, 0, 100, 12, 0);
    } else {
      log_.ExpectNone();
    }
  }
}

TEST_F(ZunRtcpPacketPartialWrite, LaterSubpacketThatWouldFitIsNotTakenOutOfTurn) {
  const Packet p(kFirst + kThird + kSecond, ZunAllocatorGetSystem());
  const Partial partial = Write(p, 0, 16, nullptr);
  EXPECT_EQ(partial.last, 1U);
  EXPECT_EQ(partial.bytes, kFirst);
}

TEST_F(ZunRtcpPacketPartialWrite, PrefixAndFirstSubpacketFitExactly) {
  const Partial partial = Write(p_, 0, 8 + 12, &prefix_.get()->subpackets);
  EXPECT_EQ(partial.done, 1);
  EXPECT_EQ(partial.last, 1U);
  EXPECT_EQ(partial.bytes, prefix_bytes_ + kFirst);
  log_.ExpectNone();
}

TEST_F(ZunRtcpPacketPartialWrite, OneByteLessWarnsAndWritesTheSameBytes) {
  const Partial partial = Write(p_, 0, 8 + 12 - 1, &prefix_.get()->subpackets);
  EXPECT_EQ(partial.done, 1);
  EXPECT_EQ(partial.last, 1U);
  EXPECT_EQ(partial.bytes, prefix_bytes_ + kFirst);
  log_.ExpectOne(ZUN_LOG_WARNING, ZunLogRtcp_, "ZunRtcpPacketGetPartialNetworkPacket",
                 "Partial network packet must violate maxSize 19: first subpacket 0 (type 100) is 12 bytes (after 8 "
                 "byte prefix)");
}

TEST_F(ZunRtcpPacketPartialWrite, PrefixIsWrittenWhateverItsSize) {
  for (const ZunSizeT max_size : {0U, 1U, 7U, 8U}) {
    const Partial partial = Write(p_, 2, max_size, &prefix_.get()->subpackets);
    EXPECT_EQ(partial.done, 1);
    EXPECT_EQ(partial.last, 3U);
    EXPECT_EQ(partial.bytes, prefix_bytes_ + kThird);
    ExpectWarning(max_size, 2, 255, 24, 8);
  }
}

TEST_F(ZunRtcpPacketPartialWrite, PrefixOfSeveralSubpackets) {
  const Packet prefix(kSecond + kSecond + kFirst, ZunAllocatorGetSystem());
  const Partial partial = Write(p_, 1, 20 + 4, &prefix.get()->subpackets);
  EXPECT_EQ(partial.last, 2U);
  EXPECT_EQ(partial.bytes, kSecond + kSecond + kFirst + kSecond);
  log_.ExpectNone();
}

TEST_F(ZunRtcpPacketPartialWrite, EmptyPrefixIsNone) {
  const Packet empty;
  const Partial partial = Write(p_, 0, 12, &empty.get()->subpackets);
  EXPECT_EQ(partial.done, 1);
  EXPECT_EQ(partial.bytes, kFirst);
}

TEST_F(ZunRtcpPacketPartialWrite, OwnSubpacketsMayBeThePrefix) {
  const Partial partial = Write(p_, 0, 40 + 12, &p_.get()->subpackets);
  EXPECT_EQ(partial.last, 1U);
  EXPECT_EQ(partial.bytes, kFirst + kSecond + kThird + kFirst);
}

TEST_F(ZunRtcpPacketPartialWrite, FirstAtOrAboveTheCountFails) {
  const Packet empty;
  const ZunRtcpPacket* const packets[] = {p_, p_, p_, empty, empty};
  const ZunSizeT firsts[] = {3, 4, SIZE_MAX, 0, 1};
  for (int i = 0; i < 5; ++i) {
    const Partial partial = Write(packets[i], firsts[i], 1000, &prefix_.get()->subpackets);
    EXPECT_EQ(partial.done, 0);
    EXPECT_EQ(partial.last, 777U);
    EXPECT_EQ(partial.bytes, "before");
  }
  log_.ExpectNone();
}

TEST_F(ZunRtcpPacketPartialWrite, WarningNamesTypesAsUnsigned) {
  Packet p;
  const Unknown sp(-1, 1, 'x');
  ASSERT_TRUE(ZunRtcpPacketAppendSubpacket(p, sp));
  EXPECT_EQ(Write(p, 0, 7, nullptr).bytes, Hex("83 FF 00 01") + "xxxx");
  ExpectWarning(7, 0, 4294967295U, 8, 0);
}

// Repeated calls cover a long list without a gap, each datagram with the prefix and within its size.
TEST_F(ZunRtcpPacketPartialWrite, LongListGoesOutOverSeveralDatagrams) {
  std::string whole;
  for (std::size_t i = 0; i < 40; ++i)
    whole += Wire(static_cast<int>(100 + i), i * 7 % 11, static_cast<char>('a' + i % 26));
  const Packet p(whole, ZunAllocatorGetSystem());
  for (const ZunSizeT max_size : {52U, 60U, 100U, 333U, 5000U}) {
    std::string covered;
    int datagrams = 0;
    for (ZunSizeT first = 0; first != p.count();) {
      const Partial partial = Write(p, first, max_size, &prefix_.get()->subpackets);
      ASSERT_EQ(partial.done, 1);
      ASSERT_GT(partial.last, first);
      ASSERT_LE(partial.last, p.count());
      EXPECT_LE(partial.bytes.size(), max_size);
      ASSERT_EQ(partial.bytes.substr(0, 8), prefix_bytes_);
      if (partial.last < p.count()) {
        EXPECT_GT(
            partial.bytes.size() + ZunRtcpSubpacketGetNetworkPacketLength(ZunRtcpPacketGetSubpacket(p, partial.last)),
            max_size);
      }
      covered += partial.bytes.substr(8);
      first = partial.last;
      ++datagrams;
    }
    EXPECT_EQ(covered, whole);
    EXPECT_EQ(datagrams == 1, max_size == 5000);
  }
  log_.ExpectNone();
}

TEST_F(ZunRtcpPacketPartialWrite, EverySubpacketTooLongStillMakesProgress) {
  std::string covered;
  int calls = 0;
  for (ZunSizeT first = 0; first != 3; ++calls) {
    const Partial partial = Write(p_, first, 3, nullptr);
    ASSERT_EQ(partial.last, first + 1);
    covered += partial.bytes;
    first = partial.last;
  }
  EXPECT_EQ(calls, 3);
  EXPECT_EQ(covered, kFirst + kSecond + kThird);
  EXPECT_EQ(log_.entries().size(), 3U);
}

TEST_F(ZunRtcpPacketPartialWrite, RefusedWriteLeavesABeginningAndNoLast) {
  const Packet p(Wire(199, 50, 'x') + kThird + Wire(198, 400, 'y'), ZunAllocatorGetSystem());
  for (const ZunSizeT max_size : {0U, 250U, 5000U}) {
    const ZunSizeT count = max_size == 0 ? 1 : max_size == 250 ? 2 : 3;
    const std::string whole = prefix_bytes_ + p.bytes().substr(0, count == 1 ? 204 : count == 2 ? 228 : 1832);
    ForEveryRefusal([&](TestAllocator& a) {
      Text out(a.get());
      ZunSizeT last = 777;
      const bool done =
          ZunRtcpPacketGetPartialNetworkPacket(p, out, 0, max_size, &prefix_.get()->subpackets, &last) != 0;
      EXPECT_EQ(out.str(), whole.substr(0, out->size));
      EXPECT_EQ(last, done ? count : 777U);
      if (done) {
        EXPECT_EQ(out->size, whole.size());
      }
      if (a.refused() > 1) {
        EXPECT_FALSE(done);
      }
    });
  }
}

}  // namespace
