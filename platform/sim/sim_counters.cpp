// Traffic counters that grow while a port's link is up and hold while it
// is down, clear on a reset and wrap at 32 bits; port numbering
// (unit/slot/port), routing VLAN interfaces and the copper cable test.
#include "sim/sim.h"
#include "switch_facts.h"

namespace sim {

namespace {

// The counters were last cleared this long before the scenario starts.
constexpr int64_t kClearedBeforeLoadMs = (2 * 3600 + 17 * 60) * 1000LL;
constexpr uint64_t kCounterWrap = 1ULL << 32;
constexpr uint64_t kMwMsPerMwh = 3600 * 1000;

// The traffic of the ports with a device plugged in, and for how long the
// port shut by a protection feature had counted before it went down.
struct TrafficProfile {
  uint32_t ifNum;  // 0: the first fibre port, wherever it is
  TrafficRates rates;
  int64_t countedMs;
};

const TrafficProfile kProfiles[] = {
    {1, {120000, 85000, 820, 610, 1}, kClearedBeforeLoadMs},      // uplink to the core
    {2, {42000, 96000, 540, 900, 2}, kClearedBeforeLoadMs},       // office access point
    {3, {6500, 9800, 310, 420, 0}, kClearedBeforeLoadMs},         // desktop
    {5, {2300, 3100, 180, 240, 0}, kClearedBeforeLoadMs},         // printer
    {7, {9000, 4000, 300, 200, 900}, 380000},                     // shut down by a protection feature
    {8, {15000, 11000, 650, 500, 60}, kClearedBeforeLoadMs},      // long cable run, some damaged frames
    {0, {350000, 310000, 1400, 1350, 0}, kClearedBeforeLoadMs},   // storage array
};

// What `ms` of traffic at these rates adds to one counter. About 3% of the
// frames are broadcast or multicast.
uint64_t grown(const TrafficRates &r, Counter which, int64_t ms) {
  if (ms <= 0) return 0;
  uint64_t inOctets = r.inOctetsPerSec * static_cast<uint64_t>(ms) / 1000;
  uint64_t outOctets = r.outOctetsPerSec * static_cast<uint64_t>(ms) / 1000;
  uint64_t inUcast = r.inAvgFrame ? inOctets / r.inAvgFrame * 97 / 100 : 0;
  uint64_t outUcast = r.outAvgFrame ? outOctets / r.outAvgFrame * 97 / 100 : 0;
  switch (which) {
    case kInOctets: return inOctets;
    case kInUcast: return inUcast;
    case kInDiscards: return inUcast / 250000;
    case kInErrors: return inUcast * r.inErrorsPerMillion / 1000000;
    case kInUnknownProtos: return inUcast / 40000;
    case kOutOctets: return outOctets;
    case kOutUcast: return outUcast;
    case kOutDiscards: return outUcast / 120000;
    case kOutErrors: return outUcast * r.inErrorsPerMillion / 20000000;
    case kCounterCount: break;
  }
  return 0;
}

template <Counter Which>
int counterCall(Sim &s, Call &c) {
  if (!findInterface(s, c.port())) return OPEN_E_NOT_FOUND;
  const Port *p = findPort(s, c.port());
  c.out("value", p ? counterAt(*p, Which, clockNowMs(s.clock)) : 0);
  return OPEN_E_NONE;
}

int resetOneCall(Sim &s, Call &c) {
  if (!findInterface(s, c.port())) return OPEN_E_NOT_FOUND;
  resetPortCounters(s, c.port(), clockNowMs(s.clock));
  return OPEN_E_NONE;
}

int resetAllCall(Sim &s, Call &) {
  for (auto &[n, p] : s.model.ports) resetPortCounters(s, n, clockNowMs(s.clock));
  return OPEN_E_NONE;
}

int unitSlotPortCall(Sim &s, Call &c) {
  if (!findPort(s, c.port())) return OPEN_E_NOT_FOUND;
  c.out("unit", 1);
  c.out("slot", 0);
  c.out("port", c.port());
  return OPEN_E_NONE;
}

// The routing interfaces follow the switch's VLANs in order.
int routingInterfaceCall(Sim &s, Call &c) {
  size_t nth = 0;
  while (nth < s.model.vlans.size() && s.model.vlans[nth] != c.in("vlanId")) ++nth;
  if (nth == s.model.vlans.size()) return OPEN_E_NOT_FOUND;
  for (const Interface &i : s.interfaces) {
    if (i.type != OPEN_INTF_TYPE_VLAN || nth >= s.model.vlans.size()) continue;
    if (nth-- > 0) continue;
    c.out("ifNum", i.ifNum);
    return OPEN_E_NONE;
  }
  return OPEN_E_NOT_FOUND;
}

struct CableResult {
  uint32_t ifNum;
  uint32_t status;
  uint32_t lengthKnown, shortest, longest, failureAt;  // metres
};

constexpr uint32_t kNormal = facts::codeOf(facts::kCableStatuses, "normal");
constexpr uint32_t kOpen = facts::codeOf(facts::kCableStatuses, "open");
constexpr uint32_t kNoCable = facts::codeOf(facts::kCableStatuses, "nocable");

// Copper ports not listed here have no cable plugged in.
const CableResult kCables[] = {
    {1, kNormal, 1, 30, 35, 0}, {2, kNormal, 1, 50, 55, 0}, {3, kNormal, 1, 5, 10, 0}, {4, kOpen, 0, 0, 0, 23},
    {5, kNormal, 1, 15, 20, 0}, {7, kNormal, 1, 10, 15, 0}, {8, kNormal, 1, 80, 85, 0}, {12, kOpen, 0, 0, 0, 48},
};

int cableTestCall(Sim &s, Call &c) {
  const Port *p = findPort(s, c.port());
  if (!p) return OPEN_E_NOT_FOUND;
  CableResult r = {p->ifNum, p->fibre ? 0 : kNoCable, 0, 0, 0, 0};
  for (const CableResult &known : kCables)
    if (known.ifNum == p->ifNum && !p->fibre) r = known;
  c.out("status", r.status);
  c.out("lengthKnown", r.lengthKnown);
  c.out("shortestLength", r.shortest);
  c.out("longestLength", r.longest);
  c.out("cableFailureLength", r.failureAt);
  return OPEN_E_NONE;
}

}  // namespace

uint64_t counterAt(const Port &p, Counter which, int64_t atMs) { return countedAt(p, which, atMs) % kCounterWrap; }

uint64_t countedAt(const Port &p, Counter which, int64_t atMs) {
  return p.counters[which] + (p.up ? grown(p.rates, which, atMs - p.settledMs) : 0);
}

// When the announced wrap comes, as the port counts now; -1 once it came
// or while the port does not count.
int64_t wrapDueMs(const Port &p, int64_t nowMs) {
  uint64_t counted = countedAt(p, kInOctets, nowMs);
  if (!p.wrapAtOctets || counted >= p.wrapAtOctets || !p.up || !p.rates.inOctetsPerSec) return -1;
  uint64_t left = p.wrapAtOctets - counted;
  return nowMs + static_cast<int64_t>((left * 1000 + p.rates.inOctetsPerSec - 1) / p.rates.inOctetsPerSec);
}

void settleCounters(Sim &s, Port &p, int64_t atMs) {
  if (atMs <= p.settledMs) return;
  if (p.up)
    for (int c = 0; c < kCounterCount; ++c) p.counters[c] += grown(p.rates, static_cast<Counter>(c), atMs - p.settledMs);
  p.savedMwMs += static_cast<uint64_t>(savingMw(s, p)) * static_cast<uint64_t>(atMs - p.settledMs);
  p.savedMwh += p.savedMwMs / kMwMsPerMwh;
  p.savedMwMs %= kMwMsPerMwh;
  p.settledMs = atMs;
}

uint64_t savedMwhAt(const Sim &s, const Port &p, int64_t atMs) {
  uint64_t ms = atMs > p.settledMs ? static_cast<uint64_t>(atMs - p.settledMs) : 0;
  return p.savedMwh + (p.savedMwMs + static_cast<uint64_t>(savingMw(s, p)) * ms) / kMwMsPerMwh;
}

void resetPortCounters(Sim &s, uint32_t ifNum, int64_t atMs) {
  Port *p = findPort(s, ifNum);
  if (!p) return;
  settleCounters(s, *p, atMs);
  p->counters.fill(0);
  p->wrapAtOctets = 0;
}

// Only the received octets move: they stand `secondsLeft` seconds of the
// port's traffic below the 32-bit wrap, so that they wrap exactly then
// while the link stays up.
void bringCountersNearWrap(Sim &s, uint32_t ifNum, int64_t secondsLeft, int64_t atMs) {
  Port *p = findPort(s, ifNum);
  if (!p) return;
  settleCounters(s, *p, atMs);
  uint64_t before = p->rates.inOctetsPerSec * static_cast<uint64_t>(secondsLeft) % kCounterWrap;
  uint64_t target = (kCounterWrap - before) % kCounterWrap;
  p->counters[kInOctets] += (target + kCounterWrap - p->counters[kInOctets] % kCounterWrap) % kCounterWrap;
  p->wrapAtOctets = p->counters[kInOctets] + p->rates.inOctetsPerSec * static_cast<uint64_t>(secondsLeft);
}

void setPortTraffic(Sim &s, uint32_t ifNum, const TrafficChange &t, int64_t atMs) {
  Port *p = findPort(s, ifNum);
  if (!p) return;
  settleCounters(s, *p, atMs);
  if (t.inOctetsPerSec >= 0) p->rates.inOctetsPerSec = static_cast<uint64_t>(t.inOctetsPerSec);
  if (t.outOctetsPerSec >= 0) p->rates.outOctetsPerSec = static_cast<uint64_t>(t.outOctetsPerSec);
  // A port without a link receives nothing, damaged or not.
  if (p->up) p->counters[kInErrors] += static_cast<uint64_t>(t.inErrors);
}

const CallRule kCounterRules[] = {
    SIM_RULE(rpcclt_openapiIfInOctetsGet, counterCall<kInOctets>),
    SIM_RULE(rpcclt_openapiIfInUcastPktsGet, counterCall<kInUcast>),
    SIM_RULE(rpcclt_openapiIfInDiscardsGet, counterCall<kInDiscards>),
    SIM_RULE(rpcclt_openapiIfInErrorsGet, counterCall<kInErrors>),
    SIM_RULE(rpcclt_openapiIfInUnknownProtosGet, counterCall<kInUnknownProtos>),
    SIM_RULE(rpcclt_openapiIfOutOctetsGet, counterCall<kOutOctets>),
    SIM_RULE(rpcclt_openapiIfOutUcastPktsGet, counterCall<kOutUcast>),
    SIM_RULE(rpcclt_openapiIfOutDiscardsGet, counterCall<kOutDiscards>),
    SIM_RULE(rpcclt_openapiIfOutErrorsGet, counterCall<kOutErrors>),
    SIM_RULE(rpcclt_openapiInterfaceStatsReset, resetOneCall),
    SIM_RULE(rpcclt_openapiResetAllInterfacesStats, resetAllCall),
    SIM_RULE(rpcclt_openapiHashIntfUnitSlotPortGet, unitSlotPortCall),
    SIM_RULE(rpcclt_openapiRtrVlanIntfIfNumGet, routingInterfaceCall),
    SIM_RULE(rpcclt_openapiCableStatusGet, cableTestCall),
};
const size_t kCounterRuleCount = sizeof kCounterRules / sizeof kCounterRules[0];

// Every port carries quiet traffic once linked; the profiled ones what
// their device sends, counted since the last clear.
void seedCounters(Sim &s) {
  for (const TrafficProfile &t : kProfiles) {
    Port *p = findPort(s, t.ifNum ? t.ifNum : s.model.layout.firstFibre());
    if (!p) continue;
    p->rates = t.rates;
    for (int c = 0; c < kCounterCount; ++c) p->counters[c] = grown(t.rates, static_cast<Counter>(c), t.countedMs);
  }
}

}  // namespace sim
