// How interface identity, state and cable test values read in replies.
#ifndef API_IF_IF_TEXTS_H
#define API_IF_IF_TEXTS_H

#include <stdint.h>

#include "frame/value_map.h"

const char *ifTypeText(uint32_t type);
const char *ifAttachText(uint32_t status);
const char *ifLinkStateText(uint32_t state);
const char *ifOprStateText(uint32_t state);
const char *cableStatusText(uint32_t status);

inline constexpr TextMap kIfType{ifTypeText};
inline constexpr TextMap kIfAttach{ifAttachText};
inline constexpr TextMap kIfLinkState{ifLinkStateText};
inline constexpr TextMap kIfOprState{ifOprStateText};
inline constexpr TextMap kCableStatus{cableStatusText};

#endif
