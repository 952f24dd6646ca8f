#include "api/interface_app/led_gate.h"
#include "switch/open_client.h"
#include "test_support.h"

// Ports 1 to 12 of the default switch have a colour LED. The switch-wide
// colour mode asks about port 1, whatever the request names.
TEST(LedGate, OnlyAnAnswerOfExactlyOneOpensIt) {
  const std::string support = "rpcclt_openapiInterfaceAppPortRGBLedColorSupportGet";
  struct Case { std::vector<std::vector<std::string>> controls; const char *query; kit::LedPort port; bool open; };
  const Case cases[] = {
      {{}, "ifNum=12", kit::LedPort::FromQuery, true},
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
