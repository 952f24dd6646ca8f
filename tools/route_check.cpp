#include "tools/route_check.h"

#include <string.h>

#include <string>
#include <vector>

#include "api/fields.h"
#include "frame/route_table.h"
#include "platform/switch_facts.h"

namespace {

struct Checker {
  std::span<const RouteRow> rows;
  FILE *out;
  size_t findings = 0;

  void report(size_t row, const char *what, const std::string &detail) {
    const RouteRow &r = rows[row];
    fprintf(out, "row %zu %s %s/%s: %s%s\n", row + 1, httpMethodName(r.method), r.path, r.name, what, detail.c_str());
    ++findings;
  }

  void field(size_t row, const doc::Field *f, bool number) {
    if (!f) return;
    std::string name = std::string("\"") + f->name + "\"";
    if (!f->text || !*f->text) report(row, "field ", name + " says nothing of what it holds");
    if (number && !f->unit) report(row, "field ", name + " is a number without a unit");
    if (!f->range) return;
    bool held = false;
    for (const facts::Range *r : facts::kRanges) held = held || r == f->range;
    if (!held)
      report(row, "field ",
             name + " states the range " + std::to_string(f->range->least) + ".." + std::to_string(f->range->most) +
                 ", which is not one of the switch's (platform/switch_facts.h)");
  }

  // A hand-written handler's field is a number unless texts are given for it.
  static bool isNumber(const doc::Field &f) {
    return f.type == doc::Type::Number && !f.texts && !f.words && !f.accepts && !f.choices;
  }

  // A row's argument is a number where it is scanned, looked up, read from
  // the body or answered without a text mapping.
  static bool isNumber(const kit::Arg &a) {
    using kit::Kind;
    return a.kind == Kind::Body || ((a.kind == Kind::Scan || a.kind == Kind::Lookup || a.kind == Kind::Out) && !a.text);
  }

  void fields(size_t row) {
    const RouteRow &r = rows[row];
    if (r.hand) {
      for (doc::Fields list : {r.hand->query, r.hand->body, r.hand->reply})
        for (const doc::Field &f : list) field(row, &f, isNumber(f));
      field(row, r.hand->listKey, false);
      return;
    }
    for (size_t i = 0; i < r.doc->argCount; ++i) {
      field(row, r.doc->args[i].field, isNumber(r.doc->args[i]));
      field(row, r.doc->args[i].fallback, false);
    }
  }

  static bool sameKey(const RouteRow &a, const RouteRow &b) {
    return a.method == b.method && strcmp(a.path, b.path) == 0 && strcmp(a.name, b.name) == 0;
  }

  // A row is marked shadowed exactly when a later row of its key serves in its place.
  void shadow(size_t row) {
    size_t later = 0;
    for (size_t j = row + 1; j < rows.size() && !later; ++j)
      if (sameKey(rows[row], rows[j])) later = j + 1;
    if (later && !rows[row].shadowed)
      report(row, "is shadowed by row ", std::to_string(later) + " but not marked so");
    if (!later && rows[row].shadowed) report(row, "is marked shadowed, but no later row has its key", "");
  }

  static const char *summaryOf(const RouteRow &r) { return r.hand ? r.hand->summary : r.summary; }

  // Shadowed rows never serve, so they may share the summary of the row that takes over.
  void summary(size_t row) {
    const char *own = summaryOf(rows[row]);
    if (!own || !*own) return report(row, "has no summary", "");
    if (rows[row].shadowed) return;
    for (size_t j = 0; j < row; ++j)
      if (!rows[j].shadowed && strcmp(own, summaryOf(rows[j])) == 0)
        report(row, "has the summary of row ", std::to_string(j + 1) + ": \"" + own + "\"");
  }
};

}  // namespace

size_t checkRoutes(std::span<const RouteRow> rows, FILE *out) {
  Checker c{rows, out};
  for (size_t i = 0; i < rows.size(); ++i) {
    c.shadow(i);
    c.summary(i);
    c.fields(i);
  }
  return c.findings;
}
