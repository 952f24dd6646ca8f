// What route-dump --check holds the registration list to, each finding
// named by its row and field: a row is marked shadowed exactly when a
// later row of its key serves instead, every field says what it means,
// every route that serves has a summary of its own, and every range is one
// the switch holds.
#ifndef TOOLS_ROUTE_CHECK_H
#define TOOLS_ROUTE_CHECK_H

#include <stddef.h>
#include <stdio.h>

#include <span>

#include "api/routes.h"

// Writes one line per finding to `out`; returns how many there were.
size_t checkRoutes(std::span<const RouteRow> rows, FILE *out);

#endif
