/* The OpEN client calls this program makes, declared in one place.
 *
 * Every call takes the client handle first (openapiClientRegister excepts,
 * it fills the handle), returns 0 on success or a small negative result,
 * and passes text through buffer descriptors whose size counts the
 * terminating zero. A descriptor declared const is read by the platform;
 * a non-const one is a caller-owned buffer the platform writes into.
 *
 * The program links either the simulated service's client library or the
 * switch's own; nothing above this header knows which. */
#ifndef PLATFORM_OPEN_API_H
#define PLATFORM_OPEN_API_H

#include <poll.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

enum {
  OPEN_E_NONE = 0,
  OPEN_E_FAIL = -1,
  OPEN_E_PARAM = -22,
  OPEN_E_EXISTS = -24,
  OPEN_E_UNAVAIL = -28,
  OPEN_E_NOT_FOUND = -29,
};

enum {
  OPEN_INTF_TYPE_PHY = 0,
  OPEN_INTF_TYPE_CPU = 1,
  OPEN_INTF_TYPE_LAG = 2,
  OPEN_INTF_TYPE_VLAN = 3,
};

typedef struct {
  uint32_t size;
  char *pstart;
} open_buffdesc;

typedef struct {
  int32_t sock;
  uint32_t connected;
  char name[100];
} openapiClientHandle_t;

typedef struct {
  int32_t release;
  int32_t version;
  int32_t maint_level;
  int32_t build_num;
} open_revision_data_t;

/* One sample of a port's power-saving (LPI) history. The platform reads
 * and rewrites the whole record; `next` is its cursor to the following
 * sample, 0 when there is none. */
typedef struct {
  uint16_t sampleNo;
  uint32_t sampleTime;
  uint16_t percentLpiTime;
  uint16_t percentLpiTimeTotal;
  uint64_t next;
} open_pwr_sav_sample_t;

int openapiClientRegister(const char *clientName, openapiClientHandle_t *client);
int openapiClientTearDown(openapiClientHandle_t *client);
int l7proc_crashlog_register(const char *processName, uint32_t flags);

/* Not an OpEN call: whether a registered handle lost its connection to the
 * service (the service restarted or went away), so that a program serving
 * many requests registers again before the next request's calls. A call
 * that finds the connection broken leaves `connected` 0; a later call that
 * connects again by itself, unregistered, leaves it 2; a service gone
 * between calls leaves its end of the socket readable, as nothing else
 * arrives unasked. The check costs one poll of the socket, which also
 * looks at a descriptor of the caller's own (`other`, ignored when
 * negative): `*otherReadable` is set when it has something to read, or when
 * the poll failed and nothing is known. */
static inline int openapiClientConnectionLost(const openapiClientHandle_t *client, int other, int *otherReadable) {
  struct pollfd fds[2] = {{client->sock, POLLIN, 0}, {other, POLLIN, 0}};
  int n = poll(fds, 2, 0);
  *otherReadable = n < 0 || fds[1].revents != 0;
  return client->connected != 1 || n < 0 || fds[0].revents != 0;
}

#define OPEN_CALL(name, params, args) int name params;
#include "open_calls.inc"
#undef OPEN_CALL

#ifdef __cplusplus
}
#endif

#endif
