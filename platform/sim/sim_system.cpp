// Registration, versions, and the CLI file exchange: show output generated
// from the switch's state, configuration scripts really applied to it.
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <algorithm>
#include <sstream>

#include "sim/sim.h"
#include "sim/sim_files.h"

namespace sim {

namespace {

// Each cause of auto-recovery, in the order the switch lists them, with
// the disable reason a port shut by that feature reports.
struct RecoveryCause {
  const char *name;
  uint32_t reason;
};
const RecoveryCause kRecoveryCauses[] = {
    {"dhcp-rate-limit", 6}, {"arp-inspection", 7},     {"bcast-storm", 8}, {"mcast-storm", 9},
    {"ucast-storm", 10},    {"bpduguard", 4},          {"bpdustorm", 5},   {"mac-locking", 14},
    {"denial-of-service", 15}, {"link-flap", 16},      {"udld", 2},        {"loop-protect", 13},
};
constexpr char kShowRecovery[] = "show errdisable recovery";

cJSON *errdisable(Sim &s) {
  cJSON *e = cJSON_GetObjectItemCaseSensitive(s.model.get(), "errdisable");
  if (!e) {
    e = cJSON_AddObjectToObject(s.model.get(), "errdisable");
    cJSON_AddNumberToObject(e, "interval", 300);
  }
  if (!cJSON_GetObjectItemCaseSensitive(e, "causes")) {
    cJSON *causes = cJSON_AddObjectToObject(e, "causes");
    for (const RecoveryCause &c : kRecoveryCauses) cJSON_AddFalseToObject(causes, c.name);
  }
  return e;
}

std::vector<std::string> splitLines(const std::string &text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    lines.push_back(line);
  }
  return lines;
}

std::string trim(const std::string &s) {
  size_t b = s.find_first_not_of(" \t");
  if (b == std::string::npos) return "";
  return s.substr(b, s.find_last_not_of(" \t") - b + 1);
}

// Ports shut by a cause: {"port": {"cause", "atMs", "wasUp"}}; absent
// until the first trip, so that a scenario without one dumps as before.
cJSON *tripped(Sim &s, bool create = false) {
  cJSON *e = errdisable(s);
  cJSON *t = cJSON_GetObjectItemCaseSensitive(e, "tripped");
  return t || !create ? t : cJSON_AddObjectToObject(e, "tripped");
}

int64_t intervalMs(Sim &s) {
  return static_cast<int64_t>(cJSON_GetObjectItemCaseSensitive(errdisable(s), "interval")->valuedouble) * 1000;
}

bool recovers(Sim &s, const cJSON *trip) {
  const cJSON *cause = cJSON_GetObjectItemCaseSensitive(trip, "cause");
  cJSON *causes = cJSON_GetObjectItemCaseSensitive(errdisable(s), "causes");
  return cJSON_IsString(cause) && cJSON_IsTrue(cJSON_GetObjectItemCaseSensitive(causes, cause->valuestring));
}

int64_t tripAtMs(const cJSON *trip) {
  return static_cast<int64_t>(cJSON_GetObjectItemCaseSensitive(trip, "atMs")->valuedouble);
}

// The earliest moment a shut port comes back, or -1 when none will.
int64_t nextRecoveryMs(Sim &s) {
  int64_t next = -1;
  const cJSON *trip = nullptr;
  cJSON_ArrayForEach(trip, tripped(s)) {
    int64_t at = tripAtMs(trip) + intervalMs(s);
    if (recovers(s, trip) && (next < 0 || at < next)) next = at;
  }
  return next;
}

// With no port waiting to recover, the countdown runs round the interval.
long secondsLeft(Sim &s, bool anyEnabled, int interval) {
  int64_t next = nextRecoveryMs(s), now = clockNowMs(s.clock);
  if (next >= 0) return static_cast<long>(std::max<int64_t>(0, next - now) + 999) / 1000;
  int64_t elapsed = now / 1000;
  return anyEnabled && interval > 0 ? interval - static_cast<long>(elapsed % interval) : 0;
}

std::string recoveryShowText(Sim &s) {
  cJSON *e = errdisable(s);
  int interval = cJSON_GetObjectItemCaseSensitive(e, "interval")->valueint;
  cJSON *causes = cJSON_GetObjectItemCaseSensitive(e, "causes");
  bool anyEnabled = false;
  std::string rows;
  char line[160];
  const cJSON *c = nullptr;
  cJSON_ArrayForEach(c, causes) {
    anyEnabled |= cJSON_IsTrue(c);
    snprintf(line, sizeof line, "%-28s %s\n", c->string, cJSON_IsTrue(c) ? "Enabled" : "Disabled");
    rows += line;
  }
  long timeLeft = secondsLeft(s, anyEnabled, interval);

  std::string out;
  snprintf(line, sizeof line, "Time left for Auto-recovery from D-Disable state..... %ld\n\n", timeLeft);
  out += line;
  out += "Errdisable Cause             Auto-recovery Status\n";
  out += "---------------------------- --------------------\n";
  out += rows;
  snprintf(line, sizeof line, "Timeout for Auto-recovery from D-Disable state....... %d\n", interval);
  out += line;
  return out;
}

int cliShow(Sim &s, Call &c) {
  std::string command = c.inText(0), file = c.inText(1);
  // `ctl set` fixes a command's text whatever file name the caller picks.
  std::string body;
  if (const Outputs *fixed = s.stored(c.name, command); fixed && !fixed->empty()) body = (*fixed)[0].text;
  else if (command == kShowRecovery) body = recoveryShowText(s);
  else return -28;
  return writeCliFile(file, body) ? 0 : -1;
}

int cliCompress(Sim &, Call &c) {
  std::string script;
  if (!readCliFile(c.inText(0), &script)) return -1;
  std::string packed;
  for (const std::string &line : splitLines(script))
    if (!trim(line).empty()) packed += trim(line) + "\n";
  return writeCliFile(c.inText(1), packed) ? 0 : -1;
}

bool isRecoveryCause(const std::string &name) {
  if (name == "all") return true;
  for (const RecoveryCause &c : kRecoveryCauses)
    if (name == c.name) return true;
  return false;
}

// One accepted configuration line, checked before anything is applied so
// that a script with a bad line changes nothing.
struct ConfigLine {
  enum { Mode, Interval, Cause } kind;
  long interval = 0;
  std::string cause;
  bool enable = false;
};

bool parseConfigLine(const std::string &raw, ConfigLine *out) {
  std::string line = trim(raw);
  if (line.empty() || line == "end" || line == "configure") {
    out->kind = ConfigLine::Mode;
    return true;
  }
  long n = 0;
  char rest = 0;
  if (sscanf(line.c_str(), "errdisable recovery interval %ld%c", &n, &rest) == 1) {
    out->kind = ConfigLine::Interval;
    out->interval = n;
    return n >= 30 && n <= 86400;
  }
  bool no = line.rfind("no ", 0) == 0;
  const std::string prefix = "errdisable recovery cause ";
  std::string body = no ? line.substr(3) : line;
  if (body.rfind(prefix, 0) != 0) return false;
  out->kind = ConfigLine::Cause;
  out->cause = body.substr(prefix.size());
  out->enable = !no;
  return isRecoveryCause(out->cause);
}

void applyConfigLine(Sim &s, const ConfigLine &l) {
  cJSON *e = errdisable(s);
  if (l.kind == ConfigLine::Interval) {
    cJSON_ReplaceItemInObjectCaseSensitive(e, "interval", cJSON_CreateNumber(static_cast<double>(l.interval)));
    return;
  }
  if (l.kind != ConfigLine::Cause) return;
  cJSON *causes = cJSON_GetObjectItemCaseSensitive(e, "causes");
  for (cJSON *c = causes->child; c; c = c->next)
    if (l.cause == "all" || l.cause == c->string) c->type = (c->type & ~0xFF) | (l.enable ? cJSON_True : cJSON_False);
}

void journalScript(Sim &s, const std::vector<std::string> &lines) {
  if (s.journal.empty()) return;
  Json entry(cJSON_Parse(s.journal.back().c_str()));
  if (!entry) return;
  cJSON *script = cJSON_AddArrayToObject(entry.get(), "script");
  for (const std::string &l : lines) cJSON_AddItemToArray(script, cJSON_CreateString(l.c_str()));
  char *p = cJSON_PrintUnformatted(entry.get());
  if (p) s.journal.back() = p;
  cJSON_free(p);
}

int cliApply(Sim &s, Call &c) {
  std::string script;
  if (!readCliFile(c.inText(0), &script)) return -1;
  std::vector<std::string> lines = splitLines(script);
  journalScript(s, lines);

  std::vector<ConfigLine> parsed(lines.size());
  for (size_t i = 0; i < lines.size(); ++i) {
    if (!parseConfigLine(lines[i], &parsed[i])) {
      writeCliFile(c.inText(1), "Error in line " + std::to_string(i + 1) + ": " + lines[i] + "\n");
      return -1;
    }
  }
  for (const ConfigLine &l : parsed) applyConfigLine(s, l);
  return writeCliFile(c.inText(1), "Configuration applied.\n") ? 0 : -1;
}

int succeed(Sim &, Call &) { return 0; }

}  // namespace

