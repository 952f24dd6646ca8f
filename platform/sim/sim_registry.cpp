// The whole call table and the default scenario, one entry per group.
#include "sim/sim.h"

namespace sim {

const RuleGroup kRuleGroups[] = {
    {kSystemRules, kSystemRuleCount},
    {kInterfaceRules, kInterfaceRuleCount},
    {kAttributeRules, kAttributeRuleCount},
    {kCounterRules, kCounterRuleCount},
};
const size_t kRuleGroupCount = sizeof kRuleGroups / sizeof kRuleGroups[0];

std::string defaultScenario() {
  Sim s;
  seedSystem(s);
  seedInterfaces(s);
  seedAttributes(s);
  seedCounters(s);
  return dumpScenario(s);
}

}  // namespace sim
