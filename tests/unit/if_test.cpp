#include "api/if/attribute_texts.h"
#include "api/if/if_texts.h"
#include "api/if/name_lookup.h"
#include "test_support.h"

// The mappings with a rule beyond their table: exactly 1 is on, lane mode
// 0 reads null, and lane-mode input is a table of its own that ignores case.
TEST(ReplyTexts, RulesBeyondTheTables) {
  struct OneIsOn { const TextMap &map; std::string on, off; } ones[] = {
      {kEnable, "enable", "disable"}, {kTrue, "true", "false"}, {kIfUpDown, "up", "down"},
      {kIfAttach, "attached", "none"}};
  for (const OneIsOn &o : ones)
    EXPECT_EQ(std::string(o.map.text(1)) + "|" + o.map.text(0) + "|" + o.map.text(2), o.on + "|" + o.off + "|" + o.off);
  struct Text { const TextMap &map; uint32_t value; const char *text; } texts[] = {
      {kIfAutoNeg, 1, "disable"}, {kIfLaneMode, 0, nullptr}, {kIfLaneMode, 14, "1x400G"}, {kIfLaneMode, 15, "none"}};
  for (const Text &t : texts) EXPECT_STREQ(t.map.text(t.value), t.text) << t.value;
  struct Value { const char *text; uint32_t value; } values[] = {{"4x10G", 1}, {"1X100G", 5}, {"1x50G", 0}, {0, 0}};
  for (const Value &v : values) EXPECT_EQ(ifLaneModeValue(v.text), v.value) << (v.text ? v.text : "(null)");
}

TEST(NameLookup, QueryParsing) {
  const std::string longest = "lag" + std::string(123, '0') + "7";  // 127 characters, the most kept
  using K = NameKind;
  struct Case { std::string query; NameKind kind; std::string name; uint32_t index; int slot, port; } cases[] = {
      {"", K::All, "all", 0, 0, 0},           {"ifNum=3", K::All, "all", 0, 0, 0},
      {"name=&x=1", K::All, "all", 0, 0, 0},
      {"name=ALL", K::All, "ALL", 0, 0, 0},   {"name=%41ll", K::All, "All", 0, 0, 0},
      {"name=" + longest, K::Lag, longest, 7, 0, 0}, {"name=" + longest + "0", K::All, "all", 0, 0, 0},
      {"name=0/5", K::SlotPort, "0/5", 0, 0, 5},     {"a=1&name=0%2F12&b=2", K::SlotPort, "0/12", 0, 0, 12},
      {"intfname=1/3", K::SlotPort, "1/3", 0, 1, 3},  // a substring match, not a segment
      {"name=LAG1", K::Lag, "LAG1", 1, 0, 0},         {"name=lag10", K::Lag, "lag10", 10, 0, 0},
      {"name=lag0", K::Unknown, "lag0", 0, 0, 0},     {"name=lag", K::Unknown, "lag", 0, 0, 0},
      {"name=VLAN1", K::Vlan, "VLAN1", 1, 0, 0},
      {"name=vlan4094", K::Vlan, "vlan4094", 4094, 0, 0}, {"name=vlan4095", K::Unknown, "vlan4095", 0, 0, 0},
      {"name=vlan0", K::Unknown, "vlan0", 0, 0, 0},   {"name=port+5", K::Unknown, "port 5", 0, 0, 0},
      {"name=%zz", K::Unknown, "%zz", 0, 0, 0},
  };
  for (const Case &c : cases) {
    NameQuery q = parseNameQuery(c.query.c_str());
    EXPECT_EQ(q.kind, c.kind) << c.query;
    EXPECT_EQ(q.name, c.name) << c.query;
    EXPECT_EQ(q.index, c.index) << c.query;
    EXPECT_EQ(q.slot * 1000 + q.port, c.slot * 1000 + c.port) << c.query;
  }
  EXPECT_EQ(parseNameQuery(nullptr).kind, NameKind::All);
}
