// Interface application settings: the time range bound to each port and
// the colour LEDs, which only the first twelve copper ports carry.
#include "sim/sim.h"

namespace sim {

namespace {

constexpr uint32_t kLedPorts = 12;
constexpr size_t kTimeRangeNameMax = 31;
constexpr uint32_t kLedColorMax = 7;  // 0 off, then red, green, blue, yellow, cyan, magenta, white
constexpr uint32_t kBrightnessMax = 100;

bool hasLed(uint32_t ifNum) { return ifNum <= kLedPorts; }

// Names longer than the switch keeps are refused, not cut.
int timeRangeSet(Sim &, Call &c, Port &p) {
  using enum args::rpcclt_openapiInterfaceAppTimeRangeSet::Param;
  std::string name = c.text(timeRange);
  if (name.size() > kTimeRangeNameMax) return OPEN_E_PARAM;
  p.settings.timeRange = name;
  return OPEN_E_NONE;
}

int ledSupport(Sim &, Call &c, Port &) {
  using enum args::rpcclt_openapiInterfaceAppPortRGBLedColorSupportGet::Param;
  c.out(supported, hasLed(c.port()) ? 1 : 0);
  return OPEN_E_NONE;
}

template <PortField<uint32_t> F>
int ledGet(Sim &s, Call &c) {
  return hasLed(c.port()) ? portGet<F>(s, c) : lacking(s, c.port());
}

template <PortField<uint32_t> F, uint32_t Max>
int ledSet(Sim &s, Call &c) {
  return hasLed(c.port()) ? portSet<F, 0, Max>(s, c) : lacking(s, c.port());
}

int ledModeGet(Sim &s, Call &c) {
  using enum args::rpcclt_openapiInterfaceAppRGBLedColorModeGet::Param;
  if (c.in(unit) != kStackUnit) return OPEN_E_NOT_FOUND;
  c.out(mode, s.model.ledMode);
  return OPEN_E_NONE;
}

int ledModeSet(Sim &s, Call &c) {
  using enum args::rpcclt_openapiInterfaceAppRGBLedColorModeSet::Param;
  if (c.in(unit) != kStackUnit) return OPEN_E_NOT_FOUND;
  s.model.ledMode = static_cast<uint32_t>(c.in(mode));
  return OPEN_E_NONE;
}

}  // namespace

const CallRule kInterfaceAppRules[] = {
    SIM_RULE(rpcclt_openapiInterfaceAppTimeRangeGet, portTextGet<SIM_PORT_FIELD(settings.timeRange)>),
    SIM_SETTER(rpcclt_openapiInterfaceAppTimeRangeSet, rpcclt_openapiInterfaceAppTimeRangeGet, onPort<timeRangeSet>),
    SIM_SETTING(rpcclt_openapiInterfaceAppRGBLedColorModeGet, ledModeGet, rpcclt_openapiInterfaceAppRGBLedColorModeSet,
                ledModeSet),
    SIM_RULE(rpcclt_openapiInterfaceAppPortRGBLedColorSupportGet, onPort<ledSupport>),
    SIM_SETTING(rpcclt_openapiInterfaceAppPortRGBLedColorGet, ledGet<SIM_PORT_FIELD(settings.ledColor)>,
                rpcclt_openapiInterfaceAppPortRGBLedColorSet,
                (ledSet<SIM_PORT_FIELD(settings.ledColor), kLedColorMax>)),
    SIM_SETTING(rpcclt_openapiInterfaceAppPortRGBLedColorBrightnessGet, ledGet<SIM_PORT_FIELD(settings.ledBrightness)>,
                rpcclt_openapiInterfaceAppPortRGBLedColorBrightnessSet,
                (ledSet<SIM_PORT_FIELD(settings.ledBrightness), kBrightnessMax>)),
};

// The guest-room ports follow the office-hours schedule.
static void seedInterfaceApp(Sim &s) {
  for (auto &[n, p] : s.model.ports) p.settings.timeRange = n >= 9 && n <= 12 ? "office-hours" : "";
  s.model.ledMode = 1;
}

const RuleGroup kInterfaceAppGroup = {kInterfaceAppRules, std::size(kInterfaceAppRules), seedInterfaceApp};

}  // namespace sim
