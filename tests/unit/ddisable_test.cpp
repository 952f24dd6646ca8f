#include <gtest/gtest.h>

#include <string>

#include "api/if/ddisable_parse.h"

namespace {

const char kShow[] =
    "Time left for Auto-recovery from D-Disable state..... 217\n"
    "\n"
    "Errdisable Cause             Auto-recovery Status\n"
    "---------------------------- --------------------\n"
    "dhcp-rate-limit              Disabled\n"
    "bpduguard                    Enabled\n"
    "bpdustorm                    ENABLED\n"
    "  mac-locking\tdisabled\n"
    "link-flap                    enabledx\n"
    "Timeout for Auto-recovery from D-Disable state....... 300\n";

const char kShowCrLf[] =
    "Errdisable Cause   Status\r\n"
    "------------------ ------\r\n"
    "bcast-storm\tEnabled\r\n"
    "arp-inspection     Disabled\r\n"
    "Timeout for Auto-recovery from D-Disable state : = 86400\r\n";

const char kEmptyTable[] =
    "Time left for Auto-recovery from D-Disable state..... 0\n"
    "Errdisable Cause             Auto-recovery Status\n"
    "---------------------------- --------------------\n"
    "Timeout for Auto-recovery from D-Disable state....... 30\n";

TEST(DDisable, CauseNamesMapExactly) {
  struct Case {
    const char *api, *cli;
  } cases[] = {
      {"dhcp_rate_limit", "dhcp-rate-limit"}, {"arp_inspection", "arp-inspection"}, {"bstormcontrol", "bcast-storm"},
      {"mstormcontrol", "mcast-storm"},       {"ustormcontrol", "ucast-storm"},      {"bpduguard", "bpduguard"},
      {"bpdu_rate_limit", "bpdustorm"},       {"pml", "mac-locking"},                {"dos", "denial-of-service"},
      {"link_flap", "link-flap"},             {"all", "all"},
      {"ALL", nullptr},                       {"bpdustorm", nullptr},                {"", nullptr},
      {"dos ", nullptr},                      {nullptr, nullptr},
  };
  for (const Case &c : cases) {
    const char *got = recoveryCauseCliName(c.api);
    if (c.cli) {
      EXPECT_STREQ(got ? got : "(null)", c.cli) << c.api;
    } else {
      EXPECT_EQ(got, nullptr) << (c.api ? c.api : "(null)");
    }
  }
}

TEST(DDisable, CauseFromQuery) {
  struct Case {
    const char *query, *cause;
  } cases[] = {
      {"cause=pml", "pml"},       {"a=1&cause=dos&b=2", "dos"}, {"xcause=link_flap", "link_flap"},
      {"cause=", ""},             {"mode=enable", ""},          {nullptr, ""},
  };
  for (const Case &c : cases) {
    char out[kCauseNameBuf] = "junk";
    recoveryCauseFromQuery(c.query, out, sizeof out);
    EXPECT_STREQ(out, c.cause) << (c.query ? c.query : "(null)");
  }
  std::string query = "cause=" + std::string(200, 'a');
  char out[kCauseNameBuf];
  recoveryCauseFromQuery(query.c_str(), out, sizeof out);
  EXPECT_EQ(std::string(out), std::string(127, 'a'));
}

TEST(DDisable, IntervalFromTheTimeoutLine) {
  struct Case {
    const char *show;
    uint32_t interval;
  } cases[] = {
      {kShow, 300},
      {kShowCrLf, 86400},
      {kEmptyTable, 30},
      {"Timeout for Auto-recovery from D-Disable state:\t45 seconds\n", 45},
      {"Timeout for Auto-recovery from D-Disable state....... \n", 0},
      {"no such line\n", 0},
      {"", 0},
  };
  for (const Case &c : cases) EXPECT_EQ(parseRecoveryInterval(c.show), c.interval) << c.show;
  // Only the first 127 characters of the line count.
  std::string pushed = std::string(80, ' ') + "Timeout for Auto-recovery from D-Disable state 600\n";
  EXPECT_EQ(parseRecoveryInterval(pushed.c_str()), 0u);
  std::string fits = std::string(70, ' ') + "Timeout for Auto-recovery from D-Disable state 600\n";
  EXPECT_EQ(parseRecoveryInterval(fits.c_str()), 600u);
}

TEST(DDisable, CauseModeFromItsLine) {
  struct Case {
    const char *show, *cli;
    CauseMode mode;
  } cases[] = {
      {kShow, "dhcp-rate-limit", CauseMode::Disabled},
      {kShow, "bpduguard", CauseMode::Enabled},
      {kShow, "bpdustorm", CauseMode::Enabled},  // case ignored
      {kShow, "link-flap", CauseMode::Enabled},  // seven characters compared
      {kShow, "mac-locking", CauseMode::Missing},  // indented: not at a line start
      {kShow, "all", CauseMode::Missing},
      {kShow, "bpdu", CauseMode::Missing},  // a name must be followed by a blank
      {kShowCrLf, "bcast-storm", CauseMode::Enabled},
      {kShowCrLf, "arp-inspection", CauseMode::Disabled},
      {"", "bpduguard", CauseMode::Missing},
  };
  for (const Case &c : cases) EXPECT_EQ(parseCauseMode(c.show, c.cli), c.mode) << c.cli;
}

TEST(DDisable, FeatureListBetweenRuleAndTimeout) {
  struct Case {
    const char *show, *list;  // null list: empty
  } cases[] = {
      {kShow, "dhcp-rate-limit,bpduguard,bpdustorm,mac-locking,link-flap"},
      {kShowCrLf, "bcast-storm,arp-inspection"},
      {kEmptyTable, nullptr},
      {"no table at all\nbpduguard Enabled\n", nullptr},
      {"------------------\nudld Enabled\n\nloop-protect Disabled", "udld,loop-protect"},
  };
  for (const Case &c : cases) {
    char out[kFeatureListBuf] = {};
    EXPECT_EQ(parseFeatureList(c.show, out, sizeof out), c.list != nullptr) << c.show;
    EXPECT_STREQ(out, c.list ? c.list : "") << c.show;
  }
}

TEST(DDisable, FeatureWordsThatWouldOverflowAreLeftOut) {
  std::string show = "------------------\n";
  show += std::string(1000, 'a') + " Enabled\n";
  show += std::string(30, 'b') + " Enabled\n";  // 1000 + 1 + 30 does not fit in 1023
  show += std::string(20, 'c') + " Enabled\n";
  show += "Timeout 300\n";
  char out[kFeatureListBuf] = {};
  ASSERT_TRUE(parseFeatureList(show.c_str(), out, sizeof out));
  EXPECT_EQ(std::string(out), std::string(1000, 'a') + "," + std::string(20, 'c'));
}

TEST(DDisable, TimeLeftIsTheFirstNumberOnItsLine) {
  struct Case {
    const char *show;
    uint32_t left;
  } cases[] = {
      {kShow, 217},
      {kEmptyTable, 0},
      {"Time left for Auto-recovery from D-Disable state: 42s\n", 42},
      {"Time left for Auto-recovery from D-Disable state:\n99\n", 0},  // digit on the next line
      {kShowCrLf, 86400},  // without a time-left line the label of the timeout matches
      {"nothing here 12\n", 0},
  };
  for (const Case &c : cases) EXPECT_EQ(parseRecoveryTimeLeft(c.show), c.left) << c.show;
}

}  // namespace
