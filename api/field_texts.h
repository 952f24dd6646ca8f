// What each query parameter, body key and reply key of the routes means,
// for the API document's descriptions and ranges. One table keyed by the
// field's name serves every route that uses it; a route on which the same
// name means something else names its own text below. The registration
// list refuses to build while any field it uses has no text here.
#ifndef API_FIELD_TEXTS_H
#define API_FIELD_TEXTS_H

#include <stdint.h>

#include <iterator>

namespace doc {

inline constexpr int64_t kNoBound = INT64_MIN;

struct FieldText {
  const char *name;
  const char *text;
  int64_t minimum = kNoBound;  // the least value the switch accepts
  int64_t maximum = kNoBound;  // the greatest value the switch accepts
};

// Units are part of the text. Interface numbers are the ones the walks (if/first, if/next and the
// per-feature next-port routes) hand out.
inline constexpr FieldText kFieldTexts[] = {
    // Which interface, VLAN or unit.
    {"ifNum", "The interface number, as the walks give it."},
    {"intIfNum", "The interface number, as the walks give it."},
    {"interface", "The interface number, as the walks give it."},
    {"prevIfNum", "The interface number the walk continues after; 0 starts at the first."},
    {"nextIfNum", "The interface number that follows; the walk ends with a failure code."},
    {"firstIfNum", "The first interface number of the asked type."},
    {"peerIfNum", "The interface number of the peer port."},
    {"ifType", "The interface type: physical ports, LAGs, VLAN interfaces and so on, as the switch numbers them."},
    {"intf", "The interface name, as the port list shows it (for example 0/5)."},
    {"name", "The interface name: 0/5, lag2, vlan10, or all."},
    {"intfName", "The interface name, as the port list shows it."},
    {"number", "The interface number behind the name."},
    {"interfaces", "The interfaces whose names match."},
    {"vlanId", "The VLAN ID."},
    {"nextVlanId", "The VLAN ID of the next entry."},
    {"unit", "The stack unit number; absent asks for unit 0."},
    {"remIndex", "The index of the link partner's entry in the neighbour table."},
    {"timestamp", "The time stamp of the link partner's entry in the neighbour table."},
    // Interface attributes.
    {"linkState", "Whether the link is up."},
    {"link-state", "Whether the link is up."},
    {"val", "The operational state of the interface."},
    {"intfActiveState", "Whether the interface is active."},
    {"ifIndex", "The SNMP ifIndex of the interface."},
    {"maskOffset", "The interface's offset in configuration masks."},
    {"size", "The size in bytes."},
    {"mac_addr", "The interface's MAC address."},
    {"description", "The interface's description."},
    {"descrip", "The new description of the interface."},
    {"delete_pending", "Whether the interface is about to be removed."},
    {"speed", "The port speed and duplex."},
    {"speed-mode", "The configured speed and duplex."},
    {"configured-speed", "The configured speed, in Mbit/s."},
    {"configured-duplex", "The configured duplex."},
    {"operational-speed", "The speed the link runs at, in Mbit/s; 0 while the link is down."},
    {"operational-duplex", "The duplex the link runs at."},
    {"duplex_mode", "The duplex mode."},
    {"autoneg", "Turns auto-negotiation on or off."},
    {"auto-negotiate", "Whether auto-negotiation is on."},
    {"headerSize", "The size of an Ethernet header in bytes."},
    {"ethernet-header-size", "The size of an Ethernet header in bytes."},
    {"maxFrameSize", "The largest frame the port accepts, in bytes.", 1518, 9216},
    {"max-frame-size", "The largest frame the port accepts, in bytes."},
    {"mtu", "The MTU: the largest frame less the Ethernet header, in bytes."},
    {"mtu_size", "The MTU in bytes; the switch adds the Ethernet header to make the largest frame."},
    {"soft_shut", "Turns soft shutdown on or off."},
    {"soft-shutdown", "Whether the port is soft shut down."},
    {"adminState", "Enables or disables the interface."},
    {"admin-state", "Whether the interface is administratively enabled."},
    {"link-trap", "Whether the interface sends link up/down traps."},
    {"portCapability", "The speeds and features the port supports, as a bit mask."},
    {"reason", "Why the port is disabled, or why the feature is not operating."},
    {"reasonStr", "Why the feature is or is not operating, as text."},
    {"mediaType", "The media the port uses now: copper or fibre."},
    {"rxPauseAllowed", "Whether the port honours received pause frames."},
    {"txPauseAllowed", "Whether the port may send pause frames."},
    {"specialType", "The special type of the port, if any."},
    {"rootPort", "The root port of the expandable port's group."},
    {"rootSlot", "The slot of the root port."},
    {"laneCount", "The number of lanes."},
    {"expandPortMode", "The expansion mode: how many lanes of which speed the port splits into."},
    {"expandable-config-mode", "The configured lane mode of the expandable port."},
    {"expandable-oper-mode", "The lane mode the expandable port runs in."},
    {"isExpandedModeSupported", "Whether the switch supports the mode."},
    {"peerCount", "How many peer ports the mode uses."},
    {"peerIntfs", "The peer ports the mode uses."},
    {"fecMode", "The forward error correction mode to set."},
    {"fec-mode", "The configured forward error correction mode."},
    {"fec-oper", "The forward error correction mode in operation."},
    {"fecConfigMode", "The configured forward error correction mode."},
    {"fecOperMode", "The forward error correction mode in operation."},
    {"ifStatus", "Whether the interface is attached."},
    // Counters.
    {"value", "The counter's value."},
    {"count", "The number of events or entries."},
    {"high", "The upper 32 bits of the value."},
    {"low", "The lower 32 bits of the value."},
    {"total-bytes-received", "Octets received."},
    {"total-bytes-transmitted", "Octets sent."},
    {"unicast-packets-received", "Unicast packets received."},
    {"unicast-packets-transmitted", "Unicast packets sent."},
    {"total-receive-drops", "Received packets discarded."},
    {"total-transmit-drops", "Outgoing packets discarded."},
    {"total-packets-received-with-errors", "Received packets with errors."},
    {"total-transmit-errors", "Outgoing packets with errors."},
    // Cable test.
    {"cableStatus", "The result of the cable test."},
    {"lengthKnown", "Whether the switch could estimate the cable length."},
    {"shortestLength", "The shortest estimate of the cable length, as the switch reports it."},
    {"longestLength", "The longest estimate of the cable length, as the switch reports it."},
    {"cableFailureLength", "How far along the cable the fault is, as the switch reports it."},
    // D-Disable.
    {"interval", "The auto-recovery interval in seconds.", 30, 86400},
    {"cause", "The D-Disable cause."},
    {"featureList", "The D-Disable causes auto-recovery knows, joined by \",\"."},
    {"timeLeft", "Seconds until the next auto-recovery."},
    // Interface application and LEDs.
    {"timeRange", "The name of the time range; up to 31 characters."},
    {"isRGBLedColorSupported", "Whether the port has a colour LED."},
    {"color", "The LED colour: 0 off, then red, green, blue, yellow, cyan, magenta, white.", 0, 7},
    {"brightness", "The LED brightness in percent.", 0, 100},
    {"mode", "Whether the feature is on."},
    // Green Ethernet and EEE.
    {"valid", "Whether the port supports the feature."},
    {"adminMode", "Whether the feature is enabled."},
    {"oprStatus", "Whether the feature is operating on the port."},
    {"enable", "Whether the data link layer negotiation is enabled."},
    {"ready", "Whether the data link layer is ready."},
    {"eeeTxIdleTime", "The time the transmitter stays idle before the port enters low-power idle."},
    {"eeeTxWakeTime", "The transmit wake time, in microseconds."},
    {"days", "Whole days."},
    {"hours", "Hours past the whole days."},
    {"minutes", "Minutes past the whole hours."},
    {"seconds", "Seconds past the whole minutes."},
    {"lpiTotalTime", "The total time in low-power idle."},
    {"txTwsys", "The local transmit wake time (Tw_sys_tx), in microseconds."},
    {"rxTwsys", "The local receive wake time (Tw_sys_rx), in microseconds."},
    {"fbTwsys", "The local fallback wake time, in microseconds."},
    {"echoTxTwsys", "The transmit wake time echoed to the partner, in microseconds."},
    {"echoRxTwsys", "The receive wake time echoed to the partner, in microseconds."},
    {"remTxTwsys", "The partner's transmit wake time, in microseconds."},
    {"remTxTwsysEcho", "The transmit wake time the partner echoes, in microseconds."},
    {"remRxTwsys", "The partner's receive wake time, in microseconds."},
    {"remRxTwsysEcho", "The receive wake time the partner echoes, in microseconds."},
    {"remFbTwsys", "The partner's fallback wake time, in microseconds."},
    {"twSysTx", "The transmit wake time, in microseconds."},
    {"twSysTxEcho", "The echoed transmit wake time, in microseconds."},
    {"twSysRx", "The receive wake time, in microseconds."},
    {"twSysRxEcho", "The echoed receive wake time, in microseconds."},
    {"twSysTxFallback", "The fallback transmit wake time, in microseconds."},
    {"txDllEnabled", "Whether transmit data link layer negotiation is enabled."},
    {"txDllReady", "Whether the transmit data link layer is ready."},
    {"rxDllEnabled", "Whether receive data link layer negotiation is enabled."},
    {"rxDllReady", "Whether the receive data link layer is ready."},
    {"featureString", "The green Ethernet features the switch supports, as text."},
    {"pwrConsumption", "The estimated power use, as the switch reports it."},
    {"pwrSaving", "The estimated power saving."},
    {"sampleInterval", "The interval between history samples, switch-wide.", 1, 36000},
    {"maxSamples", "How many history samples are kept, switch-wide.", 1, 8192},
    {"sampleNo", "The number of the history record."},
    {"curSample", "The number of the history record the walk continues after."},
    {"sampleTime", "When the sample was taken."},
    {"percentLpiTime", "The share of the sample interval the port spent in low-power idle, in percent."},
    {"percentLpiTimeTotal", "The share of all time the port spent in low-power idle, in percent."},
    // Port MAC locking.
    {"intfMode", "Turns MAC locking on or off on the port."},
    {"isValid", "Whether the port supports MAC locking."},
    {"limit", "The address limit."},
    {"trapMode", "Whether the port sends violation traps."},
    {"stickyMode", "Whether learned addresses are kept as sticky."},
    {"sticky", "Whether the address is sticky."},
    {"isSticky", "Whether the entry is sticky."},
    {"isnextEntrySticky", "Whether the next entry is sticky."},
    {"ageTime", "After how many minutes dynamic locked addresses age out.", 0, 1440},
    {"macAddr", "The MAC address."},
    {"nextMacAddr", "The MAC address of the next entry."},
    {"streamID", "The 802.1Qci stream ID.", 1, 2047},
};

// Where a name means something of its own on one route.
struct RouteFieldText {
  const char *route;
  FieldText text;
};

inline constexpr RouteFieldText kRouteFieldTexts[] = {
    {"intf-trap-frequency", {"interval", "The shortest time between violation traps, in seconds.", 0, 1000000}},
    {"intf-dynamic-limit", {"limit", "How many dynamic addresses the port may learn.", 0, 4096}},
    {"intf-dynamic-max-limit", {"limit", "The highest dynamic address limit the port accepts."}},
    {"intf-static-limit", {"limit", "How many static addresses the port may lock.", 0, 64}},
    {"intf-static-max-limit", {"limit", "The highest static address limit the port accepts."}},
    {"intf-static-count", {"limit", "How many static addresses are locked to the port."}},
    {"vlan-dynamic-limit", {"limit", "How many dynamic addresses the VLAN may learn.", 0, 4096}},
    {"vlan-operational-limit", {"limit", "The dynamic address limit in force on the VLAN."}},
    {"intf-vlan-dynamic-limit", {"limit", "How many dynamic addresses the port may learn on the VLAN.", 0, 4096}},
    {"intf-static-entry", {"vlanId", "The VLAN ID of the address.", 1, 4093}},
    {"vlan-mode", {"mode", "VLAN-based MAC locking: 0 off, 1 on.", 0, 1}},
    {"time-since-last-stats-reset", {"value", "Seconds since the statistics were cleared."}},
    {"last-change", {"value", "When the interface last changed state."}},
    {"mac-addr-size", {"size", "The size of a MAC address in bytes."}},
    {"descr-size", {"size", "The longest description, in characters."}},
};

// What more an operation's caller needs to know than its summary says,
// keyed by route name: the operation's description begins with it.
struct RouteNote {
  const char *route;
  const char *text;
};

inline constexpr RouteNote kRouteNotes[] = {
    {"first", "Start of the walk over the interfaces of one type; \"next\" continues it."},
    {"next", "Pass the type and the last interface number; the walk ends when the reply carries a non-zero code."},
    {"valid-intf-next", "prevIfNum 0 starts at the first port; the walk ends when the reply carries a non-zero code."},
    {"intf-expandable-port-next", "The walk ends when the reply carries a non-zero code."},
    {"next-valid-intf", "The walk ends when the reply carries a non-zero code."},
    {"cable-status", "Runs the switch's copper cable test on the port; lengths are in the switch's own units."},
    {"ethr-eee-lpi-history-intf-sample-interval", "Reads or sets no interface: one value for the whole switch."},
    {"ethr-eee-lpi-history-intf-max-samples", "Reads or sets no interface: one value for the whole switch."},
    {"features-supported", "With no unit, asks for unit 0."},
    {"intf-dynamic-to-static-move", "Reads no body."},
};

constexpr bool sameName(const char *a, const char *b) {
  while (*a && *a == *b) ++a, ++b;
  return *a == *b;
}

// The text of a field on a route: the route's own, else the shared one.
constexpr const FieldText *fieldText(const char *route, const char *field) {
  for (const RouteFieldText &r : kRouteFieldTexts)
    if (sameName(r.route, route) && sameName(r.text.name, field)) return &r.text;
  for (const FieldText &f : kFieldTexts)
    if (sameName(f.name, field)) return &f;
  return nullptr;
}

// The note of a route, or null.
constexpr const char *routeNote(const char *route) {
  for (const RouteNote &n : kRouteNotes)
    if (sameName(n.route, route)) return n.text;
  return nullptr;
}

}  // namespace doc

#endif
