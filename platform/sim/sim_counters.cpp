// Traffic counters that grow while a port's link is up and hold while it
// is down, clear on a reset and wrap at 32 bits; port numbering
// (unit/slot/port) and the copper cable test.
#include <algorithm>

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
    {kGuardedPort, {9000, 4000, 300, 200, 900}, 380000},          // until a protection feature shut it
    {8, {15000, 11000, 650, 500, 60}, kClearedBeforeLoadMs},      // long cable run, some damaged frames
    {0, {350000, 310000, 1400, 1350, 0}, kClearedBeforeLoadMs},   // storage array
};

// What `ms` of traffic at these rates adds to one counter. About 3% of the
// frames are broadcast or multicast.
// Octets at `rate` a second over `ms`, in the counters' 64 bits however
// long the time: the 32-bit reading stays right after they wrap.
uint64_t octets(uint64_t rate, int64_t ms) {
  return static_cast<uint64_t>(static_cast<unsigned __int128>(rate) * static_cast<uint64_t>(ms) / 1000);
}

uint64_t grown(const TrafficRates &r, Counter which, int64_t ms) {
  if (ms <= 0) return 0;
  uint64_t inOctets = octets(r.inOctetsPerSec, ms), outOctets = octets(r.outOctetsPerSec, ms);
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

// What the link carries of the traffic offered: its line rate at most
// each way, shared by both ways on a half duplex link.
TrafficRates carried(const Sim &s, const Port &p) {
  TrafficRates r = p.rates;
  uint64_t line = lineOctetsPerSec(s, p);
  r.inOctetsPerSec = std::min(r.inOctetsPerSec, line);
  r.outOctetsPerSec = std::min(r.outOctetsPerSec, halfDuplex(s, p) ? line - r.inOctetsPerSec : line);
  return r;
}

// All the port counted up to `atMs`, unwrapped.
uint64_t countedAt(const Sim &s, const Port &p, Counter which, int64_t atMs) {
  return p.counters[which] + (isUp(p) ? grown(carried(s, p), which, atMs - p.settledMs) : 0);
}

// A LAG counts what its members count.
template <class F>
void forEachCounted(Sim &s, uint32_t ifNum, F f) {
  if (Port *p = findPort(s, ifNum)) return f(*p);
  for (auto &[n, p] : s.model.ports)
    if (p.lagMember == ifNum) f(p);
}

template <Counter Which>
int counterCall(Sim &s, Call &c) {
  if (!findInterface(s, c.port())) return OPEN_E_NOT_FOUND;
  uint64_t sum = 0;
  forEachCounted(s, c.port(), [&](const Port &p) { sum += countedAt(s, p, Which, clockNowMs(s.clock)); });
  c.outLast(sum % kCounterWrap);
  return OPEN_E_NONE;
}

// A LAG's clear clears its members.
int resetOneCall(Sim &s, Call &c) {
  if (!findInterface(s, c.port())) return OPEN_E_NOT_FOUND;
  forEachCounted(s, c.port(), [&](Port &p) { resetPortCounters(s, p, clockNowMs(s.clock)); });
  return OPEN_E_NONE;
}

int resetAllCall(Sim &s, Call &) {
  for (auto &[n, p] : s.model.ports) resetPortCounters(s, p, clockNowMs(s.clock));
  return OPEN_E_NONE;
}

int unitSlotPortCall(Sim &, Call &c, Port &) {
  using enum args::rpcclt_openapiHashIntfUnitSlotPortGet::Param;
  c.out(unit, kStackUnit);
  c.out(slot, 0);
  c.out(port, c.port());
  return OPEN_E_NONE;
}

// The copper cable test: no cable, a cable with a live partner at its far
// end (its length known to within 5 m), or one open at its far end.
constexpr uint32_t kCableNormal = facts::codeOf(facts::kCableStatuses, "normal");
constexpr uint32_t kCableOpen = facts::codeOf(facts::kCableStatuses, "open");
constexpr uint32_t kNoCable = facts::codeOf(facts::kCableStatuses, "nocable");
constexpr uint32_t kCableSpreadM = 5;

int cableTestCall(Sim &s, Call &c, Port &p) {
  using enum args::rpcclt_openapiCableStatusGet::Param;
  if (isFibre(s, p)) return OPEN_E_UNAVAIL;
  bool live = p.cableM && p.partner;
  c.out(status, !p.cableM ? kNoCable : live ? kCableNormal : kCableOpen);
  c.out(lengthKnown, live ? 1 : 0);
  c.out(shortestLength, live ? p.cableM : 0);
  c.out(longestLength, live ? p.cableM + kCableSpreadM : 0);
  c.out(cableFailureLength, p.cableM && !live ? p.cableM : 0);
  return OPEN_E_NONE;
}

}  // namespace

