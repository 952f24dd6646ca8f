// open-sim's event loop: many client processes at once on one Unix socket,
// each request answered in full before the next is read. A call held back
// by `ctl delay` holds back only its own connection: its reply waits, and
// that client's later requests wait behind it, while every other client is
// answered as usual.
#include "sim/sim_server.h"

#include <errno.h>
#include <poll.h>
#include <signal.h>
#include <stdio.h>
#include <string.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>

#include "sim/client_io.h"

namespace sim {

namespace {

volatile sig_atomic_t gStop = 0;

void onStopSignal(int) { gStop = 1; }

bool decodeArg(wire::Reader &r, Arg *a) {
  a->kind = static_cast<wire::Kind>(r.u8());
  if (a->kind < wire::kInNum || a->kind > wire::kInOutBlob) return false;
  if (a->kind == wire::kInNum || a->kind == wire::kOutNum) {
    a->width = r.u8();
    a->num = r.u64();
    return r.ok;
  }
  if (a->kind == wire::kInText || a->kind == wire::kOutText) a->size = r.u32();
  if (a->kind == wire::kOutText) return r.ok;
  uint32_t n = 0;
  const char *p = r.text(&n);
  if (!p) return false;
  a->text.assign(p, n);
  // A text input ends at its first zero byte, as the platform reads it.
  if (a->kind != wire::kInOutBlob) a->text.resize(strnlen(a->text.c_str(), a->text.size()));
  return true;
}

bool decodeCall(const std::string &frame, Call *c) {
  wire::Reader r{frame.data(), frame.size()};
  uint32_t n = 0;
  const char *name = r.text(&n);
  if (!name) return false;
  c->name.assign(name, n);
  uint8_t argc = r.u8();
  c->args.resize(argc);
  for (Arg &a : c->args)
    if (!decodeArg(r, &a)) return false;
  return r.ok;
}

std::string encodeReply(int result, const Call &c) {
  size_t most = 9;
  for (const Arg &a : c.args) most += 13 + a.text.size();
  std::string out(most, '\0');
  wire::Writer w{out.data(), out.size()};
  w.u32(0);
  w.u32(static_cast<uint32_t>(result));
  w.u8(static_cast<uint8_t>(c.args.size()));
  for (const Arg &a : c.args) {
    if (a.isInput()) continue;
    w.u8(a.written);
    if (a.written && a.kind == wire::kOutNum) w.u64(a.num);
    else if (a.written) w.text(a.text.data(), static_cast<uint32_t>(a.text.size()));
  }
  w.seal();
  out.resize(w.len);
  return out;
}

std::string encodeControlReply(int status, const std::string &text) {
  Call c;
  c.args.push_back({.kind = wire::kOutText, .text = text, .written = true});
  return encodeReply(status, c);
}

std::vector<std::string> decodeWords(const Call &c) {
  std::vector<std::string> words;
  if (c.args.size() != 1) return words;
  Json arr(cJSON_Parse(c.args[0].text.c_str()));
  const cJSON *w = nullptr;
  cJSON_ArrayForEach(w, arr.get())
    if (cJSON_IsString(w)) words.push_back(w->valuestring);
  return words;
}

// The reply, and how long to hold it: the call is answered from the state
// as it arrives, only sent late.
std::string answer(Sim &s, const std::string &frame, int64_t *delayMs) {
  Call c;
  *delayMs = 0;
  if (!decodeCall(frame, &c)) return encodeControlReply(OPEN_E_PARAM, "malformed request\n");
  if (c.name == wire::kControlCall) {
    std::string out;
    int status = handleControl(s, decodeWords(c), &out);
    // The client refuses a longer frame, which would read as no daemon.
    if (out.size() + 64 > wire::kMaxFrame)
      return encodeControlReply(1, "open-sim: the answer is too large to send: a reply carries " +
                                       std::to_string(wire::kMaxFrame >> 20) + " MiB at most\n");
    return encodeControlReply(status, out);
  }
  int result = handleCall(s, c);
  *delayMs = takeDelay(s, c.name);
  return encodeReply(result, c);
}

struct Client {
  int fd;
  std::string in;
  std::string held;  // a delayed reply
  int64_t dueMs = 0; // when to send it, in machine time
};

int listenOn(const char *path) {
  sockaddr_un addr = {};
  addr.sun_family = AF_UNIX;
  if (strlen(path) >= sizeof addr.sun_path) return -1;
  strncpy(addr.sun_path, path, sizeof addr.sun_path - 1);
  int fd = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (fd < 0) return -1;
  unlink(path);
  // Whoever reaches the socket drives the switch and names the files it
  // writes: only the simulator's user and group (the web server's user is a
  // member) may connect. The mask is set before bind, so the socket never
  // exists with a wider mode.
  mode_t mask = umask(0117);
  bool bound = bind(fd, reinterpret_cast<sockaddr *>(&addr), sizeof addr) == 0;
  umask(mask);
  if (!bound || listen(fd, 256) != 0) {
    close(fd);
    return -1;
  }
  return fd;
}

// Answers the complete frames read so far, until one is held. False when
// the client misbehaves or is gone.
bool answerFrames(Sim &s, Client &c) {
  while (c.held.empty() && c.in.size() >= 4) {
    uint32_t len = 0;
    memcpy(&len, c.in.data(), 4);
    if (len > wire::kMaxFrame) return false;
    if (c.in.size() < 4 + len) break;
    int64_t delayMs = 0;
    std::string reply = answer(s, c.in.substr(4, len), &delayMs);
    c.in.erase(0, 4 + len);
    if (delayMs > 0) {
      c.held = std::move(reply);
      c.dueMs = machineMonotonicMs() + delayMs;
    } else if (!simSendAll(c.fd, reply.data(), reply.size())) {
      return false;
    }
  }
  return true;
}

// Reads what is available and answers it.
bool serviceClient(Sim &s, Client &c) {
  char buf[65536];
  ssize_t k = recv(c.fd, buf, sizeof buf, MSG_DONTWAIT);
  if (k == 0 || (k < 0 && errno != EAGAIN && errno != EINTR)) return false;
  if (k > 0) c.in.append(buf, static_cast<size_t>(k));
  return answerFrames(s, c);
}

// Sends a held reply that is due, then goes on with what waited behind it.
bool releaseHeld(Sim &s, Client &c, int64_t nowMs) {
  if (c.held.empty() || c.dueMs > nowMs) return true;
  std::string reply = std::move(c.held);
  c.held.clear();
  return simSendAll(c.fd, reply.data(), reply.size()) && answerFrames(s, c);
}

// Until the next held reply is due, at most the loop's usual half second.
int pollTimeoutMs(const std::vector<Client> &clients, int64_t nowMs) {
  int64_t wait = 500;
  for (const Client &c : clients)
    if (!c.held.empty()) wait = std::min(wait, std::max<int64_t>(0, c.dueMs - nowMs));
  return static_cast<int>(wait);
}

}  // namespace

void stopServing() { gStop = 1; }

int serve(Sim &s, const char *path) {
  gStop = 0;
  int lfd = listenOn(path);
  if (lfd < 0) {
    fprintf(stderr, "open-sim: cannot listen on %s: %s\n", path, strerror(errno));
    return 1;
  }
  signal(SIGPIPE, SIG_IGN);
  signal(SIGINT, onStopSignal);
  signal(SIGTERM, onStopSignal);
  std::vector<Client> clients;
  std::vector<pollfd> fds;
  while (!gStop) {
    fds.assign(1, {lfd, POLLIN, 0});
    // A client whose reply is held is not read: its next request waits.
    for (const Client &c : clients) fds.push_back({c.fd, static_cast<short>(c.held.empty() ? POLLIN : 0), 0});
    if (poll(fds.data(), fds.size(), pollTimeoutMs(clients, machineMonotonicMs())) < 0 && errno != EINTR) break;
    int64_t now = machineMonotonicMs();
    for (size_t i = fds.size(); i-- > 1;) {
      Client &c = clients[i - 1];
      // A client gone while its reply is held (one that timed out) is
      // dropped: its hang-up would otherwise wake the loop until the reply
      // is due.
      bool gone = !c.held.empty() && (fds[i].revents & (POLLHUP | POLLERR));
      bool ok = !gone && (c.held.empty() ? !fds[i].revents || serviceClient(s, c) : releaseHeld(s, c, now));
      if (!ok) {
        close(c.fd);
        clients.erase(clients.begin() + static_cast<long>(i - 1));
      }
    }
    if (fds[0].revents & POLLIN) {
      int fd = accept4(lfd, nullptr, nullptr, SOCK_CLOEXEC);
      if (fd >= 0) {
        // A client that stops reading must not stall everyone else.
        timeval tv = {2, 0};
        setsockopt(fd, SOL_SOCKET, SO_SNDTIMEO, &tv, sizeof tv);
        clients.push_back({fd, {}, {}, 0});
      }
    }
  }
  for (const Client &c : clients) close(c.fd);
  close(lfd);
  unlink(path);
  return 0;
}

}  // namespace sim
