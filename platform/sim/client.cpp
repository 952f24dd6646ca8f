// Client library of the simulated OpEN service: every call is one request
// and one reply over the process's single Unix-socket connection.
#include <stdio.h>
#include <string.h>
#include <unistd.h>

#include <type_traits>

#include "open_api.h"
#include "sim/client_io.h"
#include "sim/wire.h"

namespace {

constexpr int kCallTimeoutMs = 5000;
// Largest request or reply of an OpEN call (texts are at most a few KiB).
constexpr size_t kFrameBuf = 16384;

// A socket of -2 marks a handle whose connection broke: connecting it again
// without registering shows as `connected` 2 (see open_api.h).
constexpr int kBrokenSocket = -2;

bool ensureConnected(openapiClientHandle_t *client) {
  if (client->connected) return true;
  int fd = simConnect(nullptr, kCallTimeoutMs);
  if (fd < 0) return false;
  client->connected = client->sock == kBrokenSocket ? 2 : 1;
  client->sock = fd;
  return true;
}

void dropConnection(openapiClientHandle_t *client) {
  if (client->connected) close(client->sock);
  client->sock = kBrokenSocket;
  client->connected = 0;
}

// Marshalling by C type: values and const descriptors travel to the
// service, pointers are buffers it may fill.
void put(wire::Writer &w, uint32_t v) {
  w.u8(wire::kInNum);
  w.u8(4);
  w.u64(v);
}
void put(wire::Writer &w, const char *s) {
  w.u8(wire::kInString);
  w.text(s, static_cast<uint32_t>(strlen(s)));
}
void put(wire::Writer &w, const open_buffdesc *d) {
  w.u8(wire::kInText);
  w.u32(d->size);
  w.text(d->pstart, d->pstart ? static_cast<uint32_t>(strnlen(d->pstart, d->size)) : 0);
}
void put(wire::Writer &w, open_buffdesc *d) {
  w.u8(wire::kOutText);
  w.u32(d->size);
}
// A numeric output is a writable unsigned integer. The const test keeps text
// arguments out where char is unsigned (aarch64): const char would pass.
template <class T>
concept NumericOut = std::is_unsigned_v<T> && !std::is_const_v<T>;
static_assert(!NumericOut<const unsigned char>, "text arguments must not pass for numeric outputs");

template <NumericOut T>
void put(wire::Writer &w, T *p) {
  w.u8(wire::kOutNum);
  w.u8(sizeof(T));
  w.u64(*p);
}
template <class T>
  requires(std::is_class_v<T> && !std::is_const_v<T>)
void put(wire::Writer &w, T *record) {
  w.u8(wire::kInOutBlob);
  w.text(reinterpret_cast<const char *>(record), sizeof(T));
}

// Unmarshalling: inputs were not echoed back; outputs come with a flag
// telling whether the service wrote them.
template <class T>
  requires(!std::is_pointer_v<T> || std::is_const_v<std::remove_pointer_t<T>>)
void take(wire::Reader &, T) {}

void take(wire::Reader &r, open_buffdesc *d) {
  if (!r.u8()) return;
  uint32_t n = 0;
  const char *p = r.text(&n);
  if (!p || !d->pstart || d->size == 0) return;
  if (n > d->size - 1) n = d->size - 1;
  memcpy(d->pstart, p, n);
  d->pstart[n] = '\0';
}
template <NumericOut T>
void take(wire::Reader &r, T *p) {
  if (r.u8()) *p = static_cast<T>(r.u64());
}
template <class T>
  requires(std::is_class_v<T> && !std::is_const_v<T>)
void take(wire::Reader &r, T *record) {
  if (!r.u8()) return;
  uint32_t n = 0;
  const char *p = r.text(&n);
  if (p && n == sizeof(T)) memcpy(record, p, sizeof(T));
}

template <class... A>
int simCall(const char *name, openapiClientHandle_t *client, A... args) {
  char buf[kFrameBuf];
  wire::Writer w{buf, sizeof buf};
  w.u32(0);
  w.text(name, static_cast<uint32_t>(strlen(name)));
  w.u8(sizeof...(A));
  (put(w, args), ...);
  w.seal();
  if (!w.ok || !ensureConnected(client)) return OPEN_E_FAIL;

  size_t replyLen = 0;
  if (!simExchange(client->sock, buf, w.len, buf, sizeof buf, &replyLen)) {
    dropConnection(client);
    return OPEN_E_FAIL;
  }
  wire::Reader r{buf, replyLen};
  int32_t result = static_cast<int32_t>(r.u32());
  if (r.u8() != sizeof...(A)) return OPEN_E_FAIL;
  (take(r, args), ...);
  return r.ok ? result : OPEN_E_FAIL;
}

}  // namespace

extern "C" {

int openapiClientRegister(const char *clientName, openapiClientHandle_t *client) {
  if (!client) return OPEN_E_PARAM;
  memset(client, 0, sizeof *client);
  client->sock = -1;
  snprintf(client->name, sizeof client->name, "%s", clientName ? clientName : "");
  // Registration is local when the service is not up yet; the caller's
  // connectivity check is what waits for it.
  if (!ensureConnected(client)) return OPEN_E_NONE;
  return simCall("openapiClientRegister", client, static_cast<const char *>(client->name));
}

int openapiClientTearDown(openapiClientHandle_t *client) {
  if (!client || !client->connected) return OPEN_E_NONE;
  int rc = simCall("openapiClientTearDown", client);
  dropConnection(client);
  return rc;
}

int l7proc_crashlog_register(const char *, uint32_t) { return OPEN_E_NONE; }

#define OPEN_CALL(name, params, args) \
  int name params { return simCall args_with_name(name, args); }
#define args_with_name(name, args) (#name, OPEN_UNPACK args)
#define OPEN_UNPACK(...) __VA_ARGS__
#include "open_calls.inc"
#undef OPEN_CALL

}  // extern "C"
