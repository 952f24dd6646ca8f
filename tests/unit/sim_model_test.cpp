// Invariants along a seeded random walk of events, settings and clock moves; consequences at their moment.
#include <gtest/gtest.h>
#include <stdlib.h>

#include <algorithm>
#include <functional>
#include <map>
#include <numeric>
#include <random>
#include <span>

#include "sim/sim.h"
#include "sim/sim_files.h"
#include "switch_facts.h"
#include "test_support.h"

namespace {

// A call's arguments from its declaration: inputs in order from `in`,
// outputs empty, records of the size the client sends.
struct Reply {
  int result = 0;
  std::map<std::string, uint64_t> num;
  std::map<std::string, std::string> text;
};

// The declared parameters after the client handle, as written.
std::vector<std::string> declarations(const sim::CallId &id) {
  std::vector<std::string> out;
  std::string all = id.params;
  std::istringstream list(all.substr(1, all.size() - 2));
  for (std::string one; std::getline(list, one, ',');)
    if (one.find("openapiClientHandle_t") == std::string::npos) out.push_back(one);
  return out;
}

// A declaration's last word is the parameter's name.
std::string nameOf(const std::string &declaration) { return declaration.substr(declaration.find_last_of(" *") + 1); }

Reply ask(sim::Sim &s, const sim::CallId &id, std::vector<uint64_t> in = {}) {
  std::vector<std::string> declared = declarations(id);
  sim::Call c{id.name, {}};
  size_t next = 0;
  for (const std::string &type : declared) {
    sim::Arg a;
    bool pointer = type.find('*') != std::string::npos;
    if (type.find("open_buffdesc") != std::string::npos) {
      a.kind = type.find("const") != std::string::npos ? wire::kInText : wire::kOutText;
      a.size = 256;
    } else if (type.find("open_pwr_sav_sample_t") != std::string::npos) {
      // The cursor of the sample before, as the walk hands it back.
      a.kind = wire::kInOutBlob;
      open_pwr_sav_sample_t sample = {};
      if (next < in.size()) sample.next = in[next++];
      a.text.assign(reinterpret_cast<const char *>(&sample), sizeof sample);
    } else {
      a.kind = pointer ? wire::kOutNum : wire::kInNum;
      if (!pointer) a.num = next < in.size() ? in[next++] : 0;
    }
    c.args.push_back(a);
  }
  Reply r;
  r.result = sim::handleCall(s, c);
  for (size_t i = 0; i < declared.size(); ++i) {
    if (c.args[i].isInput()) continue;
    r.num[nameOf(declared[i])] = c.args[i].num;
    r.text[nameOf(declared[i])] = c.args[i].text;
  }
  return r;
}

#define CALL(name) ::sim::calls::name

int64_t read1(sim::Sim &s, const sim::CallId &id, uint64_t port) {
  Reply r = ask(s, id, {port});
  return r.result == OPEN_E_NONE ? static_cast<int64_t>(r.num[nameOf(std::string(id.params, strlen(id.params) - 1))]) : -1;
}

struct PortView {
  uint32_t ifNum = 0;
  bool fibre = false, green = false;
  int64_t link = 0, active = 0, opr = 0, admin = 0, reason = 0, duplex = 0, speed = 0, autoNeg = 0;
  int64_t pauseRx = 0, media = 0;
  std::array<int64_t, 9> counters{};
  int64_t power = -1, saving = -1;
  int64_t dllEnabled = -1, dllReady = -1, remoteSummary = -1, summaryReady = -1, edActive = -1, edReason = -1;
  int64_t echoTx = -1, echoRx = -1, summaryEchoTx = -1, summaryEchoRx = -1;
  int64_t edAdmin = 0, cable = 0, lpiEvents = -1, duplexMode = 0;
  int64_t staticCount = 0;
};

struct View {
  std::vector<PortView> ports;
  int64_t nowMs = 0;
  int64_t globalPower = 0, globalSaving = 0, globalEd = 0, globalStatic = 0;
  std::vector<int64_t> lagStatus;
  std::map<uint32_t, std::array<int64_t, 9>> lagCounters;  // by LAG, then the sum of its members'
  std::map<uint32_t, std::array<uint64_t, 9>> memberSums;
  std::map<uint32_t, std::pair<int64_t, bool>> lagLink;  // by LAG: its link state, whether a member is up
  std::map<uint32_t, int64_t> staticByVlan;
  std::map<uint32_t, uint64_t> inRate;  // configured traffic, to know which ports must count
};

constexpr sim::CallId kCounterCalls[] = {
    CALL(rpcclt_openapiIfInOctetsGet),   CALL(rpcclt_openapiIfInUcastPktsGet),    CALL(rpcclt_openapiIfInDiscardsGet),
    CALL(rpcclt_openapiIfInErrorsGet),   CALL(rpcclt_openapiIfInUnknownProtosGet), CALL(rpcclt_openapiIfOutOctetsGet),
    CALL(rpcclt_openapiIfOutUcastPktsGet), CALL(rpcclt_openapiIfOutDiscardsGet),   CALL(rpcclt_openapiIfOutErrorsGet),
};

constexpr int64_t kUp = 0;

View look(sim::Sim &s) {
  View w;
  w.nowMs = sim::clockNowMs(s.clock);
  for (std::optional<sim::Interface> at = sim::nextOfType(s, 8, 0); at; at = sim::nextOfType(s, 8, at->ifNum)) {
    const sim::Interface &i = *at;
    if (i.type == OPEN_INTF_TYPE_LAG) {
      w.lagStatus.push_back(read1(s, CALL(rpcclt_openapiIfStatusGet), i.ifNum));
      w.lagLink[i.ifNum].first = read1(s, CALL(openapiIfLinkStateGet), i.ifNum);
      for (size_t c = 0; c < std::size(kCounterCalls); ++c) w.lagCounters[i.ifNum][c] = read1(s, kCounterCalls[c], i.ifNum);
    }
    if (i.type != OPEN_INTF_TYPE_PHY) continue;
    PortView v;
    v.ifNum = i.ifNum;
    v.fibre = read1(s, CALL(rpcclt_openapiIfCapabilitiesGet), i.ifNum) == 0x0190;
    v.green = read1(s, CALL(rpcclt_openapiGreenEthrIsValidIntfType), i.ifNum) == 1;
    v.link = read1(s, CALL(openapiIfLinkStateGet), i.ifNum);
    v.active = read1(s, CALL(rpcclt_openapiIfActiveStateGet), i.ifNum);
    v.opr = read1(s, CALL(openapiIfOprStateGet), i.ifNum);
    v.admin = read1(s, CALL(openapiIfAdminStateGet), i.ifNum);
    v.reason = read1(s, CALL(rpcclt_openapiIfDisableReasonGet), i.ifNum);
    v.duplex = read1(s, CALL(openapiIfDuplexGet), i.ifNum);
    v.speed = read1(s, CALL(rpcclt_openapiIfSpeedModeGet), i.ifNum);
    v.autoNeg = read1(s, CALL(openapiIfAutoNegGet), i.ifNum);
    v.media = read1(s, CALL(rpcclt_openapiIfActiveMediaTypeGet), i.ifNum);
    v.pauseRx = read1(s, CALL(rpcclt_openapiIfPauseStatusGet), i.ifNum);
    for (size_t c = 0; c < std::size(kCounterCalls); ++c) v.counters[c] = read1(s, kCounterCalls[c], i.ifNum);
    if (uint32_t lag = sim::findPort(s, i.ifNum)->lagMember) {
      w.lagLink[lag].second |= v.link == kUp;
      for (size_t c = 0; c < std::size(kCounterCalls); ++c) w.memberSums[lag][c] += static_cast<uint64_t>(v.counters[c]);
    }
    v.cable = ask(s, CALL(rpcclt_openapiCableStatusGet), {i.ifNum}).num["status"];
    v.duplexMode = read1(s, CALL(rpcclt_openapiIfDuplexModeGet), i.ifNum);
    v.staticCount = read1(s, CALL(rpcclt_openapiPmlIntfStaticCountGet), i.ifNum);
    if (v.green) {
      v.power = read1(s, CALL(rpcclt_openapiGreenPwrEstIntfCurPwrGet), i.ifNum);
      v.saving = read1(s, CALL(rpcclt_openapiGreenPwrEstIntfCumSavingGet), i.ifNum);
      v.dllEnabled = read1(s, CALL(rpcclt_openapiGreenEthrEeeTxDllEnableGet), i.ifNum);
      v.dllReady = read1(s, CALL(rpcclt_openapiGreenEthrEeeRxDllReadyGet), i.ifNum);
      v.remoteSummary = ask(s, CALL(rpcclt_openapiGreenEthrEeeRemoteSummaryGet), {i.ifNum}).result;
      Reply summary = ask(s, CALL(rpcclt_openapiGreenEthrEeeLocalSummaryGet), {i.ifNum});
      v.summaryReady = static_cast<int64_t>(summary.num["txDllReady"]);
      v.summaryEchoTx = static_cast<int64_t>(summary.num["twSysTxEcho"]);
      v.summaryEchoRx = static_cast<int64_t>(summary.num["twSysRxEcho"]);
      v.echoTx = read1(s, CALL(rpcclt_openapiGreenEthrEeeEchoTxTwsysGet), i.ifNum);
      v.echoRx = read1(s, CALL(rpcclt_openapiGreenEthrEeeEchoRxTwsysGet), i.ifNum);
      Reply ed = ask(s, CALL(rpcclt_openapiGreenEthrEnergyDetectOprStatusGet), {i.ifNum});
      v.edActive = static_cast<int64_t>(ed.num["status"]);
      v.edReason = static_cast<int64_t>(ed.num["reason"]);
      v.edAdmin = read1(s, CALL(rpcclt_openapiGreenEthrEnergyDetectAdminModeGet), i.ifNum);
      v.lpiEvents = read1(s, CALL(rpcclt_openapiGreenEthrEeeTxEventsGet), i.ifNum);
    }
    w.inRate[i.ifNum] = sim::findPort(s, i.ifNum)->rates.inOctetsPerSec;
    w.ports.push_back(v);
  }
  w.globalPower = static_cast<int64_t>(ask(s, CALL(rpcclt_openapiGreenPwrEstGlobalCurPwrGet)).num["pwrConsumption"]);
  w.globalSaving = static_cast<int64_t>(ask(s, CALL(rpcclt_openapiGreenPwrEstGlobalCumSavingGet)).num["pwrSaving"]);
  w.globalEd = static_cast<int64_t>(ask(s, CALL(rpcclt_openapiGreenEthrGlobalEnergyDetectModeGet)).num["mode"]);
  w.globalStatic = static_cast<int64_t>(ask(s, CALL(rpcclt_openapiPmlStaticAddrGlobalCountGet)).num["count"]);
  for (uint32_t vlan : s.model.vlans)
    w.staticByVlan[vlan] = read1(s, CALL(rpcclt_openapiPmlStaticAddrCountByVlanGet), vlan);
  return w;
}

constexpr int64_t kFibreDrawUp = 1150, kFibreDrawDown = 300;

// Adds the name of an invariant that does not hold to the faults found.
void must(std::string &f, bool holds, const char *name) { f += holds ? "" : std::string(name) + "; "; }

// What must hold of a port at every moment.
std::string portFaults(const PortView &p, const View &w) {
  std::string f;
  bool up = p.link == kUp, green = p.green;
  must(f, p.active == up && (p.opr == 1) == up, "link, active and operational state agree");
  must(f, p.admin == 1 || !up, "an admin-disabled port is down");
  must(f, (p.reason != 0) == (p.opr == 2) && (p.reason == 0 || !up), "D-Disabled: down and diag-disabled");
  must(f, p.media != -1 || !up, "a port without a transceiver is down");
  must(f, (p.speed == 1) == (p.autoNeg == 0), "the speed read is the one set");
  must(f, !up || p.duplex == p.duplexMode, "an up port runs the duplex set");
  must(f, up || (p.duplex == 2 && p.pauseRx == 0), "nothing negotiated shows while down");
  bool eeeQuiet = p.dllEnabled == 0 && p.dllReady == 0 && p.summaryReady == 0 &&
                  p.remoteSummary == OPEN_E_NOT_FOUND;
  must(f, up || !green || eeeQuiet, "no EEE with the partner while down");
  bool noPartner = !up && p.admin == 1 && p.reason == 0;  // else a live partner would link
  must(f, p.fibre || up == (p.cable == 2) || (p.cable == 2 && !noPartner), "the cable test follows the link");
  must(f, !green || ((p.dllReady == 0 || p.dllEnabled == 1) &&
                     (p.remoteSummary == OPEN_E_NONE) == (p.dllReady == 1)),
         "EEE readiness needs EEE enabled and brings the partner's summary");
  must(f, !green || (p.summaryReady == p.dllReady && p.echoTx == p.summaryEchoTx &&
                     p.echoRx == p.summaryEchoRx && (p.echoTx != 0) == (p.dllReady == 1)),
         "our summary and echo agree with readiness");
  bool edOn = p.edAdmin == 1 && w.globalEd == 1;
  must(f, !green || (p.edActive == (edOn && !up) && (!edOn || p.edReason == (up ? 2 : 7))),
         "energy detect is active exactly on its down ports");
  return f;
}

// What must hold between two looks at a port with only the clock moving `ms`.
std::string movedFaults(const PortView &a, const PortView &b, int64_t ms, const View &w) {
  std::string f;
  static const std::map<int64_t, uint64_t> kMbps = {{1, 1000}, {2, 100}, {3, 100},
                                                    {4, 10},   {5, 10},  {7, 1000}};
  auto mbps = kMbps.find(b.speed);
  uint64_t line = mbps == kMbps.end() ? 0 : mbps->second * 125 * static_cast<uint64_t>(ms);
  auto grew = [&](int c) { return uint64_t{static_cast<uint32_t>(b.counters[c] - a.counters[c])}; };
  bool measurable = line && !(line >> 32) && a.speed == b.speed;
  bool withinLine = b.duplexMode == 0 ? grew(0) + grew(5) <= line : grew(0) <= line && grew(5) <= line;
  must(f, !measurable || withinLine, "traffic within the line rate (both ways together on half duplex)");
  bool up = a.link == kUp && b.link == kUp, down = a.link != kUp && b.link != kUp;
  must(f, !down || a.counters == b.counters, "a down port's counters hold");
  must(f, !up || w.inRate.at(a.ifNum) < 1000 || a.counters[0] != b.counters[0], "traffic counts while up");
  must(f, !a.green || b.saving >= a.saving, "saving never falls");
  if (!a.green || a.dllReady != b.dllReady || ms < 25) return f;
  bool lpiGrew = a.lpiEvents != b.lpiEvents, saved = a.saving != b.saving;
  must(f, lpiGrew == (a.dllReady == 1) && (!up || a.dllReady == 1 || !saved),
         "LPI counts grow exactly while EEE runs, and only then is power saved while up");
  return f;
}

// What must hold of the whole switch: its draw, saving and locked addresses its ports', its LAGs' counts
// their members'.
std::string switchFaults(const View &w) {
  std::string f;
  int64_t draw = 0, saving = 0, byPort = 0, byVlan = 0;
  for (const PortView &p : w.ports) {
    draw += p.green ? p.power : p.link == kUp ? kFibreDrawUp : kFibreDrawDown;
    saving += p.green ? p.saving : 0;
    byPort += p.staticCount;
  }
  for (const auto &[vlan, n] : w.staticByVlan) byVlan += n;
  must(f, draw == w.globalPower && saving == w.globalSaving, "the switch's draw and saving are its ports'");
  must(f, byPort == w.globalStatic && byVlan == w.globalStatic, "locked addresses count alike everywhere");
  must(f, std::ranges::count(w.lagStatus, 1) == std::ssize(w.lagStatus), "every LAG has members");
  for (const auto &[lag, counters] : w.lagCounters)
    for (size_t c = 0; c < counters.size(); ++c)
      must(f, static_cast<uint64_t>(counters[c]) == w.memberSums.at(lag)[c] % (1ULL << 32),
             "a LAG counts what its members count");
  for (const auto &[lag, link] : w.lagLink) must(f, (link.first == kUp) == link.second, "a LAG is up exactly while a member is");
  return f;
}

std::string failures(const View &now, const View *before) {
  std::string out = switchFaults(now);
  for (size_t i = 0; i < now.ports.size(); ++i) {
    std::string why = portFaults(now.ports[i], now);
    if (before) why += movedFaults(before->ports[i], now.ports[i], now.nowMs - before->nowMs, now);
    if (!why.empty()) out += "port " + std::to_string(now.ports[i].ifNum) + ": " + why + "\n";
  }
  return out;
}


using Rng = std::mt19937;

uint32_t anyPort(sim::Sim &s, Rng &r) { return 1 + r() % s.model.layout.ports(); }
uint32_t anyCopper(sim::Sim &s, Rng &r) { return 1 + r() % s.model.layout.copperPorts; }
uint32_t anyFibre(sim::Sim &s, Rng &r) { return s.model.layout.ports() - r() % s.model.layout.fibrePorts; }

struct Change { const char *name; std::function<std::string(sim::Sim &, Rng &)> apply; };
using Pick = uint32_t (*)(sim::Sim &, Rng &);

// One timeline event now on a picked port, with one of `fields` (each ending in ", ") drawn.
Change eventOn(const char *name, Pick pick, std::vector<std::string> fields = {""}) {
  auto apply = [=](sim::Sim &s, Rng &r) {
    std::string event = R"("at": 0, "event": ")" + std::string(name) + "\", " + fields[r() % fields.size()];
    event += R"("port": )" + std::to_string(pick(s, r));
    Ctl played = ctl(s, {"play", R"({"timeline": [{)" + event + "}]}"});
    ctl(s, {"clock", "advance", "0"});
    return played.out;
  };
  return {name, apply};
}

