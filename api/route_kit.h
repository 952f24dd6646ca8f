// The skeleton most routes share, written once: read one or two request
// values, make one OpEN call, render its outputs under the group key.
//
// A route lists the OpEN call's arguments after the client handle, in the
// call's own order: where each input comes from (query scan, query lookup,
// body key) and how each output renders (number, text mapping, buffer
// text). The argument list is checked against the call's parameter types
// at compile time, so a row cannot pass an output where an input belongs.
#ifndef API_ROUTE_KIT_H
#define API_ROUTE_KIT_H

#include <stddef.h>
#include <stdint.h>
#include <stdlib.h>
#include <string.h>

#include <type_traits>
#include <utility>

#include "frame/envelope.h"
#include "frame/params.h"
#include "frame/value_map.h"
#include "api/route_doc.h"
#include "open_api.h"
#include "switch/open_client.h"

namespace kit {

// A short text usable as a template argument.
struct Name {
  char s[32] = {};  // a longer text does not compile: the constructor would write past it
  constexpr Name() = default;
  constexpr Name(const char *t) {
    for (size_t i = 0; t[i]; ++i) s[i] = t[i];
  }
  constexpr bool empty() const { return s[0] == '\0'; }
};

// Mappings are referred to through variables (TextMap, ValueMap), which
// can stand in template arguments where bare function pointers cannot.
using TextOf = const TextMap *;
using ValueOf = const ValueMap *;

// Fills a zero-filled buffer of `size` bytes from the whole query string
// (null when the request has none), for values that need their own decoding.
struct QueryReader {
  void (*read)(const char *query, char *out, size_t size);
};
using ReaderOf = const QueryReader *;

enum class Kind : uint8_t {
  Scan,         // query "name=" at a segment start, unsigned decimal
  Lookup,       // first query piece containing the name, unsigned decimal
  LookupText,   // the same, as a descriptor of the text (size = length + 1)
  Body,         // body number, truncated and saturated to 32 bits
  BodyWord,     // 1 when the body text equals the keyword exactly
  BodyMapped,   // body text through a mapping function
  BodyText,     // body text, cut, as a descriptor (size = length + 1)
  BodyBuffer,   // body text cut to fit a zero-filled buffer; descriptor of the buffer's size
  QueryBuffer,  // query text through a reader into a zero-filled buffer of a fixed size
  Out,          // output number, rendered as number or mapped text
  OutText,      // output text buffer of a fixed size
};

constexpr bool isOutput(Kind k) { return k == Kind::Out || k == Kind::OutText; }
constexpr bool readsBody(Kind k) {
  return k == Kind::Body || k == Kind::BodyWord || k == Kind::BodyMapped || k == Kind::BodyText ||
         k == Kind::BodyBuffer;
}
constexpr bool readsLookup(Kind k) { return k == Kind::Lookup || k == Kind::LookupText; }
// Inputs the call takes by value, and inputs it takes as a text descriptor.
constexpr bool passesNumber(Kind k) {
  return k == Kind::Scan || k == Kind::Lookup || k == Kind::Body || k == Kind::BodyWord || k == Kind::BodyMapped;
}
constexpr bool passesText(Kind k) {
  return k == Kind::LookupText || k == Kind::BodyText || k == Kind::BodyBuffer || k == Kind::QueryBuffer;
}

struct Arg {
  Kind kind = Kind::Scan;
  const doc::Field *field = nullptr;     // query parameter, body key or reply key
  Name word;                             // BodyWord: the keyword that means 1
  const doc::Field *fallback = nullptr;  // BodyWord: key read when `field` is absent
  TextOf text = nullptr;  // Out: null renders a JSON number
  ValueOf value = nullptr;
  ReaderOf reader = nullptr;
  uint32_t preset = 0;   // Out: the value the output holds before the call
  uint32_t size = 0;     // OutText, BodyBuffer, QueryBuffer: the buffer's bytes
  uint32_t longest = 0;  // BodyText: the longest text passed on
  bool mac = false;      // the text is a MAC address (for the API description)
};

consteval Arg arg(Kind kind, const doc::Field &field) {
  Arg a;
  a.kind = kind;
  a.field = &field;
  return a;
}
// Each argument names its key's field, where the key is spelt and said
// once; the argument list refers to it rather than repeating it.
using Key = const doc::Field &;
consteval Arg scan(Key param) { return arg(Kind::Scan, param); }
consteval Arg lookup(Key param) { return arg(Kind::Lookup, param); }
consteval Arg lookupText(Key param) { return arg(Kind::LookupText, param); }
consteval Arg body(Key key) { return arg(Kind::Body, key); }
consteval Arg bodyIs(Key key, const char *word) {
  Arg a = arg(Kind::BodyWord, key);
  a.word = Name(word);
  return a;
}
consteval Arg bodyIs(Key key, const char *word, Key fallback) {
  Arg a = bodyIs(key, word);
  a.fallback = &fallback;
  return a;
}
consteval Arg bodyMapped(Key key, const ValueMap &value) {
  Arg a = arg(Kind::BodyMapped, key);
  a.value = &value;
  return a;
}
consteval Arg bodyText(Key key, uint32_t longest) {
  Arg a = arg(Kind::BodyText, key);
  a.longest = longest;
  return a;
}
consteval Arg out(Key key, uint32_t preset = 0) {
  Arg a = arg(Kind::Out, key);
  a.preset = preset;
  return a;
}
consteval Arg out(Key key, const TextMap &text, uint32_t preset = 0) {
  Arg a = out(key, preset);
  a.text = &text;
  return a;
}

inline constexpr size_t kSlotText = 512;

// Never defined and not constexpr: a row whose buffer does not fit one
// argument slot calls it at compile time, and so does not compile.
void bufferLargerThanItsSlot();

consteval Arg sized(Kind kind, Key name, uint32_t size) {
  if (size == 0 || size > kSlotText) bufferLargerThanItsSlot();
  Arg a = arg(kind, name);
  a.size = size;
  return a;
}
consteval Arg outText(Key key, uint32_t size) { return sized(Kind::OutText, key, size); }
consteval Arg bodyBuffer(Key key, uint32_t size) { return sized(Kind::BodyBuffer, key, size); }
consteval Arg queryBuffer(Key param, const QueryReader &reader, uint32_t size) {
  Arg a = sized(Kind::QueryBuffer, param, size);
  a.reader = &reader;
  return a;
}

// One OpEN argument's storage.
struct Slot {
  uint32_t num = 0;
  open_buffdesc desc = {};
  char buf[kSlotText];
};

// Request input gathered once per handler and released at its end.
struct Request {
  char **query = nullptr;
  cJSON *body = nullptr;
  Request() = default;
  Request(const Request &) = delete;
  Request &operator=(const Request &) = delete;
  ~Request() {
    queryParamsFree(query);
    cJSON_Delete(body);
  }
};

void loadArg(const Arg &a, Slot &s, Request &r);
void renderArg(cJSON *data, const Arg &a, const Slot &s);
void splitQuery(Request &r);

template <class P>
constexpr bool fits(const Arg &a) {
  if constexpr (std::is_same_v<P, uint32_t>) return passesNumber(a.kind);
  else if constexpr (std::is_same_v<P, uint32_t *>) return a.kind == Kind::Out;
  else if constexpr (std::is_same_v<P, open_buffdesc *>) return a.kind == Kind::OutText;
  else if constexpr (std::is_same_v<P, const open_buffdesc *>) return passesText(a.kind);
  else return false;
}

template <class P>
P pass(Slot &s) {
  if constexpr (std::is_same_v<P, uint32_t>) return s.num;
  else if constexpr (std::is_same_v<P, uint32_t *>) return &s.num;
  else return &s.desc;
}

template <class... P, size_t... I>
int invoke(int (*fn)(openapiClientHandle_t *, P...), Slot *slots, std::index_sequence<I...>) {
  return fn(&gOpenClient, pass<P>(slots[I])...);
}

template <class... P, size_t N>
consteval bool argsFit(int (*)(openapiClientHandle_t *, P...), const Arg (&args)[N]) {
  if (sizeof...(P) != N) return false;
  size_t i = 0;
  return (fits<P>(args[i++]) && ...);
}

template <class... P>
int callWith(int (*fn)(openapiClientHandle_t *, P...), Slot *slots) {
  return invoke(fn, slots, std::index_sequence_for<P...>{});
}

template <size_t N>
consteval bool any(const Arg (&args)[N], bool (*test)(Kind)) {
  for (const Arg &a : args)
    if (test(a.kind)) return true;
  return false;
}

// Parses the body when a row reads from it; false (10003 already written,
// nothing asked of the switch) when it is not JSON.
template <bool ReadsBody>
bool bodyReady(Request &req) {
  if (!ReadsBody) return true;
  req.body = requestBodyParse();
  if (req.body) return true;
  replyInvalidArgument();
  return false;
}

// How a route answers once its call returned. `data` holds the rendered
// outputs, and is null unless the call succeeded and the reply shows them.

// A read: the outputs under `Group`, no trailing newline.
template <Name Group>
struct ReadReply {
  static constexpr doc::Shape shape = doc::Shape::Read;
  static constexpr const char *group = Group.s;
  static constexpr bool rendersOutputs = true;
  static void answer(uint32_t code, const cJSON *data) { replyRead(code, Group.s, data); }
};

// A set, clear or move: the code alone with a newline.
struct SetReply {
  static constexpr doc::Shape shape = doc::Shape::Set;
  static constexpr const char *group = nullptr;
  static constexpr bool rendersOutputs = false;
  static void answer(uint32_t code, const cJSON *) { replySetResult(code); }
};

// A validity or capability question: a read when the switch answers, a
// set (no group, newline) when it does not.
template <Name Group>
struct CheckReply {
  static constexpr doc::Shape shape = doc::Shape::Check;
  static constexpr const char *group = Group.s;
  static constexpr bool rendersOutputs = true;
  static void answer(uint32_t code, const cJSON *data) {
    if (code == CODE_SUCCESS) replyRead(code, Group.s, data);
    else replySetResult(code);
  }
};

// The skeleton: gather the inputs, make the one call, answer through
// `Reply`. A body that is not JSON answers 10003 before anything reaches
// the switch, whatever the reply shape.
template <class ReplyPolicy, auto Call, Arg... A>
struct OpenCall {
  using Reply = ReplyPolicy;
  static constexpr const char *group = Reply::group;
  static constexpr Arg args[] = {A...};
  static_assert(argsFit(Call, args), "arguments do not match the OpEN call");

