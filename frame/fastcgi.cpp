// The only file that knows the FastCGI library; everything else reaches a
// request through the environment and frame/request_io.h.
#include "frame/fastcgi.h"

#include <errno.h>
#include <fcgiapp.h>
#include <poll.h>
#include <signal.h>
#include <stdint.h>
#include <stdlib.h>
#include <string.h>
#include <sys/socket.h>
#include <unistd.h>

#include "frame/log.h"
#include "frame/request_io.h"

namespace {

// How long the request in hand may still take once the web server asks the
// process to stop. A request waiting for an unreachable service would take
// longer; SIGALRM's default action then ends the process.
constexpr unsigned kStopGraceSeconds = 5;

volatile sig_atomic_t gStopping = 0;
volatile sig_atomic_t gBusy = 0;

void onStop(int) {
  gStopping = 1;
  if (gBusy) alarm(kStopGraceSeconds);
}

void streamWrite(void *context, const char *text, size_t length) {
  FCGX_PutStr(text, static_cast<int>(length), static_cast<FCGX_Request *>(context)->out);
}

// The body is at most 16 MiB (frame/params.cpp), so one call reads it.
size_t streamRead(void *context, char *buf, size_t length) {
  int got = FCGX_GetStr(buf, static_cast<int>(length), static_cast<FCGX_Request *>(context)->in);
  return got > 0 ? static_cast<size_t>(got) : 0;
}

// The request's parameters, then the process's own environment (what the
// web server set for the responder, the OpEN service's address among
// them): getenv answers every handler as in a CGI process, and nothing of
// an earlier request is left in it. The array is kept for the next request
// and only grows (no C++ container: nothing here may throw, see
// CMakeLists.txt). Null when out of memory.
char **gEnvironment = nullptr;
size_t gEnvironmentSize = 0;

size_t countOf(char **list) {
  size_t n = 0;
  while (list && list[n]) ++n;
  return n;
}

char **requestEnvironment(char **params, char **own) {
  size_t nParams = countOf(params), nOwn = countOf(own), need = nParams + nOwn + 1;
  if (need > gEnvironmentSize) {
    char **grown = static_cast<char **>(realloc(gEnvironment, need * sizeof(char *)));
    if (!grown) return nullptr;
    gEnvironment = grown;
    gEnvironmentSize = need;
  }
  for (size_t i = 0; i < nParams; ++i) gEnvironment[i] = params[i];
  for (size_t i = 0; i < nOwn; ++i) gEnvironment[nParams + i] = own[i];
  gEnvironment[need - 1] = nullptr;
  return gEnvironment;
}

}  // namespace

bool fastcgiStarted(void) {
  sockaddr_storage peer = {};
  socklen_t length = sizeof peer;
  return getpeername(STDIN_FILENO, reinterpret_cast<sockaddr *>(&peer), &length) != 0 && errno == ENOTCONN;
}

int fastcgiServe(int (*serve)(void)) {
  FCGX_Request request;
  if (FCGX_Init() != 0 || FCGX_InitRequest(&request, STDIN_FILENO, FCGI_FAIL_ACCEPT_ON_INTR) != 0) return 1;
  // SIGTERM is let through only while waiting for a connection, where it
  // ends the wait, and while a request is served, where it ends the process
  // after that request; blocked in between, it cannot slip past the check
  // of the loop into a wait that would never end.
  struct sigaction stop = {};
  stop.sa_handler = onStop;
  sigaction(SIGTERM, &stop, nullptr);
  sigset_t term, waiting;
  sigemptyset(&term);
  sigaddset(&term, SIGTERM);
  sigprocmask(SIG_BLOCK, &term, &waiting);
  sigdelset(&waiting, SIGTERM);
  char **own = environ;
  while (!gStopping) {
    pollfd listening = {STDIN_FILENO, POLLIN, 0};
    if (ppoll(&listening, 1, nullptr, &waiting) < 0) {
      if (errno == EINTR) continue;
      break;
    }
    sigprocmask(SIG_UNBLOCK, &term, nullptr);
    // Immediate unless another process on the same socket took the
    // connection; then SIGTERM ends the wait.
    if (FCGX_Accept_r(&request) < 0) {
      sigprocmask(SIG_BLOCK, &term, nullptr);
      if (errno == EINTR) continue;
      break;
    }
    gBusy = 1;
    logFollow();
    char **environment = requestEnvironment(request.envp, own);
    environ = environment ? environment : request.envp;
    RequestStreams streams = {streamWrite, streamRead, &request};
    requestStreamsUse(&streams);
    int status = serve();
    requestStreamsUse(nullptr);
    environ = own;
    FCGX_SetExitStatus(status & 0xff, request.out);
    FCGX_Finish_r(&request);
    gBusy = 0;
    sigprocmask(SIG_BLOCK, &term, nullptr);
  }
  FCGX_Free(&request, 1);
  return 0;
}
