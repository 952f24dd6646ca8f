#include "sim/sim_json.h"

#include <math.h>
#include <stdio.h>
#include <string.h>

#include <algorithm>
#include <set>

namespace sim {

namespace {

bool isJsonSpace(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

// Where a string holds an escaped zero byte ("\u0000"), or npos. The parsed
// text would end there, so "port\u0000x" would read as "port".
size_t escapedZeroByte(const std::string &text) {
  bool inString = false;
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '"') inString = !inString;
    if (!inString || text[i] != '\\') continue;
    if (text.compare(i + 1, 5, "u0000") == 0) return i;
    ++i;  // the escaped character, which may be a quote
  }
  return std::string::npos;
}

}  // namespace

std::string positionText(const std::string &text, size_t offset) {
  offset = std::min(offset, text.size());
  size_t line = 1 + static_cast<size_t>(std::count(text.begin(), text.begin() + static_cast<long>(offset), '\n'));
  size_t lineStart = offset == 0 ? std::string::npos : text.rfind('\n', offset - 1);
  size_t column = offset - (lineStart == std::string::npos ? 0 : lineStart + 1) + 1;
  return "line " + std::to_string(line) + ", column " + std::to_string(column);
}

Json parseStrictObject(const std::string &text, const char *what, std::string *error) {
  const char *end = nullptr;
  Json root(cJSON_ParseWithLengthOpts(text.c_str(), text.size(), &end, false));
  size_t offset = end && end >= text.c_str() ? static_cast<size_t>(end - text.c_str()) : 0;
  if (!root) {
    *error = std::string(what) + ": broken JSON at " + positionText(text, offset);
    return nullptr;
  }
  while (offset < text.size() && isJsonSpace(text[offset])) ++offset;
  size_t zero = escapedZeroByte(text);
  if (offset < text.size()) *error = std::string(what) + ": text after the JSON at " + positionText(text, offset);
  else if (zero != std::string::npos) *error = std::string(what) + ": a zero byte at " + positionText(text, zero);
  else if (!cJSON_IsObject(root.get())) *error = std::string(what) + ": not a JSON object";
  else return root;
  return nullptr;
}

std::string printJson(const cJSON *j, bool formatted) {
  char *p = formatted ? cJSON_Print(j) : cJSON_PrintUnformatted(j);
  std::string s = p ? p : "";
  cJSON_free(p);
  return s;
}

std::string oneLine(const std::string &text) {
  std::string out;
  for (unsigned char c : text) {
    char escaped[8];
    snprintf(escaped, sizeof escaped, c == '\n' ? "\\n" : c == '\t' ? "\\t" : "\\u%04x", c);
    out += c < 0x20 || c == 0x7f ? std::string(escaped) : std::string(1, static_cast<char>(c));
  }
  return out;
}

const char *duplicateKey(const cJSON *object) {
  if (!cJSON_IsObject(object)) return nullptr;
  std::set<std::string> seen;
  for (const cJSON *m = object->child; m; m = m->next)
    if (!seen.insert(m->string).second) return m->string;
  return nullptr;
}

bool findDuplicateKey(const cJSON *node, std::string *path, std::string *key) {
  if (const char *twice = duplicateKey(node)) {
    *key = twice;
    return true;
  }
  int index = 0;
  for (const cJSON *m = node ? node->child : nullptr; m; m = m->next, ++index) {
    std::string inner;
    if (!findDuplicateKey(m, &inner, key)) continue;
    // Built in a fresh string: g++ 12 at -O3 takes a short text assigned
    // or prepended to a string for an overlapping copy (-Wrestrict), which
    // the Release build refuses.
    std::string step = cJSON_IsObject(node) ? ".\"" : "[";
    step += cJSON_IsObject(node) ? std::string(m->string) + "\"" : std::to_string(index) + "]";
    step += inner;
    *path = std::move(step);
    return true;
  }
  return false;
}

NumberFault readWhole(const cJSON *n, double least, double most, int64_t *out) {
  if (!n) return NumberFault::Missing;
  if (!cJSON_IsNumber(n)) return NumberFault::NotNumber;
  double v = n->valuedouble;
  // In range first: the bound keeps the conversion below defined.
  if (!(v >= least && v <= most)) return NumberFault::OutOfRange;
  if (v != floor(v)) return NumberFault::Fraction;
  *out = static_cast<int64_t>(v);
  return NumberFault::None;
}

std::string rangeText(double least, double most) {
  char range[96];
  snprintf(range, sizeof range, "from %.15g to %.15g", least, most);
  return range;
}

std::string numberFaultText(const char *field, NumberFault f, double least, double most) {
  std::string name = std::string("\"") + field + "\"";
  switch (f) {
    case NumberFault::Missing: return "needs " + name;
    case NumberFault::NotNumber: return name + " must be a number";
    case NumberFault::Fraction: return name + " must be a whole number";
    case NumberFault::OutOfRange: return name + " must be " + rangeText(least, most).c_str();
    case NumberFault::None: break;
  }
  return "";
}

}  // namespace sim
