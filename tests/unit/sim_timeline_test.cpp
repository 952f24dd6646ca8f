// Timelines, scenarios and `open-sim ctl` in-process: refusals, events, the clock, dump, delays.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/socket.h>

#include "open_api.h"
#include "sim/client_io.h"
#include "sim/sim.h"
#include "sim/wire.h"
#include "switch_facts.h"
#include "test_support.h"

namespace {

constexpr char kRunning[] = R"({"timeline": [{"at": 30, "event": "link-down", "port": 1}]})";

std::string playFile(const std::string &events) { return R"({"timeline": [)" + events + "]}"; }

// The default switch (or `scenario`) paused at 10 s with kRunning playing.
void start(sim::Sim &s, const std::string &scenario = sim::defaultScenario()) {
  std::string error;
  sim::clockPause(s.clock);
  ASSERT_TRUE(sim::loadScenario(s, scenario, &error)) << error;
  ASSERT_EQ(ctl(s, {"play", kRunning}).status, 0);
  ASSERT_EQ(ctl(s, {"clock", "advance", "10"}).status, 0);
}

TEST(SimTimeline, EachBadInputIsRefusedInOneLineAndChangesNothing) {
  struct Case {
    std::vector<std::string> words;
    std::string line;
    Case(const char *command, std::string file, std::string l) : words{command, std::move(file)}, line(std::move(l)) {}
    Case(std::vector<std::string> w, std::string l) : words(std::move(w)), line(std::move(l)) {}
  };
  auto at5 = [](const char *fields, const std::string &why) {
    return Case("play", playFile(std::string(R"({"at": 5, )") + fields + "}"), "timeline event 1 (at 5): " + why);
  };
  auto model = [](const char *sections, const std::string &why) {
    return Case("load", std::string(R"({"model": {)") + sections + "}}", R"(scenario: "model")" + why);
  };
  const Case cases[] = {
      at5(R"("event": "flap", "port": 1)", R"(unknown event "flap")"),
      at5(R"("event": "link-down", "port": 99)", "unknown port 99"),
      at5(R"("event": "link-down", "port": 4294967297)", "unknown port 4294967297"),
      at5(R"("event": "transceiver-inserted", "port": 4, "media": "fiber")", "port 4 has no module slot"),
      {"play", playFile(R"({"at": 20, "event": "link-down", "port": 1}, {"at": 10, "event": "link-up", "port": 1})"),
       "timeline event 2 (at 10): time out of order (the event before is at 20)"},
      {"play", "{\"timeline\": [\n  {\"at\": 5,, }]}", "timeline file: broken JSON at line 2, column 13"},
      {"play", "{}", R"(timeline file: no "timeline")"},
      {"play", R"({"timeline": {}})", R"("timeline" must be a list of events)"},
      {"play", "{\"timeline\": []}\n{\"timeline\": []}", "timeline file: text after the JSON at line 2, column 1"},
      {"play", R"({"timeline": [], "timeline": []})", R"(timeline file: duplicate key "timeline")"},
      {"play", R"({"timeline": [{"at": 1, "event": "link-down\u0000x", "port": 1}]})",
       "timeline file: a zero byte at line 1, column 44"},
      {"play", R"([{"timeline": []}])", "timeline file: not a JSON object"},
      {"play", playFile("5"), "timeline event 1: an event must be a JSON object"},
      at5(R"("event": "link-down", "port": 1, "port": 2)", R"("port" given twice)"),
      {"play", playFile(R"({"at": 1e10, "event": "link-down", "port": 1})"),
       R"(timeline event 1 (at 1e+10): "at" must be seconds from the start (up to 1e9))"},
      at5(R"("port": 1)", R"(no "event")"),
      at5(R"("event": "link-down")", R"(no "port")"),
      at5(R"("event": "link-down", "port": 1.5)", R"("port" must be a whole number)"),
      at5(R"("event": "link-down", "port": 29)", "unknown port 29"),  // the first LAG
      at5(R"("event": "counters-wrap", "port": 1, "inseconds": 5)",
          R"(unknown field "inseconds" for counters-wrap (it takes "inSeconds"))"),
      at5(R"("event": "transceiver-inserted", "port": 26, "media": 1)", R"("media" must be "copper" or "fiber")"),
      at5(R"("event": "ddisable", "port": 2, "cause": "sunspots")", R"(unknown cause "sunspots")"),
      at5(R"("event": "ddisable", "port": 2)", R"(needs "cause", the name of a D-Disable cause)"),
      at5(R"("event": "pml-violation", "port": 3, "macs": ["00:11:22:33:44:55"], "vlan": 20)", "unknown VLAN 20"),
      at5(R"("event": "pml-violation", "port": 3, "macs": "00:11:22:33:44:55", "vlan": 1)",
          R"(needs "macs", a list of addresses)"),
      at5(R"("event": "pml-violation", "port": 3, "macs": ["00:11:22:33:44"], "vlan": 1)", R"(bad MAC address in "macs")"),
      at5(R"("event": "power", "port": 27, "milliwatts": 1)", "port 27 has no power estimate"),
      at5(R"("event": "power", "port": 4)", R"(needs "milliwatts")"),
      at5(R"("event": "admin", "port": 5, "state": "off")", R"("state" must be "enable" or "disable")"),
      at5(R"("event": "traffic", "port": 1)", R"(needs "inOctetsPerSec", "outOctetsPerSec" or "inErrors")"),
      at5(R"("event": "traffic", "port": 1, "inErrors": -1)", R"("inErrors" must be from 0 to 4294967295)"),
      {"load", R"({"timeLine": []})", R"(scenario: unknown key "timeLine")"},
      {"load", R"({"model": []})", R"(scenario: "model" must be an object)"},
      {"load", R"({"model": {"pml": {"static": [{}, {"ifNum": 2, "ifNum": 2}]}}})",
       R"(scenario: duplicate key "ifNum" in "model"."pml"."static"[1])"},
      {"load", R"({"clockMs": -1})", R"(scenario: "clockMs" must be from 0 to 100000000000000)"},
      {"load", R"({"overrides": []})", R"(scenario: "overrides" must be an object of calls)"},
      model(R"("ports": {"2": {"speedMode": 1.5}})", R"(."ports"."2"."speedMode": must be a whole number)"),
      model(R"("ports": {"1": {"speed": 10}})", R"(."ports"."1": unknown field "speed")"),
      model(R"("ports": {"99": {}})", R"(."ports": the switch has no port "99")"),
      model(R"("ports": {"3": {"medium": 2}})", R"(."ports"."3": "medium" of a copper port is 1 (copper))"),
      model(R"("ports": {"3": {"fibre": true}})", R"(."ports"."3": "fibre" is now derived from the other facts)"),
      model(R"("ports": {"3": {"disableReason": 99}})", R"(."ports"."3": "disableReason" is no D-Disable cause's reason)"),
      model(R"("vlans": [10, 10])", R"(."vlans": VLANs from 1 to 4093, each once)"),
      model(R"("layout": {"copperPorts": -8})", R"(."layout"."copperPorts": must not be negative)"),
      model(R"("layout": {"copperPorts": 8, "fibrePorts": 1, "lags": 1, "cage": true})",
          R"(."layout": the switch has 4 fibre ports with a cage)"),
      model(R"("layout": {"copperPorts": 4294967295, "fibrePorts": 4294967295, "cage": false})",
          R"(."layout": the switch has 648 ports at most)"),
      model(R"("layout": {"copperPorts": 8, "fibrePorts": 2, "lags": 3, "cage": false})",
          R"(."layout": the switch has too many LAGs for its copper ports (two each))"),
      {"load", R"({"overrides": {"openapiIfAdminStateGot": {"1": 1}}})",
       R"(scenario: unknown call "openapiIfAdminStateGot" in "overrides")"},
      {"load", R"({"overrides": {"openapiIfAdminStateGet": {"1": 1.5}}})",
       "scenario: bad outputs for openapiIfAdminStateGet 1 (a whole number, a string or a list of them)"},
      model(R"("ports": [{}])", R"(."ports": must be an object)"),
      model(R"("layout": {"copperPorts": 4294967304})", R"(."layout"."copperPorts": must be from 0 to 4294967295)"),
      model(R"("ports": {"1": {"pml": {"vlanDynamicLimit": {"-1": 5}}}})",
          R"(."ports"."1"."pml"."vlanDynamicLimit": "-1" is not a number)"),
      model(R"("ports": {"25": {"lagMember": 650}})", R"(."ports"."25": "lagMember" is for copper ports)"),
      model(R"("ports": {"3": {"lagMember": 652}})", R"(."ports"."3": "lagMember" is no LAG of the switch)"),
      model(R"("pml": {"vlans": {"5": {}}})", R"(."pml"."vlans": VLAN 5 is no VLAN of the switch)"),
      model(R"("pml": {"dynamic": [{"ifNum": 1, "macAddr": "01:11:22:33:44:55", "vlanId": 1}]})",
          R"(."pml"."dynamic"[0]: "macAddr" is no unicast MAC address (upper-case pairs joined by ":"))"),
      {{"set", "openapiIfAdminStateGot", "1", "0"}, R"(open-sim: unknown call "openapiIfAdminStateGot")"},
      {{"fail", "openapiIfAdminStateGet", "4294967296"},
       "usage: fail CALL RESULT [COUNT] (RESULT from -2147483648 to 2147483647, COUNT 1 or more)"},
      {{"frob"}, R"(unknown command "frob" (set, fail, delay, journal, reset, dump, load, clock or play))"},
  };
  sim::Sim s;
  start(s);
  std::string before = ctl(s, {"dump"}).out;
  for (const Case &c : cases) {
    Ctl r = ctl(s, c.words);
    bool file = c.words[0] == "play" || c.words[0] == "load";  // its line names the file's kind
    EXPECT_EQ(std::pair(r.status, r.out), std::pair(2, (file ? "open-sim: " : "") + c.line + "\n"));
    ASSERT_TRUE(ctl(s, {"dump"}).out == before) << "the state changed: " << c.words.back();
  }
  ctl(s, {"clock", "advance", "20"});
  EXPECT_EQ(simRead(s, "openapiIfLinkStateGet", 1), 1) << "the running timeline went on";
}

TEST(SimTimeline, AnEmptyListStopsTheRunningTimeline) {
  sim::Sim s;
  start(s);
  ASSERT_EQ(ctl(s, {"play", R"({"timeline": []})"}).status, 0);
  ctl(s, {"clock", "advance", "30"});
  EXPECT_EQ(simRead(s, "openapiIfLinkStateGet", 1), 0);
}

TEST(SimTimeline, AcceptedEventsReachTheModelAtTheirMoment) {
  // An event at 5 s, and what `call` reads of `port` before and after; the model tests its consequences.
  struct Case { std::string event; const char *call; uint64_t port; int64_t before, after; } cases[] = {
      {R"("event": "ddisable", "port": 2, "cause": "pml")", "rpcclt_openapiIfDisableReasonGet", 2, 0, 14},
      {R"("event": "admin", "port": 5, "state": "disable")", "openapiIfAdminStateGet", 5, 1, 0},
      {R"("event": "link-down", "port": 1.0)", "openapiIfLinkStateGet", 1, 0, 1},
      {R"("event": "transceiver-inserted", "port": 26, "media": "copper")", "openapiIfLinkStateGet", 26, 1, 0},
  };
  for (const Case &c : cases) {
    sim::Sim s;
    start(s);
    ASSERT_EQ(ctl(s, {"play", playFile(R"({"at": 4.9995, )" + c.event + "}")}).out, "");
    ctl(s, {"clock", "advance", "4.999"});
    EXPECT_EQ(simRead(s, c.call, c.port), c.before) << c.event;
    ctl(s, {"clock", "advance", "0.001"});
    EXPECT_EQ(simRead(s, c.call, c.port), c.after) << c.event;
  }
}

TEST(SimRules, TheLatestOfStarSpecificAndSetterWinsUntilReset) {
  const char *getter = "openapiIfAdminStateGet";
  const uint64_t ports[] = {3, 5, 9999};  // 9999: a port the scenario lacks
  // A control word or, when empty, the CGI's setter call for port 3; then what each port reads.
  struct Step { std::vector<std::string> ctl; int64_t want[3]; } steps[] = {
      {{"set", getter, "*", "2"}, {2, 2, 2}},  // over the scenario's per-port values
      {{"set", getter, "5", "0"}, {2, 0, 2}},
      {{}, {1, 0, 2}},
      {{"set", getter, "*", "2"}, {2, 2, 2}},
      {{"reset"}, {1, 1, -1}},
  };
  sim::Sim s;
  start(s);
  sim::Call set{"rpcclt_openapiIfAdminStateSet", {simArg(wire::kInNum, 3), simArg(wire::kInNum, 1)}};
  for (const Step &step : steps) {
    Ctl r = step.ctl.empty() ? Ctl{sim::handleCall(s, set), ""} : ctl(s, step.ctl);
    ASSERT_EQ(r.status, 0) << r.out;
    for (size_t p = 0; p < std::size(ports); ++p)
      EXPECT_EQ(simRead(s, getter, ports[p]), step.want[p])
          << "step " << &step - steps << ", port " << ports[p];
  }
}

std::string now(sim::Sim &s) { return ctl(s, {"clock"}).out; }

TEST(SimClock, TakesDecimalSecondsOnlyAndARefusalLeavesTheTime) {
  sim::Sim s;
  start(s);
  ASSERT_EQ(ctl(s, {"clock", "advance", "2.5"}).status, 0);
  ASSERT_EQ(ctl(s, {"clock", "advance", "0.0004"}).status, 0);  // rounds to no time at all
  std::string refusal = "open-sim: clock advance takes decimal seconds from 0 to 10000000000 (as 2.5), not ";
  for (const char *bad : {"0x10", "-1", "", ".", "1.2.3", "10000000000.1"})
    EXPECT_EQ(ctl(s, {"clock", "advance", bad}).out, refusal + "\"" + bad + "\"\n");
  EXPECT_EQ(ctl(s, {"clock", "stop"}).out, "usage: clock [pause | run | advance SECONDS | next]\n");
  EXPECT_EQ(now(s), "paused 12.500\n");
  ASSERT_EQ(ctl(s, {"clock", "advance", "10000000000"}).status, 0);
  EXPECT_EQ(now(s), "paused 10000000012.500\n");
}

// BPDU guard recovers after 60 s; the next power-saving sample is 600 hours away.
std::string recoveringSwitch() {
  std::string causes;
  for (const facts::DDisableCause &c : facts::kDDisableCauses)
    causes += std::string(causes.empty() ? "" : ", ") + "\"" + c.cli + "\": " + (strcmp(c.cli, "bpduguard") ? "false" : "true");
  return R"({"model": {"errdisable": {"interval": 60, "causes": {)" + causes + R"(}},
                       "green": {"sampleIntervalMin": 36000, "nextSampleMs": 2160000000}}})";
}

