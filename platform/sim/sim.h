// The simulated OpEN service: the switch state it holds across client
// processes, the calls it answers and the controls of `open-sim ctl`.
#ifndef PLATFORM_SIM_SIM_H
#define PLATFORM_SIM_SIM_H

#include <cjson/cJSON.h>
#include <stdint.h>

#include <deque>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "open_api.h"
#include "sim/sim_clock.h"
#include "sim/wire.h"

namespace sim {

struct JsonDelete {
  void operator()(cJSON *j) const { cJSON_Delete(j); }
};
using Json = std::unique_ptr<cJSON, JsonDelete>;

// One stored output of a call: a number or a text.
struct Value {
  bool isText = false;
  int64_t num = 0;
  std::string text;
};
using Outputs = std::vector<Value>;
Value num(int64_t n);
Value text(std::string t);

struct Arg {
  wire::Kind kind = wire::kInNum;
  uint8_t width = 4;
  uint64_t num = 0;  // input value, or the preset of an output
  uint32_t size = 0; // descriptor size
  std::string text;  // input text, written text, or record bytes
  bool written = false;

  bool isInput() const { return kind == wire::kInNum || kind == wire::kInText || kind == wire::kInString; }
};

struct Call {
  std::string name;
  std::vector<Arg> args;

  std::vector<const Arg *> inputs() const;
  std::vector<Arg *> outputs();
  // Inputs joined by ",": numbers in decimal, texts as they are.
  std::string key() const;
  std::string keyOf(size_t firstInputs) const;
  uint64_t in(size_t i) const;        // i-th input as a number
  std::string inText(size_t i) const; // i-th input as text
  void setOut(size_t i, uint64_t v);
  void setOutText(size_t i, const std::string &t);
};

struct Fault {
  int result = 0;
  int64_t remaining = -1;  // -1: every call from now on
};

// A call answered late (`ctl delay`), in the machine's time: a client's
// time-out runs on that, not on the simulated clock.
struct Delay {
  int64_t ms = 0;
  int64_t remaining = -1;  // -1: every call from now on
};

struct Interface {
  uint32_t ifNum = 0;
  uint32_t type = 0;
};

struct Sim;
using Behavior = int (*)(Sim &, Call &);

enum class Rule { Get, Set, Custom };

// One line per OpEN call: how the simulator answers it.
struct CallRule {
  const char *name;
  Rule rule;
  const char *target;  // Set: the getter whose state it writes
  uint8_t keyInputs;   // Set: how many leading inputs form the state key
  Behavior custom;
};

#define SIM_GET(call) {#call, ::sim::Rule::Get, nullptr, 0, nullptr}
#define SIM_SET(call, getter, keyInputs) {#call, ::sim::Rule::Set, #getter, keyInputs, nullptr}
#define SIM_CUSTOM(call, fn) {#call, ::sim::Rule::Custom, nullptr, 0, fn}

// A port's traffic from `atMs` on: rates in octets per second (-1 keeps
// the current one) and a burst of received errors counted at that moment.
struct TrafficChange {
  int64_t inOctetsPerSec = -1;
  int64_t outOctetsPerSec = -1;
  int64_t inErrors = 0;
};

// One event of a timeline, at a moment of simulated time; which fields
// count depends on the kind.
struct TimelineEvent {
  int64_t atMs = 0;
  std::string kind;
  uint32_t port = 0;
  std::string media;              // transceiver-inserted: "copper" or "fiber"
  std::string cause;              // ddisable: an auto-recovery cause name
  std::vector<std::string> macs;  // pml-violation, in the order seen
  uint32_t vlan = 0;              // pml-violation
  int64_t seconds = 0;            // counters-wrap: until the 32-bit counters wrap
  int64_t milliwatts = 0;         // power
  int64_t savedMwh = -1;          // power: cumulative saving, -1 to keep it
  bool enable = false;            // admin
  TrafficChange traffic;          // traffic
  int number = 0;                 // its place in the timeline, from 1
  std::string source;             // the event as written, for `dump`
};

// What the switch will do by itself at a known moment: D-Disable
// recoveries, announced counter wraps, the next power-saving sample.
struct PendingTimer {
  int64_t atMs;
  std::string what;
};

struct Sim {
  std::vector<Interface> interfaces;
  std::map<std::string, std::map<std::string, Outputs>> state;
  Json model{cJSON_CreateObject()};  // structured state of custom behaviours
  std::map<std::string, Fault> faults;
  std::map<std::string, Delay> delays;
  std::deque<std::string> journal;
  std::string scenario;  // the loaded scenario, for `reset`
  SimClock clock;        // zero at load
  std::vector<TimelineEvent> timeline;  // in time order
  size_t nextEvent = 0;                 // the first not yet applied
  std::map<uint32_t, bool> upBeforeAdminDown;  // ports an admin disable took down
  std::map<uint32_t, TrafficChange> trafficChanges;
  std::map<uint32_t, int64_t> wrapAtMs;  // announced counter wraps

