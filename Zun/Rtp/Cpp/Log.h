// The library's log, handed to any callable for as long as a LogHandler lives.
#ifndef ZUN_RTP_CPP_LOG_H
#define ZUN_RTP_CPP_LOG_H

#include <string_view>
#include <utility>

#include "Zun/Os/ZunLog.h"

namespace zun::rtcp {

// All texts are the library's and end with the call.
struct LogMessage {
  ZunLogLevel level;
  std::string_view category;  // "rtcp" or "rtcp-feedback"
  std::string_view file;
  int line;
  std::string_view function;  // the public function that logs
  std::string_view text;
};

// Hands every message to `handler(const LogMessage&)`, on the thread that caused it; there is one handler at a time,
// and none after this. Destroy it only when no other thread is in the library: a call that began before may still reach
// it. The handler must not throw.
template <class Handler>
class LogHandler {
 public:
  explicit LogHandler(Handler handler) : handler_(std::move(handler)) { ZunLogSetHandler(Handle, this); }
  ~LogHandler() { ZunLogSetHandler(nullptr, nullptr); }
  LogHandler(const LogHandler&) = delete;
  LogHandler& operator=(const LogHandler&) = delete;

 private:
  static void Handle(ZunVoidPtr self, ZunLogLevel level, ZunLogCategory category, const char* file, ZunInt line,
                     const char* function, const char* message) noexcept {
    static_cast<LogHandler*>(self)->handler_(
        LogMessage{level, ZunLogCategoryGetName(category), file, line, function, message});
  }

  Handler handler_;
};

// Passes on messages of both categories up to `level`, in the beginning ZUN_LOGLEVEL_DEBUG.
inline void set_max_log_level(ZunLogLevel level) noexcept {
  ZunLogSetMaxLevel(ZunLogRtcp_, level);
  ZunLogSetMaxLevel(ZunLogRtcpFeedback_, level);
}

}  // namespace zun::rtcp

#endif
