#include <gtest/gtest.h>

#include <string>

#include "api/if/attribute_texts.h"

namespace {

struct TextCase {
  uint32_t value;
  const char *text;
};

struct ValueCase {
  const char *text;  // null: missing or not a string
  uint32_t value;
};

void expectTexts(const TextMap &map, std::initializer_list<TextCase> cases, const char *what) {
  for (const TextCase &c : cases) EXPECT_STREQ(map.text(c.value), c.text) << what << " " << c.value;
}

void expectValues(const ValueMap &map, std::initializer_list<ValueCase> cases, const char *what) {
  for (const ValueCase &c : cases)
    EXPECT_EQ(map.value(c.text), c.value) << what << " " << (c.text ? c.text : "(null)");
}

TEST(IfAttributeTexts, SmallEnumerations) {
  expectTexts(kIfDuplex, {{1, "full"}, {0, "half"}, {2, "unknown"}, {65535, "unknown"}}, "duplex");
  // 1 is the platform's "negotiation off".
  expectTexts(kIfAutoNeg, {{1, "disable"}, {0, "enable"}, {2, "unknown"}}, "auto-neg");
  expectTexts(kEnable, {{1, "enable"}, {0, "disable"}, {2, "disable"}}, "enable");
  expectTexts(kTrue, {{1, "true"}, {0, "false"}, {7, "false"}}, "pause");
  expectTexts(kIfMediaType, {{1, "copper"}, {2, "fiber"}, {0, "none"}, {3, "none"}}, "media");
  expectTexts(kIfUpDown, {{1, "up"}, {0, "down"}, {2, "down"}}, "admin");
  expectTexts(kIfAutoNegotiate, {{0, "enable"}, {1, "disable"}, {2, "disable"}}, "auto-negotiate");
}

TEST(IfAttributeTexts, SpecialPortTypes) {
  expectTexts(kIfSpecialPortType,
              {{0, "normal"}, {1, "normal"}, {2, "trunk_member"}, {3, "mirrored_port"}, {4, "probe_port"},
               {5, "l2tunnel_port"}, {6, "service_port"}, {7, "normal"}},
              "special");
}

TEST(IfAttributeTexts, DisableReasons) {
  expectTexts(kIfDisableReason,
              {{0, "none"}, {1, "none"}, {2, "udld"}, {3, "stp"}, {4, "bpduguard"}, {5, "bpdustorm"},
               {6, "dhcpsnooping"}, {7, "arpinspection"}, {8, "stormcontrol_bcast"}, {9, "stormcontrol_mcast"},
               {10, "stormcontrol_ucast"}, {11, "xceiver"}, {12, "xceiverplus"}, {13, "loopprotect"}, {14, "pml"},
               {15, "dos"}, {16, "link_flap"}, {17, "authmgr_auth_violation"}, {18, "coa"}, {19, "none"}},
              "reason");
}

TEST(IfAttributeTexts, SpeedNamesBothWays) {
  const TextCase names[] = {
      {1, "portctrl_portspeed_auto_neg"},     {2, "portctrl_portspeed_half_100tx"},
      {3, "portctrl_portspeed_full_100tx"},   {4, "portctrl_portspeed_half_10t"},
      {5, "portctrl_portspeed_full_10t"},     {6, "portctrl_portspeed_full_100fx"},
      {7, "portctrl_portspeed_full_1000sx"},  {8, "portctrl_portspeed_full_2p5fx"},
      {9, "portctrl_portspeed_full_5fx"},     {10, "portctrl_portspeed_full_10gsx"},
      {11, "portctrl_portspeed_full_20gsx"},  {12, "portctrl_portspeed_full_25gsx"},
      {13, "portctrl_portspeed_full_40gsx"},  {14, "portctrl_portspeed_full_50gsx"},
      {15, "portctrl_portspeed_full_100gsx"}, {16, "portctrl_portspeed_aal5_155"},
      {17, "portctrl_portspeed_full_200gsx"}, {18, "portctrl_portspeed_full_400gsx"},
      {19, "portctrl_portspeed_lag"},
  };
  for (const TextCase &c : names) {
    EXPECT_STREQ(kIfSpeedName.text(c.value), c.text);
    EXPECT_EQ(kIfSpeedNameValue.value(c.text), c.value) << c.text;
  }
  expectTexts(kIfSpeedName, {{0, "portctrl_portspeed_unknown"}, {20, "portctrl_portspeed_unknown"}}, "speed");
  expectValues(kIfSpeedNameValue,
               {{"fast", 20}, {nullptr, 20}, {"", 20}, {"PORTCTRL_PORTSPEED_FULL_10GSX", 20},
                {"portctrl_portspeed_unknown", 20}},
               "speed");
}

TEST(IfAttributeTexts, SpeedInMbit) {
  expectTexts(kIfSpeedMbit,
              {{0, "unknown"},   {1, "auto"},      {2, "100"},     {3, "100"},     {4, "10"},      {5, "10"},
               {6, "100"},       {7, "1000"},      {8, "2500"},    {9, "5000"},    {10, "10000"},  {11, "20000"},
               {12, "25000"},    {13, "40000"},    {14, "50000"},  {15, "100000"}, {16, "unknown"}, {17, "200000"},
               {18, "400000"},   {19, "unknown"},  {20, "unknown"}},
              "mbit");
}

TEST(IfAttributeTexts, LaneModesReadNullForNoneAndNoneAboveTheTable) {
  EXPECT_EQ(ifLaneModeText(0), nullptr);
  expectTexts(kIfLaneMode,
              {{1, "1x10G"}, {2, "1x25G"}, {3, "2x50G"}, {4, "1x40G"}, {5, "1x100G"}, {6, "1x50G"}, {7, "2x25G"},
               {8, "8x10G"}, {9, "8x25G"}, {10, "8x50G"}, {11, "4x100G"}, {12, "2x100G"}, {13, "2x200G"},
               {14, "1x400G"}, {15, "none"}, {1000, "none"}},
              "lane");
}

// Input accepts two split texts the read never shows and refuses five the
// read does show; case does not matter.
TEST(IfAttributeTexts, LaneModeInputIsItsOwnTable) {
  expectValues(kIfLaneModeValue,
               {{"4x10G", 1},  {"1x10G", 1},  {"4X10g", 1},   {"4x25G", 2},  {"1x25g", 2},  {"2x50G", 3},
                {"1x40G", 4},  {"1X100G", 5}, {"4x100G", 11}, {"2x100G", 12}, {"2x200G", 13}, {"1x400G", 14},
                {"1x50G", 0},  {"2x25G", 0},  {"8x10G", 0},   {"8x25G", 0},  {"8x50G", 0},   {"", 0},
                {nullptr, 0},  {"1x10G ", 0}},
               "lane input");
}

TEST(IfAttributeTexts, FecShortTexts) {
  expectTexts(kIfFecShort,
              {{0, "none"}, {1, "enable"}, {2, "auto"}, {3, "base-r"}, {4, "rs"}, {5, "rs-544"}, {6, "rs-272"},
               {7, "none"}},
              "fec short");
}

TEST(IfAttributeTexts, ExpansionModesBothWays) {
  const TextCase modes[] = {{0, "none"},       {1, "single_10g"},     {2, "single_25g"}, {3, "dual_50g"},
                            {4, "quad_40g"},   {5, "quad_100g"},      {6, "root_dual_50g"}, {7, "dual_25g"},
                            {15, "last"},      {16, "invalid"}};
  for (const TextCase &c : modes) {
    EXPECT_STREQ(kIfExpandMode.text(c.value), c.text);
    EXPECT_EQ(kIfExpandModeValue.value(c.text), c.value) << c.text;
  }
  expectTexts(kIfExpandMode, {{8, "none"}, {14, "none"}, {17, "none"}}, "expand");
  expectValues(kIfExpandModeValue, {{"Single_10g", 0}, {"quad", 0}, {nullptr, 0}, {"", 0}}, "expand");
}

TEST(IfAttributeTexts, FecModesBothWays) {
  const TextCase modes[] = {
      {0, "port_fec_disable"},     {1, "port_fec_enable"},     {2, "port_fec_auto"},
      {3, "port_fec_base_r"},      {4, "port_fec_rs_fec"},     {5, "port_fec_rs_544"},
      {6, "port_fec_rs_272"},      {7, "port_fec_rs_206"},     {8, "port_fec_rs_108"},
      {9, "port_fec_rs_545"},      {10, "port_fec_rs_304"},    {11, "port_fec_rs_544_2xn"},
      {12, "port_fec_rs_272_2xn"}, {13, "port_fec_nofec_50g"}, {14, "port_fec_not_available"},
      {15, "port_fec_last"},
  };
  for (const TextCase &c : modes) {
    EXPECT_STREQ(kIfFecMode.text(c.value), c.text);
    EXPECT_EQ(kIfFecModeValue.value(c.text), c.value) << c.text;
  }
  expectTexts(kIfFecMode, {{16, "port_fec_disable"}, {4000000000u, "port_fec_disable"}}, "fec");
  expectValues(kIfFecModeValue, {{"rs-544", 0}, {"PORT_FEC_RS_544", 0}, {nullptr, 0}}, "fec");
}

}  // namespace
