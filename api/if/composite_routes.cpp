#include "api/if/composite_routes.h"

#include "api/if/attribute_texts.h"
#include "api/if/port_fields.h"
#include "frame/envelope.h"
#include "frame/params.h"
#include "open_api.h"
#include "switch/open_client.h"

namespace {

constexpr char kGroup[] = "if";

// Every resource of the page needs a port; 0 or none is refused before
// the switch is asked.
uint32_t requestedIfNum() { return queryScanUint(fields::kIfNum.name); }

uint32_t replyData(const JsonPtr &data) {
  replyRead(data ? CODE_SUCCESS : CODE_GENERAL_FAILED, kGroup, data.get());
  return 0;
}

uint32_t refuseRead() {
  replyRead(CODE_INVALID_ARGUMENT, kGroup, nullptr);
  return 0;
}

// One value under one key; a refusal of the switch is the reply's code.
uint32_t readOneValue(PortValueGetter call, const doc::Field &field) {
  uint32_t ifNum = requestedIfNum();
  if (!ifNum) return refuseRead();
  uint32_t value = 0;
  uint32_t code = openResultToCode(call(&gOpenClient, ifNum, &value));
  if (code != CODE_SUCCESS) {
    replyRead(code, kGroup, nullptr);
    return 0;
  }
  JsonPtr data(cJSON_CreateObject());
  cJSON_AddStringToObject(data.get(), field.name, field.texts->text(value));
  return replyData(data);
}

// The fields that never fail the reply, for the port of the request.
uint32_t readFields(void (*add)(cJSON *, uint32_t)) {
  uint32_t ifNum = requestedIfNum();
  if (!ifNum) return refuseRead();
  JsonPtr data(cJSON_CreateObject());
  if (data) add(data.get(), ifNum);
  return replyData(data);
}

}  // namespace

uint32_t ifCompositeAdminStateGet(void) { return readOneValue(openapiIfAdminStateGet, port_doc::kAdminState); }

uint32_t ifCompositeAutoNegGet(void) {
  return readOneValue(openapiIfAutoNegGet, port_doc::kAutoNegotiate);
}

uint32_t ifCompositeSoftShutdownGet(void) {
  return readFields([](cJSON *o, uint32_t ifNum) {
    addEnableField(o, port_doc::kSoftShutdown, rpcclt_openapiIfSoftShutdownStateGet, ifNum, 0);
  });
}

// Preset to enabled, yet a refused read shows "disable".
uint32_t ifCompositeLinkTrapGet(void) {
  return readFields(
      [](cJSON *o, uint32_t ifNum) { addEnableField(o, fields::kLinkTrap, rpcclt_openapiIfLinkTrapGet, ifNum, 1); });
}

uint32_t ifCompositeSpeedGet(void) {
  return readFields([](cJSON *o, uint32_t ifNum) {
    addSpeedFields(o, ifNum);
    cJSON_AddStringToObject(o, port_doc::kOperationalDuplex.name, port_doc::kOperationalDuplex.words);
  });
}

uint32_t ifCompositeMtuSizeGet(void) { return readFields(addFrameFields); }

uint32_t ifCompositeDescrGet(void) { return readFields(addDescription); }

uint32_t ifCompositeFecModeGet(void) {
  uint32_t ifNum = requestedIfNum();
  if (!ifNum) return refuseRead();
  uint32_t configured = kFecPreset;
  uint32_t operational = kFecPreset;
  uint32_t code = openResultToCode(rpcclt_openapiIntfFECModeGet(&gOpenClient, ifNum, &configured, &operational));
  if (code != CODE_SUCCESS) {
    replyRead(code, kGroup, nullptr);
    return 0;
  }
  JsonPtr data(cJSON_CreateObject());
  cJSON_AddStringToObject(data.get(), port_doc::kFecMode.name, port_doc::kFecMode.texts->text(configured));
  cJSON_AddStringToObject(data.get(), port_doc::kFecOper.name, port_doc::kFecOper.texts->text(operational));
  return replyData(data);
}

uint32_t ifCompositeExpandableModeGet(void) { return readFields(addLaneModes); }

// A text naming no accepted lane mode is sent as 0; the switch decides.
uint32_t ifCompositeExpandableModeSet(void) {
  uint32_t ifNum = requestedIfNum();
  JsonPtr body(ifNum ? requestBodyParse() : nullptr);
  if (!body) {
    replyInvalidArgument();
    return 0;
  }
  const doc::Field &lanes = port_doc::kLaneModeBody[0];
  uint32_t mode = lanes.accepts->value(bodyText(body.get(), lanes.name));
  replySetResult(openResultToCode(rpcclt_openapiIntfExpandablePortModeSet(&gOpenClient, ifNum, mode)));
  return 0;
}
