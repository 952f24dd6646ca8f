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
uint32_t requestedIfNum() { return queryScanUint("ifNum"); }

uint32_t replyData(const JsonPtr &data) {
  replyRead(data ? CODE_SUCCESS : CODE_GENERAL_FAILED, kGroup, data.get());
  return 0;
}

uint32_t refuseRead() {
  replyRead(CODE_INVALID_ARGUMENT, kGroup, nullptr);
  return 0;
}

// One value under one key; a refusal of the switch is the reply's code.
uint32_t readOneValue(PortValueGetter call, const char *key, const TextMap &texts) {
  uint32_t ifNum = requestedIfNum();
  if (!ifNum) return refuseRead();
  uint32_t value = 0;
  uint32_t code = openResultToCode(call(&gOpenClient, ifNum, &value));
  if (code != CODE_SUCCESS) {
    replyRead(code, kGroup, nullptr);
    return 0;
  }
  JsonPtr data(cJSON_CreateObject());
  cJSON_AddStringToObject(data.get(), key, texts.text(value));
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

uint32_t ifCompositeAdminStateGet(void) { return readOneValue(openapiIfAdminStateGet, "admin-state", kIfUpDown); }

uint32_t ifCompositeAutoNegGet(void) {
  return readOneValue(openapiIfAutoNegGet, "auto-negotiate", kIfAutoNegotiate);
}

uint32_t ifCompositeSoftShutdownGet(void) {
  return readFields([](cJSON *o, uint32_t ifNum) {
    addEnableField(o, "soft-shutdown", rpcclt_openapiIfSoftShutdownStateGet, ifNum, 0);
  });
}

// Preset to enabled, yet a refused read shows "disable".
uint32_t ifCompositeLinkTrapGet(void) {
  return readFields(
      [](cJSON *o, uint32_t ifNum) { addEnableField(o, "link-trap", rpcclt_openapiIfLinkTrapGet, ifNum, 1); });
}

uint32_t ifCompositeSpeedGet(void) {
  return readFields([](cJSON *o, uint32_t ifNum) {
    addSpeedFields(o, ifNum);
    cJSON_AddStringToObject(o, "operational-duplex", "unknown");
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
  cJSON_AddStringToObject(data.get(), "fec-mode", kIfFecShort.text(configured));
  cJSON_AddStringToObject(data.get(), "fec-oper", kIfFecShort.text(operational));
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
  uint32_t mode = ifLaneModeValue(bodyText(body.get(), "expandable-config-mode"));
  replySetResult(openResultToCode(rpcclt_openapiIntfExpandablePortModeSet(&gOpenClient, ifNum, mode)));
  return 0;
}
