#include "api/if/if_texts.h"

const char *ifTypeText(uint32_t type) {
  switch (type) {
    case 0: return "phy";
    case 1: return "cpu";
    case 2: return "lag";
    case 3: return "vlan";
    case 4: return "loopback";
    case 5: return "tunnel";
    case 6: return "service_port";
    case 8: return "any";
    default: return "other";
  }
}

const char *ifAttachText(uint32_t status) { return status == 1 ? "attached" : "none"; }

const char *ifLinkStateText(uint32_t state) { return state == 0 ? "up" : "down"; }

const char *ifOprStateText(uint32_t state) {
  switch (state) {
    case 1: return "port_enable";
    case 2: return "port_diag_disable";
    default: return "port_disable";
  }
}
