// The fields of the port settings page: the status summary lists them for
// every port, and the composite routes answer them a few at a time. Each
// adds its keys to `o` in the page's order; a call that fails reads as its
// fallback (0, "", "disable", null) instead of failing the reply.
#ifndef API_IF_PORT_FIELDS_H
#define API_IF_PORT_FIELDS_H

#include <cjson/cJSON.h>
#include <stdint.h>

#include "api/fields.h"
#include "api/if/attribute_texts.h"
#include "api/route_doc.h"
#include "open_api.h"

// The page's keys, as the handlers write them and the API description
// shows them.
namespace port_doc {
inline constexpr doc::Field kInterface{
    .name = fields::kInterface.name, .text = "The interface number the object describes.", .unit = &facts::kIdentifier};
inline constexpr doc::Field kAdminState{.name = "admin-state",
                                        .text = "\"up\" when the port is administratively enabled, else \"down\".",
                                        .type = doc::Type::Text,
                                        .texts = &kIfUpDown};
inline constexpr doc::Field kAutoNegotiate{.name = "auto-negotiate",
                                           .text = "\"enable\" when the port negotiates speed and duplex, else "
                                                   "\"disable\".",
                                           .type = doc::Type::Text,
                                           .texts = &kIfAutoNegotiate};
inline constexpr doc::Field kConfiguredSpeed{
    .name = "configured-speed",
    .text = "Always \"unknown\": the configured speed is \"speed-mode\".",
    .type = doc::Type::Text,
    .words = "unknown"};
inline constexpr doc::Field kOperationalSpeed{
    .name = "operational-speed",
    .text = "The same text as \"speed-mode\", from the same speed-mode setting: the configured speed in Mbit/s, "
            "not the speed the link runs at, and it stays while the link is down.",
    .type = doc::Type::Text,
    .texts = &kIfSpeedMbit};
inline constexpr doc::Field kSpeedMode{
    .name = "speed-mode",
    .text = "The port's speed-mode setting in Mbit/s (\"10\" to \"400000\"); \"auto\" when the port negotiates its "
            "speed, \"unknown\" when the switch names no speed.",
    .type = doc::Type::Text,
    .texts = &kIfSpeedMbit};
inline constexpr doc::Field kConfiguredDuplex{
    .name = "configured-duplex", .text = "Always \"auto\".", .type = doc::Type::Text, .words = "auto"};
inline constexpr doc::Field kOperationalDuplex{
    .name = "operational-duplex", .text = "Always \"unknown\".", .type = doc::Type::Text, .words = "unknown"};
inline constexpr doc::Field kMtu{
    .name = "mtu", .text = "Always 0: the MTU is set through PUT if/mtu-size, not read here.", .unit = &facts::kBytes};
inline constexpr doc::Field kMaxFrameSize{.name = "max-frame-size",
                                          .text = "Always 0: the largest frame is read through GET if/max-frame-size.",
                                          .unit = &facts::kBytes};
inline constexpr doc::Field kEthernetHeaderSize{
    .name = "ethernet-header-size",
    .text =
        "The bytes of Ethernet header the switch adds to the MTU to make the largest frame; 0 when the switch "
        "does not answer.",
    .unit = &facts::kBytes};
inline constexpr doc::Field kDescription{
    .name = "description",
    .text = "The port's description, up to 255 bytes; empty when it has none.",
    .type = doc::Type::Text};
inline constexpr doc::Field kSoftShutdown{
    .name = "soft-shutdown",
    .text = "\"enable\" when the port is soft shut down, else \"disable\".",
    .type = doc::Type::Text,
    .texts = &kEnable};
inline constexpr doc::Field kFecMode{
    .name = "fec-mode",
    .text = "The configured forward error correction: \"auto\", \"enable\", \"base-r\" (BASE-R), \"rs\" "
            "(Reed-Solomon), \"rs-544\", \"rs-272\" (Reed-Solomon of that code length), or \"none\".",
    .type = doc::Type::Text,
    .texts = &kIfFecShort};
inline constexpr doc::Field kFecOper{
    .name = "fec-oper",
    .text = "The forward error correction in operation, in the texts of \"fec-mode\".",
    .type = doc::Type::Text,
    .texts = &kIfFecShort};
inline constexpr doc::Field kConfigLanes{
    .name = "expandable-config-mode",
    .text = "The configured lane mode: how many lanes of which speed the port runs as (\"4x100G\": four lanes of "
            "100 Gbit/s); null when the port is not split or the switch does not answer, \"none\" for a mode the "
            "switch numbers otherwise.",
    .type = doc::Type::Text,
    .texts = &kIfLaneMode};
inline constexpr doc::Field kOperLanes{
    .name = "expandable-oper-mode",
    .text = "The lane mode the port runs in, in the texts of \"expandable-config-mode\"; null when it is not split.",
    .type = doc::Type::Text,
    .texts = &kIfLaneMode};
// Every port-settings resource is asked for one port.
inline constexpr doc::Field kPortQuery[] = {fields::kIfNum};
// Absent or 0: every physical port.
inline constexpr doc::Field kAnyPortQuery[] = {
    {.name = fields::kIfNum.name,
     .text = "The interface number; absent or 0 asks for every physical port.",
     .unit = fields::kIfNum.unit,
     .optional = true}};
}  // namespace port_doc

using PortValueGetter = int (*)(openapiClientHandle_t *, uint32_t, uint32_t *);

// The value a getter answers for the port, or 0 when the call fails.
uint32_t portValueOrZero(PortValueGetter get, uint32_t ifNum, uint32_t preset = 0);

// Both FEC outputs read "auto" when the platform leaves them unwritten.
inline constexpr uint32_t kFecPreset = 2;

// "configured-speed" (always "unknown"), "operational-speed" and
// "speed-mode" in Mbit/s, "configured-duplex" (always "auto"); the duplex is
// asked for but never shown.
void addSpeedFields(cJSON *o, uint32_t ifNum);
// "mtu" and "max-frame-size" (fixed zeros on this page), "ethernet-header-size".
void addFrameFields(cJSON *o, uint32_t ifNum);
void addDescription(cJSON *o, uint32_t ifNum);
// The field's text of the value; `preset` is what an unwritten value holds.
void addEnableField(cJSON *o, const doc::Field &field, PortValueGetter get, uint32_t ifNum, uint32_t preset);
// "expandable-config-mode" and "expandable-oper-mode"; null for a port
// that cannot be split.
void addLaneModes(cJSON *o, uint32_t ifNum);

#endif
