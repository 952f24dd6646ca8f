// The model in a scenario file: one list of fields per struct, walked the
// same way to write a dump and to read a file, so that what is dumped
// loads back as it was.
#include <ctype.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <algorithm>
#include <limits>
#include <optional>
#include <ranges>
#include <set>
#include <type_traits>

#include "sim/sim.h"
#include "sim/sim_json.h"
#include "sim/sim_model_json.h"
#include "switch_facts.h"

namespace sim {

bool wellFormedMac(const std::string &t) {
  if (t.size() != 17) return false;
  for (size_t i = 0; i < t.size(); ++i)
    if (i % 3 == 2 ? t[i] != ':' && t[i] != '-' : !isxdigit(static_cast<unsigned char>(t[i]))) return false;
  return true;
}

bool unicastMac(const std::string &t) {
  unsigned char second = static_cast<unsigned char>(t[1]);
  int low = isdigit(second) ? second - '0' : toupper(second) - 'A' + 10;
  return (low & 1) == 0;
}

namespace {

// --- the fields of each struct ----------------------------------------------

template <class V>
void visit(TrafficRates &r, V &v) {
  v("inOctetsPerSec", r.inOctetsPerSec, kOctetsPerSec);
  v("outOctetsPerSec", r.outOctetsPerSec, kOctetsPerSec);
  v("inAvgFrame", r.inAvgFrame);
  v("outAvgFrame", r.outAvgFrame);
  v("inErrorsPerMillion", r.inErrorsPerMillion, kPerMillion);
}

template <class V>
void visit(LpiRun &r, V &v) {
  v("place", r.place);
  v("firstTime", r.firstTime);
  v("stepS", r.stepS, kSampleStepS);
  v("count", r.count);
  v("idle", r.idle);
  v("sumBefore", r.sumBefore);
}

template <class V>
void visit(PortSettings &p, V &v) {
  v("description", p.description);
  v("maxFrame", p.maxFrame, facts::kMaxFrameSize);
  v("softShutdown", p.softShutdown);
  v("linkTrap", p.linkTrap);
  v("expandConfigMode", p.expandConfigMode);
  v("expandOperMode", p.expandOperMode);
  v("fecConfig", p.fecConfig);
  v("fecOper", p.fecOper);
  v("timeRange", p.timeRange);
  v("ledColor", p.ledColor, facts::kLedColour);
  v("ledBrightness", p.ledBrightness, facts::kLedBrightness);
}

template <class V>
void visit(PmlPort &p, V &v) {
  v("mode", p.mode);
  v("dynamicLimit", p.dynamicLimit, facts::kLockDynamicLimit);
  v("staticLimit", p.staticLimit, facts::kLockStaticLimit);
  v("dynamicMaxLimit", p.dynamicMaxLimit, facts::kLockDynamicLimit);
  v("staticMaxLimit", p.staticMaxLimit, facts::kLockStaticLimit);
  v("trapMode", p.trapMode);
  v("ddisableMode", p.ddisableMode);
  v("stickyMode", p.stickyMode);
  v("trapFrequency", p.trapFrequency, facts::kLockTrapInterval);
  v("ageTime", p.ageTime, facts::kLockAgeTime);
  v("lastViolationMac", p.lastViolationMac);
  v("lastViolationVlan", p.lastViolationVlan);
  v("vlanDynamicLimit", p.vlanDynamicLimit, facts::kLockDynamicLimit);
}

template <class V>
void visit(GreenPort &g, V &v) {
  v("energyDetect", g.energyDetect);
  v("shortReachAuto", g.shortReachAuto);
  v("shortReachForced", g.shortReachForced);
  v("eeeAdmin", g.eeeAdmin);
  v("txIdleTime", g.txIdleTime);
  v("txWakeTime", g.txWakeTime);
  v("partnerEee", g.partnerEee);
  v("txEvents", g.txEvents);
  v("rxEvents", g.rxEvents);
  v("txDuration", g.txDuration);
  v("rxDuration", g.rxDuration);
  v("lpiMs", g.lpiMs);
  v("lpiMsAtClear", g.lpiMsAtClear);
  v("statsClearedS", g.statsClearedS);
  v("history", g.history);
}

template <class V>
void visit(Port &p, V &v) {
  v("adminEnabled", p.adminEnabled);
  v("partner", p.partner);
  v("medium", p.medium);
  v("lastChangeS", p.lastChangeS);
  v("speedMode", p.speedMode);
  v("cableM", p.cableM);
  v("disableReason", p.disableReason);
  v("tripAtMs", p.tripAtMs);
  v("rates", p.rates);
  v("counters", p.counters);
  v("settledMs", p.settledMs);
  v("wrapAtOctets", p.wrapAtOctets);
  v("drawUpMw", p.drawUpMw, kMilliwatts);
  v("drawDownMw", p.drawDownMw, kMilliwatts);
  v("savedMwh", p.savedMwh);
  v("savedMwMs", p.savedMwMs);
  v("lagMember", p.lagMember);
  v("settings", p.settings);
  v("pml", p.pml);
  v("green", p.green);
}

template <class V>
void visit(PmlVlan &p, V &v) {
  v("dynamicLimit", p.dynamicLimit, facts::kLockDynamicLimit);
  v("ddisableMode", p.ddisableMode);
  v("trapMode", p.trapMode);
  v("mode", p.mode, facts::kLockVlanMode);
}

template <class V>
void visit(PmlEntry &e, V &v) {
  v("ifNum", e.ifNum);
  v("macAddr", e.mac);
  v("vlanId", e.vlan);
  v("sticky", e.sticky);
  v("learned", e.learned);
  v("streamId", e.stream);
}

template <class V>
void visit(Pml &p, V &v) {
  v("globalAdmin", p.globalAdmin);
  v("vlanAdmin", p.vlanAdmin);
  v("vlans", p.vlans);
  v("static", p.statics);
  v("dynamic", p.dynamics);
  v("streams", p.streams);
}

template <class V>
void visit(Green &g, V &v) {
  v("energyDetect", g.energyDetect);
  v("shortReach", g.shortReach);
  v("eee", g.eee);
  v("totalLpiTime", g.totalLpiTime);
  v("savingPercent", g.savingPercent, kPercent);
  v("sampleIntervalMin", g.sampleIntervalMin, facts::kLpiSampleInterval);
  v("maxSamples", g.maxSamples, facts::kLpiMaxSamples);
  v("nextSampleMs", g.nextSampleMs);
  v("features", g.features);
}

template <class V>
void visit(SwitchLayout &l, V &v) {
  v("copperPorts", l.copperPorts);
  v("fibrePorts", l.fibrePorts);
  v("lags", l.lags);
  v("cage", l.cage);
}

// The auto-recovery causes, each under the API's name (the CLI's where it
// has none); a file may name a cause either way, and the causes it leaves
// out keep their setting.
struct Causes {
  std::vector<bool> &recovers;
};

template <class V>
void visit(Errdisable &e, V &v) {
  v("interval", e.intervalS, facts::kRecoveryInterval);
  v("intervalSetAtMs", e.intervalSetAtMs);
  v("causes", Causes{e.recovers});
}

// "layout" is read first, on its own, to seed the switch the rest is
// about; reading it again here changes nothing.
template <class V>
void visit(Model &m, V &v) {
  v("layout", m.layout);
  v("ports", m.ports);
  v("vlans", m.vlans);
  v("errdisable", m.errdisable);
  v("pml", m.pml);
  v("green", m.green);
  v("ledMode", m.ledMode);
  v("osVersion", m.osVersion);
  v("apiVersion", m.apiVersion, Bounds{0, INT32_MAX});  // the record's fields are 32-bit
}

template <class T>
concept Visitable = requires(T &t, int (*v)(const char *, int)) { visit(t, v); };
template <class C>
concept Keyed = requires(const C &c) { std::ranges::begin(c)->first; };
template <class C>
concept List = std::ranges::range<C> && !std::is_same_v<C, std::string> && !Keyed<C>;

// --- writing -----------------------------------------------------------------

struct Writer {
  cJSON *into;

