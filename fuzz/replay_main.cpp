// Replays fuzz inputs through one target without libFuzzer: every file
// named on the command line and every file in every folder named, in name
// order. A missing folder counts as empty; no input at all is an error.
#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <vector>

#include "fuzz/fuzz_support.h"

extern "C" __attribute__((weak)) int LLVMFuzzerInitialize(int *argc, char ***argv);

static void collect(const std::string &path, std::vector<std::string> &files) {
  struct stat st = {};
  if (stat(path.c_str(), &st) != 0) return;
  if (!S_ISDIR(st.st_mode)) return files.push_back(path);
  std::vector<std::string> names;
  if (DIR *dir = opendir(path.c_str())) {
    while (const dirent *e = readdir(dir))
      if (e->d_name[0] != '.') names.push_back(path + "/" + e->d_name);
    closedir(dir);
  }
  std::sort(names.begin(), names.end());
  for (const std::string &n : names) collect(n, files);
}

int main(int argc, char **argv) {
  if (LLVMFuzzerInitialize) LLVMFuzzerInitialize(&argc, &argv);
  std::vector<std::string> files;
  for (int i = 1; i < argc; ++i) collect(argv[i], files);
  fuzz::require(!files.empty(), "inputs to replay");
  for (const std::string &path : files) {
    std::ifstream f(path, std::ios::binary);
    fuzz::require(f.good(), path.c_str());
    std::vector<uint8_t> bytes((std::istreambuf_iterator<char>(f)), std::istreambuf_iterator<char>());
    fprintf(stderr, "replay %s\n", path.c_str());
    LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
  }
  fprintf(stderr, "%zu inputs replayed\n", files.size());
  return 0;
}
