#include "api/green/green_texts.h"

#include "api/code_rows.h"

namespace {

constexpr auto kReasons = codeRows<facts::kGreenReasons>();

}  // namespace

const TextMap kGreenReason{kReasons, "greenethr_invalid_val"};
