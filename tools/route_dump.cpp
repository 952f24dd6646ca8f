// Prints the route table in registration order: ORDINAL METHOD PATH NAME.
// With --detail, each row's group, inputs and reply keys follow; with
// --openapi, the OpenAPI document of the routes that serve instead; with
// --check, what the description would lack or get wrong, one line per
// finding. Anything else is refused: a mistyped option must not pass for a
// listing.
#include <stdio.h>
#include <string.h>

#include "api/routes.h"
#include "frame/envelope.h"
#include "tools/openapi.h"
#include "tools/route_check.h"

namespace {

const char *kindName(kit::Kind k) {
  switch (k) {
    case kit::Kind::Scan: return "query";
    case kit::Kind::Lookup: return "query~";
    case kit::Kind::LookupText: return "query~text";
    case kit::Kind::Body: return "body";
    case kit::Kind::BodyWord: return "body-word";
    case kit::Kind::BodyMapped: return "body-text";
    case kit::Kind::BodyText: return "body-text";
    case kit::Kind::Out: return "reply";
    case kit::Kind::OutText: return "reply-text";
    case kit::Kind::BodyBuffer: return "body-buffer";
    case kit::Kind::QueryBuffer: return "query-buffer";
  }
  return "?";
}

void printDetail(const RouteDoc *doc) {
  if (!doc) {
    fputs("\thand-written", stdout);
    return;
  }
  printf("\tgroup=%s", doc->group ? doc->group : "-");
  for (size_t i = 0; i < doc->argCount; ++i) printf(" %s:%s", kindName(doc->args[i].kind), doc->args[i].field->name);
}

// cJSON indents with tabs, which YAML forbids, and many OpenAPI tools read
// JSON through a YAML parser. Outside strings (where cJSON escapes them) a
// tab is layout only: two spaces where it indents, one after a colon.
void putSpaced(const char *text) {
  bool lineStart = true;
  for (const char *c = text; *c; ++c) {
    if (*c == '\t') {
      fputs(lineStart ? "  " : " ", stdout);
      continue;
    }
    lineStart = *c == '\n';
    fputc(*c, stdout);
  }
  fputc('\n', stdout);
}

int printOpenApi() {
  JsonPtr document(openApiDocument(IF_VERSION));
  char *text = document ? cJSON_Print(document.get()) : nullptr;
  if (!text) return 1;
  putSpaced(text);
  cJSON_free(text);
  return 0;
}

const char kUsage[] =
    "usage: route-dump [--detail | --openapi | --check | --help]\n"
    "  (none)     the routes in registration order: ordinal, method, path, name\n"
    "  --detail   each route also with its group, inputs and reply keys\n"
    "  --openapi  the OpenAPI document of the routes that serve, as JSON\n"
    "  --check    each field without a text, number without a unit, summary missing or shared, range the\n"
    "             switch does not hold;\n"
    "             exits 1 when there is any\n";

void printRoutes(bool detail) {
  for (size_t i = 0; i < kRouteCount; ++i) {
    const RouteRow &r = kRoutes[i];
    printf("%zu %s %s %s", i + 1, httpMethodName(r.method), r.path, r.name);
    if (detail) printDetail(r.doc);
    fputc('\n', stdout);
  }
}

}  // namespace

int main(int argc, char **argv) {
  const char *option = argc > 1 ? argv[1] : "";
  bool known = !*option || !strcmp(option, "--detail") || !strcmp(option, "--openapi") || !strcmp(option, "--check") ||
               !strcmp(option, "--help");
  if (argc > 2 || !known) {
    fprintf(stderr, "route-dump: unknown option %s\n%s", argc > 2 ? argv[2] : option, kUsage);
    return 2;
  }
  if (strcmp(option, "--help") == 0) {
    fputs(kUsage, stdout);
    return 0;
  }
  if (strcmp(option, "--openapi") == 0) return printOpenApi();
  if (strcmp(option, "--check") == 0) return checkRoutes({kRoutes, kRouteCount}, stdout) ? 1 : 0;
  printRoutes(strcmp(option, "--detail") == 0);
  return 0;
}
