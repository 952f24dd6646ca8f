#include "frame/session.h"

#include <errno.h>
#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/file.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <sys/sysinfo.h>
#include <unistd.h>

#include <iterator>

#include "frame/log.h"
#include "frame/own_file.h"
#include "frame/route_table.h"

namespace {

constexpr size_t kPathBuf = 512;
constexpr int kUserLine = 200;
constexpr int kStampLine = 200;
constexpr int kPrivilegeLine = 16;
constexpr size_t kRefreshText = 256;

bool systemUptime(long *now) {
  struct sysinfo info = {};
  if (sysinfo(&info) != 0) return false;
  *now = info.uptime;
  return true;
}

// The session file, read whole in one call once it is locked: a few short
// lines, taken apart as fgets would take them. Closed when it goes.
struct SessionFile {
  int fd = -1;
  char bytes[1024];
  size_t length = 0, at = 0;
  bool whole = false;  // the file ended within `bytes`
  ~SessionFile() {
    if (fd >= 0) close(fd);
  }
};

void readAll(SessionFile *f) {
  ssize_t n = read(f->fd, f->bytes, sizeof f->bytes);
  f->length = n > 0 ? static_cast<size_t>(n) : 0;
  f->whole = n >= 0 && f->length < sizeof f->bytes;
}

// Up to size - 1 characters, through the line's end when it comes first.
void readLine(SessionFile *f, char *buf, int size) {
  size_t n = 0;
  while (n + 1 < static_cast<size_t>(size) && f->at < f->length) {
    buf[n] = f->bytes[f->at++];
    if (buf[n++] == '\n') break;
  }
  buf[n] = '\0';
}

// The session folder, held open so that the file is opened, and an expired
// one deleted, in the folder that was checked, whatever happens to its name.
// A responder keeps it from one request to the next: each check looks the
// name up again and uses the open folder only while the name still leads to
// it and it is still ours, and otherwise opens and checks the folder afresh.
// Held until the process ends.
struct Folder {
  char name[kPathBuf] = {};
  int fd = -1;
  dev_t dev = 0;
  ino_t ino = 0;
};
Folder gFolder;

bool stillTheHeldFolder(const char *name) {
  struct stat st = {};
  return gFolder.fd >= 0 && strcmp(gFolder.name, name) == 0 && lstat(name, &st) == 0 && st.st_dev == gFolder.dev &&
         st.st_ino == gFolder.ino && !untrustedBecause(st, S_IFDIR);
}

void watchFolder(int fd);

int sessionFolder(const char *dir) {
  char name[kPathBuf];
  joinCut(name, sizeof name, dir, "");
  // A trailing "/" would make the open follow a link in the folder's place.
  for (size_t n = strlen(name); n > 1 && name[n - 1] == '/'; --n) name[n - 1] = 0;
  if (stillTheHeldFolder(name)) return gFolder.fd;
  if (gFolder.fd >= 0) close(gFolder.fd);
  struct stat st = {};
  gFolder.fd = openOwn(AT_FDCWD, name, O_RDONLY, S_IFDIR, name, nullptr, &st);
  memcpy(gFolder.name, name, sizeof name);
  gFolder.dev = st.st_dev;
  gFolder.ino = st.st_ino;
  watchFolder(gFolder.fd);
  return gFolder.fd;
}

// What a responder read or wrote last for a few tokens, used only while the
// kernel reports no change at all in the checked folder since then: nothing
// written, chmodded, created, deleted or renamed there, the folder itself
// neither moved nor deleted. Such a file holds what was read, so the answer
// is the one reading it under its lock would give, without the open, fstat,
// lock, read, unlock and close on every request. Whatever the queue says,
// even an overflow, forgets everything: the next check reads the file as a
// CGI process would, and one whose text must change is always rewritten so.
struct Remembered {
  char token[kPathBuf];
  char bytes[1024];
  size_t length;
};
struct SessionMemory {
  bool wanted = false;
  int changes = -1;  // the inotify queue on the held folder
  bool polledQuiet = false;  // for the next check only
  char dir[kPathBuf] = {};
  Remembered known[4];
  size_t used = 0, next = 0;
};
SessionMemory gMemory;

// Not IN_CLOSE_WRITE: every check's own close of the file it opened for
// writing would raise it; a write raises IN_MODIFY anyway.
constexpr uint32_t kFolderChanges =
    IN_MODIFY | IN_ATTRIB | IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_DELETE_SELF | IN_MOVE_SELF;

void forgetSessions() { gMemory.used = gMemory.next = 0; }

void watchFolder(int fd) {
  forgetSessions();
  if (gMemory.changes >= 0) close(gMemory.changes);
  gMemory.changes = -1;
  if (!gMemory.wanted || fd < 0) return;
  // The folder as opened and checked, not whatever its name leads to now.
  char self[32];
  snprintf(self, sizeof self, "/proc/self/fd/%d", fd);
  gMemory.changes = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
  if (gMemory.changes >= 0 && inotify_add_watch(gMemory.changes, self, kFolderChanges) < 0) {
    close(gMemory.changes);
    gMemory.changes = -1;
  }
}

bool folderUnchanged() {
  if (gMemory.changes < 0) return false;
  if (gMemory.polledQuiet) {
    gMemory.polledQuiet = false;
    return true;
  }
  alignas(struct inotify_event) char events[4096];
  bool quiet = true;
  ssize_t n;
  while ((n = read(gMemory.changes, events, sizeof events)) > 0) quiet = false;
  if (n < 0 && errno != EAGAIN) quiet = false;
  if (!quiet) forgetSessions();
  return quiet;
}

Remembered *rememberedFor(const char *token) {
  for (size_t i = 0; i < gMemory.used; ++i)
    if (strcmp(gMemory.known[i].token, token) == 0) return &gMemory.known[i];
  return nullptr;
}

const Remembered *recall(const char *dir, const char *token) {
  return folderUnchanged() && strcmp(gMemory.dir, dir) == 0 ? rememberedFor(token) : nullptr;
}

void remember(const char *dir, const char *token, const char *bytes, size_t length) {
  if (gMemory.changes < 0 || length >= sizeof gMemory.known[0].bytes) return;
  if (strcmp(gMemory.dir, dir) != 0) {
    forgetSessions();
    joinCut(gMemory.dir, sizeof gMemory.dir, dir, "");
  }
  Remembered *slot = rememberedFor(token);
  if (!slot && gMemory.used < std::size(gMemory.known)) slot = &gMemory.known[gMemory.used++];
  if (!slot) slot = &gMemory.known[gMemory.next++ % std::size(gMemory.known)];
  joinCut(slot->token, sizeof slot->token, token, "");
  memcpy(slot->bytes, bytes, length);
  slot->length = length;
}

// Opens the token's file for reading and writing, only inside a folder of
// ours and only when the file is ours too. `path` is the file's full name.
bool openSession(const char *dir, const char *token, const char *path, int *folder, SessionFile *file) {
  *folder = sessionFolder(dir);
  if (*folder < 0) return false;
  file->fd = openOwn(*folder, token, O_RDWR, S_IFREG, path, nullptr);
  return file->fd >= 0;
}

// The file's text after a refresh: the user line, the stamp, the privilege
// line (empty for the administrator) and the token, cut to kRefreshText as
// snprintf would cut it. Built without formatting, as this runs on every
// request that is not a poll.
void refreshedText(char *text, const char *user, long now, const char *privilege, const char *token) {
  char stamp[24];
  char *digit = stamp + sizeof stamp;
  *--digit = '\n';
  unsigned long magnitude = now < 0 ? 0ul - static_cast<unsigned long>(now) : static_cast<unsigned long>(now);
  do *--digit = static_cast<char>('0' + magnitude % 10);
  while (magnitude /= 10);
  if (now < 0) *--digit = '-';
  size_t used = 0;
  auto add = [&](const char *piece, size_t n) {
    n = n < kRefreshText - 1 - used ? n : kRefreshText - 1 - used;
    memcpy(text + used, piece, n);
    used += n;
  };
  add(user, strlen(user));
  add(digit, static_cast<size_t>(stamp + sizeof stamp - digit));
  add(privilege, strlen(privilege));
  add(token, strlen(token));
  text[used] = '\0';
}

// Writes the new text over the old and cuts the file only when the old text
// was longer: the same file as truncating first, without a truncate and
// rewrite on every request, which a journalling file system forces out to
// disk (a quarter of a millisecond each time). A file that holds the text
// already (another request in the same second) is not written at all.
// Readers hold the same lock, so nobody sees the file between the steps.
// False when the file may not hold the text.
bool rewriteSession(const SessionFile &f, const char *text) {
  size_t length = strlen(text);
  if (f.whole && f.length == length && memcmp(f.bytes, text, length) == 0) return true;
  if (pwrite(f.fd, text, length, 0) != static_cast<ssize_t>(length)) return false;
  return (f.whole && f.length <= length) || ftruncate(f.fd, static_cast<off_t>(length)) == 0;
}

}  // namespace

