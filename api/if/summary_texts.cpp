#include "api/if/summary_texts.h"

#include <stddef.h>

namespace {

template <size_t N>
const char *indexed(const char *const (&texts)[N], uint32_t value, const char *otherwise) {
  return value < N && texts[value] ? texts[value] : otherwise;
}

}  // namespace

const char *summarySpeedText(uint32_t speedMode) {
  static const char *const kTexts[] = {
      nullptr, "auto",  "100",   "100",   "10",     "10",     "100",     "1000",   "2500",  "5000",
      "10000", "20000", "25000", "40000", "50000",  "100000", nullptr,   "200000", "400000",
  };
  return indexed(kTexts, speedMode, "unknown");
}

const char *summaryLaneModeText(uint32_t laneMode) {
  static const char *const kTexts[] = {
      nullptr, "1x10G",  "1x25G",  "2x50G",  "1x40G",  "1x100G", "1x50G",  "2x25G",
      "8x10G", "8x25G",  "8x50G",  "4x100G", "2x100G", "2x200G", "1x400G",
  };
  if (laneMode == 0) return nullptr;
  return indexed(kTexts, laneMode, "none");
}

const char *summaryFecModeText(uint32_t fecMode) {
  static const char *const kTexts[] = {nullptr, "enable", "auto", "base-r", "rs", "rs-544", "rs-272"};
  return indexed(kTexts, fecMode, "none");
}

const char *cableStatusText(uint32_t status) {
  static const char *const kTexts[] = {nullptr,     "test_fail", "normal",    "open",
                                       "short",     "openshort", "crosstalk", "nocable"};
  return indexed(kTexts, status, "untested");
}
