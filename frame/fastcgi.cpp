// The only file that knows the FastCGI library; everything else reaches a
// request through the environment and frame/request_io.h.
#include "frame/fastcgi.h"

#include <errno.h>
#include <fcgiapp.h>
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

// A responder waits for its next connection in accept(), as the other
// responders on the same socket do: the kernel wakes one of them for each
// connection, where a poll on the socket would wake them all. A stop while
// it waits lets go of its own descriptor of the socket (the others keep
// theirs), so that an accept interrupted, or one about to begin, fails and
// the loop ends.
void onStop(int) {
  gStopping = 1;
  if (gBusy) alarm(kStopGraceSeconds);
  else close(STDIN_FILENO);
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
  struct sigaction stop = {};
  stop.sa_handler = onStop;  // without SA_RESTART: a waiting accept is interrupted
  sigaction(SIGTERM, &stop, nullptr);
  char **own = environ;
  while (!gStopping) {
    if (FCGX_Accept_r(&request) < 0) {
      if (errno == EINTR && !gStopping) continue;
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
  }
  FCGX_Free(&request, 1);
  return 0;
}