// When the announced wrap comes, as the port counts now; -1 once it came
// or while the port does not count.
int64_t wrapDueMs(const Sim &s, const Port &p, int64_t nowMs) {
  uint64_t counted = countedAt(s, p, kInOctets, nowMs), rate = carried(s, p).inOctetsPerSec;
  if (!p.wrapAtOctets || counted >= p.wrapAtOctets || !isUp(p) || !rate) return -1;
  uint64_t left = p.wrapAtOctets - counted;
  return nowMs + static_cast<int64_t>((left * 1000 + rate - 1) / rate);
}

void settleCounters(Sim &s, Port &p, int64_t atMs) {
  if (atMs <= p.settledMs) return;
  uint64_t ms = static_cast<uint64_t>(atMs - p.settledMs);
  TrafficRates r = carried(s, p);
  if (isUp(p))
    for (int c = 0; c < kCounterCount; ++c) p.counters[c] += grown(r, static_cast<Counter>(c), atMs - p.settledMs);
  p.green.lpiMs = lpiMsAt(s, p, atMs);
  p.savedMwMs += static_cast<uint64_t>(savingMw(s, p)) * ms;
  p.savedMwh += p.savedMwMs / kMwMsPerMwh;
  p.savedMwMs %= kMwMsPerMwh;
  p.settledMs = atMs;
}

uint64_t savedMwhAt(const Sim &s, const Port &p, int64_t atMs) {
  uint64_t ms = atMs > p.settledMs ? static_cast<uint64_t>(atMs - p.settledMs) : 0;
  return p.savedMwh + (p.savedMwMs + static_cast<uint64_t>(savingMw(s, p)) * ms) / kMwMsPerMwh;
}

void resetPortCounters(Sim &s, Port &p, int64_t atMs) {
  settleCounters(s, p, atMs);
  p.counters.fill(0);
  p.wrapAtOctets = 0;
}

// Only the received octets move: they stand `secondsLeft` seconds of the
// port's traffic below the 32-bit wrap, so that they wrap exactly then
// while the link stays up.
void bringCountersNearWrap(Sim &s, Port &p, int64_t secondsLeft, int64_t atMs) {
  settleCounters(s, p, atMs);
  uint64_t rate = carried(s, p).inOctetsPerSec;
  uint64_t before = rate * static_cast<uint64_t>(secondsLeft) % kCounterWrap;
  uint64_t target = (kCounterWrap - before) % kCounterWrap;
  p.counters[kInOctets] += (target + kCounterWrap - p.counters[kInOctets] % kCounterWrap) % kCounterWrap;
  p.wrapAtOctets = p.counters[kInOctets] + rate * static_cast<uint64_t>(secondsLeft);
}

void setPortTraffic(Sim &s, Port &p, const TrafficChange &t, int64_t atMs) {
  settleCounters(s, p, atMs);
  if (t.inOctetsPerSec >= 0) p.rates.inOctetsPerSec = static_cast<uint64_t>(t.inOctetsPerSec);
  if (t.outOctetsPerSec >= 0) p.rates.outOctetsPerSec = static_cast<uint64_t>(t.outOctetsPerSec);
  // A port without a link receives nothing, damaged or not.
  if (isUp(p)) p.counters[kInErrors] += static_cast<uint64_t>(t.inErrors);
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
    SIM_RULE(rpcclt_openapiHashIntfUnitSlotPortGet, onPort<unitSlotPortCall>),
    SIM_RULE(rpcclt_openapiCableStatusGet, onPort<cableTestCall>),
};

// Every port carries quiet traffic once linked; the profiled ones what
// their device sends, counted since the last clear.
static void seedCounters(Sim &s) {
  for (const TrafficProfile &t : kProfiles) {
    Port *p = findPort(s, t.ifNum ? t.ifNum : s.model.layout.firstFibre());
    if (!p) continue;
    p->rates = t.rates;
    for (int c = 0; c < kCounterCount; ++c) p->counters[c] = grown(t.rates, static_cast<Counter>(c), t.countedMs);
  }
}

const RuleGroup kCounterGroup = {kCounterRules, std::size(kCounterRules), seedCounters};

}  // namespace sim
