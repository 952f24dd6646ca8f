#include "switch/if_walk.h"

#include "frame/envelope.h"
#include "frame/log.h"

int swapiIfFirstGet(openapiClientHandle_t *handle, uint32_t ifType, uint32_t *first) {
  int result = openapiIfFirstGet(handle, ifType, first);
  if (result != OPEN_E_NONE)
    LOG_AT(3, "swapiIfFirstGet", 4031, "Bad return code trying to get first physical interface. result = %d\r\n",
           result);
  return result;
}

uint32_t swapiIfFirstOrNextGet(openapiClientHandle_t *handle, uint32_t current, uint32_t *next) {
  if (!next) return CODE_INVALID_ARGUMENT;
  int result = current == 0 ? swapiIfFirstGet(handle, OPEN_INTF_TYPE_PHY, next)
                            : openapiIfNextGet(handle, OPEN_INTF_TYPE_PHY, current, next);
  return result == OPEN_E_NONE ? CODE_SUCCESS : CODE_NOT_FOUND;
}
