// How the cable test's status reads in replies. The summaries share the
// speed, lane-mode and FEC texts of the port attributes.
#ifndef API_IF_SUMMARY_TEXTS_H
#define API_IF_SUMMARY_TEXTS_H

#include <stdint.h>

#include "frame/value_map.h"

const char *cableStatusText(uint32_t status);

inline constexpr TextMap kCableStatus{cableStatusText};

#endif
