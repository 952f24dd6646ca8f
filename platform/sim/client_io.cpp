#include "sim/client_io.h"

#include <errno.h>
#include <stdint.h>
#include <string.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <type_traits>

#include "sim/socket_path.h"

int simConnect(const char *explicitPath, int timeoutMs) {
  const char *path = simSocketPath(explicitPath);
  sockaddr_un addr = {};
  addr.sun_family = AF_UNIX;
  if (strlen(path) >= sizeof addr.sun_path) return -1;
  strncpy(addr.sun_path, path, sizeof addr.sun_path - 1);

  int fd = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (fd < 0) return -1;
  if (connect(fd, reinterpret_cast<sockaddr *>(&addr), sizeof addr) != 0) {
    close(fd);
    return -1;
  }
  timeval tv = {timeoutMs / 1000, (timeoutMs % 1000) * 1000};
  setsockopt(fd, SOL_SOCKET, SO_RCVTIMEO, &tv, sizeof tv);
  setsockopt(fd, SOL_SOCKET, SO_SNDTIMEO, &tv, sizeof tv);
  return fd;
}

// Sends a const buffer, or receives into one that is not, whole.
template <class Byte>
static bool whole(int fd, Byte *buf, size_t n) {
  while (n > 0) {
    ssize_t k = 0;
    if constexpr (std::is_const_v<Byte>) k = send(fd, buf, n, MSG_NOSIGNAL);
    else k = recv(fd, buf, n, 0);
    if (k < 0 && errno == EINTR) continue;
    if (k <= 0) return false;  // closed peer, or the socket's time-out
    buf += k;
    n -= static_cast<size_t>(k);
  }
  return true;
}

bool simSendAll(int fd, const char *buf, size_t n) { return whole(fd, buf, n); }
bool simRecvAll(int fd, char *buf, size_t n) { return whole(fd, buf, n); }

// The reply usually arrives whole in one segment: read what is there in
// one call and only then loop for the rest, so that a call costs one send
// and one receive.
bool simExchange(int fd, const char *request, size_t requestLen, char *reply, size_t cap, size_t *replyLen) {
  if (!simSendAll(fd, request, requestLen)) return false;
  size_t have = 0;
  uint32_t len = 0;
  while (have < 4 || have < 4 + static_cast<size_t>(len)) {
    ssize_t k = recv(fd, reply + have, cap - have, 0);
    if (k < 0 && errno == EINTR) continue;
    if (k <= 0) return false;  // closed peer, or the socket's time-out
    have += static_cast<size_t>(k);
    if (have >= 4) {
      memcpy(&len, reply, 4);
      if (len > cap - 4) return false;
    }
  }
  // A well-behaved service sends nothing beyond the one reply.
  if (have != 4 + static_cast<size_t>(len)) return false;
  memmove(reply, reply + 4, len);
  *replyLen = len;
  return true;
}
