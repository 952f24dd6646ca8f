// How MAC addresses travel in the MAC-locking routes: an 18-byte text
// taken from the body or the query string, or rendered in a reply.
#ifndef API_PML_PML_ARGS_H
#define API_PML_PML_ARGS_H

#include <stddef.h>
#include <stdint.h>

#include "api/fields.h"
#include "api/route_kit.h"

// Room for 17 characters and the terminator, in and out alike.
inline constexpr uint32_t kPmlMacSize = 18;

// The "macAddr=" field of the query string, percent-decoded, into a
// buffer of `size` bytes (at most size - 1 characters). The decoding is
// loose: any two characters after "%" are read as hexadecimal up to the
// first non-digit, and a decoded 0 byte ends the text early.
void getQueryMacAddr(const char *query, char *mac, size_t size);

inline constexpr kit::QueryReader kQueryMacAddr{getQueryMacAddr};

consteval kit::Arg macText(kit::Arg a) {
  a.mac = true;
  return a;
}
consteval kit::Arg bodyMac(kit::Key key) { return macText(kit::bodyBuffer(key, kPmlMacSize)); }
consteval kit::Arg queryMac() { return macText(kit::queryBuffer(fields::kMacAddr, kQueryMacAddr, kPmlMacSize)); }
consteval kit::Arg outMac(kit::Key key) { return macText(kit::outText(key, kPmlMacSize)); }

#endif
