// How the green Ethernet operational reasons read in replies.
#ifndef API_GREEN_GREEN_TEXTS_H
#define API_GREEN_GREEN_TEXTS_H

#include <stdint.h>

#include "frame/value_map.h"

extern const TextMap kGreenReason;

// Outside the reason table: what a call that leaves the reason untouched
// reads as.
inline constexpr uint32_t kGreenReasonUnset = 11;

#endif
