// What a value the daemon reads from a file must be, as the setters and
// events hold it: a file cannot put into the model what no call could.
#ifndef PLATFORM_SIM_SIM_CHECKS_H
#define PLATFORM_SIM_SIM_CHECKS_H

#include <string>

#include "sim/sim.h"
#include "switch_facts.h"

namespace sim {

// The whole numbers a field takes, both ends included.
struct Bounds {
  double least, most;
  constexpr Bounds(double l, double m) : least(l), most(m) {}
  constexpr Bounds(facts::Range r) : least(r.least), most(r.most) {}
};

// Every whole number a JSON number holds exactly.
inline constexpr double kMostExact = 9007199254740992.0;
inline constexpr Bounds kPercent{0, 100};
// Above any port's line rate (400G is 5e10 octets a second), and exact in
// a JSON number.
inline constexpr Bounds kOctetsPerSec{0, 1e12};
inline constexpr Bounds kPerMillion{0, 1e6};
// A history run samples every interval the setter allows, in seconds.
inline constexpr Bounds kSampleStepS{facts::kLpiSampleInterval.least * 60.0, facts::kLpiSampleInterval.most * 60.0};
inline constexpr Bounds kMilliwatts{0, 4294967295.0};  // a power reading

// 17 characters: six pairs of hex digits, each pair after the first
// behind ":" or "-".
bool wellFormedMac(const std::string &t);

// A scenario states facts apart, so they must be facts a switch can have:
// a port's kind and medium its layout gives, Green Ethernet, power
// estimates and LAGs on copper ports only, D-Disable reasons of its
// causes, VLANs it can configure, locked addresses on its ports and VLANs.
// False with one line naming where and why.
bool scenarioFactsAgree(const Sim &s, std::string *error);

}  // namespace sim

#endif
