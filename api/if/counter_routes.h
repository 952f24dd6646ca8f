// Traffic counters and the per-port status summary the port list shows,
// for one interface or every physical one, and the counter resets.
#ifndef API_IF_COUNTER_ROUTES_H
#define API_IF_COUNTER_ROUTES_H

#include <cjson/cJSON.h>
#include <stdint.h>

#include "api/if/port_fields.h"
#include "api/route_kit.h"

// One counter of the interface named by the loose "interface" lookup.
template <auto Call>
using CounterRead = kit::Read<"if", Call, kit::lookup("interface"), kit::out("value")>;

// New objects owned by the caller; a counter or attribute whose call
// fails reads 0, "", "disable" or null instead of failing the object.
cJSON *buildCounterSummary(uint32_t ifNum);
cJSON *buildStatusSummary(uint32_t ifNum);

uint32_t counterSummaryHandler(void);
uint32_t statusSummaryHandler(void);
uint32_t counterResetHandler(void);
uint32_t allCountersResetHandler(void);

namespace port_doc {
inline constexpr doc::Field kCounterFields[] = {kInterface,
                                                {"total-bytes-received"},
                                                {"total-bytes-transmitted"},
                                                {"unicast-packets-received"},
                                                {"unicast-packets-transmitted"},
                                                {"total-receive-drops"},
                                                {"total-transmit-drops"},
                                                {"total-packets-received-with-errors"},
                                                {"total-transmit-errors"}};
inline constexpr doc::Field kStatusFields[] = {kInterface,
                                               {"admin-state", doc::Type::Text, nullptr, "down"},
                                               {"link-state", doc::Type::Text, nullptr, "down"},
                                               {"auto-negotiate", doc::Type::Text, nullptr, "enable"},
                                               kConfiguredSpeed,
                                               kOperationalSpeed,
                                               kSpeedMode,
                                               kConfiguredDuplex,
                                               kMtu,
                                               kMaxFrameSize,
                                               kEthernetHeaderSize,
                                               kDescription,
                                               kSoftShutdown,
                                               kFecMode,
                                               kLinkTrap,
                                               kConfigLanes,
                                               kOperLanes};
}  // namespace port_doc

// One port's object, or every physical port's in a list when "ifNum" is 0 or absent.
inline constexpr doc::HandDoc kCounterSummaryDoc = doc::readPorts("Reads the traffic counters of one port or of every port", "if",
                                                                  port_doc::kAnyPortQuery, port_doc::kCounterFields);
inline constexpr doc::HandDoc kStatusSummaryDoc = doc::readPorts(
    "Reads the port list's status of one port or of every port", "if", port_doc::kAnyPortQuery, port_doc::kStatusFields);
inline constexpr doc::HandDoc kCounterResetDoc =
    doc::set("Clears one port's counters (no port: 10003)", port_doc::kPortQuery, {});
inline constexpr doc::HandDoc kAllCountersResetDoc = doc::set("Clears every interface's counters", {}, {});

#endif
