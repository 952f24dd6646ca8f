// The one reply shape every handler writes: an optional data member under
// the handler's group key, then "resp" with code, message and status.
//
// The switch's web pages parse these replies byte for byte, so every
// oddity of the contract is kept: keys spelt differently for reading and
// writing, POST routes that read no body, fixed values, presets that show
// through when the switch writes nothing, messages with their own
// spelling. Comments beside such code state the oddity; they do not
// argue for it again.
#ifndef FRAME_ENVELOPE_H
#define FRAME_ENVELOPE_H

#include <cjson/cJSON.h>
#include <stdint.h>

#include <memory>

enum : uint32_t {
  CODE_SUCCESS = 0,
  CODE_GENERAL_FAILED = 10000,
  CODE_INVALID_ARGUMENT = 10003,
  CODE_OBJECT_EXIST = 10011,
  CODE_NOT_FOUND = 10023,
  CODE_UNSUPPORTED = 17002,
};

const char *errorMessageGet(int32_t code);
uint32_t openResultToCode(int result);

// Builds the formatted reply into *reply (freeing an older text there).
// `dataKey` and `dataText` may be null; data is used only with code 0.
uint32_t responseJsonRreallocStr(int32_t code, const char *dataKey, const char *dataText, char **reply);

void replyInvalidArgument(void);

struct JsonDelete {
  void operator()(cJSON *j) const { cJSON_Delete(j); }
};
using JsonPtr = std::unique_ptr<cJSON, JsonDelete>;

struct HeapTextFree {
  void operator()(char *p) const;
};
using HeapText = std::unique_ptr<char, HeapTextFree>;

// The handler pattern: `data` (may be null) goes out under `group` when
// the code is 0. Reads end without a newline, sets, clears and moves
// with one.
enum class LineEnd { None, Newline };
void replyEnvelope(uint32_t code, const char *group, const cJSON *data, LineEnd end);
inline void replyRead(uint32_t code, const char *group, const cJSON *data) {
  replyEnvelope(code, group, data, LineEnd::None);
}
// The reply of a set: the code alone, newline-terminated.
inline void replySetResult(uint32_t code) { replyEnvelope(code, nullptr, nullptr, LineEnd::Newline); }

#endif
