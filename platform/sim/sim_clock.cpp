#include "sim/sim_clock.h"

#include <time.h>

namespace sim {

int64_t machineMonotonicMs() {
  timespec ts = {};
  clock_gettime(CLOCK_MONOTONIC, &ts);
  return ts.tv_sec * 1000LL + ts.tv_nsec / 1000000;
}

void clockRestart(SimClock &c) {
  c.anchorMs = c.source();
  c.frozenMs = 0;
}

int64_t clockNowMs(const SimClock &c) { return c.paused ? c.frozenMs : c.source() - c.anchorMs; }

void clockPause(SimClock &c) {
  if (c.paused) return;
  c.frozenMs = clockNowMs(c);
  c.paused = true;
}

// Resumes from the paused moment: the time skipped while paused is not
// counted.
void clockRun(SimClock &c) {
  if (!c.paused) return;
  c.anchorMs = c.source() - c.frozenMs;
  c.paused = false;
}

void clockAdvance(SimClock &c, int64_t ms) {
  if (ms <= 0) return;
  if (c.paused) c.frozenMs += ms;
  else c.anchorMs -= ms;
}

}  // namespace sim
