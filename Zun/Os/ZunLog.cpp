#include "Zun/Os/ZunLog.h"

#include <atomic>
#include <cstdarg>
#include <cstdio>

struct ZunLogCategoryState_ {
  const char* name;
  std::atomic<ZunLogLevel> max_level;
};

namespace {

constexpr ZunSizeT kMaxMessageSize = 1023;

ZunLogCategoryState_ rtcp = {"rtcp", {ZUN_LOG_DEBUG}};
ZunLogCategoryState_ rtcp_feedback = {"rtcp-feedback", {ZUN_LOG_DEBUG}};

// The handler and its user data change together. A sequence number that is odd during a change lets a
// logging thread see whether the two that it read belong together, without a lock.
std::atomic<ZunUint32> handler_sequence = {0};
std::atomic<ZunLogHandler> current_handler = {nullptr};
std::atomic<ZunVoidPtr> current_user_data = {nullptr};

struct HandlerWithData {
  ZunLogHandler handler;
  ZunVoidPtr user_data;
};

HandlerWithData LoadHandler() {
  for (;;) {
    const ZunUint32 before = handler_sequence.load(std::memory_order_acquire);
    const HandlerWithData loaded = {current_handler.load(std::memory_order_acquire),
                                    current_user_data.load(std::memory_order_acquire)};
    if ((before & 1) == 0 && handler_sequence.load(std::memory_order_relaxed) == before) return loaded;
  }
}

bool IsWanted(ZunLogLevel level, ZunLogCategory category) {
  if (current_handler.load(std::memory_order_relaxed) == nullptr) return false;
  return category == nullptr || level <= category->max_level.load(std::memory_order_relaxed);
}

void Deliver(ZunLogLevel level, ZunLogCategory category, const char* file, ZunInt line, const char* function,
             const char* message) {
  const HandlerWithData to = LoadHandler();
  if (to.handler == nullptr) return;
  to.handler(to.user_data, level, category, file, line, function, message);
}

}  // namespace

ZunLogCategory ZunLogRtcp_ = &rtcp;
ZunLogCategory ZunLogRtcpFeedback_ = &rtcp_feedback;

void ZunLogSetHandler(ZunLogHandler handler, ZunVoidPtr userData) {
  ZunUint32 even = handler_sequence.load(std::memory_order_relaxed) & ~1U;
  while (!handler_sequence.compare_exchange_weak(even, even + 1, std::memory_order_acq_rel)) even &= ~1U;
  current_handler.store(handler, std::memory_order_release);
  current_user_data.store(userData, std::memory_order_release);
  handler_sequence.store(even + 2, std::memory_order_release);
}

void ZunLogSetMaxLevel(ZunLogCategory category, ZunLogLevel level) {
  if (category != nullptr) category->max_level.store(level, std::memory_order_relaxed);
}

const char* ZunLogCategoryGetName(ZunLogCategory category) { return category == nullptr ? "" : category->name; }

void ZunLogDo_(ZunLogLevel level, ZunLogCategory category, const char* file, ZunInt line, const char* function,
               const char* message) {
  if (!IsWanted(level, category)) return;
  char text[kMaxMessageSize + 1];
  (void)std::snprintf(text, sizeof(text), "%s", message);
  Deliver(level, category, file, line, function, text);
}

void ZunLogDoFormatted_(ZunLogLevel level, ZunLogCategory category, const char* file, ZunInt line, const char* function,
                        const char* format, ...) {
  if (!IsWanted(level, category)) return;
  char text[kMaxMessageSize + 1];
  std::va_list arguments;
  va_start(arguments, format);
  (void)std::vsnprintf(text, sizeof(text), format, arguments);
  va_end(arguments);
  Deliver(level, category, file, line, function, text);
}
