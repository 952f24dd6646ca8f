// Body values picked out of any JSON document: numbers into 32 bits,
// words and texts, under keys matched without regard to case.
#include <cjson/cJSON.h>
#include <math.h>
#include <string.h>

#include "frame/params.h"
#include "fuzz/fuzz_support.h"

namespace {

const char *const kKeys[] = {"ifNum", "mode", "cause", "interval", "macAddr", "vlanId", "enable", ""};

void checkNumber(const cJSON *item) {
  uint32_t v = jsonToU32(item);
  if (!cJSON_IsNumber(item)) {
    fuzz::require(v == 0, "a non-number is 0");
    return;
  }
  double d = item->valuedouble;
  if (isnan(d) || d <= 0) fuzz::require(v == 0, "nothing below 1 survives");
  else if (d >= 4294967295.0) fuzz::require(v == 4294967295u, "large numbers saturate");
  else fuzz::require(v == static_cast<uint32_t>(floor(d)), "truncated toward zero");
}

void walk(const cJSON *item, int depth) {
  for (; item; item = item->next) {
    checkNumber(item);
    if (depth < 64) walk(item->child, depth + 1);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  cJSON *body = cJSON_ParseWithLength(reinterpret_cast<const char *>(data), size);
  walk(body, 0);
  for (const char *key : kKeys) {
    bodyU32(body, key);
    const char *text = bodyText(body, key);
    uint32_t word = bodyWord(body, key, "enable");
    fuzz::require(word == (text && strcmp(text, "enable") == 0), "a word is a text equal to it");
  }
  cJSON_Delete(body);
  return 0;
}
