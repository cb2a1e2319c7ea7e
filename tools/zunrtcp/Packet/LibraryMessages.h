// Collects what the library logs.
#ifndef TOOLS_ZUNRTCP_PACKET_LIBRARYMESSAGES_H
#define TOOLS_ZUNRTCP_PACKET_LIBRARYMESSAGES_H

#include <string>
#include <vector>

#include "Zun/Os/ZunLog.h"

namespace zunrtcp {

// While it lives, messages go to it. One at a time.
class LibraryMessages {
 public:
  LibraryMessages() { ZunLogSetHandler(Collect, this); }
  ~LibraryMessages() { ZunLogSetHandler(nullptr, nullptr); }
  LibraryMessages(const LibraryMessages&) = delete;
  LibraryMessages& operator=(const LibraryMessages&) = delete;

  const std::vector<std::string>& messages() const { return messages_; }

 private:
  static void Collect(ZunVoidPtr user_data, ZunLogLevel, ZunLogCategory, const char*, ZunInt, const char*,
                      const char* message) {
    static_cast<LibraryMessages*>(user_data)->messages_.emplace_back(message);
  }

  std::vector<std::string> messages_;
};

}  // namespace zunrtcp

#endif
