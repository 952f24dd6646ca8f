#include <stdio.h>
#include <stdlib.h>

#include <unordered_map>

#include "sim/sim.h"

namespace sim {

Value num(int64_t n) {
  Value v;
  v.num = n;
  return v;
}

Value text(std::string t) {
  Value v;
  v.isText = true;
  v.text = std::move(t);
  return v;
}

std::vector<const Arg *> Call::inputs() const {
  std::vector<const Arg *> v;
  for (const Arg &a : args)
    if (a.isInput()) v.push_back(&a);
  return v;
}

std::vector<Arg *> Call::outputs() {
  std::vector<Arg *> v;
  for (Arg &a : args)
    if (!a.isInput()) v.push_back(&a);
  return v;
}

static std::string inputText(const Arg &a) {
  return a.kind == wire::kInNum ? std::to_string(a.num) : a.text;
}

std::string Call::keyOf(size_t firstInputs) const {
  std::string k;
  size_t n = 0;
  for (const Arg &a : args) {
    if (!a.isInput() || n == firstInputs) continue;
    if (n++) k += ',';
    k += inputText(a);
  }
  return k;
}

std::string Call::key() const { return keyOf(args.size()); }

uint64_t Call::in(size_t i) const {
  auto in = inputs();
  return i < in.size() ? in[i]->num : 0;
}

std::string Call::inText(size_t i) const {
  auto in = inputs();
  return i < in.size() ? inputText(*in[i]) : std::string();
}

void Call::setOut(size_t i, uint64_t v) {
  auto out = outputs();
  if (i >= out.size()) return;
  out[i]->num = v;
  out[i]->written = true;
}

void Call::setOutText(size_t i, const std::string &t) {
  auto out = outputs();
  if (i >= out.size()) return;
  out[i]->text = t;
  out[i]->written = true;
}

const Outputs *Sim::stored(const std::string &call, const std::string &key) const {
  auto c = state.find(call);
  if (c == state.end()) return nullptr;
  auto k = c->second.find(key);
  if (k == c->second.end()) k = c->second.find("*");
  return k == c->second.end() ? nullptr : &k->second;
}

void Sim::put(const std::string &call, const std::string &key, Outputs v) {
  auto &keys = state[call];
  // A "*" value is the call's answer for every input from now on, so the
  // values stored for single inputs before it go; those stored after it
  // (by `set` or by a setter) win over it again.
  if (key == "*") keys.clear();
  keys[key] = std::move(v);
}

int64_t storedNum(const Sim &s, const std::string &call, const std::string &key, int64_t otherwise) {
  const Outputs *v = s.stored(call, key);
  return v && !v->empty() ? v->front().num : otherwise;
}

// Link state 0 is up; an interface without one is down.
bool linkUp(const Sim &s, uint32_t ifNum) {
  return storedNum(s, "openapiIfLinkStateGet", std::to_string(ifNum), 1) == 0;
}

const Interface *findInterface(const Sim &s, uint32_t ifNum) {
  for (const Interface &i : s.interfaces)
    if (i.ifNum == ifNum) return &i;
  return nullptr;
}

const Interface *firstOfType(const Sim &s, uint32_t type) {
  return nextOfType(s, type, 0);
}

// The interface list is kept sorted by number, so "next" is the first
// number above `after`, whether or not `after` itself exists.
const Interface *nextOfType(const Sim &s, uint32_t type, uint32_t after) {
  for (const Interface &i : s.interfaces)
    if (i.type == type && i.ifNum > after) return &i;
  return nullptr;
}

const CallRule *findRule(const std::string &name) {
  static const auto *index = [] {
    auto *m = new std::unordered_map<std::string, const CallRule *>();
    for (size_t g = 0; g < kRuleGroupCount; ++g)
      for (size_t i = 0; i < kRuleGroups[g].count; ++i)
        (*m)[kRuleGroups[g].rules[i].name] = &kRuleGroups[g].rules[i];
    return m;
  }();
  auto it = index->find(name);
  return it == index->end() ? nullptr : it->second;
}

static void packRecord(Arg *record, const Outputs &v) {
  for (size_t f = 0; f < v.size() && (f + 1) * 4 <= record->text.size(); ++f) {
    int32_t field = static_cast<int32_t>(v[f].num);
    record->text.replace(f * 4, 4, reinterpret_cast<const char *>(&field), 4);
  }
}

static void writeStored(Call &c, const Outputs &v) {
  auto out = c.outputs();
  for (size_t i = 0; i < out.size() && i < v.size(); ++i) {
    if (out[i]->kind == wire::kOutText) {
      out[i]->text = v[i].isText ? v[i].text : std::to_string(v[i].num);
    } else if (out[i]->kind == wire::kOutNum) {
      out[i]->num = static_cast<uint64_t>(v[i].num);
    } else {
      packRecord(out[i], v);  // a record of 32-bit fields, in order
    }
    out[i]->written = true;
  }
}

// JSON string escaping as the JSON library prints it; every call is
// journalled, so the line is written directly instead of through a tree.
static void appendJsonString(std::string &out, const std::string &text) {
  out += '"';
  for (unsigned char ch : text) {
    switch (ch) {
      case '"': out += "\\\""; break;
      case '\\': out += "\\\\"; break;
      case '\b': out += "\\b"; break;
      case '\f': out += "\\f"; break;
      case '\n': out += "\\n"; break;
      case '\r': out += "\\r"; break;
      case '\t': out += "\\t"; break;
      default:
        if (ch < 32) {
          char esc[8];
          snprintf(esc, sizeof esc, "\\u%04x", ch);
          out += esc;
        } else {
          out += static_cast<char>(ch);
        }
    }
  }
  out += '"';
}

static std::string journalLine(const Call &c) {
  std::string line = "{\"call\":";
  line.reserve(64 + c.name.size());
  appendJsonString(line, c.name);
  line += ",\"in\":[";
  bool first = true;
  for (const Arg &a : c.args) {
    if (!a.isInput()) continue;
    if (!first) line += ',';
    first = false;
    if (a.kind == wire::kInNum) {
      line += std::to_string(a.num);
    } else if (a.kind == wire::kInString) {
      appendJsonString(line, a.text);
    } else {
      line += "{\"size\":" + std::to_string(a.size) + ",\"text\":";
      appendJsonString(line, a.text);
      line += '}';
    }
  }
  line += "]}";
  return line;
}

// Some minutes of 32 busy clients, and still well inside one control
// reply (64 MiB); the oldest lines go first.
static constexpr size_t kJournalLimit = 500000;

static void record(Sim &s, std::string line) {
  if (s.journal.size() >= kJournalLimit) s.journal.pop_front();
  s.journal.push_back(std::move(line));
}

// A behaviour that wants extra fields in its journal entry (the applied
// script) replaces the last line itself.
static bool takeFault(Sim &s, const std::string &name, int *result) {
  auto f = s.faults.find(name);
  if (f == s.faults.end()) return false;
  *result = f->second.result;
  if (f->second.remaining > 0 && --f->second.remaining == 0) s.faults.erase(f);
  return true;
}

static int applySet(Sim &s, Call &c, const CallRule &r) {
  std::string key = c.keyOf(r.keyInputs);
  if (r.keyInputs > 0 && !s.stored(r.target, key)) return -29;
  Outputs v;
  auto in = c.inputs();
  for (size_t i = r.keyInputs; i < in.size(); ++i)
    v.push_back(in[i]->kind == wire::kInNum ? num(static_cast<int64_t>(in[i]->num)) : text(in[i]->text));
  s.put(r.target, key, std::move(v));
  return 0;
}

int handleCall(Sim &s, Call &c) {
  catchUp(s);
  record(s, journalLine(c));
  int result = 0;
  if (takeFault(s, c.name, &result)) return result;

  const CallRule *r = findRule(c.name);
  if (!r) return -28;
  if (r->rule == Rule::Set) return applySet(s, c, *r);
  if (const Outputs *v = s.stored(c.name, c.key())) {
    writeStored(c, *v);
    return 0;
  }
  if (r->rule == Rule::Custom) return r->custom(s, c);
  return -29;
}

}  // namespace sim
