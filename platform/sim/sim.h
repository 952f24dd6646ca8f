// The simulated OpEN service: the switch state it holds across client
// processes, the calls it answers and the controls of `open-sim ctl`.
#ifndef PLATFORM_SIM_SIM_H
#define PLATFORM_SIM_SIM_H

#include <cjson/cJSON.h>
#include <stdint.h>

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

#include "open_api.h"
#include "sim/sim_clock.h"
#include "sim/sim_model.h"
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

// An OpEN call as platform/open_calls.inc declares it: its name, its
// parameter list as written, and how many arguments travel (all but the
// client handle, which stays with the client).
struct CallId {
  const char *name;
  const char *params;
  uint8_t arity;
};
template <class... P>
constexpr uint8_t arityOf(int (*)(P...)) {
  return sizeof...(P) - 1;
}
namespace calls {
#define OPEN_CALL(name, params, list) inline constexpr CallId name{#name, #params, arityOf(&::name)};
#include "open_calls.inc"
#undef OPEN_CALL
inline constexpr CallId openapiClientRegister{"openapiClientRegister",
                                              "(const char *clientName, openapiClientHandle_t *client)", 1};
inline constexpr CallId openapiClientTearDown{"openapiClientTearDown", "(openapiClientHandle_t *client)", 0};
}  // namespace calls

// Each call's parameters by place, the client handle first: a rule that
// says `using enum args::openapiIfLinkStateGet::Param;` reads `c.in(ifNum)`
// and writes `c.out(linkState, v)`, and a name its call lacks does not
// compile.
#define SIM_PARAMS(...) __VA_ARGS__
#define OPEN_CALL(name, params, list) \
  namespace args::name {              \
  enum Param : uint8_t { SIM_PARAMS list }; \
  }
#include "open_calls.inc"
#undef OPEN_CALL
#undef SIM_PARAMS

struct Arg {
  wire::Kind kind = wire::kInNum;
  uint8_t width = 4;
  uint64_t num = 0;  // input value, or the preset of an output
  uint32_t size = 0; // descriptor size
  std::string text;  // input text, written text, or record bytes
  bool written = false;

  bool isInput() const { return kind == wire::kInNum || kind == wire::kInText || kind == wire::kInString; }
};

template <class P>
concept Param = std::is_enum_v<P>;

// Whether parameters of two calls stand at one place: a rule shared by
// calls of one layout reads them all through one call's names.
constexpr bool samePlace(Param auto a, Param auto b) { return static_cast<int>(a) == static_cast<int>(b); }

struct Call {
  std::string name;
  std::vector<Arg> args;
  const CallId *id = nullptr;  // set once the call is known

  // Inputs joined by ",": numbers in decimal, texts as they are.
  std::string key() const;
  std::string keyOf(size_t firstInputs) const;
  // The argument at a declared place (1: the first after the client
  // handle). A place past the call's declaration is a bug in the rule
  // table, and stops the simulator.
  Arg &at(size_t place);
  const Arg &at(size_t place) const { return const_cast<Call *>(this)->at(place); }
  Arg &arg(Param auto p) { return at(p); }
  uint64_t in(Param auto p) const { return at(p).num; }
  std::string text(Param auto p) const { return textOf(at(p)); }
  void out(Param auto p, uint64_t v) { write(at(p), v); }
  void outText(Param auto p, const std::string &t) { writeText(at(p), t); }
  // What rules shared by several calls reach by place: the first
  // argument, the interface number (or VLAN) a call is about, and the last
  // declared one, the value a setter sets or the one output of a getter.
  uint64_t first() const { return at(1).num; }
  uint32_t port() const { return static_cast<uint32_t>(first()); }
  Arg &last() { return at(id->arity); }
  void outLast(uint64_t v) { write(last(), v); }

  static std::string textOf(const Arg &a);
  static void write(Arg &a, uint64_t v);
  static void writeText(Arg &a, const std::string &t);
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

// An interface as the walks see it: its number and OPEN_INTF_TYPE_*.
struct Interface {
  uint32_t ifNum = 0;
  uint32_t type = 0;
};

struct Sim;
using Behavior = int (*)(Sim &, Call &);

// One line per OpEN call: the declared call and how the simulator answers
// it; a setter also names the getter whose answer it changes, so that an
// override of that answer (`ctl set`) gives way to the setting.
struct CallRule {
  const CallId *call;
  Behavior answer;
  const CallId *getter = nullptr;
};

#define SIM_RULE(call, fn) {&::sim::calls::call, fn, nullptr}
#define SIM_SETTER(call, getter, fn) {&::sim::calls::call, fn, &::sim::calls::getter}
// A setting read by one call and changed by another.
#define SIM_SETTING(getter, getFn, setter, setFn) SIM_RULE(getter, getFn), SIM_SETTER(setter, getter, setFn)

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
  Model model;
  // Answers fixed by `ctl set`, by call and inputs ("*": any inputs); none
  // marks inputs a setter has since set in the model.
  std::map<std::string, std::map<std::string, std::optional<Outputs>>> overrides;
  std::map<std::string, Fault> faults;
  std::map<std::string, Delay> delays;
  std::deque<std::string> journal;
  std::string scenario;  // the loaded scenario, for `reset`
  SimClock clock;        // zero at load
  std::vector<TimelineEvent> timeline;  // in time order
  size_t nextEvent = 0;                 // the first not yet applied

