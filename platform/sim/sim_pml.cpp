// Port MAC locking: the global and VLAN-wide switches, per-port lock modes,
// limits and violation actions, the static and dynamic address tables of
// locked ports and the 802.1Qci streams bound to locked addresses.
//
// Addresses are kept in one canonical form (upper-case hex pairs joined by
// ":"); the walks visit a port's entries by address text, then VLAN.
#include <ctype.h>

#include <algorithm>
#include <tuple>

#include "sim/sim.h"
#include "sim/sim_model_json.h"
#include "switch_facts.h"

namespace sim {

namespace {

// The limits the switch holds its settings to.
constexpr uint32_t kDynamicMax = facts::kLockDynamicLimit.most;
constexpr uint32_t kStaticMax = facts::kLockStaticLimit.most;
constexpr uint32_t kTrapIntervalMax = facts::kLockTrapInterval.most;
constexpr uint32_t kAgeTimeMax = facts::kLockAgeTime.most;
constexpr uint32_t kVlanModeMax = facts::kLockVlanMode.most;  // 0 off, 1 VLAN-based locking
constexpr uint32_t kVlanMax = facts::kLockVlan.most;

bool within(const facts::Range &r, uint64_t v) { return v >= r.least && v <= r.most; }

using Entry = PmlEntry;
using Table = std::vector<Entry>;

// --- addresses, ports, VLANs ------------------------------------------------

Entry entry(uint32_t ifNum, const std::string &mac, uint32_t vlan, bool sticky = false, bool learned = false) {
  return {.ifNum = ifNum, .mac = mac, .vlan = vlan, .sticky = sticky, .learned = learned, .stream = 0};
}

// Upper-case, "-" read as ":"; used for walk keys, which need not be valid.
std::string walkKey(std::string mac) {
  for (char &ch : mac) ch = ch == '-' ? ':' : static_cast<char>(toupper(static_cast<unsigned char>(ch)));
  return mac;
}

// A unicast address as six hex pairs separated by ":" or "-".
bool canonicalMac(const std::string &text, std::string *out) {
  if (!wellFormedMac(text)) return false;
  *out = walkKey(text);
  return unicastMac(*out);
}

bool lockable(const Sim &s, uint64_t ifNum) { return findPort(s, ifNum) != nullptr; }

bool vlanKnown(const Sim &s, uint64_t vlan) { return vlan <= kVlanMax && vlanExists(s, static_cast<uint32_t>(vlan)); }

bool sameEntry(const Entry &e, uint64_t ifNum, const std::string &mac, uint64_t vlan) {
  return e.ifNum == ifNum && e.mac == mac && e.vlan == vlan;
}

Entry *findEntry(Table &t, uint64_t ifNum, const std::string &mac, uint64_t vlan) {
  for (Entry &e : t)
    if (sameEntry(e, ifNum, mac, vlan)) return &e;
  return nullptr;
}

template <class Pred>
uint32_t countIf(const Table &t, Pred p) {
  return static_cast<uint32_t>(std::count_if(t.begin(), t.end(), p));
}

// A port's entries in walk order.
std::vector<Entry> portEntries(const Table &t, uint64_t ifNum) {
  std::vector<Entry> v;
  for (const Entry &e : t)
    if (e.ifNum == ifNum) v.push_back(e);
  std::sort(v.begin(), v.end(), [](const Entry &a, const Entry &b) {
    return std::tie(a.mac, a.vlan) < std::tie(b.mac, b.vlan);
  });
  return v;
}

// --- configuration ----------------------------------------------------------

int isValidIntf(Sim &s, Call &c) {
  c.outLast(lockable(s, c.port()) ? 1 : 0);
  return OPEN_E_NONE;
}

int nextValidIntf(Sim &s, Call &c) {
  using enum args::rpcclt_openapiPmlNextValidIntfGet::Param;
  std::optional<Interface> next = nextOfType(s, OPEN_INTF_TYPE_PHY, c.port());
  if (!next) return OPEN_E_NOT_FOUND;
  c.out(nextIfNum, next->ifNum);
  return OPEN_E_NONE;
}

// A switch-wide locking setting changes no rate: nothing to settle first.
template <uint32_t &(*F)(Model &)>
int pmlSet(Sim &s, Call &c) {
  F(s.model) = static_cast<uint32_t>(c.last().num);
  return OPEN_E_NONE;
}

// A VLAN's settings, the VLAN first; the VLANs are those the switch has.
PmlVlan *pmlVlan(Sim &s, Call &c) {
  auto v = s.model.pml.vlans.find(static_cast<uint32_t>(c.first()));
  return v == s.model.pml.vlans.end() ? nullptr : &v->second;
}

template <uint32_t PmlVlan::*F>
int vlanGet(Sim &s, Call &c) {
  PmlVlan *v = pmlVlan(s, c);
  if (!v) return OPEN_E_NOT_FOUND;
  c.outLast(v->*F);
  return OPEN_E_NONE;
}

template <uint32_t PmlVlan::*F, uint32_t Max = UINT32_MAX>
int vlanSet(Sim &s, Call &c) {
  PmlVlan *v = pmlVlan(s, c);
  if (!v) return OPEN_E_NOT_FOUND;
  if (c.last().num > Max) return OPEN_E_PARAM;
  v->*F = static_cast<uint32_t>(c.last().num);
  return OPEN_E_NONE;
}

// A port's limit in one VLAN; the get and the set share their layout.
namespace vlanLimitArgs = args::rpcclt_openapiPmlIntfVlanDynamicLimitGet;
static_assert(samePlace(args::rpcclt_openapiPmlIntfVlanDynamicLimitSet::limit, vlanLimitArgs::limit));

uint32_t *intfVlanLimit(Sim &s, Call &c) {
  Port *p = findPort(s, c.port());
  if (!p) return nullptr;
  auto found = p->pml.vlanDynamicLimit.find(static_cast<uint32_t>(c.in(vlanLimitArgs::vlanId)));
  return found == p->pml.vlanDynamicLimit.end() ? nullptr : &found->second;
}

int intfVlanLimitGet(Sim &s, Call &c) {
  uint32_t *limit = intfVlanLimit(s, c);
  if (!limit) return OPEN_E_NOT_FOUND;
  c.out(vlanLimitArgs::limit, *limit);
  return OPEN_E_NONE;
}

int intfVlanLimitSet(Sim &s, Call &c) {
  uint32_t *limit = intfVlanLimit(s, c);
  if (!limit) return OPEN_E_NOT_FOUND;
  if (c.in(vlanLimitArgs::limit) > kDynamicMax) return OPEN_E_PARAM;
  *limit = static_cast<uint32_t>(c.in(vlanLimitArgs::limit));
  return OPEN_E_NONE;
}

int lastViolation(Sim &, Call &c, Port &p) {
  using enum args::rpcclt_openapiPmlIntfLastViolationAddrGet::Param;
  c.outText(macAddr, p.pml.lastViolationMac);
  c.out(vlanId, p.pml.lastViolationVlan);
  return OPEN_E_NONE;
}

// --- counts -----------------------------------------------------------------

int staticGlobalCount(Sim &s, Call &c) {
  c.outLast(s.model.pml.statics.size());
  return OPEN_E_NONE;
}

// A port's entries in one table, or only those that came from learning.
template <Table Pml::*T, bool LearnedOnly = false>
int portCount(Sim &s, Call &c) {
  if (!lockable(s, c.port())) return OPEN_E_NOT_FOUND;
  c.outLast(countIf(s.model.pml.*T, [&](const Entry &e) { return e.ifNum == c.port() && (e.learned || !LearnedOnly); }));
  return OPEN_E_NONE;
}

int staticCountByVlan(Sim &s, Call &c) {
  uint64_t vlan = c.first();
  if (!vlanKnown(s, vlan)) return OPEN_E_NOT_FOUND;
  c.outLast(countIf(s.model.pml.statics, [&](const Entry &e) { return e.vlan == vlan; }));
  return OPEN_E_NONE;
}

int intfVlanDynamicCount(Sim &s, Call &c) {
  uint64_t vlan = c.in(args::rpcclt_openapiPmlIntfVlanDynamicLearnedAddrCountGet::vlanId);
  if (!lockable(s, c.port()) || !vlanKnown(s, vlan)) return OPEN_E_NOT_FOUND;
  auto onBoth = [&](const Entry &e) { return e.ifNum == c.port() && e.vlan == vlan; };
  c.outLast(countIf(s.model.pml.dynamics, onBoth));
  return OPEN_E_NONE;
}

// The configured limit is in force only while VLAN-based locking is on,
// both switch-wide and on the VLAN.
int vlanOperationalLimit(Sim &s, Call &c) {
  PmlVlan *v = pmlVlan(s, c);
  if (!v) return OPEN_E_NOT_FOUND;
  bool active = s.model.pml.vlanAdmin == 1 && v->mode == 1;
  c.outLast(active ? v->dynamicLimit : 0);
  return OPEN_E_NONE;
}

// --- walks ------------------------------------------------------------------

// The walks share the static walks' layout: the port, an address and its
// VLAN (the first entry's, or the one the walk goes on after), the next
// entry's, and the sticky flags of static entries.
namespace firstArgs = args::rpcclt_openapiPmlIntfStaticEntryGetFirst;
namespace nextArgs = args::rpcclt_openapiPmlIntfStaticEntryGetNext;
static_assert(samePlace(args::rpcclt_openapiPmlIntfDynamicEntryGetFirst::vlanId, firstArgs::vlanId) &&
              samePlace(args::rpcclt_openapiPmlVlanDynamicEntryGetFirst::vlanId, firstArgs::vlanId) &&
              samePlace(args::rpcclt_openapiPmlIntfDynamicEntryGetNext::nextVlanId, nextArgs::nextVlanId));

template <Table Pml::*table, bool withSticky>
int walkFirst(Sim &s, Call &c) {
  using enum firstArgs::Param;
  if (!lockable(s, c.port())) return OPEN_E_NOT_FOUND;
  std::vector<Entry> entries = portEntries(s.model.pml.*table, c.port());
  if (entries.empty()) return OPEN_E_NOT_FOUND;
  c.outText(macAddr, entries.front().mac);
  c.out(vlanId, entries.front().vlan);
  if (withSticky) c.out(sticky, entries.front().sticky);
  return OPEN_E_NONE;
}

// The entry after (address, VLAN) on the port.
template <Table Pml::*table, bool withSticky>
int walkNext(Sim &s, Call &c) {
  using enum nextArgs::Param;
  if (!lockable(s, c.port())) return OPEN_E_NOT_FOUND;
  std::string mac = walkKey(c.text(macAddr));
  uint64_t vlan = c.in(vlanId);
  for (const Entry &e : portEntries(s.model.pml.*table, c.port())) {
    if (std::tie(e.mac, e.vlan) <= std::tie(mac, vlan)) continue;
    c.outText(nextMacAddr, e.mac);
    c.out(nextVlanId, e.vlan);
    if (withSticky) c.out(nextSticky, e.sticky);
    return OPEN_E_NONE;
  }
  return OPEN_E_NOT_FOUND;
}

// The VLAN-based walk goes over the port's learned addresses keyed by the
// address alone: the same address learned in a second VLAN is not visited.
int vlanDynamicNext(Sim &s, Call &c) {
  using enum args::rpcclt_openapiPmlVlanDynamicEntryGetNext::Param;
  if (!lockable(s, c.port())) return OPEN_E_NOT_FOUND;
  std::string mac = walkKey(c.text(macAddr));
  for (const Entry &e : portEntries(s.model.pml.dynamics, c.port())) {
    if (e.mac <= mac) continue;
    c.outText(nextMacAddr, e.mac);
    c.out(vlanId, e.vlan);
    return OPEN_E_NONE;
  }
  return OPEN_E_NOT_FOUND;
}

// --- static entries ---------------------------------------------------------

// Inputs of every entry call: port, address, VLAN. 0 when they name a
// lockable port and a well-formed address.
namespace entryArgs = args::rpcclt_openapiPmlIntfStaticEntryAdd;
static_assert(samePlace(args::rpcclt_openapiPmlIntfStaticEntryDelete::vlanId, entryArgs::vlanId) &&
              samePlace(args::rpcclt_openapiPmlDot1qciStreamSet::vlanId, entryArgs::vlanId) &&
              samePlace(args::rpcclt_openapiPmlDot1qciStreamGet::vlanId, entryArgs::vlanId) &&
              samePlace(args::rpcclt_openapiPmlDot1qciStreamDelete::vlanId, entryArgs::vlanId));
int entryKey(const Sim &s, const Call &c, std::string *mac) {
  if (!lockable(s, c.port())) return OPEN_E_NOT_FOUND;
  if (!canonicalMac(c.text(entryArgs::macAddr), mac) || !within(facts::kLockVlan, c.in(entryArgs::vlanId))) return OPEN_E_PARAM;
  return OPEN_E_NONE;
}

uint32_t staticLimit(const Sim &s, uint64_t ifNum) { return findPort(s, ifNum)->pml.staticLimit; }

// An address is static on one port per VLAN. A port at its static limit
// refuses more with a general failure, as the switch does for a full
// table.
int staticAdd(Sim &s, Call &c) {
  using enum entryArgs::Param;
  std::string mac;
  if (int rc = entryKey(s, c, &mac)) return rc;
  uint64_t port = c.port(), vlan = c.in(vlanId);
  Pml &t = s.model.pml;
  if (countIf(t.statics, [&](const Entry &e) { return e.mac == mac && e.vlan == vlan; })) return OPEN_E_EXISTS;
  if (countIf(t.statics, [&](const Entry &e) { return e.ifNum == port; }) >= staticLimit(s, port)) return OPEN_E_FAIL;
  std::erase_if(t.dynamics, [&](const Entry &e) { return e.mac == mac && e.vlan == vlan; });
  t.statics.push_back(entry(static_cast<uint32_t>(port), mac, static_cast<uint32_t>(vlan), c.in(sticky) == 1));
  return OPEN_E_NONE;
}

// Removing an entry also unbinds its stream.
int staticDelete(Sim &s, Call &c) {
  std::string mac;
  if (int rc = entryKey(s, c, &mac)) return rc;
  Pml &t = s.model.pml;
  uint64_t vlan = c.in(entryArgs::vlanId);
  if (!findEntry(t.statics, c.port(), mac, vlan)) return OPEN_E_NOT_FOUND;
  auto same = [&](const Entry &e) { return sameEntry(e, c.port(), mac, vlan); };
  std::erase_if(t.statics, same);
  std::erase_if(t.streams, same);
  return OPEN_E_NONE;
}

// All or nothing: when the port's static limit has no room for every
// learned address, nothing moves.
int dynamicToStatic(Sim &s, Call &c) {
  uint64_t ifNum = c.port();
  if (!lockable(s, ifNum)) return OPEN_E_NOT_FOUND;
  Pml &t = s.model.pml;
  auto onPort = [&](const Entry &e) { return e.ifNum == ifNum; };
  if (countIf(t.statics, onPort) + countIf(t.dynamics, onPort) > staticLimit(s, ifNum)) return OPEN_E_FAIL;
  bool sticky = findPort(s, ifNum)->pml.stickyMode == 1;
  for (Entry e : t.dynamics) {
    if (!onPort(e)) continue;
    e.sticky = sticky;
    e.learned = true;
    t.statics.push_back(e);
  }
  std::erase_if(t.dynamics, onPort);
  return OPEN_E_NONE;
}

// --- 802.1Qci streams -------------------------------------------------------

// A stream binds to an address locked on the port, static or learned.
int streamSet(Sim &s, Call &c) {
  using enum args::rpcclt_openapiPmlDot1qciStreamSet::Param;
  std::string mac;
  if (int rc = entryKey(s, c, &mac)) return rc;
  uint64_t stream = c.in(streamId), vlan = c.in(vlanId);
  if (!within(facts::kStreamId, stream)) return OPEN_E_PARAM;
  Pml &t = s.model.pml;
  if (!findEntry(t.statics, c.port(), mac, vlan) && !findEntry(t.dynamics, c.port(), mac, vlan)) return OPEN_E_NOT_FOUND;
  Entry *bound = findEntry(t.streams, c.port(), mac, vlan);
  if (!bound) bound = &t.streams.emplace_back(entry(c.port(), mac, static_cast<uint32_t>(vlan)));
  bound->stream = static_cast<uint32_t>(stream);
  return OPEN_E_NONE;
}

int streamGet(Sim &s, Call &c) {
  using enum args::rpcclt_openapiPmlDot1qciStreamGet::Param;
  std::string mac;
  if (int rc = entryKey(s, c, &mac)) return rc;
  const Entry *bound = findEntry(s.model.pml.streams, c.port(), mac, c.in(vlanId));
  if (!bound) return OPEN_E_NOT_FOUND;
  c.out(streamId, bound->stream);
  return OPEN_E_NONE;
}

// The stream named must be the one bound.
int streamDelete(Sim &s, Call &c) {
  using enum args::rpcclt_openapiPmlDot1qciStreamDelete::Param;
  std::string mac;
  if (int rc = entryKey(s, c, &mac)) return rc;
  Pml &t = s.model.pml;
  uint64_t vlan = c.in(vlanId);
  const Entry *bound = findEntry(t.streams, c.port(), mac, vlan);
  if (!bound) return OPEN_E_NOT_FOUND;
  if (bound->stream != c.in(streamId)) return OPEN_E_PARAM;
  std::erase_if(t.streams, [&](const Entry &e) { return sameEntry(e, c.port(), mac, vlan); });
  return OPEN_E_NONE;
}

// --- default scenario -------------------------------------------------------

// Locked ports are those with a device plugged in: the uplink, the office
// access point (trap on violation), a desk port that was D-Disabled after
// a foreign laptop appeared, a sticky printer port, and two more.
constexpr uint32_t kLockedPorts[] = {1, 2, 3, 5, 8, 25};

bool isLocked(uint32_t port) {
  return std::find(std::begin(kLockedPorts), std::end(kLockedPorts), port) != std::end(kLockedPorts);
}

void seedPort(Sim &s, Port &p) {
  uint32_t port = p.ifNum;
  PmlPort &m = p.pml;
  m.mode = isLocked(port) ? 1 : 0;
  m.dynamicLimit = port == 2 ? 32 : kDynamicMax;
  m.trapMode = port == 2 ? 1 : 0;
  m.ddisableMode = port == 3 ? 1 : 0;
  m.stickyMode = port == 5 ? 1 : 0;
  m.trapFrequency = port == 2 ? 30 : 0;
  m.ageTime = port == 2 ? 60 : 0;
  if (port == 3) {
    m.lastViolationMac = "00:1B:21:3A:4F:92";
    m.lastViolationVlan = 10;
  }
  for (uint32_t vlan : s.model.vlans) m.vlanDynamicLimit[vlan] = kDynamicMax;
}

void seedVlan(Sim &s, uint32_t vlan) {
  PmlVlan &v = s.model.pml.vlans[vlan];
  v.dynamicLimit = vlan == 10 ? 256 : kDynamicMax;
  v.trapMode = vlan == 10 ? 1 : 0;
  v.mode = vlan == 10 ? 1 : 0;
}

// The storage array learnt on the first fibre port, wherever it is.
void seedTables(Pml &t, uint32_t storagePort) {
  t.dynamics = {
      entry(1, "00:1A:2B:3C:4D:01", 1),  entry(1, "00:1A:2B:3C:4D:02", 1),  entry(1, "F4:8E:38:11:22:33", 10),
      entry(2, "3C:EC:EF:10:20:30", 1),  entry(2, "3C:EC:EF:10:20:32", 10), entry(3, "00:1B:21:3A:4F:90", 10),
      entry(5, "00:0E:C6:A1:B2:C4", 1),  entry(8, "B8:27:EB:45:67:89", 1),  entry(storagePort, "00:25:90:AA:BB:01", 10),
      entry(storagePort, "00:25:90:AA:BB:02", 10),
  };
  t.statics = {
      entry(2, "3C:EC:EF:10:20:31", 1),
      entry(5, "00:0E:C6:A1:B2:C3", 10, true),
      entry(8, "B8:27:EB:45:67:88", 1, false, true),
  };
  Entry stream = entry(2, "3C:EC:EF:10:20:31", 1);
  stream.stream = 12;
  t.streams = {stream};
}

}  // namespace

// Only a port locked while locking is on sees a violation, and only while
// its link is up: a port without a link receives no frames. The last
// address seen is the one the port reports, the frames from the foreign
// addresses are discarded, and a port set to D-Disable on a violation is
// shut as the feature shuts it.
void recordPmlViolation(Sim &s, Port &p, const TimelineEvent &e) {
  if (!isUp(p) || e.macs.empty() || !vlanExists(s, e.vlan) || s.model.pml.globalAdmin != 1 || p.pml.mode != 1) return;
  p.pml.lastViolationMac = walkKey(e.macs.back());
  p.pml.lastViolationVlan = e.vlan;
  settleCounters(s, p, e.atMs);
  p.counters[kInDiscards] += e.macs.size();
  if (p.pml.ddisableMode == 1) tripDDisable(s, p, "pml", e.atMs);
}

const CallRule kPmlRules[] = {
    SIM_SETTING(rpcclt_openapiPmlGlobalAdminModeGet, switchGet<SIM_SWITCH_FIELD(pml.globalAdmin)>,
                rpcclt_openapiPmlGlobalAdminModeSet, pmlSet<SIM_SWITCH_FIELD(pml.globalAdmin)>),
    SIM_RULE(rpcclt_openapiPmlStaticAddrGlobalCountGet, staticGlobalCount),
    SIM_SETTING(rpcclt_openapiPmlVlanAdminModeGet, switchGet<SIM_SWITCH_FIELD(pml.vlanAdmin)>,
                rpcclt_openapiPmlVlanAdminModeSet, pmlSet<SIM_SWITCH_FIELD(pml.vlanAdmin)>),
    SIM_RULE(rpcclt_openapiPmlNextValidIntfGet, nextValidIntf),
    SIM_RULE(rpcclt_openapiPmlIntfIsValid, isValidIntf),
    SIM_PORT_SETTING(rpcclt_openapiPmlIntfModeGet, rpcclt_openapiPmlIntfModeSet, pml.mode),
    SIM_PORT_SETTING(rpcclt_openapiPmlIntfDynamicLimitGet, rpcclt_openapiPmlIntfDynamicLimitSet, pml.dynamicLimit, 0,
                     kDynamicMax),
    SIM_PORT_SETTING(rpcclt_openapiPmlIntfStaticLimitGet, rpcclt_openapiPmlIntfStaticLimitSet, pml.staticLimit, 0,
                     kStaticMax),
    SIM_RULE(rpcclt_openapiPmlIntfDynamicMaxLimitGet, portGet<SIM_PORT_FIELD(pml.dynamicMaxLimit)>),
    SIM_RULE(rpcclt_openapiPmlIntfStaticMaxLimitGet, portGet<SIM_PORT_FIELD(pml.staticMaxLimit)>),
    SIM_RULE(rpcclt_openapiPmlIntfStaticCountGet, portCount<&Pml::statics>),
    SIM_PORT_SETTING(rpcclt_openapiPmlIntfViolationTrapModeGet, rpcclt_openapiPmlIntfViolationTrapModeSet,
                     pml.trapMode),
    SIM_PORT_SETTING(rpcclt_openapiPmlIntfViolationDDisableModeGet, rpcclt_openapiPmlIntfViolationDDisableModeSet,
                     pml.ddisableMode),
    SIM_PORT_SETTING(rpcclt_openapiPmlIntfStickyModeGet, rpcclt_openapiPmlIntfStickyModeSet, pml.stickyMode),
    SIM_PORT_SETTING(rpcclt_openapiPmlIntfTrapFrequencyGet, rpcclt_openapiPmlIntfTrapFrequencySet, pml.trapFrequency,
                     0, kTrapIntervalMax),
    SIM_PORT_SETTING(rpcclt_openapiPmlIntfAgeTimeGet, rpcclt_openapiPmlIntfAgeTimeSet, pml.ageTime, 0, kAgeTimeMax),
    SIM_RULE(rpcclt_openapiPmlIntfLastViolationAddrGet, onPort<lastViolation>),
    SIM_RULE(rpcclt_openapiPmlIntfDynamicLearnedAddrCountGet, portCount<&Pml::dynamics>),
    SIM_RULE(rpcclt_openapiPmlIntfStaticLearnedAddrCountGet, (portCount<&Pml::statics, true>)),
    SIM_RULE(rpcclt_openapiPmlStaticAddrCountByVlanGet, staticCountByVlan),
    SIM_SETTING(rpcclt_openapiPmlVlanDynamicLimitGet, vlanGet<&PmlVlan::dynamicLimit>,
                rpcclt_openapiPmlVlanDynamicLimitSet, (vlanSet<&PmlVlan::dynamicLimit, kDynamicMax>)),
    SIM_RULE(rpcclt_openapiPmlVlanOperationalLimitGet, vlanOperationalLimit),
    SIM_SETTING(rpcclt_openapiPmlVlanViolationDDisableModeGet, vlanGet<&PmlVlan::ddisableMode>,
                rpcclt_openapiPmlVlanViolationDDisableModeSet, vlanSet<&PmlVlan::ddisableMode>),
    SIM_SETTING(rpcclt_openapiPmlVlanViolationTrapModeGet, vlanGet<&PmlVlan::trapMode>,
                rpcclt_openapiPmlVlanViolationTrapModeSet, vlanSet<&PmlVlan::trapMode>),
    SIM_SETTING(rpcclt_openapiPmlVlanModeGet, vlanGet<&PmlVlan::mode>, rpcclt_openapiPmlVlanModeSet,
                (vlanSet<&PmlVlan::mode, kVlanModeMax>)),
    SIM_SETTING(rpcclt_openapiPmlIntfVlanDynamicLimitGet, intfVlanLimitGet, rpcclt_openapiPmlIntfVlanDynamicLimitSet,
                intfVlanLimitSet),
    SIM_RULE(rpcclt_openapiPmlIntfVlanDynamicLearnedAddrCountGet, intfVlanDynamicCount),
    SIM_RULE(rpcclt_openapiPmlIntfStaticEntryGetFirst, (walkFirst<&Pml::statics, true>)),
    SIM_RULE(rpcclt_openapiPmlIntfStaticEntryGetNext, (walkNext<&Pml::statics, true>)),
    SIM_RULE(rpcclt_openapiPmlIntfDynamicEntryGetFirst, (walkFirst<&Pml::dynamics, false>)),
    SIM_RULE(rpcclt_openapiPmlIntfDynamicEntryGetNext, (walkNext<&Pml::dynamics, false>)),
    SIM_RULE(rpcclt_openapiPmlVlanDynamicEntryGetFirst, (walkFirst<&Pml::dynamics, false>)),
    SIM_RULE(rpcclt_openapiPmlVlanDynamicEntryGetNext, vlanDynamicNext),
    SIM_RULE(rpcclt_openapiPmlIntfStaticEntryAdd, staticAdd),
    SIM_RULE(rpcclt_openapiPmlIntfStaticEntryDelete, staticDelete),
    SIM_RULE(rpcclt_openapiPmlIntfDynamicToStaticMove, dynamicToStatic),
    SIM_RULE(rpcclt_openapiPmlDot1qciStreamSet, streamSet),
    SIM_RULE(rpcclt_openapiPmlDot1qciStreamGet, streamGet),
    SIM_RULE(rpcclt_openapiPmlDot1qciStreamDelete, streamDelete),
};

static void seedPml(Sim &s) {
  s.model.pml = Pml();
  for (auto &[n, p] : s.model.ports) seedPort(s, p);
  for (uint32_t vlan : s.model.vlans) seedVlan(s, vlan);
  seedTables(s.model.pml, s.model.layout.firstFibre());
}

const RuleGroup kPmlGroup = {kPmlRules, std::size(kPmlRules), seedPml};

}  // namespace sim