const SessionEnv kSessionEnv = {"/tmp/session/", systemUptime};

bool sessionIsAdmin(const char *userLine) { return memcmp(userLine, "admin\n", 7) == 0; }

Privilege sessionPrivilege(const char *privilegeLine, uint32_t method, uint32_t access) {
  if (strncmp(privilegeLine, "ro", 2) == 0)
    return access != 2 && method == METHOD_GET ? Privilege::Allowed : Privilege::Denied;
  if (strncmp(privilegeLine, "rw", 2) == 0) return access != 2 ? Privilege::Allowed : Privilege::Denied;
  return Privilege::Invalid;
}

bool sessionExpired(long uptime, long stamp) { return stamp != 0 && uptime - stamp > kSessionLifetime; }

bool sessionTokenUsable(const char *token, const char *dir) {
  if (!token || !*token || strchr(token, '/') || strlen(dir) + strlen(token) >= kPathBuf) return false;
  for (const unsigned char *c = reinterpret_cast<const unsigned char *>(token); *c; ++c)
    if (*c < 0x20 || *c == 0x7f) return false;
  return true;
}

void escapeControls(const char *text, char *out, size_t size) {
  size_t used = 0;
  for (const unsigned char *c = reinterpret_cast<const unsigned char *>(text); *c; ++c) {
    char piece[5] = {static_cast<char>(*c), 0};
    if (*c == '\n') memcpy(piece, "\\n", 3);
    else if (*c == '\r') memcpy(piece, "\\r", 3);
    else if (*c == '\t') memcpy(piece, "\\t", 3);
    else if (*c < 0x20 || *c == 0x7f) snprintf(piece, sizeof piece, "\\x%02x", *c);
    size_t n = strlen(piece);
    if (used + n >= size) break;
    memcpy(out + used, piece, n);
    used += n;
  }
  if (size) out[used] = 0;
}

