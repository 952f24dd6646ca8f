// The switch's interfaces: 24 copper and 4 fibre ports, the CPU, two LAGs
// and routing interfaces on VLANs 1 and 10, with their identity state.
#include <stdio.h>

#include "sim/sim.h"

namespace sim {

namespace {

constexpr uint32_t kFirstLag = 650;
struct RoutingVlan {
  uint32_t vlan, ifNum;
};
constexpr RoutingVlan kRoutingVlans[] = {{1, 700}, {10, 701}};

int firstOfTypeCall(Sim &s, Call &c) {
  const Interface *i = firstOfType(s, static_cast<uint32_t>(c.in(0)));
  if (!i) return -29;
  c.setOut(0, i->ifNum);
  return 0;
}

int nextOfTypeCall(Sim &s, Call &c) {
  const Interface *i = nextOfType(s, static_cast<uint32_t>(c.in(0)), static_cast<uint32_t>(c.in(1)));
  if (!i) return -29;
  c.setOut(0, i->ifNum);
  return 0;
}

// Nothing is ever pending deletion here; the walk visits every interface.
int nextChangedCall(Sim &s, Call &c) {
  for (const Interface &i : s.interfaces) {
    if (i.ifNum <= c.in(0)) continue;
    c.setOut(0, i.ifNum);
    c.setOut(1, 0);
    return 0;
  }
  return -29;
}

std::string ifName(const Interface &i) {
  char name[32];
  if (i.type == OPEN_INTF_TYPE_PHY) snprintf(name, sizeof name, "0/%u", i.ifNum);
  else if (i.type == OPEN_INTF_TYPE_LAG) snprintf(name, sizeof name, "lag%u", i.ifNum - kFirstLag + 1);
  else if (i.type == OPEN_INTF_TYPE_CPU) snprintf(name, sizeof name, "cpu");
  else snprintf(name, sizeof name, "vlan%u", i.ifNum == kRoutingVlans[0].ifNum ? 1u : 10u);
  return name;
}

void seedIdentity(Sim &s, const Interface &i, uint32_t storagePort) {
  std::string key = std::to_string(i.ifNum);
  bool phy = i.type == OPEN_INTF_TYPE_PHY;
  // A handful of ports have a cable plugged in, the storage array on the
  // first fibre port; port 7 was shut down by a protection feature.
  bool up = phy && (i.ifNum <= 3 || i.ifNum == 5 || i.ifNum == 8 || i.ifNum == storagePort);
  char mac[32];
  snprintf(mac, sizeof mac, "02:5A:10:00:%02X:%02X", i.ifNum >> 8, i.ifNum & 0xFF);

  s.put("openapiIfNameGet", key, {text(ifName(i))});
  s.put("rpcclt_openapiIfNumGet", ifName(i), {num(i.ifNum)});
  s.put("openapiIfTypeGet", key, {num(i.type)});
  s.put("openapiIfLinkStateGet", key, {num(up ? 0 : 1)});
  s.put("openapiIfOprStateGet", key, {num(i.ifNum == 7 ? 2 : up ? 1 : 0)});
  s.put("rpcclt_openapiIfActiveStateGet", key, {num(up ? 1 : 0)});
  s.put("rpcclt_openapiIfLastChangeGet", key, {num(up ? 86400 + i.ifNum * 37 : 0)});
  s.put("rpcclt_openapiusmDbIfIndexGet", key, {num(phy ? i.ifNum : 100000 + i.ifNum)});
  s.put("rpcclt_openapiConfigIdMaskOffsetGet", key, {num(i.ifNum)});
  s.put("rpcclt_openapiIfMacAddrSizeGet", key, {num(18)});
  s.put("rpcclt_openapiIfMacAddrGet", key, {text(mac)});
  s.put("rpcclt_openapiIfDescrSizeGet", key, {num(255)});
  s.put("rpcclt_openapiIfStatusGet", key, {num(i.type == OPEN_INTF_TYPE_VLAN || phy || i.ifNum == kFirstLag ? 1 : 0)});
  const char *descr = i.ifNum == 1 ? "Uplink to core" : i.ifNum == 2 ? "Office access point" : i.ifNum == storagePort ? "Storage array" : "";
  s.put("rpcclt_openapiIfDescrGet", key, {text(descr)});
}

}  // namespace

const CallRule kInterfaceRules[] = {
    SIM_CUSTOM(openapiIfFirstGet, firstOfTypeCall),
    SIM_CUSTOM(openapiIfNextGet, nextOfTypeCall),
    SIM_CUSTOM(openapiIfNextChangedGet, nextChangedCall),
    SIM_GET(openapiIfNameGet),
    SIM_GET(openapiIfTypeGet),
    SIM_GET(openapiIfLinkStateGet),
    SIM_GET(openapiIfOprStateGet),
    SIM_GET(rpcclt_openapiIfActiveStateGet),
    SIM_GET(rpcclt_openapiIfLastChangeGet),
    SIM_GET(rpcclt_openapiusmDbIfIndexGet),
    SIM_GET(rpcclt_openapiConfigIdMaskOffsetGet),
    SIM_GET(rpcclt_openapiIfMacAddrSizeGet),
    SIM_GET(rpcclt_openapiIfMacAddrGet),
    SIM_GET(rpcclt_openapiIfDescrSizeGet),
    SIM_GET(rpcclt_openapiIfDescrGet),
    SIM_GET(rpcclt_openapiIfStatusGet),
    SIM_GET(rpcclt_openapiIfNumGet),
};
const size_t kInterfaceRuleCount = sizeof kInterfaceRules / sizeof kInterfaceRules[0];

// The switch had been up this long when the scenario was loaded, so a
// change under a timeline is stamped after every seeded one.
constexpr int64_t kUptimeAtLoad = 90000;

// What the link state is read from, in every group that reads it, plus
// the traffic the counters held until now.
void setLinkState(Sim &s, uint32_t ifNum, bool up, int64_t atMs) {
  if (linkUp(s, ifNum) == up) return;
  holdCountedTraffic(s, ifNum, atMs);
  std::string key = std::to_string(ifNum);
  s.put("openapiIfLinkStateGet", key, {num(up ? 0 : 1)});
  s.put("openapiIfOprStateGet", key, {num(up ? 1 : 0)});
  s.put("rpcclt_openapiIfActiveStateGet", key, {num(up ? 1 : 0)});
  s.put("rpcclt_openapiIfLastChangeGet", key, {num(kUptimeAtLoad + atMs / 1000)});
  s.put("openapiIfDuplexGet", key, {num(up ? 1 : 2)});
}

void setAdminState(Sim &s, uint32_t ifNum, bool enabled, int64_t atMs) {
  std::string key = std::to_string(ifNum);
  s.put("openapiIfAdminStateGet", key, {num(enabled ? 1 : 0)});
  if (!enabled) {
    if (!s.upBeforeAdminDown.count(ifNum)) s.upBeforeAdminDown[ifNum] = linkUp(s, ifNum);
    setLinkState(s, ifNum, false, atMs);
    return;
  }
  auto held = s.upBeforeAdminDown.find(ifNum);
  if (held == s.upBeforeAdminDown.end()) return;
  setLinkState(s, ifNum, held->second, atMs);
  s.upBeforeAdminDown.erase(held);
}

void seedInterfaces(Sim &s) {
  SwitchLayout layout = layoutOf(s);
  s.interfaces.clear();
  for (uint32_t p = 1; p <= layout.ports(); ++p) s.interfaces.push_back({p, OPEN_INTF_TYPE_PHY});
  s.interfaces.push_back({layout.ports() + 1, OPEN_INTF_TYPE_CPU});
  for (uint32_t l = 0; l < layout.lags; ++l) s.interfaces.push_back({kFirstLag + l, OPEN_INTF_TYPE_LAG});
  for (const RoutingVlan &v : kRoutingVlans) s.interfaces.push_back({v.ifNum, OPEN_INTF_TYPE_VLAN});
  for (const Interface &i : s.interfaces) seedIdentity(s, i, layout.firstFibre());
}

}  // namespace sim
