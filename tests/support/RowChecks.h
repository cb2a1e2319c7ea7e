// What every kind of subpacket must keep to, checked through its row of operations on wire forms that it reads and
// writes back unchanged.
#ifndef TESTS_SUPPORT_ROWCHECKS_H
#define TESTS_SUPPORT_ROWCHECKS_H

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Zun/Rtp/ZunRtcpPacket.h"
#include "tests/support/Bytes.h"
#include "tests/support/TestAllocator.h"

namespace test {

// The eight public operations of a kind.
struct Row {
  ZunRtcpSubpacket* (*construct_copy_allocator)(ZunRtcpSubpacket* p, const ZunRtcpSubpacket* o, ZunAllocator* a);
  void (*destruct)(ZunRtcpSubpacket* p);
  ZunRtcpSubpacket* (*assign)(ZunRtcpSubpacket* p, const ZunRtcpSubpacket* o);
  ZunAllocator* (*get_allocator)(ZunRtcpSubpacket* p);
  ZunBool (*write_packet)(const ZunRtcpSubpacket* p, ZunString* b, ZunBool pad);
  ZunSizeT (*get_packet_length)(const ZunRtcpSubpacket* p);
  ZunBool (*construct_from_buffer)(ZunRtcpSubpacket* p, const ZunString* b, ZunSizeT begin, ZunSizeT end,
                                   ZunRtcpSubpacketType pt, ZunUint8 count, ZunAllocator* a);
  ZunBool (*assign_from_buffer)(ZunRtcpSubpacket* p, const ZunString* b, ZunSizeT begin, ZunSizeT end,
                                ZunRtcpSubpacketType pt, ZunUint8 count);
};
#define TEST_ROW(Kind)                                                                                             \
  test::Row {                                                                                                      \
    Kind##ConstructCopyAllocator, Kind##DestructWrap, Kind##AssignWrap, Kind##GetAllocatorWrap, Kind##WritePacket, \
        Kind##GetPacketLength, Kind##ConstructFromBuffer, Kind##AssignFromBuffer                                   \
  }

// Where the body begins in the wire form of one subpacket.
inline constexpr ZunSizeT kBodyBegin = 4;

inline ZunRtcpSubpacketType PacketTypeOf(const std::string& wire) { return static_cast<unsigned char>(wire[1]); }
inline ZunUint8 CountOf(const std::string& wire) { return static_cast<unsigned char>(wire[0]) & 0x1F; }

// What the row writes of a subpacket; it must be written, and as long as was announced.
inline std::string Bytes(const Row& row, const ZunRtcpSubpacket& sp) {
  Text out;
  EXPECT_TRUE(row.write_packet(&sp, out, 0));
  EXPECT_EQ(row.get_packet_length(&sp), out.get()->size);
  return out.str();
}

// A subpacket that the row reads from one wire form, and that ends itself.
class Slot {
 public:
  Slot(const Row& row, const std::string& wire, ZunAllocator* a = ZunAllocatorGetSystem())
      : Slot(row, wire, wire.size(), a) {}
  // With an end of the body of its own.
  Slot(const Row& row, const std::string& wire, ZunSizeT end, ZunAllocator* a) : row_(&row) {
    const Datagram datagram(wire);
    ok = row.construct_from_buffer(&sp, datagram, kBodyBegin, end, PacketTypeOf(wire), CountOf(wire), a) != 0;
  }
  ~Slot() {
    row_->destruct(&sp);
    row_->destruct(&sp);  // once more, which must do nothing
  }
  Slot(const Slot&) = delete;
  Slot& operator=(const Slot&) = delete;

  // Reads in place.
  bool Again(const std::string& wire) {
    const Datagram datagram(wire);
    return row_->assign_from_buffer(&sp, datagram, kBodyBegin, wire.size(), PacketTypeOf(wire), CountOf(wire)) != 0;
  }
  std::string bytes() const { return Bytes(*row_, sp); }
  ZunAllocator* allocator() { return row_->get_allocator(&sp); }

  ZunRtcpSubpacket sp;
  bool ok;

