// Timelines: events at moments of simulated time, checked whole before any
// is taken, then applied in order as the clock reaches them.
#include <math.h>
#include <stdio.h>
#include <string.h>
#include <strings.h>

#include <algorithm>

#include "sim/sim.h"
#include "sim/sim_model_json.h"
#include "sim/sim_json.h"
#include "switch_facts.h"

namespace sim {

namespace {

constexpr int64_t kDefaultSecondsToWrap = 10;
// Bounds that keep every conversion to an integer defined.
constexpr double kMostSeconds = 1e9;
constexpr double kMostNumber = 4294967295.0;
constexpr int kMostFields = 3;

using Check = bool (*)(const Sim &, const cJSON *, TimelineEvent *, std::string *);
using Apply = void (*)(Sim &, Port &, const TimelineEvent &);

const cJSON *member(const cJSON *o, const char *name) { return cJSON_GetObjectItemCaseSensitive(o, name); }

// A whole-number field between the bounds; `optional` lets it be absent.
bool wholeField(const cJSON *o, const char *name, double least, double most, bool optional, int64_t *v,
                std::string *error) {
  NumberFault f = readWhole(member(o, name), least, most, v);
  if (f == NumberFault::None || (f == NumberFault::Missing && optional)) return true;
  return refuse(error, numberFaultText(name, f, least, most));
}

// Modules go into the fibre ports' slots; a copper port has none to take
// one out of or put one into.
bool checkModuleSlot(const Sim &s, const cJSON *, TimelineEvent *e, std::string *error) {
  if (s.model.layout.isFibre(e->port)) return true;
  return refuse(error, "port " + std::to_string(e->port) + " has no module slot");
}

// A text field that takes one of two words.
bool wordField(const cJSON *o, const char *name, const char *one, const char *other, std::string *word,
               std::string *error) {
  const cJSON *m = member(o, name);
  *word = cJSON_IsString(m) ? m->valuestring : "";
  if (*word == one || *word == other) return true;
  std::string why = "\"";  // in a fresh string: see findDuplicateKey
  why += name;
  return refuse(error, why + "\" must be \"" + one + "\" or \"" + other + "\"");
}

bool checkMedia(const Sim &s, const cJSON *o, TimelineEvent *e, std::string *error) {
  return checkModuleSlot(s, o, e, error) && wordField(o, "media", "copper", "fiber", &e->media, error);
}

// The API's name of a cause, or the CLI's as an alias; the model keeps
// the CLI's, which every cause has.
bool checkCause(const Sim &, const cJSON *o, TimelineEvent *e, std::string *error) {
  const cJSON *c = member(o, "cause");
  if (!cJSON_IsString(c)) return refuse(error, "needs \"cause\", the name of a D-Disable cause");
  int i = causeIndex(c->valuestring);
  if (i < 0) return refuse(error, "unknown cause \"" + std::string(c->valuestring) + "\"");
  e->cause = facts::kDDisableCauses[i].cli;
  return true;
}

bool checkMacs(const Sim &s, const cJSON *o, TimelineEvent *e, std::string *error) {
  const cJSON *macs = member(o, "macs"), *m = nullptr;
  if (!cJSON_IsArray(macs) || !macs->child) return refuse(error, "needs \"macs\", a list of addresses");
  cJSON_ArrayForEach(m, macs) {
    if (!cJSON_IsString(m) || !wellFormedMac(m->valuestring)) return refuse(error, "bad MAC address in \"macs\"");
    e->macs.push_back(m->valuestring);
  }
  int64_t vlan = 0;
  if (!wholeField(o, "vlan", facts::kLockVlan.least, facts::kLockVlan.most, false, &vlan, error)) return false;
  e->vlan = static_cast<uint32_t>(vlan);
  if (vlanExists(s, e->vlan)) return true;
  return refuse(error, "unknown VLAN " + std::to_string(vlan));
}

bool checkWrap(const Sim &, const cJSON *o, TimelineEvent *e, std::string *error) {
  e->seconds = kDefaultSecondsToWrap;
  return wholeField(o, "inSeconds", 0, kMostSeconds, true, &e->seconds, error);
}

bool checkPower(const Sim &s, const cJSON *o, TimelineEvent *e, std::string *error) {
  if (!hasPowerEstimate(s, e->port))
    return refuse(error, "port " + std::to_string(e->port) + " has no power estimate");
  return wholeField(o, "milliwatts", kMilliwatts.least, kMilliwatts.most, false, &e->milliwatts, error) &&
         wholeField(o, "savedMwh", 0, kMostNumber, true, &e->savedMwh, error);
}

bool checkAdmin(const Sim &, const cJSON *o, TimelineEvent *e, std::string *error) {
  std::string state;
  if (!wordField(o, "state", "enable", "disable", &state, error)) return false;
  e->enable = state == "enable";
  return true;
}

bool checkTraffic(const Sim &, const cJSON *o, TimelineEvent *e, std::string *error) {
  TrafficChange &t = e->traffic;
  if (!member(o, "inOctetsPerSec") && !member(o, "outOctetsPerSec") && !member(o, "inErrors"))
    return refuse(error, "needs \"inOctetsPerSec\", \"outOctetsPerSec\" or \"inErrors\"");
  return wholeField(o, "inOctetsPerSec", 0, kOctetsPerSec.most, true, &t.inOctetsPerSec, error) &&
         wholeField(o, "outOctetsPerSec", 0, kOctetsPerSec.most, true, &t.outOctetsPerSec, error) &&
         wholeField(o, "inErrors", 0, kMostNumber, true, &t.inErrors, error);
}

// Every kind takes "at", "event" and "port", and the fields it lists;
// the port alone needs no check of its own.
struct EventKind {
  const char *name;
  const char *fields[kMostFields];
  Check check;
  Apply apply;
};

#define APPLY(...) [](Sim &s, Port &p, const TimelineEvent &e) { __VA_ARGS__; }
const EventKind kEventKinds[] = {
    {"link-down", {}, nullptr, APPLY(setLinkState(s, p, false, e.atMs))},
    {"link-up", {}, nullptr, APPLY(setLinkState(s, p, true, e.atMs))},
    // A pulled module takes the link with it; a new one brings it up on its medium.
    {"transceiver-removed", {}, checkModuleSlot, APPLY(removeTransceiver(s, p, e.atMs))},
    {"transceiver-inserted", {"media"}, checkMedia, APPLY(insertTransceiver(s, p, e.media, e.atMs))},
    {"ddisable", {"cause"}, checkCause, APPLY(tripDDisable(s, p, e.cause, e.atMs))},
    {"pml-violation", {"macs", "vlan"}, checkMacs, recordPmlViolation},
    {"counters-reset", {}, nullptr, APPLY(resetPortCounters(s, p, e.atMs))},
    {"counters-wrap", {"inSeconds"}, checkWrap, APPLY(bringCountersNearWrap(s, p, e.seconds, e.atMs))},
    {"power", {"milliwatts", "savedMwh"}, checkPower, APPLY(setPortPower(s, p, e.milliwatts, e.savedMwh, e.atMs))},
    {"admin", {"state"}, checkAdmin, APPLY(setAdminState(s, p, e.enable, e.atMs))},
    {"traffic", {"inOctetsPerSec", "outOctetsPerSec", "inErrors"}, checkTraffic,
     APPLY(setPortTraffic(s, p, e.traffic, e.atMs))},
};
#undef APPLY

const EventKind *kindNamed(const std::string &name) {
  for (const EventKind &k : kEventKinds)
    if (name == k.name) return &k;
  return nullptr;
}

bool takes(const EventKind &k, const char *field) {
  if (!strcmp(field, "at") || !strcmp(field, "event") || !strcmp(field, "port")) return true;
  for (const char *f : k.fields)
    if (f && !strcmp(field, f)) return true;
  return false;
}

// A field the kind does not take; a field it takes under another case is
// named, as that is the likely slip.
bool checkFields(const EventKind &k, const cJSON *o, std::string *error) {
  for (const cJSON *m = o->child; m; m = m->next) {
    if (takes(k, m->string)) continue;
    *error = "unknown field \"" + std::string(m->string) + "\" for " + k.name;
    for (const char *f : k.fields)
      if (f && !strcasecmp(f, m->string)) *error += std::string(" (it takes \"") + f + "\")";
    return false;
  }
  return true;
}

bool checkPort(const Sim &s, const cJSON *o, TimelineEvent *e, std::string *error) {
  const cJSON *port = member(o, "port");
  int64_t n = 0;
  NumberFault f = readWhole(port, 1, kMostNumber, &n);
  if (f == NumberFault::Missing || f == NumberFault::NotNumber || f == NumberFault::Fraction)
    return refuse(error, f == NumberFault::Missing ? "no \"port\"" : numberFaultText("port", f, 1, kMostNumber));
  std::optional<Interface> i = f == NumberFault::None ? findInterface(s, static_cast<uint32_t>(n)) : std::nullopt;
  if (!i || i->type != OPEN_INTF_TYPE_PHY) {
    char text[64];
    snprintf(text, sizeof text, "unknown port %.15g", port->valuedouble);
    return refuse(error, text);
  }
  e->port = i->ifNum;
  return true;
}

// Checks one event; the error is the reason only, the caller says where.
bool parseEvent(const Sim &s, const cJSON *o, double lastAt, TimelineEvent *e, std::string *error) {
  if (!cJSON_IsObject(o)) return refuse(error, "an event must be a JSON object");
  if (const char *twice = duplicateKey(o)) {
    std::string why = "\"";  // in a fresh string: see findDuplicateKey
    why += twice;
    return refuse(error, std::move(why += "\" given twice"));
  }
  const cJSON *at = member(o, "at"), *kind = member(o, "event");
  if (!cJSON_IsNumber(at) || !(at->valuedouble >= 0 && at->valuedouble <= kMostSeconds))
    return refuse(error, "\"at\" must be seconds from the start (up to 1e9)");
  if (at->valuedouble < lastAt) {
    char text[80];
    snprintf(text, sizeof text, "time out of order (the event before is at %g)", lastAt);
    return refuse(error, text);
  }
  const EventKind *k = cJSON_IsString(kind) ? kindNamed(kind->valuestring) : nullptr;
  if (!k)
    return refuse(error,
                  cJSON_IsString(kind) ? "unknown event \"" + std::string(kind->valuestring) + "\"" : "no \"event\"");
  e->kind = k->name;
  return checkFields(*k, o, error) && checkPort(s, o, e, error) && (!k->check || k->check(s, o, e, error));
}

}  // namespace

bool parseTimeline(const Sim &s, const cJSON *events, int64_t startMs, std::vector<TimelineEvent> *out,
                   std::string *error) {
  out->clear();
  if (!events) return true;
  if (!cJSON_IsArray(events)) return refuse(error, "\"timeline\" must be a list of events");
  double lastAt = 0;
  int n = 0;
  const cJSON *o = nullptr;
  cJSON_ArrayForEach(o, events) {
    TimelineEvent e;
    std::string why;
    const cJSON *at = member(o, "at");
    if (!parseEvent(s, o, lastAt, &e, &why)) {
      char where[64];
      if (cJSON_IsNumber(at)) snprintf(where, sizeof where, "timeline event %d (at %g): ", n + 1, at->valuedouble);
      else snprintf(where, sizeof where, "timeline event %d: ", n + 1);
      out->clear();
      return refuse(error, where + why);
    }
    lastAt = at->valuedouble;
    e.atMs = startMs + llround(lastAt * 1000);
    e.number = ++n;
    e.source = printJson(o, false);
    out->push_back(std::move(e));
  }
  return true;
}

std::vector<Pending> pendingAfterNow(const Sim &s) {
  int64_t now = clockNowMs(s.clock);
  std::vector<Pending> out;
  for (const PendingTimer &t : pendingTimers(s))
    if (t.atMs > now) out.push_back({t.atMs, t.what, nullptr});
  for (size_t i = s.nextEvent; i < s.timeline.size(); ++i) {
    const TimelineEvent &e = s.timeline[i];
    out.push_back({e.atMs, e.kind + " on port " + std::to_string(e.port) + " (timeline event " +
                               std::to_string(e.number) + ")", &e});
  }
  // Stable: at one moment the timers come first, then the timeline's
  // events in their order, as catchUp applies them.
  std::stable_sort(out.begin(), out.end(), [](const Pending &a, const Pending &b) { return a.atMs < b.atMs; });
  return out;
}

// One queue in time order: the timeline's events and the recoveries, and
// before each the samples due by then, taken with the switch as it stood;
// so the switch ends the same however the clock's moves are split.
void catchUp(Sim &s) {
  int64_t now = clockNowMs(s.clock);
  for (;;) {
    const TimelineEvent *e = s.nextEvent < s.timeline.size() ? &s.timeline[s.nextEvent] : nullptr;
    int64_t eventAt = e && e->atMs <= now ? e->atMs : INT64_MAX, recovery = nextRecoveryMs(s);
    if (recovery >= 0 && recovery <= now && recovery <= eventAt) {
      takeLpiSamples(s, recovery);
      recoverDDisabled(s, recovery);
    } else if (eventAt != INT64_MAX) {
      takeLpiSamples(s, eventAt);
      kindNamed(e->kind)->apply(s, *findPort(s, e->port), *e);
      ++s.nextEvent;
    } else {
      break;
    }
  }
  takeLpiSamples(s, now);
}

}  // namespace sim
