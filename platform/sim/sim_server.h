#ifndef PLATFORM_SIM_SIM_SERVER_H
#define PLATFORM_SIM_SIM_SERVER_H

#include "sim/sim.h"

namespace sim {

// Serves the socket at `path` until SIGINT or SIGTERM; 0 on a clean stop.
int serve(Sim &s, const char *path);
// Makes a running serve() return within its poll interval.
void stopServing();

}  // namespace sim

#endif
