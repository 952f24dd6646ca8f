// Every route of the program, in registration order.
#ifndef API_ROUTES_H
#define API_ROUTES_H

#include <stddef.h>

#include "frame/route_kit.h"

extern const RouteRow kRoutes[];
extern const size_t kRouteCount;

// Registers every row with a required session, in order.
void registerRoutes(RouteTable *table);

#endif