  static uint32_t handle() {
    Request req;
    if (!bodyReady<any(args, readsBody)>(req)) return 0;
    if constexpr (any(args, readsLookup)) splitQuery(req);
    Slot slots[sizeof...(A)];
    for (size_t i = 0; i < sizeof...(A); ++i) loadArg(args[i], slots[i], req);
    uint32_t code = openResultToCode(callWith(Call, slots));
    JsonPtr data(Reply::rendersOutputs && code == CODE_SUCCESS ? cJSON_CreateObject() : nullptr);
    for (size_t i = 0; data && i < sizeof...(A); ++i) renderArg(data.get(), args[i], slots[i]);
    Reply::answer(code, data.get());
    return 0;
  }
};

template <Name Group, auto Call, Arg... A>
using Read = OpenCall<ReadReply<Group>, Call, A...>;
template <auto Call, Arg... A>
using Set = OpenCall<SetReply, Call, A...>;
template <Name Group, auto Call, Arg... A>
using Check = OpenCall<CheckReply<Group>, Call, A...>;

// A route that answers one fixed code without asking the switch.
template <Name Group, uint32_t Code, LineEnd End = LineEnd::None>
struct Fixed {
  static constexpr doc::Shape shape = doc::Shape::Fixed;
  static constexpr uint32_t code = Code;
  static constexpr const char *group = Group.empty() ? nullptr : Group.s;
  static uint32_t handle() {
    replyEnvelope(Code, Group.s, nullptr, End);
    return 0;
  }
};

}  // namespace kit

#endif
