// Registration with the switch's OpEN service and the program-wide handle
// every handler passes to its calls.
#ifndef SWITCH_OPEN_CLIENT_H
#define SWITCH_OPEN_CLIENT_H

#include "open_api.h"

extern openapiClientHandle_t gOpenClient;

// 0 when registered and the service answers, -1 otherwise.
int initHandler(const char *name, openapiClientHandle_t *handle);

// The wait for a service that may still be starting: up to 7 checks with a
// pause after each failed one but the last. True when a check succeeded.
constexpr int kConnectivityChecks = 7;
constexpr unsigned kConnectivityPauseSeconds = 3;
bool connectivityWait(openapiClientHandle_t *handle, int (*check)(openapiClientHandle_t *),
                      void (*pause)(unsigned seconds));

#endif
