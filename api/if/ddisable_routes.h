// D-Disable auto-recovery: OpEN has no call for it, so these routes read
// the switch's "show errdisable recovery" output and apply CLI lines.
#ifndef API_IF_DDISABLE_ROUTES_H
#define API_IF_DDISABLE_ROUTES_H

#include <stdint.h>

uint32_t recoveryIntervalSetHandler(void);
uint32_t recoveryIntervalGetHandler(void);
uint32_t recoveryCauseGetHandler(void);
uint32_t recoveryCauseSetHandler(void);
uint32_t nextPhysicalIfHandler(void);
uint32_t recoveryFeatureListHandler(void);
uint32_t recoveryTimeLeftHandler(void);

#endif
