#include <gtest/gtest.h>

#include <map>
#include <string>

#include "api/routes.h"

namespace {

std::string key(const RouteRow &r) { return std::string(r.path) + " " + r.name + " " + httpMethodName(r.method); }

TEST(RegistrationOrder, AllRoutesByMethod) {
  ASSERT_EQ(kRouteCount, 223u);
  std::map<uint32_t, int> byMethod;
  for (size_t i = 0; i < kRouteCount; ++i) ++byMethod[kRoutes[i].method];
  EXPECT_EQ(byMethod[METHOD_GET], 157);
  EXPECT_EQ(byMethod[METHOD_POST], 14);
  EXPECT_EQ(byMethod[METHOD_DELETE], 5);
  EXPECT_EQ(byMethod[METHOD_PUT], 47);
}

TEST(RegistrationOrder, GroupsStartWhereTheWebPagesExpectThem) {
  struct Group {
    const char *path;
    size_t first, count;
  } groups[] = {
      {"/api/v2/interfaces/green-ethernet", 1, 18},    {"/api/v2/interfaces/green-ethernet-eee-api", 6, 36},
      {"/api/v2/interfaces/green-pwr-estimates", 10, 6}, {"/api/v2/interfaces/green-pwr-sav-history", 13, 8},
      {"/api/v2/interfaces/if", 18, 89},               {"/api/v2/interfaces/pml", 39, 54},
      {"/api/v2/interfaces", 44, 1},                   {"/api/v2/interfaces/interface-app", 93, 9},
      {"/api/v2/interfaces/if/all-counters", 208, 1},  {"/api/v2/interfaces/if/counters", 223, 1},
  };
  for (const Group &g : groups) {
    size_t first = 0, count = 0;
    for (size_t i = 0; i < kRouteCount; ++i) {
      if (std::string(kRoutes[i].path) != g.path) continue;
      if (!first) first = i + 1;
      ++count;
    }
    EXPECT_EQ(first, g.first) << g.path;
    EXPECT_EQ(count, g.count) << g.path;
  }
}

TEST(RegistrationOrder, TheLateBlockEndsTheList) {
  const char *late[] = {
      "/api/v2/interfaces/if status GET",          "/api/v2/interfaces/if counters GET",
      "/api/v2/interfaces/if num GET",             "/api/v2/interfaces/if/all-counters reset POST",
      "/api/v2/interfaces/if admin-state GET",     "/api/v2/interfaces/if auto-neg GET",
      "/api/v2/interfaces/if speed GET",           "/api/v2/interfaces/if mtu-size GET",
      "/api/v2/interfaces/if descr GET",           "/api/v2/interfaces/if soft-shutdown-state GET",
      "/api/v2/interfaces/if intf-fec-mode GET",   "/api/v2/interfaces/if link-trap GET",
      "/api/v2/interfaces/if encapsulation GET",   "/api/v2/interfaces/if encapsulation PUT",
      "/api/v2/interfaces/if phy-properties GET",  "/api/v2/interfaces/if phy-properties PUT",
      "/api/v2/interfaces/if expandable-mode GET", "/api/v2/interfaces/if expandable-mode PUT",
      "/api/v2/interfaces/if/counters reset POST",
  };
  size_t start = kRouteCount - std::size(late);
  for (size_t i = 0; i < std::size(late); ++i) EXPECT_EQ(key(kRoutes[start + i]), late[i]) << start + i + 1;
}

TEST(RegistrationOrder, ElevenKeysAreRegisteredTwice) {
  std::map<std::string, int> seen;
  for (size_t i = 0; i < kRouteCount; ++i) ++seen[key(kRoutes[i])];
  int doubled = 0;
  for (const auto &[k, count] : seen) doubled += count == 2;
  EXPECT_EQ(doubled, 11);
}

}  // namespace
