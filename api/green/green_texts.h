// How green Ethernet values read in replies. Only a value of exactly 1
// counts as on; anything else the platform answers reads as off.
#ifndef API_GREEN_GREEN_TEXTS_H
#define API_GREEN_GREEN_TEXTS_H

#include <stdint.h>

#include "frame/value_map.h"

const char *enableText(uint32_t value);
const char *trueText(uint32_t value);
const char *greenReasonText(uint32_t reason);

inline constexpr TextMap kEnable{enableText};
inline constexpr TextMap kTrue{trueText};
inline constexpr TextMap kGreenReason{greenReasonText};

// Outside the reason table: what a call that leaves the reason untouched
// reads as.
inline constexpr uint32_t kGreenReasonUnset = 11;

#endif
