// Scenario files and the commands of `open-sim ctl`.
#include <errno.h>
#include <stdio.h>
#include <stdlib.h>

#include <string.h>

#include <algorithm>

#include "sim/sim_model_json.h"

#include "sim/sim.h"

namespace sim {

static std::string printJson(const cJSON *j, bool formatted) {
  char *p = formatted ? cJSON_Print(j) : cJSON_PrintUnformatted(j);
  std::string s = p ? p : "";
  cJSON_free(p);
  return s;
}

static cJSON *valueToJson(const Value &v) {
  return v.isText ? cJSON_CreateString(v.text.c_str()) : cJSON_CreateNumber(static_cast<double>(v.num));
}

static bool jsonToValue(const cJSON *j, Value *v) {
  if (cJSON_IsString(j)) {
    *v = text(j->valuestring);
    return true;
  }
  if (cJSON_IsNumber(j)) {
    *v = num(static_cast<int64_t>(j->valuedouble));
    return true;
  }
  return false;
}

// A number, a string, or an array of them (outputs in call order).
static bool jsonToOutputs(const cJSON *j, Outputs *out) {
  out->clear();
  if (!cJSON_IsArray(j)) {
    Value v;
    if (!jsonToValue(j, &v)) return false;
    out->push_back(v);
    return true;
  }
  const cJSON *item = nullptr;
  cJSON_ArrayForEach(item, j) {
    Value v;
    if (!jsonToValue(item, &v)) return false;
    out->push_back(v);
  }
  return true;
}

// The model, what `set` fixed (an answer a setter has since changed shows
// as null), and the moment of the dump: loading it carries on from there.
std::string dumpScenario(const Sim &s) {
  Json root(cJSON_CreateObject());
  cJSON_AddNumberToObject(root.get(), "clockMs", static_cast<double>(clockNowMs(s.clock)));
  cJSON_AddItemToObject(root.get(), "model", modelToJson(s.model));
  cJSON *overrides = cJSON_AddObjectToObject(root.get(), "overrides");
  for (const auto &[call, keys] : s.overrides) {
    cJSON *c = cJSON_AddObjectToObject(overrides, call.c_str());
    for (const auto &[key, outs] : keys) {
      if (!outs) {
        cJSON_AddNullToObject(c, key.c_str());
        continue;
      }
      cJSON *arr = cJSON_CreateArray();
      for (const Value &v : *outs) cJSON_AddItemToArray(arr, valueToJson(v));
      cJSON_AddItemToObject(c, key.c_str(), arr);
    }
  }
  return printJson(root.get(), true);
}

static bool loadOverrides(Sim &s, const cJSON *overrides, std::string *error) {
  s.overrides.clear();
  const cJSON *call = nullptr;
  cJSON_ArrayForEach(call, overrides) {
    if (!findRule(call->string)) {
      *error = std::string("overrides: no OpEN call named ") + call->string;
      return false;
    }
    const cJSON *key = nullptr;
    cJSON_ArrayForEach(key, call) {
      Outputs v;
      if (cJSON_IsNull(key)) {
        s.overrides[call->string][key->string] = std::nullopt;
        continue;
      }
      if (!jsonToOutputs(key, &v)) {
        *error = std::string("overrides: bad outputs for ") + call->string + " " + key->string;
        return false;
      }
      s.overrides[call->string][key->string] = std::move(v);
    }
  }
  return true;
}

static Json parseObject(const std::string &json, const char *what, std::string *error) {
  Json root(cJSON_Parse(json.c_str()));
  if (!root) *error = std::string(what) + ": " + jsonError(json);
  else if (!cJSON_IsObject(root.get())) *error = std::string(what) + " is not a JSON object";
  else return root;
  return nullptr;
}

static bool knownSection(const char *key) {
  for (const char *known : {"model", "overrides", "timeline", "clockMs"})
    if (strcmp(key, known) == 0) return true;
  return false;
}

// The switch a file describes: its layout seeded (the default switch's
// without one), then the model's sections it carries over that.
static bool switchOf(const cJSON *file, Sim &next, std::string *error) {
  const cJSON *x = nullptr;
  cJSON_ArrayForEach(x, file) {
    if (knownSection(x->string)) continue;
    *error = std::string("scenario: unknown section \"") + x->string + "\"";
    return false;
  }
  const cJSON *model = cJSON_GetObjectItemCaseSensitive(file, "model");
  const cJSON *layoutJson = cJSON_GetObjectItemCaseSensitive(model, "layout");
  SwitchLayout layout;
  if (model && !cJSON_IsObject(model)) {
    *error = "scenario: \"model\" must be an object";
    return false;
  }
  if (layoutJson && !layoutFromJson(layoutJson, &layout, error)) return false;
  seedSwitch(next, layout);
  return !model || modelFromJson(model, next.model, error);
}

// All or nothing: a scenario with any fault leaves the running one as it is.
bool loadScenario(Sim &s, const std::string &json, std::string *error) {
  Json file = parseObject(json, "scenario", error);
  if (!file) return false;
  Sim next;
  const cJSON *clockAt = cJSON_GetObjectItemCaseSensitive(file.get(), "clockMs");
  if (!switchOf(file.get(), next, error) ||
      !loadOverrides(next, cJSON_GetObjectItemCaseSensitive(file.get(), "overrides"), error) ||
      !parseTimeline(next, cJSON_GetObjectItemCaseSensitive(file.get(), "timeline"), 0, &next.timeline, error))
    return false;
  s.interfaces = std::move(next.interfaces);
  s.model = std::move(next.model);
  s.overrides = std::move(next.overrides);
  s.timeline = std::move(next.timeline);
  s.nextEvent = 0;
  s.faults.clear();
  s.journal.clear();
  s.scenario = json;
  clockRestart(s.clock);
  if (cJSON_IsNumber(clockAt) && clockAt->valuedouble > 0) clockAdvance(s.clock, static_cast<int64_t>(clockAt->valuedouble));
  return true;
}

static bool parseInt(const std::string &t, long long *v) {
  if (t.empty()) return false;
  char *end = nullptr;
  errno = 0;
  *v = strtoll(t.c_str(), &end, 10);
  return errno == 0 && *end == '\0';
}

static int ctlSet(Sim &s, const std::vector<std::string> &w, std::string *out) {
  if (w.size() != 4) {
    *out = "usage: set CALL KEY VALUE\n";
    return 2;
  }
  Json value(cJSON_Parse(w[3].c_str()));
  Outputs v;
  // A value that is not JSON is taken as a plain text.
  if (!value) v.push_back(text(w[3]));
  else if (!jsonToOutputs(value.get(), &v)) {
    *out = "VALUE must be a number, a string or an array of them\n";
    return 2;
  }
  s.override(w[1], w[2], std::move(v));
  return 0;
}

static int ctlFail(Sim &s, const std::vector<std::string> &w, std::string *out) {
  long long result = 0, count = -1;
  if (w.size() < 3 || w.size() > 4 || !parseInt(w[2], &result) ||
      (w.size() == 4 && (!parseInt(w[3], &count) || count < 1))) {
    *out = "usage: fail CALL RESULT [COUNT]\n";
    return 2;
  }
  s.faults[w[1]] = {static_cast<int>(result), count};
  return 0;
}

static int ctlJournal(Sim &s, const std::vector<std::string> &w, std::string *out) {
  if (w.size() == 2 && w[1] == "--clear") {
    s.journal.clear();
    return 0;
  }
  if (w.size() != 1) {
    *out = "usage: journal [--clear]\n";
    return 2;
  }
  for (const std::string &line : s.journal) *out += line + "\n";
  return 0;
}

// Starts a file's timeline now, on the switch as it is; the file holds
// {"timeline": [...]} (anything else in it is not read).
static int ctlPlay(Sim &s, const std::vector<std::string> &w, std::string *out) {
  std::string error;
  if (w.size() != 2) {
    *out = "usage: play FILE\n";
    return 2;
  }
  Json file = parseObject(w[1], "timeline file", &error);
  std::vector<TimelineEvent> events;
  if (!file || !parseTimeline(s, cJSON_GetObjectItemCaseSensitive(file.get(), "timeline"), clockNowMs(s.clock),
                              &events, &error)) {
    *out = "open-sim: " + error + "\n";
    return 2;
  }
  s.timeline = std::move(events);
  s.nextEvent = 0;
  catchUp(s);
  return 0;
}

static int ctlLoad(Sim &s, const std::vector<std::string> &w, std::string *out) {
  // The ctl client sends the file's contents in place of its name.
  std::string error;
  if (w.size() != 2 || !loadScenario(s, w[1], &error)) {
    *out = (error.empty() ? std::string("usage: load FILE") : "open-sim: " + error) + "\n";
    return 2;
  }
  return 0;
}

// "pause", "run", "advance SECONDS" (fractions allowed), or nothing to
// print the simulated time.
static int ctlClock(Sim &s, const std::vector<std::string> &w, std::string *out) {
  if (w.size() == 1) {
    char line[64];
    snprintf(line, sizeof line, "%s %.3f\n", s.clock.paused ? "paused" : "running",
             static_cast<double>(clockNowMs(s.clock)) / 1000);
    *out = line;
    return 0;
  }
  if (w.size() == 2 && w[1] == "pause") return clockPause(s.clock), 0;
  if (w.size() == 2 && w[1] == "run") return clockRun(s.clock), 0;
  char *end = nullptr;
  double seconds = w.size() == 3 && w[1] == "advance" ? strtod(w[2].c_str(), &end) : -1;
  if (!end || *end != '\0' || !(seconds >= 0 && seconds <= 1e9)) {
    *out = "usage: clock [pause | run | advance SECONDS]\n";
    return 2;
  }
  clockAdvance(s.clock, static_cast<int64_t>(seconds * 1000 + 0.5));
  return 0;
}

int handleControl(Sim &s, const std::vector<std::string> &w, std::string *out) {
  out->clear();
  if (w.empty()) {
    *out = "usage: set|fail|journal|reset|dump|load|clock|play\n";
    return 2;
  }
  const std::string &cmd = w[0];
  catchUp(s);
  if (cmd == "set") return ctlSet(s, w, out);
  if (cmd == "fail") return ctlFail(s, w, out);
  if (cmd == "journal") return ctlJournal(s, w, out);
  if (cmd == "load") return ctlLoad(s, w, out);
  if (cmd == "clock") return ctlClock(s, w, out);
  if (cmd == "play") return ctlPlay(s, w, out);
  if (cmd == "dump" && w.size() == 1) {
    *out = dumpScenario(s) + "\n";
    return 0;
  }
  if (cmd == "reset" && w.size() == 1) {
    std::string error, scenario = s.scenario;
    return loadScenario(s, scenario, &error) ? 0 : 1;
  }
  *out = "unknown command: " + cmd + "\n";
  return 2;
}

}  // namespace sim
