#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>

#include <atomic>
#include <iterator>
#include <thread>

#include "frame/own_file.h"
#include "frame/route_table.h"
#include "frame/session.h"
#include "test_support.h"

TEST(SessionDecisions, PrivilegeByMethodAndAccess) {
  struct Case { const char *line; uint32_t method, access; Privilege verdict; } cases[] = {
      {"ro\n", METHOD_GET, 1, Privilege::Allowed},    {"ro\n", METHOD_DELETE, 1, Privilege::Denied},
      {"ro\n", METHOD_GET, 2, Privilege::Denied},     {"rw\n", METHOD_PUT, 1, Privilege::Allowed},
      {"rw\n", METHOD_GET, 2, Privilege::Denied},     {"rwx\n", METHOD_DELETE, 0, Privilege::Allowed},
      {"RO\n", METHOD_GET, 1, Privilege::Invalid},    {"r", METHOD_GET, 1, Privilege::Invalid},
  };
  for (const Case &c : cases)
    EXPECT_EQ(sessionPrivilege(c.line, c.method, c.access), c.verdict) << c.line << c.method << c.access;
}

TEST(SessionDecisions, TokensThatCouldLeaveTheFolderOrCarryControlCharactersAreUnusable) {
  std::string tooLong(499, 'a'), fitting(498, 'a');  // with "/tmp/session/": 512 and 511 characters
  struct Case { const char *token; bool usable; } cases[] = {
      {"abc123", true}, {"", false}, {nullptr, false}, {"../etc/passwd", false}, {"a/b", false},
      {"..", true},  // stays inside: the folder has no such file
      {tooLong.c_str(), false}, {fitting.c_str(), true}, {"ab\ncd", false}, {"x\x1f", false},
      {"del\x7f", false},      {"caf\xc3\xa9", true},    {"~!\x80", true},
  };
  for (const Case &c : cases) EXPECT_EQ(sessionTokenUsable(c.token, "/tmp/session/"), c.usable) << c.token;
}

TEST(SessionDecisions, ControlCharactersOfATokenAreWrittenOut) {
  struct Case { const char *text; size_t size; const char *shown; } cases[] = {
      {"\r\t", 64, "\\r\\t"}, {"x\x01\x1f\x7fy", 64, "x\\x01\\x1f\\x7fy"},
      {"caf\xc3\xa9 \\", 64, "caf\xc3\xa9 \\"},
      {"ab\ncd", 4, "ab"},  // cut before a piece that would not fit whole
      {"abc", 3, "ab"},
  };
  for (const Case &c : cases) {
    char out[64];
    escapeControls(c.text, out, c.size);
    EXPECT_STREQ(out, c.shown) << c.text;
  }
}

// Root may own what a program that does not run as root uses (the planted
// files below cover the rest, as whatever user the tests run as).
TEST(OwnFiles, RootMayOwnWhatAnotherUserUses) {
  const uid_t self = 65534;
  struct stat st = {};
  st.st_mode = S_IFREG | 0644;
  EXPECT_EQ(untrustedBecause(st, S_IFREG, self), nullptr);
  st.st_mode = S_IFREG | 0602;  // but not what others may write
  EXPECT_STREQ(untrustedBecause(st, S_IFREG, self), "group or others may write it");
}

static long gNow = 0;
static bool fakeUptime(long *now) { return *now = gNow, true; }
static bool noUptime(long *) { return false; }

struct SessionFiles : testing::Test {
  // `folder` empty: the fixture's own.
  int check(const char *token, const char *refresh, uint32_t method, bool (*clock)(long *) = fakeUptime,
            const std::string &folder = "") {
    Route route = {nullptr, method, 1, nullptr, nullptr};
    const std::string &where = folder.empty() ? dir.path : folder;
    return checkSessionIn(SessionEnv{where.c_str(), clock}, token, refresh, &route);
  }
  TempDir dir;
};

