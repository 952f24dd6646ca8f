#include "api/if/ddisable_parse.h"
#include "test_support.h"

static const char kShow[] =
    "Time left for Auto-recovery from D-Disable state..... 217\n\n"
    "Errdisable Cause             Auto-recovery Status\n"
    "---------------------------- --------------------\n"
    "dhcp-rate-limit              Disabled\n"
    "bpduguard                    Enabled\n"
    "bpdustorm                    ENABLED\n"
    "  mac-locking\tdisabled\n"
    "link-flap                    enabledx\n"
    "Timeout for Auto-recovery from D-Disable state....... 300\n";
static const char kShowCrLf[] =
    "Errdisable Cause   Status\r\n------------------ ------\r\nbcast-storm\tEnabled\r\n"
    "arp-inspection     Disabled\r\nTimeout for Auto-recovery from D-Disable state : = 86400\r\n";
static const char kEmptyTable[] =
    "Time left for Auto-recovery from D-Disable state..... 0\n----------------------------\n"
    "Timeout for Auto-recovery from D-Disable state....... 30\n";

TEST(DDisable, CauseNamesFromTheQuery) {
  const std::string longQuery = "cause=" + std::string(200, 'a');
  struct Case { const char *query; std::string cause; const char *cli; } cases[] = {  // cli null: no such cause
      {"cause=bpdu_rate_limit", "bpdu_rate_limit", "bpdustorm"}, {"a=1&cause=pml&b=2", "pml", "mac-locking"},
      {"xcause=all", "all", "all"},        {"cause=ALL", "ALL", nullptr}, {"cause=bpdustorm", "bpdustorm", nullptr},
      {"mode=enable", "", nullptr},        {nullptr, "", nullptr},
      {longQuery.c_str(), std::string(127, 'a'), nullptr},
  };
  for (const Case &c : cases) {
    char out[kCauseNameBuf] = "junk";
    recoveryCauseFromQuery(c.query, out, sizeof out);
    EXPECT_EQ(out, c.cause) << c.query;
    EXPECT_STREQ(recoveryCauseCliName(out), c.cli) << c.query;
  }
  EXPECT_EQ(recoveryCauseCliName(nullptr), nullptr);
}

TEST(DDisable, IntervalAndTimeLeft) {
  // Only the first 127 characters of the timeout line count.
  const std::string label = "Timeout for Auto-recovery from D-Disable state 600\n";
  struct Case { std::string show; uint32_t interval, left; } cases[] = {
      {kShow, 300, 217},
      {kShowCrLf, 86400, 86400},  // no time-left line: the timeout line's label matches
      {kEmptyTable, 30, 0},
      {"Timeout for Auto-recovery from D-Disable state:\t45 seconds\n", 45, 45},
      {"Time left for Auto-recovery from D-Disable state: 42s\n", 0, 42},
      {"Time left for Auto-recovery from D-Disable state:\n99\n", 0, 0},  // a digit on the next line
      {std::string(80, ' ') + label, 0, 600},
      {"x\n" + std::string(70, ' ') + label, 600, 600},
  };
  for (const Case &c : cases) {
    EXPECT_EQ(parseRecoveryInterval(c.show.c_str()), c.interval) << c.show;
    EXPECT_EQ(parseRecoveryTimeLeft(c.show.c_str()), c.left) << c.show;
  }
}

TEST(DDisable, CauseModeFromItsLine) {
  struct Case { const char *show, *cli; CauseMode mode; } cases[] = {
      {kShow, "dhcp-rate-limit", CauseMode::Disabled}, {kShow, "bpduguard", CauseMode::Enabled},
      {kShow, "bpdustorm", CauseMode::Enabled},        // case ignored
      {kShow, "link-flap", CauseMode::Enabled},        // seven characters compared
      {kShow, "mac-locking", CauseMode::Missing},      // indented: not at a line start
      {kShow, "bpdu", CauseMode::Missing},             // a name must be followed by a blank
      {kShowCrLf, "bcast-storm", CauseMode::Enabled},  {kShowCrLf, "arp-inspection", CauseMode::Disabled},
  };
  for (const Case &c : cases) EXPECT_EQ(parseCauseMode(c.show, c.cli), c.mode) << c.cli;
}

TEST(DDisable, FeatureListBetweenRuleAndTimeout) {
  std::string overflow = "------------------\n" + std::string(1000, 'a') + " Enabled\n" + std::string(30, 'b') +
                         " Enabled\n" + std::string(20, 'c') + " Enabled\nTimeout 300\nafter x\n";
  struct Case { std::string show, list; } cases[] = {
      {kShow, "dhcp-rate-limit,bpduguard,bpdustorm,mac-locking,link-flap"},
      {kShowCrLf, "bcast-storm,arp-inspection"},
      {kEmptyTable, ""},
      {"no table at all\nbpduguard Enabled\n", ""},
      {"------------------\nudld Enabled\n\nloop-protect Disabled", "udld,loop-protect"},
      {overflow, std::string(1000, 'a') + "," + std::string(20, 'c')},  // 1000 + 1 + 30 would not fit in 1023
  };
  for (const Case &c : cases) {
    char out[kFeatureListBuf] = "junk";
    EXPECT_EQ(parseFeatureList(c.show.c_str(), out, sizeof out), !c.list.empty()) << c.show;
    EXPECT_EQ(out, c.list) << c.show;
  }
}
