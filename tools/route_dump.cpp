// Prints the route table in registration order: ORDINAL METHOD PATH NAME.
// With --detail, each row's group, inputs and reply keys follow; with
// --openapi, the OpenAPI document of the routes that serve instead.
#include <stdio.h>
#include <string.h>

#include "api/routes.h"
#include "frame/envelope.h"
#include "tools/openapi.h"

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
  for (size_t i = 0; i < doc->argCount; ++i) printf(" %s:%s", kindName(doc->args[i].kind), doc->args[i].name.s);
}

int printOpenApi() {
  JsonPtr document(openApiDocument(IF_VERSION));
  char *text = document ? cJSON_Print(document.get()) : nullptr;
  if (!text) return 1;
  puts(text);
  cJSON_free(text);
  return 0;
}

}  // namespace

int main(int argc, char **argv) {
  if (argc > 1 && strcmp(argv[1], "--openapi") == 0) return printOpenApi();
  bool detail = argc > 1 && strcmp(argv[1], "--detail") == 0;
  for (size_t i = 0; i < kRouteCount; ++i) {
    const RouteRow &r = kRoutes[i];
    printf("%zu %s %s %s", i + 1, httpMethodName(r.method), r.path, r.name);
    if (detail) printDetail(r.doc);
    fputc('\n', stdout);
  }
  return 0;
}
