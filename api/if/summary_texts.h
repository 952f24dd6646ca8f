// How the values of the interface summaries and the cable test read in
// replies.
#ifndef API_IF_SUMMARY_TEXTS_H
#define API_IF_SUMMARY_TEXTS_H

#include <stdint.h>

#include "frame/value_map.h"

// Mbit/s of an OpEN speed-mode value ("auto", "1000", ..., "unknown").
const char *summarySpeedText(uint32_t speedMode);
// Lanes and lane speed of a port-expansion mode, null for 0 (no mode),
// "none" above the known modes.
const char *summaryLaneModeText(uint32_t laneMode);
const char *summaryFecModeText(uint32_t fecMode);
const char *cableStatusText(uint32_t status);

inline constexpr TextMap kCableStatus{cableStatusText};

#endif
