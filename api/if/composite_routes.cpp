#include "api/if/composite_routes.h"

#include <optional>

#include "api/if/attribute_texts.h"
#include "frame/envelope.h"
#include "frame/params.h"
#include "open_api.h"
#include "switch/open_client.h"

namespace {

constexpr char kGroup[] = "if";
constexpr uint32_t kDescrBuffer = 256;
// Asked for but never shown: the page's duplex is a fixed "auto".
constexpr uint32_t kDuplexPreset = 65535;
// Both FEC outputs read "auto" when the platform leaves them unwritten.
constexpr uint32_t kFecPreset = 2;

using ValueGetter = int (*)(openapiClientHandle_t *, uint32_t, uint32_t *);

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

// One value under one key. Without a fallback a refusal is reported; with
// one, the page gets the fallback's text and code 0.
struct OneValue {
  ValueGetter call;
  const char *key;
  const TextMap &text;
  uint32_t preset;
  std::optional<uint32_t> fallback;
};

uint32_t readOneValue(const OneValue &v) {
  uint32_t ifNum = requestedIfNum();
  if (!ifNum) return refuseRead();
  uint32_t value = v.preset;
  uint32_t code = openResultToCode(v.call(&gOpenClient, ifNum, &value));
  if (code != CODE_SUCCESS) {
    if (!v.fallback) {
      replyRead(code, kGroup, nullptr);
      return 0;
    }
    value = *v.fallback;
  }
  JsonPtr data(cJSON_CreateObject());
  cJSON_AddStringToObject(data.get(), v.key, v.text.text(value));
  return replyData(data);
}

void addLaneMode(cJSON *data, const char *key, uint32_t mode) {
  const char *text = ifLaneModeText(mode);
  if (text) cJSON_AddStringToObject(data, key, text);
  else cJSON_AddNullToObject(data, key);
}

}  // namespace

uint32_t ifCompositeAdminStateGet(void) {
  return readOneValue({openapiIfAdminStateGet, "admin-state", kIfUpDown, 0, std::nullopt});
}

uint32_t ifCompositeAutoNegGet(void) {
  return readOneValue({openapiIfAutoNegGet, "auto-negotiate", kIfAutoNegotiate, 0, std::nullopt});
}

uint32_t ifCompositeSoftShutdownGet(void) {
  return readOneValue({rpcclt_openapiIfSoftShutdownStateGet, "soft-shutdown", kIfEnable, 0, 0});
}

// Preset to enabled, yet a refused read shows "disable".
uint32_t ifCompositeLinkTrapGet(void) {
  return readOneValue({rpcclt_openapiIfLinkTrapGet, "link-trap", kIfEnable, 1, 0});
}

// The call results are not looked at: an unanswered speed keeps its preset
// and reads "unknown"; the configured values are fixed texts.
uint32_t ifCompositeSpeedGet(void) {
  uint32_t ifNum = requestedIfNum();
  if (!ifNum) return refuseRead();
  uint32_t speed = kIfSpeedUnknown;
  uint32_t duplex = kDuplexPreset;
  rpcclt_openapiIfSpeedModeGet(&gOpenClient, ifNum, &speed);
  rpcclt_openapiIfDuplexModeGet(&gOpenClient, ifNum, &duplex);
  JsonPtr data(cJSON_CreateObject());
  cJSON_AddStringToObject(data.get(), "configured-speed", "unknown");
  cJSON_AddStringToObject(data.get(), "operational-speed", ifSpeedMbitText(speed));
  cJSON_AddStringToObject(data.get(), "speed-mode", ifSpeedMbitText(speed));
  cJSON_AddStringToObject(data.get(), "configured-duplex", "auto");
  cJSON_AddStringToObject(data.get(), "operational-duplex", "unknown");
  return replyData(data);
}

// The MTU and the frame size are fixed zeros on this page; only the
// header size is asked for.
uint32_t ifCompositeMtuSizeGet(void) {
  uint32_t ifNum = requestedIfNum();
  if (!ifNum) return refuseRead();
  uint32_t headerSize = 0;
  if (rpcclt_openapiIfEthernetHeaderSizeGet(&gOpenClient, ifNum, &headerSize) != OPEN_E_NONE) headerSize = 0;
  JsonPtr data(cJSON_CreateObject());
  cJSON_AddNumberToObject(data.get(), "mtu", 0);
  cJSON_AddNumberToObject(data.get(), "max-frame-size", 0);
  cJSON_AddNumberToObject(data.get(), "ethernet-header-size", headerSize);
  return replyData(data);
}

uint32_t ifCompositeDescrGet(void) {
  uint32_t ifNum = requestedIfNum();
  if (!ifNum) return refuseRead();
  char text[kDescrBuffer] = {};
  open_buffdesc descr = {kDescrBuffer, text};
  if (rpcclt_openapiIfDescrGet(&gOpenClient, ifNum, &descr) != OPEN_E_NONE) text[0] = '\0';
  text[kDescrBuffer - 1] = '\0';
  JsonPtr data(cJSON_CreateObject());
  cJSON_AddStringToObject(data.get(), "description", text);
  return replyData(data);
}

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
  cJSON_AddStringToObject(data.get(), "fec-mode", ifFecShortText(configured));
  cJSON_AddStringToObject(data.get(), "fec-oper", ifFecShortText(operational));
  return replyData(data);
}

// A port that cannot be split reads null for both modes, also when the
// switch refuses to answer.
uint32_t ifCompositeExpandableModeGet(void) {
  uint32_t ifNum = requestedIfNum();
  if (!ifNum) return refuseRead();
  uint32_t configured = 0;
  uint32_t operational = 0;
  if (rpcclt_openapiIntfExpandablePortConfigModeGet(&gOpenClient, ifNum, &configured) != OPEN_E_NONE) configured = 0;
  if (rpcclt_openapiIntfExpandablePortOperModeGet(&gOpenClient, ifNum, &operational) != OPEN_E_NONE) operational = 0;
  JsonPtr data(cJSON_CreateObject());
  addLaneMode(data.get(), "expandable-config-mode", configured);
  addLaneMode(data.get(), "expandable-oper-mode", operational);
  return replyData(data);
}

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
