// The route table: a tree of path segments whose nodes hold the routes
// registered under them, newest first, so the later of two registrations
// of one key serves.
#ifndef FRAME_ROUTE_TABLE_H
#define FRAME_ROUTE_TABLE_H

#include <stdint.h>

enum : uint32_t { METHOD_GET = 0, METHOD_POST = 1, METHOD_DELETE = 2, METHOD_PUT = 3 };

// 0: no session check; 2: administrator only; other: read-only users may GET.
typedef uint32_t RouteAccess;
typedef uint32_t (*ApiHandler)(void);

struct Route {
  char *name;
  uint32_t method;
  RouteAccess access;
  ApiHandler handler;
  Route *next;
};

struct RouteNode {
  char *segment;
  RouteNode *firstChild;
  RouteNode *nextSibling;
  Route *entries;
};

struct RouteTable {
  RouteNode *root;
};

const char *httpMethodName(uint32_t method);
RouteTable *routeTableCreate(void);
void routeTableFree(RouteTable *table);
RouteNode *routeDirGet(RouteTable *table, const char *path);
int httpdAddCContent(RouteTable *table, const char *path, const char *name, uint32_t method, RouteAccess access,
                     ApiHandler handler);
// The matching route of a node, newest first; null when none.
const Route *routeFind(const RouteNode *node, const char *name, const char *method);
void httpdProcessRequest(RouteTable *table);

#endif