// A setter called on a picked port, with a value below `values` if any.
Change setterOn(const char *name, const sim::CallId &id, Pick pick, uint32_t values = 0) {
  return {name, [=, &id](sim::Sim &s, Rng &r) {
            std::vector<uint64_t> in = {pick(s, r)};
            if (values) in.push_back(r() % values);
            int rc = ask(s, id, in).result;
            // Refusals of a value (PARAM) or of one the port's capabilities lack (FAIL) are answers too.
            bool answered = rc == OPEN_E_NONE || rc == OPEN_E_PARAM || rc == OPEN_E_FAIL;
            return answered ? "" : std::string(id.name) + " answered " + std::to_string(rc);
          }};
}

// Every D-Disable cause the API names, by that name and by its CLI name.
std::vector<std::string> causeFields() {
  std::vector<std::string> out;
  for (const facts::DDisableCause &c : facts::kDDisableCauses)
    for (const char *name : {c.api, c.cli})
      if (c.api) out.push_back(R"("cause": ")" + std::string(name) + "\", ");
  return out;
}

const std::vector<Change> &changes() {
  static std::vector<Change> all = {
      eventOn("link-down", anyPort),
      eventOn("link-up", anyPort),
      eventOn("transceiver-removed", anyFibre),
      eventOn("transceiver-inserted", anyFibre, {R"("media": "copper", )", R"("media": "fiber", )"}),
      eventOn("ddisable", anyPort, causeFields()),
      eventOn("pml-violation", anyPort, {R"("macs": ["00:11:22:33:44:55"], "vlan": 1, )",
                                         R"("macs": ["00:11:22:33:44:55"], "vlan": 10, )"}),
      eventOn("counters-reset", anyPort),
      eventOn("counters-wrap", anyPort, {R"("inSeconds": 0, )", R"("inSeconds": 7, )"}),
      eventOn("power", anyCopper, {R"("milliwatts": 0, )", R"("milliwatts": 1999, )"}),
      eventOn("admin", anyPort, {R"("state": "enable", )", R"("state": "disable", )"}),
      eventOn("traffic", anyPort, {R"("inOctetsPerSec": 2999999, "inErrors": 99, )", R"("inErrors": 0, )",
                                   R"("inOctetsPerSec": 0, "inErrors": 1, )", R"("inOctetsPerSec": 1000, )"}),
      setterOn("learned addresses made static", CALL(rpcclt_openapiPmlIntfDynamicToStaticMove), anyPort),
      setterOn("counter clear", CALL(rpcclt_openapiInterfaceStatsReset), anyPort),
      setterOn("power saving clear", CALL(rpcclt_openapiGreenEthrIntfStatisticsClear), anyCopper),
      setterOn("history clear", CALL(rpcclt_openapiGreenEthrPwrSavHistoryIntfStatisticsClear), anyCopper),
  };
  static const size_t named = all.size();
  if (all.size() > named) return all;  // the setters below are in already
  // Every setter of the call table, on any port, with small values and now
  // and then a large one; a refusal is an answer too.
  for (size_t g = 0; g < sim::kRuleGroupCount; ++g)
    for (const sim::CallRule &rule : std::span(sim::kRuleGroups[g].rules, sim::kRuleGroups[g].count))
      if (rule.getter)
        all.push_back({rule.call->name, [&rule](sim::Sim &s, Rng &r) {
                         auto value = [&] { return r() % 4 ? r() % 3 : r() % 10000; };
                         ask(s, *rule.call, {anyPort(s, r), value(), value()});
                         return std::string();
                       }});
  return all;
}

