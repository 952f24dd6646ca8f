// Green Ethernet on the copper ports: energy detect and short reach, EEE
// (802.3az) settings, counters and link-partner timing, power estimates
// and each port's sampled LPI history.
#include <string.h>

#include <algorithm>
#include <numeric>

#include "sim/sim.h"
#include "switch_facts.h"

namespace sim {

namespace {

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
constexpr int64_t kSwitchTimeAtLoad = int64_t{kHistoryEpoch} + kUplinkSamples * kHistoryStep;

// Seconds since each port's counters were last cleared, at load: 3 days,
// 4 hours, 12 minutes and 5 seconds.
constexpr int64_t kStatsAgeAtLoad = 3 * 86400 + 4 * 3600 + 12 * 60 + 5;

// What EEE saves on a linked copper port, and so adds to its draw without.
constexpr int64_t kEeeSavingMw = 120;

bool eeeActive(const Sim &s, const Port &p) {
  return isUp(p) && isGreen(s, p) && p.green.eeeAdmin == 1 && s.model.green.eee == 1;
}
bool energyDetectOn(const Sim &s, const Port &p) {
  return isGreen(s, p) && p.green.energyDetect == 1 && s.model.green.energyDetect == 1;
}

// EEE runs on the link with both ends: the link sleeps between frames.
bool lowPowerIdle(const Sim &s, const Port &p) { return eeeActive(s, p) && p.green.partnerEee; }

int64_t drawMw(const Sim &s, const Port &p) {
  if (!isUp(p)) return p.drawDownMw;
  return p.drawUpMw + (isGreen(s, p) && !lowPowerIdle(s, p) ? kEeeSavingMw : 0);
}

Port *greenPort(Sim &s, uint64_t ifNum) {
  Port *p = findPort(s, ifNum);
  return p && isGreen(s, *p) ? p : nullptr;
}

// A call about one green port, answered from it.
template <int (*Answer)(Sim &, Call &, Port &)>
int onGreen(Sim &s, Call &c) {
  Port *p = greenPort(s, c.port());
  return p ? Answer(s, c, *p) : lacking(s, c.port());
}

// The green ports ascend, so "next" is the first number above the one
// given.
template <bool Next>
int walkGreen(Sim &s, Call &c) {
  uint32_t after = Next ? c.port() : 0;
  for (auto it = s.model.ports.upper_bound(after); it != s.model.ports.end(); ++it) {
    if (!isGreen(s, it->second)) continue;
    c.outLast(it->first);
    return OPEN_E_NONE;
  }
  return OPEN_E_NOT_FOUND;
}

// Questions about an interface the switch does not have find nothing.
int isGreenIntf(Sim &s, Call &c) {
  if (!findInterface(s, c.port())) return OPEN_E_NOT_FOUND;
  c.outLast(greenPort(s, c.port()) ? 1 : 0);
  return OPEN_E_NONE;
}

template <PortField<uint32_t> F>
int greenGet(Sim &s, Call &c) {
  return greenPort(s, c.port()) ? portGet<F>(s, c) : lacking(s, c.port());
}

template <PortField<uint32_t> F>
int greenSet(Sim &s, Call &c) {
  Port *p = greenPort(s, c.port());
  if (!p) return lacking(s, c.port());
  // A saving that changes rate counts what it saved until now first.
  settleCounters(s, *p, clockNowMs(s.clock));
  return portSet<F>(s, c);
}

// A switch-wide saving that changes rate counts what every port saved
// until now first.
template <uint32_t &(*F)(Model &)>
int switchSet(Sim &s, Call &c) {
  for (auto &[n, p] : s.model.ports) settleCounters(s, p, clockNowMs(s.clock));
  F(s.model) = static_cast<uint32_t>(c.last().num);
  return OPEN_E_NONE;
}

// Settings of a green port, and of the switch.
#define SIM_GREEN_SETTING(getter, setter, expr) \
  SIM_SETTING(getter, greenGet<SIM_PORT_FIELD(expr)>, setter, greenSet<SIM_PORT_FIELD(expr)>)
#define SIM_SWITCH_SETTING(getter, setter, expr) \
  SIM_SETTING(getter, switchGet<SIM_SWITCH_FIELD(expr)>, setter, switchSet<SIM_SWITCH_FIELD(expr)>)

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
  if (isUp(p)) return {false, kLinkUp};
  return {true, kNoEnergy};
}

// Short reach lowers transmit power on short cables; the patch cables of
// ports 1 and 2 measure short, the rest run to the floor.
OprStatus shortReachStatus(Sim &s, const Port &p) {
  if (p.green.shortReachForced == 1) return {true, kForced};
  if (p.green.shortReachAuto != 1 || s.model.green.shortReach != 1) return {false, kAdminDown};
  if (!isUp(p)) return {false, kLinkDown};
  return p.ifNum <= 2 ? OprStatus{true, kShortCable} : OprStatus{false, kLongCable};
}

// The four status calls share their layout: the port, whether active,
// and why.
namespace statusArgs = args::rpcclt_openapiGreenEthrEnergyDetectOprStatusGet;
static_assert(samePlace(args::rpcclt_openapiGreenEthrShrtRchOprStatusStrGet::reason, statusArgs::reason) &&
              samePlace(args::rpcclt_openapiGreenEthrEnergyDetectOprStatusStrGet::reason, statusArgs::reason) &&
              samePlace(args::rpcclt_openapiGreenEthrShrtRchOprStatusGet::reason, statusArgs::reason));

template <OprStatus (*statusOf)(Sim &, const Port &), bool asText>
int answerStatus(Sim &s, Call &c) {
  using enum statusArgs::Param;
  if (!findInterface(s, c.port())) return OPEN_E_NOT_FOUND;
  const Port *p = findPort(s, c.port());
  OprStatus st = !p ? OprStatus{false, kNotAttached} : !isGreen(s, *p) ? OprStatus{false, kFiberPort} : statusOf(s, *p);
  c.out(status, st.active ? 1 : 0);
  if (asText) c.outText(reason, reasonText(st.reason));
  else c.out(reason, st.reason);
  return OPEN_E_NONE;
}

uint64_t secondsSinceReset(const Sim &s, const Port &p) {
  return static_cast<uint64_t>(clockNowSeconds(s.clock) - p.green.statsClearedS);
}

int timeSinceResetSplit(Sim &s, Call &c, Port &p) {
  using enum args::rpcclt_openapixGreenEthrEeeTimeSinceLastStatsResetGet::Param;
  uint64_t t = secondsSinceReset(s, p);
  c.out(days, t / 86400);
  c.out(hours, t % 86400 / 3600);
  c.out(minutes, t % 3600 / 60);
  c.out(seconds, t % 60);
  return OPEN_E_NONE;
}

int eeeStatisticsClear(Sim &s, Call &, Port &p) {
  settleCounters(s, p, clockNowMs(s.clock));
  GreenPort &g = p.green;
  g.txEvents = g.rxEvents = 0;
  g.txDuration[0] = g.txDuration[1] = g.rxDuration[0] = g.rxDuration[1] = 0;
  g.lpiMsAtClear = g.lpiMs;
  g.statsClearedS = clockNowSeconds(s.clock);
  return OPEN_E_NONE;
}

// While EEE runs on both ends the link sleeps in bursts: a wake every
// 25 ms, asleep 60% of the time sending and 55% receiving.
constexpr uint64_t kLpiMsPerEvent = 25;
constexpr uint64_t kTxSleepUsPerMs = 600, kRxSleepUsPerMs = 550;

uint64_t lpiMsSinceClear(const Sim &s, const Port &p) {
  return lpiMsAt(s, p, clockNowMs(s.clock)) - p.green.lpiMsAtClear;
}

template <uint64_t GreenPort::*Count>
uint64_t eeeEvents(const Sim &s, const Port &p) {
  return (p.green.*Count + lpiMsSinceClear(s, p) / kLpiMsPerEvent) % (1ULL << 32);
}

template <uint64_t (GreenPort::*Duration)[2], uint64_t UsPerMs>
int eeeDuration(Sim &s, Call &c, Port &p) {
  using enum args::rpcclt_openapiGreenEthrEeeTxDurationGet::Param;
  static_assert(samePlace(args::rpcclt_openapiGreenEthrEeeRxDurationGet::low, low));
  const uint64_t(&base)[2] = p.green.*Duration;
  uint64_t us = (base[0] << 32) + base[1] + lpiMsSinceClear(s, p) * UsPerMs;
  c.out(high, us >> 32);
  c.out(low, us & 0xFFFFFFFFu);
  return OPEN_E_NONE;
}

// What the link partner told over LLDP: only while linked with EEE on both
// ends (`Ready`), or while EEE runs on the link (`Enable`).
template <bool Ready>
uint64_t dllState(const Sim &s, const Port &p) {
  return Ready ? lowPowerIdle(s, p) : eeeActive(s, p);
}

uint64_t localTwsys(const Sim &, const Port &) { return kLocalTwsys; }

// Our echo of the partner's wake time, as the local summary shows it: heard
// only while EEE runs on the link with the partner.
uint64_t echoTwsys(const Sim &s, const Port &p) { return lowPowerIdle(s, p) ? kPartnerTwsys : 0; }

// A partner's value for its one LLDP record, whatever the time mark.
template <bool Echo>
int remoteValue(Sim &s, Call &c, Port &p) {
  using enum args::rpcclt_openapiGreenEthrEeeRemTxTwsysGet::Param;
  if (!lowPowerIdle(s, p) || c.in(remIndex) != kRemoteIndex) return OPEN_E_NOT_FOUND;
  c.out(twsys, Echo ? kLocalTwsys : kPartnerTwsys);
  return OPEN_E_NONE;
}

int localSummary(Sim &s, Call &c, Port &p) {
  using enum args::rpcclt_openapiGreenEthrEeeLocalSummaryGet::Param;
  bool enabled = eeeActive(s, p), ready = lowPowerIdle(s, p);
  uint32_t echo = ready ? kPartnerTwsys : 0;
  c.out(twSysTx, kLocalTwsys);
  c.out(twSysTxEcho, echo);
  c.out(twSysRx, kLocalTwsys);
  c.out(twSysRxEcho, echo);
  c.out(twSysTxFallback, kLocalTwsys);
  c.out(txDllEnabled, enabled);
  c.out(txDllReady, ready);
  c.out(rxDllEnabled, enabled);
  c.out(rxDllReady, ready);
  return OPEN_E_NONE;
}

int remoteSummary(Sim &s, Call &c, Port &p) {
  using enum args::rpcclt_openapiGreenEthrEeeRemoteSummaryGet::Param;
  if (!lowPowerIdle(s, p)) return OPEN_E_NOT_FOUND;
  c.out(twSysTx, kPartnerTwsys);
  c.out(twSysTxEcho, kLocalTwsys);
  c.out(twSysRx, kPartnerTwsys);
  c.out(twSysRxEcho, kLocalTwsys);
  c.out(twSysTxFallback, kPartnerTwsys);
  return OPEN_E_NONE;
}

// The switch's count in seconds: what it had at load and what every port
// slept since.
int totalLpiTime(Sim &s, Call &c) {
  uint64_t ms = 0;
  for (const auto &[n, p] : s.model.ports) ms += lpiMsAt(s, p, clockNowMs(s.clock));
  c.outLast((s.model.green.totalLpiTime + ms / 1000) % (1ULL << 32));
  return OPEN_E_NONE;
}

int featuresSupported(Sim &s, Call &c) {
  using enum args::rpcclt_openapiGreenEthrFeaturesSupportedGet::Param;
  if (c.in(unit) != kStackUnit) return OPEN_E_NOT_FOUND;
  c.outText(features, s.model.green.features);
  return OPEN_E_NONE;
}

// --- power -----------------------------------------------------------------

uint64_t currentPower(const Sim &s, const Port &p) { return static_cast<uint64_t>(drawMw(s, p)); }
uint64_t cumulativeSaving(const Sim &s, const Port &p) { return savedMwhAt(s, p, clockNowMs(s.clock)); }

// The switch's draw is that of all its ports; its saving that of the
// ports with an estimate.
int globalCurrentPower(Sim &s, Call &c) {
  int64_t total = 0;
  for (const auto &[n, p] : s.model.ports) total += drawMw(s, p);
  c.outLast(static_cast<uint64_t>(total));
  return OPEN_E_NONE;
}

int globalCumulativeSaving(Sim &s, Call &c) {
  uint64_t total = 0;
  for (const auto &[n, p] : s.model.ports)
    if (isGreen(s, p)) total += savedMwhAt(s, p, clockNowMs(s.clock));
  c.outLast(total);
  return OPEN_E_NONE;
}

int intfStatisticsClear(Sim &s, Call &, Port &p) {
  settleCounters(s, p, clockNowMs(s.clock));
  p.savedMwh = 0;
  p.savedMwMs = 0;
  return OPEN_E_NONE;
}

// --- LPI history -----------------------------------------------------------

int64_t sampleStepMs(const Sim &s) { return static_cast<int64_t>(s.model.green.sampleIntervalMin) * 60000; }

// Idle links sleep most of the night and less in office hours; the
// sample's place in the history adds a little of its own, which repeats
// every 15 samples (7 and 15 share no factor, so 15 in a row take each
// of 0 to 14 once).
constexpr int64_t kDayS = 86400, kOfficeFromS = 8 * 3600, kOfficeToS = 18 * 3600;
constexpr uint64_t kNightPercent = 80, kOfficePercent = 35, kPlaceCycle = 15, kPlaceCycleSum = 105;

bool officeHours(int64_t time) {
  int64_t second = time % kDayS;
  return second >= kOfficeFromS && second < kOfficeToS;
}

uint64_t placePercent(const LpiRun &r, uint32_t ifNum, uint64_t k) { return ((r.place + k) * 7 + ifNum * 13) % kPlaceCycle; }

uint16_t lpiPercent(const LpiRun &r, uint32_t ifNum, uint64_t k) {
  if (!r.idle) return 0;
  uint64_t base = officeHours(r.firstTime + static_cast<int64_t>(k * r.stepS)) ? kOfficePercent : kNightPercent;
  return static_cast<uint16_t>(base + placePercent(r, ifNum, k));
}

// The percents of the run's first `count` samples, without visiting each:
// the place repeats every 15 samples and the hour every day, so a long
// run costs no more than a day of samples.
uint64_t percentSum(const LpiRun &r, uint32_t ifNum, uint64_t count) {
  if (!r.idle || !count) return 0;
  uint64_t sum = count / kPlaceCycle * kPlaceCycleSum;
  for (uint64_t k = count / kPlaceCycle * kPlaceCycle; k < count; ++k) sum += placePercent(r, ifNum, k);
  uint64_t period = kDayS / std::gcd<uint64_t>(kDayS, r.stepS);
  uint64_t full = count / period, rest = count % period, inPeriod = 0, inRest = 0;
  for (uint64_t k = 0; k < (full ? period : rest); ++k) {
    bool office = officeHours(r.firstTime + static_cast<int64_t>(k * r.stepS));
    inPeriod += office;
    inRest += office && k < rest;
  }
  uint64_t office = full * inPeriod + inRest;
  return sum + kNightPercent * count - (kNightPercent - kOfficePercent) * office;
}

uint64_t keptSamples(const GreenPort &g) {
  uint64_t kept = 0;
  for (const LpiRun &r : g.history) kept += r.count;
  return kept;
}

// The oldest samples go first; what they counted stays in the average.
void trimHistory(GreenPort &g, uint32_t ifNum, uint64_t maxSamples) {
  for (uint64_t kept = keptSamples(g); kept > maxSamples;) {
    LpiRun &r = g.history.front();
    uint64_t drop = std::min(r.count, kept - maxSamples);
    kept -= drop;
    if (drop == r.count) {
      g.history.pop_front();
      continue;
    }
    r.sumBefore += percentSum(r, ifNum, drop);
    r.place += drop;
    r.firstTime += static_cast<int64_t>(drop * r.stepS);
    r.count -= drop;
  }
}

// `count` samples every `stepS` seconds from `time`, the link asleep or
// not throughout: the last run grows when they carry it on.
void addSamples(GreenPort &g, uint32_t ifNum, bool idle, int64_t time, uint32_t stepS, uint64_t count,
                uint64_t maxSamples) {
  LpiRun next;
  if (!g.history.empty()) {
    LpiRun &last = g.history.back();
    if (last.idle == idle && last.stepS == stepS && last.firstTime + static_cast<int64_t>(last.count * stepS) == time) {
      last.count += count;
      return trimHistory(g, ifNum, maxSamples);
    }
    next.place = last.place + last.count;
    next.sumBefore = last.sumBefore + percentSum(last, ifNum, last.count);
  }
  next.firstTime = time;
  next.stepS = stepS;
  next.count = count;
  next.idle = idle;
  g.history.push_back(next);
  trimHistory(g, ifNum, maxSamples);
}

int sampleIntervalSet(Sim &s, Call &c) {
  uint64_t v = c.in(args::rpcclt_openapiGreenEthrEeeLpiHistoryIntfSampleIntervalSet::sampleInterval);
  if (v < facts::kLpiSampleInterval.least || v > facts::kLpiSampleInterval.most) return OPEN_E_PARAM;
  s.model.green.sampleIntervalMin = static_cast<uint32_t>(v);
  s.model.green.nextSampleMs = clockNowMs(s.clock) + sampleStepMs(s);
  return OPEN_E_NONE;
}

// A smaller maximum keeps the newest samples.
int maxSamplesSet(Sim &s, Call &c) {
  uint64_t v = c.in(args::rpcclt_openapiGreenEthrEeeLpiHistoryIntfMaxSamplesSet::maxSamples);
  if (v < facts::kLpiMaxSamples.least || v > facts::kLpiMaxSamples.most) return OPEN_E_PARAM;
  s.model.green.maxSamples = static_cast<uint32_t>(v);
  trimHistory(s);
  return OPEN_E_NONE;
}

// The kept sample at `index`, oldest first, as the wire carries it: its
// number and time in the platform's 16 and 32 bits.
void writeSample(Arg &a, const Port &p, uint64_t index, uint64_t kept) {
  uint64_t k = index;
  auto run = p.green.history.begin();
  for (; k >= run->count; ++run) k -= run->count;
  uint64_t place = run->place + k;
  open_pwr_sav_sample_t out = {};
  out.sampleNo = static_cast<uint16_t>(place + 1);
  out.sampleTime = static_cast<uint32_t>(run->firstTime + static_cast<int64_t>(k * run->stepS));
  out.percentLpiTime = lpiPercent(*run, p.ifNum, k);
  out.percentLpiTimeTotal = static_cast<uint16_t>((run->sumBefore + percentSum(*run, p.ifNum, k + 1)) / (place + 1));
  // The cursor names the port and the position of the following sample.
  out.next = index + 1 < kept ? (static_cast<uint64_t>(p.ifNum) << 32) | (index + 1) : 0;
  a.text.assign(reinterpret_cast<const char *>(&out), sizeof out);
  a.written = true;
}

// The sample is the last argument of every history call.
int answerSample(Call &c, const Port &p, uint64_t index) {
  Arg &a = c.last();
  uint64_t kept = keptSamples(p.green);
  if (a.kind != wire::kInOutBlob || a.text.size() != sizeof(open_pwr_sav_sample_t)) return OPEN_E_PARAM;
  if (index >= kept) return OPEN_E_NOT_FOUND;
  writeSample(a, p, index, kept);
  return OPEN_E_NONE;
}

int historyFirst(Sim &, Call &c, Port &p) { return answerSample(c, p, 0); }

int historyNext(Sim &s, Call &c) {
  Arg &a = c.arg(args::rpcclt_openapix2GreenEthrPwrSavHistoryIntfNextEntryGet::sample);
  if (a.kind != wire::kInOutBlob || a.text.size() != sizeof(open_pwr_sav_sample_t)) return OPEN_E_PARAM;
  open_pwr_sav_sample_t r = {};
  memcpy(&r, a.text.data(), sizeof r);
  const Port *p = greenPort(s, r.next >> 32);
  if (r.next == 0 || !p) return OPEN_E_NOT_FOUND;
  return answerSample(c, *p, static_cast<uint32_t>(r.next));
}

// The sample after the one numbered `curSample` (numbers run on in 16
// bits); 0 asks for the first.
int historyNextSample(Sim &, Call &c, Port &p) {
  uint64_t cur = c.in(args::rpcclt_openapix2GreenEthrPwrSavHistoryIntfNextSampleGet::curSample);
  if (cur == 0 || p.green.history.empty()) return answerSample(c, p, 0);
  uint16_t firstNumber = static_cast<uint16_t>(p.green.history.front().place + 1);
  if (cur > UINT16_MAX) return OPEN_E_NOT_FOUND;
  return answerSample(c, p, static_cast<uint16_t>(cur - firstNumber) + 1u);
}

// Counted from now: the samples taken so far are gone.
int historyClear(Sim &, Call &, Port &p) {
  p.green.history.clear();
  return OPEN_E_NONE;
}

// --- default scenario ------------------------------------------------------

// The uplink's weeks of samples up to load; the three hours before load
// on the other ports.
void seedHistory(Sim &s, Port &p) {
  uint32_t count = p.ifNum == 1 ? kUplinkSamples : kRecentSamples;
  addSamples(p.green, p.ifNum, lowPowerIdle(s, p), kSwitchTimeAtLoad - count * kHistoryStep, kHistoryStep, count,
             s.model.green.maxSamples);
}

// Desk ports 13-24 power down while nobody is plugged in; the partner on
// port 8 does not speak EEE over LLDP.
void seedGreenPort(Sim &s, Port &p) {
  GreenPort &g = p.green;
  uint32_t n = p.ifNum;
  g.energyDetect = n >= 13 ? 1 : 0;
  g.partnerEee = n != 8;
  g.statsClearedS = -kStatsAgeAtLoad;
  if (isUp(p)) {
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
void seedPower(Port &p, bool fibre) {
  p.drawUpMw = fibre ? 1150 : 560;
  p.drawDownMw = fibre ? 300 : 95;
  p.savedMwh = fibre ? 0 : isUp(p) ? 4200 + p.ifNum * 37 : 9800 + p.ifNum * 53;
}

}  // namespace

// A loaded history keeps its newest samples, as the maximum's setter does.
void trimHistory(Sim &s) {
  for (auto &[n, p] : s.model.ports) trimHistory(p.green, n, s.model.green.maxSamples);
}

uint64_t lpiMsAt(const Sim &s, const Port &p, int64_t atMs) {
  return p.green.lpiMs + (lowPowerIdle(s, p) && atMs > p.settledMs ? static_cast<uint64_t>(atMs - p.settledMs) : 0);
}

int64_t savingMw(const Sim &s, const Port &p) {
  if (!isGreen(s, p)) return 0;
  if (isUp(p)) return lowPowerIdle(s, p) ? kEeeSavingMw : 0;
  return energyDetectOn(s, p) ? std::max<int64_t>(0, p.drawUpMw - p.drawDownMw) : 0;
}

bool hasPowerEstimate(const Sim &s, uint32_t ifNum) {
  const Port *p = findPort(s, ifNum);
  return p && isGreen(s, *p);
}

// A reading of the port's draw in the state it is in now.
void setPortPower(Sim &s, Port &p, int64_t milliwatts, int64_t savedMwh, int64_t atMs) {
  settleCounters(s, p, atMs);
  int64_t eee = isUp(p) && isGreen(s, p) && !lowPowerIdle(s, p) ? kEeeSavingMw : 0;
  (isUp(p) ? p.drawUpMw : p.drawDownMw) = std::max<int64_t>(0, milliwatts - eee);
  if (savedMwh < 0) return;
  p.savedMwh = static_cast<uint64_t>(savedMwh);
  p.savedMwMs = 0;
}

// Every EEE port takes a sample each interval (none with an interval of
// 0, which only a scenario sets), with the link as it stands: nothing
// changes it between two moments the clock's queue hands in.
void takeLpiSamples(Sim &s, int64_t uptoMs) {
  Green &g = s.model.green;
  int64_t step = sampleStepMs(s);
  if (step <= 0 || g.nextSampleMs > uptoMs) return;
  uint64_t due = static_cast<uint64_t>((uptoMs - g.nextSampleMs) / step + 1);
  for (auto &[n, p] : s.model.ports)
    if (isGreen(s, p))
      addSamples(p.green, n, lowPowerIdle(s, p), kSwitchTimeAtLoad + g.nextSampleMs / 1000,
                 static_cast<uint32_t>(step / 1000), due, g.maxSamples);
  g.nextSampleMs += static_cast<int64_t>(due) * step;
}

const CallRule kGreenRules[] = {
    SIM_RULE(rpcclt_openapiGreenEthrValidIntfFirstGet, walkGreen<false>),
    SIM_RULE(rpcclt_openapiGreenEthrValidIntfNextGet, walkGreen<true>),
    SIM_RULE(rpcclt_openapiGreenEthrIsValidIntfType, isGreenIntf),
    SIM_RULE(rpcclt_openapiGreenEthrIsIntfEEECapable, isGreenIntf),
    SIM_GREEN_SETTING(rpcclt_openapiGreenEthrEnergyDetectAdminModeGet, rpcclt_openapiGreenEthrEnergyDetectModeSet,
                      green.energyDetect),
    SIM_GREEN_SETTING(rpcclt_openapiGreenEthrShrtRchAutoAdminModeGet, rpcclt_openapiGreenEthrShrtRchAutoModeSet,
                      green.shortReachAuto),
    SIM_GREEN_SETTING(rpcclt_openapiGreenEthrShrtRchForceAdminModeGet, rpcclt_openapiGreenEthrShrtRchForceModeSet,
                      green.shortReachForced),
    SIM_RULE(rpcclt_openapiGreenEthrEnergyDetectOprStatusGet, (answerStatus<energyDetectStatus, false>)),
    SIM_RULE(rpcclt_openapiGreenEthrShrtRchOprStatusGet, (answerStatus<shortReachStatus, false>)),
    SIM_RULE(rpcclt_openapiGreenEthrEnergyDetectOprStatusStrGet, (answerStatus<energyDetectStatus, true>)),
    SIM_RULE(rpcclt_openapiGreenEthrShrtRchOprStatusStrGet, (answerStatus<shortReachStatus, true>)),
    SIM_SWITCH_SETTING(rpcclt_openapiGreenEthrGlobalEnergyDetectModeGet,
                       rpcclt_openapiGreenEthrGlobalEnergyDetectModeSet, green.energyDetect),
    SIM_SWITCH_SETTING(rpcclt_openapiGreenEthrGlobalShortReachModeGet, rpcclt_openapiGreenEthrGlobalShortReachModeSet,
                       green.shortReach),

    SIM_RULE(rpcclt_openapiGreenEthrEeeIsValidIntf, isGreenIntf),
    SIM_RULE(rpcclt_openapiGreenEthrEeeValidIntfFirstGet, walkGreen<false>),
    SIM_RULE(rpcclt_openapiGreenEthrEeeValidIntfNextGet, walkGreen<true>),
    SIM_GREEN_SETTING(rpcclt_openapiGreenEthrEeeAdminModeGet, rpcclt_openapiGreenEthrEeeAdminModeSet, green.eeeAdmin),
    SIM_GREEN_SETTING(rpcclt_openapiGreenEthrEeeTxIdleTimeGet, rpcclt_openapiGreenEthrEeeTxIdleTimeSet,
                      green.txIdleTime),
    SIM_GREEN_SETTING(rpcclt_openapiGreenEthrEeeTxWakeTimeGet, rpcclt_openapiGreenEthrEeeTxWakeTimeSet,
                      green.txWakeTime),
    SIM_SWITCH_SETTING(rpcclt_openapiGreenEthrGlobalEeeAdminModeGet, rpcclt_openapiGreenEthrGlobalEeeAdminModeSet,
                       green.eee),
    SIM_RULE(rpcclt_openapiGreenEthrEeeStatisticsClear, onGreen<eeeStatisticsClear>),
    SIM_RULE(rpcclt_openapiGreenEthrEeeTxEventsGet, onGreen<derived<eeeEvents<&GreenPort::txEvents>>>),
    SIM_RULE(rpcclt_openapiGreenEthrEeeTxDurationGet, (onGreen<eeeDuration<&GreenPort::txDuration, kTxSleepUsPerMs>>)),
    SIM_RULE(rpcclt_openapiGreenEthrEeeRxEventsGet, onGreen<derived<eeeEvents<&GreenPort::rxEvents>>>),
    SIM_RULE(rpcclt_openapiGreenEthrEeeRxDurationGet, (onGreen<eeeDuration<&GreenPort::rxDuration, kRxSleepUsPerMs>>)),
    SIM_RULE(rpcclt_openapiGreenEthrEeeTimeSinceLastStatsResetGet, onGreen<derived<secondsSinceReset>>),
    SIM_RULE(rpcclt_openapixGreenEthrEeeTimeSinceLastStatsResetGet, onGreen<timeSinceResetSplit>),
    SIM_RULE(rpcclt_openapiGreenEthrEeeTotalLpiTimeGet, totalLpiTime),
    SIM_RULE(rpcclt_openapiGreenEthrEeeTxDllEnableGet, onGreen<derived<dllState<false>>>),
    SIM_RULE(rpcclt_openapiGreenEthrEeeTxDllReadyGet, onGreen<derived<dllState<true>>>),
    SIM_RULE(rpcclt_openapiGreenEthrEeeRxDllEnableGet, onGreen<derived<dllState<false>>>),
    SIM_RULE(rpcclt_openapiGreenEthrEeeRxDllReadyGet, onGreen<derived<dllState<true>>>),
    SIM_RULE(rpcclt_openapiGreenEthrEeeTxTwsysGet, onGreen<derived<localTwsys>>),
    SIM_RULE(rpcclt_openapiGreenEthrEeeRxTwsysGet, onGreen<derived<localTwsys>>),
    SIM_RULE(rpcclt_openapiGreenEthrEeeFbTwsysGet, onGreen<derived<localTwsys>>),
    SIM_RULE(rpcclt_openapiGreenEthrEeeEchoTxTwsysGet, onGreen<derived<echoTwsys>>),
    SIM_RULE(rpcclt_openapiGreenEthrEeeEchoRxTwsysGet, onGreen<derived<echoTwsys>>),
    SIM_RULE(rpcclt_openapiGreenEthrEeeRemTxTwsysGet, onGreen<remoteValue<false>>),
    SIM_RULE(rpcclt_openapiGreenEthrEeeRemTxTwsysEchoGet, onGreen<remoteValue<true>>),
    SIM_RULE(rpcclt_openapiGreenEthrEeeRemRxTwsysGet, onGreen<remoteValue<false>>),
    SIM_RULE(rpcclt_openapiGreenEthrEeeRemRxTwsysEchoGet, onGreen<remoteValue<true>>),
    SIM_RULE(rpcclt_openapiGreenEthrEeeRemFbTwsysGet, onGreen<remoteValue<false>>),
    SIM_RULE(rpcclt_openapiGreenEthrEeeLocalSummaryGet, onGreen<localSummary>),
    SIM_RULE(rpcclt_openapiGreenEthrEeeRemoteSummaryGet, onGreen<remoteSummary>),
    SIM_RULE(rpcclt_openapiGreenEthrFeaturesSupportedGet, featuresSupported),

    SIM_RULE(rpcclt_openapiGreenPwrEstIntfCurPwrGet, onGreen<derived<currentPower>>),
    SIM_RULE(rpcclt_openapiGreenPwrEstGlobalCurPwrGet, globalCurrentPower),
    SIM_RULE(rpcclt_openapiGreenPwrEstIntfCumSavingGet, onGreen<derived<cumulativeSaving>>),
    SIM_RULE(rpcclt_openapiGreenPwrEstGlobalCumSavingGet, globalCumulativeSaving),
    SIM_RULE(rpcclt_openapiGreenEthrPwrEstGlobalPwrSavingGet, switchGet<SIM_SWITCH_FIELD(green.savingPercent)>),
    SIM_RULE(rpcclt_openapiGreenEthrIntfStatisticsClear, onGreen<intfStatisticsClear>),
    SIM_SETTING(rpcclt_openapiGreenEthrEeeLpiHistoryIntfSampleIntervalGet,
                switchGet<SIM_SWITCH_FIELD(green.sampleIntervalMin)>,
                rpcclt_openapiGreenEthrEeeLpiHistoryIntfSampleIntervalSet, sampleIntervalSet),
    SIM_SETTING(rpcclt_openapiGreenEthrEeeLpiHistoryIntfMaxSamplesGet, switchGet<SIM_SWITCH_FIELD(green.maxSamples)>,
                rpcclt_openapiGreenEthrEeeLpiHistoryIntfMaxSamplesSet, maxSamplesSet),
    SIM_RULE(rpcclt_openapix2GreenEthrPwrSavHistoryIntfFirstEntryGet, onGreen<historyFirst>),
    SIM_RULE(rpcclt_openapix2GreenEthrPwrSavHistoryIntfNextEntryGet, historyNext),
    SIM_RULE(rpcclt_openapix2GreenEthrPwrSavHistoryIntfNextSampleGet, onGreen<historyNextSample>),
    SIM_RULE(rpcclt_openapiGreenEthrPwrSavHistoryIntfStatisticsClear, onGreen<historyClear>),
};

static void seedGreen(Sim &s) {
  s.model.green = Green();
  for (auto &[n, p] : s.model.ports) {
    seedPower(p, isFibre(s, p));
    if (isGreen(s, p)) seedGreenPort(s, p);
  }
}

const RuleGroup kGreenGroup = {kGreenRules, std::size(kGreenRules), seedGreen};

}  // namespace sim
