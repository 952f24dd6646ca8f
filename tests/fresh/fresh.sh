#!/usr/bin/env bash
# shellcheck disable=SC2016,SC2046,SC2086
# `make test-fresh`: on this machine's / under a throw-away overlay, every package scripts/install-deps.sh can
# install is purged (a base system's own stay); then each mode installs and serves, and none again installs
# anything. Needs root, Debian's mirror and the npm registry.
set -euo pipefail
[ "$(id -u)" -eq 0 ] || { echo "test-fresh: needs root (mount, chroot)" >&2; exit 1; }
tree=$(cd "$(dirname "$0")/../.." && pwd)
if [ -z "${FRESH_NAMESPACE:-}" ]; then
  FRESH_NAMESPACE=1 exec unshare --mount --pid --fork --kill-child --mount-proc --propagation private "$0"
fi

base=$(mktemp -d /var/tmp/fresh.XXXXXX)
root=$base/root
trap 'umount -R -l "$root" 2>/dev/null; rm -rf "$base"' EXIT
mkdir "$base/upper" "$base/work" "$root"
mount -t overlay overlay -o "lowerdir=/,upperdir=$base/upper,workdir=$base/work" "$root"
mount -t proc proc "$root/proc"
mount --rbind /dev "$root/dev"
mount -t tmpfs tmpfs "$root/run"
mount -t tmpfs -o mode=1777 tmpfs "$root/tmp"
# dpkg's and apt's state as copies (an overlay's lower layer must not change under it); the packages as links.
mkdir -p "$base/var/lib/dpkg" "$base/var/lib/apt" "$base/var/cache/apt/archives/partial"
cp -a /var/lib/dpkg/. "$base/var/lib/dpkg/"
cp -a /var/lib/apt/. "$base/var/lib/apt/"
find /var/cache/apt/archives -maxdepth 1 -name '*.deb' -exec cp -l -t "$base/var/cache/apt/archives" {} +
for state in var/lib/dpkg var/lib/apt var/cache/apt/archives; do
  mount --bind "$base/$state" "$root/$state"
done
# No daemon a package brings starts: the overlay shares this machine's network.
printf '#!/bin/sh\nexit 101\n' > "$root/usr/sbin/policy-rc.d"
chmod 755 "$root/usr/sbin/policy-rc.d"
echo force-unsafe-io > "$root/etc/dpkg/dpkg.cfg.d/fresh-unsafe-io"

in_root() { chroot "$root" env -C "$tree" DEBIAN_FRONTEND=noninteractive bash -ec "$1"; }
started=$SECONDS
phase() {  # name script: runs it in the root, timed
  local t=$SECONDS
  echo "== $1"
  in_root "$2" || { echo "test-fresh: $1 failed" >&2; exit 1; }
  echo "-- $1: $((SECONDS - t)) s"
}

