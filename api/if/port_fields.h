// The fields of the port settings page: the status summary lists them for
// every port, and the composite routes answer them a few at a time. Each
// adds its keys to `o` in the page's order; a call that fails reads as its
// fallback (0, "", "disable", null) instead of failing the reply.
#ifndef API_IF_PORT_FIELDS_H
#define API_IF_PORT_FIELDS_H

#include <cjson/cJSON.h>
#include <stdint.h>

#include "api/if/attribute_texts.h"
#include "api/route_doc.h"
#include "open_api.h"

// The fields as the API description shows them.
namespace port_doc {
inline constexpr doc::Field kInterface{"interface"};
inline constexpr doc::Field kConfiguredSpeed{"configured-speed", doc::Type::Text, nullptr, "unknown"};
inline constexpr doc::Field kOperationalSpeed{"operational-speed", doc::Type::Text, &kIfSpeedMbit};
inline constexpr doc::Field kSpeedMode{"speed-mode", doc::Type::Text, &kIfSpeedMbit};
inline constexpr doc::Field kConfiguredDuplex{"configured-duplex", doc::Type::Text, nullptr, "auto"};
inline constexpr doc::Field kMtu{"mtu"};
inline constexpr doc::Field kMaxFrameSize{"max-frame-size"};
inline constexpr doc::Field kEthernetHeaderSize{"ethernet-header-size"};
inline constexpr doc::Field kDescription{"description", doc::Type::Text};
inline constexpr doc::Field kSoftShutdown{"soft-shutdown", doc::Type::Text, &kEnable};
inline constexpr doc::Field kFecMode{"fec-mode", doc::Type::Text, &kIfFecShort};
inline constexpr doc::Field kLinkTrap{"link-trap", doc::Type::Text, &kEnable};
inline constexpr doc::Field kConfigLanes{"expandable-config-mode", doc::Type::Text, &kIfLaneMode};
inline constexpr doc::Field kOperLanes{"expandable-oper-mode", doc::Type::Text, &kIfLaneMode};
// Every port-settings resource is asked for one port.
inline constexpr doc::Field kPortQuery[] = {{"ifNum"}};
// Absent or 0: every physical port.
inline constexpr doc::Field kAnyPortQuery[] = {{.name = "ifNum", .optional = true}};
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
// "enable" when the value is 1; `preset` is what an unwritten value holds.
void addEnableField(cJSON *o, const char *key, PortValueGetter get, uint32_t ifNum, uint32_t preset);
// "expandable-config-mode" and "expandable-oper-mode"; null for a port
// that cannot be split.
void addLaneModes(cJSON *o, uint32_t ifNum);

#endif
