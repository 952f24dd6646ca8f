// Reading the files a user hands open-sim (scenarios and timelines)
// strictly: the JSON library takes text after the document and a key given
// twice without a word, and either would make a file mean something else
// than its author saw.
#ifndef PLATFORM_SIM_SIM_JSON_H
#define PLATFORM_SIM_SIM_JSON_H

#include <stdint.h>

#include <string>

#include "sim/sim.h"

namespace sim {

// Exactly one JSON object, with nothing but white space after it; else
// null and "<what>: <reason>" ("broken JSON at line 2, column 13", "text
// after the JSON at line 4, column 1", "not a JSON object").
Json parseStrictObject(const std::string &text, const char *what, std::string *error);

// "line L, column C" of a byte offset in `text`, both from 1.
std::string positionText(const std::string &text, size_t offset);

// The first name given twice in this object itself, or null.
const char *duplicateKey(const cJSON *object);
// The first name given twice anywhere inside `node`, with where it is as a
// path of keys and list positions below `node` (."errdisable"[2]).
bool findDuplicateKey(const cJSON *node, std::string *path, std::string *key);

// Gives the reason a check failed, for its early returns.
inline bool refuse(std::string *error, std::string why) {
  *error = std::move(why);
  return false;
}

// The text of a tree, indented or on one line.
std::string printJson(const cJSON *j, bool formatted);

// A refusal stays one line whatever names it echoes: control characters
// (a key may hold a newline) are written as JSON escapes.
std::string oneLine(const std::string &text);

// What a number field must be; a reason of one phrase when it is not.
enum class NumberFault { None, Missing, NotNumber, Fraction, OutOfRange };
NumberFault readWhole(const cJSON *n, double least, double most, int64_t *out);
// "from 1 to 52": the bounds as a message gives them.
std::string rangeText(double least, double most);
// "\"port\" must be a whole number from 1 to 52", and so on.
std::string numberFaultText(const char *field, NumberFault f, double least, double most);

}  // namespace sim

#endif
