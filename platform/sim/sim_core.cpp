#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <unordered_map>

#include "sim/sim.h"

namespace sim {

Value num(int64_t n) { return {.isText = false, .num = n, .text = {}}; }

Value text(std::string t) { return {.isText = true, .num = 0, .text = std::move(t)}; }

std::string Call::textOf(const Arg &a) { return a.kind == wire::kInNum ? std::to_string(a.num) : a.text; }

void Call::write(Arg &a, uint64_t v) {
  a.num = v;
  a.written = true;
}

void Call::writeText(Arg &a, const std::string &t) {
  a.text = t;
  a.written = true;
}

std::string Call::keyOf(size_t firstInputs) const {
  std::string k;
  size_t n = 0;
  for (const Arg &a : args) {
    if (!a.isInput() || n == firstInputs) continue;
    if (n++) k += ',';
    k += textOf(a);
  }
  return k;
}

std::string Call::key() const { return keyOf(args.size()); }

// A request that left out a declared argument reads it as zero and drops
// what is written to it, as a client that sent no buffer gets nothing.
Arg &Call::at(size_t place) {
  static thread_local Arg missing;
  if (place == 0 || place > id->arity) {
    fprintf(stderr, "open-sim: %s has no parameter %zu\n", name.c_str(), place);
    abort();
  }
  if (place <= args.size()) return args[place - 1];
  missing = Arg();
  return missing;
}

const Outputs *Sim::overridden(const std::string &call, const std::string &key) const {
  auto c = overrides.find(call);
  if (c == overrides.end()) return nullptr;
  auto k = c->second.find(key);
  if (k == c->second.end()) k = c->second.find("*");
  return k == c->second.end() || !k->second ? nullptr : &*k->second;
}

void Sim::override(const std::string &call, const std::string &key, Outputs v) {
  auto &keys = overrides[call];
  // A "*" value is the call's answer for every input from now on, so the
  // values fixed for single inputs before it go; those fixed after it (by
  // `set` or by a setter) win over it again.
  if (key == "*") keys.clear();
  keys[key] = std::move(v);
}

Port *findPort(Sim &s, uint64_t ifNum) {
  auto p = s.model.ports.find(static_cast<uint32_t>(ifNum));
  return p == s.model.ports.end() || p->first != ifNum ? nullptr : &p->second;
}

const Port *findPort(const Sim &s, uint64_t ifNum) { return findPort(const_cast<Sim &>(s), ifNum); }

bool linkUp(const Sim &s, uint32_t ifNum) {
  if (const Port *p = findPort(s, ifNum)) return isUp(*p);
  for (const auto &[n, p] : s.model.ports)
    if (p.lagMember == ifNum && isUp(p)) return true;
  return false;
}

const CallRule *findRule(const std::string &name) {
  static const auto *index = [] {
    auto *m = new std::unordered_map<std::string, const CallRule *>();
    for (size_t g = 0; g < kRuleGroupCount; ++g)
      for (size_t i = 0; i < kRuleGroups[g].count; ++i)
        (*m)[kRuleGroups[g].rules[i].call->name] = &kRuleGroups[g].rules[i];
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
  std::vector<Arg *> out;
  for (Arg &a : c.args)
    if (!a.isInput()) out.push_back(&a);
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

// A setting made through the call wins over an earlier override of what
// its getter answers for the same inputs.
static void giveWayToSetting(Sim &s, const Call &c, const CallRule &r) {
  auto fixed = s.overrides.find(r.getter->name);
  if (fixed == s.overrides.end()) return;
  size_t inputs = 0;
  for (const Arg &a : c.args) inputs += a.isInput();
  fixed->second[c.keyOf(inputs ? inputs - 1 : 0)] = std::nullopt;
}

int handleCall(Sim &s, Call &c) {
  catchUp(s);
  record(s, journalLine(c));
  int result = 0;
  if (takeFault(s, c.name, &result)) return result;

  const CallRule *r = findRule(c.name);
  if (!r) return OPEN_E_UNAVAIL;
  c.id = r->call;
  if (const Outputs *v = s.overridden(c.name, c.key())) {
    writeStored(c, *v);
    return OPEN_E_NONE;
  }
  result = r->answer(s, c);
  if (result == OPEN_E_NONE && r->getter) giveWayToSetting(s, c, *r);
  return result;
}

}  // namespace sim
