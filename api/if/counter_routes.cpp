#include "api/if/counter_routes.h"

#include "api/if/if_walk.h"
#include "api/if/attribute_texts.h"
#include "frame/envelope.h"
#include "frame/params.h"

namespace {

using CounterGetter = int (*)(openapiClientHandle_t *, uint32_t, uint32_t *);

struct CounterField {
  const char *key;
  CounterGetter get;
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

constexpr size_t kDescrBuf = 256;
// Presets: an unwritten speed reads "unknown", FEC "auto", a trap "enable".
constexpr uint32_t kSpeedModeUnwritten = 20;
constexpr uint32_t kFecModePreset = 2;
constexpr uint32_t kLinkTrapPreset = 1;

uint32_t valueOrZero(CounterGetter get, uint32_t ifNum, uint32_t preset = 0) {
  uint32_t v = preset;
  return get(&gOpenClient, ifNum, &v) == OPEN_E_NONE ? v : 0;
}

const char *enableWhenOne(CounterGetter get, uint32_t ifNum, uint32_t preset) {
  return valueOrZero(get, ifNum, preset) == 1 ? "enable" : "disable";
}

void addLaneMode(cJSON *o, const char *key, CounterGetter get, uint32_t ifNum) {
  const char *text = ifLaneModeText(valueOrZero(get, ifNum));
  if (text) cJSON_AddStringToObject(o, key, text);
  else cJSON_AddNullToObject(o, key);
}

void addDescription(cJSON *o, uint32_t ifNum) {
  char descr[kDescrBuf] = {};
  open_buffdesc d = {sizeof descr, descr};
  if (rpcclt_openapiIfDescrGet(&gOpenClient, ifNum, &d) != OPEN_E_NONE) descr[0] = '\0';
  cJSON_AddStringToObject(o, "description", descr);
}

// The fixed fields are what the port list has always received; a client
// reads the real values through the single-attribute routes.
void addFixedStatus(cJSON *o) {
  cJSON_AddStringToObject(o, "admin-state", "down");
  cJSON_AddStringToObject(o, "link-state", "down");
  cJSON_AddStringToObject(o, "auto-negotiate", "enable");
  cJSON_AddStringToObject(o, "configured-speed", "unknown");
}

void addFecMode(cJSON *o, uint32_t ifNum) {
  uint32_t configured = kFecModePreset, operational = kFecModePreset;
  rpcclt_openapiIntfFECModeGet(&gOpenClient, ifNum, &configured, &operational);
  cJSON_AddStringToObject(o, "fec-mode", ifFecShortText(configured));
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
  for (const CounterField &f : kCounterFields) cJSON_AddNumberToObject(o, f.key, valueOrZero(f.get, ifNum));
  return o;
}

cJSON *buildStatusSummary(uint32_t ifNum) {
  cJSON *o = cJSON_CreateObject();
  if (!o) return nullptr;
  cJSON_AddNumberToObject(o, "interface", ifNum);
  addFixedStatus(o);
  uint32_t speedMode = kSpeedModeUnwritten;
  rpcclt_openapiIfSpeedModeGet(&gOpenClient, ifNum, &speedMode);
  cJSON_AddStringToObject(o, "operational-speed", ifSpeedMbitText(speedMode));
  cJSON_AddStringToObject(o, "speed-mode", ifSpeedMbitText(speedMode));
  // Asked for, but the summary has always answered "auto".
  uint32_t duplex = 0;
  rpcclt_openapiIfDuplexModeGet(&gOpenClient, ifNum, &duplex);
  cJSON_AddStringToObject(o, "configured-duplex", "auto");
  cJSON_AddNumberToObject(o, "mtu", 0);
  cJSON_AddNumberToObject(o, "max-frame-size", 0);
  cJSON_AddNumberToObject(o, "ethernet-header-size", valueOrZero(rpcclt_openapiIfEthernetHeaderSizeGet, ifNum));
  addDescription(o, ifNum);
  cJSON_AddStringToObject(o, "soft-shutdown", enableWhenOne(rpcclt_openapiIfSoftShutdownStateGet, ifNum, 0));
  addFecMode(o, ifNum);
  cJSON_AddStringToObject(o, "link-trap", enableWhenOne(rpcclt_openapiIfLinkTrapGet, ifNum, kLinkTrapPreset));
  addLaneMode(o, "expandable-config-mode", rpcclt_openapiIntfExpandablePortConfigModeGet, ifNum);
  addLaneMode(o, "expandable-oper-mode", rpcclt_openapiIntfExpandablePortOperModeGet, ifNum);
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
