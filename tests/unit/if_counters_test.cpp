#include <gtest/gtest.h>

#include <string>

#include "api/if/name_lookup.h"
#include "api/if/attribute_texts.h"
#include "api/if/if_texts.h"
#include "sim/sim.h"

namespace {

struct TextCase {
  uint32_t value;
  const char *text;  // null: no text
};

void expectTexts(const char *(*fn)(uint32_t), std::initializer_list<TextCase> cases) {
  for (const TextCase &c : cases) {
    const char *got = fn(c.value);
    if (!c.text) {
      EXPECT_EQ(got, nullptr) << c.value;
    } else {
      EXPECT_STREQ(got ? got : "(null)", c.text) << c.value;
    }
  }
}

TEST(SummaryTexts, SpeedModesInMbit) {
  expectTexts(ifSpeedMbitText, {{0, "unknown"},   {1, "auto"},     {2, "100"},      {3, "100"},     {4, "10"},
                                 {5, "10"},        {6, "100"},      {7, "1000"},     {8, "2500"},    {9, "5000"},
                                 {10, "10000"},    {11, "20000"},   {12, "25000"},   {13, "40000"},  {14, "50000"},
                                 {15, "100000"},   {16, "unknown"}, {17, "200000"},  {18, "400000"}, {19, "unknown"},
                                 {20, "unknown"},  {0xFFFFFFFF, "unknown"}});
}

TEST(SummaryTexts, LaneModesAreNullWithoutAModeAndNoneAboveTheKnownOnes) {
  expectTexts(ifLaneModeText, {{0, nullptr},      {1, "1x10G"},   {2, "1x25G"},   {3, "2x50G"},
                                    {4, "1x40G"},      {5, "1x100G"},  {6, "1x50G"},   {7, "2x25G"},
                                    {8, "8x10G"},      {9, "8x25G"},   {10, "8x50G"},  {11, "4x100G"},
                                    {12, "2x100G"},    {13, "2x200G"}, {14, "1x400G"}, {15, "none"},
                                    {0xFFFFFFFF, "none"}});
}

TEST(SummaryTexts, FecModes) {
  expectTexts(ifFecShortText, {{0, "none"}, {1, "enable"}, {2, "auto"}, {3, "base-r"}, {4, "rs"},
                                   {5, "rs-544"}, {6, "rs-272"}, {7, "none"}, {100, "none"}});
}

TEST(SummaryTexts, CableStatus) {
  expectTexts(cableStatusText, {{0, "untested"}, {1, "test_fail"}, {2, "normal"}, {3, "open"}, {4, "short"},
                                {5, "openshort"}, {6, "crosstalk"}, {7, "nocable"}, {8, "untested"}});
}

TEST(NameLookup, QueryParsing) {
  const std::string longName(128, 'x');
  const std::string longest = "lag" + std::string(123, '0') + "7";  // 127 characters, the most kept
  struct Case {
    std::string query;
    NameKind kind;
    const char *name;
    uint32_t index;
    int slot, port;
  } cases[] = {
      {"", NameKind::All, "all", 0, 0, 0},
      {"ifNum=3", NameKind::All, "all", 0, 0, 0},
      {"name=", NameKind::All, "all", 0, 0, 0},
      {"name=&x=1", NameKind::All, "all", 0, 0, 0},
      {"name=ALL", NameKind::All, "ALL", 0, 0, 0},
      {"name=%41ll", NameKind::All, "All", 0, 0, 0},
      {"name=" + longName, NameKind::All, "all", 0, 0, 0},
      {"name=" + longest, NameKind::Lag, longest.c_str(), 7, 0, 0},
      {"name=" + longest + "0", NameKind::All, "all", 0, 0, 0},
      {"name=0/5", NameKind::SlotPort, "0/5", 0, 0, 5},
      {"a=1&name=0%2F12&b=2", NameKind::SlotPort, "0/12", 0, 0, 12},
      {"intfname=1/3", NameKind::SlotPort, "1/3", 0, 1, 3},  // a substring match, not a segment
      {"name=lag3", NameKind::Lag, "lag3", 3, 0, 0},
      {"name=LAG1", NameKind::Lag, "LAG1", 1, 0, 0},
      {"name=lag0", NameKind::Unknown, "lag0", 0, 0, 0},
      {"name=lag", NameKind::Unknown, "lag", 0, 0, 0},
      {"name=vlan10", NameKind::Vlan, "vlan10", 10, 0, 0},
      {"name=VLAN10", NameKind::Vlan, "VLAN10", 10, 0, 0},
      {"name=vlan4094", NameKind::Vlan, "vlan4094", 4094, 0, 0},
      {"name=vlan4095", NameKind::Unknown, "vlan4095", 0, 0, 0},
      {"name=vlan0", NameKind::Unknown, "vlan0", 0, 0, 0},
      {"name=port+5", NameKind::Unknown, "port 5", 0, 0, 0},
      {"name=0/x", NameKind::Unknown, "0/x", 0, 0, 0},
      {"name=%zz", NameKind::Unknown, "%zz", 0, 0, 0},
  };
  for (const Case &c : cases) {
    NameQuery q = parseNameQuery(c.query.c_str());
    EXPECT_EQ(q.kind, c.kind) << c.query;
    if (c.name) {
      EXPECT_STREQ(q.name, c.name) << c.query;
    }
    EXPECT_EQ(q.index, c.index) << c.query;
    if (c.kind == NameKind::SlotPort) {
      EXPECT_EQ(q.slot, c.slot) << c.query;
      EXPECT_EQ(q.port, c.port) << c.query;
    }
  }
  EXPECT_EQ(parseNameQuery(nullptr).kind, NameKind::All);
}

// The simulated switch's counters, driven in-process.
class SimCounters : public ::testing::Test {
 protected:
  void SetUp() override {
    std::string error;
    ASSERT_TRUE(sim::loadScenario(s, sim::defaultScenario(), &error)) << error;
  }

