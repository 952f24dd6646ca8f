#include "sim/sim_clock.h"

#include <ctype.h>
#include <math.h>
#include <stdlib.h>
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

bool parseDecimalSeconds(const char *text, int64_t *ms) {
  int digits = 0, points = 0;
  for (const char *p = text; *p; ++p) {
    if (isdigit(static_cast<unsigned char>(*p))) ++digits;
    else if (*p == '.') ++points;
    else return false;
  }
  if (digits == 0 || points > 1) return false;
  double seconds = strtod(text, nullptr);
  if (seconds > kMostAdvanceS) return false;
  *ms = llround(seconds * 1000);
  return true;
}

}  // namespace sim
