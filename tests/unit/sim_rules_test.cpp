#include <gtest/gtest.h>

#include "sim/sim.h"

namespace {

constexpr char kGetter[] = "openapiIfAdminStateGet";

sim::Arg arg(wire::Kind kind, uint64_t n) {
  sim::Arg a;
  a.kind = kind;
  a.num = n;
  return a;
}

// What the getter answers for one port; -1 when it answers nothing.
int64_t answer(sim::Sim &s, uint64_t port) {
  sim::Call c{kGetter, {arg(wire::kInNum, port), arg(wire::kOutNum, 0)}};
  return sim::handleCall(s, c) == 0 ? static_cast<int64_t>(c.args[1].num) : -1;
}

TEST(SimRules, TheLatestOfStarSpecificAndSetterWinsUntilReset) {
  const uint64_t ports[] = {3, 5, 9999};  // 9999: a port the scenario lacks
  struct Step {
    std::vector<std::string> ctl;  // empty: the CGI's setter call for port 3
    int64_t want[3];
  } steps[] = {
      {{"set", kGetter, "*", "2"}, {2, 2, 2}},  // over the scenario's per-port values
      {{"set", kGetter, "5", "0"}, {2, 0, 2}},
      {{}, {1, 0, 2}},
      {{"set", kGetter, "*", "2"}, {2, 2, 2}},
      {{"reset"}, {1, 1, -1}},
  };
  sim::Sim s;
  std::string out;
  ASSERT_TRUE(sim::loadScenario(s, sim::defaultScenario(), &out)) << out;
  for (const Step &step : steps) {
    if (step.ctl.empty()) {
      sim::Call set{"rpcclt_openapiIfAdminStateSet", {arg(wire::kInNum, 3), arg(wire::kInNum, 1)}};
      ASSERT_EQ(sim::handleCall(s, set), 0);
    } else {
      ASSERT_EQ(sim::handleControl(s, step.ctl, &out), 0) << out;
    }
    for (size_t p = 0; p < std::size(ports); ++p)
      EXPECT_EQ(answer(s, ports[p]), step.want[p]) << "step " << &step - steps << ", port " << ports[p];
  }
}

}  // namespace
