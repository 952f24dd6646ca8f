#include "api/if/attribute_texts.h"

#include <strings.h>

#include <array>
#include <iterator>

#include "api/code_rows.h"

namespace {

constexpr auto kDuplexes = codeRows<facts::kDuplexModes>();
// The platform's value means "disabled" when it is 1.
const Named kAutoNegs[] = {{1, "disable"}, {0, "enable"}};
constexpr auto kMediaTypes = codeRows<facts::kMedia>();
const Named kUp[] = {{1, "up"}};
const Named kAutoNegotiates[] = {{0, "enable"}};

constexpr auto kSpeedNames = codeRows<facts::kSpeeds>();
// The speeds the summary shows in Mbit/s, each once.
constexpr auto kSpeedMbit = [] {
  std::array<Named, std::size(facts::kSpeeds)> rows{};
  size_t n = 0;
  for (const facts::Code &s : facts::kSpeeds)
    if (s.amount) rows[n++] = {s.value, s.amount};
  return rows;
}();
constexpr size_t kSpeedMbitCount = [] {
  size_t n = 0;
  for (const facts::Code &s : facts::kSpeeds) n += s.amount != nullptr;
  return n;
}();
constexpr auto kDisableReasons = codeRows<facts::kDisableReasons>();

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

constexpr auto kExpandModes = codeRows<facts::kExpandModes>();
constexpr auto kFecModes = codeRows<facts::kFecModes>();

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
const TextMap kIfSpeedMbit{std::span(kSpeedMbit).first(kSpeedMbitCount), "unknown"};
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
