// Traffic counters and the per-port status summary the port list shows,
// for one interface or every physical one, and the counter resets.
#ifndef API_IF_COUNTER_ROUTES_H
#define API_IF_COUNTER_ROUTES_H

#include <cjson/cJSON.h>
#include <stdint.h>

#include "api/route_kit.h"

// One counter of the interface named by the loose "interface" lookup.
template <auto Call>
using CounterRead = kit::Read<"if", Call, kit::lookup("interface"), kit::out("value")>;

// New objects owned by the caller; a counter or attribute whose call
// fails reads 0, "", "disable" or null instead of failing the object.
cJSON *buildCounterSummary(uint32_t ifNum);
cJSON *buildStatusSummary(uint32_t ifNum);

uint32_t counterSummaryHandler(void);
uint32_t statusSummaryHandler(void);
uint32_t counterResetHandler(void);
uint32_t allCountersResetHandler(void);

#endif
