// What every C++ object must do, checked on the samples of all kinds.
#include "Zun/Rtp/Cpp/Object.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <functional>
#include <set>
#include <string>
#include <type_traits>
#include <utility>

#include "Zun/Rtp/Cpp/Packet.h"
#include "tests/support/Samples.h"

namespace {

using namespace test;
using namespace zun::rtcp;
using AnySubpacket = zun::rtcp::Subpacket;  // test::Subpacket is another

template <class Looking>
using OwnedOf = typename Face<ObjectOf<Looking>>::template Of<Owning<ObjectOf<Looking>>>;

// All that can be seen of an object.
template <class Class>
std::string SeenOf(const Class& object) {
  return test::Seen(kRowOf<ObjectOf<Class>>, *AsSubpacket(object.get()));
}

class EverySampleInCpp : public ::testing::TestWithParam<Sample> {
 protected:
  // Hands a View of the object that the sample holds, which has allocator `a`, to `check`.
  static void WithView(ZunAllocator* a, auto check) {
    Packet packet(a);
    const std::string& wire = GetParam().wire;
    ASSERT_TRUE(packet.decode(octets_of(wire)));
    ASSERT_EQ(packet.size(), 1U);
    visit(packet[0], check);
  }
  static void WithView(auto check) { WithView(ZunAllocatorGetSystem(), check); }
};

std::string NameOf(const ::testing::TestParamInfo<Sample>& sample) { return sample.param.name; }

INSTANTIATE_TEST_SUITE_P(Kinds, EverySampleInCpp, ::testing::ValuesIn(Samples()), NameOf);

TEST_P(EverySampleInCpp, IsVisitedAsWhatItIs) {
  WithView([](const auto& view) {
    const Row& row = kRowOf<ObjectOf<std::remove_cvref_t<decltype(view)>>>;
    EXPECT_TRUE(IsOfKind(row, *AsSubpacket(view.get()))) << row.kind;
  });
}

TEST_P(EverySampleInCpp, IsGotAsItsKindAndAsNoOther) {
  Packet packet;
  ASSERT_TRUE(packet.decode(octets_of(GetParam().wire)));
  const View<AnySubpacket> subpacket = packet[0];
  std::size_t kinds = 0;
  const auto count = [&]<class Class>(std::type_identity<Class>) { kinds += get_if<Class>(subpacket) ? 1 : 0; };
  const auto count_all = [&]<class... Classes>(std::type_identity<Classes>... classes) { (count(classes), ...); };
  count_all(std::type_identity<Sr>(), std::type_identity<Rr>(), std::type_identity<Sdes>(), std::type_identity<Bye>(),
            std::type_identity<App>(), std::type_identity<Unknown>(), std::type_identity<Nack>(),
            std::type_identity<Tmmbr>(), std::type_identity<Tmmbn>(), std::type_identity<TransportCc>(),
            std::type_identity<Ccfb>(), std::type_identity<Abafb>(), std::type_identity<UnknownRtpfb>(),
            std::type_identity<Pli>(), std::type_identity<Sli>(), std::type_identity<Rpsi>(), std::type_identity<Fir>(),
            std::type_identity<Tstr>(), std::type_identity<Tsta>(), std::type_identity<UnknownPsfb>(),
            std::type_identity<Remb>(), std::type_identity<AfbAbafb>(), std::type_identity<Albr>(),
            std::type_identity<Show>(), std::type_identity<ShowAck>(), std::type_identity<Lir>(),
            std::type_identity<UnknownAfb>());
  EXPECT_EQ(kinds, 1U);
  visit(subpacket, [&](const auto& view) {
    using Class = OwnedOf<std::remove_cvref_t<decltype(view)>>;
    const auto got = get_if<Class>(subpacket);
    ASSERT_TRUE(got);
    EXPECT_EQ(got->get(), view.get());
    EXPECT_TRUE(holds<Class>(subpacket));
  });
}

TEST_P(EverySampleInCpp, BothFacesWriteTheSameOctets) {
  const Parsed in_c(GetParam().wire);
  ASSERT_TRUE(in_c.ok);
  std::string expected(GetParam().wire.size() + 64, '\0');
  ZunSizeT size = 0;
  const bool is_written =
      ZunRtcpPacketEncode(&in_c.packet, expected.data(), expected.size(), ZUN_RTCP_DIALECT_HOUSE, &size) != 0;
  expected.resize(is_written ? size : 0);

  Packet packet;
  ASSERT_TRUE(packet.decode(octets_of(GetParam().wire)));
  const auto encoded = packet.encode();
  ASSERT_EQ(encoded.has_value(), is_written);
  EXPECT_EQ(packet.encoded_length(), expected.size());
  if (!is_written) return;
  EXPECT_EQ(ToHex(std::string(reinterpret_cast<const char*>(encoded->data()), encoded->size())), ToHex(expected));
}

// What is not set would be what the memory was before.
TEST_P(EverySampleInCpp, IsBuiltAlikeInAnyStorage) {
  WithView([](const auto& view) {
    using C = ObjectOf<std::remove_cvref_t<decltype(view)>>;
    const auto built_in = [](int filling) {
      alignas(C) std::array<std::byte, sizeof(ZunRtcpSubpacket)> storage;
      std::memset(storage.data(), filling, storage.size());
      C* const object = reinterpret_cast<C*>(storage.data());
      Functions<C>::ConstructDefault(object, ZunAllocatorGetSystem());
      std::string seen = test::Seen(kRowOf<C>, *AsSubpacket(object));
      Functions<C>::Destruct(object);
      return seen;
    };
    EXPECT_EQ(built_in(0xFF), built_in(0));
    EXPECT_EQ(built_in(0x55), built_in(0));
  });
}

TEST_P(EverySampleInCpp, IsCopiedWithTheAllocatorsOfItsSource) {
  TestAllocator mine;
  WithView(mine, [&](const auto& view) {
    using Class = OwnedOf<std::remove_cvref_t<decltype(view)>>;
    const Class first(view);
    const Class second(first);  // NOLINT(performance-unnecessary-copy-initialization): it is what is tested
    EXPECT_EQ(SeenOf(second), SeenOf(view));
    EXPECT_NE(first.get(), second.get());
    EXPECT_EQ(second.allocator(), first.allocator());
    EXPECT_TRUE(second.allocator() == mine.get() || second.allocator() == nullptr);
  });
}

TEST_P(EverySampleInCpp, ACopyWithAnAllocatorOutlivesTheMemoryOfItsSource) {
  TestAllocator mine;
  TestAllocator other;
  WithView(other, [&](const auto& view) {
    using Class = OwnedOf<std::remove_cvref_t<decltype(view)>>;
    const std::size_t calls = other.calls();
    const Class made(view, mine);
    const auto told = copy(view, mine);
    ASSERT_TRUE(told);
    EXPECT_EQ(SeenOf(made), SeenOf(view));
    EXPECT_EQ(SeenOf(*told), SeenOf(view));
    EXPECT_EQ(other.calls(), calls);
  });
}

TEST_P(EverySampleInCpp, AMoveAllocatesNothingAndLeavesItsSourceEmpty) {
  TestAllocator mine;
  WithView(mine, [&](const auto& view) {
    using Class = OwnedOf<std::remove_cvref_t<decltype(view)>>;
    Class source(view, mine);
    ZunAllocator* const allocator = source.allocator();
    const std::size_t calls = mine.calls();
    const Class target(std::move(source));
    EXPECT_EQ(mine.calls(), calls);
    EXPECT_EQ(SeenOf(target), SeenOf(view));
    EXPECT_EQ(SeenOf(source), SeenOf(Class()));  // NOLINT(bugprone-use-after-move): it is what is tested
    EXPECT_EQ(source.allocator(), allocator);
    ASSERT_TRUE(source.assign(view));
    EXPECT_EQ(SeenOf(source), SeenOf(view));
  });
}

TEST_P(EverySampleInCpp, AMoveOverAnotherEndsThatOne) {
  TestAllocator mine;
  WithView(mine, [&](const auto& view) {
    using Class = OwnedOf<std::remove_cvref_t<decltype(view)>>;
    Class source(view, mine);
    Class target(view, mine);
    const std::size_t allocations = mine.allocations();
    const std::size_t blocks = mine.live_blocks();
    target = std::move(source);
    EXPECT_EQ(mine.allocations(), allocations);
    EXPECT_LE(mine.live_blocks(), blocks);
    EXPECT_EQ(SeenOf(target), SeenOf(view));
    EXPECT_EQ(SeenOf(source), SeenOf(Class()));  // NOLINT(bugprone-use-after-move): it is what is tested
  });
}

TEST_P(EverySampleInCpp, AssigningItToItselfChangesNothing) {
  WithView([](const auto& view) {
    using Class = OwnedOf<std::remove_cvref_t<decltype(view)>>;
    Class object(view);
    Class& same = object;
    object = same;
    EXPECT_EQ(SeenOf(object), SeenOf(view));
    object = std::move(same);
    EXPECT_EQ(SeenOf(object), SeenOf(view));
    object.swap(same);
    EXPECT_EQ(SeenOf(object), SeenOf(view));
  });
}

TEST_P(EverySampleInCpp, SwapsWithAnother) {
  WithView([](const auto& view) {
    using Class = OwnedOf<std::remove_cvref_t<decltype(view)>>;
    Class full(view);
    Class empty;
    full.swap(empty);
    EXPECT_EQ(SeenOf(empty), SeenOf(view));
    EXPECT_EQ(SeenOf(full), SeenOf(Class()));
    std::swap(full, empty);
    EXPECT_EQ(SeenOf(full), SeenOf(view));
  });
}

TEST_P(EverySampleInCpp, ARefusedCopyIsToldOrEmpty) {
  WithView([](const auto& view) {
    using Class = OwnedOf<std::remove_cvref_t<decltype(view)>>;
    ForEveryRefusal([&](TestAllocator& refusing) {
      const auto made = copy(view, refusing.get());
      EXPECT_EQ(made.has_value(), refusing.refused() == 0);
      if (!made) return;
      EXPECT_EQ(SeenOf(*made), SeenOf(view));
    });
    ForEveryRefusal([&](TestAllocator& refusing) {
      const Class made(view, refusing.get());
      EXPECT_EQ(SeenOf(made), refusing.refused() == 0 ? SeenOf(view) : SeenOf(Class()));
    });
  });
}

TEST_P(EverySampleInCpp, IsAppendedAsACopyAsItselfAndAsASubpacket) {
  TestAllocator mine;
  TestAllocator other;
  WithView(other, [&](const auto& view) {
    using Class = OwnedOf<std::remove_cvref_t<decltype(view)>>;
    Packet packet(mine);
    const std::size_t calls = other.calls();
    Class object(view, mine);
    ASSERT_TRUE(packet.append(view));
    ASSERT_TRUE(packet.append(object));
    AnySubpacket any(View<AnySubpacket>(*AsSubpacket(view.get())), mine);
    ASSERT_TRUE(packet.append(std::as_const(any)));
    ASSERT_TRUE(packet.append(std::move(any)));
    ASSERT_TRUE(packet.append(std::move(object)));
    ASSERT_TRUE(packet.append(packet[0]));
    EXPECT_EQ(SeenOf(object), SeenOf(Class()));  // NOLINT(bugprone-use-after-move): it is what is tested
    ASSERT_EQ(packet.size(), 6U);
    for (const View<AnySubpacket> subpacket : packet) {
      const auto got = get_if<Class>(subpacket);
      ASSERT_TRUE(got);
      EXPECT_EQ(SeenOf(*got), SeenOf(view));
    }
    EXPECT_EQ(other.calls(), calls);
  });
}

TEST_P(EverySampleInCpp, ARefusedAppendLeavesPacketAndObject) {
  WithView([](const auto& view) {
    using Class = OwnedOf<std::remove_cvref_t<decltype(view)>>;
    ForEveryRefusal([&](TestAllocator& refusing) {
      Packet packet(refusing);
      const bool is_appended = packet.append(view);
      EXPECT_EQ(is_appended, refusing.refused() == 0);
      EXPECT_EQ(packet.size(), is_appended ? 1U : 0U);
    });
    TestAllocator refusing;
    refusing.RefuseFrom(0);
    Packet packet(refusing);
    Class object(view);
    EXPECT_FALSE(packet.append(std::move(object)));
    EXPECT_EQ(SeenOf(object), SeenOf(view));  // NOLINT(bugprone-use-after-move): it is what is tested
  });
}

TEST_P(EverySampleInCpp, ASubpacketOfAnyKindBehavesAsItsKind) {
  TestAllocator mine;
  WithView(mine, [&](const auto& view) {
    using Class = OwnedOf<std::remove_cvref_t<decltype(view)>>;
    AnySubpacket first(View<AnySubpacket>(*AsSubpacket(view.get())), mine);
    AnySubpacket second(std::move(first));
    EXPECT_TRUE(holds<Unknown>(first));  // NOLINT(bugprone-use-after-move): it is what is tested
    first = second;
    ASSERT_TRUE(get_if<Class>(first));
    EXPECT_EQ(SeenOf(*get_if<Class>(first)), SeenOf(view));
    EXPECT_EQ(SeenOf(*get_if<Class>(second)), SeenOf(view));
    const std::size_t blocks = mine.live_blocks();
    first = second;
    EXPECT_EQ(mine.live_blocks(), blocks) << "what it held was given back";
    EXPECT_EQ(SeenOf(*get_if<Class>(first)), SeenOf(view));
  });
}

TEST(Objects, ACopyThatItsSourcesAllocatorRefusesIsEmptyAndHasThatAllocator) {
  TestAllocator refusing;
  Nack source(refusing.get());
  ASSERT_TRUE(source.add(7));
  refusing.RefuseOnce(0);
  Nack copied(source);
  EXPECT_EQ(SeenOf(copied), SeenOf(Nack()));
  EXPECT_EQ(copied.allocator(), refusing.get());
  EXPECT_TRUE(copied.add(7)) << "it can be used as soon as nothing is refused";
}

TEST(SamplesInCpp, AllKindsAreVisited) {
  std::set<std::string> visited;
  std::set<std::string> expected;
  for (const Sample& sample : Samples()) {
    Packet packet;
    ASSERT_TRUE(packet.decode(octets_of(sample.wire))) << sample.name;
    visit(packet[0],
          [&](const auto& view) { visited.insert(kRowOf<ObjectOf<std::remove_cvref_t<decltype(view)>>>.kind); });
  }
  for (const Row* const row : AllRows()) expected.insert(row->kind);
  for (const char* const envelope : {"ZunRtcpRtpfb", "ZunRtcpPsfb", "ZunRtcpPsfbAfb"}) expected.erase(envelope);
  EXPECT_EQ(visited, expected);
}

// ---- what the compiler must see

static_assert(std::is_nothrow_move_constructible_v<Packet> && std::is_nothrow_move_assignable_v<Packet>);
static_assert(std::is_nothrow_move_constructible_v<Nack> && std::is_nothrow_default_constructible_v<Nack>);
static_assert(sizeof(Nack) == sizeof(ZunRtcpRtpfbNack) && sizeof(Packet) == sizeof(ZunRtcpPacket));
static_assert(sizeof(View<Nack>) == sizeof(void*) && std::is_trivially_copyable_v<View<Nack>>);
static_assert(std::is_convertible_v<Nack&, View<Nack>> && std::is_convertible_v<const Nack&, View<Nack>>);
static_assert(std::is_convertible_v<Nack&, Ref<Nack>> && !std::is_convertible_v<const Nack&, Ref<Nack>>);
static_assert(std::is_convertible_v<Ref<Nack>, View<Nack>> && !std::is_convertible_v<View<Nack>, Ref<Nack>>);
static_assert(std::ranges::random_access_range<Packet> && std::ranges::random_access_range<const Packet>);

}  // namespace
