// Shared by the unit tests: environment, temporary folders, a logger, the simulator in a thread.
#ifndef TESTS_UNIT_TEST_SUPPORT_H
#define TESTS_UNIT_TEST_SUPPORT_H

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <optional>
#include <thread>

#include "frame/log.h"
#include "open_api.h"
#include "sim/sim_server.h"

// Variables set (null: unset) for a scope; the old values come back.
struct ScopedEnv {
  ScopedEnv(std::initializer_list<std::pair<const char *, const char *>> vars) {
    for (auto [name, value] : vars) {
      saved_.emplace_back(name, getenv(name) ? std::optional<std::string>(getenv(name)) : std::nullopt);
      value ? setenv(name, value, 1) : unsetenv(name);
    }
  }
  ~ScopedEnv() { for (auto &[name, old] : saved_) old ? setenv(name, old->c_str(), 1) : unsetenv(name); }
  std::vector<std::pair<const char *, std::optional<std::string>>> saved_;
};

inline std::string readText(const std::string &path) {
  std::ifstream f(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(f), {});
}
inline void writeText(const std::string &path, const std::string &text) {
  std::ofstream(path, std::ios::binary | std::ios::trunc) << text;
}

struct TempDir {
  char tmpl[20] = "/tmp/unit-XXXXXX";
  std::string path = std::string(mkdtemp(tmpl)) + "/";  // with the trailing "/"
  ~TempDir() { std::system(("rm -rf " + path).c_str()); }
  std::string file(const std::string &name) const { return path + name; }
};

// What a local user can leave in a name's place: a file (a folder, with `folder`) of ours with `mode`
// or of nobody; a link to `target`; a FIFO; a folder or a file whatever `folder` says; or nothing.
enum class Plant { Own, Mode, OtherOwner, Link, Fifo, Folder, File, Missing };
inline void plantAt(const std::string &path, Plant plant, mode_t mode, bool folder, const std::string &target,
                    const std::string &text) {
  bool asFolder = plant <= Plant::OtherOwner ? folder : plant == Plant::Folder;
  int failed = 0;
  unlink(path.c_str());
  if (plant == Plant::Missing) return;
  if (plant == Plant::Link) failed = symlink(target.c_str(), path.c_str());
  else if (plant == Plant::Fifo) failed = mkfifo(path.c_str(), 0600);
  else if (asFolder) failed = mkdir(path.c_str(), 0700);
  else writeText(path, text);
  if (plant <= Plant::OtherOwner) failed |= chmod(path.c_str(), mode);
  if (plant == Plant::OtherOwner) failed |= chown(path.c_str(), 65534, 65534);  // nobody
  ASSERT_EQ(failed, 0) << path;
}

struct LogCapture {  // the logger writing into a temporary folder at `level` for a scope
  explicit LogCapture(const char *level = "7") {
    writeText(levelFile, level);
    reopen();
  }
  ~LogCapture() { logClose(), logUseFiles(nullptr); }
  void reopen() {
    logUseFiles(&files);
    logOpen(LOG_TO_FILE, 8, "quill_cgi");
  }
  std::string text() const { return readText(log); }
  TempDir dir;
  std::string log = dir.file("k.log"), old = dir.file("k.log.old"), levelFile = dir.file("level");
  LogFiles files = {log.c_str(), old.c_str(), levelFile.c_str()};
};

struct Ctl { int status; std::string out; };  // as `open-sim ctl` would print them
inline Ctl ctl(sim::Sim &s, const std::vector<std::string> &words) {
  Ctl r;
  r.status = sim::handleControl(s, words, &r.out);
  return r;
}
inline sim::Arg simArg(wire::Kind kind, uint64_t num = 0, const std::string &text = "") {
  sim::Arg a;
  a.kind = kind;
  a.num = num;
  a.text = text;
  return a;
}
// A port's value as a one-number getter answers it; -1 when it refuses.
inline int64_t simRead(sim::Sim &s, const char *call, uint64_t port) {
  sim::Call c{call, {simArg(wire::kInNum, port), simArg(wire::kOutNum)}};
  return sim::handleCall(s, c) == 0 ? static_cast<int64_t>(c.args[1].num) : -1;
}

// The default switch, changed by control words before any client connects, served for one scope.
struct InProcessSim {
  explicit InProcessSim(const std::vector<std::vector<std::string>> &controls) {
    std::string text;
    sim::loadScenario(sim_, sim::defaultScenario(), &text);
    for (const auto &words : controls) EXPECT_EQ(sim::handleControl(sim_, words, &text), 0) << text;
    thread_ = std::thread([this] { sim::serve(sim_, socket_.c_str()); });
    // Ready when it answers (its socket exists before it listens); one that never does fails here.
    for (int waits = 0; waits < 3000 && !answers(); ++waits) usleep(10000);
    if (!answers()) ADD_FAILURE() << "the simulator on " << socket_ << " did not answer within 30 s";
  }
  ~InProcessSim() {
    sim::stopServing();
    thread_.join();
  }
  // A client registers locally while nobody listens: only an answered registration is connected.
  static bool answers() {
    openapiClientHandle_t client;
    bool answered = openapiClientRegister("unit", &client) == OPEN_E_NONE && client.connected;
    openapiClientTearDown(&client);
    return answered;
  }
  TempDir dir_;
  std::string socket_ = dir_.file("sim.sock");
  ScopedEnv env_{{{"OPEN_SIM_SOCKET", socket_.c_str()}}};
  sim::Sim sim_;
  std::thread thread_;
};

#endif
