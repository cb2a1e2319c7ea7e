#include "tools/zunrtcp/Packet/Refusal.h"

#include <gtest/gtest.h>

#include "tests/support/Bytes.h"

namespace zunrtcp {

namespace {

const std::string kDatagram = test::Hex("00010203 04050607 08090A0B 0C0D0E0F 10111213 14151617");

std::string BytesAround(std::size_t stopped_at) { return RefusalAt(kDatagram, "why", 0, stopped_at).BytesWords(); }

TEST(Refusal, TellsTheReasonAndTheOffsets) {
  EXPECT_EQ(RefusalAt(kDatagram, "why", 4, 9).Words(), "why; it begins at byte 4, reading stopped at byte 9");
}

TEST(Refusal, ShowsTheBytesOnBothSidesOfWhereReadingStopped) {
  EXPECT_EQ(BytesAround(12), "bytes 4 to 19: 04050607 08090a0b | 0c0d0e0f 10111213");
}

TEST(Refusal, MarksAPlaceWithinAWord) {
  EXPECT_EQ(BytesAround(10), "bytes 0 to 17: 00010203 04050607 0809 | 0a0b 0c0d0e0f 1011");
}

TEST(Refusal, ShowsNoBytesThatAreNotThere) {
  EXPECT_EQ(BytesAround(0), "bytes 0 to 7: | 00010203 04050607");
  EXPECT_EQ(BytesAround(24), "bytes 16 to 23: 10111213 14151617 |");
  EXPECT_EQ(RefusalAt("", "why", 0, 0).BytesWords(), "no bytes");
}

}  // namespace

}  // namespace zunrtcp
