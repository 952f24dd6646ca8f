#include <gtest/gtest.h>

#include <string>

#include "frame/log.h"
#include "frame/route_table.h"
#include "test_support.h"

namespace {

std::string gCalled;
constexpr char kFirst[] = "first;", kSecond[] = "second;", kOther[] = "other;";
// A handler that notes its name in gCalled.
template <const char *kName>
uint32_t handler() {
  gCalled += kName;
  return 0;
}
constexpr auto first = handler<kFirst>, second = handler<kSecond>, other = handler<kOther>;

class Dispatch : public testing::Test {
 protected:
  void SetUp() override {
    gCalled.clear();
    table_ = routeTableCreate();
    httpdAddCContent(table_, "/api/v2/interfaces/if", "num", METHOD_GET, 0, first);
    httpdAddCContent(table_, "/api/v2/interfaces/if", "num", METHOD_GET, 0, second);
    httpdAddCContent(table_, "/api/v2/interfaces/if", "num", METHOD_PUT, 0, other);
    httpdAddCContent(table_, "/api/v2/interfaces", "cable-status", METHOD_GET, 0, other);
    httpdAddCContent(table_, "/other", "x", METHOD_GET, 0, other);
  }
  // Runs one request; returns what was printed.
  std::string request(const char *uri, const char *method) {
    ScopedEnv env({{"REQUEST_URI", uri}, {"REQUEST_METHOD", method}});
    testing::internal::CaptureStdout();
    httpdProcessRequest(table_);
    return testing::internal::GetCapturedStdout();
  }
  void TearDown() override { routeTableFree(table_); }
  RouteTable *table_ = nullptr;
  LogCapture log_;
};

const char kJson[] = "Content-Type: application/json\r\n\r\n";

TEST_F(Dispatch, FindsRoutesByDirectoryNameAndMethod) {
  struct Case {
    const char *uri, *method, *called, *printed;
  } cases[] = {
      {"/api/v2/interfaces/if/num?ifNum=3", "GET", "second;", kJson},  // the later registration wins
      {"/api/v2/interfaces/if/num", "get", "second;", kJson},          // methods ignore case
      {"/api/v2/interfaces/if/num", "PUT", "other;", kJson},
      {"/api/v2/interfaces/if/NUM", "GET", "", ""},                     // names do not
      {"/api/v2/interfaces/if/", "GET", "", ""},
      {"/api/v2/interfaces/cable-status", "GET", "other;", kJson},
      {"/api/v2/interfaces/if/cable-status", "GET", "", ""},
      {"/api/v2//interfaces/if//num", "GET", "second;", kJson},         // empty segments vanish
      {"/other/x", "GET", "other;", ""},                                // outside /api/v2/: no header
      {"/api/v2/interfaces/if/num", "POST", "", ""},   {nullptr, "GET", "", ""},
      {"/api/v2/interfaces/if/num", nullptr, "", ""},
  };
  for (const Case &c : cases) {
    gCalled.clear();
    EXPECT_EQ(request(c.uri, c.method), c.printed) << c.uri << " " << c.method;
    EXPECT_EQ(gCalled, c.called) << c.uri << " " << c.method;
  }
}

// The query's "/" moves the split.
TEST_F(Dispatch, AnUnknownRouteIsOnlyLogged) {
  EXPECT_EQ(request("/api/v2/interfaces/if/num?x=a/b", "GET"), "");
  EXPECT_NE(log_.text().find(" (ERROR): quill_cgi: [httpdProcessRequest:231] method not found:"
                          "/api/v2/interfaces/if/num?x=a/b\nnum?x=a\nb\n"),
            std::string::npos);
}

// A long segment is cut, not refused; a table that is not there takes nothing.
TEST_F(Dispatch, LongSegmentsAreCutAndAMissingTableRefused) {
  RouteNode *dir = routeDirGet(table_, (std::string(1100, 'd') + "/x").c_str());
  ASSERT_NE(dir, nullptr);
  EXPECT_EQ(strlen(dir->segment), 1023u);
  EXPECT_EQ(httpdAddCContent(nullptr, "/a", "x", METHOD_GET, 1, first), -1);
}

}  // namespace
