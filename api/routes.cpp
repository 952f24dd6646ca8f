// The registration list. Order matters: a later registration of the same
// path, name and method shadows the earlier one, and some keys are
// registered twice on purpose so that a richer late handler takes over.
// Every shadowed row says so (SHADOWED_ROUTE); the check below the list
// holds the marks and the order to each other.
#include "api/routes.h"

#include "api/program.h"

#include <iterator>

#include "api/green/green_history.h"
#include "api/green/green_texts.h"
#include "api/if/attribute_texts.h"
#include "api/if/composite_routes.h"
#include "api/if/counter_routes.h"
#include "api/if/ddisable_routes.h"
#include "api/if/expansion_routes.h"
#include "api/if/if_texts.h"
#include "api/if/name_lookup.h"
#include "api/interface_app/interface_app.h"
#include "api/interface_app/led_gate.h"
#include "api/pml/pml_args.h"

using namespace kit;

#define IF "/api/v2/interfaces/if"
#define IF_ROOT "/api/v2/interfaces"
#define GREEN "/api/v2/interfaces/green-ethernet"
#define EEE "/api/v2/interfaces/green-ethernet-eee-api"
#define PWR_EST "/api/v2/interfaces/green-pwr-estimates"
#define PWR_HIST "/api/v2/interfaces/green-pwr-sav-history"
#define PML "/api/v2/interfaces/pml"
#define APP "/api/v2/interfaces/interface-app"

