// Scenario files and the commands of `open-sim ctl`.
#include <errno.h>
#include <stdio.h>
#include <stdlib.h>

#include <algorithm>

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

std::string dumpScenario(const Sim &s) {
  Json root(cJSON_CreateObject());
  cJSON *ifs = cJSON_AddArrayToObject(root.get(), "interfaces");
  for (const Interface &i : s.interfaces) {
    cJSON *o = cJSON_CreateObject();
    cJSON_AddNumberToObject(o, "ifNum", i.ifNum);
    cJSON_AddNumberToObject(o, "type", i.type);
    cJSON_AddItemToArray(ifs, o);
  }
  cJSON *state = cJSON_AddObjectToObject(root.get(), "state");
  for (const auto &[call, keys] : s.state) {
    cJSON *c = cJSON_AddObjectToObject(state, call.c_str());
    for (const auto &[key, outs] : keys) {
      cJSON *arr = cJSON_CreateArray();
      for (const Value &v : outs) cJSON_AddItemToArray(arr, valueToJson(v));
      cJSON_AddItemToObject(c, key.c_str(), arr);
    }
  }
  cJSON_AddItemToObject(root.get(), "model", cJSON_Duplicate(s.model.get(), true));
  return printJson(root.get(), true);
}

static bool loadInterfaces(Sim &s, const cJSON *ifs, std::string *error) {
  s.interfaces.clear();
  const cJSON *o = nullptr;
  cJSON_ArrayForEach(o, ifs) {
    const cJSON *n = cJSON_GetObjectItemCaseSensitive(o, "ifNum");
    const cJSON *t = cJSON_GetObjectItemCaseSensitive(o, "type");
    if (!cJSON_IsNumber(n) || !cJSON_IsNumber(t)) {
      *error = "every interface needs numeric \"ifNum\" and \"type\"";
      return false;
    }
    s.interfaces.push_back({static_cast<uint32_t>(n->valuedouble), static_cast<uint32_t>(t->valuedouble)});
  }
  std::sort(s.interfaces.begin(), s.interfaces.end(),
            [](const Interface &a, const Interface &b) { return a.ifNum < b.ifNum; });
  return true;
}

static bool loadState(Sim &s, const cJSON *state, std::string *error) {
  s.state.clear();
  const cJSON *call = nullptr;
  cJSON_ArrayForEach(call, state) {
    const cJSON *key = nullptr;
    cJSON_ArrayForEach(key, call) {
      Outputs v;
      if (!jsonToOutputs(key, &v)) {
        *error = std::string("bad outputs for ") + call->string + " " + key->string;
        return false;
      }
      s.state[call->string][key->string] = std::move(v);
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

static void replaceItem(cJSON *object, const cJSON *item) {
  cJSON_DeleteItemFromObjectCaseSensitive(object, item->string);
  cJSON_AddItemToObject(object, item->string, cJSON_Duplicate(item, true));
}

// A file that names no interfaces runs on the default switch: the model
// sections it carries replace the default's, and the call answers it
// carries replace the default's for those inputs.
static Json withDefaultSwitch(Json root) {
  if (cJSON_GetObjectItemCaseSensitive(root.get(), "interfaces")) return root;
  Json base(cJSON_Parse(defaultScenario().c_str()));
  cJSON *model = cJSON_GetObjectItemCaseSensitive(base.get(), "model");
  cJSON *state = cJSON_GetObjectItemCaseSensitive(base.get(), "state");
  const cJSON *own = nullptr, *key = nullptr;
  cJSON_ArrayForEach(own, cJSON_GetObjectItemCaseSensitive(root.get(), "model")) replaceItem(model, own);
  cJSON_ArrayForEach(own, cJSON_GetObjectItemCaseSensitive(root.get(), "state")) {
    cJSON *call = cJSON_GetObjectItemCaseSensitive(state, own->string);
    if (!call) call = cJSON_AddObjectToObject(state, own->string);
    cJSON_ArrayForEach(key, own) replaceItem(call, key);
  }
  return base;
}

// All or nothing: a scenario with any fault leaves the running one as it is.
bool loadScenario(Sim &s, const std::string &json, std::string *error) {
  Json file = parseObject(json, "scenario", error);
  if (!file) return false;
  const cJSON *timeline = cJSON_GetObjectItemCaseSensitive(file.get(), "timeline");
  Json root = withDefaultSwitch(Json(cJSON_Duplicate(file.get(), true)));
  Sim next;
  const cJSON *model = cJSON_GetObjectItemCaseSensitive(root.get(), "model");
  if (!loadInterfaces(next, cJSON_GetObjectItemCaseSensitive(root.get(), "interfaces"), error) ||
      !loadState(next, cJSON_GetObjectItemCaseSensitive(root.get(), "state"), error) ||
      !parseTimeline(next, timeline, 0, &next.timeline, error))
    return false;
  s.interfaces = std::move(next.interfaces);
  s.state = std::move(next.state);
  s.model.reset(cJSON_IsObject(model) ? cJSON_Duplicate(model, true) : cJSON_CreateObject());
  s.timeline = std::move(next.timeline);
  s.nextEvent = 0;
  s.faults.clear();
  s.journal.clear();
  s.scenario = json;
  clockRestart(s.clock);
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
  s.put(w[1], w[2], std::move(v));
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
