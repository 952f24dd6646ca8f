// The OpenAPI 3.1 description of every route that serves requests, built
// from the registration list itself so that it cannot drift from it.
#ifndef TOOLS_OPENAPI_H
#define TOOLS_OPENAPI_H

#include <cjson/cJSON.h>

#include <span>

#include "api/routes.h"

// A new document owned by the caller: of the registration list, or of `rows`.
cJSON *openApiDocument(const char *version);
cJSON *openApiDocument(const char *version, std::span<const RouteRow> rows);

#endif
