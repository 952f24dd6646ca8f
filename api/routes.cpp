// The registration list. Order matters: a later registration of the same
// path, name and method shadows the earlier one, and some keys are
// registered twice on purpose so that a richer late handler takes over.
// Every shadowed row says so (SHADOWED_ROUTE); route-dump --check holds
// the marks and the order to each other.
#include "api/routes.h"

#include "api/fields.h"
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
using namespace fields;

// Keys that mean something of their own on the rows that use them.
// The keys several of them share: every limit (and the static count) answers
// under "limit", every count under "count", every size under "size".
constexpr char kLimit[] = "limit";
constexpr char kCount[] = "count";
constexpr char kSize[] = "size";
constexpr doc::Field kTrapInterval{.name = "interval",
                                   .text = "The shortest time between violation traps.",
                                   .unit = &facts::kSeconds,
                                   .range = &facts::kLockTrapInterval};
constexpr doc::Field kDynamicLimit{.name = kLimit,
                                   .text = "How many dynamic addresses the port may learn.",
                                   .unit = &facts::kCount,
                                   .range = &facts::kLockDynamicLimit};
constexpr doc::Field kDynamicMaxLimit{
    .name = kLimit, .text = "The highest dynamic address limit the port accepts.", .unit = &facts::kCount};
constexpr doc::Field kStaticLimit{.name = kLimit,
                                  .text = "How many static addresses the port may lock.",
                                  .unit = &facts::kCount,
                                  .range = &facts::kLockStaticLimit};
constexpr doc::Field kStaticMaxLimit{
    .name = kLimit, .text = "The highest static address limit the port accepts.", .unit = &facts::kCount};
constexpr doc::Field kStaticCount{
    .name = kLimit, .text = "How many static addresses are locked to the port.", .unit = &facts::kCount};
constexpr doc::Field kVlanDynamicLimit{.name = kLimit,
                                       .text = "How many dynamic addresses the VLAN may learn.",
                                       .unit = &facts::kCount,
                                       .range = &facts::kLockDynamicLimit};
constexpr doc::Field kVlanOperationalLimit{
    .name = kLimit, .text = "The dynamic address limit in force on the VLAN.", .unit = &facts::kCount};
constexpr doc::Field kIntfVlanDynamicLimit{.name = kLimit,
                                           .text = "How many dynamic addresses the port may learn on the VLAN.",
                                           .unit = &facts::kCount,
                                           .range = &facts::kLockDynamicLimit};
constexpr doc::Field kLockedVlanId{.name = kVlanId.name,
                                   .text = "The VLAN ID of the address.",
                                   .unit = &facts::kIdentifier,
                                   .range = &facts::kLockVlan};
constexpr doc::Field kVlanMode{.name = kMode.name,
                               .text = "VLAN-based MAC locking: 0 off, 1 on.",
                               .unit = &facts::kCode,
                               .range = &facts::kLockVlanMode};
constexpr doc::Field kStatsResetSeconds{
    .name = kValue.name, .text = "The time since the port's EEE statistics were cleared.", .unit = &facts::kSeconds};
constexpr doc::Field kLastChange{.name = kValue.name,
                                 .text =
                                     "When the interface last changed state: the switch's uptime at that "
                                     "change.",
                                 .unit = &facts::kUptimeSeconds};
constexpr doc::Field kLpiEntries{.name = kCount,
                                 .text =
                                     "How many times the port's transmitter (tx-events) or receiver "
                                     "(rx-events) entered low-power idle, since its EEE statistics were last "
                                     "cleared.",
                                 .unit = &facts::kCount};
constexpr doc::Field kAddressCount{
    .name = kCount, .text = "How many locked addresses of the kind the route names.", .unit = &facts::kCount};
constexpr doc::Field kViolationMacAddr{
    .name = kMacAddr.name,
    .text =
        "The address that last violated MAC locking on the port, as six colon-separated hexadecimal bytes; "
        "\"\" when none has."};
constexpr doc::Field kMacAddrSize{.name = kSize, .text = "The size of a MAC address.", .unit = &facts::kBytes};
constexpr doc::Field kDescrSize{.name = kSize, .text = "The longest description.", .unit = &facts::kCharacters};

// What the notes of several rows say.
constexpr char kSwitchWide[] = "Reads or sets no interface: one value for the whole switch.";
constexpr char kWalkEnds[] = "The walk ends when the reply carries a non-zero code.";
constexpr char kWalkFromZero[] =
    "prevIfNum 0 starts at the first port; the walk ends when the reply carries a non-zero code.";

