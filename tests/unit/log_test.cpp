#include <sched.h>
#include <signal.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>

#include "test_support.h"

static bool has(const std::string &text, const char *part) { return part && text.find(part) != std::string::npos; }

TEST(Logging, TheLevelFileDecidesWhatIsWrittenAndHowLinesRead) {
  struct Case { const char *level, *shown, *hidden, *levelAfter; } cases[] = {
      {"7", " (DEBUG): quill_cgi: [f:4] debug\n", 0, "7"}, {"6", " (INFO): quill_cgi: [f:3] info\n", "debug", "6"},
      {"4", " (WARN): quill_cgi: [f:2] warn\n", "info", "4"}, {"3", " (ERROR): quill_cgi: [f:1] error\n", "warn", "3"},
      {"0", 0, "error", "0"},                              {"x", "info", "debug", "6"},  // "x" is rewritten to 6
  };
  for (const Case &c : cases) {
    LogCapture log(c.level);
    LOG_AT(3, "f", 1, "error\n");
    LOG_AT(4, "f", 2, "warn\n");
    LOG_AT(6, "f", 3, "info\n");
    LOG_AT(7, "f", 4, "debug\n");
    EXPECT_EQ(has(log.text(), c.shown), c.shown != nullptr) << c.level << log.text();
    EXPECT_FALSE(has(log.text(), c.hidden)) << c.level << log.text();
    EXPECT_EQ(readText(log.levelFile), c.levelAfter + std::string(3, '\0')) << c.level;
  }
  LogCapture log("3");
  LOG_AT(7, "f", 1, "hidden\n");
  writeText(log.levelFile, "9");  // a changed level takes effect at the next call
  LOG_AT(7, "f", 2, "shown\n");
  std::string text = log.text();  // "YYYY-MM-DD hh:mm:ss.mmm (DEBUG): ..."
  EXPECT_EQ(text.substr(23), " (DEBUG): quill_cgi: [f:2] shown\n");
  LOG_AT(3, "f", 3, "%s\n", std::string(4096, 'u').c_str());  // a message is cut to 512 bytes
  EXPECT_EQ(log.text().substr(text.size() + 44), "[f:3] " + std::string(502, 'u') + "...\n");
}

// The line that takes the file past 1 MiB is its last: the file becomes
// the ".old" one, an older one is lost, and a fresh file begins.
TEST(Logging, TheLinePastOneMebibyteRotatesTheFile) {
  for (size_t past : {0u, 1u}) {
    LogCapture log("6");
    writeText(log.log, std::string(1048576 - 52 + past, 'x'));  // "<time> (ERROR): quill_cgi: [f:1] y\n": 52
    writeText(log.old, "older history\n");
    log.reopen();
    LOG_AT(3, "f", 1, "y\n");
    EXPECT_EQ(readText(log.old).size(), past ? 1048577u : 14u) << past;
    EXPECT_EQ(log.text().size(), past ? 0u : 1048576u) << past;
  }
}

// Two processes that both opened the file just under 1 MiB: the one that
// crosses second finds it already rotated and keeps the full generation.
TEST(Logging, OnlyTheFirstProcessPastOneMebibyteRotates) {
  LogCapture log("6");
  writeText(log.log, std::string(1048576 - 10, 'x') + "\n");
  log.reopen();
  pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) LOG_AT(3, "f", 1, "from the first process\n"), _exit(0);
  ASSERT_EQ(waitpid(child, nullptr, 0), child);
  LOG_AT(3, "f", 2, "crossing in the second process\n");
  LOG_AT(3, "f", 3, "after the crossing\n");
  std::string old = readText(log.old), current = log.text();
  EXPECT_TRUE(has(old, "from the first process"));
  EXPECT_TRUE(has(old, "crossing in the second process"));
  EXPECT_TRUE(has(current, "after the crossing"));
  EXPECT_FALSE(has(current, "from the first process"));
}

// A local user has taken every inode of the log's folder and any name that comes free there: the
// full log keeps its name and every line, the rotation file stays, and that is said once.
static std::string rotateWithoutInodes(const LogCapture &log) {
  std::string fs = log.dir.file("fs"), name = fs + "/k.log", old = name + ".old";
  if (chmod(log.dir.path.c_str(), 0711) || mkdir(fs.c_str(), 0700) || unshare(CLONE_NEWNS) ||
      mount(0, "/", 0, MS_REC | MS_PRIVATE, 0) || mount("tmpfs", fs.c_str(), "tmpfs", 0, "nr_inodes=8,mode=1777"))
    return "no mount namespace";
  writeText(name, std::string(1048000, 'x')), writeText(old, "older\n");
  struct stat before = {}, after = {};
  int filled[2];
  pid_t her = stat(name.c_str(), &before) == 0 && pipe(filled) == 0 ? fork() : -1;
  if (her == 0 && setgid(65534) == 0 && setuid(65534) == 0) {
    for (int n = 0; open((fs + "/" + std::to_string(n)).c_str(), O_CREAT | O_WRONLY, 0600) >= 0; ++n) {}
    for (close(filled[1]);;) close(open(name.c_str(), O_CREAT | O_EXCL | O_WRONLY, 0644));  // filled: she waits
  }
  char none;
  if (her <= 0 || (close(filled[1]), read(filled[0], &none, 1)) != 0) _exit(1);
  LogFiles files = {name.c_str(), old.c_str(), log.levelFile.c_str()};
  logUseFiles(&files), logOpen(LOG_TO_FILE, 8, "quill_cgi");
  dup2(open(log.dir.file("err").c_str(), O_CREAT | O_WRONLY, 0600), 2);
  for (int n = 0; n < 2500; ++n) LOG_AT(3, "f", n, "%s\n", std::string(400, 'y').c_str());
  kill(her, SIGKILL), waitpid(her, nullptr, 0);
  std::string text = readText(name);
  stat(name.c_str(), &after);
  return std::to_string(after.st_uid) + (after.st_ino == before.st_ino ? " same" : " another") + " file, lines: " +
         std::to_string(std::count(text.begin(), text.end(), '\n')) + ", old: " + readText(old) +
         readText(log.dir.file("err"));
}

