// Walks over the interfaces of one OpEN type, in the switch's order.
#ifndef API_IF_IF_WALK_H
#define API_IF_IF_WALK_H

#include <stdint.h>

#include "open_api.h"
#include "switch/cli_files.h"
#include "switch/open_client.h"

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
