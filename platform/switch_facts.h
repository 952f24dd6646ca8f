/* What the switch itself fixes, kept once for the program's checks, the API
 * document and the simulated switch alike. Plain constant tables: a reader
 * finds a name, a number or a limit here and nowhere else. */
#ifndef PLATFORM_SWITCH_FACTS_H
#define PLATFORM_SWITCH_FACTS_H

#include <stdint.h>

namespace facts {

/* Why a port is disabled, as the platform numbers it and the API names it
 * (if/disable-reason). Every other value, 0 and 1 included, reads "none":
 * the port is not disabled. */
struct DisableReason {
  uint32_t value;
  const char *api;
  const char *meaning;  /* what shut the port, for the API document; null where it is the name alone */
};

inline constexpr DisableReason kDisableReasons[] = {
    {2, "udld", "UDLD found the link one-way"},
    {3, "stp", "spanning tree"},
    {4, "bpduguard", "a BPDU arrived on a BPDU-guarded edge port"},
    {5, "bpdustorm", "BPDUs above their rate limit"},
    {6, "dhcpsnooping", "DHCP packets above their rate limit"},
    {7, "arpinspection", "ARP packets above their rate limit"},
    {8, "stormcontrol_bcast", "broadcast storm control"},
    {9, "stormcontrol_mcast", "multicast storm control"},
    {10, "stormcontrol_ucast", "unicast storm control"},
    {11, "xceiver", "the transceiver"},
    {12, "xceiverplus", nullptr},
    {13, "loopprotect", "loop protection saw a loop"},
    {14, "pml", "a port MAC locking violation"},
    {15, "dos", "denial-of-service protection"},
    {16, "link_flap", "the link went up and down too often"},
    {17, "authmgr_auth_violation", "a port authentication violation"},
    {18, "coa", "a change of authorization"},
};

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

/* The least and greatest value the switch takes for a setting; a value
 * outside is refused. */
struct Range {
  uint32_t least;
  uint32_t most;
};

inline constexpr Range kVlanIds{1, 4094};                   /* every VLAN the switch can have */
inline constexpr Range kMaxFrameSize{1518, 9216};           /* bytes */
inline constexpr Range kRecoveryInterval{30, 86400};        /* seconds */
inline constexpr Range kLockAgeTime{0, 1440};               /* minutes */
inline constexpr Range kLockTrapInterval{0, 1000000};       /* seconds */
inline constexpr Range kLockDynamicLimit{0, 4096};          /* addresses */
inline constexpr Range kLockStaticLimit{0, 64};             /* addresses */
inline constexpr Range kLockVlan{1, 4093};                  /* VLAN IDs a locked address may carry */
inline constexpr Range kLockVlanMode{0, 1};                 /* off, on */
inline constexpr Range kStreamId{1, 2047};                  /* 802.1Qci stream IDs */
inline constexpr Range kLpiSampleInterval{1, 36000};        /* the switch's own unit */
inline constexpr Range kLpiMaxSamples{1, 8192};             /* samples */
inline constexpr Range kLedColour{0, 7};                    /* off, red, green, blue, yellow, cyan, magenta, white */
inline constexpr Range kLedBrightness{0, 100};              /* the switch's own scale */

/* Every range above, for the checks that hold the API description to them. */
inline constexpr const Range *kRanges[] = {
    &kVlanIds,           &kMaxFrameSize,    &kRecoveryInterval, &kLockAgeTime,  &kLockTrapInterval,
    &kLockDynamicLimit,  &kLockStaticLimit, &kLockVlan,         &kLockVlanMode, &kStreamId,
    &kLpiSampleInterval, &kLpiMaxSamples,   &kLedColour,        &kLedBrightness,
};

/* The bits of a port's capability mask (if/capabilities): each set bit is
 * one speed and duplex the port can run, or auto-negotiation. The bits not
 * listed are never set. */
struct CapabilityBit {
  uint32_t bit;
  const char *meaning;
};

inline constexpr CapabilityBit kCapabilityBits[] = {
    {0x0001, "10 Mbit/s half duplex"},  {0x0002, "10 Mbit/s full duplex"},  {0x0004, "100 Mbit/s half duplex"},
    {0x0008, "100 Mbit/s full duplex"}, {0x0010, "1000 Mbit/s full duplex"}, {0x0080, "10 Gbit/s full duplex"},
    {0x0100, "25 Gbit/s full duplex"},  {0x1000, "auto-negotiation"},
};

}  // namespace facts

#endif
