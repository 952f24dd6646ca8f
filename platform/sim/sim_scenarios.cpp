// The ready scenarios built into open-sim: a name, what it shows, and its
// text (a timeline on the default switch, or a whole switch).
#include <string.h>

#include "sim/sim.h"

namespace sim {

namespace {

// Auto-recovery on for BPDU guard and MAC locking; the other causes stay
// as the switch has them.
#define RECOVERY(interval) \
  R"("errdisable": {"interval": )" #interval R"(, "causes": {"bpduguard": true, "pml": true}})"

const char kUplinkFlap[] = R"({"timeline": [
  {"at": 5, "event": "link-down", "port": 1},
  {"at": 8, "event": "link-up", "port": 1},
  {"at": 20, "event": "link-down", "port": 1},
  {"at": 21, "event": "link-up", "port": 1},
  {"at": 40, "event": "link-down", "port": 1},
  {"at": 70, "event": "link-up", "port": 1},
  {"at": 120, "event": "link-down", "port": 1},
  {"at": 125, "event": "link-up", "port": 1}
]})";

const char kDDisableRecovery[] = R"({"model": {)" RECOVERY(60) R"(}, "timeline": [
  {"at": 10, "event": "ddisable", "port": 3, "cause": "bpduguard"}
]})";

const char kPmlViolation[] = R"({"model": {)" RECOVERY(120) R"(}, "timeline": [
  {"at": 10, "event": "pml-violation", "port": 2, "macs": ["00:1E:C9:AA:00:01"], "vlan": 1},
  {"at": 20, "event": "pml-violation", "port": 2, "macs": ["00:1E:C9:AA:00:02", "00:1E:C9:AA:00:03"], "vlan": 1},
  {"at": 30, "event": "pml-violation", "port": 3, "macs": ["00:1B:21:3A:4F:99"], "vlan": 10}
]})";

// A timeline or a whole switch as text, or else the switch of a layout.
struct ReadyScenario {
  const char *name;
  const char *shows;
  const char *text;
  SwitchLayout layout;
};

const ReadyScenario kReady[] = {
    {"default", "the 28-port switch: 24 copper ports, four 25G fibre ports, two LAGs", nullptr, {}},
    {"switch-10", "a 10-port switch: 8 copper ports, two 10G fibre uplinks, one LAG", nullptr, {8, 2, 1, false}},
    {"switch-52", "a 52-port switch: 48 copper ports, four 10G fibre uplinks, four LAGs", nullptr, {48, 4, 4, false}},
    {"uplink-flap", "the uplink (port 1) goes down and up four times in two minutes", kUplinkFlap, {}},
    {"ddisable-recovery", "BPDU guard shuts port 3 at 10 s; auto-recovery brings it back 60 s later",
     kDDisableRecovery, {}},
    {"pml-violation", "foreign addresses on locked ports 2 (reported) and 3 (D-Disabled at 30 s, back at 150 s)",
     kPmlViolation, {}},
};

}  // namespace

std::string readyScenarioList() {
  std::string out;
  for (const ReadyScenario &r : kReady) {
    std::string name = r.name;
    out += name + std::string(name.size() < 20 ? 20 - name.size() : 1, ' ') + r.shows + "\n";
  }
  return out;
}

bool readyScenario(const std::string &name, std::string *text) {
  for (const ReadyScenario &r : kReady) {
    if (name != r.name) continue;
    *text = r.text ? r.text : scenarioFor(r.layout);
    return true;
  }
  return false;
}

}  // namespace sim
