// The schema of each value a route reads or answers, built whole: its type,
// its texts and their names, its unit and range, and what a client reads of
// it (the field's text first, then what the program's handling adds); and
// the models of the values a read answers.
#include <stdio.h>
#include <string.h>

#include "tools/openapi_parts.h"

namespace openapi {

namespace {

constexpr char kMacPattern[] = "^[0-9A-Fa-f]{2}(:[0-9A-Fa-f]{2}){5}$";
// A reply's MAC text is empty where the switch has none to give (no violation yet).
constexpr char kReplyMacPattern[] = "^([0-9A-Fa-f]{2}(:[0-9A-Fa-f]{2}){5})?$";

std::string joined(const std::string &a, const std::string &b) { return a.empty() ? b : b.empty() ? a : a + " " + b; }

// A number, with the unit and range of its field.
cJSON *numberSchema(const doc::Field &f, const char *type = "integer") {
  cJSON *s = object();
  addText(s, "type", type);
  cJSON_AddNumberToObject(s, "minimum", f.range ? f.range->least : 0);
  cJSON_AddNumberToObject(s, "maximum", f.range ? f.range->most : 4294967295.0);
  if (f.unit) addText(s, "x-unit", f.unit->name);
  return s;
}

// A text value set: {"type": "string", "enum": [...]}, its values named
// after `field`, with null where it can be null.
cJSON *enumSchema(cJSON *values, bool nullable, const char *field) {
  cJSON *s = object();
  addText(s, "type", "string");
  add(s, "enum", values);
  add(s, "x-enum-varnames", valueNames(values, field));
  if (!nullable) return s;
  // A choice rather than a list of types: some generators drop the null of
  // {"type": ["string", "null"]}, every one keeps it here.
  cJSON *either = object();
  cJSON *choices = add(either, "anyOf", cJSON_CreateArray());
  cJSON_AddItemToArray(choices, s);
  cJSON *none = object();
  addText(none, "type", "null");
  cJSON_AddItemToArray(choices, none);
  return either;
}

bool listed(const cJSON *values, const char *text) {
  const cJSON *v = nullptr;
  cJSON_ArrayForEach(v, values) if (cJSON_IsString(v) && strcmp(v->valuestring, text) == 0) return true;
  return false;
}

void addUnique(cJSON *values, const char *text) {
  if (!listed(values, text)) cJSON_AddItemToArray(values, cJSON_CreateString(text));
}

// Every text a mapping gives: its rows', then the one of every other value.
// A null text stands for JSON null.
cJSON *textsOf(const TextMap &map, const char *field) {
  cJSON *values = cJSON_CreateArray();
  bool nullable = false;
  for (const Named &row : map.rows) {
    if (row.text) addUnique(values, row.text);
    else nullable = true;
  }
  addUnique(values, map.otherwise);
  return enumSchema(values, nullable, field);
}

cJSON *choicesOf(const char *(*choice)(size_t), const char *field) {
  cJSON *values = cJSON_CreateArray();
  for (size_t i = 0; const char *t = choice(i); ++i) addUnique(values, t);
  return enumSchema(values, false, field);
}

cJSON *wordsOf(const char *words, const char *field) {
  cJSON *values = cJSON_CreateArray();
  for (const char *w = words; *w;) {
    size_t n = strcspn(w, "|");
    addUnique(values, std::string(w, n).c_str());
    w += n + (w[n] == '|');
  }
  return enumSchema(values, false, field);
}

// What an unknown body text becomes, where a mapping turns texts into values.
std::string unknownText(cJSON *schema, const ValueMap &map) {
  uint32_t unknown = map.value("");
  cJSON_AddNumberToObject(schema, "x-unknown-text-value", unknown);
  return "A text not listed is sent to the switch as " + std::to_string(unknown) + ".";
}

bool isNumber(const cJSON *schema) { return isType(schema, "integer") || isType(schema, "number"); }

// What each value means, a number's by its number and a text's by itself:
// ' Values: "phy" physical port, "cpu" CPU port.'
std::string codesText(const doc::Field &f, bool number) {
  std::string text;
  for (const facts::Code &c : f.codes) {
    text += &c == f.codes.data() ? " Values: " : ", ";
    text += number ? std::to_string(c.value) : std::string("\"") + c.api + "\"";
    if (c.meaning) text += std::string(" ") + c.meaning;
  }
  return f.codes.empty() ? text : text + ".";
}

// The field's own text, with what each bit or value means and its unit.
std::string fieldText(const doc::Field &f, bool number) {
  std::string text = f.text ? f.text : "";
  for (const facts::CapabilityBit &b : f.bits) {
    char bit[16];
    snprintf(bit, sizeof bit, "0x%04X", b.bit);
    text += std::string(&b == f.bits.data() ? " Bits: " : ", ") + bit + " " + b.meaning;
  }
  if (!f.bits.empty()) text += "; no other bit is set.";
  text += codesText(f, number);
  if (number && f.unit && f.unit->measures) text += std::string(" Unit: ") + f.unit->name + ".";
  return text;
}

// A schema and what a client reads of it, apart until the caller says
// where the text goes (a parameter's, or the schema's own description).
struct Value {
  cJSON *schema;
  std::string note;  // what the program's handling adds
};

Value fieldValue(const doc::Field &f) {
  if (f.texts) return {textsOf(*f.texts, f.name), ""};
  if (f.words) return {wordsOf(f.words, f.name), ""};
  if (f.accepts) {
    cJSON *s = choicesOf(f.accepts->accepted, f.name);
    return {s, unknownText(s, *f.accepts)};
  }
  if (f.choices) return {choicesOf(f.choices, f.name), ""};
  if (f.type == doc::Type::Number) return {numberSchema(f), ""};
  return {textSchema(f.type == doc::Type::Mac), ""};
}

const char *opposite(const char *word) {
  for (const TextMap *onOff : {&kEnable, &kTrue})
    if (strcmp(word, onOff->text(1)) == 0) return onOff->text(0);
  return nullptr;
}

// `f` is the field the value is read under: the argument's own, or its fallback's.
Value argValue(const kit::Arg &a, const doc::Field &f) {
  using kit::Kind;
  switch (a.kind) {
    case Kind::Scan:
    case Kind::Lookup:
    case Kind::Out:
      return {a.text ? textsOf(*a.text, f.name) : numberSchema(f), ""};
    case Kind::Body:
      return {numberSchema(f, "number"),
              "Truncated toward zero and held to 0..4294967295; anything but a number reads as 0."};
    case Kind::BodyWord: {
      const char *off = opposite(a.word.s);
      cJSON *s = off ? enumSchema(textList({a.word.s, off}), false, f.name) : textSchema(false);
      return {s, std::string("\"") + a.word.s + "\" turns it on; any other text, or none, turns it off."};
    }
    case Kind::BodyMapped: {
      cJSON *s = choicesOf(a.value->accepted, f.name);
      return {s, unknownText(s, *a.value)};
    }
    case Kind::BodyText:
      return {textSchema(false), "Longer texts are cut to " + std::to_string(a.longest) + " bytes."};
    case Kind::OutText: {
      cJSON *t = textSchema(false);
      if (a.mac) addText(t, "pattern", kReplyMacPattern);
      return {t, ""};
    }
    case Kind::LookupText:
    case Kind::BodyBuffer:
    case Kind::QueryBuffer:
      return {textSchema(a.mac), ""};
  }
  return {object(), ""};
}

// A body key or a reply key: the text goes into its schema.
cJSON *described(const doc::Field &f, Value v, const std::string &more = "") {
  describe(v.schema, joined(joined(fieldText(f, isNumber(v.schema)), v.note), more));
  return v.schema;
}

std::string queryNote(kit::Kind kind) {
  switch (kind) {
    case kit::Kind::Scan: return "Unsigned decimal, read where a query field starts; absent reads as 0.";
    case kit::Kind::Lookup:
      return "Unsigned decimal, read from the first query field whose text contains the name; absent reads as 0.";
    case kit::Kind::LookupText: return "Read from the first query field whose text contains the name.";
    case kit::Kind::QueryBuffer: return "Percent-decoded.";
    default: return "";
  }
}

// A query parameter: the text goes into the parameter's description.
Input parameter(const doc::Field &f, Value v, const std::string &how, bool required) {
  return {f.name, v.schema, joined(joined(fieldText(f, isNumber(v.schema)), v.note), how), false, required};
}

std::vector<Input> inputsOf(const RouteDoc &d) {
  std::vector<Input> in;
  for (size_t i = 0; i < d.argCount; ++i) {
    const kit::Arg &a = d.args[i];
    if (kit::isOutput(a.kind)) continue;
    if (!kit::readsBody(a.kind)) {
      in.push_back(parameter(*a.field, argValue(a, *a.field), queryNote(a.kind), true));
      continue;
    }
    in.push_back({a.field->name, described(*a.field, argValue(a, *a.field)), "", true, !a.fallback});
    if (a.fallback)
      in.push_back({a.fallback->name,
                    described(*a.fallback, argValue(a, *a.fallback),
                              std::string("Read when \"") + a.field->name + "\" is absent."),
                    "", true, false});
  }
  return in;
}

std::vector<Input> inputsOf(const doc::HandDoc &h) {
  std::vector<Input> in;
  for (const doc::Field &f : h.query) in.push_back(parameter(f, fieldValue(f), "", !f.optional));
  for (const doc::Field &f : h.body) in.push_back({f.name, described(f, fieldValue(f)), "", true, true});
  return in;
}

cJSON *model(cJSON *schemas, const std::string &name, cJSON *schema) {
  add(schemas, name.c_str(), schema);
  return modelRef(name);
}

cJSON *objectModel(cJSON *schemas, const std::string &name, doc::Fields fields) {
  cJSON *props = object(), *req = cJSON_CreateArray();
  for (const doc::Field &f : fields) addProperty(props, req, f.name, described(f, fieldValue(f)));
  return model(schemas, name, objectOf(props, req));
}

cJSON *rowModel(cJSON *schemas, const std::string &name, const RouteDoc &d) {
  cJSON *props = object(), *req = cJSON_CreateArray();
  for (size_t i = 0; i < d.argCount; ++i) {
    const kit::Arg &a = d.args[i];
    if (kit::isOutput(a.kind)) addProperty(props, req, a.field->name, described(*a.field, argValue(a, *a.field)));
  }
  return model(schemas, name, objectOf(props, req));
}

cJSON *listOf(cJSON *item) {
  cJSON *list = object();
  addText(list, "type", "array");
  add(list, "items", item);
  return list;
}

cJSON *handModel(cJSON *schemas, const std::string &name, const doc::HandDoc &h) {
  if (h.layout == doc::Layout::Object) return objectModel(schemas, name, h.reply);
  if (h.layout == doc::Layout::List) {
    std::string entry = name + pascal(h.listKey->name) + "Entry";
    cJSON *list = described(*h.listKey, {listOf(objectModel(schemas, entry, h.reply)), ""});
    cJSON *props = object(), *req = cJSON_CreateArray();
    addProperty(props, req, h.listKey->name, list);
    return model(schemas, name, objectOf(props, req));
  }
  cJSON *either = object();
  cJSON *choices = add(either, "oneOf", cJSON_CreateArray());
  cJSON_AddItemToArray(choices, objectModel(schemas, name + "Port", h.reply));
  cJSON_AddItemToArray(choices, model(schemas, name + "List", listOf(modelRef(name + "Port"))));
  describe(either, "One port's object when ifNum names a port; every physical port's, in a list, otherwise. "
                   "Array.isArray tells the list from one port's object.");
  return model(schemas, name, either);
}

}  // namespace

cJSON *modelRef(const std::string &name) {
  cJSON *o = object();
  addText(o, "$ref", (kSchemas + name).c_str());
  return o;
}

cJSON *textSchema(bool mac) {
  cJSON *s = object();
  addText(s, "type", "string");
  if (mac) addText(s, "pattern", kMacPattern);
  return s;
}

cJSON *objectOf(cJSON *properties, cJSON *required) {
  cJSON *s = object();
  addText(s, "type", "object");
  add(s, "properties", properties);
  add(s, "required", required);
  cJSON_AddFalseToObject(s, "additionalProperties");
  return s;
}

void addProperty(cJSON *properties, cJSON *required, const char *name, cJSON *schema) {
  add(properties, name, schema);
  cJSON_AddItemToArray(required, cJSON_CreateString(name));
}

std::vector<Input> inputsOf(const RouteRow &r) { return r.hand ? inputsOf(*r.hand) : inputsOf(*r.doc); }

cJSON *valuesModel(cJSON *schemas, const RouteRow &r, const std::string &stem) {
  return r.hand ? handModel(schemas, stem, *r.hand) : rowModel(schemas, stem, *r.doc);
}

}  // namespace openapi
