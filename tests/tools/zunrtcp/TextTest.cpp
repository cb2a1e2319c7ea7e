#include "tools/zunrtcp/Text.h"

#include <gtest/gtest.h>

namespace zunrtcp {

TEST(Text, HexDigitsAreTwoForEachByte) {
  EXPECT_EQ(HexDigits(""), "");
  EXPECT_EQ(HexDigits("\x01\xab"), "01ab");
}

TEST(Text, JoinedHasTheSeparatorOnlyBetween) {
  EXPECT_EQ(Joined({}, ", "), "");
  EXPECT_EQ(Joined({"a"}, ", "), "a");
  EXPECT_EQ(Joined({"a", "b", "c"}, ", "), "a, b, c");
}

}  // namespace zunrtcp