  cJSON *make(bool b) { return cJSON_CreateBool(b); }
  cJSON *make(const std::string &t) { return cJSON_CreateString(t.c_str()); }
  template <class N>
    requires std::is_arithmetic_v<N>
  cJSON *make(N n) {
    return cJSON_CreateNumber(static_cast<double>(n));
  }
  template <List C>
  cJSON *make(const C &list) {
    cJSON *a = cJSON_CreateArray();
    for (const auto &x : list) cJSON_AddItemToArray(a, make(static_cast<std::ranges::range_value_t<C>>(x)));
    return a;
  }
  template <Keyed C>
  cJSON *make(const C &map) {
    cJSON *o = cJSON_CreateObject();
    for (const auto &[k, x] : map) cJSON_AddItemToObject(o, std::to_string(k).c_str(), make(x));
    return o;
  }
  cJSON *make(const Causes &c) {
    cJSON *o = cJSON_CreateObject();
    for (size_t i = 0; i < c.recovers.size(); ++i) {
      const facts::DDisableCause &cause = facts::kDDisableCauses[i];
      cJSON_AddBoolToObject(o, cause.api ? cause.api : cause.cli, c.recovers[i]);
    }
    return o;
  }
  template <Visitable S>
  cJSON *make(const S &s) {
    Writer w{cJSON_CreateObject()};
    visit(const_cast<S &>(s), w);
    return w.into;
  }
  template <class T>
  void operator()(const char *name, const T &value, std::optional<Bounds> = std::nullopt) {
    cJSON_AddItemToObject(into, name, make(value));
  }
};

// --- reading -----------------------------------------------------------------

// A key that names a port or a VLAN: decimal digits, 32 bits at most.
bool keyNumber(const char *key, uint32_t *n) {
  size_t digits = strspn(key, "0123456789");
  uint64_t v = digits && digits <= 10 && !key[digits] ? strtoull(key, nullptr, 10) : UINT64_MAX;
  *n = static_cast<uint32_t>(v);
  return v <= UINT32_MAX;
}

// A whole number of the type that JSON holds exactly.
template <class N>
constexpr Bounds typeBounds() {
  if constexpr (std::is_same_v<N, int64_t> || std::is_same_v<N, uint64_t>)
    return {std::is_signed_v<N> ? -kMostExact : 0, kMostExact};
  else
    return {static_cast<double>(std::numeric_limits<N>::min()), static_cast<double>(std::numeric_limits<N>::max())};
}

// Keys older files may hold for facts the model now derives.
const std::set<std::string> kDerived = {"fibre", "up", "cause", "duplexMode", "autoNeg", "powerEstimate",
                                        "greenCapable", "lpiSum", "lpiTaken"};

struct Reader {
  const cJSON *from;
  std::string where;
  std::string *error;
  std::set<std::string> known;
  std::optional<Bounds> bounds;  // the field's own, while it is read

