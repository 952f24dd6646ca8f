#include <gtest/gtest.h>

#include "sim/sim.h"
#include "test_support.h"

namespace {

constexpr char kGetter[] = "openapiIfAdminStateGet";

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
      sim::Call set{"rpcclt_openapiIfAdminStateSet", {simArg(wire::kInNum, 3), simArg(wire::kInNum, 1)}};
      ASSERT_EQ(sim::handleCall(s, set), 0);
    } else {
      Ctl r = ctl(s, step.ctl);
      ASSERT_EQ(r.status, 0) << r.out;
    }
    for (size_t p = 0; p < std::size(ports); ++p)
      EXPECT_EQ(simRead(s, kGetter, ports[p]), step.want[p])
          << "step " << &step - steps << ", port " << ports[p];
  }
}

}  // namespace
