// A CLI script applied by rpcclt_openapiTxtCfgApply on the default switch, paused at load (README.md).
#include "fuzz/sim_inputs.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  sim::Sim s = simfuzz::loaded();
  simfuzz::cliScript(s, data, size);
  return 0;
}
