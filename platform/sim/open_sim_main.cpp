// open-sim: the simulated OpEN service and its control client.
//   open-sim serve [--socket PATH] [--scenario NAME | FILE.json] [--cli-dir DIR] [--paused]
//   open-sim ctl [--socket PATH] COMMAND...
//   open-sim default-scenario
//   open-sim scenarios
#include <stdio.h>
#include <string.h>

#include <fstream>
#include <sstream>

#include "sim/client_io.h"
#include "sim/sim.h"
#include "sim/sim_json.h"
#include "sim/sim_server.h"
#include "sim/sim_files.h"
#include "sim/socket_path.h"

namespace {

constexpr int kControlTimeoutMs = 10000;

int usage() {
  std::string ctl = sim::controlUsage("       open-sim ctl [--socket PATH] ", std::string(20, ' '));
  fprintf(stderr, "usage: open-sim serve [--socket PATH] [--scenario NAME | FILE.json] [--cli-dir DIR] [--paused]\n%s"
          "       open-sim default-scenario\n       open-sim scenarios\n", ctl.c_str());
  return 2;
}

bool readFile(const char *path, std::string *out) {
  std::ifstream f(path, std::ios::binary);
  if (!f) return false;
  std::ostringstream ss;
  ss << f.rdbuf();
  *out = ss.str();
  return true;
}

int serveCommand(int argc, char **argv) {
  const char *socket = nullptr, *scenarioFile = nullptr;
  bool paused = false;
  for (int i = 0; i < argc; ++i) {
    if (strcmp(argv[i], "--paused") == 0) paused = true;
    else if (strcmp(argv[i], "--socket") == 0 && i + 1 < argc) socket = argv[++i];
    else if (strcmp(argv[i], "--scenario") == 0 && i + 1 < argc) scenarioFile = argv[++i];
    else if (strcmp(argv[i], "--cli-dir") == 0 && i + 1 < argc) sim::setCliDir(argv[++i]);
    else return usage();
  }
  std::string scenario = sim::defaultScenario(), error;
  // A built-in name wins over a file of the same name in the folder.
  if (scenarioFile && !sim::readyScenario(scenarioFile, &scenario) && !readFile(scenarioFile, &scenario)) {
    fprintf(stderr, "open-sim: no scenario named %s and no file of that name (open-sim scenarios lists them)\n",
            scenarioFile);
    return 1;
  }
  sim::Sim s;
  // Paused before the load: the clock then stands where the scenario starts it,
  // and reset and load keep it standing.
  if (paused) sim::clockPause(s.clock);
  if (!sim::loadScenario(s, scenario, &error)) {
    fprintf(stderr, "open-sim: %s\n", sim::oneLine(error).c_str());
    return 1;
  }
  return sim::serve(s, simSocketPath(socket));
}

bool receiveReply(int fd, std::string *frame) {
  uint32_t len = 0;
  if (!simRecvAll(fd, reinterpret_cast<char *>(&len), 4) || len > wire::kMaxFrame) return false;
  frame->resize(len);
  return simRecvAll(fd, frame->data(), len);
}

int ctlCommand(int argc, char **argv) {
  // "--socket PATH" comes first, if at all.
  const char *socket = argc >= 2 && strcmp(argv[0], "--socket") == 0 ? argv[1] : nullptr;
  if (socket) argc -= 2, argv += 2;
  if (argc < 1) return usage();
  sim::Json words(cJSON_CreateArray());
  for (int i = 0; i < argc; ++i) {
    std::string word = argv[i];
    bool sendsFile = strcmp(argv[0], "load") == 0 || strcmp(argv[0], "play") == 0;
    if (i == 1 && sendsFile && !readFile(argv[1], &word)) {
      fprintf(stderr, "open-sim: cannot read %s\n", argv[1]);
      return 1;
    }
    // The file travels as a text, which a zero byte would end early,
    // hiding what follows it from the daemon's checks.
    if (size_t zero = word.find('\0'); i == 1 && sendsFile && zero != std::string::npos) {
      fprintf(stderr, "open-sim: %s: a zero byte at %s\n", strcmp(argv[0], "load") == 0 ? "scenario" : "timeline file",
              sim::positionText(word, zero).c_str());
      return 2;
    }
    cJSON_AddItemToArray(words.get(), cJSON_CreateString(word.c_str()));
  }
  std::string payload = sim::printJson(words.get(), false), request(payload.size() + 64, '\0');
  wire::Writer w{request.data(), request.size()};
  w.u32(0);
  w.text(wire::kControlCall, sizeof wire::kControlCall - 1);
  w.u8(1);
  w.u8(wire::kInString);
  w.text(payload.data(), static_cast<uint32_t>(payload.size()));
  w.seal();
  // The daemon hangs up on a longer frame, which would read as no daemon;
  // only a file's contents can make one.
  if (w.len - 4 > wire::kMaxFrame) {
    fprintf(stderr, "open-sim: the file is too large to send: a request carries %u MiB at most\n", wire::kMaxFrame >> 20);
    return 2;
  }
  int fd = simConnect(socket, kControlTimeoutMs);
  std::string frame;
  if (fd < 0 || !simSendAll(fd, request.data(), w.len) || !receiveReply(fd, &frame)) {
    fprintf(stderr, "open-sim: no daemon answering at %s\n", simSocketPath(socket));
    return 1;
  }
  wire::Reader r{frame.data(), frame.size()};
  int status = static_cast<int32_t>(r.u32());
  r.u8();
  r.u8();
  uint32_t n = 0;
  const char *text = r.text(&n);
  if (text) fwrite(text, 1, n, status == 0 ? stdout : stderr);
  return status;
}

}  // namespace

int main(int argc, char **argv) {
  if (argc < 2) return usage();
  if (strcmp(argv[1], "serve") == 0) return serveCommand(argc - 2, argv + 2);
  if (strcmp(argv[1], "ctl") == 0) return ctlCommand(argc - 2, argv + 2);
  if (strcmp(argv[1], "scenarios") == 0 && argc == 2) return fputs(sim::readyScenarioList().c_str(), stdout), 0;
  if (strcmp(argv[1], "default-scenario") == 0) return printf("%s\n", sim::defaultSwitchDump().c_str()), 0;
  return usage();
}
