// Interface application settings with logic of their own.
#ifndef API_INTERFACE_APP_INTERFACE_APP_H
#define API_INTERFACE_APP_INTERFACE_APP_H

#include <stdint.h>

uint32_t interfaceAppTimeRangeSet(void);

#endif