 private:
  const Row* row_;
};

// A user's compound packet of this one subpacket comes out as it came in.
inline void ExpectComesBackUnchanged(const std::string& wire) {
  const Parsed parsed(wire);
  ASSERT_TRUE(parsed.ok);
  ASSERT_EQ(parsed.count(), 1U);
  EXPECT_EQ(ToHex(parsed.Rewritten()), ToHex(wire));
  EXPECT_EQ(ZunRtcpSubpacketGetNetworkPacketLength(&parsed[0]), wire.size());
}

// Calls check(slot, size) for each beginning of the body, `size` bytes long, that lies on a heap block of exactly its
// size: once with the body ending there, once with it ending where the whole one would.
template <class Check>
void ForEveryCut(const Row& row, const std::string& wire, Check check) {
  for (ZunSizeT size = 0; size < wire.size() - kBodyBegin; ++size) {
    for (const ZunSizeT end : {kBodyBegin + size, ZunSizeT{wire.size()}}) {
      SCOPED_TRACE(::testing::Message() << size << " bytes of the body, which ends at " << end);
      const Slot slot(row, wire.substr(0, kBodyBegin + size), end, ZunAllocatorGetSystem());
      check(slot, size, end != kBodyBegin + size);
    }
  }
}

// A copy is built with the allocator that is asked for; an assignment leaves the allocator alone.
inline void ExpectAllocatorRules(const Row& row, const std::string& wire, const std::string& other_wire) {
  TestAllocator mine;
  TestAllocator other;
  Slot source(row, wire, mine.get());
  ASSERT_TRUE(source.ok);
  EXPECT_EQ(source.allocator(), mine.get());
  const std::size_t blocks = mine.live_blocks();
  EXPECT_GT(blocks, 0U);

  for (ZunAllocator* const wanted : {mine.get(), other.get()}) {
    ZunRtcpSubpacket copy;
    ASSERT_EQ(row.construct_copy_allocator(&copy, &source.sp, wanted), &copy);
    EXPECT_EQ(row.get_allocator(&copy), wanted);
    EXPECT_EQ(ToHex(Bytes(row, copy)), ToHex(wire));
    EXPECT_EQ(mine.live_blocks(), wanted == mine.get() ? 2 * blocks : blocks);
    row.destruct(&copy);
  }

  Slot target(row, other_wire, other.get());
  ASSERT_TRUE(target.ok);
  ASSERT_EQ(row.assign(&target.sp, &source.sp), &target.sp);
  EXPECT_EQ(target.allocator(), other.get());
  EXPECT_EQ(ToHex(target.bytes()), ToHex(wire));
  ASSERT_EQ(row.assign(&target.sp, &target.sp), &target.sp);
  EXPECT_EQ(ToHex(target.bytes()), ToHex(wire));
  EXPECT_EQ(mine.live_blocks(), blocks);
}

// Reading, reading in place, copying and assigning with refused allocations: each either does all it should or
// reports failure, and the object can be destructed (or was never built) either way.
inline void ExpectRefusalsLoseNothing(const Row& row, const std::string& wire, const std::string& other_wire) {
  EXPECT_GT(ForEveryRefusal([&](TestAllocator& refusing) {
              Slot slot(row, wire, refusing.get());
              if (slot.ok) {
                EXPECT_EQ(ToHex(slot.bytes()), ToHex(wire));
              }
              EXPECT_TRUE(slot.ok || refusing.refused() > 0);
            }),
            0U);
  ForEveryRefusal([&](TestAllocator& refusing) {
    Slot slot(row, other_wire, refusing.get());
    const bool ok = slot.Again(wire);
    if (ok) {
      EXPECT_EQ(ToHex(slot.bytes()), ToHex(wire));
    }
    EXPECT_TRUE(ok || refusing.refused() > 0);
    refusing.RefuseNothing();
    EXPECT_TRUE(slot.Again(wire)) << "an object that a refusal left behind cannot be used again";
    EXPECT_EQ(ToHex(slot.bytes()), ToHex(wire));
  });
  const Slot source(row, wire);
  EXPECT_GT(ForEveryRefusal([&](TestAllocator& refusing) {
              ZunRtcpSubpacket copy;
              const bool ok = row.construct_copy_allocator(&copy, &source.sp, refusing) != nullptr;
              EXPECT_TRUE(ok || refusing.refused() > 0);
              if (!ok) return;  // it owns nothing, or the allocator would tell
              EXPECT_EQ(ToHex(Bytes(row, copy)), ToHex(wire));
              row.destruct(&copy);
            }),
            0U);
  ForEveryRefusal([&](TestAllocator& refusing) {
    Slot twin(row, wire, refusing.get());
    if (!twin.ok) return;
    const std::size_t blocks = refusing.live_blocks();
    ZunRtcpSubpacket copy;
    if (row.construct_copy_allocator(&copy, &twin.sp, refusing) != nullptr) row.destruct(&copy);
    EXPECT_EQ(refusing.live_blocks(), blocks);
  });
  ForEveryRefusal([&](TestAllocator& refusing) {
    Slot target(row, other_wire, refusing.get());
    if (!target.ok) return;
    if (row.assign(&target.sp, &source.sp) != nullptr) {
      EXPECT_EQ(ToHex(target.bytes()), ToHex(wire));
    } else {
      EXPECT_GT(refusing.refused(), 0U);
    }
  });
}

// A write into a string that cannot grow leaves what fits in front of the first append that does not. The bytes from
// `block_begin` to `block_end` are appended as one block, all others one by one.
inline void ExpectFailedWriteLeavesABeginning(const Row& row, const std::string& wire, ZunSizeT block_begin = 0,
                                              ZunSizeT block_end = 0) {
  const Slot slot(row, wire);
  ASSERT_TRUE(slot.ok);
  for (ZunSizeT capacity = 0; capacity < wire.size(); ++capacity) {
    SCOPED_TRACE(::testing::Message() << capacity << " bytes fit");
    TestAllocator refusing;
    Text out(std::string(capacity, 'x'), refusing.get());
    ZunStringClear(out);
    ASSERT_GE(out->capacity, capacity);
    const ZunSizeT filled = out->capacity - capacity;  // growth of a text is generous: fill it up
    ASSERT_NE(ZunStringAppendN(out, filled, 'y'), nullptr);
    refusing.RefuseFrom(0);
    EXPECT_FALSE(row.write_packet(&slot.sp, out, 0));
    const bool ends_in_block = capacity > block_begin && capacity < block_end;
    const ZunSizeT expected = ends_in_block ? block_begin : capacity;
    EXPECT_EQ(ToHex(out.str()), ToHex(std::string(filled, 'y') + wire.substr(0, expected)));
  }
}

// An object that held any of the wire forms reads any other like a fresh one, and one of a size that it has held
// without its allocator.
inline void ExpectReadsInPlaceAsFresh(const Row& row, const std::vector<std::string>& wires) {
  for (const std::string& first : wires) {
    for (const std::string& second : wires) {
      TestAllocator allocator;
      Slot used(row, first, allocator.get());
      ASSERT_TRUE(used.ok);
      const std::size_t calls = allocator.calls();
      ASSERT_TRUE(used.Again(second));
      EXPECT_EQ(used.allocator(), allocator.get());
      EXPECT_EQ(ToHex(used.bytes()), ToHex(second));
      if (second.size() <= first.size()) {
        EXPECT_EQ(allocator.calls(), calls);
      }
    }
  }
}

// Writing into a string that has held a packet of the size takes no allocation.
inline void ExpectWritesInPlace(const Row& row, const std::string& wire) {
  const Slot slot(row, wire);
  TestAllocator allocator;
  Text out(allocator.get());
  ASSERT_TRUE(row.write_packet(&slot.sp, out, 0));
  const std::size_t calls = allocator.calls();
  ZunStringClear(out);
  ASSERT_TRUE(row.write_packet(&slot.sp, out, 1));
  EXPECT_EQ(allocator.calls(), calls);
  std::string padded = wire;
  padded[0] = static_cast<char>(padded[0] | 0x20);
  EXPECT_EQ(ToHex(out.str()), ToHex(padded)) << "`pad` sets the padding bit and nothing else";
}

}  // namespace test

#endif
