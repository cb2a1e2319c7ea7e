#include "Zun/Os/ZunLog.h"

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/LogCapture.h"

namespace {

using namespace test;

void LogText(ZunLogLevel level, ZunLogCategory category, const char* message) {
  ZunLogDo_(level, category, "file", 1, "function", message);
}

TEST(ZunLog, LevelsHaveTheirNumbers) {
  const ZunLogLevel levels[] = {ZUN_LOGLEVEL_FATAL, ZUN_LOGLEVEL_ERROR,  ZUN_LOGLEVEL_WARNING,  ZUN_LOGLEVEL_INFO,
                                ZUN_LOGLEVEL_DEBUG, ZUN_LOGLEVEL_SENT,   ZUN_LOGLEVEL_RECEIVED, ZUN_LOGLEVEL_ENTER,
                                ZUN_LOGLEVEL_LEAVE, ZUN_LOGLEVEL_INVALID};
  const ZunLogLevel aliases[] = {ZUN_LOG_FATAL, ZUN_LOG_ERROR,        ZUN_LOG_WARNING,  ZUN_LOG_INFO,
                                 ZUN_LOG_DEBUG, ZUN_LOG_SENT,         ZUN_LOG_RECEIVED, ZUN_LOG_ENTER,
                                 ZUN_LOG_LEAVE, ZUN_LOG_LEVEL_INVALID};
  for (ZunLogLevel i = 0; i < 10; ++i) {
    EXPECT_EQ(levels[i], i);
    EXPECT_EQ(aliases[i], i);
  }
  EXPECT_EQ(ZUN_LOG_NUM_LEVELS, 9);
}

TEST(ZunLog, CategoriesHaveNames) {
  EXPECT_STREQ(ZunLogCategoryGetName(ZunLogRtcp_), "rtcp");
  EXPECT_STREQ(ZunLogCategoryGetName(ZunLogRtcpFeedback_), "rtcp-feedback");
  EXPECT_NE(ZunLogRtcp_, ZunLogRtcpFeedback_);
}

TEST(ZunLog, WithoutACategoryThereIsNoLevel) {
  LogCapture log;
  EXPECT_STREQ(ZunLogCategoryGetName(nullptr), "");
  ZunLogSetMaxLevel(nullptr, ZUN_LOG_FATAL);
  LogText(ZUN_LOG_LEVEL_INVALID, nullptr, "of no category");
  LogText(ZUN_LOG_DEBUG, ZunLogRtcp_, "of one");
  ASSERT_EQ(log.entries().size(), 2U);
  EXPECT_EQ(log.entries()[0].category, nullptr);
  EXPECT_EQ(log.entries()[0].message, "of no category");
  EXPECT_EQ(log.entries()[1].category, ZunLogRtcp_);
}

TEST(ZunLog, HandlerReceivesEverything) {
  LogCapture log;
  ZunLogDo_(ZUN_LOG_WARNING, ZunLogRtcpFeedback_, "some/file", 42, "SomeFunction", "100% text, %s %d as it stands");
  ZunLogDoFormatted_(ZUN_LOG_ERROR, ZunLogRtcp_, "other/file", 7, "OtherFunction", "%lu of %u: %s", 5UL, 9U, "x");
  ASSERT_EQ(log.entries().size(), 2U);
  const LogEntry& plain = log.entries()[0];
  EXPECT_EQ(plain.level, ZUN_LOG_WARNING);
  EXPECT_EQ(plain.category, ZunLogRtcpFeedback_);
  EXPECT_EQ(plain.file, "some/file");
  EXPECT_EQ(plain.line, 42);
  EXPECT_EQ(plain.function, "SomeFunction");
  EXPECT_EQ(plain.message, "100% text, %s %d as it stands");
  const LogEntry& formatted = log.entries()[1];
  EXPECT_EQ(formatted.level, ZUN_LOG_ERROR);
  EXPECT_EQ(formatted.category, ZunLogRtcp_);
  EXPECT_EQ(formatted.file, "other/file");
  EXPECT_EQ(formatted.line, 7);
  EXPECT_EQ(formatted.function, "OtherFunction");
  EXPECT_EQ(formatted.message, "5 of 9: x");
}

TEST(ZunLog, MessagesAreCutTo1023Bytes) {
  LogCapture log;
  for (const std::size_t size : {0U, 1U, 1022U, 1023U, 1024U, 1025U, 5000U}) {
    std::string text(size, 'x');
    if (size > 1) text[0] = 'a';
    LogText(ZUN_LOG_ERROR, ZunLogRtcp_, text.c_str());
    ZunLogDoFormatted_(ZUN_LOG_ERROR, ZunLogRtcp_, "file", 1, "function", "%s", text.c_str());
    ASSERT_EQ(log.entries().size(), 2U);
    EXPECT_EQ(log.entries()[0].message, text.substr(0, 1023));
    EXPECT_EQ(log.entries()[1].message, text.substr(0, 1023));
    log.Clear();
  }
}

TEST(ZunLog, StartsAtDebugLevel) {
  std::vector<ZunLogLevel> seen;
  ZunLogSetHandler([](ZunVoidPtr data, ZunLogLevel level, ZunLogCategory, const char*, ZunInt, const char*,
                      const char*) { static_cast<std::vector<ZunLogLevel>*>(data)->push_back(level); },
                   &seen);
  for (ZunLogLevel level = ZUN_LOG_FATAL; level <= ZUN_LOG_LEAVE; ++level) {
    LogText(level, ZunLogRtcp_, "m");
    LogText(level, ZunLogRtcpFeedback_, "m");
  }
  ZunLogSetHandler(nullptr, nullptr);
  EXPECT_EQ(seen, (std::vector<ZunLogLevel>{0, 0, 1, 1, 2, 2, 3, 3, 4, 4}));
}

TEST(ZunLog, EachCategoryHasItsOwnLevel) {
  LogCapture log;
  for (ZunLogLevel limit = ZUN_LOG_FATAL; limit <= ZUN_LOG_LEAVE; ++limit) {
    ZunLogSetMaxLevel(ZunLogRtcp_, limit);
    ZunLogSetMaxLevel(ZunLogRtcpFeedback_, ZUN_LOG_LEAVE - limit);
    for (ZunLogLevel level = ZUN_LOG_FATAL; level <= ZUN_LOG_LEAVE; ++level) {
      LogText(level, ZunLogRtcp_, "m");
      EXPECT_EQ(log.entries().size(), level <= limit ? 1U : 0U);
      log.Clear();
      ZunLogDoFormatted_(level, ZunLogRtcpFeedback_, "file", 1, "function", "%d", 1);
      EXPECT_EQ(log.entries().size(), level <= ZUN_LOG_LEAVE - limit ? 1U : 0U);
      log.Clear();
    }
  }
}

TEST(ZunLog, WithoutAHandlerNothingIsPrinted) {
  ZunLogSetHandler(nullptr, nullptr);
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  LogText(ZUN_LOG_FATAL, ZunLogRtcp_, "message");
  ZunLogDoFormatted_(ZUN_LOG_ERROR, ZunLogRtcpFeedback_, "file", 1, "function", "%s", "message");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(ZunLog, LastHandlerSetIsTheOneThatIsCalled) {
  int first = 0;
  int second = 0;
  const ZunLogHandler count = [](ZunVoidPtr data, ZunLogLevel, ZunLogCategory, const char*, ZunInt, const char*,
                                 const char*) { ++*static_cast<int*>(data); };
  ZunLogSetHandler(count, &first);
  LogText(ZUN_LOG_ERROR, ZunLogRtcp_, "m");
  ZunLogSetHandler(count, &second);
  LogText(ZUN_LOG_ERROR, ZunLogRtcp_, "m");
  LogText(ZUN_LOG_ERROR, ZunLogRtcp_, "m");
  ZunLogSetHandler(nullptr, nullptr);
  LogText(ZUN_LOG_ERROR, ZunLogRtcp_, "m");
  EXPECT_EQ(first, 1);
  EXPECT_EQ(second, 2);
}

TEST(ZunLog, HandlerMayLogAndReplaceItself) {
  std::vector<std::string> seen;
  ZunLogSetHandler(
      [](ZunVoidPtr data, ZunLogLevel, ZunLogCategory category, const char*, ZunInt, const char*, const char* message) {
        static_cast<std::vector<std::string>*>(data)->emplace_back(message);
        ZunLogSetHandler(nullptr, nullptr);
        LogText(ZUN_LOG_ERROR, category, "from within");
      },
      &seen);
  LogText(ZUN_LOG_ERROR, ZunLogRtcp_, "outer");
  EXPECT_EQ(seen, std::vector<std::string>{"outer"});
}

// Each handler knows the one object it may be called with.
struct Pair {
  std::atomic<int> calls{0};
};
Pair pair_a;
Pair pair_b;
std::atomic<int> mismatches{0};

void HandlerA(ZunVoidPtr data, ZunLogLevel, ZunLogCategory, const char*, ZunInt, const char*, const char*) {
  if (data != &pair_a) ++mismatches;
  ++pair_a.calls;
}

void HandlerB(ZunVoidPtr data, ZunLogLevel, ZunLogCategory, const char*, ZunInt, const char*, const char*) {
  if (data != &pair_b) ++mismatches;
  ++pair_b.calls;
}

// Setters that race with each other as well as with those that log.
TEST(ZunLog, HandlerAndUserDataBelongTogetherWhileHandlersChange) {
  std::atomic<bool> stop{false};
  std::vector<std::thread> threads;
  for (int t = 0; t < 2; ++t) {
    threads.emplace_back([&stop] {
      while (!stop) LogText(ZUN_LOG_ERROR, ZunLogRtcp_, "message");
    });
    threads.emplace_back([&stop] {
      while (!stop) {
        ZunLogSetHandler(HandlerA, &pair_a);
        ZunLogSetHandler(HandlerB, &pair_b);
        ZunLogSetMaxLevel(ZunLogRtcp_, ZUN_LOG_DEBUG);
        ZunLogSetHandler(nullptr, nullptr);
      }
    });
  }
  while (pair_a.calls < 2000 || pair_b.calls < 2000) std::this_thread::yield();
  stop = true;
  for (std::thread& thread : threads) thread.join();
  ZunLogSetHandler(nullptr, nullptr);
  EXPECT_EQ(mismatches, 0);
}

}  // namespace
