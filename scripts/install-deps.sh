#!/usr/bin/env bash
# Installs what building, testing and serving need, from Debian's packages,
# when it is not there yet.
#   install-deps.sh          for this machine
#   install-deps.sh arm64    also the aarch64 cross build: cross compiler, qemu
#                            user emulation and the arm64 libraries, runtime included
#   install-deps.sh bench    also the benchmarks: wrk, Google Benchmark, and the
#                            aarch64 cross compiler for the binary sizes
set -euo pipefail

packages=(g++ cmake make python3 libcjson-dev libgtest-dev libfcgi-dev lighttpd curl)
if [ "${1:-}" = arm64 ] || [ "${1:-}" = bench ]; then
  packages+=(g++-aarch64-linux-gnu gcc-aarch64-linux-gnu binutils-aarch64-linux-gnu qemu-user
             libcjson-dev:arm64 libgtest-dev:arm64 libfcgi-dev:arm64 libstdc++6:arm64)
fi
if [ "${1:-}" = bench ]; then
  packages+=(wrk libbenchmark-dev)
fi
# "fuzz": what `make fuzz` needs besides, clang and its libFuzzer runtime.
[ "${1:-}" = "fuzz" ] && packages+=(clang-14 libclang-rt-14-dev)

# Once a second architecture is installed, a bare name of a package present in
# both is ambiguous to dpkg; the native qualifier settles it.
native=$(dpkg --print-architecture)
installed() { dpkg -s "$1" >/dev/null 2>&1 || dpkg -s "$1:$native" >/dev/null 2>&1; }

missing=()
for p in "${packages[@]}"; do
  installed "$p" || missing+=("$p")
done
[ ${#missing[@]} -eq 0 ] && exit 0

echo "installing: ${missing[*]}"
sudo=""
if [ "$(id -u)" -ne 0 ]; then
  command -v sudo >/dev/null || { echo "need root to install: ${missing[*]}" >&2; exit 1; }
  sudo="sudo"
fi
if { [ "${1:-}" = arm64 ] || [ "${1:-}" = bench ]; } && ! dpkg --print-foreign-architectures | grep -qx arm64; then
  $sudo dpkg --add-architecture arm64
fi
export DEBIAN_FRONTEND=noninteractive
$sudo apt-get update -q
$sudo apt-get install -y -q --no-install-recommends "${missing[@]}"
