// What the entry starts and ends around one request: the program's OpEN
// client and its routes. The entry reaches the switch only through here.
#ifndef API_PROGRAM_H
#define API_PROGRAM_H

#include "frame/route_table.h"

// Registers with OpEN and waits for the service; false when it cannot be
// reached (the reason is logged).
bool programConnect(void);
void programDisconnect(void);
// Whether the registration's connection to the service is lost; a
// program serving many requests then disconnects and connects again.
// Asked in the same poll: whether `watched` (when not negative) is readable.
bool programConnectionLost(int watched, bool *watchedReadable);

// Registers every route with a required session, in order.
void registerRoutes(RouteTable *table);

#endif
