// Shared by the fuzz targets: turning the fuzzer's bytes into the texts and
// process state the program sees, and failing loudly on a broken promise.
#ifndef FUZZ_FUZZ_SUPPORT_H
#define FUZZ_FUZZ_SUPPORT_H

#include <stddef.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

namespace fuzz {

// A violated property must stop the run as a crash does, so that the
// fuzzer keeps the input and the replay test fails on it.
inline void require(bool holds, const char *what) {
  if (holds) return;
  fprintf(stderr, "fuzz property violated: %s\n", what);
  abort();
}

// The bytes as a C text: up to the first 0 byte, as the environment or a
// file read with fgets would deliver them.
inline std::string text(const uint8_t *data, size_t size) {
  std::string s(reinterpret_cast<const char *>(data), size);
  s.resize(strlen(s.c_str()));
  return s;
}

// Splits off the bytes before the first newline; the rest stays in
// `data`/`size`.
inline std::string takeLine(const uint8_t *&data, size_t &size) {
  const void *nl = memchr(data, '\n', size);
  size_t len = nl ? static_cast<size_t>(static_cast<const uint8_t *>(nl) - data) : size;
  std::string line = text(data, len);
  size_t used = nl ? len + 1 : len;
  data += used;
  size -= used;
  return line;
}

// Standard input now reads `size` bytes from a scratch file, as a CGI
// process reads the request body.
inline char gStdinPath[64] = {};
inline void removeStdinFile() { unlink(gStdinPath); }

inline void feedStdin(const uint8_t *data, size_t size) {
  char *path = gStdinPath;
  if (!path[0]) {
    snprintf(gStdinPath, sizeof gStdinPath, "/tmp/fuzz-stdin-%d", static_cast<int>(getpid()));
    atexit(removeStdinFile);
  }
  FILE *f = fopen(path, "wb");
  require(f != nullptr, "scratch file for standard input");
  if (size) fwrite(data, 1, size, f);
  fclose(f);
  require(freopen(path, "rb", stdin) != nullptr, "standard input reopened");
}

inline void silenceStdout() { require(freopen("/dev/null", "w", stdout) != nullptr, "standard output to /dev/null"); }

}  // namespace fuzz

#endif
