#!/usr/bin/env bash
# Installs what building, testing and serving need, from Debian's packages,
# when it is not there yet.
#   install-deps.sh          for this machine
#   install-deps.sh arm64    also the aarch64 cross build: cross compiler, qemu
#                            user emulation and the arm64 libraries, runtime included
#   install-deps.sh bench    also the benchmarks: wrk, Google Benchmark, and the
#                            aarch64 cross compiler for the binary sizes
#   install-deps.sh browser  also Chromium, for the explorer's browser test;
#                            a machine that cannot install it only warns
#   install-deps.sh package  also the Debian packages: what arm64 installs, and
#                            dpkg-shlibdeps, lintian and file to build and check them;
#                            systemd (tmpfiles, systemd-analyze), adduser and ip for
#                            the lifecycle suite, which installs them on an overlay
# Every mode also installs the npm packages of package-lock.json (the API
# explorer, the OpenAPI validator, the browser driver) into node_modules.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)

packages=(g++ cmake make python3 libcjson-dev libgtest-dev libfcgi-dev lighttpd curl)
# A machine may bring its own Node.js, with npm inside it.
command -v node >/dev/null || packages+=(nodejs)
command -v npm >/dev/null || packages+=(npm)
case "${1:-}" in arm64|bench|package) cross=1 ;; *) cross=0 ;; esac
if [ $cross = 1 ]; then
  packages+=(g++-aarch64-linux-gnu gcc-aarch64-linux-gnu binutils-aarch64-linux-gnu qemu-user
             libcjson-dev:arm64 libgtest-dev:arm64 libfcgi-dev:arm64 libstdc++6:arm64)
fi
if [ "${1:-}" = bench ]; then
  packages+=(wrk libbenchmark-dev)
fi
# "fuzz": what `make fuzz` needs besides, clang and its libFuzzer runtime.
[ "${1:-}" = "fuzz" ] && packages+=(clang-14 libclang-rt-14-dev)
[ "${1:-}" = "package" ] && packages+=(dpkg-dev lintian file systemd adduser iproute2)

# Once a second architecture is installed, a bare name of a package present in
# both is ambiguous to dpkg; the native qualifier settles it.
native=$(dpkg --print-architecture)
installed() { dpkg -s "$1" >/dev/null 2>&1 || dpkg -s "$1:$native" >/dev/null 2>&1; }

# The lock file's packages, again only when the lock file changed.
npm_packages() {
  local stamp="$root/node_modules/.installed-lock" want
  want=$(sha256sum "$root/package-lock.json" | cut -d' ' -f1)
  [ "$(cat "$stamp" 2>/dev/null)" = "$want" ] && return 0
  (cd "$root" && npm ci --ignore-scripts --no-audit --no-fund --loglevel=error)
  echo "$want" > "$stamp"
}

sudo=""
as_root() {
  if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || { echo "need root to install: $*" >&2; return 1; }
    sudo="sudo"
  fi
}

browser() {
  command -v chromium >/dev/null && return 0
  echo "installing: chromium"
  as_root chromium || return 0
  export DEBIAN_FRONTEND=noninteractive
  { $sudo apt-get update -q && $sudo apt-get install -y -q --no-install-recommends chromium; } ||
    echo "chromium could not be installed: the explorer's browser test will be skipped" >&2
}

missing=()
for p in "${packages[@]}"; do
  installed "$p" || missing+=("$p")
done
if [ ${#missing[@]} -eq 0 ]; then
  npm_packages
  [ "${1:-}" = browser ] && browser
  exit 0
fi

echo "installing: ${missing[*]}"
as_root "${missing[@]}" || exit 1
if [ $cross = 1 ] && ! dpkg --print-foreign-architectures | grep -qx arm64; then
  $sudo dpkg --add-architecture arm64
fi
export DEBIAN_FRONTEND=noninteractive
$sudo apt-get update -q
$sudo apt-get install -y -q --no-install-recommends "${missing[@]}"
npm_packages
[ "${1:-}" = browser ] && browser
exit 0
