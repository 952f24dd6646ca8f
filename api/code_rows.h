// The rows of a TextMap or a body text's mapping, taken from one of the
// switch's encodings (platform/switch_facts.h): value and API text, in the
// table's order.
#ifndef API_CODE_ROWS_H
#define API_CODE_ROWS_H

#include <stddef.h>

#include <array>
#include <iterator>

#include "frame/value_map.h"
#include "platform/switch_facts.h"

template <const auto &Table>
constexpr auto codeRows() {
  std::array<Named, std::size(Table)> rows{};
  for (size_t i = 0; i < rows.size(); ++i) rows[i] = {Table[i].value, Table[i].api};
  return rows;
}

#endif
