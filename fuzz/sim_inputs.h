// What the four inputs of the simulated switch's daemon share as fuzz targets: the default switch,
// paused at load, and the properties a refusal keeps (README.md).
#ifndef FUZZ_SIM_INPUTS_H
#define FUZZ_SIM_INPUTS_H

#include <stdlib.h>

#include <sstream>

#include "fuzz/fuzz_support.h"
#include "sim/sim.h"
#include "sim/sim_files.h"

namespace simfuzz {

inline int control(sim::Sim &s, std::vector<std::string> words) {
  std::string out;
  int status = sim::handleControl(s, words, &out);
  fuzz::require(status >= 0 && status <= 2, "a control exits 0, 1 or 2");
  fuzz::require(status == 0 || (!out.empty() && out.find('\n') == out.size() - 1), "a refusal is one line");
  return status;
}

// After a file is taken, the clock moves over what it set going: an hour, then the next thing.
inline void runOn(sim::Sim &s) {
  control(s, {"clock", "advance", "3600"});
  control(s, {"clock", "next"});
}

inline void file(sim::Sim &s, const char *command, const std::string &text) {
  std::string before = s.scenario;
  size_t events = s.timeline.size();
  if (control(s, {command, text}) == 0) return runOn(s);
  fuzz::require(s.scenario == before && s.timeline.size() == events, "a refused file changes nothing");
}

inline void controlLines(sim::Sim &s, const uint8_t *data, size_t size) {
  while (size) {
    std::string line = fuzz::takeLine(data, size);
    std::istringstream in(line);
    std::vector<std::string> words;
    for (std::string word; std::getline(in, word, ' ');) words.push_back(word);
    // A whole dump takes a second under the sanitizers: a handful would stall the fuzzer.
    if (!words.empty() && words != std::vector<std::string>{"dump"}) control(s, words);
  }
}

inline void cliScript(sim::Sim &s, const uint8_t *data, size_t size) {
  std::string in = sim::cliDir() + "/script", out = sim::cliDir() + "/output", said;
  FILE *f = fopen(in.c_str(), "wb");
  fuzz::require(f && fwrite(data, 1, size, f) == size && fclose(f) == 0, "the script written");
  unlink(out.c_str());  // a call that writes none must not find the last one's
  sim::Call apply{"rpcclt_openapiTxtCfgApply", {{wire::kInString, 4, 0, 0, in}, {wire::kInString, 4, 0, 0, out}}};
  int result = sim::handleCall(s, apply);
  fuzz::require(sim::readCliFile(out, &said), "the apply's output");
  fuzz::require(result == 0 ? said == "Configuration applied.\n" : said.rfind("Error in line ", 0) == 0,
                "the output says what the call returned");
  runOn(s);
}

// A copy of the default switch, loaded once per process, with a private CLI work folder.
inline sim::Sim loaded() {
  static const sim::Sim once = [] {
    static char dir[] = "/tmp/fuzz-cli-XXXXXX";
    fuzz::require(mkdtemp(dir) != nullptr, "a CLI work folder");
    sim::setCliDir(dir);
    sim::Sim s;
    std::string error;
    sim::clockPause(s.clock);
    fuzz::require(sim::loadScenario(s, sim::defaultScenario(), &error), "the default switch loads");
    return s;
  }();
  return once;
}

}  // namespace simfuzz

#endif
