// Traffic counters and the per-port status summary the port list shows,
// for one interface or every physical one, and the counter resets.
#ifndef API_IF_COUNTER_ROUTES_H
#define API_IF_COUNTER_ROUTES_H

#include <cjson/cJSON.h>
#include <stdint.h>

#include "api/fields.h"
#include "api/if/port_fields.h"
#include "api/route_kit.h"

// One counter of the interface named by the loose "interface" lookup.
template <auto Call>
using CounterRead = kit::Read<"if", Call, kit::lookup(fields::kInterface), kit::out(fields::kValue)>;

// New objects owned by the caller; a counter or attribute whose call
// fails reads 0, "", "disable" or null instead of failing the object.
cJSON *buildCounterSummary(uint32_t ifNum);
cJSON *buildStatusSummary(uint32_t ifNum);

uint32_t counterSummaryHandler(void);
uint32_t statusSummaryHandler(void);
uint32_t counterResetHandler(void);
uint32_t allCountersResetHandler(void);

namespace port_doc {
// Each counts since the port's counters were last cleared, in 32 bits that wrap; 0 when the switch does not answer.
inline constexpr doc::Field kBytesReceived{
    .name = "total-bytes-received", .text = "Octets received.", .unit = &facts::kBytes};
inline constexpr doc::Field kBytesSent{
    .name = "total-bytes-transmitted", .text = "Octets sent.", .unit = &facts::kBytes};
inline constexpr doc::Field kUnicastReceived{
    .name = "unicast-packets-received", .text = "Unicast packets received.", .unit = &facts::kPackets};
inline constexpr doc::Field kUnicastSent{
    .name = "unicast-packets-transmitted", .text = "Unicast packets sent.", .unit = &facts::kPackets};
inline constexpr doc::Field kReceiveDrops{
    .name = "total-receive-drops", .text = "Received packets discarded.", .unit = &facts::kPackets};
inline constexpr doc::Field kTransmitDrops{
    .name = "total-transmit-drops", .text = "Outgoing packets discarded.", .unit = &facts::kPackets};
inline constexpr doc::Field kReceiveErrors{
    .name = "total-packets-received-with-errors", .text = "Received packets with errors.", .unit = &facts::kPackets};
inline constexpr doc::Field kTransmitErrors{
    .name = "total-transmit-errors", .text = "Outgoing packets with errors.", .unit = &facts::kPackets};
inline constexpr doc::Field kCounterFields[] = {kInterface,     kBytesReceived, kBytesSent,     kUnicastReceived,
                                                kUnicastSent,   kReceiveDrops,  kTransmitDrops, kReceiveErrors,
                                                kTransmitErrors};

// The status summary does not ask the switch for these: a client reads them through the single-attribute routes.
inline constexpr doc::Field kFixedAdminState{
    .name = kAdminState.name,
    .text = "Always \"down\", whatever the port's state: GET if/admin-state reads it.",
    .type = doc::Type::Text,
    .words = "down"};
inline constexpr doc::Field kFixedLinkState{
    .name = "link-state",
    .text = "Always \"down\", whatever the port's state: GET if/link-state reads it.",
    .type = doc::Type::Text,
    .words = "down"};
inline constexpr doc::Field kFixedAutoNegotiate{
    .name = kAutoNegotiate.name,
    .text = "Always \"enable\", whatever the port's setting: GET if/auto-neg reads it.",
    .type = doc::Type::Text,
    .words = "enable"};
inline constexpr doc::Field kStatusFields[] = {kInterface,
                                               kFixedAdminState,
                                               kFixedLinkState,
                                               kFixedAutoNegotiate,
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
                                               fields::kLinkTrap,
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
