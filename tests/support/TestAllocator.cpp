#include "tests/support/TestAllocator.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace test {
namespace {

constexpr std::size_t kGuardSize = 32;  // keeps the block aligned for any type
constexpr unsigned char kGuard = 0xA5;
constexpr unsigned char kFresh = 0xCD;
constexpr std::size_t kNever = SIZE_MAX;

// The size stands in front of the guard that stands in front of the block.
struct Prefix {
  std::size_t size;
  unsigned char guard[kGuardSize - sizeof(std::size_t)];
};
static_assert(sizeof(Prefix) == kGuardSize);

bool IsGuard(const unsigned char* bytes, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    if (bytes[i] != kGuard) return false;
  }
  return true;
}

}  // namespace

TestAllocator::TestAllocator()
    : allocator_{Allocate, Deallocate, SIZE_MAX, this}, refused_from_(kNever), largest_(kNever) {}

TestAllocator::~TestAllocator() {
  EXPECT_EQ(live_blocks_, 0U) << "blocks were not given back";
  EXPECT_EQ(live_bytes_, 0U);
}

void TestAllocator::RefuseThese(const std::set<std::size_t>& numbers) {
  RefuseNothing();
  for (const std::size_t n : numbers) refused_numbers_.insert(allocations_ + n);
}

void TestAllocator::RefuseFrom(std::size_t n) {
  RefuseNothing();
  refused_from_ = allocations_ + n;
}

void TestAllocator::RefuseNothing() {
  refused_numbers_.clear();
  refused_from_ = kNever;
  largest_ = kNever;
}

bool TestAllocator::IsRefused(std::size_t number, std::size_t size) const {
  return number >= refused_from_ || refused_numbers_.count(number) != 0 || size > largest_ || size > kNever / 2;
}

ZunVoidPtr TestAllocator::Allocate(ZunAllocator* a, ZunSizeT size) {
  auto* const self = static_cast<TestAllocator*>(a->userData);
  EXPECT_NE(size, 0U) << "an empty block was asked for";
  if (self->IsRefused(self->allocations_++, size)) {
    ++self->refused_;
    return nullptr;
  }
  auto* const raw = static_cast<unsigned char*>(std::malloc(sizeof(Prefix) + size + kGuardSize));
  if (raw == nullptr) return nullptr;
  auto* const prefix = static_cast<Prefix*>(static_cast<void*>(raw));  // malloc aligns for it
  prefix->size = size;
  std::memset(prefix->guard, kGuard, sizeof(prefix->guard));
  std::memset(raw + sizeof(Prefix), kFresh, size);
  std::memset(raw + sizeof(Prefix) + size, kGuard, kGuardSize);
  ++self->live_blocks_;
  self->live_bytes_ += size;
  if (self->peak_bytes_ < self->live_bytes_) self->peak_bytes_ = self->live_bytes_;
  return raw + sizeof(Prefix);
}

void TestAllocator::Deallocate(ZunAllocator* a, ZunVoidPtr block, ZunSizeT size) {
  auto* const self = static_cast<TestAllocator*>(a->userData);
  ++self->deallocations_;
  ASSERT_NE(block, nullptr) << "a null block was given back";
  unsigned char* const raw = static_cast<unsigned char*>(block) - sizeof(Prefix);
  const auto* const prefix = static_cast<const Prefix*>(static_cast<const void*>(raw));
  ASSERT_EQ(prefix->size, size) << "a block was given back with another size than was asked for";
  EXPECT_TRUE(IsGuard(prefix->guard, sizeof(prefix->guard))) << "bytes in front of a block were written";
  EXPECT_TRUE(IsGuard(raw + sizeof(Prefix) + size, kGuardSize)) << "bytes after a block were written";
  --self->live_blocks_;
  self->live_bytes_ -= size;
  std::memset(raw, 0xDD, sizeof(Prefix) + size + kGuardSize);
  std::free(raw);
}

std::size_t ForEveryRefusal(const std::function<void(TestAllocator& refusing)>& scenario) {
  return ForEveryRefusalAfter([&](TestAllocator& refusing, const std::function<void()>& begin) {
    begin();
    scenario(refusing);
  });
}

std::size_t ForEveryRefusalAfter(
    const std::function<void(TestAllocator& refusing, const std::function<void()>& begin)>& scenario) {
  for (std::size_t n = 0;; ++n) {
    bool met = false;
    for (const bool for_ever : {false, true}) {
      TestAllocator refusing;
      SCOPED_TRACE(::testing::Message() << "allocation " << n << (for_ever ? " and all after it" : "") << " refused");
      scenario(refusing, [&] { for_ever ? refusing.RefuseFrom(n) : refusing.RefuseOnce(n); });
      met = met || refusing.refused() > 0;
    }
    if (!met || ::testing::Test::HasFatalFailure()) return n;
  }
}

}  // namespace test
