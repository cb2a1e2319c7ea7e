// The tests that the three envelopes share: each holds a message of any kind of its level, and hands every operation on
// to it.
#ifndef TESTS_ZUN_RTP_ENVELOPETESTS_H
#define TESTS_ZUN_RTP_ENVELOPETESTS_H

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "tests/support/Samples.h"

namespace test {

// The functions of an envelope, so that one test serves all:
//   using Kind; kLevel of its messages; ConstructCopy, Assign, Destruct, GetAllocator; UnknownIn(p), the unknown
//   message that it holds
template <class Api>
class EnvelopeTest : public ::testing::Test {
 protected:
  using Kind = typename Api::Kind;

  // A message in an object of its own.
  class Message : public Received {
   public:
    Message(const Sample& sample, ZunAllocator* a) : Received(kRowOf<Kind>, sample.wire, a) {
      EXPECT_TRUE(ok) << sample.name;
    }
    Kind* get() { return reinterpret_cast<Kind*>(sp()); }
  };

  static bool OwnsMemory(const Sample& sample) { return ReceivedSample(sample).allocator() != nullptr; }

  static void ForEveryMessage(const std::function<void(const Sample& sample)>& check) {
    for (const Sample& sample : SamplesAt(Api::kLevel)) {
      SCOPED_TRACE(sample.name);
      check(sample);
    }
  }
  static void ForEveryPair(const std::function<void(const Sample& from, const Sample& to)>& check) {
    for (const Sample& from : SamplesAt(Api::kLevel)) {
      for (const Sample& to : SamplesAt(Api::kLevel)) {
        SCOPED_TRACE(from.name + " to " + to.name);
        check(from, to);
      }
    }
  }
  static void ExpectEmptyUnknown(Kind* p, ZunAllocator* a) {
    const auto& unknown = Api::UnknownIn(*p);
    EXPECT_TRUE(IsOfKind(kRowOf<Kind>, *AsSubpacket(p)));
    EXPECT_EQ(ValueAt(Api::kLevel, *AsSubpacket(p)), 0);
    EXPECT_EQ(unknown.sender, 0U);
    EXPECT_EQ(unknown.source, 0U);
    EXPECT_EQ(unknown.data.size, 0U);
    EXPECT_EQ(unknown.data.allocator, a);
    EXPECT_EQ(Api::GetAllocator(p), a);
  }
};

TYPED_TEST_SUITE_P(EnvelopeTest);

TYPED_TEST_P(EnvelopeTest, EveryOperationReachesTheMessage) {
  this->ForEveryMessage([this](const Sample& sample) {
    const Row& row = kRowOf<typename TypeParam::Kind>;
    TestAllocator allocator;
    typename TestFixture::Message message(sample, allocator);
    const ReceivedSample alone(sample);
    EXPECT_TRUE(IsOfKind(*sample.row, *message.sp()));
    EXPECT_EQ(message.seen(), alone.seen());
    EXPECT_EQ(ZunRtcpSubpacketGetNetworkPacketLength(message.sp()), row.get_packet_length(message.sp()));
    Text padded;
    ASSERT_TRUE(row.write_packet(message.sp(), padded, 1));
    Text padded_alone;
    ASSERT_TRUE(sample.row->write_packet(alone.sp(), padded_alone, 1));
    EXPECT_EQ(ToHex(padded.str()), ToHex(padded_alone.str()));
    EXPECT_EQ(message.allocator(), this->OwnsMemory(sample) ? allocator.get() : nullptr);
    EXPECT_EQ(TypeParam::GetAllocator(message.get()), message.allocator());
    TypeParam::Destruct(message.get());
    EXPECT_EQ(allocator.live_blocks(), 0U);
  });
}

TYPED_TEST_P(EnvelopeTest, ACopyTakesTheAllocatorOfItsSourceOrTheOneItIsGiven) {
  this->ForEveryMessage([this](const Sample& sample) {
    TestAllocator theirs;
    TestAllocator ours;
    typename TestFixture::Message source(sample, theirs);
    typename TypeParam::Kind copy;
    ASSERT_EQ(TypeParam::ConstructCopy(&copy, source.get()), &copy);
    EXPECT_EQ(Seen(*sample.row, *AsSubpacket(&copy)), Seen(sample));
    EXPECT_EQ(TypeParam::GetAllocator(&copy), source.allocator());
    TypeParam::Destruct(&copy);
    TypeParam::Destruct(&copy);

    ZunRtcpSubpacket sp;
    ASSERT_EQ(kRowOf<typename TypeParam::Kind>.construct_copy_allocator(&sp, source.sp(), ours), &sp);
    EXPECT_EQ(Seen(*sample.row, sp), Seen(sample));
    EXPECT_EQ(kRowOf<typename TypeParam::Kind>.get_allocator(&sp), this->OwnsMemory(sample) ? ours.get() : nullptr);
    kRowOf<typename TypeParam::Kind>.destruct(&sp);
  });
}

TYPED_TEST_P(EnvelopeTest, ARefusedCopyOwnsNothing) {
  this->ForEveryMessage([](const Sample& sample) {
    TestAllocator allocator;
    typename TestFixture::Message source(sample, allocator);
    const std::size_t blocks = allocator.live_blocks();
    allocator.RefuseFrom(0);
    typename TypeParam::Kind copy;
    const bool copied = TypeParam::ConstructCopy(&copy, source.get()) != nullptr;
    EXPECT_EQ(copied, blocks == 0);
    EXPECT_EQ(copied, allocator.refused() == 0);
    if (copied) TypeParam::Destruct(&copy);
    EXPECT_EQ(allocator.live_blocks(), blocks);
  });
}

// The destination's allocator survives, unless it has none.
TYPED_TEST_P(EnvelopeTest, AnyMessageIsAssignedToAnyOther) {
  this->ForEveryPair([this](const Sample& from, const Sample& to) {
    TestAllocator theirs;
    TestAllocator ours;
    typename TestFixture::Message source(from, theirs);
    typename TestFixture::Message destination(to, ours);
    ASSERT_EQ(TypeParam::Assign(destination.get(), source.get()), destination.get());
    EXPECT_TRUE(IsOfKind(*from.row, *destination.sp()));
    EXPECT_EQ(destination.seen(), Seen(from));
    ZunAllocator* const expected = this->OwnsMemory(to) ? ours.get() : theirs.get();
    EXPECT_EQ(destination.allocator(), this->OwnsMemory(from) ? expected : nullptr);
    EXPECT_EQ(source.seen(), Seen(from));
    // Through the row, and again: now they are of one kind.
    ASSERT_EQ(kRowOf<typename TypeParam::Kind>.assign(destination.sp(), source.sp()), destination.sp());
    EXPECT_EQ(destination.seen(), Seen(from));
    ASSERT_EQ(TypeParam::Assign(destination.get(), destination.get()), destination.get());
    EXPECT_EQ(destination.seen(), Seen(from));
  });
}

TYPED_TEST_P(EnvelopeTest, AFailedRebuildLeavesAnEmptyUnknownMessage) {
  this->ForEveryPair([this](const Sample& from, const Sample& to) {
    if (from.row == to.row) return;
    TestAllocator theirs;
    TestAllocator ours;
    TestAllocator& chosen = this->OwnsMemory(to) ? ours : theirs;
    for (std::size_t n = 0;; ++n) {
      typename TestFixture::Message source(from, theirs);
      typename TestFixture::Message destination(to, ours);
      chosen.RefuseFrom(n);
      const bool assigned = TypeParam::Assign(destination.get(), source.get()) != nullptr;
      const bool refused = chosen.refused() > 0;
      chosen.RefuseNothing();
      if (assigned) {
        EXPECT_EQ(destination.seen(), Seen(from));
        EXPECT_EQ(refused, n > 0);
        return;
      }
      this->ExpectEmptyUnknown(destination.get(), chosen);
      EXPECT_EQ(ours.live_blocks(), 0U) << "an object that is not destructed loses nothing";
      // It is a message like any other: it can be assigned to.
      ASSERT_EQ(TypeParam::Assign(destination.get(), source.get()), destination.get());
      EXPECT_EQ(destination.seen(), Seen(from));
    }
  });
}

TYPED_TEST_P(EnvelopeTest, AMessageOfAnotherKindIsRebuiltWithTheAllocatorOfTheBufferString) {
  this->ForEveryPair([this](const Sample& from, const Sample& to) {
    TestAllocator ours;
    TestAllocator of_buffer;
    typename TestFixture::Message message(to, ours);
    ASSERT_TRUE(message.Read(from.wire, {.buffer_allocator = of_buffer}));
    EXPECT_TRUE(IsOfKind(*from.row, *message.sp()));
    EXPECT_EQ(message.seen(), Seen(from));
    ZunAllocator* const expected = from.row == to.row ? ours.get() : of_buffer.get();
    EXPECT_EQ(message.allocator(), this->OwnsMemory(from) ? expected : nullptr);
    if (from.row != to.row) {
      EXPECT_EQ(ours.live_blocks(), 0U);
    }
  });
}

// Values that no kind has are one kind.
TYPED_TEST_P(EnvelopeTest, WithinAKindNothingIsRebuilt) {
  this->ForEveryPair([this](const Sample& from, const Sample& to) {
    if (from.row != to.row || from.elements_own_memory || from.wire.size() > to.wire.size()) return;
    if (from.name != to.name && from.wire.size() == to.wire.size()) return;
    TestAllocator ours;
    typename TestFixture::Message message(to, ours);
    typename TestFixture::Message source(from, ZunAllocatorGetSystem());
    const std::size_t calls = ours.calls();
    ASSERT_EQ(TypeParam::Assign(message.get(), source.get()), message.get());
    EXPECT_EQ(message.seen(), Seen(from));
    ASSERT_TRUE(message.Read(from.wire));
    EXPECT_EQ(message.seen(), Seen(from));
    EXPECT_EQ(message.allocator(), this->OwnsMemory(from) ? ours.get() : nullptr);
    EXPECT_EQ(ours.calls(), calls);
  });
}

TYPED_TEST_P(EnvelopeTest, ARefusedReadOwnsNothingThatItsDestructDoesNotRelease) {
  this->ForEveryPair([](const Sample& from, const Sample& to) {
    ForEveryRefusal([&](TestAllocator& refusing) {
      typename TestFixture::Message message(to, ZunAllocatorGetSystem());
      if (message.Read(from.wire, {.buffer_allocator = refusing})) {
        EXPECT_EQ(message.seen(), Seen(from));
        return;
      }
      EXPECT_GT(refusing.refused(), 0U);
      EXPECT_TRUE(IsOfKind(*from.row, *message.sp()));
      EXPECT_TRUE(from.row != to.row || from.elements_own_memory);
      EXPECT_EQ(message.allocator(), from.row == to.row ? ZunAllocatorGetSystem() : refusing.get());
    });
  });
}

TYPED_TEST_P(EnvelopeTest, IsAssignedAcrossPacketTypes) {
  this->ForEveryMessage([this](const Sample& sample) {
    TestAllocator allocator;
    typename TestFixture::Message message(sample, ZunAllocatorGetSystem());
    ZunRtcpSubpacket sp;
    ZunRtcpUnknownConstructDefault(&sp.unk, allocator);
    ASSERT_EQ(ZunRtcpSubpacketAssign(&sp, message.sp()), &sp);
    EXPECT_EQ(Seen(*sample.row, sp), Seen(sample));
    EXPECT_EQ(sample.row->get_allocator(&sp), this->OwnsMemory(sample) ? allocator.get() : nullptr);
    ZunRtcpSubpacketDestruct(&sp);
    ZunRtcpSubpacketDestruct(&sp);
    ASSERT_EQ(ZunRtcpSubpacketConstructCopy(&sp, message.sp()), &sp);
    EXPECT_EQ(Seen(*sample.row, sp), Seen(sample));
    ZunRtcpSubpacketDestruct(&sp);
  });
}

REGISTER_TYPED_TEST_SUITE_P(EnvelopeTest, EveryOperationReachesTheMessage,
                            ACopyTakesTheAllocatorOfItsSourceOrTheOneItIsGiven, ARefusedCopyOwnsNothing,
                            AnyMessageIsAssignedToAnyOther, AFailedRebuildLeavesAnEmptyUnknownMessage,
                            AMessageOfAnotherKindIsRebuiltWithTheAllocatorOfTheBufferString,
                            WithinAKindNothingIsRebuilt, ARefusedReadOwnsNothingThatItsDestructDoesNotRelease,
                            IsAssignedAcrossPacketTypes);

}  // namespace test

// The functions that all envelopes name alike.
#define ENVELOPE_API(KIND)                                   \
  using Kind = KIND;                                         \
  static constexpr auto ConstructCopy = KIND##ConstructCopy; \
  static constexpr auto Assign = KIND##Assign;               \
  static constexpr auto Destruct = KIND##Destruct;           \
  static constexpr auto GetAllocator = KIND##GetAllocator;   \
  static const auto& UnknownIn(const Kind& p) { return p.unk; }

#endif