// Each case: the file before, the check, and the file after (null: deleted).
TEST_F(SessionFiles, TheCheckAgesOutRefreshesOrLeavesTheFile) {
  const std::string longStamp = "bob\n" + std::string(199, '0') + "\nro\n";
  struct Case { const char *before; long now; const char *refresh; uint32_t method; int result; const char *after; };
  const Case cases[] = {
      {"admin\n4000\n", 5000, nullptr, METHOD_PUT, 0, "admin\n5000\nt"},
      {"admin\n5000\nt", 5100, nullptr, METHOD_GET, 0, "admin\n5100\nt"},  // its own output read back
      {"admin\n900\na-much-longer-old-tail\n", 1000, nullptr, METHOD_GET, 0, "admin\n1000\nt"},
      {"bob\n200\nro\n", 300, nullptr, METHOD_GET, 0, "bob\n300\nro\nt"},
      {"admin2\n200\nro\n", 300, nullptr, METHOD_PUT, -1, "admin2\n200\nro\n"},  // not the administrator
      {"admin", 300, nullptr, METHOD_GET, -1, "admin"},
      {longStamp.c_str(), 300, "1", METHOD_GET, -1, longStamp.c_str()},  // line 2 is read 199 characters at most
      {"admin\n900\n", 1000, "1", METHOD_GET, 0, "admin\n900\n"},  // polling: no refresh
      {"admin\n900\n", 1000, "", METHOD_GET, 0, "admin\n900\n"},
      {"admin\n1000\n", 8200, nullptr, METHOD_GET, 0, "admin\n8200\nt"},  // exactly 7200: still valid
      {"admin\n1000\n", 8201, nullptr, METHOD_GET, -1, nullptr},
      {"dave\n1000\nro\n", 8201, "1", METHOD_GET, -1, nullptr},
      {"admin\n0\n", 123456, nullptr, METHOD_GET, 0, "admin\n123456\nt"},  // no stamp: never ages
      {"admin\nnot-a-number\n", 99999, nullptr, METHOD_GET, 0, "admin\n99999\nt"},
  };
  for (const Case &c : cases) {
    writeText(dir.file("t"), c.before);
    gNow = c.now;
    EXPECT_EQ(check("t", c.refresh, c.method), c.result) << c.before << c.now;
    EXPECT_EQ(readText(dir.file("t")), c.after ? c.after : "") << c.before << c.now;
    EXPECT_EQ(access(dir.file("t").c_str(), F_OK) == 0, c.after != nullptr) << c.before << c.now;
  }
  writeText(dir.file("t"), "admin\n0\n");
  EXPECT_EQ(check("t", nullptr, METHOD_GET, noUptime), -1);
  EXPECT_EQ(readText(dir.file("t")), "admin\n0\n");
  // The folder a responder holds from the requests before is checked again on each.
  ASSERT_EQ(chmod(dir.path.c_str(), 0777), 0);
  EXPECT_EQ(check("t", nullptr, METHOD_GET), -1);
  ASSERT_EQ(chmod(dir.path.c_str(), 0700), 0);
}

// A responder that remembers sessions between requests answers each check
// as reading the file would: every change another program makes to the file
// or to the folder shows on the next check, and a stamp or time-out that
// changes the file still changes it.
TEST_F(SessionFiles, ARememberedSessionFollowsEveryChangeToItsFileAndFolder) {
  enum Op { Keep, Write, Share, Unshare, Remove, Replace };
  struct Step { Op op; const char *text; long now; uint32_t method; const char *refresh; int result; const char *after; };
  const Step steps[] = {
      {Write, "bob\n4990\nrw\n", 5000, METHOD_PUT, nullptr, 0, "bob\n5000\nrw\nt"},
      {Keep, nullptr, 5000, METHOD_PUT, nullptr, 0, "bob\n5000\nrw\nt"},
      {Keep, nullptr, 5000, METHOD_PUT, "1", 0, "bob\n5000\nrw\nt"},
      {Write, "bob\n5000\nro\nt", 5000, METHOD_PUT, nullptr, -1, "bob\n5000\nro\nt"},
      {Keep, nullptr, 5000, METHOD_GET, nullptr, 0, "bob\n5000\nro\nt"},
      {Keep, nullptr, 5000, METHOD_PUT, nullptr, -1, "bob\n5000\nro\nt"},
      {Keep, nullptr, 5001, METHOD_GET, nullptr, 0, "bob\n5001\nro\nt"},
      {Keep, nullptr, 5001, METHOD_GET, nullptr, 0, "bob\n5001\nro\nt"},
      {Keep, nullptr, 12202, METHOD_GET, "1", -1, nullptr},
      {Write, "admin\n12202\n", 12202, METHOD_PUT, nullptr, 0, "admin\n12202\nt"},
      {Keep, nullptr, 12202, METHOD_PUT, nullptr, 0, "admin\n12202\nt"},
      {Share, nullptr, 12202, METHOD_PUT, nullptr, -1, "admin\n12202\nt"},
      {Unshare, nullptr, 12202, METHOD_PUT, nullptr, 0, "admin\n12202\nt"},
      {Keep, nullptr, 12202, METHOD_PUT, nullptr, 0, "admin\n12202\nt"},
      {Replace, "bob\n12202\nro\nt", 12202, METHOD_PUT, nullptr, -1, "bob\n12202\nro\nt"},
      {Keep, nullptr, 12202, METHOD_GET, nullptr, 0, "bob\n12202\nro\nt"},
      {Remove, nullptr, 12202, METHOD_GET, nullptr, -1, nullptr},
  };
  std::string folder = dir.path.substr(0, dir.path.size() - 1), old = folder + "-old";
  sessionKeepBetweenRequests(true);
  testing::internal::CaptureStderr();
  for (size_t n = 0; n < std::size(steps); ++n) {
    const Step &s = steps[n];
    if (s.op == Write) writeText(dir.file("t"), s.text);
    if (s.op == Share || s.op == Unshare) chmod(dir.file("t").c_str(), s.op == Share ? 0666 : 0600);
    if (s.op == Remove) unlink(dir.file("t").c_str());
    if (s.op == Replace) {
      ASSERT_EQ(rename(folder.c_str(), old.c_str()), 0);
      ASSERT_EQ(mkdir(folder.c_str(), 0700), 0);
      writeText(dir.file("t"), s.text);
    }
    gNow = s.now;
    EXPECT_EQ(check("t", s.refresh, s.method), s.result) << "step " << n;
    EXPECT_EQ(readText(dir.file("t")), s.after ? s.after : "") << "step " << n;
    EXPECT_EQ(access(dir.file("t").c_str(), F_OK) == 0, s.after != nullptr) << "step " << n;
  }
  testing::internal::GetCapturedStderr();
  sessionKeepBetweenRequests(false);
  std::system(("rm -rf " + old).c_str());
}

