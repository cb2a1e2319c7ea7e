// The log of a fresh process: nothing else may be tested here, as what is set stays set.
#include <gtest/gtest.h>

#include <vector>

#include "Zun/Os/ZunLog.h"

namespace {

std::vector<ZunLogLevel> delivered;

void Keep(ZunVoidPtr, ZunLogLevel level, ZunLogCategory, const char*, ZunInt, const char*, const char*) {
  delivered.push_back(level);
}

TEST(ZunLogStart, PassesOnAllUpToDebug) {
  ZunLogSetHandler(Keep, nullptr);
  for (ZunLogCategory category : {ZunLogRtcp_, ZunLogRtcpFeedback_}) {
    delivered.clear();
    for (ZunLogLevel level = ZUN_LOG_FATAL; level < ZUN_LOG_LEVEL_INVALID; ++level) {
      ZunLogDo_(level, category, "file", 1, "function", "message");
    }
    EXPECT_EQ(delivered,
              (std::vector<ZunLogLevel>{ZUN_LOG_FATAL, ZUN_LOG_ERROR, ZUN_LOG_WARNING, ZUN_LOG_INFO, ZUN_LOG_DEBUG}));
  }
  ZunLogSetHandler(nullptr, nullptr);
}

}  // namespace
