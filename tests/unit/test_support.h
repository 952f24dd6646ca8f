// Shared fixtures of the unit tests: environment, temporary folders and an
// in-process simulated switch.
#ifndef TESTS_UNIT_TEST_SUPPORT_H
#define TESTS_UNIT_TEST_SUPPORT_H

#include <gtest/gtest.h>
#include <stdio.h>
#include <stdlib.h>
#include <unistd.h>

#include <chrono>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "open_api.h"
#include "sim/sim.h"
#include "sim/sim_server.h"

// Sets variables for one scope and puts the old values back.
class ScopedEnv {
 public:
  ScopedEnv(std::initializer_list<std::pair<const char *, const char *>> vars) {
    for (auto &[name, value] : vars) {
      const char *old = getenv(name);
      saved_.push_back({name, old ? std::string(old) : std::string(), old != nullptr});
      if (value) setenv(name, value, 1);
      else unsetenv(name);
    }
  }
  ~ScopedEnv() {
    for (auto &s : saved_) {
      if (s.present) setenv(s.name.c_str(), s.value.c_str(), 1);
      else unsetenv(s.name.c_str());
    }
  }

 private:
  struct Saved {
    std::string name, value;
    bool present;
  };
  std::vector<Saved> saved_;
};

class TempDir {
 public:
  TempDir() {
    char tmpl[] = "/tmp/unit-XXXXXX";
    path_ = mkdtemp(tmpl);
  }
  ~TempDir() { std::system(("rm -rf " + path_).c_str()); }
  const std::string &path() const { return path_; }
  std::string file(const std::string &name) const { return path_ + "/" + name; }

 private:
  std::string path_;
};

inline std::string readText(const std::string &path) {
  std::ifstream f(path, std::ios::binary);
  std::ostringstream ss;
  ss << f.rdbuf();
  return ss.str();
}

inline void writeText(const std::string &path, const std::string &text) {
  std::ofstream f(path, std::ios::binary | std::ios::trunc);
  f << text;
}

// The simulated switch served from a thread of the test process, with
// OPEN_SIM_SOCKET pointing at it.
class InProcessSim {
 public:
  InProcessSim() : env_({{"OPEN_SIM_SOCKET", nullptr}}) {
    std::string error;
    sim::loadScenario(sim_, sim::defaultScenario(), &error);
    socket_ = dir_.file("sim.sock");
    setenv("OPEN_SIM_SOCKET", socket_.c_str(), 1);
    thread_ = std::thread([this] { sim::serve(sim_, socket_.c_str()); });
    for (int i = 0; i < 500 && access(socket_.c_str(), F_OK) != 0; ++i)
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  ~InProcessSim() {
    sim::stopServing();
    thread_.join();
  }
  // Only between calls: the server thread owns the state while serving.
  std::vector<std::string> control(std::vector<std::string> words, std::string *out = nullptr) {
    std::string text;
    sim::handleControl(sim_, words, &text);
    if (out) *out = text;
    return words;
  }

 private:
  TempDir dir_;
  ScopedEnv env_;
  sim::Sim sim_;
  std::string socket_;
  std::thread thread_;
};

#endif
