// How port attributes read in replies, and how body texts turn back into
// platform values. Two families of texts exist for some values: the
// platform's own names ("portctrl_portspeed_full_10gsx", "port_fec_rs_544")
// used by the single-attribute routes, and the short texts of the port
// settings page ("10000", "rs-544", "1x25G").
#ifndef API_IF_ATTRIBUTE_TEXTS_H
#define API_IF_ATTRIBUTE_TEXTS_H

#include <stdint.h>

#include "frame/value_map.h"

// The value a speed text that names no speed turns into; also the preset
// that makes an unwritten speed read as unknown.
inline constexpr uint32_t kIfSpeedUnknown = 20;

uint32_t ifSpeedNameValue(const char *text);
uint32_t ifLaneModeValue(const char *text);
uint32_t ifExpandModeValue(const char *text);
uint32_t ifFecModeValue(const char *text);

extern const TextMap kIfDuplex;
extern const TextMap kIfAutoNeg;
extern const TextMap kIfMediaType;
extern const TextMap kIfSpecialPortType;
extern const TextMap kIfDisableReason;
extern const TextMap kIfSpeedName;
extern const ValueMap kIfSpeedNameValue;

extern const TextMap kIfUpDown;
extern const TextMap kIfAutoNegotiate;
extern const TextMap kIfSpeedMbit;
// 0 (no expansion) reads as JSON null.
extern const TextMap kIfLaneMode;
extern const ValueMap kIfLaneModeValue;
extern const TextMap kIfFecShort;

extern const TextMap kIfExpandMode;
extern const ValueMap kIfExpandModeValue;
extern const TextMap kIfFecMode;
extern const ValueMap kIfFecModeValue;

#endif
