#include "api/if/if_texts.h"

namespace {

const Named kIfTypes[] = {
    {0, "phy"}, {1, "cpu"}, {2, "lag"}, {3, "vlan"}, {4, "loopback"}, {5, "tunnel"}, {6, "service_port"}, {8, "any"},
};

const Named kAttached[] = {{1, "attached"}};
const Named kLinkUp[] = {{0, "up"}};
const Named kOprStates[] = {{1, "port_enable"}, {2, "port_diag_disable"}};

const Named kCableStatuses[] = {
    {1, "test_fail"}, {2, "normal"}, {3, "open"}, {4, "short"}, {5, "openshort"}, {6, "crosstalk"}, {7, "nocable"},
};

}  // namespace

const TextMap kIfType{kIfTypes, "other"};
const TextMap kIfAttach{kAttached, "none"};
// The platform's 0 is up.
const TextMap kIfLinkState{kLinkUp, "down"};
const TextMap kIfOprState{kOprStates, "port_disable"};
const TextMap kCableStatus{kCableStatuses, "untested"};
