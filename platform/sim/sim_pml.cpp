// Port MAC locking: the global and VLAN-wide switches, per-port lock modes,
// limits and violation actions, the static and dynamic address tables of
// locked ports and the 802.1Qci streams bound to locked addresses.
//
// Configuration values live in the call state like every other group; the
// address tables are structured and live under model "pml":
//   {"static":  [{"ifNum", "macAddr", "vlanId", "sticky", "learned"}],
//    "dynamic": [{"ifNum", "macAddr", "vlanId"}],
//    "streams": [{"ifNum", "macAddr", "vlanId", "streamId"}]}
// Addresses are kept in one canonical form (upper-case hex pairs joined by
// ":"); the walks visit a port's entries by address text, then VLAN.
#include <ctype.h>

#include <algorithm>
#include <tuple>

#include "sim/sim.h"

namespace sim {

namespace {

constexpr uint32_t kDynamicMax = 4096;
constexpr uint32_t kStaticMax = 64;
constexpr uint32_t kStaticDefault = 20;
constexpr uint32_t kTrapIntervalMax = 1000000;  // seconds between traps
constexpr uint32_t kAgeTimeMax = 1440;          // minutes
constexpr uint32_t kVlanModeMax = 1;            // 0 off, 1 VLAN-based locking
constexpr uint32_t kStreamMax = 2047;
constexpr uint32_t kVlanMax = 4093;
// The VLANs configured on the switch (those of its routing interfaces).
constexpr uint32_t kVlans[] = {1, 10};

constexpr char kModelKey[] = "pml";
constexpr char kStaticLimitGet[] = "rpcclt_openapiPmlIntfStaticLimitGet";
constexpr char kStickyModeGet[] = "rpcclt_openapiPmlIntfStickyModeGet";
constexpr char kVlanAdminModeGet[] = "rpcclt_openapiPmlVlanAdminModeGet";
constexpr char kVlanModeGet[] = "rpcclt_openapiPmlVlanModeGet";
constexpr char kVlanDynamicLimitGet[] = "rpcclt_openapiPmlVlanDynamicLimitGet";

struct Entry {
  uint32_t ifNum = 0;
  std::string mac;
  uint32_t vlan = 0;
  bool sticky = false;   // static entries
  bool learned = false;  // static entries that came from learning
  uint32_t stream = 0;   // stream bindings
};
using Table = std::vector<Entry>;

struct Tables {
  Table statics, dynamics, streams;
};

// --- model <-> tables -------------------------------------------------------

uint32_t field(const cJSON *o, const char *key) {
  const cJSON *v = cJSON_GetObjectItemCaseSensitive(o, key);
  return cJSON_IsNumber(v) ? static_cast<uint32_t>(v->valuedouble) : 0;
}

Table readTable(const cJSON *model, const char *name) {
  Table t;
  const cJSON *item = nullptr;
  cJSON_ArrayForEach(item, cJSON_GetObjectItemCaseSensitive(model, name)) {
    Entry e;
    e.ifNum = field(item, "ifNum");
    const cJSON *mac = cJSON_GetObjectItemCaseSensitive(item, "macAddr");
    e.mac = cJSON_IsString(mac) ? mac->valuestring : "";
    e.vlan = field(item, "vlanId");
    e.sticky = cJSON_IsTrue(cJSON_GetObjectItemCaseSensitive(item, "sticky"));
    e.learned = cJSON_IsTrue(cJSON_GetObjectItemCaseSensitive(item, "learned"));
    e.stream = field(item, "streamId");
    t.push_back(e);
  }
  return t;
}

enum class Shape { Static, Dynamic, Stream };

cJSON *writeTable(const Table &t, Shape shape) {
  cJSON *a = cJSON_CreateArray();
  for (const Entry &e : t) {
    cJSON *o = cJSON_CreateObject();
    cJSON_AddNumberToObject(o, "ifNum", e.ifNum);
    cJSON_AddStringToObject(o, "macAddr", e.mac.c_str());
    cJSON_AddNumberToObject(o, "vlanId", e.vlan);
    if (shape == Shape::Static) {
      cJSON_AddBoolToObject(o, "sticky", e.sticky);
      cJSON_AddBoolToObject(o, "learned", e.learned);
    }
    if (shape == Shape::Stream) cJSON_AddNumberToObject(o, "streamId", e.stream);
    cJSON_AddItemToArray(a, o);
  }
  return a;
}

Tables load(const Sim &s) {
  const cJSON *m = cJSON_GetObjectItemCaseSensitive(s.model.get(), kModelKey);
  return {readTable(m, "static"), readTable(m, "dynamic"), readTable(m, "streams")};
}

void save(Sim &s, const Tables &t) {
  cJSON *m = cJSON_CreateObject();
  cJSON_AddItemToObject(m, "static", writeTable(t.statics, Shape::Static));
  cJSON_AddItemToObject(m, "dynamic", writeTable(t.dynamics, Shape::Dynamic));
  cJSON_AddItemToObject(m, "streams", writeTable(t.streams, Shape::Stream));
  cJSON_DeleteItemFromObjectCaseSensitive(s.model.get(), kModelKey);
  cJSON_AddItemToObject(s.model.get(), kModelKey, m);
}

// --- addresses, ports, VLANs ------------------------------------------------

// Upper-case, "-" read as ":"; used for walk keys, which need not be valid.
std::string walkKey(std::string mac) {
  for (char &ch : mac) ch = ch == '-' ? ':' : static_cast<char>(toupper(static_cast<unsigned char>(ch)));
  return mac;
}

// A unicast address as six hex pairs separated by ":" or "-".
bool canonicalMac(const std::string &text, std::string *out) {
  if (text.size() != 17) return false;
  for (size_t i = 0; i < text.size(); ++i) {
    bool separator = i % 3 == 2;
    if (separator ? text[i] != ':' && text[i] != '-' : !isxdigit(static_cast<unsigned char>(text[i]))) return false;
  }
  *out = walkKey(text);
  int low = isdigit(static_cast<unsigned char>((*out)[1])) ? (*out)[1] - '0' : (*out)[1] - 'A' + 10;
  return (low & 1) == 0;
}

bool lockable(const Sim &s, uint64_t ifNum) {
  const Interface *i = findInterface(s, static_cast<uint32_t>(ifNum));
  return i && i->type == OPEN_INTF_TYPE_PHY;
}

bool vlanKnown(uint64_t vlan) { return std::find(std::begin(kVlans), std::end(kVlans), vlan) != std::end(kVlans); }

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
  c.setOut(0, lockable(s, c.in(0)) ? 1 : 0);
  return 0;
}

int nextValidIntf(Sim &s, Call &c) {
  const Interface *next = nextOfType(s, OPEN_INTF_TYPE_PHY, static_cast<uint32_t>(c.in(0)));
  if (!next) return -29;
  c.setOut(0, next->ifNum);
  return 0;
}

// Numeric settings the switch checks against its range before storing.
struct RangedSetting {
  const char *setter;
  const char *getter;
  uint8_t keyInputs;
  uint32_t max;
};
const RangedSetting kRangedSettings[] = {
    {"rpcclt_openapiPmlIntfDynamicLimitSet", "rpcclt_openapiPmlIntfDynamicLimitGet", 1, kDynamicMax},
    {"rpcclt_openapiPmlIntfStaticLimitSet", kStaticLimitGet, 1, kStaticMax},
    {"rpcclt_openapiPmlIntfTrapFrequencySet", "rpcclt_openapiPmlIntfTrapFrequencyGet", 1, kTrapIntervalMax},
    {"rpcclt_openapiPmlIntfAgeTimeSet", "rpcclt_openapiPmlIntfAgeTimeGet", 1, kAgeTimeMax},
    {"rpcclt_openapiPmlVlanDynamicLimitSet", kVlanDynamicLimitGet, 1, kDynamicMax},
    {"rpcclt_openapiPmlVlanModeSet", kVlanModeGet, 1, kVlanModeMax},
    {"rpcclt_openapiPmlIntfVlanDynamicLimitSet", "rpcclt_openapiPmlIntfVlanDynamicLimitGet", 2, kDynamicMax},
};

int setRanged(Sim &s, Call &c) {
  for (const RangedSetting &r : kRangedSettings) {
    if (c.name != r.setter) continue;
    std::string key = c.keyOf(r.keyInputs);
    if (!s.stored(r.getter, key)) return -29;
    uint64_t value = c.in(r.keyInputs);
    if (value > r.max) return -22;
    s.put(r.getter, key, {num(static_cast<int64_t>(value))});
    return 0;
  }
  return -28;
}

// --- counts -----------------------------------------------------------------

int staticGlobalCount(Sim &s, Call &c) {
  c.setOut(0, load(s).statics.size());
  return 0;
}

int staticCount(Sim &s, Call &c) {
  if (!lockable(s, c.in(0))) return -29;
  c.setOut(0, countIf(load(s).statics, [&](const Entry &e) { return e.ifNum == c.in(0); }));
  return 0;
}

int staticLearnedCount(Sim &s, Call &c) {
  if (!lockable(s, c.in(0))) return -29;
  c.setOut(0, countIf(load(s).statics, [&](const Entry &e) { return e.ifNum == c.in(0) && e.learned; }));
  return 0;
}

int dynamicCount(Sim &s, Call &c) {
  if (!lockable(s, c.in(0))) return -29;
  c.setOut(0, countIf(load(s).dynamics, [&](const Entry &e) { return e.ifNum == c.in(0); }));
  return 0;
}

int staticCountByVlan(Sim &s, Call &c) {
  if (!vlanKnown(c.in(0))) return -29;
  c.setOut(0, countIf(load(s).statics, [&](const Entry &e) { return e.vlan == c.in(0); }));
  return 0;
}

int intfVlanDynamicCount(Sim &s, Call &c) {
  if (!lockable(s, c.in(0)) || !vlanKnown(c.in(1))) return -29;
  auto onBoth = [&](const Entry &e) { return e.ifNum == c.in(0) && e.vlan == c.in(1); };
  c.setOut(0, countIf(load(s).dynamics, onBoth));
  return 0;
}

// The configured limit is in force only while VLAN-based locking is on,
// both switch-wide and on the VLAN.
int vlanOperationalLimit(Sim &s, Call &c) {
  if (!vlanKnown(c.in(0))) return -29;
  std::string vlan = std::to_string(c.in(0));
  bool active = storedNum(s, kVlanAdminModeGet, "", 0) == 1 && storedNum(s, kVlanModeGet, vlan, 0) == 1;
  c.setOut(0, active ? static_cast<uint64_t>(storedNum(s, kVlanDynamicLimitGet, vlan, 0)) : 0);
  return 0;
}

// --- walks ------------------------------------------------------------------

// Output order of every walk: address text, VLAN, then (static) sticky.
void writeEntry(Call &c, const Entry &e, bool withSticky) {
  c.setOutText(0, e.mac);
  c.setOut(1, e.vlan);
  if (withSticky) c.setOut(2, e.sticky ? 1 : 0);
}

int walkFirst(Sim &s, Call &c, Table Tables::*table, bool withSticky) {
  if (!lockable(s, c.in(0))) return -29;
  std::vector<Entry> entries = portEntries(load(s).*table, c.in(0));
  if (entries.empty()) return -29;
  writeEntry(c, entries.front(), withSticky);
  return 0;
}

// Inputs: port, address, VLAN; the entry after (address, VLAN).
int walkNext(Sim &s, Call &c, Table Tables::*table, bool withSticky) {
  if (!lockable(s, c.in(0))) return -29;
  std::string mac = walkKey(c.inText(1));
  uint64_t vlan = c.in(2);
  for (const Entry &e : portEntries(load(s).*table, c.in(0))) {
    if (std::tie(e.mac, e.vlan) <= std::tie(mac, vlan)) continue;
    writeEntry(c, e, withSticky);
    return 0;
  }
  return -29;
}

int staticFirst(Sim &s, Call &c) { return walkFirst(s, c, &Tables::statics, true); }
int staticNext(Sim &s, Call &c) { return walkNext(s, c, &Tables::statics, true); }
int dynamicFirst(Sim &s, Call &c) { return walkFirst(s, c, &Tables::dynamics, false); }
int dynamicNext(Sim &s, Call &c) { return walkNext(s, c, &Tables::dynamics, false); }

// The VLAN-based walk goes over the port's learned addresses keyed by the
// address alone: the same address learned in a second VLAN is not visited.
int vlanDynamicNext(Sim &s, Call &c) {
  if (!lockable(s, c.in(0))) return -29;
  std::string mac = walkKey(c.inText(1));
  for (const Entry &e : portEntries(load(s).dynamics, c.in(0))) {
    if (e.mac <= mac) continue;
    writeEntry(c, e, false);
    return 0;
  }
  return -29;
}

// --- static entries ---------------------------------------------------------

// Inputs of every entry call: port, address, VLAN. 0 when they name a
// lockable port and a well-formed address.
int entryKey(const Sim &s, const Call &c, std::string *mac) {
  if (!lockable(s, c.in(0))) return -29;
  if (!canonicalMac(c.inText(1), mac) || c.in(2) < 1 || c.in(2) > kVlanMax) return -22;
  return 0;
}

uint32_t staticLimit(const Sim &s, uint64_t ifNum) {
  return static_cast<uint32_t>(storedNum(s, kStaticLimitGet, std::to_string(ifNum), kStaticDefault));
}

// An address is static on one port per VLAN. A port at its static limit
// refuses more with a general failure (-1), as the switch does for a full
// table.
int staticAdd(Sim &s, Call &c) {
  std::string mac;
  if (int rc = entryKey(s, c, &mac)) return rc;
  uint64_t ifNum = c.in(0), vlan = c.in(2);
  Tables t = load(s);
  if (countIf(t.statics, [&](const Entry &e) { return e.mac == mac && e.vlan == vlan; })) return -24;
  if (countIf(t.statics, [&](const Entry &e) { return e.ifNum == ifNum; }) >= staticLimit(s, ifNum)) return -1;
  std::erase_if(t.dynamics, [&](const Entry &e) { return e.mac == mac && e.vlan == vlan; });
  Entry e;
  e.ifNum = static_cast<uint32_t>(ifNum);
  e.mac = mac;
  e.vlan = static_cast<uint32_t>(vlan);
  e.sticky = c.in(3) == 1;
  t.statics.push_back(e);
  save(s, t);
  return 0;
}

// Removing an entry also unbinds its stream.
int staticDelete(Sim &s, Call &c) {
  std::string mac;
  if (int rc = entryKey(s, c, &mac)) return rc;
  Tables t = load(s);
  if (!findEntry(t.statics, c.in(0), mac, c.in(2))) return -29;
  auto same = [&](const Entry &e) { return sameEntry(e, c.in(0), mac, c.in(2)); };
  std::erase_if(t.statics, same);
  std::erase_if(t.streams, same);
  save(s, t);
  return 0;
}

// All or nothing: when the port's static limit has no room for every
// learned address, nothing moves (-1).
int dynamicToStatic(Sim &s, Call &c) {
  uint64_t ifNum = c.in(0);
  if (!lockable(s, ifNum)) return -29;
  Tables t = load(s);
  auto onPort = [&](const Entry &e) { return e.ifNum == ifNum; };
  if (countIf(t.statics, onPort) + countIf(t.dynamics, onPort) > staticLimit(s, ifNum)) return -1;
  bool sticky = storedNum(s, kStickyModeGet, std::to_string(ifNum), 0) == 1;
  for (Entry e : t.dynamics) {
    if (!onPort(e)) continue;
    e.sticky = sticky;
    e.learned = true;
    t.statics.push_back(e);
  }
  std::erase_if(t.dynamics, onPort);
  save(s, t);
  return 0;
}

// --- 802.1Qci streams -------------------------------------------------------

// Inputs: port, address, VLAN, stream. A stream binds to an address locked
// on the port, static or learned.
int streamSet(Sim &s, Call &c) {
  std::string mac;
  if (int rc = entryKey(s, c, &mac)) return rc;
  uint64_t stream = c.in(3);
  if (stream < 1 || stream > kStreamMax) return -22;
  Tables t = load(s);
  if (!findEntry(t.statics, c.in(0), mac, c.in(2)) && !findEntry(t.dynamics, c.in(0), mac, c.in(2))) return -29;
  Entry *bound = findEntry(t.streams, c.in(0), mac, c.in(2));
  if (!bound) {
    Entry e;
    e.ifNum = static_cast<uint32_t>(c.in(0));
    e.mac = mac;
    e.vlan = static_cast<uint32_t>(c.in(2));
    t.streams.push_back(e);
    bound = &t.streams.back();
  }
  bound->stream = static_cast<uint32_t>(stream);
  save(s, t);
  return 0;
}

int streamGet(Sim &s, Call &c) {
  std::string mac;
  if (int rc = entryKey(s, c, &mac)) return rc;
  Tables t = load(s);
  const Entry *bound = findEntry(t.streams, c.in(0), mac, c.in(2));
  if (!bound) return -29;
  c.setOut(0, bound->stream);
  return 0;
}

// The stream named must be the one bound.
int streamDelete(Sim &s, Call &c) {
  std::string mac;
  if (int rc = entryKey(s, c, &mac)) return rc;
  Tables t = load(s);
  const Entry *bound = findEntry(t.streams, c.in(0), mac, c.in(2));
  if (!bound) return -29;
  if (bound->stream != c.in(3)) return -22;
  std::erase_if(t.streams, [&](const Entry &e) { return sameEntry(e, c.in(0), mac, c.in(2)); });
  save(s, t);
  return 0;
}

// --- default scenario -------------------------------------------------------

// Locked ports are those with a device plugged in: the uplink, the office
// access point (trap on violation), a desk port that was D-Disabled after
// a foreign laptop appeared, a sticky printer port, and two more.
constexpr uint32_t kLockedPorts[] = {1, 2, 3, 5, 8, 25};

bool isLocked(uint32_t port) {
  return std::find(std::begin(kLockedPorts), std::end(kLockedPorts), port) != std::end(kLockedPorts);
}

void seedPort(Sim &s, uint32_t port) {
  std::string key = std::to_string(port);
  s.put("rpcclt_openapiPmlIntfModeGet", key, {num(isLocked(port) ? 1 : 0)});
  s.put("rpcclt_openapiPmlIntfDynamicLimitGet", key, {num(port == 2 ? 32 : kDynamicMax)});
  s.put(kStaticLimitGet, key, {num(kStaticDefault)});
  s.put("rpcclt_openapiPmlIntfDynamicMaxLimitGet", key, {num(kDynamicMax)});
  s.put("rpcclt_openapiPmlIntfStaticMaxLimitGet", key, {num(kStaticMax)});
  s.put("rpcclt_openapiPmlIntfViolationTrapModeGet", key, {num(port == 2 ? 1 : 0)});
  s.put("rpcclt_openapiPmlIntfViolationDDisableModeGet", key, {num(port == 3 ? 1 : 0)});
  s.put(kStickyModeGet, key, {num(port == 5 ? 1 : 0)});
  s.put("rpcclt_openapiPmlIntfTrapFrequencyGet", key, {num(port == 2 ? 30 : 0)});
  s.put("rpcclt_openapiPmlIntfAgeTimeGet", key, {num(port == 2 ? 60 : 0)});
  if (port == 3) s.put("rpcclt_openapiPmlIntfLastViolationAddrGet", key, {text("00:1B:21:3A:4F:92"), num(10)});
  else s.put("rpcclt_openapiPmlIntfLastViolationAddrGet", key, {text(""), num(0)});
  for (uint32_t vlan : kVlans)
    s.put("rpcclt_openapiPmlIntfVlanDynamicLimitGet", key + "," + std::to_string(vlan), {num(kDynamicMax)});
}

void seedVlan(Sim &s, uint32_t vlan) {
  std::string key = std::to_string(vlan);
  s.put(kVlanDynamicLimitGet, key, {num(vlan == 10 ? 256 : kDynamicMax)});
  s.put("rpcclt_openapiPmlVlanViolationDDisableModeGet", key, {num(0)});
  s.put("rpcclt_openapiPmlVlanViolationTrapModeGet", key, {num(vlan == 10 ? 1 : 0)});
  s.put(kVlanModeGet, key, {num(vlan == 10 ? 1 : 0)});
}

Entry entry(uint32_t ifNum, const char *mac, uint32_t vlan, bool sticky = false, bool learned = false) {
  Entry e;
  e.ifNum = ifNum;
  e.mac = mac;
  e.vlan = vlan;
  e.sticky = sticky;
  e.learned = learned;
  return e;
}

Tables seedTables() {
  Tables t;
  t.dynamics = {
      entry(1, "00:1A:2B:3C:4D:01", 1),  entry(1, "00:1A:2B:3C:4D:02", 1),  entry(1, "F4:8E:38:11:22:33", 10),
      entry(2, "3C:EC:EF:10:20:30", 1),  entry(2, "3C:EC:EF:10:20:32", 10), entry(3, "00:1B:21:3A:4F:90", 10),
      entry(5, "00:0E:C6:A1:B2:C4", 1),  entry(8, "B8:27:EB:45:67:89", 1),  entry(25, "00:25:90:AA:BB:01", 10),
      entry(25, "00:25:90:AA:BB:02", 10),
  };
  t.statics = {
      entry(2, "3C:EC:EF:10:20:31", 1),
      entry(5, "00:0E:C6:A1:B2:C3", 10, true),
      entry(8, "B8:27:EB:45:67:88", 1, false, true),
  };
  Entry stream = entry(2, "3C:EC:EF:10:20:31", 1);
  stream.stream = 12;
  t.streams = {stream};
  return t;
}

}  // namespace

