// The registration list. Order matters: a later registration of the same
// path, name and method shadows the earlier one, and some keys are
// registered twice on purpose so that a richer late handler takes over.
#include "api/routes.h"

#include "api/if/attribute_texts.h"
#include "api/if/composite_routes.h"
#include "api/if/expansion_routes.h"
#include "api/if/if_texts.h"

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

    // 39-43: MAC locking, global switches.

    // 44: cable diagnostics.

    // 45-49: the remaining single counters.

    // 50-78: port attributes, reads then sets.
    ROUTE(IF, METHOD_GET, "speed-mode",
          Read<"if", rpcclt_openapiIfSpeedModeGet, scan("ifNum"), out("speed", kIfSpeedName, kIfSpeedUnknown)>),
    ROUTE(IF, METHOD_GET, "duplex-mode",
          Read<"if", rpcclt_openapiIfDuplexModeGet, scan("ifNum"), out("duplex_mode", kIfDuplex)>),
    ROUTE(IF, METHOD_GET, "duplex", Read<"if", openapiIfDuplexGet, scan("ifNum"), out("duplex_mode", kIfDuplex)>),
    ROUTE(IF, METHOD_GET, "auto-neg", Read<"if", openapiIfAutoNegGet, scan("ifNum"), out("autoneg", kIfAutoNeg)>),
    ROUTE(IF, METHOD_GET, "ethernet-header-size",
          Read<"if", rpcclt_openapiIfEthernetHeaderSizeGet, scan("ifNum"), out("headerSize")>),
    ROUTE(IF, METHOD_GET, "max-frame-size",
          Read<"if", openapiIfMaxFrameSizeGet, scan("ifNum"), out("maxFrameSize")>),
    ROUTE(IF, METHOD_GET, "soft-shutdown-state",
          Read<"if", rpcclt_openapiIfSoftShutdownStateGet, scan("ifNum"), out("soft_shut", kIfEnable)>),
    ROUTE(IF, METHOD_GET, "admin-state",
          Read<"if", openapiIfAdminStateGet, scan("ifNum"), out("adminState", kIfEnable)>),
    ROUTE(IF, METHOD_GET, "link-trap",
          Read<"if", rpcclt_openapiIfLinkTrapGet, scan("ifNum"), out("link-trap", kIfEnable)>),
    ROUTE(IF, METHOD_GET, "capabilities",
          Read<"if", rpcclt_openapiIfCapabilitiesGet, scan("ifNum"), out("portCapability")>),
    ROUTE(IF, METHOD_GET, "disable-reason",
          Read<"if", rpcclt_openapiIfDisableReasonGet, scan("ifNum"), out("reason", kIfDisableReason)>),
    ROUTE(IF, METHOD_GET, "active-media-type",
          Read<"if", rpcclt_openapiIfActiveMediaTypeGet, scan("ifNum"), out("mediaType", kIfMediaType)>),
    ROUTE(IF, METHOD_GET, "pause-status",
          Read<"if", rpcclt_openapiIfPauseStatusGet, scan("ifNum"), out("rxPauseAllowed", kIfTrue),
               out("txPauseAllowed", kIfTrue)>),
    ROUTE(IF, METHOD_GET, "special-port-type",
          Read<"if", rpcclt_openapiIfSpecialPortTypeGet, scan("ifNum"), out("specialType", kIfSpecialPortType)>),
    ROUTE(IF, METHOD_GET, "exp-port-root-port",
          Read<"if", rpcclt_openapiIfExpPortRootPortGet, scan("ifNum"), out("rootSlot"), out("rootPort")>),
    ROUTE(IF, METHOD_GET, "exp-port-oper-mode-lane-count",
          Read<"if", rpcclt_openapiIfExpPortOperModeLaneCountGet, scan("ifNum"), out("laneCount")>),
    ROUTE(IF, METHOD_GET, "exp-port-first-peer",
          Read<"if", rpcclt_openapiIfExpPortFirstPeerGet, scan("ifNum"), out("peerIfNum")>),
    ROUTE(IF, METHOD_GET, "port-speed-lane-count",
          Read<"if", rpcclt_openapiIfPortSpeedLaneCountGet, scan("ifNum"), out("laneCount")>),
    ROUTE(IF, METHOD_GET, "speed", Fixed<"if", CODE_UNSUPPORTED>),
    ROUTE(IF, METHOD_GET, "mtu-size", Fixed<"if", CODE_UNSUPPORTED>),
    ROUTE(IF, METHOD_PUT, "speed",
          Set<rpcclt_openapiIfSpeedSet, scan("ifNum"), bodyMapped("speed", kIfSpeedNameValue)>),
    ROUTE(IF, METHOD_PUT, "auto-neg", Set<rpcclt_openapiIfAutoNegSet, scan("ifNum"), body("autoneg")>),
    ROUTE(IF, METHOD_PUT, "mtu-size", Set<rpcclt_openapiIfMtuSizeSet, scan("ifNum"), body("mtu_size")>),
    ROUTE(IF, METHOD_PUT, "mtu-size-set-v2", Set<rpcclt_openapiIfMtuSizeSetV2, scan("ifNum"), body("mtu_size")>),
    ROUTE(IF, METHOD_PUT, "max-frame-size",
          Set<rpcclt_openapiIfMaxFrameSizeSet, scan("ifNum"), body("maxFrameSize")>),
    ROUTE(IF, METHOD_PUT, "soft-shutdown-state",
          Set<rpcclt_openapiIfSoftShutdownStateSet, scan("ifNum"), bodyIs("soft_shut", "enable")>),
    ROUTE(IF, METHOD_PUT, "admin-state",
          Set<rpcclt_openapiIfAdminStateSet, scan("ifNum"), bodyIs("adminState", "enable")>),
    // Older pages send the mode as "mode".
    ROUTE(IF, METHOD_PUT, "link-trap",
          Set<rpcclt_openapiIfLinkTrapSet, scan("ifNum"), bodyIs("link-trap", "enable", "mode")>),
    ROUTE(IF, METHOD_PUT, "descr", Set<rpcclt_openapiIfDescrSet, scan("ifNum"), bodyText("descrip", 255)>),

    // 79-86: port expansion and FEC.
    ROUTE(IF, METHOD_GET, "intf-expandable-port-next",
          Read<"if", rpcclt_openapiIntfExpandablePortNextGet, scan("prevIfNum"), out("nextIfNum")>),
    HANDLER(IF, METHOD_GET, "intf-expandable-port-mode-supported", ifExpandPortModeSupportedGet),
    ROUTE(IF, METHOD_PUT, "intf-expandable-port-mode",
          Set<rpcclt_openapiIntfExpandablePortModeSet, scan("ifNum"),
              bodyMapped("expandPortMode", kIfExpandModeValue)>),
    ROUTE(IF, METHOD_GET, "intf-expandable-port-config-mode",
          Read<"if", rpcclt_openapiIntfExpandablePortConfigModeGet, scan("ifNum"),
               out("expandPortMode", kIfExpandMode)>),
    ROUTE(IF, METHOD_GET, "intf-expandable-port-oper-mode",
          Read<"if", rpcclt_openapiIntfExpandablePortOperModeGet, scan("ifNum"),
               out("expandPortMode", kIfExpandMode)>),
    ROUTE(IF, METHOD_GET, "intf-expandable-mode-peers-get-by-mode",
          Read<"if", rpcclt_openapiIntfExpandableModePeersGetByModeGet, scan("ifNum"),
               out("expandPortMode", kIfExpandMode), outText("peerIntfs", 256), out("peerCount")>),
    ROUTE(IF, METHOD_PUT, "intf-fec-mode",
          Set<rpcclt_openapiIntfFECModeSet, scan("ifNum"), bodyMapped("fecMode", kIfFecModeValue)>),
    ROUTE(IF, METHOD_GET, "intf-fec-mode",
          Read<"if", rpcclt_openapiIntfFECModeGet, scan("ifNum"), out("fecConfigMode", kIfFecMode),
               out("fecOperMode", kIfFecMode)>),

    // 87-92: D-Disable recovery, first part.

    // 93-101: interface application settings.

    // 102-114: green Ethernet, second block.

    // 115-146: energy-efficient Ethernet, second block.

    // 147-149: power estimates, second block.

    // 150-152: power-saving history, second block.

    // 153-201: MAC locking, per interface and VLAN, address entries.

    // 202-204: D-Disable recovery (second part).

    // 205-223: the late interface block. 205-208: summaries, name lookup
    // and the all-counters reset.

    // 209-222: composite routes that take over earlier keys.
    HANDLER(IF, METHOD_GET, "admin-state", ifCompositeAdminStateGet),
    HANDLER(IF, METHOD_GET, "auto-neg", ifCompositeAutoNegGet),
    HANDLER(IF, METHOD_GET, "speed", ifCompositeSpeedGet),
    HANDLER(IF, METHOD_GET, "mtu-size", ifCompositeMtuSizeGet),
    HANDLER(IF, METHOD_GET, "descr", ifCompositeDescrGet),
    HANDLER(IF, METHOD_GET, "soft-shutdown-state", ifCompositeSoftShutdownGet),
    HANDLER(IF, METHOD_GET, "intf-fec-mode", ifCompositeFecModeGet),
    HANDLER(IF, METHOD_GET, "link-trap", ifCompositeLinkTrapGet),
    ROUTE(IF, METHOD_GET, "encapsulation", Fixed<"if", CODE_UNSUPPORTED>),
    ROUTE(IF, METHOD_PUT, "encapsulation", Fixed<"", CODE_UNSUPPORTED, LineEnd::Newline>),
    ROUTE(IF, METHOD_GET, "phy-properties", Fixed<"if", CODE_UNSUPPORTED>),
    ROUTE(IF, METHOD_PUT, "phy-properties", Fixed<"", CODE_UNSUPPORTED, LineEnd::Newline>),
    HANDLER(IF, METHOD_GET, "expandable-mode", ifCompositeExpandableModeGet),
    HANDLER(IF, METHOD_PUT, "expandable-mode", ifCompositeExpandableModeSet),

    // 223: the single-interface counter reset, last of all.
};
const size_t kRouteCount = sizeof kRoutes / sizeof kRoutes[0];

void registerRoutes(RouteTable *table) {
  for (const RouteRow &r : kRoutes) httpdAddCContent(table, r.path, r.name, r.method, 1, r.handler);
}