// `clock next` stops at each pending thing in turn; a dump shows what is pending and loads back.
TEST(SimClock, NextStopsAtEachPendingThingAndDumpShowsThem) {
  sim::Sim s;
  start(s, recoveringSwitch());
  std::string events = R"({"at": 1, "event": "ddisable", "port": 2, "cause": "bpduguard"},
                         {"at": 5.5, "event": "link-down", "port": 3},
                         {"at": 5.5, "event": "admin", "port": 5, "state": "disable"},
                         {"at": 20.25, "event": "traffic", "port": 3, "inErrors": 5})";
  ASSERT_EQ(ctl(s, {"play", playFile(events)}).out, "");
  struct Step { const char *out; int64_t port2Reason, link3; } steps[] = {
      {"11.000 ddisable on port 2 (timeline event 1)\n", 4, 0},
      {"15.500 link-down on port 3 (timeline event 2)\n15.500 admin on port 5 (timeline event 3)\n", 4, 1},
      {"30.250 traffic on port 3 (timeline event 4)\n", 4, 1},
      {"71.000 port 2 recovers from D-Disable\n", 0, 1},
  };
  for (const Step &step : steps) {
    Ctl r = ctl(s, {"clock", "next"});
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out, step.out);
    EXPECT_EQ(simRead(s, "rpcclt_openapiIfDisableReasonGet", 2), step.port2Reason);
    EXPECT_EQ(simRead(s, "openapiIfLinkStateGet", 3), step.link3);
    if (&step != steps) continue;  // at 11 s: what is still to come, and the dump of it loaded back
    Ctl dump = ctl(s, {"dump"});
    sim::Json root(cJSON_Parse(dump.out.c_str()));
    char *pending = cJSON_PrintUnformatted(cJSON_GetObjectItemCaseSensitive(root.get(), "pending"));
    EXPECT_STREQ(pending, R"({"now":11,"paused":true,"timeline":[{"at":15.5,"event":"link-down","port":3},)"
                          R"({"at":15.5,"event":"admin","port":5,"state":"disable"},)"
                          R"({"at":30.25,"event":"traffic","port":3,"inErrors":5}],)"
                          R"("timers":[{"at":71,"what":"port 2 recovers from D-Disable"},)"
                          R"({"at":2160000,"what":"power-saving history sample"}]})");
    cJSON_free(pending);
    sim::Sim loaded;
    EXPECT_EQ(ctl(loaded, {"load", dump.out}).out, "");
  }
  EXPECT_EQ(simRead(s, "openapiIfAdminStateGet", 5), 0);
}

