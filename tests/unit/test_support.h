// Shared by the unit tests: environment, temporary folders, a logger that
// writes into one, the simulated switch in-process and in a thread.
#ifndef TESTS_UNIT_TEST_SUPPORT_H
#define TESTS_UNIT_TEST_SUPPORT_H

#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "frame/log.h"
#include "sim/client_io.h"
#include "sim/sim_server.h"

// Variables set (null: unset) for a scope; the old values come back.
class ScopedEnv {
 public:
  ScopedEnv(std::initializer_list<std::pair<const char *, const char *>> vars) {
    for (auto [name, value] : vars) {
      saved_.emplace_back(name, getenv(name) ? std::optional<std::string>(getenv(name)) : std::nullopt);
      set(name, value);
    }
  }
  ~ScopedEnv() {
    for (auto &[name, old] : saved_) set(name, old ? old->c_str() : nullptr);
  }
  static void set(const char *name, const char *value) { value ? setenv(name, value, 1) : unsetenv(name); }

 private:
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

// The logger writing into a temporary folder at `level` for a scope.
struct LogCapture {
  explicit LogCapture(const char *level = "7") {
    writeText(levelFile, level);
    reopen();
  }
  ~LogCapture() { logClose(), logUseFiles(nullptr); }
  // As a new process opens the files: after a test has written into them.
  void reopen() {
    logUseFiles(&files);
    logOpen(LOG_TO_FILE, 8, "quill_cgi");
  }
  std::string text() const { return readText(log); }
  TempDir dir;
  std::string log = dir.file("k.log"), old = dir.file("k.log.old"), levelFile = dir.file("level");
  LogFiles files = {log.c_str(), old.c_str(), levelFile.c_str()};
};

// A control word's status and output, as `open-sim ctl` would print them.
struct Ctl {
  int status;
  std::string out;
};
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

// The default simulated switch, changed by control words before any client
// connects, served from a thread for one scope.
class InProcessSim {
 public:
  explicit InProcessSim(const std::vector<std::vector<std::string>> &controls) {
    std::string text;
    sim::loadScenario(sim_, sim::defaultScenario(), &text);
    for (const auto &words : controls) EXPECT_EQ(sim::handleControl(sim_, words, &text), 0) << text;
    thread_ = std::thread([this] { sim::serve(sim_, socket_.c_str()); });
    // Ready when it answers (its socket file exists before it listens); one
    // that never answers fails the test here, not later as a puzzling reply.
    auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    bool answered;
    while (!(answered = answers(socket_.c_str())) && std::chrono::steady_clock::now() < deadline) usleep(10000);
    if (!answered) ADD_FAILURE() << "the simulator on " << socket_ << " did not answer within 30 s";
  }
  ~InProcessSim() {
    sim::stopServing();
    thread_.join();
  }

 private:
  static bool answers(const char *socket) {
    int fd = simConnect(socket, 1000);
    if (fd < 0) return false;
    char frame[4] = {}, reply[256];  // an empty frame is no call: answered without a change
    size_t length = 0;
    bool answered = simExchange(fd, frame, sizeof frame, reply, sizeof reply, &length);
    close(fd);
    return answered;
  }
  TempDir dir_;
  std::string socket_ = dir_.file("sim.sock");
  ScopedEnv env_{{{"OPEN_SIM_SOCKET", socket_.c_str()}}};
  sim::Sim sim_;
  std::thread thread_;
};

#endif
