// The elements that vector tests are run on: plain ones, ones that own memory, and one that records what is done to it
// and in which order; and owned vectors of them.
#ifndef TESTS_SUPPORT_VECTORKINDS_H
#define TESTS_SUPPORT_VECTORKINDS_H

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <type_traits>
#include <vector>

#include "Zun/Rtp/ZunRtcpPacket.h"
#include "Zun/Utils/VectorAlgorithms.h"
#include "tests/support/Bytes.h"
#include "tests/support/TestAllocator.h"
#include "tests/support/VectorOps.h"

// An element that records what is done to it. It must be built where none lives, and ended or overwritten where one
// does; so an element that is moved as bytes is noticed. The operation numbered `failing` fails.
struct Probe {
  int value;
};

namespace probes {

inline std::set<const Probe*> live;
inline std::vector<std::string> events;
inline int failing = -1;

inline bool Fails() { return failing >= 0 && failing-- == 0; }

}  // namespace probes

extern "C" {

inline Probe* ProbeConstructCopy(Probe* x, const Probe* o) {
  EXPECT_EQ(probes::live.count(o), 1U) << "copied from raw storage";
  EXPECT_EQ(probes::live.count(x), 0U) << "built over a live element";
  if (probes::Fails()) return nullptr;
  x->value = o->value;
  probes::live.insert(x);
  probes::events.push_back("copy " + std::to_string(o->value));
  return x;
}

inline Probe* ProbeAssign(Probe* x, const Probe* o) {
  EXPECT_EQ(probes::live.count(o), 1U) << "assigned from raw storage";
  EXPECT_EQ(probes::live.count(x), 1U) << "assigned over raw storage";
  if (probes::Fails()) return nullptr;
  probes::events.push_back("assign " + std::to_string(o->value) + " over " + std::to_string(x->value));
  x->value = o->value;
  return x;
}

inline void ProbeDestruct(Probe* x) {
  EXPECT_EQ(probes::live.erase(x), 1U) << "raw storage destructed";
  probes::events.push_back("end " + std::to_string(x->value));
}

}  // extern "C"

ZUN_VECTOR_DECLARE(Probe)
ZUN_VECTOR_USE_OWNING(Probe)
ZUN_VECTOR_DEFINE(Probe)

namespace test {

using Ints = std::vector<int>;
using Events = std::vector<std::string>;

TEST_VECTOR_OPS(ZunInt)
TEST_VECTOR_OPS(ZunUint16)
TEST_VECTOR_OPS(ZunRtpSourceId)
TEST_VECTOR_OPS(ZunRtcpSubpacket)
TEST_VECTOR_OPS(ZunRtcpPacket)
TEST_VECTOR_OPS(Probe)

// What a test must know of an element: how it is made of a number from 0 to 999, and read back.
template <class VectorOps>
struct PlainKind {
  using Ops = VectorOps;
  using E = typename Ops::E;
  static constexpr bool kOwnsMemory = false;
  static void Make(E* e, int number, ZunAllocator*) { *e = static_cast<E>(number); }
  static int Number(const E* e) { return static_cast<int>(*e); }
  static void End(E*) {}
};

// Number 0 is an element without storage; others have 4 to 12 bytes.
struct SubpacketKind {
  using Ops = ZunRtcpSubpacketVectorOps;
  using E = ZunRtcpSubpacket;
  static constexpr bool kOwnsMemory = true;
  static void Make(E* e, int number, ZunAllocator* a) {
    std::string bytes;
    if (number != 0) bytes = std::string(4U * static_cast<unsigned>(1 + number % 3), static_cast<char>(number));
    if (number != 0) bytes[1] = static_cast<char>(number >> 8);
    const Text data(bytes);
    ASSERT_NE(ZunRtcpUnknownConstructFull(&e->unk, 100, static_cast<ZunUint8>(number % 32), data.get(), a), nullptr);
  }
  static int Number(const E* e) {
    const ZunString* const data = ZunRtcpUnknownGetData(&e->unk);
    if (data->size == 0) return 0;
    const int number = static_cast<unsigned char>(data->buf[0]) + static_cast<unsigned char>(data->buf[1]) * 256;
    EXPECT_EQ(data->size, 4U * static_cast<unsigned>(1 + number % 3));
    EXPECT_EQ(ZunRtcpUnknownGetSubtype(&e->unk), number % 32);
    return number;
  }
  static void End(E* e) { ZunRtcpSubpacketDestruct(e); }
};

// Number 0 is a packet without subpackets; others have one to three. A refused assignment may leave one half assigned.
struct PacketKind {
  using Ops = ZunRtcpPacketVectorOps;
  using E = ZunRtcpPacket;
  static constexpr int kHalfAssigned = -1;
  static constexpr bool kOwnsMemory = true;
  static void Make(E* e, int number, ZunAllocator* a) {
    ZunRtcpPacketConstructDefault(e, a);
    for (int i = 0; number != 0 && i < 1 + number % 3; ++i) {
      ZunRtcpSubpacket sp;
      SubpacketKind::Make(&sp, number, a);
      ASSERT_TRUE(ZunRtcpPacketAppendSubpacket(e, &sp));
      ZunRtcpSubpacketDestruct(&sp);
    }
  }
  static int Number(const E* e) {
    const ZunSizeT count = ZunRtcpPacketGetSubpacketCount(e);
    if (count == 0) return 0;
    const int number = SubpacketKind::Number(ZunRtcpPacketGetSubpacket(e, 0));
    if (count != static_cast<ZunSizeT>(1 + number % 3)) return kHalfAssigned;
    for (ZunSizeT i = 1; i < count; ++i) {
      if (SubpacketKind::Number(ZunRtcpPacketGetSubpacket(e, i)) != number) return kHalfAssigned;
    }
    return number;
  }
  static void End(E* e) { ZunRtcpPacketDestruct(e); }
};

struct ProbeKind {
  using Ops = ProbeVectorOps;
  using E = Probe;
  static constexpr bool kOwnsMemory = false;
  static void Make(E* e, int number, ZunAllocator*) {
    e->value = number;
    probes::live.insert(e);
  }
  static int Number(const E* e) {
    EXPECT_EQ(probes::live.count(e), 1U);
    return e->value;
  }
  static void End(E* e) { probes::live.erase(e); }
};

// An owned element.
template <class Kind>
class One {
 public:
  explicit One(int number, ZunAllocator* a = ZunAllocatorGetSystem()) { Kind::Make(&e_, number, a); }
  ~One() { Kind::End(&e_); }
  One(const One&) = delete;
  One& operator=(const One&) = delete;
  operator const typename Kind::E *() const { return &e_; }

