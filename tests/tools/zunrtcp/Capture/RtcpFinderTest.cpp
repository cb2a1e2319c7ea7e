#include "tools/zunrtcp/Capture/RtcpFinder.h"

#include <gtest/gtest.h>

#include "tests/support/Bytes.h"

namespace zunrtcp {

TEST(RtcpFinder, TellsRtcpFromRtpAndOthers) {
  EXPECT_TRUE(LooksLikeRtcp(test::Hex("80C80000")));
  EXPECT_TRUE(LooksLikeRtcp(test::Hex("BFC00000")));
  EXPECT_TRUE(LooksLikeRtcp(test::Hex("80DF0000")));
  EXPECT_FALSE(LooksLikeRtcp(test::Hex("80BF0000")));
  EXPECT_FALSE(LooksLikeRtcp(test::Hex("80E00000")));
  EXPECT_FALSE(LooksLikeRtcp(test::Hex("40C80000")));
  EXPECT_FALSE(LooksLikeRtcp(test::Hex("80C800")));
  EXPECT_FALSE(LooksLikeRtcp(""));
}

}  // namespace zunrtcp
