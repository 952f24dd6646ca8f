// Port expansion reads that take a mode name from the query string.
#ifndef API_IF_EXPANSION_ROUTES_H
#define API_IF_EXPANSION_ROUTES_H

#include <stdint.h>

uint32_t ifExpandPortModeSupportedGet(void);

#endif