 private:
  typename Kind::E e_;
};

// An owned vector, with elements of another allocator than its own unless told otherwise.
template <class Kind>
class Vec {
 public:
  using Ops = typename Kind::Ops;
  using V = typename Ops::V;
  using E = typename Kind::E;

  explicit Vec(ZunAllocator* a) { Ops::ConstructDefault(&v_, a); }
  Vec(const Ints& numbers, ZunAllocator* a, ZunSizeT capacity = 0, ZunAllocator* of_elements = ZunAllocatorGetSystem())
      : Vec(a) {
    const ZunSizeT room = std::max<ZunSizeT>(capacity, numbers.size());
    if (room != 0) {
      EXPECT_TRUE(Ops::Reserve(&v_, room));
    }
    for (const int number : numbers) {
      const One<Kind> one(number, of_elements);
      EXPECT_TRUE(Ops::PushBack(&v_, one));
    }
    EXPECT_EQ(Ops::Capacity(&v_), room);
  }
  ~Vec() { Ops::Destruct(&v_); }
  Vec(const Vec&) = delete;
  Vec& operator=(const Vec&) = delete;

  V* get() { return &v_; }
  operator V*() { return &v_; }
  V* operator->() { return &v_; }
  E* at(ZunSizeT n) { return v_.begin + n; }

  Ints numbers() const {
    Ints read;
    for (const E* e = v_.begin; e != v_.end; ++e) read.push_back(Kind::Number(e));
    return read;
  }
  ZunSizeT capacity() const { return Ops::Capacity(&v_); }

 private:
  V v_;
};

// Whether it owns nothing at all.
template <class V>
bool IsBare(const V& v) {
  return v.begin == nullptr && v.end == nullptr && v.endBuf == nullptr;
}

inline Ints Inserted(Ints numbers, ZunSizeT pos, const Ints& more) {
  numbers.insert(numbers.begin() + static_cast<std::ptrdiff_t>(pos), more.begin(), more.end());
  return numbers;
}

inline Ints Cut(const Ints& numbers, ZunSizeT first, ZunSizeT last) {
  return {numbers.begin() + static_cast<std::ptrdiff_t>(first), numbers.begin() + static_cast<std::ptrdiff_t>(last)};
}

inline Ints Without(Ints numbers, ZunSizeT first, ZunSizeT last) {
  numbers.erase(numbers.begin() + static_cast<std::ptrdiff_t>(first),
                numbers.begin() + static_cast<std::ptrdiff_t>(last));
  return numbers;
}

struct VectorKindNames {
  template <class Kind>
  static std::string GetName(int) {
    if (std::is_same_v<Kind, PlainKind<ZunIntVectorOps>>) return "ZunInt";
    if (std::is_same_v<Kind, PlainKind<ZunUint16VectorOps>>) return "ZunUint16";
    if (std::is_same_v<Kind, PlainKind<ZunRtpSourceIdVectorOps>>) return "ZunRtpSourceId";
    if (std::is_same_v<Kind, SubpacketKind>) return "ZunRtcpSubpacket";
    if (std::is_same_v<Kind, PacketKind>) return "ZunRtcpPacket";
    return "Probe";
  }
};

using VectorKinds = ::testing::Types<PlainKind<ZunIntVectorOps>, PlainKind<ZunUint16VectorOps>,
                                     PlainKind<ZunRtpSourceIdVectorOps>, SubpacketKind, PacketKind, ProbeKind>;

}  // namespace test

// At the head of each typed test.
#define USE_VECTOR_KIND                 \
  using Kind = TypeParam;               \
  using Ops = typename Kind::Ops;       \
  using V = typename Ops::V;            \
  using E = typename Kind::E;           \
  [[maybe_unused]] const V* unused_v{}; \
  [[maybe_unused]] const E* unused_e {}

#endif
