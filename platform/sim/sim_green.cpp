// Green Ethernet on the copper ports: energy detect and short reach, EEE
// (802.3az) settings, counters and link-partner timing, power estimates
// and each port's sampled LPI history.
#include <string.h>

#include <algorithm>

#include "sim/sim.h"
#include "switch_facts.h"

namespace sim {

namespace {

constexpr uint32_t kStackUnit = 1;
constexpr uint32_t kRemoteIndex = 1;  // the one LLDP neighbour of each linked port

// 1000BASE-T wake times in microseconds, ours and a partner's.
constexpr uint32_t kLocalTwsys = 17;
constexpr uint32_t kPartnerTwsys = 30;

// History: five-minute samples. The uplink has kept weeks of them, from
// 1 March 2024 on, up to load; the other ports were cleared three hours
// before load.
constexpr uint32_t kHistoryEpoch = 1709251200;
constexpr uint32_t kHistoryStep = 300;
constexpr uint32_t kUplinkSamples = 5000;
constexpr uint32_t kRecentSamples = 36;
constexpr uint32_t kSwitchTimeAtLoad = kHistoryEpoch + kUplinkSamples * kHistoryStep;

// Seconds since each port's counters were last cleared, at load: 3 days,
// 4 hours, 12 minutes and 5 seconds.
constexpr int64_t kStatsAgeAtLoad = 3 * 86400 + 4 * 3600 + 12 * 60 + 5;

// What EEE saves on a linked copper port, and so adds to its draw without.
constexpr int64_t kEeeSavingMw = 120;

bool eeeActive(const Sim &s, const Port &p) {
  return p.up && p.greenCapable && p.green.eeeAdmin == 1 && s.model.green.eee == 1;
}
bool lowPowerIdle(const Sim &s, const Port &p) { return eeeActive(s, p) && p.green.partnerEee; }
bool energyDetectOn(const Sim &s, const Port &p) {
  return p.greenCapable && p.green.energyDetect == 1 && s.model.green.energyDetect == 1;
}

Port *greenPort(Sim &s, uint64_t ifNum) {
  Port *p = findPort(s, ifNum);
  return p && p->greenCapable ? p : nullptr;
}

// The green ports ascend, so "next" is the first number above `after`.
int walkGreen(Sim &s, uint64_t after, Call &c) {
  for (auto it = s.model.ports.upper_bound(static_cast<uint32_t>(after)); it != s.model.ports.end(); ++it) {
    if (!it->second.greenCapable) continue;
    c.out("intIfNum", it->first);
    return OPEN_E_NONE;
  }
  return OPEN_E_NOT_FOUND;
}

int greenFirst(Sim &s, Call &c) { return walkGreen(s, 0, c); }
int greenNext(Sim &s, Call &c) { return walkGreen(s, c.in("prevIfNum"), c); }

// Questions about an interface the switch does not have find nothing.
int isGreenIntf(Sim &s, Call &c) {
  if (!findInterface(s, c.port())) return OPEN_E_NOT_FOUND;
  c.out(parameterNames(*c.id).back().c_str(), greenPort(s, c.port()) ? 1 : 0);
  return OPEN_E_NONE;
}

template <PortField<uint32_t> F>
int greenGet(Sim &s, Call &c) {
  return greenPort(s, c.port()) ? portGet<F>(s, c) : OPEN_E_NOT_FOUND;
}

template <PortField<uint32_t> F>
int greenSet(Sim &s, Call &c) {
  Port *p = greenPort(s, c.port());
  if (!p) return OPEN_E_NOT_FOUND;
  // A saving that changes rate counts what it saved until now first.
  settleCounters(s, *p, clockNowMs(s.clock));
  return portSet<F>(s, c);
}

// Switch-wide values: the whole model is the accessor's to choose from.
template <uint32_t &(*F)(Model &)>
int switchGet(Sim &s, Call &c) {
  c.out(parameterNames(*c.id).back().c_str(), F(s.model));
  return OPEN_E_NONE;
}

template <uint32_t &(*F)(Model &)>
int switchSet(Sim &s, Call &c) {
  for (auto &[n, p] : s.model.ports) settleCounters(s, p, clockNowMs(s.clock));
  F(s.model) = static_cast<uint32_t>(c.last().num);
  return OPEN_E_NONE;
}
#define SIM_SWITCH_FIELD(expr) (+[](::sim::Model &m) -> uint32_t & { return m.expr; })

// Reasons, as the switch's table numbers them.
enum Reason : uint32_t {
  kAdminDown = facts::codeOf(facts::kGreenReasons, "greenethr_admin_down"),
  kFiberPort = facts::codeOf(facts::kGreenReasons, "greenethr_fiber_port"),
  kLinkUp = facts::codeOf(facts::kGreenReasons, "greenethr_link_up"),
  kLinkDown = facts::codeOf(facts::kGreenReasons, "greenethr_link_down"),
  kLongCable = facts::codeOf(facts::kGreenReasons, "greenethr_long_cable"),
  kShortCable = facts::codeOf(facts::kGreenReasons, "greenethr_short_cable"),
  kNoEnergy = facts::codeOf(facts::kGreenReasons, "greenethr_no_energy"),
  kForced = facts::codeOf(facts::kGreenReasons, "greenethr_forced"),
  kNotAttached = facts::codeOf(facts::kGreenReasons, "greenethr_not_attached"),
};

// The switch's words for a reason.
const char *reasonText(uint32_t reason) {
  for (const facts::Code &r : facts::kGreenReasons)
    if (r.value == reason) return r.meaning;
  return reasonText(kNotAttached);
}

struct OprStatus {
  bool active;
  uint32_t reason;
};

// Energy detect powers a port down while no link partner is sensed.
OprStatus energyDetectStatus(Sim &s, const Port &p) {
  if (!energyDetectOn(s, p)) return {false, kAdminDown};
  if (p.up) return {false, kLinkUp};
  return {true, kNoEnergy};
}

// Short reach lowers transmit power on short cables; the patch cables of
// ports 1 and 2 measure short, the rest run to the floor.
OprStatus shortReachStatus(Sim &s, const Port &p) {
  if (p.green.shortReachForced == 1) return {true, kForced};
  if (p.green.shortReachAuto != 1 || s.model.green.shortReach != 1) return {false, kAdminDown};
  if (!p.up) return {false, kLinkDown};
  return p.ifNum <= 2 ? OprStatus{true, kShortCable} : OprStatus{false, kLongCable};
}

int answerStatus(Sim &s, Call &c, OprStatus (*status)(Sim &, const Port &), bool asText) {
  const Interface *i = findInterface(s, c.port());
  if (!i) return OPEN_E_NOT_FOUND;
  const Port *p = findPort(s, c.port());
  OprStatus st = !p ? OprStatus{false, kNotAttached} : !p->greenCapable ? OprStatus{false, kFiberPort} : status(s, *p);
  c.out("status", st.active ? 1 : 0);
  if (asText) c.outText("reason", reasonText(st.reason));
  else c.out("reason", st.reason);
  return OPEN_E_NONE;
}

int energyDetectOpr(Sim &s, Call &c) { return answerStatus(s, c, energyDetectStatus, false); }
int energyDetectOprText(Sim &s, Call &c) { return answerStatus(s, c, energyDetectStatus, true); }
int shortReachOpr(Sim &s, Call &c) { return answerStatus(s, c, shortReachStatus, false); }
int shortReachOprText(Sim &s, Call &c) { return answerStatus(s, c, shortReachStatus, true); }

int64_t statsAge(const Sim &s, const Port &p) { return clockNowSeconds(s.clock) - p.green.statsClearedS; }

int timeSinceReset(Sim &s, Call &c) {
  const Port *p = greenPort(s, c.port());
  if (!p) return OPEN_E_NOT_FOUND;
  c.out("seconds", static_cast<uint64_t>(statsAge(s, *p)));
  return OPEN_E_NONE;
}

int timeSinceResetSplit(Sim &s, Call &c) {
  const Port *p = greenPort(s, c.port());
  if (!p) return OPEN_E_NOT_FOUND;
  uint64_t t = static_cast<uint64_t>(statsAge(s, *p));
  c.out("days", t / 86400);
  c.out("hours", t % 86400 / 3600);
  c.out("minutes", t % 3600 / 60);
  c.out("seconds", t % 60);
  return OPEN_E_NONE;
}

int eeeStatisticsClear(Sim &s, Call &c) {
  Port *p = greenPort(s, c.port());
  if (!p) return OPEN_E_NOT_FOUND;
  GreenPort &g = p->green;
  g.txEvents = g.rxEvents = 0;
  g.txDuration[0] = g.txDuration[1] = g.rxDuration[0] = g.rxDuration[1] = 0;
  g.statsClearedS = clockNowSeconds(s.clock);
  return OPEN_E_NONE;
}

template <uint64_t GreenPort::*Count>
int eeeEvents(Sim &s, Call &c) {
  const Port *p = greenPort(s, c.port());
  if (!p) return OPEN_E_NOT_FOUND;
  c.out("count", p->green.*Count);
  return OPEN_E_NONE;
}

template <uint64_t (GreenPort::*Duration)[2]>
int eeeDuration(Sim &s, Call &c) {
  const Port *p = greenPort(s, c.port());
  if (!p) return OPEN_E_NOT_FOUND;
  c.out("high", (p->green.*Duration)[0]);
  c.out("low", (p->green.*Duration)[1]);
  return OPEN_E_NONE;
}

// What the link partner told over LLDP: only while linked with EEE on both
// ends (`Ready`), or while EEE runs on the link (`Enable`).
template <bool Ready>
int dllState(Sim &s, Call &c) {
  const Port *p = greenPort(s, c.port());
  if (!p) return OPEN_E_NOT_FOUND;
  c.out("value", Ready ? lowPowerIdle(s, *p) : eeeActive(s, *p));
  return OPEN_E_NONE;
}

int localTwsys(Sim &s, Call &c) {
  if (!greenPort(s, c.port())) return OPEN_E_NOT_FOUND;
  c.out("twsys", kLocalTwsys);
  return OPEN_E_NONE;
}

// Our echo of the partner's wake time, as the local summary shows it: heard
// only while EEE runs on the link with the partner.
int echoTwsys(Sim &s, Call &c) {
  const Port *p = greenPort(s, c.port());
  if (!p) return OPEN_E_NOT_FOUND;
  c.out("twsys", lowPowerIdle(s, *p) ? kPartnerTwsys : 0);
  return OPEN_E_NONE;
}

// A partner's value for its one LLDP record, whatever the time mark.
template <bool Echo>
int remoteValue(Sim &s, Call &c) {
  const Port *p = greenPort(s, c.port());
  if (!p || !lowPowerIdle(s, *p) || c.in("remIndex") != kRemoteIndex) return OPEN_E_NOT_FOUND;
  c.out("twsys", Echo ? kLocalTwsys : kPartnerTwsys);
  return OPEN_E_NONE;
}

int localSummary(Sim &s, Call &c) {
  const Port *p = greenPort(s, c.port());
  if (!p) return OPEN_E_NOT_FOUND;
  bool enabled = eeeActive(s, *p), ready = lowPowerIdle(s, *p);
  uint32_t echo = ready ? kPartnerTwsys : 0;
  c.out("twSysTx", kLocalTwsys);
  c.out("twSysTxEcho", echo);
  c.out("twSysRx", kLocalTwsys);
  c.out("twSysRxEcho", echo);
  c.out("twSysTxFallback", kLocalTwsys);
  c.out("txDllEnabled", enabled);
  c.out("txDllReady", ready);
  c.out("rxDllEnabled", enabled);
  c.out("rxDllReady", ready);
  return OPEN_E_NONE;
}

int remoteSummary(Sim &s, Call &c) {
  const Port *p = greenPort(s, c.port());
  if (!p || !lowPowerIdle(s, *p)) return OPEN_E_NOT_FOUND;
  c.out("twSysTx", kPartnerTwsys);
  c.out("twSysTxEcho", kLocalTwsys);
  c.out("twSysRx", kPartnerTwsys);
  c.out("twSysRxEcho", kLocalTwsys);
  c.out("twSysTxFallback", kPartnerTwsys);
  return OPEN_E_NONE;
}

int totalLpiTime(Sim &s, Call &c) {
  c.out("lpiTotalTime", s.model.green.totalLpiTime);
  return OPEN_E_NONE;
}

int featuresSupported(Sim &s, Call &c) {
  if (c.in("unit") != kStackUnit) return OPEN_E_NOT_FOUND;
  c.outText("features", s.model.green.features);
  return OPEN_E_NONE;
}

// --- power -----------------------------------------------------------------

int intfCurrentPower(Sim &s, Call &c) {
  const Port *p = findPort(s, c.port());
  if (!p || !p->powerEstimate) return OPEN_E_NOT_FOUND;
  c.out("pwrConsumption", static_cast<uint64_t>(drawMw(s, *p)));
  return OPEN_E_NONE;
}

int intfCumulativeSaving(Sim &s, Call &c) {
  const Port *p = findPort(s, c.port());
  if (!p || !p->powerEstimate) return OPEN_E_NOT_FOUND;
  c.out("pwrSaving", savedMwhAt(s, *p, clockNowMs(s.clock)));
  return OPEN_E_NONE;
}

// The switch's draw is that of all its ports; its saving that of the
// ports with an estimate.
int globalCurrentPower(Sim &s, Call &c) {
  int64_t total = 0;
  for (const auto &[n, p] : s.model.ports) total += drawMw(s, p);
  c.out("pwrConsumption", static_cast<uint64_t>(total));
  return OPEN_E_NONE;
}

int globalCumulativeSaving(Sim &s, Call &c) {
  uint64_t total = 0;
  for (const auto &[n, p] : s.model.ports)
    if (p.powerEstimate) total += savedMwhAt(s, p, clockNowMs(s.clock));
  c.out("pwrSaving", total);
  return OPEN_E_NONE;
}

int intfStatisticsClear(Sim &s, Call &c) {
  Port *p = greenPort(s, c.port());
  if (!p) return OPEN_E_NOT_FOUND;
  settleCounters(s, *p, clockNowMs(s.clock));
  p->savedMwh = 0;
  p->savedMwMs = 0;
  return OPEN_E_NONE;
}

// --- LPI history -----------------------------------------------------------

int64_t sampleStepMs(const Sim &s) { return static_cast<int64_t>(s.model.green.sampleIntervalMin) * 60000; }

// Idle links sleep most of the night and less in office hours.
uint16_t lpiPercent(bool idle, uint32_t ifNum, uint32_t index, uint32_t time) {
  if (!idle) return 0;
  uint32_t hourOfDay = time / 3600 % 24;
  uint32_t base = hourOfDay >= 8 && hourOfDay < 18 ? 35 : 80;
  return static_cast<uint16_t>(base + (index * 7 + ifNum * 13) % 15);
}

void addSample(GreenPort &g, uint32_t maxSamples, bool idle, uint32_t ifNum, uint32_t time) {
  LpiSample r;
  r.percent = lpiPercent(idle, ifNum, g.lpiTaken, time);
  g.lpiSum += r.percent;
  ++g.lpiTaken;
  r.number = static_cast<uint16_t>(g.lpiTaken);
  r.time = time;
  r.percentTotal = static_cast<uint16_t>(g.lpiSum / g.lpiTaken);
  g.history.push_back(r);
  while (g.history.size() > maxSamples) g.history.pop_front();
}

void trimHistory(Sim &s) {
  for (auto &[n, p] : s.model.ports)
    while (p.green.history.size() > s.model.green.maxSamples) p.green.history.pop_front();
}

int sampleIntervalSet(Sim &s, Call &c) {
  uint64_t v = c.in("sampleInterval");
  if (v < facts::kLpiSampleInterval.least || v > facts::kLpiSampleInterval.most) return OPEN_E_PARAM;
  s.model.green.sampleIntervalMin = static_cast<uint32_t>(v);
  s.model.green.nextSampleMs = clockNowMs(s.clock) + sampleStepMs(s);
  return OPEN_E_NONE;
}

// A smaller maximum keeps the newest samples.
int maxSamplesSet(Sim &s, Call &c) {
  uint64_t v = c.in("maxSamples");
  if (v < facts::kLpiMaxSamples.least || v > facts::kLpiMaxSamples.most) return OPEN_E_PARAM;
  s.model.green.maxSamples = static_cast<uint32_t>(v);
  trimHistory(s);
  return OPEN_E_NONE;
}

void writeSample(Arg &a, const Port &p, size_t index) {
  const LpiSample &r = p.green.history[index];
  open_pwr_sav_sample_t out = {};
  out.sampleNo = r.number;
  out.sampleTime = r.time;
  out.percentLpiTime = r.percent;
  out.percentLpiTimeTotal = r.percentTotal;
  // The cursor names the port and the position of the following sample.
  out.next = index + 1 < p.green.history.size() ? (static_cast<uint64_t>(p.ifNum) << 32) | (index + 1) : 0;
  a.text.assign(reinterpret_cast<const char *>(&out), sizeof out);
  a.written = true;
}

int answerSample(Call &c, const Port &p, size_t index) {
  Arg &a = c.arg("sample");
  if (a.kind != wire::kInOutBlob || a.text.size() != sizeof(open_pwr_sav_sample_t)) return OPEN_E_PARAM;
  writeSample(a, p, index);
  return OPEN_E_NONE;
}

int historyFirst(Sim &s, Call &c) {
  const Port *p = greenPort(s, c.port());
  if (!p || p->green.history.empty()) return OPEN_E_NOT_FOUND;
  return answerSample(c, *p, 0);
}

int historyNext(Sim &s, Call &c) {
  Arg &a = c.arg("sample");
  if (a.kind != wire::kInOutBlob || a.text.size() != sizeof(open_pwr_sav_sample_t)) return OPEN_E_PARAM;
  open_pwr_sav_sample_t r = {};
  memcpy(&r, a.text.data(), sizeof r);
  const Port *p = greenPort(s, r.next >> 32);
  size_t index = static_cast<uint32_t>(r.next);
  if (r.next == 0 || !p || index >= p->green.history.size()) return OPEN_E_NOT_FOUND;
  return answerSample(c, *p, index);
}

// The sample after the one numbered `curSample`; 0 asks for the first.
int historyNextSample(Sim &s, Call &c) {
  const Port *p = greenPort(s, c.port());
  if (!p || p->green.history.empty()) return OPEN_E_NOT_FOUND;
  uint64_t cur = c.in("curSample");
  if (cur == 0) return answerSample(c, *p, 0);
  for (size_t i = 0; i + 1 < p->green.history.size(); ++i)
    if (p->green.history[i].number == cur) return answerSample(c, *p, i + 1);
  return OPEN_E_NOT_FOUND;
}

// Counted from now: the samples taken so far are gone.
int historyClear(Sim &s, Call &c) {
  Port *p = greenPort(s, c.port());
  if (!p) return OPEN_E_NOT_FOUND;
  p->green.history.clear();
  p->green.lpiSum = 0;
  p->green.lpiTaken = 0;
  return OPEN_E_NONE;
}

// --- default scenario ------------------------------------------------------

// The uplink's weeks of samples up to load; the three hours before load
// on the other ports.
void seedHistory(Sim &s, Port &p) {
  uint32_t count = p.ifNum == 1 ? kUplinkSamples : kRecentSamples;
  for (uint32_t i = 0; i < count; ++i)
    addSample(p.green, s.model.green.maxSamples, eeeActive(s, p), p.ifNum,
              kSwitchTimeAtLoad - (count - i) * kHistoryStep);
}

// Desk ports 13-24 power down while nobody is plugged in; the partner on
// port 8 does not speak EEE over LLDP.
void seedGreenPort(Sim &s, Port &p) {
  GreenPort &g = p.green;
  uint32_t n = p.ifNum;
  g.energyDetect = n >= 13 ? 1 : 0;
  g.partnerEee = n != 8;
  g.statsClearedS = -kStatsAgeAtLoad;
  if (p.up) {
    g.txEvents = 184000 + n * 1711;
    g.rxEvents = 176500 + n * 1493;
    g.txDuration[0] = g.rxDuration[0] = 1;
    g.txDuration[1] = 5 + n * 200000000ULL;
    g.rxDuration[1] = 9 + n * 180000000ULL;
  }
  seedHistory(s, p);
}

// Milliwatts drawn up and down, and milliwatt-hours saved since the last
// clear.
void seedPower(Port &p) {
  p.drawUpMw = p.fibre ? 1150 : 560;
  p.drawDownMw = p.fibre ? 300 : 95;
  p.powerEstimate = !p.fibre;
  p.savedMwh = p.fibre ? 0 : p.up ? 4200 + p.ifNum * 37 : 9800 + p.ifNum * 53;
}

}  // namespace

int64_t drawMw(const Sim &s, const Port &p) {
  if (!p.up) return p.drawDownMw;
  return p.drawUpMw + (p.greenCapable && !eeeActive(s, p) ? kEeeSavingMw : 0);
}

int64_t savingMw(const Sim &s, const Port &p) {
  if (!p.powerEstimate) return 0;
  if (p.up) return eeeActive(s, p) ? kEeeSavingMw : 0;
  return energyDetectOn(s, p) ? std::max<int64_t>(0, p.drawUpMw - p.drawDownMw) : 0;
}

bool hasPowerEstimate(const Sim &s, uint32_t ifNum) {
  const Port *p = findPort(s, ifNum);
  return p && p->powerEstimate;
}

// A reading of the port's draw in the state it is in now.
void setPortPower(Sim &s, uint32_t ifNum, int64_t milliwatts, int64_t savedMwh, int64_t atMs) {
  Port *p = findPort(s, ifNum);
  if (!p) return;
  settleCounters(s, *p, atMs);
  int64_t eee = p->up && p->greenCapable && !eeeActive(s, *p) ? kEeeSavingMw : 0;
  (p->up ? p->drawUpMw : p->drawDownMw) = std::max<int64_t>(0, milliwatts - eee);
  if (savedMwh < 0) return;
  p->savedMwh = static_cast<uint64_t>(savedMwh);
  p->savedMwMs = 0;
}

// Every EEE port takes a sample each interval (none with an interval of
// 0, which only a scenario sets); after a long jump only the
// last `maxSamples` are kept, so only those are made.
void takeLpiSamples(Sim &s, int64_t uptoMs) {
  Green &g = s.model.green;
  int64_t step = sampleStepMs(s);
  if (step <= 0 || g.nextSampleMs > uptoMs) return;
  int64_t due = (uptoMs - g.nextSampleMs) / step + 1;
  int64_t skipped = std::max<int64_t>(0, due - g.maxSamples);
  for (auto &[n, p] : s.model.ports) {
    if (!p.greenCapable) continue;
    p.green.lpiTaken += static_cast<uint32_t>(skipped);
    for (int64_t k = skipped; k < due; ++k) {
      int64_t at = g.nextSampleMs + k * step;
      addSample(p.green, g.maxSamples, eeeActive(s, p), n, kSwitchTimeAtLoad + static_cast<uint32_t>(at / 1000));
    }
  }
  g.nextSampleMs += due * step;
}

const CallRule kGreenRules[] = {
    SIM_RULE(rpcclt_openapiGreenEthrValidIntfFirstGet, greenFirst),
    SIM_RULE(rpcclt_openapiGreenEthrValidIntfNextGet, greenNext),
    SIM_RULE(rpcclt_openapiGreenEthrIsValidIntfType, isGreenIntf),
    SIM_RULE(rpcclt_openapiGreenEthrIsIntfEEECapable, isGreenIntf),
    SIM_SETTER(rpcclt_openapiGreenEthrEnergyDetectModeSet, rpcclt_openapiGreenEthrEnergyDetectAdminModeGet,
               greenSet<SIM_PORT_FIELD(green.energyDetect)>),
    SIM_SETTER(rpcclt_openapiGreenEthrShrtRchAutoModeSet, rpcclt_openapiGreenEthrShrtRchAutoAdminModeGet,
               greenSet<SIM_PORT_FIELD(green.shortReachAuto)>),
    SIM_SETTER(rpcclt_openapiGreenEthrShrtRchForceModeSet, rpcclt_openapiGreenEthrShrtRchForceAdminModeGet,
               greenSet<SIM_PORT_FIELD(green.shortReachForced)>),
    SIM_RULE(rpcclt_openapiGreenEthrEnergyDetectAdminModeGet, greenGet<SIM_PORT_FIELD(green.energyDetect)>),
    SIM_RULE(rpcclt_openapiGreenEthrShrtRchAutoAdminModeGet, greenGet<SIM_PORT_FIELD(green.shortReachAuto)>),
    SIM_RULE(rpcclt_openapiGreenEthrShrtRchForceAdminModeGet, greenGet<SIM_PORT_FIELD(green.shortReachForced)>),
    SIM_RULE(rpcclt_openapiGreenEthrEnergyDetectOprStatusGet, energyDetectOpr),
    SIM_RULE(rpcclt_openapiGreenEthrShrtRchOprStatusGet, shortReachOpr),
    SIM_RULE(rpcclt_openapiGreenEthrEnergyDetectOprStatusStrGet, energyDetectOprText),
    SIM_RULE(rpcclt_openapiGreenEthrShrtRchOprStatusStrGet, shortReachOprText),
    SIM_RULE(rpcclt_openapiGreenEthrGlobalEnergyDetectModeGet, switchGet<SIM_SWITCH_FIELD(green.energyDetect)>),
    SIM_SETTER(rpcclt_openapiGreenEthrGlobalEnergyDetectModeSet, rpcclt_openapiGreenEthrGlobalEnergyDetectModeGet,
               switchSet<SIM_SWITCH_FIELD(green.energyDetect)>),
    SIM_RULE(rpcclt_openapiGreenEthrGlobalShortReachModeGet, switchGet<SIM_SWITCH_FIELD(green.shortReach)>),
    SIM_SETTER(rpcclt_openapiGreenEthrGlobalShortReachModeSet, rpcclt_openapiGreenEthrGlobalShortReachModeGet,
               switchSet<SIM_SWITCH_FIELD(green.shortReach)>),

    SIM_RULE(rpcclt_openapiGreenEthrEeeIsValidIntf, isGreenIntf),
    SIM_RULE(rpcclt_openapiGreenEthrEeeValidIntfFirstGet, greenFirst),
    SIM_RULE(rpcclt_openapiGreenEthrEeeValidIntfNextGet, greenNext),
    SIM_RULE(rpcclt_openapiGreenEthrEeeAdminModeGet, greenGet<SIM_PORT_FIELD(green.eeeAdmin)>),
    SIM_SETTER(rpcclt_openapiGreenEthrEeeAdminModeSet, rpcclt_openapiGreenEthrEeeAdminModeGet,
               greenSet<SIM_PORT_FIELD(green.eeeAdmin)>),
    SIM_RULE(rpcclt_openapiGreenEthrEeeTxIdleTimeGet, greenGet<SIM_PORT_FIELD(green.txIdleTime)>),
    SIM_SETTER(rpcclt_openapiGreenEthrEeeTxIdleTimeSet, rpcclt_openapiGreenEthrEeeTxIdleTimeGet,
               greenSet<SIM_PORT_FIELD(green.txIdleTime)>),
    SIM_RULE(rpcclt_openapiGreenEthrEeeTxWakeTimeGet, greenGet<SIM_PORT_FIELD(green.txWakeTime)>),
    SIM_SETTER(rpcclt_openapiGreenEthrEeeTxWakeTimeSet, rpcclt_openapiGreenEthrEeeTxWakeTimeGet,
               greenSet<SIM_PORT_FIELD(green.txWakeTime)>),
    SIM_RULE(rpcclt_openapiGreenEthrGlobalEeeAdminModeGet, switchGet<SIM_SWITCH_FIELD(green.eee)>),
    SIM_SETTER(rpcclt_openapiGreenEthrGlobalEeeAdminModeSet, rpcclt_openapiGreenEthrGlobalEeeAdminModeGet,
               switchSet<SIM_SWITCH_FIELD(green.eee)>),
    SIM_RULE(rpcclt_openapiGreenEthrEeeStatisticsClear, eeeStatisticsClear),
    SIM_RULE(rpcclt_openapiGreenEthrEeeTxEventsGet, eeeEvents<&GreenPort::txEvents>),
    SIM_RULE(rpcclt_openapiGreenEthrEeeTxDurationGet, eeeDuration<&GreenPort::txDuration>),
    SIM_RULE(rpcclt_openapiGreenEthrEeeRxEventsGet, eeeEvents<&GreenPort::rxEvents>),
    SIM_RULE(rpcclt_openapiGreenEthrEeeRxDurationGet, eeeDuration<&GreenPort::rxDuration>),
    SIM_RULE(rpcclt_openapiGreenEthrEeeTimeSinceLastStatsResetGet, timeSinceReset),
    SIM_RULE(rpcclt_openapixGreenEthrEeeTimeSinceLastStatsResetGet, timeSinceResetSplit),
    SIM_RULE(rpcclt_openapiGreenEthrEeeTotalLpiTimeGet, totalLpiTime),
    SIM_RULE(rpcclt_openapiGreenEthrEeeTxDllEnableGet, dllState<false>),
    SIM_RULE(rpcclt_openapiGreenEthrEeeTxDllReadyGet, dllState<true>),
    SIM_RULE(rpcclt_openapiGreenEthrEeeRxDllEnableGet, dllState<false>),
    SIM_RULE(rpcclt_openapiGreenEthrEeeRxDllReadyGet, dllState<true>),
    SIM_RULE(rpcclt_openapiGreenEthrEeeTxTwsysGet, localTwsys),
    SIM_RULE(rpcclt_openapiGreenEthrEeeRxTwsysGet, localTwsys),
    SIM_RULE(rpcclt_openapiGreenEthrEeeFbTwsysGet, localTwsys),
    SIM_RULE(rpcclt_openapiGreenEthrEeeEchoTxTwsysGet, echoTwsys),
    SIM_RULE(rpcclt_openapiGreenEthrEeeEchoRxTwsysGet, echoTwsys),
    SIM_RULE(rpcclt_openapiGreenEthrEeeRemTxTwsysGet, remoteValue<false>),
    SIM_RULE(rpcclt_openapiGreenEthrEeeRemTxTwsysEchoGet, remoteValue<true>),
    SIM_RULE(rpcclt_openapiGreenEthrEeeRemRxTwsysGet, remoteValue<false>),
    SIM_RULE(rpcclt_openapiGreenEthrEeeRemRxTwsysEchoGet, remoteValue<true>),
    SIM_RULE(rpcclt_openapiGreenEthrEeeRemFbTwsysGet, remoteValue<false>),
    SIM_RULE(rpcclt_openapiGreenEthrEeeLocalSummaryGet, localSummary),
    SIM_RULE(rpcclt_openapiGreenEthrEeeRemoteSummaryGet, remoteSummary),
    SIM_RULE(rpcclt_openapiGreenEthrFeaturesSupportedGet, featuresSupported),

    SIM_RULE(rpcclt_openapiGreenPwrEstIntfCurPwrGet, intfCurrentPower),
    SIM_RULE(rpcclt_openapiGreenPwrEstGlobalCurPwrGet, globalCurrentPower),
    SIM_RULE(rpcclt_openapiGreenPwrEstIntfCumSavingGet, intfCumulativeSaving),
    SIM_RULE(rpcclt_openapiGreenPwrEstGlobalCumSavingGet, globalCumulativeSaving),
    SIM_RULE(rpcclt_openapiGreenEthrPwrEstGlobalPwrSavingGet, switchGet<SIM_SWITCH_FIELD(green.savingPercent)>),
    SIM_RULE(rpcclt_openapiGreenEthrIntfStatisticsClear, intfStatisticsClear),
    SIM_SETTER(rpcclt_openapiGreenEthrEeeLpiHistoryIntfSampleIntervalSet,
               rpcclt_openapiGreenEthrEeeLpiHistoryIntfSampleIntervalGet, sampleIntervalSet),
    SIM_RULE(rpcclt_openapiGreenEthrEeeLpiHistoryIntfSampleIntervalGet,
             switchGet<SIM_SWITCH_FIELD(green.sampleIntervalMin)>),
    SIM_SETTER(rpcclt_openapiGreenEthrEeeLpiHistoryIntfMaxSamplesSet,
               rpcclt_openapiGreenEthrEeeLpiHistoryIntfMaxSamplesGet, maxSamplesSet),
    SIM_RULE(rpcclt_openapiGreenEthrEeeLpiHistoryIntfMaxSamplesGet, switchGet<SIM_SWITCH_FIELD(green.maxSamples)>),
    SIM_RULE(rpcclt_openapix2GreenEthrPwrSavHistoryIntfFirstEntryGet, historyFirst),
    SIM_RULE(rpcclt_openapix2GreenEthrPwrSavHistoryIntfNextEntryGet, historyNext),
    SIM_RULE(rpcclt_openapix2GreenEthrPwrSavHistoryIntfNextSampleGet, historyNextSample),
    SIM_RULE(rpcclt_openapiGreenEthrPwrSavHistoryIntfStatisticsClear, historyClear),
};
const size_t kGreenRuleCount = sizeof kGreenRules / sizeof kGreenRules[0];

void seedGreen(Sim &s) {
  s.model.green = Green();
  for (auto &[n, p] : s.model.ports) {
    p.greenCapable = !p.fibre;
    seedPower(p);
    if (p.greenCapable) seedGreenPort(s, p);
  }
}

}  // namespace sim
