#include "tools/openapi.h"

#include <ctype.h>
#include <string.h>

#include <string>
#include <utility>
#include <vector>

#include "api/fields.h"
#include "api/green/green_history.h"
#include "api/if/ddisable_routes.h"
#include "api/if/name_lookup.h"
#include "frame/envelope.h"
#include "frame/session.h"
#include "tools/openapi_parts.h"

namespace openapi {

cJSON *object() { return cJSON_CreateObject(); }
cJSON *add(cJSON *to, const char *key, cJSON *item) {
  cJSON_AddItemToObject(to, key, item);
  return item;
}
cJSON *addObject(cJSON *to, const char *key) { return add(to, key, object()); }
void addText(cJSON *to, const char *key, const char *text) { cJSON_AddStringToObject(to, key, text); }
cJSON *textList(std::initializer_list<const char *> texts) {
  cJSON *a = cJSON_CreateArray();
  for (const char *t : texts) cJSON_AddItemToArray(a, cJSON_CreateString(t));
  return a;
}
bool isType(const cJSON *schema, const char *type) {
  const cJSON *t = cJSON_GetObjectItem(schema, "type");
  return cJSON_IsString(t) && strcmp(t->valuestring, type) == 0;
}
void describe(cJSON *schema, const std::string &text) {
  if (text.empty()) return;
  const cJSON *old = cJSON_GetObjectItem(schema, "description");
  if (!old) return addText(schema, "description", text.c_str());
  std::string both = std::string(old->valuestring) + " " + text;
  cJSON_ReplaceItemInObject(schema, "description", cJSON_CreateString(both.c_str()));
}

}  // namespace openapi

using namespace openapi;

namespace {

constexpr char kClientNotes[] =
#include "client_notes.inc"
    ;
constexpr char kNotesPointer[] =
    " Failures come as HTTP 200 with the code in the envelope; the API description's first page tells what "
    "else a client meets.";
// Every code a reply can carry; the first is success.
constexpr uint32_t kCodes[] = {CODE_SUCCESS,   CODE_GENERAL_FAILED, CODE_INVALID_ARGUMENT,
                               CODE_OBJECT_EXIST, CODE_NOT_FOUND,   CODE_UNSUPPORTED};
constexpr char kRefreshRef[] = "#/components/parameters/Refresh";
// The reply of every write, and of every read that failed.
constexpr char kWriteReply[] = "WriteReply";
constexpr char kFailureReply[] = "FailureReply";

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

cJSON *ref(const char *target) {
  cJSON *o = object();
  addText(o, "$ref", target);
  return o;
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
  if (isType(schema, "string")) addText(to, key, "");
  else cJSON_AddNumberToObject(to, key, 1);
}

void addParameters(cJSON *op, const std::vector<Input> &inputs, const std::string &stem) {
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
      add(bodyProps, in.name, in.schema);
      if (in.required) cJSON_AddItemToArray(bodyReq, cJSON_CreateString(in.name));
      continue;
    }
    cJSON *p = object();
    addText(p, "name", in.name);
    addText(p, "in", "query");
    cJSON_AddBoolToObject(p, "required", in.required);
    describe(p, in.text);
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
  addText(schema, "title", (stem + "Body").c_str());
  cJSON *body = addObject(op, "requestBody");
  cJSON_AddTrueToObject(body, "required");
  addText(body, "description", "JSON; keys are matched without regard to case. A body that is not JSON is "
                               "answered with 10003 before the switch is asked.");
  cJSON *media = addObject(addObject(body, "content"), "application/json");
  add(media, "schema", schema);
  add(media, "example", bodyExample);
}

cJSON *envelopeOf(const char *group, cJSON *data, cJSON *resp) {
  cJSON *props = object(), *req = cJSON_CreateArray();
  if (group) addProperty(props, req, group, data);
  addProperty(props, req, "resp", resp);
  return objectOf(props, req);
}

