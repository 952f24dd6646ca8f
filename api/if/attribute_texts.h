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

const char *ifDuplexText(uint32_t duplex);
const char *ifAutoNegText(uint32_t autoNeg);
const char *ifMediaTypeText(uint32_t media);
const char *ifSpecialPortTypeText(uint32_t type);
const char *ifDisableReasonText(uint32_t reason);
const char *ifSpeedNameText(uint32_t speed);
uint32_t ifSpeedNameValue(const char *text);

const char *ifUpDownText(uint32_t adminState);
const char *ifAutoNegotiateText(uint32_t autoNeg);
const char *ifSpeedMbitText(uint32_t speed);
// Null for 0 (no expansion), which the reply carries as JSON null.
const char *ifLaneModeText(uint32_t mode);
uint32_t ifLaneModeValue(const char *text);
const char *ifFecShortText(uint32_t mode);

const char *ifExpandModeText(uint32_t mode);
uint32_t ifExpandModeValue(const char *text);
const char *ifFecModeText(uint32_t mode);
uint32_t ifFecModeValue(const char *text);

inline constexpr TextMap kIfDuplex{ifDuplexText};
inline constexpr TextMap kIfAutoNeg{ifAutoNegText};
inline constexpr TextMap kIfMediaType{ifMediaTypeText};
inline constexpr TextMap kIfSpecialPortType{ifSpecialPortTypeText};
inline constexpr TextMap kIfDisableReason{ifDisableReasonText};
inline constexpr TextMap kIfSpeedName{ifSpeedNameText};
extern const ValueMap kIfSpeedNameValue;

inline constexpr TextMap kIfUpDown{ifUpDownText};
inline constexpr TextMap kIfAutoNegotiate{ifAutoNegotiateText};
inline constexpr TextMap kIfSpeedMbit{ifSpeedMbitText};
inline constexpr TextMap kIfLaneMode{ifLaneModeText};
extern const ValueMap kIfLaneModeValue;
inline constexpr TextMap kIfFecShort{ifFecShortText};

inline constexpr TextMap kIfExpandMode{ifExpandModeText};
extern const ValueMap kIfExpandModeValue;
inline constexpr TextMap kIfFecMode{ifFecModeText};
extern const ValueMap kIfFecModeValue;

#endif
