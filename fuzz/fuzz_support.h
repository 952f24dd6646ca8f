// Shared by the fuzz targets: the fuzzer's bytes as the program sees them; a broken promise aborts.
#ifndef FUZZ_FUZZ_SUPPORT_H
#define FUZZ_FUZZ_SUPPORT_H

#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

namespace fuzz {

// A violated property stops the run as a crash does: the fuzzer keeps the input, the replay fails.
inline void require(bool holds, const char *what) {
  if (holds) return;
  fprintf(stderr, "fuzz property violated: %s\n", what);
  abort();
}

// The first byte picks an input family: by its letter in `letters` (as seeds spell it) or its value.
inline size_t family(const uint8_t *&data, size_t &size, const char *letters) {
  const char *at = size && data[0] ? strchr(letters, data[0]) : nullptr;
  size_t f = at ? static_cast<size_t>(at - letters) : (size ? data[0] : 0) % strlen(letters);
  if (size) ++data, --size;
  return f;
}

// The bytes up to the first 0, as the environment or fgets delivers them.
inline std::string text(const uint8_t *data, size_t size) {
  return std::string(reinterpret_cast<const char *>(data), strnlen(reinterpret_cast<const char *>(data), size));
}

// The bytes before the first newline; `data` and `size` move past it.
inline std::string takeLine(const uint8_t *&data, size_t &size) {
  const void *nl = memchr(data, '\n', size);
  size_t len = nl ? static_cast<size_t>(static_cast<const uint8_t *>(nl) - data) : size;
  std::string line = text(data, len);
  data += nl ? len + 1 : len;
  size -= nl ? len + 1 : len;
  return line;
}

// Standard input reads these bytes from a scratch file, as a CGI process reads the request body.
inline void feedStdin(const uint8_t *data, size_t size) {
  static std::string path = "/tmp/fuzz-stdin-" + std::to_string(getpid());
  FILE *f = fopen(path.c_str(), "wb");
  require(f != nullptr, "scratch file for standard input");
  fwrite(data, 1, size, f);
  fclose(f);
  require(freopen(path.c_str(), "rb", stdin) != nullptr, "standard input reopened");
  unlink(path.c_str());  // stdin keeps it open
}

}  // namespace fuzz

#endif
