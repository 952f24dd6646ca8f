// Percent-decoding in place: never longer than its input, and a text
// without "%" or "+" comes back unchanged.
#include <stdlib.h>
#include <string.h>

#include <string>

#include "frame/params.h"
#include "fuzz/fuzz_support.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  std::string input = fuzz::text(data, size);
  // An exact-size heap copy, so that a read or write past the end is seen.
  char *text = static_cast<char *>(malloc(input.size() + 1));
  memcpy(text, input.c_str(), input.size() + 1);
  char *decoded = urlDecode(text);
  fuzz::require(decoded == text, "decodes in place");
  fuzz::require(strlen(decoded) <= input.size(), "never grows");
  if (input.find_first_of("%+") == std::string::npos)
    fuzz::require(input == decoded, "plain text is unchanged");
  free(text);
  fuzz::require(urlDecode(nullptr) == nullptr, "null stays null");
  return 0;
}
