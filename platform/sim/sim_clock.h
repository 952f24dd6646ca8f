// The simulated switch's time: milliseconds since its scenario was loaded.
// It runs with the machine's monotonic clock until the caller pauses it;
// a paused clock moves only when advanced, so a test sees the state at an
// exact moment without waiting for it.
#ifndef PLATFORM_SIM_SIM_CLOCK_H
#define PLATFORM_SIM_SIM_CLOCK_H

#include <stdint.h>

namespace sim {

// Reads the machine's monotonic clock; tests hand in their own.
using MonotonicMs = int64_t (*)();
int64_t machineMonotonicMs();

struct SimClock {
  MonotonicMs source = machineMonotonicMs;
  int64_t anchorMs = 0;  // source time at which the simulated time was zero
  bool paused = false;
  int64_t frozenMs = 0;  // the simulated time while paused
};

// Starts the time at zero again, keeping whether it runs or stands.
void clockRestart(SimClock &c);
int64_t clockNowMs(const SimClock &c);
inline int64_t clockNowSeconds(const SimClock &c) { return clockNowMs(c) / 1000; }
void clockPause(SimClock &c);
void clockRun(SimClock &c);
void clockAdvance(SimClock &c, int64_t ms);
// Plain decimal seconds, fractions allowed ("2.5", "30"), from 0 to 1e10
// (three centuries), as milliseconds; false for anything else (a sign, an
// exponent, hex, "inf", nothing).
inline constexpr double kMostAdvanceS = 1e10;
bool parseDecimalSeconds(const char *text, int64_t *ms);

}  // namespace sim

#endif
