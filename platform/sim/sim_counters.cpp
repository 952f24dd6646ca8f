// Traffic counters that grow on the ports carrying traffic and clear on a
// reset; port numbering (unit/slot/port), routing VLAN interfaces and the
// copper cable test.
#include <algorithm>

#include "sim/sim.h"

namespace sim {

namespace {

// The switch copies hardware statistics every two seconds, so a read
// shortly after a clear still shows zeros.
constexpr int64_t kSnapshotMs = 2000;
// The counters were last cleared this long before the scenario starts.
constexpr int64_t kClearedBeforeLoadMs = (2 * 3600 + 17 * 60) * 1000LL;
constexpr uint64_t kCounterWrap = 1ULL << 32;

// Traffic of one port: bytes per second each way, average frame sizes,
// and how many received frames in a million arrive damaged.
struct TrafficProfile {
  uint32_t ifNum;
  uint64_t inBytesPerSec, outBytesPerSec;
  uint64_t inAvgFrame, outAvgFrame;
  uint64_t inErrorsPerMillion;
  int64_t frozenMs;  // traffic seen before the link went down; 0 for none
};

const TrafficProfile kProfiles[] = {
    {1, 120000, 85000, 820, 610, 1, 0},       // uplink to the core
    {2, 42000, 96000, 540, 900, 2, 0},        // office access point
    {3, 6500, 9800, 310, 420, 0, 0},          // desktop
    {5, 2300, 3100, 180, 240, 0, 0},          // printer
    {7, 9000, 4000, 300, 200, 900, 380000},   // shut down by a protection feature
    {8, 15000, 11000, 650, 500, 60, 0},       // long cable run, some damaged frames
    {25, 350000, 310000, 1400, 1350, 0, 0},   // storage array
};

enum class Counter {
  InOctets,
  InUcast,
  InDiscards,
  InErrors,
  InUnknownProtos,
  OutOctets,
  OutUcast,
  OutDiscards,
  OutErrors,
};

// What a port without a profile carries once a timeline brings it up.
const TrafficProfile kQuietProfile = {0, 3000, 2500, 400, 400, 0, 0};

const TrafficProfile *profileOf(uint32_t ifNum) {
  for (const TrafficProfile &p : kProfiles)
    if (p.ifNum == ifNum) return &p;
  return nullptr;
}

// A port whose link a timeline changed keeps what it had counted then
// ("heldMs") and counts on from "sinceMs" only while its link is up.
// Absent until a first change, so that reading leaves the model as it was.
cJSON *heldTraffic(Sim &s, bool create = false) {
  cJSON *h = cJSON_GetObjectItemCaseSensitive(s.model.get(), "heldTraffic");
  return h || !create ? h : cJSON_AddObjectToObject(s.model.get(), "heldTraffic");
}

const cJSON *heldOf(Sim &s, uint32_t ifNum) {
  return cJSON_GetObjectItemCaseSensitive(heldTraffic(s), std::to_string(ifNum).c_str());
}

void setHeld(Sim &s, uint32_t ifNum, int64_t heldMs, int64_t sinceMs) {
  cJSON *h = heldTraffic(s, true);
  std::string key = std::to_string(ifNum);
  cJSON_DeleteItemFromObjectCaseSensitive(h, key.c_str());
  cJSON *o = cJSON_AddObjectToObject(h, key.c_str());
  cJSON_AddNumberToObject(o, "heldMs", static_cast<double>(heldMs));
  cJSON_AddNumberToObject(o, "sinceMs", static_cast<double>(sinceMs));
}

const TrafficProfile *trafficOf(Sim &s, uint32_t ifNum) {
  const TrafficProfile *p = profileOf(ifNum);
  p = p ? p : heldOf(s, ifNum) ? &kQuietProfile : nullptr;
  auto changed = s.trafficChanges.find(ifNum);
  if (!p || changed == s.trafficChanges.end()) return p;
  thread_local TrafficProfile custom;
  custom = *p;
  if (changed->second.inOctetsPerSec >= 0) custom.inBytesPerSec = static_cast<uint64_t>(changed->second.inOctetsPerSec);
  if (changed->second.outOctetsPerSec >= 0) custom.outBytesPerSec = static_cast<uint64_t>(changed->second.outOctetsPerSec);
  return &custom;
}

int64_t msSinceLoad(const Sim &s) { return clockNowMs(s.clock); }

cJSON *resetTimes(Sim &s) {
  cJSON *r = cJSON_GetObjectItemCaseSensitive(s.model.get(), "counterResets");
  return r ? r : cJSON_AddObjectToObject(s.model.get(), "counterResets");
}

void markReset(Sim &s, uint32_t ifNum, int64_t atMs) {
  cJSON *r = resetTimes(s);
  std::string key = std::to_string(ifNum);
  cJSON_DeleteItemFromObjectCaseSensitive(heldTraffic(s), key.c_str());
  cJSON_DeleteItemFromObjectCaseSensitive(r, key.c_str());
  cJSON_AddNumberToObject(r, key.c_str(), static_cast<double>(atMs));
}

// Milliseconds of traffic the counters hold at `nowMs`, in whole snapshots.
int64_t countedMs(Sim &s, uint32_t ifNum, const TrafficProfile &p, int64_t nowMs) {
  if (const cJSON *held = heldOf(s, ifNum)) {
    int64_t ms = static_cast<int64_t>(cJSON_GetObjectItemCaseSensitive(held, "heldMs")->valuedouble);
    int64_t since = static_cast<int64_t>(cJSON_GetObjectItemCaseSensitive(held, "sinceMs")->valuedouble);
    if (linkUp(s, ifNum) && nowMs > since) ms += (nowMs - since) / kSnapshotMs * kSnapshotMs;
    return ms;
  }
  const cJSON *reset = cJSON_GetObjectItemCaseSensitive(resetTimes(s), std::to_string(p.ifNum).c_str());
  bool cleared = cJSON_IsNumber(reset);
  if (!linkUp(s, p.ifNum)) return cleared ? 0 : p.frozenMs;
  int64_t since = cleared ? static_cast<int64_t>(reset->valuedouble) : 0;
  int64_t running = nowMs - since;
  if (running < 0) running = 0;
  return (cleared ? 0 : kClearedBeforeLoadMs) + running / kSnapshotMs * kSnapshotMs;
}

uint64_t counterValue(const TrafficProfile &p, Counter which, int64_t ms) {
  uint64_t inOctets = p.inBytesPerSec * static_cast<uint64_t>(ms) / 1000;
  uint64_t outOctets = p.outBytesPerSec * static_cast<uint64_t>(ms) / 1000;
  // About 3% of the frames are broadcast or multicast.
  uint64_t inUcast = inOctets / p.inAvgFrame * 97 / 100;
  uint64_t outUcast = outOctets / p.outAvgFrame * 97 / 100;
  switch (which) {
    case Counter::InOctets: return inOctets;
    case Counter::InUcast: return inUcast;
    case Counter::InDiscards: return inUcast / 250000;
    case Counter::InErrors: return inUcast * p.inErrorsPerMillion / 1000000;
    case Counter::InUnknownProtos: return inUcast / 40000;
    case Counter::OutOctets: return outOctets;
    case Counter::OutUcast: return outUcast;
    case Counter::OutDiscards: return outUcast / 120000;
    case Counter::OutErrors: return outUcast * p.inErrorsPerMillion / 20000000;
  }
  return 0;
}

template <Counter Which>
int counterCall(Sim &s, Call &c) {
  uint32_t ifNum = static_cast<uint32_t>(c.in(0));
  if (!findInterface(s, ifNum)) return -29;
  const TrafficProfile *p = trafficOf(s, ifNum);
  // The hardware counters are 32 bits wide and wrap.
  uint64_t v = p ? counterValue(*p, Which, countedMs(s, ifNum, *p, msSinceLoad(s))) : 0;
  auto changed = s.trafficChanges.find(ifNum);
  if (Which == Counter::InErrors && changed != s.trafficChanges.end()) v += static_cast<uint64_t>(changed->second.inErrors);
  c.setOut(0, v % kCounterWrap);
  return 0;
}

int resetOneCall(Sim &s, Call &c) {
  uint32_t ifNum = static_cast<uint32_t>(c.in(0));
  if (!findInterface(s, ifNum)) return -29;
  markReset(s, ifNum, msSinceLoad(s));
  return 0;
}

int resetAllCall(Sim &s, Call &) {
  int64_t now = msSinceLoad(s);
  for (const Interface &i : s.interfaces) markReset(s, i.ifNum, now);
  return 0;
}

struct CableResult {
  uint32_t ifNum;
  uint32_t status;  // 2 normal, 3 open, 7 no cable
  uint32_t lengthKnown, shortest, longest, failureAt;
};

// Copper ports not listed here have no cable plugged in.
const CableResult kCables[] = {
    {1, 2, 1, 30, 35, 0}, {2, 2, 1, 50, 55, 0}, {3, 2, 1, 5, 10, 0},  {4, 3, 0, 0, 0, 23},
    {5, 2, 1, 15, 20, 0}, {7, 2, 1, 10, 15, 0}, {8, 2, 1, 80, 85, 0}, {12, 3, 0, 0, 0, 48},
};
constexpr uint32_t kNoCable = 7;

void seedCableTest(Sim &s, uint32_t port) {
  CableResult r = {port, layoutOf(s).isFibre(port) ? 0 : kNoCable, 0, 0, 0, 0};
  for (const CableResult &known : kCables)
    if (known.ifNum == port) r = known;
  s.put("rpcclt_openapiCableStatusGet", std::to_string(port),
        {num(r.status), num(r.lengthKnown), num(r.shortest), num(r.longest), num(r.failureAt)});
}

}  // namespace

void holdCountedTraffic(Sim &s, uint32_t ifNum, int64_t atMs) {
  const TrafficProfile *p = profileOf(ifNum);
  setHeld(s, ifNum, p ? countedMs(s, ifNum, *p, atMs) : 0, atMs);
}

void resetPortCounters(Sim &s, uint32_t ifNum, int64_t atMs) { markReset(s, ifNum, atMs); }

// The received-octets counter, the fastest, wraps `secondsLeft` seconds
// after `atMs` while the link stays up.
void bringCountersNearWrap(Sim &s, uint32_t ifNum, int64_t secondsLeft, int64_t atMs) {
  setHeld(s, ifNum, 0, atMs);  // a port without a profile counts from here on
  const TrafficProfile &p = *trafficOf(s, ifNum);
  int64_t toWrapMs = static_cast<int64_t>(kCounterWrap * 1000 / p.inBytesPerSec);
  setHeld(s, ifNum, std::max<int64_t>(0, toWrapMs - secondsLeft * 1000), atMs);
  s.wrapAtMs[ifNum] = atMs + secondsLeft * 1000;
}

void setPortTraffic(Sim &s, uint32_t ifNum, const TrafficChange &t, int64_t atMs) {
  holdCountedTraffic(s, ifNum, atMs);
  TrafficChange &now = s.trafficChanges[ifNum];
  if (t.inOctetsPerSec >= 0) now.inOctetsPerSec = t.inOctetsPerSec;
  if (t.outOctetsPerSec >= 0) now.outOctetsPerSec = t.outOctetsPerSec;
  now.inErrors += t.inErrors;
}

const CallRule kCounterRules[] = {
    SIM_CUSTOM(rpcclt_openapiIfInOctetsGet, counterCall<Counter::InOctets>),
    SIM_CUSTOM(rpcclt_openapiIfInUcastPktsGet, counterCall<Counter::InUcast>),
    SIM_CUSTOM(rpcclt_openapiIfInDiscardsGet, counterCall<Counter::InDiscards>),
    SIM_CUSTOM(rpcclt_openapiIfInErrorsGet, counterCall<Counter::InErrors>),
    SIM_CUSTOM(rpcclt_openapiIfInUnknownProtosGet, counterCall<Counter::InUnknownProtos>),
    SIM_CUSTOM(rpcclt_openapiIfOutOctetsGet, counterCall<Counter::OutOctets>),
    SIM_CUSTOM(rpcclt_openapiIfOutUcastPktsGet, counterCall<Counter::OutUcast>),
    SIM_CUSTOM(rpcclt_openapiIfOutDiscardsGet, counterCall<Counter::OutDiscards>),
    SIM_CUSTOM(rpcclt_openapiIfOutErrorsGet, counterCall<Counter::OutErrors>),
    SIM_CUSTOM(rpcclt_openapiInterfaceStatsReset, resetOneCall),
    SIM_CUSTOM(rpcclt_openapiResetAllInterfacesStats, resetAllCall),
    SIM_GET(rpcclt_openapiHashIntfUnitSlotPortGet),
    SIM_GET(rpcclt_openapiRtrVlanIntfIfNumGet),
    SIM_GET(rpcclt_openapiCableStatusGet),
};
const size_t kCounterRuleCount = sizeof kCounterRules / sizeof kCounterRules[0];

void seedCounters(Sim &s) {
  for (const Interface &i : s.interfaces) {
    if (i.type != OPEN_INTF_TYPE_PHY) continue;
    s.put("rpcclt_openapiHashIntfUnitSlotPortGet", std::to_string(i.ifNum), {num(1), num(0), num(i.ifNum)});
    seedCableTest(s, i.ifNum);
  }
  s.put("rpcclt_openapiRtrVlanIntfIfNumGet", "1", {num(700)});
  s.put("rpcclt_openapiRtrVlanIntfIfNumGet", "10", {num(701)});
}

}  // namespace sim
