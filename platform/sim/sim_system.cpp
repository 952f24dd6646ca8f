// Registration, versions, and the CLI file exchange: show output generated
// from the switch's state, configuration scripts really applied to it.
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <algorithm>
#include <sstream>

#include "sim/sim.h"
#include "sim/sim_files.h"
#include "switch_facts.h"

namespace sim {

namespace {

constexpr char kShowRecovery[] = "show errdisable recovery";
constexpr size_t kCauseCount = std::size(facts::kDDisableCauses);

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

bool recovers(const Sim &s, const Port &p) {
  const std::vector<bool> &causes = s.model.errdisable.recovers;
  int cause = causeOf(p.disableReason);
  return cause >= 0 && static_cast<size_t>(cause) < causes.size() && causes[cause];
}

// One interval after the trip, the interval in force now; not before the
// cause was set to recover, nor before the interval was set.
int64_t recoveryAtMs(const Sim &s, const Port &p) {
  const Errdisable &e = s.model.errdisable;
  return std::max({p.tripAtMs + static_cast<int64_t>(e.intervalS) * 1000, e.enabledAtMs[causeOf(p.disableReason)], e.intervalSetAtMs});
}

// With no port waiting to recover, the countdown runs round the interval.
long secondsLeft(const Sim &s, bool anyEnabled) {
  int64_t next = nextRecoveryMs(s), now = clockNowMs(s.clock);
  if (next >= 0) return static_cast<long>((std::max<int64_t>(0, next - now) + 999) / 1000);
  long interval = static_cast<long>(s.model.errdisable.intervalS);
  return anyEnabled && interval > 0 ? interval - static_cast<long>(now / 1000 % interval) : 0;
}

std::string recoveryShowText(const Sim &s) {
  const Errdisable &e = s.model.errdisable;
  bool anyEnabled = false;
  std::string rows;
  char line[160];
  for (size_t i = 0; i < kCauseCount; ++i) {
    anyEnabled |= e.recovers[i];
    snprintf(line, sizeof line, "%-28s %s\n", facts::kDDisableCauses[i].cli, e.recovers[i] ? "Enabled" : "Disabled");
    rows += line;
  }
  std::string out;
  snprintf(line, sizeof line, "Time left for Auto-recovery from D-Disable state..... %ld\n\n", secondsLeft(s, anyEnabled));
  out += line;
  out += "Errdisable Cause             Auto-recovery Status\n";
  out += "---------------------------- --------------------\n";
  out += rows;
  snprintf(line, sizeof line, "Timeout for Auto-recovery from D-Disable state....... %u\n", e.intervalS);
  out += line;
  return out;
}

int cliShow(Sim &s, Call &c) {
  using enum args::rpcclt_openapiCliShowExecuteToFile::Param;
  std::string shown = c.text(command);
  // `ctl set` fixes a command's text whatever file name the caller picks.
  std::string body;
  if (const Outputs *fixed = s.overridden(c.name, shown); fixed && !fixed->empty()) body = (*fixed)[0].text;
  else if (shown == kShowRecovery) body = recoveryShowText(s);
  else return OPEN_E_UNAVAIL;
  return writeCliFile(c.text(fileName), body) ? OPEN_E_NONE : OPEN_E_FAIL;
}

int cliCompress(Sim &, Call &c) {
  using enum args::rpcclt_openapiTxtCfgCompress::Param;
  std::string script;
  if (!readCliFile(c.text(source), &script)) return OPEN_E_FAIL;
  std::string packed;
  for (const std::string &line : splitLines(script))
    if (!trim(line).empty()) packed += trim(line) + "\n";
  return writeCliFile(c.text(destination), packed) ? OPEN_E_NONE : OPEN_E_FAIL;
}

bool isRecoveryCause(const std::string &name) { return name == "all" || causeIndex(name) >= 0; }

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
    return n >= facts::kRecoveryInterval.least && n <= facts::kRecoveryInterval.most;
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
  Errdisable &e = s.model.errdisable;
  if (l.kind == ConfigLine::Interval) {
    e.intervalS = static_cast<uint32_t>(l.interval);
    e.intervalSetAtMs = clockNowMs(s.clock);
  }
  if (l.kind != ConfigLine::Cause) return;
  for (size_t i = 0; i < kCauseCount; ++i) {
    if (l.cause != "all" && static_cast<int>(i) != causeIndex(l.cause)) continue;
    if (l.enable && !e.recovers[i]) e.enabledAtMs[i] = clockNowMs(s.clock);
    e.recovers[i] = l.enable;
  }
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
  using enum args::rpcclt_openapiTxtCfgApply::Param;
  std::string script;
  if (!readCliFile(c.text(input), &script)) return OPEN_E_FAIL;
  std::vector<std::string> lines = splitLines(script);
  journalScript(s, lines);

