// The readings of "show errdisable recovery" and of the cause query over
// any text, with output buffers allocated to their exact size.
#include <stdlib.h>
#include <string.h>

#include <string>

#include "api/if/ddisable_parse.h"
#include "fuzz/fuzz_support.h"

namespace {

const char *const kCliNames[] = {"dhcp-rate-limit", "bcast-storm", "bpdustorm", "mac-locking", "all", ""};

void checkFeatureList(const char *show, size_t size) {
  char *out = static_cast<char *>(malloc(size));
  bool found = parseFeatureList(show, out, size);
  size_t len = strnlen(out, size);
  fuzz::require(len < size, "the list ends inside the buffer");
  fuzz::require(found == (len > 0), "found means a non-empty list");
  free(out);
}

void checkCause(const char *query, size_t size) {
  char *out = static_cast<char *>(malloc(size));
  recoveryCauseFromQuery(query, out, size);
  fuzz::require(strnlen(out, size) < size, "the cause ends inside the buffer");
  fuzz::require(strchr(out, '&') == nullptr, "the cause stops at '&'");
  recoveryCauseCliName(out);
  free(out);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  std::string show = fuzz::text(data, size);
  const char *text = show.c_str();
  parseRecoveryInterval(text);
  parseRecoveryTimeLeft(text);
  for (const char *name : kCliNames) parseCauseMode(text, name);
  checkFeatureList(text, kFeatureListBuf);
  checkFeatureList(text, 8);
  checkFeatureList(text, 1);
  checkCause(text, kCauseNameBuf);
  checkCause(text, 1);
  recoveryCauseCliName(text);
  return 0;
}
