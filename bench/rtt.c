/* OpEN round trips through the client library: one registered client
 * making the link-state read over and over against a running service.
 * Prints the mean microseconds per call of each batch. */
#include <stdio.h>
#include <stdlib.h>
#include <time.h>

#include "open_api.h"

static double nowUs(void) {
  struct timespec t;
  clock_gettime(CLOCK_MONOTONIC, &t);
  return t.tv_sec * 1e6 + t.tv_nsec / 1e3;
}

int main(int argc, char **argv) {
  int calls = argc > 1 ? atoi(argv[1]) : 20000;
  int batches = argc > 2 ? atoi(argv[2]) : 1;
  openapiClientHandle_t client = {0};
  if (openapiClientRegister("rtt", &client) != OPEN_E_NONE || !client.connected) {
    fprintf(stderr, "rtt: the service is not reachable\n");
    return 1;
  }
  for (int b = 0; b < batches; ++b) {
    double start = nowUs();
    for (int i = 0; i < calls; ++i) {
      uint32_t state = 1;
      if (openapiIfLinkStateGet(&client, 1, &state) != OPEN_E_NONE) {
        fprintf(stderr, "rtt: call %d failed\n", i);
        return 1;
      }
    }
    printf("%.3f\n", (nowUs() - start) / calls);
  }
  openapiClientTearDown(&client);
  return 0;
}
