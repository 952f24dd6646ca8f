// Every input the simulated switch's daemon parses, on a switch paused at load; the families
// (s, t, c, f) are described in README.md.
#include <stdlib.h>

#include <sstream>

#include "fuzz/fuzz_support.h"
#include "sim/sim.h"
#include "sim/sim_files.h"

namespace {

int control(sim::Sim &s, std::vector<std::string> words) {
  std::string out;
  int status = sim::handleControl(s, words, &out);
  fuzz::require(status >= 0 && status <= 2, "a control exits 0, 1 or 2");
  fuzz::require(status == 0 || (!out.empty() && out.find('\n') == out.size() - 1), "a refusal is one line");
  return status;
}

// After a file is taken, the clock moves over what it set going: an hour, then the next thing.
void runOn(sim::Sim &s) {
  control(s, {"clock", "advance", "3600"});
  control(s, {"clock", "next"});
}

void file(sim::Sim &s, const char *command, const std::string &text) {
  std::string before = s.scenario;
  size_t events = s.timeline.size();
  if (control(s, {command, text}) == 0) return runOn(s);
  fuzz::require(s.scenario == before && s.timeline.size() == events, "a refused file changes nothing");
}

void controlLines(sim::Sim &s, const uint8_t *data, size_t size) {
  while (size) {
    std::string line = fuzz::takeLine(data, size);
    std::istringstream in(line);
    std::vector<std::string> words;
    for (std::string word; std::getline(in, word, ' ');) words.push_back(word);
    // A whole dump takes a second under the sanitizers: a handful would stall the fuzzer.
    if (!words.empty() && words != std::vector<std::string>{"dump"}) control(s, words);
  }
}

void cliScript(sim::Sim &s, const uint8_t *data, size_t size) {
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

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  static const sim::Sim loaded = [] {
    static char dir[] = "/tmp/fuzz-cli-XXXXXX";
    fuzz::require(mkdtemp(dir) != nullptr, "a CLI work folder");
    sim::setCliDir(dir);
    sim::Sim s;
    std::string error;
    sim::clockPause(s.clock);
    fuzz::require(sim::loadScenario(s, sim::defaultScenario(), &error), "the default switch loads");
    return s;
  }();
  size_t which = fuzz::family(data, size, "stcf");
  sim::Sim s = loaded;
  if (which == 0) file(s, "load", fuzz::text(data, size));
  if (which == 1) file(s, "play", fuzz::text(data, size));
  if (which == 2) controlLines(s, data, size);
  if (which == 3) cliScript(s, data, size);
  return 0;
}
