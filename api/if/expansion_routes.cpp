#include "api/if/expansion_routes.h"

#include "api/if/attribute_texts.h"
#include "api/route_kit.h"

// The mode arrives as its platform name through the loose query lookup;
// a missing or unknown name asks about "none".
uint32_t ifExpandPortModeSupportedGet(void) {
  kit::Request req;
  kit::splitQuery(req);
  const doc::Field &asked = kExpandModeQuery[0];
  uint32_t mode = asked.accepts->value(queryParamValue(asked.name, req.query));
  uint32_t supported = 0;
  uint32_t code = openResultToCode(rpcclt_openapiIntfExpandablePortModeSupportedGet(&gOpenClient, mode, &supported));
  JsonPtr data(code == CODE_SUCCESS ? cJSON_CreateObject() : nullptr);
  const doc::Field &answer = kExpandModeSupported[0];
  if (data) cJSON_AddStringToObject(data.get(), answer.name, answer.texts->text(supported));
  replyRead(code, "if", data.get());
  return 0;
}
