// What the C++ face throws, and what it keeps from being thrown through the library. Alone in a file: everything else
// can be compiled without exceptions.
#include <gtest/gtest.h>

#include <memory_resource>
#include <new>
#include <stdexcept>
#include <string>

#include "Zun/Rtp/Cpp/Memory.h"
#include "Zun/Rtp/Cpp/Packet.h"
#include "Zun/Rtp/Cpp/Result.h"
#include "tests/support/Samples.h"

namespace {

using namespace zun::rtcp;

TEST(Result, WithAValueThrowsNothing) {
  using R = Result<std::string, EncodeError>;
  const R good(std::string("value"));
  EXPECT_EQ(good.value_or_throw(), "value");
  EXPECT_EQ(R(std::string("moved")).value_or_throw(), "moved");
}

TEST(Result, ThrowsTheTextOfItsError) {
  using R = Result<std::string, EncodeError>;
  const R bad(EncodeError::no_room(7));
  try {
    (void)bad.value_or_throw();
    FAIL();
  } catch (const std::runtime_error& error) {
    EXPECT_EQ(std::string(error.what()), "7 octets are needed");
  }
  EXPECT_THROW((void)R(EncodeError::no_room(7)).value_or_throw(), std::runtime_error);
}

TEST(ResourceAllocator, AResourceThatThrowsRefuses) {
  ResourceAllocator allocator(std::pmr::null_memory_resource());
  Packet packet(allocator);
  const auto decoded = packet.decode(octets_of(test::Golden("SdesTwoChunks")));
  ASSERT_FALSE(decoded);
  EXPECT_EQ(decoded.error().reason(), ZUN_RTCP_DECODE_REASON_ALLOCATION);
}

}  // namespace
