// Timelines: events at moments of simulated time, checked whole before any
// is taken, then applied in order as the clock reaches them.
#include <ctype.h>
#include <stdio.h>

#include <algorithm>

#include "sim/sim.h"

namespace sim {

namespace {

constexpr int64_t kDefaultSecondsToWrap = 10;
// Bounds that keep every conversion to an integer defined.
constexpr double kMostSeconds = 1e9;
constexpr double kMostNumber = 4294967295.0;

using Check = bool (*)(const Sim &, const cJSON *, TimelineEvent *, std::string *);
using Apply = void (*)(Sim &, const TimelineEvent &);

const cJSON *member(const cJSON *o, const char *name) { return cJSON_GetObjectItemCaseSensitive(o, name); }

bool inRange(const cJSON *n, double most) { return cJSON_IsNumber(n) && n->valuedouble >= 0 && n->valuedouble <= most; }

bool wellFormedMac(const std::string &t) {
  if (t.size() != 17) return false;
  for (size_t i = 0; i < t.size(); ++i)
    if (i % 3 == 2 ? t[i] != ':' && t[i] != '-' : !isxdigit(static_cast<unsigned char>(t[i]))) return false;
  return true;
}

bool checkPortOnly(const Sim &, const cJSON *, TimelineEvent *, std::string *) { return true; }

bool checkMedia(const Sim &, const cJSON *o, TimelineEvent *e, std::string *error) {
  const cJSON *m = member(o, "media");
  e->media = cJSON_IsString(m) ? m->valuestring : "";
  if (knownMedia(e->media)) return true;
  *error = "\"media\" must be \"copper\" or \"fiber\"";
  return false;
}

bool checkCause(const Sim &, const cJSON *o, TimelineEvent *e, std::string *error) {
  const cJSON *c = member(o, "cause");
  e->cause = cJSON_IsString(c) ? c->valuestring : "";
  if (disableReasonOf(e->cause)) return true;
  *error = "unknown cause \"" + e->cause + "\"";
  return false;
}

bool checkMacs(const Sim &, const cJSON *o, TimelineEvent *e, std::string *error) {
  const cJSON *m = nullptr, *vlan = member(o, "vlan");
  cJSON_ArrayForEach(m, member(o, "macs")) {
    if (!cJSON_IsString(m) || !wellFormedMac(m->valuestring)) {
      *error = "bad MAC address in \"macs\"";
      return false;
    }
    e->macs.push_back(m->valuestring);
  }
  if (e->macs.empty() || !inRange(vlan, 4093) || vlan->valuedouble < 1) {
    *error = "needs \"macs\" (a list of addresses) and \"vlan\" (1-4093)";
    return false;
  }
  e->vlan = static_cast<uint32_t>(vlan->valuedouble);
  return true;
}

bool checkWrap(const Sim &, const cJSON *o, TimelineEvent *e, std::string *error) {
  const cJSON *in = member(o, "inSeconds");
  e->seconds = inRange(in, kMostSeconds) ? static_cast<int64_t>(in->valuedouble) : kDefaultSecondsToWrap;
  if (!in || inRange(in, kMostSeconds)) return true;
  *error = "\"inSeconds\" must be a number of seconds";
  return false;
}

bool checkPower(const Sim &s, const cJSON *o, TimelineEvent *e, std::string *error) {
  const cJSON *mw = member(o, "milliwatts"), *saved = member(o, "savedMwh");
  if (!hasPowerEstimate(s, e->port)) {
    *error = "port " + std::to_string(e->port) + " has no power estimate";
    return false;
  }
  if (!inRange(mw, kMostNumber) || (saved && !inRange(saved, kMostNumber))) {
    *error = "needs \"milliwatts\" (and optionally \"savedMwh\"), numbers of 0 or more";
    return false;
  }
  e->milliwatts = static_cast<int64_t>(mw->valuedouble);
  e->savedMwh = saved ? static_cast<int64_t>(saved->valuedouble) : -1;
  return true;
}

void linkDown(Sim &s, const TimelineEvent &e) { setLinkState(s, e.port, false, e.atMs); }
void linkUp(Sim &s, const TimelineEvent &e) { setLinkState(s, e.port, true, e.atMs); }

// A pulled module takes the link with it; a new one brings it up on its
// medium.
void transceiverRemoved(Sim &s, const TimelineEvent &e) { removeTransceiver(s, e.port, e.atMs); }
void transceiverInserted(Sim &s, const TimelineEvent &e) { insertTransceiver(s, e.port, e.media, e.atMs); }

void ddisable(Sim &s, const TimelineEvent &e) { tripDDisable(s, e.port, e.cause, e.atMs); }
void countersReset(Sim &s, const TimelineEvent &e) { resetPortCounters(s, e.port, e.atMs); }
void countersWrap(Sim &s, const TimelineEvent &e) { bringCountersNearWrap(s, e.port, e.seconds, e.atMs); }
void power(Sim &s, const TimelineEvent &e) { setPortPower(s, e.port, e.milliwatts, e.savedMwh, e.atMs); }

struct EventKind {
  const char *name;
  Check check;
  Apply apply;
};

const EventKind kEventKinds[] = {
    {"link-down", checkPortOnly, linkDown},
    {"link-up", checkPortOnly, linkUp},
    {"transceiver-removed", checkPortOnly, transceiverRemoved},
    {"transceiver-inserted", checkMedia, transceiverInserted},
    {"ddisable", checkCause, ddisable},
    {"pml-violation", checkMacs, recordPmlViolation},
    {"counters-reset", checkPortOnly, countersReset},
    {"counters-wrap", checkWrap, countersWrap},
    {"power", checkPower, power},
};

const EventKind *kindNamed(const std::string &name) {
  for (const EventKind &k : kEventKinds)
    if (name == k.name) return &k;
  return nullptr;
}

// Checks one event; the error is the reason only, the caller says where.
bool parseEvent(const Sim &s, const cJSON *o, double lastAt, TimelineEvent *e, std::string *error) {
  const cJSON *at = member(o, "at"), *kind = member(o, "event"), *port = member(o, "port");
  if (!inRange(at, kMostSeconds)) {
    *error = "\"at\" must be seconds from the start (up to 1e9)";
    return false;
  }
  if (at->valuedouble < lastAt) {
    char text[80];
    snprintf(text, sizeof text, "time out of order (the event before is at %g)", lastAt);
    *error = text;
    return false;
  }
  const EventKind *k = cJSON_IsString(kind) ? kindNamed(kind->valuestring) : nullptr;
  if (!k) {
    *error = cJSON_IsString(kind) ? "unknown event \"" + std::string(kind->valuestring) + "\"" : "no \"event\"";
    return false;
  }
  const Interface *i = inRange(port, kMostNumber) ? findInterface(s, static_cast<uint32_t>(port->valuedouble)) : nullptr;
  if (!i || i->type != OPEN_INTF_TYPE_PHY) {
    char text[64];
    snprintf(text, sizeof text, "unknown port %g", cJSON_IsNumber(port) ? port->valuedouble : 0.0);
    *error = cJSON_IsNumber(port) ? text : "no \"port\"";
    return false;
  }
  e->kind = k->name;
  e->port = i->ifNum;
  return k->check(s, o, e, error);
}

}  // namespace

std::string jsonError(const std::string &text) {
  const char *at = cJSON_GetErrorPtr();
  if (!at || at < text.c_str() || at > text.c_str() + text.size()) return "broken JSON";
  size_t offset = static_cast<size_t>(at - text.c_str());
  size_t line = 1 + std::count(text.begin(), text.begin() + static_cast<long>(offset), '\n');
  size_t lineStart = text.rfind('\n', offset ? offset - 1 : 0);
  size_t column = offset - (lineStart == std::string::npos || offset == 0 ? 0 : lineStart + 1) + 1;
  return "broken JSON at line " + std::to_string(line) + ", column " + std::to_string(column);
}

bool parseTimeline(const Sim &s, const cJSON *events, int64_t startMs, std::vector<TimelineEvent> *out,
                   std::string *error) {
  out->clear();
  if (!events) return true;
  if (!cJSON_IsArray(events)) {
    *error = "\"timeline\" must be a list of events";
    return false;
  }
  double lastAt = 0;
  int n = 0;
  const cJSON *o = nullptr;
  cJSON_ArrayForEach(o, events) {
    ++n;
    TimelineEvent e;
    std::string why;
    if (!parseEvent(s, o, lastAt, &e, &why)) {
      const cJSON *at = member(o, "at");
      char where[64];
      if (cJSON_IsNumber(at)) snprintf(where, sizeof where, "timeline event %d (at %g): ", n, at->valuedouble);
      else snprintf(where, sizeof where, "timeline event %d: ", n);
      *error = where + why;
      return false;
    }
    lastAt = member(o, "at")->valuedouble;
    e.atMs = startMs + static_cast<int64_t>(lastAt * 1000 + 0.5);
    out->push_back(std::move(e));
  }
  return true;
}

// What the switch does by itself (recoveries, samples) up to each event
// happens before it, so that every change lands at its own moment.
void catchUp(Sim &s) {
  int64_t now = clockNowMs(s.clock);
  for (; s.nextEvent < s.timeline.size() && s.timeline[s.nextEvent].atMs <= now; ++s.nextEvent) {
    const TimelineEvent &e = s.timeline[s.nextEvent];
    recoverDDisabled(s, e.atMs);
    takeLpiSamples(s, e.atMs);
    kindNamed(e.kind)->apply(s, e);
  }
  recoverDDisabled(s, now);
  takeLpiSamples(s, now);
}

}  // namespace sim
