#include "api/if/attribute_texts.h"

#include <strings.h>

#include <array>
#include <iterator>

#include "platform/switch_facts.h"

namespace {

const Named kDuplexes[] = {{1, "full"}, {0, "half"}};
// The platform's value means "disabled" when it is 1.
const Named kAutoNegs[] = {{1, "disable"}, {0, "enable"}};
const Named kMediaTypes[] = {{1, "copper"}, {2, "fiber"}};
const Named kUp[] = {{1, "up"}};
const Named kAutoNegotiates[] = {{0, "enable"}};

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

// The switch's own table, as rows of value and text.
constexpr auto kDisableReasons = [] {
  std::array<Named, std::size(facts::kDisableReasons)> rows{};
  for (size_t i = 0; i < rows.size(); ++i) rows[i] = {facts::kDisableReasons[i].value, facts::kDisableReasons[i].api};
  return rows;
}();

const Named kSpecialPortTypes[] = {
    {2, "trunk_member"}, {3, "mirrored_port"}, {4, "probe_port"}, {5, "l2tunnel_port"}, {6, "service_port"},
};

// 0: the port is not split.
const Named kLaneModes[] = {
    {0, nullptr},
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

const TextMap kIfDuplex{kDuplexes, "unknown"};
const TextMap kIfAutoNeg{kAutoNegs, "unknown"};
const TextMap kIfMediaType{kMediaTypes, "none"};
const TextMap kIfSpecialPortType{kSpecialPortTypes, "normal"};
const TextMap kIfDisableReason{kDisableReasons, "none"};
const TextMap kIfSpeedName{kSpeedNames, "portctrl_portspeed_unknown"};
const TextMap kIfUpDown{kUp, "down"};
// The settings page reads any non-zero value as disabled.
const TextMap kIfAutoNegotiate{kAutoNegotiates, "disable"};
const TextMap kIfSpeedMbit{kSpeedMbit, "unknown"};
const TextMap kIfLaneMode{kLaneModes, "none"};
const TextMap kIfFecShort{kFecShort, "none"};
const TextMap kIfExpandMode{kExpandModes, "none"};
const TextMap kIfFecMode{kFecModes, "port_fec_disable"};

uint32_t ifSpeedNameValue(const char *text) { return valueOf(kSpeedNames, text, kIfSpeedUnknown); }

uint32_t ifLaneModeValue(const char *text) { return valueOf(kLaneModeInputs, text, 0, strcasecmp); }

uint32_t ifExpandModeValue(const char *text) { return valueOf(kExpandModes, text, 0); }

uint32_t ifFecModeValue(const char *text) { return valueOf(kFecModes, text, 0); }

const ValueMap kIfSpeedNameValue{ifSpeedNameValue, [](size_t i) { return nthText(kSpeedNames, i); }};
const ValueMap kIfLaneModeValue{ifLaneModeValue, [](size_t i) { return nthText(kLaneModeInputs, i); }};
const ValueMap kIfExpandModeValue{ifExpandModeValue, [](size_t i) { return nthText(kExpandModes, i); }};
const ValueMap kIfFecModeValue{ifFecModeValue, [](size_t i) { return nthText(kFecModes, i); }};
