#include "api/program.h"

#include "switch/open_client.h"

bool programConnect(void) { return initHandler("interfaces_v2.cgi", &gOpenClient) == 0; }

void programDisconnect(void) { openapiClientTearDown(&gOpenClient); }

bool programConnectionLost(void) { return openapiClientConnectionLost(&gOpenClient) != 0; }
