// The session file reader: the fuzz bytes become the session file of a
// fixed token, then the check runs against one route. Input: one byte
// choosing the route's method, its access and whether a refresh header
// came, then the file's bytes.
#include <stdio.h>
#include <unistd.h>

#include "frame/route_table.h"
#include "frame/session.h"
#include "fuzz/fuzz_support.h"

namespace {

constexpr char kDir[] = "/tmp/session/";

bool fixedUptime(long *now) {
  *now = 100000;
  return true;
}

const char *token() {
  static char name[48] = {};
  if (!name[0]) snprintf(name, sizeof name, "fuzz-session-%d", static_cast<int>(getpid()));
  return name;
}

const char *path() {
  static char name[96] = {};
  if (!name[0]) snprintf(name, sizeof name, "%s%s", kDir, token());
  return name;
}

void writeSession(const uint8_t *data, size_t size) {
  FILE *f = fopen(path(), "wb");
  fuzz::require(f != nullptr, "session folder is writable");
  if (size) fwrite(data, 1, size, f);
  fclose(f);
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***) {
  fuzz::silenceStdout();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  if (size == 0) return 0;
  uint8_t choice = data[0];
  Route route = {};
  route.method = choice & 3;
  route.access = (choice >> 2) % 3;
  const char *refresh = choice & 0x40 ? "1" : nullptr;
  writeSession(data + 1, size - 1);
  const SessionEnv env = {kDir, fixedUptime};
  int result = checkSessionIn(env, token(), refresh, &route);
  fuzz::require(result == 0 || result == -1, "allowed or refused");
  unlink(path());
  return 0;
}
