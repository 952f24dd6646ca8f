// The model in a scenario file: one list of fields per struct, walked the
// same way to write a dump and to read a file, so that what is dumped
// loads back as it was.
#include <stdio.h>

#include <stdlib.h>

#include <set>
#include <type_traits>

#include "sim/sim.h"
#include "sim/sim_model_json.h"
#include "switch_facts.h"

namespace sim {

namespace {

// --- the fields of each struct ----------------------------------------------

template <class V>
void visit(TrafficRates &r, V &v) {
  v("inOctetsPerSec", r.inOctetsPerSec);
  v("outOctetsPerSec", r.outOctetsPerSec);
  v("inAvgFrame", r.inAvgFrame);
  v("outAvgFrame", r.outAvgFrame);
  v("inErrorsPerMillion", r.inErrorsPerMillion);
}

template <class V>
void visit(LpiRun &r, V &v) {
  v("place", r.place);
  v("firstTime", r.firstTime);
  v("stepS", r.stepS);
  v("count", r.count);
  v("idle", r.idle);
  v("sumBefore", r.sumBefore);
}

template <class V>
void visit(PortSettings &p, V &v) {
  v("description", p.description);
  v("maxFrame", p.maxFrame);
  v("softShutdown", p.softShutdown);
  v("linkTrap", p.linkTrap);
  v("expandConfigMode", p.expandConfigMode);
  v("expandOperMode", p.expandOperMode);
  v("fecConfig", p.fecConfig);
  v("fecOper", p.fecOper);
  v("timeRange", p.timeRange);
  v("ledColor", p.ledColor);
  v("ledBrightness", p.ledBrightness);
}

template <class V>
void visit(PmlPort &p, V &v) {
  v("mode", p.mode);
  v("dynamicLimit", p.dynamicLimit);
  v("staticLimit", p.staticLimit);
  v("dynamicMaxLimit", p.dynamicMaxLimit);
  v("staticMaxLimit", p.staticMaxLimit);
  v("trapMode", p.trapMode);
  v("ddisableMode", p.ddisableMode);
  v("stickyMode", p.stickyMode);
  v("trapFrequency", p.trapFrequency);
  v("ageTime", p.ageTime);
  v("lastViolationMac", p.lastViolationMac);
  v("lastViolationVlan", p.lastViolationVlan);
  v("vlanDynamicLimit", p.vlanDynamicLimit);
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
  v("drawUpMw", p.drawUpMw);
  v("drawDownMw", p.drawDownMw);
  v("savedMwh", p.savedMwh);
  v("savedMwMs", p.savedMwMs);
  v("lagMember", p.lagMember);
  v("settings", p.settings);
  v("pml", p.pml);
  v("green", p.green);
}

template <class V>
void visit(PmlVlan &p, V &v) {
  v("dynamicLimit", p.dynamicLimit);
  v("ddisableMode", p.ddisableMode);
  v("trapMode", p.trapMode);
  v("mode", p.mode);
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
  v("savingPercent", g.savingPercent);
  v("sampleIntervalMin", g.sampleIntervalMin);
  v("maxSamples", g.maxSamples);
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
  void operator()(const char *name, const T &value) {
    cJSON_AddItemToObject(into, name, make(value));
  }
};

// --- reading -----------------------------------------------------------------

// Keys older files may hold for facts the model now derives.
const std::set<std::string> kDerived = {"fibre", "up", "cause", "duplexMode", "autoNeg", "powerEstimate",
                                        "greenCapable", "lpiSum", "lpiTaken"};

struct Reader {
  const cJSON *from;
  std::string where;
  std::string *error;
  std::set<std::string> known;

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
  template <class N>
    requires std::is_arithmetic_v<N>
  bool read(const cJSON *j, N &n) {
    if (!cJSON_IsNumber(j) || j->valuedouble != static_cast<double>(static_cast<int64_t>(j->valuedouble)))
      return fail("must be a whole number");
    if (std::is_unsigned_v<N> && j->valuedouble < 0) return fail("must not be negative");
    n = static_cast<N>(j->valuedouble);
    return true;
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
      char *end = nullptr;
      unsigned long k = strtoul(x->string, &end, 10);
      if (!*x->string || *end) return fail("\"" + std::string(x->string) + "\" is not a number");
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
    Reader r{j, where, error, {}};
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
  void operator()(const char *name, T &value) {
    known.insert(name);
    const cJSON *j = cJSON_GetObjectItemCaseSensitive(from, name);
    if (!j || !error->empty()) return;
    std::string outer = where;
    where += ".\"" + std::string(name) + "\"";
    read(j, value);
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
  const cJSON *x = nullptr;
  cJSON_ArrayForEach(x, j) {
    std::string key = x->string;
    if (key == "interval" && cJSON_IsNumber(x) && x->valuedouble >= facts::kRecoveryInterval.least &&
        x->valuedouble <= facts::kRecoveryInterval.most &&
        x->valuedouble == static_cast<double>(static_cast<uint32_t>(x->valuedouble))) {
      e.intervalS = static_cast<uint32_t>(x->valuedouble);
      continue;
    }
    if (key == "intervalSetAtMs" && cJSON_IsNumber(x)) {
      e.intervalSetAtMs = static_cast<int64_t>(x->valuedouble);
      continue;
    }
    if (key != "causes" || !cJSON_IsObject(x)) {
      *error = key == "interval" ? "scenario: \"model\".\"errdisable\".\"interval\": must be whole seconds from " +
                                       std::to_string(facts::kRecoveryInterval.least) + " to " +
                                       std::to_string(facts::kRecoveryInterval.most)
                                 : "scenario: \"model\".\"errdisable\": unknown field \"" + key + "\"";
      return false;
    }
    const cJSON *c = nullptr;
    cJSON_ArrayForEach(c, x) {
      int i = causeIndex(c->string);
      if (i < 0 || !cJSON_IsBool(c)) {
        *error = std::string("scenario: \"model\".\"errdisable\".\"causes\": ") +
                 (i < 0 ? "unknown cause \"" + std::string(c->string) + "\"" : "\"" + std::string(c->string) + "\" must be true or false");
        return false;
      }
      e.recovers[i] = cJSON_IsTrue(c);
    }
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
      const cJSON *port = nullptr;
      cJSON_ArrayForEach(port, x) {
        char *end = nullptr;
        unsigned long n = strtoul(port->string, &end, 10);
        auto it = m.ports.find(static_cast<uint32_t>(n));
        if (!*port->string || *end || it == m.ports.end()) {
          *error = "scenario: \"model\".\"ports\": the switch has no port \"" + std::string(port->string) + "\"";
          return false;
        }
        std::string where = "scenario: \"model\".\"ports\".\"" + std::string(port->string) + "\"";
        if (!Reader::readStruct(port, it->second, where, error)) return false;
      }
    } else if (key == "errdisable") {
      ok = errdisableFromJson(x, m.errdisable, error);
    } else if (key == "pml") {
      ok = Reader::readStruct(x, m.pml, "scenario: \"model\".\"pml\"", error);
    } else if (key == "green") {
      ok = Reader::readStruct(x, m.green, "scenario: \"model\".\"green\"", error);
    } else {
      // The switch-wide values that stand alone.
      Reader r{j, "scenario: \"model\"", error, {}};
      r("vlans", m.vlans);
      r("ledMode", m.ledMode);
      r("osVersion", m.osVersion);
      r("apiVersion", m.apiVersion);
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
