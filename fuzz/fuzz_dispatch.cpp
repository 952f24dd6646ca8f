// One whole request through the route table with every route registered,
// an administrator session and no OpEN service, so that every OpEN call
// fails at once. Input: the method, a newline, the request URI, a
// newline, then the body on standard input.
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include <string>

#include "api/program.h"
#include "frame/route_table.h"
#include "fuzz/fuzz_support.h"

namespace {

RouteTable *gTable = nullptr;
char gSessionPath[96] = {};

void removeSession() { unlink(gSessionPath); }

void writeAdminSession(const char *token) {
  snprintf(gSessionPath, sizeof gSessionPath, "/tmp/session/%s", token);
  FILE *f = fopen(gSessionPath, "w");
  fuzz::require(f != nullptr, "session folder is writable");
  // A zero stamp never ages out.
  fputs("admin\n0\n", f);
  fclose(f);
  atexit(removeSession);
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***) {
  char token[48] = {};
  snprintf(token, sizeof token, "fuzz-dispatch-%d", static_cast<int>(getpid()));
  writeAdminSession(token);
  setenv("HTTP_SESSION", token, 1);
  // Present, so the session file is read but never rewritten.
  setenv("HTTP_REFRESH", "1", 1);
  setenv("OPEN_SIM_SOCKET", "/nonexistent/open-sim.sock", 1);
  fuzz::silenceStdout();
  gTable = routeTableCreate();
  registerRoutes(gTable);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  std::string method = fuzz::takeLine(data, size);
  std::string uri = fuzz::takeLine(data, size);
  size_t mark = uri.find('?');
  std::string query = mark == std::string::npos ? "" : uri.substr(mark + 1);
  setenv("REQUEST_METHOD", method.c_str(), 1);
  setenv("REQUEST_URI", uri.c_str(), 1);
  setenv("QUERY_STRING", query.c_str(), 1);
  setenv("CONTENT_LENGTH", std::to_string(size).c_str(), 1);
  fuzz::feedStdin(data, size);
  httpdProcessRequest(gTable);
  fflush(stdout);
  return 0;
}
