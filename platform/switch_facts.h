/* What the switch itself fixes, kept once for the program's checks, the API
 * document and the simulated switch alike. Plain constant tables: a reader
 * finds a name, a number or a limit here and nowhere else. */
#ifndef PLATFORM_SWITCH_FACTS_H
#define PLATFORM_SWITCH_FACTS_H

#include <stdint.h>

namespace facts {

/* A cause of D-Disable auto-recovery: the name the API and its pages use, the
 * name the switch's CLI prints in "show errdisable recovery" and takes in its
 * configuration, and the disable reason a port shut by that cause reports.
 * `api` is null for a cause the CLI lists but the API does not offer. */
struct DDisableCause {
  const char *api;
  const char *cli;
  uint32_t reason;
};

/* In the order the switch lists them. */
inline constexpr DDisableCause kDDisableCauses[] = {
    {"dhcp_rate_limit", "dhcp-rate-limit", 6},
    {"arp_inspection", "arp-inspection", 7},
    {"bstormcontrol", "bcast-storm", 8},
    {"mstormcontrol", "mcast-storm", 9},
    {"ustormcontrol", "ucast-storm", 10},
    {"bpduguard", "bpduguard", 4},
    {"bpdu_rate_limit", "bpdustorm", 5},
    {"pml", "mac-locking", 14},
    {"dos", "denial-of-service", 15},
    {"link_flap", "link-flap", 16},
    {nullptr, "udld", 2},
    {nullptr, "loop-protect", 13},
};

}  // namespace facts

#endif
