#include <gtest/gtest.h>

#include <string>

#include <sys/wait.h>
#include <unistd.h>

#include "frame/log.h"
#include "test_support.h"

namespace {

class Logging : public testing::Test {
 protected:
  void SetUp() override {
    files_ = {logPath_.c_str(), oldPath_.c_str(), levelPath_.c_str()};
    logUseFiles(&files_);
  }
  void TearDown() override {
    logClose();
    logUseFiles(nullptr);
  }
  void openWithLevel(const char *level) {
    writeText(levelPath_, level);
    logOpen(LOG_TO_FILE, 8, "quill_cgi");
  }
  // Emits one message of every level the program uses and closes.
  std::string logged() {
    LOG_AT(3, "f", 1, "error\n");
    LOG_AT(4, "f", 2, "warn\n");
    LOG_AT(6, "f", 3, "info\n");
    LOG_AT(7, "f", 4, "debug\n");
    logClose();
    return readText(logPath_);
  }
  TempDir dir_;
  std::string logPath_ = dir_.file("k.log"), oldPath_ = dir_.file("k.log.old"), levelPath_ = dir_.file("level");
  LogFiles files_ = {};
};

TEST_F(Logging, TheLevelFileDecidesWhatIsWritten) {
  struct Case {
    const char *level;
    const char *present;
    const char *absent;
  } cases[] = {
      {"7", "debug", nullptr}, {"6", "info", "debug"}, {"3", "error", "warn"}, {"0", nullptr, "error"},
  };
  for (const Case &c : cases) {
    unlink(logPath_.c_str());
    openWithLevel(c.level);
    std::string text = logged();
    if (c.present) {
      EXPECT_NE(text.find(c.present), std::string::npos) << c.level;
    }
    if (c.absent) {
      EXPECT_EQ(text.find(c.absent), std::string::npos) << c.level;
    }
  }
}

TEST_F(Logging, LinesCarryTimeLevelIdentAndTag) {
  openWithLevel("6");
  std::string text = logged();
  // "YYYY-MM-DD hh:mm:ss.mmm (ERROR): quill_cgi: [f:1] error\n"
  ASSERT_GT(text.size(), 24u);
  EXPECT_EQ(text[4], '-');
  EXPECT_EQ(text[19], '.');
  EXPECT_EQ(text.substr(23, 33), " (ERROR): quill_cgi: [f:1] error\n");
  EXPECT_NE(text.find(" (ERROR): quill_cgi: [f:1] error\n"), std::string::npos);
  EXPECT_NE(text.find(" (WARN): quill_cgi: [f:2] warn\n"), std::string::npos);
  EXPECT_NE(text.find(" (INFO): quill_cgi: [f:3] info\n"), std::string::npos);
}

TEST_F(Logging, GarbageLevelIsRewrittenToSix) {
  openWithLevel("x");
  EXPECT_EQ(readText(levelPath_).substr(0, 1), "6");
  EXPECT_EQ(readText(levelPath_).size(), 4u);
  EXPECT_EQ(logged().find("debug"), std::string::npos);
}

TEST_F(Logging, ALevelChangeTakesEffectAtTheNextCall) {
  openWithLevel("3");
  LOG_AT(7, "f", 1, "hidden\n");
  writeText(levelPath_, "9");
  LOG_AT(7, "f", 2, "shown\n");
  logClose();
  std::string text = readText(logPath_);
  EXPECT_EQ(text.find("hidden"), std::string::npos);
  EXPECT_NE(text.find("shown"), std::string::npos);
}

TEST_F(Logging, RotatesOncePastOneMebibyte) {
  writeText(oldPath_, "older history\n");
  openWithLevel("6");
  std::string filler(1000, 'x');
  for (int i = 0; i < 1100; ++i) LOG_AT(3, "f", i, "%s\n", filler.c_str());
  logClose();
  std::string old = readText(oldPath_), current = readText(logPath_);
  EXPECT_EQ(old.find("older history"), std::string::npos);
  EXPECT_GT(old.size(), 1048576u);
  EXPECT_LT(current.size(), old.size());
  EXPECT_GT(current.size(), 0u);
}

// Two processes that both opened the file just under 1 MiB: the one that
// crosses second finds it already rotated and keeps the full generation.
TEST_F(Logging, OnlyTheFirstProcessPastOneMebibyteRotates) {
  writeText(logPath_, std::string(1048576 - 10, 'x') + "\n");
  openWithLevel("6");
  pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    LOG_AT(3, "f", 1, "from the first process\n");
    _exit(0);
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  LOG_AT(3, "f", 2, "crossing in the second process\n");
  LOG_AT(3, "f", 3, "after the crossing\n");
  logClose();
  std::string old = readText(oldPath_), current = readText(logPath_);
  EXPECT_GT(old.size(), 1048576u);
  EXPECT_NE(old.find("from the first process"), std::string::npos);
  EXPECT_NE(current.find("after the crossing"), std::string::npos);
  EXPECT_EQ(current.find("from the first process"), std::string::npos);
}

}  // namespace
