/* What the switch itself fixes, kept once for the program's checks, the API
 * document and the simulated switch alike. Plain constant tables: a reader
 * finds a name, a number or a limit here and nowhere else. */
#ifndef PLATFORM_SWITCH_FACTS_H
#define PLATFORM_SWITCH_FACTS_H

#include <stddef.h>
#include <stdint.h>

#include <string_view>

namespace facts {

/* One value of an encoding the switch uses: its number, the text the API
 * shows for it, and what it means (for the API document). */
struct Code {
  uint32_t value;
  const char *api;
  const char *meaning;           /* null where the text says it */
  const char *amount = nullptr;  /* the value in the table's unit, where it has one */
};

/* Never defined: reached while compiling, it is the error that says a
 * text is in no table. */
uint32_t noSuchTextInTheTable(std::string_view api);

/* The value `table` gives the API text `api`, for code that names a value
 * by its text; a text the table lacks does not compile. */
template <size_t N>
consteval uint32_t codeOf(const Code (&table)[N], std::string_view api) {
  for (const Code &c : table)
    if (api == c.api) return c.value;
  return noSuchTextInTheTable(api);
}

/* The medium a port uses now (if/active-media-type); a port without a
 * module has none, which the API shows as "none". */
inline constexpr Code kMedia[] = {
    {1, "copper", "a copper (RJ-45) port"},
    {2, "fiber", "a fibre module"},
};

/* Duplex (if/duplex-mode, if/duplex); any other value reads "unknown". */
inline constexpr Code kDuplexModes[] = {
    {1, "full", "full duplex"},
    {0, "half", "half duplex"},
};

/* A port's speed and duplex setting (if/speed-mode): the switch's name and,
 * for the status summary, the speed in Mbit/s ("auto" while it negotiates;
 * none: the summary shows "unknown"). */
inline constexpr Code kSpeeds[] = {
    {1, "portctrl_portspeed_auto_neg", "negotiated with the link partner", "auto"},
    {2, "portctrl_portspeed_half_100tx", "100 Mbit/s half duplex, copper", "100"},
    {3, "portctrl_portspeed_full_100tx", "100 Mbit/s full duplex, copper", "100"},
    {4, "portctrl_portspeed_half_10t", "10 Mbit/s half duplex, copper", "10"},
    {5, "portctrl_portspeed_full_10t", "10 Mbit/s full duplex, copper", "10"},
    {6, "portctrl_portspeed_full_100fx", "100 Mbit/s full duplex, fibre", "100"},
    {7, "portctrl_portspeed_full_1000sx", "1000 Mbit/s full duplex", "1000"},
    {8, "portctrl_portspeed_full_2p5fx", "2500 Mbit/s full duplex", "2500"},
    {9, "portctrl_portspeed_full_5fx", "5000 Mbit/s full duplex", "5000"},
    {10, "portctrl_portspeed_full_10gsx", "10 Gbit/s full duplex", "10000"},
    {11, "portctrl_portspeed_full_20gsx", "20 Gbit/s full duplex", "20000"},
    {12, "portctrl_portspeed_full_25gsx", "25 Gbit/s full duplex", "25000"},
    {13, "portctrl_portspeed_full_40gsx", "40 Gbit/s full duplex", "40000"},
    {14, "portctrl_portspeed_full_50gsx", "50 Gbit/s full duplex", "50000"},
    {15, "portctrl_portspeed_full_100gsx", "100 Gbit/s full duplex", "100000"},
    {16, "portctrl_portspeed_aal5_155", "an ATM link at 155 Mbit/s", nullptr},
    {17, "portctrl_portspeed_full_200gsx", "200 Gbit/s full duplex", "200000"},
    {18, "portctrl_portspeed_full_400gsx", "400 Gbit/s full duplex", "400000"},
    {19, "portctrl_portspeed_lag", "a LAG: its members' speed", nullptr},
};

/* Forward error correction (if/fec-mode); "port_fec_last" ends the switch's
 * list and names no mode. */
inline constexpr Code kFecModes[] = {
    {0, "port_fec_disable", "off"},
    {1, "port_fec_enable", "on, the mode the port's speed calls for"},
    {2, "port_fec_auto", "negotiated"},
    {3, "port_fec_base_r", "BASE-R (Fire Code)"},
    {4, "port_fec_rs_fec", "Reed-Solomon"},
    {5, "port_fec_rs_544", "Reed-Solomon RS(544,514)"},
    {6, "port_fec_rs_272", "Reed-Solomon RS(272,257)"},
    {7, "port_fec_rs_206", "Reed-Solomon RS(206)"},
    {8, "port_fec_rs_108", "Reed-Solomon RS(108)"},
    {9, "port_fec_rs_545", "Reed-Solomon RS(545)"},
    {10, "port_fec_rs_304", "Reed-Solomon RS(304)"},
    {11, "port_fec_rs_544_2xn", "Reed-Solomon RS(544,514) over two lanes"},
    {12, "port_fec_rs_272_2xn", "Reed-Solomon RS(272,257) over two lanes"},
    {13, "port_fec_nofec_50g", "none, at 50 Gbit/s"},
    {14, "port_fec_not_available", "the port has no FEC"},
    {15, "port_fec_last", "the end of the switch's list, no mode"},
};

/* How an expandable port is split (if/expand-port-mode), in the order texts
 * are compared on input; "last" and "invalid" end the switch's list and name
 * no mode. */
inline constexpr Code kExpandModes[] = {
    {0, "none", "not split"},
    {1, "single_10g", "one 10 Gbit/s port per lane"},
    {2, "single_25g", "one 25 Gbit/s port per lane"},
    {7, "dual_25g", "two 25 Gbit/s ports"},
    {3, "dual_50g", "two 50 Gbit/s ports"},
    {4, "quad_40g", "one 40 Gbit/s port over four lanes"},
    {5, "quad_100g", "one 100 Gbit/s port over four lanes"},
    {6, "root_dual_50g", "the root port of two 50 Gbit/s ports"},
    {15, "last", "the end of the switch's list, no mode"},
    {16, "invalid", "no mode"},
};

/* Why green Ethernet is or is not operating on a port: the API's name and
 * the switch's own words (greenEthernet "reasonStr"). */
inline constexpr Code kGreenReasons[] = {
    {0, "greenethr_admin_down", "Admin Mode Disabled"},
    {1, "greenethr_fiber_port", "Fiber Port"},
    {2, "greenethr_link_up", "Link Up"},
    {3, "greenethr_link_down", "Link Down"},
    {4, "greenethr_long_cable", "Long Cable"},
    {5, "greenethr_short_cable", "Short Cable"},
    {6, "greenethr_unkwn_cable_len", "Unknown Cable Length"},
    {7, "greenethr_no_energy", "No Energy Detected"},
    {8, "greenethr_forced", "Forced"},
    {9, "greenethr_not1gig", "Not 1 Gbit/s"},
    {10, "greenethr_not_attached", "Not Attached"},
};

/* The result of a cable test (cableStatus); a port never tested reads
 * "untested". */
inline constexpr Code kCableStatuses[] = {
    {1, "test_fail", "the test could not run"},
    {2, "normal", "the cable is sound"},
    {3, "open", "a pair is open"},
    {4, "short", "a pair is shorted"},
    {5, "openshort", "pairs are open and shorted"},
    {6, "crosstalk", "pairs cross-talk"},
    {7, "nocable", "no cable is plugged in"},
};

/* Interface types (if/type, and the ifType of the walks); a type the switch
 * numbers otherwise reads "other". */
inline constexpr Code kInterfaceTypes[] = {
    {0, "phy", "physical port"},
    {1, "cpu", "CPU port"},
    {2, "lag", "LAG"},
    {3, "vlan", "routing VLAN interface"},
    {4, "loopback", "loopback"},
    {5, "tunnel", "tunnel"},
    {6, "service_port", "service port"},
    {8, "any", "any type"},
};

/* A port's operational state (if/opr-state); every other value reads
 * "port_disable": it does not forward (link down or disabled). */
inline constexpr Code kOperationalStates[] = {
    {1, "port_enable", "forwards traffic"},
    {2, "port_diag_disable", "shut down by a protection feature (D-Disable)"},
};

/* Why a port is disabled, as the platform numbers it and the API names it
 * (if/disable-reason); the meaning says what shut the port, and is null
 * where the name says it. Every other value, 0 and 1 included, reads
 * "none": the port is not disabled. */
inline constexpr Code kDisableReasons[] = {
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

/* What a number counts in, as the API document names it beside the number
 * ("x-unit"). A number that counts nothing (a port number, a code, a flag)
 * says so here too, so that no number goes out without one. */
struct Unit {
  const char *name;
  bool measures = true;  /* false: it counts nothing, and the description need not say so */
};

inline constexpr Unit kMicroseconds{"microseconds"};
inline constexpr Unit kSeconds{"seconds"};
inline constexpr Unit kMinutes{"minutes"};
inline constexpr Unit kHours{"hours"};
inline constexpr Unit kDays{"days"};
inline constexpr Unit kUptimeSeconds{"seconds of switch uptime"};
inline constexpr Unit kUnixSeconds{"seconds since 1970-01-01 00:00:00 UTC"};
inline constexpr Unit kMilliwatts{"milliwatts"};
inline constexpr Unit kMilliwattHours{"milliwatt-hours"};
inline constexpr Unit kPercent{"percent"};
inline constexpr Unit kMetres{"metres"};
inline constexpr Unit kBytes{"bytes"};
inline constexpr Unit kCharacters{"characters"};
inline constexpr Unit kPackets{"packets"};
inline constexpr Unit kMbits{"Mbit/s"};
inline constexpr Unit kCount{"a count", false};
inline constexpr Unit kCounted{"octets or packets, as the counter's name says", false};
inline constexpr Unit kIdentifier{"none: a number that names something", false};
inline constexpr Unit kCode{"none: a code whose values the description lists", false};
inline constexpr Unit kBitMask{"none: a bit mask whose bits the description lists", false};

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
inline constexpr Range kLpiSampleInterval{1, 36000};        /* minutes */
inline constexpr Range kLpiMaxSamples{1, 8192};             /* samples */
inline constexpr Range kSampleNumbers{0, 65535};            /* a history record's number, in 16 bits */
inline constexpr Range kLedColour{0, 7};                    /* off, red, green, blue, yellow, cyan, magenta, white */
inline constexpr Range kLedBrightness{0, 100};              /* percent */
inline constexpr Range kPercentage{0, 100};                 /* percent */

/* Every range above, for the checks that hold the API description to them. */
inline constexpr const Range *kRanges[] = {
    &kVlanIds,           &kMaxFrameSize,    &kRecoveryInterval, &kLockAgeTime,  &kLockTrapInterval,
    &kLockDynamicLimit,  &kLockStaticLimit, &kLockVlan,         &kLockVlanMode, &kStreamId,
    &kLpiSampleInterval, &kLpiMaxSamples,   &kLedColour,        &kLedBrightness, &kPercentage, &kSampleNumbers,
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
