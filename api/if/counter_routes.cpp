#include "api/if/counter_routes.h"

#include "api/if/attribute_texts.h"
#include "switch/if_walk.h"
#include "api/if/port_fields.h"
#include "frame/envelope.h"
#include "frame/params.h"

namespace {

struct CounterField {
  const char *key;
  PortValueGetter get;
};

const CounterField kCounterFields[] = {
    {"total-bytes-received", rpcclt_openapiIfInOctetsGet},
    {"total-bytes-transmitted", rpcclt_openapiIfOutOctetsGet},
    {"unicast-packets-received", rpcclt_openapiIfInUcastPktsGet},
    {"unicast-packets-transmitted", rpcclt_openapiIfOutUcastPktsGet},
    {"total-receive-drops", rpcclt_openapiIfInDiscardsGet},
    {"total-transmit-drops", rpcclt_openapiIfOutDiscardsGet},
    {"total-packets-received-with-errors", rpcclt_openapiIfInErrorsGet},
    {"total-transmit-errors", rpcclt_openapiIfOutErrorsGet},
};

// Fixed texts: a client reads the real values through the single-attribute
// routes.
void addFixedStatus(cJSON *o) {
  cJSON_AddStringToObject(o, "admin-state", "down");
  cJSON_AddStringToObject(o, "link-state", "down");
  cJSON_AddStringToObject(o, "auto-negotiate", "enable");
}

void addFecMode(cJSON *o, uint32_t ifNum) {
  uint32_t configured = kFecPreset, operational = kFecPreset;
  rpcclt_openapiIntfFECModeGet(&gOpenClient, ifNum, &configured, &operational);
  cJSON_AddStringToObject(o, "fec-mode", kIfFecShort.text(configured));
}

cJSON *allPhysical(cJSON *(*build)(uint32_t)) {
  cJSON *list = cJSON_CreateArray();
  if (!list) return nullptr;
  forEachInterface(OPEN_INTF_TYPE_PHY, [&](uint32_t ifNum) {
    if (cJSON *o = build(ifNum)) cJSON_AddItemToArray(list, o);
    return true;
  });
  return list;
}

uint32_t replySummary(cJSON *(*build)(uint32_t)) {
  uint32_t ifNum = queryScanUint("ifNum");
  JsonPtr data(ifNum != 0 ? build(ifNum) : allPhysical(build));
  replyRead(CODE_SUCCESS, "if", data.get());
  return 0;
}

}  // namespace

cJSON *buildCounterSummary(uint32_t ifNum) {
  cJSON *o = cJSON_CreateObject();
  if (!o) return nullptr;
  cJSON_AddNumberToObject(o, "interface", ifNum);
  for (const CounterField &f : kCounterFields) cJSON_AddNumberToObject(o, f.key, portValueOrZero(f.get, ifNum));
  return o;
}

cJSON *buildStatusSummary(uint32_t ifNum) {
  cJSON *o = cJSON_CreateObject();
  if (!o) return nullptr;
  cJSON_AddNumberToObject(o, "interface", ifNum);
  addFixedStatus(o);
  addSpeedFields(o, ifNum);
  addFrameFields(o, ifNum);
  addDescription(o, ifNum);
  addEnableField(o, "soft-shutdown", rpcclt_openapiIfSoftShutdownStateGet, ifNum, 0);
  addFecMode(o, ifNum);
  addEnableField(o, "link-trap", rpcclt_openapiIfLinkTrapGet, ifNum, 1);
  addLaneModes(o, ifNum);
  return o;
}

uint32_t counterSummaryHandler(void) { return replySummary(buildCounterSummary); }

uint32_t statusSummaryHandler(void) { return replySummary(buildStatusSummary); }

uint32_t counterResetHandler(void) {
  uint32_t ifNum = queryScanUint("ifNum");
  if (ifNum == 0) {
    replySetResult(CODE_INVALID_ARGUMENT);
    return 0;
  }
  replySetResult(openResultToCode(rpcclt_openapiInterfaceStatsReset(&gOpenClient, ifNum)));
  return 0;
}

uint32_t allCountersResetHandler(void) {
  replySetResult(openResultToCode(rpcclt_openapiResetAllInterfacesStats(&gOpenClient)));
  return 0;
}
