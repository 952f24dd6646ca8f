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

static uint32_t layoutField(const cJSON *layout, const char *name, uint32_t otherwise) {
  const cJSON *v = cJSON_GetObjectItemCaseSensitive(layout, name);
  return cJSON_IsNumber(v) ? static_cast<uint32_t>(v->valuedouble) : otherwise;
}

SwitchLayout layoutOf(const Sim &s) {
  const cJSON *l = cJSON_GetObjectItemCaseSensitive(s.model.get(), "layout");
  SwitchLayout out;
  if (!l) return out;
  out.copperPorts = layoutField(l, "copperPorts", out.copperPorts);
  out.fibrePorts = layoutField(l, "fibrePorts", out.fibrePorts);
  out.lags = layoutField(l, "lags", out.lags);
  out.cage = !cJSON_IsFalse(cJSON_GetObjectItemCaseSensitive(l, "cage"));
  return out;
}

std::string defaultScenario() { return scenarioFor(SwitchLayout{}); }

std::string scenarioFor(const SwitchLayout &layout) {
  Sim s;
  cJSON *l = cJSON_AddObjectToObject(s.model.get(), "layout");
  cJSON_AddNumberToObject(l, "copperPorts", layout.copperPorts);
  cJSON_AddNumberToObject(l, "fibrePorts", layout.fibrePorts);
  cJSON_AddNumberToObject(l, "lags", layout.lags);
  cJSON_AddBoolToObject(l, "cage", layout.cage);
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
