// Replays fuzz inputs through one target without libFuzzer: every file
// named on the command line, and every file in every folder named. A
// missing folder counts as empty; no input at all is an error.
#include <dirent.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/stat.h>

#include <algorithm>
#include <string>
#include <vector>

#include "fuzz/fuzz_support.h"

extern "C" __attribute__((weak)) int LLVMFuzzerInitialize(int *argc, char ***argv);

namespace {

void collect(const std::string &path, std::vector<std::string> &files) {
  struct stat st = {};
  if (stat(path.c_str(), &st) != 0) return;
  if (!S_ISDIR(st.st_mode)) {
    files.push_back(path);
    return;
  }
  DIR *dir = opendir(path.c_str());
  if (!dir) return;
  std::vector<std::string> names;
  while (const dirent *e = readdir(dir))
    if (e->d_name[0] != '.') names.push_back(e->d_name);
  closedir(dir);
  std::sort(names.begin(), names.end());
  for (const std::string &n : names) collect(path + "/" + n, files);
}

bool readAll(const std::string &path, std::vector<uint8_t> &bytes) {
  FILE *f = fopen(path.c_str(), "rb");
  if (!f) return false;
  uint8_t chunk[4096];
  size_t n = 0;
  while ((n = fread(chunk, 1, sizeof chunk, f)) > 0) bytes.insert(bytes.end(), chunk, chunk + n);
  fclose(f);
  return true;
}

}  // namespace

int main(int argc, char **argv) {
  if (LLVMFuzzerInitialize) LLVMFuzzerInitialize(&argc, &argv);
  std::vector<std::string> files;
  for (int i = 1; i < argc; ++i) collect(argv[i], files);
  if (files.empty()) {
    fprintf(stderr, "no inputs to replay\n");
    return 1;
  }
  for (const std::string &path : files) {
    std::vector<uint8_t> bytes;
    if (!readAll(path, bytes)) {
      fprintf(stderr, "cannot read %s\n", path.c_str());
      return 1;
    }
    fprintf(stderr, "replay %s\n", path.c_str());
    LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
  }
  fprintf(stderr, "%zu inputs replayed\n", files.size());
  return 0;
}
