#include "frame/route_table.h"
#include "frame/session.h"
#include "test_support.h"

TEST(SessionDecisions, PrivilegeByMethodAndAccess) {
  struct Case { const char *line; uint32_t method, access; Privilege verdict; } cases[] = {
      {"ro\n", METHOD_GET, 1, Privilege::Allowed},    {"ro\n", METHOD_PUT, 1, Privilege::Denied},
      {"ro\n", METHOD_POST, 1, Privilege::Denied},    {"ro\n", METHOD_DELETE, 1, Privilege::Denied},
      {"ro\n", METHOD_GET, 2, Privilege::Denied},     {"rw\n", METHOD_PUT, 1, Privilege::Allowed},
      {"rw\n", METHOD_GET, 2, Privilege::Denied},     {"rwx\n", METHOD_DELETE, 0, Privilege::Allowed},
      {"admin\n", METHOD_GET, 1, Privilege::Invalid}, {"", METHOD_GET, 1, Privilege::Invalid},
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
      {tooLong.c_str(), false}, {fitting.c_str(), true}, {"ab\ncd", false}, {"\x01", false}, {"tab\tbed", false},
      {"x\x1f", false}, {"del\x7f", false}, {"a b", true}, {"caf\xc3\xa9", true}, {"~!\x80", true},
  };
  for (const Case &c : cases) EXPECT_EQ(sessionTokenUsable(c.token, "/tmp/session/"), c.usable) << c.token;
}

TEST(SessionDecisions, ControlCharactersOfATokenAreWrittenOut) {
  struct Case { const char *text; size_t size; const char *shown; } cases[] = {
      {"plain token", 64, "plain token"}, {"a\nb", 64, "a\\nb"}, {"\r\t", 64, "\\r\\t"},
      {"x\x01\x1f\x7fy", 64, "x\\x01\\x1f\\x7fy"}, {"caf\xc3\xa9 \\", 64, "caf\xc3\xa9 \\"},
      {"ab\ncd", 4, "ab"},  // cut before a piece that would not fit whole
      {"abc", 3, "ab"},
  };
  for (const Case &c : cases) {
    char out[64];
    escapeControls(c.text, out, c.size);
    EXPECT_STREQ(out, c.shown) << c.text;
  }
}

static long gNow = 0;
static bool fakeUptime(long *now) { return *now = gNow, true; }
static bool noUptime(long *) { return false; }

struct SessionFiles : testing::Test {
  int check(const char *token, const char *refresh, uint32_t method, bool (*clock)(long *) = fakeUptime) {
    Route route = {nullptr, method, 1, nullptr, nullptr};
    return checkSessionIn(SessionEnv{dir.path.c_str(), clock}, token, refresh, &route);
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
      {"alice\n200\nrw\n", 300, nullptr, METHOD_DELETE, 0, "alice\n300\nrw\nt"},
      {"bob\n200\nro\n", 300, nullptr, METHOD_PUT, -1, "bob\n200\nro\n"},
      {"bob\n200\nro\n", 300, nullptr, METHOD_GET, 0, "bob\n300\nro\nt"},
      {"carol\n200\nxx\n", 300, nullptr, METHOD_GET, -1, "carol\n200\nxx\n"},
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
  writeText(dir.file("t"), "admin\n5\n");
  EXPECT_EQ(check("t", nullptr, METHOD_GET, noUptime), -1);
  EXPECT_EQ(readText(dir.file("t")), "admin\n5\n");
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
      {"missing", "missing"}, {nullptr, "(null)"}, {"", ""}, {escape.c_str(), escape.c_str()},
      {"ctl\x01", "ctl\\x01"}, {"nl\nx", "nl\\nx"},
  };
  for (auto [token, shown] : cases) {
    EXPECT_EQ(check(token, nullptr, METHOD_GET), -1) << token;
    std::string line = "[checkSessionX:45] " + dir.path + shown + " file not exsits, ignore\n";
    EXPECT_NE(log.text().find(" (DEBUG): quill_cgi: " + line), std::string::npos) << token;
  }
  EXPECT_EQ(log.text().find("Token update"), std::string::npos);
  for (const std::string &name : files) EXPECT_EQ(readText(name), "admin\n0\n") << name;
  unlink(outside.c_str());
}
