// The simulated switch as one switch: the call table against the declared
// calls, and one table of invariants that every answer of every port must
// keep, checked after each event kind and setting on every switch size,
// then along a seeded random walk of events, settings and clock moves.
#include <gtest/gtest.h>
#include <stdlib.h>

#include <algorithm>
#include <functional>
#include <map>
#include <numeric>
#include <random>
#include <set>
#include <span>

#include "sim/sim.h"
#include "sim/sim_files.h"
#include "switch_facts.h"
#include "test_support.h"

namespace {

// --- the call table ------------------------------------------------------------

const char *const kDeclared[] = {
#define OPEN_CALL(name, params, args) #name,
#include "open_calls.inc"
#undef OPEN_CALL
    "openapiClientRegister",
    "openapiClientTearDown",
};

TEST(SimCallTable, OneRuleForEachDeclaredCallAndNoOther) {
  std::map<std::string, int> rules;
  for (size_t g = 0; g < sim::kRuleGroupCount; ++g)
    for (size_t i = 0; i < sim::kRuleGroups[g].count; ++i) {
      const sim::CallRule &r = sim::kRuleGroups[g].rules[i];
      ++rules[r.call->name];
      if (r.getter) {
        EXPECT_NE(sim::findRule(r.getter->name), nullptr) << r.call->name << " sets an unknown getter";
      }
    }
  std::set<std::string> declared(std::begin(kDeclared), std::end(kDeclared));
  EXPECT_EQ(declared.size(), std::size(kDeclared)) << "a call declared twice";
  for (const std::string &name : declared) EXPECT_EQ(rules[name], 1) << name;
  for (const auto &[name, count] : rules) EXPECT_TRUE(declared.count(name)) << name << " is not declared";
}

// --- calls made as the client makes them ---------------------------------------

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

// --- what one moment shows -------------------------------------------------------

struct PortView {
  uint32_t ifNum = 0;
  bool fibre = false, green = false;
  int64_t link = 0, active = 0, opr = 0, admin = 0, reason = 0, duplex = 0, speed = 0, autoNeg = 0;
  int64_t pauseRx = 0, media = 0;
  std::array<int64_t, 9> counters{};
  int64_t power = -1, saving = -1;
  int64_t dllEnabled = -1, dllReady = -1, remoteSummary = -1, summaryReady = -1, edActive = -1, edReason = -1;
  int64_t echoTx = -1, echoRx = -1, summaryEchoTx = -1, summaryEchoRx = -1;
  int64_t edAdmin = 0, historyCount = 0, cable = 0, lpiEvents = -1, duplexMode = 0;
  bool historyInOrder = true;
  int64_t staticCount = 0;
};

struct View {
  std::vector<PortView> ports;
  int64_t nowMs = 0, beforeMs = 0;  // the look before, for what the clock moved
  int64_t globalPower = 0, globalSaving = 0, globalEd = 0, globalStatic = 0, maxSamples = 0;
  std::vector<int64_t> lagStatus;
  std::map<uint32_t, std::array<int64_t, 9>> lagCounters;  // by LAG, then the sum of its members'
  std::map<uint32_t, std::array<uint64_t, 9>> memberSums;
  std::map<uint32_t, int64_t> staticByVlan;
  std::map<uint32_t, uint64_t> inRate;  // configured traffic, to know which ports must count
};

constexpr sim::CallId kCounterCalls[] = {
    CALL(rpcclt_openapiIfInOctetsGet),   CALL(rpcclt_openapiIfInUcastPktsGet),    CALL(rpcclt_openapiIfInDiscardsGet),
    CALL(rpcclt_openapiIfInErrorsGet),   CALL(rpcclt_openapiIfInUnknownProtosGet), CALL(rpcclt_openapiIfOutOctetsGet),
    CALL(rpcclt_openapiIfOutUcastPktsGet), CALL(rpcclt_openapiIfOutDiscardsGet),   CALL(rpcclt_openapiIfOutErrorsGet),
};

// The history walked from its first sample, as far as a page would.
void readHistory(sim::Sim &s, PortView &v) {
  Reply r = ask(s, CALL(rpcclt_openapix2GreenEthrPwrSavHistoryIntfFirstEntryGet), {v.ifNum});
  open_pwr_sav_sample_t last = {};
  for (int n = 0; r.result == OPEN_E_NONE && n < 40; ++n) {
    open_pwr_sav_sample_t sample = {};
    memcpy(&sample, r.text["sample"].data(), sizeof sample);
    // Numbers and times run on in the wire's 16 and 32 bits.
    uint32_t after = sample.sampleTime - last.sampleTime;
    if (n && (sample.sampleNo != static_cast<uint16_t>(last.sampleNo + 1) || after == 0 || after > INT32_MAX))
      v.historyInOrder = false;
    ++v.historyCount;
    last = sample;
    if (!sample.next) break;
    r = ask(s, CALL(rpcclt_openapix2GreenEthrPwrSavHistoryIntfNextEntryGet), {sample.next});
  }
}

View look(sim::Sim &s) {
  View w;
  w.nowMs = sim::clockNowMs(s.clock);
  for (uint32_t n = 0; std::optional<sim::Interface> at = sim::nextOfType(s, 8, n); n = at->ifNum) {
    const sim::Interface &i = *at;
    if (i.type == OPEN_INTF_TYPE_LAG) {
      w.lagStatus.push_back(read1(s, CALL(rpcclt_openapiIfStatusGet), i.ifNum));
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
    if (uint32_t lag = sim::findPort(s, i.ifNum)->lagMember)
      for (size_t c = 0; c < std::size(kCounterCalls); ++c) w.memberSums[lag][c] += static_cast<uint64_t>(v.counters[c]);
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
      readHistory(s, v);
    }
    w.inRate[i.ifNum] = sim::findPort(s, i.ifNum)->rates.inOctetsPerSec;
    w.ports.push_back(v);
  }
  w.globalPower = static_cast<int64_t>(ask(s, CALL(rpcclt_openapiGreenPwrEstGlobalCurPwrGet)).num["pwrConsumption"]);
  w.globalSaving = static_cast<int64_t>(ask(s, CALL(rpcclt_openapiGreenPwrEstGlobalCumSavingGet)).num["pwrSaving"]);
  w.globalEd = static_cast<int64_t>(ask(s, CALL(rpcclt_openapiGreenEthrGlobalEnergyDetectModeGet)).num["mode"]);
  w.globalStatic = static_cast<int64_t>(ask(s, CALL(rpcclt_openapiPmlStaticAddrGlobalCountGet)).num["count"]);
  w.maxSamples = static_cast<int64_t>(ask(s, CALL(rpcclt_openapiGreenEthrEeeLpiHistoryIntfMaxSamplesGet)).num["maxSamples"]);
  for (uint32_t vlan : s.model.vlans)
    w.staticByVlan[vlan] = read1(s, CALL(rpcclt_openapiPmlStaticAddrCountByVlanGet), vlan);
  return w;
}

// --- the invariants ----------------------------------------------------------------

// What must hold of every port at every moment, and between two moments
// with no event between them but the clock; each returns what it found
// wanting, or "".
struct Invariant {
  const char *name;
  std::function<std::string(const PortView &p, const View &now)> port;
  std::function<std::string(const View &now)> whole;
  // Between two looks when only the clock moved.
  std::function<std::string(const PortView &before, const PortView &after, const View &now)> moved;
};

std::string unless(bool ok, const std::string &why) { return ok ? "" : why; }

constexpr int64_t kUp = 0;
constexpr int64_t kFibreDrawUp = 1150, kFibreDrawDown = 300;

const Invariant kInvariants[] = {
    {"a port reads up or down alike in link, active and operational state", [](const PortView &p, const View &) {
       bool up = p.link == kUp;
       return unless(p.active == up && (p.opr == 1) == up, "link " + std::to_string(p.link) + ", active " +
                                                                   std::to_string(p.active) + ", opr " + std::to_string(p.opr));
     }, nullptr, nullptr},
    {"an admin-disabled port is down", [](const PortView &p, const View &) {
       return unless(p.admin == 1 || p.link != kUp, "admin disabled but up");
     }, nullptr, nullptr},
    {"a D-Disabled port is down with its reason, and only it reads diag-disabled",
     [](const PortView &p, const View &) {
       return unless((p.reason != 0) == (p.opr == 2) && (p.reason == 0 || p.link != kUp),
                     "reason " + std::to_string(p.reason) + ", opr " + std::to_string(p.opr));
     }, nullptr, nullptr},
    {"a port without a transceiver is down", [](const PortView &p, const View &) {
       return unless(p.media != -1 || p.link != kUp, "no medium but up");
     }, nullptr, nullptr},
    {"nothing negotiated shows while down (duplex, pause, EEE with the partner); the speed read is the one set",
     [](const PortView &p, const View &) {
       if ((p.speed == 1) != (p.autoNeg == 0)) return "speed " + std::to_string(p.speed) + ", autoneg " + std::to_string(p.autoNeg);
       if (p.link == kUp) return unless(p.duplex == p.duplexMode, "up, duplex " + std::to_string(p.duplex));
       bool eeeQuiet = !p.green || (p.dllEnabled == 0 && p.dllReady == 0 && p.summaryReady == 0 &&
                                    p.remoteSummary == OPEN_E_NOT_FOUND);
       return unless(p.duplex == 2 && p.pauseRx == 0 && eeeQuiet,
                     "down but duplex " + std::to_string(p.duplex) + ", pause " + std::to_string(p.pauseRx) +
                         ", DLL " + std::to_string(p.dllEnabled));
     }, nullptr, nullptr},
    {"the cable test follows the cable and the link", [](const PortView &p, const View &) {
       if (p.fibre) return std::string();
       bool noPartner = p.link != kUp && p.admin == 1 && p.reason == 0;  // else a live partner would link
       return unless((p.link == kUp) == (p.cable == 2) || (p.cable == 2 && !noPartner), "cable " + std::to_string(p.cable));
     }, nullptr, nullptr},
    {"EEE readiness needs EEE enabled; the partner's summary and our echo of it come with it", [](const PortView &p, const View &) {
       if (!p.green) return std::string();
       return unless((p.dllReady == 0 || p.dllEnabled == 1) && (p.remoteSummary == OPEN_E_NONE) == (p.dllReady == 1) &&
                         p.summaryReady == p.dllReady && p.echoTx == p.summaryEchoTx && p.echoRx == p.summaryEchoRx &&
                         (p.echoTx != 0) == (p.dllReady == 1),
                     "DLL enabled " + std::to_string(p.dllEnabled) + ", ready " + std::to_string(p.dllReady) +
                         ", echo " + std::to_string(p.echoTx) + " (summary " + std::to_string(p.summaryEchoTx) + ")");
     }, nullptr, nullptr},
    {"energy detect is active exactly on its down ports", [](const PortView &p, const View &w) {
       if (!p.green) return std::string();
       bool on = p.edAdmin == 1 && w.globalEd == 1;
       return unless(p.edActive == (on && p.link != kUp) && (!on || p.edReason == (p.link == kUp ? 2 : 7)),
                     "active " + std::to_string(p.edActive) + ", reason " + std::to_string(p.edReason));
     }, nullptr, nullptr},
    {"a power-saving history walks in order, within its maximum", [](const PortView &p, const View &w) {
       return unless(p.historyInOrder && p.historyCount <= w.maxSamples, "history out of order or too long");
     }, nullptr, nullptr},
    {"the switch's draw is its ports' draw", nullptr,
     [](const View &w) {
       int64_t sum = 0;
       for (const PortView &p : w.ports)
         sum += p.green ? p.power : p.link == kUp ? kFibreDrawUp : kFibreDrawDown;
       return unless(sum == w.globalPower, std::to_string(w.globalPower) + " != " + std::to_string(sum));
     }, nullptr},
    {"the switch's saving is its ports' saving", nullptr,
     [](const View &w) {
       int64_t sum = 0;
       for (const PortView &p : w.ports) sum += p.green ? p.saving : 0;
       return unless(sum == w.globalSaving, std::to_string(w.globalSaving) + " != " + std::to_string(sum));
     }, nullptr},
    {"locked addresses count alike by port, by VLAN and switch-wide", nullptr,
     [](const View &w) {
       int64_t byPort = 0, byVlan = 0;
       for (const PortView &p : w.ports) byPort += p.staticCount;
       for (const auto &[vlan, n] : w.staticByVlan) byVlan += n;
       return unless(byPort == w.globalStatic && byVlan == w.globalStatic,
                     std::to_string(byPort) + " by port, " + std::to_string(byVlan) + " by VLAN, " +
                         std::to_string(w.globalStatic) + " in all");
     }, nullptr},
    {"every LAG has members", nullptr,
     [](const View &w) {
       for (size_t l = 0; l < w.lagStatus.size(); ++l)
         if (w.lagStatus[l] != 1) return "LAG " + std::to_string(l + 1) + " has no members";
       return std::string();
     }, nullptr},
    {"a LAG counts what its members count", nullptr,
     [](const View &w) {
       for (const auto &[lag, counters] : w.lagCounters)
         for (size_t c = 0; c < counters.size(); ++c)
           if (static_cast<uint64_t>(counters[c]) != w.memberSums.at(lag)[c] % (1ULL << 32))
             return "LAG " + std::to_string(lag) + " counter " + std::to_string(c);
       return std::string();
     }, nullptr},
    {"traffic never exceeds the line rate (both ways together on half duplex)", nullptr, nullptr,
     [](const PortView &a, const PortView &b, const View &w) {
       static const std::map<int64_t, uint64_t> kMbps = {{1, 1000}, {2, 100}, {3, 100}, {4, 10}, {5, 10}, {7, 1000}};
       auto mbps = kMbps.find(b.speed);
       uint64_t ms = static_cast<uint64_t>(w.nowMs - w.beforeMs), line = mbps == kMbps.end() ? 0 : mbps->second * 125 * ms;
       if (!line || line >> 32 || a.speed != b.speed) return std::string();
       auto grew = [&](int c) { return static_cast<uint32_t>(b.counters[c] - a.counters[c]); };
       uint64_t in = grew(0), out = grew(5);
       return unless(b.duplexMode == 0 ? in + out <= line : in <= line && out <= line,
                     std::to_string(in) + " in, " + std::to_string(out) + " out in " + std::to_string(ms) + " ms");
     }},
    {"LPI counts grow exactly while EEE runs on both ends, and only then is power saved while up", nullptr, nullptr,
     [](const PortView &a, const PortView &b, const View &w) {
       if (!a.green || a.dllReady != b.dllReady || w.nowMs - w.beforeMs < 25) return std::string();
       bool grew = a.lpiEvents != b.lpiEvents, saved = a.saving != b.saving;
       bool upBoth = a.link == kUp && b.link == kUp;
       return unless(grew == (a.dllReady == 1) && (!upBoth || a.dllReady == 1 || !saved),
                     "ready " + std::to_string(a.dllReady) + ", events grew " + std::to_string(grew));
     }},
    {"a down port's counters hold while the clock moves", nullptr, nullptr,
     [](const PortView &a, const PortView &b, const View &) {
       return unless(a.link == kUp || b.link == kUp || a.counters == b.counters, "counted while down");
     }},
    {"an up port carrying traffic counts while the clock moves", nullptr, nullptr,
     [](const PortView &a, const PortView &b, const View &w) {
       return unless(a.link != kUp || b.link != kUp || w.inRate.at(a.ifNum) < 1000 || a.counters[0] != b.counters[0],
                     "in-octets stood still while up");
     }},
    {"saving never falls while the clock moves", nullptr, nullptr,
     [](const PortView &a, const PortView &b, const View &) {
       return unless(!a.green || b.saving >= a.saving, "saving fell");
     }},
};

std::string failures(const View &now, const View *before) {
  View w = now;
  w.beforeMs = before ? before->nowMs : now.nowMs;
  std::string out;
  for (const Invariant &inv : kInvariants) {
    std::string why;
    for (size_t i = 0; i < w.ports.size() && why.empty(); ++i) {
      if (inv.port) why = inv.port(w.ports[i], w);
      if (inv.moved && before) why = inv.moved(before->ports[i], w.ports[i], w);
      if (!why.empty()) why = "port " + std::to_string(w.ports[i].ifNum) + ": " + why;
    }
    if (why.empty() && inv.whole) why = inv.whole(w);
    if (!why.empty()) out += std::string(inv.name) + ": " + why + "\n";
  }
  return out;
}

// --- what changes the switch ----------------------------------------------------------

// One event now, through the timeline as a file plays it.
std::string event(sim::Sim &s, const std::string &fields) {
  Ctl r = ctl(s, {"play", R"({"timeline": [{"at": 0, )" + fields + "}]}"});
  if (r.status == 0) ctl(s, {"clock", "advance", "0"});
  return r.status == 0 ? "" : r.out;
}

using Rng = std::mt19937;

uint32_t anyPort(sim::Sim &s, Rng &rng) {
  return std::uniform_int_distribution<uint32_t>(1, s.model.layout.ports())(rng);
}
uint32_t anyCopper(sim::Sim &s, Rng &rng) {
  return std::uniform_int_distribution<uint32_t>(1, s.model.layout.copperPorts)(rng);
}
uint32_t anyFibre(sim::Sim &s, Rng &rng) {
  return std::uniform_int_distribution<uint32_t>(s.model.layout.firstFibre(), s.model.layout.ports())(rng);
}
uint32_t coin(Rng &rng) { return std::uniform_int_distribution<uint32_t>(0, 1)(rng); }

// Each kind of change, by name, applied to a port of the walk's choosing.
struct Change {
  const char *name;
  std::function<std::string(sim::Sim &, Rng &)> apply;
};
using Pick = uint32_t (*)(sim::Sim &, Rng &);

// One timeline event on a picked port, with the further fields `more` draws.
Change eventOn(const char *name, Pick pick, std::string (*more)(Rng &) = nullptr) {
  return {name, [=](sim::Sim &s, Rng &r) {
            std::string fields = R"("event": ")" + std::string(name) + "\", " + (more ? more(r) + ", " : "");
            return event(s, fields + R"("port": )" + std::to_string(pick(s, r)));
          }};
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

std::string pickedCause(Rng &r) {
  const facts::DDisableCause &c = facts::kDDisableCauses[std::uniform_int_distribution<size_t>(0, 9)(r)];
  return R"("cause": ")" + std::string(coin(r) ? c.api : c.cli) + "\"";
}

