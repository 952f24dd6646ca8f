#include "api/interface_app/interface_app.h"

#include <string.h>

#include "api/interface_app/led_gate.h"
#include "frame/envelope.h"
#include "frame/params.h"
#include "switch/open_client.h"

namespace kit {

bool ledColorSupported(LedPort port) {
  uint32_t ifNum = port == LedPort::First ? 1 : queryScanUint(fields::kIfNum.name);
  uint32_t supported = 0;
  int rc = rpcclt_openapiInterfaceAppPortRGBLedColorSupportGet(&gOpenClient, ifNum, &supported);
  return rc == OPEN_E_NONE && supported == 1;
}

}  // namespace kit

// The name goes to the switch whole: its length limit is the switch's.
uint32_t interfaceAppTimeRangeSet(void) {
  uint32_t intIfNum = queryScanUint(fields::kIntIfNum.name);
  JsonPtr body(requestBodyParse());
  if (!body) {
    replyInvalidArgument();
    return 0;
  }
  const char *name = bodyText(body.get(), fields::kTimeRange.name);
  if (!name) name = "";
  open_buffdesc desc = {static_cast<uint32_t>(strlen(name) + 1), const_cast<char *>(name)};
  replySetResult(openResultToCode(rpcclt_openapiInterfaceAppTimeRangeSet(&gOpenClient, intIfNum, &desc)));
  return 0;
}
