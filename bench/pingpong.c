/* The bare Unix-socket round trip between two processes: a parent sends a
 * request of REQ bytes, a forked child answers REPLY bytes, nothing else.
 * Sizes default to those of a link-state call on the wire. Prints the mean
 * microseconds per round trip of each batch. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

static double nowUs(void) {
  struct timespec t;
  clock_gettime(CLOCK_MONOTONIC, &t);
  return t.tv_sec * 1e6 + t.tv_nsec / 1e3;
}

static int readFull(int fd, char *buf, size_t n) {
  while (n > 0) {
    ssize_t k = read(fd, buf, n);
    if (k <= 0) return -1;
    buf += k;
    n -= (size_t)k;
  }
  return 0;
}

static void serveReplies(int fd, size_t req, size_t reply) {
  char in[4096], out[4096];
  memset(out, 7, sizeof out);
  while (readFull(fd, in, req) == 0)
    if (write(fd, out, reply) != (ssize_t)reply) break;
  _exit(0);
}

int main(int argc, char **argv) {
  int calls = argc > 1 ? atoi(argv[1]) : 20000;
  int batches = argc > 2 ? atoi(argv[2]) : 1;
  size_t req = argc > 3 ? (size_t)atoi(argv[3]) : 50;
  size_t reply = argc > 4 ? (size_t)atoi(argv[4]) : 18;
  if (req == 0 || req > 4096 || reply == 0 || reply > 4096) return 2;
  int sv[2];
  if (socketpair(AF_UNIX, SOCK_STREAM, 0, sv) != 0) return 1;
  pid_t child = fork();
  if (child == 0) {
    close(sv[0]);
    serveReplies(sv[1], req, reply);
  }
  close(sv[1]);
  char out[4096], in[4096];
  memset(out, 5, sizeof out);
  for (int b = 0; b < batches; ++b) {
    double start = nowUs();
    for (int i = 0; i < calls; ++i)
      if (write(sv[0], out, req) != (ssize_t)req || readFull(sv[0], in, reply) != 0) return 1;
    printf("%.3f\n", (nowUs() - start) / calls);
  }
  close(sv[0]);
  waitpid(child, NULL, 0);
  return 0;
}
