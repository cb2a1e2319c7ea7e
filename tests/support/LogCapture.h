// Collects what the library logs while it lives.
#ifndef TESTS_SUPPORT_LOGCAPTURE_H
#define TESTS_SUPPORT_LOGCAPTURE_H

#include <string>
#include <vector>

#include "Zun/Os/ZunLog.h"

namespace test {

struct LogEntry {
  ZunLogLevel level;
  ZunLogCategory category;
  std::string file;
  ZunInt line;
  std::string function;
  std::string message;
};

class LogCapture {
 public:
  LogCapture();   // takes over the handler and passes on every level
  ~LogCapture();  // leaves no handler, and the levels as they are at the start
  LogCapture(const LogCapture&) = delete;
  LogCapture& operator=(const LogCapture&) = delete;

  const std::vector<LogEntry>& entries() const { return entries_; }
  void Clear() { entries_.clear(); }

  // Expects exactly one message since the last call, and that it is this one; forgets it.
  void ExpectOne(ZunLogLevel level, ZunLogCategory category, const std::string& function, const std::string& message);
  // Expects that nothing was logged since the last call.
  void ExpectNone();

 private:
  static void Handle(ZunVoidPtr user_data, ZunLogLevel level, ZunLogCategory category, const char* file, ZunInt line,
                     const char* function, const char* message);

  std::vector<LogEntry> entries_;
};

}  // namespace test

#endif
