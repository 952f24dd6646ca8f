// The parts the API document is built from, each built whole by one pass
// and never edited by another: names (openapi_names.cpp) give operations,
// models and enumeration values their names from the route and the field;
// schemas (openapi_schemas.cpp) give each value its schema with its text,
// unit and range, and each reply its models; openapi.cpp puts operations
// and components together.
#ifndef TOOLS_OPENAPI_PARTS_H
#define TOOLS_OPENAPI_PARTS_H

#include <cjson/cJSON.h>

#include <initializer_list>
#include <set>
#include <span>
#include <string>
#include <vector>

#include "api/routes.h"

namespace openapi {

cJSON *object();
cJSON *add(cJSON *to, const char *key, cJSON *item);
cJSON *addObject(cJSON *to, const char *key);
void addText(cJSON *to, const char *key, const char *text);
cJSON *textList(std::initializer_list<const char *> texts);
bool isType(const cJSON *schema, const char *type);
// Adds to the description, which a note may already have begun.
void describe(cJSON *schema, const std::string &text);

// Names.
std::string pascal(const char *key);
std::string upperWords(const char *text);
std::string operationId(const RouteRow &r);
// The reads whose short model name ("IfLinkState") another read of the
// same path would take too: those are named with their method instead.
std::set<std::string> sharedStems(std::span<const RouteRow> rows);
// The stem of an operation's model names.
std::string modelStem(const RouteRow &r, const std::set<std::string> &shared);
// The names of an enumeration's values, for generated clients.
cJSON *valueNames(const cJSON *values, const std::string &field);

// Schemas.
constexpr char kSchemas[] = "#/components/schemas/";
cJSON *modelRef(const std::string &name);
cJSON *textSchema(bool mac);
cJSON *objectOf(cJSON *properties, cJSON *required);
void addProperty(cJSON *properties, cJSON *required, const char *name, cJSON *schema);

// One input of an operation: its schema, and what a client reads of it.
struct Input {
  const char *name;
  cJSON *schema;
  std::string text;
  bool inBody;
  bool required;
};
std::vector<Input> inputsOf(const RouteRow &r);

// Puts the values a read answers among the components as the model `stem`,
// with a model of its own for each object inside, and answers a reference.
cJSON *valuesModel(cJSON *schemas, const RouteRow &r, const std::string &stem);

}  // namespace openapi

#endif