  bool fail(const std::string &what) {
    if (error->empty()) *error = where + ": " + what;
    return false;
  }
  bool read(const cJSON *j, bool &b) {
    if (!cJSON_IsBool(j)) return fail("must be true or false");
    b = cJSON_IsTrue(j);
    return true;
  }
  bool read(const cJSON *j, std::string &t) {
    if (!cJSON_IsString(j)) return fail("must be a text");
    t = j->valuestring;
    return true;
  }
  // Within the field's bounds and its type's: a number past 32 bits is
  // refused, never wrapped.
  template <class N>
    requires std::is_arithmetic_v<N>
  bool read(const cJSON *j, N &n) {
    Bounds b = typeBounds<N>();
    if (bounds) b = {std::max(b.least, bounds->least), std::min(b.most, bounds->most)};
    int64_t v = 0;
    switch (readWhole(j, b.least, b.most, &v)) {
      case NumberFault::None: n = static_cast<N>(v); return true;
      case NumberFault::OutOfRange:
        if (cJSON_IsNumber(j) && j->valuedouble < 0 && b.least == 0) return fail("must not be negative");
        return fail(std::string("must be ") + rangeText(b.least, b.most).c_str());
      default: return fail("must be a whole number");
    }
  }
  // A list that grows takes any length; one of a fixed size, its own.
  template <List C>
  bool read(const cJSON *j, C &list) {
    constexpr bool grows = requires(C &c) { c.push_back({}); };
    if constexpr (grows) {
      if (!cJSON_IsArray(j)) return fail("must be a list");
      list.clear();
    } else if (!cJSON_IsArray(j) || cJSON_GetArraySize(j) != static_cast<int>(std::size(list))) {
      return fail("must be a list of " + std::to_string(std::size(list)));
    }
    size_t i = 0;
    const cJSON *x = nullptr;
    cJSON_ArrayForEach(x, j) {
      std::ranges::range_value_t<C> item{};
      if (!read(x, item)) return false;
      if constexpr (grows) list.push_back(item);
      else std::begin(list)[i++] = item;
    }
    return true;
  }
  template <class K, class T>
  bool read(const cJSON *j, std::map<K, T> &map) {
    if (!cJSON_IsObject(j)) return fail("must be an object");
    map.clear();
    const cJSON *x = nullptr;
    cJSON_ArrayForEach(x, j) {
      uint32_t k = 0;
      if (!keyNumber(x->string, &k)) return fail("\"" + std::string(x->string) + "\" is not a number");
      if (!read(x, map[static_cast<K>(k)])) return false;
    }
    return true;
  }
  // Ports by number, each a port of the seeded switch.
  bool read(const cJSON *j, std::map<uint32_t, Port> &ports) {
    if (!cJSON_IsObject(j)) return fail("must be an object");
    const cJSON *port = nullptr;
    cJSON_ArrayForEach(port, j) {
      uint32_t n = 0;
      auto it = keyNumber(port->string, &n) ? ports.find(n) : ports.end();
      if (it == ports.end()) return fail("the switch has no port \"" + std::string(port->string) + "\"");
      if (!readStruct(port, it->second, where + ".\"" + port->string + "\"", error)) return false;
    }
    return true;
  }
  bool read(const cJSON *j, Causes c) {
    if (!cJSON_IsObject(j)) return fail("must be an object");
    const cJSON *x = nullptr;
    cJSON_ArrayForEach(x, j) {
      int i = causeIndex(x->string);
      if (i < 0) return fail("unknown cause \"" + std::string(x->string) + "\"");
      if (!cJSON_IsBool(x)) return fail("\"" + std::string(x->string) + "\" must be true or false");
      c.recovers[static_cast<size_t>(i)] = cJSON_IsTrue(x);
    }
    return true;
  }
  template <Visitable S>
  bool read(const cJSON *j, S &s) {
    return readStruct(j, s, where, error);
  }
  // `unknown` names what a key the struct lacks would be.
  template <Visitable S>
  static bool readStruct(const cJSON *j, S &s, const std::string &where, std::string *error,
                         const char *unknown = "unknown field") {
    Reader r{j, where, error, {}, {}};
    if (!cJSON_IsObject(j)) return r.fail("must be an object");
    visit(s, r);
    if (!error->empty()) return false;
    const cJSON *x = nullptr;
    cJSON_ArrayForEach(x, j) {
      if (r.known.count(x->string)) continue;
      if (kDerived.count(x->string)) return r.fail("\"" + std::string(x->string) + "\" is now derived from the other facts");
      return r.fail(unknown + std::string(" \"") + x->string + "\"");
    }
    return true;
  }
  template <class T>
  void operator()(const char *name, T &&value, std::optional<Bounds> fieldBounds = std::nullopt) {
    known.insert(name);
    const cJSON *j = cJSON_GetObjectItemCaseSensitive(from, name);
    if (!j || !error->empty()) return;
    std::string outer = where;
    where += ".\"" + std::string(name) + "\"";
    bounds = fieldBounds;
    read(j, value);
    bounds.reset();
    where = outer;
  }
};

// --- the facts a switch can have ----------------------------------------------

// As the model keeps an address: upper-case pairs joined by ":".
bool canonicalMac(const std::string &t) {
  if (!wellFormedMac(t)) return false;
  for (size_t i = 0; i < t.size(); ++i)
    if (i % 3 == 2 ? t[i] != ':' : islower(static_cast<unsigned char>(t[i]))) return false;
  return true;
}

const char *lockFault(const Sim &s, const PmlPort &pml) {
  if (!pml.lastViolationMac.empty() && !canonicalMac(pml.lastViolationMac))
    return "\"pml\".\"lastViolationMac\" is no MAC address (upper-case pairs joined by \":\")";
  if (pml.lastViolationVlan && !vlanExists(s, pml.lastViolationVlan)) return "\"pml\".\"lastViolationVlan\" is no VLAN of the switch";
  for (const auto &[vlan, limit] : pml.vlanDynamicLimit)
    if (!vlanExists(s, vlan)) return "\"pml\".\"vlanDynamicLimit\" names a VLAN the switch lacks";
  return nullptr;
}

const char *portFault(const Sim &s, uint32_t n, const Port &p) {
  const SwitchLayout &layout = s.model.layout;
  bool fibre = layout.isFibre(n);
  bool lagKnown = !p.lagMember || (p.lagMember >= SwitchLayout::kFirstLag &&
                                   p.lagMember < SwitchLayout::kFirstLag + layout.lags);
  if (fibre && p.medium > 2) return "\"medium\" must be 0 (none), 1 (copper) or 2 (fiber)";
  if (!fibre && p.medium != 1) return "\"medium\" of a copper port is 1 (copper)";
  if (fibre && p.lagMember) return "\"lagMember\" is for copper ports";
  if (!lagKnown) return "\"lagMember\" is no LAG of the switch";
  if (!fibre && p.partner && !p.cableM) return "\"partner\" on a copper port needs a cable (\"cableM\")";
  if (p.disableReason && causeOf(p.disableReason) < 0) return "\"disableReason\" is no D-Disable cause's reason";
  return lockFault(s, p.pml);
}

// A locked address: on a port of the switch, in one of its VLANs, a
// unicast address as the model keeps it, bound to a stream or none.
const char *entryFault(const Sim &s, const PmlEntry &e) {
  if (!s.model.ports.count(e.ifNum)) return "\"ifNum\" is no port of the switch";
  if (!canonicalMac(e.mac) || !unicastMac(e.mac))
    return "\"macAddr\" is no unicast MAC address (upper-case pairs joined by \":\")";
  if (!vlanExists(s, e.vlan)) return "\"vlanId\" is no VLAN of the switch";
  if (e.stream && (e.stream < facts::kStreamId.least || e.stream > facts::kStreamId.most))
    return "\"streamId\" must be 0 (none) or from 1 to 2047";
  return nullptr;
}

bool fail(std::string *error, const std::string &where, const std::string &why) {
  return refuse(error, "scenario: \"model\"" + where + ": " + why);
}

bool factsAgree(const Sim &s, std::string *error) {
  const Model &m = s.model;
  std::set<uint32_t> vlans(m.vlans.begin(), m.vlans.end());
  if (vlans.size() != m.vlans.size() ||
      (!vlans.empty() && (*vlans.begin() < facts::kLockVlan.least || *vlans.rbegin() > facts::kLockVlan.most)))
    return fail(error, ".\"vlans\"", "VLANs from " + std::to_string(facts::kLockVlan.least) + " to " +
                                         std::to_string(facts::kLockVlan.most) + ", each once");
  for (const auto &[n, p] : m.ports)
    if (const char *why = portFault(s, n, p)) return fail(error, ".\"ports\".\"" + std::to_string(n) + "\"", why);
  for (const auto &[vlan, settings] : m.pml.vlans)
    if (!vlanExists(s, vlan)) return fail(error, ".\"pml\".\"vlans\"", "VLAN " + std::to_string(vlan) + " is no VLAN of the switch");
  const std::pair<const char *, const std::vector<PmlEntry> *> tables[] = {
      {"static", &m.pml.statics}, {"dynamic", &m.pml.dynamics}, {"streams", &m.pml.streams}};
  for (const auto &[name, entries] : tables)
    for (size_t i = 0; i < entries->size(); ++i)
      if (const char *why = entryFault(s, (*entries)[i]))
        return fail(error, ".\"pml\".\"" + std::string(name) + "\"[" + std::to_string(i) + "]", why);
  return true;
}

}  // namespace

cJSON *modelToJson(const Model &m) { return Writer{}.make(m); }

bool layoutFromJson(const cJSON *j, SwitchLayout *layout, std::string *error) {
  const char *where = "scenario: \"model\".\"layout\"";
  if (!Reader::readStruct(j, *layout, where, error)) return false;
  if (const char *why = layout->fault()) *error = std::string(where) + ": the switch " + why;
  return !layout->fault();
}

bool modelFromJson(const cJSON *j, Sim &next, std::string *error) {
  error->clear();
  return Reader::readStruct(j, next.model, "scenario: \"model\"", error, "unknown section") && factsAgree(next, error);
}

}  // namespace sim
