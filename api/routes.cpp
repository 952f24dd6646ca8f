// The registration list. Order matters: a later registration of the same
// path, name and method shadows the earlier one, and some keys are
// registered twice on purpose so that a richer late handler takes over.
#include "api/routes.h"

#include "api/if/counter_routes.h"
#include "api/if/ddisable_routes.h"
#include "api/if/if_texts.h"
#include "api/if/name_lookup.h"
#include "api/if/summary_texts.h"

using namespace kit;

#define IF "/api/v2/interfaces/if"
#define IF_ROOT "/api/v2/interfaces"
#define GREEN "/api/v2/interfaces/green-ethernet"
#define EEE "/api/v2/interfaces/green-ethernet-eee-api"
#define PWR_EST "/api/v2/interfaces/green-pwr-estimates"
#define PWR_HIST "/api/v2/interfaces/green-pwr-sav-history"
#define PML "/api/v2/interfaces/pml"
#define APP "/api/v2/interfaces/interface-app"

const RouteRow kRoutes[] = {
    // 1-5: green Ethernet, first block.

    // 6-9: energy-efficient Ethernet, first block.

    // 10-12: power estimates, first block.

    // 13-17: power-saving history, first block.

    // 18-34: interface enumeration and identity.
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

    // 35-38: the first single counters.
    ROUTE(IF, METHOD_GET, "in-octets", CounterRead<rpcclt_openapiIfInOctetsGet>),
    ROUTE(IF, METHOD_GET, "in-ucast-pkts", CounterRead<rpcclt_openapiIfInUcastPktsGet>),
    ROUTE(IF, METHOD_GET, "in-discards", CounterRead<rpcclt_openapiIfInDiscardsGet>),
    ROUTE(IF, METHOD_GET, "in-errors", CounterRead<rpcclt_openapiIfInErrorsGet>),

    // 39-43: MAC locking, global switches.

    // 44: cable diagnostics.
    ROUTE(IF_ROOT, METHOD_GET, "cable-status",
          Read<"cableStatus", rpcclt_openapiCableStatusGet, scan("ifNum"), out("cableStatus", kCableStatus),
               out("lengthKnown"), out("shortestLength"), out("longestLength"), out("cableFailureLength")>),

    // 45-49: the remaining single counters.
    ROUTE(IF, METHOD_GET, "in-unknown-protos", CounterRead<rpcclt_openapiIfInUnknownProtosGet>),
    ROUTE(IF, METHOD_GET, "out-octets", CounterRead<rpcclt_openapiIfOutOctetsGet>),
    ROUTE(IF, METHOD_GET, "out-ucast-pkts", CounterRead<rpcclt_openapiIfOutUcastPktsGet>),
    ROUTE(IF, METHOD_GET, "out-discards", CounterRead<rpcclt_openapiIfOutDiscardsGet>),
    ROUTE(IF, METHOD_GET, "out-errors", CounterRead<rpcclt_openapiIfOutErrorsGet>),

    // 50-78: port attributes, reads then sets.

    // 79-86: port expansion and FEC.

    // 87-92: D-Disable recovery, first part.
    HANDLER(IF, METHOD_PUT, "ddisable-auto-recovery-interval", recoveryIntervalSetHandler),
    HANDLER(IF, METHOD_GET, "ddisable-auto-recovery-interval", recoveryIntervalGetHandler),
    HANDLER(IF, METHOD_GET, "ddisable-auto-recovery-cause", recoveryCauseGetHandler),
    HANDLER(IF, METHOD_PUT, "ddisable-auto-recovery-cause", recoveryCauseSetHandler),
    HANDLER(IF, METHOD_GET, "ddisable-autorecovery-table-intf-next", nextPhysicalIfHandler),
    HANDLER(IF, METHOD_GET, "ddisable-reason-intf-next", nextPhysicalIfHandler),

    // 93-101: interface application settings.

    // 102-114: green Ethernet, second block.

    // 115-146: energy-efficient Ethernet, second block.

    // 147-149: power estimates, second block.

    // 150-152: power-saving history, second block.

    // 153-201: MAC locking, per interface and VLAN, address entries.

    // 202-204: D-Disable recovery (second part).
    HANDLER(IF, METHOD_GET, "ddisable-autorecovery-table-feature-list", recoveryFeatureListHandler),
    HANDLER(IF, METHOD_GET, "ddisable-auto-recovery-time-left", recoveryTimeLeftHandler),
    ROUTE(IF, METHOD_GET, "ddisable-reason", Fixed<"if", CODE_UNSUPPORTED>),

    // 205-223: the late interface block. 205-208: summaries, name lookup
    // and the all-counters reset.
    HANDLER(IF, METHOD_GET, "status", statusSummaryHandler),
    HANDLER(IF, METHOD_GET, "counters", counterSummaryHandler),
    HANDLER(IF, METHOD_GET, "num", nameLookupHandler),
    HANDLER(IF "/all-counters", METHOD_POST, "reset", allCountersResetHandler),

    // 209-222: composite routes that take over earlier keys.

    // 223: the single-interface counter reset, last of all.
    HANDLER(IF "/counters", METHOD_POST, "reset", counterResetHandler),
};
const size_t kRouteCount = sizeof kRoutes / sizeof kRoutes[0];

void registerRoutes(RouteTable *table) {
  for (const RouteRow &r : kRoutes) httpdAddCContent(table, r.path, r.name, r.method, 1, r.handler);
}
