// One macro per log level: it fills in the file and the line; the message stands where it is decided.
#ifndef ZUN_OS_LOG_H
#define ZUN_OS_LOG_H

#include "Zun/Os/ZunLog.h"

namespace zun {

// All messages name one source, so that a filter on it keeps working as the library's files move.
inline constexpr char kLogFile[] = "Zun/Rtp/ZunRtcpPacket";

}  // namespace zun

#define ZUN_LOG_AT_(level, category, function, message) \
  ZunLogDo_(level, category, zun::kLogFile, __LINE__, function, message)
#define ZUN_LOG_FORMATTED_AT_(level, category, function, ...) \
  ZunLogDoFormatted_(level, category, zun::kLogFile, __LINE__, function, __VA_ARGS__)

#define ZUN_LOG_ERROR_(category, function, message) ZUN_LOG_AT_(ZUN_LOG_ERROR, category, function, message)
#define ZUN_LOG_WARNING_(category, function, message) ZUN_LOG_AT_(ZUN_LOG_WARNING, category, function, message)
#define ZUN_LOG_DEBUG_(category, function, message) ZUN_LOG_AT_(ZUN_LOG_DEBUG, category, function, message)
#define ZUN_LOG_WARNING_FORMATTED_(category, function, ...) \
  ZUN_LOG_FORMATTED_AT_(ZUN_LOG_WARNING, category, function, __VA_ARGS__)
#define ZUN_LOG_INFO_FORMATTED_(category, function, ...) \
  ZUN_LOG_FORMATTED_AT_(ZUN_LOG_INFO, category, function, __VA_ARGS__)

#endif
