#include "tools/route_check.h"

#include <gtest/gtest.h>
#include <stdio.h>
#include <stdlib.h>

#include <algorithm>
#include <string>
#include <vector>

#include "frame/envelope.h"
#include "tools/openapi.h"

namespace {

uint32_t noHandler() { return 0; }

constexpr facts::Range kNotTheSwitchs{1, 5};
constexpr doc::Field kSilent{.name = "silent"};
constexpr doc::Field kOwnRange{.name = "level", .text = "A level.", .unit = &facts::kCount, .range = &kNotTheSwitchs};
constexpr doc::Field kHeldRange{
    .name = "frame", .text = "A frame.", .unit = &facts::kBytes, .range = &facts::kMaxFrameSize};
constexpr doc::Field kPort{.name = "ifNum", .text = "A port.", .unit = &facts::kIdentifier};
constexpr doc::Field kReply[] = {kSilent, kOwnRange, kHeldRange};
constexpr doc::HandDoc kFaulty = doc::read("Reads a thing", "if", {}, kReply);
constexpr doc::HandDoc kSameSummary = doc::read("Reads a thing", "if", {}, {});
constexpr doc::HandDoc kNoSummary = doc::read("", "if", {}, {});
constexpr doc::HandDoc kSound = doc::read("Reads another thing", "if", {}, {});
constexpr doc::HandDoc kTakesOver = doc::read("Reads a type, for the pages", "if", {}, {});

constexpr char kDir[] = "/api/v2/interfaces/if";
// A table row whose input says nothing and whose shadowing goes unmarked,
// beside hand-written ones; a shadowed row may share the summary of the row
// that serves in its place.
const RouteRow kRows[] = {
    HANDLER(kDir, METHOD_GET, "a", noHandler, kFaulty),
    HANDLER(kDir, METHOD_GET, "b", noHandler, kSameSummary),
    HANDLER(kDir, METHOD_PUT, "c", noHandler, kNoSummary),
    ROUTE(kDir, METHOD_GET, "d", "Reads a type",
          kit::Read<"if", openapiIfTypeGet, kit::scan(kSilent), kit::out(kPort)>),
    HANDLER(kDir, METHOD_GET, "d", noHandler, kTakesOver),
    {kDir, METHOD_PUT, "e", noHandler, nullptr, &kSound, true, nullptr, nullptr},
    {kDir, METHOD_GET, "e", noHandler, nullptr, &kSound, true, nullptr, nullptr},
    HANDLER(kDir, METHOD_GET, "e", noHandler, kSound),
};

std::string checked(std::span<const RouteRow> rows, size_t *findings) {
  char *text = nullptr;
  size_t size = 0;
  FILE *out = open_memstream(&text, &size);
  *findings = checkRoutes(rows, out);
  fclose(out);
  std::string s(text, size);
  free(text);
  return s;
}

TEST(RouteCheck, EachFindingNamesItsRowAndField) {
  size_t findings = 0;
  EXPECT_EQ(checked(kRows, &findings),
            "row 1 GET /api/v2/interfaces/if/a: field \"silent\" says nothing of what it holds\n"
            "row 1 GET /api/v2/interfaces/if/a: field \"silent\" is a number without a unit\n"
            "row 1 GET /api/v2/interfaces/if/a: field \"level\" states the range 1..5, which is not one of the "
            "switch's (platform/switch_facts.h)\n"
            "row 2 GET /api/v2/interfaces/if/b: has the summary of row 1: \"Reads a thing\"\n"
            "row 3 PUT /api/v2/interfaces/if/c: has no summary\n"
            "row 4 GET /api/v2/interfaces/if/d: is shadowed by row 5 but not marked so\n"
            "row 4 GET /api/v2/interfaces/if/d: field \"silent\" says nothing of what it holds\n"
            "row 4 GET /api/v2/interfaces/if/d: field \"silent\" is a number without a unit\n"
            "row 6 PUT /api/v2/interfaces/if/e: is marked shadowed, but no later row has its key\n");
  EXPECT_EQ(findings, 9u);
  EXPECT_EQ(checked(std::span(kRows).last(2), &findings), "");
  EXPECT_EQ(findings, 0u);
}

// Two reads of one path, each with two spellings of one word, in either order.
constexpr doc::Field kWords[] = {{.name = "word", .text = "A word.", .type = doc::Type::Text, .words = "none|None"}};
constexpr doc::Field kDrows[] = {{.name = "word", .text = "A word.", .type = doc::Type::Text, .words = "None|none"}};
constexpr doc::HandDoc kGet = doc::read("Reads a word", "if", {}, kWords);
constexpr doc::HandDoc kPost = doc::read("Reads the word back", "if", {}, kDrows);

// Generated clients name their types after the document's names: built
// from the table in another order, the document is the same, key for key.
TEST(OpenApi, NamesDoNotDependOnTheTableOrder) {
  std::vector<RouteRow> rows(kRoutes, kRoutes + kRouteCount);
  rows.push_back(HANDLER(kDir, METHOD_GET, "word", noHandler, kGet));
  rows.push_back(HANDLER(kDir, METHOD_POST, "word", noHandler, kPost));
  JsonPtr table(openApiDocument("1", rows));
  std::reverse(rows.begin(), rows.end());
  JsonPtr reversed(openApiDocument("1", rows));
  EXPECT_TRUE(cJSON_Compare(table.get(), reversed.get(), true));
  cJSON *schemas = cJSON_GetObjectItem(cJSON_GetObjectItem(table.get(), "components"), "schemas");
  for (auto [model, names] : {std::pair{"GetIfWord", "[\"none\",\"None\"]"}, {"PostIfWord", "[\"None\",\"none\"]"}}) {
    cJSON *word = cJSON_GetObjectItem(cJSON_GetObjectItem(cJSON_GetObjectItem(schemas, model), "properties"), "word");
    char *given = cJSON_PrintUnformatted(cJSON_GetObjectItem(word, "x-enum-varnames"));
    EXPECT_STREQ(given, names) << model;
    cJSON_free(given);
  }
}

}  // namespace