// A clock move, mostly short, now and then past a recovery, many samples or a century; in pieces.
std::string moveClock(sim::Sim &s, Rng &r, int64_t *seconds) {
  *seconds = r() % 40 == 0 ? 3200000000 : r() % 8 == 0 ? 3000 + r() % 100000 : 1 + r() % 400;
  for (int64_t left = *seconds, piece = 0; left > 0; left -= piece) {
    piece = r() % 2 ? left : 1 + static_cast<int64_t>(r() % static_cast<uint64_t>(left));
    Ctl c = ctl(s, {"clock", "advance", std::to_string(piece)});
    if (c.status != 0) return c.out;
    look(s);
  }
  return "";
}

// Every cause recovering, so that trips come back; a partner on every copper port, so that LAG members
// count; ports 3 and 5 offered more than their line rate (10 Mb/s half, 100 Mb/s full).
std::string recoveringSwitch(const sim::SwitchLayout &l, uint32_t intervalS) {
  std::string ports = R"({"3": {"speedMode": 4, "rates": {"inOctetsPerSec": 900000, "outOctetsPerSec": 800000}},)"
                      R"( "5": {"speedMode": 3, "rates": {"inOctetsPerSec": 20000000}})";
  for (uint32_t n = 1; n <= l.copperPorts; ++n)
    if (n != 3 && n != 5) ports += R"(, ")" + std::to_string(n) + R"(": {"partner": true, "cableM": 2})";
  char layout[200];
  snprintf(layout, sizeof layout, R"({"copperPorts": %u, "fibrePorts": %u, "lags": %u, "cage": %s})", l.copperPorts,
           l.fibrePorts, l.lags, l.cage ? "true" : "false");
  std::string text = R"({"model": {"layout": )" + std::string(layout) + R"(, "ports": )" + ports + "}," +
                     R"( "errdisable": {"interval": )" + std::to_string(intervalS) + R"(, "causes": {)";
  std::string causes;
  for (const facts::DDisableCause &c : facts::kDDisableCauses)
    causes += std::string(causes.empty() ? "" : ", ") + "\"" + c.cli + "\": true";
  return text + causes + "}}}}";
}

