// What a request brings into the process; its families (r, h) are described in README.md.
#include <cjson/cJSON.h>
#include <fcntl.h>

#include "api/program.h"
#include "frame/params.h"
#include "frame/route_table.h"
#include "fuzz/fuzz_support.h"

namespace {

const std::string kDir = "/tmp/session/", kToken = "fuzz-" + std::to_string(getpid());
RouteTable *gTable = nullptr;

// As the login program writes it: only its user may write it, or the check refuses it unread.
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
  if (fuzz::family(data, size, "rh") == 0) requestData(data, size);
  else dispatch(data, size);
  unlink((kDir + kToken).c_str());
  return 0;
}
