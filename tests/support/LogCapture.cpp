#include "tests/support/LogCapture.h"

#include <gtest/gtest.h>

namespace test {

LogCapture::LogCapture() {
  ZunLogSetMaxLevel(ZunLogRtcp_, ZUN_LOG_LEVEL_INVALID);
  ZunLogSetMaxLevel(ZunLogRtcpFeedback_, ZUN_LOG_LEVEL_INVALID);
  ZunLogSetHandler(Handle, this);
}

LogCapture::~LogCapture() {
  ZunLogSetHandler(nullptr, nullptr);
  ZunLogSetMaxLevel(ZunLogRtcp_, ZUN_LOG_DEBUG);
  ZunLogSetMaxLevel(ZunLogRtcpFeedback_, ZUN_LOG_DEBUG);
}

void LogCapture::ExpectOne(ZunLogLevel level, ZunLogCategory category, const std::string& function,
                           const std::string& message) {
  ASSERT_EQ(entries_.size(), 1U);
  const LogEntry& entry = entries_.front();
  EXPECT_EQ(entry.level, level);
  EXPECT_STREQ(ZunLogCategoryGetName(entry.category), ZunLogCategoryGetName(category));
  EXPECT_EQ(entry.file, "Zun/Rtp/ZunRtcpPacket");
  EXPECT_GT(entry.line, 0);
  EXPECT_EQ(entry.function, function);
  EXPECT_EQ(entry.message, message);
  entries_.clear();
}

void LogCapture::ExpectNone() {
  for (const LogEntry& entry : entries_) ADD_FAILURE() << "logged: " << entry.function << ": " << entry.message;
  entries_.clear();
}

void LogCapture::Handle(ZunVoidPtr user_data, ZunLogLevel level, ZunLogCategory category, const char* file, ZunInt line,
                        const char* function, const char* message) {
  static_cast<LogCapture*>(user_data)->entries_.push_back({level, category, file, line, function, message});
}

}  // namespace test