TEST(Logging, ALogThatCannotRotateKeepsItsName) {
  LogCapture log("6");
  pid_t child = fork();
  if (child == 0) writeText(log.dir.file("summary"), rotateWithoutInodes(log)), _exit(0);
  ASSERT_EQ(waitpid(child, nullptr, 0), child);
  std::string got = readText(log.dir.file("summary"));
  if (got == "no mount namespace") GTEST_SKIP() << got;
  EXPECT_EQ(got.substr(0, 300), "0 same file, lines: 2500, old: older\ninterfaces_v2.cgi: not rotating " +
                                     log.dir.file("fs") + "/k.log: No space left on device\n");
}

// A responder follows the log before its next line: the file another process
// grew or rotated counts from its real size, so the 1 MiB limit holds.
TEST(Logging, AFollowedLogCountsFromItsRealSize) {
  for (bool rotatedByAnother : {false, true}) {
    LogCapture log("6");
    LOG_AT(3, "f", 1, "first\n");
    if (rotatedByAnother) {
      ASSERT_EQ(rename(log.log.c_str(), log.old.c_str()), 0);
    }
    std::ofstream(log.log, std::ios::binary | std::ios::app) << std::string(1048576 - 10, 'x') << "\n";
    logFollow();
    LOG_AT(3, "f", 2, "past the limit\n");
    EXPECT_TRUE(has(readText(log.old), "past the limit")) << rotatedByAnother;
    EXPECT_EQ(log.text(), "") << rotatedByAnother;
  }
}

// Any local user may make the names in /tmp first. What is refused is said once and left as it is: a level
// file refused leaves the level 6; a log refused is no log, not even on standard output; a rotation file
// refused is neither removed nor replaced, even by root, and the log goes on growing.
struct Planted { Plant plant; mode_t mode; const char *why; };
const Planted kPlants[] = {
    {Plant::Link, 0, "it is a symbolic link"},      {Plant::Fifo, 0, "it is not a regular file"},
    {Plant::OtherOwner, 0640, "another user owns it"}, {Plant::Mode, 0660, "group or others may write it"},
    {Plant::Own, 0640, nullptr},
};

TEST(Logging, OnlyFilesOfTheProgramsOwnUserAreUsed) {
  for (std::string LogCapture::*file : {&LogCapture::log, &LogCapture::levelFile, &LogCapture::old}) {
    for (auto [plant, mode, why] : kPlants) {
      LogCapture log("7");
      std::string path = log.*file, target = log.dir.file("target");
      writeText(target, "7 kept");
      plantAt(path, plant, mode, false, target, "7 kept");
      if (path == log.old) writeText(log.log, std::string(1048576, 'x'));  // the next line rotates it
      SCOPED_TRACE(path + " planted as " + std::to_string(static_cast<int>(plant)));
      testing::internal::CaptureStderr();
      testing::internal::CaptureStdout();
      for (int n = 0; n < 2; ++n) {  // said once, however often it is met
        log.reopen();
        LOG_AT(3, "f", 1, "error\n");
        LOG_AT(7, "f", 2, "debug\n");
      }
      std::string out = testing::internal::GetCapturedStdout(), err = testing::internal::GetCapturedStderr();
      EXPECT_EQ(err, why ? "interfaces_v2.cgi: not using " + path + ": " + why + "\n" : "");
      EXPECT_EQ(out, "");
      EXPECT_EQ(readText(target), "7 kept");
      if (path == log.old) {  // refused, the full log goes on growing; ours, it becomes the rotation file
        EXPECT_GT((why ? log.text() : readText(log.old)).size(), 1048576u);
      }
      if (!why) {
        EXPECT_TRUE(has(readText(log.log), "debug"));
        continue;
      }
      if (plant <= Plant::OtherOwner) {
        EXPECT_EQ(readText(path), "7 kept");
      }
      if (path == log.levelFile) {
        EXPECT_TRUE(has(log.text(), "error"));
        EXPECT_FALSE(has(log.text(), "debug"));
        struct stat made = {};
        mode_t mask = umask(0);
        umask(mask);
        ASSERT_EQ(stat(log.log.c_str(), &made), 0);  // the log this process made: its user and group read it
        EXPECT_EQ(made.st_mode & 07777, 0640 & ~mask);
      }
    }
  }
}

