// The whole call table and the default scenario, one entry per group.
#include "sim/sim.h"

namespace sim {

const RuleGroup kRuleGroups[] = {
    {kSystemRules, kSystemRuleCount},
    {kInterfaceRules, kInterfaceRuleCount},
    {kAttributeRules, kAttributeRuleCount},
    {kPmlRules, kPmlRuleCount},
    {kGreenRules, kGreenRuleCount},
    {kInterfaceAppRules, kInterfaceAppRuleCount},
    {kCounterRules, kCounterRuleCount},
};
const size_t kRuleGroupCount = sizeof kRuleGroups / sizeof kRuleGroups[0];

std::string defaultScenario() {
  Sim s;
  seedSystem(s);
  seedInterfaces(s);
  seedAttributes(s);
  seedPml(s);
  seedGreen(s);
  seedInterfaceApp(s);
  seedCounters(s);
  return dumpScenario(s);
}

}  // namespace sim
