#include "api/if/summary_texts.h"

#include <stddef.h>

namespace {

template <size_t N>
const char *indexed(const char *const (&texts)[N], uint32_t value, const char *otherwise) {
  return value < N && texts[value] ? texts[value] : otherwise;
}

}  // namespace

const char *cableStatusText(uint32_t status) {
  static const char *const kTexts[] = {nullptr,     "test_fail", "normal",    "open",
                                       "short",     "openshort", "crosstalk", "nocable"};
  return indexed(kTexts, status, "untested");
}
