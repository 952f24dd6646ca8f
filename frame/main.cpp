// interfaces_v2.cgi: one HTTP request under /api/v2/interfaces per run as a
// CGI program, or one request after another as a FastCGI responder.
#include "api/program.h"
#include "frame/fastcgi.h"
#include "frame/log.h"
#include "frame/route_table.h"
#include "frame/session.h"

namespace {
// Held until exit rather than freed: the process ends right after the
// request, and a table still reachable here is no leak to a checker.
RouteTable *gRoutes = nullptr;
bool gConnected = false;

// One request in a responder. The registration lives as long as the process,
// unless its connection was lost (the service restarted or went away): the
// next request then registers again before its calls, and while the service
// cannot be reached gets what a CGI process gets, the connectivity wait and
// no reply.
int serveOne() {
  // The session folder's change queue rides on the same poll, so that an
  // unchanged folder costs no system call of its own.
  bool folderChanged = true;
  if (gConnected && programConnectionLost(sessionChangesFd(), &folderChanged)) {
    programDisconnect();
    gConnected = false;
    folderChanged = true;  // the registration to come may take seconds
  }
  sessionChangesPolled(folderChanged);
  if (!gConnected && !(gConnected = programConnect())) {
    programDisconnect();  // the connection a failed registration may hold
    return -1;
  }
  httpdProcessRequest(gRoutes);
  return 0;
}

int serveRequests() {
  gRoutes = routeTableCreate();
  if (!gRoutes) return 1;
  registerRoutes(gRoutes);
  sessionKeepBetweenRequests(true);
  int status = fastcgiServe(serveOne);
  if (gConnected) programDisconnect();
  logClose();
  return status;
}
}  // namespace

int main() {
  logOpen(LOG_TO_FILE, 8, "quill_cgi");
  if (fastcgiStarted()) return serveRequests();
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
