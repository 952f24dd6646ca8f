#include <sys/stat.h>
#include <unistd.h>

#include "sim/sim.h"
#include "sim/sim_files.h"
#include "test_support.h"

static sim::Arg text(const std::string &t) { return simArg(wire::kInString, 0, t); }

// Whoever reaches the simulator's socket names the CLI exchange's files, opened with the simulator's
// rights: only a regular file directly inside the work folder, never through a link, never a huge one.
TEST(SimCliFiles, OnlyRegularFilesInsideTheWorkFolderAreReadOrWritten) {
  TempDir work, elsewhere;
  std::string dir = work.path.substr(0, work.path.size() - 1), secret = elsewhere.file("secret");
  writeText(secret, "secret");
  sim::setCliDir(dir);
  symlink(secret.c_str(), work.file("link").c_str());
  mkfifo(work.file("fifo").c_str(), 0666);
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
    struct stat st = {};
    bool packed = stat(work.file("packed").c_str(), &st) == 0;
    EXPECT_EQ(packed, c.out == work.file("packed") && c.result == 0);
    EXPECT_EQ(packed ? st.st_mode & 0777 : 0660u, 0660u);  // the program, in its group, reads and removes it
  }
  EXPECT_EQ(readText(secret), "secret");
  EXPECT_FALSE(access(elsewhere.file("written").c_str(), F_OK) == 0);
  sim::setCliDir("/mnt/application/quill/tmp");
}