  std::vector<ConfigLine> parsed(lines.size());
  for (size_t i = 0; i < lines.size(); ++i) {
    if (!parseConfigLine(lines[i], &parsed[i])) {
      writeCliFile(c.text(output), "Error in line " + std::to_string(i + 1) + ": " + lines[i] + "\n");
      return OPEN_E_FAIL;
    }
  }
  for (const ConfigLine &l : parsed) applyConfigLine(s, l);
  // A port whose cause now recovers, and whose time is up, comes back.
  recoverDDisabled(s, clockNowMs(s.clock));
  return writeCliFile(c.text(output), "Configuration applied.\n") ? OPEN_E_NONE : OPEN_E_FAIL;
}

int succeed(Sim &, Call &) { return OPEN_E_NONE; }

int osVersionCall(Sim &s, Call &c) {
  c.outText(args::rpcclt_openapiNetworkOSVersionGet::version, s.model.osVersion);
  return OPEN_E_NONE;
}

// The record's four fields, in order.
int apiVersionCall(Sim &s, Call &c) {
  Arg &record = c.arg(args::rpcclt_openapiApiVersionGet::version);
  for (size_t f = 0; f < s.model.apiVersion.size() && (f + 1) * 4 <= record.text.size(); ++f) {
    int32_t field = static_cast<int32_t>(s.model.apiVersion[f]);
    record.text.replace(f * 4, 4, reinterpret_cast<const char *>(&field), 4);
  }
  record.written = true;
  return OPEN_E_NONE;
}

}  // namespace

int64_t nextRecoveryMs(const Sim &s) {
  int64_t next = -1;
  for (const auto &[n, p] : s.model.ports)
    if (recovers(s, p) && (next < 0 || recoveryAtMs(s, p) < next)) next = recoveryAtMs(s, p);
  return next;
}

int causeIndex(const std::string &name) {
  for (size_t i = 0; i < kCauseCount; ++i) {
    const facts::DDisableCause &c = facts::kDDisableCauses[i];
    if ((c.api && name == c.api) || name == c.cli) return static_cast<int>(i);
  }
  return -1;
}

int causeOf(uint32_t disableReason) {
  for (size_t i = 0; disableReason && i < kCauseCount; ++i)
    if (facts::kDDisableCauses[i].reason == disableReason) return static_cast<int>(i);
  return -1;
}

int disableReasonOf(const std::string &cause) {
  int i = causeIndex(cause);
  return i < 0 ? 0 : static_cast<int>(facts::kDDisableCauses[i].reason);
}

// Every trip shuts the port anew and restarts its countdown.
void tripDDisable(Sim &s, Port &p, const std::string &cause, int64_t atMs) {
  if (causeIndex(cause) < 0) return;
  changePort(s, p, atMs, [&](Port &q) {
    q.disableReason = static_cast<uint32_t>(disableReasonOf(cause));
    q.tripAtMs = atMs;
  });
}

// A port comes back one interval after its trip (the interval in force
// now), as soon as its cause is set to recover; one whose time was up
// before its cause was enabled comes back when asked.
void recoverDDisabled(Sim &s, int64_t uptoMs) {
  // Every call asks first: without a cause set to recover, nothing can.
  const std::vector<bool> &causes = s.model.errdisable.recovers;
  if (std::find(causes.begin(), causes.end(), true) == causes.end()) return;
  for (auto &[n, p] : s.model.ports) {
    if (!recovers(s, p) || recoveryAtMs(s, p) > uptoMs) continue;
    changePort(s, p, recoveryAtMs(s, p), [](Port &q) { q.disableReason = 0; });
  }
}

std::vector<PendingTimer> pendingTimers(const Sim &s) {
  std::vector<PendingTimer> out;
  int64_t now = clockNowMs(s.clock);
  for (const auto &[n, p] : s.model.ports) {
    if (recovers(s, p))
      out.push_back({std::max(now, recoveryAtMs(s, p)), "port " + std::to_string(n) + " recovers from D-Disable"});
    if (int64_t wrap = wrapDueMs(s, p, now); wrap >= 0) out.push_back({wrap, "port " + std::to_string(n) + " counters wrap"});
  }
  if (s.model.green.sampleIntervalMin > 0) out.push_back({s.model.green.nextSampleMs, "power-saving history sample"});
  std::stable_sort(out.begin(), out.end(), [](const PendingTimer &a, const PendingTimer &b) { return a.atMs < b.atMs; });
  return out;
}

const CallRule kSystemRules[] = {
    SIM_RULE(openapiClientRegister, succeed),
    SIM_RULE(openapiClientTearDown, succeed),
    SIM_RULE(rpcclt_openapiConnectivityCheck, succeed),
    SIM_RULE(rpcclt_openapiNetworkOSVersionGet, osVersionCall),
    SIM_RULE(rpcclt_openapiApiVersionGet, apiVersionCall),
    SIM_RULE(rpcclt_openapiCliShowExecuteToFile, cliShow),
    SIM_RULE(rpcclt_openapiTxtCfgCompress, cliCompress),
    SIM_RULE(rpcclt_openapiTxtCfgApply, cliApply),
};

static void seedSystem(Sim &s) {
  s.model.errdisable.recovers.assign(kCauseCount, false);
  s.model.errdisable.enabledAtMs.assign(kCauseCount, 0);
}

const RuleGroup kSystemGroup = {kSystemRules, std::size(kSystemRules), seedSystem};

}  // namespace sim
