// Every route of the program, in registration order.
#ifndef API_ROUTES_H
#define API_ROUTES_H

#include <stddef.h>

#include "api/route_kit.h"
#include "frame/route_table.h"

// What a table row's handler reads and answers, for route-dump.
struct RouteDoc {
  const char *group;  // reply group key; null when the reply has none
  const kit::Arg *args;
  size_t argCount;
};

template <class H>
constexpr RouteDoc describe() {
  if constexpr (requires { typename H::Gated; }) return describe<typename H::Gated>();
  else if constexpr (requires { H::args; }) return {H::group, H::args, std::size(H::args)};
  else return {H::group, nullptr, 0};
}
template <class H>
inline constexpr RouteDoc kDocOf = describe<H>();

// One registration: where, which method, which name, and what answers.
// A row marked shadowed is registered, but a later row of the same key
// serves every request for it.
struct RouteRow {
  const char *path;
  uint32_t method;
  const char *name;
  ApiHandler handler;
  const RouteDoc *doc;  // null for hand-written handlers
  bool shadowed;
};

#define ROUTE(path, method, name, ...) {path, method, name, &__VA_ARGS__::handle, &kDocOf<__VA_ARGS__>, false}
#define HANDLER(path, method, name, fn) {path, method, name, fn, nullptr, false}
#define SHADOWED_ROUTE(path, method, name, ...) \
  {path, method, name, &__VA_ARGS__::handle, &kDocOf<__VA_ARGS__>, true}

extern const RouteRow kRoutes[];
extern const size_t kRouteCount;

#endif
