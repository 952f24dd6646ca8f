#include "api/pml/pml_args.h"

#include <string.h>

#include "frame/params.h"

namespace {

// Two characters read as base 16, stopping at the first that is no digit.
unsigned hexPair(char high, char low) {
  int h = hexDigitValue(high);
  if (h < 0) return 0;
  int l = hexDigitValue(low);
  return l < 0 ? static_cast<unsigned>(h) : static_cast<unsigned>(h * 16 + l);
}

}  // namespace


void getQueryMacAddr(const char *query, char *mac, size_t size) {
  if (size == 0) return;
  mac[0] = '\0';
  if (!query) return;
  const char *p = queryFieldValue(query, "macAddr");
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
