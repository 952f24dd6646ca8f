// The port settings page's resources: hyphenated keys, speeds in Mbit/s,
// several related values in one object. Registered after the
// single-attribute routes so that they take over the shared GET names.
#ifndef API_IF_COMPOSITE_ROUTES_H
#define API_IF_COMPOSITE_ROUTES_H

#include <stdint.h>

uint32_t ifCompositeAdminStateGet(void);
uint32_t ifCompositeAutoNegGet(void);
uint32_t ifCompositeSpeedGet(void);
uint32_t ifCompositeMtuSizeGet(void);
uint32_t ifCompositeDescrGet(void);
uint32_t ifCompositeSoftShutdownGet(void);
uint32_t ifCompositeFecModeGet(void);
uint32_t ifCompositeLinkTrapGet(void);
uint32_t ifCompositeExpandableModeGet(void);
uint32_t ifCompositeExpandableModeSet(void);

#endif
