// Message format between the simulated OpEN client library and open-sim.
// One request and one reply per call, framed by a 32-bit length. Both ends
// run on the same host, so fields travel in host byte order.
#ifndef PLATFORM_SIM_WIRE_H
#define PLATFORM_SIM_WIRE_H

#include <stddef.h>
#include <stdint.h>
#include <string.h>

namespace wire {

enum Kind : uint8_t {
  kInNum = 1,     // width, value
  kInText = 2,    // descriptor size, text length, text
  kInString = 3,  // text length, text (a plain C string argument)
  kOutNum = 4,    // width, preset value
  kOutText = 5,   // buffer size
  kInOutBlob = 6, // length, bytes (a record the platform reads and rewrites)
};

// The control channel of `open-sim ctl` uses this call name.
inline constexpr char kControlCall[] = "#ctl";
inline constexpr uint32_t kMaxFrame = 64u << 20;

// Appends to a caller-provided buffer; `ok` turns false once it overflows.
struct Writer {
  char *buf;
  size_t cap;
  size_t len = 0;
  bool ok = true;

  void bytes(const void *p, size_t n) {
    if (!ok || n > cap - len) {
      ok = false;
      return;
    }
    memcpy(buf + len, p, n);
    len += n;
  }
  void u8(uint8_t v) { bytes(&v, 1); }
  void u32(uint32_t v) { bytes(&v, 4); }
  void u64(uint64_t v) { bytes(&v, 8); }
  void text(const char *p, uint32_t n) {
    u32(n);
    bytes(p, n);
  }
  // Writes the length of what follows the first four bytes into them.
  void seal() {
    uint32_t n = static_cast<uint32_t>(len - 4);
    if (ok) memcpy(buf, &n, 4);
  }
};

// Reads from a received frame; `ok` turns false on a short frame.
struct Reader {
  const char *buf;
  size_t len;
  size_t pos = 0;
  bool ok = true;

  const char *take(size_t n) {
    if (!ok || n > len - pos) {
      ok = false;
      return nullptr;
    }
    const char *p = buf + pos;
    pos += n;
    return p;
  }
  template <class T>
  T number() {
    T v = 0;
    if (const char *p = take(sizeof v)) memcpy(&v, p, sizeof v);
    return v;
  }
  uint8_t u8() { return number<uint8_t>(); }
  uint32_t u32() { return number<uint32_t>(); }
  uint64_t u64() { return number<uint64_t>(); }
  // Returns the text's bytes (not terminated) and stores its length.
  const char *text(uint32_t *n) {
    *n = u32();
    return take(*n);
  }
};

}  // namespace wire

#endif
