#include <sys/stat.h>

#include "switch/cli_files.h"
#include "switch/open_client.h"
#include "sim/sim_files.h"
#include "test_support.h"

// The wait's pauses, in seconds, one digit each.
static int gChecks = 0, gFailures = 0;
static std::string gPauses;

static int flakyCheck(openapiClientHandle_t *) { return ++gChecks > gFailures ? OPEN_E_NONE : -5; }
static void recordPause(unsigned seconds) { gPauses += std::to_string(seconds); }

TEST(ConnectivityWait, SevenChecksWithAWarningAndA3SecondPauseBetweenTwo) {
  const std::string warning = " (WARN): quill_cgi: [initHandler:882] RPC call can fail until server starts. "
                              "Keep trying (result = -5)\n";
  // rounds: a failed check, a warning and a pause
  struct Case { int failures; bool connected; int rounds; } cases[] = {
      {0, true, 0}, {2, true, 2}, {6, true, 6}, {7, false, 6}};
  for (const Case &c : cases) {
    LogCapture log("4");
    gChecks = 0, gFailures = c.failures, gPauses.clear();
    EXPECT_EQ(connectivityWait(nullptr, flakyCheck, recordPause), c.connected) << c.failures;
    EXPECT_EQ(gChecks, c.rounds + 1) << c.failures;
    EXPECT_EQ(gPauses, std::string(c.rounds, '3')) << c.failures;
    std::string text = log.text();
    size_t warnings = 0;
    for (size_t at = text.find(warning); at != std::string::npos; at = text.find(warning, at + 1)) ++warnings;
    EXPECT_EQ(warnings, static_cast<size_t>(c.rounds)) << c.failures;
  }
}

// The CLI exchange in a work folder of its own: an accepted script and a
// show file leave nothing behind, a script the switch rejects stays for
// inspection in its "end"/"configure" frame, and a show text is cut to fit.
TEST(CliExchange, WorkFilesAreAppliedCutAndRemoved) {
  TempDir work;
  LogCapture log("3");
  std::string dir = work.path.substr(0, work.path.size() - 1);
  cliUseWorkDir(dir.c_str());
  sim::setCliDir(dir);  // the switch OS writes into the same folder
  InProcessSim sim({});
  ASSERT_EQ(openapiClientRegister("unit", &gOpenClient), OPEN_E_NONE);
  char buf[16];
  EXPECT_EQ(cliConfigScriptApply(&gOpenClient, "configure", "errdisable recovery interval 600", buf, sizeof buf), 0u);
  char *text = nullptr;
  ASSERT_EQ(cliShowToText(&gOpenClient, "show errdisable recovery", work.file("show").c_str(), 64, &text), 0u);
  EXPECT_EQ(strlen(text), 63u);
  EXPECT_EQ(strncmp(text, "Time left for Auto-recovery", 27), 0) << text;
  free(text);
  EXPECT_EQ(system(("rmdir " + work.path).c_str()), 0) << "a work file was left behind";
  mkdir(work.path.c_str(), 0700);
  EXPECT_EQ(cliConfigScriptApply(&gOpenClient, "configure", "errdisable recovery interval 5", buf, sizeof buf), 10000u);
  EXPECT_EQ(readText(work.file("quill_cmd_in_file.txt")),
            "end\nconfigure\nconfigure\nerrdisable recovery interval 5\nend\nconfigure\nend\nconfigure\n");
  openapiClientTearDown(&gOpenClient);
  cliUseWorkDir(nullptr);
  sim::setCliDir("/mnt/application/quill/tmp");
}
