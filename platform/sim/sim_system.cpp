// Registration, versions, and the CLI file exchange: show output generated
// from the switch's state, configuration scripts really applied to it.
#include <stdio.h>
#include <string.h>

#include <fstream>
#include <sstream>

#include "sim/sim.h"

namespace sim {

namespace {

const char *const kRecoveryCauses[] = {
    "dhcp-rate-limit", "arp-inspection", "bcast-storm", "mcast-storm", "ucast-storm",  "bpduguard",
    "bpdustorm",       "mac-locking",    "denial-of-service", "link-flap", "udld", "loop-protect",
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
    for (const char *c : kRecoveryCauses) cJSON_AddFalseToObject(causes, c);
  }
  return e;
}

bool readFile(const std::string &path, std::string *out) {
  std::ifstream f(path, std::ios::binary);
  if (!f) return false;
  std::ostringstream ss;
  ss << f.rdbuf();
  *out = ss.str();
  return true;
}

bool writeFile(const std::string &path, const std::string &content) {
  std::ofstream f(path, std::ios::binary | std::ios::trunc);
  f << content;
  return static_cast<bool>(f);
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
  int64_t elapsed = clockNowSeconds(s.clock);
  long timeLeft = anyEnabled && interval > 0 ? interval - static_cast<long>(elapsed % interval) : 0;

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
  return writeFile(file, body) ? 0 : -1;
}

int cliCompress(Sim &, Call &c) {
  std::string script;
  if (!readFile(c.inText(0), &script)) return -1;
  std::string packed;
  for (const std::string &line : splitLines(script))
    if (!trim(line).empty()) packed += trim(line) + "\n";
  return writeFile(c.inText(1), packed) ? 0 : -1;
}

bool isRecoveryCause(const std::string &name) {
  if (name == "all") return true;
  for (const char *c : kRecoveryCauses)
    if (name == c) return true;
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
  if (!readFile(c.inText(0), &script)) return -1;
  std::vector<std::string> lines = splitLines(script);
  journalScript(s, lines);

  std::vector<ConfigLine> parsed(lines.size());
  for (size_t i = 0; i < lines.size(); ++i) {
    if (!parseConfigLine(lines[i], &parsed[i])) {
      writeFile(c.inText(1), "Error in line " + std::to_string(i + 1) + ": " + lines[i] + "\n");
      return -1;
    }
  }
  for (const ConfigLine &l : parsed) applyConfigLine(s, l);
  return writeFile(c.inText(1), "Configuration applied.\n") ? 0 : -1;
}

int succeed(Sim &, Call &) { return 0; }

}  // namespace

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