// A token that is no usable name is refused as a missing file is, even
// when a file of that name exists.
TEST_F(SessionFiles, UnusableTokensAreRefusedLikeMissingFiles) {
  LogCapture log;
  std::string base = dir.path.substr(5, 11);  // unit-XXXXXX
  std::string outside = "/tmp/" + base + "-outside", escape = "../" + base + "-outside";
  const std::string files[] = {outside, dir.file("ctl\x01"), dir.file("nl\nx")};
  for (const std::string &name : files) writeText(name, "admin\n0\n");
  // The line names the token with its control characters written out: one
  // holding a line end forges no second line.
  struct Case { const char *token, *shown; } cases[] = {
      {"missing", "missing"}, {escape.c_str(), escape.c_str()}, {"ctl\x01", "ctl\\x01"}, {"nl\nx", "nl\\nx"}};
  for (auto [token, shown] : cases) {
    EXPECT_EQ(check(token, nullptr, METHOD_GET), -1) << token;
    std::string line = "[checkSessionX:45] " + dir.path + shown + " file not exsits, ignore\n";
    EXPECT_NE(log.text().find(" (DEBUG): quill_cgi: " + line), std::string::npos) << token;
  }
  EXPECT_EQ(log.text().find("Token update"), std::string::npos);
  for (const std::string &name : files) EXPECT_EQ(readText(name), "admin\n0\n") << name;
  unlink(outside.c_str());
}