TEST(SimDelay, CountsItsCallsAndEndsWithZeroOrALoad) {
  sim::Sim s;
  start(s);
  const char *call = "openapiIfAdminStateGet";
  // A control word or, when empty, one call, which waits `delay`.
  struct Step { std::vector<std::string> ctl; int64_t delay; } steps[] = {
      {{"delay", call, "50", "2"}, 0}, {{}, 50}, {{}, 50}, {{}, 0},
      {{"delay", call, "70"}, 0}, {{}, 70}, {{}, 70}, {{}, 70},
      {{"delay", call, "0"}, 0}, {{}, 0},
      {{"delay", call, "70"}, 0}, {{"load", sim::defaultScenario()}, 0}, {{}, 0},
  };
  for (const Step &step : steps) {
    if (step.ctl.empty()) EXPECT_EQ(sim::takeDelay(s, call), step.delay) << "step " << &step - steps;
    else ASSERT_EQ(ctl(s, step.ctl).status, 0) << step.ctl[1];
  }
  const char *usage = "usage: delay CALL MS [COUNT] (MS from 0 to 3600000, COUNT 1 or more)\n";
  EXPECT_EQ(ctl(s, {"delay", call, "1.5"}).out, usage);
  EXPECT_EQ(ctl(s, {"delay", call, "70", "0"}).out, usage);
  EXPECT_EQ(sim::takeDelay(s, call), 0);
}

