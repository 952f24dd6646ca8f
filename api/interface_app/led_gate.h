// Colour LED routes ask the switch first whether the port has a colour
// LED, and go no further when it has not (or the question fails).
#ifndef API_INTERFACE_APP_LED_GATE_H
#define API_INTERFACE_APP_LED_GATE_H

#include "api/route_kit.h"

namespace kit {

// Which interface the support question names.
enum class LedPort : uint8_t {
  FromQuery,  // the request's "ifNum"
  First,      // interface 1: the colour mode is switch-wide, whatever unit
};

bool ledColorSupported(LedPort port);

// `Inner` is the read or set the route runs once the gate is passed; a
// refusal answers 17002 in Inner's reply shape.
template <LedPort Port, class Inner>
struct LedGated {
  using Gated = Inner;
  static constexpr bool kAsksFirstPort = Port == LedPort::First;
  static constexpr const char *group = Inner::group;

  static uint32_t handle() {
    if (!ledColorSupported(Port)) {
      Inner::Reply::answer(CODE_UNSUPPORTED, nullptr);
      return 0;
    }
    return Inner::handle();
  }
};

}  // namespace kit

#endif
