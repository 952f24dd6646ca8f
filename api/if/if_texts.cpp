#include "api/if/if_texts.h"

#include "api/code_rows.h"

namespace {

constexpr auto kIfTypes = codeRows<facts::kInterfaceTypes>();

const Named kAttached[] = {{1, "attached"}};
const Named kLinkUp[] = {{0, "up"}};
constexpr auto kOprStates = codeRows<facts::kOperationalStates>();

constexpr auto kCableStatuses = codeRows<facts::kCableStatuses>();

}  // namespace

const TextMap kIfType{kIfTypes, "other"};
const TextMap kIfAttach{kAttached, "none"};
// The platform's 0 is up.
const TextMap kIfLinkState{kLinkUp, "down"};
const TextMap kIfOprState{kOprStates, "port_disable"};
const TextMap kCableStatus{kCableStatuses, "untested"};