# The native installed packages among the names given, less the required and important ones and their depends.
base_system=$(chroot "$root" apt-cache depends --recurse --installed --no-recommends --no-suggests --no-conflicts \
  --no-breaks --no-replaces --no-enhances $(chroot "$root" dpkg-query -W \
  -f '${binary:Package} ${Priority} ${Essential}\n' | awk '$2 == "required" || $2 == "important" || $3 == "yes" {
  print $1 }') | grep -v '^ ')
installed() {
  { dpkg-query --admindir="$root/var/lib/dpkg" -W -f '${db:Status-Abbrev} ${Package} ${Architecture}\n' "$@" \
      2>/dev/null || true; } | awk '$1 == "ii" && $3 != "arm64" { print $2 }' |
    { grep -vxF "$base_system" || true; } | sort -u
}
words() { tr -s ' \n' '  '; }
commands=$(sed -n '/^commands="/,/^"/p' "$tree/scripts/install-deps.sh" | awk 'NF == 3 { print $2 }' | words)
# The package that brings each command, wherever it came from.
owners=$(in_root "for c in $commands; do
  path=\$(PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin command -v \$c) || continue
  path=\$(readlink -f \$path)
  { dpkg -S \$path || dpkg -S \${path#/usr}; } 2>/dev/null | cut -d: -f1
done")
build_depends=$(sed -n '/^Build-Depends:/,/^$/s/^ \([^ ,]*\).*/\1/p' "$tree/debian/control")
purge=$(installed $owners $build_depends | words)
# The arm64 packages and architecture first, so that apt takes no arm64 package for a native one it purges.
phase "purge" "apt-get purge -y -q --allow-remove-essential '?architecture(arm64)' >/dev/null
  dpkg --remove-architecture arm64
  apt-get purge -y -q --autoremove $purge >/dev/null
  rm -rf build-fresh build-fresh-arm64 build-fresh-deb node_modules"
left=$(installed $purge)
[ -z "$left" ] || { echo "test-fresh: still installed after the purge: $left" >&2; exit 1; }
echo "purged: $(wc -w <<< "$purge") packages; not found now:$(for c in $commands; do
  chroot "$root" sh -c "PATH=/usr/sbin:/usr/bin:/sbin:/bin command -v $c >/dev/null" || printf ' %s' "$c"; done)"

cross="cmake -S . -B build-fresh-arm64 -DCMAKE_TOOLCHAIN_FILE=cmake/toolchain-aarch64-linux-gnu.cmake -DIF_WERROR=ON"
phase "plain" "scripts/install-deps.sh
  make build BUILD=build-fresh JOBS=2"
# make run serves the API and the explorer, in a network namespace of its own: the port is no one else's.
read -r -d '' make_run <<'SH' || true
ip link set lo up
make run BUILD=build-fresh JOBS=2 > /tmp/run.log 2>&1 &
for _ in $(seq 600); do grep -q '^Serving' /tmp/run.log && break; sleep 0.2; done
admin=$(sed -n 's/^Administrator session: \([0-9a-f]*\).*/\1/p' /tmp/run.log)
{ curl -sf -H "session: $admin" 'http://127.0.0.1:8080/api/v2/interfaces/if/link-state?ifNum=3' | grep -q '"Success"'
  curl -sf -o /dev/null http://127.0.0.1:8080/api-docs/; } || { cat /tmp/run.log; exit 1; }
kill %1
wait || true
SH
phase "e2e" "scripts/install-deps.sh e2e
  lighttpd -v; node -v; npm -v; python3 --version
  unshare --net bash -ec $(printf %q "$make_run")"
phase "package" "scripts/install-deps.sh package
  make package-tree PACKAGE_WORK=build-fresh-deb
  $cross -DIF_BUILD_TESTS=OFF >/dev/null
  cmake --build build-fresh-arm64 -j 2 --target open-sim"
phase "arm64" "scripts/install-deps.sh arm64
  $cross -DIF_BUILD_TESTS=ON >/dev/null
  aarch64-linux-gnu-readelf -h build-fresh-arm64/platform/open-sim | grep -q 'Machine: *AArch64'
  qemu-aarch64 build-fresh-arm64/platform/open-sim scenarios | grep -q '^switch-52'"
phase "bench" "scripts/install-deps.sh bench
  wrk -v | grep -q '^wrk'
  cmake -S . -B build-fresh >/dev/null
  cmake --build build-fresh --target help | grep -q bench-micro"
phase "fuzz" "scripts/install-deps.sh fuzz
  printf '%s\n' '#include <cstddef>' '#include <cstdint>' \
    'extern \"C\" int LLVMFuzzerTestOneInput(const uint8_t*, size_t) { return 0; }' > /tmp/probe.cpp
  clang++-14 -fsanitize=fuzzer /tmp/probe.cpp -o /tmp/probe
  /tmp/probe -runs=10 2>/dev/null"
phase "browser" "scripts/install-deps.sh browser
  chromium --version"
phase "piuparts" "scripts/install-deps.sh piuparts
  piuparts --help >/dev/null"

# With everything in place, no mode installs anything.
phase "again" 'for mode in "" e2e package arm64 bench fuzz browser piuparts; do
  out=$(scripts/install-deps.sh $mode 2>&1)
  if grep "^installing" <<< "$out"; then echo "mode \"$mode\" installed again" >&2; exit 1; fi
done'
echo "test-fresh: every mode installed what it needs, in $((SECONDS - started)) s"
