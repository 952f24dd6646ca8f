// The query string as handlers read it: split into pieces, looked up by
// loose name, and scanned for anchored unsigned numbers.
#include <string>

#include "frame/params.h"
#include "fuzz/fuzz_support.h"

namespace {

const char *const kNames[] = {"ifNum", "intIfNum", "prevIfNum", "expandPortMode", "macAddr", "cause", "", "="};

size_t countOf(const std::string &s, char c) {
  size_t n = 0;
  for (char x : s) n += x == c;
  return n;
}

void checkSplit(const std::string &query, char **list) {
  size_t pieces = 0;
  size_t chars = 0;
  for (char **p = list; *p; ++p, ++pieces) chars += strlen(*p);
  fuzz::require(pieces == countOf(query, '&') + 1, "one piece per '&'-separated segment");
  fuzz::require(chars + pieces - 1 == query.size(), "the pieces hold every character but the '&'s");
}

void checkLookup(const char *name, char **list) {
  const char *value = queryParamValue(name, list);
  if (!value) return;
  for (char **p = list; *p; ++p)
    if (value > *p && value <= *p + strlen(*p)) return;
  fuzz::require(false, "a found value points into one of the pieces");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  std::string query = fuzz::text(data, size);
  char **list = queryParamsSplit(query.c_str());
  checkSplit(query, list);
  for (const char *name : kNames) {
    checkLookup(name, list);
    queryScanUintIn(query.c_str(), name);
  }
  queryParamsFree(list);
  setenv("QUERY_STRING", query.c_str(), 1);
  fuzz::require(queryScanUint("ifNum") == queryScanUintIn(query.c_str(), "ifNum"), "environment and text agree");
  return 0;
}
