// Interface application settings: the time range bound to each port and
// the colour LEDs, which only the first twelve copper ports carry.
#include "sim/sim.h"

namespace sim {

namespace {

constexpr uint32_t kLedPorts = 12;
constexpr uint32_t kStackUnit = 1;
constexpr size_t kTimeRangeNameMax = 31;
constexpr uint32_t kLedColorMax = 7;  // 0 off, then red, green, blue, yellow, cyan, magenta, white
constexpr uint32_t kBrightnessMax = 100;

std::string key(uint64_t n) { return std::to_string(n); }

// Names longer than the switch keeps are refused, not cut.
int timeRangeSet(Sim &s, Call &c) {
  std::string port = key(c.in(0));
  if (!s.stored("rpcclt_openapiInterfaceAppTimeRangeGet", port)) return -29;
  std::string name = c.inText(1);
  if (name.size() > kTimeRangeNameMax) return -22;
  s.put("rpcclt_openapiInterfaceAppTimeRangeGet", port, {text(name)});
  return 0;
}

int setPortBounded(Sim &s, Call &c, const char *getter, uint32_t most) {
  std::string port = key(c.in(0));
  if (!s.stored(getter, port)) return -29;
  if (c.in(1) > most) return -22;
  s.put(getter, port, {num(static_cast<int64_t>(c.in(1)))});
  return 0;
}

int ledColorSet(Sim &s, Call &c) {
  return setPortBounded(s, c, "rpcclt_openapiInterfaceAppPortRGBLedColorGet", kLedColorMax);
}
int ledBrightnessSet(Sim &s, Call &c) {
  return setPortBounded(s, c, "rpcclt_openapiInterfaceAppPortRGBLedColorBrightnessGet", kBrightnessMax);
}

}  // namespace

const CallRule kInterfaceAppRules[] = {
    SIM_GET(rpcclt_openapiInterfaceAppTimeRangeGet),
    SIM_CUSTOM(rpcclt_openapiInterfaceAppTimeRangeSet, timeRangeSet),
    SIM_SET(rpcclt_openapiInterfaceAppRGBLedColorModeSet, rpcclt_openapiInterfaceAppRGBLedColorModeGet, 1),
    SIM_GET(rpcclt_openapiInterfaceAppRGBLedColorModeGet),
    SIM_GET(rpcclt_openapiInterfaceAppPortRGBLedColorSupportGet),
    SIM_CUSTOM(rpcclt_openapiInterfaceAppPortRGBLedColorSet, ledColorSet),
    SIM_GET(rpcclt_openapiInterfaceAppPortRGBLedColorGet),
    SIM_CUSTOM(rpcclt_openapiInterfaceAppPortRGBLedColorBrightnessSet, ledBrightnessSet),
    SIM_GET(rpcclt_openapiInterfaceAppPortRGBLedColorBrightnessGet),
};
const size_t kInterfaceAppRuleCount = sizeof kInterfaceAppRules / sizeof kInterfaceAppRules[0];

void seedInterfaceApp(Sim &s) {
  for (uint32_t p = 1; p <= layoutOf(s).ports(); ++p) {
    std::string k = key(p);
    // The guest-room ports follow the office-hours schedule.
    s.put("rpcclt_openapiInterfaceAppTimeRangeGet", k, {text(p >= 9 && p <= 12 ? "office-hours" : "")});
    bool led = p <= kLedPorts;
    s.put("rpcclt_openapiInterfaceAppPortRGBLedColorSupportGet", k, {num(led ? 1 : 0)});
    if (!led) continue;
    s.put("rpcclt_openapiInterfaceAppPortRGBLedColorGet", k, {num(2)});
    s.put("rpcclt_openapiInterfaceAppPortRGBLedColorBrightnessGet", k, {num(80)});
  }
  s.put("rpcclt_openapiInterfaceAppRGBLedColorModeGet", key(kStackUnit), {num(1)});
}

}  // namespace sim
