// A mapping between platform values and reply or body texts, held in a
// variable so that route tables can name it as a template argument.
#ifndef FRAME_VALUE_MAP_H
#define FRAME_VALUE_MAP_H

#include <stdint.h>

struct TextMap {
  const char *(*text)(uint32_t value);
};

// Maps a body text (null when the item is missing or not a string).
struct ValueMap {
  uint32_t (*value)(const char *text);
};

#endif
