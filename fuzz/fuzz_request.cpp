// What a request brings into the process, the first byte picking the
// family: r the request data (CONTENT_LENGTH's text, a newline, a byte
// choosing the method, then the body on standard input); s a session file
// (a byte choosing the route's method in bits 0-1, its access in bits 2-3
// and a refresh header in bit 6, then the file); h one whole request
// through the full route table (method, newline, request URI, newline,
// body) with an administrator session and no OpEN service, so that every
// OpEN call fails at once.
#include <cjson/cJSON.h>
#include <fcntl.h>

#include "api/program.h"
#include "frame/params.h"
#include "frame/route_table.h"
#include "frame/session.h"
#include "fuzz/fuzz_support.h"

namespace {

const std::string kDir = "/tmp/session/", kToken = "fuzz-" + std::to_string(getpid());
RouteTable *gTable = nullptr;

// As the login program writes it: only its user may write it, or the check
// refuses it before reading a byte.
void writeSession(const uint8_t *data, size_t size) {
  int fd = open((kDir + kToken).c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
  FILE *f = fd >= 0 ? fdopen(fd, "wb") : nullptr;
  fuzz::require(f != nullptr, "session folder is writable");
  fwrite(data, 1, size, f);
  fclose(f);
}

void requestData(const uint8_t *data, size_t size) {
  const char *const methods[] = {"POST", "PUT", "GET", "DELETE", "PATCH", nullptr};
  setenv("CONTENT_LENGTH", fuzz::takeLine(data, size).c_str(), 1);
  const char *method = size ? methods[data[0] % 6] : nullptr;
  if (size) ++data, --size;
  method ? setenv("REQUEST_METHOD", method, 1) : unsetenv("REQUEST_METHOD");
  setenv("QUERY_STRING", "ifNum=3&macAddr=00:11:22:33:44:55", 1);
  fuzz::feedStdin(data, size);
  free(requestDataGet());
  fuzz::feedStdin(data, size);
  cJSON_Delete(requestBodyParse());
}

bool fixedUptime(long *now) { return *now = 100000, true; }

void session(const uint8_t *data, size_t size) {
  uint8_t choice = size ? data[0] : 0;
  writeSession(data + (size ? 1 : 0), size ? size - 1 : 0);
  Route route = {nullptr, choice & 3u, (choice >> 2) % 3u, nullptr, nullptr};
  int result = checkSessionIn(SessionEnv{kDir.c_str(), fixedUptime}, kToken.c_str(), choice & 0x40 ? "1" : nullptr,
                              &route);
  fuzz::require(result == 0 || result == -1, "allowed or refused");
}

void dispatch(const uint8_t *data, size_t size) {
  writeSession(reinterpret_cast<const uint8_t *>("admin\n0\n"), 8);  // a zero stamp never ages out
  std::string method = fuzz::takeLine(data, size), uri = fuzz::takeLine(data, size);
  size_t mark = uri.find('?');
  setenv("REQUEST_METHOD", method.c_str(), 1);
  setenv("REQUEST_URI", uri.c_str(), 1);
  setenv("QUERY_STRING", mark == std::string::npos ? "" : uri.c_str() + mark + 1, 1);
  setenv("CONTENT_LENGTH", std::to_string(size).c_str(), 1);
  fuzz::feedStdin(data, size);
  httpdProcessRequest(gTable);
  fflush(stdout);
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***) {
  setenv("HTTP_SESSION", kToken.c_str(), 1);
  setenv("HTTP_REFRESH", "1", 1);  // present: the session file is read, never rewritten
  setenv("OPEN_SIM_SOCKET", "/nonexistent/open-sim.sock", 1);
  fuzz::require(freopen("/dev/null", "w", stdout) != nullptr, "standard output to /dev/null");
  gTable = routeTableCreate();
  registerRoutes(gTable);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  switch (fuzz::family(data, size, "rsh")) {
    case 0: requestData(data, size); break;
    case 1: session(data, size); break;
    default: dispatch(data, size);
  }
  unlink((kDir + kToken).c_str());
  return 0;
}