// The reply body of an operation in its shape, as a reference to its model:
// "IfLinkStateReply" is "IfLinkStateSuccess" (its values "IfLinkState"
// under the group key) or "FailureReply". Generated clients name their
// types after the components, so a route's types carry the route's name.
cJSON *replyModel(cJSON *schemas, const RouteRow &r, const std::string &stem) {
  doc::Shape shape = r.hand ? r.hand->shape : r.doc->shape;
  if (shape == doc::Shape::Set) return modelRef(kWriteReply);
  if (shape == doc::Shape::Fixed) {
    std::string name = pascal(errorMessageGet(static_cast<int32_t>(r.doc->code))) + "Reply";
    if (!cJSON_GetObjectItem(schemas, name.c_str()))
      add(schemas, name.c_str(), envelopeOf(nullptr, nullptr, modelRef("Resp" + std::to_string(r.doc->code))));
    return modelRef(name);
  }
  const char *group = r.hand ? r.hand->group : r.doc->group;
  add(schemas, (stem + "Success").c_str(), envelopeOf(group, valuesModel(schemas, r, stem), modelRef("Resp0")));
  cJSON *reply = object();
  cJSON *choices = add(reply, "oneOf", cJSON_CreateArray());
  cJSON_AddItemToArray(choices, modelRef(stem + "Success"));
  cJSON_AddItemToArray(choices, modelRef(kFailureReply));
  describe(reply, std::string("The values under \"") + group + "\" on success, the failure's code alone otherwise: `\"" +
                      group + "\" in reply` tells them apart.");
  add(schemas, (stem + "Reply").c_str(), reply);
  return modelRef(stem + "Reply");
}

const char *tagOf(const RouteRow &r) {
  for (const Tag &t : kTags)
    if (strcmp(t.dir, r.path) == 0) return t.name;
  return "interfaces";
}

std::string summaryOf(const RouteRow &r) { return r.hand ? r.hand->summary : r.summary; }

const char *replyDescription(const RouteRow &r) {
  doc::Shape shape = r.hand ? r.hand->shape : r.doc->shape;
  // A route with nothing to offer answers as its method's kind does: a read
  // without the final newline, a write with it.
  if (shape == doc::Shape::Fixed && r.method == METHOD_GET) return "The code alone, without a final newline.";
  if (shape == doc::Shape::Set || shape == doc::Shape::Fixed) return "The code alone, ending with a newline.";
  if (shape == doc::Shape::Check)
    return "On success the values under the group key, without a final newline; when the switch refuses, the code "
           "alone, ending with a newline.";
  return "On success the values under the group key, without a final newline.";
}

cJSON *operation(const RouteRow &r, cJSON *schemas, const std::string &stem) {
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
  addParameters(op, inputsOf(r), stem);
  if (r.method == METHOD_GET) cJSON_AddItemToArray(cJSON_GetObjectItem(op, "parameters"), ref(kRefreshRef));

  cJSON *ok = addObject(addObject(op, "responses"), "200");
  addText(ok, "description", replyDescription(r));
  add(addObject(addObject(ok, "content"), "application/json"), "schema", replyModel(schemas, r, stem));
  add(cJSON_GetObjectItem(op, "responses"), "403", ref("#/components/responses/Refused"));
  return op;
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

cJSON *tagList() {
  cJSON *tags = cJSON_CreateArray();
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
  return tags;
}

}  // namespace

cJSON *openApiDocument(const char *version, std::span<const RouteRow> rows) {
  cJSON *root = object();
  addText(root, "openapi", "3.1.0");
  add(root, "info", info(version));
  add(root, "servers", servers());
  add(root, "tags", tagList());
  cJSON *security = cJSON_CreateArray();
  cJSON *scheme = object();
  add(scheme, "session", cJSON_CreateArray());
  cJSON_AddItemToArray(security, scheme);
  add(root, "security", security);
  cJSON *paths = addObject(root, "paths");
  cJSON *comp = components();
  cJSON *schemas = cJSON_GetObjectItem(comp, "schemas");
  std::set<std::string> shared = sharedStems(rows);
  for (const RouteRow &r : rows) {
    if (r.shadowed) continue;
    std::string path = std::string(r.path) + "/" + r.name;
    cJSON *item = cJSON_GetObjectItem(paths, path.c_str());
    if (!item) item = addObject(paths, path.c_str());
    std::string method;
    for (const char *m = httpMethodName(r.method); *m; ++m) method += static_cast<char>(tolower(*m));
    add(item, method.c_str(), operation(r, schemas, modelStem(r, shared)));
  }
  add(root, "components", comp);
  return root;
}

cJSON *openApiDocument(const char *version) { return openApiDocument(version, {kRoutes, kRouteCount}); }
