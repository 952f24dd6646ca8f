// The request data as the program takes it from its environment and
// standard input. Input: CONTENT_LENGTH's text, a newline, one byte
// choosing the method, then the body bytes on standard input.
#include <cjson/cJSON.h>
#include <stdlib.h>
#include <string.h>

#include <string>

#include "frame/params.h"
#include "fuzz/fuzz_support.h"

namespace {

const char *const kMethods[] = {"POST", "PUT", "GET", "DELETE", "PATCH", nullptr};

void setOrClear(const char *name, const char *value) {
  if (value) setenv(name, value, 1);
  else unsetenv(name);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  std::string length = fuzz::takeLine(data, size);
  const char *method = nullptr;
  if (size > 0) {
    method = kMethods[data[0] % (sizeof kMethods / sizeof kMethods[0])];
    ++data;
    --size;
  }
  setOrClear("REQUEST_METHOD", method);
  setenv("CONTENT_LENGTH", length.c_str(), 1);
  setenv("QUERY_STRING", "ifNum=3&macAddr=00:11:22:33:44:55", 1);

  fuzz::feedStdin(data, size);
  free(requestDataGet());
  fuzz::feedStdin(data, size);
  cJSON_Delete(requestBodyParse());
  return 0;
}
