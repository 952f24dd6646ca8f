// The model in a scenario file: one list of fields per struct, walked the
// same way to write a dump and to read a file, so that what is dumped
// loads back as it was.
#include <stdio.h>
#include <stdlib.h>

#include <algorithm>
#include <limits>
#include <optional>
#include <set>
#include <type_traits>

#include "sim/sim.h"
#include "sim/sim_checks.h"
#include "sim/sim_json.h"
#include "sim/sim_model_json.h"
#include "switch_facts.h"

namespace sim {

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

template <class T>
concept Visitable = requires(T &t, int (*v)(const char *, int)) { visit(t, v); };

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
  template <class T, size_t N>
  cJSON *make(const T (&list)[N]) {
    cJSON *a = cJSON_CreateArray();
    for (const T &x : list) cJSON_AddItemToArray(a, make(x));
    return a;
  }
  template <class T, size_t N>
  cJSON *make(const std::array<T, N> &list) {
    cJSON *a = cJSON_CreateArray();
    for (const T &x : list) cJSON_AddItemToArray(a, make(x));
    return a;
  }
  template <class C>
    requires requires(const C &c) { c.begin()->first; }
  cJSON *make(const C &map) {
    cJSON *o = cJSON_CreateObject();
    for (const auto &[k, x] : map) cJSON_AddItemToObject(o, std::to_string(k).c_str(), make(x));
    return o;
  }
  template <class C>
    requires(requires(const C &c) { c.begin(); c.size(); } && !requires(const C &c) { c.begin()->first; } &&
             !std::is_same_v<C, std::string>)
  cJSON *make(const C &list) {
    cJSON *a = cJSON_CreateArray();
    for (const auto &x : list) cJSON_AddItemToArray(a, make(static_cast<typename C::value_type>(x)));
    return a;
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
  uint64_t v = 0;
  for (const char *c = key; *c; ++c) {
    if (*c < '0' || *c > '9' || c - key >= 10) return false;
    v = v * 10 + static_cast<uint64_t>(*c - '0');
  }
  *n = static_cast<uint32_t>(v);
  return *key && v <= UINT32_MAX;
}

std::string rangeText(Bounds b) {
  char text[96];
  snprintf(text, sizeof text, "must be from %.15g to %.15g", b.least, b.most);
  return text;
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
        return fail(rangeText(b));
      default: return fail("must be a whole number");
    }
  }
  template <class T, size_t N>
  bool readList(const cJSON *j, T *list) {
    if (!cJSON_IsArray(j) || cJSON_GetArraySize(j) != static_cast<int>(N))
      return fail("must be a list of " + std::to_string(N));
    size_t i = 0;
    const cJSON *x = nullptr;
    cJSON_ArrayForEach(x, j) if (!read(x, list[i++])) return false;
    return true;
  }
  template <class T, size_t N>
  bool read(const cJSON *j, T (&list)[N]) {
    return readList<T, N>(j, list);
  }
  template <class T, size_t N>
  bool read(const cJSON *j, std::array<T, N> &list) {
    return readList<T, N>(j, list.data());
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
  template <class C>
    requires requires(C &c) { c.push_back(typename C::value_type()); } && (!std::is_same_v<C, std::string>)
  bool read(const cJSON *j, C &list) {
    if (!cJSON_IsArray(j)) return fail("must be a list");
    list.clear();
    const cJSON *x = nullptr;
    cJSON_ArrayForEach(x, j) {
      typename C::value_type item{};
      if (!read(x, item)) return false;
      list.push_back(item);
    }
    return true;
  }
  bool read(const cJSON *j, std::vector<bool> &list) {
    if (!cJSON_IsArray(j)) return fail("must be a list");
    list.clear();
    const cJSON *x = nullptr;
    cJSON_ArrayForEach(x, j) {
      bool b = false;
      if (!read(x, b)) return false;
      list.push_back(b);
    }
    return true;
  }
  template <Visitable S>
  bool read(const cJSON *j, S &s) {
    return readStruct(j, s, where, error);
  }
  template <Visitable S>
  static bool readStruct(const cJSON *j, S &s, const std::string &where, std::string *error) {
    Reader r{j, where, error, {}, {}};
    if (!cJSON_IsObject(j)) return r.fail("must be an object");
    visit(s, r);
    if (!error->empty()) return false;
    const cJSON *x = nullptr;
    cJSON_ArrayForEach(x, j) {
      if (r.known.count(x->string)) continue;
      if (kDerived.count(x->string)) return r.fail("\"" + std::string(x->string) + "\" is now derived from the other facts");
      return r.fail("unknown field \"" + std::string(x->string) + "\"");
    }
    return true;
  }
  template <class T>
  void operator()(const char *name, T &value, std::optional<Bounds> fieldBounds = std::nullopt) {
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

}  // namespace

cJSON *modelToJson(const Model &m) {
  Writer w{cJSON_CreateObject()};
  w("layout", m.layout);
  w("ports", m.ports);
  w("vlans", m.vlans);
  cJSON *errdisable = cJSON_AddObjectToObject(w.into, "errdisable");
  cJSON_AddNumberToObject(errdisable, "interval", m.errdisable.intervalS);
  cJSON_AddNumberToObject(errdisable, "intervalSetAtMs", static_cast<double>(m.errdisable.intervalSetAtMs));
  cJSON *causes = cJSON_AddObjectToObject(errdisable, "causes");
  for (size_t i = 0; i < m.errdisable.recovers.size(); ++i) {
    const facts::DDisableCause &c = facts::kDDisableCauses[i];
    cJSON_AddBoolToObject(causes, c.api ? c.api : c.cli, m.errdisable.recovers[i]);
  }
  w("pml", m.pml);
  w("green", m.green);
  w("ledMode", m.ledMode);
  w("osVersion", m.osVersion);
  w("apiVersion", m.apiVersion);
  return w.into;
}

bool layoutFromJson(const cJSON *j, SwitchLayout *layout, std::string *error) {
  const char *where = "scenario: \"model\".\"layout\"";
  if (!Reader::readStruct(j, *layout, where, error)) return false;
  if (const char *why = layout->fault()) *error = std::string(where) + ": the switch " + why;
  return !layout->fault();
}

// The auto-recovery table: an interval, and causes by the API's or the
// CLI's name, each set or not; causes not named keep their setting.
static bool errdisableFromJson(const cJSON *j, Errdisable &e, std::string *error) {
  Reader r{j, "scenario: \"model\".\"errdisable\"", error, {}, {}};
  if (!cJSON_IsObject(j)) return r.fail("must be an object");
  r("interval", e.intervalS, facts::kRecoveryInterval);
  r("intervalSetAtMs", e.intervalSetAtMs);
  r.known.insert("causes");
  const cJSON *x = nullptr;
  cJSON_ArrayForEach(x, j) if (!r.known.count(x->string)) return r.fail("unknown field \"" + std::string(x->string) + "\"");
  const cJSON *causes = cJSON_GetObjectItemCaseSensitive(j, "causes");
  if (!error->empty() || !causes) return error->empty();
  r.where += ".\"causes\"";
  if (!cJSON_IsObject(causes)) return r.fail("must be an object");
  cJSON_ArrayForEach(x, causes) {
    int i = causeIndex(x->string);
    if (i < 0) return r.fail("unknown cause \"" + std::string(x->string) + "\"");
    if (!cJSON_IsBool(x)) return r.fail("\"" + std::string(x->string) + "\" must be true or false");
    e.recovers[static_cast<size_t>(i)] = cJSON_IsTrue(x);
  }
  return true;
}

// Ports by number, each a port of the seeded switch.
static bool portsFromJson(const cJSON *j, Model &m, std::string *error) {
  Reader r{j, "scenario: \"model\".\"ports\"", error, {}, {}};
  if (!cJSON_IsObject(j)) return r.fail("must be an object");
  const cJSON *port = nullptr;
  cJSON_ArrayForEach(port, j) {
    uint32_t n = 0;
    auto it = keyNumber(port->string, &n) ? m.ports.find(n) : m.ports.end();
    if (it == m.ports.end()) return r.fail("the switch has no port \"" + std::string(port->string) + "\"");
    if (!Reader::readStruct(port, it->second, r.where + ".\"" + port->string + "\"", error)) return false;
  }
  return true;
}

bool modelFromJson(const cJSON *j, Model &m, std::string *error) {
  error->clear();
  const cJSON *x = nullptr;
  cJSON_ArrayForEach(x, j) {
    std::string key = x->string;
    bool ok = true;
    if (key == "layout") {
      continue;  // read first, to seed the switch this file is about
    } else if (key == "ports") {
      ok = portsFromJson(x, m, error);
    } else if (key == "errdisable") {
      ok = errdisableFromJson(x, m.errdisable, error);
    } else if (key == "pml") {
      ok = Reader::readStruct(x, m.pml, "scenario: \"model\".\"pml\"", error);
    } else if (key == "green") {
      ok = Reader::readStruct(x, m.green, "scenario: \"model\".\"green\"", error);
    } else {
      // The switch-wide values that stand alone.
      Reader r{j, "scenario: \"model\"", error, {}, {}};
      r("vlans", m.vlans);
      r("ledMode", m.ledMode);
      r("osVersion", m.osVersion);
      r("apiVersion", m.apiVersion, Bounds{0, INT32_MAX});  // the record's fields are 32-bit
      if (!error->empty()) return false;
      if (!r.known.count(key)) {
        *error = "scenario: \"model\": unknown section \"" + key + "\"";
        return false;
      }
    }
    if (!ok) return false;
  }
  return true;
}

}  // namespace sim
