#include "api/pml/pml_args.h"

#include <string.h>

namespace {

constexpr char kMacField[] = "macAddr=";

int hexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

// Two characters read as base 16, stopping at the first that is no digit.
unsigned hexPair(char high, char low) {
  int h = hexDigit(high);
  if (h < 0) return 0;
  int l = hexDigit(low);
  return l < 0 ? static_cast<unsigned>(h) : static_cast<unsigned>(h * 16 + l);
}

const char *macField(const char *query) {
  const size_t n = sizeof kMacField - 1;
  for (const char *seg = query; seg;) {
    if (strncmp(seg, kMacField, n) == 0) return seg + n;
    const char *amp = strchr(seg, '&');
    seg = amp ? amp + 1 : nullptr;
  }
  return nullptr;
}

}  // namespace

const char *pmlEnableText(uint32_t value) { return value == 1 ? "enable" : "disable"; }
const char *pmlBoolText(uint32_t value) { return value == 1 ? "true" : "false"; }

void getQueryMacAddr(const char *query, char *mac, size_t size) {
  if (size == 0) return;
  mac[0] = '\0';
  if (!query) return;
  const char *p = macField(query);
  if (!p) return;
  const char *end = query + strlen(query);
  size_t n = 0;
  while (*p && *p != '&' && n < size - 1) {
    if (*p == '+') {
      mac[n++] = ' ';
      ++p;
    } else if (*p == '%' && end - p > 2) {
      // The two characters are taken whatever they are, "&" included.
      mac[n++] = static_cast<char>(hexPair(p[1], p[2]) & 0xFF);
      p += 3;
    } else {
      mac[n++] = *p++;
    }
  }
  mac[n] = '\0';
}
