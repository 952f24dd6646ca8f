// Green Ethernet on the copper ports: energy detect and short reach, EEE
// (802.3az) settings, counters and link-partner timing, power estimates
// and each port's sampled LPI history.
#include <string.h>

#include <algorithm>

#include "sim/sim.h"

namespace sim {

namespace {

constexpr uint32_t kStackUnit = 1;
constexpr uint32_t kRemoteIndex = 1;  // the one LLDP neighbour of each linked port

// 1000BASE-T wake times in microseconds, ours and a partner's.
constexpr uint32_t kLocalTwsys = 17;
constexpr uint32_t kPartnerTwsys = 30;

// History: five-minute samples from 1 March 2024 on. The uplink has kept
// weeks of them; the other ports were cleared a few hours ago.
constexpr uint32_t kHistoryEpoch = 1709251200;
constexpr uint32_t kHistoryStep = 300;
constexpr uint32_t kUplinkSamples = 5000;
constexpr uint32_t kRecentSamples = 36;
constexpr uint32_t kSampleIntervalMax = 36000;
constexpr uint32_t kMaxSamplesMax = 8192;

// Seconds since each port's counters were last cleared, at load: 3 days,
// 4 hours, 12 minutes and 5 seconds.
constexpr int64_t kStatsAgeAtLoad = 3 * 86400 + 4 * 3600 + 12 * 60 + 5;

std::string key(uint64_t n) { return std::to_string(n); }

cJSON *green(Sim &s) {
  cJSON *g = cJSON_GetObjectItemCaseSensitive(s.model.get(), "green");
  return g ? g : cJSON_AddObjectToObject(s.model.get(), "green");
}

cJSON *section(Sim &s, const char *name) {
  cJSON *g = green(s);
  cJSON *sec = cJSON_GetObjectItemCaseSensitive(g, name);
  return sec ? sec : cJSON_AddObjectToObject(g, name);
}

bool inList(Sim &s, const char *list, uint32_t ifNum) {
  const cJSON *p = nullptr;
  cJSON_ArrayForEach(p, cJSON_GetObjectItemCaseSensitive(green(s), list)) {
    if (cJSON_IsNumber(p) && static_cast<uint32_t>(p->valuedouble) == ifNum) return true;
  }
  return false;
}

bool isGreenPort(Sim &s, uint32_t ifNum) { return inList(s, "ports", ifNum); }
bool isEeePort(Sim &s, uint32_t ifNum) { return inList(s, "eeePorts", ifNum); }

// The list is kept ascending, so "next" is the first number above `after`.
int walkList(Sim &s, const char *list, uint32_t after, Call &c) {
  const cJSON *p = nullptr;
  cJSON_ArrayForEach(p, cJSON_GetObjectItemCaseSensitive(green(s), list)) {
    if (!cJSON_IsNumber(p) || static_cast<uint32_t>(p->valuedouble) <= after) continue;
    c.setOut(0, static_cast<uint32_t>(p->valuedouble));
    return 0;
  }
  return -29;
}

int greenFirst(Sim &s, Call &c) { return walkList(s, "ports", 0, c); }
int greenNext(Sim &s, Call &c) { return walkList(s, "ports", static_cast<uint32_t>(c.in(0)), c); }
int eeeFirst(Sim &s, Call &c) { return walkList(s, "eeePorts", 0, c); }
int eeeNext(Sim &s, Call &c) { return walkList(s, "eeePorts", static_cast<uint32_t>(c.in(0)), c); }

// Questions about an interface the switch does not have find nothing.
int answerMembership(Sim &s, Call &c, bool (*member)(Sim &, uint32_t)) {
  uint32_t ifNum = static_cast<uint32_t>(c.in(0));
  if (!findInterface(s, ifNum)) return -29;
  c.setOut(0, member(s, ifNum) ? 1 : 0);
  return 0;
}

int isGreenIntf(Sim &s, Call &c) { return answerMembership(s, c, isGreenPort); }
int isEeeIntf(Sim &s, Call &c) { return answerMembership(s, c, isEeePort); }

// Reasons, as the reply table numbers them.
enum Reason : uint32_t {
  kAdminDown = 0,
  kFiberPort = 1,
  kLinkUp = 2,
  kLinkDown = 3,
  kLongCable = 4,
  kShortCable = 5,
  kNoEnergy = 7,
  kForced = 8,
  kNotAttached = 10,
};

const char *reasonText(uint32_t reason) {
  switch (reason) {
    case kAdminDown: return "Admin Mode Disabled";
    case kFiberPort: return "Fiber Port";
    case kLinkUp: return "Link Up";
    case kLinkDown: return "Link Down";
    case kLongCable: return "Long Cable";
    case kShortCable: return "Short Cable";
    case kNoEnergy: return "No Energy Detected";
    case kForced: return "Forced";
    default: return "Not Attached";
  }
}

struct OprStatus {
  bool active;
  uint32_t reason;
};

// Energy detect powers a port down while no link partner is sensed.
OprStatus energyDetectStatus(Sim &s, uint32_t ifNum) {
  if (!isGreenPort(s, ifNum)) return {false, kFiberPort};
  bool admin = storedNum(s, "rpcclt_openapiGreenEthrEnergyDetectAdminModeGet", key(ifNum)) == 1 &&
               storedNum(s, "rpcclt_openapiGreenEthrGlobalEnergyDetectModeGet", "") == 1;
  if (!admin) return {false, kAdminDown};
  if (linkUp(s, ifNum)) return {false, kLinkUp};
  return {true, kNoEnergy};
}

// Short reach lowers transmit power on short cables; the patch cables of
// ports 1 and 2 measure short, the rest run to the floor.
OprStatus shortReachStatus(Sim &s, uint32_t ifNum) {
  if (!isGreenPort(s, ifNum)) return {false, kFiberPort};
  if (storedNum(s, "rpcclt_openapiGreenEthrShrtRchForceAdminModeGet", key(ifNum)) == 1) return {true, kForced};
  bool autoMode = storedNum(s, "rpcclt_openapiGreenEthrShrtRchAutoAdminModeGet", key(ifNum)) == 1 &&
                  storedNum(s, "rpcclt_openapiGreenEthrGlobalShortReachModeGet", "") == 1;
  if (!autoMode) return {false, kAdminDown};
  if (!linkUp(s, ifNum)) return {false, kLinkDown};
  return ifNum <= 2 ? OprStatus{true, kShortCable} : OprStatus{false, kLongCable};
}

int answerStatus(Sim &s, Call &c, OprStatus (*status)(Sim &, uint32_t), bool asText) {
  uint32_t ifNum = static_cast<uint32_t>(c.in(0));
  const Interface *i = findInterface(s, ifNum);
  if (!i) return -29;
  OprStatus st = i->type == OPEN_INTF_TYPE_PHY ? status(s, ifNum) : OprStatus{false, kNotAttached};
  c.setOut(0, st.active ? 1 : 0);
  if (asText) c.setOutText(1, reasonText(st.reason));
  else c.setOut(1, st.reason);
  return 0;
}

int energyDetectOpr(Sim &s, Call &c) { return answerStatus(s, c, energyDetectStatus, false); }
int energyDetectOprText(Sim &s, Call &c) { return answerStatus(s, c, energyDetectStatus, true); }
int shortReachOpr(Sim &s, Call &c) { return answerStatus(s, c, shortReachStatus, false); }
int shortReachOprText(Sim &s, Call &c) { return answerStatus(s, c, shortReachStatus, true); }

// Counters age from load; a clear makes the port's age zero now.
int64_t statsAge(Sim &s, uint32_t ifNum) {
  const cJSON *age = cJSON_GetObjectItemCaseSensitive(section(s, "statsAge"), key(ifNum).c_str());
  return clockNowSeconds(s.clock) + (cJSON_IsNumber(age) ? static_cast<int64_t>(age->valuedouble) : 0);
}

void restartStatsAge(Sim &s, uint32_t ifNum) {
  cJSON *ages = section(s, "statsAge");
  cJSON_DeleteItemFromObjectCaseSensitive(ages, key(ifNum).c_str());
  cJSON_AddNumberToObject(ages, key(ifNum).c_str(), static_cast<double>(-clockNowSeconds(s.clock)));
}

int timeSinceReset(Sim &s, Call &c) {
  uint32_t ifNum = static_cast<uint32_t>(c.in(0));
  if (!isEeePort(s, ifNum)) return -29;
  c.setOut(0, static_cast<uint64_t>(statsAge(s, ifNum)));
  return 0;
}

int timeSinceResetSplit(Sim &s, Call &c) {
  uint32_t ifNum = static_cast<uint32_t>(c.in(0));
  if (!isEeePort(s, ifNum)) return -29;
  uint64_t t = static_cast<uint64_t>(statsAge(s, ifNum));
  c.setOut(0, t / 86400);
  c.setOut(1, t % 86400 / 3600);
  c.setOut(2, t % 3600 / 60);
  c.setOut(3, t % 60);
  return 0;
}

const char *const kEeeCounters[] = {
    "rpcclt_openapiGreenEthrEeeTxEventsGet",
    "rpcclt_openapiGreenEthrEeeRxEventsGet",
    "rpcclt_openapiGreenEthrEeeTxDurationGet",
    "rpcclt_openapiGreenEthrEeeRxDurationGet",
};

int eeeStatisticsClear(Sim &s, Call &c) {
  uint32_t ifNum = static_cast<uint32_t>(c.in(0));
  if (!isEeePort(s, ifNum)) return -29;
  for (const char *counter : kEeeCounters) {
    const Outputs *old = s.stored(counter, key(ifNum));
    s.put(counter, key(ifNum), Outputs(old ? old->size() : 1, num(0)));
  }
  restartStatsAge(s, ifNum);
  return 0;
}

// A partner's value for one LLDP record; seeded for any time mark.
int remoteValue(Sim &s, Call &c) {
  const Outputs *v = s.stored(c.name, key(c.in(0)) + "," + key(c.in(1)) + ",*");
  if (!v || v->empty()) return -29;
  c.setOut(0, static_cast<uint64_t>((*v)[0].num));
  return 0;
}

int intfStatisticsClear(Sim &s, Call &c) {
  uint32_t ifNum = static_cast<uint32_t>(c.in(0));
  if (!isGreenPort(s, ifNum)) return -29;
  s.put("rpcclt_openapiGreenPwrEstIntfCumSavingGet", key(ifNum), {num(0)});
  return 0;
}

int setBounded(Sim &s, Call &c, const char *getter, uint32_t most) {
  uint64_t v = c.in(0);
  if (v < 1 || v > most) return -22;
  s.put(getter, "", {num(static_cast<int64_t>(v))});
  return 0;
}

int sampleIntervalSet(Sim &s, Call &c) {
  return setBounded(s, c, "rpcclt_openapiGreenEthrEeeLpiHistoryIntfSampleIntervalGet", kSampleIntervalMax);
}
int maxSamplesSet(Sim &s, Call &c) {
  return setBounded(s, c, "rpcclt_openapiGreenEthrEeeLpiHistoryIntfMaxSamplesGet", kMaxSamplesMax);
}

// --- LPI history -----------------------------------------------------------
// Samples are generated from the port and position, so a long history
// costs nothing to keep; the model holds how many each port had at load,
// and one more is taken every sample interval of simulated time.

int64_t samplesTaken(Sim &s) {
  int64_t minutes = storedNum(s, "rpcclt_openapiGreenEthrEeeLpiHistoryIntfSampleIntervalGet", "", kHistoryStep / 60);
  return clockNowSeconds(s.clock) / (std::max<int64_t>(1, minutes) * 60);
}

uint32_t historyCount(Sim &s, uint32_t ifNum) {
  const cJSON *n = cJSON_GetObjectItemCaseSensitive(section(s, "history"), key(ifNum).c_str());
  if (!cJSON_IsNumber(n)) return 0;
  int64_t most = storedNum(s, "rpcclt_openapiGreenEthrEeeLpiHistoryIntfMaxSamplesGet", "", kMaxSamplesMax);
  return static_cast<uint32_t>(std::clamp<int64_t>(static_cast<int64_t>(n->valuedouble) + samplesTaken(s), 0, most));
}

// Idle links sleep most of the night and less in office hours.
uint16_t lpiPercent(bool up, uint32_t ifNum, uint32_t index) {
  if (!up) return 0;
  uint32_t hourOfDay = index * kHistoryStep / 3600 % 24;
  uint32_t base = hourOfDay >= 8 && hourOfDay < 18 ? 35 : 80;
  return static_cast<uint16_t>(base + (index * 7 + ifNum * 13) % 15);
}

open_pwr_sav_sample_t sampleAt(Sim &s, uint32_t ifNum, uint32_t index) {
  open_pwr_sav_sample_t r = {};
  bool up = linkUp(s, ifNum);
  uint64_t sum = 0;
  for (uint32_t i = 0; i <= index; ++i) sum += lpiPercent(up, ifNum, i);
  r.sampleNo = static_cast<uint16_t>(index + 1);
  r.sampleTime = kHistoryEpoch + index * kHistoryStep;
  r.percentLpiTime = lpiPercent(up, ifNum, index);
  r.percentLpiTimeTotal = static_cast<uint16_t>(sum / (index + 1));
  // The cursor names the port and the position of the following sample.
  r.next = index + 1 < historyCount(s, ifNum) ? (static_cast<uint64_t>(ifNum) << 32) | (index + 1) : 0;
  return r;
}

Arg *recordArg(Call &c) {
  for (Arg *a : c.outputs())
    if (a->kind == wire::kInOutBlob && a->text.size() == sizeof(open_pwr_sav_sample_t)) return a;
  return nullptr;
}

int answerSample(Call &c, const open_pwr_sav_sample_t &r) {
  Arg *a = recordArg(c);
  if (!a) return -22;
  a->text.assign(reinterpret_cast<const char *>(&r), sizeof r);
  a->written = true;
  return 0;
}

int historyFirst(Sim &s, Call &c) {
  uint32_t ifNum = static_cast<uint32_t>(c.in(0));
  if (!isEeePort(s, ifNum) || historyCount(s, ifNum) == 0) return -29;
  return answerSample(c, sampleAt(s, ifNum, 0));
}

int historyNext(Sim &s, Call &c) {
  Arg *a = recordArg(c);
  if (!a) return -22;
  open_pwr_sav_sample_t r = {};
  memcpy(&r, a->text.data(), sizeof r);
  uint32_t ifNum = static_cast<uint32_t>(r.next >> 32), index = static_cast<uint32_t>(r.next);
  if (r.next == 0 || !isEeePort(s, ifNum) || index >= historyCount(s, ifNum)) return -29;
  return answerSample(c, sampleAt(s, ifNum, index));
}

// The sample after the one numbered `curSample`; 0 asks for the first.
int historyNextSample(Sim &s, Call &c) {
  uint32_t ifNum = static_cast<uint32_t>(c.in(0));
  uint16_t cur = static_cast<uint16_t>(c.in(1));
  uint32_t count = historyCount(s, ifNum);
  if (!isEeePort(s, ifNum) || count == 0) return -29;
  if (cur == 0) return answerSample(c, sampleAt(s, ifNum, 0));
  for (uint32_t i = 0; i + 1 < count; ++i)
    if (static_cast<uint16_t>(i + 1) == cur) return answerSample(c, sampleAt(s, ifNum, i + 1));
  return -29;
}

int historyClear(Sim &s, Call &c) {
  uint32_t ifNum = static_cast<uint32_t>(c.in(0));
  if (!isEeePort(s, ifNum)) return -29;
  cJSON *h = section(s, "history");
  cJSON_DeleteItemFromObjectCaseSensitive(h, key(ifNum).c_str());
  // Counted from now: the samples taken so far are gone.
  cJSON_AddNumberToObject(h, key(ifNum).c_str(), static_cast<double>(-samplesTaken(s)));
  return 0;
}

// --- default scenario ------------------------------------------------------

void seedLists(Sim &s) {
  cJSON *ports = cJSON_AddArrayToObject(green(s), "ports");
  cJSON *eee = cJSON_AddArrayToObject(green(s), "eeePorts");
  cJSON *history = section(s, "history");
  cJSON *ages = section(s, "statsAge");
  for (uint32_t p = 1; p <= layoutOf(s).copperPorts; ++p) {
    cJSON_AddItemToArray(ports, cJSON_CreateNumber(p));
    cJSON_AddItemToArray(eee, cJSON_CreateNumber(p));
    cJSON_AddNumberToObject(history, key(p).c_str(), p == 1 ? kUplinkSamples : kRecentSamples);
    cJSON_AddNumberToObject(ages, key(p).c_str(), static_cast<double>(kStatsAgeAtLoad));
  }
}

// Desk ports 13-24 power down while nobody is plugged in.
void seedGreenModes(Sim &s, uint32_t p) {
  s.put("rpcclt_openapiGreenEthrEnergyDetectAdminModeGet", key(p), {num(p >= 13 ? 1 : 0)});
  s.put("rpcclt_openapiGreenEthrShrtRchAutoAdminModeGet", key(p), {num(0)});
  s.put("rpcclt_openapiGreenEthrShrtRchForceAdminModeGet", key(p), {num(0)});
}

void seedEeePort(Sim &s, uint32_t p) {
  std::string k = key(p);
  bool up = linkUp(s, p);
  bool dll = up && p != 8;  // the partner on port 8 does not speak EEE over LLDP
  s.put("rpcclt_openapiGreenEthrEeeAdminModeGet", k, {num(1)});
  s.put("rpcclt_openapiGreenEthrEeeTxIdleTimeGet", k, {num(100)});
  s.put("rpcclt_openapiGreenEthrEeeTxWakeTimeGet", k, {num(kLocalTwsys)});
  s.put("rpcclt_openapiGreenEthrEeeTxEventsGet", k, {num(up ? 184000 + p * 1711 : 0)});
  s.put("rpcclt_openapiGreenEthrEeeRxEventsGet", k, {num(up ? 176500 + p * 1493 : 0)});
  s.put("rpcclt_openapiGreenEthrEeeTxDurationGet", k, {num(up ? 1 : 0), num(up ? 5 + p * 200000000 : 0)});
  s.put("rpcclt_openapiGreenEthrEeeRxDurationGet", k, {num(up ? 1 : 0), num(up ? 9 + p * 180000000 : 0)});
  for (const char *c : {"rpcclt_openapiGreenEthrEeeTxDllEnableGet", "rpcclt_openapiGreenEthrEeeRxDllEnableGet"})
    s.put(c, k, {num(up ? 1 : 0)});
  for (const char *c : {"rpcclt_openapiGreenEthrEeeTxDllReadyGet", "rpcclt_openapiGreenEthrEeeRxDllReadyGet"})
    s.put(c, k, {num(dll ? 1 : 0)});
  for (const char *c : {"rpcclt_openapiGreenEthrEeeTxTwsysGet", "rpcclt_openapiGreenEthrEeeRxTwsysGet",
                        "rpcclt_openapiGreenEthrEeeFbTwsysGet", "rpcclt_openapiGreenEthrEeeEchoTxTwsysGet",
                        "rpcclt_openapiGreenEthrEeeEchoRxTwsysGet"})
    s.put(c, k, {num(kLocalTwsys)});
  int64_t echo = dll ? kPartnerTwsys : 0;
  s.put("rpcclt_openapiGreenEthrEeeLocalSummaryGet", k,
        {num(kLocalTwsys), num(echo), num(kLocalTwsys), num(echo), num(kLocalTwsys), num(up ? 1 : 0), num(dll ? 1 : 0),
         num(up ? 1 : 0), num(dll ? 1 : 0)});
  if (!dll) return;
  s.put("rpcclt_openapiGreenEthrEeeRemoteSummaryGet", k,
        {num(kPartnerTwsys), num(kLocalTwsys), num(kPartnerTwsys), num(kLocalTwsys), num(kPartnerTwsys)});
  std::string remote = k + "," + key(kRemoteIndex) + ",*";
  s.put("rpcclt_openapiGreenEthrEeeRemTxTwsysGet", remote, {num(kPartnerTwsys)});
  s.put("rpcclt_openapiGreenEthrEeeRemTxTwsysEchoGet", remote, {num(kLocalTwsys)});
  s.put("rpcclt_openapiGreenEthrEeeRemRxTwsysGet", remote, {num(kPartnerTwsys)});
  s.put("rpcclt_openapiGreenEthrEeeRemRxTwsysEchoGet", remote, {num(kLocalTwsys)});
  s.put("rpcclt_openapiGreenEthrEeeRemFbTwsysGet", remote, {num(kPartnerTwsys)});
}

// Milliwatts now and milliwatt-hours saved since the last clear.
void seedPower(Sim &s) {
  int64_t total = 0, saved = 0;
  SwitchLayout layout = layoutOf(s);
  for (uint32_t p = 1; p <= layout.ports(); ++p) {
    bool up = linkUp(s, p);
    int64_t mw = layout.isFibre(p) ? (up ? 1150 : 300) : (up ? 560 : 95);
    total += mw;
    if (layout.isFibre(p)) continue;
    int64_t cum = up ? 4200 + p * 37 : 9800 + p * 53;
    saved += cum;
    s.put("rpcclt_openapiGreenPwrEstIntfCurPwrGet", key(p), {num(mw)});
    s.put("rpcclt_openapiGreenPwrEstIntfCumSavingGet", key(p), {num(cum)});
  }
  s.put("rpcclt_openapiGreenPwrEstGlobalCurPwrGet", "", {num(total)});
  s.put("rpcclt_openapiGreenPwrEstGlobalCumSavingGet", "", {num(saved)});
  s.put("rpcclt_openapiGreenEthrPwrEstGlobalPwrSavingGet", "", {num(38)});
}

}  // namespace

bool hasPowerEstimate(const Sim &s, uint32_t ifNum) {
  return s.stored("rpcclt_openapiGreenPwrEstIntfCurPwrGet", key(ifNum)) != nullptr;
}

// The switch-wide figures are the ports' sums, so they move with a port.
void setPortPower(Sim &s, uint32_t ifNum, int64_t milliwatts, int64_t savedMwh) {
  auto move = [&s, ifNum](const char *port, const char *global, int64_t value) {
    int64_t old = storedNum(s, port, key(ifNum));
    s.put(port, key(ifNum), {num(value)});
    s.put(global, "", {num(storedNum(s, global, "") + value - old)});
  };
  move("rpcclt_openapiGreenPwrEstIntfCurPwrGet", "rpcclt_openapiGreenPwrEstGlobalCurPwrGet", milliwatts);
  if (savedMwh >= 0)
    move("rpcclt_openapiGreenPwrEstIntfCumSavingGet", "rpcclt_openapiGreenPwrEstGlobalCumSavingGet", savedMwh);
}

const CallRule kGreenRules[] = {
    SIM_CUSTOM(rpcclt_openapiGreenEthrValidIntfFirstGet, greenFirst),
    SIM_CUSTOM(rpcclt_openapiGreenEthrValidIntfNextGet, greenNext),
    SIM_CUSTOM(rpcclt_openapiGreenEthrIsValidIntfType, isGreenIntf),
    SIM_CUSTOM(rpcclt_openapiGreenEthrIsIntfEEECapable, isEeeIntf),
    SIM_SET(rpcclt_openapiGreenEthrEnergyDetectModeSet, rpcclt_openapiGreenEthrEnergyDetectAdminModeGet, 1),
    SIM_SET(rpcclt_openapiGreenEthrShrtRchAutoModeSet, rpcclt_openapiGreenEthrShrtRchAutoAdminModeGet, 1),
    SIM_SET(rpcclt_openapiGreenEthrShrtRchForceModeSet, rpcclt_openapiGreenEthrShrtRchForceAdminModeGet, 1),
    SIM_GET(rpcclt_openapiGreenEthrEnergyDetectAdminModeGet),
    SIM_GET(rpcclt_openapiGreenEthrShrtRchAutoAdminModeGet),
    SIM_GET(rpcclt_openapiGreenEthrShrtRchForceAdminModeGet),
    SIM_CUSTOM(rpcclt_openapiGreenEthrEnergyDetectOprStatusGet, energyDetectOpr),
    SIM_CUSTOM(rpcclt_openapiGreenEthrShrtRchOprStatusGet, shortReachOpr),
    SIM_CUSTOM(rpcclt_openapiGreenEthrEnergyDetectOprStatusStrGet, energyDetectOprText),
    SIM_CUSTOM(rpcclt_openapiGreenEthrShrtRchOprStatusStrGet, shortReachOprText),
    SIM_GET(rpcclt_openapiGreenEthrGlobalEnergyDetectModeGet),
    SIM_SET(rpcclt_openapiGreenEthrGlobalEnergyDetectModeSet, rpcclt_openapiGreenEthrGlobalEnergyDetectModeGet, 0),
    SIM_GET(rpcclt_openapiGreenEthrGlobalShortReachModeGet),
    SIM_SET(rpcclt_openapiGreenEthrGlobalShortReachModeSet, rpcclt_openapiGreenEthrGlobalShortReachModeGet, 0),

    SIM_CUSTOM(rpcclt_openapiGreenEthrEeeIsValidIntf, isEeeIntf),
    SIM_CUSTOM(rpcclt_openapiGreenEthrEeeValidIntfFirstGet, eeeFirst),
    SIM_CUSTOM(rpcclt_openapiGreenEthrEeeValidIntfNextGet, eeeNext),
    SIM_GET(rpcclt_openapiGreenEthrEeeAdminModeGet),
    SIM_SET(rpcclt_openapiGreenEthrEeeAdminModeSet, rpcclt_openapiGreenEthrEeeAdminModeGet, 1),
    SIM_GET(rpcclt_openapiGreenEthrEeeTxIdleTimeGet),
    SIM_SET(rpcclt_openapiGreenEthrEeeTxIdleTimeSet, rpcclt_openapiGreenEthrEeeTxIdleTimeGet, 1),
    SIM_GET(rpcclt_openapiGreenEthrEeeTxWakeTimeGet),
    SIM_SET(rpcclt_openapiGreenEthrEeeTxWakeTimeSet, rpcclt_openapiGreenEthrEeeTxWakeTimeGet, 1),
    SIM_GET(rpcclt_openapiGreenEthrGlobalEeeAdminModeGet),
    SIM_SET(rpcclt_openapiGreenEthrGlobalEeeAdminModeSet, rpcclt_openapiGreenEthrGlobalEeeAdminModeGet, 0),
    SIM_CUSTOM(rpcclt_openapiGreenEthrEeeStatisticsClear, eeeStatisticsClear),
    SIM_GET(rpcclt_openapiGreenEthrEeeTxEventsGet),
    SIM_GET(rpcclt_openapiGreenEthrEeeTxDurationGet),
    SIM_GET(rpcclt_openapiGreenEthrEeeRxEventsGet),
    SIM_GET(rpcclt_openapiGreenEthrEeeRxDurationGet),
    SIM_CUSTOM(rpcclt_openapiGreenEthrEeeTimeSinceLastStatsResetGet, timeSinceReset),
    SIM_CUSTOM(rpcclt_openapixGreenEthrEeeTimeSinceLastStatsResetGet, timeSinceResetSplit),
    SIM_GET(rpcclt_openapiGreenEthrEeeTotalLpiTimeGet),
    SIM_GET(rpcclt_openapiGreenEthrEeeTxDllEnableGet),
    SIM_GET(rpcclt_openapiGreenEthrEeeTxDllReadyGet),
    SIM_GET(rpcclt_openapiGreenEthrEeeRxDllEnableGet),
    SIM_GET(rpcclt_openapiGreenEthrEeeRxDllReadyGet),
    SIM_GET(rpcclt_openapiGreenEthrEeeTxTwsysGet),
    SIM_GET(rpcclt_openapiGreenEthrEeeRxTwsysGet),
    SIM_GET(rpcclt_openapiGreenEthrEeeFbTwsysGet),
    SIM_GET(rpcclt_openapiGreenEthrEeeEchoTxTwsysGet),
    SIM_GET(rpcclt_openapiGreenEthrEeeEchoRxTwsysGet),
    SIM_CUSTOM(rpcclt_openapiGreenEthrEeeRemTxTwsysGet, remoteValue),
    SIM_CUSTOM(rpcclt_openapiGreenEthrEeeRemTxTwsysEchoGet, remoteValue),
    SIM_CUSTOM(rpcclt_openapiGreenEthrEeeRemRxTwsysGet, remoteValue),
    SIM_CUSTOM(rpcclt_openapiGreenEthrEeeRemRxTwsysEchoGet, remoteValue),
    SIM_CUSTOM(rpcclt_openapiGreenEthrEeeRemFbTwsysGet, remoteValue),
    SIM_GET(rpcclt_openapiGreenEthrEeeLocalSummaryGet),
    SIM_GET(rpcclt_openapiGreenEthrEeeRemoteSummaryGet),
    SIM_GET(rpcclt_openapiGreenEthrFeaturesSupportedGet),

    SIM_GET(rpcclt_openapiGreenPwrEstIntfCurPwrGet),
    SIM_GET(rpcclt_openapiGreenPwrEstGlobalCurPwrGet),
    SIM_GET(rpcclt_openapiGreenPwrEstIntfCumSavingGet),
    SIM_GET(rpcclt_openapiGreenPwrEstGlobalCumSavingGet),
    SIM_GET(rpcclt_openapiGreenEthrPwrEstGlobalPwrSavingGet),
    SIM_CUSTOM(rpcclt_openapiGreenEthrIntfStatisticsClear, intfStatisticsClear),
    SIM_CUSTOM(rpcclt_openapiGreenEthrEeeLpiHistoryIntfSampleIntervalSet, sampleIntervalSet),
    SIM_GET(rpcclt_openapiGreenEthrEeeLpiHistoryIntfSampleIntervalGet),
    SIM_CUSTOM(rpcclt_openapiGreenEthrEeeLpiHistoryIntfMaxSamplesSet, maxSamplesSet),
    SIM_GET(rpcclt_openapiGreenEthrEeeLpiHistoryIntfMaxSamplesGet),
    SIM_CUSTOM(rpcclt_openapix2GreenEthrPwrSavHistoryIntfFirstEntryGet, historyFirst),
    SIM_CUSTOM(rpcclt_openapix2GreenEthrPwrSavHistoryIntfNextEntryGet, historyNext),
    SIM_CUSTOM(rpcclt_openapix2GreenEthrPwrSavHistoryIntfNextSampleGet, historyNextSample),
    SIM_CUSTOM(rpcclt_openapiGreenEthrPwrSavHistoryIntfStatisticsClear, historyClear),
};
const size_t kGreenRuleCount = sizeof kGreenRules / sizeof kGreenRules[0];

void seedGreen(Sim &s) {
  seedLists(s);
  for (uint32_t p = 1; p <= layoutOf(s).copperPorts; ++p) {
    seedGreenModes(s, p);
    seedEeePort(s, p);
  }
  s.put("rpcclt_openapiGreenEthrGlobalEnergyDetectModeGet", "", {num(1)});
  s.put("rpcclt_openapiGreenEthrGlobalShortReachModeGet", "", {num(0)});
  s.put("rpcclt_openapiGreenEthrGlobalEeeAdminModeGet", "", {num(1)});
  s.put("rpcclt_openapiGreenEthrEeeTotalLpiTimeGet", "", {num(5843211)});
  s.put("rpcclt_openapiGreenEthrFeaturesSupportedGet", key(kStackUnit),
        {text("Energy-Detect Short-Reach EEE EEE-LPI-History Power-Estimates")});
  s.put("rpcclt_openapiGreenEthrEeeLpiHistoryIntfSampleIntervalGet", "", {num(kHistoryStep / 60)});
  s.put("rpcclt_openapiGreenEthrEeeLpiHistoryIntfMaxSamplesGet", "", {num(kMaxSamplesMax)});
  seedPower(s);
}

}  // namespace sim
