#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "sim/sim.h"
#include "sim/sim_files.h"
#include "test_support.h"

namespace {

sim::Arg text(const std::string &t) { return simArg(wire::kInString, 0, t); }

// Whoever reaches the simulator's socket names the files of the CLI
// exchange, which the simulator opens with its own rights: only a regular
// file directly inside the CLI work folder, never through a link, and
// never one larger than a script can be.
TEST(SimCliFiles, OnlyRegularFilesInsideTheWorkFolderAreReadOrWritten) {
  TempDir work, elsewhere;
  std::string dir = work.path.substr(0, work.path.size() - 1), secret = elsewhere.file("secret");
  writeText(secret, "secret");
  sim::setCliDir(dir);
  symlink(secret.c_str(), work.file("link").c_str());
  mkfifo(work.file("fifo").c_str(), 0666);
  mkdir(work.file("folder").c_str(), 0700);
  writeText(work.file("script"), "configure\nerrdisable recovery interval 300\nend\n");
  writeText(work.file("huge"), std::string((1 << 20) + 1, '\n'));
  struct Case { std::string in, out; int result; } cases[] = {
      {work.file("script"), work.file("packed"), 0},
      {secret, work.file("packed"), -1},                       // read from elsewhere
      {work.file("script"), elsewhere.file("written"), -1},    // written elsewhere
      {work.file("../") + elsewhere.path.substr(5) + "secret", work.file("packed"), -1},
      {work.file("link"), work.file("packed"), -1},            // read through a link
      {work.file("script"), work.file("link"), -1},            // written through a link
      {work.file("script"), work.file("fifo"), -1},
      {work.file("script"), work.file("folder"), -1},
      {dir, work.file("packed"), -1},
      {work.file("huge"), work.file("packed"), -1},            // more than a script can be
  };
  sim::Sim s;
  for (const Case &c : cases) {
    unlink(work.file("packed").c_str());
    sim::Call call{"rpcclt_openapiTxtCfgCompress", {text(c.in), text(c.out)}};
    testing::internal::CaptureStderr();
    EXPECT_EQ(sim::handleCall(s, call), c.result) << c.in << " -> " << c.out;
    std::string said = testing::internal::GetCapturedStderr();
    EXPECT_EQ(said.rfind("open-sim: refused CLI file ", 0) == 0, c.result != 0) << said;
    EXPECT_EQ(access(work.file("packed").c_str(), F_OK) == 0, c.out == work.file("packed") && c.result == 0);
  }
  EXPECT_EQ(readText(secret), "secret");
  EXPECT_FALSE(access(elsewhere.file("written").c_str(), F_OK) == 0);
  struct stat st = {};
  sim::Call good{"rpcclt_openapiTxtCfgCompress", {text(work.file("script")), text(work.file("packed"))}};
  ASSERT_EQ(sim::handleCall(s, good), 0);
  ASSERT_EQ(stat(work.file("packed").c_str(), &st), 0);
  EXPECT_EQ(st.st_mode & 0777, 0660u);  // the program, in the folder's group, reads and removes it
  sim::setCliDir("/mnt/application/quill/tmp");
}

}  // namespace