int disableReasonOf(const std::string &cause) {
  for (const RecoveryCause &c : kRecoveryCauses)
    if (cause == c.name) return static_cast<int>(c.reason);
  return 0;
}

void tripDDisable(Sim &s, uint32_t ifNum, const std::string &cause, int64_t atMs) {
  bool wasUp = linkUp(s, ifNum);
  setLinkState(s, ifNum, false, atMs);
  std::string key = std::to_string(ifNum);
  s.put("openapiIfOprStateGet", key, {num(2)});
  setDisableReason(s, ifNum, static_cast<uint32_t>(disableReasonOf(cause)));
  cJSON *t = tripped(s, true);
  cJSON_DeleteItemFromObjectCaseSensitive(t, key.c_str());
  cJSON *trip = cJSON_AddObjectToObject(t, key.c_str());
  cJSON_AddStringToObject(trip, "cause", cause.c_str());
  cJSON_AddNumberToObject(trip, "atMs", static_cast<double>(atMs));
  cJSON_AddBoolToObject(trip, "wasUp", wasUp);
}

// A port comes back one interval after its trip, if its cause is set to
// recover by then; the interval in force when asked counts.
void recoverDDisabled(Sim &s, int64_t uptoMs) {
  cJSON *t = tripped(s);
  for (cJSON *trip = t ? t->child : nullptr, *next = nullptr; trip; trip = next) {
    next = trip->next;
    int64_t at = tripAtMs(trip) + intervalMs(s);
    if (!recovers(s, trip) || at > uptoMs) continue;
    uint32_t ifNum = static_cast<uint32_t>(strtoul(trip->string, nullptr, 10));
    setDisableReason(s, ifNum, 0);
    bool up = cJSON_IsTrue(cJSON_GetObjectItemCaseSensitive(trip, "wasUp"));
    setLinkState(s, ifNum, up, at);
    s.put("openapiIfOprStateGet", std::to_string(ifNum), {num(up ? 1 : 0)});
    cJSON_DeleteItemFromObjectCaseSensitive(t, trip->string);
  }
}

