#include "frame/log.h"

#include <ctype.h>
#include <errno.h>
#include <fcntl.h>
#include <pthread.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/mman.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <syslog.h>
#include <time.h>
#include <unistd.h>

#include "frame/own_file.h"
#include "frame/request_io.h"

const LogFiles kLogFiles = {"/tmp/k9100.log", "/tmp/k9100.log.old", "/tmp/devmgr_log_level"};

namespace {

constexpr long kRotateBytes = 1048576;
constexpr int kMessageCap = 512;
constexpr int kDefaultLevel = 6;

struct Logger {
  const LogFiles *files = &kLogFiles;
  int mode = -1;
  int facility = -1;
  char ident[64] = {};
  bool started = false;
  char *levelByte = nullptr;
  int levelFd = -1;
  FILE *file = nullptr;
  int fileSize = 0;
  bool fileRefused = false;
  pthread_mutex_t mutex = PTHREAD_MUTEX_INITIALIZER;
  bool followPending = false;
};
Logger g;

const char *levelName(int level) {
  switch (level) {
    case 3: return "ERROR";
    case 4: return "WARN";
    case 5: return "NOTICE";
    case 6: return "INFO";
    case 7: return "DEBUG";
    default: return "";
  }
}

// What this process creates, only its user and group can read: the log
// holds session tokens at level 7.
int openOwnFile(const char *path, int flags, bool *refused) {
  return openOwn(AT_FDCWD, path, flags | O_CREAT, S_IFREG, path, refused);
}

// A log that is not ours is not written at all (`fileRefused`); one the file
// system cannot give sends its lines to standard output, as it always has.
FILE *openLogForAppending(const char *path) {
  int fd = openOwnFile(path, O_RDWR | O_APPEND, &g.fileRefused);
  if (fd < 0) return nullptr;
  FILE *f = fdopen(fd, "a+");
  if (!f) close(fd);
  return f;
}

void mapLevelFile() {
  int fd = openOwnFile(g.files->level, O_RDWR, nullptr);
  if (fd < 0) return;
  void *p = MAP_FAILED;
  // Every process opens the level file; setting a length it already has
  // would still be a metadata write to the file system each time.
  struct stat st = {};
  bool sized = fstat(fd, &st) == 0 && st.st_size == 4;
  if (sized || ftruncate(fd, 4) == 0) p = mmap(nullptr, 4, PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0);
  if (p == MAP_FAILED) {
    close(fd);
    return;
  }
  g.levelByte = static_cast<char *>(p);
  g.levelFd = fd;
  if (!isdigit(static_cast<unsigned char>(*g.levelByte))) *g.levelByte = '0' + kDefaultLevel;
}

void unmapLevelFile() {
  if (g.levelByte) munmap(g.levelByte, 4);
  if (g.levelFd >= 0) close(g.levelFd);
  g.levelByte = nullptr;
  g.levelFd = -1;
}

void openLogFile() {
  pthread_mutex_lock(&g.mutex);
  g.file = openLogForAppending(g.files->log);
  if (g.file) {
    struct stat st = {};
    g.fileSize = fstat(fileno(g.file), &st) == 0 ? static_cast<int>(st.st_size) : 0;
  }
  pthread_mutex_unlock(&g.mutex);
}

void closeLogFile() {
  pthread_mutex_lock(&g.mutex);
  if (g.file) fclose(g.file);
  g.file = nullptr;
  pthread_mutex_unlock(&g.mutex);
}

int currentLevel() {
  if (!g.levelByte || !isdigit(static_cast<unsigned char>(*g.levelByte))) return kDefaultLevel;
  return *g.levelByte - '0';
}

void identFromProc() {
  FILE *f = fopen("/proc/self/status", "r");
  if (!f) return;
  char line[64];
  while (fgets(line, sizeof line, f)) {
    if (strncmp(line, "Name:", 5) != 0) continue;
    char *save = nullptr;
    strtok_r(line, "\t\n", &save);
    if (const char *name = strtok_r(nullptr, "\t\n", &save)) snprintf(g.ident, sizeof g.ident, "%s", name);
    break;
  }
  fclose(f);
}

void lazyStart() {
  if (g.mode < 0) g.mode = LOG_TO_STDOUT;
  if (g.facility < 0) g.facility = 8;
  if (!g.ident[0] && g.mode != LOG_TO_STDOUT) identFromProc();
  if (g.mode & LOG_TO_SYSLOG) openlog(g.ident, 0, g.facility);
  g.started = true;
}

// Whether the rotation file is missing or ours, to be replaced by the full
// log in one rename: never removed first, which would leave its name free
// for another local user to take. One she swaps in after the look cannot be
// replaced (the sticky /tmp), and the log is kept (moveFullLogAside).
bool oldLogReplaceable() {
  struct stat st = {};
  const char *why = nullptr;
  if (lstat(g.files->oldLog, &st) != 0) {
    if (errno == ENOENT) return true;
    why = strerror(errno);
  } else {
    why = untrustedBecause(st, S_IFREG);
  }
  if (why) sayOnce("not using", g.files->oldLog, why);
  return !why;
}

// Makes a fresh, empty log of this process's under a name of its own
// beside the log, and puts that name into `fresh`.
bool madeFreshLog(char *fresh, size_t size) {
  struct timespec now = {};
  clock_gettime(CLOCK_MONOTONIC, &now);
  snprintf(fresh, size, "%s.%d.%ld", g.files->log, static_cast<int>(getpid()), now.tv_nsec);
  int fd = open(fresh, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0640);
  if (fd < 0) return false;
  close(fd);
  return true;
}

bool exchanged(const char *a, const char *b) {
#ifdef SYS_renameat2
  return syscall(SYS_renameat2, AT_FDCWD, a, AT_FDCWD, b, 2 /* RENAME_EXCHANGE */) == 0;
#else
  (void)a, (void)b;
  errno = ENOSYS;
  return false;
#endif
}

// Puts a fresh file under the log's name in the same step that takes the
// full log away (exchanged), so that the name is never free for another
// local user to make first, which would leave the program no log to write
// until the next boot. Where no fresh file can be made (a full or
// inode-exhausted /tmp) or exchanged in, the full log keeps its name and
// goes on growing, said once; where the rotation name was taken meanwhile,
// the full log is put back.
void moveFullLogAside() {
  char fresh[512];
  if (!madeFreshLog(fresh, sizeof fresh)) {
    sayOnce("not rotating", g.files->log, strerror(errno));
  } else if (!exchanged(fresh, g.files->log)) {
    sayOnce("not rotating", g.files->log, strerror(errno));
    unlink(fresh);
  } else if (rename(fresh, g.files->oldLog) != 0 && exchanged(fresh, g.files->log)) {
    unlink(fresh);
  }
}

bool stillNamedLog(FILE *file) {
  struct stat open = {}, named = {};
  return fstat(fileno(file), &open) == 0 && stat(g.files->log, &named) == 0 && open.st_dev == named.st_dev &&
         open.st_ino == named.st_ino;
}

// Every process counts only its own lines, so several may pass 1 MiB for
// the same file. Under a lock on that file, only the first moves it aside;
// the others find the name already leading to a fresh file and follow it,
// instead of rotating again and throwing away the full one.
void rotate() {
  flock(fileno(g.file), LOCK_EX);
  if (stillNamedLog(g.file)) {
    // A rotation name someone else made is left to them, even where this
    // process could remove it: the log then goes on growing, said once.
    if (oldLogReplaceable()) moveFullLogAside();
  }
  fclose(g.file);
  g.file = openLogForAppending(g.files->log);
  struct stat st = {};
  g.fileSize = g.file && fstat(fileno(g.file), &st) == 0 ? static_cast<int>(st.st_size) : 0;
}

// A null stream is the reply: standard output in a CGI, the request's own
// stream in a FastCGI responder.
int printTo(FILE *stream, const char *format, va_list args) __attribute__((format(printf, 2, 0)));
int printTo(FILE *stream, const char *format, va_list args) {
  return stream ? vfprintf(stream, format, args) : replyFormatV(format, args);
}

int printfTo(FILE *stream, const char *format, ...) __attribute__((format(printf, 2, 3)));
int printfTo(FILE *stream, const char *format, ...) {
  va_list args;
  va_start(args, format);
  int n = printTo(stream, format, args);
  va_end(args);
  return n;
}

// What a caller formats from a request (its path, a token) is the
// requester's to choose, and anyone who reaches the web server may send
// requests that are refused: each message is cut to a bounded length, so
// that a refused request adds a line of bounded size, and forcing the log
// round to its next rotation takes many requests, however long they are.
int printMessage(FILE *stream, const char *format, va_list args) __attribute__((format(printf, 2, 0)));
int printMessage(FILE *stream, const char *format, va_list args) {
  char message[kMessageCap + 1];
  int n = vsnprintf(message, sizeof message, format, args);
  if (n < 0) return n;
  if (n > kMessageCap) memcpy(message + kMessageCap - 4, "...\n", 5);
  return printfTo(stream, "%s", message);
}

void logWriteStream(FILE *stream, int level, const char *format, va_list args) {
  timespec ts = {};
  tm local = {};
  char when[64];
  int prefix;
  if (clock_gettime(CLOCK_REALTIME, &ts) == 0 && localtime_r(&ts.tv_sec, &local)) {
    snprintf(when, sizeof when, "%04d-%02d-%02d %02d:%02d:%02d.%03ld", local.tm_year + 1900, local.tm_mon + 1,
             local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec, ts.tv_nsec / 1000000);
    prefix = printfTo(stream, "%s (%s): %s: ", when, levelName(level), g.ident);
  } else {
    prefix = printfTo(stream, "(%s): %s: ", levelName(level), g.ident);
  }
  int message = printMessage(stream, format, args);
  if (!stream || stream != g.file) return;
  g.fileSize += (prefix > 0 ? prefix : 0) + (message > 0 ? message : 0);
  if (g.fileSize > kRotateBytes) rotate();
  if (g.file) fflush(g.file);
}

// What logFollow asks for, done before the first line it concerns: a request
// that writes no line costs nothing.
void followNamedLog() {
  g.followPending = false;
  struct stat open = {}, named = {};
  bool same = g.file && fstat(fileno(g.file), &open) == 0 && stat(g.files->log, &named) == 0 &&
              open.st_dev == named.st_dev && open.st_ino == named.st_ino;
  if (!same) {
    if (g.file) fclose(g.file);
    g.file = openLogForAppending(g.files->log);
    if (!g.file || fstat(fileno(g.file), &open) != 0) open.st_size = 0;
  }
  g.fileSize = static_cast<int>(open.st_size);
}

}  // namespace

