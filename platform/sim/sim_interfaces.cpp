// The switch's interfaces: its copper and fibre ports, the CPU, the LAGs
// and routing interfaces on VLANs 1 and 10, with their identity, and the
// link of each port as its facts make it.
#include <stdio.h>

#include <algorithm>

#include "sim/sim.h"
#include "switch_facts.h"

namespace sim {

namespace {

constexpr uint32_t kFirstLag = SwitchLayout::kFirstLag;
struct RoutingVlan {
  uint32_t vlan, ifNum;
};
constexpr RoutingVlan kRoutingVlans[] = {{1, 700}, {10, 701}};
static_assert(kFirstLag + SwitchLayout::kMostLags <= 700, "the LAGs' numbers end below the routing interfaces'");

// The switch had been up this long when the scenario was loaded, so a
// change under a timeline is stamped after every seeded one.
constexpr int64_t kUptimeAtLoadS = 90000;
constexpr uint32_t kMacTextSize = 18;
constexpr uint32_t kDescriptionSize = 255;

constexpr uint32_t kPatchCableM = 3;
// Copper cables plugged in at load, in metres: the partners' and two
// whose far end is open.
struct Cable {
  uint32_t ifNum, metres;
};
constexpr Cable kCables[] = {{1, 30}, {2, 50}, {3, 5}, {4, 23}, {5, 15}, {kGuardedPort, 10}, {8, 80}, {12, 48}};

// The guarded port was shut down by BPDU guard after a rogue switch was
// plugged in, an hour before load.
constexpr char kGuardCause[] = "bpduguard";
constexpr int64_t kGuardTrippedBeforeLoadMs = 3600 * 1000;

// Link state 0 is up; operational state 2 is D-Disabled.
constexpr uint32_t kLinkUp = 0, kLinkDown = 1;
// Down is every value the table does not name.
constexpr uint32_t kOprDown = 0, kOprUp = facts::codeOf(facts::kOperationalStates, "port_enable"),
                   kOprDiagDisabled = facts::codeOf(facts::kOperationalStates, "port_diag_disable");

// The routing interface on `vlan`, if the switch has one there.
const RoutingVlan *routingOn(const Sim &s, uint64_t vlan) {
  for (const RoutingVlan &v : kRoutingVlans)
    if (v.vlan == vlan && vlanExists(s, v.vlan)) return &v;
  return nullptr;
}

// The interface numbered next above `after`, whatever its type.
std::optional<Interface> interfaceAbove(const Sim &s, uint32_t after) {
  const SwitchLayout &layout = s.model.layout;
  if (auto p = s.model.ports.upper_bound(after); p != s.model.ports.end()) return Interface{p->first, OPEN_INTF_TYPE_PHY};
  if (after <= layout.ports()) return Interface{layout.ports() + 1, OPEN_INTF_TYPE_CPU};
  if (layout.lags && after < kFirstLag + layout.lags - 1)
    return Interface{std::max(after + 1, kFirstLag), OPEN_INTF_TYPE_LAG};
  for (const RoutingVlan &v : kRoutingVlans)
    if (v.ifNum > after && routingOn(s, v.vlan)) return Interface{v.ifNum, OPEN_INTF_TYPE_VLAN};
  return std::nullopt;
}

// The walk by type from the start, or on from the interface given; the
// interface found is the last argument of both.
template <bool Next>
int ofTypeCall(Sim &s, Call &c) {
  using enum args::openapiIfNextGet::Param;
  static_assert(samePlace(args::openapiIfFirstGet::ifType, ifType));
  uint32_t after = static_cast<uint32_t>(Next ? c.in(ifNum) : 0);
  std::optional<Interface> i = nextOfType(s, static_cast<uint32_t>(c.in(ifType)), after);
  if (!i) return OPEN_E_NOT_FOUND;
  c.outLast(i->ifNum);
  return OPEN_E_NONE;
}

// Nothing is ever pending deletion here; the walk visits every interface.
int nextChangedCall(Sim &s, Call &c) {
  using enum args::openapiIfNextChangedGet::Param;
  std::optional<Interface> i = interfaceAbove(s, static_cast<uint32_t>(std::min<uint64_t>(c.in(ifNum), UINT32_MAX)));
  if (!i) return OPEN_E_NOT_FOUND;
  c.out(nextIfNum, i->ifNum);
  c.out(deletePending, 0);
  return OPEN_E_NONE;
}

std::string ifName(const Sim &, const Interface &i) {
  char name[32];
  if (i.type == OPEN_INTF_TYPE_PHY) snprintf(name, sizeof name, "0/%u", i.ifNum);
  else if (i.type == OPEN_INTF_TYPE_LAG) snprintf(name, sizeof name, "lag%u", i.ifNum - kFirstLag + 1);
  else if (i.type == OPEN_INTF_TYPE_CPU) snprintf(name, sizeof name, "cpu");
  else snprintf(name, sizeof name, "vlan%u", i.ifNum == kRoutingVlans[0].ifNum ? kRoutingVlans[0].vlan : kRoutingVlans[1].vlan);
  return name;
}

// Every interface answers these; `Answer` fills the one output.
template <uint64_t (*Answer)(const Sim &, const Interface &)>
int identityNum(Sim &s, Call &c) {
  std::optional<Interface> i = findInterface(s, c.port());
  if (!i) return OPEN_E_NOT_FOUND;
  c.outLast(Answer(s, *i));
  return OPEN_E_NONE;
}

template <std::string (*Answer)(const Sim &, const Interface &)>
int identityText(Sim &s, Call &c) {
  std::optional<Interface> i = findInterface(s, c.port());
  if (!i) return OPEN_E_NOT_FOUND;
  Call::writeText(c.last(), Answer(s, *i));
  return OPEN_E_NONE;
}

uint64_t typeOf(const Sim &, const Interface &i) { return i.type; }
uint64_t linkStateOf(const Sim &s, const Interface &i) { return linkUp(s, i.ifNum) ? kLinkUp : kLinkDown; }
uint64_t activeStateOf(const Sim &s, const Interface &i) { return linkUp(s, i.ifNum) ? 1 : 0; }
uint64_t oprStateOf(const Sim &s, const Interface &i) {
  const Port *p = findPort(s, i.ifNum);
  if (p && p->disableReason) return kOprDiagDisabled;
  return linkUp(s, i.ifNum) ? kOprUp : kOprDown;
}
uint64_t lastChangeOf(const Sim &s, const Interface &i) {
  const Port *p = findPort(s, i.ifNum);
  return p ? static_cast<uint64_t>(p->lastChangeS) : 0;
}
uint64_t ifIndexOf(const Sim &, const Interface &i) { return i.type == OPEN_INTF_TYPE_PHY ? i.ifNum : 100000 + i.ifNum; }
uint64_t maskOffsetOf(const Sim &, const Interface &i) { return i.ifNum; }
uint64_t macSizeOf(const Sim &, const Interface &) { return kMacTextSize; }
uint64_t descrSizeOf(const Sim &, const Interface &) { return kDescriptionSize; }
// Ports, routing interfaces and LAGs with members are attached.
uint64_t statusOf(const Sim &s, const Interface &i) {
  if (i.type == OPEN_INTF_TYPE_PHY || i.type == OPEN_INTF_TYPE_VLAN) return 1;
  for (const auto &[n, p] : s.model.ports)
    if (p.lagMember == i.ifNum) return 1;
  return 0;
}

std::string macOf(const Sim &, const Interface &i) {
  char mac[32];
  snprintf(mac, sizeof mac, "02:5A:10:00:%02X:%02X", i.ifNum >> 8, i.ifNum & 0xFF);
  return mac;
}

// Only ports carry a description; the others have none to show.
std::string descrOf(const Sim &s, const Interface &i) {
  const Port *p = findPort(s, i.ifNum);
  return p ? p->settings.description : "";
}

int numByNameCall(Sim &s, Call &c) {
  using enum args::rpcclt_openapiIfNumGet::Param;
  std::string wanted = c.text(name);
  for (std::optional<Interface> i = interfaceAbove(s, 0); i; i = interfaceAbove(s, i->ifNum)) {
    if (ifName(s, *i) != wanted) continue;
    c.out(ifNum, i->ifNum);
    return OPEN_E_NONE;
  }
  return OPEN_E_NOT_FOUND;
}

int routingInterfaceCall(Sim &s, Call &c) {
  using enum args::rpcclt_openapiRtrVlanIntfIfNumGet::Param;
  const RoutingVlan *v = routingOn(s, c.in(vlanId));
  if (!v) return OPEN_E_NOT_FOUND;
  c.out(ifNum, v->ifNum);
  return OPEN_E_NONE;
}

}  // namespace

const CallRule kInterfaceRules[] = {
    SIM_RULE(openapiIfFirstGet, ofTypeCall<false>),
    SIM_RULE(openapiIfNextGet, ofTypeCall<true>),
    SIM_RULE(openapiIfNextChangedGet, nextChangedCall),
    SIM_RULE(openapiIfNameGet, identityText<ifName>),
    SIM_RULE(openapiIfTypeGet, identityNum<typeOf>),
    SIM_RULE(openapiIfLinkStateGet, identityNum<linkStateOf>),
    SIM_RULE(openapiIfOprStateGet, identityNum<oprStateOf>),
    SIM_RULE(rpcclt_openapiIfActiveStateGet, identityNum<activeStateOf>),
    SIM_RULE(rpcclt_openapiIfLastChangeGet, identityNum<lastChangeOf>),
    SIM_RULE(rpcclt_openapiusmDbIfIndexGet, identityNum<ifIndexOf>),
    SIM_RULE(rpcclt_openapiConfigIdMaskOffsetGet, identityNum<maskOffsetOf>),
    SIM_RULE(rpcclt_openapiIfMacAddrSizeGet, identityNum<macSizeOf>),
    SIM_RULE(rpcclt_openapiIfMacAddrGet, identityText<macOf>),
    SIM_RULE(rpcclt_openapiIfDescrSizeGet, identityNum<descrSizeOf>),
    SIM_RULE(rpcclt_openapiIfDescrGet, identityText<descrOf>),
    SIM_RULE(rpcclt_openapiIfStatusGet, identityNum<statusOf>),
    SIM_RULE(rpcclt_openapiIfNumGet, numByNameCall),
    SIM_RULE(rpcclt_openapiRtrVlanIntfIfNumGet, routingInterfaceCall),
};

std::optional<Interface> findInterface(const Sim &s, uint32_t ifNum) {
  std::optional<Interface> i = ifNum ? interfaceAbove(s, ifNum - 1) : std::nullopt;
  return i && i->ifNum == ifNum ? i : std::nullopt;
}

std::optional<Interface> nextOfType(const Sim &s, uint32_t type, uint32_t after) {
  constexpr uint32_t kAnyType = 8;
  std::optional<Interface> i = interfaceAbove(s, after);
  while (i && type != kAnyType && i->type != type) i = interfaceAbove(s, i->ifNum);
  return i;
}

void changePort(Sim &s, Port &p, int64_t atMs, const std::function<void(Port &)> &change) {
  settleCounters(s, p, atMs);
  bool wasUp = isUp(p);
  change(p);
  if (isUp(p) != wasUp) p.lastChangeS = kUptimeAtLoadS + atMs / 1000;
}

// The partner comes or goes; whether the link follows is the port's to say.
// A partner on a copper port without a cable came with a patch cable.
void setLinkState(Sim &s, Port &p, bool up, int64_t atMs) {
  changePort(s, p, atMs, [&](Port &q) {
    q.partner = up;
    if (up && !isFibre(s, q) && !q.cableM) q.cableM = kPatchCableM;
  });
}

// Disabling and enabling a port again is the manual way out of D-Disable.
void setAdminState(Sim &s, Port &p, bool enabled, int64_t atMs) {
  changePort(s, p, atMs, [&](Port &q) {
    if (enabled && !q.adminEnabled) q.disableReason = 0;
    q.adminEnabled = enabled;
  });
}

bool vlanExists(const Sim &s, uint32_t vlan) {
  for (uint32_t v : s.model.vlans)
    if (v == vlan) return true;
  return false;
}

// A handful of ports have a cable plugged in, the storage array on the
// first fibre port; the guarded port keeps its cable and partner while
// shut.
static void seedInterfaces(Sim &s) {
  const SwitchLayout &layout = s.model.layout;
  s.model.ports.clear();
  for (uint32_t n = 1; n <= layout.ports(); ++n) {
    Port &p = s.model.ports[n];
    p.ifNum = n;
    p.medium = layout.isFibre(n) ? 2 : 1;
    p.partner = n <= 3 || n == 5 || n == kGuardedPort || n == 8 || n == layout.firstFibre();
    if (n == kGuardedPort) {
      p.disableReason = static_cast<uint32_t>(disableReasonOf(kGuardCause));
      p.tripAtMs = -kGuardTrippedBeforeLoadMs;
    }
    p.lastChangeS = isUp(p) ? 86400 + n * 37 : 0;
  }
  s.model.vlans.clear();
  for (const RoutingVlan &v : kRoutingVlans) s.model.vlans.push_back(v.vlan);
  // Each LAG bundles two copper ports, counted down from the fourth-last.
  for (uint32_t l = 0; l < layout.lags && 3 + 2 * l + 1 < layout.copperPorts; ++l) {
    findPort(s, layout.copperPorts - 3 - 2 * l)->lagMember = kFirstLag + l;
    findPort(s, layout.copperPorts - 2 - 2 * l)->lagMember = kFirstLag + l;
  }
  for (const Cable &c : kCables)
    if (Port *p = findPort(s, c.ifNum)) p->cableM = c.metres;
  findPort(s, 1)->settings.description = "Uplink to core";
  findPort(s, 2)->settings.description = "Office access point";
  findPort(s, layout.firstFibre())->settings.description = "Storage array";
}

const RuleGroup kInterfaceGroup = {kInterfaceRules, std::size(kInterfaceRules), seedInterfaces};

}  // namespace sim
