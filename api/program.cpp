#include "api/program.h"

#include "switch/open_client.h"

bool programConnect(void) { return initHandler("interfaces_v2.cgi", &gOpenClient) == 0; }

void programDisconnect(void) { openapiClientTearDown(&gOpenClient); }

bool programConnectionLost(int watched, bool *watchedReadable) {
  int readable = 1;
  bool lost = openapiClientConnectionLost(&gOpenClient, watched, &readable) != 0;
  *watchedReadable = readable != 0;
  return lost;
}
