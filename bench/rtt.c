/* OpEN round trips through the client library: one registered client
 * making the link-state read over and over against a running service.
 * Prints the mean microseconds per call of each batch; with "spread" as
 * a third argument, instead the median, 99th percentile and slowest call
 * of all batches together, to show how long a call waits behind other
 * work of the service. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <time.h>

#include "open_api.h"

static double nowUs(void) {
  struct timespec t;
  clock_gettime(CLOCK_MONOTONIC, &t);
  return t.tv_sec * 1e6 + t.tv_nsec / 1e3;
}

static int byValue(const void *a, const void *b) {
  double x = *(const double *)a, y = *(const double *)b;
  return (x > y) - (x < y);
}

int main(int argc, char **argv) {
  int calls = argc > 1 ? atoi(argv[1]) : 20000;
  int batches = argc > 2 ? atoi(argv[2]) : 1;
  int spread = argc > 3 && strcmp(argv[3], "spread") == 0;
  double *each = spread && calls > 0 && batches > 0 ? malloc(sizeof(double) * calls * batches) : NULL;
  openapiClientHandle_t client = {0};
  if (calls < 1 || batches < 1 || (spread && !each)) {
    fprintf(stderr, "usage: bench-rtt [CALLS [BATCHES [spread]]]\n");
    return 2;
  }
  if (openapiClientRegister("rtt", &client) != OPEN_E_NONE || !client.connected) {
    fprintf(stderr, "rtt: the service is not reachable\n");
    return 1;
  }
  for (int b = 0; b < batches; ++b) {
    double start = nowUs();
    for (int i = 0; i < calls; ++i) {
      uint32_t state = 1;
      double before = nowUs();
      if (openapiIfLinkStateGet(&client, 1, &state) != OPEN_E_NONE) {
        fprintf(stderr, "rtt: call %d failed\n", i);
        return 1;
      }
      if (each) each[b * calls + i] = nowUs() - before;
    }
    if (!each) printf("%.3f\n", (nowUs() - start) / calls);
  }
  if (each) {
    size_t n = (size_t)calls * batches;
    qsort(each, n, sizeof *each, byValue);
    printf("%.1f %.1f %.1f\n", each[n / 2], each[n * 99 / 100], each[n - 1]);
    free(each);
  }
  openapiClientTearDown(&client);
  return 0;
}