  int read(const char *call, uint32_t ifNum, uint64_t *value) {
    sim::Call c;
    c.name = call;
    sim::Arg in, out;
    in.num = ifNum;
    out.kind = wire::kOutNum;
    c.args = {in, out};
    int rc = sim::handleCall(s, c);
    *value = c.args[1].num;
    return rc;
  }

  uint64_t counter(const char *call, uint32_t ifNum) {
    uint64_t v = 0;
    EXPECT_EQ(read(call, ifNum, &v), 0) << call << " " << ifNum;
    return v;
  }

  int reset(const char *call, std::vector<uint32_t> inputs) {
    sim::Call c;
    c.name = call;
    for (uint32_t n : inputs) {
      sim::Arg a;
      a.num = n;
      c.args.push_back(a);
    }
    return sim::handleCall(s, c);
  }

  sim::Sim s;
};

TEST_F(SimCounters, TrafficOnlyOnPortsWithLinkAndConsistentPacketCounts) {
  uint64_t octets = counter("rpcclt_openapiIfInOctetsGet", 1);
  uint64_t packets = counter("rpcclt_openapiIfInUcastPktsGet", 1);
  EXPECT_GT(octets, 1000000u);
  ASSERT_GT(packets, 0u);
  uint64_t averageFrame = octets / packets;
  EXPECT_GE(averageFrame, 64u);
  EXPECT_LE(averageFrame, 1518u);
  EXPECT_LT(counter("rpcclt_openapiIfInErrorsGet", 1), packets / 1000);
  EXPECT_LT(counter("rpcclt_openapiIfOutDiscardsGet", 1), counter("rpcclt_openapiIfOutUcastPktsGet", 1) / 1000);
  for (uint32_t idle : {4u, 24u, 29u, 650u, 700u}) EXPECT_EQ(counter("rpcclt_openapiIfInOctetsGet", idle), 0u) << idle;
  uint64_t none = 0;
  EXPECT_EQ(read("rpcclt_openapiIfInOctetsGet", 999, &none), -29);
}

TEST_F(SimCounters, ResetsClearOneOrEveryInterface) {
  ASSERT_GT(counter("rpcclt_openapiIfOutOctetsGet", 2), 0u);
  ASSERT_GT(counter("rpcclt_openapiIfOutOctetsGet", 3), 0u);
  EXPECT_EQ(reset("rpcclt_openapiInterfaceStatsReset", {2}), 0);
  EXPECT_EQ(counter("rpcclt_openapiIfOutOctetsGet", 2), 0u);
  EXPECT_EQ(counter("rpcclt_openapiIfInUcastPktsGet", 2), 0u);
  EXPECT_GT(counter("rpcclt_openapiIfOutOctetsGet", 3), 0u);
  EXPECT_EQ(reset("rpcclt_openapiInterfaceStatsReset", {999}), -29);
  EXPECT_EQ(reset("rpcclt_openapiResetAllInterfacesStats", {}), 0);
  for (uint32_t port : {1u, 3u, 7u, 25u}) EXPECT_EQ(counter("rpcclt_openapiIfInOctetsGet", port), 0u) << port;
}

TEST_F(SimCounters, AStoredValueWinsOverTheTrafficModel) {
  std::string out;
  ASSERT_EQ(sim::handleControl(s, {"set", "rpcclt_openapiIfInOctetsGet", "3", "42"}, &out), 0) << out;
  EXPECT_EQ(counter("rpcclt_openapiIfInOctetsGet", 3), 42u);
  EXPECT_EQ(reset("rpcclt_openapiResetAllInterfacesStats", {}), 0);
  EXPECT_EQ(counter("rpcclt_openapiIfInOctetsGet", 3), 42u);
}

}  // namespace
