// Every route of the program, in registration order.
#ifndef API_ROUTES_H
#define API_ROUTES_H

#include <stddef.h>

#include "api/route_kit.h"
#include "frame/route_table.h"

// The directories the routes sit in.
inline constexpr char kRoot[] = "/api/v2/interfaces";
inline constexpr char kIf[] = "/api/v2/interfaces/if";
inline constexpr char kIfCounters[] = "/api/v2/interfaces/if/counters";
inline constexpr char kIfAllCounters[] = "/api/v2/interfaces/if/all-counters";
inline constexpr char kGreen[] = "/api/v2/interfaces/green-ethernet";
inline constexpr char kEee[] = "/api/v2/interfaces/green-ethernet-eee-api";
inline constexpr char kPowerEstimates[] = "/api/v2/interfaces/green-pwr-estimates";
inline constexpr char kPowerHistory[] = "/api/v2/interfaces/green-pwr-sav-history";
inline constexpr char kPml[] = "/api/v2/interfaces/pml";
inline constexpr char kApp[] = "/api/v2/interfaces/interface-app";

// What a table row's handler reads and answers, for route-dump.
struct RouteDoc {
  doc::Shape shape;
  const char *group;  // reply group key; null when the reply has none
  const kit::Arg *args;
  size_t argCount;
  uint32_t code;  // Shape::Fixed: the one code it answers
  bool gated;     // asks first whether the port has a colour LED (17002 when not)
  bool gatedOnFirst = false;  // asks it of interface 1, whatever the request names
};

template <class H>
constexpr RouteDoc describe() {
  if constexpr (requires { typename H::Gated; }) {
    RouteDoc d = describe<typename H::Gated>();
    d.gated = true;
    d.gatedOnFirst = H::kAsksFirstPort;
    return d;
  } else if constexpr (requires { H::args; }) {
    return {H::Reply::shape, H::group, H::args, std::size(H::args), 0, false};
  } else {
    return {H::shape, H::group, nullptr, 0, H::code, false};
  }
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
  const RouteDoc *doc;        // null for hand-written handlers
  const doc::HandDoc *hand;   // a hand-written handler's own description
  bool shadowed;
  const char *summary;        // a table row's summary; a HandDoc carries its own
  const char *note;           // what more a caller needs to know than the summary says, or null
};

// A table row names what it does in the switch's terms, as the API
// document's summary of the operation: a row cannot come without it.
#define ROUTE(path, method, name, summary, ...) \
  {path, method, name, &__VA_ARGS__::handle, &kDocOf<__VA_ARGS__>, nullptr, false, summary "", nullptr}
#define NOTED_ROUTE(path, method, name, summary, note, ...) \
  {path, method, name, &__VA_ARGS__::handle, &kDocOf<__VA_ARGS__>, nullptr, false, summary "", note}
#define HANDLER(path, method, name, fn, hand) {path, method, name, fn, nullptr, &hand, false, nullptr, nullptr}
#define SHADOWED_ROUTE(path, method, name, summary, ...) \
  {path, method, name, &__VA_ARGS__::handle, &kDocOf<__VA_ARGS__>, nullptr, true, summary "", nullptr}

extern const RouteRow kRoutes[];
extern const size_t kRouteCount;
// Every route asks for a session; which sessions may call it is the
// session check's rule (sessionPrivilege).
inline constexpr RouteAccess kRouteAccess = 1;

#endif
