// The switch's interfaces: its copper and fibre ports, the CPU, the LAGs
// and routing interfaces on VLANs 1 and 10, with their identity, and the
// link of each port as its facts make it.
#include <stdio.h>

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
constexpr Cable kCables[] = {{1, 30}, {2, 50}, {3, 5}, {4, 23}, {5, 15}, {7, 10}, {8, 80}, {12, 48}};

// Link state 0 is up; operational state 2 is D-Disabled.
constexpr uint32_t kLinkUp = 0, kLinkDown = 1;
// Down is every value the table does not name.
constexpr uint32_t kOprDown = 0, kOprUp = facts::codeOf(facts::kOperationalStates, "port_enable"),
                   kOprDiagDisabled = facts::codeOf(facts::kOperationalStates, "port_diag_disable");

int firstOfTypeCall(Sim &s, Call &c) {
  const Interface *i = firstOfType(s, static_cast<uint32_t>(c.in("ifType")));
  if (!i) return OPEN_E_NOT_FOUND;
  c.out("ifNum", i->ifNum);
  return OPEN_E_NONE;
}

int nextOfTypeCall(Sim &s, Call &c) {
  const Interface *i = nextOfType(s, static_cast<uint32_t>(c.in("ifType")), static_cast<uint32_t>(c.in("ifNum")));
  if (!i) return OPEN_E_NOT_FOUND;
  c.out("nextIfNum", i->ifNum);
  return OPEN_E_NONE;
}

// Nothing is ever pending deletion here; the walk visits every interface.
int nextChangedCall(Sim &s, Call &c) {
  for (const Interface &i : s.interfaces) {
    if (i.ifNum <= c.in("ifNum")) continue;
    c.out("nextIfNum", i.ifNum);
    c.out("deletePending", 0);
    return OPEN_E_NONE;
  }
  return OPEN_E_NOT_FOUND;
}

std::string ifName(const Interface &i) {
  char name[32];
  if (i.type == OPEN_INTF_TYPE_PHY) snprintf(name, sizeof name, "0/%u", i.ifNum);
  else if (i.type == OPEN_INTF_TYPE_LAG) snprintf(name, sizeof name, "lag%u", i.ifNum - kFirstLag + 1);
  else if (i.type == OPEN_INTF_TYPE_CPU) snprintf(name, sizeof name, "cpu");
  else snprintf(name, sizeof name, "vlan%u", i.ifNum == kRoutingVlans[0].ifNum ? 1u : 10u);
  return name;
}

// Every interface answers these; `answer` fills the named output.
template <uint64_t (*Answer)(const Sim &, const Interface &)>
int identityNum(Sim &s, Call &c) {
  const Interface *i = findInterface(s, c.port());
  if (!i) return OPEN_E_NOT_FOUND;
  c.out(parameterNames(*c.id).back().c_str(), Answer(s, *i));
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

int nameCall(Sim &s, Call &c) {
  const Interface *i = findInterface(s, c.port());
  if (!i) return OPEN_E_NOT_FOUND;
  c.outText("name", ifName(*i));
  return OPEN_E_NONE;
}

int macCall(Sim &s, Call &c) {
  const Interface *i = findInterface(s, c.port());
  if (!i) return OPEN_E_NOT_FOUND;
  char mac[32];
  snprintf(mac, sizeof mac, "02:5A:10:00:%02X:%02X", i->ifNum >> 8, i->ifNum & 0xFF);
  c.outText("macAddr", mac);
  return OPEN_E_NONE;
}

// Only ports carry a description; the others have none to show.
int descrCall(Sim &s, Call &c) {
  const Interface *i = findInterface(s, c.port());
  if (!i) return OPEN_E_NOT_FOUND;
  const Port *p = findPort(s, i->ifNum);
  c.outText("descr", p ? p->settings.description : "");
  return OPEN_E_NONE;
}

int numByNameCall(Sim &s, Call &c) {
  std::string name = c.text("name");
  for (const Interface &i : s.interfaces) {
    if (ifName(i) != name) continue;
    c.out("ifNum", i.ifNum);
    return OPEN_E_NONE;
  }
  return OPEN_E_NOT_FOUND;
}

}  // namespace

