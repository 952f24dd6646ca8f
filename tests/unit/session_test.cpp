#include <gtest/gtest.h>
#include <sys/stat.h>

#include <string>

#include "frame/route_table.h"
#include "frame/session.h"
#include "test_support.h"

namespace {

TEST(SessionDecisions, PrivilegeByMethodAndAccess) {
  struct Case {
    const char *line;
    uint32_t method, access;
    Privilege verdict;
  } cases[] = {
      {"ro\n", METHOD_GET, 1, Privilege::Allowed},   {"ro\n", METHOD_PUT, 1, Privilege::Denied},
      {"ro\n", METHOD_POST, 1, Privilege::Denied},   {"ro\n", METHOD_DELETE, 1, Privilege::Denied},
      {"ro\n", METHOD_GET, 2, Privilege::Denied},    {"rw\n", METHOD_PUT, 1, Privilege::Allowed},
      {"rw\n", METHOD_GET, 2, Privilege::Denied},    {"rwx\n", METHOD_DELETE, 1, Privilege::Allowed},
      {"admin\n", METHOD_GET, 1, Privilege::Invalid}, {"", METHOD_GET, 1, Privilege::Invalid},
      {"RO\n", METHOD_GET, 1, Privilege::Invalid},
  };
  for (const Case &c : cases)
    EXPECT_EQ(sessionPrivilege(c.line, c.method, c.access), c.verdict) << c.line << c.method << c.access;
}

TEST(SessionDecisions, AdminLineMustBeExact) {
  char exact[200] = "admin\n", other[200] = "admin2\n", noNewline[200] = "admin";
  EXPECT_TRUE(sessionIsAdmin(exact));
  EXPECT_FALSE(sessionIsAdmin(other));
  EXPECT_FALSE(sessionIsAdmin(noNewline));
}

TEST(SessionDecisions, LifetimeIs7200SecondsAndZeroNeverExpires) {
  EXPECT_FALSE(sessionExpired(10000, 10000 - 7200));
  EXPECT_TRUE(sessionExpired(10000, 10000 - 7201));
  EXPECT_FALSE(sessionExpired(99999999, 0));
  EXPECT_FALSE(sessionExpired(100, 200));
}

TEST(SessionDecisions, TokensThatCouldLeaveTheFolderOrCarryControlCharactersAreUnusable) {
  std::string longToken(499, 'a'), fitting(498, 'a');
  struct Case {
    const char *token;
    bool usable;
  } cases[] = {
      {"abc123", true}, {"", false}, {nullptr, false}, {"../etc/passwd", false}, {"a/b", false},
      {"..", true},  // stays inside: the folder has no such file
      {longToken.c_str(), false}, {fitting.c_str(), true},
      // No login hands out a control character: refused like a missing file.
      {"ab\ncd", false}, {"\x01", false}, {"tab\tbed", false}, {"x\x1f", false}, {"del\x7f", false},
      {"a b", true}, {"caf\xc3\xa9", true}, {"~!\x80", true},
  };
  for (const Case &c : cases) EXPECT_EQ(sessionTokenUsable(c.token, "/tmp/session/"), c.usable);
}

long gNow = 0;
bool fakeUptime(long *now) {
  *now = gNow;
  return true;
}
bool noUptime(long *) { return false; }

class SessionFiles : public testing::Test {
 protected:
  int check(const char *token, const char *refresh, uint32_t method, bool (*clock)(long *) = fakeUptime) {
    Route route = {};
    route.method = method;
    route.access = 1;
    SessionEnv env = {dirSlash_.c_str(), clock};
    return checkSessionIn(env, token, refresh, &route);
  }
  std::string path(const char *token) { return dir_.file(token); }
  TempDir dir_;
  std::string dirSlash_ = dir_.path() + "/";
};

TEST_F(SessionFiles, AdminIsRefreshedWithUptimeAndToken) {
  gNow = 5000;
  writeText(path("t1"), "admin\n4000\n");
  EXPECT_EQ(check("t1", nullptr, METHOD_PUT), 0);
  EXPECT_EQ(readText(path("t1")), "admin\n5000\nt1");
  // A second refresh reads its own output back correctly.
  gNow = 5100;
  EXPECT_EQ(check("t1", nullptr, METHOD_GET), 0);
  EXPECT_EQ(readText(path("t1")), "admin\n5100\nt1");
}

TEST_F(SessionFiles, UsersKeepTheirPrivilegeLine) {
  gNow = 300;
  writeText(path("u1"), "alice\n200\nrw\n");
  EXPECT_EQ(check("u1", nullptr, METHOD_DELETE), 0);
  EXPECT_EQ(readText(path("u1")), "alice\n300\nrw\nu1");
  writeText(path("u2"), "bob\n200\nro\n");
  EXPECT_EQ(check("u2", nullptr, METHOD_PUT), -1);
  EXPECT_EQ(readText(path("u2")), "bob\n200\nro\n");  // refused: untouched
  EXPECT_EQ(check("u2", nullptr, METHOD_GET), 0);
  writeText(path("u3"), "carol\n200\nxx\n");
  EXPECT_EQ(check("u3", nullptr, METHOD_GET), -1);
}

TEST_F(SessionFiles, PollingRequestsDoNotRefresh) {
  gNow = 1000;
  writeText(path("p"), "admin\n900\n");
  EXPECT_EQ(check("p", "1", METHOD_GET), 0);
  EXPECT_EQ(check("p", "", METHOD_GET), 0);
  EXPECT_EQ(readText(path("p")), "admin\n900\n");
}

TEST_F(SessionFiles, TimeoutDeletesTheFile) {
  writeText(path("old"), "admin\n1000\n");
  gNow = 8200;
  EXPECT_EQ(check("old", nullptr, METHOD_GET), 0);  // exactly 7200: still valid
  writeText(path("old"), "admin\n1000\n");
  gNow = 8201;
  EXPECT_EQ(check("old", nullptr, METHOD_GET), -1);
  struct stat st;
  EXPECT_NE(stat(path("old").c_str(), &st), 0);
  EXPECT_EQ(check("old", nullptr, METHOD_GET), -1);
}

TEST_F(SessionFiles, ZeroOrGarbageStampGetsARealOne) {
  gNow = 123456;
  writeText(path("z"), "admin\n0\n");
  EXPECT_EQ(check("z", nullptr, METHOD_GET), 0);
  EXPECT_EQ(readText(path("z")), "admin\n123456\nz");
  writeText(path("g"), "admin\nnot-a-number\n");
  EXPECT_EQ(check("g", nullptr, METHOD_GET), 0);
}

TEST_F(SessionFiles, MissingFilesAndBadTokensAreRefused) {
  gNow = 10;
  writeText(dir_.path() + "-outside", "admin\n0\n");
  std::string escape = "../" + dir_.path().substr(dir_.path().rfind('/') + 1) + "-outside";
  EXPECT_EQ(check("nope", nullptr, METHOD_GET), -1);
  EXPECT_EQ(check(nullptr, nullptr, METHOD_GET), -1);
  EXPECT_EQ(check("", nullptr, METHOD_GET), -1);
  EXPECT_EQ(check(escape.c_str(), nullptr, METHOD_GET), -1);
  EXPECT_EQ(readText(dir_.path() + "-outside"), "admin\n0\n");
  unlink((dir_.path() + "-outside").c_str());
  writeText(path("ctl\x01"), "admin\n0\n");  // exists, but the token is no usable name
  EXPECT_EQ(check("ctl\x01", nullptr, METHOD_GET), -1);
  EXPECT_EQ(readText(path("ctl\x01")), "admin\n0\n");
  writeText(path("c"), "admin\n5\n");
  EXPECT_EQ(check("c", nullptr, METHOD_GET, noUptime), -1);
}

}  // namespace