  // The value stored for exactly these inputs, else the call's "*" value.
  const Outputs *stored(const std::string &call, const std::string &key) const;
  // Stores a call's answer; a "*" key replaces all of the call's values.
  void put(const std::string &call, const std::string &key, Outputs v);
};

// The first number stored for a call's inputs, else `otherwise`.
int64_t storedNum(const Sim &s, const std::string &call, const std::string &key, int64_t otherwise = 0);
// Whether the interface's link is up as openapiIfLinkStateGet answers it.
bool linkUp(const Sim &s, uint32_t ifNum);

// Call table, assembled from each group's lines.
const CallRule *findRule(const std::string &name);
struct RuleGroup {
  const CallRule *rules;
  size_t count;
};
extern const RuleGroup kRuleGroups[];
extern const size_t kRuleGroupCount;

// Answers one call: journal, faults, stored answers, then the rule.
int handleCall(Sim &s, Call &c);
// Runs one `open-sim ctl` command; returns the exit status and its output.
int handleControl(Sim &s, const std::vector<std::string> &words, std::string *out);

// Applies the timeline's events and the timers due by the clock's time;
// every call and control command asks first.
void catchUp(Sim &s);
// Reads a timeline (a JSON array of events) against the switch's ports;
// times are seconds from `startMs`. False with one line naming what and
// where.
bool parseTimeline(const Sim &s, const cJSON *events, int64_t startMs, std::vector<TimelineEvent> *out,
                   std::string *error);
// What will happen by itself after the clock's time, soonest first: the
// timeline's events still to come (`event` set) and the model's timers.
struct Pending {
  int64_t atMs = 0;
  std::string what;
  const TimelineEvent *event = nullptr;
};
std::vector<Pending> pendingAfterNow(const Sim &s);
// How late to answer this call, in milliseconds (0: at once); counts the
// call against a `ctl delay` COUNT.
int64_t takeDelay(Sim &s, const std::string &call);

// What events change, each at a moment of simulated time, in the group
// that owns the state.
void setLinkState(Sim &s, uint32_t ifNum, bool up, int64_t atMs);      // interfaces
void holdCountedTraffic(Sim &s, uint32_t ifNum, int64_t atMs);         // counters, before a link change
void resetPortCounters(Sim &s, uint32_t ifNum, int64_t atMs);          // counters
void bringCountersNearWrap(Sim &s, uint32_t ifNum, int64_t secondsLeft, int64_t atMs);
void removeTransceiver(Sim &s, uint32_t ifNum);                        // attributes
void insertTransceiver(Sim &s, uint32_t ifNum, const std::string &media);
bool knownMedia(const std::string &media);
void setDisableReason(Sim &s, uint32_t ifNum, uint32_t reason);
int disableReasonOf(const std::string &cause);  // system; 0 for no cause
void tripDDisable(Sim &s, uint32_t ifNum, const std::string &cause, int64_t atMs);
void recoverDDisabled(Sim &s, int64_t uptoMs);
void recordPmlViolation(Sim &s, const TimelineEvent &e);  // pml
bool hasPowerEstimate(const Sim &s, uint32_t ifNum);    // green
void setPortPower(Sim &s, uint32_t ifNum, int64_t milliwatts, int64_t savedMwh);

// A port's admin state as the switch itself changes it (an `admin` event,
// or the setter): disabled takes the link down and stops its counters.
void setAdminState(Sim &s, uint32_t ifNum, bool enabled, int64_t atMs);

void setPortTraffic(Sim &s, uint32_t ifNum, const TrafficChange &t, int64_t atMs);

// In time order.
std::vector<PendingTimer> pendingTimers(const Sim &s);

// Whether the switch has this VLAN configured.
bool vlanExists(const Sim &s, uint32_t vlan);

bool loadScenario(Sim &s, const std::string &json, std::string *error);
std::string dumpScenario(const Sim &s);
std::string defaultScenario();
// The scenarios built in: one line each, name first; and one's text.
std::string readyScenarioList();
bool readyScenario(const std::string &name, std::string *text);

// Interface walks over the scenario's list, by type.
const Interface *firstOfType(const Sim &s, uint32_t type);
const Interface *nextOfType(const Sim &s, uint32_t type, uint32_t after);
const Interface *findInterface(const Sim &s, uint32_t ifNum);

// The switch's shape, kept in the model ("layout") so that the groups
// answer for the switch the scenario describes. Copper ports come first,
// then the fibre ports; with a cage the fibre ports are the four 25G lanes
// of one expandable port, else single 10G uplinks.
struct SwitchLayout {
  uint32_t copperPorts = 24;
  uint32_t fibrePorts = 4;
  uint32_t lags = 2;
  bool cage = true;

  uint32_t ports() const { return copperPorts + fibrePorts; }
  uint32_t firstFibre() const { return copperPorts + 1; }
  bool isFibre(uint64_t ifNum) const { return ifNum > copperPorts && ifNum <= ports(); }
  bool inCage(uint64_t ifNum) const { return cage && isFibre(ifNum); }
};
SwitchLayout layoutOf(const Sim &s);
// A scenario's text for a switch of this shape.
std::string scenarioFor(const SwitchLayout &layout);

// Per-group pieces of the default scenario and of the call table.
void seedSystem(Sim &s);
void seedInterfaces(Sim &s);
extern const CallRule kSystemRules[];
extern const size_t kSystemRuleCount;
extern const CallRule kInterfaceRules[];
extern const size_t kInterfaceRuleCount;
void seedAttributes(Sim &s);
extern const CallRule kAttributeRules[];
extern const size_t kAttributeRuleCount;
void seedPml(Sim &s);
extern const CallRule kPmlRules[];
extern const size_t kPmlRuleCount;
void seedGreen(Sim &s);
extern const CallRule kGreenRules[];
extern const size_t kGreenRuleCount;
void seedInterfaceApp(Sim &s);
extern const CallRule kInterfaceAppRules[];
extern const size_t kInterfaceAppRuleCount;
void seedCounters(Sim &s);
extern const CallRule kCounterRules[];
extern const size_t kCounterRuleCount;

}  // namespace sim

#endif
