#include "tools/openapi.h"

#include <ctype.h>
#include <stdio.h>
#include <string.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "api/fields.h"
#include "api/green/green_history.h"
#include "api/if/ddisable_routes.h"
#include "api/if/name_lookup.h"
#include "api/routes.h"
#include "frame/envelope.h"
#include "frame/session.h"

namespace {

constexpr char kMacPattern[] = "^[0-9A-Fa-f]{2}(:[0-9A-Fa-f]{2}){5}$";
// A reply's MAC text is empty where the switch has none to give (no violation yet).
constexpr char kReplyMacPattern[] = "^([0-9A-Fa-f]{2}(:[0-9A-Fa-f]{2}){5})?$";
constexpr char kClientNotes[] =
#include "client_notes.inc"
    ;
constexpr char kNotesPointer[] =
    " Failures come as HTTP 200 with the code in the envelope; the API description's first page tells what "
    "else a client meets.";
// Every code a reply can carry; the first is success.
constexpr uint32_t kCodes[] = {CODE_SUCCESS,   CODE_GENERAL_FAILED, CODE_INVALID_ARGUMENT,
                               CODE_OBJECT_EXIST, CODE_NOT_FOUND,   CODE_UNSUPPORTED};

struct Tag {
  const char *dir;  // the routes' directory
  const char *name;
  const char *description;  // on the first row of a name
};
const Tag kTags[] = {
    {kGreen, "green Ethernet",
     "Energy detect and short reach per port: the port sleeps while no link partner is seen, and uses less "
     "power on short cables."},
    {kEee, "EEE",
     "Energy-efficient Ethernet (low power idle) per port and for the switch: modes, timers, statistics and "
     "the sampled history of low-power time."},
    {kPowerEstimates, "power estimates",
     "The switch's estimates of the power each port and the whole switch use now, and what they saved."},
    {kPowerHistory, "power-saving history",
     "Samples of the power saved, taken at the configured interval, walked sample by sample."},
    {kIf, "interfaces",
     "The ports: enumeration and identity, link and operational state, speed, duplex, frame sizes, "
     "descriptions, administrative state, port expansion and FEC, D-Disable auto-recovery, and their "
     "traffic counters."},
    {kIfCounters, "interfaces", nullptr},
    {kIfAllCounters, "interfaces", nullptr},
    {kPml, "MAC locking",
     "Port MAC locking: which source MAC addresses a port accepts, its limits, the addresses it learned or "
     "was given, the last violation, and stream filters."},
    {kRoot, "cable", "Cable diagnostics of a copper port: the state and length of each pair."},
    {kApp, "interface application",
     "Time ranges of a port and its colour LED: mode, colour and brightness."},
};

struct Example {
  const doc::Field &field;
  const char *text;  // a text example; null for a number
  double number;
};
// What "Try it out" and the reply check send: a port, VLAN and MAC address
// the default simulated switch knows.
const Example kExamples[] = {
    {fields::kIfNum, nullptr, 3},
    {fields::kIntIfNum, nullptr, 3},
    {fields::kInterface, nullptr, 3},
    {fields::kIntf, nullptr, 3},
    {fields::kPrevIfNum, nullptr, 2},
    {fields::kVlanId, nullptr, 10},
    {fields::kUnit, nullptr, 1},
    {fields::kRemIndex, nullptr, 1},
    {fields::kTimestamp, nullptr, 1},
    {fields::kInterfaceType, nullptr, 0},
    {fields::kStreamID, nullptr, 5},
    {history_doc::kSampleNo, nullptr, 1},
    {history_doc::kCurSample, nullptr, 1},
    {recovery_doc::kIntervalField, nullptr, 300},
    {fields::kMacAddr, "00:1B:21:3A:4F:92", 0},
    {name_doc::kName, "0/3", 0},
    {fields::kTimeRange, "work", 0},
    {fields::kIntfName, "0/3", 0},
    {fields::kMtuSize, nullptr, 1500},
    {fields::kMaxFrameSize, nullptr, facts::kMaxFrameSize.least},
};

cJSON *object() { return cJSON_CreateObject(); }
cJSON *add(cJSON *to, const char *key, cJSON *item) {
  cJSON_AddItemToObject(to, key, item);
  return item;
}
cJSON *addObject(cJSON *to, const char *key) { return add(to, key, object()); }
void addText(cJSON *to, const char *key, const char *text) { cJSON_AddStringToObject(to, key, text); }
cJSON *ref(const char *target) {
  cJSON *o = object();
  addText(o, "$ref", target);
  return o;
}
cJSON *textList(std::initializer_list<const char *> texts) {
  cJSON *a = cJSON_CreateArray();
  for (const char *t : texts) cJSON_AddItemToArray(a, cJSON_CreateString(t));
  return a;
}

// "getIfLinkState" -> "IfLinkState": the stem of an operation's model names,
// which generated clients turn into type names.
std::string modelStem(const std::string &operationId) {
  size_t i = 0;
  while (i < operationId.size() && islower(static_cast<unsigned char>(operationId[i]))) ++i;
  return operationId.substr(i);
}

void addTitle(cJSON *schema, const std::string &title) {
  if (!cJSON_GetObjectItem(schema, "title")) addText(schema, "title", title.c_str());
}

// "linkState", "admin-state" -> "LinkState", "AdminState".
std::string pascal(const char *key) {
  std::string out;
  bool upper = true;
  for (const char *c = key; *c; ++c) {
    if (!isalnum(static_cast<unsigned char>(*c))) {
      upper = true;
      continue;
    }
    out += upper ? static_cast<char>(toupper(static_cast<unsigned char>(*c))) : *c;
    upper = false;
  }
  return out;
}

bool isType(const cJSON *schema, const char *type) {
  const cJSON *t = cJSON_GetObjectItem(schema, "type");
  return cJSON_IsString(t) && strcmp(t->valuestring, type) == 0;
}

// Names every object and choice below `schema` after its place in it, so
// that a generator's model names read like the switch's words rather than
// like their positions.
void titleObjects(cJSON *schema, const std::string &name) {
  if (!schema || cJSON_GetObjectItem(schema, "$ref")) return;
  cJSON *choices = cJSON_GetObjectItem(schema, "oneOf");
  if (isType(schema, "object") || choices) addTitle(schema, name);
  cJSON *props = cJSON_GetObjectItem(schema, "properties");
  for (cJSON *p = props ? props->child : nullptr; p; p = p->next) titleObjects(p, name + pascal(p->string));
  titleObjects(cJSON_GetObjectItem(schema, "items"), name + "Entry");
  for (cJSON *c = choices ? choices->child : nullptr; c; c = c->next)
    titleObjects(c, name + (isType(c, "array") ? "List" : "One"));
}

cJSON *numberSchema() {
  cJSON *s = object();
  addText(s, "type", "integer");
  cJSON_AddNumberToObject(s, "minimum", 0);
  cJSON_AddNumberToObject(s, "maximum", 4294967295.0);
  return s;
}

cJSON *textSchema(bool mac) {
  cJSON *s = object();
  addText(s, "type", "string");
  if (mac) addText(s, "pattern", kMacPattern);
  return s;
}

bool listed(const cJSON *values, const char *text) {
  const cJSON *v = nullptr;
  cJSON_ArrayForEach(v, values) if (cJSON_IsString(v) && strcmp(v->valuestring, text) == 0) return true;
  return false;
}

// A text value set: {"type": "string", "enum": [...]}, with null where it
// can be null.
cJSON *enumSchema(cJSON *values, bool nullable) {
  cJSON *s = object();
  addText(s, "type", "string");
  add(s, "enum", values);
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

void addUnique(cJSON *values, const char *text) {
  if (!listed(values, text)) cJSON_AddItemToArray(values, cJSON_CreateString(text));
}

// Every text a mapping gives: its rows', then the one of every other value.
// A null text stands for JSON null.
cJSON *textsOf(const TextMap &map) {
  cJSON *values = cJSON_CreateArray();
  bool nullable = false;
  for (const Named &row : map.rows) {
    if (row.text) addUnique(values, row.text);
    else nullable = true;
  }
  addUnique(values, map.otherwise);
  return enumSchema(values, nullable);
}

cJSON *choicesOf(const char *(*choice)(size_t)) {
  cJSON *values = cJSON_CreateArray();
  for (size_t i = 0; const char *t = choice(i); ++i) addUnique(values, t);
  return enumSchema(values, false);
}

cJSON *wordsOf(const char *words) {
  cJSON *values = cJSON_CreateArray();
  for (const char *w = words; *w;) {
    size_t n = strcspn(w, "|");
    addUnique(values, std::string(w, n).c_str());
    w += n + (w[n] == '|');
  }
  return enumSchema(values, false);
}

// Adds to the description, which a note may already have begun.
void describe(cJSON *schema, const std::string &text) {
  if (text.empty()) return;
  const cJSON *old = cJSON_GetObjectItem(schema, "description");
  if (!old) return addText(schema, "description", text.c_str());
  std::string both = std::string(old->valuestring) + " " + text;
  cJSON_ReplaceItemInObject(schema, "description", cJSON_CreateString(both.c_str()));
}

// What an unknown body text becomes, where a mapping turns texts into values.
void noteUnknownText(cJSON *schema, const ValueMap &map) {
  uint32_t unknown = map.value("");
  cJSON_AddNumberToObject(schema, "x-unknown-text-value", unknown);
  describe(schema, "A text not listed is sent to the switch as " + std::to_string(unknown) + ".");
}

cJSON *fieldSchema(const doc::Field &f) {
  if (f.texts) return textsOf(*f.texts);
  if (f.words) return wordsOf(f.words);
  if (f.accepts) {
    cJSON *s = choicesOf(f.accepts->accepted);
    noteUnknownText(s, *f.accepts);
    return s;
  }
  if (f.choices) return choicesOf(f.choices);
  return f.type == doc::Type::Number ? numberSchema() : textSchema(f.type == doc::Type::Mac);
}

const char *opposite(const char *word) {
  for (const TextMap *onOff : {&kEnable, &kTrue})
    if (strcmp(word, onOff->text(1)) == 0) return onOff->text(0);
  return nullptr;
}

cJSON *argSchema(const kit::Arg &a) {
  using kit::Kind;
  switch (a.kind) {
    case Kind::Scan:
    case Kind::Lookup:
    case Kind::Out:
      return a.text ? textsOf(*a.text) : numberSchema();
    case Kind::Body: {
      cJSON *s = object();
      addText(s, "type", "number");
      describe(s, "Truncated toward zero and held to 0..4294967295; anything but a number reads as 0.");
      return s;
    }
    case Kind::BodyWord: {
      const char *off = opposite(a.word.s);
      cJSON *s = off ? enumSchema(textList({a.word.s, off}), false) : textSchema(false);
      describe(s, std::string("\"") + a.word.s + "\" turns it on; any other text, or none, turns it off.");
      return s;
    }
    case Kind::BodyMapped: {
      cJSON *s = choicesOf(a.value->accepted);
      noteUnknownText(s, *a.value);
      return s;
    }
    case Kind::BodyText: {
      cJSON *s = textSchema(false);
      describe(s, "Longer texts are cut to " + std::to_string(a.longest) + " bytes.");
      return s;
    }
    case Kind::OutText: {
      cJSON *t = textSchema(false);
      if (a.mac) addText(t, "pattern", kReplyMacPattern);
      return t;
    }
    case Kind::LookupText:
    case Kind::BodyBuffer:
    case Kind::QueryBuffer:
      return textSchema(a.mac);
  }
  return object();
}

void addExample(cJSON *to, const char *key, const char *name, cJSON *schema) {
  const cJSON *values = cJSON_GetObjectItem(schema, "enum");
  if (values && cJSON_IsString(values->child)) {
    addText(to, key, values->child->valuestring);
    return;
  }
  for (const Example &e : kExamples) {
    if (strcmp(e.field.name, name) != 0) continue;
    if (e.text) addText(to, key, e.text);
    else cJSON_AddNumberToObject(to, key, e.number);
    return;
  }
  if (cJSON_IsString(cJSON_GetObjectItem(schema, "type")) &&
      strcmp(cJSON_GetObjectItem(schema, "type")->valuestring, "string") == 0)
    addText(to, key, "");
  else
    cJSON_AddNumberToObject(to, key, 1);
}

// One input of an operation, gathered before it is written out.
struct Input {
  const char *name;
  cJSON *schema;
  bool inBody;
  bool required;
  std::string note;
};

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

std::vector<Input> inputsOf(const RouteDoc &d) {
  std::vector<Input> in;
  for (size_t i = 0; i < d.argCount; ++i) {
    const kit::Arg &a = d.args[i];
    if (kit::isOutput(a.kind)) continue;
    bool body = kit::readsBody(a.kind);
    in.push_back({a.field->name, argSchema(a), body, !a.fallback, body ? "" : queryNote(a.kind)});
    if (a.fallback) {
      in.push_back({a.fallback->name, argSchema(a), true, false,
                    std::string("Read when \"") + a.field->name + "\" is absent."});
    }
  }
  return in;
}

std::vector<Input> inputsOf(const doc::HandDoc &h) {
  std::vector<Input> in;
  for (const doc::Field &f : h.query) in.push_back({f.name, fieldSchema(f), false, !f.optional, ""});
  for (const doc::Field &f : h.body) in.push_back({f.name, fieldSchema(f), true, true, ""});
  return in;
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

cJSON *replyData(const RouteDoc &d) {
  cJSON *props = object(), *req = cJSON_CreateArray();
  for (size_t i = 0; i < d.argCount; ++i)
    if (kit::isOutput(d.args[i].kind)) addProperty(props, req, d.args[i].field->name, argSchema(d.args[i]));
  return objectOf(props, req);
}

cJSON *replyData(const doc::HandDoc &h) {
  cJSON *props = object(), *req = cJSON_CreateArray();
  for (const doc::Field &f : h.reply) addProperty(props, req, f.name, fieldSchema(f));
  cJSON *one = objectOf(props, req);
  if (h.layout == doc::Layout::Object) return one;
  cJSON *list = object();
  addText(list, "type", "array");
  if (h.layout == doc::Layout::List) {
    add(list, "items", one);
    cJSON *p = object(), *r = cJSON_CreateArray();
    addProperty(p, r, h.listKey->name, list);
    return objectOf(p, r);
  }
  add(list, "items", cJSON_Duplicate(one, true));
  cJSON *either = object();
  cJSON *choices = add(either, "oneOf", cJSON_CreateArray());
  cJSON_AddItemToArray(choices, one);
  cJSON_AddItemToArray(choices, list);
  describe(either, "One port's object when ifNum names a port; every physical port's, in a list, otherwise.");
  return either;
}

constexpr char kSchemas[] = "#/components/schemas/";
constexpr char kRefreshRef[] = "#/components/parameters/Refresh";
// The reply of every write, and of every read that failed.
constexpr char kWriteReply[] = "WriteReply";
constexpr char kFailureReply[] = "FailureReply";

cJSON *modelRef(const std::string &name) { return ref((kSchemas + name).c_str()); }

cJSON *envelopeOf(const char *group, cJSON *data, cJSON *resp) {
  cJSON *props = object(), *req = cJSON_CreateArray();
  if (group) addProperty(props, req, group, data);
  addProperty(props, req, "resp", resp);
  return objectOf(props, req);
}

// Puts `schema` among the components as `name` and answers a reference to
// it: generated clients name their types after the components, so a
// route's types carry the route's name rather than their place in a reply.
cJSON *model(cJSON *schemas, const std::string &name, cJSON *schema) {
  cJSON_DeleteItemFromObject(schema, "title");  // the name says it
  add(schemas, name.c_str(), schema);
  return modelRef(name);
}

bool isChoice(const cJSON *schema) { return cJSON_GetObjectItem(schema, "oneOf") != nullptr; }
bool isNamed(const cJSON *schema) { return isType(schema, "object") || isChoice(schema); }

cJSON *asModel(cJSON *schemas, cJSON *schema, const std::string &name);

// A list's objects as one model; a property's object or list of objects too.
void modelsInside(cJSON *schemas, cJSON *schema, const std::string &name) {
  cJSON *items = cJSON_GetObjectItem(schema, "items");
  if (items && isNamed(items))
    add(schema, "items", asModel(schemas, cJSON_DetachItemFromObject(schema, "items"), name + "Entry"));
  cJSON *props = cJSON_GetObjectItem(schema, "properties");
  for (cJSON *p = props ? props->child : nullptr; p; p = p->next) {
    std::string inner = name + pascal(p->string);
    if (isNamed(p)) {
      cJSON *r = asModel(schemas, cJSON_Duplicate(p, true), inner);
      cJSON_ReplaceItemViaPointer(props, p, r);
      p = r;
    } else {
      modelsInside(schemas, p, inner);
    }
  }
}

// One port's object or every port's list: the list's entries are the
// port's model, and the choice says how a client tells them apart.
void modelChoices(cJSON *schemas, cJSON *schema, const std::string &name) {
  cJSON *choices = cJSON_GetObjectItem(schema, "oneOf");
  cJSON *one = nullptr;
  for (cJSON *c = choices->child; c; c = c->next)
    if (!one && !isType(c, "array")) one = cJSON_Duplicate(c, true);
  std::string oneName = name + "Port";
  for (cJSON *c = choices->child; c;) {
    cJSON *next = c->next;
    bool list = isType(c, "array");
    if (list && one && cJSON_Compare(cJSON_GetObjectItem(c, "items"), one, true))
      cJSON_ReplaceItemInObject(c, "items", modelRef(oneName));
    cJSON *r = asModel(schemas, cJSON_Duplicate(c, true), list ? name + "List" : oneName);
    cJSON_ReplaceItemViaPointer(choices, c, r);
    c = next;
  }
  if (one) describe(schema, "Array.isArray tells the list from one port's object.");
  cJSON_Delete(one);
}

cJSON *asModel(cJSON *schemas, cJSON *schema, const std::string &name) {
  if (isChoice(schema)) modelChoices(schemas, schema, name);
  else modelsInside(schemas, schema, name);
  return model(schemas, name, schema);
}

// The reply body of an operation in its shape, as a reference to its model:
// "IfLinkStateReply" is "IfLinkStateSuccess" (its values "IfLinkState"
// under the group key) or "FailureReply".
cJSON *replyModel(cJSON *schemas, doc::Shape shape, const char *group, cJSON *data, uint32_t fixedCode,
                  const std::string &operationId) {
  if (shape == doc::Shape::Set || shape == doc::Shape::Fixed) cJSON_Delete(data);
  if (shape == doc::Shape::Set) return modelRef(kWriteReply);
  if (shape == doc::Shape::Fixed) {
    std::string name = pascal(errorMessageGet(static_cast<int32_t>(fixedCode))) + "Reply";
    if (!cJSON_GetObjectItem(schemas, name.c_str()))
      add(schemas, name.c_str(), envelopeOf(nullptr, nullptr, modelRef("Resp" + std::to_string(fixedCode))));
    return modelRef(name);
  }
  std::string stem = modelStem(operationId);
  // Two reads of one path would share a stem; the method then tells them apart.
  if (cJSON_GetObjectItem(schemas, (stem + "Reply").c_str())) stem = pascal(operationId.c_str());
  cJSON *success = envelopeOf(group, asModel(schemas, data, stem), modelRef("Resp0"));
  cJSON *reply = object();
  cJSON *choices = add(reply, "oneOf", cJSON_CreateArray());
  cJSON_AddItemToArray(choices, model(schemas, stem + "Success", success));
  cJSON_AddItemToArray(choices, modelRef(kFailureReply));
  describe(reply, std::string("The values under \"") + group + "\" on success, the failure's code alone otherwise: `\"" +
                      group + "\" in reply` tells them apart.");
  return model(schemas, stem + "Reply", reply);
}

const char *tagOf(const RouteRow &r) {
  for (const Tag &t : kTags)
    if (strcmp(t.dir, r.path) == 0) return t.name;
  return "interfaces";
}

// get + /if/link-state -> getIfLinkState
std::string operationId(const RouteRow &r) {
  std::string id;
  for (const char *m = httpMethodName(r.method); *m; ++m) id += static_cast<char>(tolower(*m));
  std::string words = std::string(r.path + strlen(kRoot)) + "/" + r.name;
  bool upper = true;
  for (char c : words) {
    if (c == '/' || c == '-' || c == '_') {
      upper = true;
    } else {
      id += upper ? static_cast<char>(toupper(c)) : c;
      upper = false;
    }
  }
  return id;
}

// The keys an operation reads and answers, as its row or its handler
// declares them: each brings its text, and the range and bits the switch
// gives it.
using Fields = std::vector<const doc::Field *>;

// The inputs of an operation, or its outputs.
Fields fieldsOf(const RouteRow &r, bool outputs) {
  Fields all;
  if (r.hand) {
    auto add = [&all](doc::Fields list) {
      for (const doc::Field &f : list) all.push_back(&f);
    };
    if (outputs) {
      add(r.hand->reply);
      if (r.hand->listKey) all.push_back(r.hand->listKey);
    } else {
      add(r.hand->query);
      add(r.hand->body);
    }
    return all;
  }
  for (size_t i = 0; i < r.doc->argCount; ++i) {
    const kit::Arg &a = r.doc->args[i];
    if (kit::isOutput(a.kind) != outputs) continue;
    all.push_back(a.field);
    if (a.fallback) all.push_back(a.fallback);
  }
  return all;
}

const doc::Field *named(const Fields &fields, const char *name) {
  for (const doc::Field *f : fields)
    if (strcmp(f->name, name) == 0) return f;
  return nullptr;
}

// A field's text goes first, before what the program's handling adds;
// the range the switch holds becomes minimum and maximum of a number.
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

bool isNumber(const cJSON *schema) { return isType(schema, "integer") || isType(schema, "number"); }

void leadWith(cJSON *schema, const doc::Field &f, bool number) {
  std::string text = f.text ? f.text : "";
  for (const facts::CapabilityBit &b : f.bits) {
    char bit[16];
    snprintf(bit, sizeof bit, "0x%04X", b.bit);
    text += std::string(&b == f.bits.data() ? " Bits: " : ", ") + bit + " " + b.meaning;
  }
  if (!f.bits.empty()) text += "; no other bit is set.";
  text += codesText(f, number);
  if (number && f.unit && f.unit->measures) text += std::string(" Unit: ") + f.unit->name + ".";
  if (text.empty()) return;
  const cJSON *old = cJSON_GetObjectItem(schema, "description");
  std::string all = old ? text + " " + old->valuestring : text;
  if (old) cJSON_DeleteItemFromObject(schema, "description");
  addText(schema, "description", all.c_str());
}

void setNumber(cJSON *schema, const char *key, uint32_t n) {
  cJSON_DeleteItemFromObject(schema, key);
  cJSON_AddNumberToObject(schema, key, n);
}

// A number's unit and the range the switch holds it to.
void addRange(cJSON *schema, const doc::Field &f) {
  if (!isNumber(schema)) return;
  if (f.unit) addText(schema, "x-unit", f.unit->name);
  if (!f.range) return;
  setNumber(schema, "minimum", f.range->least);
  setNumber(schema, "maximum", f.range->most);
}

// The properties of an object, of the objects of a list, or of each choice.
void describeFields(cJSON *schema, const Fields &fields) {
  if (!schema) return;
  for (cJSON *p = cJSON_GetObjectItem(schema, "properties") ? cJSON_GetObjectItem(schema, "properties")->child : nullptr; p;
       p = p->next) {
    const doc::Field *f = named(fields, p->string);
    if (f && !cJSON_GetObjectItem(p, "$ref")) {
      leadWith(p, *f, isNumber(p));
      addRange(p, *f);
    }
    describeFields(cJSON_GetObjectItem(p, "items"), fields);
  }
  describeFields(cJSON_GetObjectItem(schema, "items"), fields);
  cJSON *choices = cJSON_GetObjectItem(schema, "oneOf");
  for (cJSON *c = choices ? choices->child : nullptr; c; c = c->next) describeFields(c, fields);
}

void describeParameters(cJSON *op, const Fields &fields) {
  for (cJSON *p = cJSON_GetObjectItem(op, "parameters")->child; p; p = p->next) {
    const cJSON *name = cJSON_GetObjectItem(p, "name");
    const doc::Field *f = name ? named(fields, name->valuestring) : nullptr;
    if (!f) continue;
    leadWith(p, *f, isNumber(cJSON_GetObjectItem(p, "schema")));
    addRange(cJSON_GetObjectItem(p, "schema"), *f);
  }
  cJSON *body = cJSON_GetObjectItem(op, "requestBody");
  if (body) describeFields(cJSON_GetObjectItem(cJSON_GetObjectItem(cJSON_GetObjectItem(body, "content"), "application/json"), "schema"), fields);
}

std::string summaryOf(const RouteRow &r) { return r.hand ? r.hand->summary : r.summary; }

void addParameters(cJSON *op, const std::vector<Input> &inputs) {
  // The session is no parameter: it is the security scheme's API key, which
  // every client generator sets once for the client. A parameter of its own
  // would override that with each call's (empty) argument.
  cJSON *params = cJSON_CreateArray();
  cJSON *bodyProps = object(), *bodyReq = cJSON_CreateArray(), *bodyExample = object();
  bool hasBody = false;
  for (const Input &in : inputs) {
    if (in.inBody) {
      hasBody = true;
      addExample(bodyExample, in.name, in.name, in.schema);
      if (!in.note.empty()) describe(in.schema, in.note);
      add(bodyProps, in.name, in.schema);
      if (in.required) cJSON_AddItemToArray(bodyReq, cJSON_CreateString(in.name));
      continue;
    }
    cJSON *p = object();
    addText(p, "name", in.name);
    addText(p, "in", "query");
    cJSON_AddBoolToObject(p, "required", in.required);
    describe(p, in.note);
    addExample(p, "example", in.name, in.schema);
    add(p, "schema", in.schema);
    cJSON_AddItemToArray(params, p);
  }
  add(op, "parameters", params);
  if (!hasBody) {
    cJSON_Delete(bodyProps), cJSON_Delete(bodyReq), cJSON_Delete(bodyExample);
    return;
  }
  cJSON *schema = object();
  addText(schema, "type", "object");
  add(schema, "properties", bodyProps);
  add(schema, "required", bodyReq);
  titleObjects(schema, modelStem(cJSON_GetObjectItem(op, "operationId")->valuestring) + "Body");
  cJSON *body = addObject(op, "requestBody");
  cJSON_AddTrueToObject(body, "required");
  addText(body, "description", "JSON; keys are matched without regard to case. A body that is not JSON is "
                               "answered with 10003 before the switch is asked.");
  cJSON *media = addObject(addObject(body, "content"), "application/json");
  add(media, "schema", schema);
  add(media, "example", bodyExample);
}

cJSON *operation(const RouteRow &r, cJSON *schemas) {
  cJSON *op = object();
  addText(op, "operationId", operationId(r).c_str());
  addText(op, "summary", summaryOf(r).c_str());
  add(op, "tags", textList({tagOf(r)}));
  // What the session check decides, for the sessions a login hands out.
  bool anySession = sessionPrivilege("ro", r.method, kRouteAccess) == Privilege::Allowed;
  addText(op, "x-privilege", anySession ? "read-only" : "read-write");
  std::string note = anySession ? "Any valid session may call it." : "Needs a read-write session.";
  if (r.note) note = std::string(r.note) + " " + note;
  if (r.doc && r.doc->gated)
    note += r.doc->gatedOnFirst ? " Answers 17002 when interface 1 has no colour LED, whichever unit is named."
                                : " Answers 17002 when the port has no colour LED.";
  if (r.doc && r.doc->shape == doc::Shape::Fixed)
    note += " Always answers " + std::to_string(r.doc->code) + ": the switch has no such setting.";
  note += kNotesPointer;
  addText(op, "description", note.c_str());
  addParameters(op, r.hand ? inputsOf(*r.hand) : inputsOf(*r.doc));
  describeParameters(op, fieldsOf(r, false));

  doc::Shape shape = r.hand ? r.hand->shape : r.doc->shape;
  const char *group = r.hand ? r.hand->group : r.doc->group;
  cJSON *data = r.hand ? replyData(*r.hand) : replyData(*r.doc);
  describeFields(data, fieldsOf(r, true));
  cJSON *schema = replyModel(schemas, shape, group, data, r.doc ? r.doc->code : 0, operationId(r));
  if (r.method == METHOD_GET) cJSON_AddItemToArray(cJSON_GetObjectItem(op, "parameters"), ref(kRefreshRef));

  cJSON *responses = addObject(op, "responses");
  cJSON *ok = addObject(responses, "200");
  // A route with nothing to offer answers as its method's kind does: a read
  // without the final newline, a write with it.
  bool readLike = shape == doc::Shape::Fixed && r.method == METHOD_GET;
  addText(ok, "description", readLike ? "The code alone, without a final newline."
                             : shape == doc::Shape::Set || shape == doc::Shape::Fixed
                                 ? "The code alone, ending with a newline."
                             : shape == doc::Shape::Check
                                 ? "On success the values under the group key, without a final newline; when the "
                                   "switch refuses, the code alone, ending with a newline."
                                 : "On success the values under the group key, without a final newline.");
  add(addObject(addObject(ok, "content"), "application/json"), "schema", schema);
  add(responses, "403", ref("#/components/responses/Refused"));
  return op;
}

// "rs-544", "Request api not found" -> "RS_544", "REQUEST_API_NOT_FOUND".
std::string upperWords(const char *text) {
  std::string out;
  for (const char *c = text; *c; ++c) {
    unsigned char u = static_cast<unsigned char>(*c);
    if (isalnum(u)) out += static_cast<char>(toupper(u));
    else if (!out.empty() && out.back() != '_') out += '_';
  }
  return out;
}

// A single value: a literal type in every generated client, where `const`
// without a type reads as a string or as nothing at all.
cJSON *literal(cJSON *value, const char *type, const std::string &name) {
  cJSON *s = object();
  addText(s, "type", type);
  cJSON *values = add(s, "enum", cJSON_CreateArray());
  cJSON_AddItemToArray(values, value);
  add(s, "x-enum-varnames", textList({name.c_str()}));
  return s;
}

// The names generated clients give an enumeration's values, where many are
// no identifiers ("rs-544", "1x10G", "100"): a value that starts with a
// digit takes the last word of its field's name ("SPEED_100").
cJSON *valueNames(const cJSON *values, const std::string &field) {
  std::string lead = upperWords(field.c_str());
  lead = lead.substr(lead.rfind('_') + 1);
  if (lead.empty() || isdigit(static_cast<unsigned char>(lead[0]))) lead = "VALUE";
  std::vector<std::string> names;
  const cJSON *v = nullptr;
  cJSON_ArrayForEach(v, values) {
    std::string name = cJSON_IsString(v) ? upperWords(v->valuestring) : cJSON_IsNull(v) ? "NULL" : "";
    if (name.empty() || isdigit(static_cast<unsigned char>(name[0]))) name = lead + (name.empty() ? "" : "_" + name);
    // "none" and "None" are two values of one field
    std::string unique = name;
    for (int n = 2; std::find(names.begin(), names.end(), unique) != names.end(); ++n) unique = name + "_" + std::to_string(n);
    names.push_back(unique);
  }
  cJSON *out = cJSON_CreateArray();
  for (const std::string &n : names) cJSON_AddItemToArray(out, cJSON_CreateString(n.c_str()));
  return out;
}

// Every enumeration of the document below `node`, named; `field` is the
// name of the property or parameter it belongs to.
void nameValues(cJSON *node, const std::string &field) {
  if (!cJSON_IsObject(node) && !cJSON_IsArray(node)) return;
  const cJSON *values = cJSON_GetObjectItem(node, "enum");
  if (cJSON_IsArray(values) && !cJSON_GetObjectItem(node, "x-enum-varnames"))
    add(node, "x-enum-varnames", valueNames(values, field));
  const cJSON *name = cJSON_GetObjectItem(node, "name");
  std::string inner = cJSON_IsString(name) ? name->valuestring : field;
  bool properties = node->string && strcmp(node->string, "properties") == 0;
  for (cJSON *c = node->child; c; c = c->next) nameValues(c, properties ? c->string : inner);
}

cJSON *respSchema(uint32_t code) {
  const char *message = errorMessageGet(static_cast<int32_t>(code));
  const char *status = code == CODE_SUCCESS ? "success" : "fail";
  cJSON *props = object(), *req = cJSON_CreateArray();
  addProperty(props, req, "respCode", literal(cJSON_CreateNumber(code), "integer", upperWords(message)));
  addProperty(props, req, "respMsg", literal(cJSON_CreateString(message), "string", upperWords(message)));
  addProperty(props, req, "status", literal(cJSON_CreateString(status), "string", upperWords(status)));
  cJSON *o = objectOf(props, req);
  addText(o, "description", (std::to_string(code) + " " + message).c_str());
  return o;
}

cJSON *components() {
  cJSON *comp = object();
  cJSON *schemas = addObject(comp, "schemas");
  cJSON *all = cJSON_CreateArray(), *failures = cJSON_CreateArray();
  for (uint32_t code : kCodes) {
    std::string name = "Resp" + std::to_string(code);
    add(schemas, name.c_str(), respSchema(code));
    cJSON_AddItemToArray(all, modelRef(name));
    if (code != CODE_SUCCESS) cJSON_AddItemToArray(failures, modelRef(name));
  }
  cJSON *resp = addObject(schemas, "Resp");
  add(resp, "oneOf", all);
  addText(resp, "description", "The reply's code, its message and its status: `resp.respCode === 0` tells success.");
  cJSON *failure = addObject(schemas, "RespFailure");
  add(failure, "oneOf", failures);
  addText(failure, "description", "A failure's code, its message and its status.");
  describe(add(schemas, kWriteReply, envelopeOf(nullptr, nullptr, modelRef("Resp"))),
           "The reply of a write: the code alone.");
  describe(add(schemas, kFailureReply, envelopeOf(nullptr, nullptr, modelRef("RespFailure"))),
           "The reply of a read that failed: the code alone, without the group.");

  cJSON *refused = addObject(addObject(comp, "responses"), "Refused");
  addText(refused, "description", "\"Status:403\" and no body: the session header is missing, names no session, the "
                                  "session has expired, or it may only read and the route writes.");
  cJSON *header = addObject(addObject(comp, "parameters"), "Refresh");
  addText(header, "name", "Refresh");
  addText(header, "in", "header");
  cJSON_AddFalseToObject(header, "required");
  addText(header, "description", "Sent, with any value, by a request that polls: the session's time is then not "
                                 "refreshed, so polling alone does not keep an idle session alive.");
  add(header, "schema", textSchema(false));
  cJSON *session = addObject(addObject(comp, "securitySchemes"), "session");
  addText(session, "type", "apiKey");
  addText(session, "in", "header");
  addText(session, "name", "session");
  addText(session, "description", "The token of a session the login wrote, sent by every call in the \"session\" "
                                  "header: set it once for the client as its API key. Every call refreshes the "
                                  "session's time unless it sends the \"Refresh\" header.");
  return comp;
}

cJSON *info(const char *version) {
  cJSON *i = object();
  addText(i, "title", "Switch interfaces API");
  addText(i, "version", version);
  addText(i, "description", kClientNotes);
  cJSON *contact = addObject(i, "contact");
  addText(contact, "name", "Switch web management team");
  addText(contact, "email", "switch-web@example.org");
  cJSON *license = addObject(i, "license");
  addText(license, "name", "Proprietary: all rights reserved by the interfaces-v2 developers");
  addText(license, "identifier", "LicenseRef-Proprietary");
  return i;
}

// The document is served by the switch whose API it describes: relative to
// it first, which the explorer uses; the developer's `make run` second.
cJSON *servers() {
  cJSON *list = cJSON_CreateArray();
  for (auto [url, what] : {std::pair{"/", "The switch that serves this document"},
                           std::pair{"http://127.0.0.1:8080", "make run on this machine"}}) {
    cJSON *server = object();
    addText(server, "url", url);
    addText(server, "description", what);
    cJSON_AddItemToArray(list, server);
  }
  return list;
}

}  // namespace

cJSON *openApiDocument(const char *version) {
  cJSON *root = object();
  addText(root, "openapi", "3.1.0");
  add(root, "info", info(version));
  add(root, "servers", servers());
  cJSON *tags = add(root, "tags", cJSON_CreateArray());
  for (const Tag &t : kTags) {
    bool seen = false;
    const cJSON *x = nullptr;
    cJSON_ArrayForEach(x, tags) seen = seen || strcmp(cJSON_GetObjectItem(x, "name")->valuestring, t.name) == 0;
    if (seen) continue;
    cJSON *tag = object();
    addText(tag, "name", t.name);
    addText(tag, "description", t.description);
    cJSON_AddItemToArray(tags, tag);
  }
  cJSON *security = cJSON_CreateArray();
  cJSON *scheme = object();
  add(scheme, "session", cJSON_CreateArray());
  cJSON_AddItemToArray(security, scheme);
  add(root, "security", security);
  cJSON *paths = addObject(root, "paths");
  cJSON *comp = components();
  cJSON *schemas = cJSON_GetObjectItem(comp, "schemas");
  for (size_t i = 0; i < kRouteCount; ++i) {
    const RouteRow &r = kRoutes[i];
    if (r.shadowed) continue;
    std::string path = std::string(r.path) + "/" + r.name;
    cJSON *item = cJSON_GetObjectItem(paths, path.c_str());
    if (!item) item = addObject(paths, path.c_str());
    std::string method;
    for (const char *m = httpMethodName(r.method); *m; ++m) method += static_cast<char>(tolower(*m));
    add(item, method.c_str(), operation(r, schemas));
  }
  add(root, "components", comp);
  nameValues(root, "");
  return root;
}