int64_t msSince(int64_t startMs) { return sim::machineMonotonicMs() - startMs; }

// The delayed call answers no sooner than asked, and another client meanwhile. Only a lower bound
// and the order are held: a loaded machine may answer anything later.
TEST(SimDelay, HoldsOnlyTheDelayedCallsConnection) {
  constexpr int64_t kDelayMs = 800;
  InProcessSim served({{"delay", "openapiIfAdminStateGet", std::to_string(kDelayMs), "1"}});
  openapiClientHandle_t slow, other;
  ASSERT_EQ(openapiClientRegister("slow", &slow), OPEN_E_NONE);
  ASSERT_EQ(openapiClientRegister("other", &other), OPEN_E_NONE);
  uint32_t admin = 0, link = 0;
  int64_t start = sim::machineMonotonicMs(), slowMs = 0;
  std::thread held([&] {
    EXPECT_EQ(openapiIfAdminStateGet(&slow, 1, &admin), OPEN_E_NONE);
    slowMs = msSince(start);
  });
  usleep(50000);  // the delayed call arrives first
  EXPECT_EQ(openapiIfLinkStateGet(&other, 1, &link), OPEN_E_NONE);
  int64_t otherMs = msSince(start);
  held.join();
  EXPECT_EQ(admin, 1u);
  EXPECT_GE(slowMs, kDelayMs);
  EXPECT_LT(otherMs, slowMs) << "the other client waited for the delayed one";
  openapiClientTearDown(&slow);
  openapiClientTearDown(&other);
}

