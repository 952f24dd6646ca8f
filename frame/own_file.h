// The session folder, the log and the level file live in /tmp, where any
// local user can make a name first, or swap one name for another between a
// check and its use. The program uses such a name only when what it opened
// there is its own: a folder or regular file (no link, no FIFO) whose owner
// is the program's effective user or root, which neither group nor others
// may write. Root is trusted because it can change these files anyway.
#ifndef FRAME_OWN_FILE_H
#define FRAME_OWN_FILE_H

#include <sys/stat.h>
#include <sys/types.h>

// The program's effective user. It never changes its user, so the kernel is
// asked once per process rather than on every file a request opens.
uid_t effectiveUser(void);

// Why an opened object of `st` is not to be used as a file of `type`
// (S_IFDIR or S_IFREG) by `self`, or null when it may be.
const char *untrustedBecause(const struct stat &st, mode_t type, uid_t self = effectiveUser());

// Opens `name` relative to `dirfd` (or AT_FDCWD) with `flags`, never through
// a link and never waiting on a FIFO, and keeps it only when what was opened
// passes `untrustedBecause`; O_CREAT makes a missing file with mode 0640.
// The checks read the descriptor, not the name, so a name swapped after the
// open changes nothing. -1 when nothing is usable; `*refused` then tells a
// name that exists but is not ours (said once on standard error and syslog,
// as `shown`) from a missing one or a file system that gave no file;
// `refused` may be null. `*opened`, where given, gets what was checked.
int openOwn(int dirfd, const char *name, int flags, mode_t type, const char *shown, bool *refused,
            struct stat *opened = nullptr);

// Says once per process, on standard error and in syslog, what the program
// does not do with `path` ("not using", "not rotating") and why: a refusal
// that is never said looks like a program that forgot its log or its
// sessions.
void sayOnce(const char *doing, const char *path, const char *why);

#endif
