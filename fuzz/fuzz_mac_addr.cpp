// The "macAddr=" query field decoded into buffers of several sizes, each
// allocated to exactly that size.
#include <stdlib.h>
#include <string.h>

#include <string>

#include "api/pml/pml_args.h"
#include "fuzz/fuzz_support.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  std::string query = fuzz::text(data, size);
  const size_t sizes[] = {kPmlMacSize, 1, 2, 4};
  for (size_t bufSize : sizes) {
    char *mac = static_cast<char *>(malloc(bufSize));
    getQueryMacAddr(query.c_str(), mac, bufSize);
    fuzz::require(strnlen(mac, bufSize) < bufSize, "the text ends inside the buffer");
    free(mac);
  }
  char untouched = 'x';
  getQueryMacAddr(query.c_str(), &untouched, 0);
  fuzz::require(untouched == 'x', "a zero-size buffer is not written");
  return 0;
}
