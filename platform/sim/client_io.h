#ifndef PLATFORM_SIM_CLIENT_IO_H
#define PLATFORM_SIM_CLIENT_IO_H

#include <stddef.h>

// Connects to the daemon's socket (see simSocketPath); -1 when unreachable.
// Sends and receives on the socket give up after timeoutMs.
int simConnect(const char *explicitPath, int timeoutMs);

// The functions below wait as long as the socket's own send and receive
// time-outs allow (simConnect's, or what the daemon sets on accepting).

// Sends one framed request and receives one framed reply into `reply`
// (its payload, without the length). False on any failure, including a
// reply larger than `cap` or a peer that closed.
bool simExchange(int fd, const char *request, size_t requestLen, char *reply, size_t cap, size_t *replyLen);

// Receives or sends exactly n bytes.
bool simRecvAll(int fd, char *buf, size_t n);
bool simSendAll(int fd, const char *buf, size_t n);

#endif
