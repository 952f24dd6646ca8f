#include "api/if/ddisable_parse.h"

#include <ctype.h>
#include <string.h>
#include <strings.h>

#include "frame/params.h"
#include "platform/switch_facts.h"

namespace {

// Besides the causes of its own, the CLI takes "all" for every cause at once.
constexpr char kAllCauses[] = "all";

// The causes the API offers, in the switch's order, then "all".
const facts::DDisableCause *apiCause(size_t i) {
  for (const facts::DDisableCause &c : facts::kDDisableCauses)
    if (c.api && i-- == 0) return &c;
  return nullptr;
}

constexpr char kIntervalLabel[] = "Timeout for Auto-recovery from D-Disable state";
constexpr char kTimeLeftLabel[] = "Auto-recovery from D-Disable state";
constexpr char kTableRule[] = "------------------";
constexpr char kTableEnd[] = "Timeout";
constexpr size_t kIntervalLineBuf = 128;

bool isBlank(char c) { return c == ' ' || c == '\t'; }
bool isLineEnd(char c) { return c == '\n' || c == '\r' || c == '\0'; }

const char *skipBlanks(const char *p) {
  while (isBlank(*p)) ++p;
  return p;
}

uint32_t readDecimal(const char *p) {
  uint32_t n = 0;
  for (; isdigit(static_cast<unsigned char>(*p)); ++p) n = n * 10 + static_cast<uint32_t>(*p - '0');
  return n;
}

const char *lineStart(const char *text, const char *at) {
  while (at > text && at[-1] != '\n') --at;
  return at;
}

const char *lineEnd(const char *at) {
  while (*at && *at != '\n') ++at;
  return at;
}

bool lineHas(const char *begin, const char *end, const char *needle) {
  size_t n = strlen(needle);
  for (const char *p = begin; p + n <= end; ++p)
    if (memcmp(p, needle, n) == 0) return true;
  return false;
}

void appendWord(char *out, size_t size, const char *word, size_t len) {
  size_t used = strlen(out);
  size_t sep = used ? 1 : 0;
  if (len == 0 || used + sep + len >= size) return;
  if (sep) out[used++] = ',';
  memcpy(out + used, word, len);
  out[used + len] = '\0';
}

}  // namespace

const char *recoveryCauseName(size_t i) {
  size_t offered = 0;
  while (apiCause(offered)) ++offered;
  if (i < offered) return apiCause(i)->api;
  return i == offered ? kAllCauses : nullptr;
}

const char *recoveryCauseCliName(const char *apiName) {
  if (!apiName) return nullptr;
  if (strcmp(apiName, kAllCauses) == 0) return kAllCauses;
  for (const facts::DDisableCause &c : facts::kDDisableCauses)
    if (c.api && strcmp(c.api, apiName) == 0) return c.cli;
  return nullptr;
}

void recoveryCauseFromQuery(const char *query, char *out, size_t size) {
  if (size == 0) return;
  out[0] = '\0';
  const char *start = queryLooseValue(query, kCauseKey);
  if (!start) return;
  size_t len = strcspn(start, "&");
  if (len > size - 1) len = size - 1;
  memcpy(out, start, len);
  out[len] = '\0';
}

// Only the first 127 characters of the timeout line are looked at.
uint32_t parseRecoveryInterval(const char *show) {
  const char *found = show ? strstr(show, kIntervalLabel) : nullptr;
  if (!found) return 0;
  const char *begin = lineStart(show, found);
  char line[kIntervalLineBuf] = {};
  size_t len = static_cast<size_t>(lineEnd(begin) - begin);
  if (len > sizeof line - 1) len = sizeof line - 1;
  memcpy(line, begin, len);
  const char *p = strstr(line, kIntervalLabel);
  if (!p) return 0;
  p += strlen(kIntervalLabel);
  p += strspn(p, "= \t.:");
  return readDecimal(p);
}

CauseMode parseCauseMode(const char *show, const char *cliName) {
  if (!show || !cliName) return CauseMode::Missing;
  size_t n = strlen(cliName);
  for (const char *p = show; *p; ++p) {
    bool atLineStart = p == show || p[-1] == '\n' || p[-1] == '\r';
    if (!atLineStart || strncmp(p, cliName, n) != 0 || !isBlank(p[n])) continue;
    const char *status = skipBlanks(p + n);
    return strncasecmp(status, "Enabled", 7) == 0 ? CauseMode::Enabled : CauseMode::Disabled;
  }
  return CauseMode::Missing;
}

bool parseFeatureList(const char *show, char *out, size_t size) {
  if (!show || !out || size == 0) return false;
  out[0] = '\0';
  bool inTable = false;
  for (const char *line = show; *line;) {
    const char *end = lineEnd(line);
    if (!inTable) {
      inTable = lineHas(line, end, kTableRule);
    } else {
      if (lineHas(line, end, kTableEnd)) break;
      const char *word = skipBlanks(line);
      size_t len = 0;
      while (word + len < end && !isBlank(word[len]) && !isLineEnd(word[len])) ++len;
      appendWord(out, size, word, len);
    }
    line = *end ? end + 1 : end;
  }
  return out[0] != '\0';
}

uint32_t parseRecoveryTimeLeft(const char *show) {
  const char *p = show ? strstr(show, kTimeLeftLabel) : nullptr;
  if (!p) return 0;
  while (!isLineEnd(*p) && !isdigit(static_cast<unsigned char>(*p))) ++p;
  return readDecimal(p);
}
