// Shared by the unit tests: environment, temporary folders and a logger
// that writes into one.
#ifndef TESTS_UNIT_TEST_SUPPORT_H
#define TESTS_UNIT_TEST_SUPPORT_H

#include <gtest/gtest.h>
#include <stdlib.h>
#include <unistd.h>

#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "frame/log.h"

// Variables set (null: unset) for a scope; the old values come back.
class ScopedEnv {
 public:
  ScopedEnv(std::initializer_list<std::pair<const char *, const char *>> vars) {
    for (auto [name, value] : vars) {
      saved_.emplace_back(name, getenv(name) ? std::optional<std::string>(getenv(name)) : std::nullopt);
      set(name, value);
    }
  }
  ~ScopedEnv() {
    for (auto &[name, old] : saved_) set(name, old ? old->c_str() : nullptr);
  }
  static void set(const char *name, const char *value) { value ? setenv(name, value, 1) : unsetenv(name); }

 private:
  std::vector<std::pair<const char *, std::optional<std::string>>> saved_;
};

inline std::string readText(const std::string &path) {
  std::ifstream f(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(f), {});
}
inline void writeText(const std::string &path, const std::string &text) {
  std::ofstream(path, std::ios::binary | std::ios::trunc) << text;
}

struct TempDir {
  char tmpl[20] = "/tmp/unit-XXXXXX";
  std::string path = std::string(mkdtemp(tmpl)) + "/";  // with the trailing "/"
  ~TempDir() { std::system(("rm -rf " + path).c_str()); }
  std::string file(const std::string &name) const { return path + name; }
};

// The logger writing into a temporary folder at `level` for a scope.
struct LogCapture {
  explicit LogCapture(const char *level = "7") {
    writeText(levelFile, level);
    reopen();
  }
  ~LogCapture() { logClose(), logUseFiles(nullptr); }
  // As a new process opens the files: after a test has written into them.
  void reopen() {
    logUseFiles(&files);
    logOpen(LOG_TO_FILE, 8, "quill_cgi");
  }
  std::string text() const { return readText(log); }
  TempDir dir;
  std::string log = dir.file("k.log"), old = dir.file("k.log.old"), levelFile = dir.file("level");
  LogFiles files = {log.c_str(), old.c_str(), levelFile.c_str()};
};

#endif
