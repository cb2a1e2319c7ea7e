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

// The handler and its user data change together, without a lock for those who log: of two pairs the one that is not
// being changed is read, told by the last bit of a number that every change moves on. So a change that is interrupted
// keeps nobody waiting, and a pair is read again only when a change was finished meanwhile.
struct HandlerWithData {
  ZunLogHandler handler;
  ZunVoidPtr user_data;
};

struct SharedHandlerWithData {
  std::atomic<ZunLogHandler> handler = {nullptr};
  std::atomic<ZunVoidPtr> user_data = {nullptr};

  void Store(HandlerWithData pair) {
    handler.store(pair.handler, std::memory_order_release);
    user_data.store(pair.user_data, std::memory_order_release);
  }
  HandlerWithData Load() const {
    return {handler.load(std::memory_order_acquire), user_data.load(std::memory_order_acquire)};
  }
};

SharedHandlerWithData handler_pairs[2];
std::atomic<ZunUint32> handler_changes = {0};
std::atomic_flag handler_is_changing;

HandlerWithData LoadHandler() {
  for (;;) {
    const ZunUint32 changes = handler_changes.load(std::memory_order_acquire);
    const HandlerWithData pair = handler_pairs[changes & 1].Load();
    if (handler_changes.load(std::memory_order_relaxed) == changes) return pair;
  }
}

void StoreHandler(HandlerWithData pair) {
  while (handler_is_changing.test_and_set(std::memory_order_acquire)) {
    // Another thread changes it, which is soon done.
  }
  for (SharedHandlerWithData& unread : handler_pairs) {
    handler_changes.fetch_add(1, std::memory_order_release);
    unread.Store(pair);
  }
  handler_is_changing.clear(std::memory_order_release);
}

bool IsWanted(ZunLogLevel level, ZunLogCategory category) {
  if (handler_pairs[0].handler.load(std::memory_order_relaxed) == nullptr) return false;
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

void ZunLogSetHandler(ZunLogHandler handler, ZunVoidPtr userData) { StoreHandler({handler, userData}); }

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
