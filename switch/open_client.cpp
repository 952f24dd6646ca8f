#include "switch/open_client.h"

#include <stdio.h>
#include <unistd.h>

#include "frame/log.h"

openapiClientHandle_t gOpenClient = {};

namespace {

void sleepSeconds(unsigned seconds) { sleep(seconds); }

void logVersions(openapiClientHandle_t *handle) {
  char os[100] = {};
  open_buffdesc desc = {sizeof os, os};
  if (rpcclt_openapiNetworkOSVersionGet(handle, &desc) == OPEN_E_NONE)
    LOG_AT(7, "initHandler", 890, "Network OS Version = %s\n", os);
  else
    LOG_AT(3, "initHandler", 892, "Network OS Version retrieve error\n");

  open_revision_data_t api = {};
  if (rpcclt_openapiApiVersionGet(handle, &api) == OPEN_E_NONE)
    LOG_AT(7, "initHandler", 900, "Open API Version = %d.%d.%d.%d\n", api.release, api.version, api.maint_level,
           api.build_num);
  else
    LOG_AT(3, "initHandler", 902, "Open API Version retrieve error\n");
}

}  // namespace

bool connectivityWait(openapiClientHandle_t *handle, int (*check)(openapiClientHandle_t *),
                      void (*pause)(unsigned seconds)) {
  for (int attempt = 1; attempt <= kConnectivityChecks; ++attempt) {
    int result = check(handle);
    if (result == OPEN_E_NONE) return true;
    if (attempt == kConnectivityChecks) break;
    LOG_AT(4, "initHandler", 882, "RPC call can fail until server starts. Keep trying (result = %d)\n", result);
    pause(kConnectivityPauseSeconds);
  }
  return false;
}

int initHandler(const char *name, openapiClientHandle_t *handle) {
  const char *base = name ? name : "common";
  l7proc_crashlog_register(base, 0);
  char clientName[100];
  snprintf(clientName, sizeof clientName, "%s_%d", base, static_cast<int>(getpid()));
  int result = openapiClientRegister(clientName, handle);
  if (result != OPEN_E_NONE) {
    LOG_AT(3, "initHandler", 870, "\nFailed to initialize RPC to OpEN. Exiting (result = %d)\n", result);
    return -1;
  }
  LOG_AT(7, "initHandler", 873, "Register RPC to OpEN success. (client name = %s)\n", clientName);
  if (!connectivityWait(handle, rpcclt_openapiConnectivityCheck, sleepSeconds)) return -1;
  logVersions(handle);
  return 0;
}
