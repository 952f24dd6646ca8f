// Levelled logger: a size-limited file in /tmp, standard output or syslog.
// The active level is one digit in a small file that every process maps,
// so an operator changes the level of all running programs at once.
#ifndef FRAME_LOG_H
#define FRAME_LOG_H

#include <stdarg.h>

enum { LOG_TO_FILE = 1, LOG_TO_SYSLOG = 2, LOG_TO_STDOUT = 4 };

void logOpen(int mode, int facility, const char *ident);
void logMessage(int level, const char *format, ...) __attribute__((format(printf, 2, 3)));
void logClose(void);
// For a process that serves one request after another: the next line
// written finds the log as a new process would, the file now under its name
// (another process may have rotated it) and that file's size, so that
// rotation still happens at 1 MiB.
void logFollow(void);

// Where the logger keeps its files; tests point it elsewhere.
struct LogFiles {
  const char *log;
  const char *oldLog;
  const char *level;
};
extern const LogFiles kLogFiles;
void logUseFiles(const LogFiles *files);

// Every message carries the function and a line tag. The tags are stable
// identifiers of each message, which log watchers match on; they are not
// this file's line numbers.
#define LOG_AT(level, func, line, fmt, ...) logMessage(level, "[%s:%d] " fmt, func, line, ##__VA_ARGS__)

#endif
