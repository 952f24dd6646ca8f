#include "api/if/attribute_texts.h"

#include <strings.h>

namespace {

const Named kDuplexes[] = {{1, "full"}, {0, "half"}};
// The platform's value means "disabled" when it is 1.
const Named kAutoNegs[] = {{1, "disable"}, {0, "enable"}};
const Named kMediaTypes[] = {{1, "copper"}, {2, "fiber"}};

const Named kSpeedNames[] = {
    {1, "portctrl_portspeed_auto_neg"},      {2, "portctrl_portspeed_half_100tx"},
    {3, "portctrl_portspeed_full_100tx"},    {4, "portctrl_portspeed_half_10t"},
    {5, "portctrl_portspeed_full_10t"},      {6, "portctrl_portspeed_full_100fx"},
    {7, "portctrl_portspeed_full_1000sx"},   {8, "portctrl_portspeed_full_2p5fx"},
    {9, "portctrl_portspeed_full_5fx"},      {10, "portctrl_portspeed_full_10gsx"},
    {11, "portctrl_portspeed_full_20gsx"},   {12, "portctrl_portspeed_full_25gsx"},
    {13, "portctrl_portspeed_full_40gsx"},   {14, "portctrl_portspeed_full_50gsx"},
    {15, "portctrl_portspeed_full_100gsx"},  {16, "portctrl_portspeed_aal5_155"},
    {17, "portctrl_portspeed_full_200gsx"},  {18, "portctrl_portspeed_full_400gsx"},
    {19, "portctrl_portspeed_lag"},
};

const Named kSpeedMbit[] = {
    {1, "auto"},    {2, "100"},     {3, "100"},     {6, "100"},      {4, "10"},       {5, "10"},
    {7, "1000"},    {8, "2500"},    {9, "5000"},    {10, "10000"},   {11, "20000"},   {12, "25000"},
    {13, "40000"},  {14, "50000"},  {15, "100000"}, {17, "200000"},  {18, "400000"},
};

const Named kDisableReasons[] = {
    {2, "udld"},
    {3, "stp"},
    {4, "bpduguard"},
    {5, "bpdustorm"},
    {6, "dhcpsnooping"},
    {7, "arpinspection"},
    {8, "stormcontrol_bcast"},
    {9, "stormcontrol_mcast"},
    {10, "stormcontrol_ucast"},
    {11, "xceiver"},
    {12, "xceiverplus"},
    {13, "loopprotect"},
    {14, "pml"},
    {15, "dos"},
    {16, "link_flap"},
    {17, "authmgr_auth_violation"},
    {18, "coa"},
};

const Named kSpecialPortTypes[] = {
    {2, "trunk_member"}, {3, "mirrored_port"}, {4, "probe_port"}, {5, "l2tunnel_port"}, {6, "service_port"},
};

const Named kLaneModes[] = {
    {1, "1x10G"},  {2, "1x25G"},  {3, "2x50G"},   {4, "1x40G"},   {5, "1x100G"},  {6, "1x50G"},   {7, "2x25G"},
    {8, "8x10G"},  {9, "8x25G"},  {10, "8x50G"},  {11, "4x100G"}, {12, "2x100G"}, {13, "2x200G"}, {14, "1x400G"},
};

// What the settings page may send: two split texts the read never shows
// are accepted, and five texts the read shows are not.
const Named kLaneModeInputs[] = {
    {1, "4x10G"},  {1, "1x10G"},  {2, "4x25G"},  {2, "1x25G"},  {3, "2x50G"},
    {4, "1x40G"},  {5, "1x100G"}, {11, "4x100G"}, {12, "2x100G"}, {13, "2x200G"}, {14, "1x400G"},
};

const Named kFecShort[] = {
    {1, "enable"}, {2, "auto"}, {3, "base-r"}, {4, "rs"}, {5, "rs-544"}, {6, "rs-272"},
};

// Listed in the order texts are compared on input.
const Named kExpandModes[] = {
    {0, "none"},     {1, "single_10g"},   {2, "single_25g"},     {7, "dual_25g"}, {3, "dual_50g"},
    {4, "quad_40g"}, {5, "quad_100g"},    {6, "root_dual_50g"}, {15, "last"},    {16, "invalid"},
};

const Named kFecModes[] = {
    {0, "port_fec_disable"},     {1, "port_fec_enable"},      {2, "port_fec_auto"},
    {3, "port_fec_base_r"},      {4, "port_fec_rs_fec"},      {5, "port_fec_rs_544"},
    {6, "port_fec_rs_272"},      {7, "port_fec_rs_206"},      {8, "port_fec_rs_108"},
    {9, "port_fec_rs_545"},      {10, "port_fec_rs_304"},     {11, "port_fec_rs_544_2xn"},
    {12, "port_fec_rs_272_2xn"}, {13, "port_fec_nofec_50g"},  {14, "port_fec_not_available"},
    {15, "port_fec_last"},
};

}  // namespace

const char *ifDuplexText(uint32_t duplex) { return textOf(kDuplexes, duplex, "unknown"); }

const char *ifAutoNegText(uint32_t autoNeg) { return textOf(kAutoNegs, autoNeg, "unknown"); }

const char *ifMediaTypeText(uint32_t media) { return textOf(kMediaTypes, media, "none"); }

const char *ifSpecialPortTypeText(uint32_t type) { return textOf(kSpecialPortTypes, type, "normal"); }

const char *ifDisableReasonText(uint32_t reason) { return textOf(kDisableReasons, reason, "none"); }

const char *ifSpeedNameText(uint32_t speed) { return textOf(kSpeedNames, speed, "portctrl_portspeed_unknown"); }

uint32_t ifSpeedNameValue(const char *text) { return valueOf(kSpeedNames, text, kIfSpeedUnknown); }

const char *ifUpDownText(uint32_t adminState) { return adminState == 1 ? "up" : "down"; }

// The settings page reads any non-zero value as disabled.
const char *ifAutoNegotiateText(uint32_t autoNeg) { return autoNeg == 0 ? "enable" : "disable"; }

const char *ifSpeedMbitText(uint32_t speed) { return textOf(kSpeedMbit, speed, "unknown"); }

const char *ifLaneModeText(uint32_t mode) {
  if (mode == 0) return nullptr;
  return textOf(kLaneModes, mode, "none");
}

uint32_t ifLaneModeValue(const char *text) { return valueOf(kLaneModeInputs, text, 0, strcasecmp); }

const char *ifFecShortText(uint32_t mode) { return textOf(kFecShort, mode, "none"); }

const char *ifExpandModeText(uint32_t mode) { return textOf(kExpandModes, mode, "none"); }

uint32_t ifExpandModeValue(const char *text) { return valueOf(kExpandModes, text, 0); }

const char *ifFecModeText(uint32_t mode) { return textOf(kFecModes, mode, "port_fec_disable"); }

uint32_t ifFecModeValue(const char *text) { return valueOf(kFecModes, text, 0); }

const ValueMap kIfSpeedNameValue{ifSpeedNameValue, [](size_t i) { return nthText(kSpeedNames, i); }};
const ValueMap kIfLaneModeValue{ifLaneModeValue, [](size_t i) { return nthText(kLaneModeInputs, i); }};
const ValueMap kIfExpandModeValue{ifExpandModeValue, [](size_t i) { return nthText(kExpandModes, i); }};
const ValueMap kIfFecModeValue{ifFecModeValue, [](size_t i) { return nthText(kFecModes, i); }};
