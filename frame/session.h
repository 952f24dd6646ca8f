// Session check: is the caller's session alive, and may its user call this
// route? Sessions are files written at login; this program reads them,
// ages them out and refreshes their time stamp.
#ifndef FRAME_SESSION_H
#define FRAME_SESSION_H

#include <stddef.h>
#include <stdint.h>

struct Route;

// 0 allowed, -1 refused. `refresh` is HTTP_REFRESH, null when absent.
int checkSessionX(const char *token, const char *refresh, const Route *route);

// Where sessions live and what time it is; tests supply their own.
struct SessionEnv {
  const char *dir;           // with a trailing "/"
  bool (*uptime)(long *now); // whole seconds since boot
};
extern const SessionEnv kSessionEnv;
int checkSessionIn(const SessionEnv &env, const char *token, const char *refresh, const Route *route);

// A responder, serving one request after another, answers a session it
// checked before from what it read or wrote then, while the kernel reports
// no change in the session folder since (inotify). Off in a CGI process.
void sessionKeepBetweenRequests(bool keep);
// The folder's change queue (-1 when none), for a caller that polls it
// along with its own descriptors just before the request's check, and
// what that poll found: readable, or not polled, means it is read.
int sessionChangesFd(void);
void sessionChangesPolled(bool readable);

// The decisions, apart from the file handling.
constexpr long kSessionLifetime = 7200;
enum class Privilege { Allowed, Denied, Invalid };
bool sessionIsAdmin(const char *userLine);
Privilege sessionPrivilege(const char *privilegeLine, uint32_t method, uint32_t access);
bool sessionExpired(long uptime, long stamp);
// A token that could reach outside the session folder, not fit its path,
// or carry a control character (no login hands those out) is refused
// before any file is opened.
bool sessionTokenUsable(const char *token, const char *dir);
// The text with each control character written out ("\n", "\r", "\t",
// "\xHH"), cut to fit `out`: a token is the caller's, and one holding a
// line end must not forge a line of the log.
void escapeControls(const char *text, char *out, size_t size);
// `a` and then `b`, cut to fit `size` with the terminating zero; no
// formatting, as every request's path and session file name are built so.
void joinCut(char *out, size_t size, const char *a, const char *b);

#endif