void logUseFiles(const LogFiles *files) {
  // Other files mean a fresh logger, as in a new process: a level byte
  // still mapped from the old files would otherwise outlive a logClose
  // that had nothing to do because nothing was ever written.
  closeLogFile();
  unmapLevelFile();
  g.started = false;
  g.files = files ? files : &kLogFiles;
}

void logOpen(int mode, int facility, const char *ident) {
  bool wasStarted = g.started;
  if (wasStarted) {
    if (g.mode & LOG_TO_SYSLOG) closelog();
    if (g.mode & LOG_TO_FILE) closeLogFile();
    unmapLevelFile();
    g.started = false;
  }
  g.mode = mode;
  g.facility = facility;
  snprintf(g.ident, sizeof g.ident, "%s", ident ? ident : "");
  if (wasStarted || !g.levelByte) mapLevelFile();
  if (mode & LOG_TO_FILE) openLogFile();
}

void logMessage(int level, const char *format, ...) {
  if (level > currentLevel()) return;
  if (!g.started) lazyStart();
  va_list args;
  if (g.mode & LOG_TO_STDOUT) {
    va_start(args, format);
    logWriteStream(nullptr, level, format, args);
    va_end(args);
  }
  if (g.mode & LOG_TO_FILE) {
    pthread_mutex_lock(&g.mutex);
    if (g.followPending) followNamedLog();
    // A log the file system cannot give sends its lines to the reply, as it
    // always has: the one token they can hold is the caller's own. A log
    // that is not ours is not written at all; the refusal is already said.
    if (g.file || !g.fileRefused) {
      va_start(args, format);
      logWriteStream(g.file, level, format, args);
      va_end(args);
    }
    pthread_mutex_unlock(&g.mutex);
  }
  if (g.mode & LOG_TO_SYSLOG) {
    va_start(args, format);
    vsyslog(level, format, args);
    va_end(args);
  }
}

void logFollow(void) { g.followPending = true; }

void logClose(void) {
  if (!g.started) return;
  if (g.mode & LOG_TO_SYSLOG) closelog();
  if (g.mode & LOG_TO_FILE) closeLogFile();
  unmapLevelFile();
  g.started = false;
}
