#include "Zun/Rtp/ZunRtcpSubpacket.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/Samples.h"

namespace {

using namespace test;

const std::string kSenderReport = Golden("SrOneBlock");
const std::string kReceiverReport = Golden("RrOneBlock");
const std::string kUnknown = Golden("UnknownWithData");

void MakeUnknown(ZunRtcpSubpacket* p, ZunRtcpSubpacketType type, const std::string& data, ZunAllocator* a) {
  const Text text(data);
  ASSERT_NE(ZunRtcpUnknownConstructFull(&p->unk, type, 5, text.get(), a), nullptr);
}

TEST(ZunRtcpSubpacket, TypesHaveTheirNumbers) {
  EXPECT_EQ(ZUN_RTCPSUBPACKET_TYPE_Unknown, 0);
  EXPECT_EQ(ZUN_RTCPSUBPACKET_TYPE_SR, 200);
  EXPECT_EQ(ZUN_RTCPSUBPACKET_TYPE_RR, 201);
  EXPECT_EQ(ZUN_RTCPSUBPACKET_TYPE_SDES, 202);
  EXPECT_EQ(ZUN_RTCPSUBPACKET_TYPE_BYE, 203);
  EXPECT_EQ(ZUN_RTCPSUBPACKET_TYPE_APP, 204);
  EXPECT_EQ(ZUN_RTCPSUBPACKET_TYPE_RTPFB, 205);
  EXPECT_EQ(ZUN_RTCPSUBPACKET_TYPE_PSFB, 206);
}

TEST(ZunRtcpSubpacket, EveryUnknownTypeOfTheWireIsKeptAndWrittenBack) {
  for (int type = 0; type < 256; ++type) {
    if (!ZunRtcpSubpacketTypeIsUnknown(type)) continue;
    std::string datagram = kUnknown;
    datagram[1] = static_cast<char>(type);
    const Parsed parsed(datagram);
    ASSERT_TRUE(parsed.ok) << type;
    EXPECT_EQ(ZunRtcpSubpacketGetType(&parsed[0]), type);
    EXPECT_EQ(ZunRtcpUnknownGetSubtype(ZunRtcpSubpacketGetUnknown(&parsed[0])), CountOf(kUnknown));
    EXPECT_EQ(parsed.bytes(), datagram);
  }
}

TEST(ZunRtcpSubpacket, LengthIsTheWireSizeHeaderIncluded) {
  for (const std::string& datagram : {kSenderReport, kReceiverReport, kUnknown, Hex("80 C0 00 00")}) {
    const Parsed parsed(datagram);
    ASSERT_TRUE(parsed.ok);
    EXPECT_EQ(ZunRtcpSubpacketGetNetworkPacketLength(&parsed[0]), datagram.size());
    EXPECT_EQ(Written(parsed[0]), datagram);
  }
}

TEST(ZunRtcpSubpacket, CopyTakesItsStorageFromTheSourcesAllocator) {
  for (const std::string& datagram : {kSenderReport, kUnknown}) {
    TestAllocator a;
    const Parsed parsed(datagram, a);
    ASSERT_TRUE(parsed.ok);
    const std::size_t live = a.live_blocks();
    ZunRtcpSubpacket copy;
    ASSERT_EQ(ZunRtcpSubpacketConstructCopy(&copy, &parsed[0]), &copy);
    EXPECT_EQ(a.live_blocks(), live + live - 1) << "all but the list of subpackets";
    EXPECT_EQ(Written(copy), datagram);
    ZunRtcpSubpacketDestruct(&copy);
    EXPECT_EQ(a.live_blocks(), live);
  }
}

TEST(ZunRtcpSubpacket, RefusedCopyOwnsNothing) {
  TestAllocator a;
  const Parsed parsed(kSenderReport + kUnknown, a);
  ASSERT_TRUE(parsed.ok);
  const std::size_t live = a.live_blocks();
  a.RefuseFrom(0);
  ZunRtcpSubpacket copy;
  EXPECT_EQ(ZunRtcpSubpacketConstructCopy(&copy, &parsed[0]), nullptr);
  EXPECT_EQ(ZunRtcpSubpacketConstructCopy(&copy, &parsed[1]), nullptr);
  EXPECT_EQ(a.live_blocks(), live);
}

TEST(ZunRtcpSubpacket, DestructMayBeRepeated) {
  TestAllocator a;
  ZunRtcpSubpacket p;
  MakeUnknown(&p, 100, "12345678", a);
  ZunRtcpSubpacketDestruct(&p);
  EXPECT_EQ(a.live_blocks(), 0U);
  const std::size_t calls = a.calls();
  ZunRtcpSubpacketDestruct(&p);
  EXPECT_EQ(a.calls(), calls);
}

TEST(ZunRtcpSubpacket, UnknownTypesAreAssignedInPlace) {
  TestAllocator a;
  TestAllocator b;
  ZunRtcpSubpacket p;
  ZunRtcpSubpacket o;
  MakeUnknown(&p, 0, "12345678", a);
  MakeUnknown(&o, 100, "abcd", b);
  const char* const storage = p.unk.data.buf;
  const std::size_t calls = a.calls();
  EXPECT_EQ(ZunRtcpSubpacketAssign(&p, &o), &p);
  EXPECT_EQ(ZunRtcpSubpacketGetType(&p), 100);
  EXPECT_EQ(Str(&p.unk.data), "abcd");
  EXPECT_EQ(p.unk.data.allocator, a.get());
  EXPECT_EQ(p.unk.data.buf, storage);
  EXPECT_EQ(a.calls(), calls);
  ZunRtcpSubpacketDestruct(&p);
  ZunRtcpSubpacketDestruct(&o);
}

TEST(ZunRtcpSubpacket, RefusedAssignInPlaceLeavesTheObject) {
  TestAllocator a;
  ZunRtcpSubpacket p;
  ZunRtcpSubpacket o;
  MakeUnknown(&p, 192, "1234", a);
  MakeUnknown(&o, 100, "12345678", ZunAllocatorGetSystem());
  a.RefuseFrom(0);
  EXPECT_EQ(ZunRtcpSubpacketAssign(&p, &o), nullptr);
  EXPECT_EQ(ZunRtcpSubpacketGetType(&p), 192);
  EXPECT_EQ(Str(&p.unk.data), "1234");
  ZunRtcpSubpacketDestruct(&p);
  ZunRtcpSubpacketDestruct(&o);
}

TEST(ZunRtcpSubpacket, AssignToItselfChangesNothing) {
  TestAllocator a;
  Parsed parsed(kSenderReport + kReceiverReport + kUnknown, a);
  ASSERT_TRUE(parsed.ok);
  const std::size_t calls = a.calls();
  for (ZunSizeT i = 0; i < 3; ++i) {
    ZunRtcpSubpacket* const sp = ZunVector_ZunRtcpSubpacketAt(&parsed.packet.subpackets, i);
    EXPECT_EQ(ZunRtcpSubpacketAssign(sp, sp), sp);
  }
  EXPECT_EQ(parsed.bytes(), kSenderReport + kReceiverReport + kUnknown);
  EXPECT_EQ(a.calls(), calls);
}

// Every kind over every other: the old storage goes back, the new comes from the destination's allocator.
TEST(ZunRtcpSubpacket, AssignAcrossKindsRebuildsWithTheDestinationsAllocator) {
  const std::string kinds[] = {kSenderReport, kReceiverReport, kUnknown};
  for (const std::string& from : kinds) {
    for (const std::string& to : kinds) {
      if (from == to) continue;
      TestAllocator a;
      TestAllocator b;
      Parsed destination(to, a);
      const Parsed source(from, b);
      ASSERT_TRUE(destination.ok && source.ok);
      const std::size_t other_calls = b.calls();
      ZunRtcpSubpacket* const sp = ZunVector_ZunRtcpSubpacketAt(&destination.packet.subpackets, 0);
      EXPECT_EQ(ZunRtcpSubpacketAssign(sp, &source[0]), sp);
      EXPECT_EQ(destination.bytes(), from);
      EXPECT_EQ(a.live_blocks(), b.live_blocks());
      EXPECT_EQ(b.calls(), other_calls);
    }
  }
}

// It owns nothing, so it may be destructed or left alone.
TEST(ZunRtcpSubpacket, RefusedRebuildLeavesAnEmptyUnknownOfTheDestinationsAllocator) {
  for (const bool is_destructed : {false, true}) {
    const std::size_t allocations = ForEveryRefusalAfter([&](TestAllocator& a, const std::function<void()>& begin) {
      Text bytes(Golden("NackOneMap"));
      ZunRtcpPacket packet;
      ASSERT_NE(ZunRtcpPacketConstructFromNetworkPacket(&packet, bytes, ZunAllocatorGetSystem()), nullptr);
      ZunRtcpSubpacket p;
      MakeUnknown(&p, 100, "12345678", a);
      begin();
      ZunRtcpSubpacket* const result = ZunRtcpSubpacketAssign(&p, ZunRtcpPacketGetSubpacket(&packet, 0));
      EXPECT_EQ(result == nullptr, a.refused() > 0);
      a.RefuseNothing();
      if (result == nullptr) {
        EXPECT_EQ(ZunRtcpSubpacketGetType(&p), 0);
        EXPECT_EQ(ZunRtcpUnknownGetSubtype(&p.unk), 0);
        EXPECT_EQ(ZunRtcpUnknownGetData(&p.unk)->size, 0U);
        EXPECT_EQ(p.unk.data.allocator, a.get());
        EXPECT_EQ(a.live_blocks(), 0U);
        if (is_destructed) ZunRtcpSubpacketDestruct(&p);
      } else {
        EXPECT_EQ(Written(p), Golden("NackOneMap"));
        ZunRtcpSubpacketDestruct(&p);
      }
      ZunRtcpPacketDestruct(&packet);
    });
    EXPECT_GE(allocations, 1U);
  }
}

}  // namespace