void joinCut(char *out, size_t size, const char *a, const char *b) {
  size_t na = strnlen(a, size - 1), nb = strnlen(b, size - 1 - na);
  memcpy(out, a, na);
  memcpy(out + na, b, nb);
  out[na + nb] = '\0';
}

// A remembered session whose check would change its file (a refresh with a
// new stamp, or a time-out that deletes it) is checked again from the file.
static int checkAgainFromTheFile(const SessionEnv &env, const char *token, const char *refresh, const Route *route) {
  forgetSessions();
  return checkSessionIn(env, token, refresh, route);
}

int checkSessionIn(const SessionEnv &env, const char *token, const char *refresh, const Route *route) {
  char path[kPathBuf];
  joinCut(path, sizeof path, env.dir, token ? token : "(null)");
  int folder = -1;
  SessionFile f;
  bool usable = sessionTokenUsable(token, env.dir);
  const Remembered *known = usable ? recall(env.dir, token) : nullptr;
  if (known) {
    memcpy(f.bytes, known->bytes, known->length);
    f.length = known->length;
    f.whole = true;
  } else if (!usable || !openSession(env.dir, token, path, &folder, &f)) {
    char shown[4 * kPathBuf];
    escapeControls(path, shown, sizeof shown);
    LOG_AT(7, "checkSessionX", 45, "%s file not exsits, ignore\n", shown);
    return -1;
  } else if (flock(f.fd, LOCK_EX) != 0) {
    LOG_AT(3, "checkSessionX", 50, "File lock failed\n");
    return -1;
  } else {
    readAll(&f);
  }
  char user[kUserLine] = {}, stamp[kStampLine] = {}, privilege[kPrivilegeLine] = {};
  readLine(&f, user, sizeof user);
  readLine(&f, stamp, sizeof stamp);
  bool admin = sessionIsAdmin(user);
  if (!admin) {
    readLine(&f, privilege, sizeof privilege);
    Privilege p = sessionPrivilege(privilege, route->method, route->access);
    if (p == Privilege::Invalid) {
      LOG_AT(3, "checkSessionX", 63, "Invalid priviledged level in user session\n");
      return -1;
    }
    if (p == Privilege::Denied) {
      LOG_AT(3, "checkSessionX", 72, "Permission denied, not a priviledged user\n");
      return -1;
    }
  }
  long now = 0;
  if (!env.uptime(&now)) {
    LOG_AT(3, "checkSessionX", 79, "Failed to get sysinfo\r\n");
    return -1;
  }
  long stored = strtol(stamp, nullptr, 10);
  if (sessionExpired(now, stored)) {
    if (known) return checkAgainFromTheFile(env, token, refresh, route);
    LOG_AT(6, "checkSessionX", 86, "Token timeout(%ld - %ld).please login again. (userName: %s timestamp: %s)\r\n", now,
           stored, user, stamp);
    unlinkat(folder, token, 0);
    return -1;
  }
  char text[kRefreshText];
  bool written = true;
  if (!refresh) {
    refreshedText(text, user, now, admin ? "" : privilege, token);
    if (known && (strlen(text) != f.length || memcmp(text, f.bytes, f.length) != 0))
      return checkAgainFromTheFile(env, token, refresh, route);
    if (!known) written = rewriteSession(f, text);
    LOG_AT(7, "checkSessionX", 103, "Token update to file. (%s)\r\n", text);
  }
  if (known) return 0;
  if (flock(f.fd, LOCK_UN) != 0) {
    LOG_AT(3, "checkSessionX", 106, "File unlock failed\n");
    return -1;
  }
  if (refresh && f.whole) remember(env.dir, token, f.bytes, f.length);
  if (!refresh && written) remember(env.dir, token, text, strlen(text));
  return 0;
}

int sessionChangesFd(void) { return gMemory.changes; }

void sessionChangesPolled(bool readable) { gMemory.polledQuiet = !readable; }

void sessionKeepBetweenRequests(bool keep) {
  gMemory.wanted = keep;
  watchFolder(keep ? gFolder.fd : -1);
}

int checkSessionX(const char *token, const char *refresh, const Route *route) {
  return checkSessionIn(kSessionEnv, token, refresh, route);
}
