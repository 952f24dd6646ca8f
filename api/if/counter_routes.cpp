#include "api/if/counter_routes.h"

#include "api/if/attribute_texts.h"
#include "switch/if_walk.h"
#include "api/if/port_fields.h"
#include "frame/envelope.h"
#include "frame/params.h"

namespace {

using namespace port_doc;

struct CounterField {
  const doc::Field &field;
  PortValueGetter get;
};

const CounterField kCounters[] = {
    {kBytesReceived, rpcclt_openapiIfInOctetsGet},     {kBytesSent, rpcclt_openapiIfOutOctetsGet},
    {kUnicastReceived, rpcclt_openapiIfInUcastPktsGet}, {kUnicastSent, rpcclt_openapiIfOutUcastPktsGet},
    {kReceiveDrops, rpcclt_openapiIfInDiscardsGet},     {kTransmitDrops, rpcclt_openapiIfOutDiscardsGet},
    {kReceiveErrors, rpcclt_openapiIfInErrorsGet},      {kTransmitErrors, rpcclt_openapiIfOutErrorsGet},
};

void addFixedStatus(cJSON *o) {
  for (const doc::Field *f : {&kFixedAdminState, &kFixedLinkState, &kFixedAutoNegotiate})
    cJSON_AddStringToObject(o, f->name, f->words);
}

void addFecMode(cJSON *o, uint32_t ifNum) {
  uint32_t configured = kFecPreset, operational = kFecPreset;
  rpcclt_openapiIntfFECModeGet(&gOpenClient, ifNum, &configured, &operational);
  cJSON_AddStringToObject(o, kFecMode.name, kFecMode.texts->text(configured));
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
  uint32_t ifNum = queryScanUint(fields::kIfNum.name);
  JsonPtr data(ifNum != 0 ? build(ifNum) : allPhysical(build));
  replyRead(CODE_SUCCESS, "if", data.get());
  return 0;
}

}  // namespace

cJSON *buildCounterSummary(uint32_t ifNum) {
  cJSON *o = cJSON_CreateObject();
  if (!o) return nullptr;
  cJSON_AddNumberToObject(o, kInterface.name, ifNum);
  for (const CounterField &c : kCounters) cJSON_AddNumberToObject(o, c.field.name, portValueOrZero(c.get, ifNum));
  return o;
}

cJSON *buildStatusSummary(uint32_t ifNum) {
  cJSON *o = cJSON_CreateObject();
  if (!o) return nullptr;
  cJSON_AddNumberToObject(o, kInterface.name, ifNum);
  addFixedStatus(o);
  addSpeedFields(o, ifNum);
  addFrameFields(o, ifNum);
  addDescription(o, ifNum);
  addEnableField(o, kSoftShutdown, rpcclt_openapiIfSoftShutdownStateGet, ifNum, 0);
  addFecMode(o, ifNum);
  addEnableField(o, fields::kLinkTrap, rpcclt_openapiIfLinkTrapGet, ifNum, 1);
  addLaneModes(o, ifNum);
  return o;
}

uint32_t counterSummaryHandler(void) { return replySummary(buildCounterSummary); }

uint32_t statusSummaryHandler(void) { return replySummary(buildStatusSummary); }

uint32_t counterResetHandler(void) {
  uint32_t ifNum = queryScanUint(fields::kIfNum.name);
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
