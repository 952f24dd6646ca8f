// The registration list. Order matters: a later registration of the same
// path, name and method shadows the earlier one, and some keys are
// registered twice on purpose so that a richer late handler takes over.
#include "api/routes.h"

#include "api/if/if_texts.h"

using namespace kit;

#define IF "/api/v2/interfaces/if"

const RouteRow kRoutes[] = {
    // Interface enumeration and identity.
    ROUTE(IF, METHOD_GET, "first", Read<"if", openapiIfFirstGet, lookup("ifType"), out("firstIfNum")>),
    ROUTE(IF, METHOD_GET, "next", Read<"if", openapiIfNextGet, lookup("ifType"), scan("ifNum"), out("nextIfNum")>),
    ROUTE(IF, METHOD_GET, "next-changed",
          Read<"if", openapiIfNextChangedGet, scan("ifNum"), out("nextIfNum"), out("delete_pending")>),
    ROUTE(IF, METHOD_GET, "name", Read<"if", openapiIfNameGet, lookup("intf"), outText("intfName", 256)>),
    ROUTE(IF, METHOD_GET, "type", Read<"if", openapiIfTypeGet, scan("ifNum"), out("ifType", kIfType)>),
    // Preset to "down": a call that succeeds without writing reads down.
    ROUTE(IF, METHOD_GET, "link-state",
          Read<"if", openapiIfLinkStateGet, scan("ifNum"), out("linkState", kIfLinkState, 1)>),
    ROUTE(IF, METHOD_GET, "opr-state", Read<"if", openapiIfOprStateGet, scan("ifNum"), out("val", kIfOprState)>),
    ROUTE(IF, METHOD_GET, "active-state",
          Read<"if", rpcclt_openapiIfActiveStateGet, lookup("interface"), out("intfActiveState")>),
    ROUTE(IF, METHOD_GET, "last-change", Read<"if", rpcclt_openapiIfLastChangeGet, lookup("interface"), out("value")>),
    ROUTE(IF, METHOD_GET, "usm-db-if-index",
          Read<"if", rpcclt_openapiusmDbIfIndexGet, scan("interface"), out("ifIndex")>),
    ROUTE(IF, METHOD_GET, "config-id-mask-offset",
          Read<"if", rpcclt_openapiConfigIdMaskOffsetGet, scan("interface"), out("maskOffset")>),
    ROUTE(IF, METHOD_GET, "mac-addr-size", Read<"if", rpcclt_openapiIfMacAddrSizeGet, scan("ifNum"), out("size")>),
    ROUTE(IF, METHOD_GET, "mac-addr", Read<"if", rpcclt_openapiIfMacAddrGet, scan("ifNum"), outText("mac_addr", 19)>),
    ROUTE(IF, METHOD_GET, "descr-size", Read<"if", rpcclt_openapiIfDescrSizeGet, scan("ifNum"), out("size")>),
    ROUTE(IF, METHOD_GET, "descr", Read<"if", rpcclt_openapiIfDescrGet, scan("ifNum"), outText("descrip", 256)>),
    ROUTE(IF, METHOD_GET, "status", Read<"if", rpcclt_openapiIfStatusGet, scan("ifNum"), out("ifStatus", kIfAttach)>),
    ROUTE(IF, METHOD_GET, "num", Read<"if", rpcclt_openapiIfNumGet, lookupText("intfName"), out("ifNum")>),
};
const size_t kRouteCount = sizeof kRoutes / sizeof kRoutes[0];

void registerRoutes(RouteTable *table) {
  for (const RouteRow &r : kRoutes) httpdAddCContent(table, r.path, r.name, r.method, 1, r.handler);
}