// What a local user can leave in the session folder's or file's place.
TEST_F(SessionFiles, OnlyAFolderAndFileOfTheProgramsOwnUserAreTrusted) {
  struct Case { bool folder; Plant made; mode_t mode; const char *why; } cases[] = {
      {true, Plant::Own, 0700, nullptr},  {true, Plant::Own, 0755, nullptr},
      {true, Plant::Mode, 0770, "group or others may write it"}, {true, Plant::Mode, 01777, "group or others may write it"},
      {true, Plant::Mode, 0702, "group or others may write it"}, {true, Plant::OtherOwner, 0700, "another user owns it"},
      {true, Plant::Link, 0, "it is a symbolic link"},  {true, Plant::File, 0, "it is not a folder"},
      {true, Plant::Missing, 0, nullptr},                {false, Plant::Own, 0644, nullptr},
      {false, Plant::Mode, 0666, "group or others may write it"},
      {false, Plant::OtherOwner, 0600, "another user owns it"},  {false, Plant::Link, 0, "it is a symbolic link"},
      {false, Plant::Fifo, 0, "it is not a regular file"},  {false, Plant::Folder, 0, "it is not a regular file"},
  };
  // The decoys a link leads to: a folder and a file the check would accept.
  std::string decoyDir = dir.file("decoy"), decoy = decoyDir + "/t";
  ASSERT_EQ(mkdir(decoyDir.c_str(), 0700), 0);
  writeText(decoy, "admin\n0\n");
  gNow = 5000;
  for (int n = 0; n < static_cast<int>(std::size(cases)); ++n) {
    const Case &c = cases[n];
    // Built by append, not "s" + std::to_string(n): g++ 12 at -O3 warns of an overlapping copy there.
    std::string name = "s";
    name += std::to_string(n);
    std::string folder = dir.file(name), file = folder + "/t";
    SCOPED_TRACE(folder + (c.folder ? " as folder " : " with file ") + std::to_string(static_cast<int>(c.made)));
    if (c.folder) {
      plantAt(folder, c.made, c.mode, true, decoyDir, "admin\n0\n");
      if (c.made <= Plant::OtherOwner) {
        writeText(file, "admin\n0\n");
        ASSERT_EQ(chmod(file.c_str(), 0600), 0);
      }
    } else {
      ASSERT_EQ(mkdir(folder.c_str(), 0700), 0);
      plantAt(file, c.made, c.mode, false, decoy, "admin\n0\n");
    }
    testing::internal::CaptureStderr();
    int result = check("t", nullptr, METHOD_GET, fakeUptime, folder + "/");
    std::string err = testing::internal::GetCapturedStderr();
    bool accepted = c.made == Plant::Own;
    EXPECT_EQ(result, accepted ? 0 : -1);
    EXPECT_EQ(err, c.why ? "interfaces_v2.cgi: not using " + (c.folder ? folder : file) + ": " + c.why + "\n" : "");
    EXPECT_EQ(readText(decoy), "admin\n0\n");
    if (c.made <= Plant::OtherOwner) {
      EXPECT_EQ(readText(file), accepted ? "admin\n5000\nt" : "admin\n0\n");
    }
  }
}

// Names swapped between a good and a bad one while the program checks: the
// check reads what it opened, so the bad one is never accepted.
TEST_F(SessionFiles, ARacerSwappingNamesNeverGetsTheBadOneAccepted) {
  struct Case { const char *name; bool folder; Plant made; mode_t mode; } cases[] = {
      {"folder of nobody", true, Plant::OtherOwner, 0700}, {"folder others may write", true, Plant::Mode, 0777},
      {"link to a folder", true, Plant::Link, 0},          {"file of nobody", false, Plant::OtherOwner, 0600},
      {"file of root others may write", false, Plant::Mode, 0666}, {"link to a file", false, Plant::Link, 0},
  };
  gNow = 5000;
  for (int n = 0; n < static_cast<int>(std::size(cases)); ++n) {
    const Case &c = cases[n];
    SCOPED_TRACE(c.name);
    std::string base = dir.file("race" + std::to_string(n)), good = base + "/s", bad = base + "/bad";
    std::string decoyDir = base + "/decoy", decoy = decoyDir + "/t";
    ASSERT_EQ(mkdir(base.c_str(), 0700), 0);
    ASSERT_EQ(mkdir(decoyDir.c_str(), 0700), 0);
    ASSERT_EQ(mkdir(good.c_str(), 0700), 0);
    writeText(decoy, "admin\n0\n");
    writeText(good + "/t", "admin\n0\n");
    // The bad one looks like a good session in every way but the one tested.
    std::string swapped = c.folder ? good : good + "/t", other = c.folder ? bad : good + "/bad";
    plantAt(other, c.made, c.mode, c.folder, c.folder ? decoyDir : decoy, "admin\n0\n");
    if (c.folder && c.made != Plant::Link) writeText(other + "/t", "admin\n0\n");
    struct stat before = {};
    ASSERT_EQ(lstat(other.c_str(), &before), 0);
    std::atomic<bool> stop = false;
    std::thread racer([&] {
      while (!stop) renameat2(AT_FDCWD, swapped.c_str(), AT_FDCWD, other.c_str(), RENAME_EXCHANGE);
    });
    testing::internal::CaptureStderr();
    for (int i = 0; i < 2000; ++i) check("t", nullptr, METHOD_GET, fakeUptime, good + "/");
    stop = true;
    racer.join();
    testing::internal::GetCapturedStderr();
    // Where the bad one ended up after an unknown number of swaps.
    struct stat now = {};
    std::string badName = lstat(other.c_str(), &now) == 0 && now.st_ino == before.st_ino ? other : swapped;
    std::string badFile = c.made == Plant::Link ? decoy : c.folder ? badName + "/t" : badName;
    EXPECT_EQ(readText(badFile), "admin\n0\n");
  }
}
