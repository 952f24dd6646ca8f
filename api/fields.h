// The request and reply keys the table rows share, each with what the
// switch reports or takes through it: unit, range, and the meaning of
// each value. A row names one of these instead of spelling the key, and
// the API description reads the text from it; a key that means something
// of its own on one route is declared beside that route's rows, and the
// keys of a hand-written handler beside the handler.
#ifndef API_FIELDS_H
#define API_FIELDS_H

#include "api/route_doc.h"
#include "platform/switch_facts.h"

namespace fields {

// Which interface, VLAN or unit. Three keys, one meaning.
inline constexpr char kInterfaceNumber[] = "The interface number, as the walks give it.";
inline constexpr doc::Field kIfNum{.name = "ifNum", .text = kInterfaceNumber, .unit = &facts::kIdentifier};
inline constexpr doc::Field kIntIfNum{.name = "intIfNum", .text = kInterfaceNumber, .unit = &facts::kIdentifier};
inline constexpr doc::Field kInterface{.name = "interface", .text = kInterfaceNumber, .unit = &facts::kIdentifier};
inline constexpr doc::Field kPrevIfNum{.name = "prevIfNum",
                                       .text = "The interface number the walk continues after; 0 starts at the first.",
                                       .unit = &facts::kIdentifier};
inline constexpr doc::Field kNextIfNum{.name = "nextIfNum",
                                       .text = "The interface number that follows; the walk ends with a non-zero code.",
                                       .unit = &facts::kIdentifier};
inline constexpr doc::Field kFirstIfNum{
    .name = "firstIfNum",
    .text = "The first interface number of the asked type; the walk continues with if/next.",
    .unit = &facts::kIdentifier};
inline constexpr doc::Field kPeerIfNum{
    .name = "peerIfNum", .text = "The interface number of the peer port.", .unit = &facts::kIdentifier};
inline constexpr doc::Field kInterfaceType{.name = "ifType",
                                           .text = "The interface type, by its number.",
                                           .unit = &facts::kCode,
                                           .codes = facts::kInterfaceTypes};
// The same key in a reply, where the type comes by its name.
inline constexpr doc::Field kInterfaceTypeName{
    .name = kInterfaceType.name,
    .text = "The interface type, by its name; \"other\" for a type the switch numbers otherwise.",
    .codes = facts::kInterfaceTypes};
inline constexpr doc::Field kIntf{
    .name = "intf", .text = "The interface number whose name to read.", .unit = &facts::kIdentifier};
inline constexpr doc::Field kIntfName{.name = "intfName", .text = "The interface name, as the port list shows it."};
inline constexpr doc::Field kVlanId{.name = "vlanId", .text = "The VLAN ID.", .unit = &facts::kIdentifier};
inline constexpr doc::Field kNextVlanId{
    .name = "nextVlanId", .text = "The VLAN ID of the next entry.", .unit = &facts::kIdentifier};
inline constexpr doc::Field kUnit{
    .name = "unit", .text = "The stack unit number; absent asks for unit 0.", .unit = &facts::kIdentifier};
inline constexpr doc::Field kRemIndex{.name = "remIndex",
                                      .text = "The index of the link partner's entry in the neighbour table.",
                                      .unit = &facts::kIdentifier};
inline constexpr doc::Field kTimestamp{.name = "timestamp",
                                       .text = "The time stamp of the link partner's entry in the neighbour table.",
                                       .unit = &facts::kIdentifier};

// Interface identity and attributes.
inline constexpr doc::Field kLinkState{.name = "linkState", .text = "\"up\" while the link is up, else \"down\"."};
inline constexpr doc::Field kVal{
    .name = "val",
    .text = "The operational state; \"port_disable\" when the port does not forward (link down or disabled).",
    .codes = facts::kOperationalStates};
inline constexpr doc::Field kIntfActiveState{
    .name = "intfActiveState",
    .text = "1 when the interface is active (its link is up), 0 when it is not.",
    .unit = &facts::kCode};
inline constexpr doc::Field kIfIndex{.name = "ifIndex",
                                     .text = "The interface's index in the SNMP interface table (ifIndex).",
                                     .unit = &facts::kIdentifier};
inline constexpr doc::Field kMaskOffset{.name = "maskOffset",
                                        .text = "The interface's bit position in the switch's configuration masks.",
                                        .unit = &facts::kIdentifier};
inline constexpr doc::Field kIfMacAddr{
    .name = "mac_addr", .text = "The interface's MAC address, as six colon-separated hexadecimal bytes."};
// The switch hands a description over in 256 bytes, its terminating zero
// included: a longer one is cut to 255.
inline constexpr uint32_t kDescrBuffer = 256;
inline constexpr doc::Field kDescrip{.name = "descrip", .text = "The interface's description."};
inline constexpr doc::Field kDeletePending{
    .name = "delete_pending", .text = "1 when the interface is about to be removed, else 0.", .unit = &facts::kCode};
inline constexpr doc::Field kSpeed{.name = "speed",
                                   .text =
                                       "The port's speed and duplex, by the switch's name; "
                                       "\"portctrl_portspeed_unknown\" for a value the switch numbers otherwise.",
                                   .codes = facts::kSpeeds};
inline constexpr doc::Field kDuplexMode{
    .name = "duplex_mode", .text = "The duplex; \"unknown\" for any other value.", .codes = facts::kDuplexModes};
inline constexpr doc::Field kAutoneg{.name = "autoneg",
                                     .text =
                                         "Auto-negotiation in the switch's own sense: 0 turns it on, 1 turns it off "
                                         "(if/auto-neg reads them back as \"enable\" and \"disable\").",
                                     .unit = &facts::kCode};
inline constexpr doc::Field kHeaderSize{
    .name = "headerSize",
    .text = "The bytes of Ethernet header the switch adds to the MTU to make the largest frame.",
    .unit = &facts::kBytes};
inline constexpr doc::Field kMaxFrameSize{.name = "maxFrameSize",
                                          .text = "The largest frame the port accepts.",
                                          .unit = &facts::kBytes,
                                          .range = &facts::kMaxFrameSize};
inline constexpr doc::Field kMtuSize{.name = "mtu_size",
                                     .text = "The MTU; the switch adds the Ethernet header to make the largest frame.",
                                     .unit = &facts::kBytes};
inline constexpr doc::Field kSoftShut{.name = "soft_shut",
                                      .text = "Whether the port is soft shut down: \"enable\" or \"disable\"."};
inline constexpr doc::Field kAdminState{
    .name = "adminState", .text = "Whether the interface is administratively enabled: \"enable\" or \"disable\"."};
inline constexpr doc::Field kLinkTrap{
    .name = "link-trap",
    .text = "\"enable\" when the interface sends link up/down traps, else \"disable\".",
    .type = doc::Type::Text,
    .texts = &kEnable};
inline constexpr doc::Field kPortCapability{.name = "portCapability",
                                            .text =
                                                "The speeds, duplex modes and features the port supports, as a bit "
                                                "mask: each set bit is one of them.",
                                            .unit = &facts::kBitMask,
                                            .bits = facts::kCapabilityBits};
inline constexpr doc::Field kReason{
    .name = "reason",
    .text = "Why the port is disabled: the D-Disable cause or other reason, or \"none\" when the port is not disabled.",
    .codes = facts::kDisableReasons};
inline constexpr doc::Field kOprReason{
    .name = "reason",
    .text =
        "Why the feature is or is not operating on the port, by the switch's name, each with the words "
        "\"reasonStr\" gives it; \"greenethr_invalid_val\" for a reason the switch numbers otherwise.",
    .codes = facts::kGreenReasons};
inline constexpr doc::Field kReasonStr{
    .name = "reasonStr",
    .text = "Why the feature is or is not operating, as the switch words it (for example \"Long Cable\")."};
inline constexpr doc::Field kMediaType{
    .name = "mediaType", .text = "The medium the port uses now; \"none\" without one.", .codes = facts::kMedia};
inline constexpr doc::Field kRxPauseAllowed{
    .name = "rxPauseAllowed", .text = "\"true\" when the port honours received pause frames, else \"false\"."};
inline constexpr doc::Field kTxPauseAllowed{.name = "txPauseAllowed",
                                            .text = "\"true\" when the port may send pause frames, else \"false\"."};
inline constexpr doc::Field kSpecialType{
    .name = "specialType",
    .text =
        "The port's special role: \"trunk_member\" (a LAG member), \"mirrored_port\", \"probe_port\", "
        "\"l2tunnel_port\", \"service_port\", or \"normal\"."};
inline constexpr doc::Field kRootPort{.name = "rootPort",
                                      .text = "The port number of the root port of the expandable port's group.",
                                      .unit = &facts::kIdentifier};
inline constexpr doc::Field kRootSlot{.name = "rootSlot",
                                      .text = "The slot of the root port of the expandable port's group.",
                                      .unit = &facts::kIdentifier};
inline constexpr doc::Field kLaneCount{
    .name = "laneCount", .text = "The number of lanes the port uses.", .unit = &facts::kCount};
inline constexpr doc::Field kExpandPortMode{
    .name = "expandPortMode", .text = "The expansion mode, by the switch's name.", .codes = facts::kExpandModes};
inline constexpr doc::Field kPeerCount{
    .name = "peerCount", .text = "How many peer ports the mode uses.", .unit = &facts::kCount};
inline constexpr doc::Field kPeerIntfs{.name = "peerIntfs",
                                       .text = "The peer ports the mode uses, as the switch lists them."};
inline constexpr doc::Field kFecMode{.name = "fecMode",
                                     .text = "The forward error correction mode to set, by the switch's name.",
                                     .codes = facts::kFecModes};
inline constexpr doc::Field kFecConfigMode{
    .name = "fecConfigMode",
    .text = "The configured forward error correction mode, by the switch's name.",
    .codes = facts::kFecModes};
inline constexpr doc::Field kFecOperMode{
    .name = "fecOperMode",
    .text = "The forward error correction mode in operation, by the switch's name.",
    .codes = facts::kFecModes};
inline constexpr doc::Field kIfStatus{
    .name = "ifStatus", .text = "\"attached\" when the interface is attached to the switch, else \"none\"."};

// Counters.
inline constexpr doc::Field kValue{
    .name = "value",
    .text = "The counter: octets or packets since the port's counters were last cleared, in 32 bits that wrap to 0.",
    .unit = &facts::kCounted};
// The two halves of one duration, which the API never joins.
inline constexpr doc::Field kHigh{.name = "high",
                                  .text =
                                      "The upper 32 bits of the time the port's transmitter (tx-duration) or "
                                      "receiver (rx-duration) spent in low-power idle.",
                                  .unit = &facts::kMicroseconds};
inline constexpr doc::Field kLow{.name = "low",
                                 .text =
                                     "The lower 32 bits of the time the port's transmitter (tx-duration) or "
                                     "receiver (rx-duration) spent in low-power idle.",
                                 .unit = &facts::kMicroseconds};

// Cable test.
inline constexpr doc::Field kCableTestStatus{.name = "cableStatus",
                                             .text = "The result of the cable test; \"untested\" when none ran.",
                                             .codes = facts::kCableStatuses};
inline constexpr doc::Field kLengthKnown{
    .name = "lengthKnown",
    .text = "1 when the cable test could estimate the cable's length, 0 when it could not.",
    .unit = &facts::kCode};
inline constexpr doc::Field kShortestLength{.name = "shortestLength",
                                            .text =
                                                "The shortest estimate of the cable's length; 0 "
                                                "when the length is not known.",
                                            .unit = &facts::kMetres};
inline constexpr doc::Field kLongestLength{.name = "longestLength",
                                           .text =
                                               "The longest estimate of the cable's length; 0 "
                                               "when the length is not known.",
                                           .unit = &facts::kMetres};
inline constexpr doc::Field kCableFailureLength{
    .name = "cableFailureLength",
    .text = "How far along the cable the fault (open or short) lies; 0 when the cable has none.",
    .unit = &facts::kMetres};

// Interface application and LEDs.
inline constexpr doc::Field kTimeRange{
    .name = "timeRange", .text = "The name of the time range; the switch refuses a name longer than it keeps."};
inline constexpr doc::Field kIsRGBLedColorSupported{.name = "isRGBLedColorSupported",
                                                    .text = "\"true\" when the port has a colour LED, else \"false\"."};
inline constexpr doc::Field kColor{
    .name = "color",
    .text = "The LED colour: 0 off, 1 red, 2 green, 3 blue, 4 yellow, 5 cyan, 6 magenta, 7 white.",
    .unit = &facts::kCode,
    .range = &facts::kLedColour};
inline constexpr doc::Field kBrightness{
    .name = "brightness", .text = "The LED brightness.", .unit = &facts::kPercent, .range = &facts::kLedBrightness};

// Green Ethernet and EEE.
inline constexpr doc::Field kMode{.name = "mode", .text = "Whether the feature is on, in the texts the route lists."};
inline constexpr doc::Field kValid{.name = "valid",
                                   .text = "Whether the port supports the feature: \"true\" or \"false\"."};
inline constexpr doc::Field kAdminMode{.name = "adminMode",
                                       .text = "Whether the feature is enabled: \"enable\" or \"disable\"."};
inline constexpr doc::Field kOprStatus{.name = "oprStatus",
                                       .text = "\"true\" when the feature is operating on the port, else \"false\"."};
inline constexpr doc::Field kDllEnable{
    .name = "enable", .text = "\"true\" when data link layer negotiation of EEE timing is enabled, else \"false\"."};
inline constexpr doc::Field kReady{
    .name = "ready", .text = "\"true\" when the data link layer is ready for EEE timing negotiation, else \"false\"."};
inline constexpr doc::Field kEeeTxIdleTime{
    .name = "eeeTxIdleTime",
    .text = "How long the transmitter stays idle before the port enters low-power idle.",
    .unit = &facts::kMicroseconds};
inline constexpr doc::Field kEeeTxWakeTime{
    .name = "eeeTxWakeTime", .text = "The transmit wake time.", .unit = &facts::kMicroseconds};
inline constexpr doc::Field kDays{.name = "days", .text = "Whole days.", .unit = &facts::kDays};
inline constexpr doc::Field kHours{.name = "hours", .text = "Hours past the whole days.", .unit = &facts::kHours};
inline constexpr doc::Field kMinutes{
    .name = "minutes", .text = "Minutes past the whole hours.", .unit = &facts::kMinutes};
inline constexpr doc::Field kSeconds{
    .name = "seconds", .text = "Seconds past the whole minutes.", .unit = &facts::kSeconds};
inline constexpr doc::Field kLpiTotalTime{
    .name = "lpiTotalTime", .text = "The total time all ports spent in low-power idle.", .unit = &facts::kSeconds};
inline constexpr doc::Field kTxTwsys{
    .name = "txTwsys", .text = "The local transmit wake time (Tw_sys_tx).", .unit = &facts::kMicroseconds};
inline constexpr doc::Field kRxTwsys{
    .name = "rxTwsys", .text = "The local receive wake time (Tw_sys_rx).", .unit = &facts::kMicroseconds};
inline constexpr doc::Field kFbTwsys{
    .name = "fbTwsys", .text = "The local fallback wake time.", .unit = &facts::kMicroseconds};
inline constexpr doc::Field kEchoTxTwsys{
    .name = "echoTxTwsys", .text = "The transmit wake time echoed to the partner.", .unit = &facts::kMicroseconds};
inline constexpr doc::Field kEchoRxTwsys{
    .name = "echoRxTwsys", .text = "The receive wake time echoed to the partner.", .unit = &facts::kMicroseconds};
inline constexpr doc::Field kRemTxTwsys{
    .name = "remTxTwsys", .text = "The partner's transmit wake time.", .unit = &facts::kMicroseconds};
inline constexpr doc::Field kRemTxTwsysEcho{
    .name = "remTxTwsysEcho", .text = "The transmit wake time the partner echoes.", .unit = &facts::kMicroseconds};
inline constexpr doc::Field kRemRxTwsys{
    .name = "remRxTwsys", .text = "The partner's receive wake time.", .unit = &facts::kMicroseconds};
inline constexpr doc::Field kRemRxTwsysEcho{
    .name = "remRxTwsysEcho", .text = "The receive wake time the partner echoes.", .unit = &facts::kMicroseconds};
inline constexpr doc::Field kRemFbTwsys{
    .name = "remFbTwsys", .text = "The partner's fallback wake time.", .unit = &facts::kMicroseconds};
inline constexpr doc::Field kTwSysTx{
    .name = "twSysTx", .text = "The transmit wake time.", .unit = &facts::kMicroseconds};
inline constexpr doc::Field kTwSysTxEcho{
    .name = "twSysTxEcho", .text = "The echoed transmit wake time.", .unit = &facts::kMicroseconds};
inline constexpr doc::Field kTwSysRx{
    .name = "twSysRx", .text = "The receive wake time.", .unit = &facts::kMicroseconds};
inline constexpr doc::Field kTwSysRxEcho{
    .name = "twSysRxEcho", .text = "The echoed receive wake time.", .unit = &facts::kMicroseconds};
inline constexpr doc::Field kTwSysTxFallback{
    .name = "twSysTxFallback", .text = "The fallback transmit wake time.", .unit = &facts::kMicroseconds};
inline constexpr doc::Field kTxDllEnabled{.name = "txDllEnabled",
                                          .text = "1 when transmit data link layer negotiation is enabled, else 0.",
                                          .unit = &facts::kCode};
inline constexpr doc::Field kTxDllReady{
    .name = "txDllReady", .text = "1 when the transmit data link layer is ready, else 0.", .unit = &facts::kCode};
inline constexpr doc::Field kRxDllEnabled{.name = "rxDllEnabled",
                                          .text = "1 when receive data link layer negotiation is enabled, else 0.",
                                          .unit = &facts::kCode};
inline constexpr doc::Field kRxDllReady{
    .name = "rxDllReady", .text = "1 when the receive data link layer is ready, else 0.", .unit = &facts::kCode};
inline constexpr doc::Field kFeatureString{.name = "featureString",
                                           .text = "The green Ethernet features the switch supports, as text."};
inline constexpr doc::Field kPwrConsumption{
    .name = "pwrConsumption", .text = "The estimated power use.", .unit = &facts::kMilliwatts};
// The switch's estimates of what power saving brought: energy since the
// counters were cleared, and the share of the draw saved now.
inline constexpr doc::Field kCumulativeSaving{
    .name = "pwrSaving",
    .text =
        "The energy the estimate says power saving has spared since the port's or the switch's counters were "
        "cleared.",
    .unit = &facts::kMilliwattHours};
inline constexpr doc::Field kSavingShare{.name = "pwrSaving",
                                         .text = "The share of the switch's draw that power saving spares now.",
                                         .unit = &facts::kPercent,
                                         .range = &facts::kPercentage};
inline constexpr doc::Field kSampleInterval{
    .name = "sampleInterval",
    .text = "The interval between history samples; one value for the whole switch.",
    .unit = &facts::kMinutes,
    .range = &facts::kLpiSampleInterval};
inline constexpr doc::Field kMaxSamples{
    .name = "maxSamples",
    .text = "How many history samples each port keeps; one value for the whole switch.",
    .unit = &facts::kCount,
    .range = &facts::kLpiMaxSamples};

// Port MAC locking.
inline constexpr doc::Field kIntfMode{.name = "intfMode", .text = "MAC locking on the port."};
inline constexpr doc::Field kIsValid{.name = "isValid",
                                     .text = "\"true\" when the port supports MAC locking, else \"false\"."};
inline constexpr doc::Field kTrapMode{
    .name = "trapMode", .text = "Whether the port sends a trap on a violation: \"enable\" or \"disable\"."};
inline constexpr doc::Field kStickyMode{
    .name = "stickyMode", .text = "Whether the port keeps learned addresses as sticky: \"enable\" or \"disable\"."};
inline constexpr doc::Field kSticky{.name = "sticky", .text = "Whether the address is sticky."};
inline constexpr doc::Field kIsSticky{.name = "isSticky", .text = "\"true\" when the entry is sticky, else \"false\"."};
inline constexpr doc::Field kIsnextEntrySticky{.name = "isnextEntrySticky",
                                               .text = "\"true\" when the next entry is sticky, else \"false\"."};
inline constexpr doc::Field kAgeTime{.name = "ageTime",
                                     .text = "How long a dynamic locked address stays before it ages out.",
                                     .unit = &facts::kMinutes,
                                     .range = &facts::kLockAgeTime};
inline constexpr doc::Field kMacAddr{
    .name = "macAddr", .text = "A MAC address, as six colon-separated hexadecimal bytes (00:1B:21:3A:4F:92)."};
inline constexpr doc::Field kNextMacAddr{
    .name = "nextMacAddr", .text = "The MAC address of the next entry, as six colon-separated hexadecimal bytes."};
inline constexpr doc::Field kStreamID{
    .name = "streamID", .text = "The 802.1Qci stream ID.", .unit = &facts::kIdentifier, .range = &facts::kStreamId};

}  // namespace fields

#endif
