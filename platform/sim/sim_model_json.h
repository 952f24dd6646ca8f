// The model to and from the JSON of scenario files and dumps, and what a
// value the daemon reads from a file must be, as the setters and events
// hold it: a file cannot put into the model what no call could.
#ifndef PLATFORM_SIM_SIM_MODEL_JSON_H
#define PLATFORM_SIM_SIM_MODEL_JSON_H

#include <cjson/cJSON.h>

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
// Whether a well-formed address is unicast: its first octet's lowest bit
// is clear.
bool unicastMac(const std::string &t);

// Every fact of the model, as a dump shows it.
cJSON *modelToJson(const Model &m);
// A file's "layout": the shape of the switch to seed before the rest.
bool layoutFromJson(const cJSON *j, SwitchLayout *layout, std::string *error);
// Applies the sections of a file's "model" onto a seeded switch; a field
// the model does not have, or of the wrong kind, is refused with one line
// naming where. A scenario states facts apart, so they must then be facts
// a switch can have: a port's kind and medium its layout gives, Green
// Ethernet, power estimates and LAGs on copper ports only, D-Disable
// reasons of its causes, VLANs it can configure, locked addresses on its
// ports and VLANs.
bool modelFromJson(const cJSON *j, Sim &next, std::string *error);

}  // namespace sim

#endif
