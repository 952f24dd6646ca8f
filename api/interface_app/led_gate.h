// Colour LED routes ask the switch first whether the port has a colour
// LED, and go no further when it has not (or the question fails).
#ifndef API_INTERFACE_APP_LED_GATE_H
#define API_INTERFACE_APP_LED_GATE_H

#include "frame/route_kit.h"

namespace kit {

// Which interface the support question names.
enum class LedPort : uint8_t {
  FromQuery,  // the request's "ifNum"
  First,      // interface 1: the colour mode is switch-wide, whatever unit
};

bool ledColorSupported(LedPort port);

// A refused read keeps its group; a refused set has none and a newline.
template <class Inner>
struct Refusal;
template <Name Group, auto Call, Arg... A>
struct Refusal<Read<Group, Call, A...>> {
  static void reply() { replyRead(CODE_UNSUPPORTED, Group.s, nullptr); }
};
template <auto Call, Arg... A>
struct Refusal<Set<Call, A...>> {
  static void reply() { replySetResult(CODE_UNSUPPORTED); }
};

// `Inner` is the Read or Set the route runs once the gate is passed.
template <LedPort Port, class Inner>
struct LedGated {
  static constexpr RouteDoc doc = Inner::doc;

  static uint32_t handle() {
    if (!ledColorSupported(Port)) {
      Refusal<Inner>::reply();
      return 0;
    }
    return Inner::handle();
  }
};

}  // namespace kit

#endif
