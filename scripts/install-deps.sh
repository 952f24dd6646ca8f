#!/usr/bin/env bash
# Installs what building, testing and serving need, from Debian's packages, when it is not there yet. The
# list is the Build-Depends of debian/control, read under the build profiles of each mode; apt-get runs
# only when dpkg-checkbuilddeps finds something missing.
#   install-deps.sh          building, and the unit tests (make build)
#   install-deps.sh e2e      also the end-to-end suites and the package checks: the web server, clients,
#                            lintian, systemd-tmpfiles, ip (make test)
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

# Each mode: the builds it needs, as "host-architecture build-profiles" ("-": none).
case "${1:-}" in
  "") builds=("- -") ;;
  e2e) builds=("- $profile.e2e") ;;
  package) builds=("- nocheck" "arm64 cross,nocheck") ;;
  arm64) builds=("- $profile.e2e" "arm64 cross,$profile.arm64") ;;
  bench) builds=("- $profile.e2e,$profile.bench" "arm64 cross,nocheck") ;;
  fuzz) builds=("- $profile.fuzz") ;;
  browser) builds=("- $profile.browser") ;;
  piuparts) builds=("- $profile.piuparts") ;;
  system) builds=("- $profile.system") ;;
  *) echo "usage: $0 [e2e | package | arm64 | bench | fuzz | browser | piuparts | system]" >&2; exit 2 ;;
esac

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

if ! command -v dpkg-checkbuilddeps >/dev/null; then
  echo "installing: dpkg-dev"
  as_root dpkg-dev
  apt_update
  $sudo apt-get install -y -q --no-install-recommends dpkg-dev
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
    [ "${1:-}" = browser ] || exit 1
    echo "chromium could not be installed: the explorer's browser test will be skipped" >&2
  fi
done
# npm comes with the end-to-end suites' packages; a build alone needs no node_modules.
if command -v npm >/dev/null; then npm_packages; fi