  // The override for exactly these inputs, else the call's "*" one.
  const Outputs *overridden(const std::string &call, const std::string &key) const;
  // Fixes a call's answer; a "*" key replaces all of the call's overrides.
  void override(const std::string &call, const std::string &key, Outputs v);
};

// Call table, assembled from each group's lines.
const CallRule *findRule(const std::string &name);
struct RuleGroup {
  const CallRule *rules;
  size_t count;
  void (*seed)(Sim &);
};
extern const RuleGroup kRuleGroups[];
extern const size_t kRuleGroupCount;

// Answers one call: journal, faults, overrides, then the model.
int handleCall(Sim &s, Call &c);
// Runs one `open-sim ctl` command; returns the exit status and its output.
int handleControl(Sim &s, const std::vector<std::string> &words, std::string *out);
std::string controlUsage(const std::string &lead, const std::string &indent);  // ctl's commands, wrapped

// Applies the timeline's events and the switch's own timers due by the
// clock's time, in time order; every call and control command asks first.
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

// --- the model's ports -------------------------------------------------------

Port *findPort(Sim &s, uint64_t ifNum);
const Port *findPort(const Sim &s, uint64_t ifNum);
// Why a call about a feature finds no port that has it: a port without
// the feature lacks it (unsupported), a number that is no port names
// nothing.
inline int lacking(const Sim &s, uint64_t ifNum) { return findPort(s, ifNum) ? OPEN_E_UNAVAIL : OPEN_E_NOT_FOUND; }
// What follows from a port's facts: its link, its medium's kind, and the
// features only copper ports have (energy detect, short reach, EEE, power
// estimates).
inline bool isUp(const Port &p) { return p.adminEnabled && p.partner && p.medium != 0 && p.disableReason == 0; }
inline bool isFibre(const Sim &s, const Port &p) { return s.model.layout.isFibre(p.ifNum); }
inline bool isGreen(const Sim &s, const Port &p) { return !isFibre(s, p); }
// Whether the interface's link is up: a port's, or a LAG's through its
// members; other interfaces have no link.
bool linkUp(const Sim &s, uint32_t ifNum);
// The one path for every change of a port's facts at `atMs`: what it
// counted and saved until then is settled first, then the facts change,
// and a link that changes with them is stamped.
void changePort(Sim &s, Port &p, int64_t atMs, const std::function<void(Port &)> &change);
// Counters and savings counted up to `atMs` made part of the port's base.
void settleCounters(Sim &s, Port &p, int64_t atMs);
int64_t wrapDueMs(const Sim &s, const Port &p, int64_t nowMs);
uint64_t savedMwhAt(const Sim &s, const Port &p, int64_t atMs);
// Mean watts saved per port while up with EEE on both ends, or down with
// energy detect.
int64_t savingMw(const Sim &s, const Port &p);
// Milliseconds the port's link has slept since load, at `atMs`.
uint64_t lpiMsAt(const Sim &s, const Port &p, int64_t atMs);

// The octets a second the port's link carries each way while up, and
// whether both ways share them (half duplex).
uint64_t lineOctetsPerSec(const Sim &s, const Port &p);
bool halfDuplex(const Sim &s, const Port &p);

// What events and settings change, each at a moment of simulated time.
void setLinkState(Sim &s, Port &p, bool up, int64_t atMs);  // the partner comes or goes
void setAdminState(Sim &s, Port &p, bool enabled, int64_t atMs);
void resetPortCounters(Sim &s, Port &p, int64_t atMs);
void bringCountersNearWrap(Sim &s, Port &p, int64_t secondsLeft, int64_t atMs);
void setPortTraffic(Sim &s, Port &p, const TrafficChange &t, int64_t atMs);
void removeTransceiver(Sim &s, Port &p, int64_t atMs);
void insertTransceiver(Sim &s, Port &p, const std::string &media, int64_t atMs);
// A cause's place in the switch's cause table by its API or CLI name; -1
// for none.
int causeIndex(const std::string &name);
int disableReasonOf(const std::string &cause);  // 0 for no cause
void trimHistory(Sim &s);  // to the maximum of samples
int causeOf(uint32_t disableReason);            // -1 for none
void tripDDisable(Sim &s, Port &p, const std::string &cause, int64_t atMs);
void recoverDDisabled(Sim &s, int64_t uptoMs);
// The earliest moment a shut port comes back, or -1 when none will.
int64_t nextRecoveryMs(const Sim &s);
void recordPmlViolation(Sim &s, Port &p, const TimelineEvent &e);
bool hasPowerEstimate(const Sim &s, uint32_t ifNum);
void setPortPower(Sim &s, Port &p, int64_t milliwatts, int64_t savedMwh, int64_t atMs);
// Power-saving samples due up to `uptoMs`.
void takeLpiSamples(Sim &s, int64_t uptoMs);

