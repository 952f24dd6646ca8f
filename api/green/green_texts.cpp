#include "api/green/green_texts.h"

const char *enableText(uint32_t value) { return value == 1 ? "enable" : "disable"; }

const char *trueText(uint32_t value) { return value == 1 ? "true" : "false"; }

const char *greenReasonText(uint32_t reason) {
  static const char *const kReasons[] = {
      "greenethr_admin_down", "greenethr_fiber_port",  "greenethr_link_up",         "greenethr_link_down",
      "greenethr_long_cable", "greenethr_short_cable", "greenethr_unkwn_cable_len", "greenethr_no_energy",
      "greenethr_forced",     "greenethr_not1gig",     "greenethr_not_attached",
  };
  return reason < sizeof kReasons / sizeof kReasons[0] ? kReasons[reason] : "greenethr_invalid_val";
}
