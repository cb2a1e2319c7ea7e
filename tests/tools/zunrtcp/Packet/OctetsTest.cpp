#include "tools/zunrtcp/Packet/Octets.h"

#include <gtest/gtest.h>

#include "tests/support/Bytes.h"

namespace zunrtcp {

TEST(OctetCursor, ReadsOneFieldAfterTheOther) {
  const std::string bytes = test::Hex("01 0203 040506 0708 09");
  OctetCursor in(bytes);
  EXPECT_EQ(in.U8(), 1U);
  EXPECT_EQ(in.U16(), 0x0203U);
  EXPECT_EQ(in.Number(3), 0x040506U);
  EXPECT_EQ(in.Take(2), test::Hex("0708"));
  EXPECT_EQ(in.Next(), 9U);
  EXPECT_EQ(in.at(), 8U);
  EXPECT_EQ(in.left(), 1U);
  EXPECT_FALSE(in.AtEnd());
  EXPECT_EQ(in.TakeRest(), test::Hex("09"));
  EXPECT_TRUE(in.AtEnd());
  EXPECT_EQ(in.TakeRest(), "");
}

TEST(OctetCursor, StaysWhereItIsWhenAFieldLiesBeyondTheEnd) {
  const std::string bytes = test::Hex("0102");
  OctetCursor in(bytes);
  EXPECT_EQ(in.U8(), 1U);
  EXPECT_THROW(in.U16(), OctetsEnd);
  EXPECT_THROW(in.Take(2), OctetsEnd);
  EXPECT_EQ(in.U8(), 2U);
  EXPECT_THROW(in.Next(), OctetsEnd);
}

TEST(Octets, PaddingLeadsToAMultipleOfFour) {
  EXPECT_EQ(PaddingAfter(0), 0U);
  EXPECT_EQ(PaddingAfter(5), 3U);
  EXPECT_EQ(PaddingAfter(7), 1U);
  EXPECT_EQ(PaddingAfter(8), 0U);
}

}  // namespace zunrtcp