// In time order: what the switch will do by itself at a known moment.
std::vector<PendingTimer> pendingTimers(const Sim &s);
bool vlanExists(const Sim &s, uint32_t vlan);

bool loadScenario(Sim &s, const std::string &json, std::string *error);
std::string dumpScenario(const Sim &s);
// The default switch as a scenario: its layout, seeded at load.
std::string defaultScenario();
// Every fact of the default switch at load, as `dump` shows it.
std::string defaultSwitchDump();
// The scenarios built in: one line each, name first; and one's text.
std::string readyScenarioList();
bool readyScenario(const std::string &name, std::string *text);

// The switch's interfaces, in number order as the model makes them: its
// ports, the CPU, its LAGs and the routing interfaces of its VLANs.
std::optional<Interface> findInterface(const Sim &s, uint32_t ifNum);
// The first interface of the type numbered above `after`; type 8 walks
// interfaces of any type.
std::optional<Interface> nextOfType(const Sim &s, uint32_t type, uint32_t after);

// A scenario's text for a switch of this shape.
std::string scenarioFor(const SwitchLayout &layout);
// The switch of this shape as it stands at load, every fact seeded.
void seedSwitch(Sim &s, const SwitchLayout &layout);

// The switch is a stack of one: calls about a unit know only this one.
inline constexpr uint32_t kStackUnit = 1;

// The port of the default switch that a protection feature shut down
// before load; its cable, partner and counters stay as they were.
inline constexpr uint32_t kGuardedPort = 7;

// Each group's lines of the call table and the seed of its facts.
extern const RuleGroup kSystemGroup, kInterfaceGroup, kAttributeGroup, kPmlGroup, kGreenGroup, kInterfaceAppGroup,
    kCounterGroup;

// Rules over one field of a port, by accessor: the call finds the port
// by its interface number (OPEN_E_NOT_FOUND without one) and answers or
// sets the field; a setter refuses values outside [Min, Max] with
// OPEN_E_PARAM.
template <class T>
using PortField = T &(*)(Port &);
#define SIM_PORT_FIELD(expr) (+[](::sim::Port &p) -> auto & { return p.expr; })
// A port's field as a setting; what follows the field bounds the values set.
#define SIM_PORT_SETTING(getter, setter, expr, ...)        \
  SIM_SETTING(getter, portGet<SIM_PORT_FIELD(expr)>, setter, \
              (portSet<SIM_PORT_FIELD(expr) __VA_OPT__(, ) __VA_ARGS__>))

// A call about one port, answered from it.
template <int (*Answer)(Sim &, Call &, Port &)>
int onPort(Sim &s, Call &c) {
  Port *p = findPort(s, c.port());
  return p ? Answer(s, c, *p) : OPEN_E_NOT_FOUND;
}

// A port's one output, derived from its facts.
template <uint64_t (*Answer)(const Sim &, const Port &)>
int derived(Sim &s, Call &c, Port &p) {
  c.outLast(Answer(s, p));
  return OPEN_E_NONE;
}

template <PortField<uint32_t> F>
int portGet(Sim &s, Call &c) {
  Port *p = findPort(s, c.port());
  if (!p) return OPEN_E_NOT_FOUND;
  c.outLast(F(*p));
  return OPEN_E_NONE;
}

template <PortField<uint32_t> F, uint32_t Min = 0, uint32_t Max = UINT32_MAX>
int portSet(Sim &s, Call &c) {
  Port *p = findPort(s, c.port());
  if (!p) return OPEN_E_NOT_FOUND;
  uint64_t v = c.last().num;
  if (v < Min || v > Max) return OPEN_E_PARAM;
  F(*p) = static_cast<uint32_t>(v);
  return OPEN_E_NONE;
}

// A switch-wide value: the whole model is the accessor's to choose from.
#define SIM_SWITCH_FIELD(expr) (+[](::sim::Model &m) -> uint32_t & { return m.expr; })
template <uint32_t &(*F)(Model &)>
int switchGet(Sim &s, Call &c) {
  c.outLast(F(s.model));
  return OPEN_E_NONE;
}

template <PortField<std::string> F>
int portTextGet(Sim &s, Call &c) {
  Port *p = findPort(s, c.port());
  if (!p) return OPEN_E_NOT_FOUND;
  Call::writeText(c.last(), F(*p));
  return OPEN_E_NONE;
}

}  // namespace sim

#endif