constexpr RouteRow kRoutes[] = {
    // Green Ethernet, first block.
    ROUTE(kGreen, METHOD_GET, "valid-intf-first", "Finds the first port that supports green Ethernet",
          Read<"greenEthernet", rpcclt_openapiGreenEthrValidIntfFirstGet, out(kIntIfNum)>),
    NOTED_ROUTE(kGreen, METHOD_GET, "valid-intf-next",
                "Finds the next port after the given one that supports green Ethernet",
                kWalkFromZero,
                Read<"greenEthernet", rpcclt_openapiGreenEthrValidIntfNextGet, scan(kPrevIfNum), out(kIntIfNum)>),
    ROUTE(kGreen, METHOD_POST, "is-valid-intf-type", "Asks whether a port's type supports green Ethernet",
          Check<"greenEthernet", rpcclt_openapiGreenEthrIsValidIntfType, scan(kIntIfNum), out(kValid, kTrue)>),
    ROUTE(kGreen, METHOD_POST, "is-intf-eee-capable", "Asks whether a port is capable of Energy Efficient Ethernet",
          Check<"greenEthernet", rpcclt_openapiGreenEthrIsIntfEEECapable, scan(kIntIfNum), out(kValid, kTrue)>),
    ROUTE(kGreen, METHOD_PUT, "energy-detect-mode", "Turns energy-detect mode on or off on one port",
          Set<rpcclt_openapiGreenEthrEnergyDetectModeSet, scan(kIntIfNum), bodyIs(kMode, "enable")>),

    // Energy-efficient Ethernet, first block.
    ROUTE(kEee, METHOD_POST, "is-valid-intf", "Asks whether a port supports Energy Efficient Ethernet",
          Check<"greenEthernetEeeApi", rpcclt_openapiGreenEthrEeeIsValidIntf, scan(kIntIfNum), out(kValid, kTrue)>),
    ROUTE(kEee, METHOD_GET, "valid-intf-first", "Finds the first port that supports Energy Efficient Ethernet",
          Read<"greenEthernetEeeApi", rpcclt_openapiGreenEthrEeeValidIntfFirstGet, out(kIntIfNum)>),
    NOTED_ROUTE(kEee, METHOD_GET, "valid-intf-next",
                "Finds the next port after the given one that supports Energy Efficient Ethernet",
                kWalkFromZero,
                Read<"greenEthernetEeeApi", rpcclt_openapiGreenEthrEeeValidIntfNextGet, scan(kPrevIfNum),
                     out(kIntIfNum)>),
    ROUTE(kEee, METHOD_GET, "admin-mode", "Reads whether Energy Efficient Ethernet is enabled on one port",
          Read<"greenEthernetEeeApi", rpcclt_openapiGreenEthrEeeAdminModeGet, scan(kIntIfNum),
               out(kAdminMode, kEnable)>),

    // Power estimates, first block.
    ROUTE(kPowerEstimates, METHOD_GET, "intf-cur-pwr", "Reads one port's current estimated power use",
          Read<"greenPwrEstimates", rpcclt_openapiGreenPwrEstIntfCurPwrGet, scan(kIntIfNum), out(kPwrConsumption)>),
    ROUTE(kPowerEstimates, METHOD_GET, "global-cur-pwr", "Reads the switch's current estimated power use over all ports",
          Read<"greenPwrEstimates", rpcclt_openapiGreenPwrEstGlobalCurPwrGet, out(kPwrConsumption)>),
    ROUTE(kPowerEstimates, METHOD_GET, "intf-cum-saving", "Reads one port's cumulative estimated power saving",
          Read<"greenPwrEstimates", rpcclt_openapiGreenPwrEstIntfCumSavingGet, scan(kIntIfNum),
               out(kCumulativeSaving)>),

    // Power-saving history, first block.
    // Switch-wide values despite "intf" in their names.
    NOTED_ROUTE(kPowerHistory, METHOD_PUT, "ethr-eee-lpi-history-intf-sample-interval",
                "Sets the interval between samples of the EEE low-power-idle history",
                kSwitchWide,
                Set<rpcclt_openapiGreenEthrEeeLpiHistoryIntfSampleIntervalSet, body(kSampleInterval)>),
    NOTED_ROUTE(kPowerHistory, METHOD_GET, "ethr-eee-lpi-history-intf-sample-interval",
                "Reads the interval between samples of the EEE low-power-idle history",
                kSwitchWide,
                Read<"greenPwrSavHistory", rpcclt_openapiGreenEthrEeeLpiHistoryIntfSampleIntervalGet,
                     out(kSampleInterval)>),
    NOTED_ROUTE(kPowerHistory, METHOD_PUT, "ethr-eee-lpi-history-intf-max-samples",
                "Sets how many samples the EEE low-power-idle history keeps, for all ports",
                kSwitchWide,
                Set<rpcclt_openapiGreenEthrEeeLpiHistoryIntfMaxSamplesSet, body(kMaxSamples)>),
    NOTED_ROUTE(kPowerHistory, METHOD_GET, "ethr-eee-lpi-history-intf-max-samples",
                "Reads how many samples the EEE low-power-idle history keeps, for all ports",
                kSwitchWide,
                Read<"greenPwrSavHistory", rpcclt_openapiGreenEthrEeeLpiHistoryIntfMaxSamplesGet, out(kMaxSamples)>),
    HANDLER(kPowerHistory, METHOD_GET, "intf-first-entry", greenHistoryFirstEntry, kHistoryFirstEntryDoc),

    // Interface enumeration and identity.
    NOTED_ROUTE(kIf, METHOD_GET, "first",
                "Finds the first interface of a given type",
                "Start of the walk over the interfaces of one type; \"next\" continues it.",
                Read<"if", openapiIfFirstGet, lookup(kInterfaceType), out(kFirstIfNum)>),
    NOTED_ROUTE(kIf, METHOD_GET, "next",
                "Finds the next interface of a given type after the given one",
                "Pass the type and the last interface number; the walk ends when the reply carries a non-zero code.",
                Read<"if", openapiIfNextGet, lookup(kInterfaceType), scan(kIfNum), out(kNextIfNum)>),
    ROUTE(kIf, METHOD_GET, "next-changed", "Finds the next interface whose state changed",
          Read<"if", openapiIfNextChangedGet, scan(kIfNum), out(kNextIfNum), out(kDeletePending)>),
    ROUTE(kIf, METHOD_GET, "name", "Reads the name of one interface",
          Read<"if", openapiIfNameGet, lookup(kIntf), outText(kIntfName, 256)>),
    ROUTE(kIf, METHOD_GET, "type", "Reads the type of one interface",
          Read<"if", openapiIfTypeGet, scan(kIfNum), out(kInterfaceTypeName, kIfType)>),
    // Preset to "down": a call that succeeds without writing reads down.
    ROUTE(kIf, METHOD_GET, "link-state", "Reads the link state of one port",
          Read<"if", openapiIfLinkStateGet, scan(kIfNum), out(kLinkState, kIfLinkState, 1)>),
    ROUTE(kIf, METHOD_GET, "opr-state", "Reads the operational state of one interface",
          Read<"if", openapiIfOprStateGet, scan(kIfNum), out(kVal, kIfOprState)>),
    ROUTE(kIf, METHOD_GET, "active-state", "Reads whether one interface is active",
          Read<"if", rpcclt_openapiIfActiveStateGet, lookup(kInterface), out(kIntfActiveState)>),
    ROUTE(kIf, METHOD_GET, "last-change", "Reads when one interface last changed state",
          Read<"if", rpcclt_openapiIfLastChangeGet, lookup(kInterface), out(kLastChange)>),
    ROUTE(kIf, METHOD_GET, "usm-db-if-index", "Reads the SNMP ifIndex of one interface",
          Read<"if", rpcclt_openapiusmDbIfIndexGet, scan(kInterface), out(kIfIndex)>),
    ROUTE(kIf, METHOD_GET, "config-id-mask-offset", "Reads the configuration mask offset of one interface",
          Read<"if", rpcclt_openapiConfigIdMaskOffsetGet, scan(kInterface), out(kMaskOffset)>),
    ROUTE(kIf, METHOD_GET, "mac-addr-size", "Reads the size of an interface MAC address",
          Read<"if", rpcclt_openapiIfMacAddrSizeGet, scan(kIfNum), out(kMacAddrSize)>),
    ROUTE(kIf, METHOD_GET, "mac-addr", "Reads the MAC address of one interface",
          Read<"if", rpcclt_openapiIfMacAddrGet, scan(kIfNum), outText(kIfMacAddr, 19)>),
    ROUTE(kIf, METHOD_GET, "descr-size", "Reads the longest description an interface may have",
          Read<"if", rpcclt_openapiIfDescrSizeGet, scan(kIfNum), out(kDescrSize)>),
    SHADOWED_ROUTE(kIf, METHOD_GET, "descr", "Reads the description of one interface",
          Read<"if", rpcclt_openapiIfDescrGet, scan(kIfNum), outText(kDescrip, kDescrBuffer)>),
    SHADOWED_ROUTE(kIf, METHOD_GET, "status", "Reads the status of one interface",
          Read<"if", rpcclt_openapiIfStatusGet, scan(kIfNum), out(kIfStatus, kIfAttach)>),
    SHADOWED_ROUTE(kIf, METHOD_GET, "num", "Reads the interface number behind an interface name",
          Read<"if", rpcclt_openapiIfNumGet, lookupText(kIntfName), out(kIfNum)>),

    // The first single counters.
    ROUTE(kIf, METHOD_GET, "in-octets", "Reads the octets one port received", CounterRead<rpcclt_openapiIfInOctetsGet>),
    ROUTE(kIf, METHOD_GET, "in-ucast-pkts", "Reads the unicast packets one port received",
          CounterRead<rpcclt_openapiIfInUcastPktsGet>),
    ROUTE(kIf, METHOD_GET, "in-discards", "Reads the received packets one port discarded",
          CounterRead<rpcclt_openapiIfInDiscardsGet>),
    ROUTE(kIf, METHOD_GET, "in-errors", "Reads the received packets with errors on one port",
          CounterRead<rpcclt_openapiIfInErrorsGet>),

    // MAC locking, global switches.
    ROUTE(kPml, METHOD_GET, "global-admin-mode", "Reads whether port MAC locking is enabled on the switch",
          Read<"pml", rpcclt_openapiPmlGlobalAdminModeGet, out(kAdminMode, kEnable)>),
    ROUTE(kPml, METHOD_PUT, "global-admin-mode", "Turns port MAC locking on or off for the switch",
          Set<rpcclt_openapiPmlGlobalAdminModeSet, bodyIs(kAdminMode, "enable")>),
    ROUTE(kPml, METHOD_GET, "static-addr-global-count", "Reads how many static locked addresses the switch holds",
          Read<"pml", rpcclt_openapiPmlStaticAddrGlobalCountGet, out(kAddressCount)>),
    ROUTE(kPml, METHOD_GET, "vlan-admin-mode", "Reads whether VLAN MAC locking is enabled on the switch",
          Read<"pml", rpcclt_openapiPmlVlanAdminModeGet, out(kAdminMode, kEnable)>),
    ROUTE(kPml, METHOD_PUT, "vlan-admin-mode", "Turns VLAN MAC locking on or off for the switch",
          Set<rpcclt_openapiPmlVlanAdminModeSet, bodyIs(kAdminMode, "enable")>),

    // Cable diagnostics.
    NOTED_ROUTE(kRoot, METHOD_GET, "cable-status",
                "Tests the cable on one copper port and reads the result",
                "Runs the switch's copper cable test on the port.",
                Read<"cableStatus", rpcclt_openapiCableStatusGet, scan(kIfNum), out(kCableTestStatus, kCableStatus),
                     out(kLengthKnown), out(kShortestLength), out(kLongestLength), out(kCableFailureLength)>),

    // The remaining single counters.
    ROUTE(kIf, METHOD_GET, "in-unknown-protos", "Reads the received packets of unknown protocols on one port",
          CounterRead<rpcclt_openapiIfInUnknownProtosGet>),
    ROUTE(kIf, METHOD_GET, "out-octets", "Reads the octets one port sent", CounterRead<rpcclt_openapiIfOutOctetsGet>),
    ROUTE(kIf, METHOD_GET, "out-ucast-pkts", "Reads the unicast packets one port sent",
          CounterRead<rpcclt_openapiIfOutUcastPktsGet>),
    ROUTE(kIf, METHOD_GET, "out-discards", "Reads the outgoing packets one port discarded",
          CounterRead<rpcclt_openapiIfOutDiscardsGet>),
    ROUTE(kIf, METHOD_GET, "out-errors", "Reads the outgoing packets with errors on one port",
          CounterRead<rpcclt_openapiIfOutErrorsGet>),

    // Port attributes, reads then sets.
    ROUTE(kIf, METHOD_GET, "speed-mode", "Reads the configured speed of one port",
          Read<"if", rpcclt_openapiIfSpeedModeGet, scan(kIfNum), out(kSpeed, kIfSpeedName, kIfSpeedUnknown)>),
    ROUTE(kIf, METHOD_GET, "duplex-mode", "Reads the configured duplex mode of one port",
          Read<"if", rpcclt_openapiIfDuplexModeGet, scan(kIfNum), out(kDuplexMode, kIfDuplex)>),
    ROUTE(kIf, METHOD_GET, "duplex", "Reads the duplex the link of one port runs at",
          Read<"if", openapiIfDuplexGet, scan(kIfNum), out(kDuplexMode, kIfDuplex)>),
    SHADOWED_ROUTE(kIf, METHOD_GET, "auto-neg", "Reads whether auto-negotiation is enabled on one port",
          Read<"if", openapiIfAutoNegGet, scan(kIfNum), out(kAutoneg, kIfAutoNeg)>),
    ROUTE(kIf, METHOD_GET, "ethernet-header-size", "Reads the size of an Ethernet header on one port",
          Read<"if", rpcclt_openapiIfEthernetHeaderSizeGet, scan(kIfNum), out(kHeaderSize)>),
    ROUTE(kIf, METHOD_GET, "max-frame-size", "Reads the largest frame one port accepts",
          Read<"if", openapiIfMaxFrameSizeGet, scan(kIfNum), out(kMaxFrameSize)>),
    SHADOWED_ROUTE(kIf, METHOD_GET, "soft-shutdown-state", "Reads whether one port is soft shut down",
          Read<"if", rpcclt_openapiIfSoftShutdownStateGet, scan(kIfNum), out(kSoftShut, kEnable)>),
    SHADOWED_ROUTE(kIf, METHOD_GET, "admin-state", "Reads whether one interface is administratively enabled",
          Read<"if", openapiIfAdminStateGet, scan(kIfNum), out(kAdminState, kEnable)>),
    SHADOWED_ROUTE(kIf, METHOD_GET, "link-trap", "Reads whether one interface sends link up/down traps",
          Read<"if", rpcclt_openapiIfLinkTrapGet, scan(kIfNum), out(kLinkTrap, kEnable)>),
    ROUTE(kIf, METHOD_GET, "capabilities", "Reads the speeds and features one port supports",
          Read<"if", rpcclt_openapiIfCapabilitiesGet, scan(kIfNum), out(kPortCapability)>),
    ROUTE(kIf, METHOD_GET, "disable-reason", "Reads why one port is disabled",
          Read<"if", rpcclt_openapiIfDisableReasonGet, scan(kIfNum), out(kReason, kIfDisableReason)>),
    ROUTE(kIf, METHOD_GET, "active-media-type", "Reads the media type one port currently uses",
          Read<"if", rpcclt_openapiIfActiveMediaTypeGet, scan(kIfNum), out(kMediaType, kIfMediaType)>),
    ROUTE(kIf, METHOD_GET, "pause-status", "Reads the flow-control pause status of one port",
          Read<"if", rpcclt_openapiIfPauseStatusGet, scan(kIfNum), out(kRxPauseAllowed, kTrue),
               out(kTxPauseAllowed, kTrue)>),
    ROUTE(kIf, METHOD_GET, "special-port-type", "Reads the special type of one port",
          Read<"if", rpcclt_openapiIfSpecialPortTypeGet, scan(kIfNum), out(kSpecialType, kIfSpecialPortType)>),
    ROUTE(kIf, METHOD_GET, "exp-port-root-port", "Reads the root port of one expandable port's group",
          Read<"if", rpcclt_openapiIfExpPortRootPortGet, scan(kIfNum), out(kRootSlot), out(kRootPort)>),
    ROUTE(kIf, METHOD_GET, "exp-port-oper-mode-lane-count",
          "Reads how many lanes an expandable port uses in its operating mode",
          Read<"if", rpcclt_openapiIfExpPortOperModeLaneCountGet, scan(kIfNum), out(kLaneCount)>),
    ROUTE(kIf, METHOD_GET, "exp-port-first-peer", "Reads the first peer port of one expandable port",
          Read<"if", rpcclt_openapiIfExpPortFirstPeerGet, scan(kIfNum), out(kPeerIfNum)>),
    ROUTE(kIf, METHOD_GET, "port-speed-lane-count", "Reads how many lanes one port's speed uses",
          Read<"if", rpcclt_openapiIfPortSpeedLaneCountGet, scan(kIfNum), out(kLaneCount)>),
    SHADOWED_ROUTE(kIf, METHOD_GET, "speed", "Reading a port's speed this way is not supported",
          Fixed<"if", CODE_UNSUPPORTED>),
    SHADOWED_ROUTE(kIf, METHOD_GET, "mtu-size", "Reading a port's MTU this way is not supported",
          Fixed<"if", CODE_UNSUPPORTED>),
    ROUTE(kIf, METHOD_PUT, "speed", "Sets the speed and duplex of one port",
          Set<rpcclt_openapiIfSpeedSet, scan(kIfNum), bodyMapped(kSpeed, kIfSpeedNameValue)>),
    ROUTE(kIf, METHOD_PUT, "auto-neg", "Turns auto-negotiation on or off on one port",
          Set<rpcclt_openapiIfAutoNegSet, scan(kIfNum), body(kAutoneg)>),
    ROUTE(kIf, METHOD_PUT, "mtu-size", "Sets the MTU of one port",
          Set<rpcclt_openapiIfMtuSizeSet, scan(kIfNum), body(kMtuSize)>),
    ROUTE(kIf, METHOD_PUT, "mtu-size-set-v2", "Sets the MTU of one port, the second form",
          Set<rpcclt_openapiIfMtuSizeSetV2, scan(kIfNum), body(kMtuSize)>),
    ROUTE(kIf, METHOD_PUT, "max-frame-size", "Sets the largest frame one port accepts",
          Set<rpcclt_openapiIfMaxFrameSizeSet, scan(kIfNum), body(kMaxFrameSize)>),
    ROUTE(kIf, METHOD_PUT, "soft-shutdown-state", "Turns soft shutdown on or off on one port",
          Set<rpcclt_openapiIfSoftShutdownStateSet, scan(kIfNum), bodyIs(kSoftShut, "enable")>),
    ROUTE(kIf, METHOD_PUT, "admin-state", "Enables or disables one interface",
          Set<rpcclt_openapiIfAdminStateSet, scan(kIfNum), bodyIs(kAdminState, "enable")>),
    // Older pages send the mode as "mode".
    ROUTE(kIf, METHOD_PUT, "link-trap", "Turns link up/down traps on or off for one interface",
          Set<rpcclt_openapiIfLinkTrapSet, scan(kIfNum), bodyIs(kLinkTrap, "enable", kMode)>),
    ROUTE(kIf, METHOD_PUT, "descr", "Sets the description of one interface",
          Set<rpcclt_openapiIfDescrSet, scan(kIfNum), bodyText(kDescrip, kDescrBuffer - 1)>),

    // Port expansion and FEC.
    NOTED_ROUTE(kIf, METHOD_GET, "intf-expandable-port-next",
                "Finds the next expandable port after the given one",
                kWalkEnds,
                Read<"if", rpcclt_openapiIntfExpandablePortNextGet, scan(kPrevIfNum), out(kNextIfNum)>),
    HANDLER(kIf, METHOD_GET, "intf-expandable-port-mode-supported", ifExpandPortModeSupportedGet,
            kExpandModeSupportedDoc),
    ROUTE(kIf, METHOD_PUT, "intf-expandable-port-mode", "Sets the mode of one expandable port",
          Set<rpcclt_openapiIntfExpandablePortModeSet, scan(kIfNum),
              bodyMapped(kExpandPortMode, kIfExpandModeValue)>),
    ROUTE(kIf, METHOD_GET, "intf-expandable-port-config-mode", "Reads the configured mode of one expandable port",
          Read<"if", rpcclt_openapiIntfExpandablePortConfigModeGet, scan(kIfNum),
               out(kExpandPortMode, kIfExpandMode)>),
    ROUTE(kIf, METHOD_GET, "intf-expandable-port-oper-mode", "Reads the operating mode of one expandable port",
          Read<"if", rpcclt_openapiIntfExpandablePortOperModeGet, scan(kIfNum),
               out(kExpandPortMode, kIfExpandMode)>),
    ROUTE(kIf, METHOD_GET, "intf-expandable-mode-peers-get-by-mode",
          "Reads the peer ports an expandable port uses in a given mode",
          Read<"if", rpcclt_openapiIntfExpandableModePeersGetByModeGet, scan(kIfNum),
               out(kExpandPortMode, kIfExpandMode), outText(kPeerIntfs, 256), out(kPeerCount)>),
    ROUTE(kIf, METHOD_PUT, "intf-fec-mode", "Sets the forward error correction mode of one port",
          Set<rpcclt_openapiIntfFECModeSet, scan(kIfNum), bodyMapped(kFecMode, kIfFecModeValue)>),
    SHADOWED_ROUTE(kIf, METHOD_GET, "intf-fec-mode", "Reads the forward error correction mode of one port",
          Read<"if", rpcclt_openapiIntfFECModeGet, scan(kIfNum), out(kFecConfigMode, kIfFecMode),
               out(kFecOperMode, kIfFecMode)>),

    // D-Disable recovery, first part.
    HANDLER(kIf, METHOD_PUT, "ddisable-auto-recovery-interval", recoveryIntervalSetHandler, kRecoveryIntervalSetDoc),
    HANDLER(kIf, METHOD_GET, "ddisable-auto-recovery-interval", recoveryIntervalGetHandler, kRecoveryIntervalGetDoc),
    HANDLER(kIf, METHOD_GET, "ddisable-auto-recovery-cause", recoveryCauseGetHandler, kRecoveryCauseGetDoc),
    HANDLER(kIf, METHOD_PUT, "ddisable-auto-recovery-cause", recoveryCauseSetHandler, kRecoveryCauseSetDoc),
    HANDLER(kIf, METHOD_GET, "ddisable-autorecovery-table-intf-next", nextPhysicalIfHandler, kRecoveryTableNextIfDoc),
    HANDLER(kIf, METHOD_GET, "ddisable-reason-intf-next", nextPhysicalIfHandler, kReasonNextIfDoc),

    // Interface application settings.
    ROUTE(kApp, METHOD_GET, "time-range", "Reads the time range that applies to one port",
          Read<"interfaceApp", rpcclt_openapiInterfaceAppTimeRangeGet, scan(kIntIfNum), outText(kTimeRange, 256)>),
    HANDLER(kApp, METHOD_PUT, "time-range", interfaceAppTimeRangeSet, kTimeRangeSetDoc),
    ROUTE(kApp, METHOD_PUT, "rgb-led-color-mode", "Turns the colour LED mode of a stack unit on or off",
          LedGated<LedPort::First,
                   Set<rpcclt_openapiInterfaceAppRGBLedColorModeSet, scan(kUnit), bodyIs(kMode, "enable")>>),
    ROUTE(kApp, METHOD_GET, "rgb-led-color-mode", "Reads whether the colour LED mode of a stack unit is on",
          LedGated<LedPort::First, Read<"interfaceApp", rpcclt_openapiInterfaceAppRGBLedColorModeGet, scan(kUnit),
                                        out(kMode, kEnable)>>),
    ROUTE(kApp, METHOD_GET, "port-rgb-led-color-support", "Asks whether one port has a colour LED",
          Read<"interfaceApp", rpcclt_openapiInterfaceAppPortRGBLedColorSupportGet, scan(kIfNum),
               out(kIsRGBLedColorSupported, kTrue)>),
    ROUTE(
        kApp, METHOD_PUT, "port-rgb-led-color", "Sets the colour of one port's LED",
        LedGated<LedPort::FromQuery, Set<rpcclt_openapiInterfaceAppPortRGBLedColorSet, scan(kIfNum), body(kColor)>>),
    ROUTE(kApp, METHOD_GET, "port-rgb-led-color", "Reads the colour of one port's LED",
          LedGated<LedPort::FromQuery,
                   Read<"interfaceApp", rpcclt_openapiInterfaceAppPortRGBLedColorGet, scan(kIfNum), out(kColor)>>),
    ROUTE(kApp, METHOD_PUT, "port-rgb-led-color-brightness", "Sets the brightness of one port's colour LED",
          LedGated<LedPort::FromQuery,
                   Set<rpcclt_openapiInterfaceAppPortRGBLedColorBrightnessSet, scan(kIfNum), body(kBrightness)>>),
    ROUTE(kApp, METHOD_GET, "port-rgb-led-color-brightness", "Reads the brightness of one port's colour LED",
          LedGated<LedPort::FromQuery, Read<"interfaceApp", rpcclt_openapiInterfaceAppPortRGBLedColorBrightnessGet,
                                            scan(kIfNum), out(kBrightness)>>),

    // Green Ethernet, second block.
    // Short reach speaks "true"/"false" where energy detect speaks "enable".
    ROUTE(kGreen, METHOD_PUT, "shrt-rch-auto-mode", "Turns automatic short-reach mode on or off on one port",
          Set<rpcclt_openapiGreenEthrShrtRchAutoModeSet, scan(kIntIfNum), bodyIs(kMode, "true")>),
    ROUTE(kGreen, METHOD_PUT, "shrt-rch-force-mode", "Turns forced short-reach mode on or off on one port",
          Set<rpcclt_openapiGreenEthrShrtRchForceModeSet, scan(kIntIfNum), bodyIs(kMode, "true")>),
    ROUTE(
        kGreen, METHOD_GET, "energy-detect-admin-mode", "Reads whether energy-detect mode is enabled on one port",
        Read<"greenEthernet", rpcclt_openapiGreenEthrEnergyDetectAdminModeGet, scan(kIntIfNum), out(kMode, kEnable)>),
    ROUTE(kGreen, METHOD_GET, "shrt-rch-auto-admin-mode",
          "Reads whether automatic short-reach mode is enabled on one port",
          Read<"greenEthernet", rpcclt_openapiGreenEthrShrtRchAutoAdminModeGet, scan(kIntIfNum), out(kMode, kTrue)>),
    ROUTE(kGreen, METHOD_GET, "shrt-rch-force-admin-mode",
          "Reads whether forced short-reach mode is enabled on one port",
          Read<"greenEthernet", rpcclt_openapiGreenEthrShrtRchForceAdminModeGet, scan(kIntIfNum), out(kMode, kTrue)>),
    ROUTE(kGreen, METHOD_GET, "energy-detect-opr-status", "Reads whether energy detect is operating on one port",
          Read<"greenEthernet", rpcclt_openapiGreenEthrEnergyDetectOprStatusGet, scan(kIntIfNum),
               out(kOprStatus, kTrue), out(kOprReason, kGreenReason, kGreenReasonUnset)>),
    ROUTE(kGreen, METHOD_GET, "shrt-rch-opr-status", "Reads whether short reach is operating on one port",
          Read<"greenEthernet", rpcclt_openapiGreenEthrShrtRchOprStatusGet, scan(kIntIfNum), out(kOprStatus, kTrue),
               out(kOprReason, kGreenReason, kGreenReasonUnset)>),
    ROUTE(kGreen, METHOD_GET, "energy-detect-opr-status-str",
          "Reads why energy detect is or is not operating on one port, as text",
          Read<"greenEthernet", rpcclt_openapiGreenEthrEnergyDetectOprStatusStrGet, scan(kIntIfNum),
               out(kOprStatus, kTrue), outText(kReasonStr, 256)>),
    ROUTE(kGreen, METHOD_GET, "shrt-rch-opr-status-str",
          "Reads why short reach is or is not operating on one port, as text",
          Read<"greenEthernet", rpcclt_openapiGreenEthrShrtRchOprStatusStrGet, scan(kIntIfNum),
               out(kOprStatus, kTrue), outText(kReasonStr, 256)>),
    ROUTE(kGreen, METHOD_GET, "global-energy-detect-mode", "Reads whether energy detect is enabled on the switch",
          Read<"greenEthernet", rpcclt_openapiGreenEthrGlobalEnergyDetectModeGet, out(kAdminMode, kEnable)>),
    ROUTE(kGreen, METHOD_PUT, "global-energy-detect-mode", "Turns energy detect on or off for the switch",
          Set<rpcclt_openapiGreenEthrGlobalEnergyDetectModeSet, bodyIs(kAdminMode, "enable")>),
    ROUTE(kGreen, METHOD_GET, "global-short-reach-mode", "Reads whether short reach is enabled on the switch",
          Read<"greenEthernet", rpcclt_openapiGreenEthrGlobalShortReachModeGet, out(kAdminMode, kEnable)>),
    ROUTE(kGreen, METHOD_PUT, "global-short-reach-mode", "Turns short reach on or off for the switch",
          Set<rpcclt_openapiGreenEthrGlobalShortReachModeSet, bodyIs(kAdminMode, "enable")>),

    // Energy-efficient Ethernet, second block.
    ROUTE(kEee, METHOD_PUT, "admin-mode", "Turns Energy Efficient Ethernet on or off on one port",
          Set<rpcclt_openapiGreenEthrEeeAdminModeSet, scan(kIntIfNum), bodyIs(kAdminMode, "enable")>),
    ROUTE(kEee, METHOD_GET, "tx-idle-time", "Reads one port's EEE transmit idle time",
          Read<"greenEthernetEeeApi", rpcclt_openapiGreenEthrEeeTxIdleTimeGet, scan(kIntIfNum), out(kEeeTxIdleTime)>),
    ROUTE(kEee, METHOD_PUT, "tx-idle-time", "Sets one port's EEE transmit idle time",
          Set<rpcclt_openapiGreenEthrEeeTxIdleTimeSet, scan(kIntIfNum), body(kEeeTxIdleTime)>),
    ROUTE(kEee, METHOD_GET, "tx-wake-time", "Reads one port's EEE transmit wake time",
          Read<"greenEthernetEeeApi", rpcclt_openapiGreenEthrEeeTxWakeTimeGet, scan(kIntIfNum), out(kEeeTxWakeTime)>),
    ROUTE(kEee, METHOD_PUT, "tx-wake-time", "Sets one port's EEE transmit wake time",
          Set<rpcclt_openapiGreenEthrEeeTxWakeTimeSet, scan(kIntIfNum), body(kEeeTxWakeTime)>),
    ROUTE(kEee, METHOD_GET, "global-admin-mode", "Reads whether Energy Efficient Ethernet is enabled on the switch",
          Read<"greenEthernetEeeApi", rpcclt_openapiGreenEthrGlobalEeeAdminModeGet, out(kAdminMode, kEnable)>),
    ROUTE(kEee, METHOD_PUT, "global-admin-mode", "Turns Energy Efficient Ethernet on or off for the switch",
          Set<rpcclt_openapiGreenEthrGlobalEeeAdminModeSet, bodyIs(kAdminMode, "enable")>),
    ROUTE(kEee, METHOD_DELETE, "statistics", "Clears one port's EEE statistics",
          Set<rpcclt_openapiGreenEthrEeeStatisticsClear, scan(kIntIfNum)>),
    ROUTE(kEee, METHOD_GET, "tx-events", "Reads how often one port entered low-power idle when sending",
          Read<"greenEthernetEeeApi", rpcclt_openapiGreenEthrEeeTxEventsGet, scan(kIntIfNum), out(kLpiEntries)>),
    // Durations come as two 32-bit words and are reported as such.
    ROUTE(kEee, METHOD_GET, "tx-duration", "Reads how long one port was in low-power idle when sending",
          Read<"greenEthernetEeeApi", rpcclt_openapiGreenEthrEeeTxDurationGet, scan(kIntIfNum), out(kHigh),
               out(kLow)>),
    ROUTE(kEee, METHOD_GET, "rx-events", "Reads how often one port entered low-power idle when receiving",
          Read<"greenEthernetEeeApi", rpcclt_openapiGreenEthrEeeRxEventsGet, scan(kIntIfNum), out(kLpiEntries)>),
    ROUTE(kEee, METHOD_GET, "rx-duration", "Reads how long one port was in low-power idle when receiving",
          Read<"greenEthernetEeeApi", rpcclt_openapiGreenEthrEeeRxDurationGet, scan(kIntIfNum), out(kHigh),
               out(kLow)>),
    // The broken-down form, registered later, is the one that serves.
    SHADOWED_ROUTE(kEee, METHOD_GET, "time-since-last-stats-reset",
          "Reads the time since one port's EEE statistics were cleared",
          Read<"greenEthernetEeeApi", rpcclt_openapiGreenEthrEeeTimeSinceLastStatsResetGet, scan(kIntIfNum),
               out(kStatsResetSeconds)>),
    ROUTE(kEee, METHOD_GET, "time-since-last-stats-reset",
          "Reads the time since one port's EEE statistics were cleared, as days, hours, minutes and seconds",
          Read<"greenEthernetEeeApi", rpcclt_openapixGreenEthrEeeTimeSinceLastStatsResetGet, scan(kIntIfNum),
               out(kDays), out(kHours), out(kMinutes), out(kSeconds)>),
    ROUTE(kEee, METHOD_GET, "total-lpi-time", "Reads the total low-power-idle time of all ports",
          Read<"greenEthernetEeeApi", rpcclt_openapiGreenEthrEeeTotalLpiTimeGet, out(kLpiTotalTime)>),
    ROUTE(
        kEee, METHOD_GET, "tx-dll-enable",
          "Reads whether one port's transmit data link layer EEE negotiation is enabled",
        Read<"greenEthernetEeeApi", rpcclt_openapiGreenEthrEeeTxDllEnableGet, scan(kIntIfNum), out(kDllEnable, kTrue)>),
    ROUTE(kEee, METHOD_GET, "tx-dll-ready", "Reads whether one port's transmit data link layer is ready for EEE",
          Read<"greenEthernetEeeApi", rpcclt_openapiGreenEthrEeeTxDllReadyGet, scan(kIntIfNum), out(kReady, kTrue)>),
    ROUTE(
        kEee, METHOD_GET, "rx-dll-enable", "Reads whether one port's receive data link layer EEE negotiation is enabled",
        Read<"greenEthernetEeeApi", rpcclt_openapiGreenEthrEeeRxDllEnableGet, scan(kIntIfNum), out(kDllEnable, kTrue)>),
    ROUTE(kEee, METHOD_GET, "rx-dll-ready", "Reads whether one port's receive data link layer is ready for EEE",
          Read<"greenEthernetEeeApi", rpcclt_openapiGreenEthrEeeRxDllReadyGet, scan(kIntIfNum), out(kReady, kTrue)>),
    ROUTE(kEee, METHOD_GET, "tx-twsys", "Reads one port's local transmit wake time (Tw_sys_tx)",
          Read<"greenEthernetEeeApi", rpcclt_openapiGreenEthrEeeTxTwsysGet, scan(kIntIfNum), out(kTxTwsys)>),
    ROUTE(kEee, METHOD_GET, "rx-twsys", "Reads one port's local receive wake time (Tw_sys_rx)",
          Read<"greenEthernetEeeApi", rpcclt_openapiGreenEthrEeeRxTwsysGet, scan(kIntIfNum), out(kRxTwsys)>),
    ROUTE(kEee, METHOD_GET, "fb-twsys", "Reads one port's local fallback wake time",
          Read<"greenEthernetEeeApi", rpcclt_openapiGreenEthrEeeFbTwsysGet, scan(kIntIfNum), out(kFbTwsys)>),
    ROUTE(kEee, METHOD_GET, "echo-tx-twsys", "Reads the transmit wake time one port echoes to its partner",
          Read<"greenEthernetEeeApi", rpcclt_openapiGreenEthrEeeEchoTxTwsysGet, scan(kIntIfNum), out(kEchoTxTwsys)>),
    ROUTE(kEee, METHOD_GET, "echo-rx-twsys", "Reads the receive wake time one port echoes to its partner",
          Read<"greenEthernetEeeApi", rpcclt_openapiGreenEthrEeeEchoRxTwsysGet, scan(kIntIfNum), out(kEchoRxTwsys)>),
    // The remote calls take the interface before the remote index.
    ROUTE(kEee, METHOD_GET, "rem-tx-twsys", "Reads the link partner's transmit wake time",
          Read<"greenEthernetEeeApi", rpcclt_openapiGreenEthrEeeRemTxTwsysGet, scan(kIntIfNum), scan(kRemIndex),
               scan(kTimestamp), out(kRemTxTwsys)>),
    ROUTE(kEee, METHOD_GET, "rem-tx-twsys-echo", "Reads the transmit wake time the link partner echoes",
          Read<"greenEthernetEeeApi", rpcclt_openapiGreenEthrEeeRemTxTwsysEchoGet, scan(kIntIfNum), scan(kRemIndex),
               scan(kTimestamp), out(kRemTxTwsysEcho)>),
    ROUTE(kEee, METHOD_GET, "rem-rx-twsys", "Reads the link partner's receive wake time",
          Read<"greenEthernetEeeApi", rpcclt_openapiGreenEthrEeeRemRxTwsysGet, scan(kIntIfNum), scan(kRemIndex),
               scan(kTimestamp), out(kRemRxTwsys)>),
    ROUTE(kEee, METHOD_GET, "rem-rx-twsys-echo", "Reads the receive wake time the link partner echoes",
          Read<"greenEthernetEeeApi", rpcclt_openapiGreenEthrEeeRemRxTwsysEchoGet, scan(kIntIfNum), scan(kRemIndex),
               scan(kTimestamp), out(kRemRxTwsysEcho)>),
    ROUTE(kEee, METHOD_GET, "rem-fb-twsys", "Reads the link partner's fallback wake time",
          Read<"greenEthernetEeeApi", rpcclt_openapiGreenEthrEeeRemFbTwsysGet, scan(kIntIfNum), scan(kRemIndex),
               scan(kTimestamp), out(kRemFbTwsys)>),
    // The summaries report the DLL flags as plain numbers.
    ROUTE(kEee, METHOD_GET, "local-summary", "Reads one port's local EEE values in one reply",
          Read<"greenEthernetEeeApi", rpcclt_openapiGreenEthrEeeLocalSummaryGet, scan(kIntIfNum), out(kTwSysTx),
               out(kTwSysTxEcho), out(kTwSysRx), out(kTwSysRxEcho), out(kTwSysTxFallback), out(kTxDllEnabled),
               out(kTxDllReady), out(kRxDllEnabled), out(kRxDllReady)>),
    ROUTE(kEee, METHOD_GET, "remote-summary", "Reads the link partner's EEE values in one reply",
          Read<"greenEthernetEeeApi", rpcclt_openapiGreenEthrEeeRemoteSummaryGet, scan(kIntIfNum), out(kTwSysTx),
               out(kTwSysTxEcho), out(kTwSysRx), out(kTwSysRxEcho), out(kTwSysTxFallback)>),
    NOTED_ROUTE(kEee, METHOD_GET, "features-supported",
                "Reads which green Ethernet features the switch supports",
                "With no unit, asks for unit 0.",
                Read<"greenEthernetEeeApi", rpcclt_openapiGreenEthrFeaturesSupportedGet, scan(kUnit),
                     outText(kFeatureString, 512)>),

    // Power estimates, second block.
    ROUTE(kPowerEstimates, METHOD_GET, "global-cum-saving", "Reads the switch's cumulative estimated power saving",
          Read<"greenPwrEstimates", rpcclt_openapiGreenPwrEstGlobalCumSavingGet, out(kCumulativeSaving)>),
    ROUTE(kPowerEstimates, METHOD_GET, "global-pwr-saving", "Reads the switch's current estimated power saving",
          Read<"greenPwrEstimates", rpcclt_openapiGreenEthrPwrEstGlobalPwrSavingGet, out(kSavingShare)>),
    ROUTE(kPowerEstimates, METHOD_DELETE, "ethr-intf-statistics", "Clears one port's green Ethernet power statistics",
          Set<rpcclt_openapiGreenEthrIntfStatisticsClear, scan(kIntIfNum)>),

    // Power-saving history, second block.
    HANDLER(kPowerHistory, METHOD_GET, "intf-next-entry", greenHistoryNextEntry, kHistoryNextEntryDoc),
    HANDLER(kPowerHistory, METHOD_GET, "intf-next-sample", greenHistoryNextSample, kHistoryNextSampleDoc),
    ROUTE(kPowerHistory, METHOD_DELETE, "intf-statistics", "Clears one port's power saving history",
          Set<rpcclt_openapiGreenEthrPwrSavHistoryIntfStatisticsClear, scan(kIntIfNum)>),

    // MAC locking, per interface and VLAN, address entries.
    NOTED_ROUTE(kPml, METHOD_GET, "next-valid-intf",
                "Finds the next port after the given one that supports MAC locking",
                kWalkEnds,
                Read<"pml", rpcclt_openapiPmlNextValidIntfGet, scan(kIfNum), out(kNextIfNum)>),
    // A check that replies like a read although registered as POST.
    ROUTE(kPml, METHOD_POST, "intf-is-valid", "Asks whether one port supports MAC locking",
          Read<"pml", rpcclt_openapiPmlIntfIsValid, scan(kIfNum), out(kIsValid, kTrue)>),
    // Read as "mode", written as "intfMode".
    ROUTE(kPml, METHOD_GET, "intf-mode", "Reads whether MAC locking is enabled on one port",
          Read<"pml", rpcclt_openapiPmlIntfModeGet, scan(kIfNum), out(kMode, kEnable)>),
    ROUTE(kPml, METHOD_PUT, "intf-mode", "Turns MAC locking on or off on one port",
          Set<rpcclt_openapiPmlIntfModeSet, scan(kIfNum), bodyIs(kIntfMode, "enable")>),
    ROUTE(kPml, METHOD_GET, "intf-dynamic-limit", "Reads how many dynamic addresses one port may learn",
          Read<"pml", rpcclt_openapiPmlIntfDynamicLimitGet, scan(kIfNum), out(kDynamicLimit)>),
    ROUTE(kPml, METHOD_PUT, "intf-dynamic-limit", "Sets how many dynamic addresses one port may learn",
          Set<rpcclt_openapiPmlIntfDynamicLimitSet, scan(kIfNum), body(kDynamicLimit)>),
    ROUTE(kPml, METHOD_GET, "intf-static-limit", "Reads how many static addresses one port may lock",
          Read<"pml", rpcclt_openapiPmlIntfStaticLimitGet, scan(kIfNum), out(kStaticLimit)>),
    ROUTE(kPml, METHOD_PUT, "intf-static-limit", "Sets how many static addresses one port may lock",
          Set<rpcclt_openapiPmlIntfStaticLimitSet, scan(kIfNum), body(kStaticLimit)>),
    ROUTE(kPml, METHOD_GET, "intf-dynamic-max-limit", "Reads the highest dynamic address limit one port accepts",
          Read<"pml", rpcclt_openapiPmlIntfDynamicMaxLimitGet, scan(kIfNum), out(kDynamicMaxLimit)>),
    ROUTE(kPml, METHOD_GET, "intf-static-max-limit", "Reads the highest static address limit one port accepts",
          Read<"pml", rpcclt_openapiPmlIntfStaticMaxLimitGet, scan(kIfNum), out(kStaticMaxLimit)>),
    // The count answers under "limit".
    ROUTE(kPml, METHOD_GET, "intf-static-count", "Reads how many static addresses are locked to one port",
          Read<"pml", rpcclt_openapiPmlIntfStaticCountGet, scan(kIfNum), out(kStaticCount)>),
    ROUTE(kPml, METHOD_GET, "intf-violation-trap-mode", "Reads whether one port sends a trap on a MAC locking violation",
          Read<"pml", rpcclt_openapiPmlIntfViolationTrapModeGet, scan(kIfNum), out(kTrapMode, kEnable)>),
    ROUTE(kPml, METHOD_PUT, "intf-violation-trap-mode", "Turns MAC locking violation traps on or off on one port",
          Set<rpcclt_openapiPmlIntfViolationTrapModeSet, scan(kIfNum), bodyIs(kTrapMode, "enable")>),
    ROUTE(kPml, METHOD_GET, "intf-violation-ddisable-mode", "Reads whether a MAC locking violation disables one port",
          Read<"pml", rpcclt_openapiPmlIntfViolationDDisableModeGet, scan(kIfNum), out(kMode, kEnable)>),
    ROUTE(kPml, METHOD_PUT, "intf-violation-ddisable-mode", "Sets whether a MAC locking violation disables one port",
          Set<rpcclt_openapiPmlIntfViolationDDisableModeSet, scan(kIfNum), bodyIs(kMode, "enable")>),
    // Read as "stickyMode", written as "sticky".
    ROUTE(kPml, METHOD_GET, "intf-sticky-mode", "Reads whether one port keeps learned addresses as sticky",
          Read<"pml", rpcclt_openapiPmlIntfStickyModeGet, scan(kIfNum), out(kStickyMode, kEnable)>),
    ROUTE(kPml, METHOD_PUT, "intf-sticky-mode", "Turns sticky learning on or off on one port",
          Set<rpcclt_openapiPmlIntfStickyModeSet, scan(kIfNum), bodyIs(kSticky, "enable")>),
    ROUTE(kPml, METHOD_GET, "intf-trap-frequency", "Reads the shortest time between MAC locking traps of one port",
          Read<"pml", rpcclt_openapiPmlIntfTrapFrequencyGet, scan(kIfNum), out(kTrapInterval)>),
    ROUTE(kPml, METHOD_PUT, "intf-trap-frequency", "Sets the shortest time between MAC locking traps of one port",
          Set<rpcclt_openapiPmlIntfTrapFrequencySet, scan(kIfNum), body(kTrapInterval)>),
    ROUTE(kPml, METHOD_GET, "intf-age-time", "Reads after how long one port's dynamic locked addresses age out",
          Read<"pml", rpcclt_openapiPmlIntfAgeTimeGet, scan(kIfNum), out(kAgeTime)>),
    ROUTE(kPml, METHOD_PUT, "intf-age-time", "Sets after how long one port's dynamic locked addresses age out",
          Set<rpcclt_openapiPmlIntfAgeTimeSet, scan(kIfNum), body(kAgeTime)>),
    ROUTE(kPml, METHOD_GET, "intf-last-violation-addr", "Reads the last address that violated MAC locking on one port",
          Read<"pml", rpcclt_openapiPmlIntfLastViolationAddrGet, scan(kIfNum), outMac(kViolationMacAddr),
               out(kVlanId)>),
    ROUTE(kPml, METHOD_GET, "intf-dynamic-learned-addr-count", "Reads how many dynamic addresses one port has learned",
          Read<"pml", rpcclt_openapiPmlIntfDynamicLearnedAddrCountGet, scan(kIfNum), out(kAddressCount)>),
    ROUTE(kPml, METHOD_GET, "intf-static-learned-addr-count", "Reads how many static addresses one port has learned",
          Read<"pml", rpcclt_openapiPmlIntfStaticLearnedAddrCountGet, scan(kIfNum), out(kAddressCount)>),
    ROUTE(kPml, METHOD_GET, "static-addr-count-by-vlan", "Reads how many static locked addresses one VLAN holds",
          Read<"pml", rpcclt_openapiPmlStaticAddrCountByVlanGet, scan(kVlanId), out(kAddressCount)>),
    ROUTE(kPml, METHOD_GET, "vlan-dynamic-limit", "Reads how many dynamic addresses one VLAN may learn",
          Read<"pml", rpcclt_openapiPmlVlanDynamicLimitGet, scan(kVlanId), out(kVlanDynamicLimit)>),
    ROUTE(kPml, METHOD_PUT, "vlan-dynamic-limit", "Sets how many dynamic addresses one VLAN may learn",
          Set<rpcclt_openapiPmlVlanDynamicLimitSet, scan(kVlanId), body(kVlanDynamicLimit)>),
    ROUTE(kPml, METHOD_GET, "vlan-operational-limit", "Reads the dynamic address limit in force on one VLAN",
          Read<"pml", rpcclt_openapiPmlVlanOperationalLimitGet, scan(kVlanId), out(kVlanOperationalLimit)>),
    // The VLAN violation modes speak "true"/"false", unlike the interface ones.
    ROUTE(kPml, METHOD_GET, "vlan-violation-ddisable-mode",
          "Reads whether a MAC locking violation disables the port on one VLAN",
          Read<"pml", rpcclt_openapiPmlVlanViolationDDisableModeGet, scan(kVlanId), out(kMode, kTrue)>),
    ROUTE(kPml, METHOD_PUT, "vlan-violation-ddisable-mode",
          "Sets whether a MAC locking violation disables the port on one VLAN",
          Set<rpcclt_openapiPmlVlanViolationDDisableModeSet, scan(kVlanId), bodyIs(kMode, "true")>),
    ROUTE(kPml, METHOD_GET, "vlan-violation-trap-mode", "Reads whether one VLAN sends a trap on a MAC locking violation",
          Read<"pml", rpcclt_openapiPmlVlanViolationTrapModeGet, scan(kVlanId), out(kMode, kTrue)>),
    ROUTE(kPml, METHOD_PUT, "vlan-violation-trap-mode", "Turns MAC locking violation traps on or off for one VLAN",
          Set<rpcclt_openapiPmlVlanViolationTrapModeSet, scan(kVlanId), bodyIs(kMode, "true")>),
    ROUTE(kPml, METHOD_GET, "vlan-mode", "Reads whether MAC locking is enabled on one VLAN",
          Read<"pml", rpcclt_openapiPmlVlanModeGet, scan(kVlanId), out(kVlanMode)>),
    ROUTE(kPml, METHOD_PUT, "vlan-mode", "Turns MAC locking on or off for one VLAN",
          Set<rpcclt_openapiPmlVlanModeSet, scan(kVlanId), body(kVlanMode)>),
    ROUTE(kPml, METHOD_GET, "intf-vlan-dynamic-limit", "Reads how many dynamic addresses one port may learn on one VLAN",
          Read<"pml", rpcclt_openapiPmlIntfVlanDynamicLimitGet, scan(kIfNum), scan(kVlanId), out(kIntfVlanDynamicLimit)>),
    ROUTE(kPml, METHOD_PUT, "intf-vlan-dynamic-limit", "Sets how many dynamic addresses one port may learn on one VLAN",
          Set<rpcclt_openapiPmlIntfVlanDynamicLimitSet, scan(kIfNum), scan(kVlanId), body(kIntfVlanDynamicLimit)>),
    ROUTE(kPml, METHOD_GET, "intf-vlan-dynamic-learned-addr-count",
          "Reads how many dynamic addresses one port has learned on one VLAN",
          Read<"pml", rpcclt_openapiPmlIntfVlanDynamicLearnedAddrCountGet, scan(kIfNum), scan(kVlanId),
               out(kAddressCount)>),
    // The walks are POST although the first-entry routes read no body; the
    // static walk's next flag is "isnextEntrySticky".
    ROUTE(kPml, METHOD_POST, "intf-static-entry-get-first", "Reads the first static locked address of one port",
          Read<"pml", rpcclt_openapiPmlIntfStaticEntryGetFirst, scan(kIfNum), outMac(kMacAddr), out(kVlanId),
               out(kIsSticky, kTrue)>),
    ROUTE(kPml, METHOD_POST, "intf-static-entry-get-next",
          "Reads the next static locked address of one port after the given one",
          Read<"pml", rpcclt_openapiPmlIntfStaticEntryGetNext, scan(kIfNum), bodyMac(kMacAddr), scan(kVlanId),
               outMac(kNextMacAddr), out(kNextVlanId), out(kIsnextEntrySticky, kTrue)>),
    ROUTE(kPml, METHOD_POST, "intf-dynamic-entry-get-first", "Reads the first dynamic locked address of one port",
          Read<"pml", rpcclt_openapiPmlIntfDynamicEntryGetFirst, scan(kIfNum), outMac(kMacAddr), out(kVlanId)>),
    ROUTE(kPml, METHOD_POST, "intf-dynamic-entry-get-next",
          "Reads the next dynamic locked address of one port after the given one",
          Read<"pml", rpcclt_openapiPmlIntfDynamicEntryGetNext, scan(kIfNum), bodyMac(kMacAddr), scan(kVlanId),
               outMac(kNextMacAddr), out(kNextVlanId)>),
    // The VLAN-based walk is keyed by the address alone and names its
    // second output "vlanId" in both replies.
    ROUTE(kPml, METHOD_POST, "vlan-dynamic-entry-get-first", "Reads the first dynamic locked address of one VLAN",
          Read<"pml", rpcclt_openapiPmlVlanDynamicEntryGetFirst, scan(kIfNum), outMac(kMacAddr), out(kVlanId)>),
    ROUTE(kPml, METHOD_POST, "vlan-dynamic-entry-get-next",
          "Reads the next dynamic locked address of one VLAN after the given one",
          Read<"pml", rpcclt_openapiPmlVlanDynamicEntryGetNext, scan(kIfNum), bodyMac(kMacAddr),
               outMac(kNextMacAddr), out(kVlanId)>),
    // Added with the address in the body, deleted with it in the query.
    ROUTE(kPml, METHOD_POST, "intf-static-entry", "Adds a static locked address to one port",
          Set<rpcclt_openapiPmlIntfStaticEntryAdd, scan(kIfNum), bodyMac(kMacAddr), scan(kLockedVlanId),
              bodyIs(kSticky, "true")>),
    ROUTE(kPml, METHOD_DELETE, "intf-static-entry", "Removes a static locked address from one port",
          Set<rpcclt_openapiPmlIntfStaticEntryDelete, scan(kIfNum), queryMac(), scan(kLockedVlanId)>),
    NOTED_ROUTE(kPml, METHOD_POST, "intf-dynamic-to-static-move",
                "Turns one port's dynamic locked addresses into static ones",
                "Reads no body.",
                Set<rpcclt_openapiPmlIntfDynamicToStaticMove, scan(kIfNum)>),
    ROUTE(kPml, METHOD_PUT, "dot1qci-stream", "Sets the 802.1Qci stream of a locked address",
          Set<rpcclt_openapiPmlDot1qciStreamSet, scan(kIfNum), bodyMac(kMacAddr), scan(kVlanId), body(kStreamID)>),
    ROUTE(kPml, METHOD_GET, "dot1qci-stream", "Reads the 802.1Qci stream of a locked address",
          Read<"pml", rpcclt_openapiPmlDot1qciStreamGet, scan(kIfNum), queryMac(), scan(kVlanId), out(kStreamID)>),
    ROUTE(kPml, METHOD_DELETE, "dot1qci-stream", "Removes the 802.1Qci stream of a locked address",
          Set<rpcclt_openapiPmlDot1qciStreamDelete, scan(kIfNum), queryMac(), scan(kVlanId), scan(kStreamID)>),

    // D-Disable recovery (second part).
    HANDLER(kIf, METHOD_GET, "ddisable-autorecovery-table-feature-list", recoveryFeatureListHandler,
            kRecoveryFeatureListDoc),
    HANDLER(kIf, METHOD_GET, "ddisable-auto-recovery-time-left", recoveryTimeLeftHandler, kRecoveryTimeLeftDoc),
    ROUTE(kIf, METHOD_GET, "ddisable-reason", "Reading why a port is disabled this way is not supported",
          Fixed<"if", CODE_UNSUPPORTED>),

    // The late interface block: summaries, name lookup and the
    // all-counters reset.
    HANDLER(kIf, METHOD_GET, "status", statusSummaryHandler, kStatusSummaryDoc),
    HANDLER(kIf, METHOD_GET, "counters", counterSummaryHandler, kCounterSummaryDoc),
    HANDLER(kIf, METHOD_GET, "num", nameLookupHandler, kNameLookupDoc),
    HANDLER(kIfAllCounters, METHOD_POST, "reset", allCountersResetHandler, kAllCountersResetDoc),

    // Composite routes that take over earlier keys.
    HANDLER(kIf, METHOD_GET, "admin-state", ifCompositeAdminStateGet, kAdminStateDoc),
    HANDLER(kIf, METHOD_GET, "auto-neg", ifCompositeAutoNegGet, kAutoNegDoc),
    HANDLER(kIf, METHOD_GET, "speed", ifCompositeSpeedGet, kSpeedDoc),
    HANDLER(kIf, METHOD_GET, "mtu-size", ifCompositeMtuSizeGet, kMtuSizeDoc),
    HANDLER(kIf, METHOD_GET, "descr", ifCompositeDescrGet, kDescrDoc),
    HANDLER(kIf, METHOD_GET, "soft-shutdown-state", ifCompositeSoftShutdownGet, kSoftShutdownDoc),
    HANDLER(kIf, METHOD_GET, "intf-fec-mode", ifCompositeFecModeGet, kFecModeDoc),
    HANDLER(kIf, METHOD_GET, "link-trap", ifCompositeLinkTrapGet, kLinkTrapDoc),
    ROUTE(kIf, METHOD_GET, "encapsulation", "Reading a port's encapsulation is not supported",
          Fixed<"if", CODE_UNSUPPORTED>),
    ROUTE(kIf, METHOD_PUT, "encapsulation", "Setting a port's encapsulation is not supported",
          Fixed<"", CODE_UNSUPPORTED, LineEnd::Newline>),
    ROUTE(kIf, METHOD_GET, "phy-properties", "Reading a port's PHY properties is not supported",
          Fixed<"if", CODE_UNSUPPORTED>),
    ROUTE(kIf, METHOD_PUT, "phy-properties", "Setting a port's PHY properties is not supported",
          Fixed<"", CODE_UNSUPPORTED, LineEnd::Newline>),
    HANDLER(kIf, METHOD_GET, "expandable-mode", ifCompositeExpandableModeGet, kExpandableModeDoc),
    HANDLER(kIf, METHOD_PUT, "expandable-mode", ifCompositeExpandableModeSet, kExpandableModeSetDoc),

    // The single-interface counter reset, last of all.
    HANDLER(kIfCounters, METHOD_POST, "reset", counterResetHandler, kCounterResetDoc),
};
const size_t kRouteCount = sizeof kRoutes / sizeof kRoutes[0];

void registerRoutes(RouteTable *table) {
  for (const RouteRow &row : kRoutes)
    httpdAddCContent(table, row.path, row.name, row.method, kRouteAccess, row.handler);
}
