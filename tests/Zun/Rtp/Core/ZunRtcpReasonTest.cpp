#include "Zun/Rtp/Core/ZunRtcpReason.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace {

TEST(ZunRtcpDecodeReason, HasATextOfItsOwn) {
  std::set<std::string> texts;
  for (ZunRtcpDecodeReason reason = 0; reason < ZUN_RTCP_DECODE_REASON_COUNT; ++reason) {
    texts.insert(ZunRtcpDecodeReasonGetText(reason));
  }
  EXPECT_EQ(texts.size(), static_cast<std::size_t>(ZUN_RTCP_DECODE_REASON_COUNT));
  EXPECT_EQ(texts.count("unknown reason"), 0U);
  for (const ZunRtcpDecodeReason reason : {-1, static_cast<int>(ZUN_RTCP_DECODE_REASON_COUNT), 1000}) {
    EXPECT_STREQ(ZunRtcpDecodeReasonGetText(reason), "unknown reason");
  }
}

TEST(ZunRtcpEncodeReason, HasATextOfItsOwn) {
  std::set<std::string> texts;
  for (ZunRtcpEncodeReason reason = 0; reason < ZUN_RTCP_ENCODE_REASON_COUNT; ++reason) {
    texts.insert(ZunRtcpEncodeReasonGetText(reason));
  }
  EXPECT_EQ(texts.size(), static_cast<std::size_t>(ZUN_RTCP_ENCODE_REASON_COUNT));
  EXPECT_EQ(texts.count("unknown reason"), 0U);
  for (const ZunRtcpEncodeReason reason : {-1, static_cast<int>(ZUN_RTCP_ENCODE_REASON_COUNT), 1000}) {
    EXPECT_STREQ(ZunRtcpEncodeReasonGetText(reason), "unknown reason");
  }
}

}  // namespace
