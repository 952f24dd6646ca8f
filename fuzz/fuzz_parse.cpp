// The program's text readers over any input, output buffers allocated to
// their exact size so that a step past the end is seen. The first byte
// picks the family: q query string, u percent-decoding, m MAC query
// field, d D-Disable show output and cause query, j JSON body values.
#include <cjson/cJSON.h>
#include <math.h>

#include <algorithm>

#include "api/if/ddisable_parse.h"
#include "api/pml/pml_args.h"
#include "frame/params.h"
#include "fuzz/fuzz_support.h"

namespace {

const char *const kNames[] = {"ifNum", "intIfNum", "macAddr", "cause", "mode", "", "="};

void query(const std::string &q) {
  char **list = queryParamsSplit(q.c_str());
  size_t pieces = 0, chars = 0;
  for (char **p = list; *p; ++p, ++pieces) chars += strlen(*p);
  fuzz::require(pieces == static_cast<size_t>(std::count(q.begin(), q.end(), '&')) + 1, "a piece per segment");
  fuzz::require(chars + pieces - 1 == q.size(), "the pieces hold every character but the '&'s");
  for (const char *name : kNames) {
    const char *value = queryParamValue(name, list);
    bool inside = !value;
    for (char **p = list; *p && !inside; ++p) inside = value > *p && value <= *p + strlen(*p);
    fuzz::require(inside, "a found value points into its piece");
    queryScanUintIn(q.c_str(), name);
  }
  queryParamsFree(list);
}

void urlDecoding(const std::string &in) {
  char *text = strdup(in.c_str());
  fuzz::require(urlDecode(text) == text && strlen(text) <= in.size(), "decodes in place, never longer");
  if (in.find_first_of("%+") == std::string::npos) fuzz::require(in == text, "plain text is unchanged");
  free(text);
}

void macField(const std::string &q) {
  for (size_t size : {size_t{kPmlMacSize}, size_t{1}, size_t{2}, size_t{4}}) {
    char *mac = static_cast<char *>(malloc(size));
    getQueryMacAddr(q.c_str(), mac, size);
    fuzz::require(strnlen(mac, size) < size, "the text ends inside the buffer");
    free(mac);
  }
  char untouched = 'x';
  getQueryMacAddr(q.c_str(), &untouched, 0);
  fuzz::require(untouched == 'x', "a zero-size buffer is not written");
}

void ddisable(const std::string &show) {
  const char *text = show.c_str();
  parseRecoveryInterval(text);
  parseRecoveryTimeLeft(text);
  for (const char *name : {"dhcp-rate-limit", "bcast-storm", "mac-locking", "all", ""}) parseCauseMode(text, name);
  for (size_t size : {kFeatureListBuf, size_t{8}, size_t{1}}) {
    char *out = static_cast<char *>(malloc(size));
    bool found = parseFeatureList(text, out, size);
    fuzz::require(strnlen(out, size) < size && found == (out[0] != '\0'), "a list inside its buffer, found if any");
    recoveryCauseFromQuery(text, out, size);
    fuzz::require(strnlen(out, size) < size && !strchr(out, '&'), "a cause inside its buffer, cut at '&'");
    recoveryCauseCliName(out);
    free(out);
  }
}

void checkNumbers(const cJSON *item, int depth) {
  for (; item && depth < 64; item = item->next) {
    uint32_t v = jsonToU32(item);
    double d = cJSON_IsNumber(item) ? item->valuedouble : 0;
    if (isnan(d) || d <= 0) fuzz::require(v == 0, "nothing below 1 survives, nor a non-number");
    else if (d >= 4294967295.0) fuzz::require(v == 4294967295u, "large numbers saturate");
    else fuzz::require(v == static_cast<uint32_t>(floor(d)), "truncated toward zero");
    checkNumbers(item->child, depth + 1);
  }
}

void bodyValues(const uint8_t *data, size_t size) {
  cJSON *body = cJSON_ParseWithLength(reinterpret_cast<const char *>(data), size);
  checkNumbers(body, 0);
  for (const char *key : kNames) {
    bodyU32(body, key);
    const char *text = bodyText(body, key);
    fuzz::require(bodyWord(body, key, "enable") == (text && strcmp(text, "enable") == 0), "a word is its text");
  }
  cJSON_Delete(body);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  switch (fuzz::family(data, size, "qumdj")) {
    case 0: query(fuzz::text(data, size)); break;
    case 1: urlDecoding(fuzz::text(data, size)); break;
    case 2: macField(fuzz::text(data, size)); break;
    case 3: ddisable(fuzz::text(data, size)); break;
    default: bodyValues(data, size);
  }
  return 0;
}