bool vlanExists(const Sim &, uint32_t vlan) { return vlanKnown(vlan); }

// The last address seen is the one the port reports; a port set to
// D-Disable on a violation is shut as the feature shuts it.
void recordPmlViolation(Sim &s, const TimelineEvent &e) {
  std::string key = std::to_string(e.port);
  s.put("rpcclt_openapiPmlIntfLastViolationAddrGet", key, {text(walkKey(e.macs.back())), num(e.vlan)});
  if (storedNum(s, "rpcclt_openapiPmlIntfViolationDDisableModeGet", key, 0) == 1)
    tripDDisable(s, e.port, "mac-locking", e.atMs);
}

const CallRule kPmlRules[] = {
    SIM_GET(rpcclt_openapiPmlGlobalAdminModeGet),
    SIM_SET(rpcclt_openapiPmlGlobalAdminModeSet, rpcclt_openapiPmlGlobalAdminModeGet, 0),
    SIM_CUSTOM(rpcclt_openapiPmlStaticAddrGlobalCountGet, staticGlobalCount),
    SIM_GET(rpcclt_openapiPmlVlanAdminModeGet),
    SIM_SET(rpcclt_openapiPmlVlanAdminModeSet, rpcclt_openapiPmlVlanAdminModeGet, 0),
    SIM_CUSTOM(rpcclt_openapiPmlNextValidIntfGet, nextValidIntf),
    SIM_CUSTOM(rpcclt_openapiPmlIntfIsValid, isValidIntf),
    SIM_GET(rpcclt_openapiPmlIntfModeGet),
    SIM_SET(rpcclt_openapiPmlIntfModeSet, rpcclt_openapiPmlIntfModeGet, 1),
    SIM_GET(rpcclt_openapiPmlIntfDynamicLimitGet),
    SIM_CUSTOM(rpcclt_openapiPmlIntfDynamicLimitSet, setRanged),
    SIM_GET(rpcclt_openapiPmlIntfStaticLimitGet),
    SIM_CUSTOM(rpcclt_openapiPmlIntfStaticLimitSet, setRanged),
    SIM_GET(rpcclt_openapiPmlIntfDynamicMaxLimitGet),
    SIM_GET(rpcclt_openapiPmlIntfStaticMaxLimitGet),
    SIM_CUSTOM(rpcclt_openapiPmlIntfStaticCountGet, staticCount),
    SIM_GET(rpcclt_openapiPmlIntfViolationTrapModeGet),
    SIM_SET(rpcclt_openapiPmlIntfViolationTrapModeSet, rpcclt_openapiPmlIntfViolationTrapModeGet, 1),
    SIM_GET(rpcclt_openapiPmlIntfViolationDDisableModeGet),
    SIM_SET(rpcclt_openapiPmlIntfViolationDDisableModeSet, rpcclt_openapiPmlIntfViolationDDisableModeGet, 1),
    SIM_GET(rpcclt_openapiPmlIntfStickyModeGet),
    SIM_SET(rpcclt_openapiPmlIntfStickyModeSet, rpcclt_openapiPmlIntfStickyModeGet, 1),
    SIM_GET(rpcclt_openapiPmlIntfTrapFrequencyGet),
    SIM_CUSTOM(rpcclt_openapiPmlIntfTrapFrequencySet, setRanged),
    SIM_GET(rpcclt_openapiPmlIntfAgeTimeGet),
    SIM_CUSTOM(rpcclt_openapiPmlIntfAgeTimeSet, setRanged),
    SIM_GET(rpcclt_openapiPmlIntfLastViolationAddrGet),
    SIM_CUSTOM(rpcclt_openapiPmlIntfDynamicLearnedAddrCountGet, dynamicCount),
    SIM_CUSTOM(rpcclt_openapiPmlIntfStaticLearnedAddrCountGet, staticLearnedCount),
    SIM_CUSTOM(rpcclt_openapiPmlStaticAddrCountByVlanGet, staticCountByVlan),
    SIM_GET(rpcclt_openapiPmlVlanDynamicLimitGet),
    SIM_CUSTOM(rpcclt_openapiPmlVlanDynamicLimitSet, setRanged),
    SIM_CUSTOM(rpcclt_openapiPmlVlanOperationalLimitGet, vlanOperationalLimit),
    SIM_GET(rpcclt_openapiPmlVlanViolationDDisableModeGet),
    SIM_SET(rpcclt_openapiPmlVlanViolationDDisableModeSet, rpcclt_openapiPmlVlanViolationDDisableModeGet, 1),
    SIM_GET(rpcclt_openapiPmlVlanViolationTrapModeGet),
    SIM_SET(rpcclt_openapiPmlVlanViolationTrapModeSet, rpcclt_openapiPmlVlanViolationTrapModeGet, 1),
    SIM_GET(rpcclt_openapiPmlVlanModeGet),
    SIM_CUSTOM(rpcclt_openapiPmlVlanModeSet, setRanged),
    SIM_GET(rpcclt_openapiPmlIntfVlanDynamicLimitGet),
    SIM_CUSTOM(rpcclt_openapiPmlIntfVlanDynamicLimitSet, setRanged),
    SIM_CUSTOM(rpcclt_openapiPmlIntfVlanDynamicLearnedAddrCountGet, intfVlanDynamicCount),
    SIM_CUSTOM(rpcclt_openapiPmlIntfStaticEntryGetFirst, staticFirst),
    SIM_CUSTOM(rpcclt_openapiPmlIntfStaticEntryGetNext, staticNext),
    SIM_CUSTOM(rpcclt_openapiPmlIntfDynamicEntryGetFirst, dynamicFirst),
    SIM_CUSTOM(rpcclt_openapiPmlIntfDynamicEntryGetNext, dynamicNext),
    SIM_CUSTOM(rpcclt_openapiPmlVlanDynamicEntryGetFirst, dynamicFirst),
    SIM_CUSTOM(rpcclt_openapiPmlVlanDynamicEntryGetNext, vlanDynamicNext),
    SIM_CUSTOM(rpcclt_openapiPmlIntfStaticEntryAdd, staticAdd),
    SIM_CUSTOM(rpcclt_openapiPmlIntfStaticEntryDelete, staticDelete),
    SIM_CUSTOM(rpcclt_openapiPmlIntfDynamicToStaticMove, dynamicToStatic),
    SIM_CUSTOM(rpcclt_openapiPmlDot1qciStreamSet, streamSet),
    SIM_CUSTOM(rpcclt_openapiPmlDot1qciStreamGet, streamGet),
    SIM_CUSTOM(rpcclt_openapiPmlDot1qciStreamDelete, streamDelete),
};
const size_t kPmlRuleCount = sizeof kPmlRules / sizeof kPmlRules[0];

void seedPml(Sim &s) {
  s.put("rpcclt_openapiPmlGlobalAdminModeGet", "", {num(1)});
  s.put(kVlanAdminModeGet, "", {num(1)});
  for (const Interface &i : s.interfaces)
    if (i.type == OPEN_INTF_TYPE_PHY) seedPort(s, i.ifNum);
  for (uint32_t vlan : kVlans) seedVlan(s, vlan);
  save(s, seedTables());
}

}  // namespace sim
