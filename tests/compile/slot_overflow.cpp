// Must not compile: an output of 512 bytes does not fit a 512-byte slot.
#include "api/route_kit.h"

constexpr doc::Field kX{.name = "x"};
constexpr kit::Arg kTooLong = kit::outText(kX, 4096);
