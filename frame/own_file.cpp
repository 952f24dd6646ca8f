#include "frame/own_file.h"

#include <errno.h>
#include <fcntl.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>
#include <syslog.h>
#include <unistd.h>

namespace {

constexpr mode_t kCreatedMode = 0640;

// Errors that mean a name is there but is not a file of ours to open; any
// other (a missing folder, a read-only or full file system) is no refusal.
bool openErrorRefuses(int error) {
  return error == ELOOP || error == EACCES || error == EPERM || error == EISDIR || error == ENOTDIR ||
         error == ENXIO || error == EWOULDBLOCK;
}

const char *notOfType(mode_t type) { return type == S_IFDIR ? "it is not a folder" : "it is not a regular file"; }

const char *openErrorText(int error, mode_t type) {
  if (error == ELOOP) return "it is a symbolic link";
  if (error == EISDIR || error == ENXIO) return notOfType(type);
  return strerror(error);
}

uint64_t fnv1a(const char *text, uint64_t h = 14695981039346656037u) {
  for (; *text; ++text) h = (h ^ static_cast<unsigned char>(*text)) * 1099511628211u;
  return h;
}

}  // namespace

uid_t effectiveUser(void) {
  static const uid_t self = geteuid();
  return self;
}

const char *untrustedBecause(const struct stat &st, mode_t type, uid_t self) {
  if (S_ISLNK(st.st_mode)) return "it is a symbolic link";
  if ((st.st_mode & S_IFMT) != type) return notOfType(type);
  if (st.st_uid != self && st.st_uid != 0) return "another user owns it";
  if (st.st_mode & (S_IWGRP | S_IWOTH)) return "group or others may write it";
  return nullptr;
}

int openOwn(int dirfd, const char *name, int flags, mode_t type, const char *shown, bool *refused,
            struct stat *opened) {
  bool ignored;
  if (!refused) refused = &ignored;
  *refused = false;
  int fd = openat(dirfd, name, flags | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, kCreatedMode);
  const char *why = nullptr;
  struct stat st = {};
  if (fd < 0) {
    if (!openErrorRefuses(errno)) return -1;
    why = openErrorText(errno, type);
  } else if (fstat(fd, &st) != 0) {
    why = strerror(errno);
  } else {
    why = untrustedBecause(st, type);
  }
  if (!why) {
    if (opened) *opened = st;
    return fd;
  }
  if (fd >= 0) close(fd);
  *refused = true;
  sayOnce("not using", shown, why);
  return -1;
}

void sayOnce(const char *doing, const char *path, const char *why) {
  // Remembered by a hash of what is said about which path: a responder
  // serving for days may meet many refused names, and each is said once;
  // past the table's size the rest go unsaid rather than flood the error log.
  static uint64_t said[256];
  static size_t count;
  uint64_t h = fnv1a(path, fnv1a(doing));
  for (size_t i = 0; i < count; ++i)
    if (said[i] == h) return;
  if (count == sizeof said / sizeof said[0]) return;
  said[count++] = h;
  fprintf(stderr, "interfaces_v2.cgi: %s %s: %s\n", doing, path, why);
  syslog(LOG_USER | LOG_ERR, "%s %s: %s", doing, path, why);
}
