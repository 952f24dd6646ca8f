// What a route reads and answers, for the API description route-dump
// prints. Table rows carry these facts in their argument lists; a
// hand-written handler declares them beside itself in a HandDoc, and its
// registration names that HandDoc.
#ifndef API_ROUTE_DOC_H
#define API_ROUTE_DOC_H

#include <stddef.h>
#include <stdint.h>

#include <span>

#include "frame/value_map.h"
#include "platform/switch_facts.h"

namespace doc {

// How a route answers: a read (its values under the group on success), a
// set (the code alone), a check (a read when the switch answers, a set
// when it refuses), or one fixed code.
enum class Shape : uint8_t { Read, Set, Check, Fixed };

enum class Type : uint8_t { Number, Text, Mac };

// A request or reply key: its name, spelt here and nowhere else, and what
// the switch reports or takes through it. A table row's argument names one
// of these; a hand-written handler lists them for the description and
// writes its reply keys from them.
struct Field {
  const char *name;
  const char *text = nullptr;                  // what it holds, and the meaning of each value
  const facts::Unit *unit = nullptr;           // a number: what it counts in
  Type type = Type::Number;                    // the rest serves hand-written handlers' fields:
  const TextMap *texts = nullptr;              // a reply value: every text the mapping gives
  const char *words = nullptr;                 // a fixed set of texts, "|" between them
  const ValueMap *accepts = nullptr;           // an input text: the texts that name a value
  const char *(*choices)(size_t i) = nullptr;  // an input text: the i-th known one, null past the last
  bool optional = false;                       // an input whose absence has a meaning of its own
  const facts::Range *range = nullptr;         // the values the switch takes, from its facts
  std::span<const facts::CapabilityBit> bits = {};  // a bit mask: what each bit means
  std::span<const facts::Code> codes = {};          // an encoded value: what each number or text means
};

// The reply's group holds one object, one object or a list of every
// port's (when the query names no port), or an object with one list.
enum class Layout : uint8_t { Object, ObjectOrList, List };

struct HandDoc {
  const char *summary;
  Shape shape;
  const char *group = nullptr;
  std::span<const Field> query = {};
  std::span<const Field> body = {};
  std::span<const Field> reply = {};
  Layout layout = Layout::Object;
  const Field *listKey = nullptr;  // Layout::List: the key of the list
};

using Fields = std::span<const Field>;

// A read: the reply fields under `group` on success.
constexpr HandDoc read(const char *summary, const char *group, Fields query, Fields reply) {
  return {.summary = summary, .shape = Shape::Read, .group = group, .query = query, .reply = reply};
}
// A read whose group holds a list of the reply objects under `listKey`.
constexpr HandDoc readList(const char *summary, const char *group, Fields query, Fields item, const Field &listKey) {
  return {summary, Shape::Read, group, query, {}, item, Layout::List, &listKey};
}
// A read of one port's object, or of every port's in a list.
constexpr HandDoc readPorts(const char *summary, const char *group, Fields query, Fields item) {
  return {summary, Shape::Read, group, query, {}, item, Layout::ObjectOrList};
}
// A set: the code alone.
constexpr HandDoc set(const char *summary, Fields query, Fields body) {
  return {.summary = summary, .shape = Shape::Set, .query = query, .body = body};
}

}  // namespace doc

#endif
