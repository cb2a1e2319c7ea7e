#include "Zun/Rtp/Cpp/Log.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "Zun/Rtp/Cpp/Packet.h"

namespace {

using namespace zun::rtcp;

TEST(LogHandler, HandsMessagesToAnyCallable) {
  std::vector<std::string> messages;
  {
    const LogHandler log([&](const LogMessage& message) {
      EXPECT_EQ(message.level, ZUN_LOGLEVEL_ERROR);
      EXPECT_EQ(message.category, "rtcp");
      EXPECT_FALSE(message.file.empty());
      EXPECT_GT(message.line, 0);
      messages.push_back(std::string(message.function) + ": " + std::string(message.text));
    });
    Bye bye;
    EXPECT_FALSE(bye.reason(std::string(256, 'x')));
  }
  ASSERT_EQ(messages.size(), 1U);
  EXPECT_EQ(messages[0].substr(0, 20), "ZunRtcpByeSetReason:");
  EXPECT_FALSE(Bye().reason(std::string(256, 'x')));
  EXPECT_EQ(messages.size(), 1U);  // after the handler there is none
}

TEST(LogHandler, TakesAStdFunctionAndALevel) {
  std::size_t count = 0;
  const LogHandler log(std::function<void(const LogMessage&)>([&](const LogMessage&) { ++count; }));
  set_max_log_level(ZUN_LOGLEVEL_FATAL);
  EXPECT_FALSE(Bye().reason(std::string(256, 'x')));
  EXPECT_EQ(count, 0U);
  set_max_log_level(ZUN_LOGLEVEL_DEBUG);
  EXPECT_FALSE(Bye().reason(std::string(256, 'x')));
  EXPECT_EQ(count, 1U);
}

}  // namespace
