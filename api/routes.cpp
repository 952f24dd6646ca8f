// The registration list. Order matters: a later registration of the same
// path, name and method shadows the earlier one, and some keys are
// registered twice on purpose so that a richer late handler takes over.
#include "api/routes.h"

#include "api/green/green_history.h"
#include "api/green/green_kit.h"
#include "api/green/green_texts.h"
#include "api/if/if_texts.h"
#include "api/interface_app/interface_app.h"
#include "api/interface_app/led_gate.h"

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

    // 6-9: energy-efficient Ethernet, first block.
    ROUTE(EEE, METHOD_POST, "is-valid-intf",
          Check<"greenEthernetEeeApi", rpcclt_openapiGreenEthrEeeIsValidIntf, scan("intIfNum"), out("valid", kTrue)>),
    ROUTE(EEE, METHOD_GET, "valid-intf-first",
          Read<"greenEthernetEeeApi", rpcclt_openapiGreenEthrEeeValidIntfFirstGet, out("intIfNum")>),
    ROUTE(EEE, METHOD_GET, "valid-intf-next",
          Read<"greenEthernetEeeApi", rpcclt_openapiGreenEthrEeeValidIntfNextGet, scan("prevIfNum"), out("intIfNum")>),
    ROUTE(EEE, METHOD_GET, "admin-mode",
          Read<"greenEthernetEeeApi", rpcclt_openapiGreenEthrEeeAdminModeGet, scan("intIfNum"),
               out("adminMode", kEnable)>),

    // 10-12: power estimates, first block.
    ROUTE(PWR_EST, METHOD_GET, "intf-cur-pwr",
          Read<"greenPwrEstimates", rpcclt_openapiGreenPwrEstIntfCurPwrGet, scan("intIfNum"), out("pwrConsumption")>),
    ROUTE(PWR_EST, METHOD_GET, "global-cur-pwr",
          Read<"greenPwrEstimates", rpcclt_openapiGreenPwrEstGlobalCurPwrGet, out("pwrConsumption")>),
    ROUTE(PWR_EST, METHOD_GET, "intf-cum-saving",
          Read<"greenPwrEstimates", rpcclt_openapiGreenPwrEstIntfCumSavingGet, scan("intIfNum"), out("pwrSaving")>),

    // 13-17: power-saving history, first block.
    // Switch-wide values despite "intf" in their names.
    ROUTE(PWR_HIST, METHOD_PUT, "ethr-eee-lpi-history-intf-sample-interval",
          Set<rpcclt_openapiGreenEthrEeeLpiHistoryIntfSampleIntervalSet, body("sampleInterval")>),
    ROUTE(PWR_HIST, METHOD_GET, "ethr-eee-lpi-history-intf-sample-interval",
          Read<"greenPwrSavHistory", rpcclt_openapiGreenEthrEeeLpiHistoryIntfSampleIntervalGet, out("sampleInterval")>),
    ROUTE(PWR_HIST, METHOD_PUT, "ethr-eee-lpi-history-intf-max-samples",
          Set<rpcclt_openapiGreenEthrEeeLpiHistoryIntfMaxSamplesSet, body("maxSamples")>),
    ROUTE(PWR_HIST, METHOD_GET, "ethr-eee-lpi-history-intf-max-samples",
          Read<"greenPwrSavHistory", rpcclt_openapiGreenEthrEeeLpiHistoryIntfMaxSamplesGet, out("maxSamples")>),
    HANDLER(PWR_HIST, METHOD_GET, "intf-first-entry", greenHistoryFirstEntry),

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

    // 79-86: port expansion and FEC.

    // 87-92: D-Disable recovery, first part.

    // 93-101: interface application settings.
    ROUTE(APP, METHOD_GET, "time-range",
          Read<"interfaceApp", rpcclt_openapiInterfaceAppTimeRangeGet, scan("intIfNum"), outText("timeRange", 256)>),
    HANDLER(APP, METHOD_PUT, "time-range", interfaceAppTimeRangeSet),
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

    // 102-114: green Ethernet, second block.
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

    // 115-146: energy-efficient Ethernet, second block.
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
    // Registered twice on purpose: the broken-down form, registered later,
    // is the one that serves.
    ROUTE(EEE, METHOD_GET, "time-since-last-stats-reset",
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

    // 147-149: power estimates, second block.
    ROUTE(PWR_EST, METHOD_GET, "global-cum-saving",
          Read<"greenPwrEstimates", rpcclt_openapiGreenPwrEstGlobalCumSavingGet, out("pwrSaving")>),
    ROUTE(PWR_EST, METHOD_GET, "global-pwr-saving",
          Read<"greenPwrEstimates", rpcclt_openapiGreenEthrPwrEstGlobalPwrSavingGet, out("pwrSaving")>),
    ROUTE(PWR_EST, METHOD_DELETE, "ethr-intf-statistics",
          Set<rpcclt_openapiGreenEthrIntfStatisticsClear, scan("intIfNum")>),

    // 150-152: power-saving history, second block.
    HANDLER(PWR_HIST, METHOD_GET, "intf-next-entry", greenHistoryNextEntry),
    HANDLER(PWR_HIST, METHOD_GET, "intf-next-sample", greenHistoryNextSample),
    ROUTE(PWR_HIST, METHOD_DELETE, "intf-statistics",
          Set<rpcclt_openapiGreenEthrPwrSavHistoryIntfStatisticsClear, scan("intIfNum")>),

    // 153-201: MAC locking, per interface and VLAN, address entries.

    // 202-204: D-Disable recovery (second part).

    // 205-223: the late interface block. 205-208: summaries, name lookup
    // and the all-counters reset.

    // 209-222: composite routes that take over earlier keys.

    // 223: the single-interface counter reset, last of all.
};
const size_t kRouteCount = sizeof kRoutes / sizeof kRoutes[0];

void registerRoutes(RouteTable *table) {
  for (const RouteRow &r : kRoutes) httpdAddCContent(table, r.path, r.name, r.method, 1, r.handler);
}
