#include "api/if/if_texts.h"

namespace {

const Named kIfTypes[] = {
    {0, "phy"}, {1, "cpu"}, {2, "lag"}, {3, "vlan"}, {4, "loopback"}, {5, "tunnel"}, {6, "service_port"}, {8, "any"},
};

const Named kOprStates[] = {{1, "port_enable"}, {2, "port_diag_disable"}};

const Named kCableStatuses[] = {
    {1, "test_fail"}, {2, "normal"}, {3, "open"}, {4, "short"}, {5, "openshort"}, {6, "crosstalk"}, {7, "nocable"},
};

}  // namespace

const char *ifTypeText(uint32_t type) { return textOf(kIfTypes, type, "other"); }

const char *ifAttachText(uint32_t status) { return status == 1 ? "attached" : "none"; }

const char *ifLinkStateText(uint32_t state) { return state == 0 ? "up" : "down"; }

const char *ifOprStateText(uint32_t state) { return textOf(kOprStates, state, "port_disable"); }

const char *cableStatusText(uint32_t status) { return textOf(kCableStatuses, status, "untested"); }
