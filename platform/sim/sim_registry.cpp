// The whole call table and the seeding of a switch, one entry per group.
#include <stdio.h>

#include "sim/sim.h"

namespace sim {

// The groups in the order their facts build on each other: the ports and
// their links first.
const RuleGroup kRuleGroups[] = {kSystemGroup, kInterfaceGroup,    kAttributeGroup, kPmlGroup,
                                 kGreenGroup,  kInterfaceAppGroup, kCounterGroup};
const size_t kRuleGroupCount = std::size(kRuleGroups);

void seedSwitch(Sim &s, const SwitchLayout &layout) {
  s.model = Model();
  s.model.layout = layout;
  for (const RuleGroup &g : kRuleGroups) g.seed(s);
}

std::string defaultScenario() { return scenarioFor(SwitchLayout{}); }

// As at load: the clock at zero.
std::string defaultSwitchDump() {
  Sim s;
  clockRestart(s.clock);
  clockPause(s.clock);
  seedSwitch(s, SwitchLayout{});
  return dumpScenario(s);
}

std::string scenarioFor(const SwitchLayout &layout) {
  char text[200];
  snprintf(text, sizeof text,
           "{\"model\": {\"layout\": {\"copperPorts\": %u, \"fibrePorts\": %u, \"lags\": %u, \"cage\": %s}}}\n",
           layout.copperPorts, layout.fibrePorts, layout.lags, layout.cage ? "true" : "false");
  return text;
}

}  // namespace sim