constexpr RouteRow kRoutes[] = {
    // Green Ethernet, first block.
    ROUTE(GREEN, METHOD_GET, "valid-intf-first",
          Read<"greenEthernet", rpcclt_openapiGreenEthrValidIntfFirstGet, out("intIfNum")>),
    ROUTE(GREEN, METHOD_GET, "valid-intf-next",
          Read<"greenEthernet", rpcclt_openapiGreenEthrValidIntfNextGet, scan("prevIfNum"), out("intIfNum")>),
    ROUTE(GREEN, METHOD_POST, "is-valid-intf-type",
          Check<"greenEthernet", rpcclt_openapiGreenEthrIsValidIntfType, scan("intIfNum"), out("valid", kTrue)>),
    ROUTE(GREEN, METHOD_POST, "is-intf-eee-capable",
          Check<"greenEthernet", rpcclt_openapiGreenEthrIsIntfEEECapable, scan("intIfNum"), out("valid", kTrue)>),
    ROUTE(GREEN, METHOD_PUT, "energy-detect-mode",
          Set<rpcclt_openapiGreenEthrEnergyDetectModeSet, scan("intIfNum"), bodyIs("mode", "enable")>),

    // Energy-efficient Ethernet, first block.
    ROUTE(EEE, METHOD_POST, "is-valid-intf",
          Check<"greenEthernetEeeApi", rpcclt_openapiGreenEthrEeeIsValidIntf, scan("intIfNum"), out("valid", kTrue)>),
    ROUTE(EEE, METHOD_GET, "valid-intf-first",
          Read<"greenEthernetEeeApi", rpcclt_openapiGreenEthrEeeValidIntfFirstGet, out("intIfNum")>),
    ROUTE(EEE, METHOD_GET, "valid-intf-next",
          Read<"greenEthernetEeeApi", rpcclt_openapiGreenEthrEeeValidIntfNextGet, scan("prevIfNum"), out("intIfNum")>),
    ROUTE(EEE, METHOD_GET, "admin-mode",
          Read<"greenEthernetEeeApi", rpcclt_openapiGreenEthrEeeAdminModeGet, scan("intIfNum"),
               out("adminMode", kEnable)>),

    // Power estimates, first block.
    ROUTE(PWR_EST, METHOD_GET, "intf-cur-pwr",
          Read<"greenPwrEstimates", rpcclt_openapiGreenPwrEstIntfCurPwrGet, scan("intIfNum"), out("pwrConsumption")>),
    ROUTE(PWR_EST, METHOD_GET, "global-cur-pwr",
          Read<"greenPwrEstimates", rpcclt_openapiGreenPwrEstGlobalCurPwrGet, out("pwrConsumption")>),
    ROUTE(PWR_EST, METHOD_GET, "intf-cum-saving",
          Read<"greenPwrEstimates", rpcclt_openapiGreenPwrEstIntfCumSavingGet, scan("intIfNum"), out("pwrSaving")>),

    // Power-saving history, first block.
    // Switch-wide values despite "intf" in their names.
    ROUTE(PWR_HIST, METHOD_PUT, "ethr-eee-lpi-history-intf-sample-interval",
          Set<rpcclt_openapiGreenEthrEeeLpiHistoryIntfSampleIntervalSet, body("sampleInterval")>),
    ROUTE(PWR_HIST, METHOD_GET, "ethr-eee-lpi-history-intf-sample-interval",
          Read<"greenPwrSavHistory", rpcclt_openapiGreenEthrEeeLpiHistoryIntfSampleIntervalGet, out("sampleInterval")>),
    ROUTE(PWR_HIST, METHOD_PUT, "ethr-eee-lpi-history-intf-max-samples",
          Set<rpcclt_openapiGreenEthrEeeLpiHistoryIntfMaxSamplesSet, body("maxSamples")>),
    ROUTE(PWR_HIST, METHOD_GET, "ethr-eee-lpi-history-intf-max-samples",
          Read<"greenPwrSavHistory", rpcclt_openapiGreenEthrEeeLpiHistoryIntfMaxSamplesGet, out("maxSamples")>),
    HANDLER(PWR_HIST, METHOD_GET, "intf-first-entry", greenHistoryFirstEntry, kHistoryFirstEntryDoc),

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
    SHADOWED_ROUTE(IF, METHOD_GET, "descr", Read<"if", rpcclt_openapiIfDescrGet, scan("ifNum"), outText("descrip", 256)>),
    SHADOWED_ROUTE(IF, METHOD_GET, "status", Read<"if", rpcclt_openapiIfStatusGet, scan("ifNum"), out("ifStatus", kIfAttach)>),
    SHADOWED_ROUTE(IF, METHOD_GET, "num", Read<"if", rpcclt_openapiIfNumGet, lookupText("intfName"), out("ifNum")>),

    // The first single counters.
    ROUTE(IF, METHOD_GET, "in-octets", CounterRead<rpcclt_openapiIfInOctetsGet>),
    ROUTE(IF, METHOD_GET, "in-ucast-pkts", CounterRead<rpcclt_openapiIfInUcastPktsGet>),
    ROUTE(IF, METHOD_GET, "in-discards", CounterRead<rpcclt_openapiIfInDiscardsGet>),
    ROUTE(IF, METHOD_GET, "in-errors", CounterRead<rpcclt_openapiIfInErrorsGet>),

    // MAC locking, global switches.
    ROUTE(PML, METHOD_GET, "global-admin-mode",
          Read<"pml", rpcclt_openapiPmlGlobalAdminModeGet, out("adminMode", kEnable)>),
    ROUTE(PML, METHOD_PUT, "global-admin-mode",
          Set<rpcclt_openapiPmlGlobalAdminModeSet, bodyIs("adminMode", "enable")>),
    ROUTE(PML, METHOD_GET, "static-addr-global-count",
          Read<"pml", rpcclt_openapiPmlStaticAddrGlobalCountGet, out("count")>),
    ROUTE(PML, METHOD_GET, "vlan-admin-mode",
          Read<"pml", rpcclt_openapiPmlVlanAdminModeGet, out("adminMode", kEnable)>),
    ROUTE(PML, METHOD_PUT, "vlan-admin-mode", Set<rpcclt_openapiPmlVlanAdminModeSet, bodyIs("adminMode", "enable")>),

    // Cable diagnostics.
    ROUTE(IF_ROOT, METHOD_GET, "cable-status",
          Read<"cableStatus", rpcclt_openapiCableStatusGet, scan("ifNum"), out("cableStatus", kCableStatus),
               out("lengthKnown"), out("shortestLength"), out("longestLength"), out("cableFailureLength")>),

    // The remaining single counters.
    ROUTE(IF, METHOD_GET, "in-unknown-protos", CounterRead<rpcclt_openapiIfInUnknownProtosGet>),
    ROUTE(IF, METHOD_GET, "out-octets", CounterRead<rpcclt_openapiIfOutOctetsGet>),
    ROUTE(IF, METHOD_GET, "out-ucast-pkts", CounterRead<rpcclt_openapiIfOutUcastPktsGet>),
    ROUTE(IF, METHOD_GET, "out-discards", CounterRead<rpcclt_openapiIfOutDiscardsGet>),
    ROUTE(IF, METHOD_GET, "out-errors", CounterRead<rpcclt_openapiIfOutErrorsGet>),

    // Port attributes, reads then sets.
    ROUTE(IF, METHOD_GET, "speed-mode",
          Read<"if", rpcclt_openapiIfSpeedModeGet, scan("ifNum"), out("speed", kIfSpeedName, kIfSpeedUnknown)>),
    ROUTE(IF, METHOD_GET, "duplex-mode",
          Read<"if", rpcclt_openapiIfDuplexModeGet, scan("ifNum"), out("duplex_mode", kIfDuplex)>),
    ROUTE(IF, METHOD_GET, "duplex", Read<"if", openapiIfDuplexGet, scan("ifNum"), out("duplex_mode", kIfDuplex)>),
    SHADOWED_ROUTE(IF, METHOD_GET, "auto-neg", Read<"if", openapiIfAutoNegGet, scan("ifNum"), out("autoneg", kIfAutoNeg)>),
    ROUTE(IF, METHOD_GET, "ethernet-header-size",
          Read<"if", rpcclt_openapiIfEthernetHeaderSizeGet, scan("ifNum"), out("headerSize")>),
    ROUTE(IF, METHOD_GET, "max-frame-size",
          Read<"if", openapiIfMaxFrameSizeGet, scan("ifNum"), out("maxFrameSize")>),
    SHADOWED_ROUTE(IF, METHOD_GET, "soft-shutdown-state",
          Read<"if", rpcclt_openapiIfSoftShutdownStateGet, scan("ifNum"), out("soft_shut", kEnable)>),
    SHADOWED_ROUTE(IF, METHOD_GET, "admin-state",
          Read<"if", openapiIfAdminStateGet, scan("ifNum"), out("adminState", kEnable)>),
    SHADOWED_ROUTE(IF, METHOD_GET, "link-trap",
          Read<"if", rpcclt_openapiIfLinkTrapGet, scan("ifNum"), out("link-trap", kEnable)>),
    ROUTE(IF, METHOD_GET, "capabilities",
          Read<"if", rpcclt_openapiIfCapabilitiesGet, scan("ifNum"), out("portCapability")>),
    ROUTE(IF, METHOD_GET, "disable-reason",
          Read<"if", rpcclt_openapiIfDisableReasonGet, scan("ifNum"), out("reason", kIfDisableReason)>),
    ROUTE(IF, METHOD_GET, "active-media-type",
          Read<"if", rpcclt_openapiIfActiveMediaTypeGet, scan("ifNum"), out("mediaType", kIfMediaType)>),
    ROUTE(IF, METHOD_GET, "pause-status",
          Read<"if", rpcclt_openapiIfPauseStatusGet, scan("ifNum"), out("rxPauseAllowed", kTrue),
               out("txPauseAllowed", kTrue)>),
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
    SHADOWED_ROUTE(IF, METHOD_GET, "speed", Fixed<"if", CODE_UNSUPPORTED>),
    SHADOWED_ROUTE(IF, METHOD_GET, "mtu-size", Fixed<"if", CODE_UNSUPPORTED>),
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

    // Port expansion and FEC.
    ROUTE(IF, METHOD_GET, "intf-expandable-port-next",
          Read<"if", rpcclt_openapiIntfExpandablePortNextGet, scan("prevIfNum"), out("nextIfNum")>),
    HANDLER(IF, METHOD_GET, "intf-expandable-port-mode-supported", ifExpandPortModeSupportedGet,
            kExpandModeSupportedDoc),
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
    SHADOWED_ROUTE(IF, METHOD_GET, "intf-fec-mode",
          Read<"if", rpcclt_openapiIntfFECModeGet, scan("ifNum"), out("fecConfigMode", kIfFecMode),
               out("fecOperMode", kIfFecMode)>),

    // D-Disable recovery, first part.
    HANDLER(IF, METHOD_PUT, "ddisable-auto-recovery-interval", recoveryIntervalSetHandler, kRecoveryIntervalSetDoc),
    HANDLER(IF, METHOD_GET, "ddisable-auto-recovery-interval", recoveryIntervalGetHandler, kRecoveryIntervalGetDoc),
    HANDLER(IF, METHOD_GET, "ddisable-auto-recovery-cause", recoveryCauseGetHandler, kRecoveryCauseGetDoc),
    HANDLER(IF, METHOD_PUT, "ddisable-auto-recovery-cause", recoveryCauseSetHandler, kRecoveryCauseSetDoc),
    HANDLER(IF, METHOD_GET, "ddisable-autorecovery-table-intf-next", nextPhysicalIfHandler, kNextPhysicalIfDoc),
    HANDLER(IF, METHOD_GET, "ddisable-reason-intf-next", nextPhysicalIfHandler, kNextPhysicalIfDoc),

    // Interface application settings.
    ROUTE(APP, METHOD_GET, "time-range",
          Read<"interfaceApp", rpcclt_openapiInterfaceAppTimeRangeGet, scan("intIfNum"), outText("timeRange", 256)>),
    HANDLER(APP, METHOD_PUT, "time-range", interfaceAppTimeRangeSet, kTimeRangeSetDoc),
    ROUTE(APP, METHOD_PUT, "rgb-led-color-mode",
          LedGated<LedPort::First,
                   Set<rpcclt_openapiInterfaceAppRGBLedColorModeSet, scan("unit"), bodyIs("mode", "enable")>>),
    ROUTE(APP, METHOD_GET, "rgb-led-color-mode",
          LedGated<LedPort::First, Read<"interfaceApp", rpcclt_openapiInterfaceAppRGBLedColorModeGet, scan("unit"),
                                        out("mode", kEnable)>>),
    ROUTE(APP, METHOD_GET, "port-rgb-led-color-support",
          Read<"interfaceApp", rpcclt_openapiInterfaceAppPortRGBLedColorSupportGet, scan("ifNum"),
               out("isRGBLedColorSupported", kTrue)>),
    ROUTE(
        APP, METHOD_PUT, "port-rgb-led-color",
        LedGated<LedPort::FromQuery, Set<rpcclt_openapiInterfaceAppPortRGBLedColorSet, scan("ifNum"), body("color")>>),
    ROUTE(APP, METHOD_GET, "port-rgb-led-color",
          LedGated<LedPort::FromQuery,
                   Read<"interfaceApp", rpcclt_openapiInterfaceAppPortRGBLedColorGet, scan("ifNum"), out("color")>>),
    ROUTE(APP, METHOD_PUT, "port-rgb-led-color-brightness",
          LedGated<LedPort::FromQuery,
                   Set<rpcclt_openapiInterfaceAppPortRGBLedColorBrightnessSet, scan("ifNum"), body("brightness")>>),
    ROUTE(APP, METHOD_GET, "port-rgb-led-color-brightness",
          LedGated<LedPort::FromQuery, Read<"interfaceApp", rpcclt_openapiInterfaceAppPortRGBLedColorBrightnessGet,
                                            scan("ifNum"), out("brightness")>>),

    // Green Ethernet, second block.
    // Short reach speaks "true"/"false" where energy detect speaks "enable".
    ROUTE(GREEN, METHOD_PUT, "shrt-rch-auto-mode",
          Set<rpcclt_openapiGreenEthrShrtRchAutoModeSet, scan("intIfNum"), bodyIs("mode", "true")>),
    ROUTE(GREEN, METHOD_PUT, "shrt-rch-force-mode",
          Set<rpcclt_openapiGreenEthrShrtRchForceModeSet, scan("intIfNum"), bodyIs("mode", "true")>),
    ROUTE(
        GREEN, METHOD_GET, "energy-detect-admin-mode",
        Read<"greenEthernet", rpcclt_openapiGreenEthrEnergyDetectAdminModeGet, scan("intIfNum"), out("mode", kEnable)>),
    ROUTE(GREEN, METHOD_GET, "shrt-rch-auto-admin-mode",
          Read<"greenEthernet", rpcclt_openapiGreenEthrShrtRchAutoAdminModeGet, scan("intIfNum"), out("mode", kTrue)>),
    ROUTE(GREEN, METHOD_GET, "shrt-rch-force-admin-mode",
          Read<"greenEthernet", rpcclt_openapiGreenEthrShrtRchForceAdminModeGet, scan("intIfNum"), out("mode", kTrue)>),
    ROUTE(GREEN, METHOD_GET, "energy-detect-opr-status",
          Read<"greenEthernet", rpcclt_openapiGreenEthrEnergyDetectOprStatusGet, scan("intIfNum"),
               out("oprStatus", kTrue), out("reason", kGreenReason, kGreenReasonUnset)>),
    ROUTE(GREEN, METHOD_GET, "shrt-rch-opr-status",
          Read<"greenEthernet", rpcclt_openapiGreenEthrShrtRchOprStatusGet, scan("intIfNum"), out("oprStatus", kTrue),
               out("reason", kGreenReason, kGreenReasonUnset)>),
    ROUTE(GREEN, METHOD_GET, "energy-detect-opr-status-str",
          Read<"greenEthernet", rpcclt_openapiGreenEthrEnergyDetectOprStatusStrGet, scan("intIfNum"),
               out("oprStatus", kTrue), outText("reasonStr", 256)>),
    ROUTE(GREEN, METHOD_GET, "shrt-rch-opr-status-str",
          Read<"greenEthernet", rpcclt_openapiGreenEthrShrtRchOprStatusStrGet, scan("intIfNum"),
               out("oprStatus", kTrue), outText("reasonStr", 256)>),
    ROUTE(GREEN, METHOD_GET, "global-energy-detect-mode",
          Read<"greenEthernet", rpcclt_openapiGreenEthrGlobalEnergyDetectModeGet, out("adminMode", kEnable)>),
    ROUTE(GREEN, METHOD_PUT, "global-energy-detect-mode",
          Set<rpcclt_openapiGreenEthrGlobalEnergyDetectModeSet, bodyIs("adminMode", "enable")>),
    ROUTE(GREEN, METHOD_GET, "global-short-reach-mode",
          Read<"greenEthernet", rpcclt_openapiGreenEthrGlobalShortReachModeGet, out("adminMode", kEnable)>),
    ROUTE(GREEN, METHOD_PUT, "global-short-reach-mode",
          Set<rpcclt_openapiGreenEthrGlobalShortReachModeSet, bodyIs("adminMode", "enable")>),

    // Energy-efficient Ethernet, second block.
    ROUTE(EEE, METHOD_PUT, "admin-mode",
          Set<rpcclt_openapiGreenEthrEeeAdminModeSet, scan("intIfNum"), bodyIs("adminMode", "enable")>),
    ROUTE(EEE, METHOD_GET, "tx-idle-time",
          Read<"greenEthernetEeeApi", rpcclt_openapiGreenEthrEeeTxIdleTimeGet, scan("intIfNum"), out("eeeTxIdleTime")>),
    ROUTE(EEE, METHOD_PUT, "tx-idle-time",
          Set<rpcclt_openapiGreenEthrEeeTxIdleTimeSet, scan("intIfNum"), body("eeeTxIdleTime")>),
    ROUTE(EEE, METHOD_GET, "tx-wake-time",
          Read<"greenEthernetEeeApi", rpcclt_openapiGreenEthrEeeTxWakeTimeGet, scan("intIfNum"), out("eeeTxWakeTime")>),
    ROUTE(EEE, METHOD_PUT, "tx-wake-time",
          Set<rpcclt_openapiGreenEthrEeeTxWakeTimeSet, scan("intIfNum"), body("eeeTxWakeTime")>),
    ROUTE(EEE, METHOD_GET, "global-admin-mode",
          Read<"greenEthernetEeeApi", rpcclt_openapiGreenEthrGlobalEeeAdminModeGet, out("adminMode", kEnable)>),
    ROUTE(EEE, METHOD_PUT, "global-admin-mode",
          Set<rpcclt_openapiGreenEthrGlobalEeeAdminModeSet, bodyIs("adminMode", "enable")>),
    ROUTE(EEE, METHOD_DELETE, "statistics", Set<rpcclt_openapiGreenEthrEeeStatisticsClear, scan("intIfNum")>),
    ROUTE(EEE, METHOD_GET, "tx-events",
          Read<"greenEthernetEeeApi", rpcclt_openapiGreenEthrEeeTxEventsGet, scan("intIfNum"), out("count")>),
    // Durations come as two 32-bit words and are reported as such.
    ROUTE(EEE, METHOD_GET, "tx-duration",
          Read<"greenEthernetEeeApi", rpcclt_openapiGreenEthrEeeTxDurationGet, scan("intIfNum"), out("high"),
               out("low")>),
    ROUTE(EEE, METHOD_GET, "rx-events",
          Read<"greenEthernetEeeApi", rpcclt_openapiGreenEthrEeeRxEventsGet, scan("intIfNum"), out("count")>),
    ROUTE(EEE, METHOD_GET, "rx-duration",
          Read<"greenEthernetEeeApi", rpcclt_openapiGreenEthrEeeRxDurationGet, scan("intIfNum"), out("high"),
               out("low")>),
    // The broken-down form, registered later, is the one that serves.
    SHADOWED_ROUTE(EEE, METHOD_GET, "time-since-last-stats-reset",
          Read<"greenEthernetEeeApi", rpcclt_openapiGreenEthrEeeTimeSinceLastStatsResetGet, scan("intIfNum"),
               out("value")>),
    ROUTE(EEE, METHOD_GET, "time-since-last-stats-reset",
          Read<"greenEthernetEeeApi", rpcclt_openapixGreenEthrEeeTimeSinceLastStatsResetGet, scan("intIfNum"),
               out("days"), out("hours"), out("minutes"), out("seconds")>),
    ROUTE(EEE, METHOD_GET, "total-lpi-time",
          Read<"greenEthernetEeeApi", rpcclt_openapiGreenEthrEeeTotalLpiTimeGet, out("lpiTotalTime")>),
    ROUTE(
        EEE, METHOD_GET, "tx-dll-enable",
        Read<"greenEthernetEeeApi", rpcclt_openapiGreenEthrEeeTxDllEnableGet, scan("intIfNum"), out("enable", kTrue)>),
    ROUTE(EEE, METHOD_GET, "tx-dll-ready",
          Read<"greenEthernetEeeApi", rpcclt_openapiGreenEthrEeeTxDllReadyGet, scan("intIfNum"), out("ready", kTrue)>),
    ROUTE(
        EEE, METHOD_GET, "rx-dll-enable",
        Read<"greenEthernetEeeApi", rpcclt_openapiGreenEthrEeeRxDllEnableGet, scan("intIfNum"), out("enable", kTrue)>),
    ROUTE(EEE, METHOD_GET, "rx-dll-ready",
          Read<"greenEthernetEeeApi", rpcclt_openapiGreenEthrEeeRxDllReadyGet, scan("intIfNum"), out("ready", kTrue)>),
    ROUTE(EEE, METHOD_GET, "tx-twsys",
          Read<"greenEthernetEeeApi", rpcclt_openapiGreenEthrEeeTxTwsysGet, scan("intIfNum"), out("txTwsys")>),
    ROUTE(EEE, METHOD_GET, "rx-twsys",
          Read<"greenEthernetEeeApi", rpcclt_openapiGreenEthrEeeRxTwsysGet, scan("intIfNum"), out("rxTwsys")>),
    ROUTE(EEE, METHOD_GET, "fb-twsys",
          Read<"greenEthernetEeeApi", rpcclt_openapiGreenEthrEeeFbTwsysGet, scan("intIfNum"), out("fbTwsys")>),
    ROUTE(EEE, METHOD_GET, "echo-tx-twsys",
          Read<"greenEthernetEeeApi", rpcclt_openapiGreenEthrEeeEchoTxTwsysGet, scan("intIfNum"), out("echoTxTwsys")>),
    ROUTE(EEE, METHOD_GET, "echo-rx-twsys",
          Read<"greenEthernetEeeApi", rpcclt_openapiGreenEthrEeeEchoRxTwsysGet, scan("intIfNum"), out("echoRxTwsys")>),
    // The remote calls take the interface before the remote index.
    ROUTE(EEE, METHOD_GET, "rem-tx-twsys",
          Read<"greenEthernetEeeApi", rpcclt_openapiGreenEthrEeeRemTxTwsysGet, scan("intIfNum"), scan("remIndex"),
               scan("timestamp"), out("remTxTwsys")>),
    ROUTE(EEE, METHOD_GET, "rem-tx-twsys-echo",
          Read<"greenEthernetEeeApi", rpcclt_openapiGreenEthrEeeRemTxTwsysEchoGet, scan("intIfNum"), scan("remIndex"),
               scan("timestamp"), out("remTxTwsysEcho")>),
    ROUTE(EEE, METHOD_GET, "rem-rx-twsys",
          Read<"greenEthernetEeeApi", rpcclt_openapiGreenEthrEeeRemRxTwsysGet, scan("intIfNum"), scan("remIndex"),
               scan("timestamp"), out("remRxTwsys")>),
    ROUTE(EEE, METHOD_GET, "rem-rx-twsys-echo",
          Read<"greenEthernetEeeApi", rpcclt_openapiGreenEthrEeeRemRxTwsysEchoGet, scan("intIfNum"), scan("remIndex"),
               scan("timestamp"), out("remRxTwsysEcho")>),
    ROUTE(EEE, METHOD_GET, "rem-fb-twsys",
          Read<"greenEthernetEeeApi", rpcclt_openapiGreenEthrEeeRemFbTwsysGet, scan("intIfNum"), scan("remIndex"),
               scan("timestamp"), out("remFbTwsys")>),
    // The summaries report the DLL flags as plain numbers.
    ROUTE(EEE, METHOD_GET, "local-summary",
          Read<"greenEthernetEeeApi", rpcclt_openapiGreenEthrEeeLocalSummaryGet, scan("intIfNum"), out("twSysTx"),
               out("twSysTxEcho"), out("twSysRx"), out("twSysRxEcho"), out("twSysTxFallback"), out("txDllEnabled"),
               out("txDllReady"), out("rxDllEnabled"), out("rxDllReady")>),
    ROUTE(EEE, METHOD_GET, "remote-summary",
          Read<"greenEthernetEeeApi", rpcclt_openapiGreenEthrEeeRemoteSummaryGet, scan("intIfNum"), out("twSysTx"),
               out("twSysTxEcho"), out("twSysRx"), out("twSysRxEcho"), out("twSysTxFallback")>),
    ROUTE(EEE, METHOD_GET, "features-supported",
          Read<"greenEthernetEeeApi", rpcclt_openapiGreenEthrFeaturesSupportedGet, scan("unit"),
               outText("featureString", 512)>),

    // Power estimates, second block.
    ROUTE(PWR_EST, METHOD_GET, "global-cum-saving",
          Read<"greenPwrEstimates", rpcclt_openapiGreenPwrEstGlobalCumSavingGet, out("pwrSaving")>),
    ROUTE(PWR_EST, METHOD_GET, "global-pwr-saving",
          Read<"greenPwrEstimates", rpcclt_openapiGreenEthrPwrEstGlobalPwrSavingGet, out("pwrSaving")>),
    ROUTE(PWR_EST, METHOD_DELETE, "ethr-intf-statistics",
          Set<rpcclt_openapiGreenEthrIntfStatisticsClear, scan("intIfNum")>),

    // Power-saving history, second block.
    HANDLER(PWR_HIST, METHOD_GET, "intf-next-entry", greenHistoryNextEntry, kHistoryNextEntryDoc),
    HANDLER(PWR_HIST, METHOD_GET, "intf-next-sample", greenHistoryNextSample, kHistoryNextSampleDoc),
    ROUTE(PWR_HIST, METHOD_DELETE, "intf-statistics",
          Set<rpcclt_openapiGreenEthrPwrSavHistoryIntfStatisticsClear, scan("intIfNum")>),

    // MAC locking, per interface and VLAN, address entries.
    ROUTE(PML, METHOD_GET, "next-valid-intf",
          Read<"pml", rpcclt_openapiPmlNextValidIntfGet, scan("ifNum"), out("nextIfNum")>),
    // A check that replies like a read although registered as POST.
    ROUTE(PML, METHOD_POST, "intf-is-valid",
          Read<"pml", rpcclt_openapiPmlIntfIsValid, scan("ifNum"), out("isValid", kTrue)>),
    // Read as "mode", written as "intfMode".
    ROUTE(PML, METHOD_GET, "intf-mode",
          Read<"pml", rpcclt_openapiPmlIntfModeGet, scan("ifNum"), out("mode", kEnable)>),
    ROUTE(PML, METHOD_PUT, "intf-mode", Set<rpcclt_openapiPmlIntfModeSet, scan("ifNum"), bodyIs("intfMode", "enable")>),
    ROUTE(PML, METHOD_GET, "intf-dynamic-limit",
          Read<"pml", rpcclt_openapiPmlIntfDynamicLimitGet, scan("ifNum"), out("limit")>),
    ROUTE(PML, METHOD_PUT, "intf-dynamic-limit",
          Set<rpcclt_openapiPmlIntfDynamicLimitSet, scan("ifNum"), body("limit")>),
    ROUTE(PML, METHOD_GET, "intf-static-limit",
          Read<"pml", rpcclt_openapiPmlIntfStaticLimitGet, scan("ifNum"), out("limit")>),
    ROUTE(PML, METHOD_PUT, "intf-static-limit", Set<rpcclt_openapiPmlIntfStaticLimitSet, scan("ifNum"), body("limit")>),
    ROUTE(PML, METHOD_GET, "intf-dynamic-max-limit",
          Read<"pml", rpcclt_openapiPmlIntfDynamicMaxLimitGet, scan("ifNum"), out("limit")>),
    ROUTE(PML, METHOD_GET, "intf-static-max-limit",
          Read<"pml", rpcclt_openapiPmlIntfStaticMaxLimitGet, scan("ifNum"), out("limit")>),
    // The count answers under "limit".
    ROUTE(PML, METHOD_GET, "intf-static-count",
          Read<"pml", rpcclt_openapiPmlIntfStaticCountGet, scan("ifNum"), out("limit")>),
    ROUTE(PML, METHOD_GET, "intf-violation-trap-mode",
          Read<"pml", rpcclt_openapiPmlIntfViolationTrapModeGet, scan("ifNum"), out("trapMode", kEnable)>),
    ROUTE(PML, METHOD_PUT, "intf-violation-trap-mode",
          Set<rpcclt_openapiPmlIntfViolationTrapModeSet, scan("ifNum"), bodyIs("trapMode", "enable")>),
    ROUTE(PML, METHOD_GET, "intf-violation-ddisable-mode",
          Read<"pml", rpcclt_openapiPmlIntfViolationDDisableModeGet, scan("ifNum"), out("mode", kEnable)>),
    ROUTE(PML, METHOD_PUT, "intf-violation-ddisable-mode",
          Set<rpcclt_openapiPmlIntfViolationDDisableModeSet, scan("ifNum"), bodyIs("mode", "enable")>),
    // Read as "stickyMode", written as "sticky".
    ROUTE(PML, METHOD_GET, "intf-sticky-mode",
          Read<"pml", rpcclt_openapiPmlIntfStickyModeGet, scan("ifNum"), out("stickyMode", kEnable)>),
    ROUTE(PML, METHOD_PUT, "intf-sticky-mode",
          Set<rpcclt_openapiPmlIntfStickyModeSet, scan("ifNum"), bodyIs("sticky", "enable")>),
    ROUTE(PML, METHOD_GET, "intf-trap-frequency",
          Read<"pml", rpcclt_openapiPmlIntfTrapFrequencyGet, scan("ifNum"), out("interval")>),
    ROUTE(PML, METHOD_PUT, "intf-trap-frequency",
          Set<rpcclt_openapiPmlIntfTrapFrequencySet, scan("ifNum"), body("interval")>),
    ROUTE(PML, METHOD_GET, "intf-age-time",
          Read<"pml", rpcclt_openapiPmlIntfAgeTimeGet, scan("ifNum"), out("ageTime")>),
    ROUTE(PML, METHOD_PUT, "intf-age-time", Set<rpcclt_openapiPmlIntfAgeTimeSet, scan("ifNum"), body("ageTime")>),
    ROUTE(PML, METHOD_GET, "intf-last-violation-addr",
          Read<"pml", rpcclt_openapiPmlIntfLastViolationAddrGet, scan("ifNum"), outMac("macAddr"), out("vlanId")>),
    ROUTE(PML, METHOD_GET, "intf-dynamic-learned-addr-count",
          Read<"pml", rpcclt_openapiPmlIntfDynamicLearnedAddrCountGet, scan("ifNum"), out("count")>),
    ROUTE(PML, METHOD_GET, "intf-static-learned-addr-count",
          Read<"pml", rpcclt_openapiPmlIntfStaticLearnedAddrCountGet, scan("ifNum"), out("count")>),
    ROUTE(PML, METHOD_GET, "static-addr-count-by-vlan",
          Read<"pml", rpcclt_openapiPmlStaticAddrCountByVlanGet, scan("vlanId"), out("count")>),
    ROUTE(PML, METHOD_GET, "vlan-dynamic-limit",
          Read<"pml", rpcclt_openapiPmlVlanDynamicLimitGet, scan("vlanId"), out("limit")>),
    ROUTE(PML, METHOD_PUT, "vlan-dynamic-limit",
          Set<rpcclt_openapiPmlVlanDynamicLimitSet, scan("vlanId"), body("limit")>),
    ROUTE(PML, METHOD_GET, "vlan-operational-limit",
          Read<"pml", rpcclt_openapiPmlVlanOperationalLimitGet, scan("vlanId"), out("limit")>),
    // The VLAN violation modes speak "true"/"false", unlike the interface ones.
    ROUTE(PML, METHOD_GET, "vlan-violation-ddisable-mode",
          Read<"pml", rpcclt_openapiPmlVlanViolationDDisableModeGet, scan("vlanId"), out("mode", kTrue)>),
    ROUTE(PML, METHOD_PUT, "vlan-violation-ddisable-mode",
          Set<rpcclt_openapiPmlVlanViolationDDisableModeSet, scan("vlanId"), bodyIs("mode", "true")>),
    ROUTE(PML, METHOD_GET, "vlan-violation-trap-mode",
          Read<"pml", rpcclt_openapiPmlVlanViolationTrapModeGet, scan("vlanId"), out("mode", kTrue)>),
    ROUTE(PML, METHOD_PUT, "vlan-violation-trap-mode",
          Set<rpcclt_openapiPmlVlanViolationTrapModeSet, scan("vlanId"), bodyIs("mode", "true")>),
    ROUTE(PML, METHOD_GET, "vlan-mode", Read<"pml", rpcclt_openapiPmlVlanModeGet, scan("vlanId"), out("mode")>),
    ROUTE(PML, METHOD_PUT, "vlan-mode", Set<rpcclt_openapiPmlVlanModeSet, scan("vlanId"), body("mode")>),
    ROUTE(PML, METHOD_GET, "intf-vlan-dynamic-limit",
          Read<"pml", rpcclt_openapiPmlIntfVlanDynamicLimitGet, scan("ifNum"), scan("vlanId"), out("limit")>),
    ROUTE(PML, METHOD_PUT, "intf-vlan-dynamic-limit",
          Set<rpcclt_openapiPmlIntfVlanDynamicLimitSet, scan("ifNum"), scan("vlanId"), body("limit")>),
    ROUTE(PML, METHOD_GET, "intf-vlan-dynamic-learned-addr-count",
          Read<"pml", rpcclt_openapiPmlIntfVlanDynamicLearnedAddrCountGet, scan("ifNum"), scan("vlanId"),
               out("count")>),
    // The walks are POST although the first-entry routes read no body; the
    // static walk's next flag is "isnextEntrySticky".
    ROUTE(PML, METHOD_POST, "intf-static-entry-get-first",
          Read<"pml", rpcclt_openapiPmlIntfStaticEntryGetFirst, scan("ifNum"), outMac("macAddr"), out("vlanId"),
               out("isSticky", kTrue)>),
    ROUTE(PML, METHOD_POST, "intf-static-entry-get-next",
          Read<"pml", rpcclt_openapiPmlIntfStaticEntryGetNext, scan("ifNum"), bodyMac("macAddr"), scan("vlanId"),
               outMac("nextMacAddr"), out("nextVlanId"), out("isnextEntrySticky", kTrue)>),
    ROUTE(PML, METHOD_POST, "intf-dynamic-entry-get-first",
          Read<"pml", rpcclt_openapiPmlIntfDynamicEntryGetFirst, scan("ifNum"), outMac("macAddr"), out("vlanId")>),
    ROUTE(PML, METHOD_POST, "intf-dynamic-entry-get-next",
          Read<"pml", rpcclt_openapiPmlIntfDynamicEntryGetNext, scan("ifNum"), bodyMac("macAddr"), scan("vlanId"),
               outMac("nextMacAddr"), out("nextVlanId")>),
    // The VLAN-based walk is keyed by the address alone and names its
    // second output "vlanId" in both replies.
    ROUTE(PML, METHOD_POST, "vlan-dynamic-entry-get-first",
          Read<"pml", rpcclt_openapiPmlVlanDynamicEntryGetFirst, scan("ifNum"), outMac("macAddr"), out("vlanId")>),
    ROUTE(PML, METHOD_POST, "vlan-dynamic-entry-get-next",
          Read<"pml", rpcclt_openapiPmlVlanDynamicEntryGetNext, scan("ifNum"), bodyMac("macAddr"),
               outMac("nextMacAddr"), out("vlanId")>),
    // Added with the address in the body, deleted with it in the query.
    ROUTE(PML, METHOD_POST, "intf-static-entry",
          Set<rpcclt_openapiPmlIntfStaticEntryAdd, scan("ifNum"), bodyMac("macAddr"), scan("vlanId"),
              bodyIs("sticky", "true")>),
    ROUTE(PML, METHOD_DELETE, "intf-static-entry",
          Set<rpcclt_openapiPmlIntfStaticEntryDelete, scan("ifNum"), queryMac(), scan("vlanId")>),
    ROUTE(PML, METHOD_POST, "intf-dynamic-to-static-move",
          Set<rpcclt_openapiPmlIntfDynamicToStaticMove, scan("ifNum")>),
    ROUTE(PML, METHOD_PUT, "dot1qci-stream",
          Set<rpcclt_openapiPmlDot1qciStreamSet, scan("ifNum"), bodyMac("macAddr"), scan("vlanId"), body("streamID")>),
    ROUTE(PML, METHOD_GET, "dot1qci-stream",
          Read<"pml", rpcclt_openapiPmlDot1qciStreamGet, scan("ifNum"), queryMac(), scan("vlanId"), out("streamID")>),
    ROUTE(PML, METHOD_DELETE, "dot1qci-stream",
          Set<rpcclt_openapiPmlDot1qciStreamDelete, scan("ifNum"), queryMac(), scan("vlanId"), scan("streamID")>),

    // D-Disable recovery (second part).
    HANDLER(IF, METHOD_GET, "ddisable-autorecovery-table-feature-list", recoveryFeatureListHandler,
            kRecoveryFeatureListDoc),
    HANDLER(IF, METHOD_GET, "ddisable-auto-recovery-time-left", recoveryTimeLeftHandler, kRecoveryTimeLeftDoc),
    ROUTE(IF, METHOD_GET, "ddisable-reason", Fixed<"if", CODE_UNSUPPORTED>),

    // The late interface block: summaries, name lookup and the
    // all-counters reset.
    HANDLER(IF, METHOD_GET, "status", statusSummaryHandler, kStatusSummaryDoc),
    HANDLER(IF, METHOD_GET, "counters", counterSummaryHandler, kCounterSummaryDoc),
    HANDLER(IF, METHOD_GET, "num", nameLookupHandler, kNameLookupDoc),
    HANDLER(IF "/all-counters", METHOD_POST, "reset", allCountersResetHandler, kAllCountersResetDoc),

    // Composite routes that take over earlier keys.
    HANDLER(IF, METHOD_GET, "admin-state", ifCompositeAdminStateGet, kAdminStateDoc),
    HANDLER(IF, METHOD_GET, "auto-neg", ifCompositeAutoNegGet, kAutoNegDoc),
    HANDLER(IF, METHOD_GET, "speed", ifCompositeSpeedGet, kSpeedDoc),
    HANDLER(IF, METHOD_GET, "mtu-size", ifCompositeMtuSizeGet, kMtuSizeDoc),
    HANDLER(IF, METHOD_GET, "descr", ifCompositeDescrGet, kDescrDoc),
    HANDLER(IF, METHOD_GET, "soft-shutdown-state", ifCompositeSoftShutdownGet, kSoftShutdownDoc),
    HANDLER(IF, METHOD_GET, "intf-fec-mode", ifCompositeFecModeGet, kFecModeDoc),
    HANDLER(IF, METHOD_GET, "link-trap", ifCompositeLinkTrapGet, kLinkTrapDoc),
    ROUTE(IF, METHOD_GET, "encapsulation", Fixed<"if", CODE_UNSUPPORTED>),
    ROUTE(IF, METHOD_PUT, "encapsulation", Fixed<"", CODE_UNSUPPORTED, LineEnd::Newline>),
    ROUTE(IF, METHOD_GET, "phy-properties", Fixed<"if", CODE_UNSUPPORTED>),
    ROUTE(IF, METHOD_PUT, "phy-properties", Fixed<"", CODE_UNSUPPORTED, LineEnd::Newline>),
    HANDLER(IF, METHOD_GET, "expandable-mode", ifCompositeExpandableModeGet, kExpandableModeDoc),
    HANDLER(IF, METHOD_PUT, "expandable-mode", ifCompositeExpandableModeSet, kExpandableModeSetDoc),

    // The single-interface counter reset, last of all.
    HANDLER(IF "/counters", METHOD_POST, "reset", counterResetHandler, kCounterResetDoc),
};
const size_t kRouteCount = sizeof kRoutes / sizeof kRoutes[0];

namespace {

constexpr bool sameText(const char *a, const char *b) {
  while (*a && *a == *b) ++a, ++b;
  return *a == *b;
}

constexpr bool sameKey(const RouteRow &a, const RouteRow &b) {
  return a.method == b.method && sameText(a.path, b.path) && sameText(a.name, b.name);
}

constexpr bool shadowMarksHold() {
  for (size_t i = 0; i < std::size(kRoutes); ++i) {
    bool later = false;
    for (size_t j = i + 1; j < std::size(kRoutes) && !later; ++j) later = sameKey(kRoutes[i], kRoutes[j]);
    if (later != kRoutes[i].shadowed) return false;
  }
  return true;
}
static_assert(shadowMarksHold(), "a row is shadowed by a later one of the same key exactly when it is marked so");

}  // namespace

void registerRoutes(RouteTable *table) {
  for (const RouteRow &row : kRoutes) httpdAddCContent(table, row.path, row.name, row.method, 1, row.handler);
}