const sim::SwitchLayout kSizes[] = {{24, 4, 2, true}, {8, 2, 1, false}, {48, 4, 4, false}};

void load(sim::Sim &s, const std::string &scenario) {
  std::string error;
  sim::clockRestart(s.clock);
  sim::clockPause(s.clock);
  ASSERT_TRUE(sim::loadScenario(s, scenario, &error)) << error;
}

// Every change in a shuffled order, between clock moves; SIM_WALK_SEED replays a walk.
TEST(SimModel, ARandomWalkKeepsEveryInvariant) {
  const char *fixed = getenv("SIM_WALK_SEED");
  uint32_t seed = fixed ? static_cast<uint32_t>(strtoul(fixed, nullptr, 10)) : std::random_device()();
  Rng rng(seed);
  std::vector<size_t> order(changes().size());
  std::iota(order.begin(), order.end(), 0);
  for (const sim::SwitchLayout &size : kSizes) {
    sim::Sim s, twin;  // the twin's clock moves in one piece, unread
    std::string scenario = recoveringSwitch(size, 30 + rng() % 300);
    load(s, scenario);
    load(twin, scenario);
    View before = look(s);
    ASSERT_EQ(failures(before, nullptr), "") << size.ports() << " ports at load";
    std::shuffle(order.begin(), order.end(), rng);
    for (size_t step = 0, next = 0; next < order.size(); ++step) {
      bool clockOnly = rng() % 3 == 0;
      const Change &change = changes()[order[clockOnly ? 0 : next++]];
      Rng same = rng;
      int64_t seconds = 0;
      std::string done = clockOnly ? moveClock(s, rng, &seconds) : change.apply(s, rng);
      ASSERT_EQ(done, "") << "seed " << seed << ", step " << step;
      if (clockOnly) ctl(twin, {"clock", "advance", std::to_string(seconds)});
      else change.apply(twin, same);
      View now = look(s);
      std::string why = failures(now, clockOnly ? &before : nullptr);
      if (clockOnly && ctl(s, {"dump"}).out != ctl(twin, {"dump"}).out) why += "the switch differs from its twin\n";
      ASSERT_EQ(why, "") << "seed " << seed << " (SIM_WALK_SEED=" << seed << "), " << size.ports() << " ports, step "
                         << step << ": " << (clockOnly ? "clock" : change.name);
      before = now;
    }
  }
}

