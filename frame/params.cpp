#include "frame/params.h"

#include <ctype.h>
#include <math.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "frame/request_io.h"

namespace {

constexpr size_t kQueryLimit = 8192;
constexpr size_t kListStep = 10;
// Far beyond any real body, small enough that a forged length cannot
// make the process allocate without bound.
constexpr long kBodyLimit = 16L << 20;

char *copyQuery() {
  const char *q = getenv("QUERY_STRING");
  if (!q) q = "";
  size_t n = strnlen(q, kQueryLimit);
  char *copy = static_cast<char *>(malloc(n + 1));
  if (!copy) return nullptr;
  memcpy(copy, q, n);
  copy[n] = '\0';
  return copy;
}

long contentLength() {
  const char *text = getenv("CONTENT_LENGTH");
  if (!text) return 0;
  char *end = nullptr;
  long n = strtol(text, &end, 10);
  if (end == text || n < 0) return 0;
  return n;
}

char *readBody() {
  long n = contentLength();
  if (n > kBodyLimit) return nullptr;
  char *body = static_cast<char *>(calloc(static_cast<size_t>(n) + 1, 1));
  if (!body || n == 0) return body;
  size_t got = requestBodyRead(body, static_cast<size_t>(n));
  // A body that ends early leaves the end-of-file value in the text as one
  // byte, as a byte-wise read storing each result would; the terminator
  // follows it.
  if (got < static_cast<size_t>(n)) body[got] = static_cast<char>(EOF);
  return body;
}

}  // namespace

int hexDigitValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

size_t queryValueLength(const char *value) { return strcspn(value, "&"); }

const char *queryFieldValue(const char *query, const char *name) {
  if (!query || !name) return nullptr;
  size_t n = strlen(name);
  for (const char *seg = query;;) {
    if (strncmp(seg, name, n) == 0 && seg[n] == '=') return seg + n + 1;
    size_t length = queryValueLength(seg);
    if (seg[length] == '\0') return nullptr;
    seg += length + 1;
  }
}

const char *queryLooseValue(const char *query, const char *name) {
  if (!query || !name) return nullptr;
  size_t n = strlen(name);
  for (const char *p = strstr(query, name); p; p = strstr(p + 1, name))
    if (p[n] == '=') return p + n + 1;
  return nullptr;
}

char *requestDataGet(void) {
  const char *method = getenv("REQUEST_METHOD");
  if (!method) return nullptr;
  if (strcmp(method, "GET") == 0 || strcmp(method, "DELETE") == 0) return copyQuery();
  if (strcmp(method, "POST") == 0 || strcmp(method, "PUT") == 0) return readBody();
  return nullptr;
}

char **queryParamsSplit(const char *text) {
  size_t cap = kListStep, count = 0;
  char **list = static_cast<char **>(calloc(cap, sizeof(char *)));
  if (!list) exit(1);
  if (!text) return list;
  const char *rest = text;
  for (;;) {
    size_t len = queryValueLength(rest);
    const char *amp = rest[len] ? rest + len : nullptr;
    if (count + 1 >= cap) {
      cap += kListStep;
      char **grown = static_cast<char **>(realloc(list, cap * sizeof(char *)));
      if (!grown) exit(1);
      list = grown;
    }
    list[count++] = strndup(rest, len);
    list[count] = nullptr;
    if (!amp) break;
    rest = amp + 1;
  }
  return list;
}

const char *queryParamValue(const char *name, char **list) {
  if (!name || !list) return nullptr;
  for (char **p = list; *p; ++p) {
    if (!strstr(*p, name)) continue;
    if (const char *eq = strchr(*p, '=')) return eq + 1;
  }
  return nullptr;
}

void queryParamsFree(char **list) {
  if (!list) return;
  for (char **p = list; *p; ++p) free(*p);
  free(list);
}

char *urlDecode(char *text) {
  if (!text) return nullptr;
  char *out = text;
  for (const char *in = text; *in;) {
    if (*in == '%' && hexDigitValue(in[1]) >= 0 && hexDigitValue(in[2]) >= 0) {
      *out++ = static_cast<char>(hexDigitValue(in[1]) * 16 + hexDigitValue(in[2]));
      in += 3;
    } else {
      *out++ = *in == '+' ? ' ' : *in;
      ++in;
    }
  }
  *out = '\0';
  return text;
}

uint32_t queryScanUintIn(const char *query, const char *name) {
  const char *value = queryFieldValue(query, name);
  return value ? static_cast<uint32_t>(strtoul(value, nullptr, 10)) : 0;
}

uint32_t queryScanUint(const char *name) { return queryScanUintIn(getenv("QUERY_STRING"), name); }

uint32_t jsonToU32(const cJSON *item) {
  if (!cJSON_IsNumber(item)) return 0;
  double d = item->valuedouble;
  if (isnan(d) || d <= 0) return 0;
  if (d >= 4294967295.0) return 4294967295u;
  return static_cast<uint32_t>(d);
}

uint32_t bodyU32(const cJSON *body, const char *key) { return jsonToU32(cJSON_GetObjectItem(body, key)); }

uint32_t bodyWord(const cJSON *body, const char *key, const char *word) {
  const char *t = bodyText(body, key);
  return t && strcmp(t, word) == 0 ? 1 : 0;
}

const char *bodyText(const cJSON *body, const char *key) {
  const cJSON *item = cJSON_GetObjectItem(body, key);
  return cJSON_IsString(item) ? item->valuestring : nullptr;
}

cJSON *requestBodyParse(void) {
  char *data = requestDataGet();
  if (!data) return nullptr;
  cJSON *body = cJSON_Parse(data);
  free(data);
  return body;
}
