#include "api/if/port_fields.h"

#include "api/if/attribute_texts.h"
#include "switch/open_client.h"

namespace {

constexpr uint32_t kDescrBuffer = 256;

void addLaneMode(cJSON *o, const char *key, PortValueGetter get, uint32_t ifNum) {
  const char *text = kIfLaneMode.text(portValueOrZero(get, ifNum));
  if (text) cJSON_AddStringToObject(o, key, text);
  else cJSON_AddNullToObject(o, key);
}

}  // namespace

uint32_t portValueOrZero(PortValueGetter get, uint32_t ifNum, uint32_t preset) {
  uint32_t v = preset;
  return get(&gOpenClient, ifNum, &v) == OPEN_E_NONE ? v : 0;
}

// The call results are not looked at: an unanswered speed keeps its preset
// and reads "unknown".
void addSpeedFields(cJSON *o, uint32_t ifNum) {
  uint32_t speed = kIfSpeedUnknown;
  uint32_t duplex = 0;
  rpcclt_openapiIfSpeedModeGet(&gOpenClient, ifNum, &speed);
  rpcclt_openapiIfDuplexModeGet(&gOpenClient, ifNum, &duplex);
  cJSON_AddStringToObject(o, "configured-speed", "unknown");
  cJSON_AddStringToObject(o, "operational-speed", kIfSpeedMbit.text(speed));
  cJSON_AddStringToObject(o, "speed-mode", kIfSpeedMbit.text(speed));
  cJSON_AddStringToObject(o, "configured-duplex", "auto");
}

void addFrameFields(cJSON *o, uint32_t ifNum) {
  cJSON_AddNumberToObject(o, "mtu", 0);
  cJSON_AddNumberToObject(o, "max-frame-size", 0);
  cJSON_AddNumberToObject(o, "ethernet-header-size", portValueOrZero(rpcclt_openapiIfEthernetHeaderSizeGet, ifNum));
}

void addDescription(cJSON *o, uint32_t ifNum) {
  char text[kDescrBuffer] = {};
  open_buffdesc descr = {kDescrBuffer, text};
  if (rpcclt_openapiIfDescrGet(&gOpenClient, ifNum, &descr) != OPEN_E_NONE) text[0] = '\0';
  text[kDescrBuffer - 1] = '\0';
  cJSON_AddStringToObject(o, "description", text);
}

void addEnableField(cJSON *o, const char *key, PortValueGetter get, uint32_t ifNum, uint32_t preset) {
  cJSON_AddStringToObject(o, key, kEnable.text(portValueOrZero(get, ifNum, preset)));
}

void addLaneModes(cJSON *o, uint32_t ifNum) {
  addLaneMode(o, "expandable-config-mode", rpcclt_openapiIntfExpandablePortConfigModeGet, ifNum);
  addLaneMode(o, "expandable-oper-mode", rpcclt_openapiIntfExpandablePortOperModeGet, ifNum);
}
