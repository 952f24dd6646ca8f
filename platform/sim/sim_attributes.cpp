// Port attributes: speeds, duplex, frame sizes, shutdown and trap modes,
// FEC and port expansion of the 25G fibre ports.
#include "sim/sim.h"

namespace sim {

namespace {

constexpr uint32_t kFirstFibrePort = 25;

void seedPort(Sim &s, const Interface &i) {
  std::string key = std::to_string(i.ifNum);
  bool fibre = i.ifNum >= kFirstFibrePort;
  bool up = findInterface(s, i.ifNum) && s.stored("openapiIfLinkStateGet", key) &&
            s.stored("openapiIfLinkStateGet", key)->at(0).num == 0;
  // Speed-mode values: 1 auto, 7 1000 full, 12 25G.
  s.put("rpcclt_openapiIfSpeedModeGet", key, {num(fibre ? 12 : up ? 7 : 1)});
  s.put("rpcclt_openapiIfDuplexModeGet", key, {num(1)});
  s.put("rpcclt_openapiIfEthernetHeaderSizeGet", key, {num(18)});
  s.put("rpcclt_openapiIfSoftShutdownStateGet", key, {num(0)});
  s.put("rpcclt_openapiIfLinkTrapGet", key, {num(1)});
  // Lane mode 2 is one 25G lane; copper ports have no expansion.
  s.put("rpcclt_openapiIntfExpandablePortConfigModeGet", key, {num(fibre ? 2 : 0)});
  s.put("rpcclt_openapiIntfExpandablePortOperModeGet", key, {num(fibre ? 2 : 0)});
  if (fibre) s.put("rpcclt_openapiIntfFECModeGet", key, {num(2), num(4)});
}

}  // namespace

const CallRule kAttributeRules[] = {
    SIM_GET(rpcclt_openapiIfSpeedModeGet),
    SIM_GET(rpcclt_openapiIfDuplexModeGet),
    SIM_GET(rpcclt_openapiIfEthernetHeaderSizeGet),
    SIM_GET(rpcclt_openapiIfSoftShutdownStateGet),
    SIM_GET(rpcclt_openapiIfLinkTrapGet),
    SIM_GET(rpcclt_openapiIntfFECModeGet),
    SIM_GET(rpcclt_openapiIntfExpandablePortConfigModeGet),
    SIM_GET(rpcclt_openapiIntfExpandablePortOperModeGet),
};
const size_t kAttributeRuleCount = sizeof kAttributeRules / sizeof kAttributeRules[0];

void seedAttributes(Sim &s) {
  for (const Interface &i : s.interfaces)
    if (i.type == OPEN_INTF_TYPE_PHY) seedPort(s, i);
}

}  // namespace sim