std::vector<PendingTimer> pendingTimers(const Sim &s) {
  std::vector<PendingTimer> out;
  int64_t now = clockNowMs(s.clock);
  Sim &mutableSim = const_cast<Sim &>(s);  // reading the recovery table fills in its defaults only
  const cJSON *trip = nullptr;
  cJSON_ArrayForEach(trip, tripped(mutableSim)) {
    if (!recovers(mutableSim, trip)) continue;
    out.push_back({tripAtMs(trip) + intervalMs(mutableSim),
                   std::string("port ") + trip->string + " recovers from D-Disable"});
  }
  for (const auto &[ifNum, at] : s.wrapAtMs)
    if (at > now) out.push_back({at, "port " + std::to_string(ifNum) + " counters wrap"});
  int64_t step = storedNum(s, "rpcclt_openapiGreenEthrEeeLpiHistoryIntfSampleIntervalGet", "", 5) * 60000;
  if (step > 0) out.push_back({(now / step + 1) * step, "power-saving history sample"});
  std::sort(out.begin(), out.end(), [](const PendingTimer &a, const PendingTimer &b) { return a.atMs < b.atMs; });
  return out;
}

const CallRule kSystemRules[] = {
    SIM_CUSTOM(openapiClientRegister, succeed),
    SIM_CUSTOM(openapiClientTearDown, succeed),
    SIM_CUSTOM(rpcclt_openapiConnectivityCheck, succeed),
    SIM_GET(rpcclt_openapiNetworkOSVersionGet),
    SIM_GET(rpcclt_openapiApiVersionGet),
    SIM_CUSTOM(rpcclt_openapiCliShowExecuteToFile, cliShow),
    SIM_CUSTOM(rpcclt_openapiTxtCfgCompress, cliCompress),
    SIM_CUSTOM(rpcclt_openapiTxtCfgApply, cliApply),
};
const size_t kSystemRuleCount = sizeof kSystemRules / sizeof kSystemRules[0];

void seedSystem(Sim &s) {
  s.put("rpcclt_openapiNetworkOSVersionGet", "", {text("4.2.1.7")});
  s.put("rpcclt_openapiApiVersionGet", "", {num(1), num(27), num(0), num(4)});
  errdisable(s);
}

}  // namespace sim