const CallRule kInterfaceRules[] = {
    SIM_RULE(openapiIfFirstGet, firstOfTypeCall),
    SIM_RULE(openapiIfNextGet, nextOfTypeCall),
    SIM_RULE(openapiIfNextChangedGet, nextChangedCall),
    SIM_RULE(openapiIfNameGet, nameCall),
    SIM_RULE(openapiIfTypeGet, identityNum<typeOf>),
    SIM_RULE(openapiIfLinkStateGet, identityNum<linkStateOf>),
    SIM_RULE(openapiIfOprStateGet, identityNum<oprStateOf>),
    SIM_RULE(rpcclt_openapiIfActiveStateGet, identityNum<activeStateOf>),
    SIM_RULE(rpcclt_openapiIfLastChangeGet, identityNum<lastChangeOf>),
    SIM_RULE(rpcclt_openapiusmDbIfIndexGet, identityNum<ifIndexOf>),
    SIM_RULE(rpcclt_openapiConfigIdMaskOffsetGet, identityNum<maskOffsetOf>),
    SIM_RULE(rpcclt_openapiIfMacAddrSizeGet, identityNum<macSizeOf>),
    SIM_RULE(rpcclt_openapiIfMacAddrGet, macCall),
    SIM_RULE(rpcclt_openapiIfDescrSizeGet, identityNum<descrSizeOf>),
    SIM_RULE(rpcclt_openapiIfDescrGet, descrCall),
    SIM_RULE(rpcclt_openapiIfStatusGet, identityNum<statusOf>),
    SIM_RULE(rpcclt_openapiIfNumGet, numByNameCall),
};
const size_t kInterfaceRuleCount = sizeof kInterfaceRules / sizeof kInterfaceRules[0];

void changePort(Sim &s, Port &p, int64_t atMs, const std::function<void(Port &)> &change) {
  settleCounters(s, p, atMs);
  bool wasUp = isUp(p);
  change(p);
  if (isUp(p) != wasUp) p.lastChangeS = kUptimeAtLoadS + atMs / 1000;
}

// The partner comes or goes; whether the link follows is the port's to say.
// A partner on a copper port without a cable came with a patch cable.
void setLinkState(Sim &s, uint32_t ifNum, bool up, int64_t atMs) {
  Port *p = findPort(s, ifNum);
  if (!p) return;
  changePort(s, *p, atMs, [&](Port &q) {
    q.partner = up;
    if (up && !isFibre(s, q) && !q.cableM) q.cableM = kPatchCableM;
  });
}

// Disabling and enabling a port again is the manual way out of D-Disable.
void setAdminState(Sim &s, uint32_t ifNum, bool enabled, int64_t atMs) {
  Port *p = findPort(s, ifNum);
  if (!p) return;
  changePort(s, *p, atMs, [&](Port &q) {
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
// first fibre port; port 7 was shut down by a protection feature (its
// cable is still there).
void seedInterfaces(Sim &s) {
  const SwitchLayout &layout = s.model.layout;
  s.interfaces.clear();
  s.model.ports.clear();
  for (uint32_t n = 1; n <= layout.ports(); ++n) {
    s.interfaces.push_back({n, OPEN_INTF_TYPE_PHY});
    Port &p = s.model.ports[n];
    p.ifNum = n;
    p.medium = layout.isFibre(n) ? 2 : 1;
    p.partner = n <= 3 || n == 5 || n == 7 || n == 8 || n == layout.firstFibre();
    p.lastChangeS = p.partner && n != 7 ? 86400 + n * 37 : 0;
  }
  s.interfaces.push_back({layout.ports() + 1, OPEN_INTF_TYPE_CPU});
  for (uint32_t l = 0; l < layout.lags; ++l) s.interfaces.push_back({kFirstLag + l, OPEN_INTF_TYPE_LAG});
  s.model.vlans.clear();
  for (const RoutingVlan &v : kRoutingVlans) {
    s.interfaces.push_back({v.ifNum, OPEN_INTF_TYPE_VLAN});
    s.model.vlans.push_back(v.vlan);
  }
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

}  // namespace sim
