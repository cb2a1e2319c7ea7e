/*
 * The log: refused arguments, malformed input and what else is worth a line, handed to one handler of the
 * caller's. Until a handler is set nothing is printed, and a log call costs a load and a branch.
 */
#ifndef ZUN_OS_ZUNLOG_H
#define ZUN_OS_ZUNLOG_H

#include "Zun/Utils/ZunTypes.h"

ZUN_EXTERN_C_BEGIN

/* How serious a message is; the lower, the more. Any number may be stored. */
typedef ZunInt32 ZunLogLevel;
enum {
  ZUN_LOGLEVEL_FATAL = 0,
  ZUN_LOGLEVEL_ERROR = 1,   /* refused arguments, malformed input, failed writes */
  ZUN_LOGLEVEL_WARNING = 2, /* suspicious but accepted input; a partial packet over its size */
  ZUN_LOGLEVEL_INFO = 3,    /* skipped SDES items */
  ZUN_LOGLEVEL_DEBUG = 4,   /* generic NACKs of several entries */
  ZUN_LOGLEVEL_SENT = 5,
  ZUN_LOGLEVEL_RECEIVED = 6,
  ZUN_LOGLEVEL_ENTER = 7,
  ZUN_LOGLEVEL_LEAVE = 8,
  ZUN_LOGLEVEL_INVALID = 9,
  ZUN_LOG_NUM_LEVELS = 9,
  ZUN_LOG_FATAL = 0,
  ZUN_LOG_ERROR = 1,
  ZUN_LOG_WARNING = 2,
  ZUN_LOG_INFO = 3,
  ZUN_LOG_DEBUG = 4,
  ZUN_LOG_SENT = 5,
  ZUN_LOG_RECEIVED = 6,
  ZUN_LOG_ENTER = 7,
  ZUN_LOG_LEAVE = 8,
  ZUN_LOG_LEVEL_INVALID = 9
};

/* What a message is about. Opaque; compare with the two variables below. */
typedef struct ZunLogCategoryState_* ZunLogCategory;

extern ZunLogCategory ZunLogRtcp_;         /* packets */
extern ZunLogCategory ZunLogRtcpFeedback_; /* some feedback messages */

/*
 * Receives one message, on the thread that caused it. `function` is the public function that logs;
 * `message` is formatted text of at most 1023 bytes. All texts are the library's and end with the call.
 */
typedef void (*ZunLogHandler)(ZunVoidPtr userData, ZunLogLevel level, ZunLogCategory category, const char* file,
                              ZunInt line, const char* function, const char* message);

/*
 * Sets the handler of all messages, or none (NULL, the start state). Safe while other threads log: each
 * message reaches one handler with the `userData` that was set with it. A call that another thread began
 * before this one may still reach the old handler. A message never waits for a change of the handler; two
 * changes take turns, so a signal handler must not call this.
 */
void ZunLogSetHandler(ZunLogHandler handler, ZunVoidPtr userData);

/* Passes on messages of `category` up to `level` (start state: ZUN_LOG_DEBUG). Safe while others log. */
void ZunLogSetMaxLevel(ZunLogCategory category, ZunLogLevel level);

/* "rtcp" or "rtcp-feedback"; "" for NULL. */
const char* ZunLogCategoryGetName(ZunLogCategory category);

/* Logs `message` as it stands (cut to 1023 bytes). */
void ZunLogDo_(ZunLogLevel level, ZunLogCategory category, const char* file, ZunInt line, const char* function,
               const char* message);

/* Logs a message formatted with printf conventions (cut to 1023 bytes). */
#if defined(__MINGW32__) && !defined(__clang__)
__attribute__((format(gnu_printf, 6, 7))) /* the C library's own, not that of Windows */
#elif defined(__GNUC__)
__attribute__((format(printf, 6, 7)))
#endif
void ZunLogDoFormatted_(ZunLogLevel level, ZunLogCategory category, const char* file, ZunInt line,
                        const char* function, const char* format, ...);

ZUN_EXTERN_C_END

#endif
