// Every name the document gives derives from a route's path and method and
// from the field it names, never from where a row stands in the table: a
// generated client's type names stay when the table is reordered.
#include <ctype.h>
#include <string.h>

#include <algorithm>
#include <map>

#include "frame/envelope.h"
#include "tools/openapi_parts.h"

namespace openapi {

namespace {

// "getIfLinkState" -> "IfLinkState".
std::string withoutMethod(const std::string &operationId) {
  size_t i = 0;
  while (i < operationId.size() && islower(static_cast<unsigned char>(operationId[i]))) ++i;
  return operationId.substr(i);
}

bool readsValues(const RouteRow &r) {
  doc::Shape shape = r.hand ? r.hand->shape : r.doc->shape;
  return !r.shadowed && (shape == doc::Shape::Read || shape == doc::Shape::Check);
}

bool startsWithDigit(const std::string &s) { return !s.empty() && isdigit(static_cast<unsigned char>(s[0])); }

// A value's name as the others are spelt, or in its own spelling.
std::string valueName(const cJSON *v, const std::string &lead, bool ownSpelling) {
  std::string name;
  if (cJSON_IsNull(v)) name = "NULL";
  else if (!ownSpelling && cJSON_IsString(v)) name = upperWords(v->valuestring);
  else if (cJSON_IsString(v))
    for (const char *c = v->valuestring; *c; ++c) name += isalnum(static_cast<unsigned char>(*c)) ? *c : '_';
  if (name.empty() || startsWithDigit(name)) name = lead + (name.empty() ? "" : "_" + name);
  return name;
}

}  // namespace

// "linkState", "admin-state" -> "LinkState", "AdminState".
std::string pascal(const char *key) {
  std::string out;
  bool upper = true;
  for (const char *c = key; *c; ++c) {
    if (!isalnum(static_cast<unsigned char>(*c))) {
      upper = true;
      continue;
    }
    out += upper ? static_cast<char>(toupper(static_cast<unsigned char>(*c))) : *c;
    upper = false;
  }
  return out;
}

// "rs-544", "Request api not found" -> "RS_544", "REQUEST_API_NOT_FOUND".
std::string upperWords(const char *text) {
  std::string out;
  for (const char *c = text; *c; ++c) {
    unsigned char u = static_cast<unsigned char>(*c);
    if (isalnum(u)) out += static_cast<char>(toupper(u));
    else if (!out.empty() && out.back() != '_') out += '_';
  }
  return out;
}

// get + /if/link-state -> getIfLinkState
std::string operationId(const RouteRow &r) {
  std::string id;
  for (const char *m = httpMethodName(r.method); *m; ++m) id += static_cast<char>(tolower(*m));
  std::string words = std::string(r.path + strlen(kRoot)) + "/" + r.name;
  bool upper = true;
  for (char c : words) {
    if (c == '/' || c == '-' || c == '_') {
      upper = true;
    } else {
      id += upper ? static_cast<char>(toupper(c)) : c;
      upper = false;
    }
  }
  return id;
}

std::set<std::string> sharedStems(std::span<const RouteRow> rows) {
  std::map<std::string, int> readers;
  for (const RouteRow &r : rows)
    if (readsValues(r)) ++readers[withoutMethod(operationId(r))];
  std::set<std::string> shared;
  for (const auto &[stem, count] : readers)
    if (count > 1) shared.insert(stem);
  return shared;
}

std::string modelStem(const RouteRow &r, const std::set<std::string> &shared) {
  std::string id = operationId(r);
  std::string stem = withoutMethod(id);
  return shared.count(stem) ? pascal(id.c_str()) : stem;
}

// Many values are no identifiers ("rs-544", "1x10G", "100"): a value that
// starts with a digit takes the last word of its field's name
// ("SPEED_100"). Values whose names would clash ("none" and "None") keep
// their own spelling instead, whichever order they come in.
cJSON *valueNames(const cJSON *values, const std::string &field) {
  std::string lead = upperWords(field.c_str());
  lead = lead.substr(lead.rfind('_') + 1);
  if (lead.empty() || startsWithDigit(lead)) lead = "VALUE";
  std::vector<std::string> names;
  const cJSON *v = nullptr;
  cJSON_ArrayForEach(v, values) names.push_back(valueName(v, lead, false));
  cJSON *out = cJSON_CreateArray();
  size_t i = 0;
  cJSON_ArrayForEach(v, values) {
    bool clash = std::count(names.begin(), names.end(), names[i++]) > 1;
    cJSON_AddItemToArray(out, cJSON_CreateString(valueName(v, lead, clash).c_str()));
  }
  return out;
}

}  // namespace openapi