// Two admin-state requests for port 1 written at once on one connection, the
// first delayed: the second, read along with it, is answered once the first
// has gone, not left waiting for input that never comes.
TEST(SimDelay, AnswersWhatWaitedBehindAHeldReply) {
  InProcessSim served({{"delay", "openapiIfAdminStateGet", "300", "1"}});
  int fd = simConnect(nullptr, 10000);
  ASSERT_GE(fd, 0);
  char frames[128];
  wire::Writer w{frames, sizeof frames / 2};
  w.u32(0);
  w.text("openapiIfAdminStateGet", sizeof "openapiIfAdminStateGet" - 1);
  w.u8(2);
  for (auto [kind, value] : {std::pair{wire::kInNum, 1}, std::pair{wire::kOutNum, 0}}) {
    w.u8(kind);
    w.u8(4);
    w.u64(value);
  }
  uint32_t len = static_cast<uint32_t>(w.len - 4);
  memcpy(frames, &len, 4);
  memcpy(frames + w.len, frames, w.len);
  ASSERT_TRUE(simSendAll(fd, frames, 2 * w.len));
  for (int reply = 0; reply < 2; ++reply) {
    char body[64];
    ASSERT_TRUE(simRecvAll(fd, reinterpret_cast<char *>(&len), 4) && len <= sizeof body && simRecvAll(fd, body, len))
        << "reply " << reply;
    EXPECT_EQ((wire::Reader{body, len}.u32()), 0u) << "reply " << reply;
  }
  close(fd);
}

