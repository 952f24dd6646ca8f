// The check shape of the green Ethernet routes: a validity or capability
// question that answers like a read when the switch answers, and like a
// set (no group, newline) when it does not.
#ifndef API_GREEN_GREEN_KIT_H
#define API_GREEN_GREEN_KIT_H

#include "frame/route_kit.h"

namespace kit {

template <Name Group, auto Call, Arg... A>
struct Check {
  static constexpr Arg args[] = {A...};
  static_assert(argsFit(Call, args), "arguments do not match the OpEN call");
  static constexpr RouteDoc doc = {Group.s, args, sizeof...(A)};

  static uint32_t handle() {
    Request req;
    if constexpr (any(args, &Arg::isLookup)) splitQuery(req);
    Slot slots[sizeof...(A)];
    for (size_t i = 0; i < sizeof...(A); ++i) loadArg(args[i], slots[i], req);
    uint32_t code = openResultToCode(callWith(Call, slots));
    if (code != CODE_SUCCESS) {
      replyEnvelope(code, nullptr, nullptr, LineEnd::Newline);
      return 0;
    }
    JsonPtr data(cJSON_CreateObject());
    for (size_t i = 0; data && i < sizeof...(A); ++i) renderArg(data.get(), args[i], slots[i]);
    replyRead(code, Group.s, data.get());
    return 0;
  }
};

}  // namespace kit

#endif