const std::vector<Change> &changes() {
  static std::vector<Change> all = {
      eventOn("link-down", anyPort),
      eventOn("link-up", anyPort),
      eventOn("transceiver-removed", anyFibre),
      eventOn("transceiver-inserted", anyFibre,
              [](Rng &r) { return R"("media": ")" + std::string(coin(r) ? "copper" : "fiber") + "\""; }),
      eventOn("ddisable", anyPort, pickedCause),
      eventOn("pml-violation", anyPort,
              [](Rng &r) {
                return R"("macs": ["00:11:22:33:44:55"], "vlan": )" + std::string(coin(r) ? "1" : "10");
              }),
      eventOn("counters-reset", anyPort),
      eventOn("counters-wrap", anyPort, [](Rng &r) { return R"("inSeconds": )" + std::to_string(r() % 20); }),
      eventOn("power", anyCopper, [](Rng &r) { return R"("milliwatts": )" + std::to_string(r() % 2000); }),
      eventOn("admin", anyPort,
              [](Rng &r) { return R"("state": ")" + std::string(coin(r) ? "enable" : "disable") + "\""; }),
      eventOn("traffic", anyPort,
              [](Rng &r) {
                return R"("inOctetsPerSec": )" + std::to_string(r() % 3000000) + R"(, "inErrors": )" +
                       std::to_string(r() % 100);
              }),
      setterOn("speed setting", CALL(rpcclt_openapiIfSpeedSet), anyPort, 13),
      setterOn("learned addresses made static", CALL(rpcclt_openapiPmlIntfDynamicToStaticMove), anyPort),
      setterOn("counter clear", CALL(rpcclt_openapiInterfaceStatsReset), anyPort),
      setterOn("power saving clear", CALL(rpcclt_openapiGreenEthrIntfStatisticsClear), anyCopper),
      setterOn("history clear", CALL(rpcclt_openapiGreenEthrPwrSavHistoryIntfStatisticsClear), anyCopper),
  };
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

