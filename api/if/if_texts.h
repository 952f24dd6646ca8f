// How interface identity, state and cable test values read in replies.
#ifndef API_IF_IF_TEXTS_H
#define API_IF_IF_TEXTS_H

#include <stdint.h>

#include "frame/value_map.h"

extern const TextMap kIfType;
extern const TextMap kIfAttach;
extern const TextMap kIfLinkState;
extern const TextMap kIfOprState;
extern const TextMap kCableStatus;

#endif
