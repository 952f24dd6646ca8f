// Replays fuzz inputs through one target without libFuzzer: every file named on the command line and
// every file under every folder named, in name order; a missing folder is empty, no input an error.
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "fuzz/fuzz_support.h"

extern "C" __attribute__((weak)) int LLVMFuzzerInitialize(int *argc, char ***argv);

int main(int argc, char **argv) {
  if (LLVMFuzzerInitialize) LLVMFuzzerInitialize(&argc, &argv);
  std::vector<std::string> files;
  for (int i = 1; i < argc; ++i) {
    std::error_code missing;
    if (std::filesystem::is_regular_file(argv[i], missing)) files.push_back(argv[i]);
    for (const auto &entry : std::filesystem::recursive_directory_iterator(argv[i], missing))
      if (entry.is_regular_file()) files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  fuzz::require(!files.empty(), "inputs to replay");
  for (const std::string &path : files) {
    std::ifstream f(path, std::ios::binary);
    fuzz::require(f.good(), path.c_str());
    std::vector<uint8_t> bytes((std::istreambuf_iterator<char>(f)), std::istreambuf_iterator<char>());
    fprintf(stderr, "replay %s\n", path.c_str());
    LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
  }
  return 0;
}