// A clock move, mostly short, now and then past a recovery or many
// samples, or a century; made in pieces with a look between.
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

// Auto-recovery on for every cause, so that trips come back during a walk;
// a partner on every copper port, so that LAG members count; ports 3 and
// 5 offered more than their line rate (10 Mb/s half, 100 Mb/s full).
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

// A seeded walk that takes every change in a shuffled order, between clock
// moves, on every size; SIM_WALK_SEED replays one, SIM_WALK_STEPS makes it
// longer.
TEST(SimModel, ARandomWalkKeepsEveryInvariant) {
  const char *fixed = getenv("SIM_WALK_SEED"), *steps = getenv("SIM_WALK_STEPS");
  uint32_t seed = fixed ? static_cast<uint32_t>(strtoul(fixed, nullptr, 10)) : std::random_device()();
  Rng rng(seed);
  size_t count = steps ? strtoul(steps, nullptr, 10) : 0;
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
    for (size_t step = 0, next = 0; step < count || next < order.size(); ++step) {
      bool clockOnly = rng() % 3 == 0;
      const Change &change = changes()[order[clockOnly ? 0 : next++ % order.size()]];
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

// --- consequences at their moment --------------------------------------------------

// Applies CLI configuration lines as the program does, through a work file.
void configure(sim::Sim &s, const std::string &lines) {
  TempDir work;
  sim::setCliDir(work.path.substr(0, work.path.size() - 1));
  writeText(work.file("in"), lines + "\n");
  sim::Call c{"rpcclt_openapiTxtCfgApply", {}};
  for (const std::string &name : {work.file("in"), work.file("out")})
    c.args.push_back(simArg(wire::kInText, 0, name));
  EXPECT_EQ(sim::handleCall(s, c), OPEN_E_NONE) << lines;
  sim::setCliDir("/mnt/application/quill/tmp");
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

// What a setting or an event leads to, read at the moment it should show.
struct Consequence {
  const char *name;
  const char *scenario;  // nullptr: the default switch
  std::function<int64_t(sim::Sim &)> run;
  int64_t want;
};

const Consequence kConsequences[] = {
    {"a port D-Disabled at load recovers once its cause is set to recover", kRecovering,
     [](sim::Sim &s) { return read1(s, CALL(openapiIfLinkStateGet), 7); }, 0},
    {"... but not while its cause stays off", nullptr,
     [](sim::Sim &s) {
       advance(s, 100000);
       return read1(s, CALL(rpcclt_openapiIfDisableReasonGet), 7);
     },
     4},
    {"every trip restarts the countdown", kRecovering,
     [](sim::Sim &s) {
       play(s, R"({"at": 0, "event": "ddisable", "port": 2, "cause": "bpduguard"},
                  {"at": 40, "event": "ddisable", "port": 2, "cause": "bpduguard"})");
       advance(s, 99);
       int64_t shut = read1(s, CALL(rpcclt_openapiIfDisableReasonGet), 2);
       advance(s, 1);
       return shut * 10 + read1(s, CALL(rpcclt_openapiIfDisableReasonGet), 2);
     },
     40},
    {"a shorter interval counts from the trip, and is not back-dated", nullptr,
     [](sim::Sim &s) {
       configure(s, "errdisable recovery cause bpduguard");
       play(s, R"({"at": 0, "event": "ddisable", "port": 2, "cause": "bpduguard"})");
       advance(s, 100);
       configure(s, "errdisable recovery interval 60");
       return read1(s, CALL(openapiIfLinkStateGet), 2) * 1000 + read1(s, CALL(rpcclt_openapiIfLastChangeGet), 2) - 90000;
     },
     100},
    {"disabling and enabling brings a D-Disabled port with a partner back up", nullptr,
     [](sim::Sim &s) {
       play(s, R"({"at": 0, "event": "ddisable", "port": 3, "cause": "bpduguard"})");
       ask(s, CALL(rpcclt_openapiIfAdminStateSet), {3, 0});
       ask(s, CALL(rpcclt_openapiIfAdminStateSet), {3, 1});
       return read1(s, CALL(openapiIfLinkStateGet), 3);
     },
     0},
    {"no violation where locking is off switch-wide", nullptr,
     [](sim::Sim &s) {
       ask(s, CALL(rpcclt_openapiPmlGlobalAdminModeSet), {0});
       play(s, R"({"at": 0, "event": "pml-violation", "port": 3, "macs": ["00:11:22:33:44:55"], "vlan": 1})");
       return read1(s, CALL(rpcclt_openapiIfDisableReasonGet), 3);
     },
     0},
    {"a violation on a locked port drops the frames and D-Disables it", nullptr,
     [](sim::Sim &s) {
       int64_t discards = read1(s, CALL(rpcclt_openapiIfInDiscardsGet), 3);
       play(s, R"({"at": 0, "event": "pml-violation", "port": 3, "macs": ["00:11:22:33:44:55", "00:11:22:33:44:66"],
                   "vlan": 1})");
       return (read1(s, CALL(rpcclt_openapiIfInDiscardsGet), 3) - discards) * 100 +
              read1(s, CALL(rpcclt_openapiIfDisableReasonGet), 3);
     },
     214},
    {"a port without a link receives nothing: no violation, no error burst", nullptr,
     [](sim::Sim &s) {
       ask(s, CALL(rpcclt_openapiPmlIntfModeSet), {4, 1});
       ask(s, CALL(rpcclt_openapiPmlIntfViolationDDisableModeSet), {4, 1});
       play(s, R"({"at": 0, "event": "pml-violation", "port": 4, "macs": ["00:11:22:33:44:55"], "vlan": 1},
                  {"at": 0, "event": "traffic", "port": 4, "inErrors": 500})");
       advance(s, 0);
       std::string last = ask(s, CALL(rpcclt_openapiPmlIntfLastViolationAddrGet), {4}).text["macAddr"];
       return read1(s, CALL(rpcclt_openapiIfInDiscardsGet), 4) + read1(s, CALL(rpcclt_openapiIfInErrorsGet), 4) +
              read1(s, CALL(rpcclt_openapiIfDisableReasonGet), 4) + static_cast<int64_t>(strlen(last.c_str()));
     },
     0},
    {"a full history drops its oldest sample", nullptr,
     [](sim::Sim &s) {
       ask(s, CALL(rpcclt_openapiGreenEthrEeeLpiHistoryIntfMaxSamplesSet), {36});
       advance(s, 300);
       return firstSample(s, 3, "number");
     },
     2},
    {"a smaller maximum keeps the newest samples", nullptr,
     [](sim::Sim &s) {
       ask(s, CALL(rpcclt_openapiGreenEthrEeeLpiHistoryIntfMaxSamplesSet), {10});
       return firstSample(s, 1, "number");
     },
     4991},
    {"after a clear, samples start again at the time then", nullptr,
     [](sim::Sim &s) {
       advance(s, 1000);
       ask(s, CALL(rpcclt_openapiGreenEthrPwrSavHistoryIntfStatisticsClear), {3});
       advance(s, 200);
       return firstSample(s, 3, "time") - kSwitchTimeAtLoad;
     },
     1200},
    {"a changed interval keeps the samples taken", nullptr,
     [](sim::Sim &s) {
       ask(s, CALL(rpcclt_openapiGreenEthrEeeLpiHistoryIntfSampleIntervalSet), {1});
       advance(s, 60);
       return firstSample(s, 3, "number");
     },
     1},
    {"the saving grows with the clock (energy detect on a down port: 465 mW)", nullptr,
     [](sim::Sim &s) {
       int64_t before = read1(s, CALL(rpcclt_openapiGreenPwrEstIntfCumSavingGet), 15);
       advance(s, 3600);
       return read1(s, CALL(rpcclt_openapiGreenPwrEstIntfCumSavingGet), 15) - before;
     },
     465},
    {"an announced wrap waits while the link is down", nullptr,
     [](sim::Sim &s) {
       play(s, R"({"at": 0, "event": "counters-wrap", "port": 1, "inSeconds": 7},
                  {"at": 2, "event": "link-down", "port": 1}, {"at": 12, "event": "link-up", "port": 1})");
       advance(s, 12);
       sim::catchUp(s);
       for (const sim::PendingTimer &t : sim::pendingTimers(s))
         if (t.what == "port 1 counters wrap") return t.atMs;
       return int64_t{-1};
     },
     17000},
};

TEST(SimModel, EachConsequenceShowsAtItsMoment) {
  for (const Consequence &c : kConsequences) {
    sim::Sim s;
    load(s, c.scenario ? c.scenario : sim::defaultScenario());
    EXPECT_EQ(c.run(s), c.want) << c.name;
  }
}

}  // namespace
