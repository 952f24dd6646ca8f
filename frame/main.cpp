// interfaces_v2.cgi: one HTTP request under /api/v2/interfaces per run.
#include "api/program.h"
#include "frame/log.h"
#include "frame/route_table.h"

namespace {
// Held until exit rather than freed: the process ends right after the
// request, and a table still reachable here is no leak to a checker.
RouteTable *gRoutes = nullptr;
}  // namespace

int main() {
  logOpen(LOG_TO_FILE, 8, "quill_cgi");
  if (!programConnect()) {
    // The web server gets an empty reply; the reason is in the log.
    logClose();
    return -1;
  }
  gRoutes = routeTableCreate();
  if (!gRoutes) return 1;
  registerRoutes(gRoutes);
  httpdProcessRequest(gRoutes);
  programDisconnect();
  logClose();
  return 0;
}
