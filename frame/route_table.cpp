#include "frame/route_table.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <strings.h>

#include "frame/log.h"
#include "frame/request_io.h"
#include "frame/session.h"

namespace {

constexpr size_t kPathBuf = 1024;

RouteNode *newNode(const char *segment, size_t length) {
  RouteNode *node = static_cast<RouteNode *>(calloc(1, sizeof(RouteNode)));
  if (node) node->segment = strndup(segment, length);
  return node;
}

bool segmentIs(const RouteNode *node, const char *segment, size_t length) {
  return strncmp(node->segment, segment, length) == 0 && node->segment[length] == '\0';
}

RouteNode *childFound(RouteNode *parent, const char *segment, size_t length) {
  for (RouteNode *c = parent->firstChild; c; c = c->nextSibling)
    if (segmentIs(c, segment, length)) return c;
  return nullptr;
}

RouteNode *childNamed(RouteNode *parent, const char *segment, size_t length) {
  if (RouteNode *c = childFound(parent, segment, length)) return c;
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

void printHeader(const char *text) { replyText(text); }

// The last non-empty run between "/"s in [from, end), copied into `last`.
void lastSegment(const char *from, const char *end, char *last) {
  while (end > from && end[-1] == '/') --end;
  const char *start = end;
  while (start > from && start[-1] != '/') --start;
  snprintf(last, kPathBuf, "%.*s", static_cast<int>(end - start), start);
}

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

namespace {

// Walks the path in place: segments are the runs between "/"s, empty ones
// vanish, and a path longer than the buffer the walk allows is cut. Without
// `create`, a segment with no node ends the walk with null, and `last`
// (kPathBuf bytes) gets the path's last segment, the name that node would
// have had.
RouteNode *walkPath(RouteTable *table, const char *path, bool create, char *last) {
  if (!table || !table->root || !path) return nullptr;
  const char *end = path + strnlen(path, kPathBuf - 1);
  RouteNode *node = table->root;
  for (const char *seg = path; node && seg < end;) {
    const char *stop = static_cast<const char *>(memchr(seg, '/', static_cast<size_t>(end - seg)));
    if (!stop) stop = end;
    size_t length = static_cast<size_t>(stop - seg);
    if (length > 0 && create) {
      node = childNamed(node, seg, length);
    } else if (length > 0) {
      node = childFound(node, seg, length);
      if (!node) return lastSegment(seg, end, last), nullptr;
    }
    seg = stop + 1;
  }
  return node;
}

}  // namespace

RouteNode *routeDirGet(RouteTable *table, const char *path) { return walkPath(table, path, true, nullptr); }

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
  // A folder holds up to a hundred routes: most are passed on their first letter.
  for (const Route *r = node->entries; r; r = r->next)
    if (r->name[0] == name[0] && strcmp(r->name, name) == 0 && strcasecmp(httpMethodName(r->method), method) == 0)
      return r;
  return nullptr;
}

void httpdProcessRequest(RouteTable *table) {
  const char *uri = getenv("REQUEST_URI");
  if (!uri) return;
  char path[kPathBuf];
  joinCut(path, sizeof path, uri, "");
  char *slash = strrchr(path, '/');
  if (!slash) {
    replyFormat("Invalid request path '%s'\n", path);
    return;
  }
  char name[kPathBuf];
  joinCut(name, sizeof name, slash + 1, "");
  if (char *query = strchr(name, '?')) *query = '\0';
  if (slash == path) slash[1] = '\0';
  else *slash = '\0';

  // Looking a request up adds no node to the table, so that a process
  // serving many requests keeps the table it registered; the log names a
  // missing node as adding it would have.
  char missing[kPathBuf];
  RouteNode *dir = walkPath(table, path, false, missing);
  const Route *route = routeFind(dir, name, getenv("REQUEST_METHOD"));
  if (!route) {
    LOG_AT(3, "httpdProcessRequest", 231, "method not found:%s\n%s\n%s\n", uri, dir ? dir->segment : missing, name);
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
