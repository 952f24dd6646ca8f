// Mappings between platform values and reply or body texts. A mapping is
// held in a variable so that route tables can name it as a template
// argument; the texts themselves stand in tables of value and text.
#ifndef FRAME_VALUE_MAP_H
#define FRAME_VALUE_MAP_H

#include <stddef.h>
#include <stdint.h>
#include <string.h>

#include <iterator>
#include <span>

struct Named {
  uint32_t value;
  const char *text;
};

// A platform value's reply text: the first row that names the value, else
// `otherwise`. A row whose text is null renders as JSON null. The rows
// stand open, so that the API description lists every text a reply can
// carry straight from them.
struct TextMap {
  std::span<const Named> rows;
  const char *otherwise;
  constexpr const char *text(uint32_t value) const {
    for (const Named &n : rows)
      if (n.value == value) return n.text;
    return otherwise;
  }
};

// Maps a body text (null when the item is missing or not a string).
// `accepted` lists the texts that name a value, for the API description:
// the i-th one, null past the last.
struct ValueMap {
  uint32_t (*value)(const char *text);
  const char *(*accepted)(size_t i);
};

// The first row's value for `text`, else `otherwise` (also for null).
template <typename Rows>
uint32_t valueOf(const Rows &table, const char *text, uint32_t otherwise,
                 int (*compare)(const char *, const char *) = strcmp) {
  if (!text) return otherwise;
  for (const Named &n : table)
    if (compare(n.text, text) == 0) return n.value;
  return otherwise;
}

// The i-th row's text, null past the last.
template <typename Rows>
const char *nthText(const Rows &table, size_t i) {
  return i < std::size(table) ? table[i].text : nullptr;
}

// On/off values: only exactly 1 is on; anything else the platform answers
// reads as off.
inline constexpr Named kEnableRows[] = {{1, "enable"}};
inline constexpr Named kTrueRows[] = {{1, "true"}};
inline constexpr TextMap kEnable{kEnableRows, "disable"};
inline constexpr TextMap kTrue{kTrueRows, "false"};

#endif