int64_t cpuMs() {
  rusage u = {};
  getrusage(RUSAGE_SELF, &u);
  return (u.ru_utime.tv_sec + u.ru_stime.tv_sec) * 1000 + (u.ru_utime.tv_usec + u.ru_stime.tv_usec) / 1000;
}

// A client that hangs up while its reply is held must not keep the server's loop awake until the
// reply was due. CPU time is this process's own: load does not inflate it.
TEST(SimDelay, AClientGoneWhileHeldCostsNothing) {
  constexpr int64_t kDelayMs = 1000;
  InProcessSim served({{"delay", "openapiIfAdminStateGet", std::to_string(kDelayMs)}});
  openapiClientHandle_t gone;
  ASSERT_EQ(openapiClientRegister("gone", &gone), OPEN_E_NONE);
  uint32_t admin = 0;
  std::thread held([&] { EXPECT_NE(openapiIfAdminStateGet(&gone, 1, &admin), OPEN_E_NONE); });
  usleep(100000);  // the call is held
  shutdown(gone.sock, SHUT_RDWR);  // as a client that timed out hangs up
  held.join();
  int64_t before = cpuMs();
  usleep(static_cast<useconds_t>(kDelayMs * 1000));
  EXPECT_LT(cpuMs() - before, kDelayMs / 10);
}

}  // namespace
