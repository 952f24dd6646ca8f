#ifndef PLATFORM_SIM_SOCKET_PATH_H
#define PLATFORM_SIM_SOCKET_PATH_H

#include <stdlib.h>

// The daemon and its clients meet at the same socket: the explicit path,
// else $OPEN_SIM_SOCKET, else the service's socket in its own folder under
// /run.
inline const char *simSocketPath(const char *explicitPath) {
  if (explicitPath && *explicitPath) return explicitPath;
  const char *env = getenv("OPEN_SIM_SOCKET");
  return (env && *env) ? env : "/run/open-sim/open-sim.sock";
}

#endif
