#include <gtest/gtest.h>

#include <string>

#include "frame/envelope.h"
#include "frame/log.h"
#include "switch/cli_files.h"
#include "switch/if_walk.h"
#include "switch/open_client.h"
#include "test_support.h"

namespace {

int gChecks = 0, gFailuresBeforeSuccess = 0;
std::vector<unsigned> gPauses;

int flakyCheck(openapiClientHandle_t *) { return ++gChecks > gFailuresBeforeSuccess ? OPEN_E_NONE : -5; }
void recordPause(unsigned seconds) { gPauses.push_back(seconds); }

TEST(ConnectivityWait, RetriesWithPausesUpToSevenChecks) {
  struct Case {
    int failures;
    bool connected;
    int checks;
    size_t pauses;
  } cases[] = {
      {0, true, 1, 0}, {2, true, 3, 2}, {6, true, 7, 6}, {7, false, 7, 6}, {100, false, 7, 6},
  };
  for (const Case &c : cases) {
    gChecks = 0;
    gFailuresBeforeSuccess = c.failures;
    gPauses.clear();
    EXPECT_EQ(connectivityWait(nullptr, flakyCheck, recordPause), c.connected) << c.failures;
    EXPECT_EQ(gChecks, c.checks) << c.failures;
    EXPECT_EQ(gPauses.size(), c.pauses) << c.failures;
    for (unsigned p : gPauses) EXPECT_EQ(p, 3u);
  }
}

// The CLI exchange against the simulated switch, in a work folder of its own.
class CliExchange : public testing::Test {
 protected:
  void SetUp() override {
    cliUseWorkDir(work_.path().c_str());
    ASSERT_EQ(openapiClientRegister("unit", &client_), OPEN_E_NONE);
  }
  void TearDown() override {
    openapiClientTearDown(&client_);
    cliUseWorkDir(nullptr);
  }
  InProcessSim sim_;
  TempDir work_;
  std::string script_ = work_.file("quill_cmd_in_file.txt"), output_ = work_.file("quill_cmd_out_file.txt");
  openapiClientHandle_t client_ = {};
};

TEST_F(CliExchange, ShowOutputIsReadAndTheFileRemoved) {
  char *text = nullptr;
  std::string file = work_.file("unit_show");
  ASSERT_EQ(cliShowToText(&client_, "show errdisable recovery", file.c_str(), kShowTextBuf, &text), 0u);
  EXPECT_NE(strstr(text, "Timeout for Auto-recovery from D-Disable state"), nullptr);
  EXPECT_NE(access(file.c_str(), F_OK), 0);
  free(text);
  EXPECT_EQ(cliShowToText(&client_, "show nothing-like-this", file.c_str(), kShowTextBuf, &text), 10000u);
  EXPECT_EQ(cliShowExecuteToFile(&client_, nullptr, file.c_str()), 10003u);
}

TEST_F(CliExchange, LongShowOutputIsCut) {
  // What a fixed show text looks like to the reader: its first 8191 bytes.
  std::string big(10000, 'z');
  sim::Json value(cJSON_CreateString(big.c_str()));
  char *printed = cJSON_PrintUnformatted(value.get());
  openapiClientTearDown(&client_);
  sim_.control({"set", "rpcclt_openapiCliShowExecuteToFile", "show big", printed});
  cJSON_free(printed);
  ASSERT_EQ(openapiClientRegister("unit", &client_), OPEN_E_NONE);
  char *text = nullptr;
  std::string file = work_.file("unit_big");
  ASSERT_EQ(cliShowToText(&client_, "show big", file.c_str(), kShowTextBuf, &text), 0u);
  EXPECT_EQ(strlen(text), 8191u);
  free(text);
}

TEST_F(CliExchange, ConfigurationIsAppliedAndFilesRemoved) {
  char buf[8192];
  EXPECT_EQ(cliConfigScriptApply(&client_, "configure", "errdisable recovery interval 600", buf, sizeof buf), 0u);
  EXPECT_NE(access(script_.c_str(), F_OK), 0);
  EXPECT_NE(access(output_.c_str(), F_OK), 0);
  char *text = nullptr;
  std::string file = work_.file("unit_after");
  ASSERT_EQ(cliShowToText(&client_, "show errdisable recovery", file.c_str(), kShowTextBuf, &text), 0u);
  EXPECT_NE(strstr(text, "D-Disable state....... 600"), nullptr) << text;
  free(text);
}

TEST_F(CliExchange, ARejectedScriptLeavesItsFilesAndChangesNothing) {
  char buf[16];
  EXPECT_EQ(cliConfigScriptApply(&client_, "configure", "errdisable recovery interval 5", buf, sizeof buf), 10000u);
  std::string script = readText(script_);
  EXPECT_EQ(script, "end\nconfigure\nconfigure\nerrdisable recovery interval 5\nend\nconfigure\nend\nconfigure\n");
  EXPECT_EQ(access(output_.c_str(), F_OK), 0);
  EXPECT_EQ(cliConfigScriptApply(&client_, "configure", "x", nullptr, 0), 10000u);
  EXPECT_EQ(txtCfgApply(&client_, nullptr, output_.c_str()), 10003u);
}

TEST_F(CliExchange, PhysicalInterfaceWalk) {
  uint32_t next = 0;
  EXPECT_EQ(swapiIfFirstOrNextGet(&client_, 0, &next), 0u);
  EXPECT_EQ(next, 1u);
  EXPECT_EQ(swapiIfFirstOrNextGet(&client_, 27, &next), 0u);
  EXPECT_EQ(next, 28u);
  EXPECT_EQ(swapiIfFirstOrNextGet(&client_, 28, &next), 10023u);
  EXPECT_EQ(swapiIfFirstOrNextGet(&client_, 1, nullptr), 10003u);
  uint32_t lag = 0;
  EXPECT_EQ(swapiIfFirstGet(&client_, OPEN_INTF_TYPE_LAG, &lag), 0);
  EXPECT_EQ(lag, 650u);
}

TEST(BoundedCopy, CutsAndAlwaysTerminates) {
  char buf[4] = {'x', 'x', 'x', 'x'};
  strCopyBounded(buf, "abcdef", sizeof buf);
  EXPECT_STREQ(buf, "abc");
  strCopyBounded(buf, "zz", 0);
  EXPECT_STREQ(buf, "abc");
  strCopyBounded(buf, nullptr, sizeof buf);
  EXPECT_STREQ(buf, "abc");
}

}  // namespace
