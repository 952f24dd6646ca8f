#include "api/if/port_fields.h"

#include "api/if/attribute_texts.h"
#include "switch/open_client.h"

using namespace port_doc;

namespace {

void addLaneMode(cJSON *o, const doc::Field &field, PortValueGetter get, uint32_t ifNum) {
  const char *text = field.texts->text(portValueOrZero(get, ifNum));
  if (text) cJSON_AddStringToObject(o, field.name, text);
  else cJSON_AddNullToObject(o, field.name);
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
  cJSON_AddStringToObject(o, kConfiguredSpeed.name, kConfiguredSpeed.words);
  cJSON_AddStringToObject(o, kOperationalSpeed.name, kIfSpeedMbit.text(speed));
  cJSON_AddStringToObject(o, kSpeedMode.name, kIfSpeedMbit.text(speed));
  cJSON_AddStringToObject(o, kConfiguredDuplex.name, kConfiguredDuplex.words);
}

void addFrameFields(cJSON *o, uint32_t ifNum) {
  cJSON_AddNumberToObject(o, kMtu.name, 0);
  cJSON_AddNumberToObject(o, kMaxFrameSize.name, 0);
  cJSON_AddNumberToObject(o, kEthernetHeaderSize.name, portValueOrZero(rpcclt_openapiIfEthernetHeaderSizeGet, ifNum));
}

void addDescription(cJSON *o, uint32_t ifNum) {
  char text[fields::kDescrBuffer] = {};
  open_buffdesc descr = {fields::kDescrBuffer, text};
  if (rpcclt_openapiIfDescrGet(&gOpenClient, ifNum, &descr) != OPEN_E_NONE) text[0] = '\0';
  text[fields::kDescrBuffer - 1] = '\0';
  cJSON_AddStringToObject(o, kDescription.name, text);
}

void addEnableField(cJSON *o, const doc::Field &field, PortValueGetter get, uint32_t ifNum, uint32_t preset) {
  cJSON_AddStringToObject(o, field.name, field.texts->text(portValueOrZero(get, ifNum, preset)));
}

void addLaneModes(cJSON *o, uint32_t ifNum) {
  addLaneMode(o, kConfigLanes, rpcclt_openapiIntfExpandablePortConfigModeGet, ifNum);
  addLaneMode(o, kOperLanes, rpcclt_openapiIntfExpandablePortOperModeGet, ifNum);
}
