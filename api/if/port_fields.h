// The fields of the port settings page: the status summary lists them for
// every port, and the composite routes answer them a few at a time. Each
// adds its keys to `o` in the page's order; a call that fails reads as its
// fallback (0, "", "disable", null) instead of failing the reply.
#ifndef API_IF_PORT_FIELDS_H
#define API_IF_PORT_FIELDS_H

#include <cjson/cJSON.h>
#include <stdint.h>

#include "open_api.h"

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
