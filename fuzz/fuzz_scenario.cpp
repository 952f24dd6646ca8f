// Ctl load of a scenario on the default switch, paused at load (README.md).
#include "fuzz/sim_inputs.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  sim::Sim s = simfuzz::loaded();
  simfuzz::file(s, "load", fuzz::text(data, size));
  return 0;
}
