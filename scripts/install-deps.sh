#!/usr/bin/env bash
# Installs what building, testing and serving need, from Debian's packages, when it is not there yet: every
# command a mode runs (the table below), and the Build-Depends of debian/control read under the build
# profiles of the mode. apt-get runs only when a command is not found or dpkg-checkbuilddeps finds
# something missing, with one `apt-get update` first.
#   install-deps.sh          building, and the unit tests (make build)
#   install-deps.sh e2e      also the end-to-end suites and the package checks: the web server, clients,
#                            lintian, systemd-tmpfiles, ip (make test, make run)
#   install-deps.sh package  also the arm64 cross build of the packages (make package)
#   install-deps.sh arm64    also the aarch64 cross build with its tests, run under qemu (make test-arm64)
#   install-deps.sh bench    also the benchmarks: wrk, Google Benchmark, and the aarch64 cross build
#   install-deps.sh fuzz     also clang and its libFuzzer runtime
#   install-deps.sh piuparts piuparts, for `make piuparts`
#   install-deps.sh system   mmdebstrap, qemu-system-aarch64, qemu-user-static, ssh: `make test-system`
#   install-deps.sh browser  also Chromium, for the explorer's browser test; a machine that cannot
#                            install it only warns
# Every mode also installs the npm packages of package-lock.json (the API explorer, the OpenAPI
# validator, the browser driver) into node_modules, where npm is installed (e2e brings it).
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
profile=pkg.interfaces-v2

# Each mode: the builds it needs, as "host-architecture build-profiles" ("-": none), and the groups of
# the command table it runs.
case "${1:-}" in
  "") builds=("- -"); groups="build" ;;
  e2e) builds=("- $profile.e2e"); groups="build e2e" ;;
  package) builds=("- nocheck" "arm64 cross,nocheck"); groups="build package cross" ;;
  arm64) builds=("- $profile.e2e" "arm64 cross,$profile.arm64"); groups="build e2e cross arm64" ;;
  bench) builds=("- $profile.e2e,$profile.bench" "arm64 cross,nocheck"); groups="build e2e cross bench" ;;
  fuzz) builds=("- $profile.fuzz"); groups="build fuzz" ;;
  browser) builds=("- $profile.browser"); groups="build browser" ;;
  piuparts) builds=("- $profile.piuparts"); groups="build piuparts" ;;
  system) builds=("- $profile.system"); groups="build system" ;;
  *) echo "usage: $0 [e2e | package | arm64 | bench | fuzz | browser | piuparts | system]" >&2; exit 2 ;;
esac

# The commands the make targets run, each with the package that brings it, by group. Build-Depends cannot
# say all of it: Debian leaves the compilers (build-essential) and the cross toolchain out of it, and
# make test also packs, checks and installs the packages. A command not found installs its package.
commands="
build               make make
build               gcc gcc
build               g++ g++
build               cmake cmake
build               dpkg-checkbuilddeps dpkg-dev
e2e,package         python3 python3
e2e,package         lintian lintian
e2e                 lighttpd lighttpd
e2e                 curl curl
e2e                 node nodejs
e2e                 npm npm
e2e                 systemd-tmpfiles systemd
e2e                 systemd-analyze systemd
e2e                 ip iproute2
e2e                 ps procps
package             git git
package             dpkg-buildpackage dpkg-dev
package             dh debhelper
cross               aarch64-linux-gnu-gcc crossbuild-essential-arm64
cross               aarch64-linux-gnu-g++ crossbuild-essential-arm64
cross               qemu-aarch64 qemu-user
arm64               aarch64-linux-gnu-readelf binutils-aarch64-linux-gnu
bench               wrk wrk
bench               taskset util-linux
fuzz                clang-14 clang-14
fuzz                clang++-14 clang-14
browser             chromium chromium
piuparts            piuparts piuparts
system              mmdebstrap mmdebstrap
system              arch-test arch-test
system              qemu-aarch64-static qemu-user-static
system              qemu-system-aarch64 qemu-system-arm
system              qemu-img qemu-utils
system              ssh openssh-client
system              ssh-keygen openssh-client
system              mkfs.ext4 e2fsprogs
system              curl curl
"

# The packages of the mode's commands that are not found; the system's own folders count, whatever the
# caller's PATH (lighttpd lives in /usr/sbin).
missing_commands() {
  local in command package group
  while read -r in command package; do
    for group in ${in//,/ }; do
      [[ " $groups " == *" $group "* ]] || continue
      PATH="$PATH:/usr/local/sbin:/usr/sbin:/sbin" command -v "$command" >/dev/null || echo "$package"
      break
    done
  done <<< "$commands" | sort -u
}

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
export DEBIAN_FRONTEND=noninteractive
updated=""
apt_update() {
  [ -n "$updated" ] || $sudo apt-get update -q
  updated=yes
}

# dpkg-checkbuilddeps arguments of a build.
check_args() {
  local arch=$1 profiles=$2 args=()
  [ "$arch" = - ] || args+=(-a "$arch")
  [ "$profiles" = - ] || args+=(-P "$profiles")
  echo "${args[@]}"
}

# Only browser's own failure to install is no stop: the browser test skips then.
cannot_install() {
  [ "${1:-}" = browser ] || exit 1
  echo "chromium could not be installed: the explorer's browser test will be skipped" >&2
}

# The commands first: dpkg-checkbuilddeps is one of them.
mapfile -t packages < <(missing_commands)
if [ ${#packages[@]} -gt 0 ]; then
  echo "installing: ${packages[*]}"
  if ! as_root "${packages[*]}" || ! { apt_update && $sudo apt-get install -y -q --no-install-recommends "${packages[@]}"; }
  then
    cannot_install "${1:-}"
  fi
fi

for build in "${builds[@]}"; do
  read -r arch profiles <<< "$build"
  # shellcheck disable=SC2046
  missing=$(cd "$root" && dpkg-checkbuilddeps $(check_args "$arch" "$profiles") 2>&1) && continue
  echo "installing: ${missing#*: }"
  if ! as_root "$missing" || ! {
      if [ "$arch" != - ] && ! dpkg --print-foreign-architectures | grep -qx "$arch"; then
        $sudo dpkg --add-architecture "$arch"
        updated=""
      fi
      apt_update
      # shellcheck disable=SC2046
      $sudo apt-get build-dep -y -q --no-install-recommends $(check_args "$arch" "$profiles") "$root"
    }; then
    cannot_install "${1:-}"
  fi
done
# npm comes with the end-to-end suites' packages; a build alone needs no node_modules.
if command -v npm >/dev/null; then npm_packages; fi