void advance(sim::Sim &s, int seconds) { ASSERT_EQ(ctl(s, {"clock", "advance", std::to_string(seconds)}).status, 0); }
void play(sim::Sim &s, const std::string &events) {
  ASSERT_EQ(ctl(s, {"play", R"({"timeline": [)" + events + "]}"}).out, "");
}
int64_t firstSample(sim::Sim &s, uint32_t port, const char *field) {
  Reply r = ask(s, CALL(rpcclt_openapix2GreenEthrPwrSavHistoryIntfFirstEntryGet), {port});
  open_pwr_sav_sample_t sample = {};
  memcpy(&sample, r.text["sample"].data(), sizeof sample);
  return std::string(field) == "number" ? sample.sampleNo : sample.sampleTime;
}

constexpr int64_t kSwitchTimeAtLoad = 1709251200 + 5000 * 300;  // the uplink's next sample time
constexpr char kRecovering[] = R"({"model": {"errdisable": {"interval": 60, "causes": {"bpduguard": true}}}})";

// What a setting or an event leads to, read at the moment it should show (scenario nullptr: the default).
struct Consequence { const char *name, *scenario; int64_t want; std::function<int64_t(sim::Sim &)> run; };

const Consequence kConsequences[] = {
    {"a port D-Disabled at load recovers once its cause is set to recover", kRecovering, 0,
     [](sim::Sim &s) { return read1(s, CALL(openapiIfLinkStateGet), 7); }},
    {"every trip restarts the countdown", kRecovering, 40, [](sim::Sim &s) {
       play(s, R"({"at": 0, "event": "ddisable", "port": 2, "cause": "bpduguard"},
                  {"at": 40, "event": "ddisable", "port": 2, "cause": "bpduguard"})");
       advance(s, 99);
       int64_t shut = read1(s, CALL(rpcclt_openapiIfDisableReasonGet), 2);
       advance(s, 1);
       return shut * 10 + read1(s, CALL(rpcclt_openapiIfDisableReasonGet), 2);
     }},
    {"a violation on a locked port drops the frames and D-Disables it", nullptr, 214, [](sim::Sim &s) {
       int64_t discards = read1(s, CALL(rpcclt_openapiIfInDiscardsGet), 3);
       play(s, R"({"at": 0, "event": "pml-violation", "port": 3, "macs": ["00:11:22:33:44:55", "00:11:22:33:44:66"],
                   "vlan": 1})");
       return (read1(s, CALL(rpcclt_openapiIfInDiscardsGet), 3) - discards) * 100 +
              read1(s, CALL(rpcclt_openapiIfDisableReasonGet), 3);
     }},
    {"a port without a link receives nothing: no violation, no error burst", nullptr, 0, [](sim::Sim &s) {
       ask(s, CALL(rpcclt_openapiPmlIntfModeSet), {4, 1});
       ask(s, CALL(rpcclt_openapiPmlIntfViolationDDisableModeSet), {4, 1});
       play(s, R"({"at": 0, "event": "pml-violation", "port": 4, "macs": ["00:11:22:33:44:55"], "vlan": 1},
                  {"at": 0, "event": "traffic", "port": 4, "inErrors": 500})");
       advance(s, 0);
       std::string last = ask(s, CALL(rpcclt_openapiPmlIntfLastViolationAddrGet), {4}).text["macAddr"];
       return read1(s, CALL(rpcclt_openapiIfInDiscardsGet), 4) + read1(s, CALL(rpcclt_openapiIfInErrorsGet), 4) +
              read1(s, CALL(rpcclt_openapiIfDisableReasonGet), 4) + static_cast<int64_t>(strlen(last.c_str()));
     }},
    {"a LAG goes down with its last member (ports 21 and 22 of LAG 650)", nullptr, 1, [](sim::Sim &s) {
       play(s, R"({"at": 0, "event": "link-down", "port": 21}, {"at": 0, "event": "link-down", "port": 22})");
       advance(s, 0);
       return read1(s, CALL(openapiIfLinkStateGet), 650);
     }},
    {"a full history drops its oldest sample", nullptr, 2, [](sim::Sim &s) {
       ask(s, CALL(rpcclt_openapiGreenEthrEeeLpiHistoryIntfMaxSamplesSet), {36});
       advance(s, 300);
       return firstSample(s, 3, "number");
     }},
    {"after a clear, samples start again at the time then", nullptr, 1200, [](sim::Sim &s) {
       advance(s, 1000);
       ask(s, CALL(rpcclt_openapiGreenEthrPwrSavHistoryIntfStatisticsClear), {3});
       advance(s, 200);
       return firstSample(s, 3, "time") - kSwitchTimeAtLoad;
     }},
    {"the saving grows with the clock (energy detect on a down port: 465 mW)", nullptr, 465, [](sim::Sim &s) {
       int64_t before = read1(s, CALL(rpcclt_openapiGreenPwrEstIntfCumSavingGet), 15);
       advance(s, 3600);
       return read1(s, CALL(rpcclt_openapiGreenPwrEstIntfCumSavingGet), 15) - before;
     }},
};

TEST(SimModel, EachConsequenceShowsAtItsMoment) {
  for (const Consequence &c : kConsequences) {
    sim::Sim s;
    load(s, c.scenario ? c.scenario : sim::defaultScenario());
    EXPECT_EQ(c.run(s), c.want) << c.name;
  }
}

}  // namespace
