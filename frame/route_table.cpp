#include "frame/route_table.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <strings.h>

#include "frame/log.h"
#include "frame/session.h"

namespace {

constexpr size_t kPathBuf = 1024;

void copyCut(char *dst, const char *src, size_t size) { snprintf(dst, size, "%s", src); }

RouteNode *newNode(const char *segment, size_t length) {
  RouteNode *node = static_cast<RouteNode *>(calloc(1, sizeof(RouteNode)));
  if (node) node->segment = strndup(segment, length);
  return node;
}

bool segmentIs(const RouteNode *node, const char *segment, size_t length) {
  return strncmp(node->segment, segment, length) == 0 && node->segment[length] == '\0';
}

RouteNode *childNamed(RouteNode *parent, const char *segment, size_t length) {
  for (RouteNode *c = parent->firstChild; c; c = c->nextSibling)
    if (segmentIs(c, segment, length)) return c;
  RouteNode *c = newNode(segment, length);
  if (!c) return nullptr;
  c->nextSibling = parent->firstChild;
  parent->firstChild = c;
  return c;
}

void freeNode(RouteNode *node) {
  while (node) {
    freeNode(node->firstChild);
    for (Route *r = node->entries; r;) {
      Route *next = r->next;
      free(r);  // the name shares the route's allocation
      r = next;
    }
    RouteNode *sibling = node->nextSibling;
    free(node->segment);
    free(node);
    node = sibling;
  }
}

void printHeader(const char *text) { fputs(text, stdout); }

}  // namespace

const char *httpMethodName(uint32_t method) {
  switch (method) {
    case METHOD_GET: return "GET";
    case METHOD_POST: return "POST";
    case METHOD_DELETE: return "DELETE";
    case METHOD_PUT: return "PUT";
    default: {
      static char invalid[255];
      snprintf(invalid, sizeof invalid, "Invalid method '%d'", static_cast<int>(method));
      return invalid;
    }
  }
}

RouteTable *routeTableCreate(void) {
  RouteTable *table = static_cast<RouteTable *>(calloc(1, sizeof(RouteTable)));
  if (table) table->root = newNode("", 0);
  return table;
}

void routeTableFree(RouteTable *table) {
  if (!table) return;
  freeNode(table->root);
  free(table);
}

// Walks the path in place: segments are the runs between "/"s, empty ones
// vanish, and a path longer than the buffer the walk allows is cut.
RouteNode *routeDirGet(RouteTable *table, const char *path) {
  if (!table || !table->root || !path) return nullptr;
  const char *end = path + strnlen(path, kPathBuf - 1);
  RouteNode *node = table->root;
  for (const char *seg = path; node && seg < end;) {
    const char *stop = static_cast<const char *>(memchr(seg, '/', static_cast<size_t>(end - seg)));
    if (!stop) stop = end;
    if (stop > seg) node = childNamed(node, seg, static_cast<size_t>(stop - seg));
    seg = stop + 1;
  }
  return node;
}

int httpdAddCContent(RouteTable *table, const char *path, const char *name, uint32_t method, RouteAccess access,
                     ApiHandler handler) {
  RouteNode *dir = routeDirGet(table, path);
  if (!dir) {
    LOG_AT(3, "httpdAddCContent", 180, "httpdAddCContent, dirPtr == NULL\n");
    return -1;
  }
  // The route and the copy of its name share one allocation.
  size_t nameSize = strlen(name) + 1;
  Route *entry = static_cast<Route *>(calloc(1, sizeof(Route) + nameSize));
  if (!entry) {
    LOG_AT(3, "httpdAddCContent", 185, "httpdAddCContent, newEntry == NULL\n");
    return -1;
  }
  entry->name = reinterpret_cast<char *>(entry + 1);
  memcpy(entry->name, name, nameSize);
  entry->method = method;
  entry->access = access;
  entry->handler = handler;
  entry->next = dir->entries;
  dir->entries = entry;
  return 0;
}

const Route *routeFind(const RouteNode *node, const char *name, const char *method) {
  if (!node || !method) return nullptr;
  for (const Route *r = node->entries; r; r = r->next)
    if (strcasecmp(httpMethodName(r->method), method) == 0 && strcmp(r->name, name) == 0) return r;
  return nullptr;
}

void httpdProcessRequest(RouteTable *table) {
  const char *uri = getenv("REQUEST_URI");
  if (!uri) return;
  char path[kPathBuf];
  copyCut(path, uri, sizeof path);
  char *slash = strrchr(path, '/');
  if (!slash) {
    printf("Invalid request path '%s'\n", path);
    return;
  }
  char name[kPathBuf];
  copyCut(name, slash + 1, sizeof name);
  if (char *query = strchr(name, '?')) *query = '\0';
  if (slash == path) slash[1] = '\0';
  else *slash = '\0';

  RouteNode *dir = routeDirGet(table, path);
  const Route *route = routeFind(dir, name, getenv("REQUEST_METHOD"));
  if (!route) {
    LOG_AT(3, "httpdProcessRequest", 231, "method not found:%s\n%s\n%s\n", uri, dir ? dir->segment : "", name);
    return;
  }
  if (route->access != 0 && checkSessionX(getenv("HTTP_SESSION"), getenv("HTTP_REFRESH"), route) == -1) {
    LOG_AT(3, "httpdProcessRequest", 236, "403 Forbidden\n");
    printHeader("Status:403\r\n\r\n");
    return;
  }
  if (strncmp(uri, "/api/v2/", 8) == 0) printHeader("Content-Type: application/json\r\n\r\n");
  route->handler();
}
