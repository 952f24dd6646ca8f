// The program's text readers, output buffers of exact size so that a step past the end is seen;
// the families (q, u, m, d, j) are described in README.md.
#include <cjson/cJSON.h>

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
    queryParamValue(name, list);
    queryScanUintIn(q.c_str(), name);
  }
  queryParamsFree(list);
}

void urlDecoding(const std::string &in) {
  char *text = strdup(in.c_str());
  fuzz::require(urlDecode(text) == text && strlen(text) <= in.size(), "decodes in place, never longer");
  free(text);
}

void macField(const std::string &q) {
  for (size_t size : {size_t{kPmlMacSize}, size_t{1}, size_t{2}, size_t{4}}) {
    char *mac = static_cast<char *>(malloc(size));
    getQueryMacAddr(q.c_str(), mac, size);
    fuzz::require(strnlen(mac, size) < size, "the text ends inside the buffer");
    free(mac);
  }
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

void bodyValues(const uint8_t *data, size_t size) {
  cJSON *body = cJSON_ParseWithLength(reinterpret_cast<const char *>(data), size);
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
