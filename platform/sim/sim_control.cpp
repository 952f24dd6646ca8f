// Scenario files and the commands of `open-sim ctl`.
#include <errno.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <algorithm>

#include "sim/sim.h"
#include "sim/sim_json.h"
#include "sim/sim_model_json.h"
#include "switch_facts.h"

namespace sim {

// A number, a string, or a list of them (outputs in call order).
static bool jsonToOutputs(const cJSON *j, Outputs *out) {
  out->clear();
  bool list = cJSON_IsArray(j);
  for (const cJSON *x = list ? j->child : j; x; x = list ? x->next : nullptr) {
    int64_t n = 0;
    if (cJSON_IsString(x)) out->push_back(text(x->valuestring));
    else if (readWhole(x, -kMostExact, kMostExact, &n) == NumberFault::None) out->push_back(num(n));
    else return false;
  }
  return true;
}

// The model, what `set` fixed (an answer a setter has since changed shows
// as null), and the moment of the dump: loading it carries on from there.
static Json dumpJson(const Sim &s) {
  Json root(cJSON_CreateObject());
  cJSON_AddNumberToObject(root.get(), "clockMs", static_cast<double>(clockNowMs(s.clock)));
  cJSON_AddItemToObject(root.get(), "model", modelToJson(s.model));
  cJSON *overrides = cJSON_AddObjectToObject(root.get(), "overrides");
  for (const auto &[call, keys] : s.overrides) {
    cJSON *c = cJSON_AddObjectToObject(overrides, call.c_str());
    for (const auto &[key, outs] : keys) {
      cJSON *arr = outs ? cJSON_AddArrayToObject(c, key.c_str()) : cJSON_AddNullToObject(c, key.c_str());
      for (const Value &v : outs ? *outs : Outputs())
        cJSON_AddItemToArray(arr, v.isText ? cJSON_CreateString(v.text.c_str())
                                           : cJSON_CreateNumber(static_cast<double>(v.num)));
    }
  }
  return root;
}

std::string dumpScenario(const Sim &s) { return printJson(dumpJson(s).get(), true); }

static bool loadOverrides(Sim &s, const cJSON *overrides, std::string *error) {
  s.overrides.clear();
  if (overrides && !cJSON_IsObject(overrides))
    return refuse(error, "scenario: \"overrides\" must be an object of calls");
  const cJSON *call = nullptr;
  cJSON_ArrayForEach(call, overrides) {
    if (!findRule(call->string))
      return refuse(error, std::string("scenario: unknown call \"") + call->string + "\" in \"overrides\"");
    if (!cJSON_IsObject(call))
      return refuse(error, std::string("scenario: the answers of ") + call->string + " must be an object of inputs");
    const cJSON *key = nullptr;
    cJSON_ArrayForEach(key, call) {
      Outputs v;
      if (!cJSON_IsNull(key) && !jsonToOutputs(key, &v)) {
        *error = std::string("scenario: bad outputs for ") + call->string + " " + key->string +
                 " (a whole number, a string or a list of them)";
        return false;
      }
      s.overrides[call->string][key->string] = cJSON_IsNull(key) ? std::nullopt : std::optional(std::move(v));
    }
  }
  return true;
}

// A file's top level: only the keys it may hold, none twice (a timeline's
// events say themselves where a key comes twice, with the event's number).
static bool checkTopLevel(const cJSON *root, const char *what, const std::vector<std::string> &keys,
                          std::string *error) {
  if (const char *twice = duplicateKey(root))
    return refuse(error, std::string(what) + ": duplicate key \"" + twice + "\"");
  for (const cJSON *m = root->child; m; m = m->next) {
    std::string path, key;
    if (std::find(keys.begin(), keys.end(), m->string) == keys.end())
      return refuse(error, std::string(what) + ": unknown key \"" + m->string + "\"");
    if (strcmp(m->string, "timeline") != 0 && findDuplicateKey(m, &path, &key))
      return refuse(error, std::string(what) + ": duplicate key \"" + key + "\" in \"" + m->string + "\"" + path);
  }
  return true;
}

// The switch a file describes: its layout seeded (the default switch's
// without one), then the model's sections it carries over that.
static bool switchOf(const cJSON *file, Sim &next, std::string *error) {
  const cJSON *model = cJSON_GetObjectItemCaseSensitive(file, "model");
  const cJSON *layoutJson = cJSON_GetObjectItemCaseSensitive(model, "layout");
  SwitchLayout layout;
  if (model && !cJSON_IsObject(model)) return refuse(error, "scenario: \"model\" must be an object");
  if (layoutJson && !layoutFromJson(layoutJson, &layout, error)) return false;
  seedSwitch(next, layout);
  if (model && !modelFromJson(model, next, error)) return false;
  trimHistory(next);
  return true;
}

// The simulated time a scenario may start at: the clock's own bound.
constexpr double kMostClockMs = 1e14;

// All or nothing: a scenario with any fault leaves the running one as it is.
// "pending" is what `dump` adds to show what the clock still holds; a
// loaded scenario runs its own timeline, so loading a dump passes it over.
bool loadScenario(Sim &s, const std::string &json, std::string *error) {
  Json file = parseStrictObject(json, "scenario", error);
  if (!file ||
      !checkTopLevel(file.get(), "scenario", {"model", "overrides", "timeline", "clockMs", "pending"}, error))
    return false;
  int64_t clockMs = 0;
  NumberFault f = readWhole(cJSON_GetObjectItemCaseSensitive(file.get(), "clockMs"), 0, kMostClockMs, &clockMs);
  if (f != NumberFault::None && f != NumberFault::Missing)
    return refuse(error, "scenario: " + numberFaultText("clockMs", f, 0, kMostClockMs));
  // The timeline is checked against the switch the file describes, whole.
  Sim next;
  if (!switchOf(file.get(), next, error) ||
      !loadOverrides(next, cJSON_GetObjectItemCaseSensitive(file.get(), "overrides"), error) ||
      !parseTimeline(next, cJSON_GetObjectItemCaseSensitive(file.get(), "timeline"), 0, &next.timeline, error))
    return false;
  // A fresh switch in every respect but the clock's pause.
  next.scenario = json;
  next.clock = s.clock;
  clockRestart(next.clock);
  clockAdvance(next.clock, clockMs);
  s = std::move(next);
  return true;
}

using Words = std::vector<std::string>;

// Puts a command's answer and gives its status.
static int say(std::string *out, std::string text, int status) {
  *out = std::move(text);
  return status;
}
// What a command returns when its words do not fit: its usage follows.
constexpr int kUsage = -1;

static bool parseInt(const std::string &t, long long *v) {
  if (t.empty()) return false;
  char *end = nullptr;
  errno = 0;
  *v = strtoll(t.c_str(), &end, 10);
  return errno == 0 && *end == '\0';
}

// A call the simulator does not answer cannot be set, failed or delayed:
// the command would take, and a dump holding it would not load.
static bool knownCall(const std::string &call, std::string *out) {
  if (findRule(call)) return true;
  *out = "open-sim: unknown call \"" + call + "\"\n";
  return false;
}

// "CALL N [COUNT]": N within the bounds, COUNT 1 or more (-1 without it).
static int callNumberCount(const Words &w, long long least, long long most, long long *n, long long *count,
                           std::string *out) {
  *count = -1;
  if (!parseInt(w[2], n) || *n < least || *n > most || (w.size() == 4 && (!parseInt(w[3], count) || *count < 1)))
    return kUsage;
  return knownCall(w[1], out) ? 0 : 2;
}

static int ctlSet(Sim &s, const Words &w, std::string *out) {
  if (!knownCall(w[1], out)) return 2;
  Json value(cJSON_Parse(w[3].c_str()));
  Outputs v;
  // A value that is not JSON is taken as a plain text.
  if (!value) v.push_back(text(w[3]));
  else if (!jsonToOutputs(value.get(), &v))
    return say(out, "VALUE must be a number, a string or an array of them\n", 2);
  s.override(w[1], w[2], std::move(v));
  return 0;
}

// A result is what a call returns: 32 bits, signed.
static int ctlFail(Sim &s, const Words &w, std::string *out) {
  long long result = 0, count = -1;
  int status = callNumberCount(w, INT32_MIN, INT32_MAX, &result, &count, out);
  if (status == 0) s.faults[w[1]] = {static_cast<int>(result), count};
  return status;
}

// The longest a call may be held: longer than any client waits.
constexpr long long kMostDelayMs = 3600000;

// "delay CALL MS [COUNT]": the next COUNT calls (all, without it) of CALL
// are answered MS milliseconds late; MS 0 ends a delay.
static int ctlDelay(Sim &s, const Words &w, std::string *out) {
  long long ms = 0, count = -1;
  int status = callNumberCount(w, 0, kMostDelayMs, &ms, &count, out);
  if (status != 0) return status;
  if (ms == 0) s.delays.erase(w[1]);
  else s.delays[w[1]] = {ms, count};
  return 0;
}

int64_t takeDelay(Sim &s, const std::string &call) {
  auto d = s.delays.find(call);
  if (d == s.delays.end()) return 0;
  int64_t ms = d->second.ms;
  if (d->second.remaining > 0 && --d->second.remaining == 0) s.delays.erase(d);
  return ms;
}

static int ctlJournal(Sim &s, const Words &w, std::string *out) {
  if (w.size() == 2 && w[1] != "--clear") return kUsage;
  if (w.size() == 2) s.journal.clear();
  else for (const std::string &line : s.journal) *out += line + "\n";
  return 0;
}

// Starts a file's timeline now, on the switch as it is, in place of the
// one running; the file holds {"timeline": [...]} and nothing else, and an
// empty list stops the running one.
static int ctlPlay(Sim &s, const Words &w, std::string *out) {
  std::string error;
  Json file = parseStrictObject(w[1], "timeline file", &error);
  const cJSON *timeline = file ? cJSON_GetObjectItemCaseSensitive(file.get(), "timeline") : nullptr;
  if (file && !checkTopLevel(file.get(), "timeline file", {"timeline"}, &error)) timeline = nullptr;
  else if (file && !timeline) error = "timeline file: no \"timeline\"";
  std::vector<TimelineEvent> events;
  if (!timeline || !parseTimeline(s, timeline, clockNowMs(s.clock), &events, &error))
    return say(out, "open-sim: " + error + "\n", 2);
  s.timeline = std::move(events);
  s.nextEvent = 0;
  catchUp(s);
  return 0;
}

// The ctl client sends the file's contents in place of its name.
static int ctlLoad(Sim &s, const Words &w, std::string *out) {
  std::string error;
  if (loadScenario(s, w[1], &error)) return 0;
  return say(out, "open-sim: " + error + "\n", 2);
}

static std::string secondsText(int64_t ms) {
  char text[32];
  snprintf(text, sizeof text, "%.3f", static_cast<double>(ms) / 1000);
  return text;
}

// Moves the clock to the soonest thing pending and names each thing due
// then; with nothing pending the clock stays, and the status says so.
static int ctlClockNext(Sim &s, std::string *out) {
  std::vector<Pending> pending = pendingAfterNow(s);
  int64_t now = clockNowMs(s.clock);
  if (pending.empty()) return say(out, "nothing pending; the clock stays at " + secondsText(now) + "\n", 1);
  int64_t at = pending.front().atMs;
  clockAdvance(s.clock, at - now);
  catchUp(s);
  for (const Pending &p : pending)
    if (p.atMs == at) *out += secondsText(at) + " " + p.what + "\n";
  return 0;
}

// "pause", "run", "advance SECONDS", "next", or nothing to print the
// simulated time.
static int ctlClock(Sim &s, const Words &w, std::string *out) {
  if (w.size() == 1)
    return say(out, std::string(s.clock.paused ? "paused " : "running ") + secondsText(clockNowMs(s.clock)) + "\n", 0);
  if (w.size() == 2 && w[1] == "pause") return clockPause(s.clock), 0;
  if (w.size() == 2 && w[1] == "run") return clockRun(s.clock), 0;
  if (w.size() == 2 && w[1] == "next") return ctlClockNext(s, out);
  if (w.size() != 3 || w[1] != "advance") return kUsage;
  int64_t ms = 0;
  if (!parseDecimalSeconds(w[2].c_str(), &ms))
    return say(out, "open-sim: clock advance takes decimal seconds from 0 to 10000000000 (as 2.5), not \"" + w[2] + "\"\n",
               2);
  clockAdvance(s.clock, ms);
  return 0;
}

// The timeline's events still to come, each as written but "at" the
// simulated time it applies, and the model's timers.
static cJSON *pendingJson(const Sim &s) {
  cJSON *p = cJSON_CreateObject();
  cJSON_AddNumberToObject(p, "now", static_cast<double>(clockNowMs(s.clock)) / 1000);
  cJSON_AddBoolToObject(p, "paused", s.clock.paused);
  cJSON *events = cJSON_AddArrayToObject(p, "timeline"), *timers = cJSON_AddArrayToObject(p, "timers");
  for (const Pending &item : pendingAfterNow(s)) {
    cJSON *at = cJSON_CreateNumber(static_cast<double>(item.atMs) / 1000);
    if (item.event) {
      cJSON *o = cJSON_Parse(item.event->source.c_str());
      cJSON_ReplaceItemInObjectCaseSensitive(o, "at", at);
      cJSON_AddItemToArray(events, o);
      continue;
    }
    cJSON *o = cJSON_CreateObject();
    cJSON_AddItemToObject(o, "at", at);
    cJSON_AddStringToObject(o, "what", item.what.c_str());
    cJSON_AddItemToArray(timers, o);
  }
  return p;
}

static int ctlDump(Sim &s, const Words &, std::string *out) {
  Json root = dumpJson(s);
  cJSON_AddItemToObject(root.get(), "pending", pendingJson(s));
  return say(out, printJson(root.get(), true) + "\n", 0);
}

// Loads the scenario last started again, its timeline from the start.
static int ctlReset(Sim &s, const Words &, std::string *) {
  std::string error, scenario = s.scenario;
  return loadScenario(s, scenario, &error) ? 0 : 1;
}

// Each command with the words it takes after its name, and how to call it
// (the last part said only when it is misused).
struct Control {
  const char *name;
  int (*run)(Sim &, const Words &, std::string *);
  size_t least, most;
  const char *usage, *bounds = "";
};
const Control kControls[] = {
    {"set", ctlSet, 3, 3, "CALL KEY VALUE"},
    {"fail", ctlFail, 2, 3, "CALL RESULT [COUNT]", " (RESULT from -2147483648 to 2147483647, COUNT 1 or more)"},
    {"delay", ctlDelay, 2, 3, "CALL MS [COUNT]", " (MS from 0 to 3600000, COUNT 1 or more)"},
    {"journal", ctlJournal, 0, 1, "[--clear]"},
    {"reset", ctlReset, 0, 0, ""},
    {"dump", ctlDump, 0, 0, ""},
    {"load", ctlLoad, 1, 1, "FILE"},
    {"clock", ctlClock, 0, 2, "[pause | run | advance SECONDS | next]"},
    {"play", ctlPlay, 1, 1, "FILE"},
};

static std::string usageOf(const Control &c) { return c.name + std::string(*c.usage ? " " : "") + c.usage; }

std::string controlUsage(const std::string &lead, const std::string &indent) {
  std::string out, line = lead;
  for (const Control &c : kControls) {
    std::string item = (&c == kControls ? "" : " | ") + usageOf(c);
    if (line.size() + item.size() > 90) out += line + "\n", line = indent + item.substr(1);
    else line += item;
  }
  return out + line + "\n";
}

static std::string commandNames() {
  std::string names;
  for (const Control &c : kControls)
    names += std::string(names.empty() ? "" : &c == std::end(kControls) - 1 ? " or " : ", ") + c.name;
  return names;
}

int handleControl(Sim &s, const Words &w, std::string *out) {
  out->clear();
  catchUp(s);
  const Control *c = std::find_if(std::begin(kControls), std::end(kControls),
                                  [&](const Control &k) { return !w.empty() && w[0] == k.name; });
  int status = 2;
  if (c == std::end(kControls))
    *out = (w.empty() ? std::string("no command") : "unknown command \"" + w[0] + "\"") + " (" + commandNames() + ")";
  else status = w.size() < c->least + 1 || w.size() > c->most + 1 ? kUsage : c->run(s, w, out);
  if (status == kUsage) *out = "usage: " + usageOf(*c) + c->bounds + "\n", status = 2;
  if (status != 0 && !out->empty()) *out = oneLine(out->substr(0, out->find_last_not_of('\n') + 1)) + "\n";
  return status;
}

}  // namespace sim
