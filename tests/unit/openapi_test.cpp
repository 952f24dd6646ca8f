#include "tools/openapi.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "frame/envelope.h"

namespace {

uint32_t noHandler() { return 0; }

// Two reads of one path, and two spellings of one word in either order.
constexpr doc::Field kWord{.name = "word", .text = "A word.", .type = doc::Type::Text, .words = "none|None"};
constexpr doc::Field kDrow{.name = "word", .text = "A word.", .type = doc::Type::Text, .words = "None|none"};
constexpr doc::Field kWords[] = {kWord}, kDrows[] = {kDrow};
constexpr doc::HandDoc kGet = doc::read("Reads a word", "if", {}, kWords);
constexpr doc::HandDoc kPost = doc::read("Reads the word back", "if", {}, kDrows);

// Objects in key order, so that two documents compare by what they say.
std::string canonical(cJSON *node) {
  std::vector<cJSON *> children;
  for (cJSON *c = node->child; c; c = c->next) children.push_back(c);
  if (cJSON_IsObject(node))
    std::stable_sort(children.begin(), children.end(),
                     [](const cJSON *a, const cJSON *b) { return strcmp(a->string, b->string) < 0; });
  std::string out = cJSON_IsObject(node) ? "{" : cJSON_IsArray(node) ? "[" : "";
  for (cJSON *c : children) out += (c->string ? std::string(c->string) + ":" : "") + canonical(c) + ",";
  if (children.empty() && !cJSON_IsObject(node) && !cJSON_IsArray(node)) {
    char *text = cJSON_PrintUnformatted(node);
    out = text;
    cJSON_free(text);
  }
  return out;
}

// Generated clients name their types after the document's names: the
// table in another order gives the same names, and the same document.
TEST(OpenApi, NamesDoNotDependOnTheTableOrder) {
  std::vector<RouteRow> rows(kRoutes, kRoutes + kRouteCount);
  rows.push_back(HANDLER(kIf, METHOD_GET, "word", noHandler, kGet));
  rows.push_back(HANDLER(kIf, METHOD_POST, "word", noHandler, kPost));
  JsonPtr table(openApiDocument("1", rows));
  std::reverse(rows.begin(), rows.end());
  JsonPtr reversed(openApiDocument("1", rows));
  EXPECT_EQ(canonical(table.get()), canonical(reversed.get()));
  const cJSON *schemas = cJSON_GetObjectItem(cJSON_GetObjectItem(table.get(), "components"), "schemas");
  for (const char *model : {"GetIfWord", "PostIfWord"}) {
    const cJSON *word = cJSON_GetObjectItem(cJSON_GetObjectItem(cJSON_GetObjectItem(schemas, model), "properties"), "word");
    char *names = cJSON_PrintUnformatted(cJSON_GetObjectItem(word, "x-enum-varnames"));
    EXPECT_STREQ(names, std::string(model) == "GetIfWord" ? "[\"none\",\"None\"]" : "[\"None\",\"none\"]") << model;
    cJSON_free(names);
  }
}

}  // namespace
