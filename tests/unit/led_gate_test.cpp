#include <thread>

#include "api/interface_app/led_gate.h"
#include "sim/sim_server.h"
#include "switch/open_client.h"
#include "test_support.h"

// The default simulated switch, changed by control words before any client
// connects, served from a thread for one scope.
class InProcessSim {
 public:
  explicit InProcessSim(const std::vector<std::vector<std::string>> &controls) {
    std::string text;
    sim::loadScenario(sim_, sim::defaultScenario(), &text);
    for (const auto &words : controls) EXPECT_EQ(sim::handleControl(sim_, words, &text), 0) << text;
    thread_ = std::thread([this] { sim::serve(sim_, socket_.c_str()); });
    for (int i = 0; i < 1000 && access(socket_.c_str(), F_OK) != 0; ++i) usleep(2000);
  }
  ~InProcessSim() {
    sim::stopServing();
    thread_.join();
  }

 private:
  TempDir dir_;
  std::string socket_ = dir_.file("sim.sock");
  ScopedEnv env_{{{"OPEN_SIM_SOCKET", socket_.c_str()}}};
  sim::Sim sim_;
  std::thread thread_;
};

// Ports 1 to 12 of the default switch have a colour LED. The switch-wide
// colour mode asks about port 1, whatever the request names.
TEST(LedGate, OnlyAnAnswerOfExactlyOneOpensIt) {
  const std::string support = "rpcclt_openapiInterfaceAppPortRGBLedColorSupportGet";
  struct Case { std::vector<std::vector<std::string>> controls; const char *query; kit::LedPort port; bool open; };
  const Case cases[] = {
      {{}, "ifNum=12", kit::LedPort::FromQuery, true},
      {{}, "ifNum=13", kit::LedPort::FromQuery, false},
      {{}, "unit=1&ifNum=13", kit::LedPort::First, true},
      {{{"set", support, "12", "2"}}, "ifNum=12", kit::LedPort::FromQuery, false},
      {{{"fail", support, "-1", "1"}}, "ifNum=12", kit::LedPort::FromQuery, false},
      {{{"set", support, "1", "0"}}, "unit=1&ifNum=12", kit::LedPort::First, false},
  };
  for (const Case &c : cases) {
    InProcessSim sim(c.controls);
    ScopedEnv query({{"QUERY_STRING", c.query}});
    ASSERT_EQ(openapiClientRegister("unit", &gOpenClient), OPEN_E_NONE);
    EXPECT_EQ(kit::ledColorSupported(c.port), c.open) << c.query;
    openapiClientTearDown(&gOpenClient);
  }
}
