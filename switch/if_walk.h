// Walks over the interfaces of one OpEN type, in the switch's order.
#ifndef SWITCH_IF_WALK_H
#define SWITCH_IF_WALK_H

#include <stdint.h>

#include "open_api.h"
#include "switch/open_client.h"

// The first interface of `ifType`; a failure is logged.
int swapiIfFirstGet(openapiClientHandle_t *handle, uint32_t ifType, uint32_t *first);
// The physical interface after `current`, or the first when it is 0:
// 0, 10023 past the last one, or 10003.
uint32_t swapiIfFirstOrNextGet(openapiClientHandle_t *handle, uint32_t current, uint32_t *next);

// Calls visit(ifNum) for each interface of `ifType` until it returns
// false. A failing first lookup is logged and visits nothing.
template <class Visit>
void forEachInterface(uint32_t ifType, Visit visit) {
  uint32_t ifNum = 0;
  if (swapiIfFirstGet(&gOpenClient, ifType, &ifNum) != OPEN_E_NONE) return;
  do {
    if (!visit(ifNum)) return;
  } while (openapiIfNextGet(&gOpenClient, ifType, ifNum, &ifNum) == OPEN_E_NONE);
}

#endif
